// Vectors and matrices: products, sums in their stated order, transposes, extremes.

#include "golden_bits.h"
#include "golden_matrices.h"

namespace tarn_golden {
namespace {

template <class T>
void MatrixProducts(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::Mul,MulT", [](Hash& hash) {
    Inputs inputs(41);
    T_Matrix<T> c;
    ForAllSizes([&](Kind kind, int n) {
      const int cols = static_cast<int>(inputs.Integer(1, 40));
      const T_Matrix<T> a = MakeMatrix<T>(inputs, kind, n, n);
      a.Mul(MakeMatrix<T>(inputs, kind, n, cols), c);
      AddMatrix(hash, c);
      a.MulT(MakeMatrix<T>(inputs, kind, cols, n), c);
      AddMatrix(hash, c);
    });
  });
}

template <class T>
void VectorProducts(Report& report, const std::string& type) {
  report.Function("T_Matrix<" + type + ">::RightMultiply,forms", [](Hash& hash) {
    Inputs inputs(42);
    T_MatVectorCol<T> out;
    ForAllSizes([&](Kind kind, int n) {
      const T_Matrix<T> m = MakeMatrix<T>(inputs, kind, n, n);
      const T_MatVectorCol<T> a = MakeVector<T>(inputs, kind, n);
      const T_MatVectorCol<T> b = MakeVector<T>(inputs, kind, n);
      m.RightMultiply(out, a);
      AddVector(hash, out);
      hash.Add(a.Norm2(m));
      hash.Add(m.QuadraticForm(a, b));
      hash.Add(a.MahalonabisDistance(b, m));
      hash.Add(a.MahalonabisCosine(b, m));
    });
  });
}

template <class T>
void Sums(Report& report, const std::string& type) {
  report.Function("T_MatVector<" + type + ">::sums", [](Hash& hash) {
    Inputs inputs(43);
    ForAllSizes([&](Kind kind, int n) {
      const T_MatVectorCol<T> a = MakeVector<T>(inputs, kind, n);
      const T_MatVectorCol<T> b = MakeVector<T>(inputs, kind, n);
      for (const T value : {a.Norm2(), a.Norm(), a.Mean(), a.ScalarMultiply(b), a.Distance(b),
                            a.Cosine(b), a.Max(), a.Min(), a.AbsMax()}) {
        hash.Add(value);
      }
      hash.Add(a.MaxIndex());
      hash.Add(a.MinIndex());
      T_Matrix<T> m = MakeMatrix<T>(inputs, kind, n, 7);
      for (const T value : {m.Tr(), m.GetPower(), m.Convolove(m), m.Mean()}) hash.Add(value);
      m.NormalizeByRow();
      m.Transpose();
      AddMatrix(hash, m);
    });
  });
}

template <class T>
void ElementOperations(Report& report, const std::string& type) {
  report.Function("T_MatVector<" + type + ">::elements", [](Hash& hash) {
    Inputs inputs(44);
    ForAllSizes([&](Kind kind, int n) {
      T_MatVectorCol<T> a = MakeVector<T>(inputs, kind, n);
      const T_MatVectorCol<T> b = MakeVector<T>(inputs, kind, n);
      const T k = MakeElement<T>(inputs, kind);
      a.Add(a, b, k);
      AddVector(hash, a);
      a.Sub(a, b, k);
      a *= k;
      a += T{1};
      a.DivByItem(b);
      AddVector(hash, a);
      a.WeightedSum(a, k, b, 2);
      AddVector(hash, a);
      a.Normalize();
      AddVector(hash, a);
    });
  });
}

template <class T>
void AllOf(Report& report, const std::string& type) {
  MatrixProducts<T>(report, type);
  VectorProducts<T>(report, type);
  Sums<T>(report, type);
  ElementOperations<T>(report, type);
}

}  // namespace

void RunGoldenProducts(Report& report) {
  AllOf<float>(report, "float");
  AllOf<double>(report, "double");
}

}  // namespace tarn_golden
