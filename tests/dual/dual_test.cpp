// The dual simplex on small LPs: random models of known verdict under every
// pricing rule and ratio test, checked against the optimality conditions and
// against the primal simplex; phase 1 cases (free columns, costs that point to
// an open side), the cutoff, iteration limits and warm starts after changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "support/kx_test_util.h"
#include "simplex/dual_int.h"
#include "simplex/lp_check.h"

namespace {

const double INF = KX_INFINITY;

enum Kind { kBounded, kInfeasible };

// A random LP with a known feasible point x0 (bounded kind) or a row that no
// point satisfies (infeasible kind).  Every column has a bound on the side its
// cost pushes to, so a feasible model has an optimum.
kxtest::SmallLP make_lp(std::mt19937 &rng, Kind kind, int maxM = 20, int maxN = 25) {
  std::uniform_int_distribution<int> mDist(2, maxM), nDist(2, maxN), pick(0, 99);
  std::uniform_real_distribution<double> u01(0.0, 1.0);
  auto val = [&]() { return std::round((u01(rng) * 20 - 10) * 4) / 4; };
  kxtest::SmallLP lp;
  const int m = mDist(rng), n = nDist(rng);
  lp.m = m;
  lp.n = n;
  lp.sense = pick(rng) < 30 ? -1 : 1;
  std::vector<std::vector<double>> A(m, std::vector<double>(n, 0.0));
  for (int i = 0; i < m; i++)
    for (int j = 0; j < n; j++)
      if (pick(rng) < 35) A[i][j] = val();
  std::vector<double> x0(n);
  for (int j = 0; j < n; j++) {
    const int t = pick(rng);
    double lo, up, c = val();
    x0[j] = val();
    if (t < 50) {
      lo = x0[j] - std::floor(u01(rng) * 4);
      up = t < 5 ? lo : x0[j] + std::floor(u01(rng) * 4);
      if (t < 5) x0[j] = lo;
    } else if (t < 72) {
      lo = x0[j] - std::floor(u01(rng) * 3);
      up = INF;
      c = lp.sense * std::fabs(c);
    } else if (t < 92) {
      lo = -INF;
      up = x0[j] + std::floor(u01(rng) * 3);
      c = -lp.sense * std::fabs(c);
    } else {
      lo = -INF;
      up = INF;
      c = 0;
    }
    lp.l.push_back(lo);
    lp.u.push_back(up);
    lp.c.push_back(c);
  }
  for (int i = 0; i < m; i++) {
    double act = 0;
    for (int j = 0; j < n; j++) act += A[i][j] * x0[j];
    const int t = pick(rng);
    char type = t < 40 ? 'L' : (t < 75 ? 'G' : (t < 95 ? 'E' : 'N'));
    double slackv = std::floor(u01(rng) * 3);
    double b = type == 'L' ? act + slackv : (type == 'G' ? act - slackv : act);
    lp.types.push_back(type);
    lp.b.push_back(b);
  }
  if (kind == kInfeasible) {
    // Row 0 duplicated with a right-hand side that contradicts it.
    const int i = 0;
    lp.types[i] = 'E';
    std::vector<double> row = A[i];
    A.push_back(row);
    lp.types.push_back('E');
    lp.b.push_back(lp.b[i] + 5.0);
    lp.m = m + 1;
    bool any = false;
    for (double v : row) any = any || v != 0.0;
    if (!any) A[i][0] = A[m][0] = 1.0;
  }
  for (int j = 0; j < n; j++) {
    lp.beg.push_back(static_cast<int>(lp.coef.size()));
    for (int i = 0; i < lp.m; i++)
      if (A[i][j] != 0.0) {
        lp.rows.push_back(i);
        lp.coef.push_back(A[i][j]);
      }
    lp.len.push_back(static_cast<int>(lp.coef.size()) - lp.beg.back());
  }
  lp.beg.push_back(static_cast<int>(lp.coef.size()));
  return lp;
}

struct Result {
  int rc = -1, status = 0;
  double obj = 0;
  kxtest::LPCheck check;
  double iters = 0;
};

Result solve(pModel model, int method) {
  Result r;
  r.rc = KXoptimize(model, method, &r.status);
  KXgetObjective(model, &r.obj);
  if (r.status == KX_STATUS_BASIC_OPTIMAL) r.check = kxtest::check_lp_solution(model);
  int it = 0;
  KXgetInfo(model, KX_IINFO_SIM_ITER, &it);
  r.iters = it;
  return r;
}

Result solve_lp(const kxtest::SmallLP &lp, int method, int dratio, int dpricing) {
  kxtest::EnvModel em;
  EXPECT_EQ(lp.load(em.model), 0);
  KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
  if (dratio >= 0) KXsetModelIntParameter(em.model, KX_IPARAM_LP_DRATIO, dratio);
  if (dpricing >= -1) KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DPRICING, dpricing);
  return solve(em.model, method);
}

