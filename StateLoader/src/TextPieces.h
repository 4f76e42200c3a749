// A large state is not parsed whole. Its large objects (the sections, a policy's rules, a status's
// rules and counters) are read member by member from the text: runs of small members are parsed
// together into a small document of their own, which is let go once their entities are built, so
// that the loader holds at any time the entities and one piece of parsed text, not a parsed copy
// of the whole file. Finding where a member ends needs only strings and brackets; the parse of the
// piece checks everything else. When the parser refuses a piece, the loader locates the fault in
// the whole text, as it does for a file parsed whole.
#pragma once

#include <simdjson.h>

#include <atomic>
#include <cstddef>
#include <exception>
#include <memory>
#include <string_view>
#include <vector>

#include "StateFile.h"

namespace StateLoader {

// How the text is cut. An object longer than `largeObject` bytes is read member by member; runs
// of smaller members are parsed together up to about `piece` bytes. A typical policy or policy
// status is parsed in one piece; finding where members end costs about as much as the parse.
struct PieceLimits {
   std::size_t largeObject = std::size_t{256} << 10;
   std::size_t piece = std::size_t{16} << 10;
};

// The parser refused a piece of the text (or the text around the pieces is malformed).
class TextRefused : public std::exception {
 public:
   explicit TextRefused(simdjson::error_code error) noexcept : error_(error) {}
   simdjson::error_code error() const noexcept { return error_; }
   char const* what() const noexcept override { return simdjson::error_message(error_); }

 private:
   simdjson::error_code error_;
};

// One thread's parser of pieces. A piece is copied into a padded buffer of its own, wrapped in
// braces when it is a run of members.
class PieceParser {
 public:
   enum class Form {
      value,    // one value
      members,  // members of an object, without its braces
      key,      // the key and colon of one member, without its value
   };

   // Nesting is checked as if the piece were parsed in its place: `depth` is that of the value,
   // or of the object whose members the piece holds (the top-level value has depth 1). The
   // element lives until the next parse. Throws TextRefused or std::bad_alloc.
   simdjson::dom::element parse(std::string_view piece, Form form, std::size_t depth);

   // Lets go of a large piece's document, once its entities are built.
   void trim();

 private:
   simdjson::dom::parser parser_;
   simdjson::dom::document document_;
   std::unique_ptr<char[]> buffer_;
   std::size_t capacity_ = 0;
   bool documentIsLarge_ = false;
};

// The padded text of a state and how it is cut.
struct StateText {
   std::string_view text;
   PieceLimits limits;
   // The file's bytes, when pages of them may be let go behind the reading.
   FileBytes const* bytes = nullptr;
   mutable std::atomic<bool> released{false};

   // Lets go of the whole pages of text[begin, end), once read and not to be read again.
   void release(std::size_t begin, std::size_t end) const noexcept;
   // Whether text let go of can still be read, as it was.
   bool releasedTextComesBack() const noexcept;
};

// A member as it stands in the text: where its key and its value start, and where its value ends.
struct MemberSpan {
   std::size_t key;
   std::size_t value;
   std::size_t end;
};

// A value of the text: where it starts and, once known, where it ends.
struct TextValue {
   static constexpr std::size_t kUnknown = std::string_view::npos;

   StateText const* state;
   PieceParser* parser;
   std::size_t begin;
   std::size_t depth;
   // Set by a walk over the object's members, which finds it on the way.
   mutable std::size_t end = kUnknown;
   // An object's members, when they have been found already.
   std::vector<MemberSpan> const* members = nullptr;

   // An object too large to parse at once.
   bool isLargeObject() const noexcept;
};

// Throws TextRefused.
[[noreturn]] void refuseText(simdjson::error_code error = simdjson::TAPE_ERROR);

// The first position from `pos` on that is not a blank.
std::size_t skipBlanks(std::string_view text, std::size_t pos);

// Just after the closing quote of the string whose opening quote is at `pos`.
std::size_t stringEnd(std::string_view text, std::size_t pos);

// The end of the value that starts at `begin` (just after it, trailing blanks included), found
// by matching brackets outside strings; TextValue::kUnknown once it runs beyond `limit` bytes.
std::size_t skimValue(std::string_view text, std::size_t begin, std::size_t limit);

// The same found byte by byte: how a value other than an object or a list is skimmed, and how one
// is where its text is malformed in a way that the block walk could read differently.
std::size_t skimValueByBytes(std::string_view text, std::size_t begin, std::size_t limit);

}  // namespace StateLoader
