// The print buffer between the renderer and a file descriptor. Appending is one comparison and a
// copy on the fast path; the descriptor is written in whole buffers, with short writes and EINTR
// retried. A SIGINT noticed or a reader gone away (EPIPE) ends the output with SigIntException;
// other write failures with WriteError.
//
// The last flush happens when the buffer is destroyed. It is allowed to throw from there (when no
// other exception is under way), because for short outputs that flush is where an interrupt or a
// closed pipe shows up, and swallowing it would lose output without a word. Keep the buffer a
// local of the command that owns it.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace vellum {

class VellumBuffer {
 public:
   // `mode` 1 writes the descriptor with blocking writes, the only mode there is.
   VellumBuffer(int fd, std::size_t size, int mode);
   ~VellumBuffer() noexcept(false);
   VellumBuffer(VellumBuffer const&) = delete;
   VellumBuffer& operator=(VellumBuffer const&) = delete;

   void append(std::string_view text) {
      if (text.size() <= capacity_ - used_) [[likely]] {
         std::memcpy(data_.get() + used_, text.data(), text.size());
         used_ += text.size();
      } else {
         appendSlow(text);
      }
   }
   void append(char c) {
      if (used_ == capacity_) [[unlikely]] {
         flush();
      }
      data_[used_++] = c;
   }
   void appendFill(char fill, std::size_t count) {
      if (count <= capacity_ - used_) [[likely]] {
         std::memset(data_.get() + used_, fill, count);
         used_ += count;
      } else {
         appendFillSlow(fill, count);
      }
   }

   // Room for `size` bytes (at most kMaxReserve) to format into; commit() says how many were used.
   static constexpr std::size_t kMaxReserve = 256;
   char* reserve(std::size_t size) {
      if (size > capacity_ - used_) [[unlikely]] {
         flush();
      }
      return data_.get() + used_;
   }
   void commit(std::size_t size) noexcept { used_ += size; }

   // Writes out everything buffered.
   void flush();
   int fd() const noexcept { return fd_; }

 private:
   void appendSlow(std::string_view text);
   void appendFillSlow(char fill, std::size_t count);
   void writeAll(char const* data, std::size_t size);

   int fd_;
   std::size_t capacity_;
   std::size_t used_ = 0;
   std::unique_ptr<char[]> data_;
   // Set once the output has ended with an exception; nothing more is written.
   bool ended_ = false;
};

}  // namespace vellum
