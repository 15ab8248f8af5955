#ifndef TARN_TESTS_OPTIM_CLIMB_REFERENCE_H
#define TARN_TESTS_OPTIM_CLIMB_REFERENCE_H

/// @file
/// The minimiser a second time, as plain procedures over `std::vector`, written from the
/// description of its steps and not from its code. Each procedure does one step after the other and
/// logs every point at which it evaluates the objective. It knows neither host nor errors: the
/// trajectory of a native objective is all it is for.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace reference {

/// A vector that is counted in `int`.
template <class T>
struct Indexed : std::vector<T> {
  using std::vector<T>::vector;
  Indexed() = default;
  explicit Indexed(int n) : std::vector<T>(static_cast<std::size_t>(n)) {}
  Indexed(int n, const T& value) : std::vector<T>(static_cast<std::size_t>(n), value) {}
  T& operator[](int i) { return this->data()[i]; }
  const T& operator[](int i) const { return this->data()[i]; }
  int Count() const { return static_cast<int>(this->size()); }
};

template <class T>
using Point = Indexed<T>;

template <class T>
class Climb {
 public:
  using Objective = std::function<T(const Point<T>&)>;
  using Derivative = std::function<T(const Point<T>&, int)>;

  // What a caller sets.
  T accuracy = T(1e-6);
  int maxPasses = 3000;
  bool central = false;
  bool limitStep = false;
  T defaultStep = sizeof(T) == 4 ? T(0.001F) : T(5e-6);
  Point<T> minStep, maxStep;  // scaled, empty: not set
  Derivative derivative;      // empty: differences

  // What happened.
  std::vector<Point<T>> evaluated;             // real coordinates
  std::vector<std::pair<Point<T>, T>> traced;  // scaled best point and value
  Point<T> best;                               // scaled
  Indexed<Point<T>> H;
  bool covarianceStored = false;
  bool limitReached = false;
  int derivativeCalls = 0;
  std::vector<std::string> window;  // calls that a progress window and the host's idle work get
  int restarts = 0;
  int endsWithoutRestart = 0;
  int passes = 0;  // through all line searches

  Climb(Objective objective, const Point<T>& bounds, const Point<T>& start)
      : f(std::move(objective)), n(start.Count()), lo(n), hi(n), inv(n), scaled(n) {
    for (int i = 0; i < n; ++i) {
      lo[i] = bounds[2 * i];
      hi[i] = bounds[2 * i + 1];
      if (lo[i] == hi[i]) {
        inv[i] = 0;
        scaled[i] = 0;
      } else {
        inv[i] = 1 / (hi[i] - lo[i]);
        scaled[i] = (start[i] - lo[i]) * inv[i];
      }
      if (scaled[i] < 0) scaled[i] = 0;
      if (scaled[i] > 1) scaled[i] = 1;
    }
    best = Point<T>(n, T(0));
  }

  Point<T> Real(const Point<T>& s) const {
    Point<T> x(n);
    for (int i = 0; i < n; ++i) {
      if (inv[i] == 0) {
        x[i] = lo[i];
        continue;
      }
      x[i] = s[i] / inv[i] + lo[i];
    }
    return x;
  }

  // Solves ----------------------------------------------------------------------------------------

  void SolveQuasiNewton(bool bfgs, int limit) {
    WindowProgress(30);
    WindowCheck();
    best = scaled;
    const T f0 = At(best);
    traced.emplace_back(best, f0);
    const T fx = QuasiNewton(bfgs, f0, limit);
    WindowReport(100, fx);
  }

  void SolvePowell() {
    WindowProgress(1);
    WindowCheck();
    best = scaled;
    T fx = At(best);
    Axes();
    traced.emplace_back(best, fx);
    bool everReplaced = false;
    bool pending = false;
    int it = 0;
    while (it < maxPasses) {
      if (it % 10 == 0) WindowReport(it % 100, fx);
      const T fn = PowellPass(fx, directions, everReplaced);
      traced.emplace_back(best, fn);
      const bool ends = PassEnds(fx, fn, everReplaced, pending);
      fx = fn;
      if (ends) break;
      ++it;
    }
    limitReached = it == maxPasses;
    WindowReport(100, fx);
  }

  void SolvePowellOnce() {
    best = scaled;
    const T fx = At(best);
    Axes();
    bool replaced = false;
    PowellPass(fx, directions, replaced);
  }

