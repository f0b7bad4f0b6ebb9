// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import {
  originText, readingText, summaryText, timeSpanText, tipLines, titleText,
} from "../../host/page/model/itemTexts.js";
import { collectionOf, rawPoint, rawRoute, rawTrack, trackOf } from "./fixtures.mjs";

const kNoon = 1717243200; // 2024-06-01 12:00:00 UTC
const kDay = 86400;

test("the tip of a track's point has its position, time, elevation and speed", () => {
  const track = trackOf([[0, 0, 500, kNoon], [0, 0.001, 510, kNoon + 60]]);
  assert.deepEqual(tipLines(track, 1),
    ["0.00000°, 0.00100° E", "2024-06-01 12:01:00 UTC", "510 m · 6.7 km/h"]);
});

test("the tip of a track's point says what is not known", () => {
  assert.deepEqual(tipLines(trackOf([[0, 0]], { ascent: null }), 0),
    ["0.00000°, 0.00000°", "no time", "no elevation"]);
});

test("the tip of a waypoint has only what is known", () => {
  const [bare, full] = collectionOf({ waypoints: [rawPoint(0, 0),
    rawPoint(0, 0, { at: [0, 0, 50, kNoon], symbol: "Camp" })] }).waypoints;
  assert.deepEqual(tipLines(bare, 0), ["0.00000°, 0.00000°"]);
  assert.deepEqual(tipLines(full, 0),
    ["Camp", "0.00000°, 0.00000°", "2024-06-01 12:00:00 UTC", "5 m"]);
});

test("the tip of a geocache has its type, how hard it is and whether it was found", () => {
  const linesOf = (values) => tipLines(collectionOf({
    geocaches: [rawPoint(0, 0, { type: "", difficulty: "", terrain: "", found: "", ...values })],
  }).geocaches[0], 0);
  assert.deepEqual(linesOf({ type: "Traditional", difficulty: "1.5", terrain: "4",
    found: "2008-08-11", hint: "under the stone" }),
  ["Traditional · difficulty 1.5 · terrain 4", "Found 2008-08-11", "0.00000°, 0.00000°"]);
  assert.deepEqual(linesOf({ terrain: "2", symbol: "Geocache Found" }),
    ["terrain 2", "Not found yet", "0.00000°, 0.00000°"]);
  assert.deepEqual(linesOf({}), ["Not found yet", "0.00000°, 0.00000°"]);
});

test("a reading has the distance and what is known", () => {
  const track = trackOf([[0, 0, 500, kNoon], [0, 0.001, 510, kNoon + 60]]);
  assert.equal(readingText(track, 1), "2024-06-01 12:01:00 UTC · 0.11 km · 510 m · 6.7 km/h");
  assert.equal(readingText(trackOf([[0, 0]], { ascent: null }), 0), "0.00 km");
});

test("a time span repeats the day only if it changes", () => {
  const spanOf = (first, last) => timeSpanText(trackOf([[0, 0]], { first, last }));
  assert.equal(spanOf(kNoon, kNoon + kDay / 2 - 1),
    "2024-06-01 12:00:00 – 23:59:59 UTC");
  assert.equal(spanOf(kNoon, kNoon + kDay / 2),
    "2024-06-01 12:00:00 – 2024-06-02 00:00:00 UTC");
});

test("the origin has what is known of the receiver and of the download", () => {
  const made = 1717243200; // noon, so the same day in most zones
  assert.match(originText({ receiver: "Unit 400", identifier: "12345", made }),
    /^Unit 400 · serial number 12345 · downloaded on 2024-06-0[12]$/);
  assert.equal(originText({ receiver: "Unit 400", identifier: "", made: null }), "Unit 400");
  assert.match(originText({ receiver: "", identifier: "", made }), /^Made on 2024-06-0[12]$/);
  assert.equal(originText({ receiver: "", identifier: "", made: null }), "");
});

test("a track without times says so, or that it has no points", () => {
  assert.equal(timeSpanText(trackOf([[0, 0]])), "no times");
  assert.equal(timeSpanText(trackOf([])), "no points");
});

test("the title has the days of all tracks", () => {
  const titleOf = (...spans) => titleText(collectionOf({
    tracks: spans.map(([first, last]) => rawTrack([], { first, last })),
  }));
  assert.equal(titleOf(), "Tracks and places");
  assert.equal(titleOf([null, null]), "Tracks and places");
  assert.equal(titleOf([kNoon, kNoon + 60]), "Tracks and places, 2024-06-01");
  assert.equal(titleOf([kNoon, kNoon], [null, null], [kNoon - kDay, kNoon - kDay]),
    "Tracks and places, 2024-05-31 – 2024-06-01");
});

test("the summary counts what there is", () => {
  assert.equal(summaryText(collectionOf({})), "");
  assert.equal(summaryText(collectionOf({ waypoints: [rawPoint(0, 0)] })), "1 waypoint");
  assert.equal(summaryText(collectionOf({
    tracks: [rawTrack([], { kilometres: 1.25 }),
      rawTrack([], { kilometres: 2, first: kNoon, last: kNoon + kDay })],
    routes: [rawRoute([])],
    geocaches: Array.from({ length: 1200 }, () => rawPoint(0, 0)),
  })), "2 tracks · 3.25 km · 1 route · 1,200 geocaches · 2024-06-01 to 2024-06-02");
});
