/// @file
/// "MVector": arithmetic and what belongs to a vector of numbers.

#include "families.h"
#include "handler.h"
#include "linear.h"
#include "linear_operators.h"

namespace tarn::toolkit {
namespace {

Column ThisVector(const Call& call) { return ColumnOf(Input(call.Argument(0), "the vector")); }

/// The other vector of a method that takes two of one dimension.
Column OtherVector(const Call& call, const Column& self) {
  const Input other(call.Argument(1), "the other vector");
  other.ArrayOfLength(static_cast<std::size_t>(self.Dim()), "this one");
  return ColumnOf(other);
}

void Norm(const Call& call) { call.Result() = LengthOf(NumbersOf(ThisVector(call))); }

void Dot(const Call& call) {
  const Column self = ThisVector(call);
  call.Result() = self.ScalarProduct(OtherVector(call, self));
}

void Distance(const Call& call) {
  const Column self = ThisVector(call);
  const auto difference = Own(self - OtherVector(call, self));
  RequireSuccess(difference->Dim() == self.Dim());
  call.Result() = LengthOf(NumbersOf(*difference));
}

/// The direction of a vector, with elements whose squares are numbers.
Column Scaled(const Column& vector) {
  Column scaled(vector);
  RequireSuccess(scaled.Dim() == vector.Dim());
  const double scale = ScaleOf(NumbersOf(vector));
  for (int i = 0; i < scaled.Dim(); ++i) scaled[i] /= scale;
  return scaled;
}

void Cosine(const Call& call) {
  const Column self = ThisVector(call);
  call.Result() = Scaled(self).Cosine(Scaled(OtherVector(call, self)));
}

/// v times the transpose of the other vector.
void Outer(const Call& call) {
  const Column self = ThisVector(call);
  const Column other = ColumnOf(Input(call.Argument(1), "the other vector"));
  SetMatrix(call.Result(), OwnMatrix(self * *Own(other.T())));
}

constexpr ScriptFunction kRows[] = {
    {Handler<AddOperands>, "MVector.__add(any, any)"},
    {Handler<SubtractOperands>, "MVector.__sub(any, any)"},
    {Handler<MultiplyOperands>, "MVector.__mul(any, any)"},
    {Handler<DivideOperands>, "MVector.__div(any, any)"},
    {Handler<NegateOperand>, "MVector.__unm(any)"},
    {Handler<Norm>, "MVector.Norm(refer object MVector)"},
    {Handler<Dot>, "MVector.Dot(refer object MVector, any)"},
    {Handler<Distance>, "MVector.Distance(refer object MVector, any)"},
    {Handler<Cosine>, "MVector.Cosine(refer object MVector, any)"},
    {Handler<Outer>, "MVector.Outer(refer object MVector, any)"},
};

}  // namespace

std::span<const ScriptFunction> VectorRows() { return kRows; }

}  // namespace tarn::toolkit
