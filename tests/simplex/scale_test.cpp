// The simplex's copy of the model: scaling modes, objective scaling, the
// bad-scale mask, logical bounds of rows, and the starting basis.
#include <gtest/gtest.h>

#include <cmath>

#include "support/kx_test_util.h"
#include "simplex/glp.h"

namespace {

const double INF = KX_INFINITY;

// Rows of widely different magnitudes.
kxtest::SmallLP badly_scaled(double big) {
  kxtest::SmallLP lp;
  lp.m = 3;
  lp.n = 3;
  lp.c = {1, 2e3, 3e-2};
  lp.b = {1, 2e4, 3};
  lp.types = {'G', 'L', 'E'};
  lp.beg = {0, 2, 4, 6};
  lp.rows = {0, 1, 1, 2, 0, 2};
  lp.coef = {1, big, 3e3, 1e-3, 2, 5};
  lp.l = {0, 0, 0};
  lp.u = {10, INF, 1e3};
  return lp;
}

bool power_of_two(double v) {
  int e = 0;
  return std::frexp(v, &e) == 0.5;
}

struct State {
  kxtest::EnvModel em;
  GLP *g = nullptr;
  ~State() { freeglp(&g); }
};

}  // namespace

TEST(Scaling, HybridScalerGivesPowersOfTwoAndEquilibratedColumns) {
  State s;
  ASSERT_EQ(badly_scaled(1e6).load(s.em.model), 0);
  ASSERT_EQ(lpini(s.em.model, &s.g, 1), 0);
  GLP *g = s.g;
  for (int i = 0; i < g->m; i++) EXPECT_TRUE(power_of_two(g->rscale[i])) << g->rscale[i];
  for (int j = 0; j < g->n; j++) EXPECT_TRUE(power_of_two(g->cscale[j])) << g->cscale[j];
  double amin, amax;
  coemax(g, &amin, &amax);
  EXPECT_LE(amax, 2.0);  // equilibrated to 1, rounded to a power of two
  EXPECT_LT(amax / amin, 1e6);
  // Scaled data are the original ones under the factors.
  const Model *m = s.em.model;
  for (int j = 0; j < g->n; j++)
    for (int k = g->colBeg[j]; k < g->colBeg[j] + g->colLen[j]; k++) {
      const int i = g->rowInd[k];
      double orig = 0;
      for (int e = m->Abeg[j]; e < m->Abeg[j] + m->Alen[j]; e++)
        if (m->Arow[e] == i) orig = m->Acoef[e];
      EXPECT_NEAR(g->colVal[k], orig * g->rscale[i] * g->cscale[j], 1e-12 * std::fabs(g->colVal[k]));
    }
  EXPECT_DOUBLE_EQ(g->cub[0], 10.0 / g->cscale[0]);
  EXPECT_DOUBLE_EQ(g->rhs1[1], 2e4 * g->rscale[1]);
}

TEST(Scaling, ObjectiveScalingAndModeZero) {
  {
    State s;
    ASSERT_EQ(badly_scaled(1.0).load(s.em.model), 0);
    s.em.model->splexPam->lpScale = 0;
    ASSERT_EQ(lpini(s.em.model, &s.g, 1), 0);
    for (int j = 0; j < s.g->n; j++) EXPECT_EQ(s.g->cscale[j], 1.0);
    // The objective is scaled even without scaling of A: largest cost 1.
    double cmax = 0;
    for (int j = 0; j < s.g->n; j++) cmax = std::max(cmax, std::fabs(s.g->objv[j]));
    EXPECT_NEAR(cmax, 1.0, 1e-15);
    EXPECT_NEAR(s.g->objscale, 1.0 / 2e3, 1e-18);
  }
  {  // All costs zero: the factor stays 1.
    State s;
    kxtest::SmallLP lp = badly_scaled(1.0);
    lp.c = {0, 0, 0};
    ASSERT_EQ(lp.load(s.em.model), 0);
    ASSERT_EQ(lpini(s.em.model, &s.g, 1), 0);
    EXPECT_EQ(s.g->objscale, 1.0);
  }
}

