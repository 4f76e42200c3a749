#include "support/StateBuilder.h"

#include <arpa/inet.h>

#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

namespace fuzz {

namespace {

using nlohmann::json;

// Pieces of names: letters, digits, the punctuation that names use, characters that JSON and the
// text columns must escape or measure with care, and letters of several byte lengths.
constexpr std::array<char const*, 24> kNamePieces = {
    "a", "b", "e",  "z",  "A", "Q", "0",      "1",      "7",      "-",          "_", ".",
    "/", ":", "\"", "\\", "|", "%", "\u00e9", "\u00df", "\u4e2d", "\U0001F600", "x", "t"};

// What an error text may hold besides the pieces of names.
constexpr std::array<char const*, 3> kTextPieces = {" ", "(", ")"};

constexpr std::array<char const*, 5> kRateUnits = {"bps", "kbps", "mbps", "gbps", "pps"};
constexpr std::array<char const*, 3> kGranularities = {"notEnabled", "perPolicy", "perInterface"};
constexpr std::array<char const*, 3> kSources = {"static", "bgp", "controller"};
constexpr std::array<char const*, 3> kInstallStates = {"pending", "programmed", "failed"};
constexpr std::array<char const*, 6> kTcpFlags = {"fin", "syn", "rst", "psh", "ack", "urg"};
constexpr std::array<char const*, 2> kConnectionStates = {"established", "initialSyn"};

// The four ways a rule or an inner header matches its sources (or destinations).
constexpr std::array<char const*, 4> kSourceKinds = {"sources", "sourcePrefixSets", "sourceLpms",
                                                     "sourceLpmPrefixSets"};
constexpr std::array<char const*, 4> kDestinationKinds = {
    "destinations", "destinationPrefixSets", "destinationLpms", "destinationLpmPrefixSets"};

class StateBuilder {
 public:
   explicit StateBuilder(FuzzedDataProvider& bytes) : bytes_(bytes) {}

   BuiltState build() {
      state_.ipv4Sets = names("v4set", 3);
      state_.ipv6Sets = names("v6set", 2);
      state_.portSets = names("ports", 2);
      state_.vlanSets = names("vlans", 2);
      state_.policies = names("policy", 3);
      interfaces_ = names("Ethernet", 4);
      vrfs_ = names("vrf", 3);
      counters_ = names("counter", 3);
      // A braced list is evaluated in order, so the bytes steer the sections in this order.
      json const document = {{"hardware", hardware()},        {"fieldSets", fieldSets()},
                             {"trafficPolicies", policies()}, {"interfaces", attachments()},
                             {"vrfs", vrfSection()},          {"status", status()}};
      state_.text = document.dump();
      return std::move(state_);
   }

 private:
   template <std::size_t size>
   char const* pick(std::array<char const*, size> const& choices) {
      return choices[bytes_.ConsumeIntegralInRange<std::size_t>(0, size - 1)];
   }

   std::size_t count(std::size_t most) {
      return bytes_.ConsumeIntegralInRange<std::size_t>(0, most);
   }

   std::string text(bool withBlanks) {
      std::string result;
      for (auto length = 1 + count(10); length > 0; --length) {
         result += withBlanks && bytes_.ConsumeBool() ? pick(kTextPieces) : pick(kNamePieces);
      }
      return result;
   }

   // Mostly a stem and a digit, which the sections share; sometimes any name.
   std::string name(char const* stem) {
      return bytes_.ConsumeBool() ? text(false) : stem + std::to_string(count(4));
   }

   std::vector<std::string> names(char const* stem, std::size_t most) {
      std::set<std::string> unique;
      for (auto left = count(most); left > 0; --left) {
         unique.insert(name(stem));
      }
      return {unique.begin(), unique.end()};
   }

   // One of `known`, or now and then a name that refers to nothing.
   std::string nameFrom(std::vector<std::string> const& known, char const* stem) {
      if (known.empty() || bytes_.ConsumeProbability<float>() < 0.1f) {
         return name(stem);
      }
      return known[bytes_.ConsumeIntegralInRange<std::size_t>(0, known.size() - 1)];
   }

   // Sets `key` to what `make` gives, if the bytes say so.
   template <typename Make>
   void maybe(json& into, std::string const& key, Make make) {
      if (bytes_.ConsumeBool()) {
         into[key] = make();
      }
   }

