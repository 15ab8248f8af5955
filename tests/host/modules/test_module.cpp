/// @file
/// A module that does with the host interface what real modules do, one thing per function.

#include <cstring>
#include <stdexcept>

#include "frame/module_entry.h"

namespace {

void Echo(VarRegister& result, VarRegister* arguments) { result.GetVar() = arguments[0].GetVar(); }

void EchoByReference(VarRegister& result, VarRegister* arguments) {
  result.PointTo(&arguments[0].GetVar());
}

void Half(VarRegister& result, VarRegister* arguments) {
  const double number = arguments[0];
  result = number / 2.0;
}

void Whole(VarRegister& result, VarRegister* arguments) {
  const int number = arguments[0];
  result = number;
}

void Sum(VarRegister& result, VarRegister* arguments) {
  Variable& values = arguments[0].GetVar();
  double sum = 0.0;
  for (std::int64_t i = 0; i < values.GetDim(); ++i) sum += values[i].GetDoubleNumb();
  result = sum;
}

void Double(VarRegister& /*result*/, VarRegister* arguments) {
  Variable& values = arguments[0].GetVar();
  for (std::int64_t i = 0; i < values.GetDim(); ++i) values[i] = 2.0 * values[i].GetDoubleNumb();
}

void Nothing(VarRegister& /*result*/, VarRegister* /*arguments*/) {}

void Words(VarRegister& result, VarRegister* /*arguments*/) { result = "some words"; }

void SumOfSix(VarRegister& result, VarRegister* arguments) {
  double sum = 0.0;
  for (int i = 0; i < 6; ++i) sum += static_cast<double>(arguments[i]);
  result = sum;
}

/// RaiseError(number, message): 0 raises nothing.
void RaiseError(VarRegister& result, VarRegister* arguments) {
  result = 7;
  const int number = arguments[0];
  const char* message = arguments[1].GetVar();
  if (number != 0) TarnError(number, message);
}

void RaiseNumber(VarRegister& /*result*/, VarRegister* arguments) {
  TarnError(static_cast<int>(arguments[0]));
}

void Throw(VarRegister& /*result*/, VarRegister* /*arguments*/) {
  throw std::runtime_error("thrown by a module");
}

/// Apply(function, argument): the function's value, and 0 where it fails.
void Apply(VarRegister& result, VarRegister* arguments) {
  VarRegister argument;
  argument.PointTo(&arguments[1].GetVar());
  VarRegister value;
  GetOwner()->RunFunctionAsIs(value, arguments[0].GetVar(), &argument, 1);
  result.GetVar() = value.GetVar();
}

/// As `Apply`, but goes on as if nothing had happened when the function fails.
void ApplyForgiving(VarRegister& result, VarRegister* arguments) {
  Apply(result, arguments);
  GetOwner()->pendingError = 0;
}

/// ApplyByReference(function, x, extra): the function may change its second argument, whose value
/// after the call is the result.
void ApplyByReference(VarRegister& result, VarRegister* arguments) {
  Variable extra = arguments[2].GetVar();
  VarRegister passed[2];
  passed[0] = static_cast<double>(arguments[1]);
  passed[1].PointTo(&extra);
  passed[1].SetRef();
  VarRegister value;
  GetOwner()->RunFunctionAsIs(value, arguments[0].GetVar(), passed, 2);
  result.GetVar() = extra;
}

/// Progress(window, number): drives a progress window as a long computation does.
void Progress(VarRegister& result, VarRegister* arguments) {
  Processor* processor = GetOwner();
  VarRegister ignored;
  VarRegister progress;
  progress = static_cast<double>(arguments[1]);
  processor->RunMethod(ignored, "SetProgress", &progress, 1, &arguments[0].GetVar());
  VarRegister caption;
  caption = "Residue = 0.5";
  processor->RunMethod(ignored, "SetCaption", &caption, 1, &arguments[0].GetVar());
  processor->RunMethodAsIs(ignored, "CheckCancel", nullptr, 0, &arguments[0].GetVar());
  processor->FlushIdle();
  result = processor->pendingError;
}

/// Pointer(): a native pointer; IsPointer(value): whether it is that one.
int pointedTo = 0;
void Pointer(VarRegister& result, VarRegister* /*arguments*/) {
  result.GetVar().SetCppPointer(&pointedTo);
}
void IsPointer(VarRegister& result, VarRegister* arguments) {
  result = arguments[0].GetVar().GetCppPointer() == &pointedTo ? 1 : 0;
}

void Bytes(VarRegister& result, VarRegister* /*arguments*/) {
  Variable& bytes = result.GetVar();
  bytes.Init(VARTYPE_BYTES, 3);
  if (char* block = bytes) std::memcpy(block, "\x01\xfe\x7f", 3);
}

/// Keep(value) keeps a copy beyond the call; Kept() gives it back, Forget() drops it.
Variable* kept = nullptr;
void Forget(VarRegister& /*result*/, VarRegister* /*arguments*/) {
  delete kept;
  kept = nullptr;
}
void Keep(VarRegister& result, VarRegister* arguments) {
  Forget(result, arguments);
  kept = new Variable(arguments[0].GetVar());
}
void Kept(VarRegister& result, VarRegister* /*arguments*/) {
  if (kept != nullptr) result.GetVar() = *kept;
}

/// Make(class, argument): an object of that class; empty where it cannot be made.
void Make(VarRegister& result, VarRegister* arguments) {
  GetOwner()->MakeInstance(result.GetVar(), arguments[0].GetVar(), &arguments[1], 1);
}

void PointsX(VarRegister& result, VarRegister* arguments) {
  result.GetVar() = arguments[0].GetVar()("X");
}

const ScriptFunction kFunctions[] = {
    {Echo, "Echo(any)"},
    {EchoByReference, "EchoByReference(any)"},
    {Half, "Half(number)"},
    {Whole, "Whole(int)"},
    {Sum, "Sum(refer object Vector)"},
    {Double, "Double(refer object Vector)"},
    {Nothing, "Nothing()"},
    {Words, "Words()"},
    {SumOfSix, "SumOfSix(number, number, number, number, number, number)"},
    {RaiseError, "RaiseError(int, any)"},
    {RaiseNumber, "RaiseNumber(int)"},
    {Throw, "Throw()"},
    {Apply, "Apply(any, any)"},
    {ApplyForgiving, "ApplyForgiving(any, any)"},
    {ApplyByReference, "ApplyByReference(any, number, any)"},
    {Progress, "Progress(refer object ProgressWnd, number)"},
    {Pointer, "Pointer()"},
    {IsPointer, "IsPointer(any)"},
    {Bytes, "Bytes()"},
    {Keep, "Keep(any)"},
    {Kept, "Kept()"},
    {Forget, "Forget()"},
    {Make, "Make(any, any)"},
    {PointsX, "PointsX(refer object TFunc)"},
    {nullptr, ""},
};

char* Describe(char* destination, std::int32_t length) {
  return std::strncpy(destination, "Module for tests |TARN version:1.02.03",
                      static_cast<std::size_t>(length));
}

const ScriptFunction* Functions() { return kFunctions; }

const void* AuxTable() {
  static const char block[40] = {};
  return block;
}

/// Defines the script constant TEST_MODULE_ERROR once, as modules do.
void Initialise(Processor* processor) {
  if (processor == nullptr || processor->GetConstant("TEST_MODULE_ERROR") != nullptr) return;
  const Variable number(
      static_cast<std::int32_t>(processor->RegisterError("The test module failed.")));
  processor->SetConstant(Token::GetNameID("TEST_MODULE_ERROR"), number);
}

}  // namespace

const TarnEntry tarn_ordinals[TARN_ORDINAL_COUNT] = {
    nullptr,
    nullptr,
    reinterpret_cast<TarnEntry>(&Describe),
    reinterpret_cast<TarnEntry>(&Functions),
    reinterpret_cast<TarnEntry>(&AuxTable),
    reinterpret_cast<TarnEntry>(&Initialise),
};
