#!/usr/bin/env bash
# The library's surface is its factories: every other symbol stays hidden, so that the command
# layer can only reach the library through them. Symbols the toolchain adds (leading underscore)
# are not ours and are left out of the comparison.
set -euo pipefail
library="$1"

expected="showTrafficPolicyBaseFactory
showTrafficPolicyCpuFactory
showTrafficPolicyInterfaceFactory
showTrafficPolicyL4PortFieldSetFactory
showTrafficPolicyPrefixFieldSetFactory
showTrafficPolicyVlanFieldSetFactory
trafficPolicyLedgerCounterSnapshotHelperFactory
trafficPolicyPylonCounterSnapshotHelperFactory"

actual=$(nm -D --defined-only --extern-only "$library" | awk '{print $3}' | grep -v '^_' | sort)
if [ "$actual" != "$expected" ]; then
   echo "exported symbols differ from the factories:"
   diff <(echo "$expected") <(echo "$actual") || true
   exit 1
fi
