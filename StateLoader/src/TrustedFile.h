// Opening the files that clears keep beside the state: the snapshots and their lock. The folder
// of a state may be one that other users can write (/tmp, a shared case folder), so a name there
// may be a link to a file elsewhere, or a file that someone else made and can change. Such a file
// is never used: a link at the end of the path is not followed, and what was opened is checked
// by its descriptor, so that nothing can be swapped in between the check and the use.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <optional>
#include <string>
#include <utility>

#include "Kel/Expected.h"

namespace StateLoader {

// An open file descriptor, closed with its owner. Empty (-1) when no file was opened.
class FileDescriptor {
 public:
   FileDescriptor() noexcept = default;
   explicit FileDescriptor(int fd) noexcept : fd_(fd) {}
   FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
   FileDescriptor& operator=(FileDescriptor&& other) noexcept {
      std::swap(fd_, other.fd_);
      return *this;
   }
   FileDescriptor(FileDescriptor const&) = delete;
   FileDescriptor& operator=(FileDescriptor const&) = delete;
   ~FileDescriptor();

   int get() const noexcept { return fd_; }
   // Closes the file now; false, with errno set, when closing reported an error (as a write
   // that the file system could only fail at the close).
   bool close() noexcept;
   // Hands the descriptor over to the caller, who closes it.
   int release() noexcept { return std::exchange(fd_, -1); }
   explicit operator bool() const noexcept { return fd_ >= 0; }

 private:
   int fd_ = -1;
};

// Why a file with this status may not be used, in words that follow the file's name ("the file
// belongs to another user (uid 65534)"), or nothing when it may: it must be a regular file, owned
// by the user running the command or by root, and writable by its owner alone.
std::optional<std::string> distrustOf(struct stat const& status);

// Opens `path` with `flags` (and, with O_CREAT, `mode`), never through a link at its end, and
// checks what it opened. Without O_CREAT, a path that names nothing gives an empty descriptor.
// On failure the reason follows the file's name: "the file is a symbolic link", a system error.
Kel::Expected<FileDescriptor> openTrusted(std::string const& path, int flags, mode_t mode = 0);

// Creates a new file with a name of its own, "PREFIX" and six random characters, that no one
// else can have made or linked beforehand. `name` is set to the name made or last tried.
Kel::Expected<FileDescriptor> createExclusive(std::string const& prefix, mode_t mode,
                                              std::string& name);

}  // namespace StateLoader
