#!/usr/bin/env python3
"""Prints the table of platform/directory_names.cpp: the simple upper-case mapping of every
UTF-16 code unit outside the surrogates, as ranges {first, last, step, delta} (every step-th
unit from first to last maps to itself plus delta). The mapping is the C library's
towupper in the C.UTF-8 locale, which glibc builds from UnicodeData.txt's simple upper-case
field; the script checks the ranges against it unit by unit before printing them."""
import ctypes

libc = ctypes.CDLL("libc.so.6")
if not libc.setlocale(6, b"C.UTF-8"):  # LC_ALL
    raise SystemExit("the C.UTF-8 locale is missing")
libc.towupper.restype = ctypes.c_uint32
libc.towupper.argtypes = [ctypes.c_uint32]

units = [c for c in range(0x10000) if not 0xD800 <= c < 0xE000]
ranges = []
for c in units:
    delta = libc.towupper(c) - c
    if delta == 0:
        continue
    if ranges:
        last = ranges[-1]
        if last[3] == delta and last[0] == last[1] and c - last[1] in (1, 2):
            last[1], last[2] = c, c - last[1]
            continue
        if last[3] == delta and last[0] != last[1] and c - last[1] == last[2]:
            last[1] = c
            continue
    ranges.append([c, c, 1, delta])

for c in units:
    upper = c
    for first, last, step, delta in ranges:
        if first <= c <= last and (c - first) % step == 0:
            upper = c + delta
    assert upper == libc.towupper(c), hex(c)

cells = ["{0x%04X, 0x%04X, %d, %d}" % tuple(r) for r in ranges]
for i in range(0, len(cells), 4):
    print("    " + ", ".join(cells[i:i + 4]) + ",")
