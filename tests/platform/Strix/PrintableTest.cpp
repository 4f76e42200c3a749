// What a message may show of text from outside: escapes for everything that could steer or fool
// a terminal, cuts that never split a character, and the characters a name may not hold.
#include <gtest/gtest.h>

#include <string>

#include "Strix/Printable.h"

namespace {

TEST(Printable, EscapesWhatATerminalMustNotBeShownRaw) {
   struct Row {
      std::string text;
      std::string shown;
   };
   Row const rows[] = {
       {"plain text, é and 東京", "plain text, é and 東京"},
       {std::string("a\0b", 3), "a\\u0000b"},
       {"\x1b[31mred\n\t\x7f", "\\u001b[31mred\\n\\t\\u007f"},
       {"\xc2\x9b"
        "31m",
        "\\u009b31m"},
       {"\xe2\x80\xa8 \xe2\x80\xae \xe2\x81\xa6 \xd8\x9c \xe2\x80\x8f",
        "\\u2028 \\u202e \\u2066 \\u061c \\u200f"},
       {"a\xc2\xa0"
        "b\xe2\x80\x8b"
        "c\xe3\x80\x80",
        "a\\u00a0b\\u200bc\\u3000"},
       {"\x9b\xff\xc3", "\\x9b\\xff\\xc3"},
       {"\xed\xa0\x80", "\\xed\\xa0\\x80"},
   };
   for (Row const& row : rows) {
      EXPECT_EQ(Strix::printable(row.text), row.shown) << row.shown;
      EXPECT_EQ(Strix::printable(row.shown), row.shown) << "escaped twice: " << row.shown;
   }
}

TEST(Printable, QuotesCutLongTextAtACharacterBoundary) {
   std::string const ascii(Strix::kLongestEcho, 'k');
   EXPECT_EQ(Strix::quoted(ascii), "\"" + ascii + "\"");
   EXPECT_EQ(Strix::quoted(ascii + "k"), "\"" + ascii + "...\"");
   // A three-byte character across the limit is left out whole.
   std::string const straddling = std::string(Strix::kLongestEcho - 1, 'k') + "東京";
   EXPECT_EQ(Strix::quoted(straddling), "\"" + std::string(Strix::kLongestEcho - 1, 'k') + "...\"");
   EXPECT_EQ(Strix::quoted(std::string(1 << 20, '\x1b')).size(), 2 + 6 * Strix::kLongestEcho + 3);
}

TEST(Printable, NamesHoldNothingThatHidesOrSteers) {
   struct Row {
      std::string text;
      bool plainBlankAllowed;
      std::string found;  // empty: nothing
   };
   Row const rows[] = {
       {"Ethernet1/2.東京", false, ""},
       {"TCAM full", true, ""},
       {"TCAM full", false, "blank at position 5"},
       {"a\tb", true, "control character 9 at position 2"},
       {"é\xc2\x85", true, "control character U+0085 at position 2"},
       {"ab\xe2\x80\xae", true, "direction control U+202E at position 3"},
       {"a\xe2\x80\xa9", true, "line separator U+2029 at position 2"},
       {"a\xc2\xa0", true, "blank U+00A0 at position 2"},
       {"a\xef\xbb\xbf", true, "blank U+FEFF at position 2"},
       {"a\xff", true, "byte 0xff that is not UTF-8 at position 2"},
   };
   for (Row const& row : rows) {
      auto const found = Strix::findUnshowable(row.text, row.plainBlankAllowed);
      auto const said =
          found ? found->description + " at position " + std::to_string(found->position) : "";
      EXPECT_EQ(said, row.found) << Strix::printable(row.text);
   }
}

}  // namespace
