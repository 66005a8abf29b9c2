// Verdicts the driver gives before any simplex iteration.
#include <gtest/gtest.h>

#include "base/kx.h"
#include "support/kx_test_util.h"

TEST(OptimizeEdge, CrossedColumnBoundsAreInfeasibleForEveryMethodAndPresolveLevel) {
  for (int method : {0, 1, 2}) {
    for (int level : {0, 126}) {
      SCOPED_TRACE(testing::Message() << "method " << method << " presolve " << level);
      kxtest::EnvModel em;
      kxtest::SmallLP lp = kxtest::tiny_lp();
      lp.l = {2.0, 0.0};
      lp.u = {1.0, 1e30};  // x in [2, 1]
      ASSERT_EQ(lp.load(em.model), 0);
      ASSERT_EQ(KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, level), 0);
      int status = 0;
      ASSERT_EQ(KXoptimize(em.model, method, &status), 0);
      EXPECT_EQ(status, KX_STATUS_INFEASIBLE);
      // The same model with the bounds in order solves: 2x + 3y at x = 3, y = 1.
      ASSERT_EQ(KXclearModel(em.model), 0);
      lp = kxtest::tiny_lp();
      ASSERT_EQ(lp.load(em.model), 0);
      ASSERT_EQ(KXoptimize(em.model, method, &status), 0);
      EXPECT_EQ(status, KX_STATUS_BASIC_OPTIMAL);
      double obj = 0;
      ASSERT_EQ(KXgetObjective(em.model, &obj), 0);
      EXPECT_NEAR(obj, 9.0, 1e-9);
    }
  }
}

TEST(OptimizeEdge, CrossedBoundsWithoutRows) {
  kxtest::EnvModel em;
  double c[2] = {1, 1}, l[2] = {0, 5}, u[2] = {1, 4};
  int beg[3] = {0, 0, 0};
  ASSERT_EQ(KXloadLPData(em.model, 0, 2, 1, 0, c, nullptr, nullptr, 0, beg, nullptr, nullptr,
                         nullptr, l, u),
            0);
  int status = 0;
  ASSERT_EQ(KXoptimize(em.model, 2, &status), 0);
  EXPECT_EQ(status, KX_STATUS_INFEASIBLE);
}