void expect_optimal(const Result &r, double ref, const char *what) {
  ASSERT_EQ(r.rc, 0) << what;
  ASSERT_EQ(r.status, KX_STATUS_BASIC_OPTIMAL) << what;
  EXPECT_LE(r.check.pinf, 1e-7) << what;
  EXPECT_LE(r.check.dinf, 1e-7) << what;
  EXPECT_LE(r.check.djErr, 1e-7) << what;
  EXPECT_NEAR(r.obj, ref, 1e-6 * std::max(1.0, std::fabs(ref))) << what;
}

// Every ratio test and pricing rule reaches the optimum the primal finds.
TEST(DualRandom, EveryRuleReachesThePrimalOptimum) {
  std::mt19937 rng(7);
  for (int t = 0; t < 60; t++) {
    const kxtest::SmallLP lp = make_lp(rng, kBounded);
    const Result p = solve_lp(lp, KX_METHOD_PSIMPLEX, -1, -2);
    ASSERT_EQ(p.status, KX_STATUS_BASIC_OPTIMAL) << "model " << t;
    for (int dratio = 0; dratio <= 3; dratio++) {
      const Result d = solve_lp(lp, KX_METHOD_DSIMPLEX, dratio, -2);
      expect_optimal(d, p.obj, ("dratio " + std::to_string(dratio) + " model " + std::to_string(t)).c_str());
    }
    for (int dp = -1; dp <= 4; dp++) {
      const Result d = solve_lp(lp, KX_METHOD_DSIMPLEX, -1, dp);
      expect_optimal(d, p.obj, ("dpricing " + std::to_string(dp) + " model " + std::to_string(t)).c_str());
    }
    const Result f = solve_lp(lp, KX_METHOD_FREE, -1, -2);
    expect_optimal(f, p.obj, "method 0");
  }
}

TEST(DualRandom, InfeasibleModelsEndInfeasible) {
  std::mt19937 rng(11);
  for (int t = 0; t < 40; t++) {
    const kxtest::SmallLP lp = make_lp(rng, kInfeasible);
    for (int dratio : {0, 1}) {
      const Result d = solve_lp(lp, KX_METHOD_DSIMPLEX, dratio, -2);
      EXPECT_EQ(d.rc, 0);
      EXPECT_TRUE(d.status == KX_STATUS_INFEASIBLE || d.status == KX_STATUS_INFORUNB)
          << "model " << t << " status " << d.status;
    }
  }
}

