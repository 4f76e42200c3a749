// One rule's actions: drop, police, count, set DSCP, set traffic class, log, goto, redirect to
// next-hop groups, tap-aggregation redirect and header stripping, each once at most.
#pragma once

#include "Kel/Ptr.h"
#include "Kel/String.h"
#include "Node.h"
#include "PolicyMap/Actions.h"

namespace StateLoader {

Kel::Ptr<PolicyMap::ClassAction> readActions(Node const& node, Kel::String const& ruleName);

}  // namespace StateLoader
