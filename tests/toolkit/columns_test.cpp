// `WriteColumns`.

#include <fstream>
#include <sstream>

#include "toolkit/toolkit_fixture.h"

namespace {

class WriteColumnsTest : public ToolkitTest {
 protected:
  WriteColumnsTest() : path(TemporaryPath("columns.csv")) { Run("path = '" + path + "'"); }
  ~WriteColumnsTest() override { std::remove(path.c_str()); }

  std::string Content() const {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
  }

  std::string path;
};

TEST_F(WriteColumnsTest, WritesColumnsSideBySide) {
  Run("WriteColumns(path, {{1, 2.5, -3e-300}, MVector{4, 5, 1/0}})");
  EXPECT_EQ(Content(), "1,4\n2.5,5\n-3e-300,inf\n");
}

TEST_F(WriteColumnsTest, WritesNamesAndSeparators) {
  Run("WriteColumns(path, {{1, 2}, {3, 4}}, {names = {'x', 'y value'}, separator = ';'})");
  EXPECT_EQ(Content(), "x;y value\n1;3\n2;4\n");
}

TEST_F(WriteColumnsTest, IsReadBackAsItWas) {
  Run("a, b = {}, {} for i = 1, 100 do a[i], b[i] = 1 / i, math.sin(i) * 10 ^ (i - 50) end "
      "WriteColumns(path, {a, b}, {names = {'a', 'b'}})"
      "local x, y, columns = ReadColumns(path, {header = true}) "
      "for i = 1, 100 do assert(x[i] == a[i] and y[i] == b[i], i) end "
      "assert(columns.a == x and columns.b == y)");
}

TEST_F(WriteColumnsTest, RefusesColumnsThatDoNotFit) {
  EXPECT_EQ(Refusal("WriteColumns(path, {{1, 2}, {3}})"),
            "3 WriteColumns: columns[2] has 1 element, but columns[1] has 2");
  EXPECT_EQ(Refusal("WriteColumns(path, {{1, 'x'}})"),
            "3 WriteColumns: columns[1][2] must be a number, got text");
  EXPECT_EQ(Refusal("WriteColumns(path, {1, 2})"),
            "3 WriteColumns: columns[1] must be an array, got 1");
  EXPECT_EQ(Refusal("WriteColumns(path, {})"),
            "3 WriteColumns: columns must be an array, got an empty table");
}

TEST_F(WriteColumnsTest, RefusesNamesThatDoNotFit) {
  EXPECT_EQ(Refusal("WriteColumns(path, {{1}}, {names = {'a', 'b'}})"),
            "3 WriteColumns: names has 2 names for 1 column");
  EXPECT_EQ(Refusal("WriteColumns(path, {{1}}, {names = {'a,b'}})"),
            "3 WriteColumns: names[1] must be a name without the separator, # and line ends");
  EXPECT_EQ(Refusal("WriteColumns(path, {{1}}, {names = {1}})"),
            "3 WriteColumns: names[1] must be a text, got 1");
  EXPECT_EQ(Refusal("WriteColumns(path, {{1}}, {separator = '--'})"),
            "3 WriteColumns: separator must be one character");
  EXPECT_EQ(Refusal("WriteColumns(path, {{1}}, {separator = 'e'})"),
            "3 WriteColumns: separator must be a blank, a tab or one of , ; : |");
  EXPECT_EQ(Refusal("WriteColumns(path, {{1}}, {seperator = ' '})"),
            "3 WriteColumns: unknown option \"seperator\"; did you mean \"separator\"?");
}

TEST_F(WriteColumnsTest, LeavesAFileAloneWhenAnArgumentIsWrong) {
  Run("WriteColumns(path, {{1}})");
  Refusal("WriteColumns(path, {{1}, {2, 3}})");
  EXPECT_EQ(Content(), "1\n");
}

TEST_F(WriteColumnsTest, NamesTheFileThatCannotBeWritten) {
  EXPECT_EQ(Refusal("WriteColumns('/no/such/folder/x', {{1}})"),
            "6 WriteColumns: /no/such/folder/x: cannot be written: No such file or directory");
}

}  // namespace