// min -x - y, free x and y, x + y <= 4, x - y <= 2, -x + y <= 2: both free
// columns have costs no bound can make feasible, so phase 1 must run.
TEST(DualPhases, FreeColumnsNeedPhaseOne) {
  kxtest::SmallLP lp;
  lp.m = 3;
  lp.n = 2;
  lp.c = {-1, -1};
  lp.b = {4, 2, 2};
  lp.types = {'L', 'L', 'L'};
  lp.l = {-INF, -INF};
  lp.u = {INF, INF};
  lp.beg = {0, 3, 6};
  lp.len = {3, 3};
  lp.rows = {0, 1, 2, 0, 1, 2};
  lp.coef = {1, 1, -1, 1, -1, 1};
  for (int phase : {0, 1, 3}) {
    kxtest::EnvModel em;
    ASSERT_EQ(lp.load(em.model), 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DUAL_PHASE, phase);
    const Result r = solve(em.model, KX_METHOD_DSIMPLEX);
    expect_optimal(r, -4.0, "free columns");
  }
}

// Phase 3 clamps every bound to plus or minus bndinf: a run whose end rests on
// such a bound is finished by the primal, any other ends in the dual; both
// reach the primal's optimum, and infeasible models end infeasible.
TEST(DualPhases, PhaseThreeEndsWhereThePrimalDoes) {
  std::mt19937 rng(31);
  int handedOver = 0, endedInDual = 0;
  for (int t = 0; t < 40; t++) {
    const kxtest::SmallLP lp = make_lp(rng, kBounded);
    const Result p = solve_lp(lp, KX_METHOD_PSIMPLEX, -1, -2);
    ASSERT_EQ(p.status, KX_STATUS_BASIC_OPTIMAL) << "model " << t;
    for (int dratio : {0, 1}) {
      kxtest::EnvModel em;
      ASSERT_EQ(lp.load(em.model), 0);
      KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
      KXsetModelIntParameter(em.model, KX_IPARAM_LP_DRATIO, dratio);
      KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DUAL_PHASE, 3);
      KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRTFG, 1);
      testing::internal::CaptureStdout();
      const Result d = solve(em.model, KX_METHOD_DSIMPLEX);
      const std::string out = testing::internal::GetCapturedStdout();
      expect_optimal(d, p.obj, ("phase 3, dratio " + std::to_string(dratio) + " model " + std::to_string(t)).c_str());
      if (out.find("at artifical bounds") != std::string::npos) handedOver++;
      else endedInDual++;
    }
    // A cutoff the optimum beats must not stop the run, though the objective
    // of a point on made-up bounds may pass it.
    kxtest::EnvModel ec;
    ASSERT_EQ(lp.load(ec.model), 0);
    KXsetModelIntParameter(ec.model, KX_IPARAM_LP_PRELEVEL, 0);
    KXsetModelIntParameter(ec.model, KX_IPARAM_SPLEX_DUAL_PHASE, 3);
    KXsetModelIntParameter(ec.model, KX_IPARAM_SOLVER_USECUTOFFVAL, 1);
    KXsetModelDouParameter(ec.model, KX_DPARAM_SOLVER_CUTOFFVAL, p.obj + lp.sense * (1.0 + 0.1 * std::fabs(p.obj)));
    expect_optimal(solve(ec.model, KX_METHOD_DSIMPLEX), p.obj, ("phase 3, cutoff, model " + std::to_string(t)).c_str());
  }
  EXPECT_GE(handedOver, 5);
  EXPECT_GE(endedInDual, 5);
  {
    // min -x, 0 <= x <= 2e15, x <= 3e15: the clamp holds x at 1e15, where the
    // objective passes a cutoff of -1.5e15 that the optimum -2e15 beats.
    kxtest::SmallLP big;
    big.m = big.n = 1;
    big.c = {-1};
    big.l = {0};
    big.u = {2e15};
    big.b = {3e15};
    big.types = {'L'};
    big.beg = {0, 1};
    big.len = {1};
    big.rows = {0};
    big.coef = {1};
    kxtest::EnvModel em;
    ASSERT_EQ(big.load(em.model), 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_SCALE, 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DUAL_PHASE, 3);
    KXsetModelIntParameter(em.model, KX_IPARAM_SOLVER_USECUTOFFVAL, 1);
    KXsetModelDouParameter(em.model, KX_DPARAM_SOLVER_CUTOFFVAL, -1.5e15);
    const Result r = solve(em.model, KX_METHOD_DSIMPLEX);
    EXPECT_EQ(r.status, KX_STATUS_BASIC_OPTIMAL);
    EXPECT_EQ(r.obj, -2e15);
  }
  for (int t = 0; t < 20; t++) {
    const kxtest::SmallLP lp = make_lp(rng, kInfeasible);
    kxtest::EnvModel em;
    ASSERT_EQ(lp.load(em.model), 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DUAL_PHASE, 3);
    const Result d = solve(em.model, KX_METHOD_DSIMPLEX);
    EXPECT_EQ(d.rc, 0);
    EXPECT_TRUE(d.status == KX_STATUS_INFEASIBLE || d.status == KX_STATUS_INFORUNB)
        << "model " << t << " status " << d.status;
  }
}

