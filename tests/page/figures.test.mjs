// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import test from "node:test";

import { stretchFigures, trackFigures } from "../../host/page/model/figures.js";
import { slopesOf } from "../../host/page/model/rates.js";
import { trackOf } from "./fixtures.mjs";

const numberOf = (word) => word === "-" ? null : Number(word);

// The tracks of the file that holds this module and TrackFigures to the same numbers.
function sharedTracks() {
  const text = readFileSync(new URL("../host/points/figures.txt", import.meta.url), "utf-8");
  return text.split(/^track /m).slice(1).map((block) => {
    const [name, ...lines] = block.trim().split("\n");
    const rows = lines.map((line) => line.split(/\s+/));
    const [, ...expected] = rows.pop();
    return { name, points: rows.map((row) => row.map(numberOf)), expected: expected.map(numberOf) };
  });
}

function assertNear(actual, expected, name) {
  assert.ok(expected === null ? Number.isNaN(actual) : Math.abs(actual - expected) < 1e-3,
    `${name}: ${actual}, not ${expected}`);
}

test("figures are those of the program", () => {
  const tracks = sharedTracks();
  assert.equal(tracks.length, 7);
  for (const { name, points, expected: [kilometres, ascent, descent, moving] } of tracks) {
    const figures = trackFigures(trackOf(points));
    assertNear(figures.metres / 1000, kilometres, `${name}: kilometres`);
    assertNear(figures.ascent, ascent, `${name}: ascent`);
    assertNear(figures.descent, descent, `${name}: descent`);
    assertNear(figures.moving, moving, `${name}: moving`);
  }
});

// The tracks of the file that holds this module and TrackProfile to the same numbers.
function checkSharedStretches(block) {
  const [name, ...lines] = block.trim().split("\n");
  const points = [], breaks = [], checks = [];
  for (const words of lines.map((line) => line.split(" "))) {
    if (words[0] === "break")
      breaks.push(points.length);
    else if (["=", "top", "at"].includes(words[0]))
      checks.push([words[0], words.slice(1).map(numberOf)]);
    else
      points.push(words.map(numberOf));
  }
  const track = trackOf(points, { breaks });
  const valuesOf = {
    "=": ([from, to]) => {
      const { metres, seconds, moving, ascent, descent, lowest, highest, slope, average,
        movingAverage } = stretchFigures(track, from, to);
      return [from, to, metres, seconds, moving, ascent, descent, lowest, highest, slope, average,
        movingAverage];
    },
    top: () => [trackFigures(track).top],
    at: ([index]) => [index, track.speed[index], slopesOf(track)[index]],
  };
  for (const [kind, expected] of checks) {
    valuesOf[kind](expected).forEach((value, i) =>
      assertNear(value, expected[i], `${name}: ${kind} ${expected}, value ${i}`));
  }
  return checks.length;
}

test("figures of stretches are those of the program", () => {
  const text = readFileSync(new URL("../host/points/stretches.txt", import.meta.url), "utf-8");
  const checked = text.split(/^track /m).slice(1).map(checkSharedStretches);
  assert.deepEqual(checked, [8, 13, 9, 6, 6, 3, 5]);
});

// 111.195 m from point to point, a minute each, with a rest of two minutes after the third.
const kWalk = trackOf([[0, 0, 100, 0], [0.001, 0, 110, 60], [0.002, 0, 130, 120],
  [0.002, 0, 130, 240], [0.003, 0, 90, 300]]);

test("a stretch has the figures of its points only", () => {
  const { metres, seconds, moving, ascent, descent, slope, lowest, highest } =
    stretchFigures(kWalk, 1, 3);
  assertNear(metres, 111.195, "metres");
  assert.deepEqual([seconds, moving, ascent, descent], [180, 60, 20, 0]);
  assert.deepEqual([lowest, highest], [110, 130]);
  assertNear(slope, 20 / 111.195, "slope");
});

test("the average counts rests, the moving average does not", () => {
  const { average, movingAverage } = trackFigures(kWalk);
  assertNear(average, 3 * 111.195 / 300, "average");
  assertNear(movingAverage, 111.195 / 60, "moving average");
});

test("a point has no slope and no speed", () => {
  const { metres, seconds, slope, average, movingAverage } = stretchFigures(kWalk, 2, 2);
  assert.deepEqual([metres, seconds, slope, average, movingAverage], [0, 0, NaN, NaN, NaN]);
});

test("a track without points has no figures", () => {
  const { metres, seconds, ascent, lowest, top } = trackFigures(trackOf([]));
  assert.deepEqual([metres, seconds, ascent, lowest, top], [0, NaN, NaN, NaN, NaN]);
});
