#include "host/script_class.h"

#include "frame/error_numbers.h"
#include "host/names.h"

int VarClass::IsInheritFrom(std::uint16_t classId) const {
  for (const VarClass* ancestor = this; ancestor != nullptr; ancestor = ancestor->base_) {
    if (ancestor->id_ == classId) return 1;
  }
  return 0;
}

namespace tarn {

ScriptClass::ScriptClass(const char* name, const VarClass* base, Constructor constructor,
                         std::span<const ScriptMethod> methods)
    : VarClass(MakeNameId(name), base), name_(name), constructor_(constructor), methods_(methods) {}

const ScriptMethod* ScriptClass::FindMethod(std::string_view name) const {
  for (const ScriptMethod& method : methods_) {
    if (name == method.name) return &method;
  }
  return nullptr;
}

bool ScriptClass::Construct(Variable& value, VarRegister* arguments, int count) const {
  Variable made;
  if (!MakeObject(made, *this)) {
    TarnError(kErrorMemory);
    return false;
  }
  if (!constructor_(*made.GetObject(), arguments, count)) return false;
  VariableAccess::Move(value, made);
  return true;
}

const ScriptClass* FindScriptClass(std::string_view name) {
  for (const ScriptClass* scriptClass : ScriptClasses()) {
    if (name == scriptClass->Name()) return scriptClass;
  }
  return nullptr;
}

}  // namespace tarn
