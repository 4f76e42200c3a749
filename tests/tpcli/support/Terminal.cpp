// Driving tmux through its command line.
#include "support/Terminal.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "support/CapturedOutput.h"

namespace tpcli_test {

namespace {

// Generous: the sanitizer build on a busy machine loads and renders many times slower.
constexpr std::chrono::seconds kPatience{60};
constexpr std::chrono::milliseconds kPoll{50};
// Written by the pane's shell after the command, with its exit code: tmux itself may see the
// terminal close before the command's end and then not know its code.
constexpr std::string_view kExited = "[exited ";

template <typename Done>
bool pollUntil(Done done) {
   auto const deadline = std::chrono::steady_clock::now() + kPatience;
   while (!done()) {
      if (std::chrono::steady_clock::now() > deadline) {
         return false;
      }
      std::this_thread::sleep_for(kPoll);
   }
   return true;
}

}  // namespace

std::string output(std::string const& command) {
   auto* pipe = ::popen(command.c_str(), "r");
   if (!pipe) {
      throw std::runtime_error("cannot run " + command);
   }
   auto text = testing_support::readAll(::fileno(pipe));
   ::pclose(pipe);
   return text;
}

std::string shellQuoted(std::string const& text) {
   std::string quoted = "'";
   for (char c : text) {
      quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
   }
   return quoted + "'";
}

Terminal::Terminal(std::string const& command, std::string const& home) {
   static std::atomic<int> count{0};
   socket_ = "tpcli-test-" + std::to_string(::getpid()) + "-" + std::to_string(count++);
   // The pane stays after its command ends, so that its last screen can be read. Its shell
   // outlives an interrupt of the command (the trap), to report how the command ended.
   auto const configuration = home + "/tmux.conf";
   std::ofstream(configuration) << "set -g remain-on-exit on\nset -g history-limit 5000\n";
   tmux("-f " + shellQuoted(configuration) + " new-session -d -x 200 -y 50 " +
        shellQuoted("trap : INT; env HOME=" + shellQuoted(home) + " " + command + "; echo \"" +
                    std::string(kExited) + "$?]\""));
}

Terminal::~Terminal() {
   tmux("kill-server");
   // A killed server may leave its socket behind, in tmux's folder of this user.
   auto const* folder = std::getenv("TMUX_TMPDIR");
   std::error_code ignored;
   std::filesystem::remove(std::filesystem::path(folder && *folder ? folder : "/tmp") /
                               ("tmux-" + std::to_string(::getuid())) / socket_,
                           ignored);
}

std::string Terminal::tmux(std::string const& arguments) const {
   return output("tmux -L " + socket_ + " " + arguments + " 2>&1");
}

void Terminal::send(std::vector<std::string> const& keys) const {
   if (keys.empty()) {
      return;
   }
   std::string arguments = "send-keys";
   for (auto const& key : keys) {
      arguments += " " + shellQuoted(key);
   }
   tmux(arguments);
}

std::string Terminal::screen() const {
   auto const captured = tmux("capture-pane -p -J -S -");
   std::string text;
   std::size_t start = 0;
   while (start < captured.size()) {
      auto end = captured.find('\n', start);
      end = end == std::string::npos ? captured.size() : end;
      auto const line = captured.substr(start, end - start);
      text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
      start = end + 1;
   }
   return text;
}

bool Terminal::waitFor(std::string const& text, Place place) const {
   return pollUntil([&] {
      auto shown = screen();
      if (place == anywhere) {
         return shown.find(text) != std::string::npos;
      }
      shown.erase(shown.find_last_not_of('\n') + 1);
      return shown.ends_with(text);
   });
}

int Terminal::waitForExit() const {
   std::string shown;
   bool const ended = pollUntil([&] {
      shown = screen();
      return shown.find(kExited) != std::string::npos;
   });
   return ended ? std::stoi(shown.substr(shown.find(kExited) + kExited.size())) : -1;
}

}  // namespace tpcli_test