// A slack basis with all costs nonnegative at lower bounds is dual feasible at
// once: the dual needs no phase 1 and ends where the primal does.
TEST(DualPhases, DualFeasibleStartAndOpenSides) {
  // min x + 2y s.t. x + y >= 3, x - y <= 1, 0 <= x, y; optimum x=2, y=1: 4.
  kxtest::SmallLP lp;
  lp.m = 2;
  lp.n = 2;
  lp.c = {1, 2};
  lp.b = {3, 1};
  lp.types = {'G', 'L'};
  lp.l = {0, 0};
  lp.u = {INF, INF};
  lp.beg = {0, 2, 4};
  lp.len = {2, 2};
  lp.rows = {0, 1, 0, 1};
  lp.coef = {1, 1, 1, -1};
  kxtest::EnvModel em;
  ASSERT_EQ(lp.load(em.model), 0);
  const Result r = solve(em.model, KX_METHOD_DSIMPLEX);
  expect_optimal(r, 4.0, "dual feasible start");
  // The maximisation of the same is unbounded: the dual ends without an optimum.
  kxtest::SmallLP lq = lp;
  lq.sense = -1;
  kxtest::EnvModel em2;
  ASSERT_EQ(lq.load(em2.model), 0);
  const Result u = solve(em2.model, KX_METHOD_DSIMPLEX);
  EXPECT_EQ(u.rc, 0);
  EXPECT_TRUE(u.status == KX_STATUS_UNBOUNDED || u.status == KX_STATUS_INFORUNB) << u.status;
}

TEST(DualCutoff, StopsBeyondTheOptimumOnly) {
  std::mt19937 rng(23);
  int tried = 0;
  for (int t = 0; t < 30 && tried < 12; t++) {
    const kxtest::SmallLP lp = make_lp(rng, kBounded, 30, 30);
    const Result p = solve_lp(lp, KX_METHOD_DSIMPLEX, -1, -2);
    if (p.status != KX_STATUS_BASIC_OPTIMAL || p.iters < 3) continue;
    tried++;
    const double gap = 1.0 + 0.1 * std::fabs(p.obj);
    // In a minimisation a cutoff below the optimum is passed by the dual bound;
    // in a maximisation one above it.
    const double beyond = p.obj - lp.sense * gap, before = p.obj + lp.sense * gap;
    for (int side = 0; side < 2; side++) {
      kxtest::EnvModel em;
      ASSERT_EQ(lp.load(em.model), 0);
      KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
      KXsetModelIntParameter(em.model, KX_IPARAM_SOLVER_USECUTOFFVAL, 1);
      KXsetModelDouParameter(em.model, KX_DPARAM_SOLVER_CUTOFFVAL, side == 0 ? beyond : before);
      const Result r = solve(em.model, KX_METHOD_DSIMPLEX);
      ASSERT_EQ(r.rc, 0);
      if (side == 0) {
        EXPECT_EQ(r.status, KX_STATUS_CUTOFF) << "model " << t;
      } else {
        expect_optimal(r, p.obj, "cutoff on the far side");
      }
    }
  }
  EXPECT_GE(tried, 5);
}

