/// @file
/// Sorting, median and search beside the C++ standard library, the C library and GSL.
///
/// An iteration works through a pool of about a million elements in arrays of one size, so that no
/// branch predictor learns a short array by heart; times are per element (search: per query). What
/// sorts in place gets a fresh copy of the pool outside the measured time. Peers that select the
/// median in place get a copy inside it, because they need one and `QMedian` does not.

#include <benchmark/benchmark.h>
#include <gsl/gsl_interp.h>
#include <gsl/gsl_sort.h>
#include <gsl/gsl_sort_float.h>
#include <gsl/gsl_sort_int.h>
#include <gsl/gsl_statistics.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "arrays/median.h"
#include "arrays/search.h"
#include "arrays/sort.h"
#include "arrays/typed_array.h"
#include "host/embedded_host.h"
#include "ratio_reporter.h"

namespace {

constexpr std::int64_t kMillion = 1000000;

using Sizes = std::vector<std::int64_t>;

/// Arrays of one size, one after the other.
template <class T>
struct Pool {
  std::int64_t arraySize;
  std::vector<T> elements;

  std::int64_t ArrayCount() const { return static_cast<std::int64_t>(elements.size()) / arraySize; }
  /// Calls work(array, arraySize) for every array.
  template <class Work>
  void ForEach(Work work) {
    for (std::int64_t i = 0; i < ArrayCount(); ++i)
      work(elements.data() + i * arraySize, arraySize);
  }
};

/// Makes a pool of elements draw().
template <class T>
Pool<T> MakePool(std::int64_t arraySize, const std::function<double()>& draw) {
  Pool<T> pool{arraySize, {}};
  const std::int64_t size = std::max(kMillion / arraySize, std::int64_t{1}) * arraySize;
  for (std::int64_t i = 0; i < size; ++i) pool.elements.push_back(static_cast<T>(draw()));
  return pool;
}

/// A named distribution; every pool of it starts from the same seed.
struct Distribution {
  std::string name;
  std::function<std::function<double()>()> start;
};

template <class Law>
Distribution Draws(const std::string& name, Law law) {
  return {name, [law] {
            return [law, generator = std::mt19937_64(42)]() mutable { return law(generator); };
          }};
}

Distribution Normal() { return Draws("normal", std::normal_distribution<double>(0, 1e6)); }

std::vector<Distribution> MedianLaws() {
  return {Normal(),
          Draws("uniform", std::uniform_real_distribution<double>(0, 1e6)),
          Draws("lognormal", std::lognormal_distribution<double>(0, 2)),
          Draws("cauchy", std::cauchy_distribution<double>(0, 1)),
          Draws("100 values", [](std::mt19937_64& g) { return static_cast<double>(g() % 100); }),
          Draws("outliers 1e30", [](std::mt19937_64& g) {
            return g() % 1000 == 0 ? 1e30 : std::normal_distribution()(g);
          })};
}

/// Numbers that are in some order already, for an array of a million.
std::vector<Distribution> OrderedLaws() {
  const auto ordered = [](const std::string& name, double (*value)(std::int64_t)) {
    return Distribution{
        name, [value] { return [value, i = std::int64_t{0}]() mutable { return value(i++); }; }};
  };
  return {ordered("ascending", [](std::int64_t i) { return static_cast<double>(i); }),
          ordered("descending", [](std::int64_t i) { return static_cast<double>(-i); }),
          ordered("organ pipe",
                  [](std::int64_t i) { return static_cast<double>(std::min(i, kMillion - i)); }),
          ordered("saw tooth", [](std::int64_t i) { return static_cast<double>(i % 1000); })};
}

void Register(const std::string& subject, const std::string& peer, const std::string& rest,
              std::function<void(benchmark::State&)> run) {
  benchmark::RegisterBenchmark((subject + "/" + peer + "/" + rest).c_str(), std::move(run))
      ->Unit(benchmark::kMillisecond);
}

// Sorting -----------------------------------------------------------------------------------------

/// A way to sort an array in place.
template <class T>
struct Sorter {
  std::string peer;
  std::function<void(T*, std::int64_t)> sort;
};

template <class T>
void RequireSorted(const Pool<T>& pool, const Sorter<T>& sorter) {
  Pool<T> sorted = pool;
  sorted.ForEach(sorter.sort);
  Pool<T> expected = pool;
  expected.ForEach([](T* a, std::int64_t n) { std::sort(a, a + n); });
  if (sorted.elements == expected.elements) return;
  std::fprintf(stderr, "%s does not sort\n", sorter.peer.c_str());
  std::exit(1);
}

template <class T>
void RegisterSorters(const std::string& subject, const std::string& rest, std::int64_t arraySize,
                     const Distribution& law, const std::vector<Sorter<T>>& sorters) {
  for (const Sorter<T>& sorter : sorters) {
    Register(subject, sorter.peer, rest, [=](benchmark::State& state) {
      const Pool<T> pool = MakePool<T>(arraySize, law.start());
      RequireSorted(pool, sorter);
      Pool<T> work = pool;
      for (auto _ : state) {
        state.PauseTiming();
        std::copy(pool.elements.begin(), pool.elements.end(), work.elements.begin());
        state.ResumeTiming();
        work.ForEach(sorter.sort);
      }
      state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(pool.elements.size()));
    });
  }
}

