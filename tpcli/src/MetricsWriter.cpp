// The OpenMetrics exposition of the counters. Every family's samples must stand together, so the
// state is walked once per family; each walk is a direct lookup per rule and counter name.
#include "tpcli/MetricsWriter.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "Kel/ActivityLock.h"
#include "PolicyMap/CounterStatusReader.h"
#include "TrafficPolicy/TrafficPolicyConfig.h"

namespace tpcli {

namespace {

using namespace std::string_view_literals;

enum class Source { rule, namedCounter, namedCounterPerInterface };
enum class Quantity { packets, bytes };

struct Family {
   std::string_view name;
   Source source;
   Quantity quantity;
   std::string_view help;
};

constexpr std::array kFamilies{
    Family{"traffic_policy_rule_packets", Source::rule, Quantity::packets,
           "Packets matched by a rule that counts with its own counter."},
    Family{"traffic_policy_rule_bytes", Source::rule, Quantity::bytes,
           "Bytes matched by a rule that counts with its own counter."},
    Family{"traffic_policy_named_counter_packets", Source::namedCounter, Quantity::packets,
           "Packets counted by a named counter, over all interfaces."},
    Family{"traffic_policy_named_counter_bytes", Source::namedCounter, Quantity::bytes,
           "Bytes counted by a named counter, over all interfaces."},
    Family{"traffic_policy_named_counter_interface_packets", Source::namedCounterPerInterface,
           Quantity::packets,
           "Packets counted by a named counter on one interface, where the direction keeps "
           "named counters per interface."},
    Family{"traffic_policy_named_counter_interface_bytes", Source::namedCounterPerInterface,
           Quantity::bytes,
           "Bytes counted by a named counter on one interface, where the direction keeps named "
           "counters per interface."},
};

// Every family's help ends with how a clear relates to it, where a reader of the collector's
// catalogue finds it.
constexpr std::string_view kClearNote =
    " A clear never resets it: it records a snapshot that the show commands subtract, so the "
    "value only grows until the device recreates the counter.";

struct Direction {
   std::string_view label;
   StateLoader::DirectionState const& state;
   Kel::Ptr<PolicyMap::PolicyMapCounterStatusReaderBase const> reader;
};

// The same back end as the show commands and the clear read.
Kel::Ptr<PolicyMap::PolicyMapCounterStatusReaderBase const> readerOf(
    StateLoader::DeviceState const& state, StateLoader::DirectionState const& direction) {
   if (TrafficPolicy::counterBackEndOf(state.hwStatus.get()) ==
       TrafficPolicy::CounterBackEnd::pylon) {
      return Kel::make<PolicyMap::PolicyMapPylonCounterStatusReader>(direction.counterTable);
   }
   return Kel::make<PolicyMap::PolicyMapLedgerCounterStatusReader>(direction.status);
}

class Exposition {
 public:
   Exposition(StateLoader::DeviceState const& state, vellum::VellumBuffer& out)
       : state_(state),
         out_(out),
         directions_{
             Direction{"input", state.interfaceInput, readerOf(state, state.interfaceInput)},
             Direction{"output", state.interfaceOutput, readerOf(state, state.interfaceOutput)},
             Direction{"cpu", state.cpu, readerOf(state, state.cpu)}} {}

   void write() {
      for (auto const& family : kFamilies) {
         writeFamily(family);
      }
      out_.append("# EOF\n"sv);
   }

 private:
   void writeFamily(Family const& family) {
      family_ = &family;
      out_.append("# TYPE "sv);
      out_.append(family.name);
      out_.append(" counter\n# UNIT "sv);
      out_.append(family.name);
      out_.append(family.quantity == Quantity::packets ? " packets\n# HELP "sv
                                                       : " bytes\n# HELP "sv);
      out_.append(family.name);
      out_.append(' ');
      out_.append(family.help);
      out_.append(kClearNote);
      out_.append('\n');
      for (auto const& direction : directions_) {
         writeDirection(direction);
      }
   }

