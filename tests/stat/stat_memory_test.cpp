/// What becomes of samples and their results when memory runs out, request by request.

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "stat/float_tables.h"
#include "tests/linalg/array_new_failure.h"
#include "tests/stat/stat_support.h"

namespace {

using namespace stat_test;

using Numbers = std::vector<double>;
using Vector = std::unique_ptr<T_MatVectorCol<double>>;

/// A place that memory comes from.
enum class Source { kHostHeap, kNew };

/// What a call may come to.
struct Outcome {
  std::string name;
  std::function<bool(const Numbers&)> matches;
};

bool SameNumbers(const Numbers& a, const Numbers& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameBits);
}

Outcome Exactly(const std::string& name, const Numbers& expected) {
  return {name, [expected](const Numbers& numbers) { return SameNumbers(numbers, expected); }};
}

std::string Text(const Numbers& numbers) {
  std::string text;
  for (std::size_t i = 0; i < numbers.size() && i < 12; ++i) {
    text += std::to_string(numbers[i]) + " ";
  }
  return text;
}

constexpr double kUntouched = -7;

Numbers OfVector(const Vector& v) {
  if (!v) return {};
  Numbers numbers;
  for (int i = 0; i < v->Dim(); ++i) numbers.push_back((*v)[i]);
  return numbers;
}

class StatMemory : public testing::Test {
 protected:
  using Call = std::function<Numbers()>;

  /// Makes the call with each of its requests to either source refused: one by one, and from one
  /// on. The call's result must match one of the outcomes, each of which must come up, and no block
  /// may be left over. The first outcome is what the call comes to when nothing is refused.
  void RefuseEachRequest(const Call& call, const std::vector<Outcome>& outcomes) {
    std::set<std::string> seen = {outcomes[0].name};
    for (const Source source : {Source::kHostHeap, Source::kNew}) {
      const std::int64_t requests = CountRequests(source, call, outcomes[0]);
      for (std::int64_t k = 1; k <= requests; ++k) {
        for (const bool andAllBehind : {false, true}) {
          SCOPED_TRACE((source == Source::kNew ? "new, request " : "host heap, request ") +
                       std::to_string(k) + (andAllBehind ? " and all behind" : ""));
          const auto refuse = [k, andAllBehind](std::int64_t request) {
            return andAllBehind ? request >= k : request == k;
          };
          Refused(source, refuse, call);  // after this the host keeps what it wants to keep
          const std::int64_t newBlocks = LiveNewBlocks();
          const std::int64_t heapBlocks = EmbeddedHost::LiveBlockCount();
          const Numbers result = Refused(source, refuse, call);
          ASSERT_EQ(EmbeddedHost::LiveBlockCount(), heapBlocks);
          ASSERT_EQ(LiveNewBlocks(), newBlocks + (result.capacity() == 0 ? 0 : 1));
          seen.insert(NameOf(result, outcomes));
        }
      }
    }
    for (const Outcome& outcome : outcomes) {
      EXPECT_TRUE(seen.contains(outcome.name)) << outcome.name << " does not happen";
    }
  }

 private:
  std::int64_t CountRequests(Source source, const Call& call, const Outcome& whole) {
    call();  // what the host keeps from the first call on
    std::int64_t requests = 0;
    const auto never = [](std::int64_t) { return false; };
    Numbers result;
    if (source == Source::kNew) {
      const NewFailure watch(never);
      result = call();
      requests = watch.Requests();
    } else {
      host_.SetHeapFailure(never);
      result = call();
      requests = host_.HeapRequestCount();
      host_.SetHeapFailure({});
    }
    EXPECT_TRUE(whole.matches(result)) << whole.name << ": " << Text(result);
    return requests;
  }

  Numbers Refused(Source source, const std::function<bool(std::int64_t)>& refuse,
                  const Call& call) {
    Numbers result;
    if (source == Source::kNew) {
      const NewFailure failure(refuse);
      result = call();
    } else {
      host_.SetHeapFailure(refuse);
      result = call();
      host_.SetHeapFailure({});
    }
    host_.TakeError();
    return result;
  }

  static std::string NameOf(const Numbers& result, const std::vector<Outcome>& outcomes) {
    for (const Outcome& outcome : outcomes) {
      if (outcome.matches(result)) return outcome.name;
    }
    ADD_FAILURE() << "not a documented outcome: " << Text(result);
    return "";
  }

