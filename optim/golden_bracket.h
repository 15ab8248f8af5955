#ifndef TARN_OPTIM_GOLDEN_BRACKET_H
#define TARN_OPTIM_GOLDEN_BRACKET_H

/// @file
/// One interval of a golden-section search with its inner point, and how a new value shrinks it.
///
/// The ratio keeps the three points in the same proportion from step to step, so each step costs
/// one evaluation (Kiefer 1953; Press et al., Numerical Recipes, section 10.1). Departure from the
/// textbook: ties are decided by the ends, so that a function with flat pieces is followed towards
/// its lower end.

#include <cmath>

namespace tarn {

/// (3 - sqrt(5))/2 with the digits that the searches are defined with.
template <class T>
inline constexpr T kGoldenRatio = T(0.381966011250105);
template <>
inline constexpr float kGoldenRatio<float> = 0.381966F;

/// Interval with ends a and b (a > b is allowed: the search then runs the other way), inner point x
/// and the values at the three.
template <class T>
struct GoldenBracket {
  T a, b, x;
  T fa, fb, fx;

  T FirstPoint() const { return a + kGoldenRatio<T> * (b - a); }

  /// Whether the next point belongs between x and b, the wider side; ties go to the side of a.
  bool GoesRight() const { return std::fabs(b - x) > std::fabs(a - x); }

  T NextPoint(bool right) const {
    return right ? x + kGoldenRatio<T> * (b - x) : a + kGoldenRatio<T> * (x - a);
  }

  /// Takes the value `fu` at the point `u` that `NextPoint(right)` gave. False when neither end nor
  /// inner point moved: every further step would repeat this one.
  bool Take(T u, T fu, bool right) {
    const GoldenBracket before = *this;
    if (fu < fx || (fu == fx && fx <= fa && fx <= fb)) {
      MakeInner(u, fu, right);
    } else if (fu > fx) {
      MakeEnd(u, fu, right);
    } else if (fu == fx && (fx > fa || fx > fb)) {
      KeepLowerEnd(u, fu, right);
    }
    return a != before.a || b != before.b || x != before.x;
  }

  /// The lowest of the three points; the ends count only when they lie below the inner point, a
  /// before b.
  T Answer() const {
    if (fx > fa) return a;
    return fb < fx ? b : x;
  }

 private:
  void MakeInner(T u, T fu, bool right) {
    if (right) {
      a = x;
      fa = fx;
    } else {
      b = x;
      fb = fx;
    }
    x = u;
    fx = fu;
  }

  void MakeEnd(T u, T fu, bool right) {
    if (right) {
      b = u;
      fb = fu;
    } else {
      a = u;
      fa = fu;
    }
  }

  /// u and x tie above an end: the part between them and the higher end is dropped.
  void KeepLowerEnd(T u, T fu, bool right) {
    const bool towardsA = fa <= fb;
    if (!towardsA && !(fa > fb)) return;
    if (towardsA == right) {
      MakeEnd(u, fu, right);
    } else {
      MakeInner(u, fu, right);
    }
  }
};

}  // namespace tarn

#endif
