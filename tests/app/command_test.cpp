// The command from end to end: options, exit statuses, where output and errors go.

#include <csignal>
#include <sstream>

#include "frame/module_entry.h"
#include "run_command.h"

namespace {

using ::testing::Test;

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Options -----------------------------------------------------------------------------------------

TEST(CommandTest, VersionPrintsTheModulesDescription) {
  const CommandResult result = RunTarn({"--no-toolkit", "--version"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "TARN Support DLL v5.0 |TARN version:5.09.02\n");
  EXPECT_EQ(result.err, "");
}

TEST(CommandTest, ListPrintsAllSignaturesInTheOrderOfTheTable) {
  const CommandResult result = RunTarn({"--no-toolkit", "--list"});
  EXPECT_EQ(result.status, 0);
  const auto table =
      reinterpret_cast<TarnGetScriptFunctions>(tarn_ordinals[TARN_ORDINAL_GET_SCRIPT_FUNCTIONS])();
  const std::vector<std::string> lines = Lines(result.out);
  ASSERT_EQ(lines.size(), 41u);
  for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(lines[i], table[i].signature);
}

TEST(CommandTest, HelpNamesEveryOption) {
  const CommandResult result = RunTarn({"--help"});
  EXPECT_EQ(result.status, 0);
  for (const char* option :
       {"-e", "-i", "--list", "--seed", "--module", "--version", "--help", "--toolkit",
        "--no-toolkit", "FILE", "ARGS", "TARN_MODULE", "TARN_TOOLKIT"}) {
    EXPECT_TRUE(Contains(result.out, option)) << option;
  }
  EXPECT_EQ(RunTarn({"-h"}).out, result.out);
}

TEST(CommandTest, WrongCommandLinesAreUsageErrors) {
  const std::vector<std::vector<std::string>> kWrong = {
      {"--bogus"},       {"-x"}, {"--seed"}, {"--seed", "many"}, {"--seed", "-1"},
      {"--seed", "1.5"}, {"-e"}, {"-5"},     {"--module"},       {"--list=3"}};
  for (const auto& arguments : kWrong) {
    const CommandResult result = RunTarn(arguments);
    EXPECT_EQ(result.status, 2) << arguments.front();
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(Contains(result.err, "Usage: tarn")) << result.err;
  }
}

TEST(CommandTest, AMissingFileIsNamed) {
  const CommandResult result = RunTarn({"no-such-script.lua"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "tarn: cannot open no-such-script.lua: No such file or directory\n");
}

TEST(CommandTest, AFolderIsNoScript) {
  TemporaryFolder folder;
  const CommandResult result = RunTarn({folder / "."});
  EXPECT_NE(result.status, 0);
  EXPECT_TRUE(Contains(result.err, folder / ".")) << result.err;
}

// Scripts -----------------------------------------------------------------------------------------

TEST(CommandTest, RunsAFileWithItsArguments) {
  TemporaryFolder folder;
  const std::string script =
      folder.Write("script.lua", "print(arg[0] == ..., #arg, arg[1], arg[2])\nprint(...)\n");
  const CommandResult result = RunTarn({script, "one", "two words"});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "false\t2\tone\ttwo words\none\ttwo words\n");
}

TEST(CommandTest, WhatFollowsTheFileBelongsToTheScript) {
  TemporaryFolder folder;
  const std::string script = folder.Write("script.lua", "print(table.concat(arg, ' '))\n");
  const CommandResult result =
      RunTarn({"--seed", "5", script, "--seed", "x", "--bogus", "-e", "--", "--version"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "--seed x --bogus -e -- --version\n");
}

TEST(CommandTest, DashesEndTheOptions) {
  TemporaryFolder folder;
  folder.Write("--odd.lua", "print('odd', ...)\n");
  CommandSetup setup;
  setup.folder = folder / ".";
  const CommandResult result = RunTarn({"--", "--odd.lua", "7"}, setup);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "odd\t7\n");
}

TEST(CommandTest, RunsTextsInOrderAndThenTheFile) {
  TemporaryFolder folder;
  const std::string script = folder.Write("script.lua", "print(x)\n");
  const CommandResult result = RunTarn({"-e", "x = 1", "-e", "x = x + 1 print('text')", script});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "text\n2\n");
}

TEST(CommandTest, ATextMayLookLikeAnOptionOrAList) {
  EXPECT_EQ(RunTarn({"-e", "-- only a comment"}).status, 0);
  EXPECT_EQ(RunTarn({"-e", ""}).status, 0);
  EXPECT_EQ(RunTarn({"-e", "print'a,b'"}).out, "a,b\n");
  EXPECT_EQ(RunTarn({"--execute=print(1)"}).out, "1\n");
}

TEST(CommandTest, TheModulesFunctionsAnswer) {
  const CommandResult result = RunTarn({"-e", "print(string.format('%.6f', BesselJ0(1)))"});
  EXPECT_EQ(result.out, "0.765198\n");
}

TEST(CommandTest, ReadsAScriptFromStandardInput) {
  CommandSetup setup;
  setup.input = "#!/usr/bin/env tarn\nprint(Sinc(0), #arg, arg[1])\n";
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"-", "a"}, {"--seed", "1", "-", "a"}}) {
    const CommandResult result = RunTarn(arguments, setup);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "1.0\t1\ta\n");
  }
  EXPECT_EQ(RunTarn({}, setup).out, "1.0\t0\tnil\n");
}

