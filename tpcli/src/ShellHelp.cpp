// Help columns and completion by common prefix.
#include "tpcli/ShellHelp.h"

#include <algorithm>

#include "Strix/Printable.h"

namespace tpcli {

namespace {

// Longer words push their help further right rather than widening every line.
constexpr std::size_t kWidestColumn = 24;

bool isBlank(char c) {
   return c == ' ' || c == '\t';
}

std::string listing(std::vector<Choice> const& choices) {
   std::size_t width = 0;
   std::vector<std::string> words;
   for (auto const& choice : choices) {
      words.push_back(Strix::printable(choice.word));
      width = std::max(width, std::min(words.back().size(), kWidestColumn));
   }
   std::string text;
   for (std::size_t i = 0; i < choices.size(); ++i) {
      text += "  ";
      text += words[i];
      if (!choices[i].help.empty()) {
         text.append(width + 2 - std::min(words[i].size(), width), ' ');
         text += choices[i].help;
      }
      text += '\n';
   }
   return text;
}

std::string mistake(std::string_view reason) {
   return "% " + Strix::printable(reason) + "\n";
}

std::string_view sharedStart(std::string_view a, std::string_view b) {
   auto const [end, ignored] = std::ranges::mismatch(a, b);
   return a.substr(0, static_cast<std::size_t>(end - a.begin()));
}

}  // namespace

std::vector<std::string> wordsOfLine(std::string_view line) {
   std::vector<std::string> words;
   while (!line.empty()) {
      auto const start = std::ranges::find_if_not(line, isBlank);
      auto const end = std::find_if(start, line.end(), isBlank);
      if (start != end) {
         words.emplace_back(start, end);
      }
      line.remove_prefix(static_cast<std::size_t>(end - line.begin()));
   }
   return words;
}

LinePosition positionOf(std::string_view lineBeforeCursor) {
   LinePosition position{wordsOfLine(lineBeforeCursor), {}};
   if (!lineBeforeCursor.empty() && !isBlank(lineBeforeCursor.back()) && !position.words.empty()) {
      position.partial = std::move(position.words.back());
      position.words.pop_back();
   }
   return position;
}

std::string helpText(Kel::Expected<std::vector<Choice>> const& choices, std::string_view partial) {
   if (!choices) {
      return mistake(choices.reason());
   }
   if (choices->empty()) {
      return mistake(partial.empty() ? "nothing may follow here"
                                     : "no word here starts with " + Strix::quoted(partial));
   }
   return listing(*choices);
}

Completion completionOf(Kel::Expected<std::vector<Choice>> const& choices,
                        std::string_view partial) {
   if (!choices) {
      return {};
   }
   std::vector<Choice> fitting;
   std::ranges::copy_if(*choices, std::back_inserter(fitting), &Choice::completes);
   if (fitting.empty()) {
      return {};
   }
   if (fitting.size() == 1) {
      return {fitting.front().word.substr(partial.size()) + " ", {}};
   }
   std::string_view shared = fitting.front().word;
   for (auto const& choice : fitting) {
      shared = sharedStart(shared, choice.word);
   }
   if (shared.size() > partial.size()) {
      return {std::string(shared.substr(partial.size())), {}};
   }
   return {{}, listing(fitting)};
}

}  // namespace tpcli
