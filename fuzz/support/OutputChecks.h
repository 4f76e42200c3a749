// What every command's output must be, whatever the state: JSON that a parser of its own reads,
// and text that a terminal shows as it stands (no control character but the newline, no DEL, no
// C1 control). A failed check prints the command and its output and aborts, so that libFuzzer
// keeps the input.
#pragma once

#include <string>

namespace fuzz {

void checkJson(std::string const& output, std::string const& command);
void checkText(std::string const& output, std::string const& command);

}  // namespace fuzz
