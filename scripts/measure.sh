#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Measures on this machine, which ought to be quiet: prints the ratios of docs/performance.md and
# draws docs/growth.svg anew. Arguments go to omt_ratios. Takes some minutes.
set -euo pipefail
root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
. "$root/scripts/packages.sh"
. "$root/scripts/build.sh"

installPackages build measure
buildPreset benchmark
"$root/build/benchmark/bin/omt_ratios" "$@"
"$root/build/benchmark/bin/omt_growth" | gnuplot > "$root/docs/growth.svg"
