#ifndef TARN_HOST_NAMES_H
#define TARN_HOST_NAMES_H

/// @file
/// The table of names. It belongs to the process: modules keep identifiers across hosts.

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/host.h"

namespace tarn {

/// No name has this identifier.
inline constexpr std::uint16_t kNoName = 0;

/// The identifier of a name that is in the table; `kNoName` for any other.
std::uint16_t FindNameId(std::string_view name);
/// The identifier of a name, which enters the table now if it is not there; `kNoName` once all
/// 16-bit identifiers are taken, and when memory is exhausted.
std::uint16_t MakeNameId(std::string_view name);
/// The name of an identifier; empty for one that was never given out.
std::string NameOf(std::uint16_t nameId);
/// The same as a text that stays valid while the process lives; null for one never given out.
const char* NameText(std::uint16_t nameId);

}  // namespace tarn

#endif
