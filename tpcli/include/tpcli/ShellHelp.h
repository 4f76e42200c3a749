// What the shell shows for `?` and puts into the line for TAB, given the grammar's choices at the
// cursor. Names from the state and words from the user's line are shown printable.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Kel/Expected.h"
#include "tpcli/CommandGrammar.h"

namespace tpcli {

// A shell line split at blanks. Up to the cursor: the words before and the word being typed,
// empty when the cursor follows a blank.
std::vector<std::string> wordsOfLine(std::string_view line);
struct LinePosition {
   std::vector<std::string> words;
   std::string partial;
};
LinePosition positionOf(std::string_view lineBeforeCursor);

// One line per choice, the word and its help in two columns; or "% REASON" for a mistake in the
// words before the cursor. Every line ends in a newline.
std::string helpText(Kel::Expected<std::vector<Choice>> const& choices, std::string_view partial);

// TAB: the text to insert after `partial` (the rest of the one fitting choice and a blank, or
// what all fitting choices share), else the listing of the fitting choices when they share no
// more than `partial`; both empty when nothing fits.
struct Completion {
   std::string insert;
   std::string listing;
   friend bool operator==(Completion const&, Completion const&) = default;
};
Completion completionOf(Kel::Expected<std::vector<Choice>> const& choices,
                        std::string_view partial);

}  // namespace tpcli
