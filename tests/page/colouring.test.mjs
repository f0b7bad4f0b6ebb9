// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { Colouring, kClassCount, traceClasses } from "../../host/page/model/colouring.js";
import { MapView } from "../../host/page/model/MapView.js";
import { trackOf } from "./fixtures.mjs";

const track = (elevation) => ({
  count: elevation.length, elevation: Float64Array.from(elevation),
  speed: Float64Array.from(elevation), distance: elevation.map((_, i) => 100 * i),
});

test("heights are in seven classes of equal width, from the lowest to the highest", () => {
  const hill = track([0, 9, 10, 35, 60, 61, 70]);
  const colouring = new Colouring("height", [hill]);
  assert.deepEqual([...colouring.classesOf(hill)], [0, 0, 1, 3, 6, 6, 6]);
  assert.deepEqual(colouring.legendTexts(), ["< 10 m", "> 60 m"]);
});

test("speeds begin at zero, and a few high ones do not set the scale", () => {
  const walk = track([...Array(99).fill(7), 500]);
  const colouring = new Colouring("speed", [walk]);
  assert.deepEqual(colouring.legendTexts(), ["< 3.6 km/h", "> 21.6 km/h"]);
  assert.equal(colouring.classesOf(walk)[99], kClassCount - 1);
});

test("slopes have fixed limits, level is the middle class", () => {
  const colouring = new Colouring("slope", []);
  const slope = (percent) => colouring.classesOf(track([0, percent]))[1];
  assert.deepEqual([-21, -19, -5, -2, 0, 2, 5, 19, 21].map(slope), [0, 1, 2, 3, 3, 3, 4, 5, 6]);
  assert.deepEqual(colouring.legendTexts(), ["< −20.0 %", "> +20.0 %"]);
});

test("points without a value have no class, and a page without any has a scale", () => {
  const bare = track([NaN, NaN]);
  for (const kind of ["speed", "height", "slope"]) {
    const colouring = new Colouring(kind, [bare]);
    assert.ok(colouring.classesOf(bare).every((index) => index >= kClassCount));
    assert.equal(colouring.legendTexts().length, 2);
  }
});

test("gaps are found in any of the tracks", () => {
  const whole = track([1, 2]), bare = track([1, NaN]);
  const colouring = new Colouring("height", [whole, bare]);
  assert.deepEqual([[whole], [whole, bare], []].map((one) => colouring.hasGaps(one)),
    [false, true, false]);
});

// The pieces of a line with a point every `step` pixels: the class of each, then its pixels.
function piecesOf(classes, step, indices) {
  const view = new MapView(100, 100);
  const line = trackOf(classes.map((_, i) => [0, step * i]));
  const pieces = [], pens = classes.map((index) => ({
    moveTo: (px) => pieces.push([index, px - 50]),
    lineTo: (px) => pieces.at(-1).push(px - 50),
  }));
  const penOf = (index) => pens[classes.indexOf(index)];
  traceClasses(line, { indices, classes, view, penOf });
  return pieces.map((piece) => piece.map(Math.round));
}

test("a line is cut where the class changes, also between the points that the scale shows", () => {
  assert.deepEqual(piecesOf([2, 2, 5, 5, 5], 10, [0, 4]), [[2, 0, 20], [5, 20, 40]]);
});

test("classes that change within three pixels are joined", () => {
  assert.deepEqual(piecesOf([2, 5, 2, 5, 2], 1, [0, 4]), [[2, 0, 3], [5, 3, 4]]);
});

test("pieces beyond the map are left out", () => {
  assert.deepEqual(piecesOf([1, 1, 1, 1], 40, [0, 1, 2, 3]), [[1, 0, 40, 80]]);
});
