// Singular value decomposition: named cases, order, signs, factors, and truth from arbitrary
// precision.

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "linalg/solve_support.h"

namespace {

template <class T>
struct Decomposition {
  T_Matrix<T> u;
  T_MatVectorCol<T> w;
  T_Matrix<T> v;
  int status;

  explicit Decomposition(const Dense<T>& a) : u(ToMatrix(a)), status(u.SVD(w, v)) {}
};

template <class T>
Dense<T> Filled(int m, int n, std::vector<T> elements) {
  Dense<T> d(m, n);
  d.elements = std::move(elements);
  return d;
}

template <class T>
class SvdTest : public SolverTest<T> {
 protected:
  static void ExpectOrderAndSigns(const Decomposition<T>& d) {
    for (int i = 0; i < d.w.Dim(); ++i) {
      EXPECT_GE(d.w[i], 0) << i;
      if (i > 0) {
        EXPECT_GE(d.w[i - 1], d.w[i]) << i;
      }
    }
  }

  /// |a - U*diag(w)*transpose(V)| within a few dozen units of n*eps of the norm.
  static void ExpectReconstruction(Decomposition<T>& d, const Dense<T>& a) {
    const double tolerance = 24 * std::max(a.rows, a.cols) * Epsilon<T>() * double{d.w[0]};
    for (int i = 0; i < a.rows; ++i) {
      for (int j = 0; j < a.cols; ++j) {
        double sum = 0;
        for (int k = 0; k < a.cols; ++k) sum += double{d.u(i, k)} * d.w[k] * double{d.v(j, k)};
        ASSERT_NEAR(sum, double{a[i][j]}, tolerance) << i << ' ' << j;
      }
    }
  }

  /// The first `count` columns are orthonormal to a few dozen units of n*eps.
  static void ExpectOrthonormal(const T_Matrix<T>& q, int count) {
    const double tolerance = 24 * std::max(q.X(), q.Y()) * Epsilon<T>();
    for (int i = 0; i < count; ++i) {
      for (int j = 0; j <= i; ++j) {
        double sum = 0;
        for (int k = 0; k < q.Y(); ++k) sum += double{q(k, i)} * double{q(k, j)};
        ASSERT_NEAR(sum, i == j ? 1 : 0, tolerance) << i << ' ' << j;
      }
    }
  }
};
TYPED_TEST_SUITE(SvdTest, ElementTypes);

TYPED_TEST(SvdTest, DiagonalIsSorted) {
  using T = TypeParam;
  Decomposition<T> d(Filled<T>(3, 3, {1, 0, 0, 0, 3, 0, 0, 0, 2}));
  EXPECT_EQ(d.status, 1);
  const std::vector<T> expected{3, 2, 1};
  EXPECT_TRUE(SameElements<T>(d.w, expected.data(), 3));
  const Dense<T> permutation = Filled<T>(3, 3, {0, 0, 1, 1, 0, 0, 0, 1, 0});
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      EXPECT_EQ(d.u(i, j), permutation[i][j]) << i << j;
      EXPECT_EQ(d.v(i, j), permutation[i][j]) << i << j;
    }
  }
}

TYPED_TEST(SvdTest, NegativeEntryGoesIntoAVector) {
  using T = TypeParam;
  Decomposition<T> d(Filled<T>(2, 2, {-1, 0, 0, 2}));
  EXPECT_EQ(d.w[0], 2);
  EXPECT_EQ(d.w[1], 1);
  EXPECT_EQ(d.u(0, 1) * d.v(0, 1), -1);
  EXPECT_EQ(d.u(1, 0) * d.v(1, 0), 1);
}

TYPED_TEST(SvdTest, PositiveMeanMakesColumnSumsOfVPositive) {
  using T = TypeParam;
  for (int n : {2, 5, 30, 110}) {
    Dense<T> a = MakeMatrix<T>(n + 3, n, Kind::kRandom, static_cast<unsigned>(n));
    for (T& element : a.elements) element += 2;
    Decomposition<T> d(a);
    for (int j = 0; j < n; ++j) {
      T sum = 0;
      for (int i = 0; i < n; ++i) sum += d.v(i, j);
      EXPECT_GE(sum, 0) << n << ' ' << j;
    }
  }
}

