// SPDX-License-Identifier: MIT
// The page's entry point: reads the data and puts the parts of the page together. The modules in
// model/ compute and do not know the document, so that node can test them. Those in ui/ show the
// results.
//
// What this module exports is the page's one global, `page`, for its tests and for
// scripts/page-pictures.

import { boundsOf, kWorld } from "./model/bounds.js";
import { unpackCollection } from "./model/collection.js";
import { Colouring } from "./model/colouring.js";
import { allItems } from "./model/items.js";
import { kTitle, originText, summaryText, titleText } from "./model/itemTexts.js";
import { Mark } from "./model/Mark.js";
import { Stretch } from "./model/Stretch.js";
import { tablesOf } from "./model/tables.js";
import { chooseUnits, kUnitChoices } from "./model/units.js";
import { AreaButtons } from "./ui/AreaButtons.js";
import { showClockButton, showLayerSwitches, showLegend } from "./ui/controls.js";
import { byId, element, scrollBehavior } from "./ui/dom.js";
import { listenToMap } from "./ui/mapInput.js";
import { showMarkOnMap } from "./ui/mapMark.js";
import { listenToPrinting } from "./ui/printing.js";
import { listenToChoice } from "./ui/remember.js";
import { showSymbols } from "./ui/symbols.js";
import { showTables } from "./ui/tables.js";
import { Theme } from "./ui/Theme.js";
import { showTiles } from "./ui/tiles.js";
import { TrackCards } from "./ui/TrackCards.js";
import { TrackList } from "./ui/TrackList.js";
import { TrackMap } from "./ui/TrackMap.js";

export const collection = unpackCollection(JSON.parse(byId("data").textContent));
export const mark = new Mark();
export const stretch = new Stretch();
export let map = null; // null if there is nothing to show
export let cards = null;
let list = null; // null if there are not several tracks
let refreshTables = () => {};

export function showOnMap(item) {
  map.fit(boundsOf([item]));
  if (item.kind === "track") {
    cards.show(item);
    refresh();
  }
  if (item.kind === "waypoint" || item.kind === "geocache")
    mark.pin(item);
  map.box.scrollIntoView({ block: "nearest", behavior: scrollBehavior() });
}

function goTo(bounds) {
  map.fit(bounds);
  cards.goTo(bounds);
}

function showItems(items) {
  for (const part of document.querySelectorAll("#overview, .advice"))
    part.hidden = false;
  byId("overview").classList.toggle("alone", collection.tracks.length === 0);
  map = new TrackMap(collection);
  showMarkOnMap(map, mark);
  stretch.onChange(() => map.showStretch(stretch));
  listenToMap(map, mark);
  addEventListener("keydown", ({ key }) => {
    if (key === "Escape")
      release();
  });
  cards = new TrackCards(collection.tracks, { mark, stretch },
    { onSwitch: refresh, onShow: showOnMap });
  if (collection.tracks.length > 1)
    list = new TrackList(collection.tracks, { setShown, onShow: showOnMap });
  refreshTables = showTables(tablesOf(collection), showOnMap);
  showClockButton(() => {
    cards.showTimes();
    showTexts();
  });
  showLayerSwitches(collection, (layer, isShown) => {
    map.layers[layer] = isShown;
    refresh();
  });
  map.measure();
  const refreshLegend = showBelowMap();
  const profiles = showProfileChoice();
  listenToChoice(byId("units"), "units", kUnitChoices, (choice) => {
    chooseUnits(choice);
    cards.redraw(profiles.axis);
    refreshLegend();
    showTexts();
  });
  const areas = showAreas(items);
  new ResizeObserver(() => map.measure()).observe(map.box);
  const theme = new Theme(() => map.drawSoon());
  listenToPrinting({ map, cards, mark, theme, areas });
}

// Begins in the area with most points. Returns all areas with their titles.
function showAreas(items) {
  const buttons = new AreaButtons(collection.areas, boundsOf(items), goTo);
  map.onMove = () => buttons.release();
  if (buttons.areas.length > 0)
    buttons.goToFirst();
  else
    goTo(kWorld); // items can be without any point
  return buttons.areas;
}

function release() {
  mark.clear();
  stretch.clear();
}

// After something was shown, hidden or formatted in another way. A mark on what is hidden now is
// released.
function refresh() {
  if (mark.item && map.isShown(mark.item))
    mark.refresh();
  else
    mark.clear();
  if (stretch.track?.isShown)
    stretch.refresh();
  else
    stretch.clear();
  list?.refresh();
  map.drawSoon();
}

function setShown(tracks, isShown) {
  for (const track of tracks)
    cards.of(track).setShown(isShown);
  refresh();
}

// What depends on the chosen clock and units.
function showTexts() {
  refresh();
  showHead();
  refreshTables();
}

function showHead() {
  document.title = titleText(collection);
  byId("title").textContent = collection.title || kTitle;
  byId("summary").textContent = summaryText(collection);
  byId("origin").textContent = originText(collection);
}

// Returns a function that writes the colours' legend again.
function showBelowMap() {
  const refreshLegend = showColourChoice();
  showSymbols(collection);
  showTiles(map, collection.tiles);
  return refreshLegend;
}

// Lets the reader choose what colours the lines. Returns a function that writes the legend again.
function showColourChoice() {
  const { tracks } = collection;
  let colouring = null;
  const refreshLegend = () => showLegend(colouring, tracks);
  if (tracks.every((track) => track.count < 2))
    return refreshLegend;
  const choices = { track: "track" };
  if (tracks.some((track) => track.first !== null))
    choices.speed = "speed";
  if (tracks.some((track) => track.ascent !== null))
    Object.assign(choices, { height: "height", slope: "slope" });
  const chooser = element("select", { id: "colours" });
  byId("colouring").append(element("label", {}, "Colour by", chooser));
  listenToChoice(chooser, "colours", choices, (kind) => {
    colouring = kind === "track" ? null : new Colouring(kind, tracks);
    map.colourBy(colouring);
    refreshLegend();
  });
  return refreshLegend;
}

// Lets the reader choose the axis of the profiles. Returns the choice.
function showProfileChoice() {
  const chosen = { axis: "distance" };
  if (!collection.tracks.some((track) => track.first !== null))
    return chosen;
  const chooser = element("select", { id: "axis" });
  byId("tools").append(element("label", {}, "Profiles along", chooser));
  listenToChoice(chooser, "axis", { distance: "distance", time: "time" }, (axis) => {
    chosen.axis = axis;
    cards.redraw(axis);
    refresh();
  });
  return chosen;
}

function showNothing() {
  byId("units").parentElement.remove();
  byId("nothing").hidden = false;
  byId("overview").remove();
  new Theme(() => {});
}

document.querySelector(".choices").hidden = false;
byId("note").textContent = collection.note ? `${collection.note}.` : "";
showHead();
const items = allItems(collection);
if (items.length > 0)
  showItems(items);
else
  showNothing();
document.documentElement.dataset.ready = "";
