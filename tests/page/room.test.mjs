// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { MapView } from "../../host/page/model/MapView.js";
import { pointsWithRoom } from "../../host/page/model/room.js";

// A map of 1000 by 1000 pixels with a pixel per degree at its middle.
const kView = new MapView(1000, 1000);

function roomyOf(places) {
  const points = places.map(([x, latitude]) => ({ x, latitude }));
  const roomy = pointsWithRoom(points, kView, 10);
  return points.map((point) => roomy.has(point));
}

test("a point has room at the distance and none closer, in every direction", () => {
  for (const [dx, dy] of [[1, 0], [-1, 0], [0, 1], [0, -1]]) {
    assert.deepEqual(roomyOf([[0, 0], [10 * dx, 10 * dy]]), [true, true]);
    assert.deepEqual(roomyOf([[0, 0], [9.9 * dx, 9.9 * dy]]), [true, false]);
  }
});

test("a point without room takes room from others", () => {
  assert.deepEqual(roomyOf([[0, 0], [6, 0], [12, 0]]), [true, false, false]);
});

test("a point at the edge of the map has room, one beyond it does not", () => {
  assert.deepEqual(roomyOf([[509, 0], [511, 0], [0, -509], [0, -511]]),
    [true, false, true, false]);
});

test("many points at one place do not take long", () => {
  const roomy = roomyOf(Array.from({ length: 100000 }, () => [3, 3]));
  assert.equal(roomy.filter(Boolean).length, 1);
});
