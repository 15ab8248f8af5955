#include "handler.h"

#include <new>

#include "fault.h"

namespace tarn::toolkit {

void RunBody(Body body, const Call& call) try { body(call); } catch (const Fault& fault) {
  TarnError(fault.Number(), fault.what());
} catch (const AlreadyRaised&) {
  return;
} catch (const std::bad_alloc&) {
  TarnError(kErrorMemory);
} catch (const std::length_error&) {
  TarnError(kErrorMemory);
}

}  // namespace tarn::toolkit
