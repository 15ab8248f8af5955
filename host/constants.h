#ifndef TARN_HOST_CONSTANTS_H
#define TARN_HOST_CONSTANTS_H

/// @file
/// Script constants. The table belongs to the process, like the modules that define them.

#include <cstdint>
#include <functional>
#include <string>

#include "frame/host.h"

namespace tarn {

/// The node of a constant; null when there is none.
const Tree* FindConstant(std::uint16_t nameId);
/// Defines or redefines a constant by its value as a 32-bit number. False when memory is exhausted.
bool DefineConstant(std::uint16_t nameId, std::int32_t value);
/// Removes a constant; its node becomes invalid.
void RemoveConstant(std::uint16_t nameId);
/// Calls `visit` for every constant.
void ForEachConstant(const std::function<void(std::uint16_t nameId, std::int32_t value)>& visit);

}  // namespace tarn

#endif
