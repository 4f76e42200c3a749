// Number names, name lists and the granularity line shared by the renderers.
#include "TrafficPolicyCli/SharedFormatting.h"

#include <array>
#include <iterator>

#include "Acl/AclNameMaps.h"
#include "Kel/Assert.h"

namespace TrafficPolicyCli {

namespace {

// The names of one map by number, for every number a protocol or DSCP field can hold. Made once
// from the platform's map, which never changes and lives as long as the process, so that a rule's
// value finds its name with one load and the name is handed out as a view of the map's string.
class NumberNames {
 public:
   explicit NumberNames(Acl::AclNameMaps::NameMap const& map) {
      for (auto const& [number, name] : map) {
         KEL_ASSERT(number < names_.size());
         names_[number] = name.view();
      }
   }

   std::string_view operator[](std::uint32_t number) const noexcept {
      return number < names_.size() ? names_[number] : std::string_view();
   }

 private:
   // An IP protocol number is one byte, a DSCP value six bits.
   std::array<std::string_view, 256> names_{};
};

Acl::AclNameMaps const& nameMaps() {
   static Kel::Ptr<Acl::AclNameMaps const> const maps = Acl::AclNameMaps::instance();
   return *maps;
}

}  // namespace

std::string_view numericalValueToStrFor(std::string_view fieldName, std::uint32_t value,
                                        PolicyMap::ClassMapMatchOption matchOption) {
   // Each table is reached only for its field: a single value of any other field (ports above
   // all) costs two comparisons of the field's name and no guard of a table.
   if (fieldName == "DSCP") {
      static NumberNames const dscpNames(nameMaps().dscp());
      return dscpNames[value];
   }
   if (fieldName != "Protocol") {
      return {};
   }
   switch (matchOption) {
      case PolicyMap::ClassMapMatchOption::ipv4: {
         static NumberNames const ipProtoNames(nameMaps().ipProto());
         return ipProtoNames[value];
      }
      case PolicyMap::ClassMapMatchOption::ipv6: {
         static NumberNames const ip6ProtoNames(nameMaps().ip6Proto());
         return ip6ProtoNames[value];
      }
      case PolicyMap::ClassMapMatchOption::mac:
      case PolicyMap::ClassMapMatchOption::mpls:
         break;
   }
   KEL_ASSERT(false && "Unrecognized match option");
}

void renderListEntry(vellum::RendererV2& renderer, std::string_view label, std::string_view jsonKey,
                     Kel::OrderedMap<Kel::String, bool> const& names, bool showAll,
                     bool printText) {
   constexpr std::size_t kShownNames = 3;
   bool const inText = printText && renderer.isText();
   renderer.list(jsonKey, [&] {
      if (inText) {
         writeIndent(renderer, kListIndent);
         renderer.writeString(label);
      }
      std::size_t count = 0;
      for (auto position = names.begin(); position != names.end(); ++position) {
         auto const& name = position->first;
         renderer._addJsonKeyValuePair("", name);
         ++count;
         if (!inText) {
            continue;
         }
         if (showAll || count <= kShownNames) {
            renderer.writeString(name);
            if (std::next(position) != names.end()) {
               renderer.addFrill(", ");
            }
         } else if (count == kShownNames + 1) {
            renderer.addFrill("...");
         }
      }
   });
   if (inText) {
      renderer.eol();
   }
}

void renderCounterGranularity(
    vellum::RendererV2& renderer,
    Kel::Ptr<TrafficPolicy::TrafficPolicyIntfParamStatus const> const& intfParamStatus,
    bool ingress) {
   if (!intfParamStatus) {
      return;
   }
   auto const granularity = ingress ? intfParamStatus->ingressCounterGranularity()
                                    : intfParamStatus->egressCounterGranularity();
   std::string_view const jsonKey =
       ingress ? "ingressCounterGranularity" : "egressCounterGranularity";
   std::string_view shown;
   switch (granularity) {
      case TrafficPolicy::counterNotEnabled:
         renderer.writeString("Counter granularity: counter not enabled");
         renderer.eol();
         return;
      case TrafficPolicy::counterPerPolicy:
         shown = "per-policy";
         break;
      case TrafficPolicy::counterPerInterface:
         shown = "per-interface";
         break;
      default:
         return;
   }
   renderer.writeString("Counter granularity: ");
   renderer.writeString(shown);
   renderer.eol();
   renderer._addJsonKeyValuePair(jsonKey, shown);
}

}  // namespace TrafficPolicyCli
