// Edge cases of the LP presolve through KXoptimize and through gen_pre directly:
// level 0, models settled by presolve alone, verdicts, free singleton columns,
// empty rows and columns, the reduced-model calls, and a damaged stack.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <vector>

#include "presolve/poststack.h"
#include "presolve/presolve.h"
#include "ref_lp.h"
#include "support/kx_test_util.h"

namespace {

// A model given by dense rows, for readability.
struct Lp {
  int sense = 1;
  std::vector<std::vector<double>> A;
  std::vector<char> type;
  std::vector<double> rhs, c, l, u;
};
constexpr double kInf = 1e30;

void load(pModel model, const Lp &lp) {
  const int m = static_cast<int>(lp.A.size()), n = static_cast<int>(lp.c.size());
  std::vector<int> beg(n + 1, 0), rows;
  std::vector<double> coef;
  for (int j = 0; j < n; ++j) {
    for (int i = 0; i < m; ++i)
      if (lp.A[i][j] != 0) {
        rows.push_back(i);
        coef.push_back(lp.A[i][j]);
      }
    beg[j + 1] = static_cast<int>(rows.size());
  }
  if (rows.empty()) {
    rows.push_back(0);
    coef.push_back(0.0);
  }
  ASSERT_EQ(KXloadLPData(model, m, n, lp.sense, 0.0, lp.c.data(), lp.rhs.data(), lp.type.data(),
                         beg[n], beg.data(), nullptr, coef.data(), rows.data(), lp.l.data(),
                         lp.u.data()),
            0);
}

// Solve with the default presolve; check the answer on the model and that the
// basis re-solves it in no iteration with presolve off.
void solve_and_check(pModel model, int wantStatus, int wantMethod) {
  int status = 0;
  ASSERT_EQ(KXoptimize(model, KX_METHOD_FREE, &status), 0);
  EXPECT_EQ(status, wantStatus);
  int method = 0;
  ASSERT_EQ(KXgetInfo(model, KX_IINFO_METHOD, &method), 0);
  if (wantMethod != 0) {
    EXPECT_EQ(method, wantMethod);
  }
  if (wantStatus != KX_STATUS_BASIC_OPTIMAL) return;
  const reflp::Check c = reflp::check(model);
  EXPECT_LE(c.pinf, 1e-9);
  EXPECT_LE(c.dinf, 1e-9);
  EXPECT_LE(c.compl_, 1e-9);
  EXPECT_TRUE(c.basisOk) << c.why;
  const reflp::Solution ref = reflp::solve(reflp::from_model(model));
  ASSERT_EQ(ref.status, reflp::kOptimal);
  double obj = 0;
  ASSERT_EQ(KXgetObjective(model, &obj), 0);
  EXPECT_NEAR(obj, ref.obj, 1e-9 * (1 + std::fabs(ref.obj)));
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_LP_PRELEVEL, 0), 0);
  ASSERT_EQ(KXoptimize(model, KX_METHOD_PSIMPLEX, &status), 0);
  EXPECT_EQ(status, KX_STATUS_BASIC_OPTIMAL);
  int iters = -1;
  ASSERT_EQ(KXgetInfo(model, KX_IINFO_SIM_ITER, &iters), 0);
  EXPECT_EQ(iters, 0);
  ASSERT_EQ(KXgetObjective(model, &obj), 0);
  EXPECT_NEAR(obj, ref.obj, 1e-9 * (1 + std::fabs(ref.obj)));
}

struct Fixture : ::testing::Test {
  kxtest::EnvModel em;
  pModel model() { return em.model; }
  ~Fixture() override { gen_free_presolve(em.model); }
};

using PresolveEdge = Fixture;

TEST_F(PresolveEdge, LevelZeroChangesNothing) {
  // max 2x + 3y, x + y <= 4, x + 3y <= 6, x <= 3: nothing is left to presolve at level 0.
  ASSERT_EQ(kxtest::tiny_lp().load(model()), 0);
  PostStack *ps = nullptr;
  ASSERT_EQ(allocate_poststack(&ps, 8), 0);
  Model *red = nullptr;
  int verdict = 7;
  ASSERT_EQ(gen_pre(model(), &red, ps, 0, 0, 1000, -1, &verdict, 0), 0);
  EXPECT_EQ(verdict, kPreNoChange);
  EXPECT_EQ(red, nullptr);
  EXPECT_TRUE(ps->stack_i.empty());
  EXPECT_TRUE(ps->stack_r.empty());
  deallocate_poststack(&ps);
  ASSERT_EQ(KXsetModelIntParameter(model(), KX_IPARAM_LP_PRELEVEL, 0), 0);
  int status = 0;
  ASSERT_EQ(KXoptimize(model(), KX_METHOD_DSIMPLEX, &status), 0);
  EXPECT_EQ(status, KX_STATUS_BASIC_OPTIMAL);
  EXPECT_EQ(model()->presolved, nullptr);
  EXPECT_EQ(model()->poststack, nullptr);
  int method = 0;
  KXgetInfo(model(), KX_IINFO_METHOD, &method);
  EXPECT_EQ(method, 3);
}

