// Queries on netlib models: FTRAN and BTRAN against the basis matrix, ranges
// checked by solving again, the explicit dual and the solve through it, and the
// Farkas multipliers of infeasible models.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "query/range_check.h"
#include "simplex/netlib_support.h"
#include "support/kx_test_util.h"

namespace {

using kxtest::NetlibCase;

std::string path_of(const std::string &set, const std::string &name) {
  return kxtest::data_dir() + "/netlib/" + set + "/" + name + ".mps.gz";
}

// Read a feasible netlib model, or skip the test with the reason.
#define READ_OR_SKIP(em, set, name)                                                          \
  do {                                                                                       \
    if (!kxtest::have_data("netlib/" set "/" + std::string(name) + ".mps.gz"))               \
      GTEST_SKIP() << "netlib model " << name << " absent under " << kxtest::data_dir();     \
    ASSERT_EQ(KXreadMPSFile((em).model, path_of(set, name).c_str(), KX_MPS_FREE), 0) << name; \
  } while (0)

double manifest_optimum(const std::string &name) {
  for (const NetlibCase &c : kxtest::netlib_manifest())
    if (c.name == name && c.set == "feasible") return c.optimum;
  return NAN;
}

double max_abs(const std::vector<double> &v) {
  double m = 0;
  for (double x : v) m = std::max(m, std::fabs(x));
  return m;
}

class NetlibQuery : public testing::TestWithParam<std::string> {};

TEST_P(NetlibQuery, FtranSolvesWithTheBasisAndBtranIsItsTranspose) {
  kxtest::EnvModel em;
  READ_OR_SKIP(em, "feasible", GetParam());
  std::vector<double> probe(1), out(1);
  EXPECT_EQ(KXdoDenseFTRAN(em.model, probe.data(), out.data()), KXERR_INFO_NOT_AVAILABLE);
  KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_DSIMPLEX, &st), 0);
  ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  const qtest::Data d = qtest::read_data(em.model);
  const qtest::Basis b = qtest::basis_of(em.model, d);
  std::vector<double> a(d.m), x(d.m), y(d.m), e(d.m, 0.0);
  for (int j = 0; j < d.n; j++) {
    std::fill(a.begin(), a.end(), 0.0);
    for (int k = d.beg[j]; k < d.beg[j] + d.len[j]; k++) a[d.row[k]] += d.a[k];
    ASSERT_EQ(KXdoDenseFTRAN(em.model, a.data(), x.data()), 0);
    std::vector<double> r = qtest::basis_times(d, b, x);
    for (int i = 0; i < d.m; i++) r[i] -= a[i];
    EXPECT_LT(max_abs(r), 1e-9 * (1 + max_abs(a))) << "column " << j;
    // BTRAN of the basis position of x's largest entry: e_p' B^-1 a = x_p.
    int p = 0;
    for (int k = 0; k < d.m; k++)
      if (std::fabs(x[k]) > std::fabs(x[p])) p = k;
    e[p] = 1.0;
    ASSERT_EQ(KXdoDenseBTRAN(em.model, e.data(), y.data()), 0);
    e[p] = 0.0;
    double ya = 0;
    for (int i = 0; i < d.m; i++) ya += y[i] * a[i];
    EXPECT_NEAR(ya, x[p], 1e-9 * (1 + std::fabs(x[p]))) << "column " << j;
  }
  // y' B = e_p for a spread of positions.
  for (int p = 0; p < d.m; p += std::max(1, d.m / 12)) {
    e[p] = 1.0;
    ASSERT_EQ(KXdoDenseBTRAN(em.model, e.data(), y.data()), 0);
    std::vector<double> r = qtest::basis_ttimes(d, b, y);
    r[p] -= 1.0;
    e[p] = 0.0;
    EXPECT_LT(max_abs(r), 1e-9 * (1 + max_abs(y))) << "position " << p;
  }
  EXPECT_EQ(KXverifyOptimality(em.model), 0);
}

TEST_P(NetlibQuery, TheExplicitDualHasTheOptimumWithTheOtherSense) {
  kxtest::EnvModel em, dual;
  READ_OR_SKIP(em, "feasible", GetParam());
  ASSERT_EQ(KXgetDualModel(em.model, dual.model), 0);
  int sense = 0, dsense = 0;
  KXgetInfo(em.model, KX_IINFO_OBJSENSE, &sense);
  KXgetInfo(dual.model, KX_IINFO_OBJSENSE, &dsense);
  EXPECT_EQ(dsense, -sense);
  int st = 0;
  ASSERT_EQ(KXoptimize(dual.model, KX_METHOD_FREE, &st), 0);
  ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  double obj = 0;
  KXgetObjective(dual.model, &obj);
  const double opt = manifest_optimum(GetParam());
  EXPECT_NEAR(obj, opt, 1e-6 * (1 + std::fabs(opt)));
}

