#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# The binary interfaces of the libraries against those of the last release, abi/LIBRARY.abi.xz:
#   scripts/abi.sh check      fails where something that was there is gone or another
#   scripts/abi.sh refresh    writes the files anew, for a release
# They are built as they are packed, with debugging information beside them.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
. "$root/scripts/build.sh"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# The one table: a library, its target, the component and the folder of its installed headers.
libraries="
omtReader  omtReader  development        include/omtReader-1
omt        libomt     engineDevelopment  include/omt-0"

# writeInterface LIBRARY HEADERS FILE: what programs see; not what the standard library has inside.
writeInterface()
{
    abidw --exported-interfaces-only --drop-private-types --headers-dir "$scratch/prefix/$2" \
          --drop-undefined-syms --no-corpus-path --no-comp-dir-path --no-show-locs \
          --out-file "$3" "$(readlink -f "$root/build/package/lib/lib$1.so")"
}

# checkInterface LIBRARY HEADERS
checkInterface()
{
    writeInterface "$1" "$2" "$scratch/now.abi"
    xz -dc "$root/abi/lib$1.abi.xz" > "$scratch/kept.abi"
    abidiff --no-added-syms "$scratch/kept.abi" "$scratch/now.abi"
    echo "The interface of lib$1 has all that the last release had"
}

# refreshInterface LIBRARY HEADERS
refreshInterface()
{
    writeInterface "$1" "$2" "$scratch/now.abi"
    xz -9ec "$scratch/now.abi" > "$root/abi/lib$1.abi.xz"
}

if [[ ${1:-} != check && ${1:-} != refresh ]]; then
    sed -n '3,6s/^# //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
while read -r library target component headers; do
    [[ -n $library ]] || continue
    buildPreset package "$target"
    cmake --install "$root/build/package" --component "$component" --prefix "$scratch/prefix" \
        > /dev/null
    "$1Interface" "$library" "$headers"
done <<< "$libraries"
