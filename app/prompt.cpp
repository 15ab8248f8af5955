#include "app/prompt.h"

#include <cstdio>
#include <string>

#include "app/history_path.h"
#include "app/interrupt.h"
#include "app/line_editor.h"
#include "app/prelude.h"
#include "app/progress_bar.h"

namespace tarn {
namespace {

constexpr char kFirstPrompt[] = "> ";
constexpr char kContinuationPrompt[] = ">> ";
constexpr char kChunkName[] = "prompt";

void PrintBanner(const EmbeddedHost& host) {
  for (const std::string& description : host.ModuleDescriptions()) {
    std::printf("%s\n", description.c_str());
  }
  std::printf("help() lists the functions, help(\"Beta_I\") tells about one. Ctrl-D ends.\n");
}

/// The name of the function or method that a word calls: what comes after the last colon.
std::string CalledName(const std::string& word) { return word.substr(word.rfind(':') + 1); }

/// Names for a word, those of functions with the parenthesis that comes next.
std::vector<std::string> CompleteWord(EmbeddedHost& host, const std::string& word) {
  std::vector<std::string> names = host.Complete(word);
  if (names.size() != 1) return names;
  const std::string called = CalledName(names.front()) + '(';
  for (const std::string& signature : host.Signatures()) {
    if (!signature.starts_with(called) && signature.find('.' + called) == std::string::npos) {
      continue;
    }
    names.front() += '(';
    break;
  }
  return names;
}

/// Whether more lines could make a statement or an expression of it.
bool WantsMore(EmbeddedHost& host, const std::string& text) {
  if (text.empty() || IsExpression(host, text)) return false;
  return host.IsIncomplete(text) || host.IsIncomplete("return " + text);
}

TypedLine ReadLine(LineEditor& editor, const char* prompt) {
  TypedLine line = editor.Read(prompt);
  if (!line.text.empty()) editor.Remember(line.text);
  return line;
}

/// One input of one or more lines.
TypedLine ReadInput(EmbeddedHost& host, LineEditor& editor) {
  TypedLine input = ReadLine(editor, kFirstPrompt);
  while (input.end == TypedLine::End::kLine && WantsMore(host, input.text)) {
    const TypedLine next = ReadLine(editor, kContinuationPrompt);
    input.end = next.end;
    input.text += '\n' + next.text;
  }
  return input;
}

void RunInput(EmbeddedHost& host, const std::string& text) {
  // The newline ends a comment that the expression may close with.
  const std::string script = IsExpression(host, text) ? "show(" + text + "\n)" : text;
  bool succeeded = false;
  {
    const RunningScript running(host);
    const ProgressDisplay progress(host);
    succeeded = host.Evaluate(script, nullptr, kChunkName);
  }
  std::fflush(stdout);
  if (!succeeded) std::fprintf(stderr, "%s\n", TakeErrorText(host).c_str());
  TakeInterrupt();
}

}  // namespace

bool IsExpression(EmbeddedHost& host, const std::string& text) {
  Variable answer;
  const std::string question = "return load(" + QuoteForScript("return " + text) + ") and 1 or 0";
  return host.Evaluate(question, &answer, kChunkName) && answer.GetInt32Numb() == 1;
}

void RunPrompt(EmbeddedHost& host) {
  const InterruptScope interrupts(InterruptMode::kPrompt);
  LineEditor editor(HistoryPath(),
                    [&host](const std::string& word) { return CompleteWord(host, word); });
  PrintBanner(host);
  for (;;) {
    const TypedLine input = ReadInput(host, editor);
    if (input.end == TypedLine::End::kEndOfInput) break;
    if (input.end == TypedLine::End::kInterrupt) {
      std::printf("\n");
    } else if (!input.text.empty()) {
      RunInput(host, input.text);
    }
  }
  std::printf("\n");
}

}  // namespace tarn
