# SPDX-License-Identifier: Apache-2.0
"""Spark: the same rows as here, and the same when a worker is killed; OMT_SPARK names the master."""

import os
import random
import signal
import sys
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import pyarrow as pa
import pytest
from conftest import EXAMPLES, Loaded, grow, loaded
from test_recipes import RECIPES

import omtreader as omt
from omtreader import recording

pyspark = pytest.importorskip("pyspark")
pytest.importorskip("pyspark.sql.pandas.types")
if "OMT_SPARK" not in os.environ:
    pytest.skip("OMT_SPARK is not set", allow_module_level=True)

from omtreader import spark as on_spark  # noqa: E402

COMPLEX = ["SpatialVariantStruct", "ArticulatedParameterStructLengthlessArray", "MarkingStruct"]


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
def rpr() -> tuple[omt.Model, Loaded]:
    if "OMT_MODELS" not in os.environ:
        pytest.skip("OMT_MODELS is not set")
    files = [os.environ["OMT_MODELS"] + "/evolved/RPR_FOM_v2.0_1516-2010.xml"]
    return omt.load(*files, mim=True), loaded(files)


def rows_of(rpr: Loaded, name: str, count: int) -> list[bytes | None]:
    source = random.Random(name)
    made = [grow(rpr.codec, name, source.randbytes(size % 90), source) for size in range(24)]
    good = [one for one in made if one is not None]
    return [None if at % 97 == 0 else good[at % len(good)][:-1] if at % 89 == 0 else
            good[at % len(good)] for at in range(count)]


def local(rpr: Loaded, name: str, rows: list[bytes | None]) -> list[dict[str, Any]]:
    return pa.table(rpr.codec.decode_column(name, rows, labels="string",
                                            widen_unsigned=True)).to_pylist()


def frame_of(session: Any, rows: list[bytes | None]) -> Any:
    return session.createDataFrame(pa.table({"at": range(len(rows)),
                                             "octets": pa.array(rows, pa.binary())})).repartition(2)


def plain_rows(frame: Any) -> list[dict[str, Any]]:
    rows = sorted(frame.toArrow().to_pylist(), key=lambda row: row["at"])
    return [{key: row[key] for key in ("value", "fault")} for row in rows]


def test_equal_to_local(session: Any, rpr: tuple[omt.Model, Loaded]) -> None:
    for name in COMPLEX:
        rows = rows_of(rpr[1], name, 3000)
        frame = frame_of(session, rows)
        assert plain_rows(on_spark.decode(frame, name, rpr[0])) == local(rpr[1], name, rows)
    for wrong in (frame.drop("octets"), frame.withColumnRenamed("at", "value")):
        with pytest.raises(omt.OmtError):
            on_spark.decode(wrong, "EntityTypeStruct", rpr[0])


def test_a_worker_is_killed(session: Any, rpr: tuple[omt.Model, Loaded], tmp_path: Path) -> None:
    rows = rows_of(rpr[1], "SpatialVariantStruct", 4000)
    marks = tmp_path / "killed"
    is_cluster = os.environ["OMT_SPARK"].startswith("local-cluster")

    def kill(batches: Iterator[pa.RecordBatch]) -> Iterator[pa.RecordBatch]:
        for place, batch in enumerate(batches):
            yield batch
            if place == 1:
                try:
                    marks.open("x").close()
                except FileExistsError:
                    continue
                # The executor itself, where it is a process of its own; the daemon is between.
                victim = os.getpid()
                if is_cluster:
                    stat = Path(f"/proc/{os.getppid()}/stat").read_text()
                    victim = int(stat.rpartition(")")[2].split()[1])
                os.kill(victim, signal.SIGKILL)

    frame = frame_of(session, rows)
    killed = on_spark.decode(frame.mapInArrow(kill, frame.schema), "SpatialVariantStruct", rpr[0])
    assert plain_rows(killed) == local(rpr[1], "SpatialVariantStruct", rows)
    assert marks.exists()


def test_a_recording(session: Any, tmp_path: Path) -> None:
    names = [EXAMPLES / one for one in ("HarbourBase.xml", "HarbourTraffic.xml")]
    place = tmp_path / "exercise"
    recording.write(EXAMPLES.parent / "updates.csv", place, omt.load(*names, mim=True))
    seen: dict[str, Any] = {}
    # The session that is there is the one that the recipe gets; it finds files by their whole path.
    exec(RECIPES["Spark"].replace('"exercise"', repr(str(place))), seen)
    assert sorted(row.X for row in seen["result"]) == [3736104.75, 3770617.5]
