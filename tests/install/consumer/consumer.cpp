// A program on the installed library: a matrix, a sample, a minimisation and a script.

#include <tarn_base_math.h>

#include <cmath>
#include <cstdio>
#include <memory>

#include "host/embedded_host.h"

namespace {

int failures = 0;

void Expect(const char* what, double value, double expected, double tolerance) {
  if (std::fabs(value - expected) <= tolerance) return;
  std::printf("%s: %.17g instead of %.17g\n", what, value, expected);
  ++failures;
}

void UseMatrix() {
  const double elements[] = {4, 7, 2, 6};
  const T_Matrix<double> matrix(2, 2, elements);
  const std::unique_ptr<T_Matrix<double>> inverse(matrix.Inverse());
  Expect("determinant", matrix.Det(), 10.0, 0.0);
  Expect("inverse", (*inverse)(0, 1), -0.7, 1e-15);
}

void UseStat() {
  double values[] = {1, 2, 3, 4};
  Stat stat(values, 4);
  Expect("mean", stat.GetMean(), 2.5, 0.0);
  Expect("dispersion", stat.GetDisp(), 5.0 / 3.0, 1e-15);
}

/// (x - 1)^2 + (y + 2)^2
double Paraboloid(T_MatVector<double>& x, Variable* /*extra*/) {
  return (x[0] - 1) * (x[0] - 1) + (x[1] + 2) * (x[1] + 2);
}

void UseClimb() {
  Variable function;
  function.SetCppPointer(reinterpret_cast<void*>(&Paraboloid));
  double box[] = {-5, 5, -5, 5};
  double start[] = {3, 3};
  T_Climb<double> climb(function, 2, box, start, 1e-8);
  climb.SolveBFGS();
  Expect("x of the minimum", climb.GetResult()[0], 1.0, 1e-4);
  Expect("y of the minimum", climb.GetResult()[1], -2.0, 1e-4);
}

void UseScript(EmbeddedHost& host, const char* module) {
  Variable value;
  if (!host.Load(module) || !host.Evaluate("return LnGamma(3)", &value)) {
    std::printf("%s\n", host.TakeError().ToString().c_str());
    ++failures;
    return;
  }
  Expect("LnGamma(3)", value.GetDoubleNumb(), std::log(2.0), 1e-15);
}

}  // namespace

/// The argument is the path of the module, for scripts.
int main(int argc, char** argv) {
  if (argc != 2) return 2;
  EmbeddedHost host;
  UseMatrix();
  UseStat();
  UseClimb();
  UseScript(host, argv[1]);
  return failures == 0 ? 0 : 1;
}
