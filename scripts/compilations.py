"""What the build compiles, as recorded by the preset `lint`, which is configured but never built.
For lint-text and lint-code."""

import json
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/lint"


def compilations():
    """(entry of the compilation database, source files) of each compilation: of one file, or of a
    batch that includes several. Generated sources and those in assembly are left out."""
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        path = pathlib.Path(entry["file"])
        if path.suffix == ".S":
            continue
        sources = [path]
        if "/Unity/" in entry["file"]:
            sources = [pathlib.Path(name) for name in re.findall(r'"(.*)"', path.read_text())]
        yield entry, [source for source in sources if BUILD not in source.parents]
