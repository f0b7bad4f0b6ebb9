// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { lineMarks } from "../../host/page/model/lineMarks.js";
import { MapView } from "../../host/page/model/MapView.js";
import { chooseUnits } from "../../host/page/model/units.js";
import { trackOf } from "./fixtures.mjs";

// A map around the equator on which a kilometre is `pixels` pixels.
function viewWith(pixels) {
  return Object.assign(new MapView(2000, 2000), { scale: pixels * 111.195 });
}

// To the east and back, 5.56 km each way.
const kThereAndBack = trackOf([[0, 0], [0, 0.05], [0.001, 0.05], [0.001, 0]]);
const namesOf = ({ distances }) => distances.map(({ name }) => name);

test("distances are at least 110 pixels apart", () => {
  assert.deepEqual(namesOf(lineMarks(kThereAndBack, viewWith(56))), ["2 km", "4 km", "6 km", "8 km",
    "10 km"]);
  assert.deepEqual(namesOf(lineMarks(kThereAndBack, viewWith(54))), ["5 km", "10 km"]);
  assert.ok(namesOf(lineMarks(kThereAndBack, viewWith(360))).includes("0.5 km"));
});

test("distances are in the chosen unit", () => {
  chooseUnits("mi-ft");
  assert.deepEqual(namesOf(lineMarks(kThereAndBack, viewWith(30))), ["5 mi"]);
  chooseUnits("km-m");
});

test("a distance is between two points, where the line is", () => {
  const [{ x, latitude }] = lineMarks(kThereAndBack, viewWith(56)).distances;
  assert.ok(Math.abs(x - 0.05 * 2000 / 5559.8) < 1e-5, `${x}`);
  assert.equal(latitude, 0);
});

test("arrows point where the track goes", () => {
  const angles = lineMarks(kThereAndBack, viewWith(56)).arrows.map(({ angle }) => angle);
  assert.ok(Math.abs(angles[0]) < 1e-6 && Math.abs(Math.abs(angles.at(-1)) - Math.PI) < 1e-6,
    `${angles}`);
});

test("marks beyond the view are left out, and so are those of a tiny track", () => {
  const away = Object.assign(viewWith(56), { x: 50 });
  assert.deepEqual(lineMarks(kThereAndBack, away), { distances: [], arrows: [] });
  assert.deepEqual(lineMarks(kThereAndBack, viewWith(1)), { distances: [], arrows: [] });
});

test("a track without points or length has no marks", () => {
  for (const points of [[], [[1, 1]], [[1, 1], [1, 1]]])
    assert.deepEqual(lineMarks(trackOf(points), viewWith(56)), { distances: [], arrows: [] });
});

test("a track that fills the map has at most 50 distances and arrows, at round multiples", () => {
  const zigzag = trackOf(Array.from({ length: 400 }, (_, i) => [0.0001 * i, i % 2 * 0.05]));
  const { distances, arrows } = lineMarks(zigzag, viewWith(112)); // 2,220 km, in steps of 1 km
  assert.ok(distances.length > 20 && distances.length <= 50, `${distances.length}`);
  assert.ok(arrows.length > 20 && arrows.length <= 50, `${arrows.length}`);
  assert.deepEqual(namesOf({ distances }).slice(0, 2), ["50 km", "100 km"]);
});

test("a track of far more marks than a map can show has none", () => {
  const far = trackOf([[0, 0], [0, 90]]);
  assert.deepEqual(lineMarks(far, viewWith(1e5)), { distances: [], arrows: [] });
});

test("long distances have thousands separators, short ones no needless digits", () => {
  const around = trackOf([[0, 0], [0, 90], [0, 180]]);
  assert.deepEqual(namesOf(lineMarks(around, viewWith(0.01))), ["20,000 km"]);
  assert.ok(namesOf(lineMarks(kThereAndBack, viewWith(1200))).includes("0.3 km"));
});
