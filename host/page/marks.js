// SPDX-License-Identifier: MIT
// Texts and elements: how numbers are written, how elements are made, and the one mark that map and profiles share.

const kDash = "–";

// Texts of the device come in here as children and properties only: never as markup.
function element(name, properties, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(properties ?? {}))
    key in made ? made[key] = value : made.setAttribute(key, value);
  made.append(...children);
  return made;
}

function nameElement(name, className = "name") {
  return element("bdi", { className, title: name, textContent: name });
}

const wholeFormat = new Intl.NumberFormat("en", { maximumFractionDigits: 0 });
const figureFormats = [0, 1, 2].map((digits) =>
  new Intl.NumberFormat("en", { minimumFractionDigits: digits, maximumFractionDigits: digits }));

const isKnown = (number) => number !== null && !Number.isNaN(number);
const metresText = (metres) => isKnown(metres) ? `${wholeFormat.format(Math.round(metres) + 0)} m` : kDash; // + 0: never "-0"
const kilometresText = (kilometres) => isKnown(kilometres) ? `${figureFormats[2].format(kilometres)} km` : kDash;
const speedText = (metresPerSecond) => isKnown(metresPerSecond) ? `${figureFormats[1].format(metresPerSecond * 3.6)} km/h` : kDash;

// Seconds since 1970 as date and time of day, both UTC.
function momentText(seconds) {
  return isKnown(seconds) ? new Date(seconds * 1000).toISOString().slice(0, 19).replace("T", " ") : kDash;
}

function durationText(seconds) {
  if (!isKnown(seconds))
    return kDash;
  const minutes = Math.round(seconds / 60);
  if (seconds < 60)
    return `${seconds} s`;
  if (minutes < 60)
    return `${minutes} min`;
  const hours = Math.floor(minutes / 60);
  if (hours < 48)
    return `${hours} h ${String(minutes % 60).padStart(2, "0")} min`;
  return `${wholeFormat.format(Math.floor(hours / 24))} d ${hours % 24} h`;
}

function degreesText(degrees, digits, positive, negative) {
  const text = Math.abs(degrees).toFixed(digits);
  return Number(text) === 0 ? `${text}°` : `${text}° ${degrees < 0 ? negative : positive}`;
}

// Any longitude, also one past 180 on the map, from -180 up to 180.
function normalLongitude(longitude) {
  return longitude - 360 * Math.ceil((longitude - 180) / 360);
}

const latitudeText = (latitude, digits = 5) => degreesText(latitude, digits, "N", "S");
const longitudeText = (longitude, digits = 5) => degreesText(normalLongitude(longitude), digits, "E", "W");
const placeText = (latitude, longitude, digits = 5) => `${latitudeText(latitude, digits)}, ${longitudeText(longitude, digits)}`;

// A round number at least as large as `least`: 1, 2 or 5 times a power of ten.
function roundStep(least) {
  const power = 10 ** Math.floor(Math.log10(least));
  return power * ([1, 2, 5].find((factor) => factor * power >= least * 0.999999) ?? 10);
}

// A colour of the style sheet as the canvas wants it, in the theme that is on.
const probe = document.getElementById("probe");
function paint(variable) {
  probe.style.color = `var(${variable})`;
  return getComputedStyle(probe).color;
}

const kColours = 8;
const colourOf = (track) => `--track-${track.index % kColours}`;

// When the colours are used up, they come again dashed.
function dashOf(track) {
  return [[], [9, 5], [2, 5], [12, 4, 2, 4]][Math.floor(track.index / kColours) % 4];
}

// How fast the eye is led to another place: at once for those who asked for no movement.
const scrolling = () => matchMedia("(prefers-reduced-motion: reduce)").matches ? "instant" : "smooth";

// What is pointed at: null, a place, or a track with the index of one of its points.
const onMark = [];
function mark(thing, index = 0) {
  for (const show of onMark)
    show(thing, index);
}
