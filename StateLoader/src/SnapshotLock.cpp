// The lock and the atomic replacement of the snapshot file. The new text goes to a temporary file
// in the same folder (so that the rename cannot cross file systems), is synced to disk, and is then
// renamed over the old file: whoever opens the file, and whenever a clear dies, there is the old
// file or the new one. The folder may be writable by others, so the temporary file is made new
// under a name no one could guess, the rename replaces whatever name is in place without following
// it, and the lock and snapshot files are used only when they are the user's own. The lock is taken
// without blocking and retried: a lock that another user's process holds (any reader of the file
// can take a shared one) must not stop a clear for ever, nor keep Ctrl-C from ending it.
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <thread>
#include <utility>

#include "LockHolder.h"
#include "SnapshotsText.h"
#include "StateLoader/Snapshots.h"
#include "TrustedFile.h"
#include "vellum/SigIntException.h"

namespace StateLoader {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kRetryInterval{10};

Kel::Failure failure(std::string const& what, int error) {
   return Kel::Failure{what + ": " + std::strerror(error)};
}

// False, with errno set, when the text could not all be written.
bool writeAll(int fd, std::string_view text) {
   while (!text.empty()) {
      auto const written = ::write(fd, text.data(), text.size());
      if (written < 0 && errno != EINTR) {
         return false;
      }
      text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
   }
   return true;
}

// Makes the rename itself durable. Its failure is not reported: the new file is in place already,
// and no later step could make it more so.
void syncFolderOf(std::string const& path) {
   auto folder = std::filesystem::path(path).parent_path();
   FileDescriptor const fd(
       ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
   if (fd) {
      ::fsync(fd.get());
   }
}

// The new text in place of the file at `path`, or why not.
std::optional<Kel::Failure> replaced(std::string const& path, std::string_view text) {
   std::string temporary;
   auto file = createExclusive(path + ".tmp.", 0644, temporary);
   if (!file) {
      return Kel::Failure{"cannot create " + temporary + ": " + file.reason()};
   }
   auto fd = std::move(file).value();
   bool const synced = writeAll(fd.get(), text) && ::fsync(fd.get()) == 0;
   int const writeError = errno;
   bool const closed = fd.close();
   std::optional<Kel::Failure> problem;
   if (!synced || !closed) {
      problem = failure("cannot write " + temporary, synced ? errno : writeError);
   } else if (::rename(temporary.c_str(), path.c_str()) != 0) {
      problem = failure("cannot rename " + temporary + " to " + path, errno);
   }
   if (problem) {
      ::unlink(temporary.c_str());
   } else {
      syncFolderOf(path);
   }
   return problem;
}

std::string seconds(milliseconds duration) {
   char text[32];
   std::snprintf(text, sizeof text, "%g", static_cast<double>(duration.count()) / 1000);
   return text;
}

// Why the lock on `fd` could not be had within `patience`, or nothing once it is held.
std::optional<Kel::Failure> locked(int fd, std::string const& lockPath, milliseconds patience) {
   auto const deadline = std::chrono::steady_clock::now() + patience;
   while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
      if (errno != EWOULDBLOCK && errno != EINTR) {
         return failure("cannot lock " + lockPath, errno);
      }
      if (vellum::sigIntNoticed()) {
         return Kel::Failure{"interrupted while waiting for the lock " + lockPath};
      }
      if (std::chrono::steady_clock::now() >= deadline) {
         struct stat status {};
         ::fstat(fd, &status);
         return Kel::Failure{"cannot lock " + lockPath + ": still held after " + seconds(patience) +
                             " s by " + lockHolderOf(status)};
      }
      // A signal cuts the sleep short, so Ctrl-C is answered at once.
      std::this_thread::sleep_for(kRetryInterval);
   }
   return std::nullopt;
}

}  // namespace

std::string snapshotPathOf(std::string const& statePath) {
   return std::filesystem::path(statePath).replace_extension(".snapshots.json").string();
}

Kel::Expected<SnapshotLock> SnapshotLock::acquire(std::string const& path, milliseconds patience) {
   auto const lockPath = path + ".lock";
   // Only its owner can open the lock file, so no one else can take the lock to block clears.
   auto file = openTrusted(lockPath, O_RDWR | O_CREAT, 0600);
   if (!file) {
      return Kel::Failure{"cannot lock " + lockPath + ": " + file.reason()};
   }
   if (auto problem = locked(file->get(), lockPath, patience)) {
      return *problem;
   }
   // Checked under the lock, as the file that is read and replaced next.
   if (auto const snapshots = openTrusted(path, O_RDONLY | O_NONBLOCK); !snapshots) {
      return Kel::Failure{path + ": " + snapshots.reason()};
   }
   return SnapshotLock(path, std::move(file).value().release());
}

SnapshotLock::SnapshotLock(SnapshotLock&& other) noexcept
    : path_(std::move(other.path_)), fd_(std::exchange(other.fd_, -1)) {}

SnapshotLock& SnapshotLock::operator=(SnapshotLock&& other) noexcept {
   std::swap(path_, other.path_);
   std::swap(fd_, other.fd_);
   return *this;
}

SnapshotLock::~SnapshotLock() {
   if (fd_ >= 0) {
      ::close(fd_);
   }
}

std::optional<Kel::Failure> SnapshotLock::write(DeviceState const& state) const {
   auto problem = replaced(path_, snapshotsText(state));
   if (problem) {
      problem->reason = "cannot write the counter snapshots: " + problem->reason;
   }
   return problem;
}

}  // namespace StateLoader
