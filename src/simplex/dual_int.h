// dual_int.h - the working record of one dual simplex run, shared by the dual's
// files (dual.cpp, dual_pricing.cpp, dual_ratio.cpp) and by nothing else.
//
// Conventions.  Variable j in 0..n+m-1 is nonbasic at its lower bound (cbas -1),
// its upper bound (-2) or free at zero (-3); a fixed variable is held at -1 and
// never enters.  x_B = B^-1 (b - N x_N).  A pivot on position r with entering
// column q moves the reduced costs by d_j -= theta * alpha_rj, where alpha_r is
// row r of B^-1 N (g->pivrow) and theta = d_q / alpha_rq.  A leaving variable
// below its lower bound has s = -1 (theta <= 0), above its upper bound s = +1.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "simplex/glp.h"

namespace dual {

// Pricing modes after the parameter has been read.
enum : int { DP_DANTZIG = 0, DP_STEEPEST = 1, DP_DEVEX = 3, DP_ROWCOUNT = 4 };

struct Cand {
  int j;
  double ratio;   // d_j / |alpha| in the feasible orientation (>= 0 up to the tolerance)
  double harris;  // (d_j + tol) / |alpha|
  double absAlpha;
  double range;   // ub - lb, or infinity
};

struct Work {
  GLP *g = nullptr;
  int m = 0, n = 0, nm = 0;
  int phase = 2;          // 1: the auxiliary box problem, 2: the true bounds
  int pricing = DP_STEEPEST;
  bool longStep = true;   // bound-flipping ratio test
  std::vector<double> cost;    // objv plus shifts and perturbation
  std::vector<double> infeas;  // by position: squared violation, 0 when within reps
  // The positions with a violation, in no order, and where each one stands in
  // the list (-1: not listed).  Set through set_infeas only.
  std::vector<int> infList, infAt;
  std::vector<double> trueLb, trueUb, trueRhs;  // kept while phase 1 runs
  std::vector<char> rowRej;    // positions refused until the next factorisation
  int nRowRej = 0;
  std::vector<Cand> cands;     // candidates of the ratio test on the pivot row
  double candMin = 1e300;      // their smallest Harris bound
  int candDropped = 0;         // candidates left out, each past candMin times a cap
  std::vector<double> sufHarris;
  std::vector<int> flipList;   // columns flipped by the last ratio test
  SpxVec tau;                  // B^-1 rho for the steepest-edge update
  SpxVec dcol;                 // the column of the flips, then its FTRAN
  int sinceFactor = 0;         // updates since the last factorisation
  bool perturbed = false;      // cost perturbation in place
  bool shifted = false;        // cost shifts made by the ratio test or a check
  int pertRemovals = 0;
  int consecDegen = 0;
  int winIter = 0, winDeg = 0;  // start of the window of the degeneracy share
  int raises = 0;              // perturbation raises so far
  double pertScale = 0.0;      // tie scale of the full cost perturbation; 0 until it is made
  int noProgressChecks = 0;
  double lastObj = -1e300;
  double alphaTol = 1e-9;
  bool factorFresh = false;    // the next refresh may skip the factorisation
  int tightenings = 0;         // rounds of tolerance tightening at the end
};

// infeas[p] = v, keeping the list of violated positions whole.
inline void set_infeas(Work &w, int p, double v) {
  w.infeas[p] = v;
  int &at = w.infAt[p];
  if (v > 0.0) {
    if (at < 0) {
      at = static_cast<int>(w.infList.size());
      w.infList.push_back(p);
    }
  } else if (at >= 0) {
    const int last = w.infList.back();
    w.infList[at] = last;
    w.infAt[last] = at;
    w.infList.pop_back();
    at = -1;
  }
}

// Whether num / den, as the division rounds it, is sure to exceed bound
// (den > 0, bound > 0), found by a multiplication: true only when num exceeds
// den * bound by a relative margin of 1e-14, far above the rounding of the
// product, of the margin and of the division.  The product must be a normal
// number for that to hold, so tiny ones answer false.
inline bool ratio_surely_above(double num, double den, double bound) {
  const double lim = den * bound;
  return lim > 1e-290 && num > lim * (1.0 + 1e-14);
}

inline bool has_lo(const GLP *g, int j) { return g->clb[j] > -g->infin; }
inline bool has_up(const GLP *g, int j) { return g->cub[j] < g->infin; }
inline bool is_fixed(const GLP *g, int j) { return g->clb[j] == g->cub[j]; }

// Squared violation of the basic variable j, 0 when within the tolerance.
inline double violation2(const GLP *g, int j) {
  const double v = g->x[j];
  if (v < g->clb[j] - g->reps) {
    const double e = g->clb[j] - v;
    return e * e;
  }
  if (v > g->cub[j] + g->reps) {
    const double e = v - g->cub[j];
    return e * e;
  }
  return 0.0;
}

// Visit the entries of a vector that may be dense (count -1) or listed.
template <class F>
inline void for_each(const SpxVec &v, int len, F &&f) {
  if (v.count < 0) {
    for (int i = 0; i < len; i++)
      if (v.val[i] != 0.0) f(i, v.val[i]);
  } else {
    for (int k = 0; k < v.count; k++) f(v.ind[k], v.val[v.ind[k]]);
  }
}

// dual_pricing.cpp
void init_weights(Work &w, bool exact);
int choose_row(Work &w);  // position of the leaving variable, or -1

inline constexpr double kMinWeight = 1e-4;  // floor of the steepest-edge weights

// Weights after a pivot on r with column g->pivcol, BTRAN norm beta = g->pivnorm
// and tau = B^-1 rho (steepest edge only).  also(p, alpha_p) is called for every
// entry of the column, r's included, in the same pass and in the column's order,
// so that the caller's own work on the column (the primal step) reads it once.
template <class Also>
void update_weights(Work &w, int r, double alphaR, Also &&also) {
  GLP *g = w.g;
  const int m = g->m;
  double *wt = g->dwts.data();
  const double beta = g->pivnorm;
  const SpxVec &col = g->pivcol;
  switch (w.pricing) {
    case DP_STEEPEST: {
      const double *tv = w.tau.val.data();
      for_each(col, m, [&](int p, double a) {
        also(p, a);
        if (p == r) return;
        const double k = a / alphaR;
        double nw = wt[p] + k * (k * beta - 2.0 * tv[p]);
        // The new row is rho_p - k rho_r; its norm is at least k^2 times the
        // part of rho_r outside rho_p, which the floor stands for.
        wt[p] = std::max(nw, kMinWeight);
      });
      wt[r] = std::max(beta / (alphaR * alphaR), kMinWeight);
      break;
    }
    case DP_DEVEX: {
      for_each(col, m, [&](int p, double a) {
        also(p, a);
        if (p == r) return;
        const double k = a / alphaR;
        wt[p] = std::max(wt[p], beta * k * k);
        if (wt[p] < 1e-8) wt[p] = 1.00000001;
      });
      wt[r] = std::max(1.0, beta / (alphaR * alphaR));
      break;
    }
    case DP_ROWCOUNT: {
      for_each(col, m, [&](int p, double a) {
        also(p, a);
        if (p == r) return;
        const double k = a / alphaR;
        wt[p] = std::max(wt[p], beta * k * k - 2.0 * a * a);
        if (wt[p] < kMinWeight) wt[p] = kMinWeight;
      });
      wt[r] = std::max(wt[r], beta / (alphaR * alphaR));
      break;
    }
    default:
      for_each(col, m, also);
      break;
  }
}

// dual_ratio.cpp
// The pivot row g->pivrow from rho, for a leaving variable of sign s, and the
// candidates of the ratio test in w.cands (see candMin, candDropped).
void pivot_row(Work &w, int s, const SpxVec &rho);
// Choose the entering column for the row pivot_row made, with its sign s and
// primal infeasibility delta > 0.  Returns q or -1 (no candidate: a dual ray
// when no column was flipped either).  *t receives the dual step (>= 0) and
// w.flipList the columns passed.
int ratio_test(Work &w, int s, double delta, double *t);

}  // namespace dual
