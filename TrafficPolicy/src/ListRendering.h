// How the match renderers write lists of values. In text a label heads the first value and every
// later value stands on its own line in the same column; in JSON the values form one list. Ranges
// and field-set references, the two kinds of value that most criteria hold, are written here once.
#pragma once

#include <cstdint>
#include <string_view>

#include "Classification/StructuredFilter.h"
#include "TrafficPolicyCli/FieldSetState.h"
#include "TrafficPolicyCli/SharedFormatting.h"

namespace TrafficPolicyCli {

// `writeItem(item)` writes one value: its text (ending the line) and its JSON list element. An
// empty list still shows its label on a line of its own.
template <typename Items, typename WriteItem>
void renderLabelledList(vellum::RendererV2& renderer, std::string_view label,
                        vellum::JsonKey jsonKey, std::uint32_t indent, Items const& items,
                        WriteItem&& writeItem) {
   renderer.list(jsonKey, [&] {
      auto const column = writeHeading(renderer, indent, label);
      bool first = true;
      for (auto const& item : items) {
         if (!first) {
            writeIndent(renderer, column);
         }
         first = false;
         writeItem(item);
      }
      if (first) {
         renderer.eol();
      }
   });
}

// Text of a range: "low-high", or for a single value its name for the field when it has one
// (numericalValueToStrFor), else the number. Only the test of the format is in line: JSON, which
// has no use for the text, pays no call.
void writeRangeTextOnly(vellum::RendererV2& renderer, Classification::NumericalRange const& range,
                        std::string_view fieldName, PolicyMap::ClassMapMatchOption option);
inline void writeRangeText(vellum::RendererV2& renderer,
                           Classification::NumericalRange const& range, std::string_view fieldName,
                           PolicyMap::ClassMapMatchOption option) {
   if (renderer.isText()) {
      writeRangeTextOnly(renderer, range, fieldName, option);
   }
}
// JSON of a range, {"low": n, "high": n}: as a list element, or under a key.
void writeRangeEntry(vellum::RendererV2& renderer, Classification::NumericalRange const& range);
void writeRangeObject(vellum::RendererV2& renderer, vellum::JsonKey key,
                      Classification::NumericalRange const& range);

// The size of a defined field set: in JSON always, in text (in brackets after its name) only
// when `inText` is set.
void writeFieldSetSize(vellum::RendererV2& renderer, PrefixFieldSetState const& fieldSet,
                       bool inText);
void writeFieldSetSize(vellum::RendererV2& renderer, L4PortFieldSetState const& fieldSet,
                       bool inText);
void writeFieldSetSize(vellum::RendererV2& renderer, VlanFieldSetState const& fieldSet,
                       bool inText);

// One reference to a field set by name: "field-set NAME" with its size, or the note that it has
// not been defined; in JSON an object with "name" and "undefined": true or the size.
// `entry` is the set's entry, null when it is not defined.
template <typename Entry>
void writeFieldSetReference(vellum::RendererV2& renderer, Kel::String const& name,
                            Entry const* entry, bool showCounts) {
   renderer.listEntry([&] {
      renderer._addJsonKeyValuePair("name", name);
      renderer.writeString("field-set ");
      renderer.writeString(name);
      if (entry) {
         writeFieldSetSize(renderer, *entry, showCounts);
      } else {
         renderer._addJsonKeyValuePair("undefined", true);
         renderer.writeString(" (field-set '");
         renderer.writeString(name);
         renderer.writeString("' has not been defined)");
      }
      renderer.eol();
   });
}

// The labelled list of field sets that a criterion names, looked up among the `defined` ones of
// their kind, one of the maps of `usage`. Names come from an ordered set, so they are already in
// byte order.
template <typename Entry>
void renderFieldSetReferences(vellum::RendererV2& renderer, std::string_view label,
                              vellum::JsonKey jsonKey, std::uint32_t indent,
                              Classification::NameSet const& names, FieldSetState const& usage,
                              FieldSetState::EntryMap<Entry> const& defined, bool showCounts) {
   renderLabelledList(renderer, label, jsonKey, indent, names, [&](Kel::String const& name) {
      writeFieldSetReference(renderer, name, usage.definedEntry(defined, name), showCounts);
   });
}

// The names alone, as a JSON list of strings for readers of the older form; nothing in text.
void renderFieldSetNames(vellum::RendererV2& renderer, vellum::JsonKey jsonKey,
                         Classification::NameSet const& names);

}  // namespace TrafficPolicyCli
