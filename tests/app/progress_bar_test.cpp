// The progress bar: its line, and when it is drawn.

#include "app/progress_bar.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using tarn::ProgressBar;
using tarn::ProgressLine;

TEST(ProgressLineTest, ShowsPercentageBarAndCaption) {
  EXPECT_EQ(ProgressLine(50, "Residue = 0.5", 80), " 50% [############            ] Residue = 0.5");
  EXPECT_EQ(ProgressLine(0, "", 80), "  0% [                        ]");
  EXPECT_EQ(ProgressLine(100, "", 80), "100% [########################]");
  EXPECT_EQ(ProgressLine(99, "", 80), " 99% [####################### ]");
}

TEST(ProgressLineTest, KeepsProgressWithinBounds) {
  EXPECT_EQ(ProgressLine(-5, "", 80), ProgressLine(0, "", 80));
  EXPECT_EQ(ProgressLine(250, "", 80), ProgressLine(100, "", 80));
}

TEST(ProgressLineTest, TrimsTheCaptionAndKeepsItOnOneLine) {
  EXPECT_EQ(ProgressLine(50, "\r\n Residue\t= 1\r\n", 80),
            " 50% [############            ] Residue = 1");
  EXPECT_EQ(ProgressLine(50, " \r\n", 80), " 50% [############            ]");
  EXPECT_EQ(ProgressLine(50, "a\x1b[2Jb", 80), " 50% [############            ] a [2Jb");
}

TEST(ProgressLineTest, FitsTheWidth) {
  EXPECT_EQ(ProgressLine(50, "Residue = 0.5", 38), " 50% [############            ] Residu");
  EXPECT_EQ(ProgressLine(50, "", 6), " 50% [");
  EXPECT_EQ(ProgressLine(50, "", 0), "");
  EXPECT_EQ(ProgressLine(50, "χ² = 0.5", 34), " 50% [############            ] χ²")
      << "characters are counted, not bytes";
}

class ProgressBarTest : public ::testing::Test {
 protected:
  std::string Taken() { return std::exchange(written, {}); }

  double time = 0.0;
  std::string written;
  ProgressBar bar{{[this](std::string_view text) { written += text; },
                   [] { return std::size_t{40}; }, [this] { return time; }}};
};

constexpr char kErase[] = "\r\033[K";

TEST_F(ProgressBarTest, IsDrawnAtOnceOverTheLine) {
  bar.Show(50, "x");
  EXPECT_EQ(Taken(), kErase + ProgressLine(50, "x", 39));
}

TEST_F(ProgressBarTest, IsDrawnTenTimesASecondAtMost) {
  int drawings = 0;
  for (int step = 0; step < 1000; ++step) {
    time = step * 0.001;
    bar.Show(step / 10, "");
    if (!Taken().empty()) ++drawings;
  }
  EXPECT_LE(drawings, 10);
  EXPECT_GE(drawings, 9);
}

TEST_F(ProgressBarTest, IsErasedOnce) {
  bar.Show(50, "");
  Taken();
  bar.Erase();
  EXPECT_EQ(Taken(), kErase);
  bar.Erase();
  EXPECT_EQ(Taken(), "") << "a line that was written since stays";
}

TEST_F(ProgressBarTest, IsErasedWhenTheComputationEnds) {
  bar.Show(30, "");
  Taken();
  bar.Show(100, "");
  EXPECT_EQ(Taken(), kErase);
  bar.Show(100, "Residue = 0");
  EXPECT_EQ(Taken(), "");
}

TEST_F(ProgressBarTest, ComesBackAfterOtherOutput) {
  bar.Show(30, "");
  bar.Erase();
  Taken();
  time = 0.05;
  bar.Show(31, "");
  EXPECT_EQ(Taken(), "");
  time = 0.11;
  bar.Show(32, "");
  EXPECT_EQ(Taken(), kErase + ProgressLine(32, "", 39));
}

}  // namespace
