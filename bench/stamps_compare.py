#!/usr/bin/env python3
"""hublet stamps measured: against a Python walker using olefile over the same files, side
by side in one run with the files in the page cache; the reads it makes per file (strace);
its memory at two archive sizes; and an archive on storage that waits 1 ms on every read
(bench/slow_pread.cpp put before the C library).

Needs a build with the benchmarks (cmake --preset native -DHUBLET_BUILD_BENCH=ON), strace,
and olefile for the Python that runs this (Debian: python3-olefile).

Usage: bench/stamps_compare.py [--build build/native] [--runs 11] [--files 2000]
                               [--slow-files 10000] [--delay-us 1000] [--jobs 16]
"""
import argparse
import csv
import io
import os
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))


def run(command, env=None):
    """Wall time in seconds and standard output of one run."""
    start = time.perf_counter()
    process = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=env)
    seconds = time.perf_counter() - start
    if process.returncode not in (0, 1):
        sys.exit("failed (%d): %s" % (process.returncode, " ".join(command)))
    return seconds, process.stdout


def peak_memory_kib(command):
    """As /usr/bin/time counts it: from the program's start (a fork of Python would count
    Python's memory too)."""
    result = subprocess.run(["/usr/bin/time", "-f", "%M"] + command, stdout=subprocess.DEVNULL,
                            stderr=subprocess.PIPE, text=True)
    return int(result.stderr.strip().splitlines()[-1])


def balanced_order(names, round_number):
    """Williams' design: 0, 1, n-1, 2, n-2, ... shifted by the round; for an odd count the
    rounds alternate with the same orders reversed."""
    count = len(names)
    first = [0]
    for step in range(1, count):
        first.append((step + 1) // 2 if step % 2 else count - step // 2)
    shift = round_number if count % 2 == 0 else round_number // 2
    order = [names[(index + shift) % count] for index in first]
    return order[::-1] if count % 2 and round_number % 2 else order


def rows(csv_bytes, columns):
    reader = csv.reader(io.StringIO(csv_bytes.decode("utf-8")))
    next(reader)
    return [tuple(row[i] for i in columns) for row in reader]


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", default="build/native")
    parser.add_argument("--runs", type=int, default=11)
    parser.add_argument("--files", type=int, default=2000)
    parser.add_argument("--slow-files", type=int, default=10000)
    parser.add_argument("--delay-us", type=int, default=1000)
    parser.add_argument("--jobs", type=int, default=16)
    args = parser.parse_args()
    hublet = os.path.join(args.build, "tool", "hublet")
    make_archive = os.path.join(args.build, "bench", "make_scene_archive")
    slow_pread = os.path.join(args.build, "bench", "libslow_pread.so")

    folder = tempfile.mkdtemp(prefix="hublet-stamps-")
    try:
        archive = os.path.join(folder, "archive")
        subprocess.run([make_archive, archive, str(args.files)], check=True)
        stamps = [hublet, "stamps", "--format", "csv", "--jobs", str(args.jobs), archive]
        one_job = stamps[:5] + ["1", archive]
        walker = [sys.executable, os.path.join(HERE, "stamps_olefile.py"), archive]

        # Both must read the same stamps, and the cache is warm after this.
        ours = rows(run(stamps)[1], (0, 2, 3, 4))
        theirs = rows(run(walker)[1], (0, 2, 3, 4))
        if ours != theirs:
            sys.exit("hublet and the olefile walker read different stamps")

        commands = {"olefile": walker, "hublet --jobs %d" % args.jobs: stamps, "hublet --jobs 1": one_job}
        cores = os.cpu_count() or 1
        if cores not in (1, args.jobs):
            commands["hublet --jobs %d" % cores] = stamps[:5] + [str(cores), archive]
        # Each round in another order, so that every reader follows every other one equally
        # often (a run that follows Python's finds the processor's caches full of Python's
        # data): the rows of a balanced Latin square.
        times = {name: [] for name in commands}
        names = list(commands)
        for round_number in range(args.runs):
            for name in balanced_order(names, round_number):
                times[name].append(run(commands[name])[0])
        olefile_median = statistics.median(times["olefile"])
        print("%d files in the page cache, median of %d runs side by side:" % (args.files, args.runs))
        for name, values in times.items():
            median = statistics.median(values)
            print("  %-17s %8.1f ms  %6.1f times olefile's speed" % (name, 1000 * median, olefile_median / median))

        # Reads per file, as the system counts them.
        trace = subprocess.run(["strace", "-f", "-c", "-e", "trace=pread64,openat"] + stamps,
                               stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True).stderr
        calls = {m.group(2): int(m.group(1)) for m in re.finditer(r"^\s*[\d.]+\s+[\d.]+\s+\d+\s+(\d+)\s+(?:\d+\s+)?(\w+)$",
                                                                  trace, re.M)}
        print("reads per file (strace -c): %.2f pread64, %.2f openat"
              % (calls.get("pread64", 0) / args.files, calls.get("openat", 0) / args.files))

        # The same archive made larger: memory must not follow the number of files.
        slow_archive = os.path.join(folder, "slow")
        subprocess.run([make_archive, slow_archive, str(args.slow_files)], check=True)
        for jobs in (args.jobs, 1):
            command = stamps[:5] + [str(jobs)]
            print("peak memory, --jobs %d: %d KiB for %d files, %d KiB for %d files"
                  % (jobs, peak_memory_kib(command + [archive]), args.files,
                     peak_memory_kib(command + [slow_archive]), args.slow_files))

        # Every read waits, as on a network share; the files themselves are in the cache.
        env = dict(os.environ, LD_PRELOAD=os.path.abspath(slow_pread), HUBLET_PREAD_DELAY_US=str(args.delay_us))
        print("%d files at %d µs a read:" % (args.slow_files, args.delay_us))
        for jobs in (args.jobs, 2 * args.jobs):
            seconds = run([hublet, "stamps", "--format", "csv", "--jobs", str(jobs), slow_archive], env)[0]
            print("  --jobs %-3d %6.2f s" % (jobs, seconds))
    finally:
        shutil.rmtree(folder)


if __name__ == "__main__":
    main()
