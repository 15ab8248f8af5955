#include "app/help_text.h"

#include <algorithm>

namespace tarn {
namespace {

constexpr std::size_t kColumns = 80;
constexpr std::size_t kLabelWidth = 11;  ///< "  Meaning:" and a space
constexpr std::size_t kCallWidth = 28;   ///< column of the summaries in the index

std::string PadTo(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

/// Breaks a text into lines behind a label; lines after the first are indented by its width.
std::string Wrap(std::string_view label, std::string_view text) {
  std::string result;
  std::string line = PadTo(std::string("  ").append(label).append(":"), kLabelWidth);
  bool lineHasWords = false;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    if (lineHasWords && line.size() + 1 + end > kColumns) {
      result += line + '\n';
      line.assign(kLabelWidth, ' ');
      lineHasWords = false;
    }
    if (lineHasWords) line += ' ';
    line += text.substr(0, end);
    lineHasWords = true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result + line + '\n';
}

/// All errors that a function raises by itself.
std::string AllErrors(const HelpEntry& entry) {
  std::string errors(CommonErrors(entry.signature));
  if (!errors.empty() && !entry.errors.empty()) errors += ' ';
  return errors += entry.errors;
}

/// Calls `onFamily` before the first entry of each family and `onEntry` for each entry.
template <class OnFamily, class OnEntry>
void ForEachEntry(std::span<const HelpEntry> entries, OnFamily onFamily, OnEntry onEntry) {
  std::string_view family;
  for (const HelpEntry& entry : entries) {
    if (entry.family != family) onFamily(family = entry.family);
    onEntry(entry);
  }
}

constexpr std::string_view kReferenceHead = R"(# Script functions

<!-- Written by the program tarn-reference from app/help_data.cpp; a test compares the two. -->

The 41 functions that the module adds to the script language. `help("Name")` prints the same at the
prompt and in scripts. `help()` lists them and those of the companion module, `tarn --list` the
signatures of both.

A signature gives the kinds of the arguments:

| kind | what it takes |
|---|---|
| `number` | a number |
| `int` | an integer |
| `any` | a number gives a number. An array (a script table `{1, 2, 3}` or a host array) gives an array, element by element. A tabulated function gives a tabulated function with the same abscissae. A vector value counts as one number, its Euclidean length. Any other argument raises error 3. |
| `refer object Vector` | an array or a vector |

Where the count or the kinds of arguments do not fit the signature, the call ends with an error
before the function runs. An error value has the fields `number`, `name` and `message`; `pcall`
catches it.

docs/accuracy.md states the largest error measured for each function and region.
)";

void AppendItem(std::string& page, std::string_view label, std::string_view text) {
  if (text.empty()) return;
  page.append("- **").append(label).append(":** ").append(text).append("\n");
}

/// A text that markdown must not interpret: `*`, `_` and `<` stand for themselves, `|` is left.
std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '*' || c == '_' || c == '<' || c == '^') result += '\\';
    result += c;
  }
  return result;
}

std::string Code(std::string_view text) { return std::string("`").append(text).append("`"); }

std::string ReferenceExample(const HelpEntry& entry) {
  std::string example = Code(entry.example);
  if (!entry.value.empty()) example.append(" is ").append(Code(entry.value));
  return example;
}

void AppendReferenceEntry(std::string& page, const HelpEntry& entry) {
  page.append("\n### ").append(entry.Name()).append("\n\n");
  page.append(Code(entry.signature)).append(", called as ").append(Code(entry.call)).append("\n\n");
  AppendItem(page, "Meaning", Escaped(entry.meaning));
  AppendItem(page, "Domain", Escaped(entry.domain));
  AppendItem(page, "Errors", Escaped(AllErrors(entry)));
  AppendItem(page, "Caution", Escaped(entry.caution));
  AppendItem(page, "Example", ReferenceExample(entry));
}

}  // namespace

std::string RenderEntry(const HelpEntry& entry) {
  std::string text = std::string(entry.signature).append("\n");
  text += Wrap("Call", entry.call);
  text += Wrap("Meaning", entry.meaning);
  text += Wrap("Domain", entry.domain);
  text += Wrap("Errors", AllErrors(entry));
  if (!entry.caution.empty()) text += Wrap("Caution", entry.caution);
  std::string example(entry.example);
  if (!entry.value.empty()) example.append("  -->  ").append(entry.value);
  return text + Wrap("Example", example);
}

std::string RenderIndex(std::span<const HelpEntry> entries) {
  std::string text;
  ForEachEntry(
      entries,
      [&text](std::string_view family) {
        text.append(text.empty() ? "" : "\n").append(family).append("\n");
      },
      [&text](const HelpEntry& entry) {
        const std::string call = std::string("  ").append(entry.call);
        text.append(PadTo(call, kCallWidth)).append(" ").append(entry.summary).append("\n");
      });
  return text + "\nhelp(\"Name\") tells more about one function.\n";
}

std::string RenderReference() {
  std::string page(kReferenceHead);
  ForEachEntry(
      HelpEntries(),
      [&page](std::string_view family) { page += "\n## " + std::string(family) + '\n'; },
      [&page](const HelpEntry& entry) { AppendReferenceEntry(page, entry); });
  return page;
}

}  // namespace tarn
