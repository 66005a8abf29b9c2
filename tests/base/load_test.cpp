// Loading a linear program: the checks in their order, what a failed load
// leaves behind, and how the data is stored.
#include <gtest/gtest.h>

#include <cmath>

#include "base/kx.h"
#include "support/kx_test_util.h"

using kxtest::EnvModel;
using kxtest::SmallLP;

namespace {

// After a failed load the model must be unloaded and accept a valid load.
void expect_clean_then_loadable(pModel model) {
  const Model *m = model;
  EXPECT_EQ(m->modelState, KX_STATUS_UNLOADED);
  EXPECT_EQ(m->nCons, 0);
  EXPECT_EQ(m->nVars, 0);
  EXPECT_EQ(m->Abeg, nullptr);
  EXPECT_EQ(m->cost, nullptr);
  ASSERT_EQ(kxtest::tiny_lp().load(model), 0);
  EXPECT_EQ(m->modelState, KX_STATUS_LOADED);
  EXPECT_EQ(KXclearModel(model), 0);
}

struct BadLoad {
  const char *what;
  int expected;
  void (*spoil)(SmallLP &);
};

}  // namespace

TEST(LoadLP, EachCheckFailsInItsOrderAndLeavesTheModelClean) {
  // Each case breaks one thing (and sometimes a later one too, to pin the order).
  const BadLoad cases[] = {
      {"null costs", KXERR_ILLEGAL_NULL_POINTER, [](SmallLP &lp) { lp.c.clear(); }},
      {"null rhs", KXERR_ILLEGAL_NULL_POINTER, [](SmallLP &lp) { lp.b.clear(); }},
      {"null types", KXERR_ILLEGAL_NULL_POINTER, [](SmallLP &lp) { lp.types.clear(); }},
      {"null starts before sense", KXERR_ILLEGAL_NULL_POINTER,
       [](SmallLP &lp) {
         lp.beg.clear();
         lp.sense = 5;
       }},
      {"nnz above space", KXERR_TOTAL_NONZCOUNT,
       [](SmallLP &lp) {
         lp.coef.push_back(1.0);
         lp.rows.push_back(0);
         lp.sense = 3;  // the count check comes before the sense check
       }},
      {"bad sense", KXERR_BAD_OBJECTIVE_SENSE,
       [](SmallLP &lp) {
         lp.sense = 0;
         lp.types[0] = 'X';
       }},
      {"bad row type", KXERR_BAD_CONSTRAINT_TYPE,
       [](SmallLP &lp) {
         lp.types[1] = 'l';
         lp.len = {-1, 2};
       }},
      {"negative length", KXERR_BAD_COLUMN_LENGTHS, [](SmallLP &lp) { lp.len = {-1, 2}; }},
      {"length beyond start gap", KXERR_BAD_COLUMN_LENGTHS, [](SmallLP &lp) { lp.len = {3, 1}; }},
      {"decreasing starts", KXERR_BAD_COLUMN_STARTS,
       [](SmallLP &lp) {
         lp.beg = {0, 5, 4};
       }},
      {"lengths sum differs", KXERR_TOTAL_NONZCOUNT,
       [](SmallLP &lp) {
         lp.len = {1, 2};
         lp.rows[1] = 7;  // inside a gap: not checked
       }},
      {"row index too large", KXERR_INDEX_OUT_OF_RANGE, [](SmallLP &lp) { lp.rows[3] = 2; }},
      {"row index negative", KXERR_INDEX_OUT_OF_RANGE, [](SmallLP &lp) { lp.rows[0] = -1; }},
  };
  EnvModel em;
  for (const BadLoad &bc : cases) {
    SCOPED_TRACE(bc.what);
    SmallLP lp = kxtest::tiny_lp();
    bc.spoil(lp);
    const int *beg = lp.beg.empty() ? nullptr : lp.beg.data();
    int rc = KXloadLPData(em.model, lp.m, lp.n, lp.sense, 0.0, lp.c.empty() ? nullptr : lp.c.data(),
                          lp.b.empty() ? nullptr : lp.b.data(),
                          lp.types.empty() ? nullptr : lp.types.data(), lp.nnz(), beg,
                          lp.len.empty() ? nullptr : lp.len.data(), lp.coef.data(), lp.rows.data(),
                          lp.l.data(), lp.u.data());
    EXPECT_EQ(rc, bc.expected);
    expect_clean_then_loadable(em.model);
  }
}

