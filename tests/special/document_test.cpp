#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/embedded_host.h"
#include "special/accuracy.h"

namespace {

struct Example {
  std::string script;
  std::string output;
};

/// The text of the next fenced block of a language at or after `position`, which moves behind it.
std::string NextBlock(const std::string& document, const std::string& language,
                      std::string::size_type& position) {
  const std::string opening = "```" + language + "\n";
  const auto begin = document.find(opening, position);
  if (begin == std::string::npos) {
    position = begin;
    return "";
  }
  const auto end = document.find("```", begin + opening.size());
  position = end;
  return document.substr(begin + opening.size(), end - begin - opening.size());
}

std::vector<Example> ReadExamples(const std::string& document) {
  std::vector<Example> examples;
  for (std::string::size_type position = 0;;) {
    Example example;
    example.script = NextBlock(document, "lua", position);
    if (position == std::string::npos) return examples;
    example.output = NextBlock(document, "text", position);
    examples.push_back(example);
  }
}

TEST(SpecialFunctionsDocument, ExamplesPrintWhatItSays) {
  EmbeddedHost host;
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  std::string printed;
  host.SetOutput([&printed](std::string_view text) { printed += text; });
  const auto examples =
      ReadExamples(accuracy::ReadText(accuracy::ProjectFile("docs/special-functions.md")));
  EXPECT_GE(examples.size(), 6U);
  for (const Example& example : examples) {
    printed.clear();
    EXPECT_TRUE(host.Evaluate(example.script)) << host.TakeError().ToString();
    EXPECT_EQ(printed, example.output) << example.script;
  }
}

}  // namespace
