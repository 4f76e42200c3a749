// Completions of a one-shot command line's last word.
#include "tpcli/WordCompletion.h"

#include <optional>

#include "StateLoader/Loader.h"
#include "tpcli/CommandGrammar.h"
#include "tpcli/Locations.h"
#include "tpcli/StateNames.h"

namespace tpcli {

std::string wordCompletions(Options const& options) {
   auto words = options.commandWords;
   std::string partial;
   if (!words.empty()) {
      partial = std::move(words.back());
      words.pop_back();
   }
   // A state that cannot be loaded offers no names; completion says nothing about why.
   std::optional<StateLoader::DeviceState> state;
   bool loaded = false;
   auto names = [&](NameKind kind, std::string_view prefix) {
      if (!loaded) {
         loaded = true;
         auto read = StateLoader::loadState(options.statePath.value_or(exampleStatePath()));
         if (read) {
            state = std::move(read).value();
         }
      }
      return state ? stateNames(*state, kind, prefix) : std::vector<std::string>();
   };
   auto const choices = choicesAt(words, partial, names, CommandSet::oneShot);
   std::string text;
   for (auto const& choice : choices ? *choices : std::vector<Choice>()) {
      // A bare "|" would end the command at the shell's own pipe; users quote it themselves.
      if (choice.completes && choice.word != "|") {
         text += choice.word + "\n";
      }
   }
   return text;
}

}  // namespace tpcli
