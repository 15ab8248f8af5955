// Every reason has a text of its own.

#include <set>

#include "one_dimensional_support.h"

namespace {

TEST(StopReasonTest, EveryReasonHasATextOfItsOwn) {
  std::set<std::string> texts;
  const int last = static_cast<int>(tarn::StopReason::kMemoryExhausted);
  for (int i = 0; i <= last; ++i) {
    texts.insert(tarn::GetStopReasonText(static_cast<tarn::StopReason>(i)));
  }
  EXPECT_EQ(texts.size(), static_cast<std::size_t>(last) + 1);
  EXPECT_FALSE(texts.contains("unknown"));
}

}  // namespace
