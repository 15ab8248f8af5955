"""The cookbook shows the scripts of examples/ and what they print: docs/cookbook.md.

  cookbook.py check                      ends with status 1 where the page shows something else
  cookbook.py update TARN_COMMAND        writes scripts, output and pictures into the page's places

Behind a line "<!-- example NAME -->" stand a block of Lua, the script examples/NAME.lua, and a block
of text, its output examples/expected/NAME.txt. tests/app runs the examples and compares the output.
"""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PAGE = ROOT / "docs" / "cookbook.md"
PLACE = re.compile(
    r"<!-- example (?P<name>\w+) -->\n\n```lua\n(?P<script>.*?)```\n\n```text\n(?P<output>.*?)```\n",
    re.DOTALL)


def expected_place(name):
    script = (ROOT / "examples" / f"{name}.lua").read_text()
    output = (ROOT / "examples" / "expected" / f"{name}.txt").read_text()
    return f"<!-- example {name} -->\n\n```lua\n{script}```\n\n```text\n{output}```\n"


def check():
    page = PAGE.read_text()
    places = list(PLACE.finditer(page))
    announced = page.count("<!-- example ")
    wrong = [place["name"] for place in places if place.group() != expected_place(place["name"])]
    for name in wrong:
        print(f"docs/cookbook.md: {name} is not what examples/ holds; run tests/docs/cookbook.py update")
    for picture in re.findall(r"\]\((cookbook/[^)]*\.png)\)", page):
        if not (PAGE.parent / picture).exists():
            wrong.append(picture)
            print(f"docs/{picture} is missing")
    if announced != len(places) or not places:
        print(f"docs/cookbook.md: {announced} examples announced, {len(places)} with script and output")
        return 1
    return 1 if wrong else 0


def update(command):
    page = PLACE.sub(lambda place: expected_place(place["name"]), PAGE.read_text())
    PAGE.write_text(page)
    for picture in re.findall(r"\]\((cookbook/[^)]*\.png)\)", page):
        path = PAGE.parent / picture
        path.parent.mkdir(exist_ok=True)
        script = ROOT / "examples" / f"{path.stem}.lua"
        subprocess.run([command, "--seed", "1", script, path], check=True, capture_output=True)
    return check()


if __name__ == "__main__":
    sys.exit(check() if sys.argv[1:] == ["check"] else update(*sys.argv[2:]))
