// The help: complete, true to the module's table, the same everywhere.

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include "app/completion.h"
#include "app/help_text.h"
#include "app/help_toolkit.h"
#include "app/prelude.h"
#include "app/prompt.h"
#include "frame/module_entry.h"
#include "run_command.h"

namespace {

using tarn::HelpEntries;
using tarn::HelpEntry;

/// A host with module and prelude; collects what scripts print.
class HelpTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host.Load(TARN_MODULE_PATH)) << host.TakeError().ToString();
    ASSERT_TRUE(tarn::InstallPrelude(host)) << host.TakeError().ToString();
    host.SetOutput([this](std::string_view text) { printed += text; });
  }

  std::string PrintedBy(const std::string& script) {
    printed.clear();
    EXPECT_TRUE(host.Evaluate(script)) << script << ": " << host.TakeError().ToString();
    return printed;
  }

  EmbeddedHost host;
  std::string printed;
};

const ScriptFunction* Table() {
  return reinterpret_cast<TarnGetScriptFunctions>(
      tarn_ordinals[TARN_ORDINAL_GET_SCRIPT_FUNCTIONS])();
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

TEST_F(HelpTest, EveryRowOfTheTableHasItsEntry) {
  std::size_t row = 0;
  for (; Table()[row].handler != nullptr; ++row) {
    ASSERT_LT(row, HelpEntries().size()) << Table()[row].signature;
    EXPECT_EQ(HelpEntries()[row].signature, Table()[row].signature);
  }
  EXPECT_EQ(HelpEntries().size(), row);
  EXPECT_EQ(row, 41u);
}

TEST_F(HelpTest, EveryEntryIsWhole) {
  for (const HelpEntry& entry : HelpEntries()) {
    SCOPED_TRACE(entry.signature);
    for (std::string_view text :
         {entry.call, entry.family, entry.summary, entry.meaning, entry.domain, entry.example}) {
      EXPECT_FALSE(text.empty());
    }
    EXPECT_FALSE(tarn::CommonErrors(entry.signature).empty() && entry.errors.empty());
    EXPECT_TRUE(entry.call.starts_with(std::string(entry.Name()) + '('));
    EXPECT_TRUE(entry.example.starts_with(std::string(entry.Name()) + '('));
    EXPECT_EQ(std::ranges::count(entry.call, ','), std::ranges::count(entry.signature, ','));
    EXPECT_EQ(entry.value.empty(), entry.Name().starts_with("Rand"));
  }
}

TEST_F(HelpTest, FindsEntriesByName) {
  for (const HelpEntry& entry : HelpEntries()) EXPECT_EQ(tarn::FindHelp(entry.Name()), &entry);
  EXPECT_EQ(tarn::FindHelp("Bessel"), nullptr);
  EXPECT_EQ(tarn::FindHelp(""), nullptr);
}

TEST_F(HelpTest, PsiIsSaidToBeTheDensityOverTheTailAndNotDigamma) {
  for (const char* name : {"Psi", "LnPsi"}) {
    const HelpEntry& entry = *tarn::FindHelp(name);
    EXPECT_TRUE(Contains(entry.meaning, "standard normal density over its upper tail"));
    EXPECT_TRUE(Contains(entry.caution, "Not the"));
    EXPECT_TRUE(Contains(entry.caution, "digamma function"));
    EXPECT_TRUE(Contains(entry.summary, "digamma"));
  }
}

TEST_F(HelpTest, WarnsOfTheLogarithmsNearCertainty) {
  EXPECT_TRUE(Contains(tarn::FindHelp("LnGamma_Q")->caution, "math.log(Gamma_Q(a, x))"));
  EXPECT_TRUE(Contains(tarn::FindHelp("LnBeta_I")->caution, "math.log(Beta_I(a, b, x))"));
  // The warnings are true: these are far from ln Q and ln I, and the functions named instead right.
  EXPECT_EQ(PrintedBy("print(LnGamma_Q(0.01, 0.5) > 0, LnBeta_I(1, 1e-5, 0.9) ~= "
                      "LnBeta_I(1, 1e-5, 0.9))"),
            "true\ttrue\n");
  // Q(0.01, 1/2) = 0.00562667..., I of 0.9 (1, 1e-5) = 1 - 0.1^1e-5, both from 40 digits.
  EXPECT_EQ(PrintedBy("print(string.format('%.4f %.4f', math.log(Gamma_Q(0.01, 0.5)), "
                      "math.log(Beta_I(1, 1e-5, 0.9))))"),
            "-5.1802 -10.6789\n");
}

TEST_F(HelpTest, WarnsOfTheSevenDigitsOfErf) {
  for (const char* name : {"Errf1", "CErrf", "LnCErrf", "Psi"}) {
    EXPECT_TRUE(Contains(tarn::FindHelp(name)->caution, "1.2e-7")) << name;
  }
}

TEST_F(HelpTest, ExamplesAgreeWithHighPrecision) {
  std::map<std::string, std::string> truth;
  std::ifstream table(TARN_SOURCE_DIR "/tests/truth/help_examples.txt");
  for (std::string line; std::getline(table, line);) {
    const std::size_t equals = line.rfind(" = ");
    if (equals != std::string::npos) truth[line.substr(0, equals)] = line.substr(equals + 3);
  }
  for (const HelpEntry& entry : HelpEntries()) {
    if (entry.value.empty()) continue;
    EXPECT_EQ(truth[std::string(entry.example)], entry.value) << entry.example;
    EXPECT_EQ(PrintedBy("print(string.format('%.6g', " + std::string(entry.example) + "))"),
              std::string(entry.value) + '\n')
        << entry.example;
  }
}

TEST_F(HelpTest, ExamplesWithoutValueRun) {
  for (const HelpEntry& entry : HelpEntries()) {
    if (!entry.value.empty()) continue;
    EXPECT_FALSE(PrintedBy("print(" + std::string(entry.example) + ")").empty());
  }
}

TEST_F(HelpTest, EdgesOfTheDomainsAreAsStated) {
  const std::pair<const char*, const char*> kEdges[] = {{"BesselY0(0)", "-inf"},
                                                        {"BesselY1(0)", "-inf"},
                                                        {"BesselY0(-1)", "nan"},
                                                        {"BesselYn(2, 0)", "-inf"},
                                                        {"BesselYn(2, -1)", "nan"},
                                                        {"BesselI0(709)", "finite"},
                                                        {"BesselI0(715)", "inf"},
                                                        {"BesselK0(0)", "inf"},
                                                        {"BesselK0(-1)", "nan"},
                                                        {"BesselK1(0)", "nan"},
                                                        {"BesselK1(-1)", "nan"},
                                                        {"LnGamma(0)", "inf"},
                                                        {"LnGamma(-0.5)", "nan"},
                                                        {"BesselIn(-3, 1)", "finite"},
                                                        {"Psi(0/0)", "nan"},
                                                        {"CErrf(27.1)", "finite"},
                                                        {"RandPoisson(0/0)", "nan"},
                                                        {"RandPoisson(2e305)", "finite"},
                                                        {"RandPoisson(1e306)", "nan"},
                                                        {"RandBinominal(0/0, 24)", "finite"},
                                                        {"RandBinominal(0/0, 25)", "nan"},
                                                        {"RandGauss(0, 0/0)", "nan"},
                                                        {"LnBesselIn(2, 1000)", "finite"}};
  for (const auto& [expression, expected] : kEdges) {
    EXPECT_EQ(PrintedBy("local x = " + std::string(expression) +
                        " print(x ~= x and 'nan' or x == math.huge and 'inf' or "
                        "x == -math.huge and '-inf' or 'finite')"),
              std::string(expected) + '\n')
        << expression;
  }
  EXPECT_EQ(PrintedBy("print(CErrf(28), LnGamma_P(2, 0), LnBeta_I(2, 3, 0), "
                      "BesselIn(-3, 1) == BesselI0(1), BesselKn(-3, 1) == BesselK0(1))"),
            "0.0\t0.0\t-1e+300\ttrue\ttrue\n");
}

TEST_F(HelpTest, ErrorsAreAsStated) {
  const std::pair<const char*, const char*> kErrors[] = {
      {"BesselJn(0.5, -1)", "Bad argument."},
      {"BesselJn(-0.5, 1)", "Bad argument."},
      {"BesselJn(math.huge, 1)", "Bad argument."},
      {"BesselJn(1.5e7 + 0.5, 1)", "Bad argument."},
      {"BesselJn(0.5, 5000)", "x too large; try asymptotic expansion"},
      {"BesselJpn(1, 0)", "Bad argument."},
      {"BesselIpn(1, 1e6)", "x too large; try asymptotic expansion"},
      {"BesselIn(4990000, 1)", "Bad argument."},
      {"BesselKn(10000002, 1)", "Bad argument."},
      {"Gamma_P(0, 1)", "Bad argument."},
      {"LnGamma_Q(1, -1)", "Bad argument."},
      {"Beta_I(1, 1, 1.5)", "Bad argument."},
      {"ProbChi2(0, 1)", "Bad argument."},
      {"Sinc('text')", "Bad argument."},
  };
  for (const auto& [call, message] : kErrors) {
    EXPECT_EQ(PrintedBy("local _, e = pcall(function() return " + std::string(call) +
                        " end) print(e.number, e.message)"),
              std::string("3\t") + message + '\n')
        << call;
  }
}

TEST_F(HelpTest, ThePromptsTextFitsATerminal) {
  for (const HelpEntry& entry : HelpEntries()) {
    std::istringstream lines(RenderEntry(entry) + tarn::RenderIndex(HelpEntries()));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
  }
}

TEST_F(HelpTest, HelpPrintsTheEntry) {
  for (const HelpEntry& entry : HelpEntries()) {
    const std::string name(entry.Name());
    EXPECT_EQ(PrintedBy("help(\"" + name + "\")"), RenderEntry(entry));
  }
  EXPECT_EQ(PrintedBy("help 'Beta_I'"), RenderEntry(*tarn::FindHelp("Beta_I")));
  EXPECT_EQ(PrintedBy("help(Beta_I)"), RenderEntry(*tarn::FindHelp("Beta_I")));
}

TEST_F(HelpTest, HelpWithoutANamePrintsTheIndex) {
  const std::string index = PrintedBy("help()");
  EXPECT_EQ(index, tarn::RenderIndex(HelpEntries()));
  for (const HelpEntry& entry : HelpEntries()) {
    EXPECT_TRUE(Contains(index, "  " + std::string(entry.call))) << entry.call;
  }
}

TEST_F(HelpTest, HelpOnAPartOfANameListsWhatMentionsIt) {
  const std::string text = PrintedBy("help('poisson')");
  EXPECT_TRUE(Contains(text, "RandPoisson(mean)")) << text;
  EXPECT_EQ(std::ranges::count(text, '\n'), 1);
}

TEST_F(HelpTest, HelpOnAnythingElseSaysSo) {
  for (const char* call : {"help('no such thing')", "help(12)", "help({})", "help(print)"}) {
    EXPECT_TRUE(Contains(PrintedBy(call), "help() lists")) << call;
  }
}

TEST_F(HelpTest, ShowPrintsWhatTablesHold) {
  EXPECT_EQ(PrintedBy("show()"), "");
  EXPECT_EQ(PrintedBy("show(nil)"), "nil\n");
  EXPECT_EQ(PrintedBy("show(1, 'text', true)"), "1\ttext\ttrue\n");
  EXPECT_EQ(PrintedBy("show({1, 2.5, 'x', {3}, name = 'y'})"),
            "{1, 2.5, \"x\", {3}, name = \"y\"}\n");
  EXPECT_EQ(PrintedBy("local t = {} t.self = t show(t)"), "{self = {self = {self = {...}}}}\n");
  EXPECT_EQ(PrintedBy("local t = {} for i = 1, 1000 do t[i] = i end show(t)"),
            "{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, "
            "... 1000 elements}\n");
  EXPECT_EQ(PrintedBy("local r = Record() r.point = {1, 2.5} r.evaluations = 12 r.text = 'x' "
                      "show(r, {r})"),
            "Record\n  point        {1, 2.5}\n  evaluations  12\n  text         \"x\"\t"
            "{Record(point = {1, 2.5}, evaluations = 12, text = \"x\")}\n");
  EXPECT_EQ(PrintedBy("show(Record(), MVector{1})"), "Record\tMVector{1}\n");
  EXPECT_EQ(PrintedBy("show({LnGamma})"), "{function LnGamma}\n");
  EXPECT_EQ(PrintedBy("show(help)"),
            "help() lists the functions, help(\"Name\") tells about one.\n");
}

TEST_F(HelpTest, QuotedTextsReachTheScriptUnchanged) {
  std::string text;
  for (int code = 0; code < 256; ++code) (text += static_cast<char>(code)) += '7';
  Variable sum;
  ASSERT_TRUE(host.Evaluate("local text, sum = " + tarn::QuoteForScript(text) +
                                ", 0 for i = 1, 512, 2 do if text:byte(i) == i // 2 and "
                                "text:sub(i + 1, i + 1) == '7' then sum = sum + 1 end end "
                                "return #text == 512 and sum",
                            &sum))
      << host.TakeError().ToString();
  EXPECT_EQ(sum.GetInt32Numb(), 256);
}

TEST(ReferenceTest, ThePageInTheDocumentationIsUpToDate) {
  EXPECT_EQ(ReadFile(TARN_SOURCE_DIR "/docs/script-reference.md"), tarn::RenderReference())
      << "write it anew: tarn-reference > docs/script-reference.md";
}

/// The blocks of docs/getting-started.md that show the prompt: what is typed, what is printed.
std::vector<std::pair<std::string, std::string>> ShownInputs() {
  std::vector<std::pair<std::string, std::string>> inputs;
  std::ifstream page(TARN_SOURCE_DIR "/docs/getting-started.md");
  bool shown = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("```")) {
      shown = false;
    } else if (line.starts_with("> ")) {
      shown = true;
      inputs.emplace_back(line.substr(2), "");
    } else if (shown) {
      inputs.back().second += line + '\n';
    }
  }
  return inputs;
}

