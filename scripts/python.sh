#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The Python package: sets up a virtual environment in build/python and runs what is asked for.
#   scripts/python.sh test LIBOMT.SO TOOL   builds the module with this library and runs its tests
#   scripts/python.sh wheel                 builds a wheel from the sources, and runs its tests
# Without a way to PyPI, or without OMT_MODELS, it names what is left out and ends with 77.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
python="$root/build/python/bin/python"
cd "$root/python"

# Installs what the one list says, where it is not there yet.
setUp()
{
    cmp -s requirements.txt "$root/build/python/installed" && return
    python3 -m venv "$root/build/python"
    if ! "$python" -m pip install --quiet --disable-pip-version-check -r requirements.txt; then
        echo "PyPI cannot be reached. Left out: types" tests/test_*.py
        exit 77
    fi
    cp requirements.txt "$root/build/python/installed"
}

# The sources stand beside the module, so that what is tested is what is checked in.
testModule()
{
    local build="$root/build/pythonModule"
    cmake -G Ninja -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DOMT_LIBRARY="$1" \
          -DPython_EXECUTABLE="$python" -Dnanobind_DIR="$("$python" -m nanobind --cmake_dir)" \
          > /dev/null
    cmake --build "$build"
    rm -rf "$build/package"
    cp -r src "$build/package"
    cp "$build"/_core*.so "$build/package/omtreader"
    "$python" -m mypy --strict --cache-dir "$root/build/python/mypy" src
    OMT_LIBRARY=$1 OMT_TOOL=$2 PYTHONPATH="$build/package" "$python" -B -m pytest
    PYTHONPATH="$build/package" "$python" -B ../docs/checkCommands.py python
    [[ -n ${OMT_MODELS:-} ]] || { echo "Left out: published models, as OMT_MODELS is not set"; exit 77; }
}

# As pip would for a user; the tools of the build are those of the list.
testWheel()
{
    local wheels="$root/build/wheels" flags
    # Those of the packages, so that a compiler cache has most of the library.
    flags=$("$python" -c 'import json; print(*(preset["cacheVariables"]["CMAKE_CXX_FLAGS"]
        for preset in json.load(open("../CMakePresets.json"))["configurePresets"]
        if preset["name"] == "package"))')
    rm -rf "$wheels"
    CXXFLAGS=$flags "$python" -m pip wheel --quiet --disable-pip-version-check --no-deps \
        --no-build-isolation --wheel-dir "$wheels" .
    "$python" -m pip install --quiet --disable-pip-version-check --no-deps \
        --target "$wheels/installed" "$wheels"/*.whl
    du -b "$wheels"/*.whl
    PYTHONPATH="$wheels/installed" "$python" -B -m pytest tests/test_package.py
}

case ${1:-} in
    test) setUp; testModule "$2" "$3" ;;
    wheel) setUp; testWheel ;;
    *) sed -n '3,6s/^# //p' "${BASH_SOURCE[0]}" >&2; exit 2 ;;
esac
