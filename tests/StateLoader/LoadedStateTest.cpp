// What a loaded state holds where no show command tells: rules kept by sequence number, states
// read through a pipe or ending anywhere in a page, and live counters placed where the hardware
// flag says. Every key of the format shows its effect in the golden and rendering cases.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "Classification/StructuredFilter.h"
#include "PolicyMap/CounterStatusReader.h"
#include "StateLoader/Loader.h"
#include "support/CapturedOutput.h"
#include "support/TempStateFiles.h"

namespace {

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

   std::filesystem::path const& folder() const { return files_.folder(); }
   // Writes the text as the state file and returns its path.
   std::string written(std::string_view text) const { return files_.write("state.json", text); }

 private:
   testing_support::TempStateFiles files_;
};

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
   EXPECT_EQ(contents.namedCounter().size(), 2u);
   EXPECT_TRUE(contents.namedCounter().contains("hits"));

   auto const& late = *contents.classMap().lookup("late");
   auto const& v6 = *late->match().lookup(ClassMapMatchOption::ipv6);
   EXPECT_EQ(v6->option(), ClassMapMatchOption::ipv6);
   EXPECT_EQ(v6->structuredFilter()->addressFamily(), Quoll::AddressFamily::ipv6);
   EXPECT_TRUE((*contents.classMap().lookup("early"))->match().empty());
   EXPECT_TRUE(contents.classAction().contains("early"));
   EXPECT_FALSE(contents.classAction().contains("late"));
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
