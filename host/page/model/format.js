// SPDX-License-Identifier: MIT
// Numbers, times and coordinates as texts. Values that are not known (null or NaN) become a dash.

import { normalLongitude } from "./geodesy.js";
import { units } from "./units.js";

export const kDash = "–";

const formats = [0, 1, 2].map((digits) => new Intl.NumberFormat(
  "en", { minimumFractionDigits: digits, maximumFractionDigits: digits }));

const scaleFormat = new Intl.NumberFormat("en", { maximumSignificantDigits: 6 });

// With thousands separators and exactly `digits` decimals: 0, 1 or 2. Never "−0" for a zero.
export function formatNumber(number, digits = 0) {
  return withMinus(formats[digits].format(number + 0));
}

// With thousands separators, and no more digits than a number on a scale needs.
export function scaleText(number) {
  return withMinus(scaleFormat.format(number));
}

// A hyphen is shorter than a minus sign, and a line may break behind it.
function withMinus(text) {
  return text.replace("-", "−");
}

export function isKnown(number) {
  return number !== null && !Number.isNaN(number);
}

// These take metres, kilometres and metres per second, and show the units that the reader chose.
export function metresText(metres) {
  const { name, metres: unit } = units.height;
  return isKnown(metres) ? `${formatNumber(Math.round(metres / unit))} ${name}` : kDash;
}

export function kilometresText(kilometres) {
  const { name, metres } = units.length;
  return isKnown(kilometres) ? `${formatNumber(kilometres * 1000 / metres, 2)} ${name}` : kDash;
}

export function speedText(metresPerSecond) {
  const { speed, metres } = units.length;
  return isKnown(metresPerSecond) ?
    `${formatNumber(metresPerSecond * 3600 / metres, 1)} ${speed}` : kDash;
}

// A slope in percent, with its sign.
export function slopeText(slope) {
  if (!isKnown(slope))
    return kDash;
  const text = formatNumber(Math.abs(slope) * 100, 1);
  return `${text === "0.0" ? "" : slope > 0 ? "+" : "−"}${text} %`;
}

export function durationText(seconds) {
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
  return `${formatNumber(Math.floor(hours / 24))} d ${hours % 24} h`;
}

// A degree's fifth decimal is about a metre.
export function latitudeText(latitude, digits = 5) {
  return degreesText(latitude, digits, "N", "S");
}

export function longitudeText(longitude, digits = 5) {
  return degreesText(normalLongitude(longitude), digits, "E", "W");
}

export function positionText(latitude, longitude, digits = 5) {
  return `${latitudeText(latitude, digits)}, ${longitudeText(longitude, digits)}`;
}

function degreesText(degrees, digits, positive, negative) {
  const text = Math.abs(degrees).toFixed(digits);
  return Number(text) === 0 ? `${text}°` : `${text}° ${degrees < 0 ? negative : positive}`;
}
