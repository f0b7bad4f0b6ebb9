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
