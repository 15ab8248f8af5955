// T_Climb: construction, scaling, settings, copies, refused storage.

#include "climb_support.h"

namespace {

template <class T>
using Access = tarn::ClimbTestAccess<T>;

template <class T>
T Zero(const T*) {
  return T(0);
}

template <class T>
class ClimbSetupTest : public ClimbTest {};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbSetupTest, Elements);

TYPED_TEST(ClimbSetupTest, FirstConstructorSetsTheDefaultStep) {
  using T = TypeParam;
  T_Climb<T>::aMinStep = 0;
  MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-3));
  EXPECT_EQ(T_Climb<T>::aMinStep, sizeof(T) == 4 ? T(0.001F) : T(5e-6));
  T_Climb<T>::aMinStep = T(0.25);
  MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-3));
  EXPECT_EQ(T_Climb<T>::aMinStep, T(0.25));
}

TYPED_TEST(ClimbSetupTest, DefaultStepsOfTheTwoTypesAreApart) {
  T_Climb<float>::aMinStep = 0;
  T_Climb<double>::aMinStep = 0;
  MakeClimb<float>(Zero<float>, {0, 1}, {0}, 1e-3F);
  EXPECT_EQ(T_Climb<double>::aMinStep, 0);
}

TYPED_TEST(ClimbSetupTest, DefaultsAreAsDocumented) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 1, 0, 2}, {T(0.5), 1}, T(1e-3));
  EXPECT_EQ(climb.GetDimension(), 2);
  EXPECT_EQ(climb.GetSymmetricDerivative(), 0);
  EXPECT_EQ(climb.GetExtraParam().TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(climb.GetStopReason(), tarn::StopReason::kNotRun);
  EXPECT_EQ(climb.GetEvaluationCount(), 0);
  EXPECT_EQ(Access<T>::MaxRealtiveStepNorm(climb), T(0.1));
  EXPECT_EQ(Access<T>::CovarianceFlag(climb), 1);
  EXPECT_EQ(Access<T>::InverseHessian(climb).Y(), 2);
  EXPECT_EQ(Access<T>::CovarianceCache(climb).X(), 2);
  EXPECT_EQ(Access<T>::HessianCache(climb).X(), 2);
  EXPECT_EQ(Access<T>::CachedPoint(climb).Dim(), 2);
  const T step = T_Climb<T>::aMinStep;
  EXPECT_EQ(Values(Access<T>::Directions(climb)[0]), (std::vector<T>{step, 0}));
  EXPECT_EQ(Values(Access<T>::Directions(climb)[1]), (std::vector<T>{0, step}));
  EXPECT_TRUE(RecordedObjective<T>::calls.empty());
}

TYPED_TEST(ClimbSetupTest, FieldsFollowEachOtherInTheirOrder) {
  using T = TypeParam;
  const T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-3));
  const std::vector<const void*> fields = Access<T>::FieldAddresses(climb);
  for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
}

TYPED_TEST(ClimbSetupTest, StartIsScaledAndMovedOntoTheBox) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 4, -2, 2, 0, 1, 0, 1}, {1, 1, -3, 7}, T(1e-3));
  EXPECT_EQ(Values(Access<T>::ScaledStart(climb)), (std::vector<T>{T(0.25), T(0.75), 0, 1}));
  EXPECT_EQ(Values(Access<T>::StartPoint(climb)), (std::vector<T>{1, 1, -3, 7}));
  EXPECT_EQ(Values(Access<T>::InvRange(climb)), (std::vector<T>{T(0.25), T(0.25), 1, 1}));
}

TYPED_TEST(ClimbSetupTest, SetStartPointDoesNotMoveTheStart) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 4, 3, 3}, {1, 3}, T(1e-3));
  T_MatVectorCol<T> start = Vector<T>({6, 8});
  climb.SetStartPoint(start);
  EXPECT_EQ(Values(Access<T>::ScaledStart(climb)), (std::vector<T>{T(1.5), 0}));
  start = Vector<T>({-2, 8});
  climb.SetStartPoint(start);
  EXPECT_EQ(Values(Access<T>::ScaledStart(climb)), (std::vector<T>{T(-0.5), 0}));
}

