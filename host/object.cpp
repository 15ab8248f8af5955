#include "host/object.h"

#include "frame/host.h"
#include "host/script_class.h"

Object* Object::Create(const tarn::ScriptClass& scriptClass) {
  auto* object = static_cast<Object*>(HMALLOCZ(sizeof(Object)));
  if (object == nullptr) return nullptr;
  object->kind = tarn::ContainerKind::kObject;
  object->uses = 1;
  object->class_ = &scriptClass;
  object->lastLink_ = &object->members_;
  return object;
}

void Object::Free(Object* object) { HFREE(object); }

Variable* Object::FindMember(std::uint16_t nameId) const {
  for (tarn::Member* member = members_; member != nullptr; member = member->next) {
    if (member->nameId == nameId) return &member->value;
  }
  return nullptr;
}

Variable* Object::FindOrCreateMember(std::uint16_t nameId) {
  if (Variable* existing = FindMember(nameId)) return existing;
  auto* member = static_cast<tarn::Member*>(HMALLOCZ(sizeof(tarn::Member)));
  if (member == nullptr) return nullptr;
  member->nameId = nameId;
  *lastLink_ = member;
  lastLink_ = &member->next;
  return &member->value;
}

namespace tarn {

bool IsHiddenFromScripts(const Variable& member) {
  return VariableAccess::IsOwner(VariableAccess::Resolve(member));
}

const Member* VisibleMember(const Member* member) {
  while (member != nullptr && IsHiddenFromScripts(member->value)) member = member->next;
  return member;
}

bool MakeObject(Variable& value, const ScriptClass& scriptClass) {
  Object* object = Object::Create(scriptClass);
  if (object == nullptr) return false;
  const bool isVector = scriptClass.IsInheritFrom(VARCLASS_VECTOR) != 0;
  VariableAccess::OverwriteBlock(value, isVector ? kVectorObject : kPlainObject, object);
  return true;
}

}  // namespace tarn
