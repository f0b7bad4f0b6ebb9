// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { iconFinder, iconLegend } from "../../host/page/model/icons.js";
import { collectionOf, rawPoint } from "./fixtures.mjs";

const kIcons = [{ symbols: ["camp", "campground"], path: "M1 1" },
  { symbols: ["zoo"], path: "M2 2" }];

test("a picture is found by each of its symbols, in any case", () => {
  const iconOf = iconFinder(kIcons);
  assert.equal(iconOf("Campground"), "M1 1");
  assert.equal(iconOf("CAMP"), "M1 1");
  assert.equal(iconOf("zoo"), "M2 2");
});

test("an unknown symbol has no picture, whatever it is called", () => {
  const iconOf = iconFinder(kIcons);
  for (const symbol of ["", "zz", "zoos", "constructor", "__proto__"])
    assert.equal(iconOf(symbol), null, symbol);
});

test("a collection's waypoints have their pictures", () => {
  const { waypoints } = collectionOf({ icons: kIcons,
    waypoints: [rawPoint(0, 0, { symbol: "Camp" }), rawPoint(0, 0)] });
  assert.deepEqual(waypoints.map(({ icon }) => icon), ["M1 1", null]);
});

test("the legend has each picture once, with up to four of its symbols", () => {
  const rows = iconLegend([{ icon: "M2 2", symbol: "Zoo" }, { icon: "M1 1", symbol: "Camp" },
    { icon: null, symbol: "Pin" }, { icon: "M1 1", symbol: "Camp" },
    ...["E", "D", "B", "F"].map((symbol) => ({ icon: "M3 3", symbol }))]);
  assert.deepEqual(rows, [{ path: "M3 3", text: "B, D, E, F" }, { path: "M1 1", text: "Camp" },
    { path: "M2 2", text: "Zoo" }]);
  assert.equal(iconLegend([..."EDCBA"].map((symbol) => ({ icon: "M3 3", symbol })))[0].text,
    "A, B, C, D");
  assert.deepEqual(iconLegend([]), []);
});