TEST_F(PresolveEdge, ModelSolvedWholeByPresolve) {
  // Singleton rows become bounds, the columns go empty and take their best bounds.
  Lp lp;
  lp.A = {{1, 0, 0}, {0, 2, 0}, {0, 0, -1}, {1, 1, 0}};
  lp.type = {'G', 'L', 'G', 'L'};
  lp.rhs = {1, 6, -4, 100};
  lp.c = {1, -1, -2};
  lp.l = {0, 0, 0};
  lp.u = {kInf, kInf, kInf};
  load(model(), lp);
  solve_and_check(model(), KX_STATUS_BASIC_OPTIMAL, -1);
}

TEST_F(PresolveEdge, MaximisationSolvedWholeKeepsSigns) {
  Lp lp;
  lp.sense = -1;
  lp.A = {{1, 0}, {0, 1}};
  lp.type = {'L', 'G'};
  lp.rhs = {3, -2};
  lp.c = {2, -1};
  lp.l = {0, -kInf};
  lp.u = {kInf, 5};
  load(model(), lp);
  solve_and_check(model(), KX_STATUS_BASIC_OPTIMAL, -1);
  double y[2];
  ASSERT_EQ(KXgetDualSolution(model(), y), 0);
  EXPECT_NEAR(y[0], 2.0, 1e-12);   // one more unit of rhs adds 2 to the maximum
  EXPECT_NEAR(y[1], -1.0, 1e-12);  // raising the floor of y costs 1
}

TEST_F(PresolveEdge, InfeasibleVerdictFromPresolve) {
  Lp lp;
  lp.A = {{1, 1}, {1, -1}};
  lp.type = {'L', 'E'};
  lp.rhs = {-1, 0};
  lp.c = {1, 1};
  lp.l = {0, 0};
  lp.u = {kInf, kInf};
  load(model(), lp);
  solve_and_check(model(), KX_STATUS_INFEASIBLE, -1);
}

TEST_F(PresolveEdge, UnboundedVerdictFromPresolve) {
  // An empty column with a cost that pulls it to an infinite bound: presolve finds
  // the model dual infeasible; the driver lets the simplex tell unbounded from
  // infeasible on the model as given.
  Lp lp;
  lp.A = {{1, 0}};
  lp.type = {'L'};
  lp.rhs = {4};
  lp.c = {1, -1};
  lp.l = {0, 0};
  lp.u = {kInf, kInf};
  load(model(), lp);
  PostStack *ps = nullptr;
  ASSERT_EQ(allocate_poststack(&ps, 8), 0);
  Model *red = nullptr;
  int verdict = 0;
  ASSERT_EQ(gen_pre(model(), &red, ps, 126, 0, 1000, -1, &verdict, 0), 0);
  EXPECT_EQ(verdict, kPreUnbounded);
  EXPECT_EQ(red, nullptr);
  deallocate_poststack(&ps);
  solve_and_check(model(), KX_STATUS_UNBOUNDED, 0);
  // The same dual infeasibility on a model whose rows can't hold is infeasible.
  kxtest::EnvModel other;
  lp.A = {{1, 0}, {1, 0}};
  lp.type = {'L', 'G'};
  lp.rhs = {4, 5};
  load(other.model, lp);
  int status = 0;
  ASSERT_EQ(KXoptimize(other.model, KX_METHOD_FREE, &status), 0);
  EXPECT_EQ(status, KX_STATUS_INFEASIBLE);
  gen_free_presolve(other.model);
}

TEST_F(PresolveEdge, FreeSingletonColumnsGiveTheirRowsDuals) {
  // z free in one row: the row's dual is c_z / a; the row becomes an equality at
  // the side that dual asks for.  w is free and in an equality.
  Lp lp;
  lp.A = {{1, 1, 2, 0, 0}, {1, -1, 0, 1, 0}, {0, 1, 0, 0, 3}, {1, 2, 0, 0, 0}};
  lp.type = {'G', 'E', 'L', 'L'};
  lp.rhs = {2, 1, 9, 8};
  lp.c = {1, 2, 1, -1, 0.5};
  lp.l = {0, 0, -kInf, -kInf, 0};
  lp.u = {kInf, kInf, kInf, kInf, 2};
  load(model(), lp);
  solve_and_check(model(), KX_STATUS_BASIC_OPTIMAL, 0);
}

