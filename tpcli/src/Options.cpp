// The CLI11 description of tpcli's options, its help text, and the translation of CLI11's outcomes
// into an invocation or a one-line usage message.
#include "tpcli/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "Strix/Printable.h"
#include "tpcli/ValueParsers.h"

namespace tpcli {

namespace {

constexpr char const* kDescription =
    "Shows the traffic policies and field sets of a device state, as a device's CLI does.";

constexpr char const* kFooter = R"(Commands (keywords may be shortened to any unique prefix):
  show traffic-policy [policy NAME] interface [input|output] [summary|detail|errors|counters]
  show traffic-policy [policy NAME] cpu [summary|detail|errors|counters]
  show traffic-policy field-set ipv4|ipv6 prefix [NAME] [contains PREFIX [exact]]
  show traffic-policy field-set l4-port [NAME] [contains PORT|LOW-HIGH]
  show traffic-policy field-set vlan [NAME] [contains VLAN|LOW-HIGH]
  clear traffic-policy counters [interface [input|output] | cpu]
  metrics [--listen ADDRESS:PORT]
A command may end in "| json" (quoted for the shell), the same as --json. Names are taken as
written; where a field-set name may stand, a word that abbreviates "contains" is that keyword.

Interactive shell: "tpcli [-s STATE] shell", or no command at a terminal, loads the state once
and takes the same commands at a prompt, with "?" for what may come next, TAB to complete
keywords and the state's names, history kept in ~/.tpcli_history, "reload" to read the state
file again and "exit" (or Ctrl-D) to leave. See tpcli(1).

Examples:
  tpcli show traffic-policy interface
  tpcli sh traffic-policy int det
  tpcli -s device.json show traffic-policy policy edge-in interface input counters
  tpcli show traffic-policy cpu '|' json
  tpcli show traffic-policy field-set ipv4 prefix contains 10.1.0.0/16 exact
  tpcli --json show traffic-policy field-set l4-port contains 1000-2000
  tpcli -s device.json metrics --listen 127.0.0.1:9469
  tpcli -s device.json shell

Exit codes: 0 done, 1 failed to act, 2 usage, 3 invalid state file, 70 internal error,
130 interrupted. Output to a reader that goes away (a pager quit early, "| head") ends quietly
with 0. On a terminal the output goes through $PAGER (default "less -FRX"; set empty: no pager).)";

// A CLI11 check that accepts one of the whole numbers in [lowest, highest].
CLI::Validator wholeNumberIn(std::uint32_t lowest, std::uint32_t highest) {
   auto const expected =
       lowest + 1 == highest
           ? std::to_string(lowest) + " or " + std::to_string(highest)
           : "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest);
   return CLI::Validator(
       [=](std::string& text) -> std::string {
          return parseNumber(text, lowest, highest)
                     ? std::string()
                     : "expected " + expected + ", not " + Strix::quoted(text);
       },
       std::to_string(lowest) + "-" + std::to_string(highest));
}

void describeOptions(CLI::App& app, Options& options) {
   app.add_option("-s,--state", options.statePath,
                  "Device state file (default: the bundled example)")
       ->type_name("STATE");
   app.add_flag("--json", options.json, "Write JSON instead of text");
   app.add_option("--revision", options.revision, "Output revision (default 2)")
       ->type_name("N")
       ->check(wholeNumberIn(1, 2));
   app.add_option("--trace", options.traceLevel, "Switch every trace facility on up to level N")
       ->type_name("N")
       ->check(wholeNumberIn(0, 9));
   app.add_flag("--no-pager", options.noPager, "Never page the output");
   app.add_flag("--records", options.records,
                "Run only the command's caching and print its cached records as JSON");
   app.add_option("--library", options.libraryPath,
                  "The show library (default: $TPCLI_LIBRARY, then beside tpcli)")
       ->type_name("PATH");
   app.add_option("--listen", options.listen,
                  "With metrics: serve them over HTTP at /metrics until SIGTERM")
       ->type_name("ADDRESS:PORT");
   // For the bash completion script, which passes the words up to the cursor.
   app.add_flag("--complete", options.complete,
                "Print the words that may complete the command's last word")
       ->group("");
   app.add_option("COMMAND", options.commandWords, "The command's words")->type_name("WORD");
   for (auto* option : app.get_options()) {
      option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
   }
}

// Options CLI11 does not know are left over rather than failing, so that they can be named.
Kel::Expected<Invocation> withoutUnknownOptions(CLI::App const& app, Invocation invocation) {
   auto const remaining = app.remaining();
   auto const unknown = std::ranges::find_if(
       remaining, [](std::string const& word) { return word.starts_with('-') && word != "--"; });
   if (unknown != remaining.end()) {
      return Kel::Failure{"unknown option " + Strix::quoted(*unknown) + " (see tpcli --help)"};
   }
   return invocation;
}

}  // namespace

Kel::Expected<Invocation> parseCommandLine(std::vector<std::string> arguments) {
   Invocation invocation;
   CLI::App app(kDescription, "tpcli");
   app.footer(kFooter);
   app.allow_extras();
   app.set_version_flag("--version", "tpcli " TPCLI_VERSION);
   describeOptions(app, invocation.options);
   std::ranges::reverse(arguments);  // CLI11 takes the arguments last one first
   try {
      app.parse(arguments);
   } catch (CLI::CallForHelp const&) {
      invocation.textToPrint = app.help();
      return invocation;
   } catch (CLI::CallForVersion const& version) {
      invocation.textToPrint = std::string(version.what()) + "\n";
      return invocation;
   } catch (CLI::ParseError const& error) {
      return Kel::Failure{error.what()};
   }
   return withoutUnknownOptions(app, std::move(invocation));
}

}  // namespace tpcli
