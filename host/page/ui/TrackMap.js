// SPDX-License-Identifier: MIT
// The map, drawn on a canvas: lines, points, names, the graticule and the scale bar.

import { graticule, scaleBar } from "../model/graticule.js";
import { itemAt } from "../model/hitTest.js";
import { boxAround, placeLabels } from "../model/labels.js";
import { mapLink } from "../model/mapLink.js";
import { MapView } from "../model/MapView.js";
import { byId, themeColour } from "./dom.js";
import { drawLand } from "./drawLand.js";
import { PointPainter } from "./PointPainter.js";
import { TrackPainter } from "./TrackPainter.js";

const kFonts = {
  place: "11px system-ui, sans-serif",
  graticule: "11px system-ui, sans-serif",
  route: "italic 12px system-ui, sans-serif",
};

// The layer of each kind of item.
const kLayers = {
  "route": "routes", "route point": "routes", "waypoint": "waypoints", "geocache": "geocaches",
};

export class TrackMap {
  constructor(collection) {
    this.box = byId("map");
    this.canvas = this.box.querySelector("canvas");
    this.view = new MapView();
    this.layers = { routes: true, waypoints: true, geocaches: true }; // whether each is shown
    this.onDraw = () => {};
    this.onMove = () => {};
    this.tiles = null; // a TileLayer, if the page has tiles
    this.collection_ = collection;
    this.context_ = this.canvas.getContext("2d");
    this.painter_ = new TrackPainter(this.context_, this.view);
    this.points_ = new PointPainter(this.context_, this.view);
    this.isDrawingSoon_ = false;
    this.fitted_ = null; // the bounds that were fitted last, if the map was not moved since
  }

  // Follows the element's size. What was asked for stays in sight until the reader moves the map;
  // after that, the middle stays where it is.
  measure() {
    this.view.width = Math.max(this.box.clientWidth, 1);
    this.view.height = Math.max(this.box.clientHeight, 1);
    if (this.fitted_)
      this.view.fit(this.fitted_);
    this.drawSoon();
  }

  fit(bounds) {
    this.fitted_ = bounds;
    this.view.fit(bounds);
    this.afterMove_();
  }

  zoomAt(factor, px, py) {
    this.fitted_ = null;
    this.view.zoomAt(factor, px, py);
    this.afterMove_();
  }

  panBy(dx, dy) {
    this.fitted_ = null;
    this.view.panBy(dx, dy);
    this.afterMove_();
  }

  // Whether an item is among those that the reader has chosen to see.
  isShown({ kind, isShown }) {
    return kind === "track" ? isShown : this.layers[kLayers[kind]];
  }

  // Draws `track`, or no track if null, wider than and above the others.
  highlight(track) {
    if (track === this.painter_.highlighted)
      return;
    this.painter_.highlighted = track;
    this.drawSoon();
  }

  // Draws a band along `stretch`, if it has a track.
  showStretch(stretch) {
    this.painter_.stretch = stretch;
    this.drawSoon();
  }

  // Colours the tracks by a value, or each in its own colour if `colouring` is null.
  colourBy(colouring) {
    this.painter_.colouring = colouring;
    this.drawSoon();
  }

  // What a pointer at a pixel refers to: `{ item, index }`.
  itemAt(px, py) {
    const { waypoints, geocaches, routes } = this.shownItems_();
    const points = [...waypoints, ...geocaches, ...routes.flatMap((route) => route.points)];
    const tracks = this.collection_.tracks.filter((track) => track.isShown);
    return itemAt(px, py, this.view, { tracks, points });
  }

  // Draws once before the next frame, however often it is called.
  drawSoon() {
    if (this.isDrawingSoon_)
      return;
    this.isDrawingSoon_ = true;
    requestAnimationFrame(() => {
      this.isDrawingSoon_ = false;
      this.draw();
    });
  }