TEST(CommandTest, EmptyInputIsAnEmptyScript) {
  const CommandResult result = RunTarn({});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out + result.err, "");
}

TEST(CommandTest, AFileMayBeginWithALineForTheShell) {
  TemporaryFolder folder;
  const std::string script = folder.Write("script.lua", "#!/usr/bin/env tarn\nerror('here')\n");
  const CommandResult result = RunTarn({script});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(Contains(result.err, "script.lua:2: here")) << result.err;
}

TEST(CommandTest, AScriptChoosesItsExitStatus) {
  const CommandResult result = RunTarn({"-e", "print('written') os.exit(7)"});
  EXPECT_EQ(result.status, 7);
  EXPECT_EQ(result.out, "written\n");
}

// Errors ------------------------------------------------------------------------------------------

TEST(CommandTest, ErrorsNameFileAndLine) {
  TemporaryFolder folder;
  const struct {
    const char* text;
    const char* line;
    const char* message;
  } kCases[] = {
      {"\n\nerror('my words')", ":3: ", "my words"},
      {"x = = 1", ":1: ", "unexpected symbol"},
      {"local t = nil\nprint(t.x)", ":2: ", "nil value"},
      {"\nBesselJn({}, 1)", ":2: ", "BesselJn: argument 1 must be a number, got a table"},
      {"\nBesselJn(1)", ":2: ", "BesselJn"},
      {"Gamma_P(-1, 1)", ":1: ", "Gamma_P"},
      {"local x = Beta_I(1e9, 1e9, 0.5)",
       ":1: ", "Beta_I: a or b too big, Beta_P does not converge in 300 itterations"},
  };
  for (const auto& [text, line, message] : kCases) {
    const std::string script = folder.Write("script.lua", text);
    const CommandResult result = RunTarn({script});
    EXPECT_EQ(result.status, 1) << text;
    EXPECT_TRUE(result.err.starts_with("tarn: " + script + line)) << result.err;
    EXPECT_TRUE(Contains(result.err, message)) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(Lines(result.err).size(), 1u);
  }
}

TEST(CommandTest, ErrorsInTextsAndInputNameThem) {
  CommandSetup setup;
  setup.input = "\nerror('in the input')\n";
  EXPECT_TRUE(Contains(RunTarn({"-"}, setup).err, "stdin:2: in the input"));
  const CommandResult result = RunTarn({"-e", "print('ran')", "-e", "error('in the text')"});
  EXPECT_TRUE(Contains(result.err, "-e:1: in the text")) << result.err;
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "ran\n");
}

TEST(CommandTest, AFailedTextKeepsTheFileFromRunning) {
  TemporaryFolder folder;
  const std::string script = folder.Write("script.lua", "print('ran')\n");
  const CommandResult result = RunTarn({"-e", "error('stop')", script});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
}

TEST(CommandTest, ErrorsComeBehindTheOutputSoFar) {
  CommandSetup setup;
  setup.errorsToOutput = true;
  const CommandResult result = RunTarn({"-e", "print('first') error('second')"}, setup);
  EXPECT_LT(result.out.find("first"), result.out.find("second")) << result.out;
}

// Random numbers ----------------------------------------------------------------------------------