TEST(DualLimits, IterationLimitThenContinue) {
  std::mt19937 rng(5);
  kxtest::SmallLP lp;
  Result p;
  do {
    lp = make_lp(rng, kBounded, 40, 40);
    p = solve_lp(lp, KX_METHOD_DSIMPLEX, -1, -2);
  } while (p.status != KX_STATUS_BASIC_OPTIMAL || p.iters < 10);
  // Phase 3 too: the point it stops at is one of the model, its basic values
  // free of the rounding of flips across the made-up boxes.  (Presolve off
  // there, so that phase 3 meets the model's own open columns.)
  for (int phase : {0, 3}) {
    kxtest::EnvModel em;
    ASSERT_EQ(lp.load(em.model), 0);
    if (phase == 3) KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DUAL_PHASE, phase);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_ITRLMT, 3);
    int status = 0;
    EXPECT_EQ(KXoptimize(em.model, KX_METHOD_DSIMPLEX, &status), KXERR_ITER_LIMIT);
    const kxtest::LPCheck c = kxtest::check_lp_solution(em.model);
    EXPECT_LE(c.slackErr, 1e-6) << "phase " << phase;
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_ITRLMT, -1);
    const Result r = solve(em.model, KX_METHOD_DSIMPLEX);
    expect_optimal(r, p.obj, "after the limit");
  }
}

// After a change of a bound, a right-hand side or a cost, the next solve starts
// from the last basis; its answer matches a cold solve of the changed model.
TEST(DualWarm, ChangesOfDataWarmStart) {
  std::mt19937 rng(31);
  std::uniform_real_distribution<double> u01(0.0, 1.0);
  int warmIters = 0, coldIters = 0, cases = 0;
  for (int t = 0; t < 40; t++) {
    kxtest::SmallLP lp = make_lp(rng, kBounded, 30, 30);
    kxtest::EnvModel em;
    ASSERT_EQ(lp.load(em.model), 0);
    Result r0 = solve(em.model, KX_METHOD_DSIMPLEX);
    if (r0.status != KX_STATUS_BASIC_OPTIMAL) continue;
    const int kind = t % 3;
    if (kind == 0) {
      const int i = t % lp.m;
      lp.b[i] += lp.types[i] == 'G' ? 0.5 : -0.5;
      ASSERT_EQ(KXmodifyRHS(em.model, 1, &i, &lp.b[i]), 0);
    } else if (kind == 1) {
      const int j = t % lp.n;
      if (lp.u[j] >= INF) continue;
      lp.u[j] = std::max(lp.l[j], lp.u[j] - 0.5);
      ASSERT_EQ(KXmodifyUpperBounds(em.model, 1, &j, &lp.u[j]), 0);
    } else {
      const int j = t % lp.n;
      lp.c[j] += lp.sense * 0.25;
      ASSERT_EQ(KXmodifyObjective(em.model, 1, &j, &lp.c[j]), 0);
    }
    const Result warm = solve(em.model, KX_METHOD_DSIMPLEX);
    const Result cold = solve_lp(lp, KX_METHOD_DSIMPLEX, -1, -2);
    ASSERT_EQ(warm.status, cold.status) << "model " << t;
    if (cold.status != KX_STATUS_BASIC_OPTIMAL) continue;
    expect_optimal(warm, cold.obj, "warm");
    warmIters += static_cast<int>(warm.iters);
    coldIters += static_cast<int>(cold.iters);
    cases++;
  }
  EXPECT_GE(cases, 10);
  EXPECT_LT(warmIters, coldIters);
}

