// The explicit dual: its shape, its optimum, and solving a model through it.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/kx_test_util.h"
#include "query/query_util.h"

namespace {

double optimum(pModel model, int method = KX_METHOD_DSIMPLEX) {
  int st = 0;
  EXPECT_EQ(KXoptimize(model, method, &st), 0);
  EXPECT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  double obj = 0;
  KXgetObjective(model, &obj);
  return obj;
}

// min x0 - 2 x1 + x2 + 3  s.t.  x0 + x1 + x2 <= 6,  x0 - x1 >= -2 (range 5),
// x1 + x2 = 3,  free row x0 + x2;  0 <= x0 <= 4,  x1 free,  1 <= x2 <= 2.
struct Mixed {
  kxtest::EnvModel em;
  Mixed() {
    const double c[] = {1, -2, 1}, b[] = {6, -2, 3, 0}, l[] = {0, -KX_INFINITY, 1}, u[] = {4, KX_INFINITY, 2};
    const char t[] = {'L', 'G', 'E', 'N'};
    const int beg[] = {0, 3, 6, 9}, row[] = {0, 1, 3, 0, 1, 2, 0, 2, 3};
    const double a[] = {1, 1, 1, 1, -1, 1, 1, 1, 1};
    KXloadLPData(em.model, 4, 3, 1, 3.0, c, b, t, 9, beg, nullptr, a, row, l, u);
    const double r[] = {KX_INFINITY, 5.0, KX_INFINITY, KX_INFINITY};
    KXloadConstraintRanges(em.model, r);
  }
};

TEST(DualModel, ShapeFollowsRowsAndBounds) {
  Mixed p;
  kxtest::EnvModel d;
  ASSERT_EQ(KXgetDualModel(p.em.model, d.model), 0);
  const qtest::Data dd = qtest::read_data(d.model);
  EXPECT_EQ(dd.m, 3);  // one row per primal column
  EXPECT_EQ(dd.sense, -1);
  EXPECT_EQ(dd.c0, 3.0);
  // Rows: x0 has lower 0 -> "L"; x1 free -> "E"; x2 has no zero bound -> "E".
  EXPECT_EQ(dd.t[0], 'L');
  EXPECT_EQ(dd.t[1], 'E');
  EXPECT_EQ(dd.t[2], 'E');
  EXPECT_EQ(dd.b[0], 1.0);
  EXPECT_EQ(dd.b[1], -2.0);
  // Columns: row 0 (one side), row 1 (ranged: two), row 2 (equation: one free),
  // the free row none; bounds: BU of x0 (4), BL and BU of x2.
  EXPECT_EQ(dd.n, 7);
  char name[64];
  ASSERT_EQ(KXgetVariableNamej(d.model, 1, name), 0);
  EXPECT_EQ(std::string(name).rfind("Y_", 0), 0u);
  ASSERT_EQ(KXgetVariableNamej(d.model, 2, name), 0);
  EXPECT_EQ(std::string(name).rfind("YL_", 0), 0u);
  ASSERT_EQ(KXgetVariableNamej(d.model, 4, name), 0);
  EXPECT_EQ(std::string(name).rfind("BU_", 0), 0u);
  // Sign ranges: the upper side of an L row <= 0, a lower side >= 0, an equation free.
  EXPECT_EQ(dd.u[0], 0.0);
  EXPECT_LE(dd.l[0], -1e30);
  EXPECT_EQ(dd.l[2], 0.0);
  EXPECT_LE(dd.l[3], -1e30);
  EXPECT_GE(dd.u[3], 1e30);
  // The same optimum, the other sense.
  KXsetModelIntParameter(p.em.model, KX_IPARAM_LP_PRELEVEL, 0);
  const double primal = optimum(p.em.model);
  const double dual = optimum(d.model, KX_METHOD_PSIMPLEX);
  EXPECT_NEAR(primal, dual, 1e-9 * (1 + std::fabs(primal)));
}

TEST(DualModel, RandomModelsMinAndMaxShareTheirOptimumWithTheDual) {
  for (int sense : {1, -1}) {
    kxtest::EnvModel p, d;
    ASSERT_EQ(qtest::load_random_lp(p.model, 20, 30, 83, sense), 0);
    ASSERT_EQ(KXgetDualModel(p.model, d.model), 0);
    int ds = 0;
    KXgetInfo(d.model, KX_IINFO_OBJSENSE, &ds);
    EXPECT_EQ(ds, -sense);
    const double a = optimum(p.model), b = optimum(d.model);
    EXPECT_NEAR(a, b, 1e-8 * (1 + std::fabs(a))) << "sense " << sense;
  }
}

TEST(DualModel, RefusesWhatItCannotBuild) {
  kxtest::EnvModel p, d, e;
  EXPECT_EQ(KXgetDualModel(p.model, d.model), KXERR_NO_MODEL_LOADED);
  ASSERT_EQ(kxtest::tiny_lp().load(p.model), 0);
  ASSERT_EQ(kxtest::tiny_lp().load(e.model), 0);
  EXPECT_EQ(KXgetDualModel(p.model, e.model), KXERR_ALREADY_LOADED);
  EXPECT_EQ(KXgetDualModel(p.model, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  const int r[] = {-1}, c1[] = {0}, c2[] = {0};
  const double v[] = {1.0};
  ASSERT_EQ(KXloadQCData(p.model, 1, r, c1, c2, v), 0);
  EXPECT_EQ(KXgetDualModel(p.model, d.model), KXERR_NOT_SUPPORTED);
}

void check_through_dual(pModel model, int method, double expected) {
  int st = 0;
  ASSERT_EQ(KXIoptimizeDual(model, method, &st), 0);
  EXPECT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  double obj = 0;
  KXgetObjective(model, &obj);
  EXPECT_NEAR(obj, expected, 1e-8 * (1 + std::fabs(expected)));
  EXPECT_EQ(KXverifyOptimality(model), 0);  // a primal basis, optimal
  int bs = 0;
  KXgetInfo(model, KX_IINFO_BASIC_STATUS, &bs);
  EXPECT_EQ(bs, KX_STATUS_BASIC_OPTIMAL);
  int prob = -1;
  KXgetModelIntParameter(model, KX_IPARAM_PROB_TO_SOLVE, &prob);
  EXPECT_EQ(prob, 0);  // restored
}

TEST(DualModel, SolvingThroughTheDualReachesThePrimalOptimum) {
  for (int sense : {1, -1})
    for (int method : {KX_METHOD_PSIMPLEX, KX_METHOD_DSIMPLEX}) {
      kxtest::EnvModel ref, em;
      ASSERT_EQ(qtest::load_random_lp(ref.model, 20, 30, 89, sense), 0);
      ASSERT_EQ(qtest::load_random_lp(em.model, 20, 30, 89, sense), 0);
      check_through_dual(em.model, method, optimum(ref.model));
      // Again from the basis it now holds.
      check_through_dual(em.model, method, optimum(ref.model));
    }
  Mixed p, q;
  KXsetModelIntParameter(q.em.model, KX_IPARAM_LP_PRELEVEL, 0);
  check_through_dual(p.em.model, KX_METHOD_FREE, optimum(q.em.model));
}

TEST(DualModel, TheParameterTakesTheSamePath) {
  kxtest::EnvModel ref, em;
  ASSERT_EQ(qtest::load_random_lp(ref.model, 20, 30, 97), 0);
  ASSERT_EQ(qtest::load_random_lp(em.model, 20, 30, 97), 0);
  ASSERT_EQ(KXsetModelIntParameter(em.model, KX_IPARAM_PROB_TO_SOLVE, 2), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  double obj = 0;
  KXgetObjective(em.model, &obj);
  EXPECT_NEAR(obj, optimum(ref.model), 1e-8 * (1 + std::fabs(obj)));
  EXPECT_EQ(KXverifyOptimality(em.model), 0);
  int prob = 0;
  KXgetModelIntParameter(em.model, KX_IPARAM_PROB_TO_SOLVE, &prob);
  EXPECT_EQ(prob, 2);
  // The models made on the way are gone.
  int count = 0;
  KXgetEnvModelCount(em.env, &count);
  EXPECT_EQ(count, 1);
}

TEST(DualModel, InfeasibleAndUnloadedModels) {
  kxtest::EnvModel em;
  int st = 0;
  EXPECT_EQ(KXIoptimizeDual(em.model, 0, &st), KXERR_NO_MODEL_LOADED);
  EXPECT_EQ(KXIoptimizeDual(nullptr, 0, &st), KXERR_ILLEGAL_NULL_POINTER);
  const double c[] = {1, 1}, b[] = {5}, u[] = {1, 2};
  const char t[] = {'G'};
  const int beg[] = {0, 1, 2}, row[] = {0, 0};
  const double a[] = {1, 1};
  ASSERT_EQ(KXloadLPData(em.model, 1, 2, 1, 0, c, b, t, 2, beg, nullptr, a, row, nullptr, u), 0);
  EXPECT_EQ(KXIoptimizeDual(em.model, KX_METHOD_DSIMPLEX, &st), 0);
  EXPECT_EQ(st, KX_STATUS_INFEASIBLE);
}

}  // namespace
