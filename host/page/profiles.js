// SPDX-License-Identifier: MIT
// A card for each track: its switch, its figures, and its elevation and speed along the way, drawn when it comes into sight.

const kPlotWidth = 720; // units; no card is wider, so half a unit is at most half a pixel
const kPlotHeight = { elevation: 110, speed: 70 };
const kSvg = "http://www.w3.org/2000/svg";

function svgElement(name, attributes) {
  const made = document.createElementNS(kSvg, name);
  for (const [key, value] of Object.entries(attributes))
    made.setAttribute(key, value);
  return made;
}

// The points that have a value, as a line that begins anew where they are missing.
function lineOf(track, values) {
  const line = { x: [], y: [], breaks: new Set(), lowest: Infinity, highest: -Infinity };
  for (let i = 0; i < track.count; ++i) {
    if (Number.isNaN(values[i]))
      continue;
    if (i > 0 && Number.isNaN(values[i - 1]) && values === track.elevation)
      line.breaks.add(line.x.length);
    line.x.push(track.distance[i]);
    line.y.push(values[i]);
    line.lowest = Math.min(line.lowest, values[i]);
    line.highest = Math.max(line.highest, values[i]);
  }
  return line;
}

function pathsOf(line, length, low, high, height) {
  const xScale = kPlotWidth / length, yScale = height / (high - low);
  const kept = simplify(line.x, line.y, line.x.length, line.breaks, xScale, yScale, 0.5);
  let stroke = "", fill = "", startX = 0, x = 0;
  const closeFill = () => fill += `L${x.toFixed(1)},${height}L${startX},${height}Z`;
  for (const i of kept) {
    const begins = i === 0 || line.breaks.has(i);
    if (begins && i > 0)
      closeFill();
    x = line.x[i] * xScale;
    if (begins)
      startX = x.toFixed(1);
    const step = `${begins ? "M" : "L"}${x.toFixed(1)},${(height - (line.y[i] - low) * yScale).toFixed(1)}`;
    stroke += step;
    fill += step;
  }
  closeFill();
  return { stroke, fill };
}

// One plot: its name, lines at round values with their labels, the area and the line. Null when there is nothing to draw.
function plot(track, what, values, unit, factor) {
  const line = lineOf(track, values);
  const length = track.distance[track.count - 1];
  if (line.x.length < 2 || !(length > 0))
    return null;
  const height = kPlotHeight[what];
  const least = what === "elevation" ? 20 : 1; // a walk on the flat is to look flat
  const spread = Math.max(line.highest - line.lowest, least);
  const low = what === "elevation" ? (line.lowest + line.highest - spread) / 2 - spread * 0.08 : 0;
  const high = low + (what === "elevation" ? spread * 1.22 : Math.max(line.highest, least) * 1.22);
  const paths = pathsOf(line, length, low, high, height);
  const svg = svgElement("svg", { viewBox: `0 0 ${kPlotWidth} ${height}`, preserveAspectRatio: "none", "aria-hidden": "true" });
  const frame = element("div", { className: "frame" }, svg);
  const box = element("div", { className: `plot ${what}` }, element("p", { textContent: `${what} (${unit})` }), frame);
  const step = roundStep((high - low) * factor / (what === "elevation" ? 4 : 3));
  for (let tick = Math.ceil(low * factor / step); tick * step < high * factor * 0.97; ++tick) {
    const y = height - (tick * step / factor - low) * height / (high - low);
    svg.append(svgElement("line", { x1: 0, x2: kPlotWidth, y1: y, y2: y, class: "tick" }));
    const label = element("span", { textContent: figureFormats[step < 1 ? 1 : 0].format(tick * step + 0) });
    label.style.top = `${100 * y / height}%`;
    frame.append(label);
  }
  svg.append(svgElement("path", { d: paths.fill, class: "area" }), svgElement("path", { d: paths.stroke, class: "line" }));
  const spot = element("i", { className: "spot", hidden: true });
  frame.append(spot);
  const show = (index) => {
    spot.hidden = Number.isNaN(values[index]);
    spot.style.left = `${100 * track.distance[index] / length}%`;
    spot.style.top = `${100 - 100 * (values[index] - low) / (high - low)}%`;
  };
  return { box, show, hide: () => { spot.hidden = true; } };
}

function distanceScale(length) {
  const step = roundStep(length / 5);
  const scale = element("div", { className: "distances" });
  for (let tick = 0; tick * step <= length * 0.94; ++tick) {
    const text = step >= 1000 ? `${tick * step / 1000}` : `${figureFormats[step >= 100 ? 1 : 2].format(tick * step / 1000)}`;
    const label = element("span", { textContent: tick === 0 ? "0 km" : text });
    label.style.left = `${100 * tick * step / length}%`;
    scale.append(label);
  }
  return scale;
}

// The point nearest to a distance along the way.
function indexAt(track, distance) {
  let low = 0, high = track.count - 1;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (track.distance[middle] < distance)
      low = middle + 1;
    else
      high = middle;
  }
  return low > 0 && distance - track.distance[low - 1] < track.distance[low] - distance ? low - 1 : low;
}

function readingText(track, index) {
  return [isKnown(track.time[index]) ? `${momentText(track.time[index])} UTC` : null, kilometresText(track.distance[index] / 1000),
    isKnown(track.elevation[index]) ? metresText(track.elevation[index]) : null,
    isKnown(track.speed[index]) ? speedText(track.speed[index]) : null].filter(Boolean).join(" · ");
}

