// Reads a command's words one at a time, the way a device CLI does: a keyword may be shortened to
// any prefix that picks out exactly one of the keywords allowed at that point, while names and
// numbers are taken as written. Every problem throws UsageError with a message that names the
// word, where it stands and what was expected there.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tpcli {

class UsageError : public std::runtime_error {
 public:
   using std::runtime_error::runtime_error;
};

using Keywords = std::span<std::string_view const>;

class WordReader {
 public:
   explicit WordReader(std::vector<std::string> const& words) : words_(words) {}

   bool atEnd() const noexcept { return next_ == words_.size(); }

   // The keyword that the next word stands for; the word must be there.
   std::string_view keyword(Keywords allowed);
   // As keyword(), but the command may also end here, which gives nothing.
   std::optional<std::string_view> optionalKeyword(Keywords allowed);
   // Whether the next word stands for one of `allowed`, without taking it.
   bool nextIsKeyword(Keywords allowed) const;
   // The next word as written; `what` names it in messages ("policy name").
   std::string const& value(std::string_view what);
   // The command must end here.
   void end() const;

   // Rejects the word that value() just took: `invalid WHAT "WORD" after "...": REASON`.
   [[noreturn]] void rejectValue(std::string_view what, std::string_view reason) const;

 private:
   // The keyword `word` stands for, if any; throws when it could stand for several.
   static std::optional<std::string_view> match(std::string_view word, Keywords allowed);
   std::string_view takeKeyword(Keywords allowed, std::string_view orElse);
   // ` after "WORD"` for the word before position `index`; nothing at the start.
   std::string after(std::size_t index) const;

   std::vector<std::string> const& words_;
   std::size_t next_ = 0;
};

}  // namespace tpcli
