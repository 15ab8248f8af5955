#include "linalg_contenders.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>

namespace bench {
namespace {

double LargestMagnitude(const Numbers& numbers) {
  double largest = 0;
  for (const double number : numbers) largest = std::max(largest, std::abs(number));
  return largest;
}

bool AreClose(const Numbers& a, const Numbers& b, double tolerance) {
  const double limit = tolerance * LargestMagnitude(a);
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [limit](double x, double y) { return std::abs(x - y) <= limit; });
}

}  // namespace

Numbers RandomNumbers(std::int64_t count, unsigned seed) {
  std::mt19937_64 generator(seed);
  std::uniform_real_distribution<double> law(-1, 1);
  Numbers numbers(static_cast<std::size_t>(count));
  for (double& number : numbers) number = law(generator);
  return numbers;
}

Numbers PositiveMatrices(int n, int count) {
  const std::int64_t size = std::int64_t{n} * n;
  Numbers matrices = RandomNumbers(size * count, 3);
  for (int k = 0; k < count; ++k) {
    double* const a = matrices.data() + k * size;
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < i; ++j) a[i * n + j] = a[j * n + i];
      a[i * n + i] = n + 1;
    }
  }
  return matrices;
}

void RequireAgreement(const Row& row, const std::string& peer, const Numbers& result) {
  static std::map<std::string, Numbers> firstResults;
  const std::string name = row.subject + "/" + row.rest;
  const auto [first, isFirst] = firstResults.try_emplace(name, result);
  if (isFirst || AreClose(first->second, result, row.tolerance)) return;
  std::fprintf(stderr, "%s: %s does not agree\n", name.c_str(), peer.c_str());
  std::exit(1);
}

}  // namespace bench
