#ifndef TARN_HOST_EMBEDDED_HOST_IMPLEMENTATION_H
#define TARN_HOST_EMBEDDED_HOST_IMPLEMENTATION_H

#include "host/embedded_host.h"
#include "host/host_state.h"

struct EmbeddedHost::Implementation : tarn::HostState {};

#endif
