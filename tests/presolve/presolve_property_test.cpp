// Property tests of the LP presolve on small random models: for each pass alone
// (and for the default level), presolve, solve the reduced model with the dense
// reference solver, postsolve, and check the optimality conditions and the basis
// of the result on the original model.  Verdicts of the presolve are checked
// against the reference solver's verdict on the original model.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

#include "presolve/presolve.h"
#include "ref_lp.h"
#include "support/kx_test_util.h"

namespace {

struct Rand {
  std::mt19937 g;
  explicit Rand(unsigned seed) : g(seed) {}
  int i(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(g); }
  bool p(double q) { return std::uniform_real_distribution<double>(0, 1)(g) < q; }
};

struct RandLP {
  int m = 0, n = 0, sense = 1;
  std::vector<std::vector<double>> A;  // m x n
  std::vector<double> c, l, u, rhs, range;
  std::vector<char> type;
  bool ranged = false;
};

constexpr double kInf = 1e30;

double nonzero(Rand &r) {
  static const double v[] = {-3, -2, -1, -0.5, 0.5, 1, 2, 3};
  return v[r.i(0, 7)];
}

// A random model whose rows hold at a random point x0 (unless made infeasible),
// with the structures that the pass `focus` looks for planted in it.
RandLP make_lp(unsigned seed, int focus) {
  Rand r(seed * 7919u + static_cast<unsigned>(focus));
  RandLP lp;
  lp.m = r.i(1, 4);
  lp.n = r.i(1, 6);
  lp.sense = r.p(0.3) ? -1 : 1;
  lp.A.assign(lp.m, std::vector<double>(lp.n, 0.0));
  for (auto &row : lp.A)
    for (double &a : row)
      if (r.p(0.5)) a = nonzero(r);
  std::vector<double> x0(lp.n);
  for (int j = 0; j < lp.n; ++j) {
    int k = r.i(0, 9);
    double lo = 0, up = kInf;
    if (k <= 3) { lo = 0; up = kInf; }
    else if (k <= 5) { lo = r.i(-2, 1); up = lo + r.i(1, 4); }
    else if (k == 6) { lo = -kInf; up = r.i(-1, 3); }
    else if (k == 7) { lo = -kInf; up = kInf; }
    else if (k == 8) { lo = up = r.i(-1, 2); }
    else { lo = r.i(-3, -1); up = kInf; }
    lp.l.push_back(lo);
    lp.u.push_back(up);
    double base = lo > -kInf ? lo : (up < kInf ? up : 0.0);
    double span = (lo > -kInf && up < kInf) ? up - lo : 3.0;
    double v = base + (lo > -kInf ? 1 : -1) * 0.5 * r.i(0, static_cast<int>(2 * span));
    if (lo > -kInf && v < lo) v = lo;
    if (up < kInf && v > up) v = up;
    x0[j] = v;
    lp.c.push_back(r.p(0.3) ? 0.0 : r.i(-3, 3));
  }
  // Planted structures.
  int dupA = -1, dupB = -1;
  if (focus == 64 && lp.m >= 2 && r.p(0.8)) {
    int a = r.i(0, lp.m - 1), b = (a + 1) % lp.m;
    dupA = a;
    dupB = b;
    double lam = nonzero(r);
    for (int j = 0; j < lp.n; ++j) lp.A[b][j] = lam * lp.A[a][j];
  }
  if (focus == 32 && lp.n >= 2 && r.p(0.8)) {
    int a = r.i(0, lp.n - 1), b = (a + 1) % lp.n;
    double lam = nonzero(r);
    for (int i = 0; i < lp.m; ++i) lp.A[i][b] = lam * lp.A[i][a];
    if (r.p(0.5)) lp.c[b] = lam * lp.c[a];
  }
  if (focus == 16 && lp.n >= 2) {
    int i = r.i(0, lp.m - 1), a = r.i(0, lp.n - 1), b = (a + 1 + r.i(0, lp.n - 2)) % lp.n;
    for (int j = 0; j < lp.n; ++j) lp.A[i][j] = 0;
    lp.A[i][a] = nonzero(r);
    lp.A[i][b] = nonzero(r);
  }
  if (focus == 2 && r.p(0.5)) {
    // A free column singleton, or a singleton row, or an empty row.
    int i = r.i(0, lp.m - 1), j = r.i(0, lp.n - 1);
    int kind = r.i(0, 2);
    if (kind == 0) {
      for (int q = 0; q < lp.m; ++q) lp.A[q][j] = 0;
      lp.A[i][j] = nonzero(r);
      lp.l[j] = -kInf;
      lp.u[j] = kInf;
    } else if (kind == 1) {
      for (int q = 0; q < lp.n; ++q) lp.A[i][q] = q == j ? nonzero(r) : 0.0;
    } else {
      for (int q = 0; q < lp.n; ++q) lp.A[i][q] = 0;
    }
  }
  lp.type.resize(lp.m);
  lp.rhs.resize(lp.m);
  lp.range.assign(lp.m, kInf);
  for (int i = 0; i < lp.m; ++i) {
    double act = 0;
    for (int j = 0; j < lp.n; ++j) act += lp.A[i][j] * x0[j];
    int k = r.i(0, 9);
    // Forcing rows: a side placed at the row's least or largest activity.
    if (focus == 2 && r.p(0.25)) {
      double mn = 0, mx = 0;
      bool okMin = true, okMax = true;
      for (int j = 0; j < lp.n; ++j) {
        double a = lp.A[i][j];
        if (a == 0) continue;
        double lo = a > 0 ? lp.l[j] : lp.u[j], hi = a > 0 ? lp.u[j] : lp.l[j];
        if (std::fabs(lo) >= kInf) okMin = false; else mn += a * lo;
        if (std::fabs(hi) >= kInf) okMax = false; else mx += a * hi;
      }
      if (okMin) { lp.type[i] = 'L'; lp.rhs[i] = mn; continue; }
      if (okMax) { lp.type[i] = 'G'; lp.rhs[i] = mx; continue; }
    }
    if (k <= 2) { lp.type[i] = 'L'; lp.rhs[i] = act + 0.5 * r.i(0, 3); }
    else if (k <= 4) { lp.type[i] = 'G'; lp.rhs[i] = act - 0.5 * r.i(0, 3); }
    else if (k <= 7) { lp.type[i] = 'E'; lp.rhs[i] = act; }
    else if (k == 8) {
      lp.type[i] = 'L';
      lp.rhs[i] = act + 0.5 * r.i(0, 2);
      lp.range[i] = lp.rhs[i] - act + 0.5 * r.i(0, 2);
      lp.ranged = true;
    } else { lp.type[i] = 'N'; lp.rhs[i] = 0; }
  }
  if (dupB >= 0 && r.p(0.6)) {
    // The copy binds at x0 and its partner is looser: the merged side comes from
    // the copy, whose dual must be recovered.
    double actA = 0, actB = 0;
    for (int j = 0; j < lp.n; ++j) {
      actA += lp.A[dupA][j] * x0[j];
      actB += lp.A[dupB][j] * x0[j];
    }
    const bool le = r.p(0.5);
    lp.type[dupB] = le ? 'L' : 'G';
    lp.rhs[dupB] = actB;
    lp.type[dupA] = r.p(0.5) ? 'E' : (le ? 'L' : 'G');
    lp.rhs[dupA] = lp.type[dupA] == 'E' ? actA : actA + (le ? 1 : -1) * 0.5 * r.i(1, 3);
    if (lp.type[dupA] == 'E') lp.type[dupA] = le ? 'L' : 'G';
    lp.range[dupA] = lp.range[dupB] = kInf;
  }
  if (r.p(0.08)) {
    int i = r.i(0, lp.m - 1);
    if (lp.type[i] == 'L') lp.rhs[i] -= 20;
    else if (lp.type[i] != 'N') lp.rhs[i] += 20;
  }
  return lp;
}

int load(pModel model, const RandLP &lp) {
  std::vector<int> beg(lp.n + 1, 0), rows;
  std::vector<double> coef;
  for (int j = 0; j < lp.n; ++j) {
    for (int i = 0; i < lp.m; ++i)
      if (lp.A[i][j] != 0) {
        rows.push_back(i);
        coef.push_back(lp.A[i][j]);
      }
    beg[j + 1] = static_cast<int>(rows.size());
  }
  if (rows.empty()) {
    rows.push_back(0);
    coef.push_back(0);
  }
  int rc = KXloadLPData(model, lp.m, lp.n, lp.sense, 0.0, lp.c.data(), lp.rhs.data(), lp.type.data(),
                        beg[lp.n], beg.data(), nullptr, coef.data(), rows.data(), lp.l.data(),
                        lp.u.data());
  if (rc == 0 && lp.ranged) rc = kxi_load_ranges(model, lp.range.data());
  return rc;
}

struct Outcome {
  int verdict = 0;
  bool reduced = false;
};

// One presolve, reference solve and postsolve; failures are reported with `tag`.
Outcome run_case(const RandLP &lp, int mask, const std::string &tag) {
  Outcome o;
  kxtest::EnvModel em;
  EXPECT_EQ(load(em.model, lp), 0) << tag;
  Model *model = em.model;
  const reflp::Solution ref = reflp::solve(reflp::from_model(model));
  PostStack *ps = nullptr;
  EXPECT_EQ(allocate_poststack(&ps, 16), 0);
  Model *red = nullptr;
  int verdict = 0;
  EXPECT_EQ(gen_pre(model, &red, ps, mask, 0, 1000, -1.0, &verdict, 0), 0) << tag;
  o.verdict = verdict;
  if (verdict == kPreInfeasible) {
    EXPECT_EQ(ref.status, reflp::kInfeasible) << tag << ": presolve says infeasible";
  } else if (verdict == kPreUnbounded) {
    EXPECT_NE(ref.status, reflp::kOptimal) << tag << ": presolve says unbounded";
  } else if (verdict == kPreNoChange) {
    EXPECT_EQ(red, nullptr) << tag;
  } else {
    o.reduced = true;
    EXPECT_NE(red, nullptr) << tag;
    const reflp::Dense rd = reflp::from_model(red);
    const reflp::Solution rs = reflp::solve(rd);
    if (ref.status == reflp::kInfeasible) {
      EXPECT_EQ(rs.status, reflp::kInfeasible) << tag << ": reduced model lost the infeasibility";
    } else if (ref.status == reflp::kUnbounded) {
      EXPECT_EQ(rs.status, reflp::kUnbounded) << tag;
    } else {
      EXPECT_EQ(rs.status, reflp::kOptimal) << tag << ": reduced model not optimal";
      if (rs.status == reflp::kOptimal) {
        EXPECT_NEAR(rs.obj, ref.obj, 1e-7 * (1 + std::fabs(ref.obj))) << tag;
        reflp::install(red, rd, rs);
        int status = 0;
        EXPECT_EQ(genpre_postsolv_prob(red, model, ps, &status), 0) << tag;
        const reflp::Check c = reflp::check(model);
        EXPECT_LE(c.pinf, 1e-7) << tag;
        EXPECT_LE(c.dinf, 1e-7) << tag;
        EXPECT_LE(c.compl_, 1e-7) << tag;
        EXPECT_TRUE(c.basisOk) << tag << ": " << c.why;
        EXPECT_NEAR(model->sol->pobj, ref.obj, 1e-7 * (1 + std::fabs(ref.obj))) << tag;
        EXPECT_LE(model->sol->pinfeas, 1e-7) << tag;
      }
    }
  }
  if (red) KXdeleteModel(&red);
  deallocate_poststack(&ps);
  return o;
}

struct PassCase {
  const char *name;
  int mask;
};

class EachPass : public ::testing::TestWithParam<PassCase> {};

TEST_P(EachPass, PostsolvedSolutionIsOptimalOnTheOriginal) {
  const PassCase pc = GetParam();
  int reduced = 0;
  // KXPRE_SEEDS asks for a longer run.
  const unsigned kSeeds = std::getenv("KXPRE_SEEDS") ? static_cast<unsigned>(std::atoi(std::getenv("KXPRE_SEEDS"))) : 400u;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    const RandLP lp = make_lp(seed, pc.mask == 126 ? 2 : pc.mask);
    const std::string tag = std::string(pc.name) + " seed " + std::to_string(seed);
    Outcome o = run_case(lp, pc.mask, tag);
    reduced += o.reduced;
    if (::testing::Test::HasFailure()) break;
  }
  // The planted structures must give the pass real work.
  EXPECT_GE(reduced, static_cast<int>(kSeeds / 10)) << pc.name;
}

INSTANTIATE_TEST_SUITE_P(Passes, EachPass,
                         ::testing::Values(PassCase{"simple", kPreSimple},
                                           PassCase{"simple_confirm", kPreSimple | kPreConfirm},
                                           PassCase{"dualfix", kPreDualFix},
                                           PassCase{"doubleton", kPreEliminate},
                                           PassCase{"dupcols", kPreDupCols},
                                           PassCase{"duprows", kPreDupRows},
                                           PassCase{"all", 126}),
                         [](const ::testing::TestParamInfo<PassCase> &i) { return std::string(i.param.name); });

}  // namespace
