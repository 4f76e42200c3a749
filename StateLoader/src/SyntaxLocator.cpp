// A small JSON scanner that follows the grammar of RFC 8259 byte by byte, keeping the path of
// objects and lists it is in, and stops at the first fault with a message naming what it found.
// The runs that make up most of a text (plain string bytes, and the lines before the fault when
// the position is counted) are taken eight bytes at a time.
#include "SyntaxLocator.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

#include "JsonPointer.h"
#include "Strix/Utf8.h"

namespace StateLoader {

namespace {

// One open object or list, and the member or element being read in it.
struct Frame {
   bool isObject = false;
   bool inValue = false;
   std::string key;
   std::size_t index = 0;
};

enum class Next { value, key, afterValue, done };

constexpr std::uint64_t kEveryByte = 0x0101010101010101;
constexpr std::uint64_t kHighBits = 0x8080808080808080;

std::uint64_t wordAt(std::string_view text, std::size_t at) {
   std::uint64_t word;
   std::memcpy(&word, text.data() + at, sizeof word);
   return word;
}

// The zero bytes of `word`, each marked by its high bit (exactly: no carry crosses a byte).
constexpr std::uint64_t zeroBytes(std::uint64_t word) {
   return ~(((word & ~kHighBits) + ~kHighBits) | word) & kHighBits;
}

constexpr std::uint64_t bytesEqual(std::uint64_t word, unsigned char byte) {
   return zeroBytes(word ^ (kEveryByte * byte));
}

// The bytes that end a run of plain string bytes: a quote, a backslash, a control character or
// a byte of a multi-byte character.
constexpr std::uint64_t notPlainInString(std::uint64_t word) {
   return (word & kHighBits) | zeroBytes(word & (kEveryByte * 0xe0)) | bytesEqual(word, '"') |
          bytesEqual(word, '\\');
}

constexpr std::uint64_t notBlank(std::uint64_t word) {
   return ~(bytesEqual(word, ' ') | bytesEqual(word, '\t') | bytesEqual(word, '\n') |
            bytesEqual(word, '\r')) &
          kHighBits;
}

// How many bytes of a word, in their order in the text, come before the first one marked.
std::size_t bytesBefore(std::uint64_t marks) {
   auto const bits = std::endian::native == std::endian::little ? std::countr_zero(marks)
                                                                : std::countl_zero(marks);
   return static_cast<std::size_t>(bits) / 8;
}

// Bytes that a string holds as they are: printable ASCII other than the quote and the backslash.
constexpr auto kPlainInString = [] {
   std::array<bool, 256> plain{};
   for (int byte = 0x20; byte < 0x80; ++byte) {
      plain[byte] = byte != '"' && byte != '\\';
   }
   return plain;
}();

constexpr auto kBlank = [] {
   std::array<bool, 256> blank{};
   for (unsigned char const byte : {' ', '\t', '\n', '\r'}) {
      blank[byte] = true;
   }
   return blank;
}();

// UTF-8 continuation bytes (10xxxxxx) in text[begin, end).
std::size_t continuationBytes(std::string_view text, std::size_t begin, std::size_t end) {
   std::size_t count = 0;
   std::size_t at = begin;
   for (; at + sizeof(std::uint64_t) <= end; at += sizeof(std::uint64_t)) {
      auto const word = wordAt(text, at);
      count += static_cast<std::size_t>(std::popcount(word & ~(word << 1) & kHighBits));
   }
   for (; at < end; ++at) {
      count += (static_cast<unsigned char>(text[at]) & 0xc0) == 0x80 ? 1 : 0;
   }
   return count;
}

constexpr std::string_view kLargestUnsigned = "18446744073709551615";
constexpr std::string_view kSmallestSigned = "9223372036854775808";

bool isDigit(char character) {
   return character >= '0' && character <= '9';
}

int hexValue(char character) {
   if (isDigit(character)) {
      return character - '0';
   }
   auto const lower = static_cast<char>(character | 0x20);
   return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string hexByte(unsigned char byte) {
   constexpr char kDigits[] = "0123456789abcdef";
   return std::string("0x") + kDigits[byte >> 4] + kDigits[byte & 0xf];
}

// Digit strings without leading zeros compare as numbers by length, then by text.
bool exceeds(std::string_view digits, std::string_view limit) {
   return digits.size() != limit.size() ? digits.size() > limit.size() : digits > limit;
}

void appendUtf8(std::string& out, std::uint32_t codePoint) {
   if (codePoint < 0x80) {
      out += static_cast<char>(codePoint);
   } else if (codePoint < 0x800) {
      out += static_cast<char>(0xc0 | (codePoint >> 6));
      out += static_cast<char>(0x80 | (codePoint & 0x3f));
   } else if (codePoint < 0x10000) {
      out += static_cast<char>(0xe0 | (codePoint >> 12));
      out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3f));
      out += static_cast<char>(0x80 | (codePoint & 0x3f));
   } else {
      out += static_cast<char>(0xf0 | (codePoint >> 18));
      out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3f));
      out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3f));
      out += static_cast<char>(0x80 | (codePoint & 0x3f));
   }
}