TEST_P(NetlibQuery, ProbToSolveTwoReachesThePrimalOptimumAndAPrimalBasis) {
  kxtest::EnvModel em;
  READ_OR_SKIP(em, "feasible", GetParam());
  ASSERT_EQ(KXsetModelIntParameter(em.model, KX_IPARAM_PROB_TO_SOLVE, 2), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  double obj = 0;
  KXgetObjective(em.model, &obj);
  const double opt = manifest_optimum(GetParam());
  EXPECT_NEAR(obj, opt, 1e-6 * (1 + std::fabs(opt)));
  EXPECT_EQ(KXverifyOptimality(em.model), 0);
  const qtest::Data d = qtest::read_data(em.model);
  const qtest::Basis b = qtest::basis_of(em.model, d);
  for (int p = 0; p < d.m; p++) EXPECT_GE(b.head[p], 0) << "position " << p;
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibQuery,
                         testing::Values("afiro", "adlittle", "sc105", "blend", "share2b", "boeing2"));

class NetlibRanges : public testing::TestWithParam<std::string> {};

TEST_P(NetlibRanges, RangesHoldWhenSolvedAgain) {
  kxtest::EnvModel em;
  READ_OR_SKIP(em, "feasible", GetParam());
  EXPECT_GT(qtest::check_ranges(em.model, qtest::kRhs, 10), 0);
  EXPECT_GT(qtest::check_ranges(em.model, qtest::kCost, 10), 0);
  EXPECT_GT(qtest::check_ranges(em.model, qtest::kBound, 10), 0);
}

TEST_P(NetlibRanges, AMaximisationReportsTheSwappedCostSides) {
  kxtest::EnvModel mn, mx;
  READ_OR_SKIP(mn, "feasible", GetParam());
  READ_OR_SKIP(mx, "feasible", GetParam());
  // The same model as a maximisation of the negated costs.
  const qtest::Data d = qtest::read_data(mx.model);
  std::vector<int> all(d.n);
  std::vector<double> neg(d.n);
  for (int j = 0; j < d.n; j++) all[j] = j, neg[j] = -d.c[j];
  ASSERT_EQ(KXmodifyObjective(mx.model, d.n, all.data(), neg.data()), 0);
  ASSERT_EQ(KXsetModelIntParameter(mx.model, KX_IPARAM_OBJSENSE, -1), 0);
  int sense = 0;
  KXgetInfo(mx.model, KX_IINFO_OBJSENSE, &sense);
  if (sense != -1) GTEST_SKIP() << "objective sense not settable on a loaded model";
  int st = 0;
  for (pModel m : {mn.model, mx.model}) {
    KXsetModelIntParameter(m, KX_IPARAM_LP_PRELEVEL, 0);
    ASSERT_EQ(KXoptimize(m, KX_METHOD_PSIMPLEX, &st), 0);
  }
  const qtest::BasisState a = qtest::get_basis(mn.model, d), b = qtest::get_basis(mx.model, d);
  if (!qtest::same_basis(a, b)) GTEST_SKIP() << "the two solves ended in different optimal bases";
  std::vector<double> d1(d.n), i1(d.n), d2(d.n), i2(d.n);
  ASSERT_EQ(KXgetObjectiveRanges(mn.model, d1.data(), i1.data()), 0);
  ASSERT_EQ(KXgetObjectiveRanges(mx.model, d2.data(), i2.data()), 0);
  for (int j = 0; j < d.n; j++) {
    EXPECT_NEAR(d2[j], i1[j], 1e-7 * (1 + std::fabs(i1[j]))) << "column " << j;
    EXPECT_NEAR(i2[j], d1[j], 1e-7 * (1 + std::fabs(d1[j]))) << "column " << j;
  }
  EXPECT_GT(qtest::check_ranges(mx.model, qtest::kCost, 8), 0);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibRanges, testing::Values("afiro", "sc50a", "blend", "adlittle"));

// Farkas conditions of the multipliers of an infeasible model.
class NetlibInfeasible : public testing::TestWithParam<std::string> {};

TEST_P(NetlibInfeasible, TheRayProvesInfeasibility) {
  for (int method : {KX_METHOD_PSIMPLEX, KX_METHOD_DSIMPLEX}) {
    kxtest::EnvModel em;
    READ_OR_SKIP(em, "infeasible", GetParam());
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, method, &st), 0);
    ASSERT_EQ(st, KX_STATUS_INFEASIBLE) << "method " << method;
    const qtest::Data d = qtest::read_data(em.model);
    std::vector<double> y(d.m);
    ASSERT_EQ(KXgetExtremeRay(em.model, y.data()), 0) << "method " << method;
    double sides = 0, reach = 0, big = 0;
    bool finite = true;
    for (int i = 0; i < d.m; i++) {
      big = std::max(big, std::fabs(y[i]));
      if (y[i] == 0) continue;
      double lo, hi;
      qtest::span(d, i, &lo, &hi);
      const double side = y[i] > 0 ? lo : hi;
      if (std::fabs(side) >= KX_INFINITY) finite = false;
      else sides += y[i] * side;
    }
    for (int j = 0; j < d.n; j++) {
      double z = 0;
      for (int k = d.beg[j]; k < d.beg[j] + d.len[j]; k++) z += y[d.row[k]] * d.a[k];
      if (std::fabs(z) < 1e-9) continue;
      const double bnd = z > 0 ? d.u[j] : d.l[j];
      if (std::fabs(bnd) >= KX_INFINITY) finite = false;
      else reach += z * bnd;
    }
    EXPECT_GT(big, 0.5);
    EXPECT_TRUE(finite) << "method " << method << ": y takes an infinite side or bound";
    EXPECT_GT(sides - reach, 1e-6 * (1 + std::fabs(sides))) << "method " << method;
  }
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibInfeasible, testing::Values("itest6", "itest2", "galenet", "bgprtr", "woodinfe"));

}  // namespace