 protected:
  EmbeddedHost host_;
};

// Samples of a hundred and more values take memory for everything that asks for any.
constexpr int kMany = 120;

Numbers ManyValues() { return Samples(301).LogNormals(kMany, 0, 1); }
Numbers ManyDispersions() { return Samples(302).Uniform(kMany, 0.01, 0.3); }
Numbers ManyWeights() { return Samples(303).Uniform(kMany, 0.5, 2); }

/// What a sample says about itself: count, mean, intrinsic dispersion, mean type, distribution
/// type.
Numbers Summary(const Stat& s) {
  const auto& access = static_cast<const StatAccess&>(s);
  return {double(s.Len()), s.GetMean(), s.GetDisp0(), double(access.MeanType),
          double(s.GetDistrType())};
}

Numbers With(Numbers summary, std::size_t index, double value) {
  summary[index] = value;
  return summary;
}

const Numbers kEmptyPlain = {0, kNaN, 0, 4, 0};

TEST_F(StatMemory, PlainConstructorsAndCopy) {
  Numbers x = ManyValues();
  std::vector<float> singles(x.begin(), x.end());
  Stat original(x.data(), kMany);
  Stat ofSingles(singles.data(), kMany);
  ASSERT_EQ(original.GetDistrType(), DISTR_LOGNORMAL);
  const auto outcomes = [](const Stat& s) {
    return std::vector<Outcome>{Exactly("whole", Summary(s)), Exactly("empty", kEmptyPlain),
                                Exactly("normal", With(Summary(s), 4, DISTR_GAUSS))};
  };
  RefuseEachRequest([&] { return Summary(Stat(x.data(), kMany)); }, outcomes(original));
  RefuseEachRequest([&] { return Summary(Stat(singles.data(), kMany)); }, outcomes(ofSingles));
  RefuseEachRequest([&] { return Summary(Stat(original)); }, outcomes(original));
}

TEST_F(StatMemory, ConstructorsWithDispersions) {
  Numbers x = ManyValues();
  Numbers d = ManyDispersions();
  Stat plain(x.data(), kMany);
  for (int type = 0; type < 4; ++type) {
    Stat original(x.data(), d.data(), kMany, type);
    const Numbers whole = Summary(original);
    const Numbers normal = With(whole, 4, DISTR_GAUSS);
    const Numbers byDispersions = With(Summary(Stat(x.data(), d.data(), kMany, 3)), 3, type);
    std::vector<Outcome> outcomes = {
        Exactly("whole", whole), Exactly("empty", With(kEmptyPlain, 3, type)),
        Exactly("normal", normal), Exactly("without dispersions", Summary(plain))};
    if (type != 3) {
      outcomes.push_back(Exactly("without intrinsic dispersion", byDispersions));
    }
    // From the values' copy on everything is missing, also the dispersions and with them the type.
    outcomes.push_back(Exactly("nothing at all", kEmptyPlain));
    RefuseEachRequest([&] { return Summary(Stat(x.data(), d.data(), kMany, type)); }, outcomes);
    RefuseEachRequest([&] { return Summary(Stat(original)); }, outcomes);
  }
}

TEST_F(StatMemory, Assignment) {
  const Numbers x = ManyValues();
  StatAccess source(x, ManyDispersions(), 0);
  source.GetEstimationDisp();
  double *cx = nullptr, *cp = nullptr;
  int n = 0;
  source.GetCumulativeDistr(cx, cp, n);
  const auto state = [](const StatAccess& s) {
    return Numbers{double(s.len),
                   s.Mean,
                   double(s.Data != nullptr),
                   double(s.DataDisp != nullptr),
                   double(s.estDataDisp != nullptr),
                   double(s.CumX != nullptr),
                   double(s.CumP != nullptr),
                   double(s.CumLen)};
  };
  const double m = source.Mean;
  RefuseEachRequest(
      [&] {
        StatAccess target(Numbers{1, 2});
        target = source;
        return state(target);
      },
      {Exactly("whole", {kMany, m, 1, 1, 1, 1, 1, double(n)}),
       Exactly("without values", {0, m, 0, 1, 1, 1, 1, double(n)}),
       Exactly("without dispersions", {kMany, m, 1, 0, 1, 1, 1, double(n)}),
       Exactly("without estimate", {kMany, m, 1, 1, 0, 1, 1, double(n)}),
       Exactly("without distribution", {kMany, m, 1, 1, 1, 0, 0, 0}),
       Exactly("nothing at all", {0, m, 0, 0, 0, 0, 0, 0}),
       Exactly("values alone", {kMany, m, 1, 0, 0, 0, 0, 0}),
       Exactly("values and dispersions", {kMany, m, 1, 1, 0, 0, 0, 0})});
}

