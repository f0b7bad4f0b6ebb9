// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { byDate, orderTracks } from "../../host/page/model/trackOrder.js";

function trackAt(index, x, first) {
  return { index, first, count: 1, x: [x], latitude: [0] };
}

const indicesOf = (tracks) => tracks.map(({ index }) => index);
const kAround = { west: -1, east: 1, south: -1, north: 1 };

test("tracks are in the order of their dates, those without are last", () => {
  const tracks = [trackAt(0, 0, null), trackAt(1, 0, 20), trackAt(2, 0, 10), trackAt(3, 0, null),
    trackAt(4, 0, 10), trackAt(5, 0, 0)];
  assert.deepEqual(indicesOf(tracks.sort(byDate)), [5, 2, 4, 1, 0, 3]);
});

test("tracks that start in the shown area come before the others", () => {
  const tracks = [trackAt(0, 5, 1), trackAt(1, 0, 4), trackAt(2, 9, 2), trackAt(3, 1, 3)];
  const { here, elsewhere } = orderTracks(tracks, kAround);
  assert.deepEqual([indicesOf(here), indicesOf(elsewhere)], [[3, 1], [0, 2]]);
});

test("a track without points is elsewhere", () => {
  const empty = { index: 0, first: null, count: 0, x: [], latitude: [] };
  const { here, elsewhere } = orderTracks([empty], kAround);
  assert.deepEqual([here.length, elsewhere.length], [0, 1]);
});
