#include "frame/module_entry.h"

#include <cstdio>
#include <cstring>

#include "frame/module_state.h"
#include "special/random_lock.h"

namespace tarn {
namespace {

constexpr int kVersionMajor = 5;
constexpr int kVersionMinor = 9;
constexpr int kVersionRelease = 2;
constexpr char kSolutionNotFoundName[] = "ERR_SOLUTION_NOT_FOUND";
constexpr char kSolutionNotFoundText[] = "Can't find solution of system.";
alignas(16) constexpr unsigned char kAuxTable[40] = {};

/// Stores the constant's number when the host knows the constant.
bool AdoptSolutionNotFoundError(Processor& processor) {
  const Tree* constant = processor.GetConstant(kSolutionNotFoundName);
  if (constant == nullptr) return false;
  SetSolutionNotFoundError(constant->GetInt32());
  return true;
}

void DefineSolutionNotFoundError(Processor& processor) {
  const Variable number(static_cast<std::int32_t>(processor.RegisterError(kSolutionNotFoundText)));
  processor.SetConstant(Token::GetNameID(kSolutionNotFoundName), number);
  AdoptSolutionNotFoundError(processor);
}

}  // namespace

char* DescribeModule(char* destination, std::int32_t length) {
  char text[256];
  std::snprintf(text, sizeof(text), "TARN Support DLL v5.0 |TARN version:%d.%02d.%02d",
                kVersionMajor, kVersionMinor, kVersionRelease);
  if (length > 0) std::strncpy(destination, text, static_cast<std::size_t>(length));
  return destination;
}

const void* GetAuxTable() { return kAuxTable; }

void InitModule(Processor* processor) {
  if (processor == nullptr) return;
  if (GetSolutionNotFoundError() != 0) return;
  if (!AdoptSolutionNotFoundError(*processor)) DefineSolutionNotFoundError(*processor);
  CreateRandomLock();
}

}  // namespace tarn

#if !defined(_WIN32)
const TarnEntry tarn_ordinals[TARN_ORDINAL_COUNT] = {
    nullptr,
    nullptr,
    reinterpret_cast<TarnEntry>(&tarn::DescribeModule),
    reinterpret_cast<TarnEntry>(&tarn::GetScriptFunctions),
    reinterpret_cast<TarnEntry>(&tarn::GetAuxTable),
    reinterpret_cast<TarnEntry>(&tarn::InitModule),
};
#endif
