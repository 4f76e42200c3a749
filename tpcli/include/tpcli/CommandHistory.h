// The shell's history, kept from one run to the next in a file in the user's home. The file is
// the user's alone: one that is a link, not a regular file, or that someone else owns or can
// write is not read, and it is written as a new file (mode 0600) renamed into place, so that
// writing never follows a link and a crash leaves the old file or the new one.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tpcli {

// "$HOME/.tpcli_history"; none without a home.
std::optional<std::string> historyPath();

class CommandHistory {
 public:
   static constexpr std::size_t kLimit = 1000;        // lines kept, the newest
   static constexpr std::size_t kLongestLine = 4096;  // longer lines are not kept

   // Without a path, lines are kept for this run only.
   explicit CommandHistory(std::optional<std::string> path) : path_(std::move(path)) {}

   // Reads the file, if there is one; on failure the reason, and the history starts empty.
   std::optional<std::string> load();
   // Adds a line (not again right after itself) and writes the file; on failure the reason.
   std::optional<std::string> add(std::string const& line);

   std::deque<std::string> const& lines() const noexcept { return lines_; }

 private:
   // Adds without writing; false when the line is not kept.
   bool remember(std::string_view line);
   std::optional<std::string> save() const;

   std::optional<std::string> path_;
   std::deque<std::string> lines_;
};

}  // namespace tpcli
