// T_Climb: second derivatives, Hessian and covariance, and when their caches hold.

#include "climb_support.h"
#include "problems/more_garbow_hillstrom.h"

namespace {

template <class T>
using Access = tarn::ClimbTestAccess<T>;

template <class T>
using MatrixPointer = std::unique_ptr<T_Matrix<T>>;

template <class T>
std::vector<T> Elements(const T_Matrix<T>& matrix) {
  std::vector<T> elements;
  for (int i = 0; i < matrix.Y(); ++i) {
    for (int j = 0; j < matrix.X(); ++j) elements.push_back(matrix(i, j));
  }
  return elements;
}

/// Differences of exactly representable points: steps that are powers of two.
template <class T>
class ClimbHessianTest : public ClimbTest {
 protected:
  static constexpr T kStep = T(0.0625);

  ClimbHessianTest() { T_Climb<T>::aMinStep = kStep; }

  /// 3*x0^2 + x0*x1 + 2*x1^2 on the unit square: derivatives 6, 1, 4.
  static T_Climb<T> Form() {
    return MakeClimb<T>([](const T* x) { return 3 * x[0] * x[0] + x[0] * x[1] + 2 * x[1] * x[1]; },
                        {0, 1, 0, 1}, {T(0.5), T(0.25)}, T(1e-3));
  }

  static std::vector<T> Hessian(T_Climb<T>& climb, std::vector<T> x) {
    const MatrixPointer<T> matrix(climb.GetHessian(x.data()));
    return Elements(*matrix);
  }

  static std::vector<T> Covariance(T_Climb<T>& climb, std::vector<T> x) {
    const MatrixPointer<T> matrix(climb.GetCovariationMatrix(x.data()));
    return Elements(*matrix);
  }

  std::vector<Point<T>>& calls = RecordedObjective<T>::calls;
};
using ElementTypes = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbHessianTest, ElementTypes);

// Second derivatives ------------------------------------------------------------------------------

TYPED_TEST(ClimbHessianTest, DiagonalDerivativeEvaluatesBelowAtAndAbove) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.25)});
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 0), 6);
  EXPECT_EQ(this->calls,
            (std::vector<Point<T>>{{T(0.4375), T(0.25)}, {T(0.5), T(0.25)}, {T(0.5625), T(0.25)}}));
  EXPECT_EQ(Values(s), (std::vector<T>{T(0.5), T(0.25)}));
}

TYPED_TEST(ClimbHessianTest, DiagonalDerivativeOnAFaceMovesItsMiddleInwards) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  T_MatVectorCol<T> s = Vector<T>({0, 1});
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 0), 6);
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{0, 1}, {T(0.0625), 1}, {T(0.125), 1}}));
  this->calls.clear();
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 1, 1), 4);
  EXPECT_EQ(this->calls, (std::vector<Point<T>>{{0, T(0.875)}, {0, T(0.9375)}, {0, 1}}));
}

TYPED_TEST(ClimbHessianTest, DiagonalDerivativeNearAFaceHasUnequalSteps) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  T_MatVectorCol<T> s = Vector<T>({T(0.03125), 0});
  // (f+ - 2*f0 + f-)/(hm*hp) with hm half of hp, as it stands.
  const auto f = [](T x) { return 3 * x * x; };
  const T expected = (f(T(0.09375)) - 2 * f(T(0.03125)) + f(T(0))) / (T(0.03125) * T(0.0625));
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 0), expected);
}

TYPED_TEST(ClimbHessianTest, MixedForwardDerivative) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  T_MatVectorCol<T> s = Vector<T>({T(0.5), 1});
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 1), 1);
  EXPECT_EQ(this->calls,
            (std::vector<Point<T>>{
                {T(0.5), T(0.9375)}, {T(0.5625), T(0.9375)}, {T(0.5), 1}, {T(0.5625), 1}}));
}

TYPED_TEST(ClimbHessianTest, MixedCentralDerivative) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  climb.SetSymmetricDerivative(1);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), 0});
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 1), 1);
  EXPECT_EQ(this->calls,
            (std::vector<Point<T>>{
                {T(0.4375), 0}, {T(0.5625), 0}, {T(0.4375), T(0.125)}, {T(0.5625), T(0.125)}}));
}

TYPED_TEST(ClimbHessianTest, MixedCentralDerivativeOutsideTheBoxIsZero) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  climb.SetSymmetricDerivative(1);
  for (const T outside : {T(1.25), T(-0.25)}) {
    T_MatVectorCol<T> s = Vector<T>({T(0.5), outside});
    EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 1), 0);  // both ends on the same face
  }
}

