// T_Climb: calls of the progress window and of the host's idle work, cancellation in every phase.

#include "climb_support.h"
#include "host/error_table.h"
#include "problems/bounded.h"
#include "problems/more_garbow_hillstrom.h"

namespace {

template <class T>
using Access = tarn::ClimbTestAccess<T>;
using tarn::StopReason;

template <class T>
struct Method {
  const char* name;
  std::function<void(T_Climb<T>&)> run;
  std::function<void(reference::Climb<T>&)> runReference;
};

template <class T>
std::vector<Method<T>> MethodsWithWindow() {
  using Climb = T_Climb<T>;
  using Reference = reference::Climb<T>;
  return {
      {"BFGS", [](Climb& c) { c.SolveBFGS(35); },
       [](Reference& r) { r.SolveQuasiNewton(true, 35); }},
      {"DFP", [](Climb& c) { c.SolveDFP(35); },
       [](Reference& r) { r.SolveQuasiNewton(false, 35); }},
      {"Powell", [](Climb& c) { c.SolvePowell(); }, [](Reference& r) { r.SolvePowell(); }},
      {"Solve", [](Climb& c) { c.Solve(15); }, [](Reference& r) { r.Solve(15); }},
  };
}

template <class T>
class ClimbProgressTest : public ClimbTest {
 protected:
  ClimbProgressTest() {
    host.SetIdleWork([this] { events.emplace_back("FlushIdle"); });
  }

  /// A window whose methods keep a record in `events`: through the text output, which arrives in
  /// the order of the calls. It cancels at the call of "CheckCancel" whose number is in `cancelAt`.
  Variable MakeWindow() {
    host.SetOutput(
        [this](std::string_view text) { events.emplace_back(text.substr(0, text.find('\n'))); });
    return Script(R"((function()
      local window = ProgressWnd()
      checks = 0
      cancelAt = -1
      window.SetProgress = function(self, value) print('SetProgress ' .. value) end
      window.SetCaption = function(self, text) print('SetCaption ' .. text) end
      window.CheckCancel = function(self)
        print('CheckCancel')
        checks = checks + 1
        if checks == cancelAt then
          local cancelled = ProgressWnd()
          cancelled:Cancel()
          cancelled:CheckCancel()
        end
      end
      return window
    end)())");
  }

  void CancelAt(int check) {
    ASSERT_TRUE(host.Evaluate("checks = 0; cancelAt = " + std::to_string(check)));
  }

  void ExpectCancelled(T_Climb<T>& climb, const problems::Problem<T>& problem,
                       const std::string& what) {
    ASSERT_TRUE(host.HasError()) << what;
    EXPECT_EQ(host.TakeError().name, "Progress window got cancel") << what;
    const Point<T> best = Values(climb.GetResult());
    for (std::size_t i = 0; i < best.size(); ++i) {
      EXPECT_GE(best[i], problem.bounds[2 * i]) << what;
      EXPECT_LE(best[i], problem.bounds[2 * i + 1]) << what;
    }
  }

  std::vector<std::string> events;
};
using Elements = testing::Types<float, double>;
TYPED_TEST_SUITE(ClimbProgressTest, Elements);

TYPED_TEST(ClimbProgressTest, WindowSeesEveryCallInOrder) {
  using T = TypeParam;
  Variable window = this->MakeWindow();
  std::vector<problems::Problem<T>> list = problems::Bounded<T>();
  for (auto& problem : problems::MoreGarbowHillstrom<T>::All()) list.push_back(problem);
  std::size_t total = 0;
  for (const auto& problem : list) {
    for (const auto& method : MethodsWithWindow<T>()) {
      const T accuracy = sizeof(T) == 4 ? T(1e-4) : T(1e-6);
      reference::Climb<T> expected(
          [&problem](const reference::Point<T>& x) { return problem.f(x.data()); },
          reference::Point<T>(problem.bounds.begin(), problem.bounds.end()),
          reference::Point<T>(problem.start.begin(), problem.start.end()));
      expected.accuracy = accuracy;
      expected.maxPasses = 12;
      method.runReference(expected);
      T_Climb<T> climb = MakeClimb(problem, accuracy);
      climb.SetMaxItterationNumber(12);
      climb.SetErrorIfMaxItterNumberExceed(0);
      climb.SetProgressWnd(window);
      this->events.clear();
      method.run(climb);
      ASSERT_EQ(this->events, expected.window) << problem.name << ", " << method.name;
      ExpectSamePoints<T>(RecordedObjective<T>::calls, expected.evaluated, problem.name);
      total += this->events.size();
    }
  }
  this->RecordProperty("events", std::to_string(total));
}

