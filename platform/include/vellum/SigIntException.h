// The command's output is no longer wanted: the user interrupted it (SIGINT) or the reader of the
// output went away (EPIPE). Thrown from the print buffer; the command stops cleanly and what was
// written so far stays as it is.
#pragma once

#include <exception>
#include <string>
#include <system_error>

namespace vellum {

class SigIntException : public std::exception {
 public:
   explicit SigIntException(std::string reason) : reason_(std::move(reason)) {}
   char const* what() const noexcept override { return reason_.c_str(); }

 private:
   std::string reason_;
};

// Any other failure to write the output (a full disk, a bad descriptor).
class WriteError : public std::system_error {
 public:
   WriteError(int error, int fd);
};

// SIGINT is noticed through a flag: the handler only sets it, the print buffer checks it at every
// write and turns it into SigIntException.
void installSigIntHandler();
void sigIntNoticedIs(bool noticed) noexcept;
bool sigIntNoticed() noexcept;

}  // namespace vellum
