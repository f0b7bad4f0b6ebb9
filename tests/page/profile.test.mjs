// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { kPlotKinds, kPlotWidth, plotOf, trackLength } from "../../host/page/model/profile.js";

const [kElevation, kSpeed] = kPlotKinds;

// A track with a point every `step` metres.
function trackWith(values, step = 100) {
  return {
    count: values.length, breaks: new Set(), distance: values.map((_, i) => step * i),
    elevation: values, speed: values,
  };
}

// The points of a path, and whether each begins a new line.
function pointsOf(path) {
  return [...path.matchAll(/([ML])([\d.]+),([\d.]+)/g)].map(([, letter, x, y]) =>
    ({ isStart: letter === "M", x: Number(x), y: Number(y) }));
}

const textsOf = (ticks) => ticks.map(({ text }) => text);

test("fewer than two values cannot be plotted", () => {
  assert.equal(plotOf(trackWith([]), kElevation), null);
  assert.equal(plotOf(trackWith([5]), kElevation), null);
  assert.equal(plotOf(trackWith([NaN, 5]), kElevation), null);
  assert.notEqual(plotOf(trackWith([5, 5]), kElevation), null);
});

test("a track without length cannot be plotted", () => {
  assert.equal(plotOf(trackWith([5, 6], 0), kElevation), null);
  assert.equal(trackLength(trackWith([5, 6], 0)), 0);
  assert.equal(trackLength(trackWith([])), 0);
  assert.equal(trackLength(trackWith([5, 6])), 100);
});

test("elevations fill the plot with some room above and below", () => {
  const { low, high } = plotOf(trackWith([100, 200]), kElevation);
  assert.ok(Math.abs(low - 92) < 1e-9 && Math.abs(high - 214) < 1e-9, `${low} to ${high}`);
});

test("a range of less than 20 m looks level", () => {
  const rangeOf = (difference) => {
    const { low, high } = plotOf(trackWith([100, 100 + difference]), kElevation);
    return high - low;
  };
  assert.equal(rangeOf(0).toFixed(3), rangeOf(20).toFixed(3));
  assert.ok(rangeOf(21) > rangeOf(20));
});

test("speeds start at 0, and slow ones look slow", () => {
  const speeds = (value) => plotOf(trackWith([value, value]), kSpeed);
  assert.equal(speeds(5).low, 0);
  assert.ok(Math.abs(speeds(5).high - 6.1) < 1e-9);
  assert.equal(speeds(0.2).high, speeds(1).high);
});

test("a path spans the plot's width, with high values at the top", () => {
  const points = pointsOf(plotOf(trackWith([100, 200, 100]), kElevation).stroke);
  assert.deepEqual(points.map(({ x }) => x), [0, kPlotWidth / 2, kPlotWidth]);
  assert.ok(points[1].y < points[0].y);
  assert.ok(points.every(({ y }) => y >= 0 && y <= kElevation.height));
});

test("missing elevations interrupt the line and the area below it", () => {
  const { stroke, fill } = plotOf(trackWith([100, 101, NaN, 102, 103]), kElevation);
  assert.deepEqual(pointsOf(stroke).map(({ isStart }) => isStart), [true, false, true, false]);
  const [first, second] = fill.split("Z");
  assert.match(first, /^M0\.0,[\d.]+L180\.0,[\d.]+L180\.0,110L0\.0,110$/);
  assert.match(second, /^M540\.0,[\d.]+L720\.0,[\d.]+L720\.0,110L540\.0,110$/);
});

test("the line and the area below it are interrupted between segments, in either plot", () => {
  for (const kind of kPlotKinds) {
    const track = { ...trackWith([5, 6, 7, 8]), breaks: new Set([2]) };
    assert.deepEqual(pointsOf(plotOf(track, kind).stroke).map(({ isStart }) => isStart),
      [true, false, true, false]);
  }
});

test("missing speeds do not interrupt the line", () => {
  const { stroke } = plotOf(trackWith([1, NaN, 3]), kSpeed);
  assert.deepEqual(pointsOf(stroke).map(({ isStart }) => isStart), [true, false]);
});

test("missing elevations at the start leave no empty area", () => {
  const { fill } = plotOf(trackWith([NaN, 100, 150]), kElevation);
  assert.equal(fill.split("Z").length, 2);
  assert.ok(fill.startsWith("M360.0"));
});

test("a point is plotted if it is off the line by more than half a unit", () => {
  const count = (offset) =>
    pointsOf(plotOf(trackWith([100, 150 + offset, 200]), kElevation).stroke).length;
  assert.equal(count(0.55), 2);
  assert.equal(count(0.57), 3);
});

test("a plot of a hundred thousand points has few segments", () => {
  const values = Array.from({ length: 100000 }, (_, i) => 500 + 100 * Math.sin(i / 5000));
  const { stroke } = plotOf(trackWith(values), kElevation);
  assert.ok(pointsOf(stroke).length < 300);
});

test("ticks are at round values within the plot", () => {
  assert.deepEqual(textsOf(plotOf(trackWith([100, 200]), kElevation).ticks), ["100", "150", "200"]);
  assert.deepEqual(textsOf(plotOf(trackWith([-5, 4]), kElevation).ticks), ["−10", "0", "10"]);
});

test("speed ticks are in km/h", () => {
  assert.deepEqual(textsOf(plotOf(trackWith([5, 5]), kSpeed).ticks), ["0", "10", "20"]);
  assert.deepEqual(textsOf(plotOf(trackWith([1, 1]), kSpeed).ticks), ["0", "2", "4"]);
});

test("a tick within 3 % of the top is omitted", () => {
  const speedTicks = (speed) => textsOf(plotOf(trackWith([speed, speed]), kSpeed).ticks);
  assert.deepEqual(speedTicks(4.64), ["0", "10"]);
  assert.deepEqual(speedTicks(4.75), ["0", "10", "20"]);
});

test("no tick needs decimals, however small the range", () => {
  for (const kind of kPlotKinds)
    for (const { text } of plotOf(trackWith([0, 0]), kind).ticks)
      assert.match(text, /^−?\d+$/);
});

test("ticks match the plot's height", () => {
  for (const [kind, factor] of [[kElevation, 1], [kSpeed, 3.6]]) {
    const { low, high, ticks } = plotOf(trackWith([100, 200]), kind);
    assert.ok(ticks.length > 1);
    for (const { y, text } of ticks) {
      const value = low + (1 - y / kind.height) * (high - low);
      assert.ok(Math.abs(value * factor - Number(text)) < 1e-9, text);
    }
  }
});
