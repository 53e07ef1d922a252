# SPDX-License-Identifier: Apache-2.0
"""Spark: the same rows as here, and the same when a worker is killed; OMT_SPARK names the master."""

import os
import random
import signal
import sys
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

import pyarrow as pa
import pytest
from conftest import EXAMPLES, PUBLISHED, Loaded, grow, loaded
from test_recipes import RECIPES

import omtreader as omt
from omtreader import recording

pyspark = pytest.importorskip("pyspark")
pytest.importorskip("pyspark.sql.pandas.types")
if "OMT_SPARK" not in os.environ:
    pytest.skip("OMT_SPARK is not set", allow_module_level=True)

from omtreader import spark as on_spark  # noqa: E402


@pytest.fixture(scope="module")
def session() -> Iterator[Any]:
    from pyspark.sql import SparkSession
    os.environ.setdefault("SPARK_LOCAL_IP", "127.0.0.1")
    os.environ["PYSPARK_PYTHON"] = sys.executable
    made = (SparkSession.builder.master(os.environ["OMT_SPARK"]).config("spark.ui.enabled", "false")
            .config("spark.executorEnv.PYTHONPATH", os.environ.get("PYTHONPATH", ""))
            .config("spark.sql.execution.arrow.maxRecordsPerBatch", "500")
            .config("spark.task.maxFailures", "4").getOrCreate())
    yield made
    made.stop()


@pytest.fixture(scope="module")
def rpr() -> Loaded:
    if "OMT_MODELS" not in os.environ:
        pytest.skip("OMT_MODELS is not set")
    return loaded([os.environ["OMT_MODELS"] + "/" + name for name in PUBLISHED["RPR"]])


def check(session: Any, rpr: Loaded, name: str, prepare: Callable[[Any], Any]) -> None:
    """Good rows, null rows and cut ones come out of Spark as they do here."""
    source = random.Random(name)
    made = [grow(rpr.codec, name, source.randbytes(size % 90), source) for size in range(24)]
    good = [one for one in made if one is not None] * 200
    rows = [None if at % 97 == 0 else one[:-1] if at % 89 == 0 else one for at, one in enumerate(good)]
    frame = session.createDataFrame(pa.table({"at": range(len(rows)),
                                              "octets": pa.array(rows, pa.binary())})).repartition(2)
    found = on_spark.decode(prepare(frame), name, rpr.model).toArrow().sort_by("at")
    here = rpr.codec.decode_column(name, rows, labels="string", widen_unsigned=True)
    assert found.select(["value", "fault"]).to_pylist() == pa.table(here).to_pylist()
    for wrong in (frame.drop("octets"), frame.withColumnRenamed("at", "value")):
        with pytest.raises(omt.OmtError):
            on_spark.decode(wrong, name, rpr.model)


@pytest.mark.parametrize("name", ["SpatialVariantStruct", "ArticulatedParameterStructLengthlessArray",
                                  "MarkingStruct"])
def test_equal_to_local(session: Any, rpr: Loaded, name: str) -> None:
    check(session, rpr, name, lambda frame: frame)


def test_a_worker_is_killed(session: Any, rpr: Loaded, tmp_path: Path) -> None:
    marks = tmp_path / "killed"
    is_cluster = os.environ["OMT_SPARK"].startswith("local-cluster")

    def kill(batches: Iterator[pa.RecordBatch]) -> Iterator[pa.RecordBatch]:
        for place, batch in enumerate(batches):
            yield batch
            if place != 1 or marks.exists():
                continue
            marks.touch()
            # The executor itself, where it is a process of its own; the daemon is between.
            victim = os.getpid()
            if is_cluster:
                stat = Path(f"/proc/{os.getppid()}/stat").read_text()
                victim = int(stat.rpartition(")")[2].split()[1])
            os.kill(victim, signal.SIGKILL)

    check(session, rpr, "SpatialVariantStruct", lambda frame: frame.mapInArrow(kill, frame.schema))
    assert marks.exists()


def test_a_recording(session: Any, tmp_path: Path) -> None:
    names = [EXAMPLES / one for one in ("HarbourBase.xml", "HarbourTraffic.xml")]
    place = tmp_path / "exercise"
    recording.write(EXAMPLES.parent / "updates.csv", place, omt.load(*names, mim=True))
    seen: dict[str, Any] = {}
    # The session that is there is the one that the recipe gets; it finds files by their whole path.
    exec(RECIPES["Spark"].replace('"exercise"', repr(str(place))), seen)
    assert sorted(row.X for row in seen["result"]) == [3736104.75, 3770617.5]
