#!/usr/bin/env python3
"""tpcli metrics read by an independent parser of the OpenMetrics text format (the Prometheus
client's), one-shot and served over HTTP on the loopback, every wait bounded.

usage: metrics_test.py TPCLI EXAMPLES_DIR
"""
import json
import os
import pathlib
import selectors
import signal
import subprocess
import sys
import tempfile
import unittest
import urllib.error
import urllib.request

from prometheus_client.openmetrics.parser import text_string_to_metric_families

TPCLI = EXAMPLES = None
PATIENCE = 10  # seconds for anything the test waits for

LAB_SAMPLES = [
    ("traffic_policy_rule_packets_total", {"policy": "edge-in", "direction": "input", "rule": "web"},
     1843992),
    ("traffic_policy_rule_bytes_total", {"policy": "edge-in", "direction": "input", "rule": "web"},
     1902248811),
    ("traffic_policy_rule_packets_total", {"policy": "cpu-mgmt", "direction": "cpu", "rule": "ssh"},
     1290),
    ("traffic_policy_named_counter_packets_total",
     {"policy": "edge-out", "direction": "output", "counter": "fragment-drops"}, 77),
    ("traffic_policy_named_counter_bytes_total",
     {"policy": "cpu-protect", "direction": "cpu", "counter": "bgp-hits"}, 8249724),
    ("traffic_policy_named_counter_interface_packets_total",
     {"policy": "edge-in", "direction": "input", "counter": "bogon-drops", "interface": "Ethernet2"},
     1250),
]

# Names that the format must escape, as the state loader lets them through.
AWKWARD_POLICY, AWKWARD_RULE, AWKWARD_COUNTER = 'say"hi"\\now', "back\\slash", 'q"uote'
AWKWARD_STATE = {
    "trafficPolicies": {AWKWARD_POLICY: {
        "namedCounters": [AWKWARD_COUNTER],
        "rules": {
            AWKWARD_RULE: {"sequence": 10, "match": {"ipv4": {"ttls": ["1"]}},
                           "actions": {"count": {}}},
            "r2": {"sequence": 20, "match": {"ipv4": {"ttls": ["2"]}},
                   "actions": {"count": {"counter": AWKWARD_COUNTER}}},
        }}},
    "interfaces": {"input": {"Et1": AWKWARD_POLICY}},
    "status": {"interfaceInput": {"perInterfaceCounters": True, "policies": {AWKWARD_POLICY: {
        "rules": {AWKWARD_RULE: ["ipv4"], "r2": ["ipv4"]},
        "ruleCounters": {AWKWARD_RULE: {"instanceId": 1, "packets": 10}},
        "namedCounters": {AWKWARD_COUNTER: {"instanceId": 2, "packets": 20,
                                            "interfaces": {"Et1": {"packets": 20}}}}}}}},
}


def tpcli(*arguments):
    return subprocess.run([TPCLI, "--no-pager", *arguments], capture_output=True, text=True,
                          timeout=PATIENCE)


def parsed(text):
    """{(sample name, labels): value}; the parser refuses anything that breaks the format."""
    families = list(text_string_to_metric_families(text))
    for family in families:
        assert family.type == "counter", family.name
        assert "never resets" in family.documentation, family.name
    return {(sample.name, tuple(sorted(sample.labels.items()))): sample.value
            for family in families for sample in family.samples}


def key(name, labels):
    return name, tuple(sorted(labels.items()))


class Folder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def state(self, name, text):
        path = self.folder / name
        path.write_text(text)
        return str(path)

    def lab_copy(self):
        return self.state("lab.json", (pathlib.Path(EXAMPLES) / "lab.json").read_text())


