// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { Stretch } from "../../host/page/model/Stretch.js";

test("a stretch runs from its lower index to its higher one, whichever came first", () => {
  const stretch = new Stretch(), track = {}, seen = [];
  stretch.onChange(({ from, to }) => seen.push([from, to]));
  stretch.set(track, 3, 9);
  stretch.set(track, 9, 3);
  assert.deepEqual(seen, [[3, 9], [3, 9]]);
  assert.equal(stretch.track, track);
});

test("equal indices clear the stretch, and only a stretch is cleared", () => {
  const stretch = new Stretch();
  stretch.set({}, 3, 3);
  assert.equal(stretch.track, null);
  let count = 0;
  stretch.onChange(() => ++count);
  stretch.clear();
  assert.equal(count, 0);
  stretch.set({}, 3, 4);
  stretch.clear();
  assert.deepEqual([stretch.track, count], [null, 2]);
});

test("a stretch is extended from its anchor, or from the index if it ended elsewhere", () => {
  const stretch = new Stretch(), track = {}, ends = () => [stretch.anchor, stretch.end];
  stretch.extend(track, 5, 6);
  assert.deepEqual(ends(), [5, 6]);
  stretch.extend(track, 6, 7);
  assert.deepEqual(ends(), [5, 7]);
  stretch.extend(track, 20, 19);
  assert.deepEqual(ends(), [20, 19]);
  stretch.extend({}, 19, 18);
  assert.deepEqual(ends(), [19, 18]);
});

test("only a stretch is shown again", () => {
  const stretch = new Stretch(), seen = [];
  stretch.onChange(({ from, to }) => seen.push([from, to]));
  stretch.refresh();
  stretch.set({}, 3, 4);
  stretch.refresh();
  assert.deepEqual(seen, [[3, 4], [3, 4]]);
});