TEST_F(StatMemory, Medians) {
  for (const int n : {3, 4, 9, 10, 1500}) {
    Numbers x = Samples(304).Normals(n, 5, 2);
    Stat s(x.data(), n);
    const auto sd = [&] {
      Numbers r = {kUntouched, kUntouched};
      s.GetMedian_SD(r[0], r[1]);
      return r;
    };
    const auto mad = [&] {
      Numbers r = {kUntouched, kUntouched};
      s.GetMedian_MAD(r[0], r[1]);
      return r;
    };
    const Outcome untouched = Exactly("untouched", {kUntouched, kUntouched});
    const Outcome whole = Exactly("whole", sd());
    if (n == 3) {
      RefuseEachRequest(sd, {whole});
    } else {
      RefuseEachRequest(sd, {whole, untouched});
    }
    RefuseEachRequest(mad, {Exactly("whole", mad()), untouched});
  }
}

TEST_F(StatMemory, CumulativeDistribution) {
  for (const int n : {12, 1500}) {
    const Numbers x = Samples(305).Normals(n, 5, 2);
    const Numbers w(x.size(), 2.0);
    const auto distribution = [](Stat& s) {
      double *px = nullptr, *pp = nullptr;
      int m = 0;
      s.GetCumulativeDistr(px, pp, m);
      Numbers r(px, px + m);
      r.insert(r.end(), pp, pp + m);
      return r;
    };
    StatAccess source(x);
    const Numbers whole = distribution(source);
    // The sort of a long array does without the heap.
    RefuseEachRequest(
        [&] {
          StatAccess s(x);
          return s.len == 0 ? Numbers{} : distribution(s);
        },
        {Exactly("whole", whole), Exactly("untouched", {})});
    Numbers values = x;
    Numbers weights = w;
    RefuseEachRequest(
        [&] {
          Stat_Weighted s(values.data(), weights.data(), n);
          return s.Len() == 0 ? Numbers{} : distribution(s);
        },
        {Exactly("whole",
                 distribution(*std::make_unique<Stat_Weighted>(values.data(), weights.data(), n))),
         Exactly("untouched", {})});
  }
}

TEST_F(StatMemory, CumulativeDistributionIsBuiltByTheNextCall) {
  StatAccess s(Samples(306).Normals(1500, 5, 2));
  double *x = nullptr, *p = nullptr;
  int n = 5;
  for (int refused = 1; refused <= 3; ++refused) {
    {
      const NewFailure failure([=](std::int64_t request) { return request == refused; });
      s.GetCumulativeDistr(x, p, n);
    }
    EXPECT_EQ(x, nullptr);
    EXPECT_EQ(n, 5);
    EXPECT_EQ(s.CumX, nullptr);
    EXPECT_EQ(s.CumP, nullptr);
    EXPECT_EQ(s.CumLen, 0);
  }
  s.GetCumulativeDistr(x, p, n);
  EXPECT_EQ(n, 1001);
}

TEST_F(StatMemory, Weights) {
  StatAccess s(ManyValues());
  RefuseEachRequest(
      [&] {
        double* const w = s.GetWeights();
        const Numbers r = w == nullptr ? Numbers{} : Numbers{w[0], w[kMany - 1]};
        s.FreeWeights(w);
        return r;
      },
      {Exactly("ones", {1, 1}), Exactly("null", {})});
}

/// The dispersions to use, built anew; the sample forgets them afterwards.
Numbers EstimationDispersions(StatAccess& s) {
  const double* const array = s.GetEstimationDisp();
  Numbers numbers = array == nullptr ? Numbers{} : Numbers(array, array + s.len);
  delete[] s.estDataDisp;
  s.estDataDisp = nullptr;
  return numbers;
}

