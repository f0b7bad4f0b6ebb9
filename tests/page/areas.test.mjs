// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { findAreas } from "../../host/page/model/areas.js";
import { allItems } from "../../host/page/model/collection.js";
import { collectionOf, rawPoint, rawRoute, rawTrack } from "./fixtures.mjs";

function areasOf(lists) {
  return findAreas(allItems(collectionOf(lists)));
}

function areasOfPoints(...positions) {
  return areasOf({ waypoints: positions.map(([latitude, longitude]) =>
    rawPoint(latitude, longitude)) });
}

test("no points, no areas", () => {
  assert.deepEqual(areasOf({}), []);
  assert.deepEqual(areasOf({ tracks: [rawTrack([])], routes: [rawRoute([])] }), []);
});

test("points in neighbouring cells are one area, diagonally too", () => {
  for (const other of [[46.5, 8.9], [47.9, 7.5], [47.9, 8.9], [45.1, 6.1]])
    assert.equal(areasOfPoints([46.5, 7.5], other).length, 1, `${other}`);
});

test("points with an empty cell between them are two areas", () => {
  for (const other of [[46.5, 9.1], [48.1, 7.5], [44.9, 7.5], [46.5, 5.9]])
    assert.equal(areasOfPoints([46.5, 7.5], other).length, 2, `${other}`);
});

test("a chain of neighbours is one area with the bounds of all its points", () => {
  const [area, ...others] = areasOfPoints([10.5, 10.5], [11.5, 11.2], [12.25, 12.75]);
  assert.deepEqual(others, []);
  assert.equal(area.bounds.south, 10.5);
  assert.equal(area.bounds.north, 12.25);
  assert.ok(Math.abs(area.bounds.east - area.bounds.west - 2.25) < 1e-9);
});

test("points on both sides of the equator and of Greenwich are one area", () => {
  assert.equal(areasOfPoints([0.1, 0.1], [-0.1, -0.1]).length, 1);
});

test("points on both sides of the date line are one area", () => {
  assert.equal(areasOfPoints([0.5, 179.9], [0.5, -179.9]).length, 1);
});

test("the heaviest area comes first; a track point weighs as much as ten waypoints", () => {
  const track = rawTrack([[10, 10]]);
  const waypoints = (count) => Array.from({ length: count }, () => rawPoint(50, 50));
  const northernmost = (lists) => areasOf(lists).map(({ bounds }) => bounds.north);
  assert.deepEqual(northernmost({ tracks: [track], waypoints: waypoints(9) }), [10, 50]);
  assert.deepEqual(northernmost({ tracks: [track], waypoints: waypoints(11) }), [50, 10]);
});

test("every point of a route weighs as much as a waypoint", () => {
  const [area] = areasOf({ routes: [rawRoute([[1, 1], [1, 1]])], geocaches: [rawPoint(1, 1)] });
  assert.equal(area.weight, 3);
});
