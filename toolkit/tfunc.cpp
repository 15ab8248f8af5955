/// @file
/// "TFunc": arithmetic, evaluation, integrals, zeros and extremes of tabulated functions.

#include <algorithm>
#include <cmath>
#include <limits>

#include "families.h"
#include "handler.h"
#include "results.h"
#include "table.h"

namespace tarn::toolkit {
namespace {

TFunc ThisFunction(const Call& call) { return TableOf(call.Argument(0)); }

// Arithmetic --------------------------------------------------------------------------------------
//
// The result of two functions has the abscissae of the left one, where the right one is
// interpolated.

[[noreturn]] void RefuseOperands(const Call& call, char sign) {
  Refuse(std::string("cannot compute ") + call.Argument(0).KindName() + ' ' + sign + ' ' +
         call.Argument(1).KindName());
}

bool IsNumber(const Call& call, int place) { return call.Argument(place).IsNumber() != 0; }

/// A function of one value on the abscissae of another.
TFunc ConstantLike(const TFunc& table, double value) {
  TFunc constant(table);
  RequireSuccess(constant.N == table.N);
  std::fill(constant.Y, constant.Y + constant.N, value);
  return constant;
}

/// The left operand; a number becomes a function on the abscissae of the right one.
TFunc LeftOperand(const Call& call, char sign) {
  if (IsTable(call.Argument(0))) return TableOf(call.Argument(0));
  if (!IsNumber(call, 0)) RefuseOperands(call, sign);
  return ConstantLike(TableOf(call.Argument(1)), call.Argument(0).GetDoubleNumb());
}

TFunc RightFunction(const Call& call, char sign) {
  if (!IsTable(call.Argument(1))) RefuseOperands(call, sign);
  return TableOf(call.Argument(1));
}

void Add(const Call& call) {
  TFunc sum = LeftOperand(call, '+');
  if (IsNumber(call, 1)) {
    sum += call.Argument(1).GetDoubleNumb();
  } else {
    TFunc right = RightFunction(call, '+');
    sum += right;
  }
  SetTable(call.Result(), sum);
}

void Subtract(const Call& call) {
  TFunc difference = LeftOperand(call, '-');
  if (IsNumber(call, 1)) {
    difference -= call.Argument(1).GetDoubleNumb();
  } else {
    TFunc right = RightFunction(call, '-');
    difference -= right;
  }
  SetTable(call.Result(), difference);
}

void Multiply(const Call& call) {
  TFunc product = LeftOperand(call, '*');
  if (IsNumber(call, 1)) {
    product *= call.Argument(1).GetDoubleNumb();
  } else {
    TFunc right = RightFunction(call, '*');
    product *= right;
  }
  SetTable(call.Result(), product);
}

/// 0/0 is 0, by the class library's rule for quotients of functions.
void RequireDivisible(const TFunc& quotient, const TFunc& divisor) {
  for (int i = 0; i < quotient.N; ++i) {
    if (divisor(quotient.X[i]) != 0.0 || quotient.Y[i] == 0.0) continue;
    throw Fault(kErrorSingular, "the divisor is 0 at x = " + NumberText(quotient.X[i]));
  }
}

void Divide(const Call& call) {
  TFunc quotient = LeftOperand(call, '/');
  if (IsNumber(call, 1)) {
    const double divisor = call.Argument(1).GetDoubleNumb();
    if (divisor == 0.0) throw Fault(kErrorSingular, "division by 0");
    quotient /= divisor;
  } else {
    TFunc right = RightFunction(call, '/');
    RequireDivisible(quotient, right);
    quotient /= right;
  }
  SetTable(call.Result(), quotient);
}

void Negate(const Call& call) {
  TFunc negative = ThisFunction(call);
  negative *= -1.0;
  SetTable(call.Result(), negative);
}

void Power(const Call& call) {
  if (!IsTable(call.Argument(0)) || !IsNumber(call, 1)) RefuseOperands(call, '^');
  TFunc power = ThisFunction(call);
  power.pow(call.Argument(1).GetDoubleNumb());
  SetTable(call.Result(), power);
}

// Evaluation --------------------------------------------------------------------------------------

/// f(x) of a number; of an array, an array.
void Evaluate(const Call& call) {
  const TFunc function = ThisFunction(call);
  const Input x(call.Argument(1), "x");
  if (x.IsNumber()) {
    call.Result() = function(x.Number());
    return;
  }
  if (!x.IsArray()) x.RefuseKind("a number or an array");
  Numbers values = x.Array();
  for (double& value : values) value = function(value);
  SetArray(call.Result(), values);
}

/// A script function of one number, which must return one.
double CallWithNumber(Variable& function, double argument, double x) {
  VarRegister number;
  VarRegister value;
  number = argument;
  RequireSuccess(GetOwner()->RunFunctionAsIs(value, function, &number, 1) != 0);
  const Variable& returned = value.GetVar();
  if (returned.IsNumber() != 0) return returned.GetDoubleNumb();
  Input(value.GetVar(), "the value at x = " + NumberText(x)).RefuseKind("a number");
}

/// The function with f(y) for every ordinate y.
void Map(const Call& call) {
  TFunc mapped = ThisFunction(call);
  Variable& function = Input(call.Argument(1), "the function").Function();
  for (int i = 0; i < mapped.N; ++i) {
    mapped.Y[i] = CallWithNumber(function, mapped.Y[i], mapped.X[i]);
  }
  SetTable(call.Result(), mapped);
}

/// An abscissa, which may lie outside the table, but somewhere.
double Place(const Call& call) {
  const Input x(call.Argument(1), "x");
  if (std::isnan(x.Number())) x.RefuseKind("a number");
  return x.Number();
}

/// Places count from 1 in a script; 0 is the place below the table.
void IndexBelow(const Call& call) { call.Result() = ThisFunction(call).Index(Place(call)) + 1; }

void NearestIndex(const Call& call) { call.Result() = ThisFunction(call).pos(Place(call)) + 1; }

// Integrals ---------------------------------------------------------------------------------------

/// Whether a method got its two limits; one alone is a mistake.
bool HasLimits(const Call& call) {
  if (call.Has(1) != call.Has(2)) Refuse("takes both limits or none");
  return call.Has(1);
}

using RunningIntegral = TFunc* (TFunc::*)() const;
using DefiniteIntegral = double (TFunc::*)(double, double) const;

/// The running integral as a function, or the number between two limits. The limits go to the class
/// library in order, since one of its rules forgets the sign of short ranges that run downwards.
void Integrate(const Call& call, RunningIntegral running, DefiniteIntegral definite) {
  const TFunc function = ThisFunction(call);
  if (!HasLimits(call)) {
    const auto integral = Own((function.*running)());
    RequireSuccess(integral->N == function.N);
    SetTable(call.Result(), *integral);
    return;
  }
  const double from = Input(call.Argument(1), "from").FiniteNumber();
  const double to = Input(call.Argument(2), "to").FiniteNumber();
  call.Result() = from <= to ? (function.*definite)(from, to) : -(function.*definite)(to, from);
}

void Integral(const Call& call) { Integrate(call, &TFunc::Integral, &TFunc::Integral); }

/// No parabola goes through two points of one abscissa.
void RequireNoJumps(const TFunc& function) {
  for (int i = 1; i < function.N; ++i) {
    if (function.X[i] != function.X[i - 1]) continue;
    Refuse("X[" + std::to_string(i + 1) + "] repeats " + NumberText(function.X[i]) +
           "; parabolas need different abscissae, Integral takes jumps");
  }
}

void IntegralSimpson(const Call& call) {
  RequireNoJumps(ThisFunction(call));
  Integrate(call, &TFunc::IntegralSimpson, &TFunc::IntegralSimpson);
}

void RequireBoundedAbove(const TFunc& logarithm) {
  for (int i = 0; i < logarithm.N; ++i) {
    if (logarithm.Y[i] < std::numeric_limits<double>::infinity()) continue;
    Refuse("Y[" + std::to_string(i + 1) + "] must be below infinity, got " +
           NumberText(logarithm.Y[i]));
  }
}

/// Moves the ends of each interval together in which the exponential is 0 because an ordinate is
/// minus infinity: the class library counts intervals without width as nothing, whatever the
/// ordinates.
void CloseEmptyIntervals(TFunc& logarithm) {
  double before = logarithm.X[0];
  for (int i = 1; i < logarithm.N; ++i) {
    const bool isEmpty = std::isinf(logarithm.Y[i - 1]) || std::isinf(logarithm.Y[i]);
    const double width = logarithm.X[i] - before;
    before = logarithm.X[i];
    logarithm.X[i] = logarithm.X[i - 1] + (isEmpty ? 0.0 : width);
  }
}

void LogIntegralExp(const Call& call) {
  TFunc logarithm = ThisFunction(call);
  RequireBoundedAbove(logarithm);
  const auto isInfinite = [](double y) { return std::isinf(y); };
  if (std::any_of(logarithm.Y, logarithm.Y + logarithm.N, isInfinite)) {
    CloseEmptyIntervals(logarithm);
  }
  call.Result() = logarithm.LogIntegralExp();
}

// Zeros and extremes ------------------------------------------------------------------------------

/// The class library finds a zero at a point of the table in the interval on either side.
void Zeros(const Call& call) {
  const auto found = Own(ThisFunction(call).Zero());
  const double* first = *found;
  Numbers zeros(first, first + found->Dim());
  zeros.erase(std::unique(zeros.begin(), zeros.end()), zeros.end());
  SetArray(call.Result(), zeros);
}

void SetPoint(Variable& target, double x, double y) {
  SetRecord(target);
  Member(target, "x") = x;
  Member(target, "y") = y;
}

void Maximum(const Call& call) {
  double x = 0.0;
  double y = 0.0;
  ThisFunction(call).Max(x, y);
  SetPoint(call.Result(), x, y);
}

void Minimum(const Call& call) {
  double x = 0.0;
  double y = 0.0;
  ThisFunction(call).Min(x, y);
  SetPoint(call.Result(), x, y);
}

// Abscissae ---------------------------------------------------------------------------------------

TFunc CopyOf(const TFunc& table) {
  TFunc copy(table);
  RequireSuccess(copy.N == table.N);
  return copy;
}

/// Ends the function when a transformed abscissa is not finite, with what is wrong with the old
/// one.
void RequireFiniteAbscissae(const TFunc& before, const TFunc& after, const char* what) {
  for (int i = 0; i < after.N; ++i) {
    if (std::isfinite(after.X[i])) continue;
    Refuse("X[" + std::to_string(i + 1) + "] = " + NumberText(before.X[i]) + ' ' + what);
  }
}

void Shift(const Call& call) {
  const TFunc before = ThisFunction(call);
  TFunc shifted = CopyOf(before);
  shifted.Shift(Input(call.Argument(1), "the shift").FiniteNumber());
  RequireFiniteAbscissae(before, shifted, "cannot be shifted so far");
  SetTable(call.Result(), shifted);
}

void ScaleX(const Call& call) {
  const TFunc before = ThisFunction(call);
  TFunc scaled = CopyOf(before);
  scaled.ScaleX(Input(call.Argument(1), "the factor").PositiveNumber());
  RequireFiniteAbscissae(before, scaled, "cannot be scaled so far");
  SetTable(call.Result(), scaled);
}

void LnX(const Call& call) {
  const TFunc before = ThisFunction(call);
  TFunc after = CopyOf(before);
  after.LnX();
  RequireFiniteAbscissae(before, after, "has no finite logarithm");
  SetTable(call.Result(), after);
}

void ExpX(const Call& call) {
  const TFunc before = ThisFunction(call);
  TFunc after = CopyOf(before);
  after.ExpX();
  RequireFiniteAbscissae(before, after, "has no finite exponential");
  SetTable(call.Result(), after);
}

constexpr ScriptFunction kRows[] = {
    {Handler<Add>, "TFunc.__add(any, any)"},
    {Handler<Subtract>, "TFunc.__sub(any, any)"},
    {Handler<Multiply>, "TFunc.__mul(any, any)"},
    {Handler<Divide>, "TFunc.__div(any, any)"},
    {Handler<Negate>, "TFunc.__unm(any)"},
    {Handler<Power>, "TFunc.__pow(any, any)"},
    {Handler<Evaluate>, "TFunc.__call(refer object TFunc, any)"},
    {Handler<Map>, "TFunc.Map(refer object TFunc, function)"},
    {Handler<IndexBelow>, "TFunc.Index(refer object TFunc, any)"},
    {Handler<NearestIndex>, "TFunc.Nearest(refer object TFunc, any)"},
    {Handler<Integral>, "TFunc.Integral(refer object TFunc, any?, any?)"},
    {Handler<IntegralSimpson>, "TFunc.IntegralSimpson(refer object TFunc, any?, any?)"},
    {Handler<LogIntegralExp>, "TFunc.LogIntegralExp(refer object TFunc)"},
    {Handler<Zeros>, "TFunc.Zeros(refer object TFunc)"},
    {Handler<Maximum>, "TFunc.Maximum(refer object TFunc)"},
    {Handler<Minimum>, "TFunc.Minimum(refer object TFunc)"},
    {Handler<Shift>, "TFunc.Shift(refer object TFunc, any)"},
    {Handler<ScaleX>, "TFunc.ScaleX(refer object TFunc, any)"},
    {Handler<LnX>, "TFunc.LnX(refer object TFunc)"},
    {Handler<ExpX>, "TFunc.ExpX(refer object TFunc)"},
};

}  // namespace

std::span<const ScriptFunction> FunctionRows() { return kRows; }

}  // namespace tarn::toolkit
