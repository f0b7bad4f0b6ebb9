// SPDX-License-Identifier: MIT
// The map: equirectangular at the latitude of its middle, north up, drawn on a canvas.

const mapBox = document.getElementById("map");
const canvas = mapBox.querySelector("canvas");
const context = canvas.getContext("2d");
const view = { x: 0, latitude: 0, scale: 1, width: 0, height: 0 }; // the middle in degrees; pixels a degree of latitude
const isShown = { routes: true, waypoints: true, geocaches: true };
const kMostLabels = 160;
let highlighted = null; // the track that is pointed at

// A degree of longitude by one of latitude.
const parallelScale = () => Math.max(Math.cos(radians(view.latitude)), 0.02);
const toX = (x) => view.width / 2 + (x - view.x) * view.scale * parallelScale();
const toY = (latitude) => view.height / 2 - (latitude - view.latitude) * view.scale;
const fromX = (px) => view.x + (px - view.width / 2) / (view.scale * parallelScale());
const fromY = (py) => view.latitude - (py - view.height / 2) / view.scale;

const noBounds = () => ({ west: Infinity, east: -Infinity, south: Infinity, north: -Infinity });

function extend(bounds, x, latitude) {
  bounds.west = Math.min(bounds.west, x);
  bounds.east = Math.max(bounds.east, x);
  bounds.south = Math.min(bounds.south, latitude);
  bounds.north = Math.max(bounds.north, latitude);
}

function boundsOf(things) {
  const bounds = noBounds();
  for (const thing of things) {
    if (thing.count === undefined)
      extend(bounds, thing.x, thing.latitude);
    for (let i = 0; i < (thing.count ?? 0); ++i)
      extend(bounds, thing.x[i], thing.latitude[i]);
  }
  return bounds;
}

function setScale(scale) {
  view.scale = Math.min(Math.max(scale, view.width / 720, 1), 4e6);
}

function fit(bounds) {
  if (bounds.west > bounds.east)
    return;
  view.x = (bounds.west + bounds.east) / 2;
  view.latitude = (bounds.south + bounds.north) / 2;
  const margin = Math.min(56, view.width / 8);
  const least = 0.003; // degrees: a single place is shown with what is around it
  setScale(Math.min((view.width - 2 * margin) / (Math.max(bounds.east - bounds.west, least) * parallelScale()),
    (view.height - 2 * margin) / Math.max(bounds.north - bounds.south, least)));
  drawSoon();
}

// Keeps the place under (px, py) where it is.
function zoomAt(factor, px, py) {
  const x = fromX(px), latitude = fromY(py);
  setScale(view.scale * factor);
  view.latitude = Math.min(Math.max(latitude + (py - view.height / 2) / view.scale, -90), 90);
  view.x = x - (px - view.width / 2) / (view.scale * parallelScale());
  drawSoon();
}

function panBy(dx, dy) {
  view.x -= dx / (view.scale * parallelScale());
  view.latitude = Math.min(Math.max(view.latitude + dy / view.scale, -90), 90);
  drawSoon();
}

// The points of a line that can be told apart to half a pixel, kept for a power of two of the scale and a band of latitudes:
// computed for the band's wider edge and the finer end of the scale.
function visiblePoints(line) {
  const level = Math.ceil(Math.log2(view.scale));
  const band = Math.floor(Math.abs(view.latitude) / 10);
  const key = level * 10 + band;
  if (line.keptKey !== key) {
    line.keptKey = key;
    line.kept = simplify(line.x, line.latitude, line.count, line.breaks, 2 ** level * Math.cos(radians(band * 10)), 2 ** level, 0.5);
  }
  return line.kept;
}

