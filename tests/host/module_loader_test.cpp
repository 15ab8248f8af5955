/// @file
/// Loading of good modules and of files that are none.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

constexpr char kTestModule[] = TARN_TEST_MODULES "/test_module.so";
constexpr char kShapedModule[] = TARN_TEST_MODULES "/shaped_module.so";

class ModuleLoaderTest : public HostTest {
 protected:
  /// Loads a file that must be refused, with nothing registered.
  HostError Refusal(const std::string& path) {
    EXPECT_FALSE(host.Load(path));
    EXPECT_TRUE(host.Signatures().empty());
    EXPECT_TRUE(host.ModuleDescriptions().empty());
    HostError error = host.TakeError();
    EXPECT_EQ(error.number, 5);
    EXPECT_EQ(error.name, "Module cannot be loaded.");
    EXPECT_NE(error.message.find(path), std::string::npos) << error.message;
    return error;
  }
};

TEST_F(ModuleLoaderTest, LoadsTheMathematicsModule) {
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH)) << host.TakeError().ToString();
  EXPECT_EQ(host.ModuleDescriptions(),
            std::vector<std::string>{"TARN Support DLL v5.0 |TARN version:5.09.02"});
  ASSERT_EQ(host.Signatures().size(), 41U);
  EXPECT_EQ(host.Signatures().front(), "Conjugate(any)");
  EXPECT_EQ(host.Signatures().back(), "LnPsi(any)");
  EXPECT_EQ(Text("type(BesselJ0)"), "function");
  EXPECT_GE(Number("return ERR_SOLUTION_NOT_FOUND"), 1000.0);
}

TEST_F(ModuleLoaderTest, LoadsSeveralModules) {
  ASSERT_TRUE(host.Load(TARN_MODULE_PATH));
  ASSERT_TRUE(host.Load(kTestModule)) << host.TakeError().ToString();
  EXPECT_EQ(host.ModuleDescriptions().size(), 2U);
  EXPECT_EQ(host.Signatures().size(), 41U + 24U);
  EXPECT_EQ(Number("return Half(LnGamma(1) + 4)"), 2.0);
}

TEST_F(ModuleLoaderTest, LoadingTwiceIsHarmless) {
  ASSERT_TRUE(host.Load(kTestModule));
  const std::vector<std::string> signatures = host.Signatures();
  ASSERT_TRUE(host.Load(kTestModule));
  EXPECT_EQ(host.Signatures(), signatures);
  EXPECT_EQ(host.ModuleDescriptions().size(), 1U);
}

TEST_F(ModuleLoaderTest, LetsModulesRegisterTheirErrors) {
  ASSERT_TRUE(host.Load(kTestModule));
  const double number = Number("return TEST_MODULE_ERROR");
  EXPECT_STREQ(host.GetProcessor().GetErrorName(static_cast<int>(number)),
               "The test module failed.");
}

TEST(ModuleLoader, InitialisesOncePerProcess) {
  auto host = std::make_unique<EmbeddedHost>();
  ASSERT_TRUE(host->Load(kTestModule));
  const std::int32_t number = host->GetProcessor().GetConstant("TEST_MODULE_ERROR")->GetInt32();
  host.reset();
  host = std::make_unique<EmbeddedHost>();
  EXPECT_TRUE(host->Signatures().empty());
  ASSERT_TRUE(host->Load(kTestModule));
  EXPECT_EQ(host->GetProcessor().GetConstant("TEST_MODULE_ERROR")->GetInt32(), number);
  EXPECT_TRUE(host->Evaluate("assert(Half(3) == 1.5)")) << host->TakeError().ToString();
}

TEST_F(ModuleLoaderTest, FindsHandlersByName) {
  ASSERT_TRUE(host.Load(kTestModule));
  const EmbeddedHost::Handler half = host.FindHandler("Half");
  ASSERT_NE(half, nullptr);
  VarRegister argument;
  argument = 5.0;
  VarRegister result;
  half(result, &argument);
  EXPECT_EQ(static_cast<double>(result), 2.5);
  EXPECT_EQ(host.FindHandler("NoSuchFunction"), nullptr);
}

// Files that are no modules -----------------------------------------------------------------------

TEST_F(ModuleLoaderTest, RefusesAFileThatIsNotThere) { Refusal("/no/such/directory/module.so"); }