TEST_F(HelpTest, TheFirstTenMinutesGoAsDescribed) {
  const auto inputs = ShownInputs();
  EXPECT_GE(inputs.size(), 10u);
  for (const auto& [typed, expected] : inputs) {
    printed.clear();
    const bool isExpression = tarn::IsExpression(host, typed);
    const std::string script = isExpression ? "show(" + typed + ")" : typed;
    if (!host.Evaluate(script, nullptr, "prompt")) printed = host.TakeError().ToString() + '\n';
    EXPECT_EQ(printed, expected) << typed;
  }
}

TEST(CompletionTest, TheCommonBeginning) {
  EXPECT_EQ(tarn::CommonPrefix({}), "");
  EXPECT_EQ(tarn::CommonPrefix({"BesselJ0"}), "BesselJ0");
  EXPECT_EQ(tarn::CommonPrefix({"BesselJ0", "BesselJ1", "BesselJn"}), "BesselJ");
  EXPECT_EQ(tarn::CommonPrefix({"Beta", "Beta_I"}), "Beta");
  EXPECT_EQ(tarn::CommonPrefix({"x", "y"}), "");
}

TEST(CompletionTest, TheLastWordOfALine) {
  EXPECT_EQ(tarn::LastWord("print(Bess"), "Bess");
  EXPECT_EQ(tarn::LastWord("x = math.sq"), "math.sq");
  EXPECT_EQ(tarn::LastWord("x = "), "");
  EXPECT_EQ(tarn::LastWord(""), "");
  EXPECT_EQ(tarn::LastWord("Beta_I"), "Beta_I");
}

