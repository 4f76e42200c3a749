// simdjson parses at gigabytes per second but says only what kind of fault it met; when it
// refuses a file, our own scanner goes over the text again to say where.
#include "Document.h"

#include <new>

#include "StateError.h"
#include "StateFile.h"
#include "SyntaxLocator.h"

namespace StateLoader {

void failRefused(std::string_view text, simdjson::error_code error) {
   if (error == simdjson::MEMALLOC) {
      throw std::bad_alloc();
   }
   if (auto const fault = locateSyntaxFault(text, kMaxNesting)) {
      throw StateError(fault->pointer, fault->message);
   }
   throw StateError(
       "", std::string("the JSON parser refused the file: ") + simdjson::error_message(error));
}

simdjson::dom::element parseStateFile(simdjson::dom::document& document, std::string const& path) {
   auto const bytes =
       readStateFile(path, simdjson::SIMDJSON_PADDING, simdjson::SIMDJSON_MAXSIZE_BYTES);
   auto const text = bytes.text();
   simdjson::dom::parser parser;
   // The parser counts a scalar inside the innermost list as one more level than we do.
   if (parser.allocate(text.size(), kMaxNesting + 1) != simdjson::SUCCESS) {
      throw std::bad_alloc();
   }
   auto const parsed = parser.parse_into_document(document, text.data(), text.size(), false);
   bytes.failIfChanged();
   if (parsed.error() != simdjson::SUCCESS) {
      failRefused(text, parsed.error());
   }
   return parsed.value_unsafe();
}

}  // namespace StateLoader
