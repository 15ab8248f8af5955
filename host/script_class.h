#ifndef TARN_HOST_SCRIPT_CLASS_H
#define TARN_HOST_SCRIPT_CLASS_H

/// @file
/// Script classes: what a name stands for in `Processor::MakeInstance`, and its methods.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "frame/host.h"
#include "host/object.h"

namespace tarn {

/// Fills a new object from the arguments of its constructor. False with a pending error when they
/// do not fit; the object is dropped then.
using Constructor = bool (*)(Object& object, VarRegister* arguments, int count);

using MethodFunction = void (*)(Object& object, VarRegister* arguments, Variable& result);

/// What the one parameter of a method is converted to by `RunMethod`.
enum class MethodParameter { kNone, kInteger, kText };

struct ScriptMethod {
  const char* name;
  MethodParameter parameter;
  MethodFunction run;

  int ParameterCount() const { return parameter == MethodParameter::kNone ? 0 : 1; }
};

class ScriptClass : public VarClass {
 public:
  ScriptClass(const char* name, const VarClass* base, Constructor constructor,
              std::span<const ScriptMethod> methods);

  const char* Name() const { return name_; }
  std::span<const ScriptMethod> Methods() const { return methods_; }
  /// The method of that name; null when the class has none.
  const ScriptMethod* FindMethod(std::string_view name) const;

  /// Makes the empty `value` an object of this class. False with a pending error otherwise.
  bool Construct(Variable& value, VarRegister* arguments, int count) const;

 private:
  const char* name_;
  Constructor constructor_;
  std::span<const ScriptMethod> methods_;
};

/// Constructor of classes whose objects start without elements and members; takes no arguments.
bool ConstructWithoutMembers(Object& object, VarRegister* arguments, int count);

/// The classes of this host itself, which scripts construct by their names.
std::span<const ScriptClass* const> ScriptClasses();
/// The class of the objects that tables with named values become.
const ScriptClass& OptionsClass();
/// The class of that name, one of the host or of a module; null when there is none.
const ScriptClass* FindScriptClass(std::string_view name);
/// The class of that name, made now where there is none: its objects start without members and are
/// made by modules alone. Classes are never forgotten. Null when memory is exhausted.
const ScriptClass* FindOrMakeScriptClass(const std::string& name);

}  // namespace tarn

#endif
