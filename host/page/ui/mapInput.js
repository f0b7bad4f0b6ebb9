// SPDX-License-Identifier: MIT
// The map's controls: pointing, dragging, pinching, the wheel, keys and buttons.

import { byId } from "./dom.js";

const kDragStart = 4; // pixels
const kKeyStep = 60; // pixels
const kKeyZoom = 1.5;
const kWheelPixels = 250; // for a factor of two
const kMaxWheelPixels = 300;
const kWheelLine = 16; // pixels

// Lets the user move `map`, and mark what they point at.
export function listenToMap(map, mark) {
  listenToPointers(map, mark);
  listenToWheel(map);
  listenToKeys(map, mark);
  byId("zoom-in").addEventListener("click", () => zoomInMiddle(map, 2));
  byId("zoom-out").addEventListener("click", () => zoomInMiddle(map, 0.5));
}

function zoomInMiddle(map, factor) {
  map.zoomAt(factor, map.view.width / 2, map.view.height / 2);
}

// The pixel of the map that an event is at.
function pixelOf(map, event) {
  const box = map.canvas.getBoundingClientRect();
  return [event.clientX - box.left, event.clientY - box.top];
}

function markAt(map, mark, event) {
  const { item, index } = map.itemAt(...pixelOf(map, event));
  mark.point(item, index);
}

// A click on nothing releases what was pinned.
function pinAt(map, mark, px, py) {
  const { item, index } = map.itemAt(px, py);
  mark.pin(item, index);
}

function listenToPointers(map, mark) {
  const { canvas } = map;
  const pressed = new Map(); // the pixel of each pressed pointer, by id: at most two
  let isMarkingSoon = false, isDrag = false, start = [0, 0];
  canvas.addEventListener("pointerdown", (event) => {
    canvas.setPointerCapture(event.pointerId);
    if (pressed.size === 0)
      start = pixelOf(map, event);
    isDrag = pressed.size > 0;
    if (pressed.size < 2)
      pressed.set(event.pointerId, pixelOf(map, event));
    markAt(map, mark, event);
  });
  canvas.addEventListener("pointermove", (event) => {
    if (pressed.has(event.pointerId)) {
      const [px, py] = pixelOf(map, event);
      isDrag = isDrag || Math.hypot(px - start[0], py - start[1]) >= kDragStart;
      drag(map, pressed, event);
    } else if (!isMarkingSoon) { // once a frame is enough
      isMarkingSoon = true;
      requestAnimationFrame(() => {
        isMarkingSoon = false;
        if (pressed.size === 0)
          markAt(map, mark, event);
      });
    }
  });
  canvas.addEventListener("pointerup", (event) => {
    if (pressed.has(event.pointerId) && !isDrag)
      pinAt(map, mark, ...pixelOf(map, event));
  });
  for (const end of ["pointerup", "pointercancel"])
    canvas.addEventListener(end, (event) => pressed.delete(event.pointerId));
  canvas.addEventListener("pointerleave", (event) => {
    if (event.pointerType === "mouse")
      mark.leave();
  });
}

// One finger, or the mouse, moves the map; two fingers move and zoom it.
function drag(map, pressed, event) {
  const before = [...pressed.values()];
  const [oldX, oldY] = pressed.get(event.pointerId);
  const [px, py] = pixelOf(map, event);
  pressed.set(event.pointerId, [px, py]);
  if (pressed.size === 1) {
    map.panBy(px - oldX, py - oldY);
    return;
  }
  const distance = ([[ax, ay], [bx, by]]) => Math.max(Math.hypot(ax - bx, ay - by), 1);
  const middle = ([[ax, ay], [bx, by]]) => [(ax + bx) / 2, (ay + by) / 2];
  const after = [...pressed.values()];
  const from = middle(before), to = middle(after);
  map.panBy(to[0] - from[0], to[1] - from[1]);
  map.zoomAt(distance(after) / distance(before), ...to);
}

function listenToWheel(map) {
  map.canvas.addEventListener("wheel", (event) => {
    event.preventDefault();
    const isInLines = event.deltaMode === WheelEvent.DOM_DELTA_LINE;
    const pixels = event.deltaY * (isInLines ? kWheelLine : 1);
    const limited = Math.max(-kMaxWheelPixels, Math.min(kMaxWheelPixels, pixels));
    map.zoomAt(2 ** (-limited / kWheelPixels), ...pixelOf(map, event));
  }, { passive: false }); // a passive listener could not prevent the page from scrolling
  map.canvas.addEventListener("dblclick", (event) => map.zoomAt(2, ...pixelOf(map, event)));
}

function listenToKeys(map, mark) {
  const actions = {
    "ArrowLeft": () => map.panBy(kKeyStep, 0),
    "ArrowRight": () => map.panBy(-kKeyStep, 0),
    "ArrowUp": () => map.panBy(0, kKeyStep),
    "ArrowDown": () => map.panBy(0, -kKeyStep),
    "+": () => zoomInMiddle(map, kKeyZoom),
    "=": () => zoomInMiddle(map, kKeyZoom), // the plus key without shift
    "-": () => zoomInMiddle(map, 1 / kKeyZoom),
    "Enter": () => {
      if (mark.item)
        mark.pin(mark.item, mark.index);
      else
        pinAt(map, mark, map.view.width / 2, map.view.height / 2);
    },
  };
  map.canvas.addEventListener("keydown", (event) => {
    const action = actions[event.key];
    if (!action || event.ctrlKey || event.metaKey || event.altKey)
      return;
    event.preventDefault();
    action();
  });
}