TEST_F(ModuleLoaderTest, RefusesAFileThatIsNoLibrary) {
  const std::string path = TemporaryPath("no_library.so");
  std::ofstream(path) << "this is no library";
  Refusal(path);
}

TEST_F(ModuleLoaderTest, RefusesALibraryWithoutEntryTable) {
  const HostError error = Refusal(TARN_TEST_MODULES "/no_module.so");
  EXPECT_NE(error.message.find("has no entry table tarn_ordinals"), std::string::npos)
      << error.message;
}

TEST_F(ModuleLoaderTest, RefusesALibraryThatNeedsWhatIsNowhere) {
  const HostError error = Refusal(TARN_TEST_MODULES "/unresolved_module.so");
  EXPECT_NE(error.message.find("tarn_test_defined_nowhere"), std::string::npos) << error.message;
}

TEST_F(ModuleLoaderTest, RefusesAModuleWithoutAnEntry) {
  const HostError error = Refusal(TARN_TEST_MODULES "/module_without_entry.so");
  EXPECT_NE(error.message.find("is missing"), std::string::npos) << error.message;
}

TEST_F(ModuleLoaderTest, RefusesADescriptionOfAnotherForm) {
  for (const char* description :
       {"", "Shaped module", "|TARN version:1.00.00", " |TARN version:1.00.00",
        "Shaped module |TARN version:1.0.0", "Shaped module |TARN version:1.00.00 ",
        "Shaped module|TARN version:1.00.00", "Shaped module |VERSION version:1.00.00"}) {
    setenv("TARN_TEST_DESCRIPTION", description, 1);
    const HostError error = Refusal(kShapedModule);
    EXPECT_NE(error.message.find('"' + std::string(description) + '"'), std::string::npos)
        << error.message;
  }
  setenv("TARN_TEST_DESCRIPTION", "M |TARN version:12.03.104", 1);
  EXPECT_TRUE(host.Load(kShapedModule)) << host.TakeError().ToString();
}

TEST_F(ModuleLoaderTest, RefusesABrokenFunctionTable) {
  for (const char* how : {"no table", "null signature", "null handler"}) {
    setenv("TARN_TEST_BROKEN", how, 1);
    Refusal(kShapedModule);
  }
  unsetenv("TARN_TEST_BROKEN");
  EXPECT_TRUE(host.Load(kShapedModule)) << host.TakeError().ToString();
}

TEST_F(ModuleLoaderTest, RefusesAModuleThatFailsToInitialise) {
  setenv("TARN_TEST_BROKEN", "error in initialisation", 1);
  EXPECT_FALSE(host.Load(kShapedModule));
  EXPECT_TRUE(host.Signatures().empty());
  EXPECT_TRUE(host.ModuleDescriptions().empty());
  const HostError error = host.TakeError();
  EXPECT_EQ(error.number, 10);
  EXPECT_EQ(error.message, "no licence to start");
}

TEST_F(ModuleLoaderTest, ScriptsLoadModulesToo) {
  Run(std::string("Load('") + kTestModule + "'); assert(Half(3) == 1.5)");
  EXPECT_EQ(Number("local ok, e = pcall(Load, '/no/such/module.so'); return e.number"), 5.0);
  EXPECT_EQ(Failure("Load(5)").message, "argument 1 must be a path, got 5");
}

// Error blocks ------------------------------------------------------------------------------------

/// The load address of the test module, by which it knows itself.
void* TestModuleHandle() {
  void* library = dlopen(kTestModule, RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
  Dl_info place = {};
  dladdr(dlsym(library, "tarn_ordinals"), &place);
  dlclose(library);
  return place.dli_fbase;
}

TEST_F(ModuleLoaderTest, AModuleHasTheErrorBlockThatWasSetWhenItWasLoaded) {
  ASSERT_TRUE(host.Load(kTestModule));
  void* const handle = TestModuleHandle();
  EXPECT_EQ(GetErrorOffset(handle), 65535);
  host.SetModuleErrorOffset(2000);
  EXPECT_EQ(GetErrorOffset(handle), 65535);
  ASSERT_TRUE(host.Load(kTestModule));
  EXPECT_EQ(GetErrorOffset(handle), 2000);
}

TEST_F(ModuleLoaderTest, AHandleNobodyKnowsHasNoErrorBlock) {
  EXPECT_EQ(GetErrorOffset(nullptr), 65535);
  int somewhere = 0;
  EXPECT_EQ(GetErrorOffset(&somewhere), 65535);
}

}  // namespace