function trace(line) {
  context.beginPath();
  let previousX = 0, previousY = 0, isPenDown = false;
  const isFar = (a, b, most) => (a < -20 && b < -20) || (a > most + 20 && b > most + 20);
  for (const i of visiblePoints(line)) {
    const px = toX(line.x[i]), py = toY(line.latitude[i]);
    const isSkipped = i === 0 || line.breaks.has(i) || isFar(previousX, px, view.width) || isFar(previousY, py, view.height);
    if (!isSkipped && !isPenDown)
      context.moveTo(previousX, previousY);
    if (!isSkipped)
      context.lineTo(px, py);
    isPenDown = !isSkipped;
    previousX = px;
    previousY = py;
  }
}

function stroke(colour, width, dash) {
  context.strokeStyle = colour;
  context.lineWidth = width;
  context.setLineDash(dash);
  context.stroke();
}

function drawDot(x, latitude, radius, fill, edge) {
  context.beginPath();
  context.arc(toX(x), toY(latitude), radius, 0, 2 * Math.PI);
  fillAndEdge(fill, edge);
}

function drawDiamond(x, latitude, radius, fill, edge) {
  const px = toX(x), py = toY(latitude);
  context.beginPath();
  context.moveTo(px, py - radius);
  context.lineTo(px + radius, py);
  context.lineTo(px, py + radius);
  context.lineTo(px - radius, py);
  context.closePath();
  fillAndEdge(fill, edge);
}

function fillAndEdge(fill, edge) {
  context.fillStyle = fill;
  context.fill();
  stroke(edge, 1.5, []);
}

function drawGraticule() {
  const step = Math.min(roundStep(110 / (view.scale * parallelScale())), 30);
  const digits = Math.max(0, -Math.floor(Math.log10(step) + 1e-9));
  context.font = "11px system-ui, sans-serif";
  context.fillStyle = paint("--soft");
  context.beginPath();
  const labels = [];
  for (let i = Math.ceil(fromX(0) / step); i * step <= fromX(view.width); ++i) {
    const px = Math.round(toX(i * step)) + 0.5;
    context.moveTo(px, 0);
    context.lineTo(px, view.height);
    labels.push([longitudeText(i * step, digits), px + 4, view.height - 6]);
  }
  for (let i = Math.ceil(Math.max(fromY(view.height), -90) / step); i * step <= Math.min(fromY(0), 90); ++i) {
    const py = Math.round(toY(i * step)) + 0.5;
    context.moveTo(0, py);
    context.lineTo(view.width, py);
    labels.push([latitudeText(i * step, digits), 6, py - 4]);
  }
  stroke(paint("--grid"), 1, []);
  context.textAlign = "left";
  for (const [text, px, py] of labels)
    if (px < view.width - (py > view.height - 20 ? 210 : 0) && (py < view.height - 20 || px > 60) && py > 12) // room for the scale
      context.fillText(text, px, py);
}

function drawScaleBar() {
  const metresPerPixel = kEarthRadius * Math.PI / 180 / view.scale;
  const most = roundStep(metresPerPixel * 60);
  const bar = document.getElementById("scale");
  bar.style.width = `${most / metresPerPixel}px`;
  bar.textContent = most >= 1000 ? `${wholeFormat.format(most / 1000)} km` : `${most} m`;
}

// The first of a name, so much as a map has room for.
const labelText = (name) => name.length > 24 ? [...name.slice(0, 48)].slice(0, 23).join("") + "…" : name;