TEST(LoadLP, SecondLoadIsRefusedAndTheFirstStands) {
  EnvModel em;
  SmallLP lp = kxtest::tiny_lp();
  ASSERT_EQ(lp.load(em.model), 0);
  SmallLP other = kxtest::tiny_lp();
  other.c = {-7.0, -8.0};
  EXPECT_EQ(other.load(em.model), KXERR_ALREADY_LOADED);
  const Model *m = em.model;
  EXPECT_EQ(m->cost[0], 2.0);
  EXPECT_EQ(m->cost[1], 3.0);
  EXPECT_EQ(m->modelState, KX_STATUS_LOADED);
  EXPECT_EQ(KXloadLPData(nullptr, 0, 0, 1, 0, nullptr, nullptr, nullptr, 0, nullptr, nullptr,
                         nullptr, nullptr, nullptr, nullptr),
            KXERR_ILLEGAL_NULL_POINTER);
}

TEST(LoadLP, NegativeSizesAreOutOfRange) {
  EnvModel em;
  int beg[1] = {0};
  EXPECT_EQ(KXloadLPData(em.model, -1, 0, 1, 0, nullptr, nullptr, nullptr, 0, beg, nullptr,
                         nullptr, nullptr, nullptr, nullptr),
            KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXloadLPData(em.model, 0, -3, 1, 0, nullptr, nullptr, nullptr, 0, beg, nullptr,
                         nullptr, nullptr, nullptr, nullptr),
            KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXloadLPData(em.model, 0, 0, 1, 0, nullptr, nullptr, nullptr, -2, beg, nullptr,
                         nullptr, nullptr, nullptr, nullptr),
            KXERR_PARAMETER_OUT_OF_RANGE);
  expect_clean_then_loadable(em.model);
}

TEST(LoadLP, DuplicatesInAColumnAreMergedAndAMergedZeroIsKept) {
  EnvModel em;
  // Column 0 holds row 1 three times (1 + 2 - 3 = 0) and row 0 twice (4 + 5).
  SmallLP lp;
  lp.m = 2;
  lp.n = 2;
  lp.c = {1, 1};
  lp.b = {1, 1};
  lp.types = {'G', 'L'};
  lp.beg = {0, 5, 6};
  lp.rows = {1, 0, 1, 0, 1, 1};
  lp.coef = {1.0, 4.0, 2.0, 5.0, -3.0, 7.0};
  ASSERT_EQ(lp.load(em.model), 0);
  const Model *m = em.model;
  EXPECT_EQ(m->Alen[0], 2);
  EXPECT_EQ(m->Arow[0], 1);  // the first occurrence keeps its place
  EXPECT_EQ(m->Acoef[0], 0.0);
  EXPECT_EQ(m->Arow[1], 0);
  EXPECT_EQ(m->Acoef[1], 9.0);
  EXPECT_EQ(m->Alen[1], 1);
  EXPECT_EQ(m->Abeg[1], 5);  // starts are not moved
  EXPECT_EQ(m->Arow[5], 1);
  EXPECT_EQ(m->Acoef[5], 7.0);
  EXPECT_EQ(m->nNonz, 6);  // the count stays as given
  int nz = 0;
  ASSERT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_NONZ, &nz), 0);
  EXPECT_EQ(nz, 6);
}

TEST(LoadLP, GapsBetweenColumnsAreKept) {
  EnvModel em;
  SmallLP lp;
  lp.m = 3;
  lp.n = 3;
  lp.c = {1, 2, 3};
  lp.b = {1, 2, 3};
  lp.types = {'E', 'N', 'G'};
  lp.beg = {0, 4, 5, 9};
  lp.len = {2, 1, 3};
  lp.nnzGiven = 6;
  lp.rows = {0, 2, -99, -99, 1, 0, 1, 2, -99};
  lp.coef = {1, 2, 0, 0, 3, 4, 5, 6, 0};
  ASSERT_EQ(lp.load(em.model), 0);
  const Model *m = em.model;
  EXPECT_EQ(m->nnzAlloc, 9);
  EXPECT_EQ(m->nNonz, 6);
  EXPECT_EQ(m->Abeg[2], 5);
  EXPECT_EQ(m->Abeg[3], 9);
  EXPECT_EQ(m->Alen[0], 2);
  EXPECT_EQ(m->Alen[2], 3);
  EXPECT_EQ(m->Arow[6], 1);
  EXPECT_EQ(m->Acoef[7], 6.0);
  EXPECT_EQ(m->stats.nN, 1);
  EXPECT_EQ(m->stats.nE, 1);
  EXPECT_EQ(m->stats.nG, 1);
}

