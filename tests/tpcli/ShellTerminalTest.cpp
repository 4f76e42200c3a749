// The shell at a real terminal: tmux runs `tpcli shell`, the test types keys and reads the
// screen. Each case is a state and steps of keys, each step waiting for a text on the screen.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "support/TempStateFiles.h"
#include "support/Terminal.h"
#include "support/TpcliProcess.h"

namespace tpcli_test {
namespace {

using testing_support::TempStateFiles;

// Output of a one-shot command as the screen shows it: blanks at line ends dropped.
std::string oneShotScreen(std::string const& state, std::string const& command) {
   auto arguments = std::vector<std::string>{"-s", state, "--no-pager"};
   for (auto const& word : linesOf(command)) {
      arguments.push_back(word);
   }
   std::string text;
   for (auto const& line : linesOf(runTpcli(arguments).standardOutput)) {
      text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
   }
   return text;
}

std::string shellOn(std::string const& state) {
   return "PAGER= " + shellQuoted(TPCLI_EXECUTABLE) + " -s " + shellQuoted(state) + " shell";
}

// Keys typed at the prompt while a command runs may be lost as the editor takes the terminal
// back, so a step that runs a command waits for the prompt after it, unless it is meant to act
// while the command runs.
// The last lines of the screen, for a failure's message.
std::string bottomOf(Terminal const& terminal) {
   auto const lines = linesOf(terminal.screen());
   std::string text;
   auto end = lines.end();
   while (end != lines.begin() && (end - 1)->empty()) {
      --end;
   }
   for (auto line = end - lines.begin() > 12 ? end - 12 : lines.begin(); line != end; ++line) {
      text += *line + "\n";
   }
   return text;
}

struct Step {
   std::vector<std::string> keys;
   std::string shows;          // waited for at the end of the screen
   bool whileRunning = false;  // `shows` anywhere on the screen, the command still running
   std::function<void(std::string const& state)> before = nullptr;
};

struct Case {
   std::string name;
   bool largeState;  // a generated state whose detail listing takes seconds
   std::function<std::vector<Step>(std::string const& state)> steps;
};

// Makes the state file unreadable for the loader.
void breakFile(std::string const& state) {
   std::ofstream(state, std::ios::trunc) << "{";
}

std::vector<Case> const& cases() {
   static std::vector<Case> const all = {
       {"QuestionMarkListsWhatMayComeNext", false,
        [](std::string const&) {
           return std::vector<Step>{
               {{"show traffic-policy ?"},
                "lab#show traffic-policy\n"
                "  cpu        Policies applied to the CPU\n"
                "  field-set  Field sets\n"
                "  interface  Policies applied to interfaces\n"
                "  policy     One policy by name\n"
                "lab#show traffic-policy"},
               {{"field-set i?"},
                "  ipv4  IPv4 prefix field sets\n  ipv6  IPv6 prefix field sets\n"
                "lab#show traffic-policy field-set i"},
           };
        }},
       {"TabCompletesAPolicyName", false,
        [](std::string const&) {
           return std::vector<Step>{
               {{"sh traffic-policy policy cpu-p", "Tab"},
                "lab#sh traffic-policy policy cpu-protect"},
               {{"cp", "Tab", "Enter"}, "Traffic policy cpu-protect", true},
               {{}, "for details about the failures.\nlab#"},
           };
        }},
       {"AnAbbreviatedCommandPrintsTheOneShotLines", false,
        [](std::string const& state) {
           auto const expected = oneShotScreen(state, "show\ntraffic-policy\ninterface\nsummary");
           return std::vector<Step>{
               {{"sh tr int sum", "Enter"}, "lab#sh tr int sum\n" + expected + "lab#"}};
        }},
       {"LaterShowsSeeAClear", false,
        [](std::string const&) {
           return std::vector<Step>{
               {{"clear traffic-policy counters", "Enter"},
                "lab#clear traffic-policy counters\nlab#"},
               {{"sh tr int counters", "Enter"},
                "   bogon-drops:\n      Ethernet1: 0 packets 0 bytes\n",
                true},
               {{}, "\nlab#"},
           };
        }},
       {"CtrlCEndsALongListingAndPromptsAgain", true,
        [](std::string const&) {
           // Holding the terminal's output (Ctrl-S) keeps the listing running until Ctrl-C.
           return std::vector<Step>{
               {{"sh tr int det", "Enter"}, "Actions:", true},
               {{"C-s", "C-c", "C-q"}, "exiting interrupted\nstate#"},
               {{"sh tr po p", "Tab", "Tab"}, "  policy-1  Policy name\nstate#sh tr po policy-"},
           };
        }},
       {"ReloadOfABrokenFileKeepsTheLoadedState", false,
        [](std::string const&) {
           return std::vector<Step>{
               {{"reload", "Enter"}, "; the state loaded before stays\nlab#", false, breakFile},
               {{"sh tr po edge-o", "Tab"}, "lab#sh tr po edge-out"},
           };
        }},
   };
   return all;
}

void PrintTo(Case const& row, std::ostream* out) {
   *out << row.name;
}

class ShellTerminalTest : public testing::TestWithParam<Case> {};

TEST_P(ShellTerminalTest, Shows) {
   TempStateFiles files;
   auto const state =
       (files.folder() / (GetParam().largeState ? "state.json" : "lab.json")).string();
   if (GetParam().largeState) {
      ASSERT_EQ(std::system((std::string(GENERATE_STATE) +
                             " --policies 2 --rules 3000 --interfaces 2 --prefix-sets 1 "
                             "--prefixes 2 --output " +
                             shellQuoted(state))
                                .c_str()),
                0);
   } else {
      std::filesystem::copy_file(EXAMPLES_DIR "/lab.json", state);
   }
   auto const steps = GetParam().steps(state);
   Terminal terminal(shellOn(state), files.folder().string());
   auto const prompt = GetParam().largeState ? "state#" : "lab#";
   ASSERT_TRUE(terminal.waitFor(prompt)) << terminal.screen();
   for (auto const& step : steps) {
      if (step.before) {
         step.before(state);
      }
      terminal.send(step.keys);
      ASSERT_TRUE(
          terminal.waitFor(step.shows, step.whileRunning ? Terminal::anywhere : Terminal::atEnd))
          << step.shows << "\n---\n"
          << bottomOf(terminal);
   }
   terminal.send({"C-u", "C-d"});
   EXPECT_EQ(terminal.waitForExit(), 0) << bottomOf(terminal);
}

INSTANTIATE_TEST_SUITE_P(Cases, ShellTerminalTest, testing::ValuesIn(cases()),
                         [](auto const& row) { return row.param.name; });

TEST(ShellHistoryTest, TheLastCommandIsRecalledAfterARestart) {
   TempStateFiles files;
   auto const state = (files.folder() / "lab.json").string();
   std::filesystem::copy_file(EXAMPLES_DIR "/lab.json", state);
   auto const home = files.folder().string();
   {
      Terminal first(shellOn(state), home);
      ASSERT_TRUE(first.waitFor("lab#"));
      first.send({"sh tr cpu sum", "Enter"});
      ASSERT_TRUE(first.waitFor("for details about the failures.\nlab#")) << first.screen();
      first.send({"exit", "Enter"});
      ASSERT_EQ(first.waitForExit(), 0) << first.screen();
   }
   Terminal second(shellOn(state), home);
   ASSERT_TRUE(second.waitFor("lab#"));
   second.send({"Up", "Up"});
   EXPECT_TRUE(second.waitFor("lab#sh tr cpu sum")) << second.screen();
}

}  // namespace
}  // namespace tpcli_test