TEST_F(StatMemory, EstimationDispersions) {
  for (const int n : {3, 5, 12, 1500}) {
    Samples samples(307);
    Numbers x = samples.Normals(n, 5, 2);
    const Numbers d = samples.LogNormals(n, -1, 2);
    StatAccess measured(x, d, 0);
    const Numbers floored = EstimationDispersions(measured);
    ASSERT_NE(floored, d);
    RefuseEachRequest([&] { return EstimationDispersions(measured); },
                      {Exactly("floored", floored), Exactly("as given", d)});
    StatAccess plain(x);
    const Outcome estimated = Exactly("estimated", EstimationDispersions(plain));
    const Outcome null = Exactly("null", {});
    RefuseEachRequest([&] { return EstimationDispersions(plain); }, {estimated, null});
    RefuseEachRequest(
        [&] {
          const std::unique_ptr<double[]> array(Stat::EstimateDisp(x.data(), n, 0));
          return array ? Numbers(array.get(), array.get() + n) : Numbers{};
        },
        {estimated, null});
  }
}

TEST_F(StatMemory, Subsets) {
  Numbers x = ManyValues();
  Numbers d = ManyDispersions();
  Stat plain(x.data(), kMany);
  Stat measured(x.data(), d.data(), kMany);
  for (const int k : {30, kMany}) {
    for (Stat* s : {&plain, &measured}) {
      const auto subset = [&]() -> Numbers {
        const std::unique_ptr<Stat> made(s->SampleSubset(k));
        if (!made) return {};
        const auto& access = static_cast<const StatAccess&>(*made);
        return {double(made->Len()), made->GetE2(), double(access.DataDisp != nullptr)};
      };
      const Numbers whole = subset();
      ASSERT_EQ(whole[0], k);
      RefuseEachRequest(subset, {Exactly("whole", whole), Exactly("null", {})});
    }
  }
}

TEST_F(StatMemory, CumulativeFit) {
  for (const int n : {12, 300}) {
    StatAccess s(Samples(308).Normals(n, 5, 2));
    const auto fit = [&] {
      // Each fit builds its own distribution.
      s.ReleaseCumulativeDistr();
      Numbers r = OfVector(Vector(s.FitCumulativeDistribution()));
      s.ReleaseCumulativeDistr();
      return r;
    };
    const Numbers whole = fit();
    const auto isLocated = [&s](const Numbers& r) {
      return r.size() == 4 && s.Min <= r[0] && r[0] <= s.Max && r[1] > 0;
    };
    RefuseEachRequest(
        fit,
        {Exactly("whole", whole),
         Exactly("null", {}),
         {"without curvature",
          [&](const Numbers& r) { return isLocated(r) && std::isnan(r[2]) && std::isnan(r[3]); }},
         {"cut short", isLocated}});
  }
}

TEST_F(StatMemory, MostProbableValue) {
  Numbers x = Samples(309).Normals(200, 5, 2);
  const Numbers d(x.size(), 0.5);
  StatAccess measured(x, d, 0);
  StatAccess plain(x);
  for (StatAccess* s : {&measured, &plain}) {
    const auto search = [s] {
      Numbers r = OfVector(Vector(s->GetMostProbableValue(1, 0)));
      delete[] s->estDataDisp;
      s->estDataDisp = nullptr;
      return r;
    };
    const Numbers whole = search();
    const double h = std::sqrt(200 * s->SEM2);
    double count = 0;
    for (const double v : x) count += whole[0] - h <= v && v <= whole[0] + h;
    RefuseEachRequest(
        search,
        {Exactly("whole", whole), Exactly("null", {}), Exactly("mean", {s->Mean, s->SEM2, 0}),
         Exactly("without the table of the error", {whole[0], s->SEM2, count})});
  }
}

