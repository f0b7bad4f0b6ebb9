// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { boxAround, placeLabels, shortName } from "../../host/page/model/labels.js";
import { MapView } from "../../host/page/model/MapView.js";

// A map of 1000 by 1000 pixels with a pixel per degree: a label's x and latitude are pixels from
// the middle. Every text is 40 pixels wide.
const kView = new MapView(1000, 1000);

function placed(labels) {
  return placeLabels(labels, kView, () => 40);
}

function labelAt(x, latitude, name = "name") {
  return { name, x, latitude, font: "12px" };
}

// Labels in a grid that leaves room for each.
function roomyLabels(count) {
  return Array.from({ length: count }, (_, i) =>
    labelAt(-480 + 60 * (i % 14), 480 - 20 * Math.floor(i / 14)));
}

test("a name of 24 characters stays whole, a longer one is cut to 23 and an ellipsis", () => {
  assert.equal(shortName("x".repeat(24)), "x".repeat(24));
  assert.equal(shortName("x".repeat(25)), `${"x".repeat(23)}…`);
  assert.equal(shortName(""), "");
});

test("a character of two units is never cut in two", () => {
  assert.equal(shortName("🏔".repeat(25)), `${"🏔".repeat(23)}…`);
  assert.equal(shortName(`x${"🏔".repeat(25)}`), `x${"🏔".repeat(22)}…`);
});

test("a label is to the right of its point", () => {
  const [{ text, left, middle }] = placed([labelAt(0, 0)]);
  assert.deepEqual({ text, left, middle }, { text: "name", left: 508, middle: 500 });
});

test("the text is measured as it is shown", () => {
  const measured = [];
  const name = "x".repeat(30);
  placeLabels([labelAt(0, 0, name)], kView, (text, font) => measured.push([text, font]));
  assert.deepEqual(measured, [[shortName(name), "12px"]]);
});

test("at the right edge a label is to the left", () => {
  // 8 pixels to the point, 40 of text, 2 to the edge: 950 is too far to the right by nothing.
  assert.equal(placed([labelAt(449, 0)])[0].left, 957);
  assert.equal(placed([labelAt(450, 0)])[0].left, 902);
});

test("between two points a label is above its own, then below", () => {
  const neighbours = [labelAt(-30, 0), labelAt(30, 0)];
  const [{ label, middle }] = placed([labelAt(0, 0, "own"), ...neighbours]);
  assert.equal(label.name, "own");
  assert.equal(middle, 486);
  const [below] = placed([labelAt(0, 0, "own"), ...neighbours, labelAt(0, 14)]);
  assert.equal(below.middle, 514);
});

test("a label without room is omitted", () => {
  const around = [[-30, 0], [30, 0], [0, 14], [0, -14]].map(([x, y]) => labelAt(x, y));
  const names = placed([labelAt(0, 0, "own"), ...around]).map(({ label }) => label.name);
  assert.ok(!names.includes("own"));
});

test("the first of two labels in one position wins, the second moves", () => {
  const labels = placed([labelAt(0, 0, "first"), labelAt(0, 0, "second")]);
  assert.deepEqual(labels.map(({ label, left }) => [label.name, left]),
    [["first", 508], ["second", 452]]);
});

test("labels avoid the zoom buttons and the north arrow", () => {
  for (const [latitude, left] of [[443, 872], [442, 928], [-348, 928], [-349, 872]])
    assert.equal(placed([labelAt(420, latitude)])[0].left, left, `${latitude}`);
});

test("labels avoid the dots of other points, of earlier and of later ones", () => {
  const own = labelAt(0, 0, "own");
  for (const [x, left] of [[52, 452], [53, 508]]) {
    for (const labels of [[own, labelAt(x, 0)], [labelAt(x, 0), own]]) {
      const [found] = placed(labels).filter(({ label }) => label === own);
      assert.equal(found.left, left, `${x}`);
    }
  }
});

test("a label avoids a dot that overlaps its start", () => {
  for (const [x, left] of [[3, 508], [4, 452]])
    assert.equal(placed([labelAt(0, 0), labelAt(x, 0)])[0].left, left, `${x}`);
});

test("labels stay two pixels within the upper and lower edges", () => {
  for (const [latitude, middle] of [[490, 10], [491, 23], [-490, 990], [-491, 977]])
    assert.equal(placed([labelAt(0, latitude)])[0].middle, middle, `${latitude}`);
});

test("labels stay two pixels within the left edge", () => {
  // The neighbour leaves room only above and below.
  const isShown = (x) => placed([labelAt(x, 0, "own"), labelAt(x + 30, 0)])
    .some(({ label }) => label.name === "own");
  assert.ok(isShown(-477));
  assert.ok(!isShown(-478));
});

test("points off the map have no labels", () => {
  assert.deepEqual(placed([labelAt(501, 0), labelAt(0, 501), labelAt(-501, 0)]), []);
});

test("160 labels are shown, not 161", () => {
  assert.equal(placed(roomyLabels(159)).length, 159);
  assert.equal(placed(roomyLabels(160)).length, 160);
  assert.equal(placed(roomyLabels(161)).length, 160);
});

test("640 points on the map are tried, those off the map do not count", () => {
  const crowd = (count) => Array.from({ length: count }, () => labelAt(0, 0, "crowd"));
  const far = Array.from({ length: 700 }, () => labelAt(600, 0));
  const shows = (labels) => placed(labels).some(({ label }) => label.name === "last");
  assert.ok(shows([...crowd(639), labelAt(200, 200, "last")]));
  assert.ok(!shows([...crowd(640), labelAt(200, 200, "last")]));
  assert.ok(shows([...far, labelAt(200, 200, "last")]));
});

test("labels avoid obstacles", () => {
  const leftWith = (obstacles) => placeLabels([labelAt(0, 0)], kView, () => 40, obstacles)[0].left;
  assert.equal(leftWith([boxAround(560, 500, 11, 5)]), 508);
  assert.equal(leftWith([boxAround(560, 500, 12, 5)]), 452);
});
