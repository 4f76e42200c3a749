// The factory arguments of each show request, and rendering with write failures reported.
#include "tpcli/CommandRunner.h"

#include <system_error>

#include "Kel/ActivityLock.h"
#include "tpcli/RecordsWriter.h"
#include "tpcli/StandardOutput.h"

namespace tpcli {

namespace {

struct ViewFlags {
   bool summary;
   bool errors;
   bool detail;
   bool counters;
};

ViewFlags flagsOf(PolicyView view) {
   return {view == PolicyView::summary, view == PolicyView::errors, view == PolicyView::detail,
           view == PolicyView::counters};
}

// The policy show objects' fifth flag is never set by these commands.
constexpr bool kFifthFlag = false;

class ShowCommandMaker {
 public:
   ShowCommandMaker(FactoryTable const& factories, StateLoader::DeviceState const& state)
       : factories_(factories), state_(state) {}

   Kel::Ptr<TrafficPolicyCli::ShowCommand> operator()(InterfaceRequest const& request) const {
      auto const flags = flagsOf(request.view);
      auto const& input = state_.interfaceInput;
      auto const& output = state_.interfaceOutput;
      return factories_.interface(
          state_.config, input.status, input.counter, Kel::String(request.policyName),
          flags.summary, flags.errors, flags.detail, flags.counters, kFifthFlag,
          state_.fieldSetConfig, state_.hwStatus, input.counterTable, output.status, output.counter,
          state_.intfConfigInput, state_.intfConfigOutput, state_.intfParamStatus,
          output.counterTable, request.direction == Direction::input,
          request.direction == Direction::output);
   }

   Kel::Ptr<TrafficPolicyCli::ShowCommand> operator()(CpuRequest const& request) const {
      auto const flags = flagsOf(request.view);
      auto const& cpu = state_.cpu;
      return factories_.cpu(state_.config, cpu.status, cpu.counter, Kel::String(request.policyName),
                            flags.summary, flags.errors, flags.detail, flags.counters, kFifthFlag,
                            state_.fieldSetConfig, state_.hwStatus, cpu.counterTable,
                            state_.vrfConfig, state_.allVrfConfig, state_.l3IntfStatusDir);
   }

   Kel::Ptr<TrafficPolicyCli::ShowCommand> operator()(PrefixFieldSetRequest const& request) const {
      return factories_.prefixFieldSet(state_.fieldSetConfig, Kel::String(request.name),
                                       request.ipv4, request.contains.has_value(),
                                       request.contains.value_or(Quoll::IpGenPrefix()),
                                       request.exact);
   }

   Kel::Ptr<TrafficPolicyCli::ShowCommand> operator()(L4PortFieldSetRequest const& request) const {
      return factories_.l4PortFieldSet(state_.fieldSetConfig, Kel::String(request.name),
                                       request.contains.has_value(),
                                       request.contains.value_or(Classification::PortRange()));
   }

   Kel::Ptr<TrafficPolicyCli::ShowCommand> operator()(VlanFieldSetRequest const& request) const {
      return factories_.vlanFieldSet(state_.fieldSetConfig, Kel::String(request.name),
                                     request.contains.has_value(),
                                     request.contains.value_or(Classification::VlanRange()));
   }

 private:
   FactoryTable const& factories_;
   StateLoader::DeviceState const& state_;
};

}  // namespace

Kel::Ptr<TrafficPolicyCli::ShowCommand> makeShowCommand(FactoryTable const& factories,
                                                        StateLoader::DeviceState const& state,
                                                        ShowRequest const& request) {
   return std::visit(ShowCommandMaker(factories, state), request);
}

namespace {

// Runs `work` on the model as every command does: holding the activity lock, with a failure to
// write reported as the command's error.
template <typename Work>
void onLockedModel(Work const& work) {
   Kel::ActivityLockGuard const lock(Kel::ActivityLock::instance());
   try {
      work();
   } catch (std::system_error const& error) {
      throw outputFailure(error.code().value());
   }
}

bool countsPerInterface(StateLoader::DirectionState const& direction) {
   return direction.status && direction.status->perInterfaceCounters();
}

// Sets the per-interface flags of every cached policy record through its generic attributes.
void markPerInterfaceCounting(TrafficPolicyCli::ShowCommand& command,
                              PerInterfaceCounting perInterface) {
   auto const policies = command.attribute("policyState");
   auto const* records = policies ? policies->asEntries() : nullptr;
   if (!records) {
      return;
   }
   for (auto const& entry : *records) {
      // The records belong to the show object, which lets its caller set these two flags.
      auto& record = const_cast<Kel::Entity&>(*entry.value.asEntity());
      record.attributeIs("countersPerInterfaceInput", Kel::Value(perInterface.input));
      record.attributeIs("countersPerInterfaceOutput", Kel::Value(perInterface.output));
   }
}

}  // namespace

PerInterfaceCounting perInterfaceCountingOf(StateLoader::DeviceState const& state,
                                            ShowRequest const& request) {
   auto const* interfaceRequest = std::get_if<InterfaceRequest>(&request);
   if (!interfaceRequest || interfaceRequest->view != PolicyView::counters) {
      return {};
   }
   return {countsPerInterface(state.interfaceInput), countsPerInterface(state.interfaceOutput)};
}

void renderShowCommand(TrafficPolicyCli::ShowCommand& command, int fd,
                       vellum::OutputFormat_t format, std::uint32_t revision,
                       PerInterfaceCounting perInterface) {
   onLockedModel([&] {
      if (perInterface.input || perInterface.output) {
         command.cacheState();
         markPerInterfaceCounting(command, perInterface);
      }
      command.render(static_cast<std::uint32_t>(fd), static_cast<std::uint32_t>(format), revision);
   });
}

void writeCachedRecords(TrafficPolicyCli::ShowCommand& command, int fd) {
   onLockedModel([&] {
      command.cacheState();
      writeRecords(command, fd);
   });
}

}  // namespace tpcli
