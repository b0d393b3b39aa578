#!/usr/bin/env python3
"""Makes the reference pages of the public headers below build/docs/html, and says what lacks words.

    build.py [HEADER...]    some headers alone, for a look at them
"""

import pathlib
import re
import shutil
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
PAGES = ROOT / "build" / "docs"

# The list of what is installed: whole floors, and of the upper two some headers.
INSTALLED = ROOT / "cmake" / "Install.cmake"
FLOORS = re.compile(r"install\(DIRECTORY ([\w ]+) DESTINATION")
HEADER = re.compile(r"^  ((?:QosOpenConfig|host)/\S+\.h)\)?$", re.MULTILINE)

# A member's name says what it is where the house has a rule for it; the main page lists them.
UNDOCUMENTED = re.compile(
    r"(?P<what>Member|Compound) (?P<declaration>.*?)"
    r"(?: \((?P<kind>[a-z ]+)\) of (?:class|struct|namespace|file) .*)? is not documented\.$")
BY_RULE = re.compile(
    r"~|operator|[A-Z]\w*\(|\w+(Is|Del|DelAll)\(|\w+\(\) const|value\(\)|"
    r"\w+\((const [\w:]+ &(name|key|k|id)|std::uint32_t sequence)\) const|"
    r"(rokEnumType|valueToStrep|fwkType|rokType|fields|attributes|entries|rokArguments|hash|"
    r"handleInitialized|doPrepareToDie|rok_\w+|rokTeardown|begin|end)\(")


def public_headers():
    """The headers that are installed, in the order of their paths."""
    text = INSTALLED.read_text(encoding="utf-8")
    found = HEADER.findall(text)
    for floor in FLOORS.search(text)[1].split():
        found += [str(path.relative_to(ROOT)) for path in (ROOT / floor).rglob("*.h")]
    return sorted(found)


def needs_words(message):
    """Whether a warning is of what lacks words that it must have."""
    found = UNDOCUMENTED.search(message)
    if not found:
        return True
    if found["what"] == "Compound":
        return not re.search(r"(::Attr|KeyFunktor|::Entry|::Node|::Iterator)$",
                             found["declaration"])
    if found["kind"] in ("variable", "typedef", "enumeration value"):
        return False
    return not BY_RULE.match(found["declaration"])


def lacking(headers, root=ROOT, pages=PAGES):
    """Makes the pages of some headers below `root`, and returns Doxygen's warnings that count."""
    shutil.rmtree(pages / "html", ignore_errors=True)
    pages.mkdir(parents=True, exist_ok=True)
    config = [(HERE / "Doxyfile").read_text(encoding="utf-8"),
              f'FILTER_PATTERNS = *.h="{sys.executable} -B {HERE}/filter.py"',
              f"OUTPUT_DIRECTORY = {pages}",
              f"INPUT = {HERE}/main.dox " + " ".join(headers)]
    done = subprocess.run(["doxygen", "-"], cwd=root, input="\n".join(config), text=True,
                          stderr=subprocess.PIPE, check=True)
    warnings = [line.replace(f"{root}/", "") for line in done.stderr.splitlines() if line.strip()]
    # One for each place: a template is warned of by each class that is made of it.
    counting = sorted(filter(needs_words, warnings), reverse=True)
    left = {line.split(" ")[0]: line for line in counting}
    return [left[place] for place in sorted(left)]


def main(headers):
    """Returns the exit code."""
    left = lacking(headers)
    for line in left:
        print(line, file=sys.stderr)
    return 1 if left else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:] or public_headers()))