// The ratio test leaves a candidate out by a multiplication when its ratio is
// sure to exceed a bound.  The answer must never contradict the division it
// stands for, down to the last bit, and it must still drop what is plainly
// above (or the candidate pass keeps everything).
TEST(DualRatio, SurelyAboveAgreesWithTheDivision) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> mant(1.0, 2.0);
  std::uniform_int_distribution<int> expo(-60, 60), ulps(-8, 8);
  int plainlyAbove = 0, saidAbove = 0;
  for (int k = 0; k < 200000; k++) {
    const double num = std::ldexp(mant(rng), expo(rng));
    const double den = std::ldexp(mant(rng), expo(rng));
    const double q = num / den;
    // A bound within a few units in the last place of the quotient, or one
    // well below it.
    double bound = q;
    if (k % 4 == 3) {
      bound = q * 0.999;
    } else {
      const int steps = ulps(rng);
      for (int t = 0; t < std::abs(steps); t++) bound = std::nextafter(bound, steps > 0 ? 1e308 : 0.0);
    }
    const bool above = dual::ratio_surely_above(num, den, bound);
    if (above) {
      saidAbove++;
      ASSERT_GT(q, bound) << num << " / " << den << " against " << bound;
    }
    if (q > bound * (1 + 1e-12)) {
      plainlyAbove++;
      EXPECT_TRUE(above) << num << " / " << den << " against " << bound;
    }
  }
  EXPECT_GT(plainlyAbove, 40000);
  EXPECT_EQ(saidAbove, plainlyAbove);
  // Products below the normal range answer no, whatever the quotient.
  EXPECT_FALSE(dual::ratio_surely_above(1.0, 1e-200, 1e-200));
  EXPECT_FALSE(dual::ratio_surely_above(1.0, 1e-300, 1.0));
}

// Whether a/b > c/d exactly, for positive normal doubles whose cross products
// lie within 20 binades of each other (as here): the mantissas as 53-bit
// integers, multiplied in 128 bits, the exponents kept apart.
int exact_ratio_cmp(double a, double b, double c, double d) {
  auto split = [](double x, int64_t &mant) {
    int e;
    mant = static_cast<int64_t>(std::ldexp(std::frexp(x, &e), 53));
    return e - 53;
  };
  int64_t ma, mb, mc, md;
  const int ead = split(a, ma) + split(d, md), ecb = split(c, mc) + split(b, mb);
  __int128 l = static_cast<__int128>(ma) * md, r = static_cast<__int128>(mc) * mb;
  // Bring both to the smaller exponent: 106 bits shifted by at most 20.
  if (ead > ecb) l <<= (ead - ecb);
  else r <<= (ecb - ead);
  return l > r ? 1 : (l < r ? -1 : 0);
}

// The row choice ranks violation over weight.  Three rows whose cross
// products round to the same value pairwise, though the exact ratios differ,
// made the comparison of rounded products intransitive, and the pick then
// hung on the order of the violation list.  The pick must be the exact
// largest ratio (the lowest position among exact equals), in every order.
TEST(DualRowChoice, PicksTheExactLargestInEveryOrder) {
  const int m = 8;
  const int pos[3] = {1, 4, 6};
  GLP g;
  g.m = m;
  g.dwts.assign(m, 1.0);
  dual::Work w;
  w.g = &g;
  w.m = m;
  w.pricing = dual::DP_STEEPEST;
  w.infeas.assign(m, 0.0);
  w.rowRej.assign(m, 0);
  std::mt19937_64 rng(11);
  std::uniform_real_distribution<double> u(1.0, 2.0);
  const double weights[3] = {1.0, 3.0, 5.0};
  int roundedTies = 0;
  for (int k = 0; k < 4000; k++) {
    // Violations near weight times a common ratio, so that the cross
    // products often round alike.
    const double base = u(rng);
    double v[3];
    for (int a = 0; a < 3; a++) {
      v[a] = weights[a] * base;
      const int nudge = static_cast<int>(rng() % 3) - 1;
      if (nudge != 0) v[a] = std::nextafter(v[a], nudge > 0 ? 10.0 : 0.0);
    }
    for (int a = 0; a < 3; a++)
      for (int b = a + 1; b < 3; b++)
        if (v[a] * weights[b] == v[b] * weights[a] && exact_ratio_cmp(v[a], weights[a], v[b], weights[b]) != 0)
          roundedTies++;
    int want = 0;
    for (int a = 1; a < 3; a++)
      if (exact_ratio_cmp(v[a], weights[a], v[want], weights[want]) > 0) want = a;
    for (int a = 0; a < 3; a++) {
      w.infeas[pos[a]] = v[a];
      g.dwts[pos[a]] = weights[a];
    }
    int order[3] = {0, 1, 2};
    do {
      w.infList.assign({pos[order[0]], pos[order[1]], pos[order[2]]});
      ASSERT_EQ(dual::choose_row(w), pos[want])
          << "case " << k << " order " << order[0] << order[1] << order[2] << ": " << v[0] << " " << v[1] << " " << v[2];
    } while (std::next_permutation(order, order + 3));
  }
  // The cases that matter did occur.
  EXPECT_GT(roundedTies, 100);
}

}  // namespace

