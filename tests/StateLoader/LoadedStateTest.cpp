// What a loaded state holds: small states, each aimed at one area, and the entities they must
// give. The tables map every key of the format to the one model collection it fills, since a key
// read into the wrong collection would still load without complaint.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "Classification/StructuredFilter.h"
#include "PolicyMap/CounterStatusReader.h"
#include "StateLoader/Loader.h"
#include "TapAgg/Actions.h"
#include "support/CapturedOutput.h"
#include "support/TempStateFiles.h"

namespace {

using Classification::NumericalRange;
using Classification::StructuredFilter;
using PolicyMap::ActionType;
using PolicyMap::ClassMapMatchOption;
using StateLoader::DeviceState;

class LoadedState : public testing::Test {
 protected:
   // The text is JSON to an independent parser too, so that a refusal here is about content.
   DeviceState load(std::string_view text) const {
      testing_support::parseJson(std::string(text));
      auto loaded = StateLoader::loadState(written(text));
      if (!loaded) {
         throw std::runtime_error(loaded.reason());
      }
      return std::move(loaded).value();
   }

   // The ipv4 match of rule "r" in policy "p", for a state made of that one match.
   Kel::Ptr<StructuredFilter const> ipv4Filter(std::string_view match) const {
      auto const state = load(R"({"trafficPolicies": {"p": {"rules": {"r": {"sequence": 1, )"
                              R"("match": {"ipv4": )" +
                              std::string(match) + "}}}}}}");
      auto const& rule = *state.config->policyMapConfig().lookup("p");
      return (*(*rule->currCfg()->classMap().lookup("r"))
                   ->match()
                   .lookup(ClassMapMatchOption::ipv4))
          ->structuredFilter();
   }

   // The actions of rule "r" in policy "p".
   Kel::Ptr<PolicyMap::ClassAction const> actions(std::string_view actions) const {
      auto const state = load(R"({"trafficPolicies": {"p": {"rules": {"r": {"sequence": 1, )"
                              R"("actions": )" +
                              std::string(actions) + "}}}}}");
      auto const& rule = *state.config->policyMapConfig().lookup("p");
      return *rule->currCfg()->classAction().lookup("r");
   }

   std::filesystem::path const& folder() const { return files_.folder(); }
   // Writes the text as the state file and returns its path.
   std::string written(std::string_view text) const { return files_.write("state.json", text); }

 private:
   testing_support::TempStateFiles files_;
};

Quoll::IpGenPrefix prefix(std::string_view text) {
   return *Quoll::IpGenPrefix::parse(text);
}

template <typename Set>
std::size_t sizeOf(Set const& set) {
   return set.size();
}

TEST_F(LoadedState, EmptyDocumentGivesEveryHandleWithNothingInIt) {
   auto const state = load("{}");
   ASSERT_TRUE(state.config && state.fieldSetConfig && state.intfConfigInput &&
               state.intfConfigOutput && state.l3IntfStatusDir && state.vrfConfig &&
               state.allVrfConfig && state.hwStatus && state.intfParamStatus);
   EXPECT_TRUE(state.config->policyMapConfig().empty());
   EXPECT_TRUE(state.fieldSetConfig->fieldSetIpPrefix().empty());
   EXPECT_FALSE(state.hwStatus->sharedMemoryCounters());
   for (auto const* direction : {&state.interfaceInput, &state.interfaceOutput, &state.cpu}) {
      ASSERT_TRUE(direction->status && direction->counter && direction->counterTable);
      EXPECT_TRUE(direction->status->policyMapStatus().empty());
      EXPECT_TRUE(direction->counter->snapshot().empty());
      EXPECT_TRUE(direction->counterTable->policyMapCounters().empty());
   }
}

TEST_F(LoadedState, RulesAreKeptBySequenceNumberWithTheirMatchPerOption) {
   auto const state = load(R"({"trafficPolicies": {"p": {
      "namedCounters": ["hits", "drops"],
      "rules": {
         "late": {"sequence": 300, "match": {"ipv4": {}, "ipv6": {}}},
         "early": {"sequence": 7, "actions": {"drop": true}}
      }}}})");
   auto const& policy = *state.config->policyMapConfig().lookup("p");
   ASSERT_TRUE(policy->currCfg());
   auto const& contents = *policy->currCfg();
   ASSERT_EQ(contents.rule().size(), 2u);
   EXPECT_EQ(contents.rule().begin()->first, 7u);
   EXPECT_EQ(contents.rule().begin()->second, "early");
   EXPECT_EQ(*contents.rule().lookup(300), "late");
   EXPECT_EQ(sizeOf(contents.namedCounter()), 2u);
   EXPECT_TRUE(contents.namedCounter().contains("hits"));

   auto const& late = *contents.classMap().lookup("late");
   auto const& v6 = *late->match().lookup(ClassMapMatchOption::ipv6);
   EXPECT_EQ(v6->option(), ClassMapMatchOption::ipv6);
   EXPECT_EQ(v6->structuredFilter()->addressFamily(), Quoll::AddressFamily::ipv6);
   EXPECT_TRUE((*contents.classMap().lookup("early"))->match().empty());
   EXPECT_TRUE(contents.classAction().contains("early"));
   EXPECT_FALSE(contents.classAction().contains("late"));
}

