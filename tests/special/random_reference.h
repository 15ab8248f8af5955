#ifndef TARN_TESTS_SPECIAL_RANDOM_REFERENCE_H
#define TARN_TESTS_SPECIAL_RANDOM_REFERENCE_H

// A second transcription of the three generators, step by step and without a lock, that draws from
// a uniform stream of its own; and what the tests of the generators share.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "frame/module_entry.h"
#include "host/embedded_host.h"
#include "special/gamma.h"
#include "special/random.h"

/// A host with the module initialised, as the generators require.
class RandomTest : public ::testing::Test {
 protected:
  RandomTest() {
    reinterpret_cast<TarnInitModule>(tarn_ordinals[TARN_ORDINAL_INIT_MODULE])(&host.GetProcessor());
  }

  /// Feeds the generators these uniforms; asking for more fails the test.
  void Feed(std::vector<double> uniforms) {
    host.SetUniformSource([uniforms = std::move(uniforms), next = std::size_t{0}]() mutable {
      if (next < uniforms.size()) return uniforms[next++];
      ADD_FAILURE() << "draws more than " << uniforms.size() << " uniforms";
      return 0.25;
    });
  }

  EmbeddedHost host;
};

/// Uniforms with 53 random bits, now and then one of the values at which loops could go astray.
class AwkwardUniforms {
 public:
  explicit AwkwardUniforms(std::uint64_t seed) : engine_(seed) {}

  double operator()() {
    static constexpr double kAwkward[] = {0.0, 0.5, 0.25, 0x1p-53, 1.0 - 0x1p-53, 0x1p-1000};
    if (engine_() % 100 == 0) return kAwkward[engine_() % std::size(kAwkward)];
    return static_cast<double>(engine_() >> 11) * 0x1p-53;
  }

 private:
  std::mt19937_64 engine_;
};

class ReferenceGenerators {
 public:
  explicit ReferenceGenerators(std::function<double()> uniform) : uniform_(std::move(uniform)) {}

  std::int64_t Draws() const { return draws_; }

  double Gauss(double mean, double sigma) {
    double z;
    if (haveSpare_) {
      z = spare_;
      haveSpare_ = false;
    } else {
      double s, t, r;
      do {
        s = Rand(2.0) - 1;
        t = Rand(2.0) - 1;
        r = s * s + t * t;
      } while (r >= 1 || r == 0);
      const double fac = std::sqrt(-2 * std::log(r) / r);
      spare_ = fac * s;
      haveSpare_ = true;
      z = fac * t;
    }
    return z * sigma + mean;
  }

  double Poisson(double m) {
    double k;
    if (m < 12) {
      if (m != lastMean_) {
        lastMean_ = m;
        g_ = std::exp(-m);
      }
      k = -1;
      double t = 1;
      do {
        k = k + 1;
        t = t * Rand(1.0);
      } while (t > g_);
    } else {
      if (m != lastMean_) {
        lastMean_ = m;
        sqrt2Mean_ = std::sqrt(2 * m);
        logMean_ = std::log(m);
        g_ = m * std::log(m) - LnGamma(m + 1);
      }
      double t;
      do {
        double y, e;
        do {
          y = std::tan(kPi * Rand(1.0));
          e = sqrt2Mean_ * y + m;
        } while (e < 0);
        k = std::floor(e);
        t = 0.9 * (1 + y * y) * std::exp(k * logMean_ - LnGamma(k + 1) - g_);
      } while (Rand(1.0) > t);
    }
    return k;
  }

  double Binominal(double p, int n) {
    const double pp = p <= 0.5 ? p : 1 - p;
    const double am = n * pp;
    double count;
    if (n < 25) {
      count = 0;
      for (int trial = 1; trial <= n; ++trial) {
        if (Rand(1.0) < pp) count = count + 1;
      }
    } else if (am < 1) {
      const double g = std::exp(-am);
      double t = 1;
      double j = 0;
      while (j <= n) {
        t = t * Rand(1.0);
        if (t < g) break;
        j = j + 1;
      }
      count = j <= n ? j : n;
    } else {
      if (n != lastN_) {
        lastN_ = n;
        n_ = n;
        lnGammaN1_ = LnGamma(n_ + 1);
      }
      if (pp != lastP_) {
        lastP_ = pp;
        q_ = 1 - pp;
        lnP_ = std::log(pp);
        lnQ_ = std::log(q_);
      }
      const double sq = std::sqrt(2 * am * q_);
      double t;
      do {
        double y, e;
        do {
          y = std::tan(kPi * Rand(1.0));
          e = sq * y + am;
        } while (e < 0 || e >= n_ + 1);
        count = std::floor(e);
        t = 1.2 * sq * (1 + y * y) *
            std::exp(lnGammaN1_ - LnGamma(count + 1) - LnGamma(n_ - count + 1) + count * lnP_ +
                     (n_ - count) * lnQ_);
      } while (Rand(1.0) > t);
    }
    return pp == p ? count : n - count;
  }

 private:
  static constexpr double kPi = 3.14159265358979323846;

  double Rand(double limit) {
    ++draws_;
    return limit * uniform_();
  }

  std::function<double()> uniform_;
  std::int64_t draws_ = 0;
  bool haveSpare_ = false;
  double spare_ = 0;
  double lastMean_ = -1, sqrt2Mean_ = 0, logMean_ = 0, g_ = 0;
  int lastN_ = -1;
  double n_ = 0, lnGammaN1_ = 0;
  double lastP_ = -1, q_ = 0, lnP_ = 0, lnQ_ = 0;
};

#endif
