// A trace that keeps the last N messages in memory instead of writing them anywhere: cheap enough
// to leave on for events worth seeing after the fact (such as lock yields during long sorts).
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace Glint {

class RingBuf {
 public:
   explicit RingBuf(std::size_t capacity);

   void push(std::string_view message);
   // The kept messages, oldest first.
   std::vector<std::string> messages() const;
   std::size_t capacity() const noexcept { return slots_.size(); }
   // Messages pushed since construction, including those already overwritten.
   std::uint64_t pushed() const;

 private:
   mutable std::mutex mutex_;
   std::vector<std::string> slots_;
   std::uint64_t pushed_ = 0;
};

}  // namespace Glint
