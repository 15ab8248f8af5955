#include "host/owned_object.h"

namespace tarn {

OwnedObject* MakeOwnedObject(TarnAss* object) {
  auto* owned = static_cast<OwnedObject*>(HMALLOC(sizeof(OwnedObject)));
  if (owned != nullptr) *owned = {1, object};
  return owned;
}

void AddUse(OwnedObject* owned) { ++owned->uses; }

void DropUse(OwnedObject* owned) {
  if (--owned->uses != 0) return;
  TarnAss* const object = owned->object;
  HFREE(owned);
  delete object;
}

}  // namespace tarn