   void writeDirection(Direction const& direction) {
      auto const& status = direction.state.status;
      if (!status || (family_->quantity == Quantity::bytes && !status->byteCountersSupported())) {
         return;
      }
      if (family_->source == Source::namedCounterPerInterface && !status->perInterfaceCounters()) {
         return;
      }
      direction_ = &direction;
      for (auto const& [policyName, policyStatus] : status->policyMapStatus()) {
         writePolicy(policyName, *policyStatus);
      }
   }

   // Policies that are not configured are left out, as the counters views leave them out.
   void writePolicy(Kel::String const& policyName, PolicyMap::PolicyMapStatus const& policyStatus) {
      auto const* config = state_.config->policyMapConfig().lookup(policyName);
      auto const subConfig = config ? (*config)->currCfg() : nullptr;
      if (!subConfig) {
         return;
      }
      key_.policyName = policyName;
      auto const& reader = *direction_->reader;
      if (family_->source == Source::rule) {
         for (auto const& [ruleName, ruleStatus] : policyStatus.classMapStatus()) {
            if (auto const data = reader.classCounterData(key_, ruleName)) {
               writeSample("rule"sv, ruleName, {}, data->count());
            }
         }
         return;
      }
      for (auto const& counterName : subConfig->namedCounter()) {
         auto const data = reader.namedCounterData(key_, counterName);
         if (!data) {
            continue;
         }
         if (family_->source == Source::namedCounter) {
            writeSample("counter"sv, counterName, {}, data->count());
            continue;
         }
         for (auto const& [intf, count] : data->perIntfCount()) {
            writeSample("counter"sv, counterName, intf.name(), count);
         }
      }
   }

   // NAME_total{policy="...",direction="...",KIND="..."[,interface="..."]} VALUE
   void writeSample(std::string_view kind, std::string_view name, std::string_view interface,
                    PolicyMap::PacketAndByte const& count) {
      out_.append(family_->name);
      out_.append("_total{policy=\""sv);
      appendLabelValue(key_.policyName);
      out_.append("\",direction=\""sv);
      out_.append(direction_->label);
      out_.append("\","sv);
      out_.append(kind);
      out_.append("=\""sv);
      appendLabelValue(name);
      if (!interface.empty()) {
         out_.append("\",interface=\""sv);
         appendLabelValue(interface);
      }
      out_.append("\"} "sv);
      appendNumber(family_->quantity == Quantity::packets ? count.packets : count.bytes);
      out_.append('\n');
   }

   // Backslash, double quote and line feed are the three characters a label value escapes.
   void appendLabelValue(std::string_view value) {
      for (auto special = value.find_first_of("\\\"\n"sv); special != std::string_view::npos;
           special = value.find_first_of("\\\"\n"sv)) {
         out_.append(value.substr(0, special));
         out_.append(value[special] == '\n'  ? "\\n"sv
                     : value[special] == '"' ? "\\\""sv
                                             : "\\\\"sv);
         value.remove_prefix(special + 1);
      }
      out_.append(value);
   }

   void appendNumber(std::uint64_t value) {
      constexpr std::size_t kDigits = 20;
      auto* const at = out_.reserve(kDigits);
      auto const end = std::to_chars(at, at + kDigits, value).ptr;
      out_.commit(static_cast<std::size_t>(end - at));
   }

   StateLoader::DeviceState const& state_;
   vellum::VellumBuffer& out_;
   std::array<Direction, 3> directions_;
   Family const* family_ = nullptr;
   Direction const* direction_ = nullptr;
   PolicyMap::PolicyMapSmKey key_;
};

}  // namespace

void writeMetrics(StateLoader::DeviceState const& state, vellum::VellumBuffer& out) {
   Kel::ActivityLockGuard const lock(Kel::ActivityLock::instance());
   Exposition(state, out).write();
}

}  // namespace tpcli
