#ifndef TARN_BENCH_STAT_SUBJECTS_H
#define TARN_BENCH_STAT_SUBJECTS_H

/// @file
/// The samples of the statistics benchmark, its contenders and its subjects.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "stat/stat_weighted.h"

namespace stat_bench {

using Numbers = std::vector<double>;

/// Figures that contenders are compared in.
using Figures = std::vector<double>;

/// Values with dispersions and weights.
struct Sample {
  Sample(int count, bool positive, std::uint64_t seed);

  std::size_t Size() const { return x.size(); }

  int n;
  Numbers x, d, w;
};

/// A sample that forgets its cumulative distribution and its dispersions.
class ForgetfulStat : public Stat {
 public:
  using Stat::ReleaseCumulativeDistr;
  using Stat::Stat;
  void ForgetDispersions() {
    delete[] estDataDisp;
    estDataDisp = nullptr;
  }
};

class ForgetfulWeighted : public Stat_Weighted {
 public:
  using Stat_Weighted::ReleaseCumulativeDistr;
  using Stat_Weighted::Stat_Weighted;
};

/// A sample with our objects made of it.
struct Subject : Sample {
  Subject(int count, bool positive, std::uint64_t seed)
      : Sample(count, positive, seed),
        stat(x.data(), d.data(), n),
        weighted(x.data(), w.data(), n) {}

  ForgetfulStat stat;
  ForgetfulWeighted weighted;
};

/// Samples of one size, about 100,000 values altogether, so that no branch predictor learns them.
using Subjects = std::vector<std::unique_ptr<Subject>>;
using SharedSubjects = std::shared_ptr<Subjects>;

SharedSubjects MakeSubjects(int n, bool positive);

/// A way to compute something; the first is ours. The figures of "passes" are not compared.
struct Contender {
  std::string peer;
  std::function<Figures(Subject&)> work;
};

inline constexpr const char* kPasses = "passes";

/// Times the contenders of a subject; ends the program where their figures differ by more than the
/// tolerance, relative where they are above 1.
void RegisterAll(const std::string& subject, const SharedSubjects& subjects,
                 const std::string& kind, double tolerance,
                 const std::vector<Contender>& contenders);

/// Copies as many arrays as a constructor does and reads one of them as often as stated.
Figures ReadPasses(const Numbers& x, int copies, int times);

/// Mean, dispersion, its share per value, raw moments, least and largest value, all by GSL.
Figures GslFigures(const Numbers& values);

/// The same, one algorithm of the standard library after the other, as one would write it down.
Figures StandardFigures(const Numbers& values);

/// ln of the marginal likelihoods of a normal and a log-normal distribution, without what they
/// share, from moments by GSL.
Figures GslTypeFigures(const Numbers& values);

/// The same from plain loops.
Figures StandardTypeFigures(const Numbers& values);

void RegisterPlain(const SharedSubjects& subjects);
void RegisterPositive(const SharedSubjects& subjects);
void RegisterDispersions(const SharedSubjects& subjects);
void RegisterOrder(const SharedSubjects& subjects);
void RegisterWeighted(const SharedSubjects& subjects);
void RegisterMostProbable(const SharedSubjects& subjects);

}  // namespace stat_bench

#endif
