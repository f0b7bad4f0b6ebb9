// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { speedsOf } from "../../host/page/model/speed.js";

// Speeds of points given as [seconds, metres].
function speeds(points) {
  return [...speedsOf({
    count: points.length, time: points.map(([time]) => time),
    distance: points.map(([, distance]) => distance),
  })];
}

test("a steady pace is its speed at every point, the ends included", () => {
  const points = Array.from({ length: 50 }, (_, i) => [7 * i, 14 * i]);
  for (const speed of speeds(points))
    assert.ok(Math.abs(speed - 2) < 1e-9);
});

test("a speed is averaged over 15 seconds to either side", () => {
  // One jump of 30 m at 100 s, in fixes a second apart.
  const points = Array.from({ length: 200 }, (_, i) => [i, i < 100 ? 0 : 30]);
  const averaged = speeds(points);
  assert.equal(averaged[100], 1);
  assert.ok(averaged[86] > 0);
  assert.equal(averaged[84], 0);
  assert.ok(averaged[113] > 0);
  assert.equal(averaged[115], 0);
});

test("fixes far apart are compared with their neighbours", () => {
  assert.deepEqual(speeds([[0, 0], [100, 50], [200, 150]]), [0.5, 0.75, 1]);
});

test("points without a time have no speed, and the line goes past them", () => {
  assert.deepEqual(speeds([[0, 0], [NaN, 40], [100, 100]]), [1, NaN, 1]);
});

test("time that stands still or runs backward has no speed", () => {
  assert.deepEqual(speeds([[0, 0], [100, 100], [100, 150], [50, 160], [200, 200]]),
    [1, 1, NaN, NaN, 1]);
});

test("a single timed point has no speed", () => {
  assert.deepEqual(speeds([[0, 0]]), [NaN]);
  assert.deepEqual(speeds([]), []);
});
