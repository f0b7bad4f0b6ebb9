// SPDX-License-Identifier: MIT
// The marked point on the map: a dot and a tip with what is known about it.

import { tipLines } from "../model/itemTexts.js";
import { trackColour } from "../model/trackStyle.js";
import { byId, element, nameElement } from "./dom.js";

const kGap = 14;   // pixels between the point and its tip
const kMargin = 4; // pixels around the tip

export function showMarkOnMap(map, mark) {
  mark.onChange((item, index) => {
    if (item)
      fillTip(item, index);
    byId("tip").classList.toggle("pinned", mark.isPinned);
    map.highlight(item?.kind === "track" ? item : null);
    moveMark(map.view, mark);
  });
  map.onDraw = () => moveMark(map.view, mark);
}

function fillTip(item, index) {
  const lines = tipLines(item, index);
  byId("tip").replaceChildren(nameElement(item.name),
    ...lines.map((line) => element("bdi", { className: "line", textContent: line })));
}

function moveMark(view, { item, index }) {
  const dot = byId("dot"), tip = byId("tip");
  const isTrack = item?.kind === "track";
  const px = item ? view.toPixelX(isTrack ? item.x[index] : item.x) : NaN;
  const py = item ? view.toPixelY(isTrack ? item.latitude[index] : item.latitude) : NaN;
  dot.hidden = tip.hidden = !view.contains(px, py); // false for NaN
  if (dot.hidden)
    return;
  dot.style.transform = `translate(${px}px, ${py}px)`;
  dot.style.setProperty("--line", isTrack ? `var(${trackColour(item)})` : "var(--ink)");
  // Above the point if there is room, otherwise below.
  const rightmost = Math.max(view.width - tip.offsetWidth - kMargin, kMargin);
  const left = Math.min(Math.max(px - tip.offsetWidth / 2, kMargin), rightmost);
  const above = py - tip.offsetHeight - kGap;
  tip.style.transform = `translate(${left}px, ${above < kMargin ? py + kGap : above}px)`;
}