void GslSort(double* a, std::int64_t n) { gsl_sort(a, 1, static_cast<std::size_t>(n)); }
void GslSort(float* a, std::int64_t n) { gsl_sort_float(a, 1, static_cast<std::size_t>(n)); }
void GslSort(int* a, std::int64_t n) { gsl_sort_int(a, 1, static_cast<std::size_t>(n)); }

template <class T>
std::vector<Sorter<T>> ValueSorters() {
  return {{"tarn", [](T* a, std::int64_t n) { QSort(a, n); }},
          {"std", [](T* a, std::int64_t n) { std::sort(a, a + n); }},
          {"gsl", [](T* a, std::int64_t n) { GslSort(a, n); }}};
}

void RegisterValueSorting() {
  for (const std::int64_t n :
       Sizes{10, 30, 100, 300, 1000, 10000, 100000, kMillion, 4 * kMillion}) {
    RegisterSorters("QSort double", std::to_string(n), n, Normal(), ValueSorters<double>());
  }
  for (const std::int64_t n : Sizes{100, 10000, kMillion}) {
    RegisterSorters("QSort float", std::to_string(n), n, Normal(), ValueSorters<float>());
    RegisterSorters("QSort int", std::to_string(n), n, Normal(), ValueSorters<int>());
  }
  for (const Distribution& law : OrderedLaws()) {
    RegisterSorters("QSort double", law.name, kMillion, law, ValueSorters<double>());
  }
}

void SortTypedArrays(benchmark::State& state, std::int64_t n) {
  Pool<double> pool = MakePool<double>(n, Normal().start());
  std::vector<T_Array<double>> arrays(static_cast<std::size_t>(pool.ArrayCount()),
                                      T_Array<double>(n));
  for (auto _ : state) {
    state.PauseTiming();
    auto array = arrays.begin();
    pool.ForEach(
        [&array](const double* a, std::int64_t size) { std::copy_n(a, size, array++->GetData()); });
    state.ResumeTiming();
    for (T_Array<double>& a : arrays) a.QSort();
  }
  state.SetItemsProcessed(state.iterations() * pool.ArrayCount() * n);
}

void RegisterArraySorting() {
  const Sorter<double> platform{"qsort", [](double* a, std::int64_t n) {
                                  std::qsort(a, static_cast<std::size_t>(n), sizeof(double),
                                             T_compare<double>);
                                }};
  for (const std::int64_t n : Sizes{100, 10000, kMillion}) {
    const std::string subject = "T_Array<double>::QSort";
    Register(subject, "tarn", std::to_string(n),
             [n](benchmark::State& state) { SortTypedArrays(state, n); });
    RegisterSorters(subject, std::to_string(n), n, Normal(), std::vector{platform});
  }
}

/// A way to find the order of keys.
struct Orderer {
  std::string peer;
  std::function<void(double* keys, std::int64_t n)> order;
};

void OrderByQSortIndex(double* keys, std::int64_t n) {
  std::vector<int> indices(static_cast<std::size_t>(n));
  std::iota(indices.begin(), indices.end(), 0);
  QSortIndex(indices.data(), keys, n);
  benchmark::DoNotOptimize(indices.data());
}
void OrderByStd(double* keys, std::int64_t n) {
  std::vector<int> indices(static_cast<std::size_t>(n));
  std::iota(indices.begin(), indices.end(), 0);
  std::sort(indices.begin(), indices.end(), [keys](int i, int j) { return keys[i] < keys[j]; });
  benchmark::DoNotOptimize(indices.data());
}
void OrderByGsl(double* keys, std::int64_t n) {
  std::vector<std::size_t> indices(static_cast<std::size_t>(n));
  gsl_sort_index(indices.data(), keys, 1, indices.size());
  benchmark::DoNotOptimize(indices.data());
}

void RegisterOrdering() {
  for (const std::int64_t n : Sizes{10, 100, 1000, 100000, kMillion}) {
    for (const Orderer& orderer : {Orderer{"tarn", OrderByQSortIndex}, Orderer{"std", OrderByStd},
                                   Orderer{"gsl", OrderByGsl}}) {
      Register("QSortIndex", orderer.peer, std::to_string(n), [=](benchmark::State& state) {
        Pool<double> pool = MakePool<double>(n, Normal().start());
        for (auto _ : state) pool.ForEach(orderer.order);
        state.SetItemsProcessed(state.iterations() * pool.ArrayCount() * n);
      });
    }
  }
}

// Median ------------------------------------------------------------------------------------------

