# SPDX-License-Identifier: MIT
"""Ray and Spark on this machine: two workers, on the loopback interface, with nothing that reports to others."""
import contextlib
import os
import pathlib
import shutil
import signal
import sys
import tempfile
import threading
import time

import pyarrow

WORKERS = 2


def descendants():
    """The processes below this one: their command lines and parents by their numbers."""
    found = {}
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            words = (folder / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace")
            state, parent = (folder / "stat").read_text().rpartition(")")[2].split()[:2]
        except (FileNotFoundError, ProcessLookupError):
            continue
        if state != "Z":
            found[int(folder.name)] = (words, int(parent))
    below = {os.getpid()}
    while more := {number for number, (_, parent) in found.items() if parent in below} - below:
        below |= more
    return {number: found[number] for number in below - {os.getpid()} if number in found}


def wait_for(what, condition, seconds=60):
    """Waits until a condition gives something, and gives that."""
    end = time.monotonic() + seconds
    while not (answer := condition()):
        assert time.monotonic() < end, f"waited {seconds} s for {what}"
        time.sleep(0.02)
    return answer


class Engine:
    """What tests ask of either."""

    engine = None

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tn", dir="/tmp"))  # sockets want short paths
        self.before = set(descendants())
        try:
            self.start()
        except BaseException:
            self.stop()
            raise

    def stop(self):
        """Ends it, and sees to it that nothing is left."""
        try:
            self.end()
            wait_for("processes to end", lambda: not self.left(), 30)
        finally:
            self.kill_left()
            shutil.rmtree(self.folder, ignore_errors=True)

    def left(self):
        return set(descendants()) - self.before

    def kill_left(self):
        for number in self.left():
            with contextlib.suppress(ProcessLookupError):
                os.kill(number, signal.SIGKILL)


class Ray(Engine):
    name = "ray"

    def start(self):
        os.environ.update(RAY_USAGE_STATS_ENABLED="0", RAY_worker_niceness="0",
                          RAY_ENABLE_WINDOWS_OR_OSX_CLUSTER="0")  # without which Ray listens for other machines
        import ray

        self.engine = ray
        for attempt in range(3):  # Ray gives its own processes fifteen seconds, which are few where much else is done
            try:
                # A worker keeps its core, and reading wants one, too.
                ray.init(num_cpus=WORKERS + 1, include_dashboard=False, object_store_memory=2 << 30,
                         log_to_driver=False, _temp_dir=str(self.folder), logging_level="error")
                break
            except Exception:
                ray.shutdown()
                self.kill_left()
                if attempt == 2:
                    raise
        ray.data.DataContext.get_current().enable_progress_bars = False

    def end(self):
        self.engine.shutdown()

    def read(self, folder):
        return self.engine.data.read_parquet(str(folder))

    def render(self, dataset, **options):
        import tavrin.ray

        return tavrin.ray.render(dataset, compute=self.engine.data.ActorPoolStrategy(size=WORKERS), **options)

    def collect(self, dataset):
        return pyarrow.concat_tables(dataset.iter_batches(batch_size=None, batch_format="pyarrow"))

    def map(self, dataset, function):
        """Rows as a function of batches makes them, which adds a picture."""
        return dataset.repartition(target_num_rows_per_block=1024).map_batches(
            lambda table: pyarrow.Table.from_batches(function(table.to_batches())), batch_format="pyarrow", batch_size=256)

    def finished(self, dataset):
        """When how many rows were finished."""
        for table in dataset.iter_batches(batch_size=None, batch_format="pyarrow"):
            yield time.monotonic(), table.num_rows

    def each(self, function, values):
        """Calls a function with each value, somewhere."""
        task = self.engine.remote(lambda value: function(value))  # a partial function is none to Ray
        self.engine.get([task.remote(value) for value in values])

    def workers(self):
        return [number for number, (words, _) in descendants().items() if words.startswith("ray::MapWorker")]

    def collect_and_kill(self, dataset):
        """Collects the rows while a worker is killed."""
        batches = iter(dataset.iter_batches(batch_size=None, batch_format="pyarrow", prefetch_batches=0))
        first = next(batches)
        victim = self.workers()[0]
        os.kill(victim, signal.SIGKILL)
        wait_for("a worker instead", lambda: len(set(self.workers()) - {victim}) == WORKERS)
        return pyarrow.concat_tables([first, *batches])


class Spark(Engine):
    name = "spark"

    def start(self):
        os.environ.update(PYSPARK_PYTHON=sys.executable, SPARK_LOCAL_IP="127.0.0.1")
        from pyspark.sql import SparkSession

        settings = {
            "spark.ui.enabled": "false",
            "spark.driver.bindAddress": "127.0.0.1",
            "spark.driver.host": "127.0.0.1",
            "spark.driver.memory": "1g",
            "spark.local.dir": self.folder,
            "spark.sql.warehouse.dir": self.folder / "warehouse",
            "spark.sql.files.openCostInBytes": 128 << 20,  # a partition for each file, however small
        }
        builder = SparkSession.builder.master(f"local[{WORKERS},4]")  # a task is tried four times, as on a cluster
        for name, value in settings.items():
            builder = builder.config(name, str(value))
        self.engine = builder.getOrCreate()
        self.engine.sparkContext.setLogLevel("OFF")

    def end(self):
        if self.engine is None:
            return
        gateway = self.engine.sparkContext._gateway
        self.engine.stop()
        gateway.shutdown()
        gateway.proc.stdin.close()  # which ends the Java process
        gateway.proc.wait(30)

    def read(self, folder):
        return self.engine.read.parquet(str(folder))

    def render(self, frame, **options):
        import tavrin.spark

        return tavrin.spark.render(frame, **options)

    def collect(self, frame):
        return frame.toArrow()

    def map(self, frame, function):
        return frame.mapInArrow(function, frame.selectExpr("*", "binary('') AS picture").schema)

    def finished(self, frame):
        """A moment is read where a row comes out of its worker; rows that come within 5 ms are one batch."""
        offset = time.monotonic() - time.time()
        read = frame.selectExpr("java_method('java.lang.System', 'currentTimeMillis') AS moment",
                                "length(picture) AS bytes").toArrow()
        moments = sorted(int(moment) / 1000 for moment in read["moment"].to_pylist())
        first = 0
        for number, moment in enumerate(moments):
            if number + 1 == len(moments) or moments[number + 1] - moment > 0.005:
                yield moment + offset, number + 1 - first
                first = number + 1

    def each(self, function, values):
        self.engine.sparkContext.parallelize(values, len(values)).foreach(function)

    def workers(self):
        found = descendants()
        return [number for number, (words, parent) in found.items()
                if "pyspark.daemon" in words and "pyspark.daemon" in found.get(parent, ("", 0))[0]]

    def collect_and_kill(self, frame):
        """Collects the rows while a worker is killed."""
        collected = []
        run = threading.Thread(target=lambda: collected.append(self.collect(frame)))
        run.start()
        tracker = self.engine.sparkContext.statusTracker()

        def stage():
            return next((tracker.getStageInfo(number) for number in tracker.getActiveStageIds()), None)

        wait_for("a finished task", lambda: stage() and stage().numCompletedTasks, 120)
        os.kill(self.workers()[0], signal.SIGKILL)
        wait_for("a failed task", lambda: stage() and stage().numFailedTasks)
        run.join()
        return collected[0]