struct AddressKeyCase {
   std::string_view key;
   std::string_view value;
   std::function<std::size_t(StructuredFilter const&)> count;
};

TEST_F(LoadedState, EachAddressKeyFillsItsOwnCollection) {
   AddressKeyCase const cases[] = {
       {"sources", R"(["10.0.0.0/8"])", [](auto const& f) { return f.sources().size(); }},
       {"sourcePrefixSets", R"(["s"])", [](auto const& f) { return f.srcPrefixSets().size(); }},
       {"sourceLpms", R"(["10.0.0.0/8"])", [](auto const& f) { return f.sourceLpms().size(); }},
       {"sourceLpmPrefixSets", R"(["s"])",
        [](auto const& f) { return f.srcLpmPrefixSets().size(); }},
       {"destinations", R"(["10.0.0.0/8"])", [](auto const& f) { return f.destinations().size(); }},
       {"destinationPrefixSets", R"(["s"])",
        [](auto const& f) { return f.dstPrefixSets().size(); }},
       {"destinationLpms", R"(["10.0.0.0/8"])",
        [](auto const& f) { return f.destinationLpms().size(); }},
       {"destinationLpmPrefixSets", R"(["s"])",
        [](auto const& f) { return f.dstLpmPrefixSets().size(); }},
   };
   for (AddressKeyCase const& row : cases) {
      auto const filter =
          ipv4Filter("{\"" + std::string(row.key) + "\": " + std::string(row.value) + "}");
      std::size_t total = 0;
      for (AddressKeyCase const& other : cases) {
         total += other.count(*filter);
      }
      EXPECT_EQ(row.count(*filter), 1u) << row.key;
      EXPECT_EQ(total, 1u) << row.key << " filled another collection too";
   }
}

struct MatchCase {
   std::string_view name;
   std::string_view match;
   std::function<void(StructuredFilter const&)> check;
};