class Scanner {
 public:
   Scanner(std::string_view text, std::size_t maxDepth) : text_(text), maxDepth_(maxDepth) {}

   std::optional<SyntaxFault> run() {
      if (text_.starts_with("\xef\xbb\xbf")) {
         refuse("the file starts with a byte-order mark, which JSON does not allow");
         return fault_;
      }
      auto next = Next::value;
      while (next != Next::done) {
         next = step(next);
      }
      return fault_;
   }

 private:
   Next step(Next next) {
      skipWhiteSpace();
      switch (next) {
         case Next::value:
            return scanValue();
         case Next::key:
            return scanKey();
         case Next::afterValue:
            return afterValue();
         case Next::done:
            break;
      }
      return Next::done;
   }

   Next scanValue() {
      if (atEnd()) {
         return stop("expected a value, found the end of the file");
      }
      char const character = text_[pos_];
      if (character == '{' || character == '[') {
         return openContainer(character == '{');
      }
      if (character == '"') {
         return scanString(nullptr) ? Next::afterValue : Next::done;
      }
      if (character == '-' || isDigit(character)) {
         return scanNumber() ? Next::afterValue : Next::done;
      }
      return scanLiteral() ? Next::afterValue : Next::done;
   }

   Next openContainer(bool isObject) {
      if (depth_ == maxDepth_) {
         return stop("nesting deeper than " + std::to_string(maxDepth_) + " levels");
      }
      ++pos_;
      Frame& frame = push(isObject);
      skipWhiteSpace();
      if (!atEnd() && text_[pos_] == (isObject ? '}' : ']')) {
         ++pos_;
         --depth_;
         return Next::afterValue;
      }
      if (isObject) {
         return Next::key;
      }
      frame.inValue = true;
      return Next::value;
   }

   Next scanKey() {
      if (atEnd() || text_[pos_] != '"') {
         return stop("expected a key in double quotes, found " + found());
      }
      Frame& frame = stack_[depth_ - 1];
      frame.key.clear();
      if (!scanString(&frame.key)) {
         return Next::done;
      }
      skipWhiteSpace();
      if (atEnd() || text_[pos_] != ':') {
         return stop("expected ':' after the key, found " + found());
      }
      ++pos_;
      frame.inValue = true;
      return Next::value;
   }

   Next afterValue() {
      if (depth_ == 0) {
         return atEnd() ? Next::done : stop("unexpected " + found() + " after the document");
      }
      Frame& frame = stack_[depth_ - 1];
      frame.inValue = false;
      char const close = frame.isObject ? '}' : ']';
      if (!atEnd() && text_[pos_] == close) {
         ++pos_;
         --depth_;
         return Next::afterValue;
      }
      if (atEnd() || text_[pos_] != ',') {
         return stop(std::string("expected ',' or '") + close + "', found " + found());
      }
      ++pos_;
      if (frame.isObject) {
         return Next::key;
      }
      ++frame.index;
      frame.inValue = true;
      return Next::value;
   }

   Frame& push(bool isObject) {
      if (depth_ == stack_.size()) {
         stack_.emplace_back();
      }
      Frame& frame = stack_[depth_++];
      frame.isObject = isObject;
      frame.inValue = false;
      frame.index = 0;
      return frame;
   }

   // Reads a string from its opening quote; keys are decoded into `decoded` for the pointer.
   bool scanString(std::string* decoded) {
      ++pos_;
      while (!atEnd()) {
         std::size_t const run = pos_;
         skipRun(notPlainInString, kPlainInString);
         append(decoded, text_.substr(run, pos_ - run));
         if (atEnd()) {
            break;
         }
         auto const byte = static_cast<unsigned char>(text_[pos_]);
         if (byte == '"') {
            ++pos_;
            return true;
         }
         if (byte == '\\') {
            if (!scanEscape(decoded)) {
               return false;
            }
         } else if (byte < 0x20) {
            return refuse("control character " + hexByte(byte) + " in " + stringKind(decoded) +
                          "; write it as an escape");
         } else if (!scanUtf8(decoded)) {
            return false;
         }
      }
      return refuse("the file ends inside " + stringKind(decoded));
   }

