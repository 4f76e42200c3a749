// Runs the address or prefix cases of a data file (see data/*.txt): accepted text gives its
// canonical text, which reads back as the same value; refused text names its fault. And reads the
// well-formed texts of tables into values.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>

#include "support/DataCases.h"

namespace Quoll {

// The value of well-formed `text`; the null value for an empty one.
template <typename Value>
Value valueOf(std::string_view text) {
   return text.empty() ? Value() : *Value::parse(text);
}

template <typename Value>
void expectTextCases(char const* file) {
   constexpr std::string_view kRefused = "refused: ";
   for (auto const& row : testing_support::readDataCases(std::filesystem::path(DATA_DIR) / file)) {
      auto const parsed = Value::parse(row.input);
      if (row.expected.starts_with(kRefused)) {
         EXPECT_FALSE(parsed) << row.name << ": accepted";
         EXPECT_TRUE(parsed || parsed.reason().find(row.expected.substr(kRefused.size())) !=
                                   std::string::npos)
             << row.name << ": " << parsed.reason();
      } else if (!parsed) {
         ADD_FAILURE() << row.name << ": refused: " << parsed.reason();
      } else {
         EXPECT_EQ(parsed->stringValue(), row.expected) << row.name;
         auto const reread = Value::parse(row.expected);
         EXPECT_TRUE(reread && *reread == *parsed) << row.name;
      }
   }
}

}  // namespace Quoll
