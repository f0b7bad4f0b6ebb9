// SPDX-License-Identifier: MIT
// The marked point on the map: a dot and a tip with what is known about it.

import { tipLines } from "../model/itemTexts.js";
import { trackColour } from "../model/trackStyle.js";
import { byId, element, nameElement } from "./dom.js";
import { hintElement } from "./hint.js";

const kGap = 14;   // pixels between the point and its tip
const kMargin = 4; // pixels around the tip

export function showMarkOnMap(map, mark) {
  mark.onChange((item) => {
    if (item)
      fillTip(mark, () => moveMark(map.view, mark));
    byId("tip").classList.toggle("pinned", mark.isPinned);
    map.highlight(item?.kind === "track" ? item : null);
    moveMark(map.view, mark);
  });
  map.onDraw = () => moveMark(map.view, mark);
}

// Calls `onResize()` when the tip has changed its size.
function fillTip({ item, index, isPinned }, onResize) {
  const lines = tipLines(item, index);
  const parts = lines.map((line) => element("bdi", { className: "line", textContent: line }));
  if (item.comment)
    parts.push(element("bdi", { className: "long", textContent: item.comment }));
  if (item.hint)
    parts.push(isPinned ? hintElement(item, onResize) :
      element("span", { className: "line", textContent: "Click for the hint" }));
  byId("tip").replaceChildren(nameElement(item.name), ...parts);
}

function moveMark(view, { item, index }) {
  const dot = byId("dot"), tip = byId("tip");
  const hadFocus = tip.contains(document.activeElement);
  const isTrack = item?.kind === "track";
  const px = item ? view.toPixelX(isTrack ? item.x[index] : item.x) : NaN;
  const py = item ? view.toPixelY(isTrack ? item.latitude[index] : item.latitude) : NaN;
  dot.hidden = tip.hidden = !view.contains(px, py); // false for NaN
  if (dot.hidden) {
    if (hadFocus)
      tip.parentElement.querySelector("canvas").focus();
    return;
  }
  dot.classList.toggle("ring", !isTrack);
  dot.style.transform = `translate(${px}px, ${py}px)`;
  dot.style.setProperty("--line", isTrack ? `var(${trackColour(item)})` : "var(--ink)");
  // Above the point if there is room, otherwise below.
  const rightmost = Math.max(view.width - tip.offsetWidth - kMargin, kMargin);
  const left = Math.min(Math.max(px - tip.offsetWidth / 2, kMargin), rightmost);
  const above = py - tip.offsetHeight - kGap;
  tip.style.transform = `translate(${left}px, ${above < kMargin ? py + kGap : above}px)`;
}