TYPED_TEST(SvdTest, NegativeMeanMakesColumnSumsOfVNegative) {
  using T = TypeParam;
  Dense<T> a = MakeMatrix<T>(12, 9, Kind::kRandom, 1);
  for (T& element : a.elements) element -= 2;
  Decomposition<T> d(a);
  for (int j = 0; j < 9; ++j) {
    T sum = 0;
    for (int i = 0; i < 9; ++i) sum += d.v(i, j);
    EXPECT_LE(sum, 0) << j;
  }
}

// A column has V = (1) or, after the sign of its singular value was taken, (-1). A mean of 0 leaves
// that, a positive one makes it 1.
TYPED_TEST(SvdTest, ZeroMeanNegatesNothing) {
  using T = TypeParam;
  Decomposition<T> zeroMean(Filled<T>(2, 1, {1, -1}));
  EXPECT_EQ(zeroMean.v(0, 0), -1);
  Decomposition<T> positiveMean(Filled<T>(2, 1, {1, T{-1} / 2}));
  EXPECT_EQ(positiveMean.v(0, 0), 1);
}

TYPED_TEST(SvdTest, NegligibleElementsAreFlushed) {
  using T = TypeParam;
  const T limit = static_cast<T>(std::is_same_v<T, float> ? 1e-15L : 1e-80L);
  Decomposition<T> flushed(Filled<T>(2, 2, {limit, -limit / 2, 0, limit}));
  EXPECT_EQ(flushed.w[0], 0);
  EXPECT_EQ(flushed.w[1], 0);
  Decomposition<T> column(Filled<T>(3, 1, {1, limit, 2}));
  EXPECT_EQ(column.u(1, 0), 0);
  Decomposition<T> kept(Filled<T>(1, 1, {limit * 2}));
  EXPECT_EQ(kept.w[0], limit * 2);
}

TYPED_TEST(SvdTest, NaNIsFlushed) {
  using T = TypeParam;
  Decomposition<T> d(Filled<T>(2, 1, {std::numeric_limits<T>::quiet_NaN(), 3}));
  EXPECT_EQ(d.w[0], 3);
  EXPECT_EQ(std::abs(d.u(0, 0)), 0);
}

TYPED_TEST(SvdTest, ZeroMatrix) {
  using T = TypeParam;
  Decomposition<T> d(Dense<T>(4, 3));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(d.w[i], 0);
  this->ExpectOrthonormal(d.v, 3);
}

TYPED_TEST(SvdTest, NoElementsGiveEmptyFactors) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{0, 0}, {0, 3}, {3, 0}}) {
    Decomposition<T> d(Dense<T>(m, n));
    EXPECT_EQ(d.status, 1);
    EXPECT_EQ(d.w.Dim(), 0);
    EXPECT_EQ(d.v.X(), 0);
    EXPECT_EQ(d.v.Y(), 0);
  }
  EXPECT_EQ(this->RaisedError(), 0);
}

TYPED_TEST(SvdTest, WideMatrixHasExactZerosBeyondItsRows) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{1, 4}, {2, 3}, {5, 9}, {30, 47}, {40, 130}}) {
    const Dense<T> a = MakeMatrix<T>(m, n, Kind::kRandom, static_cast<unsigned>(m));
    Decomposition<T> d(a);
    for (int i = 0; i < n; ++i) EXPECT_EQ(d.w[i] == 0, i >= m) << m << " x " << n << ' ' << i;
    this->ExpectOrderAndSigns(d);
    this->ExpectReconstruction(d, a);
    this->ExpectOrthonormal(d.u, m);
    this->ExpectOrthonormal(d.v, n);
  }
}