TEST_F(LoadedState, MatchCriteriaReachTheStructuredFilter) {
   using Classification::ProtocolRange;
   MatchCase const cases[] = {
       {"VLAN tags", R"({"vlanTags": [{"vlans": ["10", "20-30"]}, {"vlanFieldSets": ["v"]}]})",
        [](StructuredFilter const& f) {
           ASSERT_EQ(f.vlanTags().size(), 2u);
           EXPECT_TRUE(f.vlanTags()[0].vlans().contains(NumericalRange{20, 30}));
           EXPECT_TRUE(f.vlanTags()[1].vlanFieldSets().contains("v"));
        }},
       {"ports",
        R"({"protocols": {"6": {"ports": [{"sources": ["1024-65535"], )"
        R"("destinations": ["80"], "sourceFieldSets": ["a"], )"
        R"("destinationFieldSets": ["b"]}]}}})",
        [](StructuredFilter const& f) {
           auto const& ports = (*f.proto().lookup(ProtocolRange{6, 6}))->port().at(0);
           EXPECT_TRUE(ports.sport().contains(NumericalRange{1024, 65535}));
           EXPECT_TRUE(ports.dport().contains(NumericalRange{80, 80}));
           EXPECT_TRUE(ports.srcL4PortFieldSets().contains("a"));
           EXPECT_TRUE(ports.dstL4PortFieldSets().contains("b"));
        }},
       {"ICMP types and codes", R"({"protocols": {"1": {"icmpTypes": {"8": [], "3": ["0-4"]}}}})",
        [](StructuredFilter const& f) {
           auto const& types = (*f.proto().lookup(ProtocolRange{1, 1}))->icmpType();
           EXPECT_TRUE(types.lookup(NumericalRange{8, 8})->icmpCode().empty());
           EXPECT_TRUE(types.lookup(NumericalRange{3, 3})->icmpCode().contains({0, 4}));
        }},
       {"TCP flags",
        R"({"protocols": {"6": {"tcpFlags": [{"syn": true, "ack": false, )"
        R"("fin": false, "rst": true, "psh": true, "urg": false}, )"
        R"({"initialSyn": true}]}}})",
        [](StructuredFilter const& f) {
           auto const& groups = (*f.proto().lookup(ProtocolRange{6, 6}))->tcpFlag();
           using namespace Classification;
           EXPECT_TRUE(groups.contains(TcpFlagGroup{
               tcpSyn | tcpRst | tcpPsh, tcpSyn | tcpAck | tcpFin | tcpRst | tcpPsh | tcpUrg}));
           EXPECT_TRUE(groups.contains(TcpFlagGroup{tcpInitialSyn, tcpInitialSyn}));
        }},
       {"protocol range without criteria", R"({"protocols": {"1-255": {}}})",
        [](StructuredFilter const& f) {
           EXPECT_TRUE(f.proto().contains(ProtocolRange{1, 255}));
        }},
       {"lengths, DSCP and TTL", R"({"lengths": ["64-128"], "dscps": ["46"], "ttls": ["1"]})",
        [](StructuredFilter const& f) {
           EXPECT_TRUE(f.length().contains({64, 128}));
           EXPECT_TRUE(f.dscp().contains({46, 46}));
           EXPECT_TRUE(f.ttl().contains({1, 1}));
        }},
       {"all fragments", R"({"fragment": {"all": true}})",
        [](StructuredFilter const& f) {
           ASSERT_TRUE(f.fragment());
           EXPECT_EQ(f.fragment()->kind, Classification::Fragment::matchAll);
        }},
       {"fragment offsets", R"({"fragment": {"offsets": ["1-100"]}})",
        [](StructuredFilter const& f) {
           ASSERT_TRUE(f.fragment());
           EXPECT_EQ(f.fragment()->kind, Classification::Fragment::matchOffsets);
           EXPECT_TRUE(f.fragment()->offset.contains({1, 100}));
        }},
       {"protocol flags", R"({"bgpNeighbors": true, "bgpProtocol": false, "ipOptions": true})",
        [](StructuredFilter const& f) {
           EXPECT_TRUE(f.matchBgpNeighbors());
           EXPECT_FALSE(f.matchBgpProtocol());
           EXPECT_TRUE(f.matchIpOptions());
        }},
       {"encapsulation",
        R"({"encapsulation": {"inner": {"addressFamily": "ipv6", )"
        R"("destinationPrefixSets": ["d"]}, "type": "gtpv1"}})",
        [](StructuredFilter const& f) {
           EXPECT_EQ(f.encapField().encapsulationType, Classification::EncapsulationType::gtpv1);
           ASSERT_TRUE(f.innerMatch());
           EXPECT_EQ(f.innerMatch()->addressFamily(), Quoll::AddressFamily::ipv6);
           EXPECT_TRUE(f.innerMatch()->dstPrefixSets().contains("d"));
        }},
   };
   for (MatchCase const& row : cases) {
      SCOPED_TRACE(row.name);
      row.check(*ipv4Filter(row.match));
   }
}

struct ActionCase {
   std::string_view name;
   std::string_view actions;
   std::function<void(PolicyMap::ClassAction const&)> check;
};

template <typename ActionClass>
ActionClass const& actionOf(PolicyMap::ClassAction const& actions, ActionType type) {
   auto const* action = actions.policyAction().lookup(type);
   if (!action) {
      throw std::runtime_error("no action of type " + std::to_string(int(type)));
   }
   return dynamic_cast<ActionClass const&>(**action);
}