TEST(CompletionTest, NamesInColumns) {
  EXPECT_EQ(tarn::InColumns({"a", "bb", "ccc"}, 80), "a    bb   ccc\n");
  EXPECT_EQ(tarn::InColumns({"a", "bb", "ccc"}, 10), "a    bb\nccc\n");
  EXPECT_EQ(tarn::InColumns({"a", "bb", "ccc"}, 1), "a\nbb\nccc\n");
  EXPECT_EQ(tarn::InColumns({}, 80), "");
}

// The companion module ----------------------------------------------------------------------------

class ToolkitHelpTest : public HelpTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(host.Load(TARN_TOOLKIT_PATH)) << host.TakeError().ToString();
    HelpTest::SetUp();
  }
};

TEST_F(ToolkitHelpTest, EntriesHaveTheSignaturesOfTheTable) {
  const std::vector<std::string> signatures = host.Signatures();
  for (const HelpEntry& entry : tarn::ToolkitHelpEntries()) {
    EXPECT_NE(std::ranges::find(signatures, entry.signature), signatures.end()) << entry.signature;
  }
}

TEST_F(ToolkitHelpTest, EveryFunctionAndMethodHasAnEntry) {
  for (const std::string& signature : host.Signatures()) {
    const bool isOperator = signature.find(".__") != std::string::npos;
    if (isOperator || tarn::FindHelp(signature.substr(0, signature.find('('))) != nullptr) continue;
    EXPECT_EQ(std::ranges::count(tarn::ToolkitHelpEntries(), signature, &HelpEntry::signature), 1)
        << signature;
  }
}

