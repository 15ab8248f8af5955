/// @file
/// A module one of whose entries is null.

#include "frame/module_entry.h"

const TarnEntry tarn_ordinals[TARN_ORDINAL_COUNT] = {};
