/// @file
/// `WriteColumns`: columns of numbers to a text file that the host's `ReadColumns` reads back.

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <utility>

#include "arguments.h"
#include "families.h"
#include "handler.h"
#include "results.h"

namespace tarn::toolkit {
namespace {

/// What is written.
struct ColumnFile {
  std::vector<Numbers> columns;
  std::vector<std::string> names;
  char separator;
};

std::vector<Numbers> ReadColumnArrays(const Input& input) {
  std::vector<Numbers> columns;
  const int count = input.Length(1);
  for (int j = 0; j < count; ++j) {
    const Input column = input.Element(j);
    columns.push_back(j == 0 ? column.Array()
                             : column.ArrayOfLength(columns[0].size(), input.Name() + "[1]"));
  }
  return columns;
}

/// A character that cannot be part of a number or begin a comment.
char ReadSeparator(const Options& options) {
  const auto given = options.Find("separator");
  if (!given) return ',';
  const std::string text = given->Text();
  if (text.size() != 1) given->Refuse("must be one character");
  if (std::strchr(" ,;:|\t", text[0]) == nullptr) {
    given->Refuse("must be a blank, a tab or one of , ; : |");
  }
  return text[0];
}

std::vector<std::string> ReadNames(const Options& options, std::size_t count, char separator) {
  const auto given = options.Find("names");
  if (!given) return {};
  std::vector<std::string> names;
  for (int j = 0; j < given->Length(); ++j) {
    const Input name = given->Element(j);
    names.push_back(name.Text());
    const std::string unwanted = std::string("\r\n#") + separator;
    if (names.back().empty() || names.back().find_first_of(unwanted) != std::string::npos) {
      name.Refuse("must be a name without the separator, # and line ends");
    }
  }
  if (names.size() != count) {
    given->Refuse("has " + CountText(given->Length(), "name") + " for " +
                  CountText(static_cast<std::int64_t>(count), "column"));
  }
  return names;
}

/// A file that is closed on every way out.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "w")) {
    if (file_ == nullptr) Fail();
  }
  ~OutputFile() {
    if (file_ != nullptr) std::fclose(file_);
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) Fail();
  }
  void Close() {
    std::FILE* file = std::exchange(file_, nullptr);
    if (std::fclose(file) != 0) Fail();
  }

 private:
  [[noreturn]] void Fail() const {
    throw Fault(kErrorFile, path_ + ": cannot be written: " + std::strerror(errno));
  }

  std::string path_;
  std::FILE* file_;
};

/// The fewest digits that are read back as the same number.
void AppendNumber(std::string& line, double number) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  line.append(digits, end);
}

void WriteFile(const std::string& path, const ColumnFile& content) {
  OutputFile file(path);
  std::string line;
  for (const std::string& name : content.names) {
    if (!line.empty()) line += content.separator;
    line += name;
  }
  if (!line.empty()) file.Write(line + '\n');
  for (std::size_t i = 0; i < content.columns[0].size(); ++i) {
    line.clear();
    for (const Numbers& column : content.columns) {
      if (!line.empty()) line += content.separator;
      AppendNumber(line, column[i]);
    }
    file.Write(line + '\n');
  }
  file.Close();
}

void WriteColumns(const Call& call) {
  const std::string path = Input(call.Argument(0), "path").Text();
  const Options options(call.Argument(2), {"names", "separator"});
  ColumnFile content;
  content.columns = ReadColumnArrays(Input(call.Argument(1), "columns"));
  content.separator = ReadSeparator(options);
  content.names = ReadNames(options, content.columns.size(), content.separator);
  WriteFile(path, content);
}

constexpr ScriptFunction kRows[] = {
    {Handler<WriteColumns>, "WriteColumns(text, options, options?)"},
};

}  // namespace

std::span<const ScriptFunction> ColumnRows() { return kRows; }

}  // namespace tarn::toolkit
