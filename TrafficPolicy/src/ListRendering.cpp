// Ranges, field-set sizes and name lists as the match renderers write them.
#include "ListRendering.h"

namespace TrafficPolicyCli {

namespace {

// L4-port and VLAN field sets have one count each: " (Ports: 3)" and "numPorts": 3.
void writeEntryCount(vellum::RendererV2& renderer, CountedFieldSetState const& fieldSet,
                     std::string_view textLabel, vellum::JsonKey jsonKey, bool inText) {
   renderer._addJsonKeyValuePair(jsonKey, fieldSet.totalEntries());
   if (inText) {
      renderer.writeString(" (");
      renderer.writeString(textLabel);
      renderer.writeString(fieldSet.totalEntries());
      renderer.writeString(")");
   }
}

}  // namespace

void writeRangeTextOnly(vellum::RendererV2& renderer, Classification::NumericalRange const& range,
                        std::string_view fieldName, PolicyMap::ClassMapMatchOption option) {
   if (range.low != range.high) {
      renderer.writeString(range.low);
      renderer.writeString("-");
      renderer.writeString(range.high);
      return;
   }
   auto const name = numericalValueToStrFor(fieldName, range.low, option);
   if (name.empty()) {
      renderer.writeString(range.low);
   } else {
      renderer.writeString(name);
   }
}

void writeRangeEntry(vellum::RendererV2& renderer, Classification::NumericalRange const& range) {
   renderer.numberPair("", "low", range.low, "high", range.high);
}

void writeRangeObject(vellum::RendererV2& renderer, vellum::JsonKey key,
                      Classification::NumericalRange const& range) {
   renderer.numberPair(key, "low", range.low, "high", range.high);
}

void writeFieldSetSize(vellum::RendererV2& renderer, PrefixFieldSetState const& fieldSet,
                       bool inText) {
   renderer._addJsonKeyValuePair("numPrefixes", fieldSet.totalAcceptPrefixes());
   renderer._addJsonKeyValuePair("numExceptPrefixes", fieldSet.totalExceptPrefixes());
   if (inText) {
      renderer.writeString(" (Prefixes: ");
      renderer.writeString(fieldSet.totalAcceptPrefixes());
      renderer.writeString(", Except prefixes: ");
      renderer.writeString(fieldSet.totalExceptPrefixes());
      renderer.writeString(")");
   }
}

void writeFieldSetSize(vellum::RendererV2& renderer, L4PortFieldSetState const& fieldSet,
                       bool inText) {
   writeEntryCount(renderer, fieldSet, "Ports: ", "numPorts", inText);
}

void writeFieldSetSize(vellum::RendererV2& renderer, VlanFieldSetState const& fieldSet,
                       bool inText) {
   writeEntryCount(renderer, fieldSet, "VLANs: ", "numVlans", inText);
}

void renderFieldSetNames(vellum::RendererV2& renderer, vellum::JsonKey jsonKey,
                         Classification::NameSet const& names) {
   renderer.list(jsonKey, [&] {
      if (renderer.isJson()) {
         for (auto const& name : names) {
            renderer._addJsonKeyValuePair("", name);
         }
      }
   });
}

}  // namespace TrafficPolicyCli
