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
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "Strix/CopyBytes.h"

namespace vellum {

class VellumBuffer {
 public:
   // `mode` 1 writes the descriptor with blocking writes, the only mode there is.
   VellumBuffer(int fd, std::size_t size, int mode);
   ~VellumBuffer() noexcept(false);
   VellumBuffer(VellumBuffer const&) = delete;
   VellumBuffer& operator=(VellumBuffer const&) = delete;

   void append(std::string_view text) {
      if (text.size() <= room()) [[likely]] {
         Strix::copyBytes(cursor_, text.data(), text.size());
         cursor_ += text.size();
      } else {
         appendSlow(text);
      }
   }
   void append(char c) {
      if (cursor_ == limit_) [[unlikely]] {
         flush();
      }
      *cursor_++ = c;
   }
   void appendFill(char fill, std::size_t count) {
      if (count <= kShort && kShort <= room()) [[likely]] {
         fillShort(fill);
         cursor_ += count;
      } else if (count <= room()) {
         std::memset(cursor_, fill, count);
         cursor_ += count;
      } else {
         appendFillSlow(fill, count);
      }
   }

   // `blanks` blanks and then `text`: the start of nearly every line of text, an indentation and
   // a label, as one piece when both are short.
   void appendIndented(std::size_t blanks, std::string_view text) {
      if (blanks <= kShort && text.size() <= kShort && 2 * kShort <= room()) [[likely]] {
         fillShort(' ');
         Strix::copyBytes(cursor_ + blanks, text.data(), text.size());
         cursor_ += blanks + text.size();
      } else {
         appendFill(' ', blanks);
         append(text);
      }
   }

   // Room for `size` bytes (at most kMaxReserve) to format into; commit() says how many were used.
   static constexpr std::size_t kMaxReserve = 256;
   char* reserve(std::size_t size) {
      if (size > room()) [[unlikely]] {
         flush();
      }
      return cursor_;
   }
   void commit(std::size_t size) noexcept { cursor_ += size; }
   // The same, by the end of what was written.
   void commitTo(char* end) noexcept { cursor_ = end; }

   // Writes out everything buffered.
   void flush();
   int fd() const noexcept { return fd_; }

 private:
   // Labels and indentations up to this long are written in line, in two words.
   static constexpr std::size_t kShort = Strix::kInlineCopy;
   std::size_t room() const noexcept { return static_cast<std::size_t>(limit_ - cursor_); }
   // kShort bytes of the fill at the cursor, in two words, without moving it: an indentation is
   // written whole, and the bytes past it are free room that the next append writes over.
   void fillShort(char fill) noexcept {
      static_assert(kShort == 2 * sizeof(std::uint64_t));
      std::uint64_t const words = 0x0101010101010101 * static_cast<unsigned char>(fill);
      std::memcpy(cursor_, &words, sizeof words);
      std::memcpy(cursor_ + sizeof words, &words, sizeof words);
   }
   void appendSlow(std::string_view text);
   void appendFillSlow(char fill, std::size_t count);
   void writeAll(char const* data, std::size_t size);

   int fd_;
   std::size_t capacity_;
   std::unique_ptr<char[]> data_;
   // The next byte to write and the end of the buffer: an append compares and moves one pointer.
   char* cursor_ = data_.get();
   char* limit_ = data_.get() + capacity_;
   // Set once the output has ended with an exception; nothing more is written.
   bool ended_ = false;
};

}  // namespace vellum
