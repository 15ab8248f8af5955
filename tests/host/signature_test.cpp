/// @file
/// The grammar of signatures, seen through a module whose signature the test chooses.

#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

class SignatureTest : public HostTest {
 protected:
  bool Load(const std::string& signature) {
    setenv("TARN_TEST_SIGNATURE", signature.c_str(), 1);
    return host.Load(TARN_TEST_MODULES "/shaped_module.so");
  }
};

class RefusedSignature : public SignatureTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(RefusedSignature, KeepsTheModuleOut) {
  EXPECT_FALSE(Load(GetParam()));
  const HostError error = host.TakeError();
  EXPECT_EQ(error.number, 5);
  EXPECT_NE(error.message.find("row 2"), std::string::npos) << error.message;
  EXPECT_NE(error.message.find('"' + std::string(GetParam()) + '"'), std::string::npos)
      << error.message;
  EXPECT_TRUE(host.Signatures().empty()) << "the good first row is not registered either";
  EXPECT_EQ(Text("FirstOfShaped"), "nil");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RefusedSignature,
    ::testing::Values("", "f", "f(", "f)", "(any)", "f(any", "f(any))", "f(any) ", " f(any)",
                      "f (any)", "f( any)", "f(any )", "f(any,any)", "f(any,  any)", "f(any , any)",
                      "f(any, )", "f(, any)", "f(,)", "f(Any)", "f(anything)", "f(an)",
                      "f(integer)", "f(double)", "f(numbers)", "f(refer)", "f(refer object)",
                      "f(refer object )", "f(refer  object Vector)", "f(refer objectVector)",
                      "f(refer object 2D)", "f(object Vector)", "f(refer any)", "2f(any)",
                      "f-g(any)", "f.g(any)", "f(any)g(any)", "f(any, number", "f(any; number)",
                      "f(any ?)", "f(?)",
                      "f(any?"
                      "?)",
                      "f(any?, any)", "f(any?, number, text?)", "f(refer object V ?)", "f(texts)",
                      "f(option)", "f(refer options)",
                      // Methods have an object of their class first.
                      "C.f()", "C.f(any)", "C.f(refer object D)", "C.f(refer object C?)",
                      "C.f(any, refer object C)", ".f(refer object C)", "C.(refer object C)",
                      "C..f(refer object C)", "C .f(refer object C)", "C.D.f(refer object C)",
                      "2C.f(refer object 2C)",
                      // Operators are those of the list, with their numbers of operands.
                      "C.__index(any, any)", "C.__newindex(any, any, any)", "C.__gc(any)",
                      "C.__lt(any, any)", "C.__close(any)", "C.__(any)", "C.__add(any)",
                      "C.__add(any, any, any)", "C.__add(any, any?)", "C.__unm(any, any)",
                      "C.__len()", "C.__tostring(any?)", "C.__call()", "C.__call(any)",
                      "C.__call(any, refer object C)"));

struct Accepted {
  const char* signature;
  const char* name;
  int parameters;
};

std::ostream& operator<<(std::ostream& out, const Accepted& accepted) {
  return out << accepted.signature;
}

class AcceptedSignature : public SignatureTest, public ::testing::WithParamInterface<Accepted> {};

TEST_P(AcceptedSignature, IsRegisteredWithItsParameters) {
  ASSERT_TRUE(Load(GetParam().signature)) << host.TakeError().ToString();
  ASSERT_EQ(host.Signatures().size(), 2U);
  EXPECT_EQ(host.Signatures()[1], GetParam().signature);
  EXPECT_NE(host.FindHandler(GetParam().name), nullptr);
  std::vector<Variable> tooMany(static_cast<std::size_t>(GetParam().parameters) + 1);
  EXPECT_FALSE(host.Call(GetParam().name, tooMany, nullptr));
  const std::string count = std::to_string(GetParam().parameters);
  EXPECT_EQ(host.TakeError().message, "expected " + count +
                                          (count == "1" ? " argument" : " arguments") + ", got " +
                                          std::to_string(GetParam().parameters + 1));
}

TEST_F(SignatureTest, OptionalParametersAreCountedAsARange) {
  ASSERT_TRUE(Load("f(any, refer object V?, text?)")) << host.TakeError().ToString();
  std::vector<Variable> tooMany(4);
  EXPECT_FALSE(host.Call("f", tooMany, nullptr));
  EXPECT_EQ(host.TakeError().message, "expected 1 to 3 arguments, got 4");
}

TEST_F(SignatureTest, MethodsDoNotCountTheirObject) {
  ASSERT_TRUE(Load("C.f(refer object C, any, any?)")) << host.TakeError().ToString();
  std::vector<Variable> tooMany(4);
  EXPECT_FALSE(host.Call("C.f", tooMany, nullptr));
  EXPECT_EQ(host.TakeError().message, "expected 1 to 2 arguments, got 3");
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AcceptedSignature,
    ::testing::Values(Accepted{"f()", "f", 0}, Accepted{"f(any)", "f", 1},
                      Accepted{"BesselJn(number, any)", "BesselJn", 2},
                      Accepted{"_f2(int)", "_f2", 1},
                      Accepted{"FTest(refer object Vector, refer object Vector)", "FTest", 2},
                      Accepted{"f(any, number, int, refer object _X1)", "f", 4},
                      Accepted{"f(text, function, options)", "f", 3},
                      Accepted{"C.__add(any, number)", "C.__add", 2},
                      Accepted{"C.__eq(refer object C, refer object C)", "C.__eq", 2},
                      Accepted{"C.__tostring(refer object C)", "C.__tostring", 1},
                      Accepted{"__add(any)", "__add", 1},
                      Accepted{"g(int, int, int, int, int, int, int, int, int, int)", "g", 10}));

}  // namespace
