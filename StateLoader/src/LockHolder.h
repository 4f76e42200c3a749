// Naming the process that holds a lock, for the message of a clear that gave up waiting for it.
#pragma once

#include <sys/stat.h>

#include <string>

namespace StateLoader {

// "process 1234 (tpcli)" for the first holder of a lock on the file that the kernel lists in
// /proc/locks, or "another process" when none is listed there (another system, no /proc).
std::string lockHolderOf(struct stat const& file);

}  // namespace StateLoader
