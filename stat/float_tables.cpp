#include "stat/float_tables.h"

#include <algorithm>
#include <cstddef>

#include "arrays/sort.h"
#include "arrays/unique_sort.h"
#include "frame/host.h"

namespace {

std::size_t BytesOfFloats(int count) {
  return (static_cast<std::size_t>(count) + 1) * sizeof(float);
}

/// The point of a table of `m` points at or below a value.
int PointOf(float value, float smallest, float step, int m) {
  const float position = (value - smallest) / step;
  if (m < 2 || !(position >= 1.0f)) return 0;
  // Rounding may take the largest value past the last point.
  return position < static_cast<float>(m) ? std::min(static_cast<int>(position), m - 1) : m - 1;
}

}  // namespace

void BuildCumulativeDistr(float* x, int n, float*& xs, float*& p, int& m) {
  const int count = std::max(n, 0);
  if (m != count || xs == nullptr || p == nullptr) {
    HFREE(xs);
    HFREE(p);
    xs = static_cast<float*>(HMALLOCZ(BytesOfFloats(count)));
    p = static_cast<float*>(HMALLOCZ(BytesOfFloats(count)));
    m = count;
  }
  if (xs == nullptr || p == nullptr) {
    HFREE(xs);
    HFREE(p);
    xs = p = nullptr;
    m = 0;
    return;
  }
  std::copy_n(x, count, xs);
  QSort(xs, count);
  // An array with a single order that is not sorted now got no work areas from the heap.
  if (tarn::HasUniqueOrder(xs, count) && !std::is_sorted(xs, xs + count)) std::sort(xs, xs + count);
  for (int i = 0; i < count; ++i) p[i] = static_cast<float>(i + 1) / static_cast<float>(m);
}

void BuildPdf(float a, float* x, int n, float*& xs, float*& p, int m) {
  if (m < 0) return;
  if (xs == nullptr) xs = static_cast<float*>(HMALLOC(BytesOfFloats(m)));
  if (p == nullptr) p = static_cast<float*>(HMALLOC(BytesOfFloats(m)));
  if (xs == nullptr || p == nullptr) return;

  float smallest = 1e30f;
  float largest = -1e30f;
  for (int i = 0; i < n; ++i) {
    if (x[i] < smallest) smallest = x[i];
    if (x[i] > largest) largest = x[i];
  }
  float step = m > 1 ? (largest - smallest) / static_cast<float>(m - 1) : 0.0f;
  if (step == 0.0f) step = 1e-7f;

  const int points = std::max(m, 1);
  for (int k = 0; k < points; ++k) {
    xs[k] = smallest + static_cast<float>(k) * step;
    p[k] = a;
  }
  for (int i = 0; i < n; ++i) {
    if (x[i] == x[i]) p[PointOf(x[i], smallest, step, m)] += 1.0f;
  }
  const float total = static_cast<float>(m) * a + static_cast<float>(std::max(n, 0));
  for (int k = 0; k < points; ++k) p[k] /= total;
}
