// The examples print what is saved in examples/expected, and their data are what was published.

#include <cmath>
#include <sstream>

#include "run_command.h"

namespace {

const std::string kExamples = TARN_SOURCE_DIR "/examples/";

class ExampleTest : public ::testing::TestWithParam<const char*> {};

TEST_P(ExampleTest, PrintsWhatIsSaved) {
  const std::string name = GetParam();
  const CommandResult result = RunTarn({"--seed", "1", kExamples + name + ".lua"});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, ReadFile(kExamples + "expected/" + name + ".txt"));
}

TEST_P(ExampleTest, RunsFromItsOwnFolder) {
  CommandSetup setup;
  setup.folder = kExamples;
  const std::string name = GetParam();
  const CommandResult result = RunTarn({"--seed", "1", name + ".lua"}, setup);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, ReadFile(kExamples + "expected/" + name + ".txt"));
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleTest,
                         ::testing::Values("tour", "michelson_f_test", "alpha_particles_chi2",
                                           "bessel_zeros", "speed_of_light", "decay", "gravitation",
                                           "posterior", "nearly_singular"),
                         [](const auto& example) { return std::string(example.param); });

TEST(ExamplesTest, EveryScriptIsTestedAndShort) {
  std::size_t scripts = 0;
  for (const auto& entry : std::filesystem::directory_iterator(kExamples)) {
    if (entry.path().extension() != ".lua") continue;
    ++scripts;
    const std::string text = ReadFile(entry.path().string());
    EXPECT_LT(std::count(text.begin(), text.end(), '\n'), 60) << entry.path();
    EXPECT_TRUE(
        std::filesystem::exists(kExamples + "expected/" + entry.path().stem().string() + ".txt"));
  }
  EXPECT_EQ(scripts, 9u);
}

/// What stands between the next `opening` line from `position` on and the closing fence; moves
/// `position` behind it.
std::string TakeBlock(const std::string& page, const std::string& opening, std::size_t& position) {
  const std::size_t begin = page.find("\n" + opening + "\n", position) + opening.size() + 2;
  const std::size_t end = page.find("```", begin);
  position = end + 3;
  return page.substr(begin, end - begin);
}

TEST(ExamplesTest, TheReadmeShowsWhatItsScriptPrints) {
  const std::string page = ReadFile(TARN_SOURCE_DIR "/README.md");
  std::size_t position = 0;
  const std::string script = TakeBlock(page, "```lua", position);
  const std::string output = TakeBlock(page, "```", position);
  CommandSetup setup;
  setup.folder = TARN_SOURCE_DIR;
  const std::string path = ::testing::TempDir() + "readme.lua";
  std::ofstream(path) << script;
  const CommandResult result = RunTarn({path}, setup);
  std::filesystem::remove(path);
  EXPECT_EQ(result.err, "");
  // The page names the script without its folder.
  std::string printed = result.out;
  const std::size_t name = printed.find(path);
  ASSERT_NE(name, std::string::npos) << printed;
  EXPECT_EQ(printed.replace(name, path.size(), "readme.lua"), output);
}

/// Rows of numbers in a file whose comments begin with `#`.
std::vector<std::vector<double>> ReadRows(const std::string& path) {
  std::vector<std::vector<double>> rows;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream fields(line);
    rows.emplace_back();
    for (double value = 0.0; fields >> value;) rows.back().push_back(value);
  }
  return rows;
}

// The same runs in one column, series after series, in thousands of km/s.
TEST(ExamplesTest, MichelsonsRunsAreThePublishedOnes) {
  const std::string path = TARN_SOURCE_DIR "/../shared/data/michelson.txt";
  if (!std::filesystem::exists(path)) GTEST_SKIP() << "reference data are not there";
  const auto published = ReadRows(path);
  const auto series = ReadRows(kExamples + "data/michelson_1879.txt");
  ASSERT_EQ(published.size(), 100u);
  ASSERT_EQ(series.size(), 20u);
  for (std::size_t i = 0; i < published.size(); ++i) {
    EXPECT_NEAR(299.0 + series[i % 20].at(i / 20) / 1000.0, published[i].at(0), 1e-9) << i;
  }
}

TEST(ExamplesTest, RutherfordAndGeigerWatched2608Intervals) {
  double intervals = 0.0;
  const auto rows = ReadRows(kExamples + "data/rutherford_geiger_1910.txt");
  for (const auto& row : rows) intervals += row.at(1);
  EXPECT_EQ(rows.size(), 15u);
  EXPECT_EQ(intervals, 2608.0);
}

}  // namespace
