#include "support/StateBuilder.h"

#include <arpa/inet.h>

#include <array>
#include <map>
#include <set>
#include <utility>

#include "support/JsonText.h"

namespace fuzz {

namespace {

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

// Writes each part as it reads the bytes for it. The bytes are read in the order they always have
// been, and repeated keys and lists keep the forms they always had, so that the inputs of a corpus
// go on building the states they were kept for.
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
      out_.object([&] {
         out_.member("hardware", [&] { hardware(); });
         out_.member("fieldSets", [&] { fieldSets(); });
         out_.member("trafficPolicies", [&] { policies(); });
         out_.member("interfaces", [&] { attachments(); });
         out_.member("vrfs", [&] { vrfSection(); });
         out_.member("status", [&] { status(); });
      });
      state_.text = std::move(out_).take();
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

   // Writes the member `key`, whose value `write` writes, if the bytes say so.
   template <typename Write>
   void maybe(std::string_view key, Write write) {
      if (bytes_.ConsumeBool()) {
         out_.member(key, write);
      }
   }

   template <typename Body>
   void maybeObject(std::string_view key, Body body) {
      maybe(key, [&] { out_.object(body); });
   }

   // What `write` writes, as text of its own.
   template <typename Write>
   std::string apart(Write write) {
      auto outer = std::exchange(out_, JsonText());
      write();
      return std::exchange(out_, std::move(outer)).take();
   }

   // An object whose keys may come more than once: the last value given for a key is kept.
   void objectOfLast(std::map<std::string, std::string> const& members) {
      out_.object([&] {
         for (auto const& member : members) {
            out_.member(member.first, [&] { out_.raw(member.second); });
         }
      });
   }

   // A sorted list of what `make` gives, each once, each written by `write`.
   template <typename Make, typename Write>
   void uniqueList(std::size_t fewest, std::size_t most, Make make, Write write) {
      std::set<decltype(make())> entries;
      for (auto left = fewest + count(most - fewest); left > 0; --left) {
         entries.insert(make());
      }
      out_.list([&] {
         for (auto const& entry : entries) {
            write(entry);
         }
      });
   }

   template <typename Make>
   void uniqueStrings(std::size_t fewest, std::size_t most, Make make) {
      uniqueList(fewest, most, make, [&](std::string const& entry) { out_.string(entry); });
   }

   void stringList(std::vector<std::string> const& entries) {
      out_.list([&] {
         for (auto const& entry : entries) {
            out_.string(entry);
         }
      });
   }

   void nameList(std::vector<std::string> const& known, char const* stem, std::size_t fewest = 0) {
      uniqueStrings(fewest, 3, [&] { return nameFrom(known, stem); });
   }

   void ranges(unsigned lowest, unsigned highest, std::size_t fewest = 0) {
      uniqueStrings(fewest, 3, [&] { return rangeText(bytes_, lowest, highest); });
   }

   void prefixes(bool ipv4) {
      uniqueStrings(0, 3, [&] { return prefixText(bytes_, ipv4); });
   }

   std::vector<std::string> const& setsOf(bool ipv4) const {
      return ipv4 ? state_.ipv4Sets : state_.ipv6Sets;
   }

   void hardware() {
      out_.object([&] {
         out_.boolMember("sharedMemoryCounters", bytes_.ConsumeBool());
         out_.stringMember("ingressCounterGranularity", pick(kGranularities));
         out_.stringMember("egressCounterGranularity", pick(kGranularities));
      });
   }

   void prefixSets(bool ipv4) {
      out_.object([&] {
         for (auto const& set : setsOf(ipv4)) {
            out_.objectMember(set, [&] {
               out_.stringMember("source", pick(kSources));
               out_.member("prefixes", [&] { prefixes(ipv4); });
               out_.member("exceptPrefixes", [&] { prefixes(ipv4); });
            });
         }
      });
   }

