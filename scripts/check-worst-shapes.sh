#!/usr/bin/env bash
# Measures hublet check on the worst shapes of preference file: one huge line, millions of
# unknown keys, millions of bare lines, random bytes. Prints wall time and peak memory
# for each. Usage: scripts/check-worst-shapes.sh [MEGABYTES] (default 50).
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
open(f"{work}/one-line.ini", "wb").write(b"[MYVIEW]\n" + b"K" * (size - 12) + b"=1\n")
with open(f"{work}/unknown-keys.ini", "wb") as f:
    f.write(b"[MYVIEW]\n"); n = 0; written = 9
    while written < size:
        line = b"UNKNOWN%d=1\n" % n; f.write(line); written += len(line); n += 1
open(f"{work}/bare-lines.ini", "wb").write(b"[MYVIEW]\n" + b"a\n" * ((size - 9) // 2))
random.seed(1)
open(f"{work}/binary.ini", "wb").write(random.randbytes(size))
PY
printf '%-18s %10s %14s\n' shape seconds 'peak memory'
for shape in one-line unknown-keys bare-lines binary; do
  /usr/bin/time -f "%e %M" -o "$work/time" "$hublet" check "$work/$shape.ini" >/dev/null || true
  read -r seconds kilobytes < <(tail -n 1 "$work/time")
  printf '%-18s %10s %11s MB\n' "$shape" "$seconds" "$((kilobytes / 1024))"
done
