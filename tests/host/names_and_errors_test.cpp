/// @file
/// Names, error numbers and constants: tables that belong to the process.

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

#include "host/embedded_host.h"

namespace {

std::string NumberedName(int number) {
  std::string name = "name";
  name += std::to_string(number);
  return name;
}

TEST(Names, HaveOneIdentifierEach) {
  const std::uint16_t x = Token::GetNameID("X");
  EXPECT_EQ(Token::GetNameID("X"), x);
  EXPECT_NE(Token::GetNameID("Y"), x);
  EXPECT_NE(Token::GetNameID("x"), x);
  EXPECT_GT(x, 256);
}

TEST(Names, NeverCollideWithTheClassesKnownByNumber) {
  for (int i = 0; i < 1000; ++i) {
    const std::uint16_t identifier = Token::GetNameID(NumberedName(i).c_str());
    EXPECT_NE(identifier, VARCLASS_ARRAY);
    EXPECT_NE(identifier, VARCLASS_VECTOR);
  }
}

TEST(Names, OutliveAHost) {
  auto host = std::make_unique<EmbeddedHost>();
  const std::uint16_t identifier = Token::GetNameID("SomeName");
  host.reset();
  EXPECT_EQ(Token::GetNameID("SomeName"), identifier);
}

TEST(Names, RunOutAfterSixteenBits) {
  EmbeddedHost host;
  const std::uint16_t early = Token::GetNameID("Early");
  std::set<std::uint16_t> identifiers;
  int refused = 0;
  for (int i = 0; i < 70000; ++i) {
    const std::uint16_t identifier = Token::GetNameID(NumberedName(i).c_str());
    if (identifier == 0) {
      ++refused;
    } else {
      EXPECT_TRUE(identifiers.insert(identifier).second);
    }
  }
  EXPECT_GT(refused, 0);
  EXPECT_EQ(Token::GetNameID("Early"), early);
  // A member that can have no identifier is no member.
  Variable object;
  ASSERT_NE(host.GetProcessor().MakeInstance(object, "TFunc", nullptr, 0), 0);
  object("BeyondTheLastName") = 1.0;
  EXPECT_EQ(object("BeyondTheLastName").TypeWord(), VARTYPE_EMPTY);
}

TEST(Names, OfNothingIsNone) { EXPECT_EQ(Token::GetNameID(nullptr), 0); }

TEST(Errors, OfTheHostHaveTexts) {
  EmbeddedHost host;
  const Processor& processor = host.GetProcessor();
  EXPECT_STREQ(processor.GetErrorName(1), "Memory exhausted.");
  EXPECT_STREQ(processor.GetErrorName(3), "Bad argument.");
  EXPECT_STREQ(processor.GetErrorName(10), "Division by zero or singular system.");
  EXPECT_STREQ(processor.GetErrorName(88),
               "Value or weight is not positive in a logarithmic correlation.");
  EXPECT_STREQ(processor.GetErrorName(12345), "");
  EXPECT_STREQ(processor.GetErrorName(-1), "");
}

TEST(Errors, RegisteredTwiceHaveTwoNumbers) {
  EmbeddedHost host;
  const int first = host.GetProcessor().RegisterError("Same text.");
  const int second = host.GetProcessor().RegisterError("Same text.");
  EXPECT_GE(first, 1000);
  EXPECT_NE(first, second);
  EXPECT_STREQ(host.GetProcessor().GetErrorName(first), "Same text.");
  EXPECT_STREQ(host.GetProcessor().GetErrorName(second), "Same text.");
  EXPECT_STREQ(host.GetProcessor().GetErrorName(host.GetProcessor().RegisterError(nullptr)), "");
}

TEST(Errors, OutliveAHost) {
  auto host = std::make_unique<EmbeddedHost>();
  const int number = host->GetProcessor().RegisterError("Kept.");
  host.reset();
  host = std::make_unique<EmbeddedHost>();
  EXPECT_STREQ(host->GetProcessor().GetErrorName(number), "Kept.");
}

TEST(Errors, NumbersRunOutBelowTheNumberThatMeansNone) {
  EmbeddedHost host;
  int last = 0;
  for (int i = 0; i < 70000; ++i) {
    const int number = host.GetProcessor().RegisterError("x");
    if (number == 0) break;
    last = number;
  }
  EXPECT_EQ(last, 65534);
  EXPECT_EQ(host.GetProcessor().RegisterError("y"), 0);
}

TEST(Errors, RaisedArePendingUntilTaken) {
  EmbeddedHost host;
  EXPECT_FALSE(host.HasError());
  EXPECT_EQ(host.TakeError().number, 0);
  TarnError(10, "the matrix is singular");
  EXPECT_TRUE(host.HasError());
  EXPECT_NE(host.GetProcessor().pendingError, 0);
  EXPECT_EQ(host.GetProcessor().GetLastError(), 10);
  EXPECT_EQ(host.LastError().message, "the matrix is singular");
  EXPECT_TRUE(host.HasError());
  const HostError error = host.TakeError();
  EXPECT_EQ(error.number, 10);
  EXPECT_EQ(error.name, "Division by zero or singular system.");
  EXPECT_EQ(error.message, "the matrix is singular");
  EXPECT_EQ(error.function, "");
  EXPECT_EQ(error.where, "");
  EXPECT_FALSE(host.HasError());
  EXPECT_EQ(host.GetProcessor().GetLastError(), 10) << "the last error stays known";
}

TEST(Errors, WithoutMessageSayTheirName) {
  EmbeddedHost host;
  TarnError(3);
  EXPECT_EQ(host.TakeError().message, "Bad argument.");
  TarnError(3, "");
  EXPECT_EQ(host.TakeError().message, "");
}

TEST(Errors, AreCounted) {
  EmbeddedHost host;
  EXPECT_EQ(host.RaisedErrorCount(), 0);
  for (int i = 0; i < 5; ++i) TarnError(3);
  EXPECT_EQ(host.RaisedErrorCount(), 5);
  EXPECT_EQ(host.LastError().number, 3);
}

TEST(Errors, WithoutHostAreHarmless) {
  TarnError(3, "nobody hears it");
  EXPECT_EQ(GetOwner(), nullptr);
}

TEST(Errors, ReadAsWhereFunctionMessage) {
  HostError error;
  EXPECT_EQ(error.ToString(), "no error");
  error.number = 1234;
  EXPECT_EQ(error.ToString(), "error 1234");
  error.message = "it failed";
  EXPECT_EQ(error.ToString(), "it failed");
  error.function = "Solve";
  EXPECT_EQ(error.ToString(), "Solve: it failed");
  error.where = "a.lua:3";
  EXPECT_EQ(error.ToString(), "a.lua:3: Solve: it failed");
}

TEST(Constants, AreDefinedAndRedefined) {
  EmbeddedHost host;
  Processor& processor = host.GetProcessor();
  EXPECT_EQ(processor.GetConstant("TEST_CONSTANT"), nullptr);
  EXPECT_EQ(processor.GetConstant(nullptr), nullptr);
  processor.SetConstant(Token::GetNameID("TEST_CONSTANT"), Variable(41));
  ASSERT_NE(processor.GetConstant("TEST_CONSTANT"), nullptr);
  EXPECT_EQ(processor.GetConstant("TEST_CONSTANT")->GetInt32(), 41);
  processor.SetConstant(Token::GetNameID("TEST_CONSTANT"), Variable(42));
  EXPECT_EQ(processor.GetConstant("TEST_CONSTANT")->GetInt32(), 42);
}

TEST(Constants, AreGlobalsOfScripts) {
  EmbeddedHost host;
  host.GetProcessor().SetConstant(Token::GetNameID("TEST_CONSTANT"), Variable(41));
  Variable value;
  ASSERT_TRUE(host.Evaluate("return TEST_CONSTANT", &value));
  EXPECT_EQ(value.GetInt32Numb(), 41);
}

TEST(Constants, OutliveAHost) {
  auto host = std::make_unique<EmbeddedHost>();
  host->GetProcessor().SetConstant(Token::GetNameID("TEST_CONSTANT"), Variable(41));
  host.reset();
  host = std::make_unique<EmbeddedHost>();
  Variable value;
  ASSERT_TRUE(host->Evaluate("return TEST_CONSTANT", &value));
  EXPECT_EQ(value.GetInt32Numb(), 41);
}

TEST(Constants, CanBeForgottenAndRefused) {
  EmbeddedHost host;
  Processor& processor = host.GetProcessor();
  const std::uint16_t nameId = Token::GetNameID("TEST_CONSTANT");
  processor.SetConstant(nameId, Variable(41));
  host.ForgetConstant("TEST_CONSTANT");
  EXPECT_EQ(processor.GetConstant("TEST_CONSTANT"), nullptr);
  Variable value(7);
  ASSERT_TRUE(host.Evaluate("return TEST_CONSTANT", &value));
  EXPECT_EQ(value.TypeWord(), VARTYPE_EMPTY);
  host.RefuseConstants(true);
  processor.SetConstant(nameId, Variable(41));
  EXPECT_EQ(processor.GetConstant("TEST_CONSTANT"), nullptr);
  host.RefuseConstants(false);
  processor.SetConstant(nameId, Variable(41));
  EXPECT_NE(processor.GetConstant("TEST_CONSTANT"), nullptr);
  host.ForgetConstant("NEVER_DEFINED");
}

TEST(Owner, CanBeHidden) {
  EmbeddedHost host;
  EXPECT_EQ(GetOwner(), &host.GetProcessor());
  host.HideOwner(true);
  EXPECT_EQ(GetOwner(), nullptr);
  TarnError(3);
  EXPECT_TRUE(host.HasError()) << "errors are still heard";
  host.HideOwner(false);
  EXPECT_EQ(GetOwner(), &host.GetProcessor());
}

}  // namespace
