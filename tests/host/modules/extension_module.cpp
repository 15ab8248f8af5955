/// @file
/// A module that brings a script class of its own along, with methods and operators, and takes
/// texts, functions, options and optional arguments.

#include <cstring>
#include <string>

#include "frame/module_entry.h"

namespace {

/// What a box holds besides its members; counts how many there are.
class Content : public TarnAss {
 public:
  explicit Content(double initial) : number(initial) { ++live; }
  ~Content() override { --live; }
  Content(const Content&) = delete;
  Content& operator=(const Content&) = delete;

  double number;
  static int live;
};

int Content::live = 0;

double NumberIn(Variable& box) {
  const auto* content = static_cast<Content*>(box("Content").GetCppPointer());
  return content == nullptr ? 0.0 : content->number;
}

void StoreBox(VarRegister& result, double number) {
  Variable& made = result.GetVar();
  if (GetOwner()->MakeInstance(made, "Box", nullptr, 0) == 0) return;
  made("Content").SetOwnedObject(new Content(number));
}

void MakeBox(VarRegister& result, VarRegister* arguments) { StoreBox(result, arguments[0]); }

void LiveContents(VarRegister& result, VarRegister* /*arguments*/) { result = Content::live; }

void Get(VarRegister& result, VarRegister* arguments) { result = NumberIn(arguments[0].GetVar()); }

/// Box.Plus(box, x [, y])
void Plus(VarRegister& result, VarRegister* arguments) {
  const double y = arguments[2].GetVar().TypeWord() == VARTYPE_EMPTY ? 0.0 : arguments[2];
  result = NumberIn(arguments[0].GetVar()) + static_cast<double>(arguments[1]) + y;
}

void Break(VarRegister& /*result*/, VarRegister* /*arguments*/) { TarnError(10, "it broke"); }

void SetNumber(VarRegister& /*result*/, VarRegister* arguments) {
  auto* content = static_cast<Content*>(arguments[0].GetVar()("Content").GetCppPointer());
  content->number = arguments[1];
}

double Operand(Variable& value) {
  return value.IsNumber() != 0 ? value.GetDoubleNumb() : NumberIn(value);
}

/// The kinds of the operands as they stood: "Box+number".
template <char sign>
void KindsOfOperands(VarRegister& result, VarRegister* arguments) {
  const std::string text =
      std::string(arguments[0].GetVar().KindName()) + sign + arguments[1].GetVar().KindName();
  result = text.c_str();
}

void Subtract(VarRegister& result, VarRegister* arguments) {
  StoreBox(result, Operand(arguments[0].GetVar()) - Operand(arguments[1].GetVar()));
}

void Negate(VarRegister& result, VarRegister* arguments) {
  StoreBox(result, -NumberIn(arguments[0].GetVar()));
}

void AreEqual(VarRegister& result, VarRegister* arguments) {
  result = NumberIn(arguments[0].GetVar()) == NumberIn(arguments[1].GetVar()) ? 1 : 0;
}

void LengthOf(VarRegister& result, VarRegister* arguments) {
  result = static_cast<int>(NumberIn(arguments[0].GetVar()));
}

void TextOfBox(VarRegister& result, VarRegister* arguments) {
  const double number = NumberIn(arguments[0].GetVar());
  if (number < 0.0) {
    result = number;
  } else {
    result = number == 0.0 ? "an empty box" : "a box";
  }
}

/// What a value is and holds: "Options(f = function, start = array[2])[1]".
std::string Description(Variable& value) {
  std::string text = value.KindName();
  std::string members;
  for (std::int64_t i = 0; value.GetMemberName(i) != nullptr; ++i) {
    const char* name = value.GetMemberName(i);
    members += std::string(i == 0 ? "" : ", ") + name + " = " + Description(value(name));
  }
  if (!members.empty()) text += '(' + members + ')';
  if (value.GetDim() == 0) return text;
  text += '[';
  for (std::int64_t i = 0; i < value.GetDim(); ++i) {
    text += (i == 0 ? "" : ", ") + Description(value[i]);
  }
  return text + ']';
}

void Describe(VarRegister& result, VarRegister* arguments) {
  result = Description(arguments[0].GetVar()).c_str();
}

/// Sets the first element of the option "values".
void SetFirst(VarRegister& /*result*/, VarRegister* arguments) {
  arguments[0].GetVar()("values")[0] = 42.0;
}

void Join(VarRegister& result, VarRegister* arguments) {
  const char* second = arguments[1].GetVar();
  const std::string text =
      std::string(arguments[0].GetVar()) + '|' + (second == nullptr ? "nothing" : second);
  result = text.c_str();
}

/// CallWith(f, x): f(x)
void CallWith(VarRegister& result, VarRegister* arguments) {
  VarRegister argument;
  argument.PointTo(&arguments[1].GetVar());
  GetOwner()->RunFunctionAsIs(result, arguments[0].GetVar(), &argument, 1);
}

/// CallMany(f, n): calls f n times, whatever becomes of the calls.
void CallMany(VarRegister& /*result*/, VarRegister* arguments) {
  const int count = arguments[1];
  for (int i = 0; i < count; ++i) {
    VarRegister value;
    GetOwner()->RunFunctionAsIs(value, arguments[0].GetVar(), nullptr, 0);
  }
}

/// CheckMany(window, n): asks a progress window n times. The number of times that the check failed.
void CheckMany(VarRegister& result, VarRegister* arguments) {
  const int count = arguments[1];
  int failed = 0;
  for (int i = 0; i < count; ++i) {
    VarRegister value;
    Processor& processor = *GetOwner();
    failed += processor.RunMethodAsIs(value, "CheckCancel", nullptr, 0, &arguments[0].GetVar()) == 0
                  ? 1
                  : 0;
    processor.pendingError = 0;
  }
  result = failed;
}

/// How many of three optional arguments are there.
void CountGiven(VarRegister& result, VarRegister* arguments) {
  int given = 0;
  for (int i = 0; i < 3; ++i) given += arguments[i].GetVar().TypeWord() != VARTYPE_EMPTY ? 1 : 0;
  result = given;
}

void MakeRecord(VarRegister& result, VarRegister* /*arguments*/) {
  Variable& made = result.GetVar();
  if (GetOwner()->MakeInstance(made, "Record", nullptr, 0) == 0) return;
  Variable& point = made("point");
  point.Init(VARTYPE_ARRAY, 2);
  point[0] = 1.0;
  point[1] = 2.5;
  made("evaluations") = 12;
}

char* DescribeSelf(char* destination, std::int32_t length) {
  return std::strncpy(destination, "Extension module |TARN version:5.09.02",
                      static_cast<std::size_t>(length));
}

const ScriptFunction kFunctions[] = {
    {MakeBox, "Box(number)"},
    {LiveContents, "LiveContents()"},
    {Get, "Box.Get(refer object Box)"},
    {SetNumber, "Box.Set(refer object Box, number)"},
    {Plus, "Box.Plus(refer object Box, number, number?)"},
    {Break, "Box.Break(refer object Box)"},
    {KindsOfOperands<'+'>, "Box.__add(any, any)"},
    {Subtract, "Box.__sub(any, any)"},
    {KindsOfOperands<'*'>, "Box.__mul(any, any)"},
    {KindsOfOperands<'/'>, "Box.__div(any, any)"},
    {KindsOfOperands<'^'>, "Box.__pow(refer object Box, number)"},
    {Negate, "Box.__unm(refer object Box)"},
    {AreEqual, "Box.__eq(any, any)"},
    {LengthOf, "Box.__len(any)"},
    {TextOfBox, "Box.__tostring(any)"},
    {Plus, "Box.__call(refer object Box, number, number?)"},
    {Get, "MVector.First(refer object MVector)"},
    {Describe, "Describe(any?)"},
    {Describe, "DescribeOptions(options)"},
    {SetFirst, "SetFirst(options)"},
    {Join, "Join(text, text?)"},
    {CallWith, "CallWith(function, any)"},
    {CallMany, "CallMany(function, int)"},
    {CheckMany, "CheckMany(refer object ProgressWnd, int)"},
    {CountGiven, "CountGiven(any?, number?, options?)"},
    {MakeRecord, "MakeRecord()"},
    {nullptr, ""},
};

const ScriptFunction* Functions() { return kFunctions; }

const void* AuxTable() {
  static const char block[40] = {};
  return block;
}

void Initialise(Processor* /*processor*/) {}

}  // namespace

const TarnEntry tarn_ordinals[TARN_ORDINAL_COUNT] = {
    nullptr,
    nullptr,
    reinterpret_cast<TarnEntry>(&DescribeSelf),
    reinterpret_cast<TarnEntry>(&Functions),
    reinterpret_cast<TarnEntry>(&AuxTable),
    reinterpret_cast<TarnEntry>(&Initialise),
};
