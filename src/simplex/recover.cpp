// recover.cpp - factorisation of the basis with repair of a singular basis:
// the columns without a pivot leave, the logicals of the rows without a pivot
// enter in their positions.
#include <cmath>

#include "simplex/glp.h"

int spx_repair_basis(GLP *g, const char *tag) {
  SLU *h = g->lu->slu;
  const int cnt = slu_get_singular_cnt(h);
  if (cnt <= 0) {
    spx_debug(g, 1, "\n%s: Warning -- no dependent rows/cols were found.\n", tag);
    spx_debug(g, 1, "%s: Terminating with numerical error.\n", tag);
    return SPX_NUMERIC;
  }
  const int n = g->n;
  int done = 0;
  for (int k = 0; k < cnt; k++) {
    int p = -1, r = -1;
    if (slu_get_singular_idx(h, &p, &r, k) != 0 || p < 0 || r < 0) continue;
    const int out = g->rbas[p];
    const int in = n + r;
    if (g->cbas[in] >= 0) continue;  // cannot happen for a row without a pivot
    g->cbas[out] = -1;
    spx_place_nonbasic(g, out);
    g->rbas[p] = in;
    g->cbas[in] = p;
    g->rdc[in] = 0.0;
    g->candValid = false;
    spx_debug(g, 2, "%s: colout=%6d, colin=%6d at row=%6d (%6d,%6d)\n", tag, out, in, r, p, k);
    done++;
  }
  spx_debug(g, 1, "%s: Done, pivoted in %d artificals\n", tag, done);
  return done > 0 ? 0 : SPX_NUMERIC;
}

int spx_factor(GLP *g) {
  const char *tag = "restore_artbas";
  int repaired = 0;
  for (int round = 0; round < 20; round++) {
    int luStat = 0;
    const int rc = KXI_lu_fact(g->lu, g->rbas.data(), static_cast<int>(g->iter), 0, &luStat);
    g->nfact++;
    g->nupdates = 0;
    g->nflips = 0;
    if (rc == KXI_LU_ERR_MEMORY || luStat == 2) return SPX_NOMEM;
    if (rc == 0 && luStat == 0) {
      g->factorFailed = 0;
      if (repaired) {
        spx_debug(g, 1, "\n%s: Stable basis constructed... \n", tag);
        g->recompute = 1;
        g->bestobj = g->bestinf = 1e30;
        devex_reset(g);
      }
      // Pricing may use every column again.
      if (g->nrejected) {
        std::fill(g->rejected.begin(), g->rejected.end(), 0);
        g->nrejected = 0;
      }
      return 0;
    }
    if (luStat != 1) return SPX_NUMERIC;
    if (repaired == 0) spx_debug(g, 1, "\n%s: Pivoting in artificials...\n", tag);
    else spx_debug(g, 1, "\n%s: Repaired basis is still singular... Adding more artificials...\n", tag);
    if (g->factorFailed) devex_reset(g);
    g->factorFailed = 1;
    const int r2 = spx_repair_basis(g, tag);
    if (r2) return r2;
    repaired++;
  }
  return SPX_NUMERIC;
}

int KXI_spx_bupdate(GLP *g) {
  // Only the factorisation path lives here; the update itself is part of the
  // pivot (primal.cpp) so that its numbers are at hand.
  return spx_factor(g);
}
