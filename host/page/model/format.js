// SPDX-License-Identifier: MIT
// Numbers, times and coordinates as texts. Values that are not known (null or NaN) become a dash.

import { normalLongitude } from "./geodesy.js";

export const kDash = "–";

const formats = [0, 1, 2].map((digits) => new Intl.NumberFormat(
  "en", { minimumFractionDigits: digits, maximumFractionDigits: digits }));

// With thousands separators and exactly `digits` decimals: 0, 1 or 2. Never "-0" for a zero.
export function formatNumber(number, digits = 0) {
  return formats[digits].format(number + 0);
}

export function isKnown(number) {
  return number !== null && !Number.isNaN(number);
}

export function metresText(metres) {
  return isKnown(metres) ? `${formatNumber(Math.round(metres))} m` : kDash;
}

export function kilometresText(kilometres) {
  return isKnown(kilometres) ? `${formatNumber(kilometres, 2)} km` : kDash;
}

export function speedText(metresPerSecond) {
  return isKnown(metresPerSecond) ? `${formatNumber(metresPerSecond * 3.6, 1)} km/h` : kDash;
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
