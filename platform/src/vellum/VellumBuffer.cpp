// Writing the print buffer out: whole buffers, short writes and EINTR retried, an interrupt or a
// vanished reader turned into SigIntException.
#include "vellum/VellumBuffer.h"

#include <errno.h>
#include <poll.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <exception>

#include "Kel/Assert.h"
#include "vellum/SigIntException.h"

namespace vellum {

namespace {

constexpr std::size_t kMinimumSize = 2 * VellumBuffer::kMaxReserve;

// While the buffer writes, SIGPIPE is blocked on this thread: a reader that went away must end the
// command with EPIPE, not kill the process. A SIGPIPE raised by our own write is taken back before
// the mask is restored, so it never reaches a handler later.
class SigPipeBlocked {
 public:
   SigPipeBlocked() {
      sigemptyset(&sigPipe_);
      sigaddset(&sigPipe_, SIGPIPE);
      sigset_t pending;
      sigpending(&pending);
      wasPending_ = sigismember(&pending, SIGPIPE) == 1;
      pthread_sigmask(SIG_BLOCK, &sigPipe_, &previous_);
   }
   ~SigPipeBlocked() {
      if (raisedHere_ && !wasPending_) {
         timespec const noWait{0, 0};
         while (sigtimedwait(&sigPipe_, nullptr, &noWait) < 0 && errno == EINTR) {
         }
      }
      pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
   }
   SigPipeBlocked(SigPipeBlocked const&) = delete;
   SigPipeBlocked& operator=(SigPipeBlocked const&) = delete;

   void raisedHere() noexcept { raisedHere_ = true; }

 private:
   sigset_t sigPipe_;
   sigset_t previous_;
   bool wasPending_ = false;
   bool raisedHere_ = false;
};

}  // namespace

VellumBuffer::VellumBuffer(int fd, std::size_t size, int mode)
    : fd_(fd),
      capacity_(std::max(size, kMinimumSize)),
      data_(std::make_unique_for_overwrite<char[]>(capacity_)) {
   KEL_ASSERT(mode == 1);
}

VellumBuffer::~VellumBuffer() noexcept(false) {
   if (std::uncaught_exceptions() > 0) {
      return;
   }
   flush();
}

void VellumBuffer::appendFillSlow(char fill, std::size_t count) {
   while (count > 0) {
      if (cursor_ == limit_) {
         flush();
      }
      auto const chunk = std::min(count, room());
      std::memset(cursor_, fill, chunk);
      cursor_ += chunk;
      count -= chunk;
   }
}

void VellumBuffer::appendSlow(std::string_view text) {
   flush();
   if (text.size() >= capacity_) {
      writeAll(text.data(), text.size());
      return;
   }
   std::memcpy(data_.get(), text.data(), text.size());
   cursor_ = data_.get() + text.size();
}

void VellumBuffer::flush() {
   auto const size = static_cast<std::size_t>(cursor_ - data_.get());
   cursor_ = data_.get();
   writeAll(data_.get(), size);
}

void VellumBuffer::writeAll(char const* data, std::size_t size) {
   if (ended_) {
      return;
   }
   SigPipeBlocked sigPipeBlocked;
   auto end = [this](auto exception) {
      ended_ = true;
      throw exception;
   };
   while (true) {
      if (sigIntNoticed()) {
         end(SigIntException("interrupted"));
      }
      if (size == 0) {
         return;
      }
      auto const written = ::write(fd_, data, size);
      if (written >= 0) {
         data += written;
         size -= static_cast<std::size_t>(written);
      } else if (errno == EPIPE) {
         sigPipeBlocked.raisedHere();
         end(SigIntException("output closed by its reader"));
      } else if (errno == EAGAIN) {
         // A non-blocking descriptor: wait until it takes more, still noticing interrupts.
         pollfd writable{fd_, POLLOUT, 0};
         ::poll(&writable, 1, -1);
      } else if (errno != EINTR) {
         end(WriteError(errno, fd_));
      }
   }
}

}  // namespace vellum
