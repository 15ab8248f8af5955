/// The script function table as the host sees it: order, texts, and every row called with every
/// kind of argument.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "frame/module_entry.h"
#include "host/embedded_host.h"

namespace {

const std::vector<std::string> kSignatures = {
    "Conjugate(any)",
    "BesselJ0(any)",
    "BesselJ1(any)",
    "BesselJn(number, any)",
    "BesselJpn(number, any)",
    "BesselY0(any)",
    "BesselY1(any)",
    "BesselYn(number, any)",
    "BesselYpn(number, any)",
    "BesselI0(any)",
    "BesselI1(any)",
    "BesselIn(number, any)",
    "LnBesselIn(number, any)",
    "BesselIpn(number, any)",
    "LnBesselIpn(number, any)",
    "BesselK0(any)",
    "BesselK1(any)",
    "BesselKn(number, any)",
    "BesselKpn(number, any)",
    "LnGamma(any)",
    "Gamma_P(number, number)",
    "LnGamma_P(number, number)",
    "Gamma_Q(number, number)",
    "LnGamma_Q(number, number)",
    "Beta_I(number, number, number)",
    "LnBeta_I(number, number, number)",
    "Beta(number, number)",
    "LnBeta(number, number)",
    "ProbChi2(number, number)",
    "FTest(refer object Vector, refer object Vector)",
    "Errf(any)",
    "Errf1(any)",
    "CErrf(any)",
    "LnCErrf(any)",
    "Sinc(any)",
    "RandGauss(number, number)",
    "RandGaus(number, number)",
    "RandPoisson(number)",
    "RandBinominal(number, int)",
    "Psi(any)",
    "LnPsi(any)",
};

const ScriptFunction* Table() {
  return reinterpret_cast<TarnGetScriptFunctions>(
      tarn_ordinals[TARN_ORDINAL_GET_SCRIPT_FUNCTIONS])();
}

ScriptHandler HandlerOf(const std::string& name) {
  for (const ScriptFunction* row = Table(); row->handler != nullptr; ++row) {
    if (std::string(row->signature).starts_with(name + "(")) return row->handler;
  }
  return nullptr;
}

TEST(Ordinals, TheFirstTwoAreEmptyAndTheFourEntriesThere) {
  EXPECT_EQ(tarn_ordinals[0], nullptr);
  EXPECT_EQ(tarn_ordinals[1], nullptr);
  for (unsigned ordinal = 2; ordinal < TARN_ORDINAL_COUNT; ++ordinal) {
    EXPECT_NE(tarn_ordinals[ordinal], nullptr) << ordinal;
  }
  const auto* aux = static_cast<const unsigned char*>(
      reinterpret_cast<TarnGetAuxTable>(tarn_ordinals[TARN_ORDINAL_GET_AUX_TABLE])());
  EXPECT_EQ(aux[0], 0);
}

TEST(ScriptTable, HasTheseRowsInThisOrderAndATerminator) {
  const ScriptFunction* row = Table();
  for (const std::string& signature : kSignatures) {
    ASSERT_NE(row->handler, nullptr) << signature;
    EXPECT_EQ(row->signature, signature);
    ++row;
  }
  EXPECT_EQ(row->handler, nullptr);
  EXPECT_STREQ(row->signature, "");
}

TEST(ScriptTable, RandGausIsASecondNameOfRandGauss) {
  EXPECT_EQ(HandlerOf("RandGaus"), HandlerOf("RandGauss"));
}

/// A module in a host, and every row of the table that dispatches on its last argument.
class ScriptDispatch : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(host.Load(TARN_MODULE_PATH)) << host.TakeError().ToString(); }

  static std::vector<ScriptFunction> DispatchingRows() {
    std::vector<ScriptFunction> rows;
    for (const ScriptFunction* row = Table(); row->handler != nullptr; ++row) {
      const std::string signature = row->signature;
      if (signature.ends_with("any)") && !signature.starts_with("Conjugate")) rows.push_back(*row);
    }
    return rows;
  }

  /// Runs a row's handler over `argument`; rows with an order get `order`.
  static void Run(const ScriptFunction& row, VarRegister& result, Variable& argument,
                  double order = 2.5) {
    VarRegister arguments[2];
    const bool ordered = std::string(row.signature).find("number, any") != std::string::npos;
    if (ordered) arguments[0] = order;
    arguments[ordered ? 1 : 0].PointTo(&argument);
    row.handler(result, arguments);
  }

  static double RunOnNumber(const ScriptFunction& row, double x, double order = 2.5) {
    Variable argument;
    argument = x;
    VarRegister result;
    Run(row, result, argument, order);
    EXPECT_NE(result.GetVar().IsNumber(), 0) << row.signature;
    return result;
  }

  static void Fill(Variable& values, const std::vector<double>& numbers) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      values[static_cast<std::int64_t>(i)] = numbers[i];
    }
  }

  static Variable MakeArray(const std::vector<double>& numbers) {
    Variable array(VARTYPE_ARRAY, static_cast<std::int64_t>(numbers.size()));
    Fill(array, numbers);
    return array;
  }

  Variable MakeInstance(const char* className, int argument) {
    VarRegister arguments[1];
    arguments[0] = argument;
    Variable object;
    EXPECT_NE(host.GetProcessor().MakeInstance(object, className, arguments, 1), 0) << className;
    return object;
  }

  Variable MakeTabulatedFunction(const std::vector<double>& x, const std::vector<double>& y) {
    Variable abscissae = MakeArray(x);
    Variable ordinates = MakeArray(y);
    VarRegister arguments[2];
    arguments[0].PointTo(&abscissae);
    arguments[1].PointTo(&ordinates);
    Variable object;
    EXPECT_NE(host.GetProcessor().MakeInstance(object, "TFunc", arguments, 2), 0);
    return object;
  }

  EmbeddedHost host;
  const std::vector<double> numbers = {0.5, 1.0, 2.5, 7.0, 31.0};
};

