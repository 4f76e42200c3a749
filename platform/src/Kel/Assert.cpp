// Assertion handlers and the failure path of KEL_ASSERT.
#include "Kel/Assert.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace Kel {

namespace {
std::atomic<AssertHandler> installedHandler{&abortingAssertHandler};
}

std::string assertionMessage(AssertionInfo const& info) {
   std::string message = "assertion \"";
   message += info.expression;
   message += "\" failed in ";
   message += info.source;
   message += ", function ";
   message += info.function;
   return message;
}

void abortingAssertHandler(AssertionInfo const& info) {
   std::fprintf(stderr, "%s\n", assertionMessage(info).c_str());
   std::abort();
}

void throwingAssertHandler(AssertionInfo const& info) {
   throw AssertionError(info);
}

AssertHandler assertHandlerIs(AssertHandler handler) noexcept {
   return installedHandler.exchange(handler ? handler : &abortingAssertHandler);
}

AssertHandler assertHandler() noexcept {
   return installedHandler.load();
}

void assertionFailed(char const* expression, char const* source, char const* function) {
   AssertionInfo const info{expression, source, function};
   installedHandler.load()(info);
   abortingAssertHandler(info);
}

AssertionError::AssertionError(AssertionInfo const& info)
    : std::logic_error(assertionMessage(info)),
      expression_(info.expression),
      source_(info.source),
      function_(info.function) {}

}  // namespace Kel