TYPED_TEST(SvdTest, FactorsOfRandomMatrices) {
  using T = TypeParam;
  for (const auto& [m, n] : {std::pair{1, 1},
                             {2, 2},
                             {7, 7},
                             {40, 40},
                             {64, 64},
                             {130, 130},
                             {9, 4},
                             {80, 33},
                             {150, 101}}) {
    const Dense<T> a = MakeMatrix<T>(m, n, Kind::kRandom, static_cast<unsigned>(m + n));
    Decomposition<T> d(a);
    EXPECT_EQ(d.status, 1);
    this->ExpectOrderAndSigns(d);
    this->ExpectReconstruction(d, a);
    this->ExpectOrthonormal(d.u, n);
    this->ExpectOrthonormal(d.v, n);
  }
}

TYPED_TEST(SvdTest, NonFiniteElementsEnd) {
  using T = TypeParam;
  for (T bad : {std::numeric_limits<T>::quiet_NaN(), std::numeric_limits<T>::infinity(),
                -std::numeric_limits<T>::infinity()}) {
    for (int position : {0, 1, 41, 1599}) {
      Dense<T> a = MakeMatrix<T>(40, 40, Kind::kRandom, 5);
      a.elements[static_cast<std::size_t>(position)] = bad;
      EXPECT_EQ(Decomposition<T>(a).status, 1);
    }
    Dense<T> all(30, 20);
    all.elements.assign(600, bad);
    EXPECT_EQ(Decomposition<T>(all).status, 1);
  }
}

TYPED_TEST(SvdTest, NullFactorsAreMade) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(5, 4, Kind::kRandom, 6);
  Decomposition<T> expected(a);
  T_Matrix<T> u = ToMatrix(a);
  T_MatVectorCol<T>* w = nullptr;
  T_Matrix<T>* v = nullptr;
  ASSERT_EQ(u.SVD(w, v), 1);
  EXPECT_TRUE(SameElements<T>(*w, expected.w, 4));
  EXPECT_TRUE(SameElements(&v->Item(0), &expected.v.Item(0), 16));
  delete w;
  delete v;
}

TYPED_TEST(SvdTest, PassedFactorsAreUsed) {
  using T = TypeParam;
  const Dense<T> a = MakeMatrix<T>(5, 4, Kind::kRandom, 6);
  T_Matrix<T> u = ToMatrix(a), passedV;
  T_MatVectorCol<T> passedW;
  T_MatVectorCol<T>* w = &passedW;
  T_Matrix<T>* v = &passedV;
  ASSERT_EQ(u.SVD(w, v), 1);
  EXPECT_EQ(w, &passedW);
  EXPECT_EQ(v, &passedV);
  EXPECT_EQ(passedW.Dim(), 4);
  EXPECT_EQ(passedV.Y(), 4);
}

TYPED_TEST(SvdTest, VMayNotBeTheMatrixItself) {
  using T = TypeParam;
  T_Matrix<T> u = ToMatrix(MakeMatrix<T>(5, 4, Kind::kRandom, 7));
  T_MatVectorCol<T> w;
  EXPECT_EQ(u.SVD(w, u), 0);
  EXPECT_EQ(this->RaisedError(), 3);
}

// The superdiagonal, the strips that are rotated and the records of the sort come from the host
// heap from 100 columns on, with factors of the right size at hand.
TYPED_TEST(SvdTest, HeapFrom100ColumnsOn) {
  using T = TypeParam;
  for (int n : {99, 100}) {
    T_Matrix<T> u = ToMatrix(MakeMatrix<T>(120, n, Kind::kRandom, 8)), v(n);
    T_MatVectorCol<T> w(n);
    this->host.SetHeapFailure({});
    ASSERT_EQ(u.SVD(w, v), 1);
    EXPECT_EQ(this->host.HeapRequestCount(), n < 100 ? 0 : 3);
  }
}

