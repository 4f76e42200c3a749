// Finding where an object or a list ends, 64 bytes of text at a time. Walking the text byte by
// byte costs about as much as parsing it; here each block of 64 bytes becomes bit masks of its
// quotes, backslashes, brackets and commas, the quotes that backslashes escape and the bytes
// inside strings follow from those with a few whole-word operations, and only the brackets are
// then counted. The answer is the same as the byte walk's (skimValue in TextPieces.h) in every
// case, malformed text included: where the two could read a block differently, the byte walk
// reads it.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace StateLoader {

// The end of the object or list whose opening bracket is at `begin` (just after its closing
// bracket), or TextValue::kUnknown at its first comma beyond `last`. Empty when the byte walk must
// read it: a backslash stands outside a string, which only malformed text has. Throws TextRefused
// when the text ends first. The text is followed by at least 64 zero bytes.
std::optional<std::size_t> skimBracketed(std::string_view text, std::size_t begin,
                                         std::size_t last);

#if defined(__x86_64__)
// The walk for each kind of x86-64 processor, which skimBracketed chooses from; the one with AVX2
// only where the processor has it.
bool processorHasAvx2();
std::optional<std::size_t> skimBracketedWithSse2(std::string_view text, std::size_t begin,
                                                 std::size_t last);
std::optional<std::size_t> skimBracketedWithAvx2(std::string_view text, std::size_t begin,
                                                 std::size_t last);
#endif

}  // namespace StateLoader
