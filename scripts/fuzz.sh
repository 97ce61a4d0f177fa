#!/usr/bin/env bash
# Builds the libFuzzer target with clang-14 (AddressSanitizer and UndefinedBehaviorSanitizer
# on, the libraries under test instrumented too) and feeds it arbitrary preference files.
#
#   scripts/fuzz.sh            short run, 60 s: the one the test command runs
#   scripts/fuzz.sh 3600       a longer run, e.g. an hour before a release
#   HUBLET_FUZZ_JOBS=2 scripts/fuzz.sh 3600    the same on two cores
#
# The seeds are fuzz/corpus/ and the words fuzz/preference.dict. What the fuzzer finds on
# top of them collects in build/fuzz/corpus/ and is reused by the next run. A crash, a sanitizer report, a
# broken invariant or an input slower than 10 s is written to build/fuzz/artifacts/
# and makes this script exit non-zero; replay one with
#   build/fuzz/fuzz/preference_file_fuzzer build/fuzz/artifacts/<file>
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
jobs=${HUBLET_FUZZ_JOBS:-1}
build=${HUBLET_FUZZ_BUILD_DIR:-build/fuzz}
tool=${HUBLET_FUZZ_WITH_TOOL:-ON}

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++-14 -DHUBLET_BUILD_FUZZ=ON -DHUBLET_BUILD_TESTS=OFF \
  -DHUBLET_BUILD_TOOL="$tool" >/dev/null
cmake --build "$build" --target preference_file_fuzzer -j "$(nproc)"

mkdir -p "$build/corpus" "$build/artifacts"
fuzzer="$build/fuzz/preference_file_fuzzer"
options=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536
         -dict=fuzz/preference.dict -print_final_stats=1 -artifact_prefix="$build/artifacts/")
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

# With more than one job, libFuzzer's fork mode runs that many workers on one corpus.
[ "$jobs" -gt 1 ] && options+=(-fork="$jobs")
"$fuzzer" "${options[@]}" "$build/corpus" fuzz/corpus
echo "fuzz: no crash in ${seconds} s"
