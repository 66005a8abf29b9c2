// Dual fixing: bounds on the row duals, from the row senses and from the column
// singletons, bound each column's reduced cost; a column whose reduced cost cannot
// be negative goes to its lower bound, one whose reduced cost cannot be positive to
// its upper bound.  A singleton's bound on its row is never used for the singleton
// itself, so every fixing rests on constraints that stay in the model.
#include <algorithm>
#include <cmath>

#include "presolve/genpre.h"

int genpre_dual_fixing(GenPre &g) {
  lpdata &lp = g.lp;
  const int m = lp.m, n = lp.n;
  const double inf = kPreInf;
  // Bounds from the row senses, and the tightest singleton bounds with their source.
  std::vector<double> tlo(m, -inf), thi(m, inf), slo(m, -inf), shi(m, inf);
  std::vector<int> srcLo(m, -1), srcHi(m, -1);
  for (int i = 0; i < m; ++i) {
    if (!lp.rowLive[i]) continue;
    if (pre_inf(lp.rl[i])) thi[i] = 0.0;
    if (pre_inf(lp.ru[i])) tlo[i] = 0.0;
  }
  for (int j = 0; j < n; ++j) {
    if (!lp.colLive[j] || lp.col[j].size() != 1) continue;
    const int i = lp.col[j][0].idx;
    const double a = lp.col[j][0].val, y = lp.cost[j] / a;
    const bool lInf = lp.lb[j] <= -kActInf, uInf = lp.ub[j] >= kActInf;
    bool upper = false, lower = false;  // the singleton bounds y from above / below
    if (lInf && uInf) upper = lower = true;
    else if (!lInf && uInf) (a > 0 ? upper : lower) = true;
    else if (lInf && !uInf) (a > 0 ? lower : upper) = true;
    if (upper && y < shi[i]) {
      shi[i] = y;
      srcHi[i] = j;
    }
    if (lower && y > slo[i]) {
      slo[i] = y;
      srcLo[i] = j;
    }
  }
  const double t = std::max(g.feasTol, g.optTol);
  for (int i = 0; i < m; ++i) {
    if (!lp.rowLive[i]) continue;
    double lo = std::max(tlo[i], slo[i]), hi = std::min(thi[i], shi[i]);
    if (lo > hi + (std::fabs(lo) + 1.0) * t) return kPassUnbounded;
  }
  const double zt = 1e-12;
  int changed = kPassNone;
  for (int j = 0; j < n; ++j) {
    if (!lp.colLive[j] || lp.col[j].empty()) continue;
    double dmin = lp.cost[j], dmax = lp.cost[j];
    bool minInf = false, maxInf = false;
    for (const LpEntry &e : lp.col[j]) {
      const int i = e.idx;
      double lo = std::max(tlo[i], srcLo[i] == j ? -inf : slo[i]);
      double hi = std::min(thi[i], srcHi[i] == j ? inf : shi[i]);
      // d = c - sum a y: its least value takes y at hi for a > 0, at lo for a < 0.
      if (e.val > 0) {
        if (hi >= inf) minInf = true; else dmin -= e.val * hi;
        if (lo <= -inf) maxInf = true; else dmax -= e.val * lo;
      } else {
        if (lo <= -inf) minInf = true; else dmin -= e.val * lo;
        if (hi >= inf) maxInf = true; else dmax -= e.val * hi;
      }
      if (minInf && maxInf) break;
    }
    const double l = lp.lb[j], u = lp.ub[j], sc = zt * (1.0 + std::fabs(lp.cost[j]));
    if (!minInf && dmin >= -sc) {
      if (l > -kActInf) {
        genpre_remove_fixe(g, j, l);
        changed = kPassChanged;
      } else if (dmin > t) {
        return kPassUnbounded;
      }
    } else if (!maxInf && dmax <= sc) {
      if (u < kActInf) {
        genpre_remove_fixe(g, j, u);
        changed = kPassChanged;
      } else if (dmax < -t) {
        return kPassUnbounded;
      }
    }
  }
  return changed;
}
