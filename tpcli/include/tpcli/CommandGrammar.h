// The grammar of tpcli's commands:
//
//   show traffic-policy [policy NAME] interface [input|output] [summary|detail|errors|counters]
//   show traffic-policy [policy NAME] cpu [summary|detail|errors|counters]
//   show traffic-policy field-set ipv4|ipv6 prefix [NAME] [contains PREFIX [exact]]
//   show traffic-policy field-set l4-port [NAME] [contains PORT|LOW-HIGH]
//   show traffic-policy field-set vlan [NAME] [contains VLAN|LOW-HIGH]
//   clear traffic-policy counters [interface [input|output] | cpu]
//
// each optionally followed by "| json" ("|json" as one word too), and in the shell also `reload`
// and `exit`. Keywords may be abbreviated; where a field-set name may stand, a word that
// abbreviates "contains" is taken as the keyword. The shell's help and completion walk the same
// grammar, so they offer exactly what parsing accepts.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Kel/Expected.h"
#include "tpcli/Command.h"
#include "tpcli/WordReader.h"

namespace tpcli {

// The one-shot command line, or a line typed in the shell.
enum class CommandSet { oneShot, shell };

// On failure the reason is the usage message (without the "tpcli: " prefix).
Kel::Expected<ParsedCommand> parseCommand(std::vector<std::string> const& words,
                                          CommandSet set = CommandSet::oneShot);

// One line of help: a keyword, a name from the state, or a placeholder ("NAME", "<cr>") that
// completion cannot put into the line.
struct Choice {
   std::string word;
   std::string_view help;
   bool completes = true;
   friend bool operator==(Choice const&, Choice const&) = default;
};

// The loaded state's names of a kind that start with `prefix`, in order.
using NameLister = std::function<std::vector<std::string>(NameKind, std::string_view prefix)>;

// What may stand in a command line where a word starting with `partial` is being typed after
// `words`: keywords in alphabetical order, then the state's names in theirs (or the value's
// placeholder when none fits), then "<cr>" where the command may end. A mistake in the words
// before fails with the message parsing gives.
Kel::Expected<std::vector<Choice>> choicesAt(std::vector<std::string> const& words,
                                             std::string_view partial, NameLister const& names,
                                             CommandSet set = CommandSet::shell);

}  // namespace tpcli
