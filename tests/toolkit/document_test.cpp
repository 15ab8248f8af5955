// What docs/toolkit.md says is what happens, and it leaves no method out.

#include "support/script_document.h"
#include "toolkit/toolkit_fixture.h"

namespace {

std::string Document() { return FileText(TARN_SOURCE_DIR "/docs/toolkit.md"); }

/// Errors that are caught in the page's scripts carry the place, which the page leaves out.
std::string WithoutPlaces(std::string text) {
  const std::string place = "script.lua:";
  for (std::size_t at = text.find(place); at != std::string::npos; at = text.find(place)) {
    text.erase(at, text.find(' ', at) + 1 - at);
  }
  return text;
}

TEST_F(ToolkitTest, ScriptsOfThePageDoWhatTheySay) {
  const std::vector<std::string> scripts = Blocks(Document(), "lua");
  ASSERT_GE(scripts.size(), 5U);
  for (const std::string& script : scripts) {
    output.clear();
    EXPECT_TRUE(host.Evaluate(script, nullptr, "script.lua"))
        << script << host.TakeError().ToString();
    EXPECT_EQ(WithoutPlaces(output), ExpectedOutput(script)) << script;
  }
}

TEST_F(ToolkitTest, ThePageHasEveryMethod) {
  const std::string document = Document();
  int methods = 0;
  for (const std::string& signature : host.Signatures()) {
    const std::size_t dot = signature.find('.');
    if (dot == std::string::npos || signature.compare(dot + 1, 2, "__") == 0) continue;
    const std::string name = signature.substr(dot + 1, signature.find('(') - dot - 1);
    EXPECT_NE(document.find(":" + name), std::string::npos) << signature;
    ++methods;
  }
  EXPECT_GT(methods, 50);
}

}  // namespace
