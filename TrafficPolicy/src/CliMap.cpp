// The label-to-key table.
#include "TrafficPolicyCli/CliMap.h"

#include "Kel/Assert.h"

namespace TrafficPolicyCli {

constinit CliMap const cliMap({{
    {"Source prefix", "srcPrefixes"},
    {"Source prefix (longest prefix match)", "srcLpmPrefixes"},
    {"Source prefix field-set", "srcPrefixSets"},
    {"Destination prefix", "destPrefixes"},
    {"Destination prefix (longest prefix match)", "destLpmPrefixes"},
    {"Destination prefix field-set", "destPrefixSets"},
    {"Protocol", "protocols"},
    {"Destination port", "destPorts"},
    {"Destination port field-set", "destL4PortFieldSets"},
    {"Source port", "srcPorts"},
    {"Source port field-set", "srcL4PortFieldSets"},
    {"ICMP type", "icmpTypes"},
    {"ICMP code", "icmpCodes"},
    {"IP length", "ipLengths"},
    {"Fragment: offset", "fragmentOffsets"},
    {"DSCP", "dscps"},
    {"TTL", "ttls"},
    {"TCP flags", "tcpFlags"},
    {"Set DSCP", "setDscp"},
    {"Set Traffic Class", "setTc"},
    {"802.1Q VLAN", "dot1qVlans"},
}});

std::string_view cliJsonName(std::string_view label) {
   std::string_view const* jsonName = cliMap[label];
   KEL_ASSERT(!!jsonName && "Invalid mapping in cliMap");
   return *jsonName;
}

}  // namespace TrafficPolicyCli