   // Moves past the bytes that `kept` marks, eight at a time while the text has eight left;
   // `stops` marks the bytes of a word that end the run.
   void skipRun(std::uint64_t (*stops)(std::uint64_t), std::array<bool, 256> const& kept) {
      while (pos_ + sizeof(std::uint64_t) <= text_.size()) {
         auto const run = bytesBefore(stops(wordAt(text_, pos_)));
         pos_ += run;
         if (run < sizeof(std::uint64_t)) {
            return;
         }
      }
      while (!atEnd() && kept[static_cast<unsigned char>(text_[pos_])]) {
         ++pos_;
      }
   }

   // Faults in an escape are reported at its backslash.
   bool scanEscape(std::string* decoded) {
      std::size_t const backslash = pos_++;
      if (atEnd()) {
         return refuse("the file ends inside " + stringKind(decoded));
      }
      constexpr std::string_view kSimple = "\"\\/bfnrt";
      constexpr std::string_view kMeaning = "\"\\/\b\f\n\r\t";
      char const letter = text_[pos_];
      if (auto const which = kSimple.find(letter); which != std::string_view::npos) {
         append(decoded, kMeaning.substr(which, 1));
         ++pos_;
         return true;
      }
      if (letter != 'u') {
         pos_ = backslash;
         return refuse("invalid escape \\" + printable(letter) + " in " + stringKind(decoded));
      }
      if (!scanUnicodeEscape(decoded)) {
         pos_ = backslash;
         return refuse(unicodeFault_ + " in " + stringKind(decoded));
      }
      return true;
   }

   // "\uXXXX", with a high surrogate needing its low surrogate right after it; on a fault,
   // unicodeFault_ says what is wrong.
   bool scanUnicodeEscape(std::string* decoded) {
      auto const first = hexQuad(pos_ + 1);
      if (first < 0) {
         unicodeFault_ = "invalid \\u escape";
         return false;
      }
      pos_ += 5;
      auto codePoint = static_cast<std::uint32_t>(first);
      if (codePoint >= 0xdc00 && codePoint <= 0xdfff) {
         unicodeFault_ = "lone low surrogate";
         return false;
      }
      if (codePoint >= 0xd800 && codePoint <= 0xdbff) {
         auto const second = text_.substr(pos_, 2) == "\\u" ? hexQuad(pos_ + 2) : -1;
         if (second < 0xdc00 || second > 0xdfff) {
            unicodeFault_ = "high surrogate without its low surrogate";
            return false;
         }
         codePoint =
             0x10000 + ((codePoint - 0xd800) << 10) + static_cast<std::uint32_t>(second - 0xdc00);
         pos_ += 6;
      }
      if (decoded) {
         appendUtf8(*decoded, codePoint);
      }
      return true;
   }

   int hexQuad(std::size_t at) const {
      if (at + 4 > text_.size()) {
         return -1;
      }
      int value = 0;
      for (std::size_t offset = 0; offset < 4; ++offset) {
         int const digit = hexValue(text_[at + offset]);
         if (digit < 0) {
            return -1;
         }
         value = value * 16 + digit;
      }
      return value;
   }

   bool scanUtf8(std::string* decoded) {
      auto const character = Strix::decodeUtf8(text_, pos_);
      if (character.length == 0) {
         return refuse("invalid UTF-8 byte " + hexByte(static_cast<unsigned char>(text_[pos_])) +
                       " in " + stringKind(decoded));
      }
      append(decoded, text_.substr(pos_, character.length));
      pos_ += character.length;
      return true;
   }

   bool scanNumber() {
      std::size_t const start = pos_;
      bool const negative = text_[pos_] == '-';
      pos_ += negative ? 1 : 0;
      if (atEnd() || !isDigit(text_[pos_])) {
         return refuse("expected a digit after '-', found " + found());
      }
      if (text_[pos_] == '0' && pos_ + 1 < text_.size() && isDigit(text_[pos_ + 1])) {
         return refuse("a number may not start with 0 followed by more digits");
      }
      skipDigits();
      bool const isInteger = atEnd() || (text_[pos_] != '.' && (text_[pos_] | 0x20) != 'e');
      if (!isInteger && !scanFractionAndExponent()) {
         return false;
      }
      if (!checkMagnitude(text_.substr(start, pos_ - start), negative, isInteger)) {
         pos_ = start;
         return refuse(magnitudeFault_);
      }
      return true;
   }

