/// @file
/// Arithmetic of vectors and matrices. Which operation two operands get is a matter of overloading:
/// each operator is a set of functions over the kinds of operands that go together.

#include "linear_operators.h"

#include <variant>

#include "linear.h"

namespace tarn::toolkit {
namespace {

using Operand = std::variant<double, Column, const DenseMatrix*>;

[[noreturn]] void RefuseOperands(const Call& call, char sign) {
  Refuse(std::string("cannot compute ") + call.Argument(0).KindName() + ' ' + sign + ' ' +
         call.Argument(1).KindName());
}

Operand ReadOperand(Variable& value, const Call& call, char sign) {
  const Input input(value, "operand");
  if (input.IsNumber()) return input.Number();
  if (input.IsArray()) return ColumnOf(input);
  if (IsMatrix(value)) return &MatrixOf(value);
  RefuseOperands(call, sign);
}

/// Hands a result over; one without its elements was refused its memory.
void SetColumn(Variable& target, const std::unique_ptr<Column>& column, int dimension) {
  RequireSuccess(column->Dim() == dimension);
  SetVector(target, NumbersOf(*column));
}

std::string DimensionText(const Column& column) { return std::to_string(column.Dim()); }

void RequireSameShape(const Column& a, const Column& b) {
  if (a.Dim() == b.Dim()) return;
  Refuse("the vectors have " + DimensionText(a) + " and " + DimensionText(b) + " elements");
}

void RequireSameShape(const DenseMatrix& a, const DenseMatrix& b) {
  if (a.X() == b.X() && a.Y() == b.Y()) return;
  Refuse("the matrices are " + ShapeText(a) + " and " + ShapeText(b));
}

/// Operators end up here for operands that do not go together.
class Operator {
 public:
  Operator(const Call& call, char sign) : call_(call), sign_(sign) {}

 protected:
  Variable& Result() const { return call_.Result(); }
  [[noreturn]] void RefuseKinds() const { RefuseOperands(call_, sign_); }

 private:
  const Call& call_;
  char sign_;
};

template <class A, class B>
constexpr bool kAddable = (!std::is_same_v<A, double> && std::is_same_v<A, B>) ||
                          std::is_same_v<A, double> != std::is_same_v<B, double>;

class Sum : public Operator {
 public:
  using Operator::Operator;

  void operator()(const Column& a, const Column& b) const {
    RequireSameShape(a, b);
    SetColumn(Result(), Own(a + b), a.Dim());
  }
  void operator()(const Column& a, double b) const { SetColumn(Result(), Own(a + b), a.Dim()); }
  void operator()(double a, const Column& b) const { (*this)(b, a); }
  void operator()(const DenseMatrix* a, const DenseMatrix* b) const {
    RequireSameShape(*a, *b);
    SetMatrix(Result(), OwnMatrix(*a + *b));
  }
  void operator()(const DenseMatrix* a, double b) const { SetMatrix(Result(), OwnMatrix(*a + b)); }
  void operator()(double a, const DenseMatrix* b) const { (*this)(b, a); }
  template <class A, class B>
  requires(!kAddable<A, B>) void operator()(const A& /*a*/, const B& /*b*/) const { RefuseKinds(); }
};

class Difference : public Operator {
 public:
  using Operator::Operator;

  void operator()(const Column& a, const Column& b) const {
    RequireSameShape(a, b);
    SetColumn(Result(), Own(a - b), a.Dim());
  }
  void operator()(const Column& a, double b) const { SetColumn(Result(), Own(a - b), a.Dim()); }
  void operator()(double a, const Column& b) const {
    SetColumn(Result(), Own(*Own(b * -1.0) + a), b.Dim());
  }
  void operator()(const DenseMatrix* a, const DenseMatrix* b) const {
    RequireSameShape(*a, *b);
    SetMatrix(Result(), OwnMatrix(*a - *b));
  }
  void operator()(const DenseMatrix* a, double b) const { SetMatrix(Result(), OwnMatrix(*a - b)); }
  void operator()(double a, const DenseMatrix* b) const {
    SetMatrix(Result(), OwnMatrix(*OwnMatrix(*b * -1.0) + a));
  }
  template <class A, class B>
  requires(!kAddable<A, B>) void operator()(const A& /*a*/, const B& /*b*/) const { RefuseKinds(); }
};

void RequireProduct(int leftColumns, int rightRows, const std::string& left,
                    const std::string& right) {
  if (leftColumns == rightRows) return;
  Refuse("cannot multiply " + left + " by " + right + ": " + CountText(leftColumns, "column") +
         " against " + CountText(rightRows, "row"));
}

std::string Named(const DenseMatrix& matrix) { return "a " + ShapeText(matrix) + " matrix"; }
std::string Named(const Column& column) { return "a vector of " + DimensionText(column); }

class Product : public Operator {
 public:
  using Operator::Operator;

