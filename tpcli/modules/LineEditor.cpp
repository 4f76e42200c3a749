// The module of `tpcli shell`'s line editor: libedit set up for a device-like prompt, emacs keys,
// our functions on `?`, TAB and Ctrl-C. Nothing but its factory is exported.
#include "tpcli/LineEditor.h"

#include <histedit.h>

#include <cstdio>
#include <memory>
#include <utility>

namespace tpcli {

namespace {

constexpr int kHistoryEntries = 1000;

class LibeditLineEditor final : public LineEditor {
 public:
   LibeditLineEditor(std::string prompt, Assist assist);
   ~LibeditLineEditor() override;
   LibeditLineEditor(LibeditLineEditor const&) = delete;
   LibeditLineEditor& operator=(LibeditLineEditor const&) = delete;

   std::optional<std::string> readLine() override;
   void remember(std::string const& line) override;

 private:
   static LibeditLineEditor& of(editline* editLine);
   static char* promptOf(editline* editLine);
   static unsigned char onHelp(editline* editLine, int key);
   static unsigned char onComplete(editline* editLine, int key);
   static unsigned char onCancel(editline* editLine, int key);

   std::string lineBeforeCursor() const;
   // Writes `text` below the line being typed; the line is shown again after it.
   void showBelow(std::string const& text) const;

   std::string prompt_;
   Assist assist_;
   bool cancelled_ = false;
   History* history_;
   editline* editLine_;
};

LibeditLineEditor::LibeditLineEditor(std::string prompt, Assist assist)
    : prompt_(std::move(prompt)),
      assist_(std::move(assist)),
      history_(history_init()),
      editLine_(el_init("tpcli", stdin, stdout, stderr)) {
   HistEvent event;
   history(history_, &event, H_SETSIZE, kHistoryEntries);
   history(history_, &event, H_SETUNIQUE, 1);
   el_set(editLine_, EL_CLIENTDATA, this);
   el_set(editLine_, EL_EDITOR, "emacs");
   el_set(editLine_, EL_PROMPT, &LibeditLineEditor::promptOf);
   el_set(editLine_, EL_HIST, history, history_);
   // Resizes and suspends are handled while a line is typed.
   el_set(editLine_, EL_SIGNAL, 1);
   // Ctrl-C reaches the editor as a key while typing, so that it drops the line rather than
   // interrupting the process.
   el_set(editLine_, EL_SETTY, "-d", "-isig", nullptr);
   // While a command runs, Ctrl-C keeps what it wrote and the terminal has not shown yet. By
   // default the terminal drops that output, cut at any byte, even between a line's carriage
   // return and its line feed; "exiting interrupted" then overwrote only the start of the
   // listing's last line, and the rest of it stayed on the screen after the message. Nor is the
   // key echoed as "^C": the echo races with the command's own message and may land before the
   // next prompt; the message says that the command was interrupted.
   el_set(editLine_, EL_SETTY, "-x", "+noflsh", "-echoctl", nullptr);
   // The wide form keeps these strings as given; the narrow one copies them and never frees them.
   el_wset(editLine_, EL_ADDFN, L"tpcli-help", L"List what may come next",
           &LibeditLineEditor::onHelp);
   el_wset(editLine_, EL_ADDFN, L"tpcli-complete", L"Complete the word",
           &LibeditLineEditor::onComplete);
   el_wset(editLine_, EL_ADDFN, L"tpcli-cancel", L"Drop the line", &LibeditLineEditor::onCancel);
   el_set(editLine_, EL_BIND, "?", "tpcli-help", nullptr);
   el_set(editLine_, EL_BIND, "^I", "tpcli-complete", nullptr);
   el_set(editLine_, EL_BIND, "^C", "tpcli-cancel", nullptr);
}

LibeditLineEditor::~LibeditLineEditor() {
   el_end(editLine_);
   history_end(history_);
}

LibeditLineEditor& LibeditLineEditor::of(editline* editLine) {
   void* self = nullptr;
   el_get(editLine, EL_CLIENTDATA, &self);
   return *static_cast<LibeditLineEditor*>(self);
}

char* LibeditLineEditor::promptOf(editline* editLine) {
   return of(editLine).prompt_.data();
}

std::string LibeditLineEditor::lineBeforeCursor() const {
   auto const* line = el_line(editLine_);
   return {line->buffer, line->cursor};
}

void LibeditLineEditor::showBelow(std::string const& text) const {
   std::fputc('\n', stdout);
   std::fputs(text.c_str(), stdout);
   std::fflush(stdout);
}

unsigned char LibeditLineEditor::onHelp(editline* editLine, int) {
   auto& self = of(editLine);
   self.showBelow(self.assist_.help(self.lineBeforeCursor()));
   return CC_REDISPLAY;
}

unsigned char LibeditLineEditor::onComplete(editline* editLine, int) {
   auto& self = of(editLine);
   auto const completion = self.assist_.complete(self.lineBeforeCursor());
   if (!completion.insert.empty()) {
      el_insertstr(editLine, completion.insert.c_str());
      return CC_REFRESH;
   }
   if (!completion.listing.empty()) {
      self.showBelow(completion.listing);
      return CC_REDISPLAY;
   }
   return CC_REFRESH_BEEP;
}

unsigned char LibeditLineEditor::onCancel(editline* editLine, int) {
   of(editLine).cancelled_ = true;
   return CC_NEWLINE;
}

std::optional<std::string> LibeditLineEditor::readLine() {
   cancelled_ = false;
   int count = 0;
   auto const* line = el_gets(editLine_, &count);
   if (!line || count <= 0) {
      return std::nullopt;
   }
   if (cancelled_) {
      // As a terminal echoes an interrupt; the editor, left by our key, did not end the line.
      std::fputs("^C\n", stdout);
      std::fflush(stdout);
      return std::string();
   }
   std::string_view text(line, static_cast<std::size_t>(count));
   if (text.ends_with('\n')) {
      text.remove_suffix(1);
   }
   return std::string(text);
}

void LibeditLineEditor::remember(std::string const& line) {
   HistEvent event;
   history(history_, &event, H_ENTER, line.c_str());
}

}  // namespace

}  // namespace tpcli

tpcli::LineEditor* tpcliLineEditor(std::string prompt, tpcli::LineEditor::Assist assist) {
   return std::make_unique<tpcli::LibeditLineEditor>(std::move(prompt), std::move(assist))
       .release();
}
