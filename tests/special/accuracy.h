#ifndef TESTS_SPECIAL_ACCURACY_H
#define TESTS_SPECIAL_ACCURACY_H

/// @file
/// Measuring the special functions against the tables in tests/truth/data, and the budgets in
/// tests/truth/accuracy_budgets.txt that hold them to what was measured.

#include <functional>
#include <string>
#include <vector>

#include "host/embedded_host.h"
#include "special/error_measure.h"

namespace accuracy {

/// One line of a truth table.
struct Row {
  std::vector<double> arguments;
  long double truth;
};

/// A part of a function's domain.
struct Region {
  std::string name;
  std::string measureName;
  std::string description;
  std::vector<Row> rows;
};

/// A function under test: the name of its table, how it is computed, and for plots the family it
/// belongs to and the argument that it is drawn over.
struct Function {
  std::string name;
  std::string family;
  std::size_t plottedArgument;
  std::function<double(const std::vector<double>& arguments)> compute;
};

/// All functions that have a table. The script functions among them are called in `host`, which
/// must outlive the result and have the module loaded.
std::vector<Function> Functions(EmbeddedHost& host);

/// The regions of a function's table.
std::vector<Region> ReadTable(const std::string& functionName);

/// Value of a row; NaN where computing it raised an error.
double Compute(const Function& function, const Row& row, EmbeddedHost& host);

/// The largest error over a region.
double LargestError(const Function& function, const Region& region, EmbeddedHost& host);

/// What a region's error was measured to be, and what a test allows.
struct Budget {
  std::string function;
  std::string region;
  std::string measured;  ///< text of a number, or "inf" where rows have no usable value at all
  std::string allowed;
};

/// The budgets file, in its order.
std::vector<Budget> ReadBudgets();

/// The budget for a measured error.
Budget MakeBudget(const std::string& function, const std::string& region, double measured);

/// The table of one function in docs/accuracy.md.
std::string MarkdownTable(const std::string& functionName, const std::vector<Budget>& budgets);

/// Path of a file of the project.
std::string ProjectFile(const std::string& relativePath);

/// The whole text of a file. Throws `std::runtime_error` when it cannot be read.
std::string ReadText(const std::string& path);

}  // namespace accuracy

#endif
