// Text from outside (a state file, a command word) shown back in a message. Nothing in it may
// steer the terminal that shows the message, pass for a blank, break the message into lines or
// flood the screen: every place that echoes input goes through here, and names are checked here
// for what they may not hold.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Strix {

// The most bytes of one piece of input that a message shows.
inline constexpr std::size_t kLongestEcho = 200;

// The longest start of `text` of at most kLongestEcho bytes that does not end inside a character.
std::string_view echoedPart(std::string_view text) noexcept;

// Appends `text` with everything that cannot be shown as it is written as an escape: "\n", "\t",
// "\u" and four hex digits for other control characters (C0, DEL, C1), line and paragraph
// separators, direction controls and blanks other than the plain blank, and "\x" and two hex
// digits for a byte that is not UTF-8. Text that is printable already comes out unchanged.
void appendPrintable(std::string& out, std::string_view text);
std::string printable(std::string_view text);

// `text` in double quotes for a message, printable, and cut after its echoed part with "...".
std::string quoted(std::string_view text);

// The first character that a name may not hold, as "blank at position 3" would name it:
// `description` is "blank", "control character 10", "direction control U+202E", ...; `position`
// counts characters from 1.
struct Unshowable {
   std::size_t position;
   std::string description;
};
std::optional<Unshowable> findUnshowable(std::string_view text, bool plainBlankAllowed);

}  // namespace Strix
