// The fixed table from a match criterion's text label to its JSON key. Renderers that take only
// a label find the key here, so a label and its key are written down once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "vellum/JsonKey.h"

namespace TrafficPolicyCli {

struct CliMapRow {
   std::string_view label;
   std::string_view jsonName;
};

// Renderers look a key up for nearly every line they write, so the rows are indexed by the length
// of their label: a lookup compares the label with the two or three rows of its length only.
class CliMap {
 public:
   static constexpr std::size_t kRows = 21;
   static constexpr std::size_t kMaxLabelLength = 63;

   constexpr explicit CliMap(std::array<CliMapRow, kRows> const& rows) : rows_(rows) {
      for (auto const& row : rows_) {
         if (row.label.size() > kMaxLabelLength) {
            throw "a cliMap label is longer than kMaxLabelLength";
         }
         ++firstOfLength_[row.label.size() + 1];
      }
      for (std::size_t length = 1; length < firstOfLength_.size(); ++length) {
         firstOfLength_[length] += firstOfLength_[length - 1];
      }
      auto next = firstOfLength_;
      for (std::size_t index = 0; index < kRows; ++index) {
         byLength_[next[rows_[index].label.size()]++] = static_cast<std::uint8_t>(index);
      }
   }

   // The JSON key of a label, or null when the table has none.
   constexpr std::string_view const* operator[](std::string_view label) const noexcept {
      if (label.size() > kMaxLabelLength) {
         return nullptr;
      }
      for (auto place = firstOfLength_[label.size()]; place < firstOfLength_[label.size() + 1];
           ++place) {
         auto const& row = rows_[byLength_[place]];
         if (row.label == label) {
            return &row.jsonName;
         }
      }
      return nullptr;
   }
   constexpr std::array<CliMapRow, kRows> const& rows() const noexcept { return rows_; }

 private:
   std::array<CliMapRow, kRows> rows_;
   // Row numbers ordered by label length; those of length n start at firstOfLength_[n].
   std::array<std::uint8_t, kRows> byLength_{};
   std::array<std::uint8_t, kMaxLabelLength + 2> firstOfLength_{};
};

// A constant, so that the renderers' labels find their keys when the library is compiled.
inline constexpr CliMap cliMap({{
    {"Source prefix", "srcPrefixes"},
    {"Source prefix (longest prefix match)", "srcLpmPrefixes"},
    {"Source prefix field-set", "srcPrefixSets"},
    {"Destination prefix", "destPrefixes"},
    {"Destination prefix (longest prefix match)", "destLpmPrefixes"},
    {"Destination prefix field-set", "destPrefixSets"},
    {"Protocol", "protocols"},
    {"Destination port", "destPorts"},
    {"Destination port field-set", "destL4PortFieldSets"},
    {"Source port", "srcPorts"},
    {"Source port field-set", "srcL4PortFieldSets"},
    {"ICMP type", "icmpTypes"},
    {"ICMP code", "icmpCodes"},
    {"IP length", "ipLengths"},
    {"Fragment: offset", "fragmentOffsets"},
    {"DSCP", "dscps"},
    {"TTL", "ttls"},
    {"TCP flags", "tcpFlags"},
    {"Set DSCP", "setDscp"},
    {"Set Traffic Class", "setTc"},
    {"802.1Q VLAN", "dot1qVlans"},
}});

// A criterion's text label with its JSON key, settled at compile time: the renderers take it
// from a literal label, and a label missing from the table does not compile.
class Criterion {
 public:
   // Not explicit: a criterion is written as the label it stands for.
   consteval Criterion(char const* label) : label_(label), jsonKey_(keyOf(label_)) {}

   constexpr std::string_view label() const noexcept { return label_; }
   constexpr vellum::JsonKey jsonKey() const noexcept { return jsonKey_; }

 private:
   // Walks the rows rather than asking the indexed lookup, whose null answer is a pointer that
   // sanitizer builds cannot compare in a constant expression.
   static consteval std::string_view keyOf(std::string_view label) {
      for (auto const& row : cliMap.rows()) {
         if (row.label == label) {
            return row.jsonName;
         }
      }
      throw "a criterion's label is missing from cliMap";
   }

   std::string_view label_;
   vellum::JsonKey jsonKey_;
};

// The JSON key of a label that the renderers use; a label missing from the table is a programming
// error.
std::string_view cliJsonName(std::string_view label);

}  // namespace TrafficPolicyCli