   void rangeSets(std::vector<std::string> const& sets, char const* key, unsigned lowest,
                  unsigned highest) {
      out_.object([&] {
         for (auto const& set : sets) {
            out_.objectMember(set, [&] {
               out_.stringMember("source", pick(kSources));
               out_.member(key, [&] { ranges(lowest, highest); });
            });
         }
      });
   }

   void fieldSets() {
      out_.object([&] {
         out_.member("ipv4Prefix", [&] { prefixSets(true); });
         out_.member("ipv6Prefix", [&] { prefixSets(false); });
         out_.member("l4Port", [&] { rangeSets(state_.portSets, "ports", 0, 65535); });
         out_.member("vlan", [&] { rangeSets(state_.vlanSets, "vlans", 1, 4095); });
      });
   }

   // At most one way of matching sources (or destinations); inner headers know no LPM.
   void addAddresses(std::array<char const*, 4> const& kinds, bool ipv4, std::size_t kindCount) {
      auto const kind = count(kindCount);
      if (kind == kindCount) {
         return;
      }
      out_.member(kinds[kind], [&] {
         if (kind % 2 == 0) {
            prefixes(ipv4);
         } else {
            nameList(setsOf(ipv4), "v4set");
         }
      });
   }

   // A flag is chosen after its value is (the order the bytes have always been read in). Groups are
   // maps so that a list of them sorts as it always has.
   std::map<std::string, bool> tcpFlagGroup() {
      if (bytes_.ConsumeBool()) {
         return {{pick(kConnectionStates), true}};
      }
      std::map<std::string, bool> group;
      for (auto left = 1 + count(3); left > 0; --left) {
         bool const value = bytes_.ConsumeBool();
         group[pick(kTcpFlags)] = value;
      }
      return group;
   }

   void tcpFlags() {
      uniqueList(
          1, 2, [&] { return tcpFlagGroup(); },
          [&](std::map<std::string, bool> const& group) {
             out_.object([&] {
                for (auto const& flag : group) {
                   out_.boolMember(flag.first, flag.second);
                }
             });
          });
   }

   // A key of the ICMP types is chosen after its value is (the order the bytes have always been
   // read in).
   void icmpTypes() {
      std::map<std::string, std::string> types;
      for (auto left = count(2); left > 0; --left) {
         auto value = apart([&] { ranges(0, 255); });
         types[rangeText(bytes_, 0, 255)] = std::move(value);
      }
      objectOfLast(types);
   }

   void protocol(std::string const& key) {
      out_.object([&] {
         maybe("ports", [&] {
            out_.list([&] {
               for (auto left = count(2); left > 0; --left) {
                  out_.object([&] {
                     out_.member("sources", [&] { ranges(0, 65535); });
                     out_.member("destinations", [&] { ranges(0, 65535); });
                     out_.member("sourceFieldSets", [&] { nameList(state_.portSets, "ports"); });
                     out_.member("destinationFieldSets",
                                 [&] { nameList(state_.portSets, "ports"); });
                  });
               }
            });
         });
         maybe("icmpTypes", [&] { icmpTypes(); });
         if (key == "6") {
            maybe("tcpFlags", [&] { tcpFlags(); });
         }
      });
   }

   void vlanTag() {
      out_.object([&] {
         if (bytes_.ConsumeBool()) {
            out_.member("vlans", [&] { ranges(1, 4095, 1); });
         } else {
            out_.member("vlanFieldSets", [&] { nameList(state_.vlanSets, "vlans", 1); });
         }
      });
   }

   void protocols() {
      std::map<std::string, std::string> protocols;
      for (auto left = count(3); left > 0; --left) {
         auto const key = bytes_.ConsumeBool() ? std::string("6") : rangeText(bytes_, 0, 255);
         protocols[key] = apart([&] { protocol(key); });
      }
      objectOfLast(protocols);
   }

