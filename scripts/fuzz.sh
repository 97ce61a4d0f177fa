#!/usr/bin/env bash
# Builds every libFuzzer target (fuzz/*_fuzzer.cpp) with clang-14, AddressSanitizer and
# UndefinedBehaviorSanitizer on and the libraries under test instrumented too, and runs
# each in turn.
#
#   scripts/fuzz.sh                 each target 20 s: the short run the test command makes
#   scripts/fuzz.sh 3600            each target an hour, e.g. before a release
#   HUBLET_FUZZ_RUNS=10000000 scripts/fuzz.sh     each target ten million inputs instead
#   HUBLET_FUZZ_TARGETS="number_fuzzer" scripts/fuzz.sh   only the named targets
#   HUBLET_FUZZ_JOBS=2 scripts/fuzz.sh 3600       two workers per target (fork mode)
#   HUBLET_FUZZ_CORPUS=~/hublet-corpus scripts/fuzz.sh   keep what the runs find there
#
# Seeds are fuzz/corpus/ and the words fuzz/preference.dict (for scene files:
# fuzz/scene_corpus/, no words). What a run finds collects in a folder per target under
# build/fuzz/corpus/ (or HUBLET_FUZZ_CORPUS) and is reused by the next run. A crash, a
# sanitizer report, a broken invariant or an input slower than 10 s is written to
# build/fuzz/artifacts/ and makes this script exit non-zero; replay one with
# build/fuzz/fuzz/TARGET build/fuzz/artifacts/<file>. Each target's whole output is in
# build/fuzz/logs/TARGET.log; the script prints how many inputs ran, and how fast.
set -euo pipefail
# A corpus folder given relative to where the command was typed stays there.
[ -z "${HUBLET_FUZZ_CORPUS:-}" ] || HUBLET_FUZZ_CORPUS=$(realpath -m "$HUBLET_FUZZ_CORPUS")
cd "$(dirname "$0")/.."

seconds=${1:-20}
runs=${HUBLET_FUZZ_RUNS:-}
jobs=${HUBLET_FUZZ_JOBS:-1}
build=${HUBLET_FUZZ_BUILD_DIR:-build/fuzz}
corpus=${HUBLET_FUZZ_CORPUS:-$build/corpus}
tool=${HUBLET_FUZZ_WITH_TOOL:-ON}
targets=${HUBLET_FUZZ_TARGETS:-$(ls fuzz/*_fuzzer.cpp | xargs -n1 basename | sed 's/\.cpp$//' | tr '\n' ' ')}

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_CXX_COMPILER=clang++-14 -DHUBLET_BUILD_FUZZ=ON -DHUBLET_BUILD_TESTS=OFF \
  -DHUBLET_BUILD_TOOL="$tool" >/dev/null
# shellcheck disable=SC2086
cmake --build "$build" --target $targets -j "$(nproc)"

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
mkdir -p "$build/artifacts" "$build/logs"
for target in $targets; do
  mkdir -p "$corpus/$target"
  # The whole-session target takes files of any size; the narrow ones stay small and fast,
  # yet long enough for a value to overrun the plug-in's 260-character buffer.
  max_len=512 seeds=fuzz/corpus words=(-dict=fuzz/preference.dict)
  [ "$target" = preference_file_fuzzer ] && max_len=65536
  # Scene files: seeds of their own, no preference words, room for a few sectors of
  # version 4 (4096 bytes each: header, FAT, directory, mini FAT, a stream or two).
  [ "$target" = summary_file_fuzzer ] && max_len=32768 seeds=fuzz/scene_corpus words=()
  options=(-timeout=10 -rss_limit_mb=2048 -max_len="$max_len" "${words[@]}"
           -print_final_stats=1 -artifact_prefix="$build/artifacts/$target-")
  if [ -n "$runs" ]; then options+=(-runs="$runs"); else options+=(-max_total_time="$seconds"); fi
  # With more than one job, libFuzzer's fork mode runs that many workers on one corpus.
  [ "$jobs" -gt 1 ] && options+=(-fork="$jobs")
  log="$build/logs/$target.log"
  status=0
  "$build/fuzz/$target" "${options[@]}" "$corpus/$target" "$seeds" >"$log" 2>&1 || status=$?
  grep -E '^(==[0-9]+==|invariant|SUMMARY)' "$log" || true
  # Inputs run and their rate: libFuzzer's closing figures, or in fork mode its last
  # progress line.
  done_runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -n 1)
  if [ -z "$done_runs" ]; then
    done_runs=$(sed -n 's/^#\([0-9]*\):.*/\1/p' "$log" | tail -n 1)
    rate=$(sed -n 's/^#[0-9]*:.* exec\/s:\{0,1\} *\([0-9]*\).*/\1/p' "$log" | tail -n 1)
  fi
  echo "$target: ${done_runs:-?} inputs, ${rate:-?} a second, corpus $corpus/$target ($(ls "$corpus/$target" | wc -l) files)"
  [ "$status" -eq 0 ] || { echo "fuzz: $target failed (status $status); see $log and $build/artifacts/" >&2; exit 1; }
done
echo "fuzz: no crash in any target (${targets% })"
