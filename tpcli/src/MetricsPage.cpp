// Rendering into memory through the same print buffer as standard output: the buffer writes to a
// descriptor, here an anonymous in-memory file that is read back once the text is complete.
#include "tpcli/MetricsPage.h"

#include <sys/stat.h>

#include <cstdio>
#include <system_error>
#include <utility>

#include "StateLoader/Loader.h"
#include "Strix/Printable.h"
#include "tpcli/ExitCode.h"
#include "tpcli/MemoryFile.h"
#include "tpcli/MetricsWriter.h"

namespace tpcli {

namespace {

constexpr std::size_t kBufferSize = 1 << 16;

void logRefusal(std::string_view reason) {
   std::string line = "tpcli: kept the last good state; ";
   Strix::appendPrintable(line, reason);
   line += '\n';
   std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

std::string renderedMetrics(StateLoader::DeviceState const& state) {
   try {
      MemoryFile file;
      {
         vellum::VellumBuffer buffer(file.fd(), kBufferSize, 1);
         writeMetrics(state, buffer);
      }
      return file.contents();
   } catch (std::system_error const& error) {
      throw CommandError(ExitCode::failed,
                         std::string("cannot hold the metrics in memory: ") + error.what());
   }
}

bool MetricsPage::FileIdentity::operator==(FileIdentity const& other) const noexcept {
   return device == other.device && inode == other.inode && size == other.size &&
          modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
}

// The identity is taken before the file is read, so that a change while reading shows at the next
// scrape.
MetricsPage::MetricsPage(std::string statePath)
    : statePath_(std::move(statePath)), seen_(identityNow()) {
   auto text = readText();
   if (!text) {
      throw CommandError(ExitCode::invalidState, text.reason());
   }
   text_ = std::move(text).value();
}

Kel::Expected<std::shared_ptr<std::string const>> MetricsPage::readText() const {
   auto state = StateLoader::loadState(statePath_);
   if (!state) {
      return Kel::Failure{state.reason()};
   }
   return std::make_shared<std::string const>(renderedMetrics(*state));
}

// A file that cannot be looked at has the empty identity; it is tried once, refused and logged.
MetricsPage::FileIdentity MetricsPage::identityNow() const {
   struct stat status {};
   if (::stat(statePath_.c_str(), &status) != 0) {
      return {};
   }
   return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

std::shared_ptr<std::string const> MetricsPage::current() {
   std::lock_guard const lock(mutex_);
   auto const now = identityNow();
   if (now == seen_) {
      return text_;
   }
   seen_ = now;
   auto text = readText();
   if (text) {
      text_ = std::move(text).value();
   } else {
      logRefusal(text.reason());
   }
   return text_;
}

}  // namespace tpcli
