// A stand-in for the show library in the front-end tests. It exports the factories under their
// real names, and its show objects write back what a test needs to see of their arguments (the
// factory, the policy name and the counter snapshots they were handed) as one JSON line; in text
// format $TPCLI_FAKE_LINES filler lines follow, for tests that need plenty of output. A name
// "broken-invariant" fails an assertion. Clears in the tests use the real library, so the snapshot
// helpers here do nothing.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>

#include "Kel/Assert.h"
#include "TrafficPolicyCli/Factories.h"
#include "vellum/OutputFormat.h"
#include "vellum/SigIntException.h"
#include "vellum/VellumBuffer.h"

namespace TrafficPolicyCli {

namespace {

using nlohmann::json;

class ArgumentEcho final : public ShowCommand {
 public:
   explicit ArgumentEcho(json arguments) : arguments_(std::move(arguments)) {}

   Kel::TypeInfo const& fwkType() const override {
      static Kel::TypeInfo const info("ArgumentEcho", nullptr, {});
      return info;
   }

   void render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t) override {
      KEL_ASSERT(arguments_.at("name") != "broken-invariant");
      try {
         write(static_cast<int>(fd),
               fmt == static_cast<std::uint32_t>(vellum::OutputFormat_t::text));
      } catch (vellum::SigIntException const& stop) {
         std::printf("exiting %s\n", stop.what());
      }
   }

 private:
   void write(int fd, bool withFiller) const {
      vellum::VellumBuffer buffer(fd, 65536, 1);
      buffer.append(arguments_.dump() + "\n");
      auto const* lines = std::getenv("TPCLI_FAKE_LINES");
      for (long line = 0, count = withFiller && lines ? std::atol(lines) : 0; line < count;
           ++line) {
         buffer.append("filler line " + std::to_string(line) + "\n");
      }
   }

   json arguments_;
};

Kel::Ptr<ShowCommand> echo(json arguments) {
   return Kel::make<ArgumentEcho>(std::move(arguments));
}

// The snapshots of a store: "POLICY/NAME" to the instance id and packets (and bytes).
json snapshotsOf(Handle<TrafficPolicy::Counter> counter) {
   json rules = json::object();
   json named = json::object();
   for (auto const& [key, version] : counter->snapshot()) {
      rules[key.policyName.stringValue() + "/" + key.className.stringValue()] = {version.instanceId,
                                                                                 version.pkts};
   }
   for (auto const& [key, version] : counter->namedSnapshot()) {
      named[key.policyName.stringValue() + "/" + key.counterName.stringValue()] = {
          version->instanceId(), version->totalCount().packets, version->totalCount().bytes};
   }
   return {{"rules", rules}, {"named", named}};
}

json baseArguments(std::string factory, TRAFFIC_POLICY_CLI_BASE_ARGUMENTS) {
   return {{"factory", factory},
           {"name", policyName.stringValue()},
           {"snapshots", snapshotsOf(counter)}};
}

Kel::Ptr<ShowCommand> fieldSetEcho(char const* factory, Kel::String const& fieldSetName) {
   return echo({{"factory", factory}, {"name", fieldSetName.stringValue()}});
}

}  // namespace

Kel::Ptr<ShowCommand> showTrafficPolicyInterfaceFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                        TRAFFIC_POLICY_CLI_INTERFACE_ARGUMENTS) {
   auto arguments = baseArguments("interface", TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES);
   arguments["snapshotsOutput"] = snapshotsOf(counterOutput);
   return echo(std::move(arguments));
}

Kel::Ptr<ShowCommand> showTrafficPolicyCpuFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                  TRAFFIC_POLICY_CLI_CPU_ARGUMENTS) {
   return echo(baseArguments("cpu", TRAFFIC_POLICY_CLI_BASE_ARGUMENT_NAMES));
}

Kel::Ptr<ShowCommand> showTrafficPolicyPrefixFieldSetFactory(Handle<Classification::FieldSetConfig>,
                                                             Kel::String const& fieldSetName, bool,
                                                             bool, Quoll::IpGenPrefix const&,
                                                             bool) {
   return fieldSetEcho("prefixFieldSet", fieldSetName);
}

Kel::Ptr<ShowCommand> showTrafficPolicyL4PortFieldSetFactory(Handle<Classification::FieldSetConfig>,
                                                             Kel::String const& fieldSetName, bool,
                                                             Classification::PortRange const&) {
   return fieldSetEcho("l4PortFieldSet", fieldSetName);
}

Kel::Ptr<ShowCommand> showTrafficPolicyVlanFieldSetFactory(Handle<Classification::FieldSetConfig>,
                                                           Kel::String const& fieldSetName, bool,
                                                           Classification::VlanRange const&) {
   return fieldSetEcho("vlanFieldSet", fieldSetName);
}

Kel::TypeInfo const& TrafficPolicyLedgerCounterSnapshotHelper::fwkType() const {
   static Kel::TypeInfo const info("FakeLedgerSnapshotHelper", nullptr, {});
   return info;
}

void TrafficPolicyLedgerCounterSnapshotHelper::clearCounter() {}

Kel::TypeInfo const& TrafficPolicyPylonCounterSnapshotHelper::fwkType() const {
   static Kel::TypeInfo const info("FakePylonSnapshotHelper", nullptr, {});
   return info;
}

void TrafficPolicyPylonCounterSnapshotHelper::clearCounter() {}

}  // namespace TrafficPolicyCli
