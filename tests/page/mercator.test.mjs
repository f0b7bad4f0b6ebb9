// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { kTileEdge, latitudeOf, northOf } from "../../host/page/model/mercator.js";

const near = (actual, expected, tolerance = 1e-9) =>
  assert.ok(Math.abs(actual - expected) < tolerance, `${actual} is not ${expected}`);

test("the equator is at 0 and the edge of the tiles at 180 degrees", () => {
  assert.equal(northOf(0), 0);
  near(northOf(kTileEdge), 180, 1e-6);
  near(northOf(-kTileEdge), -180, 1e-6);
});

test("a degree is twice as long at 60 degrees", () => {
  near((northOf(60.0001) - northOf(59.9999)) / 0.0002, 2, 1e-6);
});

test("latitudes convert back", () => {
  for (const latitude of [-88, -45.5, 0, 1e-6, 46.5, 85, 89])
    near(latitudeOf(northOf(latitude)), latitude);
});

test("a pole is on the map", () => {
  assert.ok(Number.isFinite(northOf(90)) && Number.isFinite(northOf(-90)));
  assert.equal(northOf(90), northOf(89.9));
  assert.ok(northOf(89.8) < northOf(90));
});
