// The fixed table from a match criterion's text label to its JSON key. Renderers that take only
// a label find the key here, so a label and its key are written down once.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace TrafficPolicyCli {

struct CliMapRow {
   std::string_view label;
   char const* jsonName;
};

class CliMap {
 public:
   static constexpr std::size_t kRows = 21;

   constexpr explicit CliMap(std::array<CliMapRow, kRows> const& rows) : rows_(rows) {}

   // The JSON key of a label, or null when the table has none.
   char const* operator[](std::string_view label) const noexcept;
   std::array<CliMapRow, kRows> const& rows() const noexcept { return rows_; }

 private:
   std::array<CliMapRow, kRows> rows_;
};

// Constant-initialised, so it is complete before any code of the library runs.
extern CliMap const cliMap;

// The JSON key of a label that the renderers use; a label missing from the table is a programming
// error.
char const* cliJsonName(std::string_view label);

}  // namespace TrafficPolicyCli
