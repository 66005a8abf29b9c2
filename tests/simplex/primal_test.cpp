// Primal simplex and optimize driver on small models with known answers.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "base/optimize.h"
#include "support/kx_test_util.h"
#include "simplex/glp.h"
#include "simplex/lp_check.h"

using kxtest::EnvModel;
using kxtest::SmallLP;

namespace {

// A column-form LP built from dense rows, for short tests.
SmallLP dense_lp(int sense, const std::vector<double> &c, const std::vector<std::vector<double>> &A,
                 const std::vector<char> &types, const std::vector<double> &b,
                 const std::vector<double> &l, const std::vector<double> &u) {
  SmallLP lp;
  lp.m = static_cast<int>(A.size());
  lp.n = static_cast<int>(c.size());
  lp.sense = sense;
  lp.c = c;
  lp.b = b;
  lp.types = types;
  lp.l = l;
  lp.u = u;
  lp.beg.push_back(0);
  for (int j = 0; j < lp.n; j++) {
    for (int i = 0; i < lp.m; i++)
      if (A[i][j] != 0) {
        lp.rows.push_back(i);
        lp.coef.push_back(A[i][j]);
      }
    lp.beg.push_back(static_cast<int>(lp.rows.size()));
  }
  return lp;
}

// The LP presolve is tested in its own suite; here the simplex sees the model itself.
int solve(pModel model, int method = KX_METHOD_PSIMPLEX, int *status = nullptr) {
  model->splexPam->lpPreLevel = 0;
  int st = 0;
  const int rc = KXoptimize(model, method, &st);
  if (status) *status = st;
  return rc;
}

void expect_optimal(pModel model, double obj) {
  int st = 0;
  ASSERT_EQ(KXgetSolutionStatus(model, &st), 0);
  EXPECT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  const kxtest::LPCheck c = kxtest::check_lp_solution(model);
  EXPECT_LE(c.pinf, 1e-7);
  EXPECT_LE(c.dinf, 1e-7);
  EXPECT_LE(c.djErr, 1e-7);
  EXPECT_LE(c.slackErr, 1e-7);
  EXPECT_LE(c.objErr, 1e-9);
  EXPECT_NEAR(c.obj, obj, 1e-7 * std::max(1.0, std::fabs(obj)));
}

const double INF = KX_INFINITY;

}  // namespace

