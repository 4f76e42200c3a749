// The caching walks survive changes under them: what a walk visits when the collection it walks
// changes between its steps. (What gets cached is shown by the golden states.)
#include <gtest/gtest.h>

#include "TrafficPolicyCli/ShowTrafficPolicyInterface.h"

namespace {

// A device built by hand: policies and their statuses.
struct Device {
   Kel::Ptr<TrafficPolicy::TrafficPolicyConfig> config =
       Kel::make<TrafficPolicy::TrafficPolicyConfig>();
   Kel::Ptr<TrafficPolicy::Status> status = Kel::make<TrafficPolicy::Status>();
   Kel::Ptr<Classification::FieldSetConfig> fieldSets = Kel::make<Classification::FieldSetConfig>();
   Kel::Ptr<TrafficPolicy::HwStatus> hardware = Kel::make<TrafficPolicy::HwStatus>();
   Kel::Ptr<PolicyMap::Counters::PolicyMapTypeCounters> table =
       Kel::make<PolicyMap::Counters::PolicyMapTypeCounters>();

   Kel::Ptr<PolicyMap::PolicyMapSubConfig> configure(char const* policy) {
      auto sub = Kel::make<PolicyMap::PolicyMapSubConfig>(policy);
      auto pmap = Kel::make<PolicyMap::PolicyMapConfig>(policy);
      pmap->currCfgIs(sub);
      config->policyMapConfig().insertOrAssign(policy, pmap);
      return sub;
   }
   Kel::Ptr<PolicyMap::PolicyMapStatus> report(char const* policy) {
      auto pmapStatus = Kel::make<PolicyMap::PolicyMapStatus>(policy);
      status->policyMapStatus().insertOrAssign(policy, pmapStatus);
      return pmapStatus;
   }
};

// The interface show object over the device's input direction only.
class ShowOverDevice : public TrafficPolicyCli::ShowTrafficPolicyInterface {
 public:
   explicit ShowOverDevice(Device& device)
       : ShowTrafficPolicyInterface(device.config, device.status, nullptr, Kel::String(), false,
                                    false, false, false, false, device.fieldSets, device.hardware,
                                    device.table, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr, false, false) {}
};

// Changes the status collection while the policy walk runs.
class ChangingShowObject : public ShowOverDevice {
 public:
   ChangingShowObject(Device& device, std::function<void(Kel::String const&)> change)
       : ShowOverDevice(device), change_(std::move(change)) {}

   void cachePolicyState(Kel::String const& policyName) override {
      visited.push_back(policyName.stringValue());
      change_(policyName);
      ShowTrafficPolicyInterface::cachePolicyState(policyName);
   }

   std::vector<std::string> visited;

 private:
   std::function<void(Kel::String const&)> change_;
};

TEST(CachingTest, PolicyWalkSurvivesChangesUnderIt) {
   Device device;
   for (char const* name : {"a", "c", "e", "g"}) {
      device.report(name);
   }
   auto show = Kel::make<ChangingShowObject>(device, [&device](Kel::String const& name) {
      if (name == "c") {
         device.status->policyMapStatus().erase("e");
         device.report("d");
         device.report("b");
      }
   });
   show->cachePoliciesState();
   EXPECT_EQ(show->visited, (std::vector<std::string>{"a", "c", "d", "g"}));
}

// Answers for named counters, and changes the record's counter set while it is asked.
class ChangingReader : public PolicyMap::PolicyMapLedgerCounterStatusReader {
 public:
   ChangingReader(Kel::Ptr<TrafficPolicy::Status const> status, std::function<void()> change)
       : PolicyMapLedgerCounterStatusReader(std::move(status)), change_(std::move(change)) {}

   Kel::Ptr<PolicyMap::PacketDataStatus const> namedCounterData(
       PolicyMap::PolicyMapSmKey const&, Kel::String const& counterName) const override {
      asked.push_back(counterName.stringValue());
      if (counterName == "c2") {
         change_();
      }
      return Kel::make<PolicyMap::PacketDataStatus>(counterName, 1);
   }

   mutable std::vector<std::string> asked;

 private:
   std::function<void()> change_;
};

class ShowObjectWithReader : public ShowOverDevice {
 public:
   explicit ShowObjectWithReader(Device& device) : ShowOverDevice(device) {}

   // The input direction's reader changes the walk under it; there is no output status.
   Kel::Ptr<CounterReader const> createCounterStatusHelper(bool isInput) override {
      if (!isInput) {
         return nullptr;
      }
      reader = Kel::make<ChangingReader>(status(), [this] {
         auto record = policyState("p1");
         record->namedCounterDel("c3");
         record->namedCounterIs("c4", true);
         record->namedCounterIs("c0", true);
      });
      return reader;
   }

