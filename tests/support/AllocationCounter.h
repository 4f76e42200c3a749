// Test support: every call to the global operator new is counted, so that a test can show that
// code allocates nothing. Linking this in replaces the allocator of the whole test program.
#pragma once

#include <cstdint>

namespace testing_support {

// The number of allocations made so far by the program.
std::uint64_t allocationCount() noexcept;
// The bytes those allocations asked for.
std::uint64_t allocatedBytes() noexcept;

}  // namespace testing_support