/// Opens the protected helpers.
template <class T>
struct MatrixHelpers : T_Matrix<T> {
  using T_Matrix<T>::Pythag;
  using T_Matrix<T>::GetMinTypeValue;
};

TYPED_TEST(SvdTest, Hypotenuse) {
  using T = TypeParam;
  const T huge = std::numeric_limits<T>::max() / 4;
  const T nan = std::numeric_limits<T>::quiet_NaN();
  EXPECT_EQ(MatrixHelpers<T>::Pythag(3, -4), 5);
  EXPECT_EQ(MatrixHelpers<T>::Pythag(-4, 3), 5);
  EXPECT_EQ(MatrixHelpers<T>::Pythag(0, 0), 0);
  EXPECT_EQ(MatrixHelpers<T>::Pythag(-2, 0), 2);
  EXPECT_NEAR(static_cast<double>(MatrixHelpers<T>::Pythag(huge, huge) / huge), std::sqrt(2.0),
              2 * Epsilon<T>());
  EXPECT_EQ(MatrixHelpers<T>::Pythag(nan, 0), 0);
  EXPECT_TRUE(std::isnan(MatrixHelpers<T>::Pythag(0, nan)));
}

TYPED_TEST(SvdTest, SmallestMagnitudeThatCounts) {
  using T = TypeParam;
  EXPECT_EQ(MatrixHelpers<T>::GetMinTypeValue(),
            static_cast<T>(std::is_same_v<T, float> ? 1e-15 : 1e-80));
}

// Truth -------------------------------------------------------------------------------------------

struct TruthCase {
  std::string name;
  Dense<double> matrix;
  std::vector<double> values;
};

std::vector<double> ReadNumbers(std::istream& file, int count) {
  std::vector<double> numbers;
  std::string word;
  while (count-- > 0 && file >> word) numbers.push_back(std::strtod(word.c_str(), nullptr));
  return numbers;
}

/// The matrices of tests/truth/singular_values.txt whose elements the type can hold.
template <class T>
std::vector<TruthCase> ReadTruth() {
  std::ifstream file(TARN_SOURCE_DIR "/tests/truth/singular_values.txt");
  std::vector<TruthCase> cases;
  std::string line;
  while (std::getline(file, line)) {
    std::istringstream words(line);
    std::string keyword, name, precision;
    int rows = 0, cols = 0;
    if (!(words >> keyword >> name >> precision >> rows >> cols) || keyword != "matrix") continue;
    TruthCase truth{name + ", " + precision, Dense<double>(rows, cols), {}};
    truth.matrix.elements = ReadNumbers(file, rows * cols);
    truth.values = ReadNumbers(file, std::min(rows, cols));
    if (std::is_same_v<T, double> || precision == "single") cases.push_back(truth);
  }
  return cases;
}

TYPED_TEST(SvdTest, SingularValuesAgreeWithArbitraryPrecision) {
  using T = TypeParam;
  const std::vector<TruthCase> cases = ReadTruth<T>();
  ASSERT_EQ(cases.size(), (std::is_same_v<T, double> ? 50U : 25U));
  for (const TruthCase& truth : cases) {
    SCOPED_TRACE(truth.name);
    const auto& [name, matrix, values] = truth;
    Dense<T> a(matrix.rows, matrix.cols);
    for (std::size_t k = 0; k < a.elements.size(); ++k) {
      a.elements[k] = static_cast<T>(matrix.elements[k]);
    }
    Decomposition<T> d(a);
    const double tolerance = 8 * std::max(a.rows, a.cols) * Epsilon<T>() * values[0];
    for (std::size_t i = 0; i < values.size(); ++i) {
      EXPECT_NEAR(static_cast<double>(d.w[static_cast<int>(i)]), values[i], tolerance) << i;
    }
    this->ExpectOrderAndSigns(d);
    this->ExpectReconstruction(d, a);
    this->ExpectOrthonormal(d.u, std::min(a.rows, a.cols));
    this->ExpectOrthonormal(d.v, a.cols);
  }
}

}  // namespace
