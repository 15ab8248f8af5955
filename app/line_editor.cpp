#include "app/line_editor.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cwchar>

#include "app/completion.h"
#include "app/interrupt.h"
#include "app/terminal.h"

namespace tarn {
namespace {

constexpr int kHistoryLength = 1000;

/// Waits until there is input. False after an interrupt, also one that came just before.
bool WaitForInput() {
  sigset_t interrupt, before;
  sigemptyset(&interrupt);
  sigaddset(&interrupt, SIGINT);
  // The signal is let through only while waiting, so that none falls between check and wait.
  pthread_sigmask(SIG_BLOCK, &interrupt, &before);
  pollfd input = {STDIN_FILENO, POLLIN, 0};
  bool ready = false;
  while (!ready && !IsInterrupted()) {
    // Other signals, about the window and about being continued, are dealt with by the editor.
    ready = ppoll(&input, 1, nullptr, &before) >= 0 || errno != EINTR;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return ready;
}

/// One byte from the terminal: returns 1, 0 at the end of input, -1 after an interrupt or an error.
int ReadByte(char& byte) {
  if (!WaitForInput()) return -1;
  return static_cast<int>(read(STDIN_FILENO, &byte, 1));
}

}  // namespace

LineEditor::LineEditor(std::string historyPath, Completer completer)
    : historyPath_(std::move(historyPath)),
      completer_(std::move(completer)),
      editor_(el_init("tarn", stdin, stdout, stderr)),
      history_(history_init()) {
  el_set(editor_, EL_CLIENTDATA, this);
  el_set(editor_, EL_PROMPT, &LineEditor::Prompt);
  el_set(editor_, EL_EDITOR, "emacs");
  el_set(editor_, EL_SIGNAL, 1);
  el_set(editor_, EL_GETCFN, &LineEditor::ReadCharacter);
  // The wide call keeps these texts, the narrow one copies of them that nobody frees.
  el_wset(editor_, EL_ADDFN, L"tarn-complete", L"Complete the name", &LineEditor::Complete);
  el_set(editor_, EL_BIND, "^I", "tarn-complete", nullptr);
  el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_source(editor_, nullptr);

  HistEvent event = {};
  history(history_, &event, H_SETSIZE, kHistoryLength);
  history(history_, &event, H_SETUNIQUE, 1);
  if (!historyPath_.empty()) history(history_, &event, H_LOAD, historyPath_.c_str());
  el_set(editor_, EL_HIST, history, history_);
}

LineEditor::~LineEditor() {
  el_end(editor_);
  history_end(history_);
}

TypedLine LineEditor::Read(const std::string& prompt) {
  prompt_ = prompt;
  int count = 0;
  // Before the prompt appears: whoever types at once is not to be echoed by the terminal as well.
  el_set(editor_, EL_PREP_TERM, 1);
  const char* line = el_gets(editor_, &count);
  if (TakeInterrupt()) return {TypedLine::End::kInterrupt, ""};
  if (line == nullptr || count <= 0) return {TypedLine::End::kEndOfInput, ""};
  std::string text(line, static_cast<std::size_t>(count));
  if (text.ends_with('\n')) text.pop_back();
  return {TypedLine::End::kLine, text};
}

void LineEditor::Remember(const std::string& line) {
  HistEvent event = {};
  history(history_, &event, H_ENTER, line.c_str());
  // Saved at once: whatever ends the program later cannot lose it.
  if (!historyPath_.empty()) history(history_, &event, H_SAVE, historyPath_.c_str());
}

char* LineEditor::Prompt(EditLine* editor) {
  LineEditor* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return self->prompt_.data();
}

/// Reads a character of the terminal's encoding; returns 1, 0 at the end of input, or -1.
int LineEditor::ReadCharacter(EditLine*, wchar_t* character) {
  std::mbstate_t state = {};
  for (int bytes = 0; bytes < MB_LEN_MAX; ++bytes) {
    char byte = 0;
    const int count = ReadByte(byte);
    if (count <= 0) return count;
    const std::size_t length = std::mbrtowc(character, &byte, 1, &state);
    if (length == static_cast<std::size_t>(-2)) continue;
    if (length == static_cast<std::size_t>(-1)) *character = L'?';
    return 1;
  }
  return -1;
}

unsigned char LineEditor::Complete(EditLine* editor, int) {
  LineEditor* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return self->CompleteWord();
}

unsigned char LineEditor::CompleteWord() {
  const LineInfo* line = el_line(editor_);
  const std::string word(LastWord({line->buffer, line->cursor}));
  const std::vector<std::string> names = completer_(word);
  if (names.empty()) return CC_REFRESH_BEEP;
  const std::string common = CommonPrefix(names);
  if (common.size() > word.size()) {
    el_insertstr(editor_, common.c_str() + word.size());
    return CC_REFRESH;
  }
  if (names.size() == 1) return CC_REFRESH;
  std::printf("\n%s", InColumns(names, TerminalWidth(STDOUT_FILENO)).c_str());
  std::fflush(stdout);
  return CC_REDISPLAY;
}

}  // namespace tarn