   template <typename Make>
   json uniqueList(std::size_t fewest, std::size_t most, Make make) {
      std::set<decltype(make())> entries;
      for (auto left = fewest + count(most - fewest); left > 0; --left) {
         entries.insert(make());
      }
      return json(entries);
   }

   json nameList(std::vector<std::string> const& known, char const* stem, std::size_t fewest = 0) {
      return uniqueList(fewest, 3, [&] { return nameFrom(known, stem); });
   }

   json ranges(unsigned lowest, unsigned highest, std::size_t fewest = 0) {
      return uniqueList(fewest, 3, [&] { return rangeText(bytes_, lowest, highest); });
   }

   json prefixes(bool ipv4) {
      return uniqueList(0, 3, [&] { return prefixText(bytes_, ipv4); });
   }

   std::vector<std::string> const& setsOf(bool ipv4) const {
      return ipv4 ? state_.ipv4Sets : state_.ipv6Sets;
   }

   json hardware() {
      return {{"sharedMemoryCounters", bytes_.ConsumeBool()},
              {"ingressCounterGranularity", pick(kGranularities)},
              {"egressCounterGranularity", pick(kGranularities)}};
   }

   json prefixSets(bool ipv4) {
      json sets = json::object();
      for (auto const& set : setsOf(ipv4)) {
         sets[set] = {{"source", pick(kSources)},
                      {"prefixes", prefixes(ipv4)},
                      {"exceptPrefixes", prefixes(ipv4)}};
      }
      return sets;
   }

   json rangeSets(std::vector<std::string> const& sets, char const* key, unsigned lowest,
                  unsigned highest) {
      json result = json::object();
      for (auto const& set : sets) {
         result[set] = {{"source", pick(kSources)}, {key, ranges(lowest, highest)}};
      }
      return result;
   }

   json fieldSets() {
      return {{"ipv4Prefix", prefixSets(true)},
              {"ipv6Prefix", prefixSets(false)},
              {"l4Port", rangeSets(state_.portSets, "ports", 0, 65535)},
              {"vlan", rangeSets(state_.vlanSets, "vlans", 1, 4095)}};
   }

   // At most one way of matching sources (or destinations); inner headers know no LPM.
   void addAddresses(json& criteria, std::array<char const*, 4> const& kinds, bool ipv4,
                     std::size_t kindCount) {
      auto const kind = count(kindCount);
      if (kind == kindCount) {
         return;
      }
      criteria[kinds[kind]] = kind % 2 == 0 ? prefixes(ipv4) : nameList(setsOf(ipv4), "v4set");
   }

   json tcpFlagGroup() {
      if (bytes_.ConsumeBool()) {
         return {{pick(kConnectionStates), true}};
      }
      json group = json::object();
      for (auto left = 1 + count(3); left > 0; --left) {
         group[pick(kTcpFlags)] = bytes_.ConsumeBool();
      }
      return group;
   }

   json protocol(std::string const& key) {
      json entry = json::object();
      maybe(entry, "ports", [&] {
         json ports = json::array();
         for (auto left = count(2); left > 0; --left) {
            ports.push_back({{"sources", ranges(0, 65535)},
                             {"destinations", ranges(0, 65535)},
                             {"sourceFieldSets", nameList(state_.portSets, "ports")},
                             {"destinationFieldSets", nameList(state_.portSets, "ports")}});
         }
         return ports;
      });
      maybe(entry, "icmpTypes", [&] {
         json types = json::object();
         for (auto left = count(2); left > 0; --left) {
            types[rangeText(bytes_, 0, 255)] = ranges(0, 255);
         }
         return types;
      });
      if (key == "6") {
         maybe(entry, "tcpFlags", [&] { return uniqueList(1, 2, [&] { return tcpFlagGroup(); }); });
      }
      return entry;
   }

   json vlanTag() {
      if (bytes_.ConsumeBool()) {
         return {{"vlans", ranges(1, 4095, 1)}};
      }
      return {{"vlanFieldSets", nameList(state_.vlanSets, "vlans", 1)}};
   }

