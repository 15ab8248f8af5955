/// @file
/// Results as members of a script object.

#include "stat/script_members.h"
#include "stat/stat.h"

void Stat::UpdateTarnObject(Variable& obj) {
  obj("Mean") = Mean;
  obj("Disp") = Disp;
  obj("SEM2") = SEM2;
  obj("Disp0") = Disp0;
  obj("DispSimple") = DispSimple;
  obj("E2") = E2;
  obj("E3") = E3;
  obj("E4") = E4;
  obj("DistrType") = static_cast<std::int32_t>(DistrType);
  obj("Min") = Min;
  obj("Max") = Max;
  obj("Sum") = Sum;
  if (estDataDisp != nullptr) {
    tarn::StoreNumbers(obj("estDataDisp"), estDataDisp, len);
  } else {
    obj("estDataDisp").Clear();
  }
  obj("LogNormDisp") = LogNormDisp;
  obj("LogNormMean") = LogNormMean;
  obj("MeanType") = MeanType;
}
