// Loading a state file: read it, read every section from its text, and turn the first problem
// into the one-line reason "FILE: /json/pointer: what is wrong" ("FILE: what is wrong" for the file
// as a whole). A fault of the JSON text comes before any fault of its content, wherever the two
// are, as it did when files were parsed whole before they were read: a content fault is only
// reported once the whole text is known to be well formed.
#include "StateLoader/Loader.h"

#include <new>
#include <optional>

#include "DeviceStateReader.h"
#include "Document.h"
#include "PieceLoader.h"
#include "StateError.h"
#include "StateFile.h"
#include "SyntaxLocator.h"
#include "TextMembers.h"

namespace StateLoader {

namespace {

// The text is padded with zeros, which end every scan at its end.
DeviceState readText(StateText const& state) {
   auto const text = state.text;
   PieceParser parser;
   TextValue const root{&state, &parser, skipBlanks(text, 0), 1, text.size()};
   Where const top = Where::root();
   auto const node = nodeOf(root, top);
   auto read = readDeviceState(node);
   if (node.unparsed && skipBlanks(text, root.end) != text.size()) {
      refuseText();
   }
   return read;
}

FileBytes readFile(std::string const& path) {
   return readStateFile(path, simdjson::SIMDJSON_PADDING, simdjson::SIMDJSON_MAXSIZE_BYTES);
}

// The whole text for locating a fault: pages let go behind the reading are read again from the
// file, which must not have changed in between.
std::string_view wholeText(std::string const& path, StateText const& state,
                           std::optional<FileBytes>& again) {
   if (!state.released) {
      return state.text;
   }
   again.emplace(readFile(path));
   if (!again->isSameFileAs(*state.bytes)) {
      failFileChanged();
   }
   return again->text();
}

DeviceState readCheckedText(std::string const& path, FileBytes const& bytes,
                            PieceLimits const& limits) {
   StateText const state{bytes.text(), limits, bytes.canBeReadAgain() ? &bytes : nullptr};
   std::optional<FileBytes> again;
   try {
      return readText(state);
   } catch (TextRefused const& refused) {
      bytes.failIfChanged();
      failRefused(wholeText(path, state, again), refused.error());
   } catch (StateError const&) {
      bytes.failIfChanged();
      if (auto const fault = locateSyntaxFault(wholeText(path, state, again), kMaxNesting)) {
         throw StateError(fault->pointer, fault->message);
      }
      throw;
   }
}

// What was read from a file that changed meanwhile may be any mix of its old and new bytes.
DeviceState readUnchangedText(std::string const& path, PieceLimits const& limits) {
   auto const bytes = readFile(path);
   auto state = readCheckedText(path, bytes, limits);
   bytes.failIfChanged();
   return state;
}

}  // namespace

Kel::Expected<DeviceState> loadState(std::string const& path, PieceLimits const& limits) {
   try {
      return readUnchangedText(path, limits);
   } catch (StateError const& error) {
      return Kel::Failure{reasonOf(path, error)};
   } catch (std::bad_alloc const&) {
      return Kel::Failure{path + ": not enough memory to load the state"};
   }
}

Kel::Expected<DeviceState> loadState(std::string const& path) {
   return loadState(path, PieceLimits{});
}

}  // namespace StateLoader