TEST_F(StatMemory, MostProbableValueOfALongSample) {
  StatAccess s(Samples(310).Normals(1500, 5, 2));
  const std::unique_ptr<Stat> subset(s.SampleSubset(1000));
  const auto search = [&s] { return OfVector(Vector(s.GetMostProbableValue(1, 0))); };
  const Numbers whole = search();
  const auto counted = [&s](double location, double squaredError) {
    const double h = std::sqrt(1500 * squaredError);
    double count = 0;
    for (int i = 0; i < s.len; ++i) {
      count += location - h <= s.Data[i] && s.Data[i] <= location + h;
    }
    return Numbers{location, squaredError, count};
  };
  const double ofSubset = subset->GetSEM2() * 1000 / 1500;
  RefuseEachRequest(
      search, {Exactly("whole", whole), Exactly("null", {}), Exactly("mean", {s.Mean, s.SEM2, 0}),
               Exactly("mean of the subset", counted(subset->GetMean(), ofSubset)),
               Exactly("without the table of the error", counted(whole[0], ofSubset))});
}

TEST_F(StatMemory, ProbabilityCurve) {
  Numbers x = Samples(311).Normals(20, 5, 2);
  StatAccess s(x);
  const auto curve = [&s]() -> Numbers {
    double *px = nullptr, *lp = nullptr;
    s.GetLogProbabilityDistribution(1, 0, 3, px, lp);
    Numbers r = {double(px != nullptr), double(lp != nullptr)};
    if (px != nullptr && lp != nullptr) {
      r.insert(r.end(), px, px + 3);
      r.insert(r.end(), lp, lp + 3);
    }
    delete[] px;
    delete[] lp;
    delete[] s.estDataDisp;
    s.estDataDisp = nullptr;
    return r;
  };
  const Numbers whole = curve();
  RefuseEachRequest(curve, {Exactly("whole", whole), Exactly("no abscissae", {0, 1}),
                            Exactly("no curve", {1, 0}), Exactly("nothing", {0, 0}),
                            Exactly("zeros", {1, 1, whole[2], whole[3], whole[4], 0, 0, 0})});
}

TEST_F(StatMemory, Export) {
  Numbers x = ManyValues();
  Numbers w = ManyWeights();
  Stat_Weighted s(x.data(), w.data(), kMany);
  s.GetEstimationDisp();
  const auto exported = [&]() -> Numbers {
    Variable object;
    GetOwner()->MakeInstance(object, "TFunc", nullptr, 0);
    s.UpdateTarnObject(object);
    return {object("Mean").GetDoubleNumb(), double(object("estDataDisp").GetDim()),
            object("WeightedMean").GetDoubleNumb(), double(object("Weights").GetDim())};
  };
  const Numbers whole = exported();
  EXPECT_SAME_BITS(whole[0], s.GetMean());
  const auto holdsWhatItSays = [&](const Numbers& r) {
    bool good = true;
    for (std::size_t i = 0; i < r.size(); ++i) good = good && (r[i] == whole[i] || r[i] == 0);
    return good;
  };
  RefuseEachRequest(exported, {Exactly("whole", whole),
                               Exactly("without the estimate", With(whole, 1, 0)),
                               Exactly("without the weights", With(whole, 3, 0)),
                               {"members missing", holdsWhatItSays}});
}

// Weighted samples --------------------------------------------------------------------------------

/// What a derived class sees of a weighted sample.
class WeightedAccess : public Stat_Weighted {
 public:
  using Stat_Weighted::ReleaseCumulativeDistr;
  using Stat_Weighted::Stat_Weighted;
};

TEST_F(StatMemory, WeightedConstructors) {
  Numbers x = ManyValues();
  Numbers d = ManyDispersions();
  Numbers w = ManyWeights();
  Stat_Weighted plain(x.data(), w.data(), kMany);
  Stat_Weighted copied(plain);  // normalises the weights once more
  Stat_Weighted measured(x.data(), d.data(), w.data(), kMany);
  const auto state = [](Stat_Weighted& s) {
    return Numbers{double(s.Len()), s.GetWeightedMean(), s.GetWeightedSEM2(),
                   double(s.GetWeights() != nullptr)};
  };
  // With the values in place, only their number counts here; see the constructors of the base.
  const auto outcomes = [&](Stat_Weighted& s) {
    return std::vector<Outcome>{
        Exactly("whole", state(s)),
        Exactly("no values", {0, kNaN, kNaN, 1}),
        Exactly("no weights", {0, kNaN, s.GetSEM2(), 0}),
        {"nothing", [](const Numbers& r) { return r[0] == 0 && std::isnan(r[1]) && r[3] == 0; }}};
  };
  RefuseEachRequest(
      [&] {
        Stat_Weighted made(x.data(), w.data(), kMany);
        return state(made);
      },
      outcomes(plain));
  RefuseEachRequest(
      [&] {
        Stat_Weighted made(plain);
        return state(made);
      },
      outcomes(copied));
  RefuseEachRequest(
      [&] {
        Stat_Weighted made(x.data(), d.data(), w.data(), kMany);
        return state(made);
      },
      outcomes(measured));
}

