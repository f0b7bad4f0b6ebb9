// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { axisOf, axisTicks, indexAt } from "../../host/page/model/axis.js";
import { chooseUnits } from "../../host/page/model/units.js";

const textsOf = (ticks) => ticks.map(({ text }) => text);
const distanceTicks = (length) => axisTicks({ name: "distance", length });
const timeTexts = (length) => textsOf(axisTicks({ name: "time", length }));

function timedTrack(times) {
  const known = times.filter((time) => !Number.isNaN(time));
  return {
    count: times.length, time: times, distance: times.map((_, i) => 10 * i),
    first: known.length > 0 ? Math.min(...known) : null,
    last: known.length > 0 ? Math.max(...known) : null,
  };
}

test("an axis is the distance unless time is asked for and there are times", () => {
  assert.equal(axisOf(timedTrack([0, 5]), "distance").name, "distance");
  assert.equal(axisOf(timedTrack([NaN, NaN]), "time").name, "distance");
  assert.equal(axisOf(timedTrack([7, 7]), "time").name, "distance");
  assert.deepEqual(axisOf(timedTrack([]), "distance").length, 0);
  assert.deepEqual(axisOf(timedTrack([0, 5]), "distance").length, 10);
});

test("a time axis never falls, and points without a time stay where they are", () => {
  const { name, values, length } = axisOf(timedTrack([NaN, 100, 110, NaN, 105, 130]), "time");
  assert.deepEqual([name, [...values], length], ["time", [0, 0, 10, 10, 10, 30], 30]);
});

test("time ticks are minutes, hours or days", () => {
  assert.deepEqual(timeTexts(290), ["0:00 h", "0:01", "0:02", "0:03", "0:04"]);
  assert.deepEqual(timeTexts(3600), ["0:00 h", "0:15", "0:30", "0:45"]);
  assert.deepEqual(timeTexts(5 * 3600), ["0:00 h", "1:00", "2:00", "3:00", "4:00"]);
  assert.deepEqual(timeTexts(5 * 86400), ["0 days", "1", "2", "3", "4"]);
});

test("distance ticks are in the chosen unit", () => {
  chooseUnits("mi-ft");
  assert.deepEqual(textsOf(distanceTicks(5000)), ["0 mi", "1", "2"]);
  chooseUnits("km-m");
});

test("distance ticks are in kilometres, the unit is at the first", () => {
  assert.deepEqual(textsOf(distanceTicks(20000)), ["0 km", "5", "10", "15"]);
  assert.deepEqual(textsOf(distanceTicks(2500)), ["0 km", "0.5", "1", "1.5", "2"]);
  assert.deepEqual(textsOf(distanceTicks(1000)), ["0 km", "0.2", "0.4", "0.6", "0.8"]);
  assert.deepEqual(textsOf(distanceTicks(5e6)), ["0 km", "1,000", "2,000", "3,000", "4,000"]);
});

test("distance ticks of a track below a kilometre or a mile are in metres or feet", () => {
  assert.deepEqual(textsOf(distanceTicks(999)), ["0 m", "200", "400", "600", "800"]);
  assert.deepEqual(textsOf(distanceTicks(1)), ["0 m", "0.2", "0.4", "0.6", "0.8"]);
  assert.deepEqual(textsOf(distanceTicks(0.02)), ["0 m", "0.005", "0.01", "0.015"]);
  chooseUnits("mi-ft");
  assert.deepEqual(textsOf(distanceTicks(1609)), ["0 ft", "2,000", "4,000"]);
  assert.deepEqual(textsOf(distanceTicks(1610)), ["0 mi", "0.5"]);
  chooseUnits("km-m");
});

test("a distance tick within 6 % of the end is omitted", () => {
  assert.equal(textsOf(distanceTicks(10640)).at(-1), "10");
  assert.equal(textsOf(distanceTicks(10630)).at(-1), "5");
});

test("a distance tick's fraction is its share of the length", () => {
  assert.deepEqual(distanceTicks(20000).map(({ fraction }) => fraction), [0, 0.25, 0.5, 0.75]);
});

test("the point nearest to a distance is found, beyond the ends too", () => {
  for (const [metres, index] of [[-5, 0], [0, 0], [4.9, 0], [5, 1], [5.1, 1], [19, 1], [21, 2],
    [44, 2], [46, 3], [60, 3], [99, 3]])
    assert.equal(indexAt({ values: [0, 10, 30, 60] }, metres), index, `${metres}`);
});

test("a track of one point has just that", () => {
  assert.equal(indexAt({ values: [0] }, 5), 0);
});
