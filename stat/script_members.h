#ifndef TARN_STAT_SCRIPT_MEMBERS_H
#define TARN_STAT_SCRIPT_MEMBERS_H

/// @file
/// Numbers and native arrays inside script values.

#include <cstdint>

#include "frame/host.h"

namespace tarn {

/// Makes `member` a plain array of `count` real numbers; empty when the host heap refuses.
inline void StoreNumbers(Variable& member, const double* numbers, std::int64_t count) {
  member.Init(VARTYPE_ARRAY, count);
  if (member.GetDim() != count) return;
  Variable* const elements = member.GetArray();
  for (std::int64_t i = 0; i < count; ++i) elements[i] = numbers[i];
}

}  // namespace tarn

#endif
