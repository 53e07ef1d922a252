#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints lines "name ratio" that set the Python package beside other ways, in one process.

    python_ratios.py LIBOMT.SO    with omtreader on this library, pyarrow and cantools installed

Ratios are medians of many short runs of both, one after the other, in seconds of the processor.
"""
import ctypes
import json
import os
import random
import statistics
import struct
import sys
import time

import cantools
import pyarrow as pa

import omtreader as omt

MODEL = b"""<objectModel xmlns="http://standards.ieee.org/IEEE1516-2010"><dataTypes>
<fixedRecordDataTypes><fixedRecordData><name>Frame</name><encoding>HLAfixedRecord</encoding>%s
</fixedRecordData></fixedRecordDataTypes></dataTypes></objectModel>""" % b"".join(
    b"<field><name>Signal%d</name><dataType>HLAinteger16BE</dataType></field>" % at
    for at in range(17))
# As many numbers as a Spatial has; a CAN FD message takes 64 octets of them.
CAN = "VERSION \"\"\nNS_ :\nBS_:\nBU_: Node\nBO_ 1 Frame: 34 Node\n" + "".join(
    f" SG_ Signal{at} : {16 * at + 7}|16@0- (1,0) [0|0] \"\" Node\n" for at in range(17))
SPATIAL = struct.Struct(">B7x3d?3x12f")


def by_hand(octets):
    """The dict of a Spatial that goes on by rotation and velocity."""
    kind, x, y, z, frozen, *rest = SPATIAL.unpack(octets)
    if kind != 4:
        raise ValueError("another alternative")
    psi, theta, phi, vx, vy, vz, ax, ay, az, wx, wy, wz = rest
    return {"DeadReckoningAlgorithm": "DRM_RVW", "SpatialRVW": {
        "WorldLocation": {"X": x, "Y": y, "Z": z}, "IsFrozen": "True" if frozen else "False",
        "Orientation": {"Psi": psi, "Theta": theta, "Phi": phi},
        "VelocityVector": {"XVelocity": vx, "YVelocity": vy, "ZVelocity": vz},
        "AccelerationVector": {"XAcceleration": ax, "YAcceleration": ay, "ZAcceleration": az},
        "AngularVelocity": {"XAngularVelocity": wx, "YAngularVelocity": wy,
                            "ZAngularVelocity": wz}}}


def seconds(work):
    before = time.process_time()
    work()
    return time.process_time() - before


def ratio(name, work, beside, runs=41):
    work(), beside()
    print(f"{name} {statistics.median(seconds(work) / seconds(beside) for _ in range(runs)):.2f}", flush=True)


def each(function, values):
    def run():
        for value in values:
            function(value)
    return run


class Column:
    """decode_column() of the C interface, over one column again and again."""

    def __init__(self, path, file, member, column):
        self.lib = ctypes.CDLL(path)
        self.columns, self.schema = ctypes.c_void_p(), (ctypes.c_char * 72)()
        self.array, self.batch = (ctypes.c_char * 80)(), (ctypes.c_void_p * 10)()
        model, codec, kind = ctypes.c_void_p(), ctypes.c_void_p(), ctypes.c_void_p()
        paths = (ctypes.c_char_p * 1)(file.encode())
        assert not self.lib.omt_read_files(paths, ctypes.c_size_t(1), 1, ctypes.byref(model), None)
        assert not self.lib.omt_codec_new(model, ctypes.byref(codec), None)
        assert not self.lib.omt_find_member(codec, member.encode(), ctypes.byref(kind), None)
        assert not self.lib.omt_columns_new(kind, 0, 0, ctypes.byref(self.columns), None)
        column._export_to_c(ctypes.addressof(self.array), ctypes.addressof(self.schema))

    def __call__(self):
        first = ctypes.c_size_t(0)
        assert not self.lib.omt_decode_column(self.columns, self.schema, self.array,
                                              ctypes.byref(first), self.batch, None)
        # The ninth member of the struct frees what the batch holds.
        ctypes.CFUNCTYPE(None, ctypes.c_void_p)(self.batch[8])(ctypes.addressof(self.batch))


def main():
    file = os.environ["OMT_MODELS"] + "/evolved/RPR_FOM_v2.0_1516-2010.xml"
    codec = omt.load(file, mim=True).codec()
    source = random.Random(1516)
    spatials = [SPATIAL.pack(4, *(source.uniform(1e5, 6e6) for _ in range(3)), False,
                             *(source.random() for _ in range(12))) for _ in range(2000)]
    name = "BaseEntity.Spatial"
    texts = [codec.decode_json(name, octets) for octets in spatials]
    assert codec.decode(name, spatials[0]) == by_hand(spatials[0])
    ratio("python_decode", each(lambda octets: codec.decode(name, octets), spatials), each(json.loads, texts))
    ratio("python_decode_struct", each(lambda octets: codec.decode(name, octets), spatials),
          each(by_hand, spatials))
    column = pa.array(spatials * 20)
    inside = Column(sys.argv[1], file, name, column)
    ratio("python_decode_column", lambda: codec.decode_column(name, column), inside)
    rows = column.to_pylist()
    ratio("python_decode_column_struct", lambda: codec.decode_column(name, column), each(by_hand, rows), 5)
    message = cantools.database.load_string(CAN).get_message_by_name("Frame")
    frames = [source.randbytes(34) for _ in range(2000)]
    frame = omt.load(MODEL, mim=True).codec()
    assert frame.decode("Frame", frames[0]) == message.decode(frames[0])
    ratio("python_decode_cantools", each(lambda octets: frame.decode("Frame", octets), frames),
          each(message.decode, frames), 11)
    ratio("python_decode_column_cantools", lambda: frame.decode_column("Frame", frames),
          each(message.decode, frames), 11)


if __name__ == "__main__":
    main()
