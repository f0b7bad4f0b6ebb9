// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import {
  boundsOf, contains, emptyBounds, isEmpty, isShownWell,
} from "../../host/page/model/bounds.js";
import { allItems } from "../../host/page/model/items.js";
import { MapView } from "../../host/page/model/MapView.js";
import { collectionOf, rawPoint, rawRoute, rawTrack } from "./fixtures.mjs";

test("bounds of nothing are empty, those of a point are not", () => {
  assert.ok(isEmpty(emptyBounds()));
  assert.ok(isEmpty(boundsOf(allItems(collectionOf({ tracks: [rawTrack([])] })))));
  assert.ok(!isEmpty(boundsOf(collectionOf({ waypoints: [rawPoint(1, 2)] }).waypoints)));
});

test("bounds include the points of every kind of item", () => {
  const items = allItems(collectionOf({
    tracks: [rawTrack([[40, 5], [41, 6]])], routes: [rawRoute([[42, 7], [43, 9]])],
    waypoints: [rawPoint(39, 6)], geocaches: [rawPoint(40, 4)],
  }));
  const { west, east, south, north } = boundsOf(items);
  assert.deepEqual([south, north], [39, 43]);
  assert.ok(Math.abs(east - west - 5) < 1e-9);
});

test("the edges belong to the bounds", () => {
  const bounds = { west: 1, east: 3, south: 10, north: 20 };
  for (const [x, latitude, isIn] of [[1, 10, true], [3, 20, true], [0.9, 15, false],
    [3.1, 15, false], [2, 9.9, false], [2, 20.1, false]])
    assert.equal(contains(bounds, x, latitude), isIn, `${x}, ${latitude}`);
});

test("bounds are shown well if they are all in the view and take up a quarter of a side", () => {
  const view = new MapView(400, 400); // a pixel per degree
  const around = (x, dx, dy) => ({ west: x - dx, east: x + dx, south: -dy, north: dy });
  assert.ok(isShownWell(around(0, 51, 1), view));
  assert.ok(isShownWell(around(0, 1, 51), view));
  assert.ok(!isShownWell(around(0, 50, 50), view));
  assert.ok(isShownWell(around(140, 60, 1), view));
  assert.ok(!isShownWell(around(141, 60, 1), view));
});
