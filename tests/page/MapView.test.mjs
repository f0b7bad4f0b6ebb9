// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { emptyBounds } from "../../host/page/model/bounds.js";
import { MapView } from "../../host/page/model/MapView.js";

const near = (actual, expected) =>
  assert.ok(Math.abs(actual - expected) < 1e-6, `${actual} is not ${expected}`);

function viewAt(x, latitude, scale) {
  return Object.assign(new MapView(800, 600), { x, latitude, scale });
}

test("the middle of the view is the middle of the map, north is up, east is right", () => {
  const view = viewAt(7, 46, 1000);
  assert.deepEqual([view.toPixelX(7), view.toPixelY(46)], [400, 300]);
  assert.ok(view.toPixelX(7.1) > 400);
  assert.ok(view.toPixelY(46.1) < 300);
});

test("a degree of longitude is half as wide at 60 degrees", () => {
  const view = viewAt(0, 60, 100);
  near(view.toPixelX(1) - view.toPixelX(0), 50);
  near(view.toPixelY(60) - view.toPixelY(61), 100);
});

test("at the poles a degree of longitude still has a width", () => {
  near(viewAt(0, 90, 100).parallelScale, 0.02);
});

test("pixels convert back to degrees", () => {
  const view = viewAt(190, -33, 12345);
  near(view.fromPixelX(view.toPixelX(190.01)), 190.01);
  near(view.fromPixelY(view.toPixelY(-33.01)), -33.01);
});

test("the edges belong to the view, NaN does not", () => {
  const view = new MapView(800, 600);
  assert.ok(view.contains(0, 0) && view.contains(800, 600));
  for (const [px, py] of [[-1, 5], [801, 5], [5, -1], [5, 601], [NaN, 5]])
    assert.ok(!view.contains(px, py), `${px}, ${py}`);
});

test("the scale is limited at both ends", () => {
  const view = new MapView(800, 600);
  view.setScale(1e9);
  assert.equal(view.scale, 4e6);
  view.setScale(0);
  near(view.scale, 800 / 720);
  const narrow = new MapView(360, 600);
  narrow.setScale(0);
  assert.equal(narrow.scale, 1);
});

test("bounds fit with a margin of 56 pixels in the tighter direction", () => {
  const view = new MapView(800, 600);
  view.fit({ west: 7, east: 8, south: -1, north: 1 });
  near(view.toPixelY(1), 56);
  near(view.toPixelY(-1), 544);
  assert.ok(view.toPixelX(7) > 56);
  view.fit({ west: 0, east: 20, south: -1, north: 1 });
  near(view.toPixelX(0), 56);
  near(view.toPixelX(20), 744);
});

test("away from the equator, a wider range of longitudes fits", () => {
  const view = new MapView(800, 600);
  view.fit({ west: 0, east: 40, south: 59, north: 61 });
  near(view.toPixelX(0), 56);
  near(view.toPixelX(40), 744);
});

test("a narrow map has a margin of an eighth", () => {
  const view = new MapView(400, 600);
  view.fit({ west: 0, east: 20, south: -1, north: 1 });
  near(view.toPixelX(0), 50);
});

test("a single point is shown with its surroundings", () => {
  const view = new MapView(800, 600);
  view.fit({ west: 7, east: 7, south: 0, north: 0 });
  near(view.scale, 488 / 0.003);
  assert.deepEqual([view.x, view.latitude], [7, 0]);
});

test("empty bounds change nothing", () => {
  const view = viewAt(7, 46, 1000);
  view.fit(emptyBounds());
  assert.deepEqual({ ...view }, { ...viewAt(7, 46, 1000) });
});

test("zooming keeps the point under the pointer", () => {
  const view = viewAt(7, 46, 1000);
  const x = view.fromPixelX(100), latitude = view.fromPixelY(500);
  view.zoomAt(2, 100, 500);
  assert.equal(view.scale, 2000);
  near(view.toPixelX(x), 100);
  near(view.toPixelY(latitude), 500);
});

test("moving follows the pointer", () => {
  const view = viewAt(7, 46, 1000);
  const x = view.fromPixelX(100);
  view.panBy(30, 0);
  near(view.toPixelX(x), 130);
  view.panBy(0, 20);
  near(view.latitude, 46.02);
});

test("the middle never leaves the poles", () => {
  const view = viewAt(0, 89, 10);
  view.panBy(0, 1000);
  assert.equal(view.latitude, 90);
  view.panBy(0, -5000);
  assert.equal(view.latitude, -90);
});

function mercatorAt(x, latitude, scale) {
  return Object.assign(viewAt(x, latitude, scale), { isMercator: true });
}

test("in the middle, both projections have the same scale", () => {
  const plain = viewAt(7, 60, 1000), mercator = mercatorAt(7, 60, 1000);
  near(mercator.toPixelX(7.01), plain.toPixelX(7.01));
  assert.ok(Math.abs(mercator.toPixelY(60.01) - plain.toPixelY(60.01)) < 0.01);
  near(mercator.scaleAt(60), 1000);
  near(plain.scaleAt(0), 1000);
});

test("Mercator's pixels convert back to degrees", () => {
  const view = mercatorAt(190, -33, 12);
  for (const latitude of [-80, -33.01, 0, 70])
    near(view.fromPixelY(view.toPixelY(latitude)), latitude);
});

test("Mercator's scale grows towards the poles", () => {
  const view = mercatorAt(0, 0, 100);
  near(view.scaleAt(60), 200);
  const step = 1e-4;
  assert.ok(Math.abs((view.toPixelY(60) - view.toPixelY(60 + step)) / step - 200) < 0.01);
});

test("a Mercator map keeps its sizes when it is moved", () => {
  const view = mercatorAt(0, 10, 100);
  const width = view.toPixelX(1) - view.toPixelX(0);
  view.panBy(0, 4000);
  assert.ok(view.latitude > 40);
  near(view.toPixelX(1) - view.toPixelX(0), width);
});

test("zooming a Mercator map keeps the point under the pointer", () => {
  const view = mercatorAt(7, 70, 50);
  const x = view.fromPixelX(100), latitude = view.fromPixelY(500);
  view.zoomAt(3, 100, 500);
  near(view.toPixelX(x), 100);
  near(view.toPixelY(latitude), 500);
});

test("bounds fit a Mercator map, also far in the north", () => {
  for (const bounds of [{ west: 7, east: 8, south: -1, north: 1 },
    { west: 10, east: 30, south: 60, north: 80 }, { west: 0, east: 1, south: 83, north: 87 }]) {
    const view = mercatorAt(0, 0, 100);
    view.fit(bounds);
    near(view.toPixelY(bounds.north), 600 - view.toPixelY(bounds.south));
    near(Math.min(view.toPixelY(bounds.north), view.toPixelX(bounds.west)), 56);
  }
});

test("a Mercator map can be seen as a whole, and stays away from the poles", () => {
  const view = new MapView(800, 600);
  view.useMercator(true);
  view.fit({ west: -180, east: 180, south: -90, north: 90 });
  near(view.toPixelX(180) - view.toPixelX(-180), 400);
  assert.ok(Number.isFinite(view.toPixelY(90)));
  view.setLatitude(90);
  near(view.latitude, 88.5);
  view.useMercator(false);
  view.setLatitude(90);
  assert.equal(view.latitude, 90);
});
