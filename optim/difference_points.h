#ifndef TARN_OPTIM_DIFFERENCE_POINTS_H
#define TARN_OPTIM_DIFFERENCE_POINTS_H

/// @file
/// Where finite differences take their points along one scaled coordinate.

#include <algorithm>

#include "optim/unit_interval.h"

namespace tarn {

/// Three points for a central difference of step h about `base`. On a face of the box the middle is
/// moved inwards by h; the ends stay inside.
template <class T>
struct CentralDifference {
  CentralDifference(T base, T h) {
    middle = base;
    if (base == 0) middle = h;
    if (base == 1) middle = 1 - h;
    low = std::max(T(0), middle - h);
    high = std::min(T(1), middle + h);
  }

  T Width() const { return high - low; }

  T low;
  T middle;
  T high;
};

/// Two points for a central difference of step h about `base` in each of two coordinates. Unlike
/// those above they are in the box also when the base is not.
template <class T>
struct InnerDifference {
  InnerDifference(T base, T h) {
    const T middle = CentralDifference<T>(base, h).middle;
    low = ClampToUnit(middle - h);
    high = ClampToUnit(middle + h);
  }

  T Width() const { return high - low; }

  T low;
  T high;
};

/// Two points for a forward difference of step h from `base`; from the upper face the first lies
/// one step inwards.
template <class T>
struct ForwardDifference {
  ForwardDifference(T base, T h) {
    near = base == 1 ? 1 - h : base;
    far = std::min(T(1), near + h);
  }

  T Width() const { return far - near; }

  T near;
  T far;
};

}  // namespace tarn

#endif
