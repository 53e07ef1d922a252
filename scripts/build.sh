# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash disable=SC2154
# Building and testing a preset of CMakePresets.json. Sourced by run, test and .ci/run, which set
# `root` to the top of the repository, and errexit and pipefail.

# buildPreset PRESET [TARGET...]: configures where needed and builds in build/PRESET, all or some
# targets. Everything goes to standard error, and nothing is said when there is nothing to do.
buildPreset()
{
    local preset=$1 folder="$root/build/$1" targets=()
    shift
    [[ $# -eq 0 ]] || targets=(--target "$@")
    if [[ ! -f $folder/configured || $root/CMakePresets.json -nt $folder/configured ]]; then
        echo "Building in build/$preset" >&2
        (cd "$root" && cmake --preset "$preset") >&2 && touch "$folder/configured" || return
    fi
    cmake --build "$folder" "${targets[@]}" | { grep -v '^ninja: no work to do' || true; } >&2
}

# testPreset PRESET [CTEST ARGUMENT...]: builds the preset, runs its tests, names those that were
# skipped, and prints as the last line "N passed, N failed[, N skipped]". The status tells whether
# all is well.
testPreset()
{
    local preset=$1 status=0
    local results="$root/build/$preset/results.xml"
    shift
    buildPreset "$preset" || return
    rm -f "$results"
    (cd "$root" && ctest --preset "$preset" -j "$(nproc)" --output-junit "$results" "$@") || status=$?
    skippedIn "$results" | sed 's/^/Skipped: /'
    printCounts "$results" "$status"
    return "$status"
}

# printCounts JUNIT_FILE CTEST_STATUS: the counts of one run of ctest as one line. A run that went
# wrong has at least one failure.
printCounts()
{
    local tests failed skipped disabled
    tests=$(countOf tests "$1") failed=$(countOf failures "$1")
    skipped=$(countOf skipped "$1") disabled=$(countOf disabled "$1")
    skipped=$((skipped + disabled))
    local passed=$((tests - failed - skipped))
    [[ $2 -eq 0 || $failed -gt 0 ]] || failed=1
    countLine "$passed" "$failed" "$skipped"
}

# skippedIn JUNIT_FILE: the names of the tests that were skipped or are disabled.
skippedIn()
{
    [[ ! -f $1 ]] ||
        sed -nE 's/.*<testcase name="([^"]*)".* status="(notrun|disabled)".*/\1/p' "$1"
}

# countOf WHAT JUNIT_FILE: a number out of the head of the file; 0 without it.
countOf()
{
    local number=
    [[ ! -f $2 ]] || number=$(sed -n "s/^[[:space:]]*$1=\"\([0-9]*\)\".*/\1/p" "$2" | head -n 1)
    echo "${number:-0}"
}

countLine()
{
    if [[ $3 -eq 0 ]]; then
        echo "$1 passed, $2 failed"
    else
        echo "$1 passed, $2 failed, $3 skipped"
    fi
}