TEST_F(LoadedState, EachActionKeyMakesItsAction) {
   using PolicyMap::Action;
   ActionCase const cases[] = {
       {"drop and log", R"({"drop": true, "log": true})",
        [](auto const& a) {
           EXPECT_EQ(actionOf<Action>(a, ActionType::drop).actionType(), ActionType::drop);
           EXPECT_EQ(actionOf<Action>(a, ActionType::log).actionType(), ActionType::log);
        }},
       {"drop false is no drop", R"({"drop": false})",
        [](auto const& a) { EXPECT_TRUE(a.policyAction().empty()); }},
       {"police", R"({"police": {"unit": "kbps", "rate": 18446744073709551615}})",
        [](auto const& a) {
           auto const& police = actionOf<PolicyMap::PoliceAction>(a, ActionType::police);
           EXPECT_EQ(police.rate(), UINT64_MAX);
           EXPECT_EQ(police.rateUnit(), PolicyMap::RateUnit::kbps);
        }},
       {"count into the rule's counter", R"({"count": {}})",
        [](auto const& a) {
           EXPECT_EQ(actionOf<PolicyMap::CountAction>(a, ActionType::count).counterName(), "");
        }},
       {"count into a named counter", R"({"count": {"counter": "hits"}})",
        [](auto const& a) {
           EXPECT_EQ(actionOf<PolicyMap::CountAction>(a, ActionType::count).counterName(), "hits");
        }},
       {"set DSCP and traffic class", R"({"setDscp": 63, "setTc": 7})",
        [](auto const& a) {
           EXPECT_EQ(actionOf<PolicyMap::SetDscpAction>(a, ActionType::setDscp).dscp(), 63);
           EXPECT_EQ(actionOf<TrafficPolicy::SetTcAction>(a, ActionType::setTc).tc(), 7);
        }},
       {"goto next and goto a rule", R"({"goto": {"match": "r9"}})",
        [](auto const& a) {
           EXPECT_EQ(actionOf<PolicyMap::GotoAction>(a, ActionType::gotoMatch).matchName(), "r9");
        }},
       {"next-hop groups", R"({"redirectNexthopGroups": ["b", "a"]})",
        [](auto const& a) {
           auto const& groups =
               actionOf<PolicyMap::SetNexthopGroup>(a, ActionType::setNexthopGroup).nexthopGroup();
           EXPECT_EQ(groups.size(), 2u);
           EXPECT_TRUE(groups.contains("a"));
        }},
       {"tap-aggregation redirect and header strip",
        R"({"tapAggRedirect": {"groups": ["g"], "interfaces": ["Ethernet9"]}, )"
        R"("stripHeaderBytes": "dot1q"})",
        [](auto const& a) {
           auto const& redirect =
               actionOf<TapAgg::TapAggActionSetAggGroup>(a, ActionType::setAggGroup);
           EXPECT_TRUE(redirect.aggGroup().contains("g"));
           EXPECT_TRUE(redirect.aggIntf().contains("Ethernet9"));
           EXPECT_EQ(actionOf<TapAgg::TapAggActionStripHeaderBytes>(a, ActionType::stripHeaderBytes)
                         .stripHeader(),
                     "dot1q");
        }},
   };
   for (ActionCase const& row : cases) {
      SCOPED_TRACE(row.name);
      row.check(*actions(row.actions));
   }
}

TEST_F(LoadedState, FieldSetsKeepTheirContentsAndSource) {
   auto const state = load(R"({"fieldSets": {
      "ipv4Prefix": {"a": {"source": "bgp", "prefixes": ["10.0.0.0/8", "11.0.0.0/8"],
                           "exceptPrefixes": ["10.1.0.0/16"]}},
      "ipv6Prefix": {"b": {"prefixes": ["2001:db8::/32"]}},
      "l4Port": {"c": {"ports": ["80", "1000-1009"]}},
      "vlan": {"d": {"source": "controller", "vlans": ["1-4095"]}, "e": {}}}})");
   auto const& config = *state.fieldSetConfig;
   auto const& a = *(*config.fieldSetIpPrefix().lookup("a"))->currCfg();
   EXPECT_EQ(a.source(), Classification::ContentsSource::bgp);
   EXPECT_EQ(a.numPrefixes(), 2u);
   EXPECT_TRUE(a.exceptPrefixes().contains(prefix("10.1.0.0/16")));
   EXPECT_TRUE((*config.fieldSetIpv6Prefix().lookup("b"))
                   ->currCfg()
                   ->prefixes()
                   .contains(prefix("2001:db8::/32")));
   auto const& c = *(*config.fieldSetL4Port().lookup("c"))->currCfg();
   EXPECT_EQ(c.source(), Classification::ContentsSource::staticSource);
   EXPECT_EQ(c.numPorts(), 11u);
   EXPECT_EQ((*config.fieldSetVlan().lookup("d"))->currCfg()->numVlans(), 4095u);
   EXPECT_EQ((*config.fieldSetVlan().lookup("e"))->currCfg()->numVlans(), 0u);
}

