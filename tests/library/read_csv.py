#!/usr/bin/python3
"""Reads a CSV file as a spreadsheet would: python3 read_csv.py FILE SEPARATOR DECIMAL_MARK.
Prints the rows as JSON; a cell that is a number once its decimal mark is a point becomes a number."""
import csv
import json
import sys

path, separator, mark = sys.argv[1], sys.argv[2], sys.argv[3]


def cell(text):
    try:
        return float(text.replace(mark, ".")) if text else text
    except ValueError:
        return text


with open(path, newline="", encoding="utf-8") as f:
    rows = list(csv.reader(f, delimiter=separator, strict=True))
header, body = rows[0], rows[1:]
print(json.dumps({"header": header, "rows": [[body_row[0], body_row[1], body_row[2]] + [cell(c) for c in body_row[3:]]
                                              for body_row in body]}))
