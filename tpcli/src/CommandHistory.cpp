// Reading and writing the history file with the care a shared home folder needs.
#include "tpcli/CommandHistory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace tpcli {

namespace {

// A file larger than this holds more than kLimit lines of kLongestLine; the rest is not read.
constexpr std::size_t kLargestFile = CommandHistory::kLimit * (CommandHistory::kLongestLine + 1);

std::string failure(std::string const& path, std::string_view step) {
   return path + ": " + std::string(step) + ": " + std::strerror(errno);
}

class Descriptor {
 public:
   explicit Descriptor(int fd) noexcept : fd_(fd) {}
   Descriptor(Descriptor const&) = delete;
   Descriptor& operator=(Descriptor const&) = delete;
   ~Descriptor() {
      if (fd_ >= 0) {
         ::close(fd_);
      }
   }
   int get() const noexcept { return fd_; }
   // Closes now, for the error a close may report.
   int release() noexcept { return std::exchange(fd_, -1); }

 private:
   int fd_;
};

std::optional<std::string> untrusted(std::string const& path, struct stat const& status) {
   if (!S_ISREG(status.st_mode)) {
      return path + ": not a regular file; history not read";
   }
   if (status.st_uid != ::geteuid() || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
      return path + ": owned or writable by another user; history not read";
   }
   return std::nullopt;
}

bool writeAll(int fd, std::string_view text) {
   while (!text.empty()) {
      auto const written = ::write(fd, text.data(), text.size());
      if (written < 0 && errno != EINTR) {
         return false;
      }
      if (written > 0) {
         text.remove_prefix(static_cast<std::size_t>(written));
      }
   }
   return true;
}

bool holdsControlCharacter(std::string_view line) {
   return std::ranges::any_of(line, [](char c) {
      auto const byte = static_cast<unsigned char>(c);
      return byte < 0x20 || byte == 0x7f;
   });
}

}  // namespace

std::optional<std::string> historyPath() {
   auto const* home = std::getenv("HOME");
   if (!home || *home == '\0') {
      return std::nullopt;
   }
   return std::string(home) + "/.tpcli_history";
}

bool CommandHistory::remember(std::string_view line) {
   if (line.empty() || line.size() > kLongestLine || holdsControlCharacter(line) ||
       (!lines_.empty() && lines_.back() == line)) {
      return false;
   }
   lines_.emplace_back(line);
   if (lines_.size() > kLimit) {
      lines_.pop_front();
   }
   return true;
}

std::optional<std::string> CommandHistory::load() {
   if (!path_) {
      return std::nullopt;
   }
   // Non-blocking, so that a FIFO in its place is refused rather than waited on.
   Descriptor const file(::open(path_->c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
   if (file.get() < 0) {
      if (errno == ELOOP) {
         return *path_ + ": a link; history not read";
      }
      return errno == ENOENT ? std::nullopt : std::optional(failure(*path_, "cannot read"));
   }
   struct stat status {};
   if (::fstat(file.get(), &status) != 0) {
      return failure(*path_, "cannot read");
   }
   if (auto problem = untrusted(*path_, status)) {
      return problem;
   }
   std::string text(std::min(static_cast<std::size_t>(status.st_size), kLargestFile), '\0');
   auto const got = ::read(file.get(), text.data(), text.size());
   if (got < 0) {
      return failure(*path_, "cannot read");
   }
   text.resize(static_cast<std::size_t>(got));
   for (std::string_view rest = text; !rest.empty();) {
      auto const end = std::min(rest.find('\n'), rest.size());
      remember(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
   }
   return std::nullopt;
}

std::optional<std::string> CommandHistory::add(std::string const& line) {
   if (!remember(line)) {
      return std::nullopt;
   }
   return save();
}

std::optional<std::string> CommandHistory::save() const {
   if (!path_) {
      return std::nullopt;
   }
   std::string text;
   for (auto const& line : lines_) {
      text += line;
      text += '\n';
   }
   auto temporary = *path_ + ".XXXXXX";
   Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
   if (file.get() < 0) {
      return failure(temporary, "cannot create");
   }
   bool const written = writeAll(file.get(), text) && ::fsync(file.get()) == 0 &&
                        ::close(file.release()) == 0 &&
                        ::rename(temporary.c_str(), path_->c_str()) == 0;
   if (!written) {
      auto problem = failure(*path_, "cannot write the history");
      ::unlink(temporary.c_str());
      return problem;
   }
   return std::nullopt;
}

}  // namespace tpcli
