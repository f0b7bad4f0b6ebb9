// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { MapView } from "../../host/page/model/MapView.js";
import {
  keyOf, parentOf, serverOf, tilesFor, tilesText, urlOf,
} from "../../host/page/model/tiles.js";

const near = (actual, expected, tolerance = 0.01) =>
  assert.ok(Math.abs(actual - expected) < tolerance, `${actual} is not ${expected}`);

// A map of 800 by 600 pixels at a zoom of tiles.
function viewAt(x, latitude, zoom) {
  const view = new MapView(800, 600);
  Object.assign(view, { x, latitude, isMercator: true });
  view.scale = 256 * 2 ** zoom / 360 / view.parallelScale;
  return view;
}

// The tile that shows a place, by the formula that servers document.
function tileOf(longitude, latitude, zoom) {
  const count = 2 ** zoom, angle = latitude * Math.PI / 180;
  return {
    zoom, column: Math.floor((longitude + 180) / 360 * count),
    row: Math.floor((1 - Math.log(Math.tan(angle) + 1 / Math.cos(angle)) / Math.PI) / 2 * count),
  };
}

function isInside({ left, top, size }, px, py) {
  return px >= left && px < left + size && py >= top && py < top + size;
}

test("a place is on the tile that shows it, at every zoom and high latitudes", () => {
  for (const [longitude, latitude] of [[7.9, 46.4], [-73.1, -51], [15.6, 78.2], [0.1, -84.9],
    [179.99, 85]]) {
    for (const zoom of [2, 7, 13, 19]) {
      const view = viewAt(longitude, latitude, zoom);
      const tile = tilesFor(view).find((one) => isInside(one, 400, 300));
      assert.equal(keyOf(tile), keyOf(tileOf(longitude, latitude, zoom)),
        `${longitude}, ${latitude}, ${zoom}`);
    }
  }
});

test("places away from the middle are on their tiles, too", () => {
  const view = viewAt(15, 78, 6);
  for (const [longitude, latitude] of [[10, 77], [20, 79.2], [15, 76.5]]) {
    const px = view.toPixelX(longitude), py = view.toPixelY(latitude);
    const tile = tilesFor(view).find((one) => isInside(one, px, py));
    assert.equal(keyOf(tile), keyOf(tileOf(longitude, latitude, 6)));
  }
});

test("tiles cover the map without a gap and no more", () => {
  const tiles = tilesFor(viewAt(7.9, 46.4, 13.4));
  near(tiles[0].size, 256 * 2 ** 0.4);
  const lefts = tiles.map(({ left }) => left), tops = tiles.map(({ top }) => top);
  assert.ok(Math.min(...lefts) <= 0 && Math.max(...lefts) + tiles[0].size >= 800);
  assert.ok(Math.min(...tops) <= 0 && Math.max(...tops) + tiles[0].size >= 600);
  for (const { left, top, size } of tiles)
    assert.ok(left < 800 && top < 600 && left + size > 0 && top + size > 0);
});

test("the world repeats to the east and west, but not to the north", () => {
  const tiles = tilesFor(viewAt(180, 0, 1));
  assert.deepEqual([...new Set(tiles.map(({ column }) => column))].sort(), [0, 1]);
  assert.ok(tiles.length >= 6, "the same tile more than once");
  assert.ok(tiles.every(({ row }) => row === 0 || row === 1));
});

test("beyond the edge of the tiles there are none", () => {
  assert.deepEqual(tilesFor(viewAt(0, 88, 10)), []);
});

test("the zoom is limited at both ends", () => {
  assert.equal(tilesFor(viewAt(7, 46, 22))[0].zoom, 19);
  assert.equal(tilesFor(viewAt(7, 0, -1))[0].zoom, 0);
  assert.equal(tilesFor(viewAt(7, 46, 13.49))[0].zoom, 13);
  assert.equal(tilesFor(viewAt(7, 46, 13.51))[0].zoom, 14);
});

test("a larger tile has a part for each smaller one", () => {
  assert.deepEqual(parentOf({ zoom: 3, column: 5, row: 6 }, 0),
    { zoom: 3, column: 5, row: 6, x: 0, y: 0, size: 256 });
  assert.deepEqual(parentOf({ zoom: 3, column: 5, row: 6 }, 2),
    { zoom: 1, column: 1, row: 1, x: 64, y: 128, size: 64 });
});

test("a URL has the numbers of its tile, wherever and however often", () => {
  const tile = { zoom: 3, column: 5, row: 6 };
  assert.equal(urlOf("https://{s}.a.org/{z}/{x}/{y}.png?{z}", tile),
    "https://c.a.org/3/5/6.png?3");
  assert.equal(urlOf("https://a.org/$&{y}{x}{z}", tile), "https://a.org/$&653");
});

test("the reader is told which server it is", () => {
  assert.equal(serverOf("https://{s}.a.org:81/{z}/{x}/{y}"), "a.a.org:81");
  assert.equal(serverOf("file:///maps/{z}/{x}/{y}"), "this computer");
});

test("the reader is told what is missing", () => {
  const textOf = (loading, failed) => tilesText({ loading, failed, total: 12 }, "a.org");
  assert.equal(textOf(0, 0), "");
  assert.equal(textOf(1, 11), "The map is being loaded …");
  assert.equal(textOf(0, 12), "The map cannot be loaded from a.org.");
  assert.equal(textOf(0, 1), "1 of 12 parts of the map cannot be loaded from a.org.");
  assert.equal(tilesText({ loading: 0, failed: 0, total: 0 }, "a.org"), "");
});
