// The errors view's installation errors: one "NAME (error text)" line per failed interface or VRF.
#include <string>

#include "TrafficPolicyCli/PolicyViews.h"
#include "TrafficPolicyCli/Trace.h"

namespace TrafficPolicyCli {

namespace {

template <typename Errors>
void renderErrorEntries(vellum::RendererV2* renderer, Kel::String const& jsonKey,
                        Errors const& errors, std::uint32_t indent, bool printText) {
   renderer->list(jsonKey.view(), [&] {
      std::string entry;  // reused, so that entries cost no allocation once it has grown
      for (auto const& [name, errorText] : errors) {
         if (renderer->isJson()) {
            entry.assign(name.view()).append(" (").append(errorText.view()).append(")");
            renderer->_addJsonKeyValuePair("", entry);
         } else if (printText) {
            writeIndent(*renderer, indent);
            renderer->writeString(name);
            renderer->writeString(" (");
            renderer->writeString(errorText);
            renderer->writeString(")");
            renderer->eol();
         }
      }
   });
}

}  // namespace

void renderInterfaceInstallErrors(vellum::RendererV2* renderer, Kel::String const& jsonKey,
                                  PolicyStateInterface::PtrConst const&,
                                  InterfaceInstallError::PtrConst const& installError,
                                  std::uint32_t indent, bool printText) {
   if (!installError) {
      TP_TRACE(8) << "No installation errors to render";
      return;
   }
   renderErrorEntries(renderer, jsonKey, installError->intfError(), indent, printText);
}

void renderCpuInstallErrors(vellum::RendererV2* renderer, Kel::String const& jsonKey,
                            PolicyStateCpu::PtrConst const& policyStateCpu,
                            PolicyMap::ClassMapMatchOption matchOption, std::uint32_t indent) {
   auto const* installError = policyStateCpu->installErrorColl().lookup(matchOption);
   if (!installError) {
      TP_TRACE(8) << "No installation errors to render";
      return;
   }
   renderErrorEntries(renderer, jsonKey, (*installError)->vrfError(), indent, true);
}

}  // namespace TrafficPolicyCli
