// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { allItems, isLine } from "../../host/page/model/items.js";
import { collectionOf, rawPoint, rawRoute, rawTrack } from "./fixtures.mjs";

test("tracks and routes are lines, points are not", () => {
  const items = allItems(collectionOf({
    tracks: [rawTrack([])], routes: [rawRoute([[0, 0]])], waypoints: [rawPoint(0, 0)],
    geocaches: [rawPoint(0, 0)],
  }));
  assert.deepEqual(items.map(isLine), [true, true, false, false]);
  assert.ok(!isLine(items[1].points[0]));
});
