// Random small LPs whose verdict is known by construction: feasible and
// bounded, infeasible, or unbounded.  Optimal answers are checked against the
// optimality conditions, not against stored numbers.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "support/kx_test_util.h"
#include "simplex/lp_check.h"

namespace {

const double INF = KX_INFINITY;

enum Kind { kBounded, kInfeasible, kUnbounded };

struct RandomLP {
  kxtest::SmallLP lp;
  std::vector<double> range;  // row ranges (INF for none)
};

// Feasible point x0 first; rows built around A x0.  Columns: boxed, lower-only
// with a cost that pushes to the bound, upper-only likewise, or free with no cost,
// so that the objective is bounded whatever the rows are.
RandomLP make(std::mt19937 &rng, Kind kind) {
  std::uniform_int_distribution<int> mDist(1, 14), nDist(1, 18), pick(0, 99);
  std::uniform_real_distribution<double> u01(0.0, 1.0);
  auto val = [&]() { return std::round((u01(rng) * 20 - 10) * 4) / 4; };  // quarter steps
  RandomLP r;
  kxtest::SmallLP &lp = r.lp;
  const int m = mDist(rng), n = nDist(rng);
  lp.m = m;
  lp.n = n;
  lp.sense = pick(rng) < 30 ? -1 : 1;
  std::vector<std::vector<double>> A(m, std::vector<double>(n, 0.0));
  for (int i = 0; i < m; i++)
    for (int j = 0; j < n; j++)
      if (pick(rng) < 40) A[i][j] = val();
  std::vector<double> x0(n);
  for (int j = 0; j < n; j++) {
    const int t = pick(rng);
    double lo, up, c = val();
    x0[j] = val();
    if (t < 55) {  // boxed (sometimes fixed)
      lo = x0[j] - std::floor(u01(rng) * 4);
      up = t < 5 ? lo : x0[j] + std::floor(u01(rng) * 4);
      if (t < 5) x0[j] = lo;
    } else if (t < 75) {  // lower only, cost pushing down in the solve's sense
      lo = x0[j] - std::floor(u01(rng) * 3);
      up = INF;
      c = lp.sense * std::fabs(c);
    } else if (t < 90) {  // upper only
      lo = -INF;
      up = x0[j] + std::floor(u01(rng) * 3);
      c = -lp.sense * std::fabs(c);
    } else {  // free, no cost
      lo = -INF;
      up = INF;
      c = 0;
    }
    lp.l.push_back(lo);
    lp.u.push_back(up);
    lp.c.push_back(c);
  }
  r.range.assign(m, INF);
  for (int i = 0; i < m; i++) {
    double act = 0;
    for (int j = 0; j < n; j++) act += A[i][j] * x0[j];
    const int t = pick(rng);
    const double slack = std::floor(u01(rng) * 3);
    if (t < 35) {
      lp.types.push_back('L');
      lp.b.push_back(act + slack);
    } else if (t < 70) {
      lp.types.push_back('G');
      lp.b.push_back(act - slack);
    } else if (t < 85) {
      lp.types.push_back('E');
      lp.b.push_back(act);
    } else if (t < 95) {  // ranged
      lp.types.push_back('L');
      lp.b.push_back(act + slack);
      r.range[i] = slack + 1 + std::floor(u01(rng) * 3);
    } else {
      lp.types.push_back('N');
      lp.b.push_back(0);
    }
  }
  if (kind == kInfeasible) {
    // Two rows on the same columns asking for sum <= s and sum >= s + 1.
    std::vector<double> row(n, 0.0);
    double act = 0;
    for (int j = 0; j < n; j++)
      if (pick(rng) < 60 || j == 0) {
        row[j] = 1 + std::floor(u01(rng) * 3);
        act += row[j] * x0[j];
      }
    A.push_back(row);
    A.push_back(row);
    lp.types.push_back('L');
    lp.b.push_back(act);
    lp.types.push_back('G');
    lp.b.push_back(act + 1);
    r.range.push_back(INF);
    r.range.push_back(INF);
    lp.m += 2;
  }
  if (kind == kUnbounded) {
    // A new column that only helps: no upper bound, a cost improving upwards,
    // entries only in 'G' rows with positive sign or 'L' rows with negative.
    for (int i = 0; i < lp.m; i++) {
      double a = 0;
      if (lp.types[i] == 'G' && r.range[i] >= INF && pick(rng) < 50) a = 1 + std::floor(u01(rng) * 2);
      if (lp.types[i] == 'L' && r.range[i] >= INF && pick(rng) < 50) a = -1 - std::floor(u01(rng) * 2);
      A[i].push_back(a);
    }
    lp.n += 1;
    lp.l.push_back(0);
    lp.u.push_back(INF);
    lp.c.push_back(-lp.sense * (1 + std::floor(u01(rng) * 3)));
  }
  lp.beg.assign(1, 0);
  for (int j = 0; j < lp.n; j++) {
    for (int i = 0; i < lp.m; i++)
      if (A[i][j] != 0) {
        lp.rows.push_back(i);
        lp.coef.push_back(A[i][j]);
      }
    lp.beg.push_back(static_cast<int>(lp.rows.size()));
  }
  return r;
}

struct Tally {
  int optimal = 0, infeasible = 0, unbounded = 0;
};

void run_batch(int count, int seed, int method, int scale, Tally *t) {
  std::mt19937 rng(seed);
  for (int k = 0; k < count; k++) {
    const Kind kind = static_cast<Kind>(k % 3);
    RandomLP r = make(rng, kind);
    kxtest::EnvModel em;
    ASSERT_EQ(r.lp.load(em.model), 0) << "lp " << k;
    bool ranged = false;
    for (double v : r.range) ranged |= v < INF;
    if (ranged) {
      ASSERT_EQ(kxi_load_ranges(em.model, r.range.data()), 0);
    }
    em.model->splexPam->lpScale = scale;
    em.model->splexPam->lpPreLevel = 0;
    int st = 0;
    ASSERT_EQ(KXoptimize(em.model, method, &st), 0) << "lp " << k;
    switch (kind) {
      case kBounded: {
        ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL) << "lp " << k;
        const kxtest::LPCheck c = kxtest::check_lp_solution(em.model);
        EXPECT_LE(c.pinf, 1e-7) << "lp " << k;
        EXPECT_LE(c.dinf, 1e-7) << "lp " << k;
        EXPECT_LE(c.djErr, 1e-7) << "lp " << k;
        EXPECT_LE(c.slackErr, 1e-7) << "lp " << k;
        EXPECT_LE(c.objErr, 1e-9) << "lp " << k;
        t->optimal++;
        break;
      }
      case kInfeasible:
        EXPECT_EQ(st, KX_STATUS_INFEASIBLE) << "lp " << k;
        t->infeasible += st == KX_STATUS_INFEASIBLE;
        break;
      case kUnbounded:
        EXPECT_EQ(st, KX_STATUS_UNBOUNDED) << "lp " << k;
        t->unbounded += st == KX_STATUS_UNBOUNDED;
        break;
    }
  }
}

}  // namespace

