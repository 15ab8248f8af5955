#include "table.h"

#include <cstring>

#include "results.h"

namespace tarn::toolkit {
namespace {

void RequireAscending(const Numbers& x) {
  for (std::size_t i = 1; i < x.size(); ++i) {
    if (x[i] >= x[i - 1]) continue;
    Refuse("X must ascend, but X[" + std::to_string(i + 1) + "] is " + NumberText(x[i]) +
           " after " + NumberText(x[i - 1]));
  }
}

}  // namespace

bool IsTable(const Variable& value) { return std::strcmp(value.KindName(), "TFunc") == 0; }

TFunc TableOf(Variable& value) {
  const Numbers x = Input(value("X"), "X").FiniteArray(1);
  const Numbers y = Input(value("Y"), "Y").ArrayOfLength(x.size(), "X");
  RequireAscending(x);
  TFunc table(x.data(), y.data(), static_cast<int>(x.size()));
  RequireSuccess(table.N == static_cast<int>(x.size()));
  return table;
}

void SetTable(Variable& target, const TFunc& table) {
  const auto count = static_cast<std::size_t>(table.N);
  SetFunction(target, {table.X, count}, {table.Y, count});
}

}  // namespace tarn::toolkit
