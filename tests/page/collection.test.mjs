// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { collectionOf, rawPoint, rawRoute, rawTrack, trackOf } from "./fixtures.mjs";

test("a track's numbers are differences within their columns", () => {
  const points = [46500000, -7250000, 5000, 100, 1000, 0, 50, 60, -1000, 10, -150, 60];
  const [track] = collectionOf({ tracks: [rawTrack([], { points })] }).tracks;
  assert.equal(track.count, 3);
  assert.deepEqual([...track.latitude], [46.5, 46.501, 46.5]);
  assert.deepEqual([...track.longitude], [-7.25, -7.25, -7.24999]);
  assert.deepEqual([...track.elevation], [500, 505, 490]);
  assert.deepEqual([...track.time], [100, 160, 220]);
});

test("null is a value that is not known, and moves no column", () => {
  const points = [0, 0, 100, 5, 0, 0, null, null, 0, 0, 20, 5];
  const [track] = collectionOf({ tracks: [rawTrack([], { points })] }).tracks;
  assert.deepEqual([...track.elevation], [10, NaN, 12]);
  assert.deepEqual([...track.time], [5, NaN, 10]);
});

test("a track without an ascent has no elevations", () => {
  assert.deepEqual([...trackOf([[0, 0, 0, 1]], { ascent: null }).elevation], [NaN]);
  assert.deepEqual([...trackOf([[0, 0, 0, 1]], { ascent: 0 }).elevation], [0]);
});

test("distances add up from the start", () => {
  const { distance } = trackOf([[0, 0], [1, 0], [0, 0]]);
  assert.equal(distance[0], 0);
  assert.ok(Math.abs(distance[1] - 111195) < 1);
  assert.ok(Math.abs(distance[2] - 2 * distance[1]) < 1e-6);
});

test("no way leads across a break between segments", () => {
  const { distance, breaks } = trackOf([[0, 0], [1, 0], [5, 0], [6, 0]], { breaks: [2] });
  assert.equal(distance[2], distance[1]);
  assert.ok(Math.abs(distance[3] - 2 * distance[1]) < 1e-6);
  assert.deepEqual([...breaks], [2]);
});

test("what has no name gets one for its kind", () => {
  const { tracks, routes, waypoints } = collectionOf({
    tracks: [rawTrack([], { name: "" })], routes: [rawRoute([], { name: "" })],
    waypoints: [rawPoint(0, 0, { name: "" })],
  });
  assert.deepEqual([...tracks, ...routes, ...waypoints].map(({ name }) => name),
    ["Unnamed track", "Unnamed route", "Unnamed"]);
});

test("a name that cannot be seen counts as none", () => {
  const nameOf = (name) => trackOf([], { name }).name;
  for (const blank of [" ", "\u00a0\u3000", "\u200d\u200c"])
    assert.equal(nameOf(blank), "Unnamed track");
  assert.equal(nameOf(" . "), " . ");
});

test("an area around the world is the whole map, wherever that begins", () => {
  const areaOf = (west, east) => collectionOf({
    areas: [{ place: "", zone: "", bounds: [west * 1e6, 0, east * 1e6, 0] }],
    waypoints: [rawPoint(0, 10), rawPoint(0, 100), rawPoint(0, 190)],
  }).areas[0].bounds;
  const { west, east } = areaOf(-180, 180);
  assert.ok(west > 9.9 && west < 10 && Math.round(east - west) === 360, `${west}, ${east}`);
  assert.equal(Math.round(areaOf(10, 20).west), 10);
});

test("a waypoint's values are converted, those that are not known become NaN", () => {
  const { waypoints, geocaches } = collectionOf({
    waypoints: [rawPoint(0, 0, { at: [46500000, -7250000, -3, 12] })],
    geocaches: [rawPoint(1, 2, { owner: "me" })],
  });
  const { latitude, longitude, elevation, time } = waypoints[0];
  assert.deepEqual([latitude, longitude, elevation, time], [46.5, -7.25, -0.3, 12]);
  assert.ok(Number.isNaN(geocaches[0].elevation) && Number.isNaN(geocaches[0].time));
  assert.equal(geocaches[0].owner, "me");
});

test("items of all kinds share one map across the date line", () => {
  const { tracks, routes, waypoints, geocaches } = collectionOf({
    tracks: [rawTrack([[0, 179.5], [0, -179.5]])], routes: [rawRoute([[1, 179], [1, -179]])],
    waypoints: [rawPoint(2, -178)], geocaches: [rawPoint(3, 178)],
  });
  const origin = geocaches[0].x;
  const offsets = [...tracks[0].x, ...routes[0].x, waypoints[0].x].map((x) => x - origin);
  assert.deepEqual(offsets, [1.5, 2.5, 1, 3, 4]);
  assert.deepEqual(routes[0].points.map(({ x }) => x), [...routes[0].x]);
});

test("the westernmost point stays in the west, wherever it is", () => {
  for (let tenth = -1799; tenth < 1800; tenth += 7) {
    const [west, east] = collectionOf({
      waypoints: [rawPoint(46, tenth / 10), rawPoint(46, tenth / 10 + 0.05)],
    }).waypoints;
    assert.ok(Math.abs(east.x - west.x - 0.05) < 1e-6, `${tenth} tenths of a degree`);
  }
});

const kArea = { place: "", zone: "Europe/Zurich", bounds: [7950000, 46680000, 8100000, 46700000] };

test("a town just west of all points is beside its area, not behind the rest of the world", () => {
  const places = [
    { name: "West", at: [46690000, 7690000] }, { name: "East", at: [46690000, 8200000] },
  ];
  const collection = collectionOf({
    areas: [kArea], places, tracks: [rawTrack([[46.68, 7.95], [46.7, 8.1]])],
  });
  const [west, east] = collection.places;
  const [{ bounds }] = collection.areas;
  assert.ok(Math.abs(bounds.west - west.x - 0.26) < 1e-5, `${west.x}`);
  assert.ok(Math.abs(east.x - bounds.east - 0.1) < 1e-5, `${east.x}`);
});

test("the points that define an area are in it", () => {
  const points = [rawPoint(46.68, 7.95), rawPoint(46.7, 8.1), rawPoint(46.7001, 8.1)];
  const { waypoints } = collectionOf({ areas: [kArea], waypoints: points });
  assert.deepEqual(waypoints.map(({ zone }) => zone), ["Europe/Zurich", "Europe/Zurich", ""]);
});
