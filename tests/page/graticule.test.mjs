// SPDX-License-Identifier: MIT

import assert from "node:assert/strict";
import test from "node:test";

import { graticule, scaleBar } from "../../host/page/model/graticule.js";
import { MapView } from "../../host/page/model/MapView.js";

function viewOf(values) {
  return Object.assign(new MapView(800, 600), values);
}

const textsOf = ({ labels }) => labels.map(({ text }) => text);

test("meridians are at least 110 pixels apart, at round degrees", () => {
  const { meridians } = graticule(viewOf({ scale: 110 }));
  assert.equal(meridians[1] - meridians[0], 110);
  const wider = graticule(viewOf({ scale: 109 })).meridians;
  assert.equal(wider[1] - wider[0], 218);
});

test("meridians are as far apart where degrees are narrower", () => {
  const { meridians } = graticule(viewOf({ latitude: 60, scale: 110 }));
  assert.equal(meridians[1] - meridians[0], 110); // of two degrees
});

test("lines are never more than 30 degrees apart", () => {
  const { meridians } = graticule(viewOf({ scale: 800 / 720 }));
  assert.ok(meridians.length >= 23 && meridians.length <= 25, `${meridians.length}`);
});

test("there are no parallels beyond the poles", () => {
  const { parallels } = graticule(viewOf({ scale: 2 }));
  assert.deepEqual([Math.min(...parallels), Math.max(...parallels)], [120.5, 480.5]);
});

test("labels have as many decimals as the step needs", () => {
  assert.ok(textsOf(graticule(viewOf({ scale: 120 }))).includes("1° N"));
  assert.ok(textsOf(graticule(viewOf({ scale: 1200 }))).includes("0.1° N"));
  assert.ok(textsOf(graticule(viewOf({ scale: 12000 }))).includes("0.01° N"));
});

test("meridians past 180 degrees have usual longitudes", () => {
  assert.ok(textsOf(graticule(viewOf({ x: 181, scale: 200 }))).includes("179° W"));
});

test("labels are beside their lines: above parallels, to the right of meridians", () => {
  const { labels } = graticule(viewOf({ x: 0, scale: 110 }));
  const of = (text) => labels.filter((label) => label.text === text);
  assert.deepEqual(of("1° N"), [{ text: "1° N", px: 6, py: 186.5 }]);
  assert.deepEqual(of("1° W"), [{ text: "1° W", px: 294.5, py: 594 }]);
});

test("labels leave room for the scale bar and for each other", () => {
  for (let x = 0; x < 3; x += 0.05) {
    for (const { px, py } of graticule(viewOf({ x, latitude: x, scale: 120 })).labels) {
      const isMeridian = py === 594;
      assert.ok(isMeridian ? px < 590 && px > 60 : py > 12 && py < 580, `${px}, ${py}`);
    }
  }
});

test("the scale bar is a round length of 60 to 150 pixels and true to scale", () => {
  for (let scale = 2; scale < 4e6; scale *= 1.3) {
    const { pixels, text } = scaleBar(viewOf({ scale }));
    const [number, unit] = text.replace(/,/g, "").split(" ");
    assert.match(number, /^[125]0*$/);
    assert.ok(pixels >= 59.99 && pixels <= 150.01, `${pixels}`);
    const metres = Number(number) * { m: 1, km: 1000 }[unit];
    assert.ok(Math.abs(metres / (pixels / scale * 111195) - 1) < 1e-4, text);
  }
});

test("the scale bar counts in kilometres from 1000 m on", () => {
  const metresPerDegree = 6371008.8 * Math.PI / 180;
  const barOf = (metres) => scaleBar(viewOf({ scale: 60 / metres * metresPerDegree })).text;
  assert.equal(barOf(500), "500 m");
  assert.equal(barOf(999), "1 km");
  assert.equal(barOf(1001), "2 km");
});

test("labels of meridians do not overlap on a map of the whole world", () => {
  const { labels, meridians } = graticule(viewOf({ width: 1200, scale: 1200 / 720 }));
  const columns = labels.filter(({ py }) => py === 594).map(({ px }) => px);
  assert.ok(columns.length > 3 && columns.length < meridians.length, `${columns}`);
  assert.ok(columns.every((px, i) => i === 0 || px - columns[i - 1] >= 60), `${columns}`);
});
