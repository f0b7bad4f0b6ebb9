#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Turns the tables of places and coasts into the binary forms that are built into the program.

Usage: embed.py places.bin land.bin

places.tsv has a line for each place: latitude and longitude in thousandths of a degree, population,
country, the index of its time zone in zones.txt, and name. land.txt has a line for each coast:
longitude and latitude of its first point in 150ths of a degree, then the differences from point to
point. scripts/make-places.mjs made them. The binary forms are described in PlaceTable.h and
LandTable.h.
"""

import bisect
import itertools
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


def place_table():
    places, texts = read_places(), Texts()
    zones = (FOLDER / "zones.txt").read_text(encoding="utf-8").splitlines()
    zone_texts = [texts.add(zone) for zone in zones]
    records = [struct.pack("<iiIHH", latitude, longitude, texts.add(name), zone,
                           min(round(population / 100), 0xFFFF))
               for _, longitude, latitude, population, zone, name in places]
    starts = [bisect.bisect_left(places, (band,)) for band in range(BANDS + 1)]
    table = struct.pack(f"<{1 + len(starts) + len(zone_texts)}I",
                        len(zone_texts), *starts, *zone_texts)
    return table + b"".join(records) + texts.bytes


def read_coasts():
    """Returns each coast as longitudes and latitudes in turn."""
    for line in (FOLDER / "land.txt").read_text(encoding="utf-8").splitlines():
        steps = [int(word) for word in line.split()]
        coast = [0] * len(steps)
        coast[0::2] = itertools.accumulate(steps[0::2])
        coast[1::2] = itertools.accumulate(steps[1::2])
        yield coast


def land_table():
    coasts = list(read_coasts())
    starts = [0, *itertools.accumulate(len(coast) // 2 for coast in coasts)]
    numbers = list(itertools.chain.from_iterable(coasts))
    return struct.pack(f"<{1 + len(starts)}I{len(numbers)}h", len(coasts), *starts, *numbers)


def main(places, land):
    pathlib.Path(places).write_bytes(place_table())
    pathlib.Path(land).write_bytes(land_table())


if __name__ == "__main__":
    main(*sys.argv[1:])
