"""The feeder of examples/feeder, together with qosoc.

    feeder_test.py QOSOC [ARGUMENTS OF UNITTEST]

With QOS_UPDATE_GOLDEN=1 what it prints for its example is written instead of compared.
"""

import contextlib
import io
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
EXAMPLE = HERE.parent.parent / "examples" / "feeder"
PAGE = HERE.parent.parent / "docs" / "feeding.md"
FEEDER = EXAMPLE / "feeder.py"
QOSOC = ""

# Names that JSON, JSON Pointer, a shell or a reader of lines could take apart.
HOSTILE = ["a/b", "~", "~1", "~0/~1", '"', "\\", "", " ", "/", "//", "a\nb", "é", "\u2028", "\0",
           "[x]", "-", "0", "$HOME", "\x7f", "\U0001f600"]


sys.dont_write_bytecode = True
sys.path.insert(0, str(EXAMPLE))
import feeder  # noqa: E402, pylint: disable=wrong-import-position


def run(*command):
    return subprocess.run([str(word) for word in command], capture_output=True, check=False)


def run_feeder(*words):
    """What it does as a program, in this process, which is quicker: exit code, output, errors."""
    out, err = io.TextIOWrapper(io.BytesIO(), "utf-8"), io.StringIO()
    with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
        code = feeder.main(*(str(word) for word in words))
    return code, out.buffer.getvalue(), err.getvalue()


def dump(rows):
    return "".join(json.dumps(row) + "\n" for row in rows)


class Case(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, name, text):
        path = self.folder / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def feeder(self, *words):
        code, out, errors = run_feeder(*words)
        self.assertEqual((code, errors), (0, ""))
        return out

    def qosoc(self, may_raise, *words):
        done = run(QOSOC, *words)
        if may_raise:  # a value that a translator can't take; but no line is refused
            for line in done.stderr.decode().splitlines():
                self.assertRegex(line, "^(line [0-9]+|root [a-z-]+): range: |^warning: ")
        else:
            self.assertEqual((done.stderr.decode(), done.returncode), ("", 0))
        return done.stdout.decode()

    def followed(self, before, after, may_raise=False):
        """What becomes of the first dump by the change lines, and what the second one is:
        their native documents, as qosoc writes them, and their models."""
        first, second = self.file("before.jsonl", before), self.file("after.jsonl", after)
        native = self.file("native.json", self.feeder("document", first))
        other = self.file("other.json", self.feeder("document", second))
        changes = self.file("changes.jsonl", self.feeder("changes", first, second))
        model = self.qosoc(may_raise, "translate", native, "--changes", changes,
                           "--native-out", self.folder / "led.json")
        alone = self.qosoc(may_raise, "translate", other,
                           "--native-out", self.folder / "alone.json")
        return ((self.folder / "led.json").read_text(), model), (
            (self.folder / "alone.json").read_text(), alone)


