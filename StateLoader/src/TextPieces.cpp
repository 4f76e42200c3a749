// Skimming over the text to find where a value ends, and parsing a piece where it stands.
#include "TextPieces.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <new>

#include "BracketSkim.h"
#include "Document.h"

namespace StateLoader {

namespace {

enum class Byte : unsigned char { plain, quote, open, close, comma, end };

constexpr std::array<Byte, 256> kValueBytes = [] {
   std::array<Byte, 256> bytes{};
   bytes['"'] = Byte::quote;
   bytes['{'] = Byte::open;
   bytes['['] = Byte::open;
   bytes['}'] = Byte::close;
   bytes[']'] = Byte::close;
   bytes[','] = Byte::comma;
   bytes[0] = Byte::end;
   return bytes;
}();

constexpr std::array<bool, 256> kStringStops = [] {
   std::array<bool, 256> stops{};
   stops['"'] = true;
   stops['\\'] = true;
   stops[0] = true;
   return stops;
}();

// Just after the closing quote of the string whose opening quote is at `pos`. The text is padded
// with zeros, so the scan stops at its end without a bound check on every byte.
inline std::size_t endOfString(unsigned char const* bytes, std::size_t size, std::size_t pos) {
   for (++pos;; ++pos) {
      while (!kStringStops[bytes[pos]]) {
         ++pos;
      }
      if (bytes[pos] == '"') {
         return pos + 1;
      }
      if (bytes[pos] == '\\') {
         ++pos;  // the escaped byte, whatever it is; the parse of the piece checks the escape
      } else if (pos >= size) {
         refuseText(simdjson::UNCLOSED_STRING);
      }
   }
}

unsigned char const* bytesOf(std::string_view text) {
   return reinterpret_cast<unsigned char const*>(text.data());
}

}  // namespace

std::size_t skipBlanks(std::string_view text, std::size_t pos) {
   while (text[pos] == ' ' || text[pos] == '\n' || text[pos] == '\r' || text[pos] == '\t') {
      ++pos;
   }
   return pos;
}

std::size_t stringEnd(std::string_view text, std::size_t pos) {
   return endOfString(bytesOf(text), text.size(), pos);
}

namespace {

// The nesting the parser allows below a value of the given depth, the whole file being allowed
// kMaxNesting + 1 as the parser counts.
std::size_t depthBelow(std::size_t depth) {
   if (depth > kMaxNesting + 1) {
      refuseText(simdjson::DEPTH_ERROR);
   }
   return kMaxNesting + 2 - depth;
}

// Pieces beyond this keep no memory once their entities are built.
constexpr std::size_t kKeptCapacity = std::size_t{1} << 20;

}  // namespace

void refuseText(simdjson::error_code error) {
   throw TextRefused(error);
}

namespace {

// The last position at which a comma does not yet put the value beyond its limit. The limit is
// checked at commas only: an object large enough to pass it has many.
std::size_t lastBefore(std::string_view text, std::size_t begin, std::size_t limit) {
   return limit < text.size() - begin ? begin + limit : text.size();
}

}  // namespace

std::size_t skimValue(std::string_view text, std::size_t begin, std::size_t limit) {
   if (text[begin] == '{' || text[begin] == '[') {
      if (auto const end = skimBracketed(text, begin, lastBefore(text, begin, limit))) {
         return *end;
      }
   }
   return skimValueByBytes(text, begin, limit);
}

std::size_t skimValueByBytes(std::string_view text, std::size_t begin, std::size_t limit) {
   auto const* const bytes = bytesOf(text);
   std::size_t const last = lastBefore(text, begin, limit);
   std::size_t depth = 0;
   for (std::size_t pos = begin;; ++pos) {
      Byte kind;
      while ((kind = kValueBytes[bytes[pos]]) == Byte::plain) {
         ++pos;
      }
      switch (kind) {
         case Byte::quote:
            pos = endOfString(bytes, text.size(), pos) - 1;
            break;
         case Byte::open:
            ++depth;
            break;
         case Byte::close:
            if (depth == 0) {
               return pos;
            }
            if (--depth == 0) {
               return pos + 1;
            }
            break;
         case Byte::comma:
            if (depth == 0) {
               return pos;
            }
            if (pos > last) {
               return TextValue::kUnknown;
            }
            break;
         case Byte::end:
            if (pos >= text.size()) {
               refuseText();
            }
            break;
         case Byte::plain:
            break;
      }
   }
}

void StateText::release(std::size_t begin, std::size_t end) const noexcept {
   if (bytes) {
      bytes->release(begin, end);
      released = true;
   }
}

bool StateText::releasedTextComesBack() const noexcept {
   return !bytes || bytes->isMapped();
}

bool TextValue::isLargeObject() const noexcept {
   return state->text[begin] == '{' && (end == kUnknown || end - begin > state->limits.largeObject);
}

simdjson::dom::element PieceParser::parse(std::string_view piece, Form form, std::size_t depth) {
   std::size_t const size = piece.size() + (form == Form::value ? 0 : form == Form::key ? 3 : 2);
   std::size_t const maxDepth = depthBelow(depth);
   if (!buffer_ || size > capacity_) {
      auto const capacity = std::max({size, capacity_ * 2, std::size_t{64}});
      buffer_.reset(new char[capacity + simdjson::SIMDJSON_PADDING]);
      capacity_ = capacity;
   }
   if (capacity_ > parser_.capacity() || maxDepth != parser_.max_depth()) {
      if (parser_.allocate(capacity_, maxDepth) != simdjson::SUCCESS) {
         throw std::bad_alloc();
      }
   }
   char* out = buffer_.get();
   if (form != Form::value) {
      *out++ = '{';
   }
   out = std::copy(piece.begin(), piece.end(), out);
   if (form == Form::key) {
      *out++ = '0';
   }
   if (form != Form::value) {
      *out++ = '}';
   }
   std::memset(out, 0, simdjson::SIMDJSON_PADDING);
   auto const parsed = parser_.parse_into_document(document_, buffer_.get(), size, false);
   if (parsed.error() != simdjson::SUCCESS) {
      refuseText(parsed.error());
   }
   // The document holds its own copies: a large piece's copy and the parser's index of it go
   // before its entities are built.
   if (capacity_ > kKeptCapacity) {
      parser_ = simdjson::dom::parser();
      buffer_.reset();
      capacity_ = 0;
      documentIsLarge_ = true;
   }
   return parsed.value_unsafe();
}

void PieceParser::trim() {
   if (documentIsLarge_) {
      document_ = simdjson::dom::document();
      documentIsLarge_ = false;
   }
}

}  // namespace StateLoader