TYPED_TEST(ClimbHessianTest, EachVariableHasItsOwnStep) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  climb.SetSymmetricDerivative(1);
  T_MatVectorCol<T> steps = Vector<T>({T(0.25), T(0.125)});
  climb.SetMinStep(steps);
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.5)});
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 1), 1);
  EXPECT_EQ(this->calls[0], (Point<T>{T(0.25), T(0.375)}));
  EXPECT_EQ(this->calls[3], (Point<T>{T(0.75), T(0.625)}));
}

TYPED_TEST(ClimbHessianTest, FixedVariablesHaveNoSecondDerivative) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return x[0] * x[1]; }, {2, 2, 0, 1}, {2, T(0.5)}, T(1e-3));
  T_MatVectorCol<T> s = Vector<T>({0, T(0.5)});
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 0), 0);
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 0, 1), 0);
  EXPECT_EQ(Access<T>::GetDerivative2(climb, s, 1, 0), 0);
  EXPECT_TRUE(this->calls.empty());
}

// Hessian -----------------------------------------------------------------------------------------

TYPED_TEST(ClimbHessianTest, HessianUsesCentralDifferencesForEveryPair) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  EXPECT_EQ(this->Hessian(climb, {T(0.5), T(0.25)}), (std::vector<T>{6, 1, 1, 4}));
  EXPECT_EQ(this->calls.size(), 3U + 4U + 3U);
  EXPECT_EQ(climb.GetSymmetricDerivative(), 0);
}

TYPED_TEST(ClimbHessianTest, HessianIsInRealCoordinates) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return 3 * x[0] * x[0] + x[0] * x[2] + 2 * x[2] * x[2]; },
                   {-2, 2, 5, 5, 0, 16}, {0, 5, 1}, T(1e-3));
  const std::vector<T> expected = {6, 0, 1, 0, 0, 0, 1, 0, 4};
  EXPECT_EQ(this->Hessian(climb, {0, 5, 8}), expected);
  T_MatVectorCol<T> x = Vector<T>({0, 5, 8});
  const MatrixPointer<T> matrix(climb.GetHessian(x));
  EXPECT_EQ(Elements(*matrix), expected);
}

TYPED_TEST(ClimbHessianTest, HessianOfTheSamePointIsNotComputedAgain) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  const std::vector<T> first = this->Hessian(climb, {T(0.5), T(0.25)});
  const std::size_t evaluations = this->calls.size();
  EXPECT_EQ(this->Hessian(climb, {T(0.5), T(0.25)}), first);
  EXPECT_EQ(this->calls.size(), evaluations);
  this->Hessian(climb, {T(0.5), T(0.5)});
  EXPECT_EQ(this->calls.size(), 2 * evaluations);
}

TYPED_TEST(ClimbHessianTest, HessianWhoseFirstElementIsZeroIsNeverKept) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] + x[1] * x[1]; }, {0, 1, 0, 1},
                                  {T(0.5), T(0.5)}, T(1e-3));
  EXPECT_EQ(this->Hessian(climb, {T(0.5), T(0.5)})[0], 0);
  const std::size_t evaluations = this->calls.size();
  this->Hessian(climb, {T(0.5), T(0.5)});
  EXPECT_EQ(this->calls.size(), 2 * evaluations);
}

TYPED_TEST(ClimbHessianTest, SolvesForgetTheHessian) {
  using T = TypeParam;
  const std::vector<std::function<void(T_Climb<T>&)>> methods = {
      [](T_Climb<T>& c) { c.Solve(1); }, [](T_Climb<T>& c) { c.SolvePowell(); },
      [](T_Climb<T>& c) { c.SolveBFGS(1); }, [](T_Climb<T>& c) { c.SolveDFP(1); }};
  for (const auto& method : methods) {
    T_Climb<T> climb = this->Form();
    climb.SetErrorIfMaxItterNumberExceed(0);
    this->Hessian(climb, {T(0.5), T(0.25)});
    EXPECT_NE(Access<T>::HessianCache(climb)(0, 0), 0);
    method(climb);
    EXPECT_EQ(Access<T>::HessianCache(climb)(0, 0), 0);
  }
  T_Climb<T> climb = this->Form();
  this->Hessian(climb, {T(0.5), T(0.25)});
  T_MatVectorCol<T> steps = Vector<T>({T(0.1), T(0.1)});
  climb.SolveByCoord(steps);  // this one does not look at matrices
  EXPECT_NE(Access<T>::HessianCache(climb)(0, 0), 0);
}

template <class T>
struct SecondDerivatives {
  static inline std::vector<std::pair<int, int>> asked;
  static T Call(T_MatVector<T>& x, int i, int j, Variable* extra) {
    asked.emplace_back(i, j);
    return static_cast<T>(10 * (i + 1) + j) + x[0] + static_cast<T>(extra->GetDoubleNumb());
  }
};

