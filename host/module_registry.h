#ifndef TARN_HOST_MODULE_REGISTRY_H
#define TARN_HOST_MODULE_REGISTRY_H

#include <optional>
#include <string>

#include "host/host_state.h"

namespace tarn {

/// Loads a module into a host: opens and checks it, initialises it, and registers its functions
/// for scripts. Loading a module again only gives it the host's present error offset. Returns the
/// error, with which nothing is registered.
std::optional<HostError> LoadModule(HostState& host, const std::string& path);

}  // namespace tarn

#endif
