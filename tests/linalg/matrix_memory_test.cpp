// Matrices when memory runs out, request by request.

#include "linalg/linalg_support.h"
#include "linalg/refuse_each_request.h"

namespace {

template <class T>
class MatrixMemory : public ElementTest<T> {
 protected:
  template <class Work>
  void RefuseEachRequest(Work work) {
    ::RefuseEachRequest(this->host, work);
  }

  /// Element (1, 1) of a matrix that has it, 0 of one whose storage was refused.
  static T Corner(const T_Matrix<T>& m) { return m[0] != nullptr ? m(1, 1) : 0; }
};
TYPED_TEST_SUITE(MatrixMemory, ElementTypes);

TYPED_TEST(MatrixMemory, Constructors) {
  const TypeParam numbers[4] = {1, 2, 3, 4};
  const T_Matrix<TypeParam> source(2, 2, numbers);
  this->RefuseEachRequest([&](bool refused) {
    const T_Matrix<TypeParam> square(2);
    const T_Matrix<TypeParam> copied(2, 2, numbers);
    const T_Matrix<TypeParam> copy(source);
    const T_Matrix<TypeParam> copyOfCopy(copy);
    EXPECT_EQ(square.X(), 2);
    EXPECT_EQ(copyOfCopy.Y(), 2);
    EXPECT_TRUE(this->Corner(copied) == 4 || (refused && copied[0] == nullptr));
    EXPECT_TRUE(this->Corner(copyOfCopy) == 4 || (refused && copyOfCopy[0] == nullptr));
    for (const auto* m : {&square, &copied, &copy, &copyOfCopy}) {
      EXPECT_EQ(MatrixFields<TypeParam>::Data(*m) == nullptr,
                MatrixFields<TypeParam>::Work(*m) == nullptr)
          << "elements and scratch come together";
    }
  });
}

TYPED_TEST(MatrixMemory, SetDimKeepsTheNewShape) {
  this->RefuseEachRequest([&](bool refused) {
    T_Matrix<TypeParam> m(2);
    m.SetDim(3, 4);
    EXPECT_EQ(m.Y(), 3);
    EXPECT_EQ(m.X(), 4);
    EXPECT_TRUE(m[0] != nullptr || refused);
    m *= 2;
    m.Set(1);
    EXPECT_TRUE(this->Corner(m) == 1 || m[0] == nullptr);
  });
}

TYPED_TEST(MatrixMemory, Assignment) {
  const T_Matrix<TypeParam> source = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  this->RefuseEachRequest([&](bool refused) {
    T_Matrix<TypeParam> m(3);
    m = source;
    EXPECT_EQ(m.X(), 2);
    EXPECT_TRUE(this->Corner(m) == 4 || (refused && m[0] == nullptr));
  });
}

TYPED_TEST(MatrixMemory, NewResults) {
  const T_Matrix<TypeParam> a = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  const auto expect = [&](T_Matrix<TypeParam>* result, TypeParam corner, bool refused) {
    const std::unique_ptr<T_Matrix<TypeParam>> owned(result);
    EXPECT_TRUE(refused || result != nullptr);
    if (result == nullptr) return;
    EXPECT_TRUE(this->Corner(*result) == corner || (refused && (*result)[0] == nullptr));
  };
  this->RefuseEachRequest([&](bool refused) { expect(a * a, 22, refused); });
  this->RefuseEachRequest([&](bool refused) { expect(a * 2, 8, refused); });
  this->RefuseEachRequest([&](bool refused) { expect(a + a, 8, refused); });
  this->RefuseEachRequest([&](bool refused) { expect(a - a, 0, refused); });
  this->RefuseEachRequest([&](bool refused) { expect(a + 1, 5, refused); });
  this->RefuseEachRequest([&](bool refused) { expect(a - 1, 3, refused); });
  this->RefuseEachRequest([&](bool refused) { expect(a.T(), 4, refused); });
  T_Array<int> none(0);
  this->RefuseEachRequest([&](bool refused) { expect(a.GetMinor(none, none), 4, refused); });
}

TYPED_TEST(MatrixMemory, LargeProductsNeedNoMoreThanTheirResult) {
  const Dense<TypeParam> elements = MakeMatrix<TypeParam>(70, 70, Kind::kRandom, 1);
  const T_Matrix<TypeParam> a = ToMatrix(elements);
  T_Matrix<TypeParam> c(70);
  T_Matrix<TypeParam> expected(70);
  ASSERT_EQ(a.Mul(a, expected), 1);
  this->host.SetHeapFailure([](std::int64_t) { return true; });
  int done = 0;
  {
    const NewFailure failure([](std::int64_t) { return true; });
    done = a.Mul(a, c) + a.MulT(a, c) + a.Mul(a, c);
  }
  this->host.SetHeapFailure({});
  EXPECT_EQ(done, 3);
  EXPECT_EQ(Contents(c), Contents(expected));
}

TYPED_TEST(MatrixMemory, ProductsIntoAResult) {
  const T_Matrix<TypeParam> a = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  this->RefuseEachRequest([&](bool refused) {
    T_Matrix<TypeParam> c;
    T_Matrix<TypeParam> t;
    const int product = a.Mul(a, c);
    const int transposed = a.MulT(a, t);
    EXPECT_EQ(product, c[0] != nullptr ? 1 : 0);
    EXPECT_EQ(transposed, t[0] != nullptr ? 1 : 0);
    EXPECT_TRUE(refused || (this->Corner(c) == 22 && this->Corner(t) == 25));
  });
}

TYPED_TEST(MatrixMemory, ProductIntoAnOperand) {
  const TypeParam numbers[4] = {1, 2, 3, 4};
  this->RefuseEachRequest([&](bool refused) {
    T_Matrix<TypeParam> a(2, 2, numbers);
    const int done = a[0] != nullptr ? a.Mul(a, a) : 0;
    EXPECT_TRUE(done == 1 || refused);
    EXPECT_TRUE(a[0] == nullptr || this->Corner(a) == (done == 1 ? 22 : 4));
  });
}

TYPED_TEST(MatrixMemory, ProductInPlace) {
  const T_Matrix<TypeParam> b = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  T_Matrix<TypeParam> a = b;
  this->RefuseEachRequest([&](bool refused) {
    a = b;
    a *= b;
    EXPECT_TRUE(this->Corner(a) == 22 || (refused && this->Corner(a) == 4));
  });
}

TYPED_TEST(MatrixMemory, ProductsWithVectors) {
  const T_Matrix<TypeParam> a = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 10});
  this->RefuseEachRequest([&](bool refused) {
    const std::unique_ptr<T_MatVectorCol<TypeParam>> made(a * v);
    EXPECT_TRUE(refused || made != nullptr);
    EXPECT_TRUE(made == nullptr || made->Dim() == 0 || (*made)[1] == 43);
    T_MatVector<TypeParam> out;
    a.Mul(out, v);
    EXPECT_TRUE(out.Dim() == 0 || out[1] == 43);
    EXPECT_TRUE(refused || out.Dim() == 2);
  });
}

