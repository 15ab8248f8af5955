#include "frame/script_dispatch.h"

namespace tarn {
namespace {

bool IsObjectOfClass(const Variable& value, std::uint16_t classId) {
  return value.IsObject() && value.GetClass()->IsInheritFrom(classId) != 0;
}

}  // namespace

ArgumentKind ClassifyArgument(const Variable& argument) {
  if (argument.IsNumber() != 0) return ArgumentKind::kNumber;
  if (IsObjectOfClass(argument, VARCLASS_VECTOR)) return ArgumentKind::kVectorValue;
  if (argument.TypeWord() == VARTYPE_ARRAY || argument.IsInheritFrom(VARCLASS_ARRAY) != 0) {
    return ArgumentKind::kArray;
  }
  if (IsObjectOfClass(argument, Token::GetNameID("TFunc"))) return ArgumentKind::kTabulatedFunction;
  return ArgumentKind::kOther;
}

}  // namespace tarn
