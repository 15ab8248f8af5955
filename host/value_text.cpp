#include "host/value_text.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "host/names.h"
#include "host/object.h"
#include "host/script_class.h"
#include "host/variable_access.h"

using Access = VariableAccess;

namespace tarn {
namespace {

constexpr std::int64_t kMostElementsShown = 10;
constexpr std::size_t kMostCharactersShown = 60;
/// Arrays in arrays are shown this far; a value may refer to itself.
constexpr int kDeepestShown = 3;

std::string TextAt(const Variable& reference, int depth);

std::string ComplexText(ComplexNumber number) {
  std::string text = NumberText(number.real);
  if (!std::signbit(number.imaginary)) text += '+';
  return text + NumberText(number.imaginary) + 'i';
}

std::string ElementsText(const Variable& value, int depth) {
  const std::int64_t count = value.GetDim();
  const Variable* elements = value.GetArray();
  if (depth > kDeepestShown && count > 0) return "{...}";
  std::string text = "{";
  for (std::int64_t i = 0; i < count && i < kMostElementsShown; ++i) {
    if (i > 0) text += ", ";
    text += TextAt(elements[i], depth + 1);
  }
  if (count > kMostElementsShown) text += ", ... " + std::to_string(count) + " elements";
  return text + "}";
}

std::string MembersText(const Object& object, int depth) {
  if (depth > kDeepestShown) return "(...)";
  std::string text;
  for (const Member* member = VisibleMember(object.FirstMember()); member != nullptr;
       member = VisibleMember(member->next)) {
    text += text.empty() ? "(" : ", ";
    text += NameOf(member->nameId) + " = " + TextAt(member->value, depth + 1);
  }
  return text + ")";
}

std::string ObjectText(const Variable& value, int depth) {
  const Object& object = *value.GetObject();
  std::string text = object.Class().Name();
  if (HasElements(value)) text += ElementsText(value, depth);
  if (VisibleMember(object.FirstMember()) != nullptr) text += MembersText(object, depth);
  return text;
}

std::string QuotedText(std::string_view text) {
  if (text.size() <= kMostCharactersShown) return '"' + std::string(text) + '"';
  return '"' + std::string(text.substr(0, kMostCharactersShown)) + "...\"";
}

std::string PointerText(const void* pointer) {
  char text[40];
  std::snprintf(text, sizeof(text), "native pointer %p", pointer);
  return text;
}

std::string TextAt(const Variable& reference, int depth) {
  const Variable& value = Access::Resolve(reference);
  switch (Access::Type(value)) {
    case kEmpty:
      return "nil";
    case kInteger:
      return std::to_string(Access::Data(value).integer);
    case kReal:
      return NumberText(Access::Data(value).real);
    case kPointer:
      return PointerText(Access::Data(value).block);
    case kFunction:
      return "function";
    case kComplex:
      return ComplexText(Access::Complex(value));
    case kText:
      return QuotedText(Access::Text(value));
    case kBytes:
      return std::to_string(value.GetDim()) + " bytes";
    case kArray:
      return ElementsText(value, depth);
    default:
      return ObjectText(value, depth);
  }
}

}  // namespace

std::string NumberText(double number) {
  if (std::isnan(number)) return "nan";
  char text[40];
  const std::to_chars_result end = std::to_chars(text, text + sizeof(text), number);
  return std::string(text, end.ptr);
}

std::string ValueText(const Variable& value) { return TextAt(value, 0); }

}  // namespace tarn
