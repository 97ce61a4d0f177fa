#!/usr/bin/env python3
"""The yardstick for `hublet stamps`: a walker written the way one would in Python with
olefile (Debian: python3-olefile). It reads the same three summary properties (2 title,
3 subject, 4 author) of every *.max file under the folders given, and prints a CSV line
per file, in the same order as hublet: by name within each folder.

Usage: stamps_olefile.py FOLDER...
"""
import csv
import os
import sys

import olefile

SUMMARY = "\x05SummaryInformation"
TITLE, SUBJECT, AUTHOR = 2, 3, 4


def text(value):
    """A string property up to its first NUL, as hublet reads it."""
    if value is None:
        return ""
    if isinstance(value, bytes):
        value = value.decode("utf-8", "replace")
    return str(value).split("\x00", 1)[0]


def stamp(path):
    try:
        with olefile.OleFileIO(path) as ole:
            if not ole.exists(SUMMARY):
                return ["no-summary-information", "", "", ""]
            properties = ole.getproperties(SUMMARY, convert_time=False)
            return ["read"] + [text(properties.get(key)) for key in (SUBJECT, AUTHOR, TITLE)]
    except Exception as error:  # a damaged file is a row, not the end of the walk
        return ["unreadable", "", "", str(error)]


def main(folders):
    out = csv.writer(sys.stdout, lineterminator="\r\n")
    out.writerow(["file", "status", "saver", "previous_saver", "saved_as"])
    for folder in folders:
        for root, dirs, files in os.walk(folder):
            dirs.sort()
            for name in sorted(files):
                if name.lower().endswith(".max"):
                    path = os.path.join(root, name)
                    out.writerow([path] + stamp(path))


if __name__ == "__main__":
    main(sys.argv[1:])
