// dual_pricing.cpp - choice of the leaving row of the dual simplex and the row
// weights: dual steepest edge (exact weights ||e_r B^-1||^2, updated with the
// extra FTRAN of the BTRAN result), a devex-like approximation, the row-count
// weights, or none (largest infeasibility).
#include <algorithm>
#include <cmath>

#include "simplex/dual_int.h"

namespace dual {

void init_weights(Work &w, bool exact) {
  GLP *g = w.g;
  const int m = g->m, n = g->n;
  g->dwts.assign(m, 1.0);
  if (w.pricing == DP_ROWCOUNT) {
    // Entries of each basic variable's row in the row form of A, plus its logical.
    for (int p = 0; p < m; p++) {
      const int j = g->rbas[p];
      const int i = j >= n ? j - n : -1;
      g->dwts[p] = i >= 0 ? 1.0 + (g->rowBeg[i + 1] - g->rowBeg[i]) : 1.0;
    }
  } else if (w.pricing == DP_STEEPEST && exact) {
    bool allLogical = true;
    for (int p = 0; p < m && allLogical; p++)
      if (g->rbas[p] < n) allLogical = false;
    if (!allLogical) {
      // One BTRAN per row.
      SpxVec &e = g->work, &rho = g->work2;
      e.clear(m);
      rho.clear(m);
      for (int p = 0; p < m; p++) {
        e.ind[0] = p;
        e.val[p] = 1.0;
        e.count = 1;
        if (spx_btran(g, e, rho) != 0) {
          rho.clear(m);
          g->dwts.assign(m, 1.0);
          break;
        }
        double s = 0.0;
        for_each(rho, m, [&](int, double v) { s += v * v; });
        g->dwts[p] = std::max(s, kMinWeight);
        rho.clear(m);
      }
    }
  }
  g->dwtsHead = g->rbas;
}

int choose_row(Work &w) {
  GLP *g = w.g;
  const int m = g->m;
  const double *inf = w.infeas.data();
  const double *wt = g->dwts.data();
  const char *rej = w.rowRej.data();
  // The largest violation over its weight, compared crosswise; the first
  // position wins between equals.  Products that round to the same value are
  // compared by their rounding errors, that is exactly: a comparison of
  // rounded products alone is not transitive, and the choice would then hang
  // on the order of the search.  (Rounding is monotone, so where the rounded
  // products differ, the exact ones differ the same way.)
  const bool dantzig = w.pricing == DP_DANTZIG;
  int best = -1;
  double bestV = 0.0, bestW = 1.0;
  auto consider = [&](int p) {
    const double v = inf[p];
    if (v == 0.0 || rej[p]) return;
    const double wp = dantzig ? 1.0 : wt[p];
    const double a = v * bestW, b = bestV * wp;
    bool above = a > b;
    if (a == b) {
      const double ea = std::fma(v, bestW, -a), eb = std::fma(bestV, wp, -b);
      above = ea > eb || (ea == eb && (best < 0 || p < best));
    }
    if (above) {
      best = p;
      bestV = v;
      bestW = wp;
    }
  };
  const int nList = static_cast<int>(w.infList.size());
  if (2 * nList < m) {
    // Few violated rows: go over their list.
    for (int k = 0; k < nList; k++) consider(w.infList[k]);
  } else {
    for (int p = 0; p < m; p++) consider(p);
  }
  return best;
}

}  // namespace dual