TEST_F(LoadedState, AttachmentsGiveInterfacePoliciesVrfsAndCpuPolicies) {
   auto const state = load(R"({
      "interfaces": {"input": {"Ethernet1": "a", "Ethernet2/1": "a"},
                     "output": {"Ethernet1": "b"},
                     "vrf": {"Ethernet1": "blue", "Vlan10": "default"}},
      "vrfs": {"names": ["default", "blue"], "cpuPolicy": {"all": "c", "blue": "d"}}})");
   Quoll::IntfId const ethernet1("Ethernet1");
   EXPECT_EQ(*state.intfConfigInput->intf().lookup(Quoll::IntfId("Ethernet2/1")), "a");
   EXPECT_EQ(*state.intfConfigOutput->intf().lookup(ethernet1), "b");
   EXPECT_EQ(state.intfConfigOutput->intf().size(), 1u);
   auto const& l3 = *state.l3IntfStatusDir->intfStatus().lookup(ethernet1);
   EXPECT_EQ(l3->intfId(), ethernet1);
   EXPECT_EQ(l3->vrf(), "blue");
   EXPECT_TRUE(state.allVrfConfig->vrf().contains("blue"));
   EXPECT_EQ(*state.vrfConfig->vrf().lookup("all"), "c");
   EXPECT_EQ(*state.vrfConfig->vrf().lookup("blue"), "d");
}

TEST_F(LoadedState, HardwareGivesCounterPlacementAndGranularity) {
   auto const state = load(R"({"hardware": {"sharedMemoryCounters": true,
      "ingressCounterGranularity": "perInterface", "egressCounterGranularity": "notEnabled"}})");
   EXPECT_TRUE(state.hwStatus->sharedMemoryCounters());
   EXPECT_EQ(state.intfParamStatus->ingressCounterGranularity(),
             TrafficPolicy::counterPerInterface);
   EXPECT_EQ(state.intfParamStatus->egressCounterGranularity(), TrafficPolicy::counterNotEnabled);
}

TEST_F(LoadedState, StatusGivesRuleOptionsAndInstallationPerInterface) {
   auto const state = load(R"({"status": {"interfaceOutput": {
      "byteCountersSupported": true, "perInterfaceCounters": true,
      "policies": {"p": {
         "rules": {"r1": ["ipv6"], "r2": []},
         "interfaces": {"Ethernet3": {"ipv4": {"state": "failed", "error": "no room"},
                                     "ipv6": {"state": "pending"}}}}}}}})");
   auto const& status = *state.interfaceOutput.status;
   EXPECT_TRUE(status.byteCountersSupported());
   EXPECT_TRUE(status.perInterfaceCounters());
   EXPECT_FALSE(state.interfaceInput.status->byteCountersSupported());
   auto const& policy = *status.policyMapStatus().lookup("p");
   EXPECT_TRUE(
       (*policy->classMapStatus().lookup("r1"))->matchs().contains(ClassMapMatchOption::ipv6));
   EXPECT_TRUE((*policy->classMapStatus().lookup("r2"))->matchs().empty());
   auto const& intf = *policy->intfStatus().lookup(Quoll::IntfId("Ethernet3"));
   EXPECT_EQ(intf->intfId(), Quoll::IntfId("Ethernet3"));
   auto const* v4 = intf->installedStatus(ClassMapMatchOption::ipv4);
   ASSERT_TRUE(v4);
   EXPECT_EQ(v4->state, PolicyMap::installFailed);
   EXPECT_EQ(v4->errorText, "no room");
   EXPECT_EQ(intf->installedStatus(ClassMapMatchOption::ipv6)->state, PolicyMap::installPending);
   EXPECT_TRUE(state.cpu.status->policyMapStatus().empty());
}

