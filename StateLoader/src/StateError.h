// The one way a problem leaves the walk over a state file: where it is and what is wrong. Builders
// throw it from deep inside a section, and the loader turns it into its one-line reason, so that no
// builder needs an error path of its own.
#pragma once

#include <stdexcept>
#include <string>

#include "Strix/Printable.h"

namespace StateLoader {

class Where;

class StateError : public std::runtime_error {
 public:
   // An empty pointer stands for the file as a whole (or its top-level value).
   StateError(std::string pointer, std::string const& message)
       : std::runtime_error(message), pointer_(std::move(pointer)) {}

   std::string const& pointer() const noexcept { return pointer_; }

 private:
   std::string pointer_;
};

[[noreturn]] void fail(Where const& where, std::string const& message);

// The one-line reason for a problem of the file at `path`: "FILE: /json/pointer: what is wrong",
// or "FILE: what is wrong" for the file as a whole.
std::string reasonOf(std::string const& path, StateError const& error);

// Text quoted for a message, as in: unknown key "sorces". Very long text is cut short.
using Strix::quoted;

}  // namespace StateLoader