TEST_F(ScriptDispatch, TwentySixRowsDispatchOnTheirLastArgument) {
  EXPECT_EQ(DispatchingRows().size(), 26u);
}

TEST_F(ScriptDispatch, AnArrayGivesAnArrayOfTheSameNumbers) {
  for (const ScriptFunction& row : DispatchingRows()) {
    Variable array = MakeArray(numbers);
    VarRegister result;
    Run(row, result, array);
    ASSERT_EQ(result.GetVar().TypeWord(), VARTYPE_ARRAY) << row.signature;
    ASSERT_EQ(result.GetVar().GetDim(), 5) << row.signature;
    for (std::int64_t i = 0; i < 5; ++i) {
      const double x = numbers[static_cast<std::size_t>(i)];
      EXPECT_EQ(result.GetVar()[i].GetDoubleNumb(), RunOnNumber(row, x))
          << row.signature << " at " << x;
      EXPECT_EQ(array[i].GetDoubleNumb(), x) << "the argument is unchanged";
    }
  }
}

TEST_F(ScriptDispatch, AnArrayObjectGivesAPlainArray) {
  Variable object = MakeInstance("Array", 5);
  Fill(object, numbers);
  ASSERT_NE(object.IsInheritFrom(VARCLASS_ARRAY), 0);
  for (const ScriptFunction& row : DispatchingRows()) {
    VarRegister result;
    Run(row, result, object);
    ASSERT_EQ(result.GetVar().TypeWord(), VARTYPE_ARRAY) << row.signature;
    EXPECT_EQ(result.GetVar()[4].GetDoubleNumb(), RunOnNumber(row, numbers[4])) << row.signature;
  }
}

TEST_F(ScriptDispatch, AnEmptyArrayGivesAnEmptyArray) {
  for (const ScriptFunction& row : DispatchingRows()) {
    Variable array = MakeArray({});
    VarRegister result;
    Run(row, result, array);
    EXPECT_EQ(result.GetVar().TypeWord(), VARTYPE_ARRAY) << row.signature;
    EXPECT_EQ(result.GetVar().GetDim(), 0) << row.signature;
  }
}