TEST(PrimalSimplex, TinyMaximisationHasKnownPointAndDuals) {
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  int st = 0;
  ASSERT_EQ(solve(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  EXPECT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  expect_optimal(em.model, 9.0);  // x = 3, y = 1
  double x[2], y[2];
  ASSERT_EQ(KXgetPrimalSolution(em.model, x), 0);
  ASSERT_EQ(KXgetDualSolution(em.model, y), 0);
  EXPECT_NEAR(x[0], 3.0, 1e-9);
  EXPECT_NEAR(x[1], 1.0, 1e-9);
  // max: the binding row x + 3y <= 6 has dual 1; x + y <= 4 is slack.
  EXPECT_NEAR(y[0], 0.0, 1e-9);
  EXPECT_NEAR(y[1], 1.0, 1e-9);
  int method = 0;
  KXgetInfo(em.model, KX_IINFO_METHOD, &method);
  EXPECT_EQ(method, 2);
}

TEST(PrimalSimplex, EveryMethodThatExistsSolvesTheSameModel) {
  for (int method : {KX_METHOD_FREE, KX_METHOD_PSIMPLEX, KX_METHOD_DSIMPLEX}) {
    EnvModel em;
    ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
    ASSERT_EQ(solve(em.model, method), 0) << method;
    expect_optimal(em.model, 9.0);
  }
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  int st = 0;
  EXPECT_EQ(KXoptimize(em.model, KX_METHOD_BARRIER, &st), KXERR_BAD_SOLVER_TYPE);
  EXPECT_EQ(KXoptimize(em.model, 5, &st), KXERR_BAD_SOLVER_TYPE);
}

TEST(PrimalSimplex, UnboundedAndInfeasibleSmallModels) {
  {  // min -x - y, x - y <= 1, x, y >= 0: unbounded along (1,1)
    EnvModel em;
    ASSERT_EQ(dense_lp(1, {-1, -1}, {{1, -1}}, {'L'}, {1}, {0, 0}, {INF, INF}).load(em.model), 0);
    int st = 0;
    EXPECT_EQ(solve(em.model, KX_METHOD_PSIMPLEX, &st), 0);
    EXPECT_EQ(st, KX_STATUS_UNBOUNDED);
  }
  {  // x + y >= 3, x + y <= 2
    EnvModel em;
    ASSERT_EQ(dense_lp(1, {1, 1}, {{1, 1}, {1, 1}}, {'G', 'L'}, {3, 2}, {0, 0}, {INF, INF}).load(em.model), 0);
    int st = 0;
    EXPECT_EQ(solve(em.model, KX_METHOD_PSIMPLEX, &st), 0);
    EXPECT_EQ(st, KX_STATUS_INFEASIBLE);
  }
  {  // bounds make the equation impossible: x + y = 5 with x, y in [0, 2]
    EnvModel em;
    ASSERT_EQ(dense_lp(1, {1, 0}, {{1, 1}}, {'E'}, {5}, {0, 0}, {2, 2}).load(em.model), 0);
    int st = 0;
    EXPECT_EQ(solve(em.model, KX_METHOD_PSIMPLEX, &st), 0);
    EXPECT_EQ(st, KX_STATUS_INFEASIBLE);
  }
}

TEST(PrimalSimplex, FreeFixedAndRangedVariablesAndRows) {
  // min x1 - x2 + 0 x3 with x1 free, x2 fixed at 2, x3 in [-1, 1];
  // row 0: x1 + x3 in [1, 4] (ranged L), row 1: x1 - x3 = 0 (E), row 2: free row.
  EnvModel em;
  SmallLP lp = dense_lp(1, {1, -1, 0}, {{1, 0, 1}, {1, 0, -1}, {1, 1, 1}}, {'L', 'E', 'N'},
                        {4, 0, 0}, {-INF, 2, -1}, {INF, 2, 1});
  ASSERT_EQ(lp.load(em.model), 0);
  std::vector<double> ranges = {3, INF, INF};
  ASSERT_EQ(kxi_load_ranges(em.model, ranges.data()), 0);
  ASSERT_EQ(solve(em.model), 0);
  // x1 = x3, 2 x1 >= 1: x1 = 0.5, objective 0.5 - 2.
  expect_optimal(em.model, -1.5);
  double x[3];
  KXgetPrimalSolution(em.model, x);
  EXPECT_NEAR(x[0], 0.5, 1e-9);
  EXPECT_NEAR(x[1], 2.0, 1e-12);
  EXPECT_NEAR(x[2], 0.5, 1e-9);
}

TEST(PrimalSimplex, EmptyRowsAndColumnsAndObjectiveConstant) {
  // Column 1 appears in no row (cost -1, upper 3: goes to 3); row 1 is empty.
  EnvModel em;
  SmallLP lp = dense_lp(1, {1, -1, 2}, {{1, 0, 1}, {0, 0, 0}}, {'G', 'L'}, {2, 5}, {0, 0, 0}, {INF, 3, INF});
  lp.objConst = 10;
  ASSERT_EQ(lp.load(em.model), 0);
  ASSERT_EQ(solve(em.model), 0);
  expect_optimal(em.model, 10 + 2 - 3);
}

TEST(PrimalSimplex, RepeatedSolveTakesNoIteration) {
  EnvModel em;
  ASSERT_EQ(dense_lp(1, {-3, -2, -4}, {{1, 1, 2}, {2, 0, 3}, {2, 1, 3}}, {'L', 'L', 'L'},
                     {4, 5, 7}, {0, 0, 0}, {INF, INF, INF})
                .load(em.model),
            0);
  ASSERT_EQ(solve(em.model), 0);
  int it1 = 0, it2 = -1;
  KXgetInfo(em.model, KX_IINFO_SIM_ITER, &it1);
  EXPECT_GT(it1, 0);
  double obj1 = 0, obj2 = 0;
  KXgetObjective(em.model, &obj1);
  ASSERT_EQ(solve(em.model), 0);
  KXgetInfo(em.model, KX_IINFO_SIM_ITER, &it2);
  KXgetObjective(em.model, &obj2);
  EXPECT_EQ(it2, 0);
  EXPECT_DOUBLE_EQ(obj1, obj2);
  // A cold start after freeing the state begins from the stored basis: no pivots either.
  ASSERT_EQ(KXfreeSolverMemory(em.model), 0);
  ASSERT_EQ(solve(em.model), 0);
  KXgetInfo(em.model, KX_IINFO_SIM_ITER, &it2);
  EXPECT_EQ(it2, 0);
}

namespace {

// A model large enough to need many iterations: a transportation problem.
SmallLP transport(int s, int d) {
  SmallLP lp;
  lp.m = s + d;
  lp.n = s * d;
  lp.sense = 1;
  lp.beg.push_back(0);
  for (int i = 0; i < s; i++)
    for (int j = 0; j < d; j++) {
      lp.c.push_back(1 + ((i * 7 + j * 13) % 17));
      lp.rows.push_back(i);
      lp.coef.push_back(1);
      lp.rows.push_back(s + j);
      lp.coef.push_back(1);
      lp.beg.push_back(static_cast<int>(lp.rows.size()));
      lp.l.push_back(0);
      lp.u.push_back(INF);
    }
  for (int i = 0; i < s; i++) {
    lp.b.push_back(10 + i % 5);
    lp.types.push_back('L');
  }
  for (int j = 0; j < d; j++) {
    lp.b.push_back(5 + j % 3);
    lp.types.push_back('G');
  }
  return lp;
}

struct StopAfter {
  int calls = 0;
  int stopAt = 0;
};

int stop_cb(pModel, int, void *data) {
  StopAfter *s = static_cast<StopAfter *>(data);
  return ++s->calls >= s->stopAt ? 1 : 0;
}

}  // namespace

TEST(PrimalSimplex, LimitsAndCallbackStopLeaveAUsableState) {
  EnvModel ref;
  ASSERT_EQ(transport(20, 30).load(ref.model), 0);
  ASSERT_EQ(solve(ref.model), 0);
  double best = 0;
  KXgetObjective(ref.model, &best);

  {  // Iteration limit, then a higher limit continues to the optimum.
    EnvModel em;
    ASSERT_EQ(transport(20, 30).load(em.model), 0);
    em.model->splexPam->lpItrLmt = 5;
    EXPECT_EQ(solve(em.model), KXERR_ITER_LIMIT);
    int it = 0;
    KXgetInfo(em.model, KX_IINFO_SIM_ITER, &it);
    EXPECT_EQ(it, 5);
    EXPECT_NE(em.model->glp, nullptr);
    em.model->splexPam->lpItrLmt = -1;
    ASSERT_EQ(solve(em.model), 0);
    expect_optimal(em.model, best);
  }
  {  // Time limit of zero seconds.
    EnvModel em;
    ASSERT_EQ(transport(20, 30).load(em.model), 0);
    em.model->solverPam->timeLimit = 0.0;
    EXPECT_EQ(solve(em.model), KXERR_TIME_LIMIT);
    em.model->solverPam->timeLimit = -1.0;
    ASSERT_EQ(solve(em.model), 0);
    expect_optimal(em.model, best);
  }
  {  // A callback that stops at its first call.
    EnvModel em;
    ASSERT_EQ(transport(20, 30).load(em.model), 0);
    StopAfter stop;
    stop.stopAt = 1;
    em.model->splexPam->callbackFreq = 0.0;
    ASSERT_EQ(KXsetCallback(em.model, stop_cb, &stop), 0);
    EXPECT_EQ(solve(em.model), KXERR_USER_INTERRUPT);
    EXPECT_GE(stop.calls, 1);
    int err = 0;
    KXgetInfo(em.model, KX_IINFO_ERR_OPTIM, &err);
    EXPECT_EQ(err, KXERR_USER_INTERRUPT);
    ASSERT_EQ(KXsetCallback(em.model, nullptr, nullptr), 0);
    ASSERT_EQ(solve(em.model), 0);
    expect_optimal(em.model, best);
  }
}

TEST(PrimalSimplex, ScalingModesReachTheSameOptimum) {
  double ref = 0;
  for (int mode = 0; mode <= 3; mode++) {
    EnvModel em;
    ASSERT_EQ(transport(12, 17).load(em.model), 0);
    em.model->splexPam->lpScale = mode;
    ASSERT_EQ(solve(em.model), 0);
    double obj = 0;
    KXgetObjective(em.model, &obj);
    if (mode == 0) ref = obj;
    expect_optimal(em.model, ref);
  }
}

TEST(TrivialOptimizer, ModelsWithoutRowsOrColumns) {
  {  // No rows: each column goes to the bound its cost prefers.
    EnvModel em;
    SmallLP lp;
    lp.n = 3;
    lp.sense = 1;
    lp.c = {1, -2, 0};
    lp.l = {-1, 0, 2};
    lp.u = {4, 5, 3};
    lp.beg = {0, 0, 0, 0};
    lp.objConst = 1;
    ASSERT_EQ(lp.load(em.model), 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, 0, &st), 0);
    EXPECT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
    double x[3], obj = 0;
    KXgetPrimalSolution(em.model, x);
    KXgetObjective(em.model, &obj);
    EXPECT_EQ(x[0], -1);
    EXPECT_EQ(x[1], 5);
    EXPECT_EQ(x[2], 2);  // zero cost: the bound of smaller magnitude
    EXPECT_DOUBLE_EQ(obj, 1 - 1 - 10);
    int cs[3];
    KXgetBasis(em.model, cs, nullptr);
    EXPECT_EQ(cs[0], -1);
    EXPECT_EQ(cs[1], -2);
  }
  {  // No rows, a cost pushing to an infinite bound.
    EnvModel em;
    SmallLP lp;
    lp.n = 1;
    lp.sense = -1;
    lp.c = {1};
    lp.beg = {0, 0};
    ASSERT_EQ(lp.load(em.model), 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, 0, &st), 0);
    EXPECT_EQ(st, KX_STATUS_UNBOUNDED);
  }
  {  // No columns: a row 0 >= 1 is infeasible, 0 <= 1 is fine.
    EnvModel em;
    SmallLP lp;
    lp.m = 2;
    lp.n = 0;
    lp.b = {1, 1};
    lp.types = {'L', 'G'};
    lp.beg = {0};
    ASSERT_EQ(lp.load(em.model), 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, 0, &st), 0);
    EXPECT_EQ(st, KX_STATUS_INFEASIBLE);
    double pinf = 0;
    KXgetInfo(em.model, KX_DINFO_PINFEAS, &pinf);
    EXPECT_EQ(pinf, 1);
  }
}