TEST_F(PresolveEdge, EmptyRowsAndColumns) {
  Lp lp;
  lp.A = {{0, 0, 0, 0}, {1, 0, 1, 0}, {0, 0, 0, 0}, {2, 0, -1, 0}};
  lp.type = {'E', 'G', 'N', 'L'};
  lp.rhs = {0, 1, 5, 4};
  lp.c = {1, 0, 2, 3};
  lp.l = {0, -kInf, 0, -1};
  lp.u = {kInf, kInf, kInf, 2};
  load(model(), lp);
  solve_and_check(model(), KX_STATUS_BASIC_OPTIMAL, 0);
  double x[4];
  ASSERT_EQ(KXgetPrimalSolution(model(), x), 0);
  EXPECT_EQ(x[1], 0.0);   // free, empty, no cost: at zero
  EXPECT_EQ(x[3], -1.0);  // empty with a cost: at its lower bound
}

TEST_F(PresolveEdge, EmptyRowThatCannotHoldIsInfeasible) {
  Lp lp;
  lp.A = {{0, 0}, {1, 1}};
  lp.type = {'G', 'L'};
  lp.rhs = {1, 4};
  lp.c = {1, 1};
  lp.l = {0, 0};
  lp.u = {kInf, kInf};
  load(model(), lp);
  solve_and_check(model(), KX_STATUS_INFEASIBLE, -1);
}

// Row 3 is twice row 0 and row 2 a bound: two rows go, a 2 x 3 core stays.
Lp reducible_lp() {
  Lp lp;
  lp.A = {{1, 2, 1}, {3, 1, 2}, {1, 0, 0}, {2, 4, 2}};
  lp.type = {'L', 'G', 'G', 'L'};
  lp.rhs = {4, 2, 0.5, 7};
  lp.c = {1, -1, 1};
  lp.l = {0, 0, 0};
  lp.u = {kInf, kInf, kInf};
  return lp;
}

TEST_F(PresolveEdge, ReducedDimensionsAndMpsFile) {
  Lp lp = reducible_lp();
  load(model(), lp);
  int m = -1, n = -1, nz = -1;
  ASSERT_EQ(KXgetReducedDim(model(), &m, &n, &nz), 0);
  EXPECT_EQ(m, 2);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(nz, 6);
  EXPECT_EQ(model()->presolved, nullptr);  // asking doesn't keep a presolve
  kxtest::TempDir dir;
  const std::string f = dir.file("reduced.mps");
  ASSERT_EQ(KXwriteReducedMPSFile(model(), f.c_str(), 1), 0);
  kxtest::EnvModel other;
  ASSERT_EQ(KXreadMPSFile(other.model, f.c_str(), 1), 0);
  int m2 = -1, n2 = -1;
  KXgetInfo(other.model, KX_IINFO_NUM_CONS, &m2);
  KXgetInfo(other.model, KX_IINFO_NUM_VARS, &n2);
  EXPECT_EQ(m2, m);
  EXPECT_EQ(n2, n);
  int s1 = 0, s2 = 0;
  ASSERT_EQ(KXoptimize(model(), KX_METHOD_FREE, &s1), 0);
  ASSERT_EQ(KXoptimize(other.model, KX_METHOD_FREE, &s2), 0);
  double o1 = 0, o2 = 0;
  KXgetObjective(model(), &o1);
  KXgetObjective(other.model, &o2);
  EXPECT_NEAR(o1, o2, 1e-9);
  EXPECT_EQ(KXgetReducedDim(nullptr, &m, &n, &nz), KXERR_ILLEGAL_NULL_POINTER);
}

TEST_F(PresolveEdge, ReducedDimensionInfoAfterAPresolvedSolve) {
  Lp lp = reducible_lp();
  load(model(), lp);
  int v = -1;
  // No presolve has run yet.
  EXPECT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDCONS, &v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDVARS, &v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDNONZ, &v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDINT, &v), KXERR_INFO_NOT_AVAILABLE);
  int status = 0;
  ASSERT_EQ(KXoptimize(model(), KX_METHOD_FREE, &status), 0);
  ASSERT_EQ(status, KX_STATUS_BASIC_OPTIMAL);
  ASSERT_NE(model()->poststack, nullptr);
  int m = -1, n = -1, nz = -1;
  ASSERT_EQ(KXgetReducedDim(model(), &m, &n, &nz), 0);
  EXPECT_EQ(m, 2);
  EXPECT_EQ(n, 3);
  EXPECT_EQ(nz, 6);
  ASSERT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDCONS, &v), 0);
  EXPECT_EQ(v, m);
  ASSERT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDVARS, &v), 0);
  EXPECT_EQ(v, n);
  ASSERT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDNONZ, &v), 0);
  EXPECT_EQ(v, nz);
  ASSERT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDINT, &v), 0);
  EXPECT_EQ(v, 0);
  // The original sizes are untouched.
  ASSERT_EQ(KXgetInfo(model(), KX_IINFO_NUM_CONS, &v), 0);
  EXPECT_EQ(v, 4);
  ASSERT_EQ(KXgetInfo(model(), KX_IINFO_NUM_NONZ, &v), 0);
  EXPECT_EQ(v, 10);
  // With presolve off the next solve keeps no reduced model.
  ASSERT_EQ(KXsetModelIntParameter(model(), KX_IPARAM_LP_PRELEVEL, 0), 0);
  ASSERT_EQ(KXoptimize(model(), KX_METHOD_FREE, &status), 0);
  EXPECT_EQ(KXgetInfo(model(), KX_IINFO_NUM_RDCONS, &v), KXERR_INFO_NOT_AVAILABLE);
}