TEST_F(ScriptDispatch, NestedArraysAreNotDescendedInto) {
  Variable outer(VARTYPE_ARRAY, 2);
  outer[0] = MakeArray(numbers);
  outer[1] = 1.0;
  VarRegister result;
  VarRegister arguments[1];
  arguments[0].PointTo(&outer);
  HandlerOf("Sinc")(result, arguments);
  EXPECT_EQ(result.GetVar().GetDim(), 2);
  EXPECT_NE(result.GetVar()[0].IsNumber(), 0);
  EXPECT_EQ(result.GetVar()[1].GetDoubleNumb(), std::sin(1.0));
}

TEST_F(ScriptDispatch, AVectorValueIsOneNumber) {
  Variable vector = MakeInstance("Vector", 2);
  Fill(vector, {3.0, 4.0});
  const double asNumber = vector.GetDoubleNumb();
  for (const ScriptFunction& row : DispatchingRows()) {
    VarRegister result;
    Run(row, result, vector);
    EXPECT_NE(result.GetVar().IsNumber(), 0) << row.signature;
    EXPECT_EQ(static_cast<double>(result), RunOnNumber(row, asNumber)) << row.signature;
  }
}

TEST_F(ScriptDispatch, ATabulatedFunctionKeepsItsAbscissae) {
  const std::vector<double> x = {-1.0, 0.0, 2.0, 4.0, 9.0};
  for (const ScriptFunction& row : DispatchingRows()) {
    Variable function = MakeTabulatedFunction(x, numbers);
    VarRegister result;
    Run(row, result, function);
    Variable& mapped = result.GetVar();
    ASSERT_TRUE(mapped.IsObject()) << row.signature;
    EXPECT_NE(mapped.GetClass()->IsInheritFrom(Token::GetNameID("TFunc")), 0);
    for (std::int64_t i = 0; i < 5; ++i) {
      const auto k = static_cast<std::size_t>(i);
      EXPECT_EQ(mapped("X")[i].GetDoubleNumb(), x[k]) << row.signature;
      EXPECT_EQ(mapped("Y")[i].GetDoubleNumb(), RunOnNumber(row, numbers[k])) << row.signature;
      EXPECT_EQ(function("Y")[i].GetDoubleNumb(), numbers[k]) << "the argument is unchanged";
    }
  }
}

TEST_F(ScriptDispatch, ATabulatedFunctionWithoutOrdinatesIsCopied) {
  for (const ScriptFunction& row : DispatchingRows()) {
    Variable function = MakeTabulatedFunction({}, {});
    VarRegister result;
    Run(row, result, function);
    EXPECT_NE(result.GetVar().GetClass()->IsInheritFrom(Token::GetNameID("TFunc")), 0);
    EXPECT_EQ(result.GetVar()("Y").GetDim(), 0);
    EXPECT_FALSE(host.HasError());
  }
}

TEST_F(ScriptDispatch, OrdinatesThatAreBytesAreCopied) {
  for (const ScriptFunction& row : DispatchingRows()) {
    Variable function = MakeTabulatedFunction(numbers, numbers);
    function("Y").Init(VARTYPE_BYTES, 16);
    VarRegister result;
    Run(row, result, function);
    EXPECT_EQ(result.GetVar()("Y").TypeWord(), VARTYPE_BYTES);
    EXPECT_FALSE(host.HasError());
  }
}

TEST_F(ScriptDispatch, OtherKindsRaiseErrorThreeAndLeaveTheResult) {
  Variable text;
  VarRegister textRegister;
  textRegister = "a text";
  Variable bytes(VARTYPE_BYTES, 8);
  Variable empty;
  Variable window;
  ASSERT_NE(host.GetProcessor().MakeInstance(window, "ProgressWnd", nullptr, 0), 0);
  for (const ScriptFunction& row : DispatchingRows()) {
    for (Variable* argument : {&textRegister.GetVar(), &bytes, &empty, &window}) {
      VarRegister result;
      result = 12.25;
      Run(row, result, *argument);
      EXPECT_EQ(host.TakeError().number, 3) << row.signature;
      EXPECT_EQ(static_cast<double>(result), 12.25) << row.signature;
    }
  }
}

