#include "special/accuracy.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace accuracy {
namespace {

// Room for other C libraries' last digits of exp and log.
constexpr double kMargin = 1.25;

std::ifstream Open(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  return file;
}

Region ParseRegion(std::istringstream& words) {
  Region region;
  words >> region.name >> region.measureName;
  std::getline(words >> std::ws, region.description);
  return region;
}

/// The numbers of a line, the last one being the truth. strtold takes values beyond every double.
Row ParseRow(const std::string& line) {
  Row row;
  std::istringstream words(line);
  std::string word;
  std::string last;
  while (words >> word) {
    if (!last.empty()) row.arguments.push_back(std::strtod(last.c_str(), nullptr));
    last = word;
  }
  row.truth = std::strtold(last.c_str(), nullptr);
  return row;
}

std::string Format(const char* format, double value) {
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

/// `value` with two significant digits, never below it.
std::string RoundedUp(double value) {
  std::string text = Format("%.1e", value);
  if (std::strtod(text.c_str(), nullptr) < value) text = Format("%.1e", value * 1.05);
  return text;
}

}  // namespace

std::string ProjectFile(const std::string& relativePath) {
  return std::string(TARN_SOURCE_DIR "/") + relativePath;
}

std::string ReadText(const std::string& path) {
  std::ostringstream text;
  text << Open(path).rdbuf();
  return text.str();
}

std::vector<Region> ReadTable(const std::string& functionName) {
  std::vector<Region> regions;
  std::ifstream file = Open(ProjectFile("tests/truth/data/" + functionName + ".txt"));
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line.starts_with("region ")) {
      std::istringstream words(line.substr(7));
      regions.push_back(ParseRegion(words));
    } else {
      regions.back().rows.push_back(ParseRow(line));
    }
  }
  return regions;
}

double Compute(const Function& function, const Row& row, EmbeddedHost& host) {
  const double value = function.compute(row.arguments);
  const bool failed = host.TakeError().number != 0;
  return failed ? std::numeric_limits<double>::quiet_NaN() : value;
}

double LargestError(const Function& function, const Region& region, EmbeddedHost& host) {
  const Measure measure = MeasureNamed(region.measureName);
  double largest = 0.0;
  for (const Row& row : region.rows) {
    largest = std::fmax(largest, ErrorOf(measure, Compute(function, row, host), row.truth));
  }
  return largest;
}

std::vector<Budget> ReadBudgets() {
  std::vector<Budget> budgets;
  std::ifstream file = Open(ProjectFile("tests/truth/accuracy_budgets.txt"));
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    Budget budget;
    std::istringstream words(line);
    words >> budget.function >> budget.region >> budget.measured >> budget.allowed;
    budgets.push_back(budget);
  }
  return budgets;
}

Budget MakeBudget(const std::string& function, const std::string& region, double measured) {
  if (std::isinf(measured)) return {function, region, "inf", "inf"};
  return {function, region, Format("%.2e", measured), RoundedUp(measured * kMargin)};
}

namespace {

/// The text with its bars escaped, so that they do not end a cell of a table.
std::string Cell(const std::string& text) {
  std::string cell;
  for (const char c : text) {
    if (c == '|') cell += '\\';
    cell += c;
  }
  return cell;
}

}  // namespace

std::string MarkdownTable(const std::string& functionName, const std::vector<Budget>& budgets) {
  std::string text = "| region | where | error | largest measured | allowed by the test |\n";
  text += "|---|---|---|---|---|\n";
  for (const Region& region : ReadTable(functionName)) {
    for (const Budget& budget : budgets) {
      if (budget.function != functionName || budget.region != region.name) continue;
      text += "| " + region.name + " | " + Cell(region.description) + " | " + region.measureName +
              " | " + budget.measured + " | " + budget.allowed + " |\n";
    }
  }
  return text;
}

}  // namespace accuracy
