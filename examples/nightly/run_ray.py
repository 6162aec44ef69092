#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the agenda for everyone in a folder of Parquet files, on Ray: run_ray.py MODELS OUT [--shards]

OUT becomes a folder of Parquet files with the pictures, or with --shards one of tar files. It runs on the cluster that
RAY_ADDRESS names, or else on this machine.
"""
import os
import pathlib
import sys

os.environ.setdefault("RAY_USAGE_STATS_ENABLED", "0")
import pyarrow.parquet
import ray
import tavrin.ray
import tavrin.shards

DOCUMENT = (pathlib.Path(__file__).resolve().parent.parent / "agenda/document.json").read_text()
HOW = {"document": DOCUMENT, "date": "2026-11-21T03:00:00Z", "time_zone": "Europe/Madrid", "rounded": True}


@ray.remote
def shards_of(file, folder):
    """The tar files of one Parquet file: what is there already is not drawn again."""
    batches = pyarrow.parquet.ParquetFile(file).iter_batches()
    return tavrin.shards.write(batches, folder / file.stem, **HOW)


def main():
    models, out = map(pathlib.Path, sys.argv[1:3])
    ray.init(include_dashboard=False)
    if "--shards" in sys.argv:
        written = ray.get([shards_of.remote(file, out.resolve()) for file in sorted(models.resolve().glob("*.parquet"))])
        print(f"{sum(each['rows'] for each in written)} pictures, failed: {[each['errors'] for each in written if each['errors']]}")
    else:
        tavrin.ray.render(ray.data.read_parquet(str(models.resolve())), **HOW).write_parquet(str(out.resolve()))


if __name__ == "__main__":
    main()
