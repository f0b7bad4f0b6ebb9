// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { landFor } from "../../host/page/model/land.js";
import { MapView } from "../../host/page/model/MapView.js";
import { collectionOf } from "./fixtures.mjs";

const kWorld = { bounds: [-180e6, -90e6, 180e6, 90e6], unit: 1000000, outlines: ["Q*Q%#%"] };
const kCoast = { bounds: [165e6, -50e6, 175e6, -40e6], unit: 500000, outlines: [] };

const levels = collectionOf({ land: [kWorld, kCoast] }).land;
const [world, coast] = levels;

// A view of so many degrees of latitude and of longitude.
function viewOf(x, latitude, degrees, across = degrees) {
  const view = new MapView(1000 * across / degrees, 1000);
  Object.assign(view, { x, latitude });
  view.setScale(1000 / degrees);
  view.width *= view.parallelScale;
  return view;
}

function levelFor(...view) {
  return landFor(levels, viewOf(...view))?.level ?? null;
}

test("outlines are unpacked from steps in units from the corner", () => {
  assert.deepEqual([...world.outlines[0]], [0, 0, 1, 2]);
});

test("the most detailed level that covers the view is chosen", () => {
  assert.equal(levelFor(170, -45, 9.9), coast);
  assert.equal(levelFor(170, -45, 10.1), world);
  assert.equal(levelFor(170.2, -45, 9.9), world);
  assert.equal(levelFor(170, -45.2, 9.9), world);
});

test("a level is found however often the map went around the world", () => {
  assert.deepEqual(landFor(levels, viewOf(170 - 360, -45, 5)), { level: coast, shifts: [-360] });
  assert.deepEqual(landFor(levels, viewOf(170 + 720, -45, 5)), { level: coast, shifts: [720] });
});

test("the world is drawn on both sides, too", () => {
  assert.deepEqual(landFor(levels, viewOf(20, 0, 100)).shifts, [-360, 0, 360]);
  assert.equal(levelFor(170, 80, 100), world); // beyond the pole
});

test("coasts that are less precise than the view are not drawn", () => {
  assert.equal(levelFor(20, 0, 0.2, 0.26), world);
  assert.equal(levelFor(20, 0, 0.2, 0.24), null);
});

test("without levels there is nothing to draw", () => {
  assert.equal(landFor([], viewOf(170, -45, 5)), null);
});
