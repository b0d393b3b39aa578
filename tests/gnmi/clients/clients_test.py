"""`qosoc serve`, read by the clients that people have: the collector of examples/collector with
Debian's python3-grpcio, @grpc/grpc-js, and buf's curl.

    clients_test.py QOSOC PROTOS NODE_MODULES python|javascript|buf [ARGUMENTS OF UNITTEST]

A client that is not installed is a test that is skipped (exit code 77), and says so.
"""

import json
import os
import pathlib
import queue
import re
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent.parent
ROUTER = ROOT / "examples" / "edge-router"
NATIVE = ROUTER / "01-native.json"
# Some lines are refused, which is a part of the day.
DAY = [line for line in (ROUTER / "02-change.jsonl").read_bytes().splitlines(keepends=True)
       if line.strip()]
QOSOC = PROTOS = MODULES = ""
PATIENCE = 30  # seconds


class Server:
    """`qosoc serve` on a free port of loopback, with a writer."""

    def __init__(self, folder, port=0):
        self.socket_path = folder / "writer"
        self.process = subprocess.Popen(
            [QOSOC, "serve", NATIVE, "--listen", f"127.0.0.1:{port}", "--plaintext", "--quiet",
             "--changes", f"unix:{self.socket_path}"], stdout=subprocess.PIPE, text=True)
        first = self.process.stdout.readline()
        assert first.startswith("serving "), first
        self.address = first.split()[1]
        self.writer = socket.socket(socket.AF_UNIX)
        self.writer.connect(str(self.socket_path))
        self.answers = self.writer.makefile("rb")

    def write(self, line):
        self.writer.sendall(line)
        return self.answers.readline().decode()

    def stop(self):
        self.answers.close()
        self.writer.close()
        self.process.send_signal(signal.SIGTERM)
        exit_code = self.process.wait(PATIENCE)
        self.process.stdout.close()
        return exit_code


class Lines:
    """What a client prints, as it comes."""

    def __init__(self, *command):
        self.process = subprocess.Popen(command, stdout=subprocess.PIPE, text=True)
        self.lines = queue.Queue()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))

    def next(self):
        return self.lines.get(timeout=PATIENCE)

    def stop(self):
        self.process.kill()
        self.process.wait()
        self.reader.join()
        self.process.stdout.close()


def leaves_after(count):
    """All leaves by their paths, after that many lines of the day."""
    day = b"".join(DAY[:count])
    run = subprocess.run([QOSOC, "translate", NATIVE, "--changes", "-", "--feed"], input=day,
                         capture_output=True, check=False)
    leaves = {}
    for line in map(json.loads, run.stdout.splitlines()):
        remove(leaves, line.get("delete", []))
        leaves.update(line["update"])
    return leaves


def remove(leaves, nodes):
    for node in nodes:
        for leaf in [leaf for leaf in leaves if leaf == node or leaf.startswith((node + "/", node + "["))]:
            del leaves[leaf]


def document():
    run = subprocess.run([QOSOC, "translate", NATIVE], capture_output=True, check=True)
    return json.loads(run.stdout)


