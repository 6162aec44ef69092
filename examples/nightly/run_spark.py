#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws the agenda for everyone in a folder of Parquet files, on Spark: run_spark.py MODELS OUT [--shards]

OUT becomes a folder of Parquet files with the pictures, or with --shards one of tar files. `spark-submit` runs it on a
cluster; alone it uses this machine.
"""
import os
import pathlib
import sys

os.environ.setdefault("PYSPARK_PYTHON", sys.executable)
import pyarrow.parquet
import tavrin.shards
import tavrin.spark
from pyspark.sql import SparkSession

DOCUMENT = (pathlib.Path(__file__).resolve().parent.parent / "agenda/document.json").read_text()
HOW = {"document": DOCUMENT, "date": "2026-11-21T03:00:00Z", "time_zone": "Europe/Madrid", "rounded": True}


def shards_of(file, folder):
    """The tar files of one Parquet file: what is there already is not drawn again."""
    batches = pyarrow.parquet.ParquetFile(file).iter_batches()
    return tavrin.shards.write(batches, folder / file.stem, **HOW)


def main():
    models, out = map(pathlib.Path, sys.argv[1:3])
    session = SparkSession.builder.config("spark.ui.enabled", "false").getOrCreate()
    if "--shards" in sys.argv:
        folder, files = out.resolve(), sorted(models.resolve().glob("*.parquet"))
        written = session.sparkContext.parallelize(files, len(files)).map(lambda file: shards_of(file, folder)).collect()
        print(f"{sum(each['rows'] for each in written)} pictures, failed: {[each['errors'] for each in written if each['errors']]}")
    else:
        tavrin.spark.render(session.read.parquet(str(models.resolve())), **HOW).write.parquet(str(out.resolve()))
    session.stop()


if __name__ == "__main__":
    main()