// Names where there is room for them, the first ones first.
function drawLabels(labels, paper) {
  const around = (px, py, dx, dy) => ({ left: px - dx, right: px + dx, top: py - dy, bottom: py + dy });
  const taken = [around(view.width - 27, view.height - 72, 27, 72), around(view.width - 27, 25, 27, 25),
    ...labels.slice(0, 4 * kMostLabels).map(({ x, latitude }) => around(toX(x), toY(latitude), 4, 4))];
  const isFree = (box) => box.left > 2 && box.right < view.width - 2 && box.top > 2 && box.bottom < view.height - 2 &&
    taken.every((other) => box.left > other.right || box.right < other.left || box.top > other.bottom || box.bottom < other.top);
  context.textBaseline = "middle";
  context.strokeStyle = paper;
  context.lineWidth = 3.5;
  context.setLineDash([]);
  let tries = 0, shown = 0;
  for (const { name, x, latitude, colour, font } of labels) {
    const px = toX(x), py = toY(latitude);
    if (px < 0 || px > view.width || py < 0 || py > view.height || ++tries > 4 * kMostLabels)
      continue;
    context.font = font;
    const text = labelText(name), width = context.measureText(text).width;
    const box = [[8, 0], [-8 - width, 0], [-width / 2, -14], [-width / 2, 14]]
      .map(([dx, dy]) => ({ left: px + dx, right: px + dx + width, top: py + dy - 7, bottom: py + dy + 7 })).find(isFree);
    if (!box)
      continue;
    taken.push(box);
    context.strokeText(text, box.left, box.top + 7);
    context.fillStyle = colour;
    context.fillText(text, box.left, box.top + 7);
    if (++shown > kMostLabels)
      break;
  }
  context.textBaseline = "alphabetic";
}

function drawTracks(paper, labels) {
  const shown = held.tracks.filter((track) => track.isOn && track.count > 0);
  shown.sort((a, b) => (a === highlighted) - (b === highlighted));
  for (const track of shown) {
    const colour = paint(colourOf(track));
    const width = track === highlighted ? 4.5 : 2.75;
    trace(track);
    stroke(paper, width + 3, []);
    stroke(colour, width, dashOf(track));
    drawDot(track.x[0], track.latitude[0], 4, colour, paper); // where it begins; all of it on a small scale
    labels.push({ name: track.name, x: track.x[0], latitude: track.latitude[0], colour, font: "600 12px system-ui, sans-serif" });
  }
}

function drawRoutes(ink, labels) {
  for (const route of isShown.routes ? held.routes : []) {
    trace(route);
    stroke(ink, 1.5, [5, 4]);
    if (route.count > 0)
      labels.push({ name: route.name, x: route.x[0], latitude: route.latitude[0], colour: ink, font: "italic 12px system-ui, sans-serif" });
  }
}

// `ratio`: pixels of the canvas to one of the page.
function draw(ratio = devicePixelRatio || 1) {
  canvas.width = Math.round(view.width * ratio);
  canvas.height = Math.round(view.height * ratio);
  context.setTransform(ratio, 0, 0, ratio, 0, 0);
  const paper = paint("--paper"), ink = paint("--ink"), soft = paint("--soft"), gold = paint("--cache");
  context.fillStyle = paper;
  context.fillRect(0, 0, view.width, view.height);
  context.lineJoin = context.lineCap = "round";
  drawGraticule();
  const routeLabels = [], labels = [];
  drawRoutes(soft, routeLabels);
  drawTracks(paper, labels);
  for (const place of isShown.waypoints ? held.waypoints : [])
    drawDot(place.x, place.latitude, 3.5, ink, paper);
  for (const place of isShown.geocaches ? held.geocaches : [])
    drawDiamond(place.x, place.latitude, 5.5, gold, paper);
  const font = "12px system-ui, sans-serif";
  for (const { x, latitude, name } of isShown.waypoints ? held.waypoints : [])
    labels.push({ name, x, latitude, colour: ink, font });
  for (const { x, latitude, name } of isShown.geocaches ? held.geocaches : [])
    labels.push({ name, x, latitude, colour: ink, font });
  drawLabels(labels.concat(routeLabels), paper);
  drawScaleBar();
  placeMark();
}

let isDrawingSoon = false;
function drawSoon() {
  if (isDrawingSoon)
    return;
  isDrawingSoon = true;
  requestAnimationFrame(() => {
    isDrawingSoon = false;
    draw();
  });
}

// Follows the element's size, the middle of the map staying where it is. Before the first time there is nothing to see.
function measureMap() {
  view.width = Math.max(mapBox.clientWidth, 1);
  view.height = Math.max(mapBox.clientHeight, 1);
  drawSoon();
}