TEST(CommandTest, SeedsDecideTheRandomNumbers) {
  const std::string text = "for i = 1, 3 do print(RandGauss(0, 1), RandPoisson(30)) end";
  const std::string first = RunTarn({"--seed", "1", "-e", text}).out;
  EXPECT_EQ(RunTarn({"--seed", "1", "-e", text}).out, first);
  EXPECT_NE(RunTarn({"--seed", "2", "-e", text}).out, first);
  EXPECT_EQ(RunTarn({"-e", text}).out, RunTarn({"-e", text}).out);
  EXPECT_EQ(RunTarn({"--seed", "18446744073709551615", "-e", text}).status, 0);
}

// The module --------------------------------------------------------------------------------------

TEST(CommandTest, LoadsTheModuleThatIsNamed) {
  CommandSetup wrong;
  wrong.environment["TARN_MODULE"] = "/no/such/module.so";
  EXPECT_EQ(RunTarn({"--version"}, wrong).status, 2);
  EXPECT_EQ(RunTarn({"--module", TARN_MODULE_PATH, "--version"}, wrong).status, 0);
  CommandSetup right;
  right.environment["TARN_MODULE"] = TARN_MODULE_PATH;
  EXPECT_EQ(RunTarn({"--version"}, right).status, 0);
  EXPECT_EQ(RunTarn({"--module", "/no/such/module.so", "--version"}, right).status, 2);
}

