// The shell's loop: read a line, run it on the loaded state, report, and prompt again. Help and
// completion ask the command grammar what may come next, with the loaded state's names.
#include "tpcli/Shell.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <variant>

#include "Strix/Printable.h"
#include "tpcli/CommandGrammar.h"
#include "tpcli/CommandHistory.h"
#include "tpcli/DynamicLibrary.h"
#include "tpcli/LineEditor.h"
#include "tpcli/Locations.h"
#include "tpcli/Reporting.h"
#include "tpcli/Session.h"
#include "tpcli/StateNames.h"
#include "vellum/SigIntException.h"

namespace tpcli {

namespace {

constexpr char const* kPrefix = "% ";

void warnIf(std::optional<std::string> const& problem) {
   if (problem) {
      std::fprintf(stderr, "%s%s\n", kPrefix, Strix::printable(*problem).c_str());
   }
}

LineEditor::Assist assistOn(Session const& session) {
   auto choices = [&session](LinePosition const& position) {
      return choicesAt(position.words, position.partial,
                       [&session](NameKind kind, std::string_view prefix) {
                          return stateNames(session.state(), kind, prefix);
                       });
   };
   return {[choices](std::string_view line) {
              auto const position = positionOf(line);
              return helpText(choices(position), position.partial);
           },
           [choices](std::string_view line) {
              auto const position = positionOf(line);
              return completionOf(choices(position), position.partial);
           }};
}

// Runs one line; false when it asks to leave. An interrupt ends only the command it stopped.
bool runLine(Session& session, std::vector<std::string> const& words) {
   bool leave = false;
   vellum::sigIntNoticedIs(false);
   runReported(
       [&] {
          auto const command = valueOr(parseCommand(words, CommandSet::shell), ExitCode::usage);
          auto const* sessionRequest = std::get_if<SessionRequest>(&command.request);
          leave = sessionRequest && *sessionRequest == SessionRequest::exit;
          return leave ? ExitCode::done : session.run(command).code;
       },
       kPrefix);
   vellum::sigIntNoticedIs(false);
   return !leave;
}

}  // namespace

std::string promptFor(std::string const& statePath) {
   return Strix::printable(std::filesystem::path(statePath).stem().string()) + "#";
}

ExitCode runShell(Options const& options) {
   Session session(options);
   bool const atTerminal = isatty(STDIN_FILENO) == 1;
   // Lines fed from a script are not the user's history.
   CommandHistory history(atTerminal ? historyPath() : std::nullopt);
   warnIf(history.load());
   auto const loaded = makeFromModule<LineEditorFactory>(
       lineEditorModulePath(), "the line editor", "tpcliLineEditor", promptFor(session.statePath()),
       assistOn(session));
   auto& editor = *loaded.object;
   for (auto const& line : history.lines()) {
      editor.remember(line);
   }
   while (auto const line = editor.readLine()) {
      auto const words = wordsOfLine(*line);
      if (words.empty()) {
         continue;
      }
      editor.remember(*line);
      warnIf(history.add(*line));
      if (!runLine(session, words)) {
         return ExitCode::done;
      }
   }
   if (atTerminal) {
      std::fputc('\n', stdout);
   }
   return ExitCode::done;
}

}  // namespace tpcli
