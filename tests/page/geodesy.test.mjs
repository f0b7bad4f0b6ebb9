// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { kEarthRadius, metresBetween, normalLongitude } from "../../host/page/model/geodesy.js";

const near = (actual, expected) => assert.ok(Math.abs(actual - expected) < 1e-3, `${actual}`);

test("a quarter of a great circle is a quarter of the circumference, in any direction", () => {
  const quarter = kEarthRadius * Math.PI / 2;
  near(metresBetween(0, 0, 0, 90), quarter);
  near(metresBetween(0, 0, -90, 0), quarter);
  near(metresBetween(0, 135, 0, -135), quarter);
});

test("a parallel is shorter away from the equator", () => {
  near(metresBetween(60, 10, 60, 10.001) / metresBetween(0, 10, 0, 10.001), 0.5);
});

test("opposite points are half the circumference apart, in spite of rounding", () => {
  near(metresBetween(23.4, -170, -23.4, 10), kEarthRadius * Math.PI);
});

test("a point has no distance to itself", () => {
  assert.equal(metresBetween(46.5, 7.25, 46.5, 7.25), 0);
});

test("a longitude is normalized to above -180 and up to 180", () => {
  const expected = [[0, 0], [180, 180], [180.5, -179.5], [-180, 180], [-179.5, -179.5], [540, 180],
    [725, 5], [-190, 170]];
  for (const [longitude, normal] of expected)
    assert.equal(normalLongitude(longitude), normal, `${longitude}`);
});