template <class T>
T MedianByNthElement(T* a, std::int64_t n) {
  std::vector<T> copy(a, a + n);
  const auto middle = copy.begin() + n / 2;
  std::nth_element(copy.begin(), middle, copy.end());
  return *middle;
}

double MedianByGsl(double* a, std::int64_t n) {
  std::vector<double> copy(a, a + n);
  return gsl_stats_median(copy.data(), 1, copy.size());
}

/// Ours and the peers' medians may differ, but by no more than the neighbours of the middle do.
template <class T>
void RequireMedian(T* a, std::int64_t n, T median) {
  std::vector<T> sorted(a, a + n);
  std::sort(sorted.begin(), sorted.end());
  const auto middle = static_cast<std::size_t>(n / 2);
  if (median >= sorted[middle - 1] && median <= sorted[middle + 1]) return;
  std::fputs("that is no median\n", stderr);
  std::exit(1);
}

template <class T>
void RegisterMedian(const std::string& subject, const std::string& peer, const Distribution& law,
                    std::int64_t arraySize, T (*median)(T*, std::int64_t)) {
  Register(subject, peer, law.name + " " + std::to_string(arraySize), [=](benchmark::State& state) {
    Pool<T> pool = MakePool<T>(arraySize, law.start());
    RequireMedian(pool.elements.data(), arraySize, median(pool.elements.data(), arraySize));
    for (auto _ : state) {
      pool.ForEach([=](T* a, std::int64_t n) { benchmark::DoNotOptimize(median(a, n)); });
    }
    state.SetItemsProcessed(state.iterations() * pool.ArrayCount() * arraySize);
  });
}

template <class T>
void RegisterMedians(const std::string& type, const Distribution& law, std::int64_t n) {
  RegisterMedian<T>("QMedian " + type, "tarn", law, n, QMedian<T>);
  RegisterMedian<T>("QMedian " + type, "std", law, n, MedianByNthElement<T>);
}

void RegisterMedians() {
  for (const Distribution& law : MedianLaws()) {
    for (const std::int64_t n : Sizes{100, 10000, kMillion, 4 * kMillion}) {
      RegisterMedians<double>("double", law, n);
      RegisterMedian<double>("QMedian double", "gsl", law, n, MedianByGsl);
    }
  }
  for (const std::int64_t n : Sizes{10000, kMillion}) {
    RegisterMedians<float>("float", Normal(), n);
    RegisterMedians<int>("int", Normal(), n);
  }
}

// Search ------------------------------------------------------------------------------------------

constexpr std::int64_t kQueries = 100000;

/// A way to find where a value belongs in a sorted array.
struct Searcher {
  std::string peer;
  std::function<std::int64_t(double* a, double value, std::int64_t n)> find;
};

void RegisterSearchers(const std::string& subject, const std::vector<Searcher>& searchers) {
  for (const std::int64_t n : Sizes{10, 1000, 100000, kMillion}) {
    for (const Searcher& searcher : searchers) {
      Register(subject, searcher.peer, std::to_string(n), [=](benchmark::State& state) {
        std::vector<double> a = MakePool<double>(n, Normal().start()).elements;
        a.resize(static_cast<std::size_t>(n));
        std::sort(a.begin(), a.end());
        const std::vector<double> queries = MakePool<double>(kQueries, Normal().start()).elements;
        for (auto _ : state) {
          for (std::size_t i = 0; i < kQueries; ++i) {
            benchmark::DoNotOptimize(searcher.find(a.data(), queries[i], n));
          }
        }
        state.SetItemsProcessed(state.iterations() * kQueries);
      });
    }
  }
}

std::int64_t FindByStd(double* a, double value, std::int64_t n) {
  const double* const found = std::lower_bound(a, a + n, value);
  return found != a + n && *found == value ? found - a : -1;
}

std::int64_t InsertIndexByGsl(double* a, double value, std::int64_t n) {
  return static_cast<std::int64_t>(
      gsl_interp_bsearch(a, value, 0, static_cast<std::size_t>(n) - 1));
}

void RegisterSearch() {
  RegisterSearchers(
      "BFind",
      {{"tarn", [](double* a, double value, std::int64_t n) { return BFind(a, value, n); }},
       {"std", FindByStd}});
  RegisterSearchers(
      "BFindInsertIndex",
      {{"tarn",
        [](double* a, double value, std::int64_t n) { return BFindInsertIndex(a, value, n); }},
       {"std", [](double* a, double value,
                  std::int64_t n) { return std::int64_t{std::upper_bound(a, a + n, value) - a}; }},
       {"gsl", InsertIndexByGsl}});
}

}  // namespace

int main(int count, char** words) {
  EmbeddedHost host;
  RegisterValueSorting();
  RegisterArraySorting();
  RegisterOrdering();
  RegisterMedians();
  RegisterSearch();
  bench::RatioReporter reporter;
  return bench::RunAndPrintRatios(count, words, reporter);
}
