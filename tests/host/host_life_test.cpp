/// @file
/// Hosts come and go; nothing of them stays.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "host/embedded_host.h"

namespace {

TEST(HostLife, OneAtATime) {
  const EmbeddedHost host;
  EXPECT_THROW(EmbeddedHost(), std::runtime_error);
  EXPECT_NE(GetOwner(), nullptr);
}

TEST(HostLife, ManyInARow) {
  for (int i = 0; i < 20; ++i) {
    EmbeddedHost host;
    ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
    Variable value;
    ASSERT_TRUE(host.Evaluate("return Sinc(0)", &value));
    EXPECT_EQ(value.GetDoubleNumb(), 1.0);
  }
  EXPECT_EQ(GetOwner(), nullptr);
}

TEST(HostLife, LeavesNoBlocks) {
  const std::int64_t before = EmbeddedHost::LiveBlockCount();
  {
    EmbeddedHost host;
    ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
    ASSERT_TRUE(host.Load(TARN_TEST_MODULES "/test_module.so"));
    EXPECT_TRUE(host.Evaluate(R"(
      a = LnGamma{1, 2, 3}
      f = TFunc({1, 2}, {3, 4})
      f.Next = f
      f.Call = function() return f end
      w = ProgressWnd()
      z = {complex(1, 2), array{a, f, w}}
      setmetatable(z, {__gc = function() a = LnGamma{4, 5} end})
      Keep(f)
      Forget()
      pcall(LnGamma, {1, {2, true}})
    )")) << host.TakeError().ToString();
    EXPECT_GT(EmbeddedHost::LiveBlockCount(), before);
  }
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), before);
}

TEST(HostLife, ValuesOutliveTheHost) {
  Variable value;
  {
    EmbeddedHost host;
    ASSERT_TRUE(host.Evaluate(
        "return array{MVector{3, 4}, TFunc({1}, {2}), 'text', complex(1, 2), print}", &value));
  }
  const Variable copy(value);
  EXPECT_EQ(copy.GetArray()[0].GetDoubleNumb(), 5.0);
  EXPECT_NE(copy.GetArray()[1].IsInheritFrom(Token::GetNameID("TFunc")), 0);
}

TEST(HostLife, OperationsWithoutHostAreHarmless) {
  auto host = std::make_unique<EmbeddedHost>();
  Processor* processor = &host->GetProcessor();
  EXPECT_EQ(processor->GetLastError(), 0);
  host.reset();
  EXPECT_EQ(GetOwner(), nullptr);
  EXPECT_EQ(GetErrorOffset(nullptr), 65535);
  void* block = HMALLOC(10);
  EXPECT_NE(block, nullptr);
  HFREE(block);
}

/// Objects of modules derive from `TarnAss`, whose first virtual slot is taken.
class NativeObject : public TarnAss {
 public:
  int value = 5;
};

TEST(HostLife, NativeObjectsAreCopiedAndDestroyed) {
  NativeObject original;
  NativeObject copy(original);
  copy.value = 7;
  original = copy;
  EXPECT_EQ(original.value, 7);
  const std::unique_ptr<TarnAss> base = std::make_unique<NativeObject>();
}

}  // namespace