TYPED_TEST(ClimbProgressTest, ExhaustedLimitIsRaisedBeforeTheLastCalls) {
  using T = TypeParam;
  Variable window = this->MakeWindow();
  T_Climb<T> climb = MakeClimb(problems::MoreGarbowHillstrom<T>::All()[0], T(1e-5));
  climb.SetProgressWnd(window);
  climb.SetMaxItterationNumber(1);
  climb.SolvePowell();
  EXPECT_TRUE(this->host.HasError());
  EXPECT_EQ(this->host.TakeError().name, "Can't find solution of system.");
  ASSERT_GE(this->events.size(), 3U);
  EXPECT_EQ(this->events[this->events.size() - 3], "SetProgress 100");
  EXPECT_EQ(this->events.back(), "CheckCancel");
}

TYPED_TEST(ClimbProgressTest, NoWindowMeansNoCallsButIdleWork) {
  using T = TypeParam;
  for (const bool emptyValue : {false, true}) {
    T_Climb<T> climb = MakeClimb(problems::MoreGarbowHillstrom<T>::All()[0], T(1e-3));
    Variable none;
    if (emptyValue) climb.SetProgressWnd(none);
    this->events.clear();
    climb.SolveBFGS();
    EXPECT_FALSE(this->host.HasError());
    EXPECT_GE(this->events.size(), 5U);
  }
}

TYPED_TEST(ClimbProgressTest, WindowIsReferredToAndNotCopied) {
  using T = TypeParam;
  T_Climb<T> climb = MakeClimb(problems::MoreGarbowHillstrom<T>::All()[0], T(1e-3));
  Variable window;
  climb.SetProgressWnd(window);
  // What the caller's value becomes later is what counts.
  window = this->MakeWindow();
  climb.SolveBFGS();
  EXPECT_EQ(this->events[0], "SetProgress 30");
}

TYPED_TEST(ClimbProgressTest, CancelledAtTheStartNothingIsEvaluated) {
  using T = TypeParam;
  Variable window = this->MakeWindow();
  const auto problem = problems::MoreGarbowHillstrom<T>::All()[0];
  for (const auto& method : MethodsWithWindow<T>()) {
    T_Climb<T> climb = MakeClimb(problem, T(1e-4));
    method.run(climb);
    const Point<T> before = Values(Access<T>::Best(climb));
    climb.SetProgressWnd(window);
    this->CancelAt(1);
    RecordedObjective<T>::calls.clear();
    this->host.TakeError();
    method.run(climb);
    EXPECT_TRUE(RecordedObjective<T>::calls.empty()) << method.name;
    EXPECT_EQ(Values(Access<T>::Best(climb)), before) << method.name;
    this->ExpectCancelled(climb, problem, method.name);
    EXPECT_EQ(climb.GetStopReason(), StopReason::kCancelled) << method.name;
  }
}

TYPED_TEST(ClimbProgressTest, CancelledAnywhereTheSolveEndsAndCanBeRepeated) {
  using T = TypeParam;
  Variable window = this->MakeWindow();
  const auto all = problems::MoreGarbowHillstrom<T>::All();
  for (const auto& problem : {all[0], all[8], problems::Bounded<T>()[4]}) {
    for (const auto& method : MethodsWithWindow<T>()) {
      T_Climb<T> climb = MakeClimb(problem, sizeof(T) == 4 ? T(1e-4) : T(1e-6));
      climb.SetErrorIfMaxItterNumberExceed(0);
      climb.SetMaxItterationNumber(12);
      climb.SetProgressWnd(window);
      this->CancelAt(-1);
      method.run(climb);
      const int checks = static_cast<int>(this->Number("checks"));
      const auto evaluations = RecordedObjective<T>::calls;
      const auto result = Values(climb.GetResult());
      for (int check = 1; check <= checks; ++check) {
        const std::string what =
            problem.name + ", " + method.name + ", check " + std::to_string(check);
        this->CancelAt(check);
        RecordedObjective<T>::calls.clear();
        method.run(climb);
        this->ExpectCancelled(climb, problem, what);
        // The last check comes when the solve is complete.
        EXPECT_EQ(climb.GetStopReason() == StopReason::kCancelled, check < checks) << what;
        ASSERT_LE(RecordedObjective<T>::calls.size(), evaluations.size() + 40) << what;
      }
      this->CancelAt(-1);
      RecordedObjective<T>::calls.clear();
      method.run(climb);
      EXPECT_EQ(RecordedObjective<T>::calls, evaluations);
      EXPECT_EQ(Values(climb.GetResult()), result);
    }
  }
}

