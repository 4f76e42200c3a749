// Ownership and mode checks on open descriptors, and exclusive creation under unguessable names.
// Root's files are trusted like the user's own: a clear run by root leaves its files to root, and
// the shows of other users must still read them.
#include "TrustedFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>

namespace StateLoader {

FileDescriptor::~FileDescriptor() {
   close();
}

bool FileDescriptor::close() noexcept {
   return fd_ < 0 || ::close(std::exchange(fd_, -1)) == 0;
}

namespace {

Kel::Failure systemFailure(int error) {
   if (error == ELOOP) {
      return Kel::Failure{"the file is a symbolic link, which is not followed"};
   }
   return Kel::Failure{std::strerror(error)};
}

std::string octal(mode_t mode) {
   char text[8];
   std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777));
   return text;
}

std::string randomCharacters(std::size_t count) {
   constexpr char kAlphabet[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
   static std::random_device source;
   std::uniform_int_distribution<std::size_t> pick(0, sizeof kAlphabet - 2);
   std::string text(count, ' ');
   for (auto& character : text) {
      character = kAlphabet[pick(source)];
   }
   return text;
}

}  // namespace

std::optional<std::string> distrustOf(struct stat const& status) {
   if (!S_ISREG(status.st_mode)) {
      return "the file is not a regular file";
   }
   if (status.st_uid != ::geteuid() && status.st_uid != 0) {
      return "the file belongs to another user (uid " + std::to_string(status.st_uid) + ")";
   }
   if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
      return "the file can be written by other users (mode " + octal(status.st_mode) + ")";
   }
   return std::nullopt;
}

Kel::Expected<FileDescriptor> openTrusted(std::string const& path, int flags, mode_t mode) {
   FileDescriptor file(::open(path.c_str(), flags | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC, mode));
   if (!file) {
      if (errno == ENOENT && (flags & O_CREAT) == 0) {
         return file;
      }
      return systemFailure(errno);
   }
   struct stat status {};
   if (::fstat(file.get(), &status) != 0) {
      return systemFailure(errno);
   }
   if (auto distrust = distrustOf(status)) {
      return Kel::Failure{std::move(*distrust)};
   }
   return file;
}

Kel::Expected<FileDescriptor> createExclusive(std::string const& prefix, mode_t mode,
                                              std::string& name) {
   // Each try fails only on a name that is taken; a few dozen random names cannot all be.
   constexpr int kTries = 64;
   for (int tried = 0; tried < kTries; ++tried) {
      name = prefix + randomCharacters(6);
      FileDescriptor file(::open(
          name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC, mode));
      if (file || errno != EEXIST) {
         return file ? Kel::Expected<FileDescriptor>(std::move(file)) : systemFailure(errno);
      }
   }
   return systemFailure(EEXIST);
}

}  // namespace StateLoader
