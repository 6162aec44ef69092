# SPDX-License-Identifier: MIT
"""The example of a night runs as its page says."""
import io
import os
import pathlib
import shutil
import subprocess
import sys
import tarfile

import pyarrow.dataset
import pyarrow.parquet
import pytest
import tavrin.arrow

EXAMPLE = pathlib.Path(__file__).resolve().parents[4] / "examples/nightly"
ROWS = 30
HOW = {"date": "2026-11-21T03:00:00Z", "time_zone": "Europe/Madrid", "rounded": True}


@pytest.fixture
def run(tmp_path):
    def run(script, *words):
        settings = {"RAY_ENABLE_WINDOWS_OR_OSX_CLUSTER": "0", "RAY_worker_niceness": "0", "SPARK_LOCAL_IP": "127.0.0.1",
                    "TMPDIR": "/tmp"}
        for _ in range(3):
            finished = subprocess.run([sys.executable, EXAMPLE / script, *words], cwd=tmp_path, env=os.environ | settings,
                                      capture_output=True, encoding="utf-8", timeout=200, check=False)
            if "timed out during startup" not in finished.stderr:  # of Ray, on a machine that does much else
                break
        assert finished.returncode == 0, finished.stderr
        return finished.stdout

    return run


@pytest.fixture(scope="module")
def expected():
    """The pictures of the first rows."""
    sys.path.insert(0, str(EXAMPLE))
    import make_models

    [batch] = make_models.people(0, ROWS).to_batches()
    document = (EXAMPLE.parent / "agenda/document.json").read_text()
    drawn = tavrin.arrow.render(batch, document=document, **HOW)
    assert drawn["error"].null_count == ROWS
    return dict(zip(drawn["id"].to_pylist(), drawn["picture"].to_pylist()))


def test_models_are_the_same_in_every_run(run, tmp_path):
    assert run("make_models.py", "10005", "a") == "a: 10005 models in 2 files\n"
    run("make_models.py", "10005", "b")
    for file in (tmp_path / "a").iterdir():
        assert file.read_bytes() == (tmp_path / "b" / file.name).read_bytes()
    table = pyarrow.dataset.dataset(tmp_path / "a").to_table()
    assert (table.num_rows, len(set(table["id"].to_pylist()))) == (10005, 10005)
    assert len(set(table["model"].to_pylist())) > 10000


@pytest.mark.parametrize("script", ["run_ray.py", "run_spark.py"])
def test_pictures_go_to_parquet(run, tmp_path, expected, script):
    run("make_models.py", str(ROWS), "models")
    run(script, "models", "pictures")
    table = pyarrow.dataset.dataset(tmp_path / "pictures", format="parquet").to_table()
    assert dict(zip(table["id"].to_pylist(), table["picture"].to_pylist())) == expected
    assert table.num_rows == ROWS


@pytest.mark.parametrize("script", ["run_ray.py", "run_spark.py"])
def test_pictures_go_to_shards(run, tmp_path, expected, script):
    run("make_models.py", str(ROWS), "models")
    shutil.copy(tmp_path / "models/people-00000.parquet", tmp_path / "models/people-00001.parquet")
    assert run(script, "models", "shards", "--shards").endswith(f"{2 * ROWS} pictures, failed: []\n")
    for part in ("people-00000", "people-00001"):
        [shard] = (tmp_path / "shards" / part).glob("*.tar")
        with tarfile.open(fileobj=io.BytesIO(shard.read_bytes())) as tar:
            found = {member.name: tar.extractfile(member).read() for member in tar}
        assert {name.removesuffix(".png"): data for name, data in found.items() if name.endswith(".png")} == expected