TEST_F(ScriptDispatch, TheResultRegisterMayBeTheArgument) {
  for (const ScriptFunction& row : DispatchingRows()) {
    Variable number;
    number = 2.5;
    Variable array = MakeArray(numbers);
    Variable function = MakeTabulatedFunction(numbers, numbers);
    for (Variable* value : {&number, &array, &function}) {
      VarRegister result;
      result.PointTo(value);
      Run(row, result, *value);
    }
    EXPECT_EQ(number.GetDoubleNumb(), RunOnNumber(row, 2.5)) << row.signature;
    for (std::int64_t i = 0; i < 5; ++i) {
      const double expected = RunOnNumber(row, numbers[static_cast<std::size_t>(i)]);
      EXPECT_EQ(array[i].GetDoubleNumb(), expected) << row.signature;
      EXPECT_EQ(function("Y")[i].GetDoubleNumb(), expected) << row.signature;
    }
  }
}

TEST_F(ScriptDispatch, TheArgumentMayBePartOfTheResult) {
  for (const ScriptFunction& row : DispatchingRows()) {
    const auto run = [&](const Variable& argument) {
      Variable outer(VARTYPE_ARRAY, 2);
      outer[0] = argument;
      VarRegister result;
      result.PointTo(&outer);
      Run(row, result, outer[0]);
      return outer;
    };
    Variable array = run(MakeArray(numbers));
    Variable function = run(MakeTabulatedFunction(numbers, numbers));
    ASSERT_EQ(array.GetDim(), 5) << row.signature;
    ASSERT_TRUE(function.IsObject()) << row.signature;
    for (std::int64_t i = 0; i < 5; ++i) {
      const double expected = RunOnNumber(row, numbers[static_cast<std::size_t>(i)]);
      EXPECT_EQ(array[i].GetDoubleNumb(), expected) << row.signature;
      EXPECT_EQ(function("Y")[i].GetDoubleNumb(), expected) << row.signature;
    }
  }
}

TEST_F(ScriptDispatch, ARefusedResultArrayIsEmpty) {
  Variable array = MakeArray(numbers);
  VarRegister arguments[1];
  arguments[0].PointTo(&array);
  VarRegister result;
  host.SetHeapFailure([](std::int64_t) { return true; });
  HandlerOf("LnGamma")(result, arguments);
  host.SetHeapFailure({});
  EXPECT_EQ(result.GetVar().GetDim(), 0);
}

TEST_F(ScriptDispatch, AnErrorInOneElementStoresZeroAndGoesOn) {
  // Real orders are defined for x > 0 only.
  Variable array = MakeArray({1.0, -1.0, 2.0});
  VarRegister arguments[2];
  arguments[0] = 0.5;
  arguments[1].PointTo(&array);
  VarRegister result;
  HandlerOf("BesselJn")(result, arguments);
  EXPECT_EQ(host.TakeError().number, 3);
  EXPECT_NE(result.GetVar()[0].GetDoubleNumb(), 0.0);
  EXPECT_EQ(result.GetVar()[1].GetDoubleNumb(), 0.0);
  // J of order 1/2 is sqrt(2 / (pi x)) sin x.
  EXPECT_NEAR(result.GetVar()[2].GetDoubleNumb(), std::sqrt(1.0 / M_PI) * std::sin(2.0), 1e-15);
}

TEST_F(ScriptDispatch, SincOfZeroIsExactlyOneAlsoInAnArray) {
  Variable array = MakeArray({0.0, -0.0, 1.0});
  VarRegister arguments[1];
  arguments[0].PointTo(&array);
  VarRegister result;
  HandlerOf("Sinc")(result, arguments);
  EXPECT_EQ(result.GetVar()[0].GetDoubleNumb(), 1.0);
  EXPECT_EQ(result.GetVar()[1].GetDoubleNumb(), 1.0);
  EXPECT_EQ(result.GetVar()[2].GetDoubleNumb(), std::sin(1.0));
}

