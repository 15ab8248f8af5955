// "Plot" in scripts: pictures, drawings in characters, mistakes.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "toolkit/toolkit_fixture.h"

namespace {

std::string FileStart(const std::string& path, std::size_t length) {
  std::ifstream file(path, std::ios::binary);
  std::string text(length, '\0');
  file.read(text.data(), static_cast<std::streamsize>(length));
  return text;
}

std::string Whole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST_F(ToolkitTest, DrawsInCharactersWithoutAFile) {
  Run("Plot{x = {0, 1, 2}, y = {0, 1, 4}, title = 'squares of a user\\'s choice', width = 60, "
      "height = 12}");
  EXPECT_NE(output.find("squares of a user's choice"), std::string::npos);
  EXPECT_NE(output.find('*'), std::string::npos);
  EXPECT_EQ(output.find('\f'), std::string::npos);
  EXPECT_LE(std::count(output.begin(), output.end(), '\n'), 12);
}

TEST_F(ToolkitTest, WritesPictures) {
  const std::string png = TemporaryPath("plot.png");
  const std::string svg = TemporaryPath("it's a plot.svg");
  Run("Plot{file = '" + png + "', x = {0, 1, 2}, y = {0, 1, 4}, errors = {1, 1, 1}}");
  EXPECT_EQ(FileStart(png, 8), "\x89PNG\r\n\x1a\n");
  Run("Plot{file = \"" + svg +
      "\", curves = {{y = {1, 2, 3}, label = 'rising', style = 'steps'}, "
      "{f = TFunc({1, 3}, {3, 1}), label = 'falling'}, {x = {1, 2}, y = {1, 1}, style = 'bars'}}, "
      "xlabel = 'time', ylabel = 'height', xrange = {0, 4}, yrange = {0.5, 5}, logy = true}");
  const std::string picture = Whole(svg);
  EXPECT_NE(picture.find("<svg"), std::string::npos);
  for (const char* text : {"rising", "falling", "time", "height"}) {
    EXPECT_NE(picture.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(output, "");
  std::filesystem::remove(png);
  std::filesystem::remove(svg);
}

TEST_F(ToolkitTest, PlotsSayWhatIsWrongWithTheirArguments) {
  EXPECT_EQ(Refusal("Plot{}"), "3 Plot: y is missing");
  EXPECT_EQ(Refusal("Plot{x = {1, 2}, y = {1}}"), "3 Plot: y has 1 element, but x has 2");
  EXPECT_EQ(Refusal("Plot{x = {1}, y = {1}, errors = {1, 2}}"),
            "3 Plot: errors has 2 elements, but y has 1");
  EXPECT_EQ(Refusal("Plot{y = {1, 'x'}}"), "3 Plot: y[2] must be a number, got text");
  EXPECT_EQ(Refusal("Plot{y = {1}, style = 'lines'}"),
            "3 Plot: style has the unknown value \"lines\"; did you mean \"line\"?");
  EXPECT_EQ(Refusal("Plot{y = {1}, errors = {1}, style = 'line'}"),
            "3 Plot: the curve has errors, which go with points");
  EXPECT_EQ(Refusal("Plot{y = {1}, file = 'plot.gif'}"),
            "3 Plot: file must end in .png or .svg, got \"plot.gif\"");
  EXPECT_EQ(Refusal("Plot{y = {1}, xrange = {2, 1}}"),
            "3 Plot: xrange must be a pair {lower, upper}");
  EXPECT_EQ(Refusal("Plot{y = {1}, lable = 'x'}"),
            "3 Plot: unknown option \"lable\"; did you mean \"label\"?");
  EXPECT_EQ(Refusal("Plot{y = {1}, curves = {{y = {1}}}}"),
            "3 Plot: y belongs into one of the curves");
  EXPECT_EQ(Refusal("Plot{curves = {{y = {1}}, {x = {1}}}}"), "3 Plot: curves[2].y is missing");
  EXPECT_EQ(Refusal("Plot{curves = {{y = {1}}, {y = {1, 'x'}}}}"),
            "3 Plot: curves[2].y[2] must be a number, got text");
  EXPECT_EQ(Refusal("Plot{curves = {{y = {1}, colour = 1}}}").substr(0, 48),
            "3 Plot: curves[1]: unknown option \"colour\"; know");
  EXPECT_EQ(Refusal("Plot{f = 3}"), "3 Plot: f must be a TFunc, got 3");
  EXPECT_EQ(Refusal("Plot{f = TFunc({1, 2}, {1, 2}), x = {1}}"),
            "3 Plot: the curve has both a function and points");
}

TEST_F(ToolkitTest, AFolderThatDoesNotExistIsAFileError) {
  const HostError error = Failure("Plot{y = {1, 2}, file = '/no such folder/plot.png'}");
  EXPECT_EQ(error.number, 6);
  EXPECT_EQ(error.message,
            "/no such folder/plot.png: cannot be written: No such file or directory");
}

TEST_F(ToolkitTest, APlotNeedsAPointToDraw) {
  const std::string refusal =
      "3 Plot: no point is finite, inside xrange and above 0 on logarithmic axes";
  EXPECT_EQ(Refusal("Plot{y = {0/0, 1/0}}"), refusal);
  EXPECT_EQ(Refusal("Plot{y = {1, 2}, xrange = {5, 6}}"), refusal);
  EXPECT_EQ(Refusal("Plot{y = {0, -1}, logy = true}"), refusal);
  EXPECT_EQ(Refusal("Plot{x = {0, -1}, y = {1, 2}, logx = true}"), refusal);
  Run("Plot{x = {0, 10}, y = {0, 1}, xrange = {5, 6}, yrange = {0, 1}}");
  EXPECT_NE(output.find('5'), std::string::npos);
}

// The lowest label of the axis is its last one.
TEST_F(ToolkitTest, BarsStandOnZero) {
  Run("Plot{x = {1, 2, 3}, y = {3, 4, 5}, style = 'bars', width = 40, height = 12}");
  EXPECT_NE(output.find("\n  0 +--"), std::string::npos) << output;
}

/// The search path with a program gnuplot of one's own in front, for the life of the object.
class OwnGnuplot {
 public:
  explicit OwnGnuplot(const std::string& commands)
      : folder_(TemporaryPath("gnuplot")), path_(std::getenv("PATH")) {
    std::filesystem::create_directories(folder_);
    const std::string program = folder_ + "/gnuplot";
    std::ofstream(program) << "#!/bin/sh\n" << commands << '\n';
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    setenv("PATH", (folder_ + ':' + path_).c_str(), 1);
  }
  ~OwnGnuplot() {
    setenv("PATH", path_.c_str(), 1);
    std::filesystem::remove_all(folder_);
  }
  OwnGnuplot(const OwnGnuplot&) = delete;
  OwnGnuplot& operator=(const OwnGnuplot&) = delete;

 private:
  std::string folder_;
  std::string path_;
};

TEST_F(ToolkitTest, APlotCanBeCancelled) {
  const OwnGnuplot gnuplot("kill -INT $$");
  EXPECT_EQ(Refusal("Plot{y = {1, 2}}"), "1000 Plot: Progress window got cancel");
}

TEST_F(ToolkitTest, TellsWhatGnuplotDidNotLike) {
  const OwnGnuplot gnuplot(
      "echo first >&2; echo '\"/tmp/a: b/plot.gp\" line 7: not this' >&2; exit 1");
  EXPECT_EQ(Refusal("Plot{y = {1, 2}}"), "6 Plot: gnuplot: not this");
}

}  // namespace