TYPED_TEST(MatrixMemory, RowsAndColumns) {
  const T_Matrix<TypeParam> a = Mat<TypeParam>(2, 2, {1, 2, 3, 4});
  this->RefuseEachRequest([&](bool refused) {
    T_MatVector<TypeParam> v;
    a.GetRow(v, 1);
    EXPECT_TRUE((v.Dim() == 2 && v[1] == 4) || (refused && v.Dim() == 0));
    T_MatVector<TypeParam> w;
    a.GetColumn(w, 1);
    EXPECT_TRUE((w.Dim() == 2 && w[1] == 4) || (refused && w.Dim() == 0));
  });
}

TYPED_TEST(MatrixMemory, WeightedSum) {
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 10});
  this->RefuseEachRequest([&](bool refused) {
    T_MatVectorCol<TypeParam> sum;
    sum.WeightedSum(v, 1, v, 1);
    EXPECT_TRUE((sum.Dim() == 2 && sum[1] == 10) || (refused && sum.Dim() == 0));
  });
}

TYPED_TEST(MatrixMemory, OuterProducts) {
  const T_MatVectorCol<TypeParam> v = Col<TypeParam>({1, 10});
  const T_MatVectorRow<TypeParam> row = Row<TypeParam>({1, 10});
  this->RefuseEachRequest([&](bool refused) {
    T_Matrix<TypeParam> m;
    v.RightMultiply(m, row);
    EXPECT_TRUE(this->Corner(m) == 100 || (refused && m[0] == nullptr));
  });
}

}  // namespace