  void Solve(int inner) {
    WindowProgress(1);
    WindowCheck();
    best = scaled;
    T fx = At(best);
    traced.emplace_back(best, fx);
    const T keep = accuracy;
    accuracy = std::min(std::sqrt(accuracy), 100 * accuracy);
    Axes();
    bool dummy = false;
    fx = PowellPass(fx, directions, dummy);
    accuracy = keep;
    Axes();
    bool everReplaced = false;
    bool pending = false;
    int it = 0;
    while (it < maxPasses) {
      if (it % 10 == 0) WindowReport(it % 100, fx);
      const T f1 = QuasiNewton(false, fx, inner);
      const T fn = PowellPass(f1, directions, everReplaced);
      traced.emplace_back(best, fn);
      const bool ends = PassEnds(fx, fn, everReplaced, pending);
      fx = fn;
      if (ends) break;
      ++it;
    }
    limitReached = it == maxPasses;
    WindowReport(100, fx);
  }

  void SolveByCoord(const Point<T>& steps) {
    best = scaled;
    T fx = At(best);
    int it = 0;
    for (; it < maxPasses; ++it) {
      const T fold = fx;
      const Point<T> prev = best;
      for (int i = 0; i < n; ++i) fx = Coordinate(fx, steps[i], i);
      T sum = 0;
      for (int i = 0; i < n; ++i) sum += (prev[i] - best[i]) * (prev[i] - best[i]);
      if (std::sqrt(sum) < accuracy) break;
      if ((fx - fold) / std::max(T(1), std::fabs(fold) + std::fabs(fx)) < accuracy) break;
    }
    limitReached = it == maxPasses;
  }

  // Gradients -------------------------------------------------------------------------------------

  /// At the best point, as all methods ask for it.
  Point<T> Gradient() {
    if (derivative) return UserGradient();
    Point<T> g(n), delta(n);
    Indexed<Point<T>> batch;
    if (!central) {
      batch.push_back(best);
      for (int i = 0; i < n; ++i) {
        Point<T> p(n, T(0));  // the point of a fixed variable
        delta[i] = 0;
        if (inv[i] != 0) {
          p = best;
          const T t = p[i];
          const T h = Step(i);
          p[i] = t == 1 ? t - h : std::min(T(1), t + h);
          delta[i] = p[i] - best[i];
        }
        batch.push_back(p);
      }
    } else {
      for (int i = 0; i < n; ++i) {
        const T h = Step(i);
        T t = best[i];
        if (best[i] == 0) t = h;
        if (best[i] == 1) t = 1 - h;
        Point<T> below = best, above = best;
        above[i] = std::min(T(1), t + h);
        below[i] = std::max(T(0), t - h);
        delta[i] = above[i] - below[i];
        batch.push_back(below);
        batch.push_back(above);
      }
    }
    Indexed<T> v;
    for (const auto& p : batch) v.push_back(At(p));
    for (int i = 0; i < n; ++i) {
      if (inv[i] == 0 || delta[i] == 0) {
        g[i] = 0;
      } else {
        g[i] = central ? (v[2 * i + 1] - v[2 * i]) / delta[i] : (v[i + 1] - v[0]) / delta[i];
      }
      if (best[i] < accuracy && g[i] > 0) g[i] = 0;
      if (best[i] > 1 - accuracy && g[i] < 0) g[i] = 0;
    }
    return g;
  }

 private:
  T At(const Point<T>& s) {
    evaluated.push_back(Real(s));
    return f(evaluated.back());
  }

  T Step(int i) const { return !minStep.empty() && minStep[i] != 0 ? minStep[i] : defaultStep; }

  void WindowProgress(int value) { window.push_back("SetProgress " + std::to_string(value)); }
  void WindowCheck() { window.emplace_back("CheckCancel"); }
  void WindowReport(int value, T residue) {
    char caption[64];
    std::snprintf(caption, sizeof caption, "SetCaption Residue = %.10g",
                  static_cast<double>(residue));
    WindowProgress(value);
    window.emplace_back(caption);
    WindowCheck();
  }

  static T Norm(const Point<T>& v) {
    T sum = 0;
    for (const T x : v) sum += x * x;
    return std::sqrt(sum);
  }

