// What `tpcli metrics --listen` answers at /metrics: the OpenMetrics text of a state file, kept as
// rendered and made again only when the file has changed (another inode, size or modification
// time), so that a collector that rewrites the snapshot feeds the page live and a scrape of an
// unchanged state costs a copy. A state that fails to load is refused with one line on standard
// error, and the page keeps the last good state's text.
#pragma once

#include <sys/stat.h>

#include <memory>
#include <mutex>
#include <string>

#include "Kel/Expected.h"
#include "StateLoader/DeviceState.h"

namespace tpcli {

// The OpenMetrics text of a loaded state, as one string.
std::string renderedMetrics(StateLoader::DeviceState const& state);

class MetricsPage {
 public:
   // Reads the state; a state that fails to load is CommandError "invalid state" (exit code 3).
   explicit MetricsPage(std::string statePath);

   // The current text, re-reading the state file first if it changed. Safe from any thread.
   std::shared_ptr<std::string const> current();

 private:
   struct FileIdentity {
      dev_t device = 0;
      ino_t inode = 0;
      off_t size = 0;
      timespec modified{};
      bool operator==(FileIdentity const& other) const noexcept;
   };
   FileIdentity identityNow() const;
   // The text of the state file as it is now, or why it was refused.
   Kel::Expected<std::shared_ptr<std::string const>> readText() const;

   std::string const statePath_;
   std::mutex mutex_;
   FileIdentity seen_;  // of the last file read, loaded or refused
   std::shared_ptr<std::string const> text_;
};

}  // namespace tpcli
