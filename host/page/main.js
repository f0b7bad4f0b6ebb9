// SPDX-License-Identifier: MIT
// The page's entry point: reads the data and puts the parts of the page together. The modules in
// model/ compute and do not know the document, so that node can test them. Those in ui/ show the
// results.
//
// What this module exports is the page's one global, `page`, for its tests and for
// scripts/page-pictures.

import { boundsOf, kWorld } from "./model/bounds.js";
import { unpackCollection } from "./model/collection.js";
import { allItems } from "./model/items.js";
import { summaryText, titleText } from "./model/itemTexts.js";
import { Mark } from "./model/Mark.js";
import { Stretch } from "./model/Stretch.js";
import { tablesOf } from "./model/tables.js";
import { chooseUnits, kUnitChoices } from "./model/units.js";
import { showAreaButtons, showClockButton, showLayerSwitches } from "./ui/controls.js";
import { byId, element, scrollBehavior } from "./ui/dom.js";
import { listenToMap } from "./ui/mapInput.js";
import { showMarkOnMap } from "./ui/mapMark.js";
import { listenToPrinting } from "./ui/printing.js";
import { listenToChoice } from "./ui/remember.js";
import { showTables } from "./ui/tables.js";
import { Theme } from "./ui/Theme.js";
import { TrackCards } from "./ui/TrackCards.js";
import { TrackMap } from "./ui/TrackMap.js";

export const collection = unpackCollection(JSON.parse(byId("data").textContent));
export const mark = new Mark();
export const stretch = new Stretch();
export let map = null; // null if there is nothing to show
export let cards = null;

export function showOnMap(item) {
  map.fit(boundsOf([item]));
  if (item.kind === "track")
    cards.show(item);
  if (item.kind === "waypoint" || item.kind === "geocache")
    mark.pin(item);
  map.box.scrollIntoView({ block: "nearest", behavior: scrollBehavior() });
}

function goTo(bounds) {
  map.fit(bounds);
  cards.goTo(bounds);
}

function showItems(items) {
  byId("overview").classList.toggle("alone", collection.tracks.length === 0);
  map = new TrackMap(collection);
  showMarkOnMap(map, mark);
  stretch.onChange(() => map.showStretch(stretch));
  listenToMap(map, mark);
  const redraw = () => {
    mark.clear();
    stretch.clear();
    map.drawSoon();
  };
  cards = new TrackCards(collection.tracks, { mark, stretch },
    { onSwitch: redraw, onShow: showOnMap });
  showClockButton(() => {
    mark.clear();
    cards.showTimes();
    showTexts();
  });
  showLayerSwitches(collection, (layer, isShown) => {
    map.layers[layer] = isShown;
    redraw();
  });
  map.measure();
  const profiles = showProfileChoice(redraw);
  listenToChoice(byId("units"), "units", kUnitChoices, (choice) => {
    chooseUnits(choice);
    redraw();
    cards.redraw(profiles.axis);
    showTexts();
  });
  const { areas } = collection;
  const shownAreas = showAreaButtons(areas, boundsOf(items), goTo);
  goTo(areas.length > 0 ? areas[0].bounds : kWorld); // items can be without any point
  new ResizeObserver(() => map.measure()).observe(map.box);
  const theme = new Theme(() => map.drawSoon());
  listenToPrinting({ map, cards, mark, theme, areas: shownAreas });
}

// What depends on the chosen clock and units.
function showTexts() {
  showHead();
  showTables(tablesOf(collection), showOnMap);
}

function showHead() {
  document.title = titleText(collection);
  byId("summary").textContent = summaryText(collection);
}

// Lets the reader choose the axis of the profiles. Returns the choice.
function showProfileChoice(onChange) {
  const chosen = { axis: "distance" };
  if (!collection.tracks.some((track) => track.first !== null))
    return chosen;
  const list = element("select", { id: "axis" });
  byId("tools").append(element("label", {}, "Profiles along", list));
  listenToChoice(list, "axis", { distance: "distance", time: "time" }, (axis) => {
    chosen.axis = axis;
    onChange();
    cards.redraw(axis);
  });
  return chosen;
}

function showNothing() {
  byId("units").parentElement.remove();
  byId("nothing").hidden = false;
  byId("overview").remove();
  new Theme(() => {});
}

byId("note").textContent = collection.note ? `${collection.note}.` : "";
showHead();
const items = allItems(collection);
if (items.length > 0)
  showItems(items);
else
  showNothing();
document.documentElement.dataset.ready = "";