   bool scanFractionAndExponent() {
      if (text_[pos_] == '.') {
         ++pos_;
         if (atEnd() || !isDigit(text_[pos_])) {
            return refuse("expected a digit after '.', found " + found());
         }
         skipDigits();
      }
      if (!atEnd() && (text_[pos_] | 0x20) == 'e') {
         ++pos_;
         if (!atEnd() && (text_[pos_] == '+' || text_[pos_] == '-')) {
            ++pos_;
         }
         if (atEnd() || !isDigit(text_[pos_])) {
            return refuse("expected a digit in the exponent, found " + found());
         }
         skipDigits();
      }
      return true;
   }

   // False, with magnitudeFault_ saying why, for a number too large for the parser.
   bool checkMagnitude(std::string_view number, bool negative, bool isInteger) {
      if (isInteger) {
         auto const limit = negative ? kSmallestSigned : kLargestUnsigned;
         if (!exceeds(number.substr(negative ? 1 : 0), limit)) {
            return true;
         }
         magnitudeFault_ = "number " + std::string(number) +
                           (negative ? " is smaller than -" : " is larger than ") +
                           std::string(limit);
         return false;
      }
      std::string const written(number);
      if (!std::isinf(std::strtod(written.c_str(), nullptr))) {
         return true;
      }
      magnitudeFault_ = "number " + written + " is out of range";
      return false;
   }

   bool scanLiteral() {
      for (std::string_view const literal : {"true", "false", "null"}) {
         if (text_.substr(pos_, literal.size()) == literal) {
            pos_ += literal.size();
            return true;
         }
      }
      return refuse("expected a value, found " + found());
   }

   void skipDigits() {
      while (!atEnd() && isDigit(text_[pos_])) {
         ++pos_;
      }
   }

   void skipWhiteSpace() { skipRun(notBlank, kBlank); }

   bool atEnd() const noexcept { return pos_ >= text_.size(); }

   static void append(std::string* decoded, std::string_view text) {
      if (decoded) {
         *decoded += text;
      }
   }

   static std::string stringKind(std::string const* decoded) {
      return decoded ? "a key" : "a string";
   }

   static std::string printable(char character) {
      auto const byte = static_cast<unsigned char>(character);
      return byte > 0x20 && byte < 0x7f ? std::string(1, character) : hexByte(byte);
   }

   // What stands at the current position, for messages.
   std::string found() const {
      if (atEnd()) {
         return "the end of the file";
      }
      auto const byte = static_cast<unsigned char>(text_[pos_]);
      if (byte > 0x20 && byte < 0x7f) {
         return std::string("'") + text_[pos_] + "'";
      }
      return "byte " + hexByte(byte);
   }

   // Records the fault; the scan ends there.
   bool refuse(std::string const& what) {
      fault_ = SyntaxFault{pointer(), what + " (" + position() + ")"};
      return false;
   }
   Next stop(std::string const& what) {
      refuse(what);
      return Next::done;
   }

   std::string pointer() const {
      std::string pointer;
      for (Frame const& frame : std::span(stack_).first(depth_)) {
         if (!frame.inValue) {
            break;
         }
         if (frame.isObject) {
            appendPointerToken(pointer, frame.key);
         } else {
            pointer += '/' + std::to_string(frame.index);
         }
      }
      return pointer;
   }

   // Columns count characters, not bytes: UTF-8 continuation bytes are not counted.
   std::string position() const {
      auto const end = std::min(pos_, text_.size());
      std::size_t line = 1;
      std::size_t lineStart = 0;
      while (lineStart < end) {
         auto const* newline =
             static_cast<char const*>(std::memchr(text_.data() + lineStart, '\n', end - lineStart));
         if (newline == nullptr) {
            break;
         }
         ++line;
         lineStart = static_cast<std::size_t>(newline - text_.data()) + 1;
      }
      auto const column = 1 + end - lineStart - continuationBytes(text_, lineStart, end);
      return "line " + std::to_string(line) + ", column " + std::to_string(column);
   }

   std::string_view text_;
   std::size_t maxDepth_;
   std::size_t pos_ = 0;
   // The open containers are stack_[0, depth_); frames past them are kept for their keys' memory.
   std::vector<Frame> stack_;
   std::size_t depth_ = 0;
   std::string unicodeFault_;
   std::string magnitudeFault_;
   std::optional<SyntaxFault> fault_;
};

}  // namespace

std::optional<SyntaxFault> locateSyntaxFault(std::string_view text, std::size_t maxDepth) {
   return Scanner(text, maxDepth).run();
}

}  // namespace StateLoader
