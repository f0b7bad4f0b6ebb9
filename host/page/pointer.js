// SPDX-License-Identifier: MIT
// What a hand does on the map: pointing, dragging, pinching, the wheel, keys and buttons; and the mark that answers.

const kReach = 24; // pixels from the pointer to what it means
const tip = document.getElementById("tip");
const dot = document.getElementById("dot");
const pointers = new Map(); // those that are down, by id
let marked = null;          // { thing, index }

function nearestPoint(track, px, py, best) {
  const x = fromX(px), latitude = fromY(py), xScale = view.scale * parallelScale();
  for (let i = 0; i < track.count; ++i) {
    const dx = (track.x[i] - x) * xScale, dy = (track.latitude[i] - latitude) * view.scale;
    const square = dx * dx + dy * dy;
    if (square < best.square)
      Object.assign(best, { square, thing: track, index: i });
  }
}

// What is nearest to a pointer. A waypoint wins over the track that it lies on.
function thingAt(px, py) {
  const best = { square: kReach * kReach, thing: null, index: 0 };
  for (const track of held.tracks)
    if (track.isOn)
      nearestPoint(track, px, py, best);
  const near = { square: Math.min(best.square, 144), thing: null };
  const places = [...(isShown.waypoints ? held.waypoints : []), ...(isShown.geocaches ? held.geocaches : []),
    ...(isShown.routes ? held.routes.flatMap((route) => route.places) : [])];
  for (const place of places) {
    const square = (toX(place.x) - px) ** 2 + (toY(place.latitude) - py) ** 2;
    if (square < 64 && square <= near.square + 36)
      Object.assign(near, { square, thing: place });
  }
  return near.thing ? near : best;
}

function tipLines(thing, index) {
  if (thing.kind !== "track")
    return [placeText(thing.latitude, thing.longitude), isKnown(thing.time) ? `${momentText(thing.time)} UTC` : "",
      isKnown(thing.elevation) ? metresText(thing.elevation) : "", thing.comment];
  return [placeText(thing.latitude[index], thing.longitude[index]),
    isKnown(thing.time[index]) ? `${momentText(thing.time[index])} UTC` : "no time",
    `${isKnown(thing.elevation[index]) ? metresText(thing.elevation[index]) : "no elevation"}` +
      (isKnown(thing.speed[index]) ? ` · ${speedText(thing.speed[index])}` : "")];
}

function placeMark() {
  const isTrack = marked?.thing.kind === "track";
  const px = marked ? toX(isTrack ? marked.thing.x[marked.index] : marked.thing.x) : NaN;
  const py = marked ? toY(isTrack ? marked.thing.latitude[marked.index] : marked.thing.latitude) : NaN;
  const isVisible = px >= 0 && px <= view.width && py >= 0 && py <= view.height;
  dot.hidden = tip.hidden = !isVisible;
  if (!isVisible)
    return;
  dot.style.transform = `translate(${px}px, ${py}px)`;
  dot.style.setProperty("--line", isTrack ? `var(${colourOf(marked.thing)})` : "var(--ink)");
  const left = Math.min(Math.max(px - tip.offsetWidth / 2, 4), Math.max(view.width - tip.offsetWidth - 4, 4));
  const isBelow = py - tip.offsetHeight - 14 < 4;
  tip.style.transform = `translate(${left}px, ${isBelow ? py + 14 : py - tip.offsetHeight - 14}px)`;
}

onMark.push((thing, index) => {
  marked = thing ? { thing, index } : null;
  if (thing)
    tip.replaceChildren(nameElement(thing.name), ...tipLines(thing, index).filter(Boolean).map((line) =>
      element("bdi", { className: "line", textContent: line })));
  const track = thing?.kind === "track" ? thing : null;
  if (track !== highlighted) {
    highlighted = track;
    drawSoon();
  }
  placeMark();
});

function pointAt(event) {
  const box = canvas.getBoundingClientRect();
  return [event.clientX - box.left, event.clientY - box.top];
}

function markAt(event) {
  const found = thingAt(...pointAt(event));
  mark(found.thing, found.index);
}

// One finger or the button moves the map; two move and zoom it.
function drag(event) {
  const before = [...pointers.values()];
  const [px, py] = pointAt(event);
  const old = pointers.get(event.pointerId);
  pointers.set(event.pointerId, [px, py]);
  if (pointers.size === 1) {
    panBy(px - old[0], py - old[1]);
    return;
  }
  const spread = ([[ax, ay], [bx, by]]) => Math.max(Math.hypot(ax - bx, ay - by), 1);
  const middle = ([[ax, ay], [bx, by]]) => [(ax + bx) / 2, (ay + by) / 2];
  const after = [...pointers.values()];
  const from = middle(before), to = middle(after);
  panBy(to[0] - from[0], to[1] - from[1]);
  zoomAt(spread(after) / spread(before), ...to);
}

let isPointing = false;
canvas.addEventListener("pointerdown", (event) => {
  canvas.setPointerCapture(event.pointerId);
  if (pointers.size < 2)
    pointers.set(event.pointerId, pointAt(event));
  markAt(event);
});
canvas.addEventListener("pointermove", (event) => {
  if (pointers.has(event.pointerId)) {
    drag(event);
  } else if (!isPointing) { // once a frame is enough
    isPointing = true;
    requestAnimationFrame(() => {
      isPointing = false;
      if (pointers.size === 0)
        markAt(event);
    });
  }
});
for (const end of ["pointerup", "pointercancel"])
  canvas.addEventListener(end, (event) => pointers.delete(event.pointerId));
canvas.addEventListener("pointerleave", (event) => {
  if (event.pointerType === "mouse")
    mark(null);
});
canvas.addEventListener("wheel", (event) => {
  event.preventDefault();
  const pixels = event.deltaY * (event.deltaMode === WheelEvent.DOM_DELTA_LINE ? 16 : 1);
  zoomAt(2 ** (-Math.max(-300, Math.min(300, pixels)) / 250), ...pointAt(event));
}, { passive: false });
canvas.addEventListener("dblclick", (event) => zoomAt(2, ...pointAt(event)));

const zoomInMiddle = (factor) => zoomAt(factor, view.width / 2, view.height / 2);
canvas.addEventListener("keydown", (event) => {
  const action = {
    "ArrowLeft": () => panBy(60, 0), "ArrowRight": () => panBy(-60, 0), "ArrowUp": () => panBy(0, 60), "ArrowDown": () => panBy(0, -60),
    "+": () => zoomInMiddle(1.5), "=": () => zoomInMiddle(1.5), "-": () => zoomInMiddle(1 / 1.5), "Escape": () => mark(null),
  }[event.key];
  if (!action || event.ctrlKey || event.metaKey || event.altKey)
    return;
  event.preventDefault();
  action();
});
document.getElementById("zoom-in").addEventListener("click", () => zoomInMiddle(2));
document.getElementById("zoom-out").addEventListener("click", () => zoomInMiddle(0.5));
