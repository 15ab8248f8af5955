/// @file
/// The host heap: its contract, its counts, and what happens when it refuses.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

using HeapTest = HostTest;

TEST(Heap, GivesZeroedBlocks) {
  auto* block = static_cast<unsigned char*>(HMALLOCZ(1000));
  ASSERT_NE(block, nullptr);
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(block[i], 0);
  HFREE(block);
}

TEST(Heap, ResizesAndKeepsTheContent) {
  auto* block = static_cast<char*>(HMALLOC(4));
  std::memcpy(block, "abc", 4);
  block = static_cast<char*>(HREALLOC(block, 10000));
  ASSERT_NE(block, nullptr);
  EXPECT_STREQ(block, "abc");
  HFREE(block);
}

TEST(Heap, CountsBlocks) {
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  void* first = HMALLOC(10);
  void* second = HREALLOC(nullptr, 10);
  void* third = HMALLOCZ(0);
  EXPECT_NE(third, nullptr) << "a block of no bytes is a block";
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before + 3);
  second = HREALLOC(second, 0);
  EXPECT_NE(second, nullptr);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before + 3);
  for (void* block : {first, second, third}) HFREE(block);
  HFREE(nullptr);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before);
}

TEST_F(HeapTest, RefusesChosenRequests) {
  host.SetHeapFailure([](std::int64_t request) { return request == 2; });
  void* first = HMALLOC(1);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(HREALLOC(first, 100), nullptr) << "the second request";
  first = HREALLOC(first, 100);
  EXPECT_NE(first, nullptr) << "the old block stayed valid";
  EXPECT_EQ(host.HeapRequestCount(), 3);
  host.SetHeapFailure({});
  EXPECT_EQ(host.HeapRequestCount(), 0);
  HFREE(first);
}

TEST(Heap, WorksAgainAfterTheHostThatMadeItRefuse) {
  {
    EmbeddedHost host;
    host.SetHeapFailure([](std::int64_t) { return true; });
    EXPECT_EQ(HMALLOC(1), nullptr);
    EXPECT_EQ(HMALLOCZ(1), nullptr);
    EXPECT_EQ(HREALLOC(nullptr, 1), nullptr);
  }
  void* block = HMALLOC(1);
  EXPECT_NE(block, nullptr);
  HFREE(block);
}

// Values under refusal ----------------------------------------------------------------------------

TEST_F(HeapTest, RefusedInitLeavesTheTypeWithoutElements) {
  Variable array(VARTYPE_ARRAY, 3);
  Variable bytes(1);
  host.SetHeapFailure([](std::int64_t) { return true; });
  array.Init(VARTYPE_ARRAY, 5);
  bytes.Init(VARTYPE_BYTES, 5);
  EXPECT_EQ(array.TypeWord(), VARTYPE_ARRAY);
  EXPECT_EQ(array.GetDim(), 0);
  EXPECT_EQ(array.GetArray(), nullptr);
  EXPECT_EQ(bytes.TypeWord(), VARTYPE_BYTES);
  EXPECT_EQ(bytes.GetDim(), 0);
  EXPECT_EQ(static_cast<char*>(bytes), nullptr);
}

TEST_F(HeapTest, RefusedCopyLeavesAnEmptyValue) {
  Variable original = Value("return array{1, 'text', {2, complex(1, 2)}, MVector{3, 4}, TFunc()}");
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  host.SetHeapFailure({});
  {
    Variable copy;
    copy = original;
  }
  const std::int64_t requests = host.HeapRequestCount();
  EXPECT_GE(requests, 8);
  for (std::int64_t refused = 1; refused <= requests; ++refused) {
    host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    Variable target(VARTYPE_ARRAY, 0);
    target = original;
    EXPECT_EQ(target.TypeWord(), VARTYPE_EMPTY) << refused;
    host.SetHeapFailure({});
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before) << refused;
  }
}

TEST_F(HeapTest, RefusedMemberIsHarmless) {
  Variable object = Value("return TFunc()");
  host.SetHeapFailure([](std::int64_t) { return true; });
  object("New") = 1.0;
  host.SetHeapFailure({});
  EXPECT_EQ(object("New").TypeWord(), VARTYPE_EMPTY);
}

TEST_F(HeapTest, RefusedTextLeavesARegisterEmpty) {
  VarRegister value;
  value = 1;
  host.SetHeapFailure([](std::int64_t) { return true; });
  value = "text";
  EXPECT_EQ(value.GetVar().TypeWord(), VARTYPE_EMPTY);
}

