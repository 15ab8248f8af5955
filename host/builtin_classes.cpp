/// @file
/// The classes that scripts and modules find in this host: arrays, vectors, tabulated functions and
/// progress windows.

#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "frame/error_numbers.h"
#include "host/error_table.h"
#include "host/host_state.h"
#include "host/names.h"
#include "host/script_class.h"

namespace tarn {
namespace {

/// A class that only serves as a base: array base and vector value.
class BaseClass : public VarClass {
 public:
  explicit BaseClass(std::uint16_t classId) : VarClass(classId, nullptr) {}
};

bool Fail(const std::string& message) {
  TarnError(kErrorArgument, message.c_str());
  return false;
}

bool FailForMemory() {
  TarnError(kErrorMemory);
  return false;
}

/// Makes `target` a plain array of copies of the elements of `source`.
bool TakeElements(Variable& target, const Variable& source) {
  return CopyElements(target, source) || FailForMemory();
}

bool AreNumbers(const Variable& values) {
  const Variable* elements = values.GetArray();
  for (std::int64_t i = 0; i < values.GetDim(); ++i) {
    if (elements[i].IsNumber() == 0) return false;
  }
  return true;
}

/// The dimension that a constructor argument states; -1 when it is none.
std::int64_t DimensionOf(const Variable& value) {
  const double number = value.GetDoubleNumb();
  if (value.IsNumber() == 0 || !(number >= 0.0) || number != std::trunc(number)) return -1;
  return number < 9.0e15 ? static_cast<std::int64_t>(number) : -1;
}

bool MakeZeros(Variable& elements, std::int64_t count) {
  elements.Init(VARTYPE_ARRAY, count);
  if (elements.GetDim() != count) return FailForMemory();
  Variable* zeros = elements.GetArray();
  for (std::int64_t i = 0; i < count; ++i) zeros[i] = 0.0;
  return true;
}

/// Class(dimension), zeros; Class(values), their copy; Class(), empty.
bool ConstructSequence(Object& object, VarRegister* arguments, int count, bool numbersOnly) {
  const std::string name = object.Class().Name();
  if (count == 0) return MakeZeros(object.Elements(), 0);
  if (count != 1) return Fail(name + " takes one argument: its dimension or its elements");
  const Variable& argument = arguments[0].GetVar();
  if (HasElements(argument)) {
    if (numbersOnly && !AreNumbers(argument)) return Fail(name + " takes only numbers as elements");
    return TakeElements(object.Elements(), argument);
  }
  const std::int64_t dimension = DimensionOf(argument);
  if (dimension < 0) return Fail(name + " takes its dimension, a whole number, or its elements");
  return MakeZeros(object.Elements(), dimension);
}

bool ConstructVector(Object& object, VarRegister* arguments, int count) {
  return ConstructSequence(object, arguments, count, true);
}

bool ConstructArray(Object& object, VarRegister* arguments, int count) {
  return ConstructSequence(object, arguments, count, false);
}

/// Identifiers of the members that the classes use. They are taken before any script or module can
/// use up the table of names.
struct MemberNames {
  std::uint16_t x = MakeNameId("X");
  std::uint16_t y = MakeNameId("Y");
  std::uint16_t progress = MakeNameId("Progress");
  std::uint16_t caption = MakeNameId("Caption");
  std::uint16_t cancelled = MakeNameId("Cancelled");
};

const MemberNames& Names() {
  static const MemberNames names;
  return names;
}

/// The member, created where it does not exist; null with a pending error when it cannot be.
Variable* MakeMember(Object& object, std::uint16_t nameId) {
  Variable* member = object.FindOrCreateMember(nameId);
  if (member == nullptr) FailForMemory();
  return member;
}

/// TFunc(abscissae, ordinates); TFunc(), an empty table.
bool ConstructTabulatedFunction(Object& object, VarRegister* arguments, int count) {
  Variable* abscissae = MakeMember(object, Names().x);
  Variable* ordinates = abscissae == nullptr ? nullptr : MakeMember(object, Names().y);
  if (ordinates == nullptr) return false;
  if (count == 0) return MakeZeros(*abscissae, 0) && MakeZeros(*ordinates, 0);
  if (count != 2) return Fail("TFunc takes two arguments: abscissae and ordinates");
  const Variable& x = arguments[0].GetVar();
  const Variable& y = arguments[1].GetVar();
  if (!HasElements(x) || !HasElements(y)) return Fail("TFunc takes arrays of numbers");
  if (x.GetDim() != y.GetDim()) {
    return Fail("TFunc takes as many ordinates as abscissae, got " + std::to_string(y.GetDim()) +
                " and " + std::to_string(x.GetDim()));
  }
  return TakeElements(*abscissae, x) && TakeElements(*ordinates, y);
}

// Progress windows. There is no window: the embedding program may watch what one would show.

bool ConstructProgressWindow(Object& object, VarRegister* /*arguments*/, int count) {
  if (count != 0) return Fail("ProgressWnd takes no arguments");
  Variable* progress = MakeMember(object, Names().progress);
  Variable* caption = progress == nullptr ? nullptr : MakeMember(object, Names().caption);
  Variable* cancelled = caption == nullptr ? nullptr : MakeMember(object, Names().cancelled);
  if (cancelled == nullptr) return false;
  *progress = 0;
  VariableAccess::SetText(*caption, "");
  *cancelled = 0;
  return true;
}

double MemberNumber(Object& object, std::uint16_t nameId) {
  const Variable* member = object.FindMember(nameId);
  return member == nullptr ? 0.0 : member->GetDoubleNumb();
}

void ReportProgress(Object& object) {
  HostState* host = CurrentHost();
  if (host == nullptr || !host->progressWatcher) return;
  const Variable* caption = object.FindMember(Names().caption);
  host->progressWatcher(static_cast<std::int32_t>(MemberNumber(object, Names().progress)),
                        caption == nullptr ? std::string_view() : VariableAccess::Text(*caption));
}

void SetMember(Object& object, std::uint16_t nameId, const Variable& value) {
  Variable* member = MakeMember(object, nameId);
  if (member == nullptr) return;
  *member = value;
  ReportProgress(object);
}

void SetProgress(Object& object, VarRegister* arguments, Variable& /*result*/) {
  SetMember(object, Names().progress, arguments[0].GetVar());
}

void SetCaption(Object& object, VarRegister* arguments, Variable& /*result*/) {
  SetMember(object, Names().caption, arguments[0].GetVar());
}

void Cancel(Object& object, VarRegister* /*arguments*/, Variable& /*result*/) {
  SetMember(object, Names().cancelled, Variable(1));
}

void CheckCancel(Object& object, VarRegister* /*arguments*/, Variable& result) {
  HostState* host = CurrentHost();
  const bool requested = host != nullptr && (host->TakeCancelRequest() || host->StopRequested());
  const bool cancelled = requested || MemberNumber(object, Names().cancelled) != 0.0;
  result = cancelled ? 1 : 0;
  if (cancelled) TarnError(kErrorCancel);
}

constexpr ScriptMethod kProgressMethods[] = {
    {"SetProgress", MethodParameter::kInteger, SetProgress},
    {"SetCaption", MethodParameter::kText, SetCaption},
    {"CheckCancel", MethodParameter::kNone, CheckCancel},
    {"Cancel", MethodParameter::kNone, Cancel},
};

struct BuiltinClasses {
  const MemberNames& names = Names();
  BaseClass arrayBase{VARCLASS_ARRAY};
  BaseClass vectorBase{VARCLASS_VECTOR};
  ScriptClass array{"Array", &arrayBase, ConstructArray, {}};
  ScriptClass vector{"Vector", &vectorBase, ConstructVector, {}};
  ScriptClass mathVector{"MVector", &vectorBase, ConstructVector, {}};
  ScriptClass tabulatedFunction{"TFunc", nullptr, ConstructTabulatedFunction, {}};
  ScriptClass progressWindow{"ProgressWnd", nullptr, ConstructProgressWindow, kProgressMethods};
  ScriptClass record{"Record", nullptr, ConstructWithoutMembers, {}};
  ScriptClass options{"Options", nullptr, ConstructWithoutMembers, {}};
  std::array<const ScriptClass*, 7> all{&array,          &vector, &mathVector, &tabulatedFunction,
                                        &progressWindow, &record, &options};
};

const BuiltinClasses& Classes() {
  // Never destroyed: objects of these classes may live until the process ends.
  static const auto& classes = *new BuiltinClasses;
  return classes;
}

}  // namespace

bool ConstructWithoutMembers(Object& object, VarRegister* /*arguments*/, int count) {
  return count == 0 || Fail(std::string(object.Class().Name()) + " takes no arguments");
}

std::span<const ScriptClass* const> ScriptClasses() { return Classes().all; }

const ScriptClass& OptionsClass() { return Classes().options; }

}  // namespace tarn