  static T Dot(const Point<T>& a, const Point<T>& b) {
    T sum = 0;
    for (int i = 0; i < a.Count(); ++i) sum += a[i] * b[i];
    return sum;
  }

  Point<T> Times(const Indexed<Point<T>>& m, const Point<T>& v) const {
    Point<T> r(n);
    for (int i = 0; i < n; ++i) r[i] = Dot(m[i], v);
    return r;
  }

  bool Small(const Point<T>& d) const {
    T largest = 0;
    for (int i = 0; i < n; ++i) {
      if (inv[i] != 0) largest = std::max(largest, std::fabs(d[i]));
    }
    return accuracy > largest;
  }

  Point<T> Minus(const Point<T>& a, const Point<T>& b) const {
    Point<T> r(n);
    for (int i = 0; i < n; ++i) r[i] = a[i] - b[i];
    return r;
  }

  Point<T> UserGradient() {
    const Point<T> x = Real(best);
    Point<T> g(n, T(0));
    for (int i = 0; i < n; ++i) {
      if (inv[i] == 0) {
        g[i] = 0;
        continue;
      }
      for (int j = 0; j < n; ++j) {
        ++derivativeCalls;
        g[j] = derivative(x, j);
      }
    }
    for (int i = 0; i < n; ++i) {
      if (inv[i] == 0) {
        g[i] = 0;
      } else if (best[i] < 2 * accuracy && g[i] > 0) {
        g[i] = 0;
      } else if (1 - best[i] < 2 * accuracy && g[i] < 0) {
        g[i] = 0;
      } else {
        g[i] = g[i] / inv[i];
      }
    }
    return g;
  }

  void Range(const Point<T>& s, const Point<T>& d, T& tmin, T& tmax) const {
    tmin = -std::sqrt(T(n));
    tmax = std::sqrt(T(n));
    int contributions = 0;
    for (int i = 0; i < n; ++i) {
      if (inv[i] == 0 || d[i] == 0) continue;
      ++contributions;
      const T down = s[i] / std::fabs(d[i]);
      const T up = (1 - s[i]) / std::fabs(d[i]);
      if (d[i] > 0) {
        tmax = std::min(tmax, up);
        tmin = std::max(tmin, -down);
      } else {
        tmax = std::min(tmax, down);
        tmin = std::max(tmin, -up);
      }
    }
    if (contributions == 0) tmin = tmax = 0;
  }

  // Line search -----------------------------------------------------------------------------------

  struct Record {
    T t, f;
    bool used;
  };

