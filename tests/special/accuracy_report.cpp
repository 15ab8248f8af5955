/// @file
/// Prints what the truth tables say about the special functions.
///
///     accuracy_report budgets          measures everything, in the form of accuracy_budgets.txt
///     accuracy_report markdown NAME    the table of a function for docs/accuracy.md
///     accuracy_report points FAMILY    rows "argument error" for a plot, a block per function
///     accuracy_report worst NAME       the row with the largest error of each region

#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>

#include "special/accuracy.h"

namespace {

using accuracy::Function;
using accuracy::Region;
using accuracy::Row;

void PrintBudgets(EmbeddedHost& host) {
  std::puts(
      "# Largest errors measured, and what the tests allow. Columns: function, region (both as in");
  std::puts("# data/*.txt), measured, allowed. Written by tests/truth/update-accuracy.");
  for (const Function& function : accuracy::Functions(host)) {
    for (const Region& region : accuracy::ReadTable(function.name)) {
      const accuracy::Budget budget = accuracy::MakeBudget(
          function.name, region.name, accuracy::LargestError(function, region, host));
      std::printf("%s %s %s %s\n", budget.function.c_str(), budget.region.c_str(),
                  budget.measured.c_str(), budget.allowed.c_str());
    }
  }
}

void PrintPoints(EmbeddedHost& host, const char* family) {
  for (const Function& function : accuracy::Functions(host)) {
    if (function.family != family) continue;
    std::printf("\"%s\"\n", function.name.c_str());
    for (const Region& region : accuracy::ReadTable(function.name)) {
      for (const Row& row : region.rows) {
        const double error = accuracy::ErrorOf(accuracy::MeasureNamed(region.measureName),
                                               accuracy::Compute(function, row, host), row.truth);
        std::printf("%.6e %.3e\n", std::fabs(row.arguments[function.plottedArgument]), error);
      }
    }
    std::puts("\n");
  }
}

void PrintWorst(EmbeddedHost& host, const char* name) {
  for (const Function& function : accuracy::Functions(host)) {
    if (function.name != name) continue;
    for (const Region& region : accuracy::ReadTable(function.name)) {
      const Row* worst = nullptr;
      double largest = -1.0;
      for (const Row& row : region.rows) {
        const double error = accuracy::ErrorOf(accuracy::MeasureNamed(region.measureName),
                                               accuracy::Compute(function, row, host), row.truth);
        if (error <= largest) continue;
        largest = error;
        worst = &row;
      }
      std::printf("%s: %s %.3e at", region.name.c_str(), region.measureName.c_str(), largest);
      for (const double argument : worst->arguments) std::printf(" %.17g", argument);
      std::printf(": %.17g, truth %.17Lg\n", accuracy::Compute(function, *worst, host),
                  worst->truth);
    }
  }
}

int Run(int count, char** words) {
  EmbeddedHost host;
  if (!host.Load(TARN_MODULE_PATH)) {
    std::fprintf(stderr, "%s\n", host.TakeError().ToString().c_str());
    return 1;
  }
  const auto is = [&](const char* command) { return std::strcmp(words[1], command) == 0; };
  if (count == 2 && is("budgets")) {
    PrintBudgets(host);
  } else if (count == 3 && is("markdown")) {
    std::fputs(accuracy::MarkdownTable(words[2], accuracy::ReadBudgets()).c_str(), stdout);
  } else if (count == 3 && is("points")) {
    PrintPoints(host, words[2]);
  } else if (count == 3 && is("worst")) {
    PrintWorst(host, words[2]);
  } else {
    std::fputs("usage: accuracy_report budgets|markdown NAME|points FAMILY|worst NAME\n", stderr);
    return 2;
  }
  return 0;
}

}  // namespace

int main(int count, char** words) {
  try {
    return Run(count, words);
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "%s\n", exception.what());
    return 1;
  }
}
