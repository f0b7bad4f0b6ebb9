// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { mapLink } from "../../host/page/model/mapLink.js";
import { MapView } from "../../host/page/model/MapView.js";

function linkOf(x, latitude, scale) {
  const view = new MapView(800, 600);
  Object.assign(view, { x, latitude, scale });
  return mapLink(view).replace(/^.*#map=/, "");
}

test("a link has the zoom level, the latitude and the longitude", () => {
  const view = new MapView(800, 600);
  Object.assign(view, { x: 7.25, latitude: 0, scale: 256 / 360 });
  assert.equal(mapLink(view), "https://www.openstreetmap.org/#map=0/0.00000/7.25000");
  assert.equal(linkOf(7.25, 0, 256 / 360 * 1024), "10/0.00000/7.25000");
});

test("towards the poles a level is smaller", () => {
  assert.equal(linkOf(7.25, 60, 256 / 360 * 1024), "9/60.00000/7.25000");
});

test("longitudes beyond the date line are the usual ones", () => {
  assert.equal(linkOf(190, -17, 100), "7/-17.00000/-170.00000");
  assert.equal(linkOf(-190, -17, 100), "7/-17.00000/170.00000");
});

test("the levels are those that there are", () => {
  assert.equal(linkOf(0, 0, 1e-3), "0/0.00000/0.00000");
  assert.equal(linkOf(0, 0, 4e6), "19/0.00000/0.00000");
});