TYPED_TEST(ClimbSetupTest, VariablesWithoutAUsableRangeAreFixed) {
  using T = TypeParam;
  const T infinity = std::numeric_limits<T>::infinity();
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const T tiny = std::numeric_limits<T>::denorm_min();
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {2, 2, 0, infinity, -infinity, 0, 0, nan, 0, tiny},
                                  {9, 9, 9, 9, 9}, T(1e-3));
  EXPECT_EQ(Values(Access<T>::InvRange(climb)), std::vector<T>(5, 0));
  EXPECT_EQ(Values(Access<T>::ScaledStart(climb)), std::vector<T>(5, 0));
  T_MatVectorCol<T> s = Vector<T>({T(0.5), T(0.5), T(0.5), T(0.5), T(0.5)});
  EXPECT_EQ(climb.ScaleResult(s)[0], 2);
  EXPECT_EQ(climb.ScaleResult(s)[1], 0);
  EXPECT_EQ(climb.ScaleResult(s)[2], -infinity);
}

TYPED_TEST(ClimbSetupTest, ResultsShareOneBuffer) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 4, 5, 5}, {1, 5}, T(1e-3));
  T_MatVectorCol<T> s = Vector<T>({T(0.75), T(0.3)});
  T_MatVectorCol<T>& first = climb.ScaleResult(s);
  EXPECT_EQ(Values(first), (std::vector<T>{3, 5}));
  Access<T>::Best(climb) = Vector<T>({T(0.5), 0});
  T_MatVectorCol<T>& second = climb.GetResult();
  EXPECT_EQ(&first, &second);
  EXPECT_EQ(Values(first), (std::vector<T>{2, 5}));
}

TYPED_TEST(ClimbSetupTest, StepsAreScaled) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 4, -1, 7, 3, 3}, {1, 1, 3}, T(1e-3));
  T_MatVectorCol<T> steps = Vector<T>({T(4) / 1000, 2, 1});
  climb.SetMinStep(steps);
  climb.SetMaxStep(steps);
  EXPECT_EQ(Values(Access<T>::MinStep(climb)), (std::vector<T>{T(4) / 1000 * T(0.25), T(0.25), 0}));
  EXPECT_EQ(Values(Access<T>::MaxStep(climb)), Values(Access<T>::MinStep(climb)));
  Access<T>::InitStep(climb);
  EXPECT_EQ(Access<T>::Directions(climb)[0][0], T(4) / 1000 * T(0.25));
  EXPECT_EQ(Access<T>::Directions(climb)[1][1], T(0.25));
  EXPECT_EQ(Access<T>::Directions(climb)[2][2], T_Climb<T>::aMinStep);  // no step of its own
  EXPECT_EQ(Access<T>::Directions(climb)[0][1], 0);
}

TYPED_TEST(ClimbSetupTest, VectorsOfAnotherDimensionAreIgnored) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 4, -1, 7}, {1, 1}, T(1e-3));
  T_MatVectorCol<T> three = Vector<T>({1, 2, 3});
  T_MatVectorCol<T> one = Vector<T>({1});
  for (auto* vector : {&three, &one}) {
    climb.SetStartPoint(*vector);
    climb.SetMinStep(*vector);
    climb.SetMaxStep(*vector);
    climb.SolveByCoord(*vector);
    EXPECT_EQ(climb.FindMiniumByDirection(T(3), *vector, 0), T(3));
    EXPECT_EQ(climb.GetHessian(*vector), nullptr);
    EXPECT_EQ(climb.GetCovariationMatrix(*vector), nullptr);
    T_MatVectorCol<T> gradient;
    climb.GetGradient(gradient, *vector);
    EXPECT_EQ(gradient.Dim(), 0);
  }
  EXPECT_EQ(Values(Access<T>::StartPoint(climb)), (std::vector<T>{1, 1}));
  EXPECT_TRUE(RecordedObjective<T>::calls.empty());
}

TYPED_TEST(ClimbSetupTest, NoVariablesEndAtOnce) {
  using T = TypeParam;
  for (const int n : {0, -3}) {
    Variable function = RecordedObjective<T>::Make([](const T*) { return T(5); });
    T_Climb<T> climb(function, n, nullptr, nullptr, T(1e-3));
    EXPECT_EQ(climb.GetDimension(), 0);
    climb.Solve();
    climb.SolvePowell();
    climb.SolvePowell(0);
    climb.SolveBFGS();
    climb.SolveDFP();
    T_MatVectorCol<T> none;
    climb.SolveByCoord(none);
    EXPECT_FALSE(this->host.HasError());
    EXPECT_EQ(climb.GetResult().Dim(), 0);
    T_Matrix<T>* covariance = climb.GetCovariationMatrix(none);
    ASSERT_NE(covariance, nullptr);
    EXPECT_EQ(covariance->Y(), 0);
    delete covariance;
    EXPECT_LT(RecordedObjective<T>::calls.size(), 20U);
  }
}