// A state may come through a pipe, whose size is not known up front: the loader reads until the
// end, growing its buffer. The state is made larger than the first buffer.
TEST_F(LoadedState, StateFromAPipeLoads) {
   constexpr int kVrfs = 20000;
   std::string text = R"({"vrfs": {"names": [)";
   for (int vrf = 0; vrf < kVrfs; ++vrf) {
      text += (vrf ? ", \"vrf" : "\"vrf") + std::to_string(vrf) + "\"";
   }
   text += "]}}";
   auto const pipe = (folder() / "state.pipe").string();
   ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
   std::thread writer([&pipe, &text] {
      std::ofstream out(pipe, std::ios::binary);
      out << text;
   });
   auto const loaded = StateLoader::loadState(pipe);
   writer.join();
   ASSERT_TRUE(loaded) << loaded.reason();
   EXPECT_EQ(loaded->allVrfConfig->vrf().size(), std::size_t{kVrfs});
}

// A regular file is mapped, and the parser reads a little past its end: a file ending right at a
// page boundary, or just short of one, has to be read into a buffer instead.
TEST_F(LoadedState, FilesEndingAtAnyPlaceInAPageLoad) {
   std::string_view const state = R"({"vrfs": {"names": ["blue"]}})";
   auto const page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
   for (std::size_t const shortOfPage : {0, 1, 63, 64, 65, 200}) {
      auto const text =
          std::string(state) + std::string(2 * page - shortOfPage - state.size(), ' ');
      auto const loaded = StateLoader::loadState(written(text));
      ASSERT_TRUE(loaded) << shortOfPage << ": " << loaded.reason();
      EXPECT_EQ(loaded->allVrfConfig->vrf().size(), 1u) << shortOfPage;
   }
}

// Counters are read through the reader that the show library picks from the hardware flag: the
// shared-memory table's reader when the flag is set, the status reader otherwise. Only the picked
// reader may find them. The hardware section comes last in the file on purpose.
TEST_F(LoadedState, LiveCountersGoWhereTheHardwareSaysTheyLive) {
   for (bool const shared : {false, true}) {
      SCOPED_TRACE(shared ? "shared-memory counters" : "counters in the status");
      auto const state = load(R"({"status": {"cpu": {"policies": {"p": {
         "ruleCounters": {"r": {"instanceId": 5, "packets": 10, "bytes": 640}},
         "namedCounters": {"c": {"instanceId": 6, "packets": 3, "bytes": 192,
                                 "interfaces": {"Ethernet1": {"packets": 2, "bytes": 128}}}}}}}},
         "hardware": {"sharedMemoryCounters": )" +
                              std::string(shared ? "true" : "false") + "}}");
      PolicyMap::PolicyMapPylonCounterStatusReader const table(state.cpu.counterTable);
      PolicyMap::PolicyMapLedgerCounterStatusReader const ledger(state.cpu.status);
      PolicyMap::PolicyMapCounterStatusReaderBase const& picked =
          shared ? static_cast<PolicyMap::PolicyMapCounterStatusReaderBase const&>(table) : ledger;
      PolicyMap::PolicyMapCounterStatusReaderBase const& other =
          shared ? static_cast<PolicyMap::PolicyMapCounterStatusReaderBase const&>(ledger) : table;
      PolicyMap::PolicyMapSmKey const key{"p", ""};

      auto const rule = picked.classCounterData(key, "r");
      ASSERT_TRUE(rule);
      EXPECT_EQ(rule->instanceId(), 5u);
      EXPECT_EQ(rule->pkts(), 10u);
      EXPECT_EQ(rule->bytes(), 640u);
      auto const named = picked.namedCounterData(key, "c");
      ASSERT_TRUE(named);
      EXPECT_EQ(named->name(), "c");
      EXPECT_EQ(named->pkts(), 3u);
      EXPECT_EQ((named->perIntfCount().lookup(Quoll::IntfId("Ethernet1"))->bytes), 128u);
      EXPECT_FALSE(other.classCounterData(key, "r"));
      EXPECT_FALSE(other.namedCounterData(key, "c"));
      EXPECT_TRUE(state.cpu.status->policyMapStatus().contains("p"));
   }
}

}  // namespace
