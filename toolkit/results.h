#ifndef TARN_TOOLKIT_RESULTS_H
#define TARN_TOOLKIT_RESULTS_H

/// @file
/// How functions make their results, and objects that hold an object of the class library.
///
/// Where the host refuses the memory, all of these end the function with its error.

#include <memory>
#include <span>
#include <string>

#include "frame/host.h"

namespace tarn::toolkit {

/// Ends the function when an error is pending, or `succeeded` is false for lack of memory.
void RequireSuccess(bool succeeded = true);

/// Takes over what the class library made; null ends the function.
template <class Made>
std::unique_ptr<Made> Own(Made* made) {
  std::unique_ptr<Made> owner(made);
  RequireSuccess(made != nullptr);
  return owner;
}

/// Takes the pending error back, so that another one can be told in its place.
void ForgetError();

/// Whether the object has a member of that name. (Asking for the member itself would create it.)
bool HasMember(const Variable& object, const char* name);
/// The member of that name, created where it does not exist.
Variable& Member(Variable& object, const char* name);

/// Makes `target` an object of a script class, without members and elements.
void SetObject(Variable& target, const char* className);
/// Makes `target` a plain array.
void SetArray(Variable& target, std::span<const double> numbers);
/// Makes `target` an "MVector".
void SetVector(Variable& target, std::span<const double> numbers);
/// Makes `target` a "TFunc".
void SetFunction(Variable& target, std::span<const double> x, std::span<const double> y);
/// Makes `target` a "Record", an object whose members are the results of a function; see `Member`.
void SetRecord(Variable& target);
void SetText(Variable& target, const std::string& text);

/// Makes `target` an object of a script class that holds a native object in its member "native".
void SetNativeObject(Variable& target, const char* className, std::unique_ptr<TarnAss> native);
/// The native object; null when the value holds none.
TarnAss* FindNativeObject(Variable& value);
/// Ends the function: the object's native part was taken away.
[[noreturn]] void RefuseEmptyObject();

/// The native object of a value whose class holds such ones. A script can overwrite the member
/// that holds it: then the function ends with an error.
template <class Native>
Native& NativeObject(Variable& value) {
  auto* native = dynamic_cast<Native*>(FindNativeObject(value));
  if (native == nullptr) RefuseEmptyObject();
  return *native;
}

}  // namespace tarn::toolkit

#endif
