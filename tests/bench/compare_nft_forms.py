#!/usr/bin/env python3
"""The two forms that bench/compare-nft writes hold the same rules: the nftables ruleset and the
state file name the same prefixes in the same order, and tpcli shows the state's rules with them.
251 rules reach the second value of b in 10.a.b.0/24.

Usage: compare_nft_forms.py COMPARE-NFT TPCLI
"""

import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

RULES = 251
# Rule index, source, destination: the first rules and the first one past a full cycle of a.
EXPECTED = [
    (0, "10.0.0.0/24", "192.168.0.0/24"),
    (1, "10.1.0.0/24", "192.168.1.0/24"),
    (249, "10.249.0.0/24", "192.168.249.0/24"),
    (250, "10.0.1.0/24", "192.168.0.0/24"),
]
NFT_RULE = re.compile(r"ip saddr (\S+) ip daddr (\S+) tcp dport 1000-2000 counter drop")


def nft_rules(text):
    return [match.groups() for match in NFT_RULE.finditer(text)]


def state_rules(state):
    rules = sorted(state["trafficPolicies"]["compare"]["rules"].values(),
                   key=lambda rule: rule["sequence"])
    assert all(rule["actions"] == {"count": {}, "drop": True} for rule in rules)
    assert all(rule["match"]["ipv4"]["protocols"] ==
               {"6": {"ports": [{"destinations": ["1000-2000"]}]}} for rule in rules)
    return [(*rule["match"]["ipv4"]["sources"], *rule["match"]["ipv4"]["destinations"])
            for rule in rules]


def shown_rules(text):
    sources = re.findall(r"Source prefix: (\S+)", text)
    destinations = re.findall(r"Destination prefix: (\S+)", text)
    return list(zip(sources, destinations))


def main(compare_nft, tpcli):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([compare_nft, "--write-only", "--output", folder, str(RULES)], check=True)
        nft = nft_rules(Path(folder, "rules.nft").read_text())
        state = state_rules(json.loads(Path(folder, "state.json").read_text()))
        shown = subprocess.run([tpcli, "-s", Path(folder, "state.json"), "show", "traffic-policy",
                                "interface", "detail"], check=True, capture_output=True,
                               text=True).stdout
    failures = []
    if len(nft) != RULES or nft != state:
        failures.append(f"the ruleset's {len(nft)} rules differ from the state's {len(state)}")
    if shown_rules(shown) != state:
        failures.append("tpcli shows other prefixes than the state holds")
    failures += [f"rule {index}: expected {source} {destination}, ruleset has {nft[index]}"
                 for index, source, destination in EXPECTED
                 if index < len(nft) and nft[index] != (source, destination)]
    print("\n".join(failures) or f"{RULES} rules agree")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
