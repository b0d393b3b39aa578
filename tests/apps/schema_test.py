"""The JSON Schema of `qosoc schema` judges documents as `qosoc check` does.

usage: schema_test.py QOSOC EXAMPLES

Each slip of the table below is put into a document by itself, and so are hundreds of random ones into
the documents of EXAMPLES and of docs/native-document.md; the schema and the program say the same of
each, but for what the help of the command declares. Its example is run, too.
"""

import copy
import json
import pathlib
import random
import re
import subprocess
import sys
import tempfile

import jsonschema

qosoc, examples = sys.argv[1], pathlib.Path(sys.argv[2])
failures = []


def schema_of_program():
    run = subprocess.run([qosoc, "schema"], capture_output=True, text=True, check=True)
    return json.loads(run.stdout)


schema = schema_of_program()
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)


def program_accepts(text):
    """Whether `check` finds nothing wrong with the shape of a document; `check --shape` says the same."""
    with tempfile.NamedTemporaryFile("w", suffix=".json", encoding="utf-8") as file:
        file.write(text)
        file.flush()
        run, shape = (subprocess.run([qosoc, "check", file.name] + more, capture_output=True, text=True)
                      for more in ([], ["--shape"]))
        if shape.returncode != (2 if run.returncode == 2 else 0):
            failures.append(f"check --shape: exit code {shape.returncode} for {text[:300]}")
        if run.returncode == 2 and (shape.stdout, shape.stderr) != (run.stdout, run.stderr):
            failures.append(f"check --shape: {shape.stdout}{shape.stderr}; check: {run.stdout}{run.stderr}")
        return run.returncode != 2


def expect(accepted, document, why):
    text = json.dumps(document)
    verdicts = {"program": program_accepts(text), "schema": validator.is_valid(document)}
    for judge, verdict in verdicts.items():
        if verdict != accepted:
            failures.append(f"{why}: the {judge} {'takes' if verdict else 'refuses'} {text[:300]}")


