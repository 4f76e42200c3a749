// Counter snapshots that clears write. The state file is never rewritten, so they live in a file of
// their own beside it: "NAME.snapshots.json" for the state "NAME.json" (format in
// docs/snapshot-format.md). Every show reads that file when it exists. A clear holds an exclusive
// lock while it reads the snapshots, takes its own and writes them all back, so that two clears
// never lose each other's work; the file is replaced by rename, so that a reader, or a clear killed
// half-way, sees the old file or the new one, never a mix.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "Kel/Expected.h"
#include "StateLoader/DeviceState.h"

namespace StateLoader {

std::string snapshotPathOf(std::string const& statePath);

// Fills the snapshot stores of `state` from the file at `path`; when there is no such file they
// stay as they are. A file that cannot be read, or whose content is not a snapshot file, is a
// failure like a bad state file's: "FILE: /json/pointer: what is wrong". So is a link, or a file
// that another user owns or can write: its counts could be anyone's.
std::optional<Kel::Failure> readSnapshots(std::string const& path, DeviceState& state);

// The exclusive right to replace the snapshot file, held until destruction. The lock is taken on
// "FILE.lock", which stays in place: removing it could let two clears lock two different files.
class SnapshotLock {
 public:
   // How long a clear waits for others to finish, unless told otherwise.
   static constexpr std::chrono::milliseconds kPatience{10'000};

   // Waits at most `patience` until no other clear holds the lock, and no longer once the user
   // interrupts (SIGINT). Fails with "cannot lock FILE.lock: REASON", naming the holder when the
   // wait ran out, or "interrupted while waiting for the lock FILE.lock". A lock or snapshot
   // file that is a link, or that another user owns or can write, is refused: "FILE: REASON".
   static Kel::Expected<SnapshotLock> acquire(std::string const& path,
                                              std::chrono::milliseconds patience = kPatience);

   SnapshotLock(SnapshotLock&& other) noexcept;
   SnapshotLock& operator=(SnapshotLock&& other) noexcept;
   SnapshotLock(SnapshotLock const&) = delete;
   SnapshotLock& operator=(SnapshotLock const&) = delete;
   ~SnapshotLock();

   // Replaces the file with the snapshot stores of every direction of `state`: written to a new
   // file "FILE.tmp.XXXXXX", synced, then renamed over the file. Fails with "cannot write the
   // counter snapshots: REASON", where the reason names the file and the step that failed.
   std::optional<Kel::Failure> write(DeviceState const& state) const;

 private:
   SnapshotLock(std::string path, int fd) noexcept : path_(std::move(path)), fd_(fd) {}

   std::string path_;
   int fd_;
};

}  // namespace StateLoader
