// Every reason has a text of its own and a line in docs/why-did-it-stop.md.

#include <regex>
#include <set>

#include "document_text.h"
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

TEST(StopReasonTest, PageExplainsEveryReason) {
  const std::string header = DocumentText("../optim/stop_reason.h");
  const std::string page = DocumentText("why-did-it-stop.md");
  const std::regex enumerator("\n  (k[A-Z]\\w*),? ");
  int found = 0;
  for (std::sregex_iterator i(header.begin(), header.end(), enumerator), end; i != end; ++i) {
    EXPECT_NE(page.find("| `" + (*i)[1].str() + "` |"), std::string::npos) << (*i)[1];
    ++found;
  }
  EXPECT_EQ(found, static_cast<int>(tarn::StopReason::kMemoryExhausted) + 1);
}

}  // namespace
