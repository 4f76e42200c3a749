// The catalogue of bad state files: each row is a file and the one line the loader must answer
// with, pointer and message exact, whether the file is read whole or cut into the finest pieces.
// The rows of content faults live in data/rejected-states.txt.
// Rows whose JSON is well formed are first read by an independent parser, so that a row meant to
// test a content check cannot pass by being broken JSON.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "PieceLoader.h"
#include "StateLoader/Loader.h"
#include "support/CapturedOutput.h"
#include "support/DataCases.h"
#include "support/TempStateFiles.h"

namespace {

using testing_support::TempStateFiles;

// Its expectation is what follows "FILE: " in the reason.
using RejectedCase = testing_support::DataCase;

// Content faults: the rows of data/rejected-states.txt, and one too long to write there.
std::vector<RejectedCase> contentCases() {
   auto cases =
       testing_support::readDataCases(std::filesystem::path(DATA_DIR) / "rejected-states.txt");
   cases.push_back(
       {"very long unknown key is cut short", R"({")" + std::string(100000, 'k') + R"(": {}})",
        "/" + std::string(200, 'k') + "...: unknown key \"" + std::string(200, 'k') + "...\""});
   return cases;
}

// Text faults, found by the scanner that runs when the JSON parser refuses a file: the rows of
// data/rejected-syntax.txt and these.
std::vector<RejectedCase> syntaxCases() {
   std::string const tooDeep(100000, '[');
   std::string deepPointer;
   for (int level = 0; level < 32; ++level) {
      deepPointer += "/0";
   }
   auto cases =
       testing_support::readDataCases(std::filesystem::path(DATA_DIR) / "rejected-syntax.txt");
   // Line breaks, bytes that are not UTF-8 and sizes that a text file should not hold.
   cases.insert(
       cases.end(),
       {
           {"white space only", "  \n ",
            "expected a value, found the end of the file (line 2, column 2)"},
           {"truncated after a member", "{\"vrfs\": {}\n",
            "expected ',' or '}', found the end of the file (line 2, column 1)"},
           {"text after the document", "{}\n}",
            "unexpected '}' after the document (line 2, column 1)"},
           {"invalid UTF-8 in a value", "{\"vrfs\": {\"names\": [\"bl\xffue\"]}}",
            "/vrfs/names/0: invalid UTF-8 byte 0xff in a string (line 1, column 24)"},
           {"invalid UTF-8 in a key", "{\"trafficPolicies\": {\"p\xc3\": {}}}",
            "/trafficPolicies: invalid UTF-8 byte 0xc3 in a key (line 1, column 24)"},
           {"overlong UTF-8 form", "{\"vrfs\": {\"names\": [\"\xc0\xaf\"]}}",
            "/vrfs/names/0: invalid UTF-8 byte 0xc0 in a string (line 1, column 22)"},
           {"UTF-8 surrogate", "[\"\xed\xa0\x80\"]",
            "/0: invalid UTF-8 byte 0xed in a string (line 1, column 3)"},
           {"control character in a string", "{\"vrfs\": {\"names\": [\"a\tb\"]}}",
            "/vrfs/names/0: control character 0x09 in a string; write it as an escape (line 1, "
            "column 23)"},
           {"byte-order mark", "\xef\xbb\xbf{}",
            "the file starts with a byte-order mark, which JSON does not allow (line 1, column 1)"},
           {"nesting deeper than any state", tooDeep,
            deepPointer + ": nesting deeper than 32 levels (line 1, column 33)"},
       });
   return cases;
}

// Every object of more than a byte read member by member, every member parsed on its own.
constexpr StateLoader::PieceLimits kFinestPieces{1, 1};

void expectRejected(std::vector<RejectedCase> const& cases, bool wellFormed) {
   TempStateFiles const files;
   for (RejectedCase const& row : cases) {
      auto const path = files.write("state.json", row.input);
      if (wellFormed) {
         testing_support::parseJson(row.input);
      }
      for (auto const& limits : {StateLoader::PieceLimits{}, kFinestPieces}) {
         auto const loaded = StateLoader::loadState(path, limits);
         if (loaded) {
            ADD_FAILURE() << row.name << ": loaded";
            continue;
         }
         EXPECT_EQ(loaded.reason(), path + ": " + row.expected)
             << row.name << (limits.piece == 1 ? " (finest pieces)" : "");
      }
   }
}

TEST(RejectedStates, ContentFaultsNameThePointerAndTheProblem) {
   expectRejected(contentCases(), true);
}

TEST(RejectedStates, SyntaxFaultsNameThePointerLineAndColumn) {
   expectRejected(syntaxCases(), false);
}

// The scanner must find a fault wherever the parser does: a cut anywhere in a real state gives a
// located message, never the parser's bare one.
TEST(RejectedStates, EveryCutOfTheLabStateIsLocated) {
   constexpr std::size_t kStep = 13;
   TempStateFiles const files;
   auto const lab = testing_support::readFile(std::filesystem::path(EXAMPLES_DIR) / "lab.json");
   auto const end = lab.rfind('}');
   for (std::size_t cut = 0; cut < end; cut += kStep) {
      auto const path = files.write("cut.json", std::string_view(lab).substr(0, cut));
      auto const loaded = StateLoader::loadState(path);
      ASSERT_FALSE(loaded) << "cut at " << cut;
      EXPECT_NE(loaded.reason().find(cut == 0 ? "the file is empty" : "(line "), std::string::npos)
          << "cut at " << cut << ": " << loaded.reason();
   }
}

// Policies are read by several threads, each stopping at its first fault; the file must still be
// refused for the first problem in document order, whether a policy's own fault or a name given
// twice, wherever the threads happen to be.
TEST(RejectedStates, ManyPoliciesAreRefusedForTheirFirstProblem) {
   constexpr int kPolicies = 400;
   // Broken in every file: a late fault that any earlier problem must win over.
   constexpr int kAlwaysBroken = kPolicies - 5;
   struct OrderCase {
      std::string_view name;
      int brokenPolicy;  // its rules are not an object
      int repeatedAt;    // where "p0" is given a second time
      std::string expected;
   };
   OrderCase const cases[] = {
       {"early fault before a late one", 10, kPolicies,
        "/trafficPolicies/p10/rules: expected an object, found a number"},
       {"the earlier of two late faults", 390, kPolicies,
        "/trafficPolicies/p390/rules: expected an object, found a number"},
       {"repeated name before a fault", 300, 200, R"(/trafficPolicies/p0: duplicate key "p0")"},
       {"fault before a repeated name", 150, 350,
        "/trafficPolicies/p150/rules: expected an object, found a number"},
   };
   TempStateFiles const files;
   for (OrderCase const& row : cases) {
      std::string text = R"({"trafficPolicies": {)";
      for (int policy = 0; policy < kPolicies; ++policy) {
         auto const name = policy == row.repeatedAt ? 0 : policy;
         text += (policy ? ", \"p" : "\"p") + std::to_string(name) + "\": ";
         text += policy == row.brokenPolicy || policy == kAlwaysBroken ? R"({"rules": 1})" : "{}";
      }
      text += "}}";
      testing_support::parseJson(text);
      auto const path = files.write("state.json", text);
      auto const loaded = StateLoader::loadState(path);
      ASSERT_FALSE(loaded) << row.name;
      EXPECT_EQ(loaded.reason(), path + ": " + row.expected) << row.name;
   }
}

// A large policy: its members are read in runs by several threads and entered a few thousand at
// a time. One member is broken in every file: a late fault that any earlier problem must win over.
constexpr int kRules = 10000;
constexpr int kAlwaysBroken = kRules - 5;
constexpr int kNowhere = kRules;

// The rules of one large policy are read in runs by several threads and entered a few thousand
// at a time; the first problem in document order must still win, wherever runs and windows end.
TEST(RejectedStates, ManyRulesAreRefusedForTheirFirstProblem) {
   struct OrderCase {
      std::string_view name;
      int broken;            // its sequence is a string
      int repeatedName;      // named "r0" a second time
      int repeatedSequence;  // sequence 1 a second time
      std::string expected;
   };
   auto const badSequence = [](int rule) {
      return "/trafficPolicies/p/rules/r" + std::to_string(rule) +
             "/sequence: expected a whole number from 0 to 4294967295, found a string";
   };
   OrderCase const cases[] = {
       {"early fault before a late one", 10, kNowhere, kNowhere, badSequence(10)},
       {"fault in the last window", 9000, kNowhere, kNowhere, badSequence(9000)},
       {"repeated name in a later window before a fault", 6000, 5000, kNowhere,
        R"(/trafficPolicies/p/rules/r0: duplicate key "r0")"},
       {"repeated sequence before a fault", 6000, kNowhere, 4100,
        R"(/trafficPolicies/p/rules/r4100/sequence: sequence number 1 is already used by rule "r0")"},
       {"fault at a window's end before a repeated name", 255, 256, kNowhere, badSequence(255)},
   };
   std::vector<RejectedCase> rows;
   for (OrderCase const& row : cases) {
      std::string text = R"({"trafficPolicies": {"p": {"rules": {)";
      for (int rule = 0; rule < kRules; ++rule) {
         auto const name = rule == row.repeatedName ? 0 : rule;
         auto const sequence = rule == row.repeatedSequence ? 1 : rule + 1;
         text += (rule ? ", \"r" : "\"r") + std::to_string(name) + "\": {\"sequence\": ";
         text += rule == row.broken || rule == kAlwaysBroken ? "\"x\"}"
                                                             : std::to_string(sequence) + "}";
      }
      text += "}}}}";
      rows.push_back({std::string(row.name), text, row.expected});
   }
   expectRejected(rows, true);
}

// A large file's pages are let go as its rules are read. A fault found late is still told as for
// a file read whole, the text around it read again from the file: a content fault when the text
// is well formed, else the fault of the text, even one after the content fault.
TEST(RejectedStates, LateFaultsOfALargeFileAreToldAsForAFileReadWhole) {
   std::string rules;
   for (int index = 0; index < 20000; ++index) {
      rules +=
          "\"r" + std::to_string(index) + "\": {\"sequence\": " + std::to_string(index + 1) + "}, ";
   }
   auto const withEnd = [&rules](std::string_view end) {
      return R"({"trafficPolicies": {"p": {"rules": {)" + rules +
             R"("late": {"sequence": "x"}}}})" + std::string(end);
   };
   auto const textFault = withEnd("]");
   std::vector<RejectedCase> const cases = {
       {"content fault", withEnd("}"),
        "/trafficPolicies/p/rules/late/sequence: expected a whole number from 0 to 4294967295, "
        "found a string"},
       {"text fault after a content fault", textFault,
        "expected ',' or '}', found ']' (line 1, column " + std::to_string(textFault.size()) + ")"},
   };
   expectRejected(cases, false);
}

// A large policy's status lists its rules and their counters, read by several threads like its
// configuration; the first problem in document order must still win.
TEST(RejectedStates, ManyRuleStatusesAreRefusedForTheirFirstProblem) {
   struct Section {
      std::string_view key;
      std::string_view good;
      std::string_view broken;
      std::string_view fault;
   };
   Section const sections[] = {
       {"rules", R"(["ipv4"])", R"(["ipv4", "ipv6"])",
        ": a rule is processed for one match option at most, found 2"},
       {"ruleCounters", R"({"instanceId": 1, "packets": 2})", R"({"instanceId": 1})",
        R"(: missing key "packets")"},
   };
   struct OrderCase {
      std::string_view name;
      int broken;
      int repeatedName;  // named "r0" a second time
      std::string_view expected;
   };
   OrderCase const cases[] = {
       {"early fault before a late one", 10, kNowhere, "r10"},
       {"fault in the last window", 9000, kNowhere, "r9000"},
       {"repeated name in a later window before a fault", 6000, 5000, ""},
       {"fault at a window's end before a repeated name", 255, 256, "r255"},
   };
   std::vector<RejectedCase> rows;
   for (Section const& section : sections) {
      auto const at = "/status/cpu/policies/p/" + std::string(section.key) + "/";
      for (OrderCase const& row : cases) {
         std::string text =
             R"({"status": {"cpu": {"policies": {"p": {")" + std::string(section.key) + "\": {";
         for (int rule = 0; rule < kRules; ++rule) {
            auto const name = rule == row.repeatedName ? 0 : rule;
            text += (rule ? ", \"r" : "\"r") + std::to_string(name) + "\": ";
            text += rule == row.broken || rule == kAlwaysBroken ? section.broken : section.good;
         }
         text += "}}}}}}";
         auto expected = row.expected.empty()
                             ? at + R"(r0: duplicate key "r0")"
                             : at + std::string(row.expected) + std::string(section.fault);
         rows.push_back({std::string(section.key) + ": " + std::string(row.name), text, expected});
      }
   }
   expectRejected(rows, true);
}

TEST(RejectedStates, FileProblemsNameTheFile) {
   TempStateFiles const files;
   struct FileCase {
      std::string_view name;
      std::string path;
      std::string expected;
   };
   auto const missing = (files.folder() / "missing.json").string();
   auto const folder = files.folder().string();
   auto const empty = files.write("empty.json", "");
   // Sparse: refused by its size, before a byte of it is read.
   auto const huge = files.write("huge.json", "{}");
   std::filesystem::resize_file(huge, std::uintmax_t{1} << 32);
   FileCase const cases[] = {
       {"missing file", missing, missing + ": cannot open: No such file or directory"},
       {"directory", folder, folder + ": is a directory, not a state file"},
       {"empty file", empty, empty + ": the file is empty"},
       {"file above the parser's limit", huge,
        huge + ": the file is larger than 4294967295 bytes, the most the parser can take"},
   };
   for (FileCase const& row : cases) {
      auto const loaded = StateLoader::loadState(row.path);
      ASSERT_FALSE(loaded) << row.name;
      EXPECT_EQ(loaded.reason(), row.expected) << row.name;
   }
}

}  // namespace
