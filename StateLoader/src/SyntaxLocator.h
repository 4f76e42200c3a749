// Finds the first syntax fault of a document that the fast parser refused, and says where it is:
// the JSON pointer of the value being read, with the line and column. It runs only after a
// refusal, but refused files can be large (and a fuzzer refuses millions): it is one linear pass
// that takes plain runs of text eight bytes at a time, with a stack of its own, so that no nesting
// can exhaust ours.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace StateLoader {

struct SyntaxFault {
   std::string pointer;
   std::string message;
};

// Empty when the text is a JSON document nested at most `maxDepth` objects and lists deep, whose
// strings are valid UTF-8 and whose integers fit 64 bits.
std::optional<SyntaxFault> locateSyntaxFault(std::string_view text, std::size_t maxDepth);

}  // namespace StateLoader
