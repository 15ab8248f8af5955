#include "host/uniform_source.h"

#include <bit>

#include "frame/host.h"
#include "host/host_state.h"

namespace tarn {

void UniformSource::Seed(std::uint64_t seed) {
  for (std::uint64_t& word : state_) {
    seed += 0x9e3779b97f4a7c15U;
    std::uint64_t mixed = seed;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebU;
    word = mixed ^ (mixed >> 31);
  }
}

std::uint64_t UniformSource::NextBits() {
  const std::uint64_t result = std::rotl(state_[0] + state_[3], 23) + state_[0];
  const std::uint64_t shifted = state_[1] << 17;
  state_[2] ^= state_[0];
  state_[3] ^= state_[1];
  state_[1] ^= state_[2];
  state_[0] ^= state_[3];
  state_[2] ^= shifted;
  state_[3] = std::rotl(state_[3], 45);
  return result;
}

}  // namespace tarn

double Rand(double limit) {
  if (tarn::HostState* host = tarn::CurrentHost()) return limit * host->DrawUniform();
  static tarn::UniformSource sourceWithoutHost(tarn::kDefaultSeed);
  return limit * sourceWithoutHost.Next();
}