TEST(OptimizeDriver, ArgumentsAndUnloadedModel) {
  int st = 0;
  EXPECT_EQ(KXoptimize(nullptr, 0, &st), KXERR_ILLEGAL_NULL_POINTER);
  EnvModel em;
  EXPECT_EQ(KXoptimize(em.model, 0, &st), KXERR_NO_MODEL_LOADED);
  int err = 0;
  KXgetInfo(em.model, KX_IINFO_ERR_OPTIM, &err);
  EXPECT_EQ(err, KXERR_NO_MODEL_LOADED);
  EXPECT_EQ(KXsetCallback(nullptr, nullptr, nullptr), KXERR_ILLEGAL_NULL_POINTER);
}

namespace {
struct LogSink {
  std::string text;
};
void sink(pModel, char *t, void *d) { static_cast<LogSink *>(d)->text += t; }
}  // namespace

TEST(OptimizeDriver, ReportGoesThroughTheLogFunctionOnly) {
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  LogSink log;
  KXsetModelLogfunc(em.model, sink, &log);
  ASSERT_EQ(solve(em.model), 0);
  EXPECT_TRUE(log.text.empty());  // print level 0: silent
  em.model->splexPam->lpPrintLevel = 1;
  ASSERT_EQ(KXfreeSolverMemory(em.model), 0);
  ASSERT_EQ(solve(em.model), 0);
  EXPECT_NE(log.text.find("Primal Objective"), std::string::npos);
  EXPECT_NE(log.text.find("Basic solution is optimal."), std::string::npos);
}