TEST_F(ToolkitHelpTest, EntriesAreWholeAndFitTheScreen) {
  for (const HelpEntry& entry : tarn::ToolkitHelpEntries()) {
    SCOPED_TRACE(entry.signature);
    for (std::string_view text :
         {entry.call, entry.family, entry.summary, entry.meaning, entry.domain, entry.example}) {
      EXPECT_FALSE(text.empty());
    }
    std::istringstream lines(RenderEntry(entry));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
  }
}

TEST_F(ToolkitHelpTest, ExamplesHaveTheValuesThatTheySay) {
  for (const HelpEntry& entry : tarn::ToolkitHelpEntries()) {
    if (entry.value.empty()) continue;
    EXPECT_EQ(PrintedBy("local v = " + std::string(entry.example) +
                        " print(math.type(v) and string.format('%.6g', v) or tostring(v))"),
              std::string(entry.value) + '\n')
        << entry.example;
  }
}

TEST_F(ToolkitHelpTest, IsFoundByFullNameAndByWord) {
  const HelpEntry& entry = tarn::ToolkitHelpEntries().front();
  EXPECT_EQ(PrintedBy("help 'MVector.Norm'"), RenderEntry(entry));
  EXPECT_TRUE(Contains(PrintedBy("help 'Norm'"), "v:Norm()"));
  EXPECT_TRUE(Contains(PrintedBy("help()"), "\nVectors of numbers (MVector)\n"));
}

TEST_F(HelpTest, SaysNothingOfACompanionThatIsNotLoaded) {
  EXPECT_FALSE(Contains(PrintedBy("help()"), "MVector"));
  EXPECT_EQ(PrintedBy("help 'MVector.Norm'"),
            "There is no help on this; help() lists the functions.\n");
}

}  // namespace
