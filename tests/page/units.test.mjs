// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { kilometresText, metresText, slopeText, speedText } from "../../host/page/model/format.js";
import { scaleBar } from "../../host/page/model/graticule.js";
import { MapView } from "../../host/page/model/MapView.js";
import { chooseUnits, kUnitChoices } from "../../host/page/model/units.js";

function textsWith(choice) {
  chooseUnits(choice);
  const texts = [metresText(1000), kilometresText(10), speedText(10)];
  chooseUnits("km-m");
  return texts;
}

test("heights and lengths are shown in the units of each choice", () => {
  assert.deepEqual(Object.keys(kUnitChoices).map(textsWith), [
    ["1,000 m", "10.00 km", "36.0 km/h"], ["3,281 ft", "6.21 mi", "22.4 mph"],
    ["1,000 m", "6.21 mi", "22.4 mph"], ["3,281 ft", "10.00 km", "36.0 km/h"],
  ]);
});

test("a choice that does not exist changes nothing", () => {
  for (const choice of [null, undefined, "", "mi", "mi-", "constructor", "__proto__"])
    assert.deepEqual(textsWith(choice), ["1,000 m", "10.00 km", "36.0 km/h"]);
});

test("the scale bar is in feet below a mile", () => {
  chooseUnits("mi-ft");
  const textAt = (scale) => scaleBar(Object.assign(new MapView(800, 600), { scale })).text;
  assert.equal(textAt(20000), "2,000 ft");
  assert.equal(textAt(6000), "5,000 ft");
  assert.equal(textAt(4000), "2 mi");
  chooseUnits("km-m");
});

test("a slope has a sign unless it rounds to nothing", () => {
  assert.deepEqual([0.123, -0.05, 0.0004, -0.0004, NaN].map(slopeText),
    ["+12.3 %", "−5.0 %", "0.0 %", "0.0 %", "–"]);
});
