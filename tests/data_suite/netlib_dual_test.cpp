// The dual simplex on netlib: every model that solves in seconds with methods 2
// and 0; every ratio test, pricing rule and phase choice on a dozen models,
// degenerate ones among them; the cutoff on both sides of the optimum; and warm
// starts after a change of a bound, a right-hand side, or a new row, which must
// take a small share of the iterations of a cold solve.
#include "data_suite/netlib_dual_common.h"

namespace {

using kxtest::NetlibCase;

std::vector<NetlibCase> small_cases() {
  return kxtest::netlib_cases([](const NetlibCase &c) {
    return !kxtest::netlib_is_large(c.name) && c.name != "gosh" && c.name != "ceria3d";
  });
}

class NetlibDual : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibDual, MethodsTwoAndZero) {
  if (!kxtest::have_data("netlib/manifest.csv")) GTEST_SKIP() << "netlib data absent";
  kxtest::dual_solve_and_check(GetParam(), KX_METHOD_DSIMPLEX, -2, -2);
  kxtest::dual_solve_and_check(GetParam(), KX_METHOD_FREE, -2, -2);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibDual, testing::ValuesIn(small_cases()), kxtest::case_label);

class NetlibDualRules : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibDualRules, EveryRatioTestAndPricingRule) {
  if (!kxtest::have_data("netlib/manifest.csv")) GTEST_SKIP() << "netlib data absent";
  for (int dratio = 0; dratio <= 3; dratio++) kxtest::dual_solve_and_check(GetParam(), KX_METHOD_DSIMPLEX, dratio, -2);
  for (int dp = -1; dp <= 4; dp++) kxtest::dual_solve_and_check(GetParam(), KX_METHOD_DSIMPLEX, -2, dp);
  for (int phase : {0, 1, 3}) kxtest::dual_solve_and_check(GetParam(), KX_METHOD_DSIMPLEX, -2, -2, phase);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibDualRules,
                         testing::ValuesIn(kxtest::netlib_named({"afiro", "adlittle", "degen2", "degen3", "pilot4",
                                                                 "scfxm2", "greenbea", "bandm", "e226", "etamacro",
                                                                 "share1b", "stair", "scsd8"})),
                         kxtest::case_label);

class NetlibDualCutoff : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibDualCutoff, StopsOnlyBeyondTheOptimum) {
  if (!kxtest::have_data("netlib/manifest.csv")) GTEST_SKIP() << "netlib data absent";
  const NetlibCase &c = GetParam();
  for (int side = 0; side < 2; side++) {
    kxtest::EnvModel em;
    if (!kxtest::read_netlib(em, c)) return;
    const double opt = c.optimum + em.model->objConst;
    const double gap = 1e-3 * std::max(1.0, std::fabs(opt));
    KXsetModelIntParameter(em.model, KX_IPARAM_SOLVER_USECUTOFFVAL, 1);
    KXsetModelDouParameter(em.model, KX_DPARAM_SOLVER_CUTOFFVAL, side == 0 ? opt - gap : opt + gap);
    int status = 0;
    ASSERT_EQ(KXoptimize(em.model, KX_METHOD_DSIMPLEX, &status), 0);
    if (side == 0) {
      EXPECT_EQ(status, KX_STATUS_CUTOFF) << c.name;
    } else {
      ASSERT_EQ(status, KX_STATUS_BASIC_OPTIMAL) << c.name;
      kxtest::check_netlib_optimum(em.model, c, c.name + " cutoff above");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibDualCutoff,
                         testing::ValuesIn(kxtest::netlib_named({"afiro", "25fv47", "bnl1", "degen2", "ship08l"})),
                         kxtest::case_label);

// Warm starts on 25fv47: each change is applied to a solved model, then the
// answer is compared with a cold solve of the changed model.
TEST(NetlibDualWarm, SmallChangesResolveInFewIterations) {
  if (!kxtest::have_data("netlib/manifest.csv")) GTEST_SKIP() << "netlib data absent";
  const std::vector<NetlibCase> cs = kxtest::netlib_named({"25fv47"});
  const NetlibCase &c = cs[0];
  for (int kind = 0; kind < 3; kind++) {
    SCOPED_TRACE("change " + std::to_string(kind));
    kxtest::EnvModel warm, cold;
    if (!kxtest::read_netlib(warm, c) || !kxtest::read_netlib(cold, c)) return;
    int st = 0;
    ASSERT_EQ(KXoptimize(warm.model, KX_METHOD_DSIMPLEX, &st), 0);
    ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
    const double coldFirst = kxtest::iterations(warm.model);
    for (pModel md : {warm.model, cold.model}) {
      if (kind == 0) {
        int i = 10;
        double b = md->rhs[i] - 0.1 * (1 + std::fabs(md->rhs[i]));
        if (md->conType[i] == 'G') b = md->rhs[i] + 0.1 * (1 + std::fabs(md->rhs[i]));
        ASSERT_EQ(KXmodifyRHS(md, 1, &i, &b), 0);
      } else if (kind == 1) {
        // Cap a column that is positive at the optimum at half its value.
        std::vector<double> x(warm.model->nVars);
        KXgetPrimalSolution(warm.model, x.data());
        int j = 0;
        while (j + 1 < warm.model->nVars && x[j] < 1.0) j++;
        double u = x[j] / 2;
        ASSERT_EQ(KXmodifyUpperBounds(md, 1, &j, &u), 0);
      } else {
        // The objective's row made a bound: cost' x <= optimum + 1% in a new row.
        const int n = md->nVars;
        std::vector<int> idx;
        std::vector<double> val;
        for (int j = 0; j < n; j++)
          if (md->cost[j] != 0) {
            idx.push_back(j);
            val.push_back(1.0);
          }
        int beg[2] = {0, static_cast<int>(idx.size())};
        double rhs = 0;
        std::vector<double> x(n);
        KXgetPrimalSolution(warm.model, x.data());
        for (int j : idx) rhs += x[j];
        rhs *= 0.98;
        char t = 'L';
        ASSERT_EQ(KXaddConstraints(md, 1, &t, nullptr, beg, val.data(), idx.data(), &rhs), 0);
      }
    }
    int sw = 0, sc = 0;
    ASSERT_EQ(KXoptimize(warm.model, KX_METHOD_DSIMPLEX, &sw), 0);
    ASSERT_EQ(KXoptimize(cold.model, KX_METHOD_DSIMPLEX, &sc), 0);
    ASSERT_EQ(sw, sc);
    const double itWarm = kxtest::iterations(warm.model), itCold = kxtest::iterations(cold.model);
    EXPECT_LT(itWarm * 10, std::max(itCold, coldFirst)) << "warm " << itWarm << " cold " << itCold;
    if (sw == KX_STATUS_BASIC_OPTIMAL) {
      double ow = 0, oc = 0;
      KXgetObjective(warm.model, &ow);
      KXgetObjective(cold.model, &oc);
      EXPECT_NEAR(ow, oc, 1e-7 * std::max(1.0, std::fabs(oc)));
      const kxtest::LPCheck k = kxtest::check_lp_solution(warm.model);
      EXPECT_LE(k.pinf, 1e-7);
      EXPECT_LE(k.dinf, 1e-7);
    }
  }
}

}  // namespace