class OneShot(Folder):
    def test_lab_counters(self):
        run = tpcli("-s", str(pathlib.Path(EXAMPLES) / "lab.json"), "metrics")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        self.assertTrue(run.stdout.endswith("\n# EOF\n"))
        samples = parsed(run.stdout)
        for name, labels, value in LAB_SAMPLES:
            with self.subTest(name=name, labels=labels):
                self.assertEqual(samples.get(key(name, labels)), value)
        self.assertEqual(len(samples), 26)
        # A policy that is no longer configured is not counted, as in the counters views.
        self.assertFalse([k for k in samples if ("policy", "legacy-acl") in k[1]])

    def test_awkward_names_come_back_unchanged(self):
        run = tpcli("-s", self.state("awkward.json", json.dumps(AWKWARD_STATE)), "metrics")
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn(r'policy="say\"hi\"\\now"', run.stdout)
        samples = parsed(run.stdout)
        for name, labels, value in [
            ("traffic_policy_rule_packets_total", {"rule": AWKWARD_RULE}, 10),
            ("traffic_policy_named_counter_packets_total", {"counter": AWKWARD_COUNTER}, 20),
            ("traffic_policy_named_counter_interface_packets_total",
             {"counter": AWKWARD_COUNTER, "interface": "Et1"}, 20),
        ]:
            with self.subTest(name=name):
                labels = {"policy": AWKWARD_POLICY, "direction": "input", **labels}
                self.assertEqual(samples.get(key(name, labels)), value)
        # Without byte counters there are no byte samples.
        self.assertFalse([k for k in samples if "_bytes_" in k[0]])

    def test_a_clear_leaves_the_counters_as_they_are(self):
        state = self.lab_copy()
        before = tpcli("-s", state, "metrics").stdout
        self.assertEqual(tpcli("-s", state, "clear", "traffic-policy", "counters").returncode, 0)
        self.assertEqual(tpcli("-s", state, "metrics").stdout, before)

    def test_refusals(self):
        for arguments, code, message in [
            (["metrics", "--listen", "localhost:9100"], 2, "--listen: expected"),
            (["metrics", "--listen", "127.0.0.1"], 2, "--listen: expected"),
            (["metrics", "--listen", "127.0.0.1:65536"], 2, "--listen: expected"),
            (["metrics", "--listen", "::1:9100"], 2, "--listen: expected"),
            (["metrics", "--listen", "192.0.2.1:9469"], 1, "cannot listen on 192.0.2.1"),
            (["metrics", "now"], 2, "metrics takes no more words"),
            (["--listen", "127.0.0.1:0", "show", "traffic-policy", "cpu"], 2, "--listen goes only"),
            (["-s", "/nonexistent/state.json", "metrics"], 3, "/nonexistent/state.json"),
        ]:
            with self.subTest(arguments=arguments):
                run = tpcli(*arguments)
                self.assertEqual(run.returncode, code)
                self.assertIn(message, run.stderr)
                self.assertEqual(len(run.stderr.splitlines()), 1)


class Served(Folder):
    def setUp(self):
        super().setUp()
        self.path = self.lab_copy()
        self.server = subprocess.Popen(
            [TPCLI, "-s", self.path, "metrics", "--listen", "127.0.0.1:0"],
            stderr=subprocess.PIPE, stdout=subprocess.DEVNULL, text=True)
        self.addCleanup(self.stop)
        line = self.stderr_line()
        self.assertRegex(line, r"^tpcli: serving metrics at http://127\.0\.0\.1:\d+/metrics$")
        self.url = line.split(" at ")[1]

    def stop(self):
        if self.server.poll() is None:
            self.server.kill()
        self.server.wait(PATIENCE)
        self.server.stderr.close()

    def stderr_line(self):
        selector = selectors.DefaultSelector()
        selector.register(self.server.stderr, selectors.EVENT_READ)
        self.assertTrue(selector.select(PATIENCE), "tpcli said nothing in time")
        return self.server.stderr.readline().rstrip("\n")

    def fetch(self, url=None, method="GET"):
        request = urllib.request.Request(url or self.url, method=method)
        try:
            with urllib.request.urlopen(request, timeout=PATIENCE) as response:
                return response.status, response.headers["Content-Type"], response.read().decode()
        except urllib.error.HTTPError as error:
            return error.code, error.headers["Content-Type"], error.read().decode()

    def replace_state(self, text):
        # As a collector does: a new file renamed over the old one.
        staged = self.folder / "staged.json"
        staged.write_text(text)
        os.replace(staged, self.path)

    def test_serves_what_the_command_writes(self):
        status, content_type, body = self.fetch()
        self.assertEqual(status, 200)
        self.assertTrue(content_type.startswith("application/openmetrics-text; version=1.0.0"))
        self.assertEqual(body, tpcli("-s", self.path, "metrics").stdout)

    def test_wrong_paths_and_methods(self):
        base = self.url.rsplit("/", 1)[0]
        for url, method, status in [(base + "/", "GET", 404), (base + "/metrics/x", "GET", 404),
                                    (self.url, "POST", 405), (self.url, "DELETE", 405),
                                    (self.url, "HEAD", 200)]:
            with self.subTest(url=url, method=method):
                self.assertEqual(self.fetch(url, method)[0], status)

    def test_follows_the_state_file_and_keeps_the_last_good_one(self):
        web = key("traffic_policy_rule_packets_total",
                  {"policy": "edge-in", "direction": "input", "rule": "web"})
        self.replace_state(pathlib.Path(self.path).read_text().replace("1843992", "1843999"))
        self.assertEqual(parsed(self.fetch()[2])[web], 1843999)
        self.replace_state("{")
        self.assertEqual(parsed(self.fetch()[2])[web], 1843999)
        self.assertEqual(parsed(self.fetch()[2])[web], 1843999)
        self.assertIn("kept the last good state", self.stderr_line())
        self.server.send_signal(signal.SIGTERM)
        self.assertEqual(self.server.wait(PATIENCE), 0)
        self.assertEqual(self.server.stderr.read(), "", "a refused state is reported once")

    def test_stops_on_sigterm(self):
        self.server.send_signal(signal.SIGTERM)
        self.assertEqual(self.server.wait(PATIENCE), 0)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    TPCLI, EXAMPLES = sys.argv[1], sys.argv[2]
    unittest.main(argv=sys.argv[:1], verbosity=1)