  T LineSearch(T f0, const Point<T>& d, bool useLength) {
    window.emplace_back("FlushIdle");
    const T length = Norm(d);
    if (length == 0) return f0;
    Point<T> dn(n);
    for (int i = 0; i < n; ++i) dn[i] = d[i] / length;
    T tmin, tmax;
    Range(best, dn, tmin, tmax);
    if (tmin == tmax) return f0;

    const Point<T> origin = best;
    T tBest = 0, fBest = f0;
    Indexed<Record> table{{0, f0, false}};
    auto clamp = [&](T t) { return t < tmin ? tmin : t > tmax ? tmax : t; };
    auto pointAt = [&](T t) {
      Point<T> p(n);
      for (int i = 0; i < n; ++i) p[i] = origin[i] + t * dn[i];
      return p;
    };
    auto evaluate = [&](T t) {
      const T v = At(pointAt(t));
      if (v < fBest) {
        fBest = v;
        tBest = t;
      }
      return v;
    };
    auto insert = [&](T t, T v) {
      // Behind all records not beyond it, but before a last record that is level with it.
      int at = 0;
      while (at < table.Count() && table[at].t <= t) ++at;
      if (at == table.Count() && table.back().t == t) --at;
      table.insert(table.begin() + at, {t, v, false});
    };
    auto known = [&](T t) {
      return std::any_of(table.begin(), table.end(), [t](const Record& r) { return r.t == t; });
    };
    auto lowest = [&] {
      int least = 0;
      for (int i = 1; i < table.Count(); ++i) {
        if (table[i].f < table[least].f) least = i;
      }
      return least;
    };

    // First and second trial.
    T L = useLength ? length : T(0.05) * (tmax - tmin);
    T t1 = clamp(tmax == 0 ? -2 * L : std::min(L, tmax));
    T f1 = evaluate(t1);
    if (f1 >= f0 && useLength) {
      insert(t1, f1);
      L = T(0.05) * (tmax - tmin);
      t1 = tmax == 0 ? -2 * L : std::min(L, tmax);
      f1 = evaluate(t1);
    }
    insert(t1, f1);
    const T t2 = clamp(tmin == 0 ? 2 * L : std::max(tmin, -L));
    const T f2 = evaluate(t2);
    insert(t2, f2);

    int k = 0, p = 0, q = 0, r = -1;
    auto choose = [&] {
      k = lowest();
      const int m = table.Count() - 1;
      r = -1;
      if (k == 0) {
        p = 1;
        q = 2;
        if (m >= 3) r = 3;
      } else if (k == m) {
        p = m - 1;
        q = m - 2;
        if (m > 2) r = m - 3;
      } else {
        p = k - 1;
        q = k + 1;
        if (k - 1 >= 1) {
          r = k - 2;
          if (k + 1 < m && std::fabs(table[k + 2].t - table[k - 1].t) <
                               std::fabs(table[k - 1].t - table[k - 2].t)) {
            r = k + 2;
          }
        }
      }
    };
    choose();

    T ur[3] = {0, 0, 0}, vr[3] = {0, 0, 0};  // r, q, p from k, at the last fit of four points
    T cap = 0;
    int stall = 0;
    for (int pass = 0; pass < 10000; ++pass) {
      if (pass % 10 == 0) {
        window.emplace_back("FlushIdle");
        WindowCheck();
      }
      ++passes;
      const T bestBefore = fBest;
      const T gapP = std::fabs(table[k].t - table[p].t);
      const T gapQ = std::fabs(table[q].t - table[k].t);
      const std::size_t sizeBefore = table.size();
      bool somethingChanged = false;

      // Interpolation.
      bool fresh = !table[k].used || !table[p].used || !table[q].used;
      if (r >= 0) fresh = fresh || !table[r].used;
      if (fresh) {
        table[k].used = table[p].used = table[q].used = true;
        if (r >= 0) table[r].used = true;
        somethingChanged = true;
      }
      bool parabola = fresh;
      if (r >= 0) {
        if (fresh) {
          const int index[3] = {r, q, p};
          for (int i = 0; i < 3; ++i) {
            ur[i] = table[index[i]].t - table[k].t;
            vr[i] = table[index[i]].f - table[k].f;
          }
        }
        parabola = !CubicTurns(ur, vr);
      }
      if (parabola) {
        const T a1 = table[q].t - table[k].t;
        const T a2 = table[p].t - table[k].t;
        const T b1 = table[q].f - table[k].f;
        const T b2 = table[p].f - table[k].f;
        const T D = a2 * (a1 * a1) - (a2 * a2) * a1;
        const T c = (b1 * a2 - b2 * a1) / D;
        T delta = -((b2 * (a1 * a1) - b1 * (a2 * a2)) / D) / (2 * c);
        if (c > 0 && delta != 0 && !std::isnan(delta)) {
          if (limitStep) {
            const T newCap = std::max(10 * std::max(std::fabs(a1), std::fabs(a2)), cap);
            if (newCap != cap) somethingChanged = true;
            cap = newCap;
            if (std::fabs(delta) > cap) delta = delta < 0 ? -cap : cap;
          }
          const T t = clamp(table[k].t + delta);
          if (!known(t)) insert(t, evaluate(t));
        }
      }

      // Fall back.
      const bool success = fBest < bestBefore;
      if (!success || std::min(gapP, gapQ) < T(0.3) * std::max(gapP, gapQ)) {
        const int kk = lowest();
        const int m = table.Count() - 1;
        T t;
        if (kk == 0) {
          t = table[0].t == tmin ? (table[0].t + table[1].t) / 2
                                 : std::max(tmin, 3 * table[0].t - 2 * table[1].t);
        } else if (kk == m) {
          t = table[m].t != tmax ? std::min(tmax, 3 * table[m].t - 2 * table[m - 1].t)
                                 : (table[m].t + table[m - 1].t) / 2;
        } else {
          const int j =
              table[kk + 1].t - table[kk].t > table[kk].t - table[kk - 1].t ? kk + 1 : kk - 1;
          t = (table[kk].t + table[j].t) / 2;
        }
        if (!known(t)) insert(t, evaluate(t));
      }
      choose();

      // Stall and end.
      const T fs = std::max(
          T(1), (std::fabs(table[k].f) + std::fabs(table[p].f) + std::fabs(table[q].f)) / 3);
      if ((std::fabs(tBest - table[k].t) < accuracy &&
           std::fabs(fBest - bestBefore) / fs < accuracy) ||
          std::fabs(table[q].t - table[p].t) < accuracy) {
        if (++stall > 5) break;
      } else {
        stall = 0;
      }
      const T up = table[q].f - table[k].f;
      const T down = table[k].f - table[p].f;
      const T df = std::fabs(down) < std::fabs(up) ? down : up;
      if (!(std::fabs(table[k].t - table[p].t) > accuracy ||
            std::fabs(table[q].t - table[k].t) > accuracy || std::fabs(df) / fs > accuracy)) {
        break;
      }
      // Nothing that a further pass looks at is any different: it could only repeat this one.
      if (table.size() == sizeBefore && !somethingChanged && stall == 0) break;
    }

    if (fBest < f0) {
      best = pointAt(tBest);
      for (T& s : best) s = s < 0 ? 0 : s > 1 ? 1 : s;
    }
    traced.emplace_back(best, fBest);
    return fBest;
  }