class Example(Case):
    """The branch router of before.jsonl and after.jsonl."""

    def expect_golden(self, name, actual):
        if os.environ.get("QOS_UPDATE_GOLDEN") == "1":
            (EXAMPLE / name).write_bytes(actual)
        self.assertEqual(actual.decode(), (EXAMPLE / name).read_text())

    def test_gives_the_document_and_the_changes_that_lie_beside_it(self):
        self.expect_golden("native.json", self.feeder("document", EXAMPLE / "before.jsonl"))
        self.expect_golden("changes.jsonl", self.feeder("changes", EXAMPLE / "before.jsonl",
                                                        EXAMPLE / "after.jsonl"))

    def test_is_what_the_program_prints(self):
        done = run(sys.executable, "-B", FEEDER, "document", EXAMPLE / "before.jsonl")
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(done.stdout, (EXAMPLE / "native.json").read_bytes())
        done = run(sys.executable, "-B", FEEDER, "document", os.devnull, "more")
        self.assertEqual((done.returncode, done.stdout), (2, b""))

    def test_that_cannot_be_written_is_a_failure_with_a_message(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run(
                [sys.executable, "-B", FEEDER, "document", EXAMPLE / "before.jsonl"],
                stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual((done.returncode, done.stderr),
                         (1, b"standard output: No space left on device\n"))

    def test_that_is_read_to_no_end_is_a_failure_with_a_message(self):
        reader, writer = os.pipe()
        os.close(reader)
        with open(writer, "wb") as pipe:
            done = subprocess.run(
                [sys.executable, "-B", FEEDER, "document", EXAMPLE / "before.jsonl"],
                stdout=pipe, stderr=subprocess.PIPE, check=False)
        self.assertEqual((done.returncode, done.stderr), (1, b"standard output: Broken pipe\n"))

    def test_leads_to_the_model_of_the_second_dump(self):
        led, alone = self.followed((EXAMPLE / "before.jsonl").read_text(),
                                   (EXAMPLE / "after.jsonl").read_text())
        self.assertEqual(led, alone)

    def test_has_a_row_of_each_table(self):
        text = (EXAMPLE / "before.jsonl").read_text() + (EXAMPLE / "after.jsonl").read_text()
        shown = {json.loads(line)["table"] for line in text.splitlines()}
        self.assertEqual(shown, set(feeder.TABLES))

    def test_order_of_the_rows_means_nothing(self):
        rows = (EXAMPLE / "after.jsonl").read_text().splitlines(keepends=True)
        random.Random(1).shuffle(rows)
        shuffled = self.file("shuffled.jsonl", "".join(rows))
        self.assertEqual(self.feeder("changes", EXAMPLE / "after.jsonl", shuffled), b"")


class Page(unittest.TestCase):
    """The table in docs/feeding.md."""

    def test_has_each_table_with_its_members_and_its_place(self):
        rows = [line.split("|") for line in PAGE.read_text().splitlines() if line.startswith("| `")]
        shown = {row[1].strip(" `"): (row[2], row[3].strip(" `")) for row in rows}
        self.assertEqual(set(shown), set(feeder.TABLES))
        for name, table in feeder.TABLES.items():
            members, place = shown[name]
            keys = [part for part in table.place if not isinstance(part, str)]
            self.assertEqual(sorted(members.replace("`", "").replace(" ", "").split(",")),
                             sorted([*(key.name for key in keys), *table.members] or [""]), name)
            written = "/" + "/".join(part if isinstance(part, str) else
                                     f"{part.prefix}<{part.name}>" for part in table.place)
            self.assertTrue(place.startswith(written), (place, written))


class Commands(Case):
    """The blocks of commands of the README and of docs/feeding.md, over the dumps of the example."""

    def test_of_the_pages_print_the_feed_of_the_example(self):
        expected = self.qosoc(False, "translate", EXAMPLE / "native.json", "--changes",
                              EXAMPLE / "changes.jsonl", "--feed").splitlines()[1:]
        self.assertEqual(len(expected), len((EXAMPLE / "changes.jsonl").read_text().splitlines()))
        for page in PAGE, EXAMPLE.parent.parent / "README.md":
            block, = re.findall(r"^```\n(feeder.py document .*?)^```$", page.read_text(),
                                re.MULTILINE | re.DOTALL)
            with tempfile.TemporaryDirectory() as folder:
                for name in "before.jsonl", "after.jsonl":
                    shutil.copy(EXAMPLE / name, folder)
                os.symlink(FEEDER, pathlib.Path(folder, "feeder.py"))
                os.symlink(pathlib.Path(QOSOC).resolve(), pathlib.Path(folder, "qosoc"))
                done = subprocess.run(["bash", "-e", "-c", block], cwd=folder, capture_output=True,
                                      env={**os.environ, "PATH": f"{folder}:{os.environ['PATH']}"},
                                      check=False)
            self.assertEqual((done.returncode, done.stderr), (0, b""), page)
            self.assertEqual(done.stdout.decode().splitlines()[1:], expected, page)


class Changes(Case):
    def test_are_none_between_equal_dumps(self):
        self.assertEqual(self.feeder("changes", EXAMPLE / "before.jsonl",
                                     EXAMPLE / "before.jsonl"), b"")

    def test_remove_what_lost_its_row_before_they_add(self):
        before = [{"table": "service-policy", "policy-map": "a", "interface": "E1"},
                  {"table": "policy-map", "name": "a"}, {"table": "class-map", "name": "a"}]
        after = [{"table": "class-map", "name": "b"}, {"table": "policy-map", "name": "b"},
                 {"table": "service-policy", "policy-map": "b", "interface": "E1"}]
        lines = self.feeder("changes", self.file("a", dump(before)), self.file("b", dump(after)))
        operations = [json.loads(line)[0] for line in lines.splitlines()]
        self.assertEqual([f'{one["op"]} {one["path"]}' for one in operations],
                         ["remove /service-policies/1:a", "remove /policy-maps/qos/a",
                          "remove /class-maps/qos/a", "add /class-maps/qos/b",
                          "add /policy-maps/qos/b", "add /service-policies/1:b"])

    def test_lead_from_any_hostile_name_to_any_other(self):
        for first, second in zip(HOSTILE, HOSTILE[1:] + HOSTILE[:1]):
            for before in [first], [first, second]:
                led, alone = self.followed(dump([row for name in before
                                                 for row in self.device_of(name)]),
                                           dump(self.device_of(second)), True)
                self.assertEqual(led[0], alone[0])

    @staticmethod
    def device_of(name):
        return [{"table": "class-map", "name": name},
                {"table": "acl-rule", "acl": name, "sequence": 10, "dscp": 46},
                {"table": "policy-class", "policy-map": name, "class-map": name},
                {"table": "service-policy", "policy-map": name, "interface": name},
                {"table": "ecn", "interface": name, "queue": "uc-1",
                 "max-drop-percent": 1},
                {"table": "profile", "name": name},
                {"table": "comment", "key": name, "text": name},
                {"table": "forwarding-group", "name": name, "traffic-class": 1},
                {"table": "queue-name", "name": name, "queue": 1}]


class BadRows(Case):
    def refused(self, text):
        code, out, errors = run_feeder("document", self.file("dump.jsonl", text))
        self.assertEqual((code, out), (2, b""))
        return errors.replace(str(self.folder) + "/", "")

    def test_are_all_named_and_nothing_is_printed(self):
        good = '{"table": "interface", "name": "Ethernet1"}\n'
        bad = '{"table": "interface", "name": 1}\n'
        self.assertEqual(self.refused(good + bad + "\n" + bad),
                         'dump.jsonl:2: "name" is not a string\n'
                         'dump.jsonl:4: "name" is not a string\n')

    def test_of_either_dump_keep_the_changes_back(self):
        good = self.file("good.jsonl", '{"table": "interface", "name": "Ethernet1"}\n')
        bad = self.file("bad.jsonl", "{}\n")
        for files in (good, bad), (bad, good):
            self.assertEqual(run_feeder("changes", *files),
                             (2, b"", f'{bad}:1: no member "table"\n'))

    def test_say_what_is_wrong(self):
        queue = '{"table": "tx-queue", "interface": "E1", "queue": "uc-1", '
        for text, what in {
                "[1]": "not a JSON object",
                "{": "not JSON: Expecting property name enclosed in double quotes at column 2",
                '{"table": "ACL"}': 'no table "ACL"',
                '{"table": []}': 'no table "[]"',
                '{"table": "interface"}': 'no member "name"',
                '{"table": "interface", "name": "a", "mtu": 9000}': 'unknown member "mtu"',
                '{"table": "interface", "name": "a", "name": "b"}': "a member twice",
                '{"table": "interface", "name": "\\ud800"}': "not Unicode text in UTF-8",
                b'{"table": "interface", "name": "\xff"}': "not Unicode text in UTF-8",
                '{"table": "comment", "key": "a"}': 'no member "text"',
                queue + '"bandwidth": 256}': '"bandwidth" is not a whole number from 0 to 255',
                queue + '"bandwidth": -1}': '"bandwidth" is not a whole number from 0 to 255',
                queue + '"bandwidth": 40.0}': '"bandwidth" is not a whole number from 0 to 255',
                queue + '"bandwidth": true}': '"bandwidth" is not a whole number from 0 to 255',
                queue + '"bandwidth": "40"}': '"bandwidth" is not a whole number from 0 to 255',
                queue + '"priority": "high"}': '"priority" is neither strict nor unset',
                '{"table": "tx-queue", "interface": "E1", "queue": "uc-01"}':
                    '"queue" is neither uc-N nor mc-N, N from 0 to 255',
                '{"table": "tx-queue", "interface": "E1", "queue": "mc-256"}':
                    '"queue" is neither uc-N nor mc-N, N from 0 to 255',
                '{"table": "acl-rule", "acl": "a", "sequence": 10, "dscp": 64}':
                    '"dscp" is not a whole number from 0 to 63',
                '{"table": "class-map", "name": "a", "match": ["any"]}':
                    '"match" is not a list of ip-access-group and ipv6-access-group, each at '
                    'most once',
                '{"table": "pfc", "interface": "E1", "priorities": [8]}':
                    '"priorities" is not a list of priorities from 0 to 7',
                '{"table": "pfc-watchdog", "time-a": 1e999}': '"time-a" is not a number',
                '{"table": "pfc-watchdog", "time-a": 1' + "0" * 309 + "}":
                    '"time-a" is not a number',
                '{"table": "pfc-watchdog", "time-a": true}': '"time-a" is not a number',
                '{"table": "pfc-watchdog", "time-a": NaN}': "not JSON: NaN",
                "[" * 100000: "not JSON: maximum recursion depth exceeded while decoding a JSON "
                              "array from a unicode string",
        }.items():
            self.assertEqual(self.refused(text), f"dump.jsonl:1: {what}\n", text)

    def test_that_say_something_of_one_object_again_are_bad(self):
        row = '{"table": "traffic-class", "traffic-class": 1, "queue": %d}\n'
        self.assertEqual(self.refused(row % 1 + row % 2),
                         "dump.jsonl:2: the same object as in line 1\n")

    def test_and_a_dump_that_is_not_there(self):
        self.assertEqual(run_feeder("document", self.folder / "none.jsonl"),
                         (2, b"", f"{self.folder}/none.jsonl: No such file or directory\n"))

    def test_and_bad_usage(self):
        for words in [], ["document"], ["changes", "a"], ["draw", "a"], ["document", "a", "b"]:
            code, out, errors = run_feeder(*words)
            self.assertEqual((code, out), (2, b""))
            self.assertIn("feeder.py document DUMP", errors)


# ===== Random dumps

def random_rows(draw):
    """Rows of all tables, over few names, hostile ones among them."""
    name = lambda: draw.choice(["a", "__yang_[c]_[]", "__yang_[c]_[t]", "__yang_[IPV4__c]",
                                "__YANG_QMP_[q]", "__YANG_SP_[s]", draw.choice(HOSTILE)])
    number = lambda most: draw.choice([0, 1, most, draw.randrange(most + 1)])
    values = {
        "match": lambda: draw.sample(["ip-access-group", "ipv6-access-group"], draw.randrange(3)),
        "dscp": lambda: number(63), "sequence": lambda: number(2**32 - 1),
        "set-traffic-class": lambda: number(16), "traffic-class": lambda: number(16),
        "interface": lambda: draw.choice(["Ethernet1", "Ethernet2/1", draw.choice(HOSTILE)]),
        "priority": lambda: draw.choice(["strict", "unset"]), "bandwidth": lambda: number(100),
        "action": lambda: number(255), "max-drop-percent": lambda: number(100),
        "threshold-unit": lambda: number(255),
        "priorities": lambda: [draw.randrange(8) for _ in range(draw.randrange(4))],
        "text": lambda: draw.choice(HOSTILE + ['{"MetaData-OpenConfig":{}}'])}
    for one in "shape", "min-threshold", "max-threshold", "weight":
        values[one] = lambda: number(2**32 - 2)
    for one in "time-a", "time-b", "time-c":
        values[one] = lambda: draw.randrange(30) / 8
    rows = {}
    for table in draw.choices(list(feeder.TABLES), k=draw.randrange(1, 40)):
        row = {"table": table}
        for part in feeder.TABLES[table].place:
            if not isinstance(part, str):
                queue = f'{draw.choice(["uc", "mc"])}-{number(7)}'
                row[part.name] = queue if part.name == "queue" else values.get(part.name, name)()
        key = json.dumps(row)
        for member in feeder.TABLES[table].members:
            if len(feeder.TABLES[table].members) == 1 or draw.randrange(3):
                row[member] = number(7) if member == "queue" else values[member]()
        rows[key] = row
    return list(rows.values())


def lasting_rows(draw):
    """Rows of a device whose model doesn't depend on its past: what translators keep of earlier
    settings, as the values of an ACL or an interface, is the same in all of these."""
    rows = [{"table": "queue-name", "name": f"Q{n}", "queue": n} for n in range(4)]
    rows += [{"table": "forwarding-group", "name": f"g{n}", "traffic-class": n} for n in range(4)]
    rows += [{"table": "traffic-class", "traffic-class": n, "queue": draw.randrange(4)}
             for n in range(4)]
    for port, classifier in draw.sample([*enumerate(["lan-in", "wan-in", "dmz/in"])],
                                        draw.randrange(4)):
        rows.append({"table": "class-map", "name": f"__yang_[{classifier}]_[]",
                     "match": ["ip-access-group"]})
        for dscp in draw.sample(range(5), draw.randrange(1, 5)):
            name = f"__yang_[{classifier}]_[t{dscp}]"
            rows.append({"table": "class-map", "name": name, "match": ["ip-access-group"]})
            rows.append({"table": "acl-rule", "acl": name, "sequence": 10, "dscp": dscp})
            rows.append({"table": "policy-class", "policy-map": f"__yang_[IPV4__{classifier}]",
                         "class-map": name, "set-traffic-class": draw.randrange(4)})
        rows.append({"table": "service-policy", "policy-map": f"__yang_[IPV4__{classifier}]",
                     "interface": f"Ethernet{port}/1"})
    for port in range(4):
        for queue in draw.sample(range(4), draw.randrange(5)):
            place = {"interface": f"Ethernet{port}/1", "queue": f"uc-{queue}"}
            rows.append({"table": "tx-queue", **place, "bandwidth": draw.randrange(101),
                         "priority": draw.choice(["strict", "unset"])})
            if draw.randrange(2):
                rows.append({"table": "ecn", **place, "max-threshold": draw.randrange(1000),
                             "max-drop-percent": draw.randrange(101)})
        rows.append({"table": "pfc", "interface": f"Ethernet{port}/1",
                     "priorities": [draw.randrange(8)]})
    for profile in draw.sample(["gold", "a~b"], draw.randrange(3)):
        rows.append({"table": "profile-wred", "profile": f"__YANG_QMP_[{profile}]",
                     "queue": "uc-0", "max-threshold": draw.randrange(1000),
                     "max-drop-percent": draw.randrange(101)})
    draw.shuffle(rows)
    return rows


class RandomDumps(Case):
    def test_lead_to_the_native_document_of_the_second_one(self):
        for seed in range(30):
            with self.subTest(seed=seed):
                draw = random.Random(seed)
                led, alone = self.followed(dump(random_rows(draw)), dump(random_rows(draw)), True)
                self.assertEqual(led[0], alone[0])

    def test_lead_to_the_model_of_the_second_one(self):
        for seed in range(30):
            with self.subTest(seed=seed):
                draw = random.Random(seed)
                led, alone = self.followed(dump(lasting_rows(draw)), dump(lasting_rows(draw)))
                self.assertEqual(led, alone)


class Follow(Case):
    """follow.sh, over a command that gives another dump each time."""

    def follow(self, *dumps):
        """Runs it over the dumps, of which the last one stays; a dump of None fails."""
        for number, text in enumerate(dumps, 1):
            if text is not None:
                self.file(str(number), text)
        (self.folder / "temporary").mkdir()
        command = self.file("dump", 'cd "$(dirname "$0")"; n=$(cat n 2>/dev/null || echo 0)\n'
                                    f"[ $n -ge {len(dumps)} ] || n=$((n + 1))\n"
                                    "echo $n >n; cat $n\n")
        return subprocess.Popen(
            [EXAMPLE / "follow.sh", "0.1", "sh", command], text=True, start_new_session=True,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env={**os.environ, "QOSOC": QOSOC, "TMPDIR": str(self.folder / "temporary")})

    def expect_nothing_left(self):
        self.assertEqual(list((self.folder / "temporary").iterdir()), [])

    def test_passes_over_bad_dumps(self):
        row = '{"table": "pfc", "interface": "E1", "priorities": [%d]}\n'
        with self.follow(row % 0, row % 9, None, row % 1) as follow:
            try:
                first, second = (json.loads(follow.stdout.readline()) for _ in range(2))
            finally:
                os.killpg(follow.pid, signal.SIGTERM)
            errors = follow.communicate()[1]
        priorities = ("/qos/interfaces/interface[interface-id=E1]/output/qosoc-augments:pfc/config/"
                      "priorities")
        self.assertEqual(first["update"][priorities], "1")
        self.assertEqual((second["line"], second["update"]), (1, {priorities: "2"}))
        self.assertIn('after.jsonl:1: "priorities" is not a list of priorities', errors)
        self.assertIn("cat: 3: No such file", errors)
        self.expect_nothing_left()

    def test_ends_as_the_program_does(self):
        queue = '{"table": "tx-queue", "interface": "E1", "queue": "uc-0"}\n'
        wrong = json.dumps({"table": "comment", "key": "if-E1-uc-txq-0",
                            "text": '{"MetaData-OpenConfig":1}'})
        with self.follow(queue, queue + wrong) as follow:
            errors = follow.communicate()[1]
        self.assertEqual(follow.returncode, 128 + signal.SIGABRT)
        self.assertIn("a comment holds a JSON value of the wrong type", errors)
        self.expect_nothing_left()

    def test_prints_nothing_when_the_first_dump_is_bad(self):
        with self.follow("{}\n") as follow:
            out, errors = follow.communicate()
        self.assertEqual((follow.returncode, out), (2, ""))
        self.assertTrue(errors.endswith('before.jsonl:1: no member "table"\n'), errors)
        self.expect_nothing_left()


if __name__ == "__main__":
    QOSOC = sys.argv.pop(1)
    unittest.main()
