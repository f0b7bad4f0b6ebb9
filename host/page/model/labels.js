// SPDX-License-Identifier: MIT
// Names on the map, where there is room for them.

const kMaxLabels = 160;
const kMaxTries = 4 * kMaxLabels; // labels looked at, and points that labels avoid
const kMaxLength = 24;            // characters of a name
const kHalfHeight = 7;            // pixels
const kDotRadius = 4;

// A name, shortened for the map. Counts code points, so that no character is cut in two.
export function shortName(name) {
  if (name.length <= kMaxLength)
    return name;
  // A code point has at most two units. The first slice spares a name of megabytes.
  return `${[...name.slice(0, 2 * kMaxLength)].slice(0, kMaxLength - 1).join("")}…`;
}

// Chooses which labels to show, the first ones first, and where: to the right of their points, to
// the left, above or below. `labels` have `name`, `x`, `latitude` and `font`, and the `radius` of
// their point in pixels unless it is a dot; `measure(text, font)` returns a text's width in pixels;
// `obstacles` are boxes that labels avoid, as boxAround() makes them. Returns
// `{ label, text, left, middle }` for each label shown.
export function placeLabels(labels, view, measure, obstacles = []) {
  const taken = [...cornersInUse(view), ...obstacles.slice(0, kMaxTries),
    ...labels.slice(0, kMaxTries).map((label) => dotBox(label, view))];
  const placed = [];
  let tries = 0;
  for (const label of labels) {
    const px = view.toPixelX(label.x), py = view.toPixelY(label.latitude);
    if (!view.contains(px, py))
      continue;
    if (++tries > kMaxTries || placed.length === kMaxLabels)
      break;
    const text = shortName(label.name);
    const isFree = (box) => isWithin(box, view) && !taken.some((other) => overlap(box, other));
    const chosen = boxesBeside(px, py, measure(text, label.font), label.radius)
      .find(isFree);
    if (!chosen)
      continue;
    taken.push(chosen);
    placed.push({ label, text, left: chosen.left, middle: chosen.top + kHalfHeight });
  }
  return placed;
}

export function boxAround(px, py, dx, dy) {
  return { left: px - dx, right: px + dx, top: py - dy, bottom: py + dy };
}

// The zoom buttons and the north arrow.
function cornersInUse(view) {
  return [boxAround(view.width - 27, view.height - 72, 27, 72),
    boxAround(view.width - 27, 25, 27, 25)];
}

function dotBox({ x, latitude, radius = kDotRadius }, view) {
  return boxAround(view.toPixelX(x), view.toPixelY(latitude), radius, radius);
}

function boxesBeside(px, py, width, radius = kDotRadius) {
  const beside = radius + 4, above = radius + 10;
  const steps = [[beside, 0], [-beside - width, 0], [-width / 2, -above], [-width / 2, above]];
  return steps.map(([dx, dy]) => ({
    left: px + dx, right: px + dx + width,
    top: py + dy - kHalfHeight, bottom: py + dy + kHalfHeight,
  }));
}

function isWithin(box, view) {
  return box.left > 2 && box.right < view.width - 2 && box.top > 2 && box.bottom < view.height - 2;
}

function overlap(a, b) {
  return a.left <= b.right && a.right >= b.left && a.top <= b.bottom && a.bottom >= b.top;
}
