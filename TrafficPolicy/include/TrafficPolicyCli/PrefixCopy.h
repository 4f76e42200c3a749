// Sorted copies of live prefix sets for the prefix field-set listing. A set can hold millions of
// prefixes, and the command reads it while holding the activity lock, so the copy gives the lock
// up for a moment every 25,000 insertions. What happened is kept in an in-memory ring of recent
// messages rather than traced, so that it can be looked at after the fact at no cost.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Classification/StructuredFilter.h"
#include "Glint/RingBuf.h"
#include "Quoll/IpGenPrefix.h"

namespace TrafficPolicyCli {

inline constexpr std::uint32_t kInsertionsPerYield = 25000;

// The ring of the field-set listing's copy and lock-yield messages.
Glint::RingBuf& fieldSetRingBuf();

// Releases the activity lock, sleeps a millisecond and takes the lock again, noting both in the
// ring. A thread that does not hold the lock has nothing to give up and returns at once.
void yieldActivityLock(std::string_view label);

// The messages that bracket one copy; `sorted` may be empty.
struct CopyMessages {
   std::string_view begin;
   std::string_view sorted;
   std::string_view end;
   std::string_view yieldLabel;
};

inline constexpr CopyMessages kPrefixCopyMessages{"begin copy+sort prefixes ", "sort prefixes ",
                                                  "end copy+sort prefixes ", "sort prefixes"};
inline constexpr CopyMessages kExceptPrefixCopyMessages{
    "begin copy+sort exceptPrefix ", "", "end copy+sort exceptPrefix ", "sort exceptPrefix"};

// The prefixes of `live` in ascending order. The walk finds its place again after a change made
// while the lock was given up, so the copy comes out ascending without a sort of its own.
std::vector<Quoll::IpGenPrefix> sortedPrefixCopy(Classification::PrefixSet const& live,
                                                 CopyMessages const& messages);

}  // namespace TrafficPolicyCli
