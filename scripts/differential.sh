#!/usr/bin/env bash
# Our profile reader against the real Windows profile API (under Wine) on random files:
# builds the Windows cross-build's profile_differential and runs it.
#
#   scripts/differential.sh                 seed 1, 3000 files: what the test command runs
#   scripts/differential.sh 7 100000        seed 7, files 0 to 99999
#   scripts/differential.sh 7 1 4242        seed 7, file 4242 alone: a failure replayed
#   HUBLET_DIFFERENTIAL_JOBS=2 scripts/differential.sh 7 100000   the files split over two
#                                           Wine processes side by side
#
# A disagreement that is not one of Wine's known differences fails the run and prints the
# seed and the file's number, and the file, shrunk, and the lookup as rows for
# tests/platform/profile_cases.txt.
set -euo pipefail
cd "$(dirname "$0")/.."

seed=${1:-1}
count=${2:-3000}
start=${3:-0}
jobs=${HUBLET_DIFFERENTIAL_JOBS:-1}

cmake --preset mingw >/dev/null
cmake --build --preset mingw --target profile_differential -j "$(nproc)"
export HUBLET_WINEPREFIX="$PWD/build/mingw/wineprefix"
cmake/wine-run.sh wineboot -i >/dev/null 2>&1 || true

# Each job takes its own stretch of the files; the scratch files go in the build folder.
cd build/mingw/tests/platform
pids=()
for ((job = 0; job < jobs; ++job)); do
  first=$((count * job / jobs))
  ../../../../cmake/wine-run.sh ./profile_differential.exe "$seed" $((count * (job + 1) / jobs - first)) $((start + first)) &
  pids+=($!)
done
status=0
for pid in "${pids[@]}"; do wait "$pid" || status=1; done
exit "$status"
