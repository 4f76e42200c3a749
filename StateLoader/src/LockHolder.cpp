// /proc/locks lists one lock a line, "1: FLOCK  ADVISORY  READ 1234 fe:00:10952905 0 EOF", with
// the holder's pid and the file as device major:minor (hex) and inode; requests still waiting
// are listed after their blocker as "1: -> FLOCK ...", and are passed over. A process chooses its
// own name, so the name is shown with anything but plain printable characters replaced.
#include "LockHolder.h"

#include <sys/sysmacros.h>

#include <cstdio>
#include <fstream>
#include <sstream>

namespace StateLoader {

namespace {

std::string fileKey(struct stat const& file) {
   char key[64];
   std::snprintf(key, sizeof key, "%02x:%02x:%llu", major(file.st_dev), minor(file.st_dev),
                 static_cast<unsigned long long>(file.st_ino));
   return key;
}

// The pid of the first granted lock on the file, or an empty text.
std::string holderPid(std::string const& key) {
   std::ifstream locks("/proc/locks");
   std::string line;
   while (std::getline(locks, line)) {
      std::istringstream fields(line);
      std::string number, kind, mode, access, pid, file;
      fields >> number >> kind >> mode >> access >> pid >> file;
      if (kind != "->" && file == key) {
         return pid;
      }
   }
   return {};
}

std::string printable(std::string text) {
   for (auto& character : text) {
      if (character < 0x20 || character > 0x7e) {
         character = '?';
      }
   }
   return text;
}

}  // namespace

std::string lockHolderOf(struct stat const& file) {
   auto const pid = holderPid(fileKey(file));
   if (pid.empty()) {
      return "another process";
   }
   std::string name;
   std::getline(std::ifstream("/proc/" + pid + "/comm"), name);
   return "process " + pid + (name.empty() ? "" : " (" + printable(name) + ")");
}

}  // namespace StateLoader