   void addMatchFields(json& criteria) {
      maybe(criteria, "protocols", [&] {
         json protocols = json::object();
         for (auto left = count(3); left > 0; --left) {
            auto const key = bytes_.ConsumeBool() ? std::string("6") : rangeText(bytes_, 0, 255);
            protocols[key] = protocol(key);
         }
         return protocols;
      });
      maybe(criteria, "vlanTags", [&] { return json::array({vlanTag()}); });
      maybe(criteria, "lengths", [&] { return ranges(0, 65535); });
      maybe(criteria, "fragment", [&] {
         return bytes_.ConsumeBool() ? json{{"all", true}} : json{{"offsets", ranges(0, 8191, 1)}};
      });
      for (auto const* flag : {"bgpNeighbors", "bgpProtocol", "ipOptions"}) {
         maybe(criteria, flag, [] { return true; });
      }
      maybe(criteria, "dscps", [&] { return ranges(0, 63); });
      maybe(criteria, "ttls", [&] { return ranges(0, 255); });
   }

   json innerHeader() {
      bool const ipv4 = bytes_.ConsumeBool();
      json inner = {{"addressFamily", ipv4 ? "ipv4" : "ipv6"}};
      addAddresses(inner, kSourceKinds, ipv4, 2);
      addAddresses(inner, kDestinationKinds, ipv4, 2);
      return inner;
   }

   json criteria(bool ipv4) {
      json result = json::object();
      addAddresses(result, kSourceKinds, ipv4, 4);
      addAddresses(result, kDestinationKinds, ipv4, 4);
      addMatchFields(result);
      if (bytes_.ConsumeProbability<float>() < 0.2f) {
         result["encapsulation"] = {{"type", "gtpv1"}, {"inner", innerHeader()}};
      }
      return result;
   }

   json actions(std::vector<std::string> const& rules, std::vector<std::string> const& counters) {
      json result = json::object();
      maybe(result, "drop", [&] { return bytes_.ConsumeBool(); });
      maybe(result, "police", [&] {
         return json{{"rate", bytes_.ConsumeIntegral<std::uint64_t>()}, {"unit", pick(kRateUnits)}};
      });
      maybe(result, "count", [&] {
         return bytes_.ConsumeBool() ? json::object()
                                     : json{{"counter", nameFrom(counters, "counter")}};
      });
      maybe(result, "setDscp", [&] { return count(63); });
      maybe(result, "setTc", [&] { return count(7); });
      maybe(result, "log", [] { return true; });
      maybe(result, "goto", [&] {
         return bytes_.ConsumeBool() ? json::object() : json{{"match", nameFrom(rules, "rule")}};
      });
      maybe(result, "redirectNexthopGroups", [&] { return nameList({}, "nhg", 1); });
      maybe(result, "tapAggRedirect", [&] {
         return json{{"groups", nameList({}, "group", 1)},
                     {"interfaces", nameList(interfaces_, "Ethernet")}};
      });
      maybe(result, "stripHeaderBytes", [&] { return text(true); });
      return result;
   }

   json policy(std::vector<std::string> const& rules) {
      auto const declared = names("counter", 2);
      json ruleSection = json::object();
      std::set<std::uint32_t> sequences;
      for (auto const& rule : rules) {
         auto sequence = bytes_.ConsumeIntegral<std::uint32_t>();
         while (!sequences.insert(sequence).second) {
            ++sequence;
         }
         json match = json::object();
         for (bool const ipv4 : {true, false}) {
            maybe(match, ipv4 ? "ipv4" : "ipv6", [&] { return criteria(ipv4); });
         }
         ruleSection[rule] = {
             {"sequence", sequence}, {"match", match}, {"actions", actions(rules, declared)}};
      }
      return {{"namedCounters", declared}, {"rules", ruleSection}};
   }

   json policies() {
      json result = json::object();
      for (auto const& policyName : state_.policies) {
         rules_[policyName] = names("rule", 4);
         result[policyName] = policy(rules_[policyName]);
      }
      return result;
   }

   json nameMap(std::vector<std::string> const& keys, std::vector<std::string> const& values,
                char const* stem) {
      json result = json::object();
      for (auto const& key : keys) {
         maybe(result, key, [&] { return nameFrom(values, stem); });
      }
      return result;
   }

   json attachments() {
      return {{"input", nameMap(interfaces_, state_.policies, "policy")},
              {"output", nameMap(interfaces_, state_.policies, "policy")},
              {"vrf", nameMap(interfaces_, vrfs_, "vrf")}};
   }

