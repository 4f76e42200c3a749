// A valid device state built from fuzz bytes: every section of the state format, with names that
// the state's parts refer to (and sometimes names of nothing), small counts and full-range
// numbers. The bytes steer each choice; when they run out every choice is the first, so short
// inputs give small states.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

namespace fuzz {

// The state's JSON text and the names a command may ask for.
struct BuiltState {
   std::string text;
   std::vector<std::string> policies;
   std::vector<std::string> ipv4Sets;
   std::vector<std::string> ipv6Sets;
   std::vector<std::string> portSets;
   std::vector<std::string> vlanSets;
};

BuiltState buildState(FuzzedDataProvider& bytes);

// Values for the listings' "contains" filters, in the command line's spelling.
std::string prefixText(FuzzedDataProvider& bytes, bool ipv4);
std::string rangeText(FuzzedDataProvider& bytes, unsigned lowest, unsigned highest);

}  // namespace fuzz