TEST(OptimizeDriver, StrategyTableAndEventCheck) {
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  ASSERT_EQ(solve(em.model), 0);
  Model *m = em.model;
  // No iteration made and a numerical failure: crash a new basis with the dual.
  EXPECT_EQ(do_the_event_check(m, KXERR_NUMERIC_INSTABILITY, 0), 6);
  EXPECT_EQ(do_the_event_check(m, KXERR_NUMERIC_INSTABILITY, 3), 1);
  m->splexPam->lpScale = 0;
  EXPECT_EQ(do_the_event_check(m, KXERR_NUMERIC_INSTABILITY, 3), 2);
  m->splexPam->lpScale = 1;
  EXPECT_EQ(do_the_event_check(m, 0, 3), 0);
  m->sol->pinfeas = 1e-3;
  EXPECT_EQ(do_the_event_check(m, 0, 3), 3);
  m->sol->pinfeas = 0;
  m->sol->dinfeas = 1e-3;
  EXPECT_EQ(do_the_event_check(m, 0, 3), 4);
  int level = 0, method = 0;
  do_the_strategy(m, 3, &level, &method);
  EXPECT_EQ(m->splexPam->lpScale, 0);
  EXPECT_EQ(method, 1);
  level = 1;
  do_the_strategy(m, 4, &level, &method);
  EXPECT_EQ(method, 2);
  EXPECT_EQ(m->splexPam->lpScale, 1);
  level = 0;
  do_the_strategy(m, 2, &level, &method);
  EXPECT_EQ(level, 4);
  EXPECT_EQ(m->splexPam->restart, 1);
  EXPECT_EQ(m->glp, nullptr);  // every action frees the solver first
}

