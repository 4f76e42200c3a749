// What `?` lists and TAB completes at each place of a line, as the command grammar derives it,
// with a fixed set of state names; and the shell's own commands.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/Words.h"
#include "tpcli/ShellHelp.h"

namespace tpcli {
namespace {

// Names the way the loaded state gives them: by kind, in order, starting with the prefix.
std::vector<std::string> fakeNames(NameKind kind, std::string_view prefix) {
   std::vector<std::string> all;
   switch (kind) {
      case NameKind::policy:
         all = {"edge-in", "edge-out", "tap\x1b[31m"};
         break;
      case NameKind::ipv4FieldSet:
         all = {"servers"};
         break;
      case NameKind::none:
      case NameKind::ipv6FieldSet:
      case NameKind::l4PortFieldSet:
      case NameKind::vlanFieldSet:
         break;
   }
   std::erase_if(all, [prefix](std::string const& name) { return !name.starts_with(prefix); });
   return all;
}

Kel::Expected<std::vector<Choice>> choicesOf(std::string_view line) {
   auto const position = positionOf(line);
   return choicesAt(position.words, position.partial, fakeNames);
}

// The words of the choices, or "% REASON".
std::string listed(std::string_view line) {
   auto const choices = choicesOf(line);
   if (!choices) {
      return "% " + choices.reason();
   }
   std::string words;
   for (auto const& choice : *choices) {
      words += (words.empty() ? "" : " ") + choice.word;
   }
   return words;
}

TEST(ShellHelpTest, ListsWhatTheGrammarAcceptsNext) {
   struct Row {
      std::string line;
      std::string listed;
   };
   Row const rows[] = {
       {"", "clear exit reload show"},
       {"sh", "show"},
       {"show traffic-policy ", "cpu field-set interface policy"},
       {"sh tr c", "cpu"},
       {"show traffic-policy policy ", "edge-in edge-out tap\x1b[31m"},
       {"show traffic-policy policy edge-o", "edge-out"},
       {"show traffic-policy policy nowhere", "NAME"},
       {"show traffic-policy policy edge-in ", "cpu interface"},
       {"show traffic-policy interface ", "counters detail errors input output summary | <cr>"},
       {"show traffic-policy interface input ", "counters detail errors summary | <cr>"},
       {"show traffic-policy field-set i", "ipv4 ipv6"},
       {"show traffic-policy field-set ipv4 prefix ", "contains | servers <cr>"},
       {"show traffic-policy field-set ipv6 prefix ", "contains | NAME <cr>"},
       {"show traffic-policy field-set ipv4 prefix contains ", "PREFIX"},
       {"show traffic-policy field-set l4-port contains 80 ", "| <cr>"},
       {"show traffic-policy field-set vlan c ", "VLAN|LOW-HIGH"},
       {"show traffic-policy cpu | ", "json"},
       {"show traffic-policy cpu |json ", "<cr>"},
       {"clear traffic-policy counters ", "cpu interface | <cr>"},
       {"reload ", "| <cr>"},
       {"show traffic-policy field-set ip ", "% ambiguous word \"ip\": could be ipv4, ipv6"},
       {"show traffic-policy interface detail x", ""},
       {"show traffic-policy interface detail x ",
        "% unexpected word \"x\" after \"detail\": expected end of command"},
       {"show traffic-policy field-set ipv4 prefix contains 10.0.0.1/8 ",
        "% invalid prefix \"10.0.0.1/8\" after \"contains\": host bits set in \"10.0.0.1/8\" "
        "(did you mean 10.0.0.0/8?)"},
   };
   for (auto const& row : rows) {
      EXPECT_EQ(listed(row.line), row.listed) << row.line;
   }
}

TEST(ShellHelpTest, ShowsOneLineOfHelpPerChoiceWithNamesMadePrintable) {
   EXPECT_EQ(helpText(choicesOf("sh traffic-policy field-set ipv4 "), ""),
             "  prefix  Prefix field sets\n");
   EXPECT_EQ(helpText(choicesOf("show traffic-policy policy t"), "t"),
             "  tap\\u001b[31m  Policy name\n");
   EXPECT_EQ(helpText(choicesOf("show traffic-policy cpu |json "), ""),
             "  <cr>  Run the command\n");
   EXPECT_EQ(helpText(choicesOf("show x "), ""),
             "% unknown word \"x\" after \"show\": expected traffic-policy\n");
   EXPECT_EQ(helpText(choicesOf("show traffic-policy z"), "z"),
             "% no word here starts with \"z\"\n");
}

TEST(ShellHelpTest, CompletesAUniqueWordOrWhatTheCandidatesShare) {
   struct Row {
      std::string line;
      Completion completion;
   };
   Row const rows[] = {
       {"sh", {"ow ", ""}},
       {"show traffic-policy int", {"erface ", ""}},
       {"show traffic-policy policy ed", {"ge-", ""}},
       {"show traffic-policy policy edge-i", {"n ", ""}},
       {"show traffic-policy policy edge-",
        {"", "  edge-in   Policy name\n  edge-out  Policy name\n"}},
       {"show traffic-policy field-set ipv4 prefix contains 10", {"", ""}},
       {"show traffic-policy field-set ipv4 prefix s", {"ervers ", ""}},
       {"show nothing", {"", ""}},
   };
   for (auto const& row : rows) {
      auto const position = positionOf(row.line);
      EXPECT_EQ(completionOf(choicesOf(row.line), position.partial), row.completion) << row.line;
   }
}

TEST(ShellHelpTest, TheShellAloneTakesReloadAndExit) {
   auto const words = tpcli_test::wordsOf("reload");
   auto const exit = parseCommand(tpcli_test::wordsOf("e"), CommandSet::shell);
   ASSERT_TRUE(exit.ok());
   EXPECT_EQ(exit.value().request, Request{SessionRequest::exit});
   EXPECT_EQ(parseCommand(words, CommandSet::shell).value().request,
             Request{SessionRequest::reload});
   EXPECT_EQ(parseCommand(words).reason(), "unknown command \"reload\": expected show or clear");
}

}  // namespace
}  // namespace tpcli
