// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { MapView } from "../../host/page/model/MapView.js";
import { traceLine, VisiblePoints } from "../../host/page/model/visibleLines.js";

// A map at the equator, 100 by 100 pixels, with one pixel per degree and 0/0 in its middle.
function viewOf(values = {}) {
  return Object.assign(new MapView(100, 100), values);
}

function lineOf(points, breaks = []) {
  return {
    x: points.map(([x]) => x), latitude: points.map(([, latitude]) => latitude),
    count: points.length, breaks: new Set(breaks),
  };
}

// What a pen draws of a line, as "M x y" and "L x y" with whole pixels.
function trace(points, breaks) {
  const steps = [];
  const pen = {
    moveTo: (x, y) => steps.push(`M ${x} ${y}`),
    lineTo: (x, y) => steps.push(`L ${x} ${y}`),
  };
  traceLine(lineOf(points, breaks), points.keys(), viewOf(), pen);
  return steps;
}

test("a line is traced with one move", () => {
  assert.deepEqual(trace([[0, 0], [10, 0], [10, 10]]), ["M 50 50", "L 60 50", "L 60 40"]);
});

test("a break lifts the pen", () => {
  assert.deepEqual(trace([[0, 0], [10, 0], [20, 0], [30, 0]], [2]),
    ["M 50 50", "L 60 50", "M 70 50", "L 80 50"]);
});

test("segments beyond an edge are omitted from 20 pixels on, each side for itself", () => {
  for (const [dx, dy] of [[1, 0], [-1, 0], [0, 1], [0, -1]]) {
    const at = (distance) => [dx * distance, dy * distance];
    assert.equal(trace([at(71), at(72)]).length, 0, `${dx}, ${dy}`);
    assert.equal(trace([at(70), at(72)]).length, 2, `${dx}, ${dy}`);
  }
});

test("a segment across the whole map is traced", () => {
  assert.equal(trace([[-90, 0], [90, 0]]).length, 2);
});

test("the pen goes down again where the line returns", () => {
  assert.deepEqual(trace([[0, 0], [80, 0], [90, 0], [0, 10]]),
    ["M 50 50", "L 130 50", "M 140 50", "L 50 40"]);
});

test("a line without points traces nothing", () => {
  assert.deepEqual(trace([]), []);
  assert.deepEqual(trace([[0, 0]]), []);
});

test("points closer than half a pixel to the line are not visible", () => {
  const visible = new VisiblePoints();
  for (const [latitude, indices] of [[0.5, [0, 2]], [0.51, [0, 1, 2]]])
    assert.deepEqual(visible.of(lineOf([[0, 0], [10, latitude], [20, 0]]), viewOf()), indices);
  const line = lineOf([[0, 0], [10, 0.4], [20, 0]]);
  assert.deepEqual(visible.of(line, viewOf({ scale: 1 })), [0, 2]);
  assert.deepEqual(visible.of(line, viewOf({ scale: 2 })), [0, 1, 2]);
});

test("what was computed is used again at scales up to the same power of two", () => {
  const visible = new VisiblePoints();
  const line = lineOf([[0, 0], [10, 0.4], [20, 0]]);
  const first = visible.of(line, viewOf({ scale: 5 }));
  assert.equal(visible.of(line, viewOf({ scale: 8 })), first);
  assert.notEqual(visible.of(line, viewOf({ scale: 9 })), first);
});

test("what was computed is used again within ten degrees of latitude", () => {
  const visible = new VisiblePoints();
  const line = lineOf([[0, 50], [10, 50.4], [20, 50]]);
  const first = visible.of(line, viewOf({ scale: 5, latitude: 50 }));
  assert.equal(visible.of(line, viewOf({ scale: 5, latitude: 59.9 })), first);
  assert.notEqual(visible.of(line, viewOf({ scale: 5, latitude: 60 })), first);
  assert.notEqual(visible.of(line, viewOf({ scale: 5, latitude: 49.9 })), first);
});

test("lines are remembered separately", () => {
  const visible = new VisiblePoints();
  assert.deepEqual(visible.of(lineOf([[0, 0]]), viewOf()), [0]);
  assert.deepEqual(visible.of(lineOf([[0, 0], [9, 0]]), viewOf()), [0, 1]);
});