TEST(LoadLP, BoundsBeyondInfinityAreClampedAndNullBoundsDefault) {
  EnvModel em;
  SmallLP lp = kxtest::tiny_lp();
  lp.l = {-1e31, -5.0};
  lp.u = {1e31, 2e30};
  ASSERT_EQ(lp.load(em.model), 0);
  const Model *m = em.model;
  EXPECT_EQ(m->lower[0], -1e30);
  EXPECT_EQ(m->lower[1], -5.0);
  EXPECT_EQ(m->upper[0], 1e30);
  EXPECT_EQ(m->upper[1], 1e30);

  EnvModel em2;
  lp.l.clear();
  lp.u.clear();
  ASSERT_EQ(lp.load(em2.model), 0);
  const Model *m2 = em2.model;
  EXPECT_EQ(m2->lower[1], 0.0);
  EXPECT_EQ(m2->upper[1], 1e30);
}

TEST(LoadLP, EmptyDimensions) {
  EnvModel em;
  // No rows: rhs and types may be null.
  double c[2] = {1, -1};
  int beg[3] = {0, 0, 0};
  ASSERT_EQ(KXloadLPData(em.model, 0, 2, 1, 3.5, c, nullptr, nullptr, 0, beg, nullptr, nullptr,
                         nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(em.model->objConst, 3.5);
  ASSERT_EQ(KXclearModel(em.model), 0);
  // No columns: one column slot and two starts are still allocated.
  double b[1] = {1};
  char t[1] = {'L'};
  int beg0[1] = {0};
  ASSERT_EQ(KXloadLPData(em.model, 1, 0, 1, 0, nullptr, b, t, 0, beg0, nullptr, nullptr, nullptr,
                         nullptr, nullptr),
            0);
  const Model *m = em.model;
  EXPECT_EQ(m->nVarsAlloc, 1);
  ASSERT_NE(m->Abeg, nullptr);
  EXPECT_EQ(m->Abeg[0], 0);
  EXPECT_EQ(m->Abeg[1], 0);
}

TEST(LoadLP, StatisticsAndBadScaleMask) {
  EnvModel em;
  SmallLP lp = kxtest::tiny_lp();
  lp.coef = {1e-6, 1.0, 1.0, 1e4};  // spread 1e10 > 1e9 sets bit 1
  lp.c = {1e-8, 1e5};               // spread 1e13 > 1e12 sets bit 2
  ASSERT_EQ(lp.load(em.model), 0);
  const ModelStats &s = em.model->stats;
  EXPECT_EQ(s.nL, 2);
  EXPECT_EQ(s.nBoxed, 1);
  EXPECT_EQ(s.nLowerOnly, 1);
  EXPECT_DOUBLE_EQ(s.aMin, 1e-6);
  EXPECT_DOUBLE_EQ(s.aMax, 1e4);
  EXPECT_EQ(s.badScaleMask, 1 | 2);
}

TEST(Solution, GettersBeforeASolveGiveNotAvailable) {
  EnvModel em;
  double v[4];
  int st[4];
  EXPECT_EQ(KXgetPrimalSolution(em.model, v), KXERR_INFO_NOT_AVAILABLE);
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  EXPECT_EQ(KXgetPrimalSolution(em.model, v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetDualSolution(em.model, v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetReducedCosts(em.model, v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetSlacks(em.model, v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetObjective(em.model, v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetBasis(em.model, st, st), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetSolution(em.model, KX_SOL_X, v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetSolutionStatus(em.model, st), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetPrimalSolution(em.model, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXgetPrimalSolution(nullptr, v), KXERR_ILLEGAL_NULL_POINTER);
  double d;
  EXPECT_EQ(KXgetInfo(em.model, KX_DINFO_POBJ, &d), KXERR_INFO_NOT_AVAILABLE);
  int n;
  EXPECT_EQ(KXgetInfo(em.model, 123456, &n), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_CONS, nullptr), KXERR_ILLEGAL_NULL_POINTER);
}

TEST(Solution, StoredSolutionIsReadBackAndStatusSixRefusesThePoint) {
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  ASSERT_EQ(kxi_ensure_sol(em.model), 0);
  Sol *s = em.model->sol;
  s->x[0] = 3;
  s->x[1] = 1;
  s->dj[0] = -0.5;
  s->y[0] = 1.5;
  s->slack[1] = 0.0;
  s->pobj = 9.0;
  s->colstat[0] = KX_BASIS_AT_UPPER;
  s->colstat[1] = 0;
  s->rowstat[0] = KX_BASIS_AT_LOWER;
  s->rowstat[1] = 1;
  s->model_status = s->primal_status = s->dual_status = s->basic_status = KX_STATUS_OPTIMAL;
  s->method = 3;
  s->simIter = 2;
  double x[2], dj[2], y[2], obj;
  int cs[2], rs[2], status;
  ASSERT_EQ(KXgetPrimalSolution(em.model, x), 0);
  EXPECT_EQ(x[0], 3.0);
  ASSERT_EQ(KXgetReducedCosts(em.model, dj), 0);
  EXPECT_EQ(dj[0], -0.5);
  ASSERT_EQ(KXgetDualSolution(em.model, y), 0);
  EXPECT_EQ(y[0], 1.5);
  ASSERT_EQ(KXgetObjective(em.model, &obj), 0);
  EXPECT_EQ(obj, 9.0);
  ASSERT_EQ(KXgetBasis(em.model, cs, nullptr), 0);
  EXPECT_EQ(cs[0], KX_BASIS_AT_UPPER);
  ASSERT_EQ(KXgetBasis(em.model, nullptr, rs), 0);
  EXPECT_EQ(rs[1], 1);
  ASSERT_EQ(KXgetSolution(em.model, KX_SOL_DJ, dj), 0);
  EXPECT_EQ(dj[0], -0.5);
  int method, iters, ps;
  ASSERT_EQ(KXgetSolutionInfo(em.model, &method, nullptr, &iters, nullptr, nullptr, &ps, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(method, 3);
  EXPECT_EQ(iters, 2);
  EXPECT_EQ(ps, KX_STATUS_OPTIMAL);

  s->model_status = KX_STATUS_INFORUNB;
  EXPECT_EQ(KXgetPrimalSolution(em.model, x), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetObjective(em.model, &obj), KXERR_INFO_NOT_AVAILABLE);
  ASSERT_EQ(KXgetSolutionStatus(em.model, &status), 0);
  EXPECT_EQ(status, KX_STATUS_INFORUNB);
  EXPECT_EQ(KXgetSolutionStatus(em.model, nullptr), 0);

  em.model->cbLevel = -1;  // a query refused while solution data is in flux
  EXPECT_EQ(KXgetSolutionStatus(em.model, &status), KXERR_INFO_NOT_AVAILABLE);
}

TEST(Solution, SolutionInfoOfAnUnsolvedModelReadsZero) {
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  EXPECT_EQ(KXgetSolutionInfo(em.model, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            KXERR_INFO_NOT_AVAILABLE);  // no solution record yet
  ASSERT_EQ(kxi_ensure_sol(em.model), 0);
  int method = 99, iters = 99, ps = 0;
  double pobj = 5;
  ASSERT_EQ(KXgetSolutionInfo(em.model, &method, nullptr, &iters, nullptr, nullptr, &ps, nullptr,
                              nullptr, &pobj, nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(method, -1);
  EXPECT_EQ(iters, 0);
  EXPECT_EQ(ps, KX_STATUS_UNLOADED);
}

TEST(LoadModelStatus, AcceptedAndRefusedValues) {
  EnvModel em;
  ASSERT_EQ(kxtest::tiny_lp().load(em.model), 0);
  for (int st : {1, 2, 3, 4, 5, 6, 7, 10, 11, 12, 14}) {
    SCOPED_TRACE(st);
    ASSERT_EQ(KXloadModelStatus(em.model, st, 0), 0);
    int got = 0;
    ASSERT_EQ(KXgetSolutionStatus(em.model, &got), 0);
    EXPECT_EQ(got, st);
  }
  for (int st : {0, 8, 9, 13, 15, -1}) {
    SCOPED_TRACE(st);
    EXPECT_EQ(KXloadModelStatus(em.model, st, 0), KXERR_ERROR_IN_INPUT);
  }
  EXPECT_EQ(KXloadModelStatus(em.model, 1, 2001), 0);
  int err = 0;
  ASSERT_EQ(KXgetInfo(em.model, KX_IINFO_ERR_OPTIM, &err), 0);
  EXPECT_EQ(err, 2001);
  EXPECT_EQ(KXloadModelStatus(em.model, 1, 2383), 0);
  EXPECT_EQ(KXloadModelStatus(em.model, 1, 2000), KXERR_ERROR_IN_INPUT);
  EXPECT_EQ(KXloadModelStatus(em.model, 1, 2384), KXERR_ERROR_IN_INPUT);
  EXPECT_EQ(KXloadModelStatus(em.model, 1, -5), KXERR_ERROR_IN_INPUT);
  EXPECT_EQ(KXloadModelStatus(nullptr, 1, 0), KXERR_ILLEGAL_NULL_POINTER);
}
