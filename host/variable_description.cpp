/// @file
/// What a script value is and what it holds, by name.

#include "host/names.h"
#include "host/object.h"
#include "host/script_class.h"
#include "host/variable_access.h"

using Access = VariableAccess;

const char* Variable::GetMemberName(std::int64_t index) const {
  const Object* object = GetObject();
  if (object == nullptr || index < 0) return nullptr;
  const tarn::Member* member = object->FirstMember();
  for (; member != nullptr && index > 0; --index) member = member->next;
  return member == nullptr ? nullptr : tarn::NameText(member->nameId);
}

const char* Variable::KindName() const {
  const Variable& value = Access::Resolve(*this);
  switch (Access::Type(value)) {
    case tarn::kEmpty:
      return "nothing";
    case tarn::kInteger:
    case tarn::kReal:
      return "number";
    case tarn::kPointer:
      return "pointer";
    case tarn::kFunction:
      return "function";
    case tarn::kComplex:
      return "complex";
    case tarn::kText:
      return "text";
    case tarn::kBytes:
      return "bytes";
    case tarn::kArray:
      return "array";
    default:
      return Access::ObjectOf(value)->Class().Name();
  }
}
