// Reads a command's words one at a time, the way a device CLI does: a keyword may be shortened to
// any prefix that picks out exactly one of the keywords allowed at that point, while names and
// numbers are taken as written. Every problem throws UsageError with a message that names the
// word, where it stands and what was expected there.
//
// The same reader serves help and completion: given a Place, a reader whose words run out records
// there what the grammar would have accepted next and throws PlaceReached, so that what `?` lists
// and TAB completes is what parsing accepts.
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

// A keyword with the one line that help shows beside it.
struct Keyword {
   std::string_view word;
   std::string_view help;
};
using Keywords = std::span<Keyword const>;

// The device state's names that a value may be chosen from.
enum class NameKind { none, policy, ipv4FieldSet, ipv6FieldSet, l4PortFieldSet, vlanFieldSet };

// A word the user writes as a value. `what` names it in messages ("policy name"); `placeholder`
// and `help` stand for it in help; `names` says which names of the state it may take.
struct ValueSlot {
   std::string_view what;
   std::string_view placeholder;
   std::string_view help;
   NameKind names = NameKind::none;
};

// What the grammar accepts where the words run out.
struct Place {
   std::vector<Keyword> keywords;
   std::optional<ValueSlot> value;
   bool mayEnd = false;
};

// Thrown once the reader has filled its Place.
struct PlaceReached {};

class WordReader {
 public:
   // With a place, running out of words fills it instead of being an error.
   explicit WordReader(std::vector<std::string> const& words, Place* place = nullptr)
       : words_(words), place_(place) {}

   bool atEnd() const noexcept { return next_ == words_.size(); }

   // The keyword that the next word stands for; the word must be there.
   std::string_view keyword(Keywords allowed);
   // As keyword(), but the command may also end here, which gives nothing.
   std::optional<std::string_view> optionalKeyword(Keywords allowed);
   // The next word as written.
   std::string const& value(ValueSlot const& slot);
   // A value that may be left out: nothing when the command ends here or the next word stands
   // for one of `instead`, which is left for the caller to take.
   std::optional<std::string> optionalValue(ValueSlot const& slot, Keywords instead);
   // The command must end here.
   void end() const;

   // Rejects the word that value() just took: `invalid WHAT "WORD" after "...": REASON`.
   [[noreturn]] void rejectValue(std::string_view what, std::string_view reason) const;

 private:
   // The keyword `word` stands for, if any; throws when it could stand for several.
   static std::optional<std::string_view> match(std::string_view word, Keywords allowed);
   bool nextIsKeyword(Keywords allowed) const;
   std::string_view takeKeyword(Keywords allowed, std::string_view orElse);
   // At the end of the words with a place: records what may come and throws PlaceReached.
   void offerAtEnd(Keywords keywords, std::optional<ValueSlot> value, bool mayEnd) const;
   // ` after "WORD"` for the word before position `index`; nothing at the start.
   std::string after(std::size_t index) const;

   std::vector<std::string> const& words_;
   Place* place_;
   std::size_t next_ = 0;
};

}  // namespace tpcli
