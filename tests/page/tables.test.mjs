// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { tablesOf } from "../../host/page/model/tables.js";
import { collectionOf, rawPoint, rawRoute, rawTrack } from "./fixtures.mjs";

// The texts of the first row of the first table, by column title.
function firstRow(lists) {
  const [{ columns, items }] = tablesOf(collectionOf(lists));
  return Object.fromEntries(columns.map(({ title, value, text = value }) =>
    [title, text(items[0])]));
}

test("only kinds that have items have tables", () => {
  assert.deepEqual(tablesOf(collectionOf({})), []);
  const tables = tablesOf(collectionOf({ routes: [rawRoute([])], geocaches: [rawPoint(0, 0)] }));
  assert.deepEqual(tables.map(({ title }) => title), ["Routes", "Geocaches"]);
});

test("a track's row has its figures", () => {
  const values = {
    name: "Day 1", first: 1717243200, last: 1717250400, moving: 3600, kilometres: 7.5, ascent: 310,
    descent: 1205.4, place: "near Wanaka", zone: "Pacific/Auckland",
  };
  assert.deepEqual(firstRow({ tracks: [rawTrack([[0, 0], [0, 0]], values)] }), {
    "Name": "Day 1", "Where": "near Wanaka", "From": "2024-06-02 00:00:00", "To": "02:00:00",
    "Time zone": "Auckland time",
    "Time span": "2 h 00 min", "Moving": "1 h 00 min", "Length": "7.50 km", "Ascent": "310 m",
    "Descent": "1,205 m", "Points": "2",
  });
});

test("a track without times and elevations has dashes", () => {
  const { "From": from, "To": to, "Time span": span, Moving: moving, Ascent: ascent } =
    firstRow({ tracks: [rawTrack([], { ascent: null })] });
  assert.deepEqual([from, to, span, moving, ascent], ["–", "–", "–", "–", "–"]);
});

test("the end of a track has its day if it is not that of the start", () => {
  const values = { first: 1717286399, last: 1717286400 }; // the last second of a day, and the next
  const { "To": to } = firstRow({ tracks: [rawTrack([[0, 0]], values)] });
  assert.equal(to, "2024-06-02 00:00:00");
});

test("a waypoint's row has its position and its texts", () => {
  const values = { name: "Camp", comment: "by the lake", symbol: "Resort" };
  assert.deepEqual(firstRow({ waypoints: [rawPoint(-46.5, 7.25, values)] }), {
    Name: "Camp", Latitude: "46.50000° S", Longitude: "7.25000° E", Elevation: "–",
    Symbol: "Resort", Comment: "by the lake",
  });
});

test("a geocache's row has all its fields", () => {
  const values = {
    type: "Traditional", difficulty: "1", terrain: "2.5", owner: "me", placed: "2008-02-01",
    found: "soon", hint: "under the stone", comment: "note",
  };
  const row = firstRow({ geocaches: [rawPoint(0, 0, values)] });
  for (const [title, text] of Object.entries({ ...values, found: "✓ soon" }))
    assert.equal(row[title[0].toUpperCase() + title.slice(1)], text);
  assert.equal(firstRow({ geocaches: [rawPoint(0, 0, { ...values, found: "" })] }).Found, "–");
});

test("a time span sorts by its seconds", () => {
  const [{ columns, items }] = tablesOf(collectionOf({
    tracks: [rawTrack([], { first: 100, last: 160 })],
  }));
  assert.equal(columns.find(({ title }) => title === "Time span").value(items[0]), 60);
});
