#ifndef TARN_APP_LINE_EDITOR_H
#define TARN_APP_LINE_EDITOR_H

/// @file
/// Lines typed at a terminal, with editing keys, history and completion (libedit).

#include <histedit.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarn {

/// What the user did at the prompt.
struct TypedLine {
  enum class End { kLine, kInterrupt, kEndOfInput };
  End end = End::kEndOfInput;
  std::string text;  ///< without the newline
};

class LineEditor {
 public:
  /// Names that begin with the word before the cursor.
  using Completer = std::function<std::vector<std::string>(const std::string& word)>;

  /// `historyPath` empty: the history lives as long as the editor.
  LineEditor(std::string historyPath, Completer completer);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  TypedLine Read(const std::string& prompt);
  /// Adds a line to the history, and to its file.
  void Remember(const std::string& line);

 private:
  static char* Prompt(EditLine* editor);
  static int ReadCharacter(EditLine* editor, wchar_t* character);
  static unsigned char Complete(EditLine* editor, int key);
  unsigned char CompleteWord();

  std::string historyPath_;
  Completer completer_;
  std::string prompt_;
  EditLine* editor_;
  History* history_;
};

}  // namespace tarn

#endif