TEST_F(HeapTest, RefusedInstanceIsAnErrorOfMemory) {
  for (const char* name : {"MVector", "Array", "TFunc", "ProgressWnd"}) {
    const std::int64_t before = EmbeddedHost::LiveBlockCount();
    VarRegister dimension;
    dimension = 3;
    const bool hasArgument = name[0] == 'M' || name[0] == 'A';
    const int count = hasArgument ? 1 : 0;
    host.SetHeapFailure({});
    Variable value;
    ASSERT_NE(host.GetProcessor().MakeInstance(value, name, &dimension, count), 0);
    value.Clear();
    const std::int64_t requests = host.HeapRequestCount();
    for (std::int64_t refused = 1; refused <= requests; ++refused) {
      host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
      const int succeeded = host.GetProcessor().MakeInstance(value, name, &dimension, count);
      host.SetHeapFailure({});
      if (succeeded == 0) {
        EXPECT_EQ(host.TakeError().number, 1) << name << refused;
      }
      value.Clear();
      EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before) << name << refused;
    }
  }
}

// Buffers -----------------------------------------------------------------------------------------

TEST(TextBuffer, AppendsFormattedText) {
  Buffer buffer(4);
  EXPECT_STREQ(buffer.GetText(), "");
  EXPECT_EQ(buffer.Printf(128, "Argument = %g, ", 0.5), 16);
  EXPECT_EQ(buffer.Printf(128, "Function = %s", "f"), 12);
  EXPECT_STREQ(buffer.GetText(), "Argument = 0.5, Function = f");
}

TEST(TextBuffer, GrowsAndTakesAnyInitialSize) {
  for (const std::int64_t size : {std::int64_t{-5}, std::int64_t{0}, std::int64_t{1}}) {
    Buffer buffer(size);
    std::string expected;
    for (int i = 0; i < 500; ++i) {
      buffer.Printf(0, "%d ", i);
      expected += std::to_string(i) + " ";
    }
    EXPECT_EQ(buffer.GetText(), expected);
  }
}

TEST(TextBuffer, WithoutFormatAppendsNothing) {
  Buffer buffer(8);
  EXPECT_LT(buffer.Printf(0, nullptr), 0);
  EXPECT_STREQ(buffer.GetText(), "");
}

TEST_F(HeapTest, RefusedBufferStaysUsable) {
  host.SetHeapFailure([](std::int64_t request) { return request <= 2; });
  Buffer buffer(128);
  EXPECT_STREQ(buffer.GetText(), "");
  EXPECT_LT(buffer.Printf(0, "lost"), 0);
  EXPECT_EQ(buffer.Printf(0, "kept"), 4);
  EXPECT_STREQ(buffer.GetText(), "kept");
}

TEST_F(HeapTest, RefusedGrowthKeepsTheText) {
  Buffer buffer(8);
  EXPECT_EQ(buffer.Printf(0, "1234"), 4);
  host.SetHeapFailure([](std::int64_t) { return true; });
  EXPECT_LT(buffer.Printf(0, "56789"), 0);
  EXPECT_STREQ(buffer.GetText(), "1234");
}

// Scripts under refusal ---------------------------------------------------------------------------

constexpr char kBusyScript[] = R"(
  local a = array{1, 2, {3, 'text'}, complex(1, 2)}
  local f = TFunc({1, 2, 3}, {4, 5, 6})
  f.Note = 'note'
  local g = Echo(f)
  g.Y[1] = {7, 8}
  local v = MVector(3)
  Double(v)
  local applied = Apply(function(x) return LnGamma{x, x + 1} end, 2.5)
  local w = ProgressWnd()
  Progress(w, 30)
  return {a, g, v:copy(), applied, a:table()[2], Bytes(), tostring(g)}
)";

TEST_F(HeapTest, ScriptsEndWithAnErrorAtEveryRefusal) {
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so"));
  Run("collectgarbage()");
  host.SetHeapFailure({});
  Variable value;
  ASSERT_TRUE(host.Evaluate(kBusyScript, &value)) << host.TakeError().ToString();
  const std::int64_t requests = host.HeapRequestCount();
  EXPECT_GT(requests, 30);
  value.Clear();
  Run("collectgarbage()");
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  int failures = 0;
  for (std::int64_t refused = 1; refused <= requests; ++refused) {
    host.SetHeapFailure([refused](std::int64_t request) { return request == refused; });
    if (!host.Evaluate(kBusyScript, &value)) {
      ++failures;
      EXPECT_NE(host.TakeError().number, 0);
    }
    host.SetHeapFailure({});
    value.Clear();
    Run("collectgarbage()");
    EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before) << "request " << refused;
  }
  EXPECT_GT(failures, requests / 2);
}

}  // namespace
