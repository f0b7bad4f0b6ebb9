#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Turns the table of places into the binary form that is built into the program.

Usage: embed.py places.bin

places.tsv has a line for each place: latitude and longitude in thousandths of a degree, population,
country, the index of its time zone in zones.txt, and name; scripts/make-places.mjs made it. The
binary form is described in PlaceTable.h.
"""

import bisect
import pathlib
import struct
import sys

FOLDER = pathlib.Path(__file__).resolve().parent
BANDS = 180  # of one degree of latitude


class Texts:
    """Texts one behind the other, each ended by a zero byte."""

    def __init__(self):
        self.bytes = bytearray()

    def add(self, text):
        start = len(self.bytes)
        self.bytes += text.encode("utf-8") + b"\0"
        return start


def read_places():
    """Returns the places by band, from the south, and in a band by longitude."""
    places = []
    for line in (FOLDER / "places.tsv").read_text(encoding="utf-8").splitlines():
        latitude, longitude, population, country, zone, name = line.split("\t")
        band = min(int(latitude) // 1000 + 90, BANDS - 1)
        places.append((band, int(longitude), int(latitude), int(population), int(zone),
                       country + name))
    return sorted(places)


def main(output):
    places, texts = read_places(), Texts()
    zones = (FOLDER / "zones.txt").read_text(encoding="utf-8").splitlines()
    zone_texts = [texts.add(zone) for zone in zones]
    records = [struct.pack("<iiIHH", latitude, longitude, texts.add(name), zone,
                           min(round(population / 100), 0xFFFF))
               for _, longitude, latitude, population, zone, name in places]
    starts = [bisect.bisect_left(places, (band,)) for band in range(BANDS + 1)]
    table = struct.pack(f"<{1 + len(starts) + len(zone_texts)}I",
                        len(zone_texts), *starts, *zone_texts)
    pathlib.Path(output).write_bytes(table + b"".join(records) + texts.bytes)


if __name__ == "__main__":
    main(*sys.argv[1:])