  // `ratio`: pixels of the canvas per pixel of the page.
  draw(ratio = devicePixelRatio || 1) {
    const { canvas, context_: context, view } = this;
    canvas.width = Math.round(view.width * ratio);
    canvas.height = Math.round(view.height * ratio);
    context.setTransform(ratio, 0, 0, ratio, 0, 0);
    this.colours_ = {
      paper: themeColour("--paper"), ink: themeColour("--ink"), soft: themeColour("--soft"),
      grid: themeColour("--graticule"),
    };
    this.points_.startFrame();
    context.fillStyle = this.colours_.paper;
    context.fillRect(0, 0, view.width, view.height);
    context.lineJoin = context.lineCap = "round";
    drawLand(context, view, this.collection_.land, this.colours_.paper);
    this.tiles?.draw(context, view);
    const obstacles = this.drawGraticule_();
    const townLabels = this.drawTowns_();
    const { routes, waypoints, geocaches } = this.shownItems_();
    const routeLabels = this.drawRoutes_(routes);
    const tracks = this.painter_.draw(this.collection_.tracks.filter((track) => track.isShown));
    const pointLabels = this.points_.draw(waypoints, geocaches);
    this.drawLabels_([...tracks.names, ...pointLabels, ...routeLabels, ...tracks.distances,
      ...townLabels], [...obstacles, ...tracks.ends, ...this.attribution_()]);
    this.showScaleBar_();
    byId("elsewhere").firstElementChild.href = mapLink(this.view);
    this.onDraw();
  }

  // The box of what covers the canvas while tiles are shown.
  attribution_() {
    const source = this.box.querySelector(".attribution:not([hidden])");
    if (!source)
      return [];
    const { offsetLeft: left, offsetTop: top, offsetWidth, offsetHeight } = source;
    return [{ left, top, right: left + offsetWidth, bottom: top + offsetHeight }];
  }

  afterMove_() {
    this.onMove();
    this.drawSoon();
  }

  shownItems_() {
    const { routes, waypoints, geocaches } = this.collection_;
    return {
      routes: this.layers.routes ? routes : [],
      waypoints: this.layers.waypoints ? waypoints : [],
      geocaches: this.layers.geocaches ? geocaches : [],
    };
  }

  // Returns the boxes of its labels.
  drawGraticule_() {
    const { context_: context, view } = this;
    const { meridians, parallels, labels } = graticule(view);
    context.beginPath();
    for (const px of meridians) {
      context.moveTo(px, 0);
      context.lineTo(px, view.height);
    }
    for (const py of parallels) {
      context.moveTo(0, py);
      context.lineTo(view.width, py);
    }
    this.stroke_(this.colours_.grid, 1);
    context.font = kFonts.graticule;
    context.textAlign = "left";
    return labels.map(({ text, px, py }) => {
      this.drawText_(text, px, py, this.colours_.soft);
      const halfWidth = context.measureText(text).width / 2;
      return boxAround(px + halfWidth, py - 4, halfWidth, 6);
    });
  }

  // With an edge, so that it can be read on land, on the sea and on lines.
  drawText_(text, left, base, colour) {
    const { context_: context } = this;
    context.setLineDash([]);
    context.strokeStyle = this.colours_.paper;
    context.lineWidth = 3.5;
    context.strokeText(text, left, base);
    context.fillStyle = colour;
    context.fillText(text, left, base);
  }

  // Towns, for orientation. Their names come last, where there is room.
  drawTowns_() {
    const { places } = this.collection_;
    for (const place of places)
      this.points_.drawDot(place, 2.5, this.colours_.soft);
    return places.map((place) => ({ ...place, colour: this.colours_.soft, font: kFonts.place }));
  }

  drawRoutes_(routes) {
    const colour = this.colours_.soft;
    for (const route of routes) {
      this.painter_.trace(route);
      this.stroke_(colour, 1.5, [5, 4]);
    }
    return routes.filter((route) => route.count > 0)
      .map((route) => labelAtStart(route, colour, kFonts.route));
  }

  drawLabels_(labels, obstacles) {
    const { context_: context } = this;
    const measure = (text, font) => {
      context.font = font;
      return context.measureText(text).width;
    };
    const placed = placeLabels(labels, this.view, measure, obstacles);
    context.textBaseline = "middle";
    for (const { label, text, left, middle } of placed) {
      context.font = label.font;
      this.drawText_(text, left, middle, label.colour);
    }
    context.textBaseline = "alphabetic";
  }

  showScaleBar_() {
    const { pixels, text } = scaleBar(this.view);
    const bar = byId("scale");
    bar.style.width = `${pixels}px`;
    bar.textContent = text;
  }

  stroke_(colour, width, dash = []) {
    const { context_: context } = this;
    context.strokeStyle = colour;
    context.lineWidth = width;
    context.setLineDash(dash);
    context.stroke();
  }
}

function labelAtStart(line, colour, font) {
  return { name: line.name, x: line.x[0], latitude: line.latitude[0], colour, font };
}
