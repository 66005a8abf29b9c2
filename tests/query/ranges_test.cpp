// Sensitivity ranges: values on a model small enough to know them, checks by
// solving again, and the sides of a maximisation.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "query/range_check.h"
#include "support/kx_test_util.h"

namespace {

TEST(Ranges, NeedAnOptimalSolve) {
  kxtest::EnvModel em;
  std::vector<double> dec(4), inc(4);
  EXPECT_EQ(KXgetConstraintRanges(em.model, dec.data(), inc.data()), KXERR_INFO_NOT_AVAILABLE);
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  EXPECT_EQ(KXgetConstraintRanges(em.model, dec.data(), inc.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetObjectiveRanges(em.model, dec.data(), inc.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetBoundRanges(em.model, dec.data(), inc.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetBoundRanges(em.model, nullptr, inc.data()), KXERR_ILLEGAL_NULL_POINTER);
}

// max 2x + 3y s.t. x + y <= 5, x + 3y <= 6, 0 <= x <= 3, y >= 0: optimum at
// x = 3 (its upper bound), y = 1, the slack of row 0 basic at 1, row 1 tight
// with dual 1, and the reduced cost of x is 2 - 1 = 1.
TEST(Ranges, SmallModelByHand) {
  kxtest::EnvModel em;
  kxtest::SmallLP lp = kxtest::tiny_lp();
  lp.b = {5.0, 6.0};
  ASSERT_EQ(lp.load(em.model), 0);
  KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  std::vector<double> dec(2), inc(2);
  ASSERT_EQ(KXgetConstraintRanges(em.model, dec.data(), inc.data()), 0);
  EXPECT_NEAR(dec[0], 1.0, 1e-9);  // the slack of 1 may go
  EXPECT_GE(inc[0], 1e29);
  EXPECT_NEAR(dec[1], 3.0, 1e-9);  // y = (b1 - 3) / 3 >= 0
  EXPECT_NEAR(inc[1], 3.0, 1e-9);  // slack0 = 5 - 3 - (b1 - 3) / 3 >= 0
  ASSERT_EQ(KXgetObjectiveRanges(em.model, dec.data(), inc.data()), 0);
  EXPECT_NEAR(dec[0], 1.0, 1e-9);  // x stays at its upper bound while c_x >= 1
  EXPECT_GE(inc[0], 1e29);
  EXPECT_NEAR(dec[1], 3.0, 1e-9);  // the dual c_y / 3 of row 1 stays >= 0
  EXPECT_NEAR(inc[1], 3.0, 1e-9);  // x's reduced cost 2 - c_y / 3 stays >= 0
  ASSERT_EQ(KXgetBoundRanges(em.model, dec.data(), inc.data()), 0);
  EXPECT_NEAR(dec[0], 3.0, 1e-9);  // down to its lower bound 0
  EXPECT_NEAR(inc[0], 1.5, 1e-9);  // slack0 = 3 - 2u/3 >= 0
  EXPECT_NEAR(dec[1], 1.0, 1e-9);  // y = 1 above its lower bound 0
  EXPECT_GE(inc[1], 1e29);
}

TEST(Ranges, RandomModelsKeepTheirBasisWithinTheRanges) {
  for (uint32_t seed : {61u, 67u}) {
    kxtest::EnvModel em;
    ASSERT_EQ(qtest::load_random_lp(em.model, 15, 25, seed), 0);
    EXPECT_GT(qtest::check_ranges(em.model, qtest::kRhs, 8), 0);
    EXPECT_GT(qtest::check_ranges(em.model, qtest::kCost, 8), 0);
    EXPECT_GT(qtest::check_ranges(em.model, qtest::kBound, 8), 0);
  }
}

TEST(Ranges, AMaximisationSwapsTheCostSidesOnly) {
  kxtest::EnvModel mn, mx;
  ASSERT_EQ(qtest::load_random_lp(mn.model, 15, 25, 71, 1), 0);
  ASSERT_EQ(qtest::load_random_lp(mx.model, 15, 25, 71, -1), 0);  // costs negated, maximised
  int st = 0;
  for (pModel m : {mn.model, mx.model}) {
    KXsetModelIntParameter(m, KX_IPARAM_LP_PRELEVEL, 0);
    ASSERT_EQ(KXoptimize(m, KX_METHOD_PSIMPLEX, &st), 0);
  }
  std::vector<double> d1(25), i1(25), d2(25), i2(25);
  ASSERT_EQ(KXgetObjectiveRanges(mn.model, d1.data(), i1.data()), 0);
  ASSERT_EQ(KXgetObjectiveRanges(mx.model, d2.data(), i2.data()), 0);
  for (int j = 0; j < 25; j++) {
    EXPECT_NEAR(d2[j], i1[j], 1e-9 * (1 + std::fabs(i1[j])));
    EXPECT_NEAR(i2[j], d1[j], 1e-9 * (1 + std::fabs(d1[j])));
  }
  ASSERT_EQ(KXgetConstraintRanges(mn.model, d1.data(), i1.data()), 0);
  ASSERT_EQ(KXgetConstraintRanges(mx.model, d2.data(), i2.data()), 0);
  for (int i = 0; i < 15; i++) {
    EXPECT_NEAR(d2[i], d1[i], 1e-9 * (1 + std::fabs(d1[i])));
    EXPECT_NEAR(i2[i], i1[i], 1e-9 * (1 + std::fabs(i1[i])));
  }
  // And the maximisation's own sides hold when solved again.
  EXPECT_GT(qtest::check_ranges(mx.model, qtest::kCost, 6), 0);
}

TEST(Ranges, AfterThePresolveSolvedTheModelTheBasisIsSolvedAgain) {
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 15, 25, 73), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_DSIMPLEX, &st), 0);  // with presolve
  ASSERT_EQ(KXfreeSolverMemory(em.model), 0);
  std::vector<double> dec(15), inc(15);
  ASSERT_EQ(KXgetConstraintRanges(em.model, dec.data(), inc.data()), 0);
  int pre = -1;
  KXgetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, &pre);
  EXPECT_GT(pre, 0);  // restored
  EXPECT_EQ(KXverifyOptimality(em.model), 0);
}

}  // namespace
