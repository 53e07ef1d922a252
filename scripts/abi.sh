#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The binary interface of the library against the one of the last release, abi/libomtReader.abi.xz:
#   scripts/abi.sh check      fails where something that was there is gone or another
#   scripts/abi.sh refresh    writes the file anew, for a release
# The library is built as it is released, with debugging information beside it.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
kept="$root/abi/libomtReader.abi.xz"
folder="$root/build/abi"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# writeInterface FILE: what programs see; not what the standard library has inside.
writeInterface()
{
    cmake --preset release -S "$root" -B "$folder" -DCMAKE_CXX_FLAGS=-g -DOMTREADER_BUILD_TOOL=OFF \
          -DOMTREADER_BUILD_EXAMPLES=OFF > /dev/null
    cmake --build "$folder" >&2
    cmake --install "$folder" --prefix "$scratch/prefix" > /dev/null
    abidw --exported-interfaces-only --drop-private-types --headers-dir "$scratch/prefix/include" \
          --drop-undefined-syms --no-corpus-path --no-comp-dir-path --no-show-locs \
          --out-file "$1" "$folder/lib/libomtReader.so.1"
}

cd "$root"
case ${1:-} in
    check)
        writeInterface "$scratch/now.abi"
        xz -dc "$kept" > "$scratch/kept.abi"
        abidiff --no-added-syms "$scratch/kept.abi" "$scratch/now.abi"
        echo "The interface has all that the last release had" ;;
    refresh)
        writeInterface "$scratch/now.abi"
        xz -9ec "$scratch/now.abi" > "$kept" ;;
    *)
        sed -n '3,6s/^# //p' "${BASH_SOURCE[0]}" >&2
        exit 2 ;;
esac
