#include "results.h"

#include <cstring>
#include <new>

#include "fault.h"

namespace tarn::toolkit {
namespace {

constexpr char kNativeMember[] = "native";

void FillElements(Variable& target, std::span<const double> numbers) {
  RequireSuccess(target.GetDim() == static_cast<std::int64_t>(numbers.size()));
  Variable* elements = target.GetArray();
  for (const double number : numbers) *elements++ = number;
}

void Instantiate(Variable& target, const char* className, VarRegister* arguments, int count) {
  Processor* processor = GetOwner();
  RequireSuccess(processor != nullptr);
  RequireSuccess(processor->MakeInstance(target, className, arguments, count) != 0);
}

}  // namespace

void RequireSuccess(bool succeeded) {
  const Processor* processor = GetOwner();
  if (processor != nullptr && processor->pendingError != 0) throw AlreadyRaised();
  if (!succeeded) throw std::bad_alloc();
}

void ForgetError() {
  if (Processor* processor = GetOwner()) processor->pendingError = 0;
}

bool HasMember(const Variable& object, const char* name) {
  const char* found = object.GetMemberName(0);
  for (std::int64_t i = 1; found != nullptr; found = object.GetMemberName(i++)) {
    if (std::strcmp(found, name) == 0) return true;
  }
  return false;
}

Variable& Member(Variable& object, const char* name) {
  Variable& member = object(name);
  // Where the memory for it was refused, the host answers with an element that nobody reads.
  RequireSuccess(HasMember(object, name));
  return member;
}

void SetObject(Variable& target, const char* className) {
  Instantiate(target, className, nullptr, 0);
}

void SetArray(Variable& target, std::span<const double> numbers) {
  target.Init(VARTYPE_ARRAY, static_cast<std::int64_t>(numbers.size()));
  FillElements(target, numbers);
}

void SetVector(Variable& target, std::span<const double> numbers) {
  VarRegister dimension;
  dimension = static_cast<int>(numbers.size());
  Instantiate(target, "MVector", &dimension, 1);
  FillElements(target, numbers);
}

void SetFunction(Variable& target, std::span<const double> x, std::span<const double> y) {
  SetObject(target, "TFunc");
  SetArray(Member(target, "X"), x);
  SetArray(Member(target, "Y"), y);
}

void SetRecord(Variable& target) { SetObject(target, "Record"); }

void SetText(Variable& target, const std::string& text) {
  VarRegister writer;
  writer.PointTo(&target);
  writer = text.c_str();
}

void SetNativeObject(Variable& target, const char* className, std::unique_ptr<TarnAss> native) {
  SetObject(target, className);
  Variable& member = Member(target, kNativeMember);
  member.SetOwnedObject(native.release());
  RequireSuccess(member.GetCppPointer() != nullptr);
}

TarnAss* FindNativeObject(Variable& value) {
  if (value.GetObject() == nullptr) return nullptr;
  return static_cast<TarnAss*>(value(kNativeMember).GetCppPointer());
}

void RefuseEmptyObject() { Refuse("the object has lost its data, its member \"native\""); }

}  // namespace tarn::toolkit
