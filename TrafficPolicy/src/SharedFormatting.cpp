// Indentation, headings and number names shared by the renderers.
#include "TrafficPolicyCli/SharedFormatting.h"

#include "Acl/AclNameMaps.h"
#include "Kel/Assert.h"

namespace TrafficPolicyCli {

void writeIndent(vellum::RendererV2& renderer, std::uint32_t blanks) {
   renderer.writeString(Strix::JustifyLeft<char const*>("", blanks, ' '));
}

std::uint32_t writeHeading(vellum::RendererV2& renderer, std::uint32_t indent,
                           std::string_view label) {
   writeIndent(renderer, indent);
   renderer.writeString(label);
   renderer.addFrill(": ");
   return indent + static_cast<std::uint32_t>(label.size()) + 2;
}

Kel::String numericalValueToStrFor(std::string_view fieldName, std::uint32_t value,
                                   PolicyMap::ClassMapMatchOption matchOption) {
   auto const names = Acl::AclNameMaps::instance();
   if (fieldName == "DSCP") {
      return names->dscpName(value);
   }
   if (fieldName != "Protocol") {
      return {};
   }
   switch (matchOption) {
      case PolicyMap::ClassMapMatchOption::ipv4:
         return names->ipProtoName(value);
      case PolicyMap::ClassMapMatchOption::ipv6:
         return names->ip6ProtoName(value);
      case PolicyMap::ClassMapMatchOption::mac:
      case PolicyMap::ClassMapMatchOption::mpls:
         break;
   }
   KEL_ASSERT(false && "Unrecognized match option");
}

}  // namespace TrafficPolicyCli
