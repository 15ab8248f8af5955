/// @file
/// Script values as numbers.

#include <charconv>
#include <cmath>
#include <limits>

#include "host/names.h"
#include "host/object.h"
#include "host/script_class.h"
#include "host/variable_access.h"

using Access = VariableAccess;

namespace tarn {
namespace {

/// Vectors whose elements are vectors are followed this far; deeper elements count as 0. A vector
/// may hold a reference to itself.
constexpr int kDeepestVector = 16;

double NumberOf(const Variable& value, int depth);

/// The number that the whole text spells; 0 where it spells none.
double NumberInText(std::string_view text) {
  double number = 0.0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
  return status == std::errc() && end == text.data() + text.size() ? number : 0.0;
}

struct Magnitudes {
  double largest = 0.0;
  bool hasNan = false;
};

Magnitudes FindMagnitudes(const Variable* elements, std::int64_t count, int depth) {
  Magnitudes found;
  for (std::int64_t i = 0; i < count; ++i) {
    const double magnitude = std::fabs(NumberOf(elements[i], depth));
    if (std::isnan(magnitude)) found.hasNan = true;
    if (magnitude > found.largest) found.largest = magnitude;
  }
  return found;
}

/// Euclidean length. Elements are scaled by a power of two near the largest of them, so that
/// neither squares nor their sum overflow or underflow while the length itself is representable,
/// and so that scaling costs no accuracy.
double Length(const Variable* elements, std::int64_t count, int depth) {
  const Magnitudes magnitudes = FindMagnitudes(elements, count, depth);
  if (std::isinf(magnitudes.largest)) return magnitudes.largest;
  if (magnitudes.hasNan) return std::numeric_limits<double>::quiet_NaN();
  if (magnitudes.largest == 0.0) return 0.0;
  const int exponent = std::ilogb(magnitudes.largest);
  double sum = 0.0;
  for (std::int64_t i = 0; i < count; ++i) {
    const double scaled = std::scalbn(NumberOf(elements[i], depth), -exponent);
    sum += scaled * scaled;
  }
  return std::scalbn(std::sqrt(sum), exponent);
}

[[gnu::noinline]] double NumberOf(const Variable& value, int depth) {
  const Variable& resolved = Access::Resolve(value);
  switch (Access::Type(resolved)) {
    case kReal:
      return Access::Data(resolved).real;
    case kInteger:
      return static_cast<double>(Access::Data(resolved).integer);
    case kComplex:
      return Access::Complex(resolved).real;
    case kText:
      return NumberInText(Access::Text(resolved));
    case kVectorObject:
      if (depth >= kDeepestVector) return 0.0;
      return Length(resolved.GetArray(), resolved.GetDim(), depth + 1);
    default:
      return 0.0;
  }
}

/// Conjugates what a block made by a deep copy holds; the work list is threaded through the blocks.
class Conjugator {
 public:
  void Run(Variable& value) {
    Visit(value);
    while (pending_ != nullptr) {
      Container* container = pending_;
      pending_ = container->next;
      VisitHeld(container);
    }
  }

 private:
  void Visit(Variable& value) {
    switch (Access::Type(value)) {
      case kComplex:
        ConjugateNumber(value);
        return;
      case kArray:
        if (ArrayElements(value) != nullptr) Enqueue(HeaderOf(ArrayElements(value)));
        return;
      case kVectorObject:
      case kPlainObject:
        Enqueue(Access::ObjectOf(value));
        return;
      default:
        return;
    }
  }

  static void ConjugateNumber(Variable& value) {
    auto* number = static_cast<ComplexNumber*>(Access::Data(value).block);
    number->imaginary = -number->imaginary;
  }

  void Enqueue(Container* container) {
    container->next = pending_;
    pending_ = container;
  }

  /// Elements of arrays, vectors and array objects; of a tabulated function only the ordinates.
  void VisitHeld(Container* container) {
    if (container->kind == ContainerKind::kArray) {
      ForEachHeldValue(container, [this](Variable& value) { Visit(value); });
      return;
    }
    auto* object = static_cast<Object*>(container);
    Visit(object->Elements());
    if (object->Class().IsInheritFrom(Token::GetNameID("TFunc")) == 0) return;
    if (Variable* ordinates = object->FindMember(Token::GetNameID("Y"))) Visit(*ordinates);
  }

  Container* pending_ = nullptr;
};

}  // namespace
}  // namespace tarn

double Variable::GetDoubleNumb() const {
  if (typeWord_ == tarn::kReal) return payload_.real;
  return tarn::NumberOf(*this, 0);
}

float Variable::GetFloatNumb() const { return static_cast<float>(GetDoubleNumb()); }

std::int32_t Variable::GetInt32Numb() const {
  const double number = std::trunc(GetDoubleNumb());
  const bool inRange = number >= std::numeric_limits<std::int32_t>::min() &&
                       number <= std::numeric_limits<std::int32_t>::max();
  return inRange ? static_cast<std::int32_t>(number) : 0;
}

int Variable::IsNumber() const {
  const std::uint32_t type = Access::Resolve(*this).typeWord_;
  return type == tarn::kReal || type == tarn::kInteger ? 1 : 0;
}

Variable Variable::Conjugate() const {
  Variable copy(*this);
  tarn::Conjugator().Run(copy);
  return copy;
}