TEST(Scaling, BadScaleMaskMarksTheMatrix) {
  {
    State s;
    ASSERT_EQ(badly_scaled(1e12).load(s.em.model), 0);
    ASSERT_EQ(lpini(s.em.model, &s.g, 1), 0);
    EXPECT_TRUE(s.g->badScaleMask & 1);
    EXPECT_TRUE(s.em.model->stats.badScaleMask & 1);
  }
  {
    State s;
    ASSERT_EQ(badly_scaled(10).load(s.em.model), 0);
    ASSERT_EQ(lpini(s.em.model, &s.g, 1), 0);
    EXPECT_FALSE(s.g->badScaleMask & 1);
  }
  EXPECT_EQ(spx_bad_scale_mask(1, 1e10, 1, 1, 1, 1, 1, 1, 1, 1), 1);
  EXPECT_EQ(spx_bad_scale_mask(1, 1, 1e-7, 1e6, 1, 1e13, 1, 1, 1, 1), 2 | 4);
  EXPECT_EQ(spx_bad_scale_mask(1, 1, 1, 1, 1, 1, 1, 2e12, 1e-3, 1e10), 8 | 16);
}

TEST(Scaling, BadlyScaledModelStillSolvesInEveryMode) {
  double ref = 0;
  for (int mode = 0; mode <= 3; mode++) {
    kxtest::EnvModel em;
    ASSERT_EQ(badly_scaled(1e6).load(em.model), 0);
    em.model->splexPam->lpScale = mode;
    em.model->splexPam->lpPreLevel = 0;
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
    ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL) << mode;
    double obj = 0;
    KXgetObjective(em.model, &obj);
    if (mode == 0) ref = obj;
    EXPECT_NEAR(obj, ref, 1e-7 * std::max(1.0, std::fabs(ref))) << mode;
  }
}

TEST(SimplexCopy, LogicalBoundsFollowRowTypesAndRanges) {
  kxtest::EnvModel em;
  kxtest::SmallLP lp;
  lp.m = 5;
  lp.n = 1;
  lp.c = {1};
  lp.b = {4, 4, 4, 4, 4};
  lp.types = {'L', 'G', 'E', 'E', 'N'};
  lp.beg = {0, 5};
  lp.rows = {0, 1, 2, 3, 4};
  lp.coef = {1, 1, 1, 1, 1};
  ASSERT_EQ(lp.load(em.model), 0);
  double r[5] = {3, 2, 1, -1, INF};
  ASSERT_EQ(kxi_load_ranges(em.model, r), 0);
  double lo, up;
  spx_row_bounds(em.model, 0, &lo, &up);  // 1 <= ax <= 4: s in [0, 3]
  EXPECT_EQ(lo, 0);
  EXPECT_EQ(up, 3);
  spx_row_bounds(em.model, 1, &lo, &up);  // 4 <= ax <= 6: s in [-2, 0]
  EXPECT_EQ(lo, -2);
  EXPECT_EQ(up, 0);
  spx_row_bounds(em.model, 2, &lo, &up);  // 4 <= ax <= 5: s in [-1, 0]
  EXPECT_EQ(lo, -1);
  EXPECT_EQ(up, 0);
  spx_row_bounds(em.model, 3, &lo, &up);  // 3 <= ax <= 4: s in [0, 1]
  EXPECT_EQ(lo, 0);
  EXPECT_EQ(up, 1);
  spx_row_bounds(em.model, 4, &lo, &up);
  EXPECT_LE(lo, -INF);
  EXPECT_GE(up, INF);
}

TEST(SimplexCopy, SlackBasisAndBasisRepair) {
  State s;
  ASSERT_EQ(badly_scaled(1.0).load(s.em.model), 0);
  ASSERT_EQ(lpini(s.em.model, &s.g, 1), 0);
  GLP *g = s.g;
  EXPECT_EQ(checkbas(g, "test"), 0);
  for (int i = 0; i < g->m; i++) EXPECT_EQ(g->rbas[i], g->n + i);
  EXPECT_EQ(g->cbas[0], -1);  // bound nearer zero
  EXPECT_EQ(g->cbas[1], -1);
  // Basis {column 0, s0, s1}: nothing covers row 2, so it is singular; the
  // repair must bring in the logical of row 2.
  g->cbas[g->n + 2] = -1;
  g->cbas[0] = 2;
  g->rbas[2] = 0;
  ASSERT_EQ(spx_factor(g), 0);
  EXPECT_EQ(checkbas(g, "test"), 0);
  // Each position holds a distinct variable after the repair.
  std::vector<int> seen(g->nm, 0);
  for (int p = 0; p < g->m; p++) EXPECT_EQ(seen[g->rbas[p]]++, 0);
  EXPECT_GE(g->cbas[g->n + 2], 0);
  for (int j = 0; j < g->nm; j++)
    if (g->cbas[j] >= 0) {
      EXPECT_EQ(g->rbas[g->cbas[j]], j);
    }
}
