/// @file
/// Registers: how handlers receive arguments and return results.

#include "host/variable_access.h"

VarRegister::VarRegister() : target_(nullptr), byReference_(0) {}

VarRegister::~VarRegister() = default;

Variable& VarRegister::GetVar() {
  return VariableAccess::Resolve(target_ == nullptr ? own_ : *target_);
}

VarRegister::operator double() { return GetVar().GetDoubleNumb(); }

VarRegister::operator float() { return GetVar().GetFloatNumb(); }

VarRegister::operator int() { return GetVar().GetInt32Numb(); }

VarRegister& VarRegister::operator=(double value) {
  GetVar() = value;
  return *this;
}

VarRegister& VarRegister::operator=(int value) {
  GetVar() = value;
  return *this;
}

VarRegister& VarRegister::operator=(const char* text) {
  if (text == nullptr) {
    GetVar().Clear();
  } else {
    VariableAccess::SetText(GetVar(), text);
  }
  return *this;
}

void VarRegister::PointTo(Variable* value) { target_ = value; }

void VarRegister::SetRef() { byReference_ = 1; }