   json vrfSection() {
      auto vrfsAndAll = vrfs_;
      vrfsAndAll.push_back("all");
      return {{"names", vrfs_}, {"cpuPolicy", nameMap(vrfsAndAll, state_.policies, "policy")}};
   }

   json counter(bool withInterfaces) {
      json result = {{"instanceId", bytes_.ConsumeIntegral<std::uint64_t>()},
                     {"packets", bytes_.ConsumeIntegral<std::uint64_t>()}};
      maybe(result, "bytes", [&] { return bytes_.ConsumeIntegral<std::uint64_t>(); });
      if (withInterfaces) {
         json perInterface = json::object();
         for (auto const& interface : interfaces_) {
            maybe(perInterface, interface, [&] {
               return json{{"packets", bytes_.ConsumeIntegral<std::uint64_t>()},
                           {"bytes", bytes_.ConsumeIntegral<std::uint64_t>()}};
            });
         }
         result["interfaces"] = perInterface;
      }
      return result;
   }

   json installation() {
      json result = json::object();
      for (auto const* option : {"ipv4", "ipv6"}) {
         maybe(result, option, [&] {
            json state = {{"state", pick(kInstallStates)}};
            maybe(state, "error", [&] { return text(true); });
            return state;
         });
      }
      return result;
   }

   json policyStatus(std::string const& policyName) {
      auto const& rules = rules_[policyName];
      json ruleOptions = json::object();
      json ruleCounters = json::object();
      for (auto const& rule : rules) {
         auto const option = count(2);
         ruleOptions[rule] =
             option == 0 ? json::array() : json::array({option == 1 ? "ipv4" : "ipv6"});
         maybe(ruleCounters, rule, [&] { return counter(false); });
      }
      json intfs = json::object();
      for (auto const& interface : interfaces_) {
         maybe(intfs, interface, [&] { return installation(); });
      }
      json namedCounters = json::object();
      for (auto const& name : counters_) {
         maybe(namedCounters, name, [&] { return counter(true); });
      }
      return {{"rules", ruleOptions},
              {"interfaces", intfs},
              {"ruleCounters", ruleCounters},
              {"namedCounters", namedCounters}};
   }

   json direction() {
      json policyStatuses = json::object();
      for (auto const& policyName : names("policy", 3)) {
         policyStatuses[policyName] = policyStatus(policyName);
      }
      return {{"byteCountersSupported", bytes_.ConsumeBool()},
              {"perInterfaceCounters", bytes_.ConsumeBool()},
              {"policies", policyStatuses}};
   }

   json status() {
      return {
          {"interfaceInput", direction()}, {"interfaceOutput", direction()}, {"cpu", direction()}};
   }

   FuzzedDataProvider& bytes_;
   BuiltState state_;
   std::vector<std::string> interfaces_;
   std::vector<std::string> vrfs_;
   std::vector<std::string> counters_;
   std::map<std::string, std::vector<std::string>> rules_;
};

}  // namespace

BuiltState buildState(FuzzedDataProvider& bytes) {
   return StateBuilder(bytes).build();
}

std::string prefixText(FuzzedDataProvider& bytes, bool ipv4) {
   std::array<std::uint8_t, 16> address{};
   std::size_t const length = ipv4 ? 4 : 16;
   bytes.ConsumeData(address.data(), length);
   auto const bits = bytes.ConsumeIntegralInRange<std::size_t>(0, length * 8);
   for (std::size_t bit = bits; bit < length * 8; ++bit) {
      address[bit / 8] &= static_cast<std::uint8_t>(~(0x80u >> (bit % 8)));
   }
   char buffer[INET6_ADDRSTRLEN];
   ::inet_ntop(ipv4 ? AF_INET : AF_INET6, address.data(), buffer, sizeof buffer);
   return std::string(buffer) + "/" + std::to_string(bits);
}

std::string rangeText(FuzzedDataProvider& bytes, unsigned lowest, unsigned highest) {
   auto const low = bytes.ConsumeIntegralInRange(lowest, highest);
   auto const high = bytes.ConsumeIntegralInRange(low, highest);
   return low == high ? std::to_string(low) : std::to_string(low) + "-" + std::to_string(high);
}

}  // namespace fuzz
