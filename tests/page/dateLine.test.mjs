// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { eastOfEdge, layOutLine, westernEdge } from "../../host/page/model/dateLine.js";

function lineOf(points) {
  return {
    count: points.length, latitude: points.map(([latitude]) => latitude),
    longitude: points.map(([, longitude]) => longitude), x: new Float64Array(points.length),
    breaks: new Set(),
  };
}

test("without points the map starts at -180", () => {
  assert.equal(westernEdge([]), -180);
  assert.equal(westernEdge([[], []]), -180);
});

test("the map starts just west of the point that follows the widest gap", () => {
  for (const lists of [[[10, 20, 100]], [[100], [20, 10]]]) {
    const edge = westernEdge(lists);
    assert.ok(edge < 10 && edge > 9.8, `${edge}`);
  }
});

test("points on both sides of the date line are side by side", () => {
  const edge = westernEdge([[179, -179]]);
  assert.ok(eastOfEdge(edge, -179) - eastOfEdge(edge, 179) === 2);
});

test("a single longitude is never put around the globe, wherever it is", () => {
  for (let longitude = -180; longitude <= 180; longitude += 0.05) {
    const edge = westernEdge([[longitude]]);
    assert.ok(eastOfEdge(edge, longitude) - edge < 0.2, `${longitude}`);
  }
});

test("a longitude's position starts at the edge and ends before one turn", () => {
  assert.equal(eastOfEdge(-180, -180), -180);
  assert.equal(eastOfEdge(-180, 180), -180);
  assert.equal(eastOfEdge(170, 170), 170);
  assert.equal(eastOfEdge(170, 169), 529);
  assert.equal(eastOfEdge(170, -170), 190);
});

test("a line over the date line goes on past 180 degrees, and back", () => {
  const line = lineOf([[0, 179], [0, -179], [0, 179]]);
  layOutLine(line, 100);
  assert.deepEqual([...line.x], [179, 181, 179]);
  assert.equal(line.breaks.size, 0);
});

test("a line that leaves the map's edge to the west goes on there", () => {
  const line = lineOf([[0, 101], [0, 99]]);
  layOutLine(line, 100);
  assert.deepEqual([...line.x], [101, 99]);
});

test("a line is cut across a pole: above 75 degrees and by more than 60", () => {
  for (const [latitude, step, isCut] of [[76, 61, true], [75, 61, false], [76, 60, false],
    [-76, 61, true]]) {
    const line = lineOf([[latitude, 0], [latitude, step]]);
    layOutLine(line, -180);
    assert.equal(line.breaks.has(1), isCut, `${latitude}, ${step}`);
  }
});

test("one end near the pole is enough for a cut", () => {
  const line = lineOf([[70, 0], [80, 100]]);
  layOutLine(line, -180);
  assert.deepEqual([...line.breaks], [1]);
});

function roundTrip(step, start = 0) {
  const count = Math.round(360 / Math.abs(step)) + 1;
  return lineOf(Array.from({ length: count }, (_, i) => {
    const turned = start + i * step;
    return [0, turned - 360 * Math.round(turned / 360)];
  }));
}

test("a line around the world, to the west or east, stays on the map and is cut once", () => {
  for (const step of [-10, 10, -0.7, 0.7]) {
    for (const edge of [-180, 5.03, 100]) {
      const line = roundTrip(step);
      layOutLine(line, edge);
      assert.ok(line.x.every((x) => x >= edge && x < edge + 360), `${step}, ${edge}`);
      assert.equal(line.breaks.size, 1, `${step}, ${edge}`);
    }
  }
});

test("a line of up to 350 degrees is in one piece on the map", () => {
  for (const [end, breaks] of [[350, 0], [351, 1]]) {
    const line = lineOf(Array.from({ length: 11 }, (_, i) => [0, 170 - end * i / 10]));
    layOutLine(line, -170);
    assert.equal(line.breaks.size, breaks, `${end}`);
  }
});

test("a line of which most is beyond the map's edge is moved onto the map", () => {
  const line = lineOf([[0, 101], [0, 0], [0, -100]]);
  layOutLine(line, 100);
  assert.deepEqual([...line.x], [461, 360, 260]);
});
