/// Entries of the module and its state, called directly: this program links the module's objects,
/// so every test sees a module that was just loaded.

#include "frame/module_entry.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "frame/module_state.h"
#include "host/embedded_host.h"
#include "special/random_lock.h"

namespace {

constexpr char kDescription[] = "TARN Support DLL v5.0 |TARN version:5.09.02";
constexpr char kConstantName[] = "ERR_SOLUTION_NOT_FOUND";

/// Describes the module into a buffer of '#' characters.
std::array<char, 80> Describe(int length) {
  std::array<char, 80> text;
  text.fill('#');
  EXPECT_EQ(tarn::DescribeModule(text.data(), length), text.data());
  return text;
}

TEST(DescribeModule, ShortLengthIsFilledWithoutTerminator) {
  const auto text = Describe(10);
  EXPECT_EQ(std::string(text.data(), 11), "TARN Suppo#");
}

TEST(DescribeModule, LongLengthIsPaddedWithZeroBytes) {
  const auto text = Describe(64);
  EXPECT_STREQ(text.data(), kDescription);
  EXPECT_EQ(std::strlen(text.data()), 43u);
  for (std::size_t i = 43; i < 64; ++i) EXPECT_EQ(text[i], '\0') << i;
  EXPECT_EQ(text[64], '#');
}

TEST(DescribeModule, LengthOfTheTextLeavesNoTerminator) {
  const auto text = Describe(43);
  EXPECT_EQ(std::string(text.data(), 44), std::string(kDescription) + '#');
}

TEST(DescribeModule, NegativeAndZeroLengthsWriteNothing) {
  EXPECT_EQ(Describe(0)[0], '#');
  EXPECT_EQ(Describe(-1)[0], '#');
  EXPECT_EQ(Describe(-2147483647 - 1)[0], '#');
}

TEST(AuxTable, IsFortyZeroBytes) {
  const auto* bytes = static_cast<const unsigned char*>(tarn::GetAuxTable());
  for (int i = 0; i < 40; ++i) EXPECT_EQ(bytes[i], 0) << i;
  EXPECT_EQ(tarn::GetAuxTable(), bytes);
}

TEST(Attach, KeepsTheLoadersHandle) {
  EXPECT_NE(tarn::GetModuleInstance(), nullptr);
  EXPECT_EQ(tarn::GetModuleInstance(), tarn::GetResourceInstance());
}

TEST(InitModule, NullProcessorDoesNothing) {
  tarn::InitModule(nullptr);
  EXPECT_EQ(tarn::GetSolutionNotFoundError(), 0);
}

TEST(InitModule, DefinesTheConstantAndItsError) {
  EmbeddedHost host;
  Processor& processor = host.GetProcessor();
  ASSERT_EQ(processor.GetConstant(kConstantName), nullptr);
  tarn::InitModule(&processor);
  const int number = tarn::GetSolutionNotFoundError();
  EXPECT_NE(number, 0);
  EXPECT_STREQ(processor.GetErrorName(number), "Can't find solution of system.");
  ASSERT_NE(processor.GetConstant(kConstantName), nullptr);
  EXPECT_EQ(processor.GetConstant(kConstantName)->GetInt32(), number);
}

TEST(InitModule, CalledTwiceRegistersTheErrorOnce) {
  EmbeddedHost host;
  Processor& processor = host.GetProcessor();
  tarn::InitModule(&processor);
  const int number = tarn::GetSolutionNotFoundError();
  const int before = processor.RegisterError("before");
  tarn::InitModule(&processor);
  EXPECT_EQ(tarn::GetSolutionNotFoundError(), number);
  EXPECT_EQ(processor.RegisterError("after"), before + 1);
}

TEST(InitModule, TakesTheNumberOfAConstantThatExists) {
  EmbeddedHost host;
  Processor& processor = host.GetProcessor();
  processor.SetConstant(Token::GetNameID(kConstantName), Variable(std::int32_t{777}));
  const int before = processor.RegisterError("before");
  tarn::InitModule(&processor);
  EXPECT_EQ(tarn::GetSolutionNotFoundError(), 777);
  EXPECT_EQ(processor.RegisterError("after"), before + 1);
}

TEST(InitModule, TriesAgainWhenTheConstantWasLost) {
  EmbeddedHost host;
  Processor& processor = host.GetProcessor();
  host.RefuseConstants(true);
  tarn::InitModule(&processor);
  EXPECT_EQ(tarn::GetSolutionNotFoundError(), 0);

  // The lock exists all the same, and the second attempt does not harm it while it is held.
  EnterRandCriticalSection();
  host.RefuseConstants(false);
  tarn::InitModule(&processor);
  LeaveRandCriticalSection();
  EXPECT_NE(tarn::GetSolutionNotFoundError(), 0);
  EnterRandCriticalSection();
  LeaveRandCriticalSection();
}

TEST(RaiseModuleError, DoesNothingWithoutABlockOfNumbers) {
  EmbeddedHost host;
  tarn::RaiseModuleError(5);
  EXPECT_FALSE(host.HasError());
}

TEST(RaiseModuleError, CountsFromTheModulesBlock) {
  EmbeddedHost host;
  host.SetModuleErrorOffset(2000);
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  void* library = dlopen(TARN_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD);
  ASSERT_NE(library, nullptr);
  Dl_info info = {};
  ASSERT_NE(dladdr(dlsym(library, "tarn_ordinals"), &info), 0);
  // The module in this program takes the place of the one just loaded.
  tarn::AttachModule(info.dli_fbase);
  tarn::RaiseModuleError(5);
  EXPECT_EQ(host.TakeError().number, 2005);
  dlclose(library);
}

}  // namespace
