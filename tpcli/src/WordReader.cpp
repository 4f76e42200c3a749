// Keyword matching by unique prefix and the usage messages of the command grammar.
#include "tpcli/WordReader.h"

#include <algorithm>

#include "Strix/Printable.h"

namespace tpcli {

namespace {

using Strix::quoted;

// "a, b or c" with " or " as the last separator; "a, b, c" with ", ".
std::string joined(std::vector<std::string_view> const& words, std::string_view lastSeparator) {
   std::string text;
   for (std::size_t i = 0; i < words.size(); ++i) {
      if (i > 0) {
         text += i + 1 == words.size() ? lastSeparator : ", ";
      }
      text += words[i];
   }
   return text;
}

// What may come next, for the messages: the keywords and, where the command may end, that too.
std::string alternatives(Keywords keywords, std::string_view orElse) {
   std::vector<std::string_view> all;
   for (auto const& keyword : keywords) {
      all.push_back(keyword.word);
   }
   if (!orElse.empty()) {
      all.push_back(orElse);
   }
   return joined(all, " or ");
}

}  // namespace

std::optional<std::string_view> WordReader::match(std::string_view word, Keywords allowed) {
   if (word.empty()) {
      return std::nullopt;
   }
   if (std::ranges::find(allowed, word, &Keyword::word) != allowed.end()) {
      return word;
   }
   std::vector<std::string_view> candidates;
   for (auto const& keyword : allowed) {
      if (keyword.word.starts_with(word)) {
         candidates.push_back(keyword.word);
      }
   }
   if (candidates.size() > 1) {
      throw UsageError("ambiguous word " + quoted(word) + ": could be " + joined(candidates, ", "));
   }
   if (candidates.empty()) {
      return std::nullopt;
   }
   return candidates.front();
}

std::string_view WordReader::takeKeyword(Keywords allowed, std::string_view orElse) {
   auto const& word = words_[next_];
   auto const keyword = match(word, allowed);
   if (!keyword) {
      auto const what = next_ == 0 ? "unknown command " : "unknown word ";
      throw UsageError(what + quoted(word) + after(next_) + ": expected " +
                       alternatives(allowed, orElse));
   }
   ++next_;
   return *keyword;
}

void WordReader::offerAtEnd(Keywords keywords, std::optional<ValueSlot> value, bool mayEnd) const {
   if (!place_ || !atEnd()) {
      return;
   }
   place_->keywords.assign(keywords.begin(), keywords.end());
   place_->value = value;
   place_->mayEnd = mayEnd;
   throw PlaceReached{};
}

std::string_view WordReader::keyword(Keywords allowed) {
   offerAtEnd(allowed, std::nullopt, false);
   if (atEnd()) {
      auto const what = next_ == 0 ? std::string("missing command") : "missing word" + after(next_);
      throw UsageError(what + ": expected " + alternatives(allowed, {}));
   }
   return takeKeyword(allowed, {});
}

std::optional<std::string_view> WordReader::optionalKeyword(Keywords allowed) {
   offerAtEnd(allowed, std::nullopt, true);
   if (atEnd()) {
      return std::nullopt;
   }
   return takeKeyword(allowed, "end of command");
}

bool WordReader::nextIsKeyword(Keywords allowed) const {
   return !atEnd() && match(words_[next_], allowed).has_value();
}

std::string const& WordReader::value(ValueSlot const& slot) {
   offerAtEnd({}, slot, false);
   auto const what = std::string(slot.what);
   if (atEnd()) {
      throw UsageError("missing " + what + after(next_));
   }
   if (words_[next_].empty()) {
      throw UsageError("empty " + what + after(next_));
   }
   return words_[next_++];
}

std::optional<std::string> WordReader::optionalValue(ValueSlot const& slot, Keywords instead) {
   offerAtEnd(instead, slot, true);
   if (atEnd() || nextIsKeyword(instead)) {
      return std::nullopt;
   }
   return value(slot);
}

void WordReader::end() const {
   offerAtEnd({}, std::nullopt, true);
   if (!atEnd()) {
      throw UsageError("unexpected word " + quoted(words_[next_]) + after(next_) +
                       ": expected end of command");
   }
}

void WordReader::rejectValue(std::string_view what, std::string_view reason) const {
   auto const taken = next_ - 1;
   throw UsageError("invalid " + std::string(what) + " " + quoted(words_[taken]) + after(taken) +
                    ": " + std::string(reason));
}

std::string WordReader::after(std::size_t index) const {
   return index == 0 ? std::string() : " after " + quoted(words_[index - 1]);
}

}  // namespace tpcli
