"""The agent of examples/agent, held against what qosoc makes of the same day.

    agent_test.py QOSOC AGENT [ARGUMENTS OF UNITTEST]
"""

import array
import fcntl
import json
import os
import pathlib
import random
import re
import signal
import socket
import subprocess
import sys
import tempfile
import termios
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
EXAMPLES = HERE.parent.parent / "examples"
ROUTER = EXAMPLES / "edge-router"
DAY = (ROUTER / "02-change.jsonl").read_bytes().splitlines(keepends=True)
VOICE = "/qos/classifiers/classifier[name=core-in]/terms/term[id=voice]/conditions/ipv4/config/"
SECTIONS = ["class-maps", "access-lists", "policy-maps", "service-policies", "interfaces",
            "qos-profiles", "comments", "tc-to-tx-queue", "forwarding-groups", "queue-names",
            "pfc-watchdog"]
QOSOC = ""
AGENT = ""
PATIENCE = 60  # seconds


def class_map(name, match=1):
    """A line that adds a class map."""
    operation = {"op": "add", "path": "/class-maps/qos/" + name, "value": {"match": [match]}}
    return json.dumps([operation]).encode() + b"\n"


class Case(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.state = self.folder / "state.json"
        self.feed = self.folder / "feed.jsonl"
        self.log = self.folder / "log"
        self.socket = self.folder / "socket"

    def qosoc(self, *words):
        done = subprocess.run([QOSOC, "translate", *map(str, words)], capture_output=True,
                              check=False)
        self.assertIn(done.returncode, (0, 1), done.stderr)
        return done

    def expected_feed(self, *words):
        return [json.loads(line) for line in self.qosoc(*words, "--feed").stdout.splitlines()]

    def begin_with_router(self):
        self.qosoc(ROUTER / "01-native.json", "--save", self.state)

    def start(self, feed=None, state=None, **environment):
        with self.log.open("ab") as log:
            agent = subprocess.Popen(
                [AGENT, self.socket, state or self.state, feed or self.feed], stderr=log,
                env={**os.environ, **environment})
        self.addCleanup(agent.wait)
        self.addCleanup(agent.kill)
        return agent

    def start_and_wait(self, **environment):
        lines = len(self.feed_lines())
        agent = self.start(**environment)
        self.wait_for_lines(lines + 1)
        return agent

    def refused_start(self, **arguments):
        self.assertEqual(self.start(**arguments).wait(PATIENCE), 1)
        return self.log.read_text()

    def end(self, agent, by=signal.SIGTERM):
        agent.send_signal(by)
        return agent.wait(PATIENCE)

    def feed_lines(self):
        text = self.feed.read_bytes() if self.feed.exists() else b""
        return [json.loads(line) for line in text.splitlines(keepends=True) if line.endswith(b"\n")]

    def wait_for(self, what, is_there):
        end = time.monotonic() + PATIENCE
        while not is_there():
            self.assertLess(time.monotonic(), end, f"{what} did not come: {self.log.read_text()}")
            time.sleep(0.005)

    def wait_for_lines(self, count):
        self.wait_for(f"line {count} of the feed", lambda: len(self.feed_lines()) >= count)
        return self.feed_lines()

    def wait_for_log(self, text):
        self.wait_for(repr(text), lambda: text in self.log.read_text())

    def writer(self):
        def is_connected():
            try:
                writer.connect(str(self.socket))
            except (FileNotFoundError, ConnectionRefusedError):  # it listens behind line 0
                return False
            return True
        writer = socket.socket(socket.AF_UNIX)
        self.addCleanup(writer.close)
        self.wait_for("the socket", is_connected)
        return writer

    def write(self, text):
        """All of one writer."""
        with self.writer() as writer:
            writer.sendall(text)

    def assert_feed(self, lines, expected):
        """But for the epochs, which no two starts share."""
        without = [{name: value for name, value in line.items() if name != "epoch"}
                   for line in lines]
        self.assertEqual(without, [{name: value for name, value in line.items() if name != "epoch"}
                                   for line in expected])


class ADay(Case):
    def test_gives_the_feed_the_messages_and_the_state_that_the_program_gives(self):
        self.begin_with_router()
        saved = self.folder / "saved.json"
        expected = self.expected_feed("--restore", self.state, "--changes",
                                      ROUTER / "02-change.jsonl", "--save", saved)
        agent = self.start_and_wait()
        text = b"".join(DAY)
        dice = random.Random(7)
        with self.writer() as writer:
            while text:
                size = dice.choice((1, 40, 300, 5000))
                writer.sendall(text[:size])
                text = text[size:]
                time.sleep(dice.choice((0, 0.001)))
        self.assert_feed(self.wait_for_lines(len(expected)), expected)
        self.assertEqual(self.end(agent), 0)
        messages = (ROUTER / "02-messages.txt").read_text().splitlines()
        self.assertEqual(self.log.read_text().splitlines(), ["agent: " + line for line in messages])
        self.assertEqual(json.loads(self.state.read_text()), json.loads(saved.read_text()))
        self.assert_feed(self.feed_lines(), expected)

    def test_goes_on_behind_a_restart_which_sweeps(self):
        self.begin_with_router()
        agent = self.start_and_wait()
        self.write(b"".join(DAY[:8]))
        lines = self.wait_for_lines(8)  # line 5 is blank
        self.assertEqual(lines[3]["update"], {VOICE + "dscp-set": [46, 47]})
        self.assertEqual(self.end(agent), 0)
        expected = self.expected_feed("--restore", self.state)

        agent = self.start_and_wait()
        self.assert_feed(self.feed_lines()[8:], expected)
        start = self.feed_lines()[8]
        self.assertEqual(start["update"][VOICE + "dscp"], 47)
        self.assertNotIn(VOICE + "dscp-set", start["update"])
        self.assertNotEqual(start["epoch"], lines[0]["epoch"])

        self.write(b"".join(DAY[8:]))
        lines = self.wait_for_lines(8 + 1 + 6)[9:]
        self.assertEqual([line["line"] for line in lines], [1, 2, 3, 4, 5, 6])
        self.assertEqual(self.end(agent), 0)
        last = self.expected_feed("--restore", self.state)[0]["update"]
        whole = self.expected_feed(ROUTER / "03-native-after.json", "--initial",
                                   ROUTER / "03-model.json")[0]["update"]
        self.assertEqual(last, whole)

    def test_begins_with_an_empty_device_where_nothing_was_saved(self):
        agent = self.start_and_wait()
        self.assertEqual(self.feed_lines()[0]["update"], {})
        self.write(class_map("__yang_[c]_[]"))
        self.assertIn("/qos/classifiers/classifier[name=c]/name",
                      self.wait_for_lines(2)[1]["update"])
        self.assertEqual(self.end(agent, signal.SIGINT), 0)
        self.assertIn("__yang_[c]_[]", self.state.read_text())


class AnEnd(Case):
    def test_by_a_kill_leaves_what_was_saved_and_a_place_for_the_next_one(self):
        self.begin_with_router()
        before = self.state.read_bytes()
        agent = self.start_and_wait()
        self.write(class_map("__yang_[c]_[]"))
        self.wait_for_lines(2)
        self.assertEqual(self.end(agent, signal.SIGKILL), -signal.SIGKILL)
        self.assertEqual(self.state.read_bytes(), before)
        agent = self.start_and_wait()
        self.write(class_map("__yang_[c]_[]"))
        self.assertIn("/qos/classifiers/classifier[name=c]/name",
                      self.wait_for_lines(4)[3]["update"])
        self.assertEqual(self.end(agent), 0)

    def test_in_the_middle_of_a_line_saves_the_lines_before_it(self):
        agent = self.start_and_wait()
        writer = self.writer()
        writer.sendall(class_map("__yang_[c]_[]") + class_map("__yang_[d]_[]")[:-9])
        self.wait_for_lines(2)
        self.assertEqual(self.end(agent), 0)
        self.assertIn("__yang_[c]_[]", self.state.read_text())
        self.assertNotIn("__yang_[d]_[]", self.state.read_text())

    def test_that_cannot_save_is_a_failure(self):
        folder = self.folder / "gone"
        folder.mkdir()
        agent = self.start(state=folder / "state.json")
        self.wait_for_lines(1)
        self.writer()
        (folder / "state.json.lock").unlink()
        folder.rmdir()
        self.assertEqual(self.end(agent), 1)
        self.assertEqual(self.log.read_text(),
                         f"agent: {folder}/state.json.next: No such file or directory\n")

    def test_by_a_sink_that_breaks_saves_nothing(self):
        self.begin_with_router()
        before = self.state.read_bytes()
        self.assertEqual(self.refused_start(feed="/dev/full"),
                         "agent: /dev/full: No space left on device\n")
        self.assertEqual(self.state.read_bytes(), before)


class APipe(Case):
    """A feed that is a pipe."""

    def setUp(self):
        super().setUp()
        self.pipe = self.folder / "feed.pipe"
        os.mkfifo(self.pipe)

    def reader(self):
        """One that holds a page of it, and reads nothing by itself."""
        reader = os.open(self.pipe, os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        fcntl.fcntl(reader, fcntl.F_SETPIPE_SZ, 4096)
        return reader

    def waiting(self, reader):
        count = array.array("i", [0])
        fcntl.ioctl(reader, termios.FIONREAD, count)
        return count[0]

    def read_lines(self, reader, count):
        text = b""
        while text.count(b"\n") < count:
            self.wait_for("the feed", lambda: self.waiting(reader) > 0)
            text += os.read(reader, 1000)
        return [json.loads(line) for line in text.splitlines()]

    def test_without_a_reader_is_refused(self):
        self.assertEqual(self.refused_start(feed=self.pipe),
                         f"agent: {self.pipe}: No such device or address\n")

    def test_gives_a_slow_reader_all_of_it(self):
        self.begin_with_router()
        expected = self.expected_feed("--restore", self.state, "--changes",
                                      ROUTER / "02-change.jsonl")
        reader = self.reader()
        agent = self.start(feed=self.pipe)
        self.wait_for("a full pipe", lambda: self.waiting(reader) == 4096)
        first = self.read_lines(reader, 1)
        self.write(b"".join(DAY))
        self.assert_feed(first + self.read_lines(reader, len(expected) - 1), expected)
        self.assertEqual(self.end(agent), 0)

    def test_whose_reader_stalls_at_the_start_can_be_left(self):
        self.begin_with_router()
        reader = self.reader()
        agent = self.start(feed=self.pipe)
        self.wait_for("a full pipe", lambda: self.waiting(reader) == 4096)
        self.assertEqual(self.end(agent), 0)
        self.assertEqual(self.log.read_text(),
                         f"agent: {self.pipe}: cut off: its reader stalls\n")

    def test_whose_reader_stalls_later_can_be_left_and_the_line_is_saved(self):
        reader = self.reader()
        agent = self.start(feed=self.pipe)
        self.read_lines(reader, 1)
        name = "c" * 3000
        self.write(class_map(f"__yang_[{name}]_[]"))
        self.wait_for("a full pipe", lambda: self.waiting(reader) == 4096)
        self.assertEqual(self.end(agent, signal.SIGINT), 0)
        self.assertEqual(self.log.read_text(),
                         f"agent: {self.pipe}: cut off: its reader stalls\n")
        self.start_and_wait()
        self.assertIn(f"/qos/classifiers/classifier[name={name}]/name",
                      self.feed_lines()[0]["update"])

    def test_whose_reader_goes_is_a_feed_that_cannot_be_written(self):
        reader = os.open(self.pipe, os.O_RDONLY | os.O_NONBLOCK)
        agent = self.start(feed=self.pipe)
        self.wait_for("line 0", lambda: self.waiting(reader) > 0)
        os.close(reader)
        self.write(class_map("__yang_[c]_[]"))
        self.assertEqual(agent.wait(PATIENCE), 1)
        self.assertEqual(self.log.read_text(), f"agent: {self.pipe}: Broken pipe\n")
        self.assertFalse(self.state.exists())


class AStart(Case):
    def test_beside_a_living_agent_is_refused_and_leaves_that_one_its_socket(self):
        self.start_and_wait()
        self.writer().close()
        self.assertEqual(self.refused_start(),
                         f"agent: {self.state}.lock: Resource temporarily unavailable\n")
        self.write(class_map("__yang_[c]_[]"))
        self.wait_for_lines(2)

    def test_from_a_broken_state_names_every_fault_and_leaves_it(self):
        text = '{"qosoc-save": 1,\n "native": {"tables": 1},\n "model": {"queues": 7}}\n'
        self.state.write_text(text)
        log = self.refused_start().splitlines()
        self.assertEqual(len(log), 2)
        self.assertTrue(log[0].startswith(f"agent: {self.state}:2:"), log)
        self.assertTrue(log[1].startswith(f"agent: {self.state}:3:"), log)
        self.assertEqual(self.state.read_text(), text)
        self.assertEqual(self.feed_lines(), [])

    def test_from_a_comment_that_would_end_the_process_says_so(self):
        comment = '{"MetaData-OpenConfig": {"scheduler-policy": 7}}'
        native = {"interfaces": {"Ethernet1": {"tx-queues": {"uc-0": {}}}},
                  "comments": {"if-Et1-uc-txq-0": comment}}
        self.state.write_text(json.dumps({"qosoc-save": 1, "native": native, "model": {}}))
        self.assertTrue(self.refused_start().startswith("agent: /comments/if-Et1-uc-txq-0: "))

    def test_at_a_socket_that_cannot_be_says_so(self):
        self.socket = self.folder / ("s" * 120)
        self.assertEqual(self.refused_start(), f"agent: {self.socket}: too long\n")
        self.socket = self.folder / "none" / "socket"
        self.assertIn(f"agent: {self.socket}: No such file or directory\n", self.refused_start())

    def test_with_other_arguments_is_bad_usage(self):
        done = subprocess.run([AGENT, "socket"], capture_output=True, check=False)
        self.assertEqual((done.returncode, done.stderr),
                         (1, b"agent: usage: agent SOCKET STATE FEED\n"))

    def test_without_a_root_goes_on_with_the_others(self):
        native = {"forwarding-groups": {"voice": 17},
                  "class-maps": {"qos": {"__yang_[c]_[]": {"match": [1]}}}}
        self.state.write_text(json.dumps({"qosoc-save": 1, "native": native, "model": {}}))
        agent = self.start_and_wait()
        self.assertIn("/qos/classifiers/classifier[name=c]/name", self.feed_lines()[0]["update"])
        self.assertIn("agent: root forwarding-group: range: ", self.log.read_text())
        self.assertEqual(self.end(agent), 0)


class AWriter(Case):
    def test_waits_for_the_one_before_it(self):
        self.start_and_wait()
        first, second = self.writer(), self.writer()
        second.sendall(class_map("__yang_[second]_[]"))
        first.sendall(class_map("__yang_[first]_[]"))
        self.wait_for_lines(2)
        time.sleep(0.05)
        self.assertEqual(len(self.feed_lines()), 2)
        first.close()
        lines = self.wait_for_lines(3)
        self.assertIn("/qos/classifiers/classifier[name=first]/name", lines[1]["update"])
        self.assertIn("/qos/classifiers/classifier[name=second]/name", lines[2]["update"])

    def test_that_ends_within_a_line_loses_that_line(self):
        self.start_and_wait()
        self.write(class_map("__yang_[c]_[]").rstrip())
        self.wait_for_log("agent: a line is dropped: its end didn't come\n")
        self.write(class_map("__yang_[d]_[]"))
        line = self.wait_for_lines(2)[1]
        self.assertEqual(line["line"], 1)
        self.assertIn("/qos/classifiers/classifier[name=d]/name", line["update"])

    def test_of_an_endless_line_is_cut_off(self):
        self.start_and_wait()
        with self.writer() as writer, self.assertRaises((BrokenPipeError, ConnectionResetError)):
            for _ in range(20):
                writer.sendall(b" " * (1 << 20))
        self.wait_for_log("agent: a line is dropped: its end didn't come\n")
        self.write(class_map("__yang_[c]_[]"))
        self.wait_for_lines(2)

    def test_gets_lines_of_many_mebibytes_through(self):
        self.start_and_wait()
        self.write(b" " * (8 << 20) + class_map("__yang_[c]_[]"))
        self.wait_for_lines(2)
        self.assertEqual(self.log.read_text(), "")

    def test_may_begin_with_all_that_is_there(self):
        self.begin_with_router()
        self.start_and_wait()
        native = json.loads((ROUTER / "01-native.json").read_text())
        self.write(json.dumps([{"op": "add", "path": "/" + section, "value": native.get(section, {})}
                               for section in SECTIONS]).encode() + b"\n")
        self.assertEqual(self.wait_for_lines(2)[1], {"line": 1, "delete": [], "update": {}})


class TheLog(Case):
    def test_has_the_traces_of_a_level(self):
        self.start_and_wait(TRACE="0")
        self.write(class_map("__yang_[c]_[t]", match=9))
        self.wait_for_lines(2)
        self.assertRegex(self.log.read_text(), "^agent: .*ClassMap match type 9.*\n$")

    def test_says_that_there_is_no_such_level(self):
        self.assertEqual(self.refused_start(TRACE="x"),
                         "agent: trace level 72 is not one of 0 to 9\n")

    def test_has_what_the_document_cannot_hold(self):
        self.start_and_wait()
        self.write(class_map("__yang_[a\1]_[]"))
        self.wait_for_lines(2)
        self.assertRegex(self.log.read_text(), r"^agent: /openconfig-qos:qos/.*: left out \(from .*\)\n$")


# Stands for socat -u FILE:NAME UNIX-CONNECT:NAME, once the agent listens.
SOCAT = """#!/usr/bin/env python3
import socket, sys, time
flag, source, target = sys.argv[1:]
assert flag == "-u" and source.startswith("FILE:") and target.startswith("UNIX-CONNECT:")
writer = socket.socket(socket.AF_UNIX)
end = time.monotonic() + 60
while writer.connect_ex(target[13:]) != 0:
    assert time.monotonic() < end
    time.sleep(0.01)
writer.sendall(open(source[5:], "rb").read())
"""


class ThePage(Case):
    def test_has_commands_that_give_the_day_of_the_router(self):
        page = (EXAMPLES / "agent" / "README.md").read_text()
        lines = re.search("^    cmake -S .*\n((?:    .*\n)+)", page, re.MULTILINE).group(1)
        (self.folder / "build" / "agent").mkdir(parents=True)
        for link, target in (("examples", EXAMPLES), ("build/agent/agent", AGENT),
                             ("qosoc", QOSOC)):
            (self.folder / link).symlink_to(pathlib.Path(target).resolve())
        socat = self.folder / "socat"
        socat.write_text(SOCAT)
        socat.chmod(0o700)
        path = f"{self.folder}:{os.environ['PATH']}"
        wait = "while (($(wc -l <feed.jsonl) < %d)); do sleep 0.01; done\nkill " % len(DAY)
        done = subprocess.run(["bash", "-e", "-m", "-c", lines.replace("    kill ", wait) + "wait"],
                              cwd=self.folder, env={**os.environ, "PATH": path},
                              capture_output=True, timeout=PATIENCE, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        saved = self.folder / "first.json"
        self.qosoc(ROUTER / "01-native.json", "--save", saved)
        self.assert_feed(self.feed_lines(), self.expected_feed(
            "--restore", saved, "--changes", ROUTER / "02-change.jsonl"))


class TheProgram(unittest.TestCase):
    def test_is_as_short_as_its_page_says(self):
        lines = (EXAMPLES / "agent" / "agent.cpp").read_text().splitlines()
        self.assertLessEqual(len(lines), 120)


if __name__ == "__main__":
    QOSOC, AGENT = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