  /// Whether c1*u + c2*u^2 + c3*u^3 through three points and the origin has stationary points.
  static bool CubicTurns(const T (&u)[3], const T (&v)[3]) {
    T m[3][3];
    for (int i = 0; i < 3; ++i) {
      m[i][0] = u[i];
      m[i][1] = u[i] * u[i];
      m[i][2] = u[i] * u[i] * u[i];
    }
    auto determinant = [&](int replaced) {
      T a[3][3];
      for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) a[i][j] = j == replaced ? v[i] : m[i][j];
      }
      return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
             a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
             a[0][2] * (a[1][0] * a[2][1] - a[2][0] * a[1][1]);
    };
    const T d = determinant(-1);
    if (d == 0) return false;
    const T c1 = determinant(0) / d;
    const T c2 = determinant(1) / d;
    const T c3 = determinant(2) / d;
    return c3 != 0 && (2 * c2) * (2 * c2) - 12 * c1 * c3 >= 0;
  }

  // Quasi-Newton ----------------------------------------------------------------------------------

  T QuasiNewton(bool bfgs, T f0, int limit) {
    const Point<T> saved = best;
    H = Indexed<Point<T>>(n, Point<T>(n, T(0)));
    for (int i = 0; i < n; ++i) H[i][i] = 1;
    Point<T> xprev = best;
    Point<T> g = Gradient();
    Point<T> gprev = g;
    if (Small(g)) return f0;
    T fx = LineSearch(f0, Negative(g), false);
    if (fx >= f0) return f0;
    auto early = [&] {
      if (fx <= f0) return fx;
      best = saved;
      return f0;
    };
    if (Small(Minus(xprev, best))) return early();
    g = Gradient();
    if (Small(g)) return early();
    int it = 0;
    bool lastOk = false;
    int progress = 0;
    while (it < limit) {
      ++progress;
      if (progress % 10 == 0) WindowReport(progress % 100, fx);
      const Point<T> dx = Minus(best, xprev);
      const Point<T> dg = Minus(g, gprev);
      const Point<T> Hdg = Times(H, dg);
      const T a = Dot(dx, dg);
      if (a == 0) return early();
      const T b = Dot(dg, Hdg);
      if (b == 0 || std::isnan(b)) return early();
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) H[i][j] = H[i][j] + dx[i] * dx[j] / a;
      }
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) H[i][j] = H[i][j] - Hdg[i] * Hdg[j] / b;
      }
      if (bfgs) {
        const Point<T> Hdx = Times(H, dx);
        Point<T> u(n);
        for (int i = 0; i < n; ++i) u[i] = dx[i] / a - Hdx[i] / b;
        for (int i = 0; i < n; ++i) {
          for (int j = 0; j < n; ++j) H[i][j] = H[i][j] + b * u[i] * u[j];
        }
      }
      Point<T> d = Negative(Times(H, g));
      T tmin, tmax;
      Range(best, d, tmin, tmax);
      const T norm = Norm(d);
      if (norm == 0) return early();
      for (T& x : d) x = x * std::min(norm, tmax) / norm;
      const Point<T> newStart = best;
      T fn = LineSearch(fx, d, true);
      if (fn >= fx) {
        if (!lastOk && it > 3) {
          ++endsWithoutRestart;
          break;
        }
        ++restarts;
        for (int i = 0; i < n; ++i) {
          for (int j = 0; j < n; ++j) H[i][j] = i == j ? 1 : 0;
        }
        lastOk = false;
        fn = LineSearch(fx, Negative(g), false);
        if (fn >= fx) break;
      } else {
        lastOk = true;
      }
      xprev = newStart;
      gprev = g;
      g = Gradient();
      const bool done =
          std::fabs(fx - fn) / std::max(T(1), std::fabs(fn) + std::fabs(fx)) < accuracy ||
          Small(Minus(xprev, best)) || Small(g);
      fx = fn;
      ++it;
      if (done) break;
    }
    covarianceStored = fx <= f0 && it > n;
    return fx;
  }

  static Point<T> Negative(Point<T> v) {
    for (T& x : v) x = -x;
    return v;
  }

  // Directions ------------------------------------------------------------------------------------

  void Axes() {
    directions = Indexed<Point<T>>(n, Point<T>(n, T(0)));
    for (int i = 0; i < n; ++i) directions[i][i] = Step(i);
  }

  T PowellPass(T f0, Indexed<Point<T>>& dirs, bool& replaced) {
    const Point<T> p0 = best;
    T fx = f0;
    T maxDrop = 0;
    for (int i = 0; i < n; ++i) {
      const T fi = LineSearch(fx, dirs[i], true);
      maxDrop = std::max(maxDrop, fx - fi);
      fx = fi;
    }
    if (fx < f0 && n > 1) {
      const Point<T> dnew = Minus(best, p0);
      T tmin, tmax;
      Range(best, dnew, tmin, tmax);
      tmax = std::min(tmax, 2 * Norm(dnew));
      Point<T> pe(n);
      for (int i = 0; i < n; ++i) pe[i] = best[i] + tmax * dnew[i];
      const T fe = At(pe);
      const T w = f0 - fx - maxDrop;
      if (fe < fx && 2 * (f0 - 2 * fx + fe) * (w * w) < (f0 - fe) * (f0 - fe) * maxDrop) {
        dirs.erase(dirs.begin());
        dirs.push_back(dnew);
        best = pe;
        replaced = true;
        fx = fe;
      }
    }
    return fx;
  }

  bool PassEnds(T fx, T fn, bool everReplaced, bool& pending) {
    if ((fx - fn) / std::max(T(1), std::fabs(fx) + std::fabs(fn)) < accuracy) {
      if (pending || !everReplaced) return true;
      Axes();
      pending = true;
    } else {
      pending = false;
    }
    return false;
  }

  T Coordinate(T fx, T step, int i) {
    bool grow = true, tryReverse = true;
    int failures = 0;
    const T least = minStep.empty() ? 0 : minStep[i];
    const T most = maxStep.empty() ? 0 : maxStep[i];
    for (;;) {
      Point<T> trial = best;
      bool success = false;
      auto probe = [&](T s) {
        T c = best[i] + s;
        trial[i] = c < 0 ? 0 : c > 1 ? 1 : c;
        const T v = At(trial);
        if (v < fx) {
          success = true;
          fx = v;
        }
      };
      probe(step);
      if (!success) {
        if (tryReverse) {
          probe(-step);
          if (success) step = -step;
        } else {
          tryReverse = true;
        }
      }
      if (success) {
        best = trial;
        tryReverse = false;
        if (grow) {
          step = 2 * step;
          if (most != 0 && std::fabs(step) > most) step = step < 0 ? -most : most;
        }
      } else {
        ++failures;
        step = step / 2;
        grow = false;
        if (least != 0 && std::fabs(step) < least) step = step < 0 ? -least : least;
      }
      traced.emplace_back(best, fx);
      if (std::fabs(step) < accuracy || failures > 7 ||
          (least != 0 && std::fabs(step) <= least && failures > 1)) {
        return fx;
      }
    }
  }

  Objective f;
  int n;
  Point<T> lo, hi, inv, scaled;
  Indexed<Point<T>> directions;
};

}  // namespace reference

#endif
