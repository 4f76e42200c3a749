// From exceptions to exit codes and the one line each failure prints.
#include "tpcli/Reporting.h"

#include <cstdio>
#include <new>
#include <string>

#include "Strix/Printable.h"
#include "vellum/SigIntException.h"

namespace tpcli {

namespace {

ExitCode reportOutOfMemory(std::string_view prefix) noexcept {
   std::fwrite(prefix.data(), 1, prefix.size(), stderr);
   std::fputs("out of memory\n", stderr);
   return ExitCode::failed;
}

// Every message passes through here on its way to the terminal; what it quotes from the command
// line or a file (CLI11's messages included) must not reach the terminal raw. Out of memory, it
// says so without allocating anything more.
ExitCode report(ExitCode code, std::string_view prefix, std::string_view message,
                std::string_view kind = {}) noexcept {
   try {
      std::string line(prefix);
      line += kind;
      Strix::appendPrintable(line, message);
      line += '\n';
      std::fwrite(line.data(), 1, line.size(), stderr);
      return code;
   } catch (std::bad_alloc const&) {
      return reportOutOfMemory(prefix);
   }
}

}  // namespace

ExitCode runReported(std::function<ExitCode()> const& work, std::string_view prefix) noexcept {
   try {
      return work();
   } catch (CommandError const& error) {
      return report(error.code(), prefix, error.what());
   } catch (std::bad_alloc const&) {
      return reportOutOfMemory(prefix);
   } catch (vellum::SigIntException const&) {
      // Interrupted before any output, while waiting for a state that comes from a pipe.
      return ExitCode::interrupted;
   } catch (std::exception const& error) {
      // Kel::AssertionError among them: its text quotes the broken invariant.
      return report(ExitCode::internalError, prefix, error.what(), "internal error: ");
   }
}

}  // namespace tpcli
