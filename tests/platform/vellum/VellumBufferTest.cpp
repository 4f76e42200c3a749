// The print buffer: exact bytes across buffer boundaries, and how output ends when the reader goes
// away or the user interrupts (a full disk, and an interrupt while a write blocks, are checked on
// tpcli as a process).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <utility>

#include "support/CapturedOutput.h"
#include "vellum/SigIntException.h"
#include "vellum/VellumBuffer.h"

namespace {

using vellum::SigIntException;
using vellum::VellumBuffer;

std::string pattern(std::size_t size) {
   std::string text(size, '\0');
   for (std::size_t i = 0; i < size; ++i) {
      text[i] = static_cast<char>('a' + (i * 7 + i / 26) % 26);
   }
   return text;
}

struct Pipe {
   Pipe() { EXPECT_EQ(::pipe(ends), 0); }
   ~Pipe() {
      for (int const fd : ends) {
         ::close(fd);
      }
   }
   void closeReader() { ::close(std::exchange(ends[0], -1)); }
   int ends[2] = {-1, -1};
};

TEST(VellumBufferBytes, PiecesOfEverySizeArriveInOrder) {
   // The buffer is at least 512 bytes; these pieces land below, on and across its edge. Pieces of
   // up to 16 bytes are copied in words, halves or bytes: each size of those is here.
   std::size_t const pieceSizes[] = {0,  1,  2,  3,  4,  5,  6,   7,   8,   9,   10,   11,
                                     12, 13, 14, 15, 16, 17, 255, 511, 512, 513, 1024, 5000};
   for (auto pieceSize : pieceSizes) {
      auto const expected = pattern(20000);
      testing_support::MemoryFile file;
      {
         VellumBuffer buffer(file.fd(), 512, 1);
         for (std::size_t at = 0; at < expected.size();) {
            auto const size = std::min(std::max<std::size_t>(pieceSize, 1), expected.size() - at);
            if (pieceSize == 0) {
               buffer.append(expected[at]);
            } else {
               buffer.append(std::string_view(expected).substr(at, size));
            }
            at += size;
         }
      }
      EXPECT_EQ(file.contents(), expected) << "pieces of " << pieceSize;
   }
}

TEST(VellumBufferBytes, FillsOfEveryShortCountBetweenPieces) {
   // A short fill writes whole words; what lies past its count must be written over.
   testing_support::MemoryFile file;
   std::string expected;
   {
      VellumBuffer buffer(file.fd(), 512, 1);
      for (int round = 0; round < 40; ++round) {
         for (std::size_t count = 0; count <= 17; ++count) {
            buffer.appendFill(' ', count);
            buffer.append('|');
            expected += std::string(count, ' ') + '|';
         }
      }
   }
   EXPECT_EQ(file.contents(), expected);
}

TEST(VellumBufferBytes, FillAndReserveAcrossTheEdge) {
   testing_support::MemoryFile file;
   {
      VellumBuffer buffer(file.fd(), 512, 1);
      buffer.appendFill('.', 1500);
      char* room = buffer.reserve(VellumBuffer::kMaxReserve);
      std::fill(room, room + 3, 'x');
      buffer.commit(3);
   }
   EXPECT_EQ(file.contents(), std::string(1500, '.') + "xxx");
}

TEST(VellumBufferEnd, ReaderGoneEndsWithSigIntAndKeepsWhatWasRead) {
   Pipe pipe;
   auto const output = pattern(4 * 1048576);
   std::string received;
   std::thread reader([&] {
      received = testing_support::readAll(pipe.ends[0], 100000);
      pipe.closeReader();
   });
   try {
      VellumBuffer buffer(pipe.ends[1], 65536, 1);
      buffer.append(output);
      buffer.flush();
      ADD_FAILURE() << "the whole output was written to a pipe nobody read";
   } catch (SigIntException const& interrupted) {
      EXPECT_STREQ(interrupted.what(), "output closed by its reader");
   }
   reader.join();
   EXPECT_EQ(received, output.substr(0, received.size()));
   EXPECT_EQ(received.size(), 100000u);

   sigset_t pending;
   sigpending(&pending);
   EXPECT_EQ(sigismember(&pending, SIGPIPE), 0) << "our SIGPIPE was left pending";
}

TEST(VellumBufferEnd, FinalFlushReportsAClosedReader) {
   Pipe pipe;
   pipe.closeReader();
   EXPECT_THROW(
       {
          VellumBuffer buffer(pipe.ends[1], 4096, 1);
          buffer.append("short output");
       },
       SigIntException);
}

TEST(VellumBufferEnd, NoticedInterruptStopsTheNextFlush) {
   testing_support::MemoryFile file;
   VellumBuffer buffer(file.fd(), 4096, 1);
   buffer.append("written before");
   buffer.flush();
   buffer.append(" lost after");
   vellum::sigIntNoticedIs(true);
   EXPECT_THROW(buffer.flush(), SigIntException);
   vellum::sigIntNoticedIs(false);
   EXPECT_EQ(file.contents(), "written before");
}

}  // namespace
