// Test support: the expression of the assertion that a call stops on, after "SOURCE: " when asked
// for, or "" when it stops on none. The throwing handler is in place for the call only.
#pragma once

#include <functional>
#include <string>

#include "Kel/Assert.h"

namespace testing_support {

inline std::string failedAssertion(std::function<void()> const& call, bool withSource = false) {
   struct Restore {
      Kel::AssertHandler previous;
      ~Restore() { Kel::assertHandlerIs(previous); }
   } const restore{Kel::assertHandlerIs(&Kel::throwingAssertHandler)};
   try {
      call();
   } catch (Kel::AssertionError const& error) {
      return withSource ? error.source() + ": " + error.expression() : error.expression();
   }
   return "";
}

}  // namespace testing_support
