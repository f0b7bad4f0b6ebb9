// SPDX-License-Identifier: MIT
// How the page's modules depend on each other.

import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { dirname, join, normalize } from "node:path";
import test from "node:test";
import { fileURLToPath } from "node:url";

const kPage = fileURLToPath(new URL("../../host/page/", import.meta.url));

// The modules that each module imports, by path from host/page/.
function readImports() {
  const modules = ["", "model", "ui"].flatMap((folder) => readdirSync(join(kPage, folder))
    .filter((name) => name.endsWith(".js")).map((name) => join(folder, name)));
  return new Map(modules.map((module) => {
    const text = readFileSync(join(kPage, module), "utf-8");
    return [module, [...text.matchAll(/\bfrom "(\.[^"]+)"/g)]
      .map(([, path]) => normalize(join(dirname(module), path)))];
  }));
}

const imports = readImports();

// What a module imports, directly or through others.
function reachableFrom(module) {
  const reached = new Set();
  const open = [...imports.get(module)];
  while (open.length > 0) {
    const next = open.pop();
    if (!reached.has(next)) {
      reached.add(next);
      open.push(...imports.get(next));
    }
  }
  return reached;
}

test("no module imports itself through others", () => {
  for (const module of imports.keys())
    assert.ok(!reachableFrom(module).has(module), module);
});

test("the computing modules import nothing from the user interface", () => {
  for (const module of imports.keys())
    if (module.startsWith("model"))
      assert.deepEqual([...reachableFrom(module)].filter((path) => !path.startsWith("model")), []);
});

test("every module is part of the page", () => {
  const reached = reachableFrom("main.js");
  assert.deepEqual([...imports.keys()].filter((module) => !reached.has(module)), ["main.js"]);
});

test("every computing module has a test of its own", () => {
  const tests = readdirSync(dirname(fileURLToPath(import.meta.url)));
  for (const name of readdirSync(join(kPage, "model")))
    assert.ok(tests.includes(name.replace(/\.js$/, ".test.mjs")), name);
});
