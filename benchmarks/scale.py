#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Measures recordings of any number of updates, for docs/scale.md.

    scale.py ROWS...    with omtreader and pyarrow installed, and OMT_MODELS set

Prints, for each number of rows, the seconds of processors that each step took in all threads, for a
million rows, and the most memory that the process has held. Updates are of the RPR FOM: half of them
Spatial, and as many of 100,000 different values as come before they repeat.
"""
import os
import random
import resource
import shutil
import struct
import sys
import tempfile
import time
from pathlib import Path

import pyarrow as pa

import omtreader as omt
from omtreader import recording

AIRCRAFT = "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.Aircraft"
VEHICLE = "HLAobjectRoot.BaseEntity.PhysicalEntity.Platform.GroundVehicle"
DIFFERENT = 100_000
NAMES = ["Spatial", "EntityType", "Spatial", "Marking"]


def octets_of(name, source):
    if name == "EntityType":
        return bytes([1, 2, 0, 225, source.randrange(40), 3, source.randrange(9), 0])
    if name == "Marking":
        return bytes([1]) + f"CALL {source.randrange(999999):06}".encode()
    # Spatial by RVW: discriminant, padding, location, frozen, padding, then floats in threes.
    place = [4e6 + source.random() * 1e5, 4e5 + source.random() * 1e5, 5e6 + source.random() * 1e5]
    rest = [source.random() for _ in range(12)]
    return struct.pack(">B7x3d?3x12f", 4, *place, False, *rest)


def block():
    """Rows that all batches are made of."""
    source = random.Random(1516)
    members = [NAMES[at % len(NAMES)] for at in range(DIFFERENT)]
    return pa.record_batch({
        "kind": pa.array(["update"] * DIFFERENT),
        "object": pa.array([f"Entity {at % 5000}" for at in range(DIFFERENT)]),
        "class": pa.array([AIRCRAFT if at % 5000 % 3 else VEHICLE for at in range(DIFFERENT)]),
        "member": pa.array(members),
        "octets": pa.array([octets_of(name, source) for name in members]),
    })


def updates(rows):
    """A hundred thousand updates are a second."""
    whole = block()
    schema = pa.schema([("time", pa.float64()), ("event", pa.int64()), *whole.schema])

    def batches():
        for first in range(0, rows, DIFFERENT):
            part = whole.slice(0, min(DIFFERENT, rows - first))
            event = pa.arange(first, first + len(part))
            yield pa.record_batch([event.cast(pa.float64()), event, *part.columns], schema=schema)

    return pa.RecordBatchReader.from_batches(schema, batches())


def measured(rows, work):
    before = time.process_time()
    result = work()
    return (time.process_time() - before) / rows * 1e6, result


def decode(folder, **options):
    rows = faults = 0
    for batch in recording.batches(folder, "BaseEntity.Spatial", **options):
        rows += len(batch)
        faults += len(batch) - batch["fault"].null_count
    assert faults == 0
    return rows


def measure(model, rows):
    folder = Path(tempfile.mkdtemp(dir=os.environ.get("OMT_SCRATCH")))
    try:
        making, _ = measured(rows, lambda: sum(len(batch) for batch in updates(rows)))
        writing, _ = measured(rows, lambda: recording.write(updates(rows), folder, model))
        decoding, values = measured(rows / 2, lambda: decode(folder))
        where = [("time", ">=", rows * 0.99)]
        some, few = measured(rows / 2, lambda: decode(folder, where=where, columns=["time"]))
        octets = sum(file.stat().st_size for file in folder.rglob("*.parquet"))
        assert values == rows // 2 and few <= rows // 100
        memory = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024
        print(f"{rows:>12,} rows: making {making:.2f} s, writing {writing - making:.2f} s, reading and "
              f"decoding {decoding:.2f} s, of the last hundredth {some:.3f} s for a million; "
              f"{octets / rows:.0f} octets a row on the disk, {memory:.0f} MB", flush=True)
    finally:
        shutil.rmtree(folder)


def main():
    file = os.environ["OMT_MODELS"] + "/evolved/RPR_FOM_v2.0_1516-2010.xml"
    model = omt.load(file, mim=True)
    codec = model.codec()
    column = block().column("octets").take(pa.array(range(0, DIFFERENT, 2)))
    alone = min(measured(len(column), lambda: codec.decode_column("BaseEntity.Spatial", column))[0]
                for _ in range(9))
    print(f"columns alone: {alone:.3f} s for a million values of Spatial on one core", flush=True)
    for rows in sys.argv[1:]:
        measure(model, int(float(rows)))


if __name__ == "__main__":
    main()
