// Finding where a value ends: the walk over blocks of 64 bytes must give what the byte walk gives,
// on well-formed text and on every kind of malformed text, wherever a block boundary falls.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "BracketSkim.h"
#include "TextPieces.h"

namespace {

using StateLoader::TextValue;

// Text followed by zeros, as a state file's text is in memory.
struct PaddedText {
   explicit PaddedText(std::string text) : size(text.size()), bytes(std::move(text)) {
      bytes.append(simdjson::SIMDJSON_PADDING, '\0');
   }
   std::string_view view() const { return std::string_view(bytes).substr(0, size); }

   std::size_t size;
   std::string bytes;
};

// An end, or the parser's reason for refusing the text.
using Skimmed = std::variant<std::size_t, simdjson::error_code>;

template <typename Skim>
Skimmed skimmed(Skim skim, std::string_view text, std::size_t begin, std::size_t limit) {
   try {
      return skim(text, begin, limit);
   } catch (StateLoader::TextRefused const& refused) {
      return refused.error();
   }
}

std::string describe(Skimmed const& result) {
   if (auto const* end = std::get_if<std::size_t>(&result)) {
      return *end == TextValue::kUnknown ? "beyond the limit" : "end " + std::to_string(*end);
   }
   return simdjson::error_message(std::get<simdjson::error_code>(result));
}

using Skim = std::size_t (*)(std::string_view, std::size_t, std::size_t);

// skimValue, and each walk over blocks this processor can run, called as skimValue calls it; a
// walk that leaves the text to the byte walk gives the byte walk's answer.
std::vector<std::pair<std::string, Skim>> blockWalks() {
   std::vector<std::pair<std::string, Skim>> walks = {{"skimValue", StateLoader::skimValue}};
#if defined(__x86_64__)
   using Walk = std::optional<std::size_t> (*)(std::string_view, std::size_t, std::size_t);
   auto const add = [&walks]<Walk walk>(std::string name) {
      walks.emplace_back(name, [](std::string_view text, std::size_t begin, std::size_t limit) {
         auto const end =
             walk(text, begin, limit < text.size() - begin ? begin + limit : text.size());
         return end ? *end : StateLoader::skimValueByBytes(text, begin, limit);
      });
   };
   add.operator()<StateLoader::skimBracketedWithSse2>("SSE2");
   if (StateLoader::processorHasAvx2()) {
      add.operator()<StateLoader::skimBracketedWithAvx2>("AVX2");
   }
#endif
   return walks;
}

void expectSameAsByteWalk(std::string const& text, std::size_t begin, std::size_t limit) {
   static auto const walks = blockWalks();
   PaddedText const padded(text);
   auto const slow = skimmed(StateLoader::skimValueByBytes, padded.view(), begin, limit);
   for (auto const& [name, walk] : walks) {
      auto const fast = skimmed(walk, padded.view(), begin, limit);
      ASSERT_EQ(fast, slow) << name << " on: " << text << "\nbegin " << begin << ", limit " << limit
                            << ": blocks say " << describe(fast) << ", bytes say "
                            << describe(slow);
   }
}

// `count` filler bytes, so that what follows starts at a chosen offset.
std::string fill(std::size_t count) {
   return std::string(count, 'x');
}

struct SkimCase {
   std::string name;
   std::string text;
   std::size_t limit;
   Skimmed expected;
};

TEST(TextSkim, FindsTheEndOfEveryBracketedValue) {
   auto const npos = TextValue::kUnknown;
   // Offsets 61-64 put the interesting bytes across the first block boundary.
   SkimCase const cases[] = {
       {"empty object", "{}, 1", npos, std::size_t{2}},
       {"nested lists", R"([[1,[2]],{"a":[]}] ,)", npos, std::size_t{18}},
       {"brackets in strings", R"({"}": "]]", "{": "[["} x)", npos, std::size_t{22}},
       {"escaped quote across the boundary", R"({")" + fill(61) + R"(\"}" } x)", npos,
        std::size_t{69}},
       {"even run at the boundary", R"({")" + fill(61) + R"(\\"} x)", npos, std::size_t{67}},
       {"odd run across the boundary", R"({")" + fill(60) + R"(\\\"}"} x)", npos, std::size_t{69}},
       {"long run", R"({")" + fill(50) + std::string(31, '\\') + R"("}" } x)", npos,
        std::size_t{88}},
       {"string across three blocks", R"({")" + fill(150) + R"("} x)", npos, std::size_t{154}},
       {"deep nesting", std::string(100, '[') + std::string(100, ']') + ",", npos,
        std::size_t{200}},
       {"comma beyond the limit", R"({"a": 1, "b": 2})", 5, npos},
       {"comma within the limit", R"({"a": 1, "b": 2})", 8, std::size_t{16}},
       {"comma beyond the limit in a later block", "[" + fill(100) + ",1]", 90, npos},
       {"comma in a string beyond the limit", R"({")" + fill(100) + R"(,"})", 10, std::size_t{105}},
       {"unclosed object", R"({"a": [1, 2])", npos, simdjson::TAPE_ERROR},
       {"unclosed string", R"({"a": "b)", npos, simdjson::UNCLOSED_STRING},
       {"escape at the end", R"({"a": "b\)", npos, simdjson::UNCLOSED_STRING},
       {"backslash outside a string", R"({\"a": 1}, 2)", npos, std::size_t{9}},
       {"zero bytes inside", std::string("{\"a\0\": \0 1}", 11), npos, std::size_t{11}},
   };
   for (auto const& skimCase : cases) {
      PaddedText const padded(skimCase.text);
      EXPECT_EQ(describe(skimmed(StateLoader::skimValue, padded.view(), 0, skimCase.limit)),
                describe(skimCase.expected))
          << skimCase.name;
      expectSameAsByteWalk(skimCase.text, 0, skimCase.limit);
   }
}

// A string holding runs of backslashes of every length, escaped quotes, brackets and commas, and
// filler that moves block boundaries.
std::string randomString(std::mt19937& random) {
   static constexpr std::string_view kPieces[] = {"\\\\", "\\\"", "\\\\\\\"", "{", "]", ",", "x"};
   std::string text = "\"";
   for (auto pieces = random() % 12; pieces > 0; --pieces) {
      text += random() % 6 == 0 ? fill(random() % 70) : kPieces[random() % std::size(kPieces)];
   }
   return text + "\"";
}

// Mostly well-formed text, so that most values do end; now and then a stray quote or backslash.
std::string randomText(std::mt19937& random) {
   static constexpr std::string_view kPieces[] = {"{", "[",  "{\"k\": [", "}",  "]",
                                                  ",", ": ", "1",         " \n"};
   std::string text = random() % 2 ? "{" : "[";
   for (auto pieces = random() % 150; pieces > 0; --pieces) {
      auto const pick = random() % 1000;
      text += pick == 0    ? "\""
              : pick == 1  ? "\\"
              : pick < 300 ? randomString(random)
              : pick < 350 ? fill(random() % 70)
                           : std::string(kPieces[random() % std::size(kPieces)]);
   }
   return text;
}

TEST(TextSkim, BlocksAgreeWithBytesOnRandomText) {
   std::mt19937 random(20261124);
   for (int round = 0; round < 30000; ++round) {
      auto const text = randomText(random);
      auto const limit = random() % 3 == 0 ? random() % (text.size() + 1) : TextValue::kUnknown;
      expectSameAsByteWalk(text, 0, limit);
      if (HasFatalFailure()) {
         return;
      }
   }
}

}  // namespace
