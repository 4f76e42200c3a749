// The history file: kept bounded, written as the user's own file, and never read or written
// through a link or from a file that someone else could have written.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/TempStateFiles.h"
#include "tpcli/CommandHistory.h"

namespace tpcli {
namespace {

using testing_support::readFile;
using testing_support::TempStateFiles;

TEST(CommandHistoryTest, KeepsTheNewestLinesInAPrivateFile) {
   TempStateFiles files;
   std::string lines;
   for (std::size_t i = 0; i < CommandHistory::kLimit + 2; ++i) {
      lines += "show " + std::to_string(i) + "\n";
   }
   auto const path = files.write("history", lines + "bad\x1b[2Jline\n");
   CommandHistory history(path);
   ASSERT_EQ(history.load(), std::nullopt);
   EXPECT_EQ(history.lines().size(), CommandHistory::kLimit);
   EXPECT_EQ(history.lines().front(), "show 2");
   ASSERT_EQ(history.add("show 1001"), std::nullopt);  // not kept twice in a row
   ASSERT_EQ(history.add("exit"), std::nullopt);
   CommandHistory reread(path);
   ASSERT_EQ(reread.load(), std::nullopt);
   EXPECT_EQ(reread.lines(), history.lines());
   EXPECT_EQ(reread.lines().back(), "exit");
   EXPECT_EQ(reread.lines()[CommandHistory::kLimit - 2], "show 1001");
   struct stat status {};
   ASSERT_EQ(::stat(path.c_str(), &status), 0);
   EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST(CommandHistoryTest, RefusesFilesItCannotTrustAndReplacesALink) {
   TempStateFiles files;
   auto const target = files.write("target", "show traffic-policy cpu\n");
   auto const link = (files.folder() / "linked").string();
   std::filesystem::create_symlink(target, link);
   auto const shared = files.write("shared", "show traffic-policy cpu\n");
   ::chmod(shared.c_str(), 0622);
   struct Row {
      std::string path;
      std::string problem;
   };
   Row const rows[] = {
       {link, link + ": a link; history not read"},
       {shared, shared + ": owned or writable by another user; history not read"},
       {files.folder().string(),
        files.folder().string() + ": not a regular file; history not read"},
   };
   for (auto const& row : rows) {
      CommandHistory history(row.path);
      EXPECT_EQ(history.load(), row.problem) << row.path;
      EXPECT_TRUE(history.lines().empty()) << row.path;
   }
   CommandHistory history(link);
   ASSERT_EQ(history.add("exit"), std::nullopt);
   EXPECT_EQ(readFile(target), "show traffic-policy cpu\n");
   EXPECT_FALSE(std::filesystem::is_symlink(link));
   EXPECT_EQ(readFile(link), "exit\n");
}

}  // namespace
}  // namespace tpcli