function fillChart(card) {
  card.isFilled = true;
  const { track, chart } = card;
  card.plots = [plot(track, "elevation", track.elevation, "m", 1), plot(track, "speed", track.speed, "km/h", 3.6)].filter(Boolean);
  if (card.plots.length === 0) {
    chart.replaceWith(element("p", { className: "none", textContent: track.distance[track.count - 1] > 0 ?
      "Neither elevations nor times came with this track." : "A track without length has no profile." }));
    return;
  }
  card.cursor = element("i", { className: "cursor", hidden: true });
  chart.append(...card.plots.map((one) => one.box), distanceScale(track.distance[track.count - 1]), card.cursor);
  listenToChart(card);
}

function listenToChart({ track, chart }) {
  const follow = (event) => {
    const box = chart.getBoundingClientRect();
    mark(track, indexAt(track, (event.clientX - box.left) / box.width * track.distance[track.count - 1]));
  };
  chart.addEventListener("pointermove", follow);
  chart.addEventListener("pointerdown", follow);
  chart.addEventListener("pointerleave", (event) => {
    if (event.pointerType === "mouse")
      mark(null);
  });
  chart.addEventListener("keydown", (event) => {
    const step = { ArrowLeft: -1, ArrowRight: 1 }[event.key];
    if (event.key === "Escape")
      mark(null);
    if (!step)
      return;
    event.preventDefault();
    const at = marked?.thing === track ? marked.index : 0;
    const stride = event.shiftKey ? 1 : Math.max(1, Math.round(track.count / 100));
    mark(track, Math.min(Math.max(at + step * stride, 0), track.count - 1));
  });
}

function figuresOf(track) {
  const list = element("dl");
  const add = (name, text) => list.append(element("div", {}, element("dt", { textContent: name }), element("dd", { textContent: text })));
  add("Length", kilometresText(track.kilometres));
  add("Ascent", metresText(track.ascent));
  add("Descent", metresText(track.descent));
  add("Moving", durationText(track.moving));
  return list;
}

function makeCard(track) {
  const box = element("input", { type: "checkbox", checked: true });
  box.addEventListener("change", () => {
    track.isOn = box.checked;
    card.element.classList.toggle("off", !track.isOn);
    mark(null);
    drawSoon();
  });
  const zoom = element("button", { type: "button", className: "goto", title: "Show on the map", "aria-label": `Show ${labelText(track.name)} on the map`,
    textContent: "Show" });
  zoom.addEventListener("click", () => showOnMap(track));
  const card = { track, isFilled: false, plots: [] };
  card.chart = element("div", { className: "chart", tabIndex: 0, role: "slider", "aria-label": `Profile of ${labelText(track.name)}`,
    "aria-valuemin": 0, "aria-valuemax": Math.max(track.count - 1, 0), "aria-valuenow": 0 });
  card.reading = element("p", { className: "reading", textContent: spanText(track) });
  card.element = element("article", { className: "track" },
    element("header", {}, element("label", {}, box, swatch(track), nameElement(track.name)), zoom),
    figuresOf(track), card.chart, card.reading);
  card.element.style.setProperty("--line", `var(${colourOf(track)})`);
  return card;
}

function swatch(track) {
  const svg = svgElement("svg", { class: "swatch", viewBox: "0 0 28 10", "aria-hidden": "true" });
  svg.append(svgElement("line", { x1: 2, x2: 26, y1: 5, y2: 5, "stroke-dasharray": dashOf(track).map((length) => length * 0.8).join(" ") }));
  return svg;
}

function spanText(track) {
  if (!isKnown(track.first))
    return track.count === 0 ? "no points" : "no times";
  const from = momentText(track.first), to = momentText(track.last);
  return `${from} – ${from.slice(0, 10) === to.slice(0, 10) ? to.slice(11) : to} UTC`;
}

const cards = held.tracks.map(makeCard);

function showReading(card, index) {
  card.cursor.hidden = false;
  card.cursor.style.left = `${100 * card.track.distance[index] / card.track.distance[card.track.count - 1]}%`;
  card.plots.forEach((one) => one.show(index));
  card.reading.textContent = readingText(card.track, index);
  card.chart.setAttribute("aria-valuenow", index);
  card.chart.setAttribute("aria-valuetext", card.reading.textContent);
}

function hideReading(card) {
  if (card.cursor)
    card.cursor.hidden = true;
  card.plots.forEach((one) => one.hide());
  card.reading.textContent = spanText(card.track);
}

let markedCard = null;
onMark.push((thing, index) => {
  const card = thing?.kind === "track" ? cards[thing.index] : null;
  if (card !== markedCard) {
    if (markedCard)
      hideReading(markedCard);
    markedCard?.element.classList.remove("marked");
    card?.element.classList.add("marked");
    markedCard = card;
    if (card && !card.isFilled)
      fillChart(card);
    if (card)
      bringIntoSight(card.element);
  }
  if (card?.cursor)
    showReading(card, index);
});

// Scrolls the list of cards, never the page.
function bringIntoSight(card) {
  const list = card.parentElement;
  const top = card.offsetTop - list.offsetTop;
  if (list.scrollHeight > list.clientHeight && (top < list.scrollTop || top + card.offsetHeight > list.scrollTop + list.clientHeight))
    list.scrollTo({ top, behavior: scrolling() });
}

const sight = new IntersectionObserver((entries) => {
  for (const entry of entries) {
    const card = cards.find((one) => one.element === entry.target);
    if (entry.isIntersecting && !card.isFilled)
      fillChart(card);
  }
}, { rootMargin: "400px" });
for (const card of cards) {
  document.getElementById("cards").append(card.element);
  sight.observe(card.element);
}