// A cold start that already satisfies every row, with few costs of the wrong
// sign, goes to the primal at once; the switch parameter, a cutoff or many
// wrong costs keep the dual.  Every route ends at the same optimum.
TEST(DualPhases, PrimalFeasibleStartGoesToThePrimal) {
  // x_i + x_(i+1 mod 10) <= 5, 0 <= x <= 10; the costs are 1 but for the
  // first `wrong` columns, which have -1.
  auto model = [](int wrong) {
    kxtest::SmallLP lp;
    lp.m = lp.n = 10;
    for (int j = 0; j < 10; j++) {
      lp.c.push_back(j < wrong ? -1.0 : 1.0);
      lp.l.push_back(0);
      lp.u.push_back(10);
      lp.b.push_back(5);
      lp.types.push_back('L');
      lp.beg.push_back(2 * j);
      lp.len.push_back(2);
      lp.rows.push_back((j + 9) % 10);
      lp.rows.push_back(j);
      lp.coef.push_back(1);
      lp.coef.push_back(1);
    }
    lp.beg.push_back(20);
    if (lp.rows[0] > lp.rows[1]) std::swap(lp.rows[0], lp.rows[1]);
    return lp;
  };
  struct Case {
    int wrong, dpSwitch, cutoff;
    double opt;
    bool leaps;
  };
  // One wrong cost: -5 at x_0 = 5.  Three (x_0, x_1, x_2): -10 at x_0 = x_2 = 5.
  const Case cases[] = {{1, 1, 0, -5, true}, {1, 0, 0, -5, false}, {1, 1, 1, -5, false}, {3, 1, 0, -10, false}};
  for (const Case &c : cases) {
    const kxtest::SmallLP lp = model(c.wrong);
    kxtest::EnvModel em;
    ASSERT_EQ(lp.load(em.model), 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRTFG, 1);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_DPSWITCH, c.dpSwitch);
    if (c.cutoff) {
      KXsetModelIntParameter(em.model, KX_IPARAM_SOLVER_USECUTOFFVAL, 1);
      KXsetModelDouParameter(em.model, KX_DPARAM_SOLVER_CUTOFFVAL, 100.0);
    }
    testing::internal::CaptureStdout();
    const Result r = solve(em.model, KX_METHOD_DSIMPLEX);
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string what = "wrong " + std::to_string(c.wrong) + " switch " + std::to_string(c.dpSwitch) +
                             " cutoff " + std::to_string(c.cutoff);
    expect_optimal(r, c.opt, what.c_str());
    EXPECT_EQ(out.find("primal feasible: switching to primal") != std::string::npos, c.leaps) << what;
    if (c.leaps) {
      // From there on it is the primal's run from the same start.
      kxtest::EnvModel ep;
      ASSERT_EQ(lp.load(ep.model), 0);
      KXsetModelIntParameter(ep.model, KX_IPARAM_LP_PRELEVEL, 0);
      const Result p = solve(ep.model, KX_METHOD_PSIMPLEX);
      expect_optimal(p, c.opt, "primal");
      EXPECT_EQ(r.iters, p.iters);
    }
  }
}
