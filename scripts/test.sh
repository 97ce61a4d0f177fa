#!/usr/bin/env bash
# Builds every build that can run on Linux and runs all of their tests:
#   native  - g++, the whole suite
#   asan    - clang with AddressSanitizer and UndefinedBehaviorSanitizer, the whole suite
#   mingw   - the Windows cross-build, the whole suite under Wine (the real profile API),
#             our reader against that API on 3000 random files among it, and the release
#             archive: made with cpack, unpacked, its hublet.exe run on its examples
#   fuzz    - a short libFuzzer run over the preference-file path
# Installs what it needs from Debian's packages first (as root).
set -euo pipefail
shopt -s inherit_errexit 2>/dev/null || true
cd "$(dirname "$0")/.."

scripts/install-deps.sh cmake ninja-build g++ clang-14 libclang-rt-14-dev googletest \
  libbenchmark-dev libinih-dev g++-mingw-w64-x86-64 wine wine64 python3

jobs=$(nproc)
step() { printf '\n=== %s\n' "$*"; }
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# Runs ctest and keeps its count of tests for the closing line.
run_ctest() { ctest "$@" 2>&1 | tee -a "$log"; }

step "native: build and test"
cmake --preset native -DHUBLET_BUILD_BENCH=ON >/dev/null
cmake --build --preset native -j "$jobs"
run_ctest --preset native -j "$jobs"

step "asan: build and test under AddressSanitizer and UndefinedBehaviorSanitizer"
cmake --preset asan >/dev/null
cmake --build --preset asan -j "$jobs"
run_ctest --preset asan -j "$jobs"

step "mingw: cross-build, test under Wine"
cmake --preset mingw >/dev/null
cmake --build --preset mingw -j "$jobs"
# Make the Wine prefix once, before tests start Wine side by side, under one Wine server
# kept for the whole run: left to itself it exits a few seconds after its last program,
# and a program started in that moment cannot connect ("recvmsg: Connection reset by
# peer"). Wine's services start here, away from the output of any test, which ctest reads
# to its end.
prefix="$PWD/build/mingw/wineprefix"
mkdir -p "$prefix"
WINEPREFIX="$prefix" wineserver -p
trap 'WINEPREFIX="$prefix" wineserver -k 2>/dev/null; rm -f "$log"' EXIT
HUBLET_WINEPREFIX="$prefix" cmake/wine-run.sh wineboot -i >/dev/null 2>&1 || true
run_ctest --preset mingw -j "$jobs"

if [ -x scripts/fuzz.sh ]; then
  step "fuzz: short run"
  scripts/fuzz.sh 20
fi

total=$(sed -n 's/.*tests passed, 0 tests failed out of \([0-9]*\).*/\1/p' "$log" | awk '{s += $1} END {print s + 0}')
step "every build passed"
echo "tests: ${total} passed, 0 failed"
