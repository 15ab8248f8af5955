// "Plot" in scripts: pictures, drawings in characters, mistakes.

#include <algorithm>
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
            "3 Plot: errors has 2 elements, but x has 1");
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
  EXPECT_EQ(Refusal("Plot{curves = {{y = {1}}, {x = {1}}}}"), "3 Plot: y is missing");
  EXPECT_EQ(Refusal("Plot{curves = {{y = {1}, colour = 1}}}").substr(0, 37),
            "3 Plot: unknown option \"colour\"; know");
  EXPECT_EQ(Refusal("Plot{f = 3}"), "3 Plot: f must be a TFunc, got 3");
  EXPECT_EQ(Refusal("Plot{f = TFunc({1, 2}, {1, 2}), x = {1}}"),
            "3 Plot: the curve has both a function and points");
}

TEST_F(ToolkitTest, AFolderThatDoesNotExistIsAFileError) {
  const HostError error = Failure("Plot{y = {1, 2}, file = '/no such folder/plot.png'}");
  EXPECT_EQ(error.number, 6);
}

}  // namespace
