// The SIGINT flag and the exceptions that end a command's output.
#include <signal.h>

#include <atomic>
#include <string>

#include "vellum/SigIntException.h"

namespace vellum {

namespace {

std::atomic<bool> sigIntFlag{false};
static_assert(std::atomic<bool>::is_always_lock_free, "the flag is set from a signal handler");

extern "C" void noteSigInt(int) {
   sigIntFlag.store(true, std::memory_order_relaxed);
}

}  // namespace

WriteError::WriteError(int error, int fd)
    : std::system_error(error, std::generic_category(),
                        "cannot write to file descriptor " + std::to_string(fd)) {}

void installSigIntHandler() {
   struct sigaction action {};
   action.sa_handler = &noteSigInt;
   sigemptyset(&action.sa_mask);
   // No SA_RESTART: a write blocked on a slow reader returns with EINTR and sees the flag.
   action.sa_flags = 0;
   sigaction(SIGINT, &action, nullptr);
}

void sigIntNoticedIs(bool noticed) noexcept {
   sigIntFlag.store(noticed, std::memory_order_relaxed);
}

bool sigIntNoticed() noexcept {
   return sigIntFlag.load(std::memory_order_relaxed);
}

}  // namespace vellum
