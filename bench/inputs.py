"""The files that the scripts of this folder measure with: a receiver's folders and large files of
each kind. Records have different names and positions, as far as a kind has them."""

import datetime
import functools
import math
import operator

FOLDERS = "MyPOIs=My POIs\r\nGeocaches=Geocaches\r\nRoutes=Routes\r\nTrackLogs=Track Logs\r\n"
START = datetime.datetime(2008, 8, 11, 6, 15, 48, tzinfo=datetime.timezone.utc)


def make_receiver(folder):
    """A receiver without data."""
    for name in ["USBTRANS", "My POIs", "Geocaches", "Routes", "Track Logs"]:
        (folder / name).mkdir(parents=True)
    (folder / "USBTRANS/UNIT_ID.DAT").write_bytes(b"Serial Number=1\r\n")
    (folder / "USBTRANS/LANGUAGE.DAT").write_bytes(FOLDERS.encode())


def position(i):
    """Latitude and longitude in degrees: a slow spiral, so no two points are the same."""
    return 46.5 + 0.3 * math.sin(i / 5000), 7.3 + i / 1e6


def coordinates(i):
    """The fields of that position in a sentence."""
    latitude, longitude = position(i)
    return (f"{int(latitude):02}{latitude % 1 * 60:08.5f},N,"
            f"{int(longitude):03}{longitude % 1 * 60:08.5f},E")


def track_body(i):
    time = START + datetime.timedelta(seconds=i)
    return (f"PMGNTRK,{coordinates(i)},{1000 + i % 1000:05},M,"
            f"{time:%H%M%S}.00,A,,{time:%d%m%y}")


def waypoint_body(i):
    return f"PMGNWPL,{coordinates(i)},0001529,M,Point {i},by the lake,ah"


def geocache_body(i):
    return (f"PMGNGEO,{coordinates(i)},0001529,M,Cache {i},bring a pen,bergziege,under a stone,"
            "Traditional,140508,,1.5,4")


def sentence(body):
    return f"${body}*{functools.reduce(operator.xor, body.encode()):02X}"


def write_sentences(path, body, count):
    """A receiver's file of that many sentences."""
    with path.open("w", newline="") as file:
        for i in range(count):
            file.write(sentence(body(i)) + "\r\n")
        file.write(sentence("PMGNCMD,END"))


def write_gpx_waypoints(path, count):
    """Waypoints all over the globe."""
    with path.open("w") as file:
        file.write('<gpx xmlns="http://www.topografix.com/GPX/1/1">\n')
        for i in range(count):
            latitude = -60 + i * 7919 % 1_200_000 / 10_000
            longitude = -170 + i * 104_729 % 3_400_000 / 10_000
            file.write(f'<wpt lat="{latitude:.5f}" lon="{longitude:.5f}"><ele>{i % 3000}</ele>'
                       f"<name>WP{i:07}</name><sym>Campground</sym></wpt>\n")
        file.write("</gpx>\n")


def write_gpx_track(path, count):
    """One track of one segment."""
    with path.open("w") as file:
        file.write('<gpx xmlns="http://www.topografix.com/GPX/1/1">\n<trk><trkseg>\n')
        for i in range(count):
            latitude, longitude = position(i)
            time = START + datetime.timedelta(seconds=i)
            file.write(f'<trkpt lat="{latitude:.6f}" lon="{longitude:.6f}">'
                       f"<ele>{1000 + i % 1000}</ele><time>{time:%Y-%m-%dT%H:%M:%SZ}</time>"
                       "</trkpt>\n")
        file.write("</trkseg></trk>\n</gpx>\n")
