// Direct basis calls: FTRAN and BTRAN against the basis matrix built from the
// public data, hand pivots, refactorisation, optimality check, extreme rays.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/kx_test_util.h"
#include "query/query_util.h"

namespace {

double max_abs(const std::vector<double> &v) {
  double m = 0;
  for (double x : v) m = std::max(m, std::fabs(x));
  return m;
}

void solve(pModel model, int method = KX_METHOD_PSIMPLEX) {
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_LP_PRELEVEL, 0), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(model, method, &st), 0);
  ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
}

TEST(BasisCalls, WithoutABasisEveryCallGives2009) {
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 8, 12, 5), 0);
  std::vector<double> in(8, 1.0), out(8);
  std::vector<int> idx(8);
  int len = 1, olen = 0, zero = 0;
  EXPECT_EQ(KXdoDenseFTRAN(em.model, in.data(), out.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXdoDenseBTRAN(em.model, in.data(), out.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXdoFTRAN(em.model, &len, &zero, in.data(), &olen, idx.data(), out.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXdoBTRAN(em.model, &len, &zero, in.data(), &olen, idx.data(), out.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXverifyOptimality(em.model), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetExtremeRay(em.model, out.data()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXfactorBasis(em.model), KXERR_BASIS_INVALID);
  int j = 0;
  EXPECT_EQ(KXdoPivotIn(em.model, 0, &j), KXERR_INFO_NOT_AVAILABLE);
  // After a solve, freeing the solver memory takes the basis work away again.
  solve(em.model);
  EXPECT_EQ(KXdoDenseFTRAN(em.model, in.data(), out.data()), 0);
  ASSERT_EQ(KXfreeSolverMemory(em.model), 0);
  EXPECT_EQ(KXdoDenseFTRAN(em.model, in.data(), out.data()), KXERR_INFO_NOT_AVAILABLE);
}

// B x = a for every column a of A and every unit vector, and y'B = e_p.
void check_solves(pModel model) {
  const qtest::Data d = qtest::read_data(model);
  const qtest::Basis b = qtest::basis_of(model, d);
  for (int p = 0; p < d.m; p++) ASSERT_GE(b.head[p], 0) << "position " << p;
  std::vector<double> a(d.m), x(d.m), y(d.m), xs(d.m);
  std::vector<int> idx(d.m), oidx(d.m);
  for (int j = 0; j < d.n + d.m; j++) {
    std::fill(a.begin(), a.end(), 0.0);
    int len = 0;
    if (j < d.n) {
      for (int k = d.beg[j]; k < d.beg[j] + d.len[j]; k++) {
        a[d.row[k]] += d.a[k];
        idx[len] = d.row[k];
        xs[len++] = d.a[k];
      }
    } else {
      a[j - d.n] = 1.0;
      idx[0] = j - d.n;
      xs[0] = 1.0;
      len = 1;
    }
    ASSERT_EQ(KXdoDenseFTRAN(model, a.data(), x.data()), 0);
    std::vector<double> r = qtest::basis_times(d, b, x);
    for (int i = 0; i < d.m; i++) r[i] -= a[i];
    EXPECT_LT(max_abs(r), 1e-9 * (1 + max_abs(a))) << "column " << j;
    // The sparse form gives the same vector.
    int olen = 0;
    std::vector<double> sv(d.m);
    ASSERT_EQ(KXdoFTRAN(model, &len, idx.data(), xs.data(), &olen, oidx.data(), sv.data()), 0);
    std::vector<double> dense(d.m, 0.0);
    for (int k = 0; k < olen; k++) dense[oidx[k]] = sv[k];
    for (int p = 0; p < d.m; p++) EXPECT_NEAR(dense[p], x[p], 1e-12 * (1 + std::fabs(x[p])));
  }
  for (int p = 0; p < d.m; p++) {
    std::vector<double> e(d.m, 0.0);
    e[p] = 1.0;
    ASSERT_EQ(KXdoDenseBTRAN(model, e.data(), y.data()), 0);
    std::vector<double> r = qtest::basis_ttimes(d, b, y);
    r[p] -= 1.0;
    EXPECT_LT(max_abs(r), 1e-9) << "position " << p;
  }
}

TEST(BasisCalls, FtranAndBtranSolveWithTheBasisOfTheModel) {
  for (int method : {KX_METHOD_PSIMPLEX, KX_METHOD_DSIMPLEX}) {
    kxtest::EnvModel em;
    ASSERT_EQ(qtest::load_random_lp(em.model, 25, 40, 41), 0);
    solve(em.model, method);
    check_solves(em.model);
  }
}

TEST(BasisCalls, BadArgumentsAreRefused) {
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 8, 12, 5), 0);
  solve(em.model);
  std::vector<double> v(8, 1.0), out(8);
  std::vector<int> oi(8);
  int bad = 8, len = 1, olen = 0, neg = -1;
  EXPECT_EQ(KXdoFTRAN(em.model, &len, &bad, v.data(), &olen, oi.data(), out.data()), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXdoBTRAN(em.model, &neg, &bad, v.data(), &olen, oi.data(), out.data()), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXdoDenseFTRAN(em.model, nullptr, out.data()), KXERR_ILLEGAL_NULL_POINTER);
  int j = 0;
  EXPECT_EQ(KXdoPivotIn(em.model, 100, &j), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXdoPivotij(em.model, 0, 0), KXERR_INDEX_OUT_OF_RANGE);
}

struct Solved {
  kxtest::EnvModel em;
  qtest::Data d;
  double obj = 0;
  std::vector<int> cs, rs;
  explicit Solved(uint32_t seed) {
    qtest::load_random_lp(em.model, 20, 30, seed);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    int st = 0;
    KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st);
    KXgetObjective(em.model, &obj);
    d = qtest::read_data(em.model);
    cs.resize(d.n);
    rs.resize(d.m);
    KXgetBasis(em.model, cs.data(), rs.data());
  }
  int status(int j) const { return j < d.n ? cs[j] : rs[j - d.n]; }
};

TEST(BasisCalls, PivotInKeepsThePointFeasibleAndNeverImproves) {
  Solved s(43);
  ASSERT_EQ(KXverifyOptimality(s.em.model), 0);
  int done = 0;
  for (int q = 0; q < s.d.n + s.d.m && done < 4; q++) {
    if (s.status(q) >= 0) continue;
    int leave = -5;
    const int rc = KXdoPivotIn(s.em.model, q, &leave);
    if (rc == KXERR_INFO_NOT_AVAILABLE) continue;  // nothing blocks that way
    ASSERT_EQ(rc, 0);
    done++;
    std::vector<int> cs(s.d.n), rs(s.d.m);
    KXgetBasis(s.em.model, cs.data(), rs.data());
    const int qs = q < s.d.n ? cs[q] : rs[q - s.d.n];
    if (leave >= 0) {
      EXPECT_GE(qs, 0);
      EXPECT_LT(leave < s.d.n ? cs[leave] : rs[leave - s.d.n], 0);
    }
    double pinf = 1, obj = 0;
    KXgetInfo(s.em.model, KX_DINFO_PINFEAS, &pinf);
    KXgetObjective(s.em.model, &obj);
    EXPECT_LT(pinf, 1e-7);
    EXPECT_GE(obj, s.obj - 1e-7 * (1 + std::fabs(s.obj)));
    // Back to the optimum from there.
    int st = 0;
    ASSERT_EQ(KXoptimize(s.em.model, KX_METHOD_PSIMPLEX, &st), 0);
    KXgetObjective(s.em.model, &obj);
    EXPECT_NEAR(obj, s.obj, 1e-7 * (1 + std::fabs(s.obj)));
    KXgetBasis(s.em.model, s.cs.data(), s.rs.data());
  }
  EXPECT_GT(done, 0);
}

TEST(BasisCalls, PivotOutKeepsTheReducedCostsFeasible) {
  Solved s(47);
  int done = 0;
  for (int j = 0; j < s.d.n + s.d.m && done < 4; j++) {
    if (s.status(j) < 0) continue;
    int enter = -5;
    const int rc = KXdoPivotOut(s.em.model, j, &enter);
    if (rc == KXERR_INFO_NOT_AVAILABLE) continue;
    ASSERT_EQ(rc, 0);
    done++;
    std::vector<int> cs(s.d.n), rs(s.d.m);
    KXgetBasis(s.em.model, cs.data(), rs.data());
    EXPECT_LT(j < s.d.n ? cs[j] : rs[j - s.d.n], 0);
    EXPECT_GE(enter < s.d.n ? cs[enter] : rs[enter - s.d.n], 0);
    double dinf = 1;
    KXgetInfo(s.em.model, KX_DINFO_DINFEAS, &dinf);
    EXPECT_LT(dinf, 1e-7);
    int st = 0;
    ASSERT_EQ(KXoptimize(s.em.model, KX_METHOD_DSIMPLEX, &st), 0);
    KXgetBasis(s.em.model, s.cs.data(), s.rs.data());
  }
  EXPECT_GT(done, 0);
}

TEST(BasisCalls, PivotijSwapsTheNamedPairAndVerifyNoticesTheLoss) {
  Solved s(53);
  // A nonbasic column with a nonzero reduced cost entering in place of a basic
  // variable it can replace.
  std::vector<double> dj(s.d.n);
  KXgetReducedCosts(s.em.model, dj.data());
  int q = -1;
  for (int j = 0; j < s.d.n; j++)
    if (s.cs[j] < 0 && std::fabs(dj[j]) > 1e-3) q = j;
  ASSERT_GE(q, 0);
  std::vector<double> a(s.d.m, 0.0), alpha(s.d.m);
  for (int k = s.d.beg[q]; k < s.d.beg[q] + s.d.len[q]; k++) a[s.d.row[k]] = s.d.a[k];
  ASSERT_EQ(KXdoDenseFTRAN(s.em.model, a.data(), alpha.data()), 0);
  const qtest::Basis b = qtest::basis_of(s.em.model, s.d);
  int p = 0;
  for (int k = 0; k < s.d.m; k++)
    if (std::fabs(alpha[k]) > std::fabs(alpha[p])) p = k;
  const int out = b.head[p];
  ASSERT_EQ(KXdoPivotij(s.em.model, q, out), 0);
  std::vector<int> cs(s.d.n), rs(s.d.m);
  KXgetBasis(s.em.model, cs.data(), rs.data());
  EXPECT_GE(cs[q], 0);
  EXPECT_LT(out < s.d.n ? cs[out] : rs[out - s.d.n], 0);
  // A nonzero reduced cost entering loses optimality (or feasibility).
  EXPECT_EQ(KXverifyOptimality(s.em.model), KXERR_NUMERIC_INSTABILITY);
  check_solves(s.em.model);
  // Refactoring keeps the basis and its verdict.
  ASSERT_EQ(KXfactorBasis(s.em.model), 0);
  std::vector<int> cs2(s.d.n), rs2(s.d.m);
  KXgetBasis(s.em.model, cs2.data(), rs2.data());
  for (int j = 0; j < s.d.n; j++) EXPECT_EQ(cs2[j] >= 0, cs[j] >= 0);
  int ms = 0;
  KXgetSolutionStatus(s.em.model, &ms);
  EXPECT_NE(ms, KX_STATUS_BASIC_OPTIMAL);
  int st = 0;
  ASSERT_EQ(KXoptimize(s.em.model, KX_METHOD_PSIMPLEX, &st), 0);
  EXPECT_EQ(KXverifyOptimality(s.em.model), 0);
  ASSERT_EQ(KXfactorBasis(s.em.model), 0);
  KXgetSolutionStatus(s.em.model, &ms);
  EXPECT_EQ(ms, KX_STATUS_BASIC_OPTIMAL);
  double obj = 0;
  KXgetObjective(s.em.model, &obj);
  EXPECT_NEAR(obj, s.obj, 1e-7 * (1 + std::fabs(s.obj)));
}

// Ray conditions of an unbounded minimisation: c'd < 0, A d within the row
// senses, d within the bound directions.
void check_unbounded_ray(const qtest::Data &d, const std::vector<double> &ray) {
  double cd = 0, big = 0;
  for (int j = 0; j < d.n; j++) {
    cd += d.c[j] * ray[j];
    big = std::max(big, std::fabs(ray[j]));
  }
  EXPECT_GT(big, 0.5);
  EXPECT_LT(d.sense * cd, -1e-9);
  const double tol = 1e-9;
  const std::vector<double> ad = qtest::times(d, ray);
  for (int i = 0; i < d.m; i++) {
    double lo, hi;
    qtest::span(d, i, &lo, &hi);
    if (hi < KX_INFINITY) { EXPECT_LE(ad[i], tol) << "row " << i; }
    if (lo > -KX_INFINITY) { EXPECT_GE(ad[i], -tol) << "row " << i; }
  }
  for (int j = 0; j < d.n; j++) {
    if (d.l[j] > -KX_INFINITY) { EXPECT_GE(ray[j], -tol) << "col " << j; }
    if (d.u[j] < KX_INFINITY) { EXPECT_LE(ray[j], tol) << "col " << j; }
  }
}

// Farkas conditions: the sides y takes exceed what y'A x reaches over the bounds.
void check_farkas(const qtest::Data &d, const std::vector<double> &y) {
  double sides = 0, reach = 0, big = 0;
  for (int i = 0; i < d.m; i++) {
    big = std::max(big, std::fabs(y[i]));
    if (y[i] == 0) continue;
    double lo, hi;
    qtest::span(d, i, &lo, &hi);
    const double side = y[i] > 0 ? lo : hi;
    ASSERT_LT(std::fabs(side), KX_INFINITY) << "row " << i << " takes an infinite side";
    sides += y[i] * side;
  }
  EXPECT_GT(big, 0.5);
  for (int j = 0; j < d.n; j++) {
    double z = 0;
    for (int k = d.beg[j]; k < d.beg[j] + d.len[j]; k++) z += y[d.row[k]] * d.a[k];
    if (std::fabs(z) < 1e-12) continue;
    const double bnd = z > 0 ? d.u[j] : d.l[j];
    ASSERT_LT(std::fabs(bnd), KX_INFINITY) << "col " << j << " z=" << z;
    reach += z * bnd;
  }
  EXPECT_GT(sides - reach, 1e-7 * (1 + std::fabs(sides)));
}

TEST(ExtremeRay, UnboundedModelsGiveAnImprovingDirection) {
  for (int sense : {1, -1}) {
    kxtest::EnvModel em;
    // min (max) -x - y + z (x + y - z) s.t. x - y <= 1, -x + 2y >= -2, z <= 4, x,y,z >= 0.
    const double c[] = {-1.0 * sense, -1.0 * sense, 1.0 * sense}, b[] = {1, -2, 4};
    const char t[] = {'L', 'G', 'L'};
    const int beg[] = {0, 2, 4, 5}, row[] = {0, 1, 0, 1, 2};
    const double a[] = {1, -1, -1, 2, 1};
    ASSERT_EQ(KXloadLPData(em.model, 3, 3, sense, 0, c, b, t, 5, beg, nullptr, a, row, nullptr, nullptr), 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
    ASSERT_EQ(st, KX_STATUS_UNBOUNDED);
    std::vector<double> ray(3);
    ASSERT_EQ(KXgetExtremeRay(em.model, ray.data()), 0);
    check_unbounded_ray(qtest::read_data(em.model), ray);
  }
}

TEST(ExtremeRay, InfeasibleModelsGiveFarkasMultipliers) {
  for (int method : {KX_METHOD_PSIMPLEX, KX_METHOD_DSIMPLEX}) {
    kxtest::EnvModel em;
    // x + y >= 5, x - y <= 0... with x <= 1, y <= 2: x + y <= 3 < 5.
    const double c[] = {1, 1}, b[] = {5, 0, 10}, u[] = {1, 2};
    const char t[] = {'G', 'L', 'L'};
    const int beg[] = {0, 3, 6}, row[] = {0, 1, 2, 0, 1, 2};
    const double a[] = {1, 1, 1, 1, -1, 1};
    ASSERT_EQ(KXloadLPData(em.model, 3, 2, 1, 0, c, b, t, 6, beg, nullptr, a, row, nullptr, u), 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, method, &st), 0);
    ASSERT_EQ(st, KX_STATUS_INFEASIBLE) << "method " << method;
    std::vector<double> y(3);
    ASSERT_EQ(KXgetExtremeRay(em.model, y.data()), 0) << "method " << method;
    check_farkas(qtest::read_data(em.model), y);
  }
}

TEST(ExtremeRay, AnOptimalModelHasNone) {
  Solved s(59);
  std::vector<double> ray(s.d.n + s.d.m);
  EXPECT_EQ(KXgetExtremeRay(s.em.model, ray.data()), KXERR_INFO_NOT_AVAILABLE);
}

}  // namespace