TEST(CommandTest, WhatIsNoModuleIsRefusedByName) {
  TemporaryFolder folder;
  const std::string text = folder.Write("module.so", "no library");
  const CommandResult result = RunTarn({"--module", text, "-e", "print(1)"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(Contains(result.err, text)) << result.err;
}

TEST(CommandTest, FindsTheModuleBesideTheProgram) {
  namespace fs = std::filesystem;
  TemporaryFolder folder;
  fs::create_directories(folder / "bin");
  fs::create_directories(folder / "lib");
  fs::copy_file(TARN_COMMAND, folder / "bin/tarn");
  CommandSetup setup;
  setup.program = folder / "bin/tarn";
  setup.folder = "/";
  const CommandResult missing = RunTarn({"--version"}, setup);
  EXPECT_EQ(missing.status, 2);
  EXPECT_TRUE(Contains(missing.err, "TARN_MODULE")) << missing.err;

  const std::string file = fs::path(TARN_MODULE_PATH).filename().string();
  fs::copy_file(TARN_MODULE_PATH, folder / ("lib/" + file));
  const CommandResult found = RunTarn({"--version"}, setup);
  EXPECT_EQ(found.status, 0);
  EXPECT_EQ(Lines(found.out).size(), 1u) << "no companion is beside it";
  fs::rename(folder / ("lib/" + file), folder / ("bin/" + file));
  EXPECT_EQ(RunTarn({"--version"}, setup).status, 0);
}

// The companion module ----------------------------------------------------------------------------

constexpr char kDescriptions[] =
    "TARN Support DLL v5.0 |TARN version:5.09.02\nTARN Toolkit v5.0 |TARN version:5.09.02\n";

TEST(CommandTest, LoadsTheCompanionBesideTheModule) {
  EXPECT_EQ(RunTarn({"--version"}).out, kDescriptions);
  EXPECT_EQ(RunTarn({"-e", "print(MVector{3, 4}:Norm())"}).out, "5.0\n");
  EXPECT_GT(Lines(RunTarn({"--list"}).out).size(), 41u);
  const CommandResult without = RunTarn({"--no-toolkit", "-e", "print(Matrix)"});
  EXPECT_EQ(without.out, "nil\n");
}

TEST(CommandTest, LoadsTheCompanionThatIsNamed) {
  CommandSetup wrong;
  wrong.environment["TARN_TOOLKIT"] = "/no/such/module.so";
  EXPECT_EQ(RunTarn({"--version"}, wrong).status, 2);
  EXPECT_EQ(RunTarn({"--no-toolkit", "--version"}, wrong).status, 0);
  EXPECT_EQ(RunTarn({"--toolkit", TARN_TOOLKIT_PATH, "--version"}, wrong).out, kDescriptions);
  CommandSetup right;
  right.environment["TARN_TOOLKIT"] = TARN_TOOLKIT_PATH;
  EXPECT_EQ(RunTarn({"--version"}, right).out, kDescriptions);
  const CommandResult missing = RunTarn({"--toolkit", "/no/such/module.so", "--version"}, right);
  EXPECT_EQ(missing.status, 2);
  EXPECT_TRUE(Contains(missing.err, "/no/such/module.so")) << missing.err;
}

TEST(CommandTest, ACompanionIsEitherNamedOrNotWanted) {
  EXPECT_EQ(RunTarn({"--toolkit", TARN_TOOLKIT_PATH, "--no-toolkit", "--version"}).status, 2);
}

// Output and signals ------------------------------------------------------------------------------

TEST(CommandTest, AReaderThatGoesAwayEndsTheScriptQuietly) {
  CommandSetup setup;
  setup.closedOutput = true;
  const CommandResult result = RunTarn({"-e", "while true do print('text') end"}, setup);
  EXPECT_EQ(result.signal, SIGPIPE);
  EXPECT_EQ(result.err, "");
}

TEST(CommandTest, OutputThatCannotBeWrittenIsAnError) {
  CommandSetup setup;
  setup.outputPath = "/dev/full";
  const CommandResult result = RunTarn({"-e", "print('text')"}, setup);
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(Contains(result.err, "cannot write the output")) << result.err;
}

TEST(CommandTest, AnInterruptEndsTheScriptAndSaysWhere) {
  TemporaryFolder folder;
  const std::string script = folder.Write(
      "script.lua", "print('before')\nio.popen('kill -INT $PPID'):close()\nwhile true do end\n");
  const CommandResult result = RunTarn({script});
  EXPECT_EQ(result.signal, SIGINT);
  EXPECT_EQ(result.out, "before\n");
  EXPECT_TRUE(Contains(result.err, "script.lua:")) << result.err;
  EXPECT_TRUE(Contains(result.err, ": interrupted\n")) << result.err;
}

constexpr char kInterrupts[] =
    "local function interrupt() io.popen('kill -INT $PPID'):close() end\n"
    "local function busy() interrupt() while true do end end\n";

TEST(CommandTest, AScriptMayCatchTheFirstInterrupt) {
  const CommandResult result =
      RunTarn({"-e", std::string(kInterrupts) + "local ok, e = pcall(busy) print(ok, e.name)"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "false\tProgress window got cancel\n");
  EXPECT_EQ(result.err, "");
}

TEST(CommandTest, ASecondInterruptEndsAScriptThatCatchesThem) {
  const CommandResult result =
      RunTarn({"-e", std::string(kInterrupts) + "while true do pcall(busy) print('caught') end"});
  EXPECT_EQ(result.signal, SIGINT);
  EXPECT_EQ(result.out, "caught\n");
  EXPECT_TRUE(Contains(result.err, ": interrupted\n")) << result.err;
}

TEST(CommandTest, AThirdInterruptKillsAScriptThatDoesNotEnd) {
  // A search that tries 2^40 ways: the interpreter is not asked whether to stop meanwhile.
  const CommandResult result = RunTarn(
      {"-e",
       "sender = io.popen('for i in 1 2 3; do sleep 0.1; kill -INT $PPID; done')\n"
       "string.find(string.rep('a', 40), string.rep('a?', 40) .. string.rep('a', 40) .. 'b')"});
  EXPECT_EQ(result.signal, SIGINT);
  EXPECT_EQ(result.err, "");
}

TEST(CommandTest, AnErrorAfterACaughtInterruptIsAnOrdinaryOne) {
  const CommandResult result =
      RunTarn({"-e", std::string(kInterrupts) + "pcall(busy) error('something else')"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(Contains(result.err, "-e:3: something else")) << result.err;
}

TEST(CommandTest, ProgressWindowsShowNothingWhereThereIsNoTerminal) {
  const CommandResult result = RunTarn(
      {"-e", "local w = ProgressWnd() for i = 1, 99 do w:SetProgress(i) w:SetCaption('x') end"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out + result.err, "");
}

TEST(CommandTest, ShowAlignsMembersOfSeveralLines) {
  const CommandResult result =
      RunTarn({"-e", "r = Record() r.m = Matrix{{1, 2}, {3, 4}} r.last = 5 show(r)"});
  EXPECT_EQ(result.out,
            "Record\n"
            "  m     [  1  2  ]\n"
            "        [  3  4  ]\n"
            "  last  5\n");
}

}  // namespace