  void operator()(const Column& a, const Column& b) const {
    RequireSameShape(a, b);
    Result() = a.ScalarProduct(b);
  }
  void operator()(const Column& a, double b) const { SetColumn(Result(), Own(a * b), a.Dim()); }
  void operator()(double a, const Column& b) const { (*this)(b, a); }
  void operator()(const DenseMatrix* a, const DenseMatrix* b) const {
    RequireProduct(a->X(), b->Y(), Named(*a), Named(*b));
    SetMatrix(Result(), OwnMatrix(*a * *b));
  }
  void operator()(const DenseMatrix* a, double b) const { SetMatrix(Result(), OwnMatrix(*a * b)); }
  void operator()(double a, const DenseMatrix* b) const { (*this)(b, a); }
  void operator()(const DenseMatrix* a, const Column& b) const {
    RequireProduct(a->X(), b.Dim(), Named(*a), Named(b));
    SetColumn(Result(), Own(*a * b), a->Y());
  }
  void operator()(const Column& a, const DenseMatrix* b) const {
    RequireProduct(a.Dim(), b->Y(), Named(a), Named(*b));
    SetColumn(Result(), Own(*OwnMatrix(b->T()) * a), b->X());
  }
  void operator()(double /*a*/, double /*b*/) const { RefuseKinds(); }
};

class Quotient : public Operator {
 public:
  using Operator::Operator;

  void operator()(const Column& a, double b) const {
    RequireDivisor(b);
    const auto quotient = std::make_unique<Column>(a);
    for (int i = 0; i < quotient->Dim(); ++i) (*quotient)[i] /= b;
    SetColumn(Result(), quotient, a.Dim());
  }
  void operator()(const DenseMatrix* a, double b) const {
    RequireDivisor(b);
    auto quotient = MakeMatrix(a->Y(), a->X());
    const std::span<const double> numbers = NumbersOf(*a);
    for (std::size_t k = 0; k < numbers.size(); ++k) {
      quotient->Item(static_cast<std::int64_t>(k)) = numbers[k] / b;
    }
    SetMatrix(Result(), std::move(quotient));
  }
  template <class A, class B>
  requires(std::is_same_v<A, double> || !std::is_same_v<B, double>) void operator()(
      const A& /*a*/, const B& /*b*/) const {
    RefuseKinds();
  }

 private:
  static void RequireDivisor(double divisor) {
    if (divisor == 0.0) throw Fault(kErrorSingular, "division by 0");
  }
};

template <class Operation>
void Apply(const Call& call, char sign) {
  const Operand left = ReadOperand(call.Argument(0), call, sign);
  const Operand right = ReadOperand(call.Argument(1), call, sign);
  std::visit(Operation(call, sign), left, right);
}

}  // namespace

void AddOperands(const Call& call) { Apply<Sum>(call, '+'); }
void SubtractOperands(const Call& call) { Apply<Difference>(call, '-'); }
void MultiplyOperands(const Call& call) { Apply<Product>(call, '*'); }
void DivideOperands(const Call& call) { Apply<Quotient>(call, '/'); }

void NegateOperand(const Call& call) {
  Variable& value = call.Argument(0);
  if (IsMatrix(value)) {
    SetMatrix(call.Result(), OwnMatrix(MatrixOf(value) * -1.0));
  } else {
    const Column operand = ColumnOf(Input(value, "operand"));
    SetColumn(call.Result(), Own(operand * -1.0), operand.Dim());
  }
}

}  // namespace tarn::toolkit