TYPED_TEST(ClimbSetupTest, ExtraParameterIsACopyThatCallersCanRead) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-3));
  Variable extra(std::int32_t{7});
  climb.SetExtraParam(extra);
  extra = 8;
  EXPECT_EQ(climb.GetExtraParam().GetInt32Numb(), 7);
  T_MatVectorCol<T> x = Vector<T>({0});
  climb.Func(x);
  EXPECT_EQ(RecordedObjective<T>::lastExtra, &climb.GetExtraParam());
}

TYPED_TEST(ClimbSetupTest, GradientFunctionIsKeptAndNeverCalled) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb<T>([](const T* x) { return x[0] * x[0]; }, {-1, 2}, {1}, T(1e-3));
  Variable gradient = this->Script("function() error('called') end");
  climb.SetGradFunc(gradient);
  T_Climb<T> copy(climb);
  EXPECT_EQ(Access<T>::GradFunc(copy).TypeWord(), gradient.TypeWord());
  climb.Solve();
  EXPECT_FALSE(this->host.HasError());
}

TYPED_TEST(ClimbSetupTest, CopiesShareNothing) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return (x[0] - 1) * (x[0] - 1) + (x[1] + 1) * (x[1] + 1); },
                   {-3, 3, -3, 3}, {0, 0}, T(1e-3));
  climb.SetMaxRealtiveStepNorm(T(0.5));
  climb.SolveBFGS();
  T_Climb<T> copy(climb);
  EXPECT_EQ(Values(copy.GetResult()), Values(climb.GetResult()));
  EXPECT_EQ(copy.GetEvaluationCount(), climb.GetEvaluationCount());
  EXPECT_EQ(copy.GetStopReason(), climb.GetStopReason());
  EXPECT_EQ(Access<T>::MaxRealtiveStepNorm(copy), T(0.5));
  T_Climb<T> assigned = MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-3));
  assigned = copy;
  assigned = *&assigned;
  EXPECT_EQ(assigned.GetDimension(), 2);
  const auto before = Values(climb.GetResult());
  T_MatVectorCol<T> start = Vector<T>({2, 2});
  assigned.SetStartPoint(start);
  RecordedObjective<T>::f = [](const T* x) { return x[0] + x[1]; };
  assigned.Solve();
  EXPECT_EQ(Values(assigned.GetResult()), (std::vector<T>{-3, -3}));
  EXPECT_EQ(Values(climb.GetResult()), before);
  EXPECT_EQ(Values(copy.GetResult()), before);
  EXPECT_NE(static_cast<T*>(Access<T>::Directions(copy)[0]),
            static_cast<T*>(Access<T>::Directions(climb)[0]));
}

/// Fails unless both objects hold the same in every field. The numbers are those of the fields in
/// the order of their declaration.
template <class T>
void ExpectSameFields(const T_Climb<T>& actual, const T_Climb<T>& expected) {
  const std::vector<const void*> a = Access<T>::FieldAddresses(actual);
  const std::vector<const void*> b = Access<T>::FieldAddresses(expected);
  const auto each = [&]<class Field>(std::initializer_list<std::size_t> fields, const Field*,
                                     const auto& read) {
    for (const std::size_t i : fields) {
      EXPECT_EQ(read(*static_cast<const Field*>(a[i])), read(*static_cast<const Field*>(b[i])))
          << "field " << i;
    }
  };
  each({0, 28}, static_cast<const T*>(nullptr), [](T x) { return x; });
  each({1, 2, 3, 5, 17, 19, 22, 23, 29}, static_cast<const int*>(nullptr), [](int x) { return x; });
  // The copy of a reference is the value referred to.
  each({4, 6, 7, 8, 9, 10}, static_cast<const Variable*>(nullptr), [](const Variable& x) {
    return x.TypeWord() == VARTYPE_CPP_POINTER ? reinterpret_cast<std::intptr_t>(x.GetCppPointer())
                                               : std::intptr_t{x.GetInt32Numb()};
  });
  each({11, 12, 13, 14, 15, 16, 18, 20, 27}, static_cast<const T_MatVectorCol<T>*>(nullptr),
       [](const T_MatVectorCol<T>& x) { return Values(x); });
  each({21}, static_cast<T_MatVectorCol<T>* const*>(nullptr),
       [](const T_MatVectorCol<T>* x) { return std::pair(Values(x[0]), Values(x[1])); });
  each({24, 25, 26}, static_cast<const T_Matrix<T>*>(nullptr), [](const T_Matrix<T>& x) {
    return std::vector<T>{x(0, 0), x(0, 1), x(1, 0), x(1, 1)};
  });
}

