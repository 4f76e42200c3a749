// A stand-in for the show library in the front-end tests. It exports the factories under their
// real names, and its show objects write back the arguments they were given, with the render
// format and revision, as one JSON line; in text format $TPCLI_FAKE_LINES filler lines follow,
// for tests that need plenty of output. Handles are written as their addresses, so a test can tell
// which entity went into which argument, and snapshot stores by their content. A name
// "broken-invariant" fails an assertion. Its snapshot helpers (made by the real library's factory
// code) mark the store they are given with one rule snapshot ("fake-ledger" or "fake-pylon") that
// names their source and flag.
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

template <typename T>
std::uint64_t address(Handle<T> handle) {
   return reinterpret_cast<std::uintptr_t>(handle.get());
}

class ArgumentEcho final : public ShowCommand {
 public:
   explicit ArgumentEcho(json arguments) : arguments_(std::move(arguments)) {}

   Kel::TypeInfo const& fwkType() const override {
      static Kel::TypeInfo const info("ArgumentEcho", nullptr, {});
      return info;
   }

   void render(std::uint32_t fd, std::uint32_t fmt, std::uint32_t revision) override {
      KEL_ASSERT(arguments_.at("name") != "broken-invariant");
      arguments_["format"] = fmt;
      arguments_["revision"] = revision;
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
           {"config", address(config)},
           {"status", address(status)},
           {"counter", address(counter)},
           {"snapshots", snapshotsOf(counter)},
           {"summary", summary},
           {"errors", errors},
           {"detail", detail},
           {"counters", counters},
           {"fifthFlag", fifthFlag},
           {"fieldSetConfig", address(fieldSetConfig)},
           {"hwStatus", address(trafficPolicyHwStatus)},
           {"counterTable", address(counterTable)}};
}

json rangeArguments(std::string factory, Handle<Classification::FieldSetConfig> fieldSetConfig,
                    Kel::String const& fieldSetName, bool filter,
                    Classification::NumericalRange const& range) {
   return {{"factory", factory},
           {"name", fieldSetName.stringValue()},
           {"fieldSetConfig", address(fieldSetConfig)},
           {"filter", filter},
           {"low", range.low},
           {"high", range.high}};
}

}  // namespace

Kel::Ptr<ShowCommand> showTrafficPolicyInterfaceFactory(
    TRAFFIC_POLICY_CLI_BASE_ARGUMENTS, Handle<TrafficPolicy::Status> statusOutput,
    Handle<TrafficPolicy::Counter> counterOutput, Handle<PolicyMap::IntfConfig> intfConfigInput,
    Handle<PolicyMap::IntfConfig> intfConfigOutput,
    Handle<TrafficPolicy::TrafficPolicyIntfParamStatus> policyParamStatus,
    Handle<PolicyMap::Counters::PolicyMapTypeCounters> counterStatusOutput,
    bool filterInputPolicies, bool filterOutputPolicies) {
   auto arguments =
       baseArguments("interface", config, status, counter, policyName, summary, errors, detail,
                     counters, fifthFlag, fieldSetConfig, trafficPolicyHwStatus, counterTable);
   arguments.update(json{{"statusOutput", address(statusOutput)},
                         {"counterOutput", address(counterOutput)},
                         {"snapshotsOutput", snapshotsOf(counterOutput)},
                         {"intfConfigInput", address(intfConfigInput)},
                         {"intfConfigOutput", address(intfConfigOutput)},
                         {"intfParamStatus", address(policyParamStatus)},
                         {"counterStatusOutput", address(counterStatusOutput)},
                         {"filterInput", filterInputPolicies},
                         {"filterOutput", filterOutputPolicies}});
   return echo(std::move(arguments));
}

Kel::Ptr<ShowCommand> showTrafficPolicyCpuFactory(TRAFFIC_POLICY_CLI_BASE_ARGUMENTS,
                                                  Handle<PolicyMap::VrfConfig> vrfConfig,
                                                  Handle<Ip::AllVrfConfig> allVrfConfig,
                                                  Handle<L3::Intf::StatusDir> l3IntfStatusDir) {
   auto arguments =
       baseArguments("cpu", config, status, counter, policyName, summary, errors, detail, counters,
                     fifthFlag, fieldSetConfig, trafficPolicyHwStatus, counterTable);
   arguments.update(json{{"vrfConfig", address(vrfConfig)},
                         {"allVrfConfig", address(allVrfConfig)},
                         {"l3IntfStatusDir", address(l3IntfStatusDir)}});
   return echo(std::move(arguments));
}

Kel::Ptr<ShowCommand> showTrafficPolicyPrefixFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool ipv4, bool filterPrefix, Quoll::IpGenPrefix const& prefix, bool exact) {
   return echo({{"factory", "prefixFieldSet"},
                {"name", fieldSetName.stringValue()},
                {"fieldSetConfig", address(fieldSetConfig)},
                {"ipv4", ipv4},
                {"filter", filterPrefix},
                {"prefix", prefix.stringValue()},
                {"exact", exact}});
}

Kel::Ptr<ShowCommand> showTrafficPolicyL4PortFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool filterPorts, Classification::PortRange const& ports) {
   return echo(rangeArguments("l4PortFieldSet", fieldSetConfig, fieldSetName, filterPorts, ports));
}

Kel::Ptr<ShowCommand> showTrafficPolicyVlanFieldSetFactory(
    Handle<Classification::FieldSetConfig> fieldSetConfig, Kel::String const& fieldSetName,
    bool filterVlans, Classification::VlanRange const& vlans) {
   return echo(rangeArguments("vlanFieldSet", fieldSetConfig, fieldSetName, filterVlans, vlans));
}

Kel::TypeInfo const& TrafficPolicyLedgerCounterSnapshotHelper::fwkType() const {
   static Kel::TypeInfo const info("FakeLedgerSnapshotHelper", nullptr, {});
   return info;
}

void TrafficPolicyLedgerCounterSnapshotHelper::clearCounter() {
   counter_->snapshotIs({"fake-ledger", std::to_string(address(typeStatus()))}, {});
}

Kel::TypeInfo const& TrafficPolicyPylonCounterSnapshotHelper::fwkType() const {
   static Kel::TypeInfo const info("FakePylonSnapshotHelper", nullptr, {});
   return info;
}

void TrafficPolicyPylonCounterSnapshotHelper::clearCounter() {
   counter_->snapshotIs({"fake-pylon", std::to_string(address(typeCounters()))},
                        {perInterface_ ? 1U : 0U, 0});
}

}  // namespace TrafficPolicyCli
