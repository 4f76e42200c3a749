// Assertions guard the runtime's and the library's own invariants. A failure names the quoted
// expression, the source it belongs to and the function; what happens next is up to the installed
// handler: the default aborts, tests and the front end install one that throws so that a broken
// invariant ends one command instead of the process.
#pragma once

#include <stdexcept>
#include <string>

// Each target names its source with -DKEL_SOURCE_NAME="..."; sources without one report their file.
#ifndef KEL_SOURCE_NAME
#define KEL_SOURCE_NAME __FILE__
#endif

#define KEL_ASSERT(expr)                           \
   (static_cast<bool>(expr) ? static_cast<void>(0) \
                            : ::Kel::assertionFailed(#expr, KEL_SOURCE_NAME, __func__))

namespace Kel {

struct AssertionInfo {
   char const* expression;
   char const* source;
   char const* function;
};

using AssertHandler = void (*)(AssertionInfo const&);

// The one-line description every handler reports: expression, source and function.
std::string assertionMessage(AssertionInfo const& info);

// Writes the message to standard error and aborts.
[[noreturn]] void abortingAssertHandler(AssertionInfo const& info);
// Throws AssertionError.
[[noreturn]] void throwingAssertHandler(AssertionInfo const& info);

// Installs a handler and returns the one it replaces.
AssertHandler assertHandlerIs(AssertHandler handler) noexcept;
AssertHandler assertHandler() noexcept;

// Calls the handler; should a handler return, the process aborts all the same.
[[noreturn]] void assertionFailed(char const* expression, char const* source, char const* function);

class AssertionError : public std::logic_error {
 public:
   explicit AssertionError(AssertionInfo const& info);

   std::string const& expression() const noexcept { return expression_; }
   std::string const& source() const noexcept { return source_; }
   std::string const& function() const noexcept { return function_; }

 private:
   std::string expression_;
   std::string source_;
   std::string function_;
};

}  // namespace Kel