template <class T>
T Slope(T_MatVector<T>& x, int i, Variable* /*extra*/) {
  return 2 * x[i];
}

TYPED_TEST(ClimbSetupTest, CopiesTakeEveryField) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return x[0] * x[0] + x[1] * x[1] + x[0] * x[1]; },
                   {-3, 3, -2, 3}, {2, 1}, T(1e-3));
  climb.Solve();  // fills points, directions and matrices
  T_MatVectorCol<T> x(climb.GetResult());
  delete climb.GetCovariationMatrix(x);
  T_MatVectorCol<T> steps = Vector<T>({T(0.25), T(0.5)});
  climb.SetMinStep(steps);
  steps = Vector<T>({1, 2});
  climb.SetMaxStep(steps);
  climb.SetMaxItterationNumber(17);
  climb.SetSymmetricDerivative(1);
  climb.SetSilent(0);
  climb.SetErrorIfMaxItterNumberExceed(0);
  climb.SetLimitDirectionStep(1);
  climb.SetMaxRealtiveStepNorm(T(0.5));
  Access<T>::CovarianceFlag(climb) = 0;
  Variable value(std::int32_t{7});
  climb.SetExtraParam(value);
  value = 8;
  climb.SetProgressWnd(value);
  Variable slope;
  slope.SetCppPointer(reinterpret_cast<void*>(&Slope<T>));
  climb.SetDerivFunc(slope);
  slope.SetCppPointer(&slope);  // never called
  climb.SetDeriv2Func(slope);
  Variable other(std::int32_t{9});
  climb.SetGradFunc(other);
  const T_Climb<T> copy(climb);
  ExpectSameFields(copy, climb);
  T_Climb<T> assigned = MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-2));
  assigned = climb;
  ExpectSameFields(assigned, climb);
}

TYPED_TEST(ClimbSetupTest, AssignmentDoesNotWriteToTheProgressWindowOfTheTarget) {
  using T = TypeParam;
  T_Climb<T> first = MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-3));
  T_Climb<T> second = MakeClimb<T>(Zero<T>, {0, 1}, {0}, T(1e-3));
  Variable windowOfFirst(std::int32_t{1});
  Variable windowOfSecond(std::int32_t{2});
  first.SetProgressWnd(windowOfFirst);
  second.SetProgressWnd(windowOfSecond);
  first = second;
  EXPECT_EQ(windowOfFirst.GetInt32Numb(), 1);
  EXPECT_EQ(windowOfSecond.GetInt32Numb(), 2);
}

TYPED_TEST(ClimbSetupTest, RefusedStorageLeavesAMinimiserOfNoVariables) {
  using T = TypeParam;
  Variable function = RecordedObjective<T>::Make(Zero<T>);
  T bounds[4] = {0, 1, 0, 1};
  T start[2] = {0, 0};
  for (std::int64_t refused = 1; refused <= 3; ++refused) {
    this->host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    T_Climb<T> climb(function, 2, bounds, start, T(1e-3));
    this->host.SetHeapFailure({});
    EXPECT_EQ(climb.GetDimension(), 0) << refused;
    climb.Solve();
  }
}

TYPED_TEST(ClimbSetupTest, RefusedTableEndsLineSearches) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return (x[0] - 1) * (x[0] - 1); }, {-3, 3}, {0}, T(1e-3));
  for (std::int64_t granted = 0; granted < 12; ++granted) {
    this->host.SetHeapFailure([granted](std::int64_t request) { return request > granted; });
    climb.Solve();
    this->host.SetHeapFailure({});
    const T x = climb.GetResult()[0];
    EXPECT_GE(x, -3);
    EXPECT_LE(x, 3);
    this->host.TakeError();
    if (granted < 3) {
      EXPECT_EQ(climb.GetStopReason(), tarn::StopReason::kMemoryExhausted);
    }
  }
  climb.Solve();
  EXPECT_NEAR(climb.GetResult()[0], 1, 1e-2);
}

}  // namespace