TEST_F(ScriptDispatch, PsiSwitchesToItsAsymptoteAtThirty) {
  const auto evaluate = [](const char* name, double x) {
    VarRegister arguments[1];
    arguments[0] = x;
    VarRegister result;
    HandlerOf(name)(result, arguments);
    return static_cast<double>(result);
  };
  EXPECT_EQ(evaluate("Psi", 30.0), 30.0);
  EXPECT_EQ(evaluate("LnPsi", 30.0), std::log(30.0));
  const double below = std::nextafter(30.0, 0.0);
  // The ratio of density to upper tail is x + 1/x - 2/x^3 + ... (Abramowitz and Stegun 26.2.12).
  EXPECT_NEAR(evaluate("Psi", below), 30.0333, 0.05);
  EXPECT_NE(evaluate("Psi", below), below);
  EXPECT_TRUE(std::isnan(evaluate("Psi", NAN)));
  EXPECT_TRUE(std::isnan(evaluate("LnPsi", NAN)));
  // At 0 the ratio is sqrt(2 / pi).
  EXPECT_NEAR(evaluate("Psi", 0.0), 0.7978845608, 1.2e-7);
  EXPECT_NEAR(evaluate("LnPsi", 0.0), std::log(0.7978845608), 1.2e-7);
}

TEST_F(ScriptDispatch, ErrfIsOddAndZeroAtZero) {
  const auto errf = [](double x) {
    VarRegister arguments[1];
    arguments[0] = x;
    VarRegister result;
    HandlerOf("Errf")(result, arguments);
    return static_cast<double>(result);
  };
  EXPECT_EQ(errf(0.0), 0.0);
  for (const double x : {0.1, 0.5, 1.0, 2.0, 5.0}) {
    EXPECT_EQ(errf(-x), -errf(x));
    EXPECT_NEAR(errf(x), std::erf(x), 1e-9);
  }
}

TEST_F(ScriptDispatch, IntegralOrdersTakeTheLibraryFunction) {
  const auto besselJn = [](double order, double x) {
    VarRegister arguments[2];
    arguments[0] = order;
    arguments[1] = x;
    VarRegister result;
    HandlerOf("BesselJn")(result, arguments);
    return static_cast<double>(result);
  };
  EXPECT_EQ(besselJn(2.0, 3.0), jn(2, 3.0));
  EXPECT_EQ(besselJn(-2.0, 3.0), jn(-2, 3.0));
  EXPECT_EQ(besselJn(2.0, -3.0), jn(2, -3.0));
  EXPECT_NEAR(besselJn(2.0000001, 3.0), jn(2, 3.0), 1e-6);
  EXPECT_FALSE(host.HasError());
  // A real order does not exist for negative arguments.
  EXPECT_EQ(besselJn(2.0000001, -3.0), 0.0);
  EXPECT_EQ(host.TakeError().number, 3);
}

TEST_F(ScriptDispatch, ConjugateForwardsToTheHost) {
  Variable array = MakeArray(numbers);
  VarRegister arguments[1];
  arguments[0].PointTo(&array);
  VarRegister result;
  HandlerOf("Conjugate")(result, arguments);
  EXPECT_EQ(result.GetVar().GetDim(), 5);
  EXPECT_EQ(result.GetVar()[3].GetDoubleNumb(), 7.0);
}

TEST_F(ScriptDispatch, ChiSquareProbabilityIsTheIncompleteGammaFunction) {
  VarRegister arguments[2];
  arguments[0] = 2.0;
  arguments[1] = 3.0;
  VarRegister result;
  HandlerOf("ProbChi2")(result, arguments);
  // Two degrees of freedom: 1 - exp(-chi2 / 2).
  EXPECT_NEAR(static_cast<double>(result), 1.0 - std::exp(-1.5), 1e-9);
}

TEST_F(ScriptDispatch, FTestReadsVectorsAndArrays) {
  Variable first = MakeInstance("Vector", 3);
  Fill(first, {1.0, 2.0, 3.0});
  Variable second = MakeArray({1.0, 2.0, 3.0});
  VarRegister arguments[2];
  arguments[0].PointTo(&first);
  arguments[1].PointTo(&second);
  VarRegister result;
  HandlerOf("FTest")(result, arguments);
  EXPECT_EQ(static_cast<double>(result), 1.0);
}

}  // namespace
