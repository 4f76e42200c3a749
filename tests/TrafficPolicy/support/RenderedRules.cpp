#include "RenderedRules.h"

#include <stdexcept>

#include "StateLoader/Loader.h"
#include "TrafficPolicyCli/ShowTrafficPolicyCpu.h"
#include "support/CapturedOutput.h"
#include "support/TempStateFiles.h"

namespace rendering_test {

namespace {

StateLoader::DeviceState load(std::string const& state) {
   testing_support::parseJson(state);
   testing_support::TempStateFiles const files;
   auto loaded = StateLoader::loadState(files.write("state.json", state));
   if (!loaded) {
      throw std::runtime_error(loaded.reason());
   }
   return std::move(loaded).value();
}

}  // namespace

CachedPolicy cachePolicyOf(std::string const& state) {
   auto const s = load(state);
   auto show = Kel::make<TrafficPolicyCli::ShowTrafficPolicyCpu>(
       s.config, s.cpu.status, s.cpu.counter, Kel::String(), false, false, true, false, false,
       s.fieldSetConfig, s.hwStatus, s.cpu.counterTable, s.vrfConfig, s.allVrfConfig,
       s.l3IntfStatusDir);
   show->cacheState();
   auto record = show->policyState("p");
   if (!record) {
      throw std::runtime_error("policy p was not cached");
   }
   return {show, record};
}

RenderedRules renderRulesOf(std::string const& state, RecordChange const& change) {
   auto const [show, record] = cachePolicyOf(state);
   change(*record);
   // Structured bindings are named in init-captures: clang 14 cannot capture them.
   auto const renderIn = [&, &show = show, &record = record](vellum::OutputFormat_t format) {
      auto const context = vellum::outputContext(format);
      return testing_support::render(context, [&](vellum::RendererV2& renderer) {
         renderer._startJsonList("rules");
         show->renderRules(&renderer, record, 4);
         renderer.endJsonList();
      });
   };
   return {renderIn(vellum::OutputFormat_t::text),
           testing_support::parseJson(renderIn(vellum::OutputFormat_t::json))["rules"]};
}

std::string ruleState(RuleSpec const& rule) {
   std::string state = R"({
      "fieldSets": {
         "ipv4Prefix": {"fs1": {"prefixes": ["10.0.0.0/8", "172.16.0.0/12", "192.168.0.0/16"],
                                "exceptPrefixes": ["10.1.0.0/16"]}},
         "ipv6Prefix": {"v6set": {"prefixes": ["2001:db8::/32", "2001:db9::/32"]}},
         "l4Port": {"web": {"ports": ["80", "443", "8080"]}},
         "vlan": {"guest": {"vlans": ["300-309"]}}
      },
      "trafficPolicies": {"p": {"namedCounters": ["c1"], "rules": {"r1": {"sequence": 10,)";
   state += R"( "match": {")" + std::string(rule.option) + R"(": )" + std::string(rule.match);
   state += R"(}, "actions": )" + std::string(rule.actions) + "}}}},";
   state += R"( "status": {"cpu": {"policies": {"p": {"rules": {"r1": [")" +
            std::string(rule.option) + R"("]})";
   if (!rule.policyStatus.empty()) {
      state += ", " + std::string(rule.policyStatus);
   }
   state += "}}}}}";
   return state;
}

}  // namespace rendering_test
