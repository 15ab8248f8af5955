#include "host/column_reader.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

namespace tarn {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

std::string ReadWholeFile(const std::string& path) {
  const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rb"));
  if (!file) throw ColumnError(path + ": cannot be read");
  std::string text;
  std::vector<char> chunk(1 << 16);
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), file.get())) {
    text.append(chunk.data(), count);
  }
  // A directory, for example, can be opened but not read.
  if (std::ferror(file.get()) != 0) throw ColumnError(path + ": cannot be read");
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  return text;
}

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string_view WithoutQuotes(std::string_view field) {
  const bool quoted = field.size() >= 2 && field.front() == '"' && field.back() == '"';
  return quoted ? field.substr(1, field.size() - 2) : field;
}

std::vector<std::string_view> SplitAtCharacter(std::string_view line, char separator) {
  std::vector<std::string_view> fields;
  for (std::size_t end = line.find(separator); end != std::string_view::npos;
       end = line.find(separator)) {
    fields.push_back(WithoutQuotes(Trimmed(line.substr(0, end))));
    line.remove_prefix(end + 1);
  }
  fields.push_back(WithoutQuotes(Trimmed(line)));
  return fields;
}

std::vector<std::string_view> SplitAtBlanks(std::string_view line) {
  std::vector<std::string_view> fields;
  for (line = Trimmed(line); !line.empty(); line = Trimmed(line)) {
    const std::size_t end = std::min(line.find_first_of(kBlanks), line.size());
    fields.push_back(WithoutQuotes(line.substr(0, end)));
    line.remove_prefix(end);
  }
  return fields;
}

/// One pass over the lines of a file.
class ColumnFileReader {
 public:
  ColumnFileReader(const std::string& path, const ColumnOptions& options)
      : path_(path), options_(options), text_(ReadWholeFile(path)), rest_(text_) {}

  Columns Read() {
    while (!rest_.empty()) ReadLine(NextLine());
    if (columns_.columns.empty()) throw ColumnError(path_ + ": holds no data");
    return std::move(columns_);
  }

 private:
  std::string_view NextLine() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    ++lineNumber_;
    return line;
  }

  void ReadLine(std::string_view line) {
    if (lineNumber_ <= options_.skippedLines) return;
    line = Trimmed(line.substr(0, line.find('#')));
    if (line.empty()) return;
    const std::vector<std::string_view> fields = Split(line);
    if (fieldCount_ == 0) fieldCount_ = fields.size();
    if (fields.size() != fieldCount_) FailAsRagged(fields.size());
    if (options_.header && columns_.names.empty()) {
      columns_.names.assign(fields.begin(), fields.end());
    } else {
      AppendRow(fields);
    }
  }

  std::vector<std::string_view> Split(std::string_view line) const {
    if (!options_.separator.empty()) return SplitAtCharacter(line, options_.separator.front());
    if (line.find(',') != std::string_view::npos) return SplitAtCharacter(line, ',');
    return SplitAtBlanks(line);
  }

  void AppendRow(const std::vector<std::string_view>& fields) {
    columns_.columns.resize(fieldCount_);
    for (std::size_t i = 0; i < fields.size(); ++i) {
      columns_.columns[i].push_back(NumberIn(fields[i], i + 1));
    }
  }

  double NumberIn(std::string_view field, std::size_t number) const {
    std::string_view digits = field;
    if (digits.size() > 1 && digits.front() == '+' && digits[1] != '-') digits.remove_prefix(1);
    double value = 0.0;
    const auto [end, status] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (status == std::errc() && end == digits.data() + digits.size()) return value;
    FailAtField(field, number);
  }

  [[noreturn]] void Fail(const std::string& problem) const {
    throw ColumnError(path_ + ":" + std::to_string(lineNumber_) + ": " + problem);
  }

  [[noreturn]] void FailAtField(std::string_view field, std::size_t number) const {
    const std::string name = "field " + std::to_string(number);
    if (field.empty()) Fail(name + " is empty");
    const bool mayBeHeader = !options_.header && columns_.columns.front().empty();
    Fail(name + " is no number: \"" + std::string(field) + "\"" +
         (mayBeHeader ? "; if the line holds names, read with {header = true}" : ""));
  }

  [[noreturn]] void FailAsRagged(std::size_t count) const {
    Fail(std::to_string(count) + (count == 1 ? " field" : " fields") +
         ", but the lines before have " + std::to_string(fieldCount_));
  }

  const std::string& path_;
  const ColumnOptions& options_;
  std::string text_;
  std::string_view rest_;
  std::size_t lineNumber_ = 0;
  std::size_t fieldCount_ = 0;
  Columns columns_;
};

}  // namespace

Columns ReadColumnFile(const std::string& path, const ColumnOptions& options) {
  return ColumnFileReader(path, options).Read();
}

}  // namespace tarn