TEST(RandomLP, PrimalVerdictsMatchTheConstruction) {
  Tally t;
  run_batch(300, 12345, KX_METHOD_PSIMPLEX, 1, &t);
  EXPECT_EQ(t.optimal, 100);
  EXPECT_EQ(t.infeasible, 100);
  EXPECT_EQ(t.unbounded, 100);
}

TEST(RandomLP, UnscaledAndOtherScalingModes) {
  for (int scale = 0; scale <= 3; scale++) {
    Tally t;
    run_batch(60, 777 + scale, KX_METHOD_PSIMPLEX, scale, &t);
    EXPECT_EQ(t.optimal + t.infeasible + t.unbounded, 60) << "scale " << scale;
  }
}

TEST(RandomLP, SolvesAreDeterministic) {
  std::mt19937 rng(99);
  RandomLP r = make(rng, kBounded);
  double obj[2];
  int it[2];
  for (int k = 0; k < 2; k++) {
    kxtest::EnvModel em;
    ASSERT_EQ(r.lp.load(em.model), 0);
    ASSERT_EQ(kxi_load_ranges(em.model, r.range.data()), 0);
    em.model->splexPam->lpPreLevel = 0;
    ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, nullptr), 0);
    KXgetObjective(em.model, &obj[k]);
    KXgetInfo(em.model, KX_IINFO_SIM_ITER, &it[k]);
  }
  EXPECT_EQ(obj[0], obj[1]);
  EXPECT_EQ(it[0], it[1]);
}
