// The object model's string orders by bytes, as the standard string does, at every length and at
// every place of the first difference: its comparison reads words and must agree byte for byte.
#include <gtest/gtest.h>

#include <string>

#include "Kel/String.h"
#include "support/AllocationCounter.h"

namespace {

int sign(auto order) {
   return order < 0 ? -1 : order > 0 ? 1 : 0;
}

void expectSameOrder(std::string const& left, std::string const& right) {
   Kel::String const kelLeft(left);
   Kel::String const kelRight(right);
   SCOPED_TRACE(testing::Message() << '"' << left << "\" vs \"" << right << '"');
   EXPECT_EQ(sign(kelLeft <=> kelRight), sign(left.compare(right)));
   EXPECT_EQ(sign(kelLeft <=> std::string_view(right)), sign(left.compare(right)));
   EXPECT_EQ(kelLeft == kelRight, left == right);
}

TEST(StringOrder, AgreesWithTheStandardStringAtEveryLengthAndPlace) {
   // 0x80 and 0xff check that bytes compare unsigned; "\0" that a zero byte is an ordinary byte.
   for (char const changed : {'\0', 'A', 'z', '\x80', '\xff'}) {
      for (std::size_t length = 0; length <= 20; ++length) {
         std::string const base(length, 'm');
         expectSameOrder(base, base);
         // A longer text orders after its prefix, even where it goes on with zero bytes.
         expectSameOrder(base, base + changed);
         expectSameOrder(base + changed, base);
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

// A name is copied into every map and entity that holds it: copies share one text, allocate
// nothing, outlive the original, and a change to one copy leaves the others as they were. The
// lengths cross the boundary between texts kept inline and texts kept in a shared block.
TEST(StringCopies, ShareTheTextAndStayIndependent) {
   constexpr auto kInline = Kel::String::kInlineCapacity;
   for (std::size_t const length : {std::size_t{0}, std::size_t{1}, kInline, kInline + 1, 40ul}) {
      std::string const text(length, 'x');
      SCOPED_TRACE(testing::Message() << "length " << length);
      Kel::String copy;
      Kel::String assigned;
      {
         Kel::String const original(text);
         auto const before = testing_support::allocationCount();
         copy = original;
         assigned = Kel::String(copy);
         EXPECT_EQ(testing_support::allocationCount(), before);
         if (length > kInline) {
            EXPECT_EQ(copy.data(), original.data());
         }
      }
      Kel::String moved(std::move(assigned));
      EXPECT_TRUE(assigned.empty());
      EXPECT_EQ(copy.view(), text);
      EXPECT_EQ(moved, copy);
      EXPECT_EQ(moved.data()[length], '\0');
      moved += "!";
      EXPECT_EQ(moved.view(), text + "!");
      EXPECT_EQ(copy.view(), text);
   }
}

}  // namespace
