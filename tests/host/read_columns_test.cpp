/// @file
/// Reading columns of numbers from text files.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

class ReadColumnsTest : public HostTest {
 protected:
  ReadColumnsTest() : path(TemporaryPath("columns.txt")) {}
  ~ReadColumnsTest() override { std::filesystem::remove(path); }

  /// The columns of a file with that content, as text.
  std::string Read(const std::string& content, const std::string& options = "nil") {
    std::ofstream(path, std::ios::binary) << content;
    return Text(
        "(function(...) local t = {...}; for i = 1, #t do t[i] = tostring(t[i]) end; "
        "return table.concat(t, ' ') end)(ReadColumns('" +
        path + "', " + options + "))");
  }

  /// The error of a file with that content, without the path.
  std::string Problem(const std::string& content, const std::string& options = "nil") {
    std::ofstream(path, std::ios::binary) << content;
    const HostError error = Failure("ReadColumns('" + path + "', " + options + ")");
    EXPECT_EQ(error.number, 6);
    EXPECT_EQ(error.function, "ReadColumns");
    EXPECT_EQ(error.where, "text:1");
    EXPECT_TRUE(error.message.starts_with(path)) << error.message;
    return error.message.substr(path.size());
  }

  std::string path;
};

TEST_F(ReadColumnsTest, SeparatedByWhiteSpace) {
  EXPECT_EQ(Read("1 2\n3\t 4\n"), "{1, 3} {2, 4}");
  EXPECT_EQ(Read("  1   2  \r\n 3 4\r\n"), "{1, 3} {2, 4}");
  EXPECT_EQ(Read("5"), "{5}");
}

TEST_F(ReadColumnsTest, SeparatedByCommas) {
  EXPECT_EQ(Read("1,2\n 3 , 4 \n"), "{1, 3} {2, 4}");
  EXPECT_EQ(Read("\"1\",\"2\"\n"), "{1} {2}");
}

TEST_F(ReadColumnsTest, SeparatedByAnotherCharacter) {
  EXPECT_EQ(Read("1;2\n3;4\n", "{separator = ';'}"), "{1, 3} {2, 4}");
}

TEST_F(ReadColumnsTest, CommentsAndEmptyLinesAreSkipped) {
  EXPECT_EQ(Read("# header\n\n1 2 # first\n   \n#\n3 4\n"), "{1, 3} {2, 4}");
}

TEST_F(ReadColumnsTest, NumbersOfEveryForm) {
  EXPECT_EQ(Read("+1 -2.5 1e3 .5 5. 1E-3\n"), "{1} {-2.5} {1000} {0.5} {5} {0.001}");
  EXPECT_EQ(Read("nan inf -inf"), "{nan} {inf} {-inf}");
}

TEST_F(ReadColumnsTest, AByteOrderMarkIsNoData) {
  EXPECT_EQ(Read("\xef\xbb\xbf"
                 "1 2\n"),
            "{1} {2}");
}

TEST_F(ReadColumnsTest, NamedByAHeaderLine) {
  std::ofstream(path) << "# runs\nspeed,\"run number\"\n299.9,1\n299.8,2\n";
  Run("a, b, byName = ReadColumns('" + path + "', {header = true})");
  EXPECT_EQ(Text("a"), "{299.9, 299.8}");
  EXPECT_EQ(Text("byName['run number'] == b"), "true");
  EXPECT_EQ(Text("byName.speed"), "{299.9, 299.8}");
}

TEST_F(ReadColumnsTest, AfterLinesThatAreSkipped) {
  EXPECT_EQ(Read("words\nmore words here\n1 2\n", "{skip = 2}"), "{1} {2}");
}

TEST_F(ReadColumnsTest, AMillionRows) {
  std::ofstream file(path);
  for (int i = 0; i < 1000000; ++i) file << i << ' ' << 2 * i << '\n';
  file.close();
  EXPECT_EQ(Number("local a, b = ReadColumns('" + path +
                   "'); assert(#a == 1000000); "
                   "return b[1000000]"),
            1999998.0);
}

// Errors ------------------------------------------------------------------------------------------

TEST_F(ReadColumnsTest, ABadFieldIsNamedWithItsLine) {
  EXPECT_EQ(Problem("1 2\n3 x4\n"), ":2: field 2 is no number: \"x4\"");
  EXPECT_EQ(Problem("1,2\n3,\n"), ":2: field 2 is empty");
  EXPECT_EQ(Problem("1 2\n\n# c\n3 4x\n"), ":4: field 2 is no number: \"4x\"");
  EXPECT_EQ(Problem("1\n1e999\n"), ":2: field 1 is no number: \"1e999\"");
  EXPECT_EQ(Problem("1\n+-1\n"), ":2: field 1 is no number: \"+-1\"");
}

TEST_F(ReadColumnsTest, ALineOfNamesIsHintedAt) {
  EXPECT_EQ(Problem("x y\n1 2\n"),
            ":1: field 1 is no number: \"x\"; if the line holds names, read with {header = true}");
}

TEST_F(ReadColumnsTest, ARaggedRowIsNamed) {
  EXPECT_EQ(Problem("1 2\n3\n"), ":2: 1 field, but the lines before have 2");
  EXPECT_EQ(Problem("1 2\n3 4 5\n"), ":2: 3 fields, but the lines before have 2");
  EXPECT_EQ(Problem("a b c\n1 2\n", "{header = true}"),
            ":2: 2 fields, but the lines before have 3");
}

TEST_F(ReadColumnsTest, AFileWithoutDataIsAnError) {
  EXPECT_EQ(Problem(""), ": holds no data");
  EXPECT_EQ(Problem("# only comments\n\n"), ": holds no data");
  EXPECT_EQ(Problem("x y\n", "{header = true}"), ": holds no data");
}

TEST_F(ReadColumnsTest, AFileThatCannotBeReadIsAnError) {
  EXPECT_EQ(Failure("ReadColumns('/no/such/file')").message, "/no/such/file: cannot be read");
  EXPECT_EQ(Failure("ReadColumns('/')").message, "/: cannot be read");
}

TEST_F(ReadColumnsTest, BadOptionsAreErrors) {
  EXPECT_EQ(Failure("ReadColumns(5)").message, "argument 1 must be a path, got a number");
  EXPECT_EQ(Failure("ReadColumns('x', 5)").message, "argument 2: must be a table, got a number");
  EXPECT_EQ(Failure("ReadColumns('x', {skip = -1})").message,
            "argument 2: skip must be a number of lines, got -1");
  EXPECT_EQ(Failure("ReadColumns('x', {separator = 'ab'})").message,
            "argument 2: separator must be one character, got a string");
  EXPECT_EQ(Failure("ReadColumns('x', {headers = true})").message,
            "argument 2: there is no option \"headers\", only header, skip and separator");
}

TEST_F(ReadColumnsTest, RealMeasurements) {
  const std::string data = std::string(TARN_SOURCE_DIR) + "/../shared/data/linear/norris.txt";
  if (!std::filesystem::exists(data)) GTEST_SKIP() << "no data at " << data;
  EXPECT_EQ(Number("local x, y = ReadColumns('" + data +
                   "'); assert(#x == 36 and #y == 36); "
                   "return x[1]"),
            0.2);
}

}  // namespace
