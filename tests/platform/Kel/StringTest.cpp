// The object model's string orders by bytes, as the standard string does, at every length and at
// every place of the first difference: its comparison reads words and must agree byte for byte.
#include <gtest/gtest.h>

#include <string>

#include "Kel/String.h"

namespace {

int sign(auto order) {
   return order < 0 ? -1 : order > 0 ? 1 : 0;
}

void expectSameOrder(std::string const& left, std::string const& right) {
   Kel::String const kelLeft(left);
   Kel::String const kelRight(right);
   SCOPED_TRACE(testing::Message() << '"' << left << "\" vs \"" << right << '"');
   EXPECT_EQ(sign(kelLeft <=> kelRight), sign(left.compare(right)));
   EXPECT_EQ(kelLeft == kelRight, left == right);
}

TEST(StringOrder, AgreesWithTheStandardStringAtEveryLengthAndPlace) {
   // 0x80 and 0xff check that bytes compare unsigned; "\0" that a zero byte is an ordinary byte.
   for (char const changed : {'\0', 'A', 'z', '\x80', '\xff'}) {
      for (std::size_t length = 0; length <= 20; ++length) {
         std::string const base(length, 'm');
         expectSameOrder(base, base);
         expectSameOrder(base, base + 'a');
         expectSameOrder(base + 'a', base);
         for (std::size_t place = 0; place < length; ++place) {
            std::string other = base;
            other[place] = changed;
            expectSameOrder(base, other);
            expectSameOrder(other, base);
            expectSameOrder(other.substr(0, place + 1), base);
            // Later bytes that order the other way do not count.
            bool const lower = static_cast<unsigned char>(changed) < 'm';
            for (std::size_t later = place + 1; later < length; ++later) {
               other[later] = lower ? '\xff' : '\0';
            }
            expectSameOrder(base, other);
         }
      }
   }
}

}  // namespace
