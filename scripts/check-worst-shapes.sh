#!/usr/bin/env bash
# Measures hublet check on the worst shapes of preference file we know: one huge line,
# millions of unknown keys, bare lines, headers, repeated keys, UTF-8 read as code page
# 1252, NUL bytes, UTF-16LE, random bytes, and a file piped on standard input. Prints wall
# time, peak memory and peak memory over the file's size for each.
# Usage: scripts/check-worst-shapes.sh [MEGABYTES] (default 50).
set -euo pipefail
cd "$(dirname "$0")/.."
megabytes=${1:-50}
hublet=build/native/tool/hublet
[ -x "$hublet" ] || { cmake --preset native >/dev/null && cmake --build --preset native --target hublet; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 - "$work" "$megabytes" <<'PY'
import random, sys
work, size = sys.argv[1], int(sys.argv[2]) * 1024 * 1024

def repeat(name, head, line, tail=b""):
    count = (size - len(head) - len(tail)) // len(line)
    open(f"{work}/{name}.ini", "wb").write(head + line * count + tail)

def numbered(name, head, pattern):
    with open(f"{work}/{name}.ini", "wb") as f:
        f.write(head); written = len(head); n = 0
        while written < size:
            line = pattern % n; f.write(line); written += len(line); n += 1

open(f"{work}/one-line.ini", "wb").write(b"[MYVIEW]\n" + b"K" * (size - 12) + b"=1\n")
numbered("unknown-keys", b"[MYVIEW]\n", b"UNKNOWN%d=1\n")
repeat("bare-lines", b"[MYVIEW]\n", b"a\n")
numbered("headers", b"", b"[S%d]\n")
repeat("repeated-key", b"[MYVIEW]\n", b"FPS=1\n")
repeat("utf8-as-ansi", b"[MYVIEW]\n", "K=\u00e9\n".encode())
repeat("nul-bytes", b"[MYVIEW]\n" + b";" * 65536 + b"\n", b"K\0=1\n")
repeat("utf16le-bare-lines", "\ufeff[MYVIEW]\r\n".encode("utf-16-le"), "a\r\n".encode("utf-16-le"))
random.seed(1)
open(f"{work}/binary.ini", "wb").write(random.randbytes(size))
PY
printf '%-20s %8s %12s %8s\n' shape seconds 'peak memory' 'x size'
measure() {
  local shape=$1; shift
  /usr/bin/time -f "%e %M" -o "$work/time" "$@" >/dev/null 2>&1 || true
  read -r seconds kilobytes < <(tail -n 1 "$work/time")
  printf '%-20s %8s %9s MB %8s\n' "$shape" "$seconds" "$((kilobytes / 1024))" \
    "$(awk -v k="$kilobytes" -v m="$megabytes" 'BEGIN { printf "%.2f", k / 1024 / m }')"
}
for file in "$work"/*.ini; do
  shape=$(basename "$file" .ini)
  measure "$shape" "$hublet" check "$file"
done
measure "stdin (unknown-keys)" sh -c "cat '$work/unknown-keys.ini' | '$hublet' check -"