TYPED_TEST(ClimbHessianTest, SecondDerivativeFunctionIsAskedForTheUpperTriangle) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T*) { return T(0); }, {0, 1, 5, 5, 0, 4}, {T(0.5), 5, 1}, T(1e-3));
  Variable second;
  second.SetCppPointer(reinterpret_cast<void*>(&SecondDerivatives<T>::Call));
  climb.SetDeriv2Func(second);
  Variable extra(std::int32_t{2});
  climb.SetExtraParam(extra);
  EXPECT_EQ(this->Hessian(climb, {T(0.5), 5, 1}),
            (std::vector<T>{T(12.5), 0, T(14.5), 0, 0, 0, T(14.5), 0, T(34.5)}));
  EXPECT_EQ(SecondDerivatives<T>::asked,
            (std::vector<std::pair<int, int>>{{0, 0}, {0, 2}, {2, 2}}));
  EXPECT_TRUE(this->calls.empty());
}

// Covariance --------------------------------------------------------------------------------------

TYPED_TEST(ClimbHessianTest, CovarianceIsTwiceTheInverseHessian) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  // The inverse of [6 1; 1 4] is [4 -1; -1 6]/23.
  const T d = 6 * 4 - 1;
  const std::vector<T> expected = {4 / d * 2, -1 / d * 2, -1 / d * 2, 6 / d * 2};
  EXPECT_EQ(this->Covariance(climb, {T(0.5), T(0.25)}), expected);
  T_Climb<T> plain = this->Form();
  Access<T>::CovarianceFlag(plain) = 0;
  EXPECT_EQ(this->Covariance(plain, {T(0.5), T(0.25)}),
            (std::vector<T>{4 / d, -1 / d, -1 / d, 6 / d}));
}

TYPED_TEST(ClimbHessianTest, CovarianceIsInRealCoordinates) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] * x[0] + 4 * x[1] * x[1]; },
                                  {-2, 2, 0, 16}, {0, 1}, T(1e-3));
  EXPECT_EQ(this->Covariance(climb, {0, 8}), (std::vector<T>{1, 0, 0, T(0.25)}));
  T_MatVectorCol<T> x = Vector<T>({0, 8});
  const MatrixPointer<T> matrix(climb.GetCovariationMatrix(x));
  EXPECT_EQ(Elements(*matrix), (std::vector<T>{1, 0, 0, T(0.25)}));
}

TYPED_TEST(ClimbHessianTest, CovarianceOfTheSamePointIsNotComputedAgain) {
  using T = TypeParam;
  T_Climb<T> climb = this->Form();
  const std::vector<T> first = this->Covariance(climb, {T(0.5), T(0.25)});
  const std::size_t evaluations = this->calls.size();
  EXPECT_EQ(evaluations, 10U);
  EXPECT_EQ(this->Covariance(climb, {T(0.5), T(0.25)}), first);
  EXPECT_EQ(this->calls.size(), evaluations);
  // The Hessian came with it.
  EXPECT_EQ(this->Hessian(climb, {T(0.5), T(0.25)}), (std::vector<T>{6, 1, 1, 4}));
  EXPECT_EQ(this->calls.size(), evaluations);
  // A Hessian elsewhere takes the covariance with it.
  this->Hessian(climb, {T(0.5), T(0.5)});
  this->Covariance(climb, {T(0.5), T(0.25)});
  EXPECT_EQ(this->calls.size(), 3 * evaluations);
}

TYPED_TEST(ClimbHessianTest, AllVariablesFixedGiveTheZeroMatrix) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T*) { return T(1); }, {3, 3, 5, 5}, {3, 5}, T(1e-3));
  EXPECT_EQ(this->Covariance(climb, {3, 5}), std::vector<T>(4, 0));
}

TYPED_TEST(ClimbHessianTest, FlatAndFixedVariablesAreLeftOut) {
  using T = TypeParam;
  // Variable 0 is flat in a range of 4, 1 fixed, 2 and 3 are curved.
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return 3 * x[2] * x[2] + x[2] * x[3] + 2 * x[3] * x[3]; },
                   {0, 4, 7, 7, 0, 1, 0, 1}, {1, 7, T(0.5), T(0.5)}, T(1e-3));
  const T d = 6 * 4 - 1;
  const T a = 4 / d * 2;
  const T b = -1 / d * 2;
  const T c = 6 / d * 2;
  // A variance of 1 in scaled units: of the flat one 16 in real ones, of the fixed one 1 as it is.
  EXPECT_EQ(this->Covariance(climb, {1, 7, T(0.5), T(0.25)}),
            (std::vector<T>{16, 0, 0, 0, 0, 1, 0, 0, 0, 0, a, b, 0, 0, b, c}));
}

