// pricing.cpp - choice of the entering column (devex, or partial Dantzig scans
// for models with many more columns than rows), the update of the reduced costs
// and devex weights after a pivot, and the switch between the two modes.
#include <cmath>

#include "simplex/glp.h"

void devex_reset(GLP *g) {
  for (int j = 0; j < g->nm; j++) {
    g->devexw[j] = 1.0;
    g->devexRef[j] = g->cbas[j] < 0 ? 1 : 0;
  }
}

namespace {

// Dual infeasibility of a nonbasic column, signed so that the entering
// direction is +1 when positive: returns the violation, sets *dir.
inline double dual_viol(const GLP *g, int j, int *dir) {
  const int st = g->cbas[j];
  const double d = g->rdc[j];
  double v;
  if (!spx_status_viol(st, d, g->ceps, &v)) return 0.0;
  if (st >= -2 && !(g->cub[j] > g->clb[j])) return 0.0;  // fixed columns never enter
  *dir = d < 0 ? 1 : -1;
  return v;
}

// Whether nonbasic j may enter: its reduced cost violates its status and it
// is not fixed; the score goes to *score (free columns first: they never leave).
inline bool enters(const GLP *g, int j, double tol, bool devex, double *score) {
  const int st = g->cbas[j];
  if (st >= 0) return false;
  double v;
  if (!spx_status_viol(st, g->rdc[j], tol, &v)) return false;
  if (st >= -2 && !(g->cub[j] > g->clb[j])) return false;
  double s = devex ? v * v / g->devexw[j] : v;
  if (st <= -3) s *= 1e3;
  *score = s;
  return true;
}

// Best column over [from, to): largest score (violation squared over its
// weight with devex) of the columns that may enter.
int scan_range(GLP *g, int from, int to, double *best) {
  int q = -1;
  double b = *best;
  const char *rej = g->rejected.data();
  const double tol = g->ceps;
  const bool devex = g->pricing == 2;
  for (int j = from; j < to; j++) {
    double s;
    if (!enters(g, j, tol, devex, &s) || rej[j]) continue;
    if (s > b) {
      b = s;
      q = j;
    }
  }
  *best = b;
  return q;
}

// Devex pricing over the candidate list, rebuilt from every column when it is
// not valid or comes out empty (so that no column is ever missed).  Equal
// scores go to the lowest column, as in a full scan.
int scan_candidates(GLP *g) {
  const int nm = g->nm;
  const double tol = g->ceps;
  const bool devex = g->pricing == 2;
  const char *rej = g->rejected.data();
  if (g->inCand.size() != static_cast<size_t>(nm)) {
    g->inCand.assign(nm, 0);
    g->cand.clear();
    g->candValid = false;
  }
  char *in = g->inCand.data();
  std::vector<int> &cand = g->cand;
  if (g->candValid) {
    int q = -1;
    double best = 0.0;
    size_t keep = 0;
    for (size_t k = 0; k < cand.size(); k++) {
      const int j = cand[k];
      double s;
      if (!enters(g, j, tol, devex, &s)) {
        in[j] = 0;
        continue;
      }
      cand[keep++] = j;
      if (!rej[j] && (s > best || (s == best && q >= 0 && j < q))) {
        best = s;
        q = j;
      }
    }
    cand.resize(keep);
    if (q >= 0) return q;
  }
  for (int j : cand) in[j] = 0;
  cand.clear();
  int q = -1;
  double best = 0.0;
  for (int j = 0; j < nm; j++) {
    double s;
    if (!enters(g, j, tol, devex, &s)) continue;
    cand.push_back(j);
    in[j] = 1;
    if (!rej[j] && s > best) {
      best = s;
      q = j;
    }
  }
  g->candValid = true;
  return q;
}

}  // namespace

void spx_cand_touch(GLP *g, int j) {
  if (!g->candValid || g->inCand[j]) return;
  double s;
  if (!enters(g, j, g->ceps, g->pricing == 2, &s)) return;
  g->inCand[j] = 1;
  g->cand.push_back(j);
}

int pgetpj(GLP *g) {
  while (g->nforced > 0) {
    const int j = g->forced[--g->nforced];
    int dir;
    if (g->cbas[j] < 0 && dual_viol(g, j, &dir) > 0) return j;
  }
  const int nm = g->nm;
  double best = 0.0;
  if (g->pricing == 2) return scan_candidates(g);
  if (nm < 4 * g->m || nm < 2000) return scan_range(g, 0, nm, &best);
  // Partial scans: windows of a few multiples of m columns starting where the
  // last scan ended; a window that finds nothing widens to the whole range.
  const int w = std::max(g->m, 1000) * 3;
  int start = g->scanStart % nm;
  int q = -1;
  int scanned = 0;
  while (scanned < nm) {
    const int len = std::min(w, nm - scanned);
    const int end = start + len;
    if (end <= nm) {
      q = scan_range(g, start, end, &best);
    } else {
      const int q1 = scan_range(g, start, nm, &best);
      const int q2 = scan_range(g, 0, end - nm, &best);
      q = q2 >= 0 ? q2 : q1;
    }
    scanned += len;
    start = end % nm;
    if (q >= 0) break;
  }
  g->scanStart = start;
  return q;
}

void pupdrdc(GLP *g, int q, int r, double alphaq, int leave) {
  (void)r;
  const SpxVec &row = g->pivrow;
  const double thetad = g->rdc[q] / alphaq;
  double *rdc = g->rdc.data();
  const double *a = row.val.data();
  const bool devex = g->pricing == 2;
  const double wq = g->devexw[q];
  double *w = g->devexw.data();
  const double wscale = wq / (alphaq * alphaq);
  for (int k = 0; k < row.count; k++) {
    const int j = row.ind[k];
    const double aj = a[j];
    rdc[j] -= thetad * aj;
    if (devex) {
      const double nw = aj * aj * wscale;
      if (nw > w[j]) w[j] = nw;
    }
    spx_cand_touch(g, j);
  }
  rdc[q] = 0.0;
  rdc[leave] = -thetad;
  w[leave] = std::max(wscale, 1.0);
}

void pckstp(GLP *g) {
  // Devex pays off on all but the widest models: switch to partial scans only
  // when the model is very wide and the iterations are mostly degenerate.
  const double iters = g->iter - g->olditer;
  if (iters <= 0) return;
  const double deg = g->ndeg - g->olddeg;
  if (g->ppricing == 0) {
    g->pricing = 0;
  } else if (g->ppricing == -1) {
    const bool wide = g->n > 20 * g->m;
    if (g->pricing == 2 && wide && deg / iters < 0.2) {
      spx_debug(g, 2, "Switch to partial\n");
      g->pricing = 0;
    } else if (g->pricing == 0 && (!wide || deg / iters > 0.5)) {
      spx_debug(g, 2, "Switch to devex\n");
      devex_reset(g);
      g->pricing = 2;
    }
  }
  g->olditer = g->iter;
  g->olddeg = g->ndeg;
}