   void addMatchFields() {
      maybe("protocols", [&] { protocols(); });
      maybe("vlanTags", [&] { out_.list([&] { vlanTag(); }); });
      maybe("lengths", [&] { ranges(0, 65535); });
      maybeObject("fragment", [&] {
         if (bytes_.ConsumeBool()) {
            out_.boolMember("all", true);
         } else {
            out_.member("offsets", [&] { ranges(0, 8191, 1); });
         }
      });
      for (auto const* flag : {"bgpNeighbors", "bgpProtocol", "ipOptions"}) {
         maybe(flag, [&] { out_.boolean(true); });
      }
      maybe("dscps", [&] { ranges(0, 63); });
      maybe("ttls", [&] { ranges(0, 255); });
   }

   void innerHeader() {
      bool const ipv4 = bytes_.ConsumeBool();
      out_.object([&] {
         out_.stringMember("addressFamily", ipv4 ? "ipv4" : "ipv6");
         addAddresses(kSourceKinds, ipv4, 2);
         addAddresses(kDestinationKinds, ipv4, 2);
      });
   }

   void criteria(bool ipv4) {
      out_.object([&] {
         addAddresses(kSourceKinds, ipv4, 4);
         addAddresses(kDestinationKinds, ipv4, 4);
         addMatchFields();
         if (bytes_.ConsumeProbability<float>() < 0.2f) {
            out_.objectMember("encapsulation", [&] {
               out_.stringMember("type", "gtpv1");
               out_.member("inner", [&] { innerHeader(); });
            });
         }
      });
   }

   // An empty object, or one whose only member `key` names one of `known`.
   void optionalReference(char const* key, std::vector<std::string> const& known,
                          char const* stem) {
      out_.object([&] {
         if (!bytes_.ConsumeBool()) {
            out_.stringMember(key, nameFrom(known, stem));
         }
      });
   }

   void actions(std::vector<std::string> const& rules, std::vector<std::string> const& counters) {
      out_.object([&] {
         maybe("drop", [&] { out_.boolean(bytes_.ConsumeBool()); });
         maybeObject("police", [&] {
            out_.numberMember("rate", bytes_.ConsumeIntegral<std::uint64_t>());
            out_.stringMember("unit", pick(kRateUnits));
         });
         maybe("count", [&] { optionalReference("counter", counters, "counter"); });
         maybe("setDscp", [&] { out_.number(count(63)); });
         maybe("setTc", [&] { out_.number(count(7)); });
         maybe("log", [&] { out_.boolean(true); });
         maybe("goto", [&] { optionalReference("match", rules, "rule"); });
         maybe("redirectNexthopGroups", [&] { nameList({}, "nhg", 1); });
         maybeObject("tapAggRedirect", [&] {
            out_.member("groups", [&] { nameList({}, "group", 1); });
            out_.member("interfaces", [&] { nameList(interfaces_, "Ethernet"); });
         });
         maybe("stripHeaderBytes", [&] { out_.string(text(true)); });
      });
   }

   void policy(std::vector<std::string> const& rules) {
      auto const declared = names("counter", 2);
      std::set<std::uint32_t> sequences;
      out_.object([&] {
         out_.member("namedCounters", [&] { stringList(declared); });
         out_.objectMember("rules", [&] {
            for (auto const& rule : rules) {
               out_.member(rule, [&] { ruleOf(rules, declared, sequences); });
            }
         });
      });
   }

   void ruleOf(std::vector<std::string> const& rules, std::vector<std::string> const& declared,
               std::set<std::uint32_t>& sequences) {
      auto sequence = bytes_.ConsumeIntegral<std::uint32_t>();
      while (!sequences.insert(sequence).second) {
         ++sequence;
      }
      out_.object([&] {
         out_.numberMember("sequence", sequence);
         out_.objectMember("match", [&] {
            for (bool const ipv4 : {true, false}) {
               maybe(ipv4 ? "ipv4" : "ipv6", [&] { criteria(ipv4); });
            }
         });
         out_.member("actions", [&] { actions(rules, declared); });
      });
   }