TYPED_TEST(ClimbHessianTest, NegativeCurvatureCountsAsPositive) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return -x[0] * x[0]; }, {0, 1}, {T(0.5)}, T(1e-3));
  EXPECT_EQ(this->Covariance(climb, {T(0.5)}), (std::vector<T>{1}));
  EXPECT_EQ(this->Hessian(climb, {T(0.5)}), (std::vector<T>{-2}));
}

TYPED_TEST(ClimbHessianTest, MatrixThatCannotBeInvertedRaises) {
  using T = TypeParam;
  // After the first elimination step the second pivot is 0, and four rows are not pivoted.
  Variable second;
  second.SetCppPointer(reinterpret_cast<void*>(
      +[](T_MatVector<T>&, int i, int j, Variable*) { return i < 2 && j < 2 ? T(1) : T(i == j); }));
  T_Climb<T> climb =
      MakeClimb<T>([](const T*) { return T(0); }, {0, 1, 0, 1, 0, 1, 0, 1}, {0, 0, 0, 0}, T(1e-3));
  climb.SetDeriv2Func(second);
  this->Covariance(climb, {0, 0, 0, 0});
  EXPECT_EQ(this->host.TakeError().number, 10);
}

TYPED_TEST(ClimbHessianTest, AfterAQuasiNewtonRunTheCovarianceIsItsMatrix) {
  using T = TypeParam;
  T_Climb<T>::aMinStep = sizeof(T) == 4 ? T(0.001F) : T(5e-6);
  // On the unit square real and scaled coordinates are the same bits.
  T_Climb<T> climb = MakeClimb<T>(
      [](const T* x) {
        const T u = 4 * x[0] - 2;
        const T v = 4 * x[1] - 1;
        return 10 * (v - u * u) * (v - u * u) + (1 - u) * (1 - u);
      },
      {0, 1, 0, 1}, {T(0.25), T(0.5)}, sizeof(T) == 4 ? T(1e-4) : T(1e-9));
  climb.SetSymmetricDerivative(1);
  climb.SolveDFP();
  ASSERT_GT(climb.GetItterationCount(), 2);
  const std::vector<T> inverse = Elements(Access<T>::InverseHessian(climb));
  T_MatVectorCol<T> x(climb.GetResult());
  this->calls.clear();
  const MatrixPointer<T> covariance(climb.GetCovariationMatrix(x));
  EXPECT_TRUE(this->calls.empty());
  EXPECT_EQ(Elements(*covariance), inverse);
  // Anywhere else it is twice the inverse of the Hessian; and once that is asked for, here too.
  delete climb.GetHessian(x);
  EXPECT_FALSE(this->calls.empty());
  const MatrixPointer<T> computed(climb.GetCovariationMatrix(x));
  EXPECT_NE(Elements(*computed), inverse);
}

TYPED_TEST(ClimbHessianTest, SmallAndLargeDimensionsAgreeWithTheExactMatrix) {
  using T = TypeParam;
  T_Climb<T>::aMinStep = sizeof(T) == 4 ? T(0.0625) : T(1.0 / 1024);
  for (const int n : {1, 2, 3, 4, 5, 8, 12}) {
    // f = sum of i*x_i^2/2 + (sum of x_i)^2/2: the Hessian is diag(1..n) + ones.
    std::vector<T> bounds;
    for (int i = 0; i < n; ++i) bounds.insert(bounds.end(), {-1, 1});
    const std::vector<T> x(static_cast<std::size_t>(n), T(0.25));
    T_Climb<T> climb = MakeClimb<T>(
        [n](const T* p) {
          T sum = 0;
          T total = 0;
          for (int i = 0; i < n; ++i) {
            sum += static_cast<T>(i + 1) * p[i] * p[i] / 2;
            total += p[i];
          }
          return sum + total * total / 2;
        },
        bounds, x, T(1e-3));
    const std::vector<T> hessian = this->Hessian(climb, x);
    const std::vector<T> covariance = this->Covariance(climb, x);
    const auto at = [n](int i, int j) { return static_cast<std::size_t>(i * n + j); };
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        EXPECT_NEAR(hessian[at(i, j)], 1 + (i == j ? i + 1 : 0), sizeof(T) == 4 ? 2e-2 : 1e-7);
        T product = 0;
        for (int k = 0; k < n; ++k) product += hessian[at(i, k)] * covariance[at(k, j)];
        EXPECT_NEAR(product, i == j ? 2 : 0, sizeof(T) == 4 ? 1e-2 : 1e-6);
      }
    }
  }
}

}  // namespace