TEST_F(StatMemory, WeightedAssignment) {
  Numbers x = ManyValues();
  Numbers w = ManyWeights();
  Stat_Weighted source(x.data(), w.data(), kMany);
  const auto state = [](Stat_Weighted& s) {
    return Numbers{double(s.Len()), s.GetWeightedMean(), double(s.GetWeights() != nullptr)};
  };
  const double mean = source.GetWeightedMean();
  Numbers one = {1};
  RefuseEachRequest(
      [&] {
        Stat_Weighted target(one.data(), one.data(), 1);
        target = source;
        return state(target);
      },
      {Exactly("whole", {kMany, mean, 1}), Exactly("no values", {0, mean, 1}),
       Exactly("no weights", {0, mean, 0})});
}

TEST_F(StatMemory, WeightedMedians) {
  Numbers x = Samples(312).Normals(kMany, 5, 2);
  Numbers w = ManyWeights();
  WeightedAccess s(x.data(), w.data(), kMany);
  const auto mad = [&] {
    s.ReleaseCumulativeDistr();
    Numbers r = {kUntouched, kUntouched};
    s.GetMedian_MAD(r[0], r[1]);
    s.ReleaseCumulativeDistr();
    return r;
  };
  const Numbers wholeMad = mad();
  RefuseEachRequest(mad,
                    {Exactly("whole", wholeMad), Exactly("untouched", {kUntouched, kUntouched}),
                     Exactly("median alone", With(wholeMad, 1, kUntouched))});
  const auto sd = [&] {
    s.ReleaseCumulativeDistr();
    Numbers r = {kUntouched, kUntouched};
    s.GetMedian_SD(r[0], r[1]);
    s.ReleaseCumulativeDistr();
    return r;
  };
  RefuseEachRequest(sd, {Exactly("whole", sd()),
                         Exactly("untouched", {kUntouched, kUntouched}),
                         {"fit cut short", [&](const Numbers& r) {
                            return s.GetMin() <= r[0] && r[0] <= s.GetMax() && r[1] > 0;
                          }}});
}

// Tables of floats --------------------------------------------------------------------------------

TEST_F(StatMemory, FloatTables) {
  constexpr int kValues = 500;
  const Numbers values = Samples(313).Normals(kValues, 5, 2);
  std::vector<float> x(values.begin(), values.end());
  std::vector<float> sorted = x;
  std::sort(sorted.begin(), sorted.end());
  const auto cumulative = [&] {
    float *xs = nullptr, *p = nullptr;
    int m = -1;
    BuildCumulativeDistr(x.data(), kValues, xs, p, m);
    const bool isSorted = xs != nullptr && std::equal(sorted.begin(), sorted.end(), xs);
    Numbers r = {double(m), double(xs != nullptr), double(p != nullptr), double(isSorted)};
    HFREE(xs);
    HFREE(p);
    return r;
  };
  RefuseEachRequest(cumulative,
                    {Exactly("whole", {kValues, 1, 1, 1}), Exactly("null", {0, 0, 0, 0})});
  const auto pdf = [&] {
    float *xs = nullptr, *p = nullptr;
    BuildPdf(1, x.data(), kValues, xs, p, 10);
    Numbers r = {double(xs != nullptr), double(p != nullptr)};
    HFREE(xs);
    HFREE(p);
    return r;
  };
  RefuseEachRequest(pdf, {Exactly("whole", {1, 1}), Exactly("no abscissae", {0, 1}),
                          Exactly("no table", {1, 0}), Exactly("null", {0, 0})});
}

TEST_F(StatMemory, ScriptFormWithoutItsArgumentsIsZero) {
  Variable args;
  for (int prior = 0; prior < 4; ++prior) {
    for (const int axis : {0, 1}) {
      EXPECT_EQ(Stat::GetProbFuncPtr(prior, axis)(1.0, args), 0.0);
    }
  }
}

}  // namespace
