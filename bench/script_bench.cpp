// What it costs to cross between scripts and compiled code: objectives of a minimisation written in
// Lua, and arrays that go through script functions.
//
// "lua" is the same job in Lua alone.

#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/embedded_host.h"
#include "ratio_reporter.h"

namespace bench {
namespace {

constexpr int kObjectiveCalls = 20000;
constexpr int kArrayLength = 1000000;

// The objectives cost the same in both columns; `evaluations` are those of one search.
constexpr char kSetUp[] = R"(
  objectives, points, boxes = {}, {}, {}
  for _, n in ipairs{2, 5, 10} do
    objectives[n] = function(x)
      local sum = 0
      for i = 1, n do sum = sum + (x[i] - i / 10)^2 end
      return sum
    end
    points[n], boxes[n] = MVector(n), {}
    for i = 1, n do boxes[n][i] = {-3, 4} end
  end
  function search(n)
    return Minimise{f = objectives[n], bounds = boxes[n], method = 'Powell', curvature = false,
                    progress = false}.evaluations
  end
  function call(n, count)
    local f, x = objectives[n], points[n]
    for _ = 1, count do f(x) end
  end
  numbers = {}
  for i = 1, 1000000 do numbers[i] = i / 1e5 end
  host_numbers = array(numbers)
  function sinc_table()
    local result = {}
    for i = 1, #numbers do
      local x = numbers[i]
      result[i] = x == 0 and 1 or math.sin(x) / x
    end
    return result
  end
)";

/// Runs a script that must succeed; its value as a number.
double Run(EmbeddedHost& host, const std::string& script) {
  Variable value;
  if (!host.Evaluate(script, &value)) {
    std::fprintf(stderr, "%s\n", host.TakeError().ToString().c_str());
    std::exit(1);
  }
  return value.GetDoubleNumb();
}

/// `script` does, and returns the number of, some items.
void Register(EmbeddedHost& host, const std::string& name, const std::string& script) {
  benchmark::RegisterBenchmark(name.c_str(), [&host, script](benchmark::State& state) {
    double items = 0;
    for (auto _ : state) items += Run(host, script);
    state.SetItemsProcessed(static_cast<std::int64_t>(items));
  });
}

void RegisterObjective(EmbeddedHost& host, int n) {
  const std::string order = std::to_string(n);
  const std::string calls = std::to_string(kObjectiveCalls);
  Register(host, "evaluation/tarn/N=" + order, "return search(" + order + ")");
  Register(host, "evaluation/lua/N=" + order, "call(" + order + ", " + calls + ") return " + calls);
}

void RegisterArrays(EmbeddedHost& host) {
  const std::string count = std::to_string(kArrayLength);
  Register(host, "Sinc/tarn/host array", "Sinc(host_numbers) return " + count);
  Register(host, "Sinc/lua/host array", "sinc_table() return " + count);
  Register(host, "Sinc/tarn/table", "Sinc(numbers) return " + count);
  Register(host, "Sinc/lua/table", "sinc_table() return " + count);
  Register(host, "Sinc/tarn/table and back", "Sinc(numbers):table() return " + count);
  Register(host, "Sinc/lua/table and back", "sinc_table() return " + count);
}

/// How much more an evaluation costs in a search than a call from Lua does.
void PrintCostAboveCall(const RatioReporter& reporter, int n) {
  const std::string row = "evaluation/N=" + std::to_string(n);
  const auto ours = reporter.Time(row, kOurs);
  const auto call = reporter.Time(row, "lua");
  if (!ours || !call) return;
  std::printf("N = %d: %.2f microseconds an evaluation above the plain call\n", n,
              (*ours - *call) / 1000.0);
}

}  // namespace
}  // namespace bench

int main(int count, char** words) {
  EmbeddedHost host;
  if (!host.Load(TARN_MODULE_PATH) || !host.Load(TARN_TOOLKIT_PATH)) {
    std::fprintf(stderr, "%s\n", host.TakeError().ToString().c_str());
    return 1;
  }
  bench::Run(host, bench::kSetUp);
  for (const int n : {2, 5, 10}) bench::RegisterObjective(host, n);
  bench::RegisterArrays(host);
  bench::RatioReporter reporter;
  const int status = bench::RunAndPrintRatios(count, words, reporter);
  for (const int n : {2, 5, 10}) bench::PrintCostAboveCall(reporter, n);
  return status;
}
