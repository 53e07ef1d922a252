#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The Python package: sets up a virtual environment in build/python and runs what is asked for.
#   scripts/python.sh test LIBOMT.SO TOOL   builds the module with this library and runs its tests
#   scripts/python.sh spark LIBOMT.SO TOOL  the tests that take Spark, Dask and matplotlib, on
#                                           OMT_SPARK, else on a cluster of two workers
#   scripts/python.sh wheel                 builds a wheel from the sources, and runs its tests
# Without a way to PyPI, or without OMT_MODELS, it names what is left out and ends with 77.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
python="$root/build/python/bin/python"
build="$root/build/pythonModule"
# Files are named from where the caller stands.
if [[ $# -eq 3 ]]; then
    set -- "$1" "$(readlink -f "$2")" "$(readlink -f "$3")"
fi
cd "$root/python"
leftOut="types $(echo tests/test_*.py)"

# partOf NAME: a part of the one list.
partOf()
{
    sed -n "/^# \[$1\]/,/^# \[/p" requirements.txt | sed '/^#/d'
}

# setUp PART...: installs parts of the one list, where they are not there yet. What is left out
# without them is in `leftOut`.
setUp()
{
    local part
    for part; do
        partOf "$part" | cmp -s - "$root/build/python/installed.$part" && continue
        [[ -x $python ]] || python3 -m venv "$root/build/python"
        if ! "$python" -m pip install --quiet --disable-pip-version-check -r <(partOf "$part"); then
            echo "PyPI cannot be reached. Left out: $leftOut"
            exit 77
        fi
        partOf "$part" > "$root/build/python/installed.$part"
    done
}

# buildModule LIBOMT.SO: the sources stand beside the module, so that what is tested is what is
# checked in.
buildModule()
{
    cmake -G Ninja -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DOMT_LIBRARY="$1" \
          -DPython_EXECUTABLE="$python" -Dnanobind_DIR="$("$python" -m nanobind --cmake_dir)" \
          > /dev/null
    cmake --build "$build"
    rm -rf "$build/package"
    cp -r src "$build/package"
    cp "$build"/_core*.so "$build/package/omtreader"
}

# runTests PYTHON ARGUMENT...: where there are models, none may be skipped.
runTests()
{
    local log="$root/build/python/tests.log"
    "$1" -B -m pytest "${@:2}" | tee "$log"
    [[ -n ${OMT_MODELS:-} ]] || { echo "Left out: published models, as OMT_MODELS is not set"; exit 77; }
    sed -n 's/^SKIPPED [^ ]* /Skipped: /p' "$log"
    ! grep -q '^SKIPPED' "$log"
}

# testModule LIBOMT.SO TOOL
testModule()
{
    buildModule "$1"
    "$python" -m mypy --strict --cache-dir "$root/build/python/mypy" src
    export OMT_LIBRARY=$1 OMT_TOOL=$2 PYTHONPATH="$build/package"
    "$python" -B ../docs/checkCommands.py python
    # Those of testSpark are left to it.
    runTests "$python" --ignore tests/test_spark.py --ignore tests/test_tracks.py \
        --deselect 'tests/test_recipes.py::test_recipe[Dask]'
}

# testSpark LIBOMT.SO TOOL
testSpark()
{
    if ! command -v java > /dev/null; then
        echo "There is no Java. Left out: $leftOut"
        exit 77
    fi
    buildModule "$1"
    export PYTHONPATH="$build/package" SPARK_LOCAL_IP=127.0.0.1
    export OMT_SPARK=${OMT_SPARK:-local-cluster[2,1,1024]}
    echo "Spark: $OMT_SPARK"
    runTests "$python" tests/test_spark.py tests/test_recipes.py tests/test_tracks.py
}

# As pip would for a user; the tools of the build are those of the list.
testWheel()
{
    local wheels="$root/build/wheels" flags
    # Those of the packages, so that a compiler cache has the library.
    flags=$("$python" -c 'import json; print(*(preset["cacheVariables"]["CMAKE_CXX_FLAGS"]
        for preset in json.load(open("../CMakePresets.json"))["configurePresets"]
        if preset["name"] == "package"))')
    rm -rf "$wheels"
    CXXFLAGS=$flags "$python" -m pip wheel --quiet --disable-pip-version-check --no-deps \
        --no-build-isolation --wheel-dir "$wheels" .
    [[ -z $(find "$wheels" -name '*.whl' -size +4M -printf '%f has %s octets\n' | tee /dev/stderr) ]]
    python3 -m venv "$wheels/clean"
    "$wheels/clean/bin/python" -m pip install --quiet --disable-pip-version-check "$wheels"/*.whl
    # Alone first, as it needs nothing; then its types and tests, with what they take from beside it.
    cat > "$wheels/alone.py" << 'END'
import omtreader

codec = omtreader.load("../../examples/models/HarbourBase.xml", mim=True, strict=True).codec()
octets: bytes = codec.encode("GeocentricPosition", codec.decode("GeocentricPosition", bytes(24)))
assert octets == bytes(24)
END
    (cd "$wheels" && clean/bin/python alone.py &&
        "$python" -m mypy --strict --cache-dir "$root/build/python/mypy" \
            --python-executable clean/bin/python alone.py)
    PYTHONPATH=$("$python" -c 'import site; print(site.getsitepackages()[0])') \
        runTests "$wheels/clean/bin/python" tests/test_package.py tests/test_recording.py \
        --deselect tests/test_recording.py::test_the_tool_says_the_same
}

case ${1:-} in
    test) setUp test; testModule "$2" "$3" ;;
    spark)
        leftOut="tests/test_spark.py tests/test_tracks.py, Dask of tests/test_recipes.py"
        setUp test spark more
        testSpark "$2" "$3" ;;
    wheel) setUp test; testWheel ;;
    *) sed -n '3,8s/^# //p' "${BASH_SOURCE[0]}" >&2; exit 2 ;;
esac
