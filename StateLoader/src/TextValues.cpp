// Parsing and checking of text values. Prefixes go through Quoll, whose reasons are kept as they
// are; ranges are parsed here, since their limits depend on what they count.
#include "TextValues.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "StateError.h"
#include "Strix/Printable.h"

namespace StateLoader {

namespace {

// Whether a name is printable ASCII without blanks, as nearly every one is, tested eight bytes at
// a time in registers: a byte below "!" borrows into its high bit, and a byte above "~" carries
// into it or has it set. A name of four to seven bytes is read as two words that overlap.
bool printableAsciiName(std::string_view text) noexcept {
   constexpr std::uint64_t kOnes = 0x0101010101010101;
   auto const outside = [](std::uint64_t word) {
      return ((((word - 0x21 * kOnes) & ~word) | (word + kOnes) | word) & (0x80 * kOnes)) != 0;
   };
   auto const* const bytes = text.data();
   auto const size = text.size();
   if (size < 4) {
      return size != 0 &&
             std::ranges::all_of(text, [](char byte) { return byte > ' ' && byte < 0x7f; });
   }
   if (size < 8) {
      std::uint32_t first;
      std::uint32_t last;
      std::memcpy(&first, bytes, sizeof first);
      std::memcpy(&last, bytes + size - sizeof last, sizeof last);
      return !outside(first | std::uint64_t{last} << 32);
   }
   std::uint64_t word;
   for (std::size_t at = 0; at + sizeof word < size; at += sizeof word) {
      std::memcpy(&word, bytes + at, sizeof word);
      if (outside(word)) {
         return false;
      }
   }
   std::memcpy(&word, bytes + size - sizeof word, sizeof word);
   return !outside(word);
}

// Refuses the first character that a terminal could not show as it is (and a plain blank, unless
// `plainBlankAllowed`), naming its position.
[[gnu::noinline]] void checkCharacters(std::string_view text, std::string_view what,
                                       Where const& where, bool plainBlankAllowed) {
   if (auto const unshowable = Strix::findUnshowable(text, plainBlankAllowed)) {
      fail(where, unshowable->description + " at position " + std::to_string(unshowable->position) +
                      " in " + std::string(what));
   }
}

std::string_view familyName(Quoll::AddressFamily family) {
   return family == Quoll::AddressFamily::ipv6 ? "IPv6" : "IPv4";
}

// Above every limit a range may have, so that longer numbers need not be read exactly.
constexpr std::uint64_t kBeyondEveryLimit = std::uint64_t{1} << 32;

// The value of the decimal digits from `at` on and where they stop; a value above every limit
// stands for any larger one.
struct LeadingDigits {
   std::uint64_t value = 0;
   std::size_t end = 0;
};

LeadingDigits leadingDigits(std::string_view text, std::size_t at) noexcept {
   LeadingDigits digits{0, at};
   for (; digits.end < text.size(); ++digits.end) {
      auto const digit = static_cast<unsigned>(static_cast<unsigned char>(text[digits.end]) - '0');
      if (digit > 9) {
         break;
      }
      digits.value = std::min(digits.value * 10 + digit, kBeyondEveryLimit);
   }
   return digits;
}

// Decimal digits only.
std::optional<std::uint64_t> parseNumber(std::string_view text) {
   auto const digits = leadingDigits(text, 0);
   if (text.empty() || digits.end != text.size()) {
      return std::nullopt;
   }
   return digits.value;
}

std::uint32_t checkedEnd(std::string_view digits, RangeKind const& kind, Where const& where,
                         std::string_view whole) {
   auto const value = parseNumber(digits);
   if (!value) {
      fail(where, quoted(whole) + " is not a number or a range of numbers such as \"1000-2000\"");
   }
   if (*value < kind.lowest || *value > kind.highest) {
      fail(where, std::string(kind.what) + " " + std::string(digits) + " is out of range (" +
                      std::to_string(kind.lowest) + "-" + std::to_string(kind.highest) + ")");
   }
   return static_cast<std::uint32_t>(*value);
}

// Replaces the (empty) model set `into` with the list's entries. Lists usually come in ascending
// order (a dump of an ordered set writes them so), which the set appends after one comparison.
template <typename Key, typename Read>
void readList(Node const& list, Kel::OrderedSet<Key>& into, Read read) {
   Kel::OrderedSet<Key> entries;
   forEachElement(list, [&](Node const& element) {
      if (!entries.insert(read(element))) {
         fail(element.where, quoted(asString(element)) + " is already listed");
      }
   });
   into = std::move(entries);
}

}  // namespace

Kel::String checkedName(std::string_view text, std::string_view what, Where const& where) {
   if (!printableAsciiName(text)) {
      if (text.empty()) {
         fail(where, "empty " + std::string(what));
      }
      checkCharacters(text, what, where, false);
   }
   return Kel::String(text);
}

Kel::String readName(Node const& node, std::string_view what) {
   return checkedName(asString(node), what, node.where);
}

Quoll::IntfId checkedIntfId(std::string_view text, Where const& where) {
   auto parsed = Quoll::IntfId::parse(text);
   if (!parsed) {
      fail(where, parsed.reason());
   }
   return std::move(parsed).value();
}

Kel::String readText(Node const& node, std::string_view what) {
   auto const text = asString(node);
   checkCharacters(text, what, node.where, true);
   return Kel::String(text);
}

Quoll::IpGenPrefix readPrefix(Node const& node, Quoll::AddressFamily family) {
   auto const text = asString(node);
   auto const parsed = Quoll::IpGenPrefix::parse(text);
   if (!parsed) {
      fail(node.where, parsed.reason());
   }
   if (parsed->family() != family) {
      fail(node.where, quoted(text) + " is not an " + std::string(familyName(family)) + " prefix");
   }
   return *parsed;
}

namespace {

// Every check of a range, in the order its faults are told; kept out of line, so that the reading
// of a well-formed range needs no room for the messages.
[[gnu::noinline]] Classification::NumericalRange checkedRangeSlowly(std::string_view text,
                                                                    RangeKind const& kind,
                                                                    Where const& where,
                                                                    char const* dash) {
   Classification::NumericalRange range;
   range.low = checkedEnd({text.begin(), dash}, kind, where, text);
   range.high =
       dash == text.end() ? range.low : checkedEnd({dash + 1, text.end()}, kind, where, text);
   if (range.low > range.high) {
      fail(where, "range " + quoted(text) + " has its low end above its high end");
   }
   return range;
}

}  // namespace

// A well-formed range is read in line, in one pass; only one that fails a check goes through the
// checks that say what is wrong, so that a range costs a few instructions a digit.
Classification::NumericalRange checkedRange(std::string_view text, RangeKind const& kind,
                                            Where const& where) {
   auto const low = leadingDigits(text, 0);
   if (low.end != 0) {
      auto const high =
          low.end < text.size() && text[low.end] == '-' ? leadingDigits(text, low.end + 1) : low;
      bool const highRead = high.end != low.end + 1;  // digits after a dash
      if (highRead && high.end == text.size() && low.value >= kind.lowest &&
          low.value <= high.value && high.value <= kind.highest) {
         return {static_cast<std::uint32_t>(low.value), static_cast<std::uint32_t>(high.value)};
      }
   }
   // Found in line: a range is a few bytes, shorter than a call to the C library's search.
   return checkedRangeSlowly(text, kind, where, std::find(text.begin(), text.end(), '-'));
}

void readPrefixList(Node const& list, Quoll::AddressFamily family,
                    Classification::PrefixSet& into) {
   readList(list, into, [family](Node const& element) { return readPrefix(element, family); });
}

void readRangeList(Node const& list, RangeKind const& kind, Classification::RangeSet& into) {
   readList(list, into, [&kind](Node const& element) {
      return checkedRange(asString(element), kind, element.where);
   });
}

void readNameList(Node const& list, std::string_view what, Classification::NameSet& into) {
   readList(list, into, [what](Node const& element) { return readName(element, what); });
}

void readIntfNameList(Node const& list, Classification::NameSet& into) {
   readList(list, into, [](Node const& element) {
      return checkedIntfId(asString(element), element.where).name();
   });
}

}  // namespace StateLoader
