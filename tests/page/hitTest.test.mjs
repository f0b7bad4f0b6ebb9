// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { itemAt } from "../../host/page/model/hitTest.js";
import { MapView } from "../../host/page/model/MapView.js";

// A map of 1000 by 1000 pixels, a pixel per degree: a pixel is 500 plus its offset.
function hit(px, py, { tracks = [], points = [] }) {
  return itemAt(500 + px, 500 - py, new MapView(1000, 1000), { tracks, points });
}

function trackOf(...positions) {
  return {
    count: positions.length, x: positions.map(([x]) => x),
    latitude: positions.map(([, latitude]) => latitude),
  };
}

test("a track is hit within 24 pixels of one of its points", () => {
  const tracks = [trackOf([0, 0])];
  assert.equal(hit(23, 0, { tracks }).item, tracks[0]);
  assert.equal(hit(24, 0, { tracks }).item, null);
  assert.equal(hit(0, -23, { tracks }).item, tracks[0]);
});

test("the nearest point of all tracks is hit", () => {
  const tracks = [trackOf([0, 0], [10, 0]), trackOf([20, 0], [16, 0])];
  assert.deepEqual(hit(9, 0, { tracks }), { item: tracks[0], index: 1 });
  assert.deepEqual(hit(14, 0, { tracks }), { item: tracks[1], index: 1 });
});

test("distances are those on the map, where a degree of longitude is narrower", () => {
  const view = Object.assign(new MapView(1000, 1000), { latitude: 60 });
  const tracks = [trackOf([40, 60])];
  assert.equal(itemAt(500, 500, view, { tracks, points: [] }).item, tracks[0]);
  assert.equal(itemAt(500, 500, view, { tracks: [trackOf([0, 100])], points: [] }).item, null);
});

test("distances are pixels at any scale", () => {
  const view = Object.assign(new MapView(1000, 1000), { scale: 10 });
  for (const [x, latitude, isHit] of [[2.3, 0, true], [2.5, 0, false], [0, 2.3, true],
    [0, -2.5, false]]) {
    const { item } = itemAt(500, 500, view, { tracks: [trackOf([x, latitude])], points: [] });
    assert.equal(item !== null, isHit, `${x}, ${latitude}`);
  }
});

test("a point is hit within 8 pixels", () => {
  const points = [{ x: 0, latitude: 0 }];
  assert.equal(hit(7.9, 0, { points }).item, points[0]);
  assert.equal(hit(8, 0, { points }).item, null);
});

test("the nearest of two points is hit, and the last of two in one position", () => {
  const points = [{ x: 0, latitude: 0 }, { x: 5, latitude: 0 }, { x: 0, latitude: 0 }];
  assert.equal(hit(1, 0, { points }).item, points[2]);
  assert.equal(hit(3, 0, { points }).item, points[1]);
});

test("a point wins over a track that is a little nearer", () => {
  const points = [{ x: 0, latitude: 0 }], tracks = [trackOf([7, 0])];
  assert.equal(hit(6, 0, { tracks, points }).item, points[0]); // 36 to 1: the limit is 37
  assert.equal(hit(6.2, 0, { tracks, points }).item, tracks[0]);
});

test("nothing is hit on an empty map", () => {
  assert.deepEqual(hit(0, 0, { tracks: [trackOf()] }), { item: null, index: 0 });
});
