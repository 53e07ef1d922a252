#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# scripts/fuzz.sh TARGET|all SECONDS: fuzzes one target, such as xmlReader, or all, each so long.
# Inputs that add coverage to fuzz/corpus are listed. With 0 seconds nothing new is tried: the seeds
# of models are replayed, with the same result each time. Environment:
#   OMT_MODELS=FOLDER   half of the time starts from seeds of these models as well
#   FUZZ_KEEP=FOLDER    gets the inputs in a tar: "corpus" may go into fuzz/corpus; "fromModels" may
#                       hold what others wrote and may not; "faults" is what ended a run
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
. "$root/scripts/packages.sh"
. "$root/scripts/build.sh"

if [[ $# -ne 2 || ! $2 =~ ^[0-9]+$ || ! ($1 == all || -d $root/fuzz/corpus/$1) ]]; then
    sed -n '3,9s/^# //p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
names=("$1")
[[ $1 != all ]] || mapfile -t names < <(cd "$root/fuzz/corpus" && printf '%s\n' *)
programs=()
for name in "${names[@]}"; do programs+=("fuzz${name^}"); done
seconds=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
new="$scratch/new"
mkdir -p "$new/faults"
status=0

# fuzzFrom KIND NAME FOLDER...: fuzzes from the inputs of the folders; what adds coverage to them goes
# to $new/KIND/NAME.
fuzzFrom()
{
    local kind=$1 name=$2 program="$root/build/sanitize/bin/fuzz${2^}"
    local found="$scratch/found" all="$scratch/all" folder input
    shift 2
    rm -rf "$found" "$all"
    mkdir -p "$found" "$all" "$new/$kind/$name"
    echo "--- $name, $kind"
    "$program" -max_total_time="$share" -timeout=30 -rss_limit_mb=2048 -print_final_stats=1 \
        -verbosity=0 -artifact_prefix="$new/faults/$name-" "$found" "$@" || status=1

    # Only those that add something to each other.
    for folder; do cp -r "$folder/." "$all"; done
    ls "$all" > "$scratch/old"
    "$program" -merge=1 -verbosity=0 "$all" "$found" > "$scratch/merge" 2>&1 ||
        { cat "$scratch/merge"; status=1; }
    while read -r input; do
        mv "$all/$input" "$new/$kind/$name"
        echo "new: $name/$input, $(stat -c %s "$new/$kind/$name/$input") octets"
    done < <(find "$all" -type f -printf '%f\n' | sort | grep -vxFf "$scratch/old")
}

# replay NAME FOLDER: runs the inputs of a folder, those of all datatypes of large models among them,
# which take 12 seconds; a slow one is no fault.
replay()
{
    echo "--- $1, $(find "$2" -type f | wc -l) seeds of models"
    "$root/build/sanitize/bin/fuzz${1^}" -runs=0 -timeout=120 -report_slow_units=120 \
        -rss_limit_mb=2048 -verbosity=0 -artifact_prefix="$new/faults/$1-" "$2" || status=1
}

# keepNew: packs what was found, and says how much it is.
keepNew()
{
    find "$new" -type d -empty -delete
    local count=0 tar
    [[ ! -d $new ]] || count=$(find "$new" -type f | wc -l)
    echo "$count new inputs"
    if [[ $count -gt 0 && -n ${FUZZ_KEEP:-} ]]; then
        mkdir -p "$FUZZ_KEEP"
        tar="$FUZZ_KEEP/newInputs-$(date +%Y%m%d-%H%M%S).tar.gz"
        tar -czf "$tar" -C "$new" .
        echo "They are in $tar"
    fi
}

# Faults stay in the build folder whether or not something is kept.
keepFaults()
{
    local fault
    for fault in "$new"/faults/*; do
        [[ -f $fault ]] || continue
        mkdir -p "$root/build/fuzz" && cp "$fault" "$root/build/fuzz"
        echo "FAULT: build/fuzz/$(basename "$fault")"
    done
}

installPackages build test ci
buildPreset sanitize "${programs[@]}"
[[ -z ${OMT_MODELS:-} ]] || "$root/scripts/fuzzSeeds.py" "$OMT_MODELS" "$scratch/seeds"
for name in "${names[@]}"; do
    corpus="$root/fuzz/corpus/$name" seeds="$scratch/seeds/$name" share=$seconds
    if [[ $seconds -eq 0 ]]; then
        # The corpus is replayed by the tests of every preset.
        [[ ! -d $seeds ]] || replay "$name" "$seeds"
        continue
    fi
    if [[ -d $seeds ]]; then
        share=$(((seconds + 1) / 2))
        fuzzFrom fromModels "$name" "$corpus" "$seeds"
    fi
    fuzzFrom corpus "$name" "$corpus"
done
keepFaults
keepNew
exit $status
