// Live counters of one policy: per rule and per named counter, the instance id, packets and
// bytes, and for named counters the counts per interface.
#pragma once

#include "ConfiguredNames.h"
#include "Node.h"
#include "PolicyMap/PolicyMapStatus.h"

namespace StateLoader {

void readRuleCounters(Node const& node, PolicyMap::PacketDataMap& into,
                      ConfiguredNames const& names);
void readNamedCounters(Node const& node, PolicyMap::PacketDataMap& into,
                       ConfiguredNames const& names);

}  // namespace StateLoader
