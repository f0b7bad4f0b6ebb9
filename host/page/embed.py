#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Builds the HTML page and writes it as C++ source, cut where the writer puts something in.

Usage: embed.py ESBUILD HtmlPage.cpp HtmlPage.d

esbuild bundles page.css, and main.js with the modules that it imports. The page's security policy
allows exactly this style and this script, by their hashes: whatever a device's texts hold, nothing
else in the page can run, and nothing is loaded from elsewhere. HtmlPage.d is a list of the files
read, for the build system.
"""

import base64
import hashlib
import json
import pathlib
import re
import subprocess
import sys
import tempfile

PAGE = pathlib.Path(__file__).resolve().parent

# Whitespace and comments are removed and local names shortened, which makes a page of the sample
# 22 KB smaller. The names of properties stay, so the tests can use them.
OPTIONS = ["--bundle", "--minify", "--charset=utf8", "--log-level=warning"]
SCRIPT_OPTIONS = ["--format=iife", "--global-name=page", "--target=es2020"]

SOURCE = """// Generated from host/page/ by embed.py.

#include "host/page/HtmlPage.h"

namespace host {{

std::string_view pageStart() noexcept
{{
    return R"PAGE({start})PAGE";
}}

std::string_view pageHead() noexcept
{{
    return R"PAGE({head})PAGE";
}}

std::string_view pageMiddle() noexcept
{{
    return R"PAGE({middle})PAGE";
}}

std::string_view pageFoot() noexcept
{{
    return R"PAGE({foot})PAGE";
}}

}} // namespace host
"""


def bundle(esbuild, name, *options):
    """Returns the bundle as text and the paths of the files that it was made of."""
    with tempfile.TemporaryDirectory() as folder:
        output, report = pathlib.Path(folder, name), pathlib.Path(folder, "report")
        results = [f"--outfile={output}", f"--metafile={report}"]
        subprocess.run([esbuild, name, *OPTIONS, *options, *results], cwd=PAGE, check=True)
        inputs = json.loads(report.read_text(encoding="utf-8"))["inputs"]
        return output.read_text(encoding="utf-8"), [PAGE / path for path in inputs]


def policy_hash(text):
    digest = hashlib.sha256(text.encode("utf-8")).digest()
    return f"sha256-{base64.b64encode(digest).decode('ascii')}"


def main(esbuild, output, dependencies):
    style, style_files = bundle(esbuild, "page.css")
    script, script_files = bundle(esbuild, "main.js", *SCRIPT_OPTIONS)
    values = {"style": style, "script": script,
              "style-hash": policy_hash(style), "script-hash": policy_hash(script)}
    template = PAGE / "page.html"
    parts = re.split("{{pictures}}|{{tables}}|{{data}}", template.read_text(encoding="utf-8"))
    start, head, middle, foot = (re.sub("{{([a-z-]+)}}", lambda found: values[found[1]], part)
                                 for part in parts)
    source = SOURCE.format(start=start, head=head, middle=middle, foot=foot)
    pathlib.Path(output).write_text(source, encoding="utf-8")
    write_dependencies(dependencies, output, [template, *style_files, *script_files])


def write_dependencies(path, output, files):
    """Writes a rule without commands, as make and ninja read it."""
    words = [str(file).replace(" ", "\\ ") for file in (output, *files)]
    pathlib.Path(path).write_text(f"{words[0]}: {' '.join(words[1:])}\n", encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