TYPED_TEST(ClimbProgressTest, CancelledLineSearchReturnsZeroAndMovesNothing) {
  using T = TypeParam;
  T_Climb<T> climb =
      MakeClimb<T>([](const T* x) { return (x[0] - 1) * (x[0] - 1) + 5; }, {-3, 5}, {4}, T(1e-3));
  RecordedObjective<T>::onCall = [](std::size_t call) {
    if (call == 4) TarnError(tarn::kErrorCancel);
  };
  Access<T>::Best(climb) = Vector<T>({T(0.75)});
  T_MatVectorCol<T> along = Vector<T>({-1});
  EXPECT_EQ(climb.FindMiniumByDirection(T(9), along, 0), 0);
  EXPECT_EQ(Access<T>::Best(climb)[0], T(0.75));
  EXPECT_TRUE(this->host.HasError());
  EXPECT_EQ(climb.GetLineSearchStopReason(), StopReason::kCancelled);
}

TYPED_TEST(ClimbProgressTest, CancelledPassOfDirectionsKeepsTheBestPoint) {
  using T = TypeParam;
  // Lowest at x0 = 1 with the value -5, which is below the 0 that a cancelled line search returns;
  // behind it the objective rises so slowly that the extrapolated point lies below 0 too.
  T_Climb<T> climb = MakeClimb<T>(
      [](const T* x) {
        const T u = x[0] - 1;
        return (u < 0 ? 10 * u * u : u * u / 2) - 5;
      },
      {-3, 5, -3, 5}, {-2, 0}, T(1e-3));
  RecordedObjective<T>::onCall = [](std::size_t call) {
    if (RecordedObjective<T>::calls[call - 1][1] != 0) TarnError(tarn::kErrorCancel);
  };
  climb.SolvePowell(0);
  EXPECT_EQ(this->host.TakeError().name, "Progress window got cancel");
  EXPECT_EQ(climb.GetStopReason(), StopReason::kCancelled);
  EXPECT_NEAR(climb.GetResult()[0], 1, 0.1);
}

TYPED_TEST(ClimbProgressTest, StopRequestEndsAQuasiNewtonRun) {
  using T = TypeParam;
  Variable window = this->MakeWindow();
  T_Climb<T> climb = MakeClimb(problems::MoreGarbowHillstrom<T>::All()[0], T(1e-6));
  climb.SetProgressWnd(window);
  climb.SolveBFGS();
  const auto all = RecordedObjective<T>::calls.size();
  RecordedObjective<T>::calls.clear();
  Processor& processor = this->host.GetProcessor();
  RecordedObjective<T>::onCall = [&processor, all](std::size_t call) {
    if (call == all / 3) processor.stopRequested = 1;
  };
  climb.SolveBFGS();
  EXPECT_LT(RecordedObjective<T>::calls.size(), all);
  EXPECT_EQ(climb.GetStopReason(), StopReason::kCancelled);
  processor.stopRequested = 0;
  this->host.TakeError();
}

TYPED_TEST(ClimbProgressTest, ErrorPendingAtAProgressCheckEndsTheMethods) {
  using T = TypeParam;
  Variable window = this->MakeWindow();
  for (const auto& method : MethodsWithWindow<T>()) {
    T_Climb<T> climb = MakeClimb(problems::MoreGarbowHillstrom<T>::All()[0], T(1e-5));
    climb.SetProgressWnd(window);
    this->events.clear();
    TarnError(3, "from before");
    method.run(climb);
    EXPECT_TRUE(RecordedObjective<T>::calls.empty()) << method.name;
    EXPECT_EQ(climb.GetStopReason(), StopReason::kObjectiveError);
    EXPECT_EQ(this->events.size(), 2U);  // no calls at the end
    EXPECT_EQ(this->host.TakeError().number, 3);
  }
}

TYPED_TEST(ClimbProgressTest, SinglePassesAndCoordinateSearchDoNotReport) {
  using T = TypeParam;
  Variable window = this->MakeWindow();
  T_Climb<T> climb = MakeClimb(problems::MoreGarbowHillstrom<T>::All()[0], T(1e-4));
  climb.SetProgressWnd(window);
  climb.SolvePowell(0);
  for (const std::string& event : this->events) {
    EXPECT_TRUE(event == "FlushIdle" || event == "CheckCancel") << event;
  }
  this->events.clear();
  T_MatVectorCol<T> steps = Vector<T>({T(0.1), T(0.1)});
  climb.SolveByCoord(steps);
  EXPECT_TRUE(this->events.empty());
}

}  // namespace
