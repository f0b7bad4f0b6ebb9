// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { Mark } from "../../host/page/model/Mark.js";

test("every listener is told what is marked, in the order of registration", () => {
  const mark = new Mark(), item = {}, calls = [];
  mark.onChange((...values) => calls.push(["first", ...values]));
  mark.onChange((...values) => calls.push(["second", ...values]));
  mark.set(item, 5);
  assert.deepEqual(calls, [["first", item, 5], ["second", item, 5]]);
  assert.deepEqual([mark.item, mark.index], [item, 5]);
});

test("a pinned mark stays while the reader points elsewhere, until it is cleared", () => {
  const mark = new Mark(), pinned = {}, other = {};
  mark.pin(pinned, 3);
  mark.point(other, 1);
  mark.leave();
  assert.deepEqual([mark.item, mark.index, mark.isPinned], [pinned, 3, true]);
  mark.clear();
  assert.deepEqual([mark.item, mark.isPinned], [null, false]);
  mark.point(other, 1);
  assert.equal(mark.item, other);
  mark.leave();
  assert.equal(mark.item, null);
});

test("pinning nothing releases the mark", () => {
  const mark = new Mark();
  mark.pin({}, 1);
  mark.pin(null);
  assert.equal(mark.isPinned, false);
});

test("a cleared mark has no item", () => {
  const mark = new Mark(), items = [];
  mark.onChange((item) => items.push(item));
  mark.set({}, 5);
  mark.clear();
  assert.equal(mark.item, null);
  assert.equal(mark.index, 0);
  assert.equal(items.at(-1), null);
});

test("a mark that is shown again keeps its place and its pin", () => {
  const mark = new Mark(), item = {}, calls = [];
  mark.onChange((...values) => calls.push(values));
  mark.refresh();
  mark.pin(item, 2);
  mark.refresh();
  assert.deepEqual(calls, [[item, 2], [item, 2]]);
  assert.equal(mark.isPinned, true);
});