LEGAL = [
    {},
    {"class-maps": {"qos": {"V": {"match": ["ip-access-group", 7, "9"]}}, "255": {}, "0": {"": {}}}},
    {"access-lists": {"ipv4": {"A": {"rules": {"0": {}, "4294967295": {"dscp": 255}}}, "B": {}}}},
    {"access-lists": {"ipv6": {"A": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}}},
    {"policy-maps": {"7": {"P": {"classes": {"C": {"actions": {"set-traffic-class": 5, "9": 1}}}}}}},
    {"service-policies": {"65535:P:\n/q": {"interfaces": {"Ethernet1/1": True}}, "0:": {}}},
    {"interfaces": {"E": {"tx-queues": {"uc-0": {"priority": "unset"}, "mc-255": {"priority": 255}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-1": {"ecn": {}, "wred": {"weight": 0}}}, "pfc": {}}}},
    {"qos-profiles": {"P": {"tx-queues": {"uc-1": {"bandwidth": 255, "shape": 4294967295}}}, "Q": {}}},
    {"comments": {"": "", "any/~": "\u20ac"}, "queue-names": {"q": 255}},
    {"tc-to-tx-queue": {"0": 0, "7": 15}, "forwarding-groups": {"f": 17}},
    {"pfc-watchdog": {"time-a": 1, "time-b": -0.5, "action": 255, "priorities": 0}},
]
ILLEGAL = [
    [],
    "x",
    None,
    {"class-map": {}},
    {"class-maps": {"01": {}}},
    {"class-maps": {"256": {}}},
    {"class-maps": {"qos\n": {}}},
    {"class-maps": {"1\n": {}}},
    {"class-maps": {"Qos": {}}},
    {"class-maps": {"qos": {"V": {"match": "ip-access-group"}}}},
    {"class-maps": {"qos": {"V": {"match": ["ip-access-group", "ip-access-group"]}}}},
    {"class-maps": {"qos": {"V": {"match": [256]}}}},
    {"class-maps": {"qos": {"V": {"match": ["07"]}}}},
    {"class-maps": {"qos": {"V": {"match": ["7\n"]}}}},
    {"class-maps": {"qos": {"V": {"match": [None]}}}},
    {"class-maps": {"qos": {"V": []}}},
    {"access-lists": {"ipv4": {"A": {"rules": {"4294967296": {}}}}}},
    {"access-lists": {"ipv4": {"A": {"rules": {"10": {"tc": 1}}}}}},
    {"access-lists": {"1": {}}},
    {"service-policies": {"65536:P": {}}},
    {"service-policies": {"P": {}}},
    {"service-policies": {"01:P": {}}},
    {"service-policies": {"1:P": {"interfaces": {"E": 1}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-256": {}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc3": {}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3\n": {}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3": {"priority": "7"}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3": {"priority": "Strict"}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3": {"bandwidth": 256}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3": {"bandwidth": 2.5}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3": {"bandwidth": -1}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3": {"bandwidth": True}}}}},
    {"interfaces": {"E": {"tx-queues": {"uc-3": {"ecn": None}}}}},
    {"interfaces": {"E": {"pfc": {"priorities": "8"}}}},
    {"tc-to-tx-queue": {"64": 1}},
    {"comments": {"a": 1}},
    {"queue-names": {"q": "3"}},
    {"pfc-watchdog": {"time-a": "1"}},
]
BAD_VALUES = [None, True, -1, 256, 4294967296, 0.5, "", "x", "1", [], {}, [1], {"x": {}}]
BAD_KEYS = ["", "x", "01", "256", "qos", "1:P", "uc-3", "uc-256", "a\n", "4294967296", "7", "9"]
# What no schema can see, in texts, since most of it is gone from what a validator gets.
HIDDEN = [
    '{"queue-names": {"q": 1, "q": 2}}',
    '{"queue-names": {}, "queue-names": {}}',
    '{"class-maps": {"qos": {}, "1": {}}}',
    '{"class-maps": {"qos": {"V": {"match": [7, "7"]}}}}',
    '{"class-maps": {"qos": {"V": {"match": ["ip-access-group", 1]}}}}',
    '{"interfaces": {"E": {"tx-queues": {"uc-3": {"bandwidth": 40.0}}}}}',
    '{"interfaces": {"E": {"tx-queues": {"uc-3": {"bandwidth": 4e1}}}}}',
    '{"interfaces": {"E": {"tx-queues": {"uc-3": {"priority": 0.0}}}}}',
]


def run_example(example):
    """The command lines of an example of the help, with what each one prints; a `cat` makes the file."""
    steps = re.findall(r"^  \$ (.*)\n((?:  (?!\$ ).*\n)*)", example, re.MULTILINE)
    with tempfile.TemporaryDirectory() as folder:
        path = f"{pathlib.Path(qosoc).resolve().parent}:/usr/bin:/bin"
        for command, output in steps:
            shown = re.sub("^  ", "", output, flags=re.MULTILINE)
            if command.startswith("cat "):
                pathlib.Path(folder, command[4:]).write_text(shown, encoding="utf-8")
                continue
            run = subprocess.run(command, shell=True, cwd=folder, env={"PATH": path}, text=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            if run.stdout != shown:
                failures.append(f"{command}: the help shows {shown!r}, it prints {run.stdout!r}")
    return len(steps)


def places(value, above=()):
    """The paths of all that stands in a value."""
    yield above
    if isinstance(value, dict):
        for key in value:
            yield from places(value[key], above + (key,))
    elif isinstance(value, list):
        for index, below in enumerate(value):
            yield from places(below, above + (index,))


def with_slip(document, dice):
    """The document with one thing in it changed at random."""
    slipped = copy.deepcopy(document)
    path = dice.choice([path for path in places(slipped) if path])
    around = slipped
    for step in path[:-1]:
        around = around[step]
    slip = dice.randrange(3) if isinstance(around, dict) else 0
    if slip == 0:
        around[path[-1]] = dice.choice(BAD_VALUES)
    elif slip == 1:
        around[dice.choice(BAD_KEYS)] = around.pop(path[-1])
    else:
        around[dice.choice(BAD_KEYS)] = dice.choice(BAD_VALUES)
    return slipped


def is_hidden(document):
    """Whether it may hold what a schema can't see: a name beside its number."""
    text = json.dumps(document)
    return any(name in text for name in ('"qos"', "access-group", "set-traffic")) and '"1"' in text


for document in LEGAL:
    expect(True, document, "legal")
for document in ILLEGAL:
    expect(False, document, "illegal")

for text in HIDDEN:
    if program_accepts(text):
        failures.append(f"hidden: the program takes {text}")
    if not validator.is_valid(json.loads(text)):
        failures.append(f"hidden: the schema refuses {text}, and the help says that it can't")

page = (examples.parent / "docs" / "native-document.md").read_text(encoding="utf-8")
blocks = re.findall(r"^```json\n(.*?)^```$", page, re.MULTILINE | re.DOTALL)
assert len(blocks) >= 7, "the page has lost its documents"
files = sorted(examples.glob("*/*native*.json"))
assert examples / "feeder" / "native.json" in files, files
natives = [json.loads(text) for text in [path.read_text() for path in files] + blocks]
for document in natives + LEGAL:
    expect(True, document, "example")

dice = random.Random(18)
refused = 0
for turn in range(400):
    document = with_slip(dice.choice(natives + LEGAL[1:]), dice)
    if is_hidden(document):
        continue
    verdict = validator.is_valid(document)
    refused += not verdict
    expect(verdict, document, f"slip {turn}")

help_text = subprocess.run([qosoc, "schema", "--help"], capture_output=True, text=True, check=True).stdout
example = help_text[help_text.index("\nExample:\n"):help_text.index("\nExit code:\n")]
assert run_example(example) == 3, example

print(f"{len(LEGAL) + len(natives)} legal and {len(ILLEGAL)} illegal documents, 400 slips, {refused} refused")
assert refused > 100, "the slips are too few to say anything"
print("\n".join(failures))
sys.exit(1 if failures else 0)
