// The sentences about arguments that all functions share.

#include "toolkit/toolkit_fixture.h"

namespace {

TEST_F(ToolkitTest, SuggestsTheNearestOption) {
  EXPECT_EQ(Refusal("Matrix{rows = 2, colums = 3}"),
            "3 Matrix: unknown option \"colums\"; did you mean \"columns\"?");
  EXPECT_EQ(Refusal("Matrix{Rows = 2, columns = 3}"),
            "3 Matrix: unknown option \"Rows\"; did you mean \"rows\"?");
  EXPECT_EQ(Refusal("Matrix{rosw = 2, columns = 3}"),
            "3 Matrix: unknown option \"rosw\"; did you mean \"rows\"?");
}

TEST_F(ToolkitTest, ListsTheOptionsWhereNoneIsNear) {
  EXPECT_EQ(Refusal("Matrix{height = 2, width = 3}"),
            "3 Matrix: unknown option \"height\"; known are \"rows\", \"columns\", \"values\", "
            "\"diagonal\"");
}

TEST_F(ToolkitTest, QuotesLongNamesInPart) {
  EXPECT_EQ(Refusal("Matrix{[string.rep('x', 50)] = 2}"),
            "3 Matrix: unknown option \"" + std::string(40, 'x') +
                "...\"; known are \"rows\", \"columns\", \"values\", \"diagonal\"");
}

TEST_F(ToolkitTest, NamesWhatIsMissing) {
  EXPECT_EQ(Refusal("Matrix{columns = 3}"), "3 Matrix: rows is missing");
  EXPECT_EQ(Refusal("Matrix{}"), "3 Matrix: rows is missing");
}

TEST_F(ToolkitTest, NamesOptionsThatHaveNoName) {
  EXPECT_EQ(Refusal("Matrix{5, rows = 2, columns = 1}"),
            "3 Matrix: options need names, as in {rows = ...}");
}

TEST_F(ToolkitTest, SaysWhichNumberIsWrong) {
  EXPECT_EQ(Refusal("Matrix{rows = 2, columns = 'x'}"),
            "3 Matrix: columns must be a number, got text");
  EXPECT_EQ(Refusal("Matrix{rows = 1.5, columns = 1}"),
            "3 Matrix: rows must be a whole number from 1 on, got 1.5");
  EXPECT_EQ(Refusal("Matrix{rows = 0, columns = 1}"),
            "3 Matrix: rows must be a whole number from 1 on, got 0");
  EXPECT_EQ(Refusal("Matrix{rows = 0/0, columns = 1}"),
            "3 Matrix: rows must be a whole number from 1 on, got nan");
}

TEST_F(ToolkitTest, SaysWhichElementIsNoNumber) {
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3, 'x'}}"), "3 Matrix: row[2][2] must be a number, got text");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, {3, print}}"),
            "3 Matrix: row[2][2] must be a number, got function");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, 3}"), "3 Matrix: row[2] must be an array, got 3");
  EXPECT_EQ(Refusal("Matrix{{1, 2}, Matrix{{1}}}"),
            "3 Matrix: row[2] must be an array, got Matrix");
}

TEST_F(ToolkitTest, TablesAreCalledTables) {
  EXPECT_EQ(Refusal("WriteColumns('file', {})"),
            "3 WriteColumns: columns must be an array, got an empty table");
  EXPECT_EQ(Refusal("Plot{curves = {y = {1}}}"),
            "3 Plot: curves must be an array, got a table with names");
}

}  // namespace
