// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { slopesOf, speedsOf, topSpeedOf } from "../../host/page/model/rates.js";

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

test("the top speed is a 99th percentile over 10 seconds", () => {
  const time = Array.from({ length: 400 }, (_, i) => i);
  const walk = { count: 400, time, distance: Float64Array.from(time) };
  assert.ok(Math.abs(topSpeedOf(walk) - 1) < 1e-9);
  const glitch = { ...walk, distance: walk.distance.map((m, i) => m + (i === 200) * 900) };
  assert.ok(topSpeedOf(glitch) < 100); // 900 m/s at the bad fix
  const sprint = { ...walk, distance: walk.distance.map((metres, i) => i > 390 ?
    390 + (i - 390) * 6 : metres) };
  assert.ok(topSpeedOf(sprint) > 4.5);
});

test("a track without times has no top speed", () => {
  assert.ok(Number.isNaN(topSpeedOf({ count: 2, time: [NaN, NaN], distance: [0, 5] })));
  assert.ok(Number.isNaN(topSpeedOf({ count: 0, time: [], distance: [] })));
});

test("a slope is averaged over 50 metres to either side", () => {
  const distance = Array.from({ length: 41 }, (_, i) => 10 * i);
  const steady = slopesOf({ count: 41, distance, elevation: distance.map((x) => x / 10) });
  assert.ok(steady.every((slope) => Math.abs(slope - 0.1) < 1e-9));
  const step = slopesOf({ count: 41, distance, elevation: distance.map((x) => x < 200 ? 0 : 10) });
  assert.deepEqual([step[14], step[20], step[26]], [0, 0.1, 0]);
});

test("a slope leaves out points without an elevation", () => {
  assert.deepEqual([...slopesOf({ count: 3, distance: [0, 50, 100], elevation: [0, NaN, 10] })],
    [0.1, NaN, 0.1]);
});
