#ifndef TARN_HOST_OWNED_OBJECT_H
#define TARN_HOST_OWNED_OBJECT_H

/// @file
/// Native objects that script values own together; the last value deletes the object.

#include <cstdint>

#include "frame/host.h"

namespace tarn {

struct OwnedObject {
  std::uint32_t uses;
  TarnAss* object;
};

/// A block with one use; null when the heap refuses.
OwnedObject* MakeOwnedObject(TarnAss* object);
void AddUse(OwnedObject* owned);
/// Gives one use back; the last one deletes the native object.
void DropUse(OwnedObject* owned);

}  // namespace tarn

#endif