TEST(OptimalityCheck, CatchesWrongDualsAndPoints) {
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  ASSERT_EQ(solve(em.model), 0);
  Sol *s = em.model->sol;
  s->y[1] = -1.0;  // wrong sign for the binding row of a maximisation
  kxtest::LPCheck c = kxtest::check_lp_solution(em.model);
  EXPECT_GT(c.dinf, 0.5);
  EXPECT_GT(c.djErr, 0.5);  // dj no longer c - A'y
  s->y[1] = 1.0;
  s->x[1] = 2.0;  // row x + 3y <= 6 now violated by 3
  c = kxtest::check_lp_solution(em.model);
  EXPECT_NEAR(c.pinf, 3.0, 1e-12);
  double pinf = 0, dinf = 0;
  spx_measure_solution(em.model, &pinf, &dinf);
  EXPECT_NEAR(pinf, 3.0, 1e-12);
}

// A row's logical that the basis holds at its bound counts as at the bound for
// the dual sign test, even when b - a x recomputed from the point misses the
// bound by more than rounding; without a basis the values decide.
TEST(OptimalityCheck, NonbasicLogicalFollowsItsStatus) {
  EnvModel em;
  // max x + 2y, x + y <= 4, y <= 3: both rows binding, duals 1 and 1.
  SmallLP lp = dense_lp(-1, {1.0, 2.0}, {{1.0, 1.0}, {0.0, 1.0}}, {'L', 'L'}, {4.0, 3.0},
                        {0.0, 0.0}, {1e30, 1e30});
  ASSERT_EQ(lp.load(em.model), 0);
  ASSERT_EQ(solve(em.model), 0);
  Sol *s = em.model->sol;
  ASSERT_GE(s->colstat[0], 0);
  ASSERT_LT(s->rowstat[0], 0);
  ASSERT_NEAR(s->y[0], 1.0, 1e-12);
  s->x[0] -= 5e-9;  // row 0's logical now measures 5e-9 above its bound 0
  double pinf = 1, dinf = 1;
  spx_measure_solution(em.model, &pinf, &dinf);
  EXPECT_LE(pinf, 1e-12);
  EXPECT_LE(dinf, 1e-12);
  s->basic_status = KX_STATUS_UNLOADED;
  spx_measure_solution(em.model, &pinf, &dinf);
  EXPECT_NEAR(dinf, 0.5, 1e-9);  // |y| over the largest cost
}
