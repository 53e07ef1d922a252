# SPDX-License-Identifier: Apache-2.0
"""Models, and values of their datatypes that are made by growing random octets until they fit."""

import os
import random
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from typing import NamedTuple

import pytest

import omtreader as omt

EXAMPLES = Path(__file__).parents[2] / "examples" / "models"
NETN = ["evolved/RPR-Foundation_v2.0.xml", "evolved/RPR-Enumerations_v2.0.xml",
        "evolved/RPR-Base_v2.0.xml", "evolved/RPR-SE_v2.0.xml", "2025/NETN-BASE.xml",
        "2025/NETN-SMC.xml", "2025/NETN-ORG.xml", "2025/NETN-ETR.xml", "2025/NETN-COM.xml",
        "2025/NETN-SE.xml", "2025/NETN-METOC.xml"]
PUBLISHED = {"RPR": ["evolved/RPR_FOM_v2.0_1516-2010.xml"], "MIM": ["mim/HLAstandardMIM.xml"],
             "NETN": NETN}


def record(name: str, **fields: str) -> str:
    inside = "".join(f"<field><name>{field}</name><dataType>{kind}</dataType></field>"
                     for field, kind in fields.items())
    return f"<fixedRecordData><name>{name}</name><encoding>HLAfixedRecord</encoding>{inside}</fixedRecordData>"


def array(name: str, of: str) -> str:
    return f"<arrayData><name>{name}</name><dataType>{of}</dataType><cardinality>Dynamic</cardinality>" \
           f"<encoding>HLAvariableArray</encoding></arrayData>"


# A tree holds trees; nothing has no octets, also as an element; texts are long.
ODD = ("<objectModel xmlns='http://standards.ieee.org/IEEE1516-2010'><objects><objectClass><name>HLAobjectRoot"
       "</name><attribute><name>Odd</name><dataType>Odd</dataType></attribute></objectClass></objects>"
       "<dataTypes><arrayDataTypes>" + array("Trees", "Tree") + array("Nothings", "Nothing")
       + array("Texts", "HLAASCIIstring") + "</arrayDataTypes><fixedRecordDataTypes>" + record("Nothing")
       + record("Tree", Weight="HLAinteger16BE", Below="Trees")
       + record("Odd", First="Nothing", All="Nothings", Note="HLAASCIIstring", Last="Nothing", Tree="Tree")
       + "</fixedRecordDataTypes></dataTypes></objectModel>")


class Loaded(NamedTuple):
    model: omt.Model
    codec: omt.Codec
    files: list[str]
    names: list[str]


def datatypes(files: list[str]) -> list[str]:
    kinds = ("arrayData", "fixedRecordData", "variantRecordData", "enumeratedData", "simpleData")
    return sorted({element.findtext("{*}name", "").strip() for file in files
                   for element in ElementTree.parse(file).iter() if element.tag.rpartition("}")[2] in kinds})


def loaded(files: list[str]) -> Loaded:
    model = omt.load(*files, mim=True)
    return Loaded(model, model.codec(), files, datatypes(files))


@pytest.fixture(scope="session", params=["Harbour", "Odd", *PUBLISHED])
def model(request: pytest.FixtureRequest, tmp_path_factory: pytest.TempPathFactory) -> Loaded:
    if request.param == "Odd":
        file = tmp_path_factory.mktemp("models") / "Odd.xml"
        file.write_text(ODD)
        return loaded([str(file)])
    if request.param == "Harbour":
        return loaded([str(EXAMPLES / name) for name in ("HarbourBase.xml", "HarbourTraffic.xml")])
    if "OMT_MODELS" not in os.environ:
        pytest.skip("OMT_MODELS is not set")
    return loaded([os.environ["OMT_MODELS"] + "/" + name for name in PUBLISHED[request.param]])


def grow(codec: omt.Codec, name: str, octets: bytes, source: random.Random) -> bytes | None:
    """Octets that are a value, made from any; None where that does not come to an end."""
    for _ in range(200):
        try:
            codec.decode(name, octets)
            return octets
        except omt.DecodeError as fault:
            missing = fault.needed - fault.left
            at = fault.offset
            if fault.what.endswith("left over"):
                octets = octets[:at]
            elif 0 < missing <= 2000:
                octets += source.randbytes(missing)
            else:
                small = bytes([0, 0, 0, source.randrange(3)]) if missing > 0 else bytes(8)
                octets = (octets[:at] + small + octets[at + len(small):])[:4000]
    return None