TEST_F(PresolveEdge, NothingToRemoveKeepsTheModel) {
  ASSERT_EQ(kxtest::tiny_lp().load(model()), 0);
  PostStack *ps = nullptr;
  ASSERT_EQ(allocate_poststack(&ps, 8), 0);
  Model *red = nullptr;
  int verdict = 7;
  ASSERT_EQ(gen_pre(model(), &red, ps, kPreSimple | kPreDupRows | kPreDupCols, 0, 1000, -1, &verdict, 0), 0);
  EXPECT_EQ(verdict, kPreNoChange);
  EXPECT_EQ(red, nullptr);
  deallocate_poststack(&ps);
}

TEST_F(PresolveEdge, DamagedStackStopsPostsolve) {
  Lp lp;
  lp.A = {{1, 1}, {1, 0}};
  lp.type = {'L', 'L'};
  lp.rhs = {4, 3};
  lp.c = {-1, -1};
  lp.l = {0, 0};
  lp.u = {kInf, kInf};
  load(model(), lp);
  PostStack *ps = nullptr;
  ASSERT_EQ(allocate_poststack(&ps, 8), 0);
  Model *red = nullptr;
  int verdict = 0;
  ASSERT_EQ(gen_pre(model(), &red, ps, 126, 0, 1000, -1, &verdict, 0), 0);
  ASSERT_GE(verdict, kPreReduced);
  const reflp::Dense rd = reflp::from_model(red);
  reflp::install(red, rd, reflp::solve(rd));
  int status = 0;
  EXPECT_EQ(genpre_postsolv_prob(red, model(), ps, &status), 0);
  // The record under the renumbering loses its kind: undo must stop with 2015.
  PostStack broken = *ps;
  size_t top = broken.stack_i.size();
  const int ni = broken.stack_i[top - 2];
  broken.stack_i[top - 3 - static_cast<size_t>(ni) - 1] = kPsInvalid;
  EXPECT_EQ(genpre_postsolv_prob(red, model(), &broken, &status), KXERR_INTERNAL_ERROR);
  // A truncated stack is caught as well.
  PostStack cut = *ps;
  cut.stack_i.pop_back();
  EXPECT_EQ(genpre_postsolv_prob(red, model(), &cut, &status), KXERR_INTERNAL_ERROR);
  KXdeleteModel(&red);
  deallocate_poststack(&ps);
}

TEST_F(PresolveEdge, ReportLinesGoThroughTheLog) {
  Lp lp;
  lp.A = {{1, 1, 0}, {0, 1, 1}, {1, 0, 0}};
  lp.type = {'L', 'G', 'G'};
  lp.rhs = {4, 1, 1};
  lp.c = {1, 1, 1};
  lp.l = {0, 0, 0};
  lp.u = {kInf, kInf, kInf};
  load(model(), lp);
  std::string text;
  KXsetModelLogfunc(model(), [](pModel, char *t, void *d) { *static_cast<std::string *>(d) += t; }, &text);
  ASSERT_EQ(KXsetModelIntParameter(model(), KX_IPARAM_LP_PRINTLEVEL, 1), 0);
  int status = 0;
  ASSERT_EQ(KXoptimize(model(), KX_METHOD_FREE, &status), 0);
  EXPECT_NE(text.find("tpre       ncons      nvars         nnzA      time"), std::string::npos);
  EXPECT_NE(text.find("\n sp1 "), std::string::npos);
  text.clear();
  ASSERT_EQ(KXsetModelIntParameter(model(), KX_IPARAM_LP_PRINTLEVEL, 0), 0);
  ASSERT_EQ(KXsetModelIntParameter(model(), KX_IPARAM_LP_PRELEVEL, 124), 0);
  ASSERT_EQ(KXoptimize(model(), KX_METHOD_FREE, &status), 0);
  EXPECT_EQ(text.find("tpre"), std::string::npos);
}

}  // namespace
