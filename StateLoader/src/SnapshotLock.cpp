// The lock and the atomic replacement of the snapshot file. The new text goes to a temporary file
// in the same folder (so that the rename cannot cross file systems), is synced to disk, and is then
// renamed over the old file: whoever opens the file, and whenever a clear dies, there is the old
// file or the new one. The temporary file has a fixed name, which is safe under the lock, and a
// clear that died leaves at most that file behind, for the next clear to overwrite.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

#include "SnapshotsText.h"
#include "StateLoader/Snapshots.h"

namespace StateLoader {

namespace {

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
   int const fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
   if (fd >= 0) {
      ::fsync(fd);
      ::close(fd);
   }
}

// The new text in place of the file at `path`, or why not.
std::optional<Kel::Failure> replaced(std::string const& path, std::string_view text) {
   auto const temporary = path + ".tmp";
   int const fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
   if (fd < 0) {
      return failure("cannot create " + temporary, errno);
   }
   bool const synced = writeAll(fd, text) && ::fsync(fd) == 0;
   int const writeError = errno;
   bool const closed = ::close(fd) == 0;
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

}  // namespace

std::string snapshotPathOf(std::string const& statePath) {
   return std::filesystem::path(statePath).replace_extension(".snapshots.json").string();
}

Kel::Expected<SnapshotLock> SnapshotLock::acquire(std::string const& path) {
   auto const lockPath = path + ".lock";
   int const fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
   if (fd < 0) {
      return failure("cannot lock " + lockPath, errno);
   }
   while (::flock(fd, LOCK_EX) != 0) {
      if (errno != EINTR) {
         int const error = errno;
         ::close(fd);
         return failure("cannot lock " + lockPath, error);
      }
   }
   return SnapshotLock(path, fd);
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
