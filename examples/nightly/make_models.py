#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Makes models of the agenda for as many people as asked, as Parquet files: make_models.py [COUNT [FOLDER]]

COUNT is 100,000 by default, FOLDER "models". A person's model is the same in every run.
"""
import json
import pathlib
import random
import sys

import pyarrow
import pyarrow.parquet

IN_A_FILE = 10_000
NAMES = ["Ana", "Ben", "Chloé", "Diego", "Emine", "Fatima", "Goran", "Hana", "Ilse", "João", "Kai", "Łucja"]
EVENTS = [
    ("Market with {}", ["Plaza del Olivar 🍋", "Mercat de Santa Catalina", "the square"]),
    ("Lunch with {}", ["Casa Maruka, table for two", "the canteen", "at home"]),
    ("{}'s birthday 🎂", ["Garden, bring a cake", "Bar Bosch"]),
    ("Call {}", ["about the boat", "before the weekend", ""]),
    ("Run with {} 🏃", ["along the harbour, 8 km", "in the park, 5 km"]),
    ("Bach: the cello suites", ["Teatre Principal, row 4", "row 12, with {}"]),
]


def model(dice):
    """A day with three events."""
    hours = sorted(dice.sample(range(7, 23), 3))
    events = []
    for hour in hours:
        title, places = dice.choice(EVENTS)
        name = dice.choice(NAMES)
        events.append({"time": f"{hour}:{dice.choice(['00', '15', '30', '45'])}", "title": title.format(name),
                       "place": dice.choice(places).format(name)})
    return {"weekday": "SATURDAY", "day": 21, "month": "November", "summary": "3 events", "events": events}


def people(first, count):
    """Some people: who they are, and their models."""
    dice = random.Random(first)
    numbers = range(first, first + count)
    return pyarrow.table({"id": [f"p{number:08}" for number in numbers],
                          "model": [json.dumps(model(dice), ensure_ascii=False) for _ in numbers]})


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 100_000
    folder = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else "models")
    folder.mkdir(parents=True, exist_ok=True)
    for first in range(0, count, IN_A_FILE):
        file = folder / f"people-{first // IN_A_FILE:05}.parquet"
        pyarrow.parquet.write_table(people(first, min(IN_A_FILE, count - first)), file)
    print(f"{folder}: {count} models in {-(-count // IN_A_FILE)} files")


if __name__ == "__main__":
    main()