   Kel::Ptr<ChangingReader> reader;
};

TEST(CachingTest, NamedCounterWalkSurvivesChangesUnderIt) {
   Device device;
   auto sub = device.configure("p1");
   for (char const* name : {"c1", "c2", "c3"}) {
      sub->namedCounter().insert(name);
   }
   device.report("p1");
   auto show = Kel::make<ShowObjectWithReader>(device);
   show->cachePoliciesState();
   EXPECT_EQ(show->reader->asked, (std::vector<std::string>{"c1", "c2", "c4"}));
   auto const record = show->policyState("p1");
   EXPECT_TRUE(record->inputNamedCounters().contains("c4"));
   EXPECT_FALSE(record->inputNamedCounters().contains("c3"));
}

// A rule that names a field set not defined for its kind is found among many rules that name
// defined ones, whatever names the earlier rules left behind: a set of one kind or family does
// not stand for a set of the same name of another.
TEST(CachingTest, UndefinedFieldSetFoundAmongDefinedOnes) {
   using PolicyMap::ClassMapMatchOption;
   struct Rule {
      ClassMapMatchOption option;
      char const* prefixSet;
      char const* portSet;  // "" for none
   };
   struct Case {
      char const* what;
      std::vector<Rule> last;  // after 40 rules naming "s0".."s9" and "web", all defined
      bool undefined;
   };
   auto const v4 = ClassMapMatchOption::ipv4;
   auto const v6 = ClassMapMatchOption::ipv6;
   Case const cases[] = {
       {"only defined sets", {{v4, "s3", "web"}, {v6, "six", ""}}, false},
       {"a prefix set of neither family", {{v4, "s10", "web"}}, true},
       {"an IPv6 prefix set named by an IPv4 rule", {{v6, "six", ""}, {v4, "six", ""}}, true},
       {"an IPv4 prefix set named by an IPv6 rule", {{v6, "s3", ""}}, true},
       {"an L4-port set named as a prefix set", {{v4, "web", ""}}, true},
       {"a prefix set named as an L4-port set", {{v4, "s1", "s2"}}, true},
   };
   for (auto const& row : cases) {
      SCOPED_TRACE(row.what);
      Device device;
      auto const defineSet = [](auto& sets, char const* name) {
         sets.insertOrAssign(name, Kel::make<Classification::FieldSetIpPrefix>(name));
      };
      for (int set = 0; set < 10; ++set) {
         defineSet(device.fieldSets->fieldSetIpPrefix(), ("s" + std::to_string(set)).c_str());
      }
      defineSet(device.fieldSets->fieldSetIpv6Prefix(), "six");
      device.fieldSets->fieldSetL4Port().insertOrAssign(
          "web",
          Kel::make<Classification::FieldSet<Classification::L4PortFieldSetSubConfig>>("web"));
      auto sub = device.configure("p");
      auto pmapStatus = device.report("p");
      std::vector<Rule> rules;
      for (int rule = 0; rule < 40; ++rule) {
         static char const* const kSets[] = {"s0", "s1", "s2", "s3", "s4",
                                             "s5", "s6", "s7", "s8", "s9"};
         rules.push_back({v4, kSets[rule % 10], "web"});
      }
      rules.insert(rules.end(), row.last.begin(), row.last.end());
      for (std::uint32_t sequence = 0; sequence < rules.size(); ++sequence) {
         auto const& rule = rules[sequence];
         Kel::String const name("r" + std::to_string(sequence));
         auto filter = Kel::make<Classification::StructuredFilter>();
         filter->dstPrefixSets().insert(rule.prefixSet);
         if (*rule.portSet) {
            auto proto = Kel::make<Classification::ProtoField>();
            proto->port().emplace_back().srcL4PortFieldSets().insert(rule.portSet);
            filter->proto().insertOrAssign(Classification::ProtocolRange{6, 6}, proto);
         }
         auto match = Kel::make<PolicyMap::ClassMapMatch>(rule.option);
         match->structuredFilterIs(filter);
         auto classMap = Kel::make<PolicyMap::ClassMapConfig>(name);
         classMap->match().insertOrAssign(rule.option, match);
         sub->classMap().insertOrAssign(name, classMap);
         sub->rule().insertOrAssign(sequence, name);
         auto cmapStatus = Kel::make<PolicyMap::ClassMapStatus>(name);
         cmapStatus->matchs().insert(rule.option);
         pmapStatus->classMapStatus().insertOrAssign(name, cmapStatus);
      }
      auto show = Kel::make<ShowOverDevice>(device);
      show->cachePoliciesState();
      EXPECT_EQ(show->policyState("p")->undefinedFieldSet(), row.undefined);
   }
}

}  // namespace
