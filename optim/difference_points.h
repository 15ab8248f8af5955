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
    if (base == 0) middle = KeepInside(h, base);
    if (base == 1) middle = KeepInside(1 - h, base);
    low = KeepInside(std::max(T(0), middle - h), base);
    high = KeepInside(std::min(T(1), middle + h), base);
  }

  T Width() const { return high - low; }

  T low;
  T middle;
  T high;
};

/// Two points for a forward difference of step h from `base`; from the upper face the first lies
/// one step inwards.
template <class T>
struct ForwardDifference {
  ForwardDifference(T base, T h) {
    near = base == 1 ? KeepInside(1 - h, base) : base;
    far = KeepInside(std::min(T(1), near + h), base);
  }

  T Width() const { return far - near; }

  T near;
  T far;
};

}  // namespace tarn

#endif
