// The modification calls: a randomized model-based test against a plain copy
// kept here, growth and gaps, warm starts after changes of data and shape, and
// every error code with the model unchanged after the failure.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <vector>

#include "support/kx_test_util.h"
#include "simplex/lp_check.h"

namespace {

const double INF = KX_INFINITY;

// The reference: a model as plain vectors, each column a map row -> value.
struct Ref {
  int sense = 1;
  double objConst = 0;
  std::vector<double> c, l, u, b;
  std::vector<char> types;
  std::vector<std::map<int, double>> cols;
  int m() const { return static_cast<int>(b.size()); }
  int n() const { return static_cast<int>(c.size()); }

  int load(pModel model) const {
    std::vector<int> beg{0}, rows;
    std::vector<double> coef;
    for (const auto &col : cols) {
      for (auto [i, v] : col) {
        rows.push_back(i);
        coef.push_back(v);
      }
      beg.push_back(static_cast<int>(rows.size()));
    }
    return KXloadLPData(model, m(), n(), sense, objConst, c.data(), b.data(), types.data(),
                        static_cast<int>(coef.size()), beg.data(), nullptr, coef.data(), rows.data(),
                        l.data(), u.data());
  }
};

// Compare KXgetLPData with the reference.
void expect_same(pModel model, const Ref &r, const std::string &where) {
  int n = 0, m = 0, cones = 0, nnz = 0;
  ASSERT_EQ(KXgetDimensions(model, &n, &m, &cones, &nnz, nullptr, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr),
            0);
  ASSERT_EQ(n, r.n()) << where;
  ASSERT_EQ(m, r.m()) << where;
  int sense = 0;
  double oc = 0;
  std::vector<double> c(n + 1), b(m + 1), l(n + 1), u(n + 1), coef(nnz + 1);
  std::vector<char> types(m + 1);
  std::vector<int> beg(n + 2), len(n + 1), rows(nnz + 1);
  ASSERT_EQ(KXgetLPData(model, &sense, &oc, c.data(), b.data(), types.data(), beg.data(), len.data(),
                        coef.data(), rows.data(), l.data(), u.data()),
            0);
  EXPECT_EQ(oc, r.objConst) << where;
  for (int j = 0; j < n; j++) {
    ASSERT_EQ(c[j], r.c[j]) << where << " cost " << j;
    ASSERT_EQ(l[j], r.l[j]) << where << " lower " << j;
    ASSERT_EQ(u[j], r.u[j]) << where << " upper " << j;
    std::map<int, double> got;
    for (int k = beg[j]; k < beg[j] + len[j]; k++) {
      ASSERT_EQ(got.count(rows[k]), 0u) << where << " duplicate in column " << j;
      got[rows[k]] = coef[k];
    }
    ASSERT_EQ(got, r.cols[j]) << where << " column " << j;
  }
  for (int i = 0; i < m; i++) {
    ASSERT_EQ(b[i], r.b[i]) << where << " rhs " << i;
    ASSERT_EQ(types[i], r.types[i]) << where << " type " << i;
  }
}

// A random feasible and bounded start model (boxed columns).
Ref random_ref(std::mt19937 &rng, int m, int n) {
  std::uniform_real_distribution<double> u01(0.0, 1.0);
  auto val = [&]() { return std::round((u01(rng) * 10 - 5) * 4) / 4; };
  Ref r;
  for (int j = 0; j < n; j++) {
    r.c.push_back(val());
    r.l.push_back(-std::floor(u01(rng) * 3));
    r.u.push_back(1 + std::floor(u01(rng) * 3));
    r.cols.emplace_back();
  }
  for (int i = 0; i < m; i++) {
    r.types.push_back("LGEN"[static_cast<int>(u01(rng) * 3.999)]);
    r.b.push_back(0);
    for (int j = 0; j < n; j++)
      if (u01(rng) < 0.3) r.cols[j][i] = val();
  }
  return r;
}

struct Solved {
  int rc, status;
  double obj;
};

Solved solve(pModel model) {
  Solved s{};
  s.rc = KXoptimize(model, KX_METHOD_DSIMPLEX, &s.status);
  KXgetObjective(model, &s.obj);
  return s;
}

// Random calls on the model and the reference alike; every so often a check of
// the data and of a solve against a fresh load.
TEST(ModifyModelBased, RandomCallsKeepModelAndReferenceEqual) {
  std::mt19937 rng(2024);
  std::uniform_real_distribution<double> u01(0.0, 1.0);
  auto val = [&]() { return std::round((u01(rng) * 10 - 5) * 4) / 4; };
  auto pick = [&](int k) { return static_cast<int>(u01(rng) * k) % std::max(k, 1); };
  for (int round = 0; round < 4; round++) {
    Ref r = random_ref(rng, 6 + round, 8 + round);
    kxtest::EnvModel em;
    ASSERT_EQ(r.load(em.model), 0);
    int solves = 0;
    for (int step = 0; step < 150; step++) {
      const int op = pick(13);
      const std::string where = "round " + std::to_string(round) + " step " + std::to_string(step) +
                                " op " + std::to_string(op);
      const int m = r.m(), n = r.n();
      switch (op) {
        case 0:
          if (m > 0) {
            int i = pick(m);
            double v = val();
            ASSERT_EQ(KXmodifyRHS(em.model, 1, &i, &v), 0) << where;
            r.b[i] = v;
          }
          break;
        case 1: {
          int j = pick(n);
          double v = std::min(r.u[j], -std::floor(u01(rng) * 3));
          ASSERT_EQ(KXmodifyLowerBounds(em.model, 1, &j, &v), 0) << where;
          r.l[j] = v;
          break;
        }
        case 2: {
          int j = pick(n);
          double v = std::max(r.l[j], std::floor(u01(rng) * 4));
          ASSERT_EQ(KXmodifyUpperBounds(em.model, 1, &j, &v), 0) << where;
          r.u[j] = v;
          break;
        }
        case 3: {
          int j = pick(n);
          double v = val();
          ASSERT_EQ(KXmodifyObjective(em.model, 1, &j, &v), 0) << where;
          r.c[j] = v;
          break;
        }
        case 4:
          if (m > 0) {
            int i = pick(m);
            char t = "LGEN"[pick(4)];
            ASSERT_EQ(KXmodifyConstraintType(em.model, 1, &i, &t), 0) << where;
            r.types[i] = t;
          }
          break;
        case 5:
          if (m > 0) {
            int j = pick(n);
            int rows[2] = {pick(m), pick(m)};
            double vals[2] = {val(), val()};
            const int k = rows[0] == rows[1] ? 1 : 2;
            ASSERT_EQ(KXmodifyAj(em.model, j, k, rows, vals), 0) << where;
            for (int q = 0; q < k; q++) r.cols[j][rows[q]] = vals[q];
          }
          break;
        case 6:
          if (m > 0) {
            int j = pick(n), i = pick(m);
            ASSERT_EQ(KXdeleteAj(em.model, j, 1, &i), 0) << where;
            r.cols[j].erase(i);
          }
          break;
        case 7: {
          // Two rows with a few entries each.
          const int k = 1 + pick(2);
          std::vector<int> beg{0}, idx;
          std::vector<double> coef, rhs;
          std::vector<char> types;
          for (int q = 0; q < k; q++) {
            std::vector<int> cs;
            for (int j = 0; j < n; j++)
              if (u01(rng) < 0.3) cs.push_back(j);
            for (int j : cs) {
              idx.push_back(j);
              coef.push_back(val());
            }
            beg.push_back(static_cast<int>(idx.size()));
            rhs.push_back(val());
            types.push_back("LGE"[pick(3)]);
          }
          ASSERT_EQ(KXaddConstraints(em.model, k, types.data(), nullptr, beg.data(), coef.data(),
                                     idx.data(), rhs.data()),
                    0)
              << where;
          for (int q = 0; q < k; q++) {
            const int i = m + q;
            r.b.push_back(rhs[q]);
            r.types.push_back(types[q]);
            for (int e = beg[q]; e < beg[q + 1]; e++) r.cols[idx[e]][i] = coef[e];
          }
          break;
        }
        case 8: {
          const int k = 1 + pick(2);
          std::vector<int> beg{0}, rows;
          std::vector<double> coef, c, l, u;
          for (int q = 0; q < k; q++) {
            for (int i = 0; i < m; i++)
              if (u01(rng) < 0.3) {
                rows.push_back(i);
                coef.push_back(val());
              }
            beg.push_back(static_cast<int>(rows.size()));
            c.push_back(val());
            l.push_back(-1);
            u.push_back(2);
          }
          ASSERT_EQ(KXaddVariables(em.model, k, nullptr, nullptr, beg.data(), nullptr, coef.data(),
                                   rows.data(), c.data(), l.data(), u.data()),
                    0)
              << where;
          for (int q = 0; q < k; q++) {
            r.c.push_back(c[q]);
            r.l.push_back(l[q]);
            r.u.push_back(u[q]);
            r.cols.emplace_back();
            for (int e = beg[q]; e < beg[q + 1]; e++) r.cols.back()[rows[e]] = coef[e];
          }
          break;
        }
        case 9:
          if (m > 3) {
            int i = pick(m);
            ASSERT_EQ(KXdeleteConstraints(em.model, 1, &i), 0) << where;
            r.b.erase(r.b.begin() + i);
            r.types.erase(r.types.begin() + i);
            for (auto &col : r.cols) {
              std::map<int, double> nc;
              for (auto [row, v] : col)
                if (row != i) nc[row > i ? row - 1 : row] = v;
              col.swap(nc);
            }
          }
          break;
        case 10:
          if (n > 4) {
            int j = pick(n);
            ASSERT_EQ(KXdeleteVariables(em.model, 1, &j), 0) << where;
            r.c.erase(r.c.begin() + j);
            r.l.erase(r.l.begin() + j);
            r.u.erase(r.u.begin() + j);
            r.cols.erase(r.cols.begin() + j);
          }
          break;
        case 11: {
          double v = val();
          ASSERT_EQ(KXmodifyObjConstant(em.model, v), 0) << where;
          r.objConst = v;
          break;
        }
        default: {
          // Solve now and then so that changes meet a live solver state.
          const Solved s = solve(em.model);
          ASSERT_EQ(s.rc, 0) << where;
          solves++;
          break;
        }
      }
      if (step % 10 == 9) {
        expect_same(em.model, r, where);
        if (HasFatalFailure()) return;
        const Solved a = solve(em.model);
        kxtest::EnvModel fresh;
        ASSERT_EQ(r.load(fresh.model), 0);
        const Solved b = solve(fresh.model);
        ASSERT_EQ(a.rc, 0) << where;
        ASSERT_EQ(b.rc, 0) << where;
        ASSERT_EQ(a.status, b.status) << where;
        if (a.status == KX_STATUS_BASIC_OPTIMAL) {
          EXPECT_NEAR(a.obj, b.obj, 1e-7 * std::max(1.0, std::fabs(b.obj))) << where;
          const kxtest::LPCheck ck = kxtest::check_lp_solution(em.model);
          EXPECT_LE(ck.pinf, 1e-7) << where;
          EXPECT_LE(ck.dinf, 1e-7) << where;
        }
      }
    }
    EXPECT_GT(solves, 0);
  }
}

// Failing calls return their code and change nothing.
TEST(ModifyErrors, CodesAndModelUnchanged) {
  kxtest::EnvModel em;
  std::mt19937 rng(3);
  Ref r = random_ref(rng, 5, 6);
  ASSERT_EQ(r.load(em.model), 0);
  pModel md = em.model;
  int bad = 7, neg = -1, ok = 1, dup[2] = {1, 1};
  double v = 3.0, vv[2] = {1, 2};
  char badType = 'X', okType = 'L';
  // Counts of 0 are no-ops, even on a null model.
  EXPECT_EQ(KXmodifyRHS(nullptr, 0, nullptr, nullptr), 0);
  EXPECT_EQ(KXmodifyRHS(nullptr, 1, &ok, &v), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXmodifyRHS(md, 1, &bad, &v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyRHS(md, 1, &neg, &v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyRHS(md, 1, &ok, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXmodifyLowerBounds(md, 1, &bad, &v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyUpperBounds(md, 1, &bad, &v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyObjective(md, 1, &bad, &v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyConstraintType(md, 1, &ok, &badType), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyConstraintType(md, 1, &bad, &okType), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyVariableType(md, 1, &ok, &badType), KXERR_BAD_VARIABLE_TYPE);
  EXPECT_EQ(KXmodifyAj(md, 99, 1, &ok, &v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyAj(md, 0, 1, &bad, &v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXmodifyAij(md, 0, 99, v), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXdeleteAj(md, 0, 1, &bad), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXdeleteConstraints(md, 2, dup), KXERR_INDEX_DUPLICATE);
  EXPECT_EQ(KXdeleteConstraints(md, 1, &bad), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXdeleteVariables(md, 2, dup), KXERR_INDEX_DUPLICATE);
  EXPECT_EQ(KXdeleteVariables(md, 1, &bad), KXERR_INDEX_OUT_OF_RANGE);
  {
    int beg[2] = {0, 2}, idx[2] = {1, 1};
    EXPECT_EQ(KXaddConstraints(md, 1, &okType, nullptr, beg, vv, idx, &v), KXERR_INDEX_DUPLICATE);
    int idx2[2] = {1, 99};
    EXPECT_EQ(KXaddConstraints(md, 1, &okType, nullptr, beg, vv, idx2, &v), KXERR_INDEX_OUT_OF_RANGE);
    EXPECT_EQ(KXaddConstraints(md, 1, &badType, nullptr, beg, vv, idx, &v), KXERR_BAD_CONSTRAINT_TYPE);
    EXPECT_EQ(KXaddConstraints(md, 1, &okType, nullptr, beg, nullptr, idx, &v), KXERR_ILLEGAL_NULL_POINTER);
  }
  {
    int beg[2] = {0, 1}, rows[1] = {99};
    char t = 'C', tb = 'Z';
    EXPECT_EQ(KXaddVariables(md, 1, &t, nullptr, beg, nullptr, vv, rows, &v, nullptr, nullptr),
              KXERR_INDEX_OUT_OF_RANGE);
    int rows2[1] = {0};
    EXPECT_EQ(KXaddVariables(md, 1, &tb, nullptr, beg, nullptr, vv, rows2, &v, nullptr, nullptr),
              KXERR_PARAMETER_OUT_OF_RANGE);
  }
  expect_same(md, r, "after failures");
  // Setting a bound to the value it holds keeps the solution's status.
  int st = 0;
  ASSERT_EQ(KXoptimize(md, KX_METHOD_DSIMPLEX, &st), 0);
  int j = 0;
  double same = r.u[0];
  ASSERT_EQ(KXmodifyUpperBounds(md, 1, &j, &same), 0);
  int st2 = 0;
  KXgetSolutionStatus(md, &st2);
  EXPECT_EQ(st2, st);
  // A semi-continuous column refuses a bound change outside its load.
  int sc = 2;
  double sl = 0.5, su = 3;
  ASSERT_EQ(KXloadSemiContData(md, 1, &sc, &sl, &su), 0);
  EXPECT_EQ(KXmodifyUpperBounds(md, 1, &sc, &v), KXERR_BAD_INPUT_VALUE);
}

// Gaps: room opened in the columns shows nowhere in the data, and gaps that are
// large enough already change nothing.
TEST(ModifyGrowth, GapsAndAllocSizes) {
  std::mt19937 rng(9);
  Ref r = random_ref(rng, 5, 6);
  kxtest::EnvModel em;
  ASSERT_EQ(r.load(em.model), 0);
  std::vector<int> extra(6, 3);
  ASSERT_EQ(KXaddEmptySpacesAcolumns(em.model, extra.data()), 0);
  expect_same(em.model, r, "after gaps");
  const Model *m = em.model;
  std::vector<int> begBefore(m->Abeg, m->Abeg + 7);
  ASSERT_EQ(KXaddEmptySpacesAcolumns(em.model, extra.data()), 0);
  EXPECT_EQ(std::vector<int>(m->Abeg, m->Abeg + 7), begBefore);
  for (int j = 0; j < 6; j++) EXPECT_GE(m->Abeg[j + 1] - m->Abeg[j] - m->Alen[j], 3);
  ASSERT_EQ(KXsetProbAllocSizes(em.model, 50, 60, 500, -1, -1, -1, -1), 0);
  EXPECT_GE(m->nConsAlloc, 50);
  EXPECT_GE(m->nVarsAlloc, 60);
  EXPECT_GE(m->nnzAlloc, 500);
  ASSERT_EQ(KXsetProbAllocSizes(em.model, 1, 1, 1, -1, -1, -1, -1), 0);  // below use: kept
  expect_same(em.model, r, "after sizes");
  // Many single additions grow by the fixed margin.
  for (int k = 0; k < 30; k++) {
    int beg[2] = {0, 1}, idx[1] = {k % 6};
    double coef = 1.0, rhs = 5.0;
    char t = 'L';
    ASSERT_EQ(KXaddConstraints(em.model, 1, &t, nullptr, beg, &coef, idx, &rhs), 0);
    r.b.push_back(rhs);
    r.types.push_back(t);
    r.cols[k % 6][r.m() - 1] = coef;
  }
  expect_same(em.model, r, "after additions");
}

// Warm starts on small random models after a new row: the new logical is basic
// and the answer matches a fresh load.
TEST(ModifyWarm, AddedRowKeepsTheBasis) {
  std::mt19937 rng(77);
  for (int t = 0; t < 10; t++) {
    Ref r = random_ref(rng, 12, 16);
    kxtest::EnvModel em;
    ASSERT_EQ(r.load(em.model), 0);
    Solved s0 = solve(em.model);
    ASSERT_EQ(s0.rc, 0);
    if (s0.status != KX_STATUS_BASIC_OPTIMAL) continue;
    std::vector<int> cs(16);
    std::vector<double> x(16);
    KXgetPrimalSolution(em.model, x.data());
    int beg[2] = {0, 3}, idx[3] = {0, 1, 2};
    double coef[3] = {1, 1, 1}, rhs = x[0] + x[1] + x[2] - 0.5;
    char type = 'L';
    ASSERT_EQ(KXaddConstraints(em.model, 1, &type, nullptr, beg, coef, idx, &rhs), 0);
    std::vector<int> rs(13);
    ASSERT_EQ(KXgetBasis(em.model, cs.data(), rs.data()), 0);
    EXPECT_GE(rs[12], 0) << "new logical basic";
    const Solved a = solve(em.model);
    r.b.push_back(rhs);
    r.types.push_back(type);
    for (int q = 0; q < 3; q++) r.cols[q][12] = 1;
    kxtest::EnvModel fresh;
    ASSERT_EQ(r.load(fresh.model), 0);
    const Solved b = solve(fresh.model);
    ASSERT_EQ(a.status, b.status);
    if (a.status == KX_STATUS_BASIC_OPTIMAL) {
      EXPECT_NEAR(a.obj, b.obj, 1e-7 * std::max(1.0, std::fabs(b.obj)));
    }
  }
}

}  // namespace