class Case(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.server = Server(self.folder)
        self.addCleanup(self.stop_server)

    def stop_server(self):
        if self.server:
            self.assertEqual(self.server.stop(), 0)
        self.server = None

    def lines(self, *command):
        lines = Lines(*map(str, command))
        self.addCleanup(lines.stop)
        return lines

    def write_day(self):
        for number, line in enumerate(DAY, 1):
            self.assertRegex(self.server.write(line), rf"^(applied|refused|raised) {number}\b")


class Collector(Case):
    """examples/collector, which prints what changes in its copy."""

    def start(self, *paths):
        script = ROOT / "examples" / "collector" / "collector.py"
        return self.lines("/usr/bin/python3", "-B", script, self.server.address, *paths)

    def read(self, lines, copy, until):
        """Takes lines into the copy until it is as wanted, or the word of sync comes."""
        while True:
            line = lines.next()
            if line.startswith("- "):
                remove(copy, [line[2:]])
            elif line.startswith("+ "):
                leaf, value = line[2:].split(" = ", 1)
                copy[leaf] = json.loads(value)
            if until(copy, line):
                return

    def test_has_the_model_when_it_is_in_step_and_follows_the_day(self):
        lines, copy = self.start(), {}
        self.read(lines, copy, lambda _, line: line.startswith("in step with"))
        self.assertEqual(copy, leaves_after(0))
        self.write_day()
        wanted = leaves_after(len(DAY))
        self.read(lines, copy, lambda have, _: have == wanted)

    def test_takes_a_path_alone(self):
        path = "/qos/queues"
        lines, copy = self.start(path), {}
        self.read(lines, copy, lambda _, line: line.startswith("in step with"))
        wanted = {leaf: value for leaf, value in leaves_after(0).items() if leaf.startswith(path)}
        self.assertEqual(copy, wanted)

    def test_forgets_what_went_while_the_device_was_away(self):
        lines, copy = self.start(), {}
        self.read(lines, copy, lambda _, line: line.startswith("in step with"))
        self.write_day()
        wanted = leaves_after(len(DAY))
        self.read(lines, copy, lambda have, _: have == wanted)
        port = self.server.address.rsplit(":", 1)[1]
        self.stop_server()
        # The new server has the model of the morning.
        self.server = Server(self.folder, port)
        self.read(lines, copy, lambda _, line: line.startswith("in step with"))
        self.assertEqual(copy, leaves_after(0))


class JavaScript(Case):
    def run_client(self, *words):
        environment = {**os.environ, "NODE_PATH": MODULES}
        return subprocess.Popen(["node", str(HERE / "client.js"), PROTOS, self.server.address,
                                 *words], stdout=subprocess.PIPE, text=True, env=environment)

    def output(self, *words):
        client = self.run_client(*words)
        out, _ = client.communicate(timeout=PATIENCE)
        self.assertEqual(client.returncode, 0)
        return [json.loads(line) for line in out.splitlines()]

    def test_reads_what_the_server_can(self):
        [answer] = self.output("capabilities")
        self.assertEqual(answer["gNMI_version"], "0.10.0")
        self.assertIn("JSON_IETF", answer["supported_encodings"])
        self.assertIn("openconfig-qos", [model["name"] for model in answer["supported_models"]])

    def test_gets_the_document(self):
        [answer] = self.output("get")
        self.assertEqual(answer, document())

    def test_reads_all_leaves_once(self):
        leaves = {}
        for answer in self.output("once"):
            leaves.update(answer.get("update", {}))
        self.assertEqual(answer, {"sync": True})
        self.assertEqual(leaves, leaves_after(0))

    def test_follows_a_change(self):
        client = self.run_client("stream", "1000")
        self.addCleanup(client.kill)
        leaves, times = {}, []
        wanted = leaves_after(len(DAY))
        for line in client.stdout:
            answer = json.loads(line)
            if "sync" in answer:
                self.assertEqual(leaves, leaves_after(0))
                self.write_day()
                continue
            times.append(int(answer["at"]))
            remove(leaves, answer["delete"])
            leaves.update(answer["update"])
            if leaves == wanted:
                break
        self.assertEqual(leaves, wanted)
        client.kill()
        client.communicate()


class Buf(Case):
    def curl(self, method, request):
        return subprocess.run(
            [f"{MODULES}/.bin/buf", "curl", "--protocol", "grpc", "--http2-prior-knowledge",
             "--schema", PROTOS, "--data", json.dumps(request),
             f"http://{self.server.address}/gnmi.gNMI/{method}"],
            capture_output=True, text=True, check=False, timeout=PATIENCE)

    def test_reads_what_the_server_can(self):
        run = self.curl("Capabilities", {})
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(json.loads(run.stdout)["gNMIVersion"], "0.10.0")

    def test_gets_a_leaf_as_json(self):
        elems = [{"name": "qos"}, {"name": "queues"}]
        run = self.curl("Get", {"path": [{"elem": elems}], "encoding": "PROTO"})
        self.assertEqual(run.returncode, 0, run.stderr)
        [notification] = json.loads(run.stdout)["notification"]
        wanted = {leaf for leaf in leaves_after(0) if leaf.startswith("/qos/queues/")}
        self.assertEqual(len(notification["update"]), len(wanted))

    def test_reads_the_refusal_of_a_set(self):
        run = self.curl("Set", {})
        self.assertNotEqual(run.returncode, 0)
        self.assertIn('"code": "unimplemented"', re.sub(r"\s+", " ", run.stderr))


def is_installed(client):
    if client == "python":
        wish = "import grpc, google.protobuf"
        return subprocess.run(["/usr/bin/python3", "-c", wish], capture_output=True).returncode == 0
    wanted = {"javascript": "@grpc/grpc-js/package.json", "buf": ".bin/buf"}[client]
    return (pathlib.Path(MODULES) / wanted).exists()


if __name__ == "__main__":
    QOSOC, PROTOS, MODULES, name = sys.argv[1:5]
    cases = {"python": Collector, "javascript": JavaScript, "buf": Buf}
    if not is_installed(name):
        print(f"skipped: the client for {name} is not installed")
        sys.exit(77)
    suite = unittest.defaultTestLoader.loadTestsFromTestCase(cases[name])
    result = unittest.TextTestRunner(verbosity=2).run(suite)
    sys.exit(not result.wasSuccessful())
