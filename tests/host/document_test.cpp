/// @file
/// What docs/host.md says is what happens: its script examples, its table of errors, its program.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/host_fixture.h"
#include "tests/support/script_document.h"

namespace {

std::string Document() { return FileText(TARN_SOURCE_DIR "/docs/host.md"); }

class HostDocument : public HostTest {
 protected:
  HostDocument() : folder(TemporaryPath("document")), before(std::filesystem::current_path()) {
    std::filesystem::create_directory(folder);
    std::filesystem::current_path(folder);
    std::ofstream("runs.csv") << "speed,run\n299.9,1\n299.8,2\n";
  }
  ~HostDocument() override {
    std::filesystem::current_path(before);
    std::filesystem::remove_all(folder);
  }

  std::filesystem::path folder;
  std::filesystem::path before;
};

TEST_F(HostDocument, ScriptsDoWhatTheySay) {
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  const std::vector<std::string> scripts = Blocks(Document(), "lua");
  ASSERT_EQ(scripts.size(), 5U);
  for (const std::string& script : scripts) {
    output.clear();
    EXPECT_TRUE(host.Evaluate(script, nullptr, "script.lua"))
        << script << host.TakeError().ToString();
    EXPECT_EQ(output, ExpectedOutput(script)) << script;
  }
}

TEST_F(HostDocument, ErrorsHaveTheirTexts) {
  const std::string document = Document();
  const std::regex row(R"(\n\| (\d+) \| ([^|]+) \|)");
  int rows = 0;
  for (std::sregex_iterator match(document.begin(), document.end(), row), end; match != end;
       ++match) {
    EXPECT_EQ(host.GetProcessor().GetErrorName(std::stoi((*match)[1])), (*match)[2].str());
    ++rows;
  }
  EXPECT_EQ(rows, 8);
}

TEST_F(HostDocument, NamesTheFunctionsThatScriptsHave) {
  const std::string document = Document();
  for (const char* name :
       {"print", "array", "vector", "complex", "totable", "Load", "Rand", "Seed", "ReadColumns"}) {
    EXPECT_EQ(Text(std::string("type(") + name + ")"), "function");
    EXPECT_NE(document.find(std::string("| `") + name + "("), std::string::npos) << name;
  }
  for (const char* name :
       {"Vector", "MVector", "Array", "TFunc", "ProgressWnd", "Record", "Options"}) {
    EXPECT_EQ(Text(std::string("type(") + name + ")"), "function");
    EXPECT_NE(document.find(std::string("`") + name + "`"), std::string::npos) << name;
  }
}

TEST(HostDocumentProgram, IsTheOneThatIsBuiltAndRun) {
  const std::vector<std::string> programs = Blocks(Document(), "cpp");
  ASSERT_EQ(programs.size(), 1U);
  EXPECT_EQ(programs[0], FileText(TARN_SOURCE_DIR "/tests/host/embedding_example.cpp"));
}

}  // namespace
