// libedit set up for a device-like prompt: emacs keys, our functions on `?`, TAB and Ctrl-C.
#include "tpcli/LineEditor.h"

#include <histedit.h>

#include <cstdio>

namespace tpcli {

namespace {

constexpr int kHistoryEntries = 1000;

}  // namespace

LineEditor::LineEditor(std::string prompt, Assist assist)
    : prompt_(std::move(prompt)),
      assist_(std::move(assist)),
      history_(history_init()),
      editLine_(el_init("tpcli", stdin, stdout, stderr)) {
   HistEvent event;
   history(history_, &event, H_SETSIZE, kHistoryEntries);
   history(history_, &event, H_SETUNIQUE, 1);
   el_set(editLine_, EL_CLIENTDATA, this);
   el_set(editLine_, EL_EDITOR, "emacs");
   el_set(editLine_, EL_PROMPT, &LineEditor::promptOf);
   el_set(editLine_, EL_HIST, history, history_);
   // Resizes and suspends are handled while a line is typed.
   el_set(editLine_, EL_SIGNAL, 1);
   // Ctrl-C reaches the editor as a key while typing, so that it drops the line rather than
   // interrupting the process.
   el_set(editLine_, EL_SETTY, "-d", "-isig", nullptr);
   // The wide form keeps these strings as given; the narrow one copies them and never frees them.
   el_wset(editLine_, EL_ADDFN, L"tpcli-help", L"List what may come next", &LineEditor::onHelp);
   el_wset(editLine_, EL_ADDFN, L"tpcli-complete", L"Complete the word", &LineEditor::onComplete);
   el_wset(editLine_, EL_ADDFN, L"tpcli-cancel", L"Drop the line", &LineEditor::onCancel);
   el_set(editLine_, EL_BIND, "?", "tpcli-help", nullptr);
   el_set(editLine_, EL_BIND, "^I", "tpcli-complete", nullptr);
   el_set(editLine_, EL_BIND, "^C", "tpcli-cancel", nullptr);
}

LineEditor::~LineEditor() {
   el_end(editLine_);
   history_end(history_);
}

LineEditor& LineEditor::of(editline* editLine) {
   void* self = nullptr;
   el_get(editLine, EL_CLIENTDATA, &self);
   return *static_cast<LineEditor*>(self);
}

char* LineEditor::promptOf(editline* editLine) {
   return of(editLine).prompt_.data();
}

std::string LineEditor::lineBeforeCursor() const {
   auto const* line = el_line(editLine_);
   return {line->buffer, line->cursor};
}

void LineEditor::showBelow(std::string const& text) const {
   std::fputc('\n', stdout);
   std::fputs(text.c_str(), stdout);
   std::fflush(stdout);
}

unsigned char LineEditor::onHelp(editline* editLine, int) {
   auto& self = of(editLine);
   self.showBelow(self.assist_.help(self.lineBeforeCursor()));
   return CC_REDISPLAY;
}

unsigned char LineEditor::onComplete(editline* editLine, int) {
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

unsigned char LineEditor::onCancel(editline* editLine, int) {
   of(editLine).cancelled_ = true;
   return CC_NEWLINE;
}

std::optional<std::string> LineEditor::readLine() {
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

void LineEditor::remember(std::string const& line) {
   HistEvent event;
   history(history_, &event, H_ENTER, line.c_str());
}

}  // namespace tpcli