   void policies() {
      out_.object([&] {
         for (auto const& policyName : state_.policies) {
            rules_[policyName] = names("rule", 4);
            out_.member(policyName, [&] { policy(rules_[policyName]); });
         }
      });
   }

   void nameMap(std::vector<std::string> const& keys, std::vector<std::string> const& values,
                char const* stem) {
      out_.object([&] {
         for (auto const& key : keys) {
            if (bytes_.ConsumeBool()) {
               out_.stringMember(key, nameFrom(values, stem));
            }
         }
      });
   }

   void attachments() {
      out_.object([&] {
         out_.member("input", [&] { nameMap(interfaces_, state_.policies, "policy"); });
         out_.member("output", [&] { nameMap(interfaces_, state_.policies, "policy"); });
         out_.member("vrf", [&] { nameMap(interfaces_, vrfs_, "vrf"); });
      });
   }

   void vrfSection() {
      auto vrfsAndAll = vrfs_;
      vrfsAndAll.push_back("all");
      out_.object([&] {
         out_.member("names", [&] { stringList(vrfs_); });
         out_.member("cpuPolicy", [&] { nameMap(vrfsAndAll, state_.policies, "policy"); });
      });
   }

   void countOf(char const* key) {
      out_.numberMember(key, bytes_.ConsumeIntegral<std::uint64_t>());
   }

   void counter(bool withInterfaces) {
      out_.object([&] {
         countOf("instanceId");
         countOf("packets");
         if (bytes_.ConsumeBool()) {
            countOf("bytes");
         }
         if (withInterfaces) {
            out_.objectMember("interfaces", [&] {
               for (auto const& interface : interfaces_) {
                  maybeObject(interface, [&] {
                     countOf("packets");
                     countOf("bytes");
                  });
               }
            });
         }
      });
   }

   void installation() {
      out_.object([&] {
         for (auto const* option : {"ipv4", "ipv6"}) {
            maybeObject(option, [&] {
               out_.stringMember("state", pick(kInstallStates));
               maybe("error", [&] { out_.string(text(true)); });
            });
         }
      });
   }

   // A rule's counter is read from the bytes right after its options.
   void policyStatus(std::string const& policyName) {
      auto const& rules = rules_[policyName];
      std::map<std::string, std::string> ruleCounters;
      out_.object([&] {
         out_.objectMember("rules", [&] {
            for (auto const& rule : rules) {
               auto const option = count(2);
               out_.member(rule, [&] {
                  out_.list([&] {
                     if (option != 0) {
                        out_.string(option == 1 ? "ipv4" : "ipv6");
                     }
                  });
               });
               if (bytes_.ConsumeBool()) {
                  ruleCounters[rule] = apart([&] { counter(false); });
               }
            }
         });
         out_.member("ruleCounters", [&] { objectOfLast(ruleCounters); });
         out_.objectMember("interfaces", [&] {
            for (auto const& interface : interfaces_) {
               maybe(interface, [&] { installation(); });
            }
         });
         out_.objectMember("namedCounters", [&] {
            for (auto const& name : counters_) {
               maybe(name, [&] { counter(true); });
            }
         });
      });
   }

   void direction() {
      out_.object([&] {
         out_.objectMember("policies", [&] {
            for (auto const& policyName : names("policy", 3)) {
               out_.member(policyName, [&] { policyStatus(policyName); });
            }
         });
         out_.boolMember("byteCountersSupported", bytes_.ConsumeBool());
         out_.boolMember("perInterfaceCounters", bytes_.ConsumeBool());
      });
   }

   void status() {
      out_.object([&] {
         for (auto const* key : {"interfaceInput", "interfaceOutput", "cpu"}) {
            out_.member(key, [&] { direction(); });
         }
      });
   }

   FuzzedDataProvider& bytes_;
   JsonText out_;
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
