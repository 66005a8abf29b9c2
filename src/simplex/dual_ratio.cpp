// dual_ratio.cpp - the dual ratio tests.  Both work on the pivot row g->pivrow
// and the reduced costs.  The Harris test takes, among the breakpoints within
// the largest step that keeps every reduced cost feasible to the tolerance, the
// one with the largest pivot.  The long-step test walks the breakpoints in
// groups of Harris width: while passing a whole group leaves the leaving row
// infeasible (its slope stays positive), the boxed columns of the group flip to
// their other bound; the group where the slope turns gives the entering column,
// again the one with the largest pivot.
#include <algorithm>
#include <cmath>

#include "simplex/dual_int.h"

namespace dual {

namespace {

// Candidates of the pivot row for the sign s.  Returns their count; *minHarris
// is the smallest Harris bound among them.
int collect(Work &w, int s, double *minHarris) {
  GLP *g = w.g;
  const SpxVec &row = g->pivrow;
  const double *a = row.val.data();
  const double *d = g->rdc.data();
  const int *cbas = g->cbas.data();
  const double tol = g->ceps, atol = w.alphaTol, inf = g->infin;
  w.cands.clear();
  double hmin = 1e300;
  for (int k = 0; k < row.count; k++) {
    const int j = row.ind[k];
    const double sa = s * a[j];
    const double aa = std::fabs(sa);
    if (aa <= atol) continue;
    const int st = cbas[j];
    if (st >= 0) continue;
    const double lo = g->clb[j], up = g->cub[j];
    if (lo == up) continue;  // fixed: never enters
    if (st == -1) {
      if (sa <= 0) continue;
    } else if (st == -2) {
      if (sa >= 0) continue;
    }
    const double dfeas = sa > 0 ? d[j] : -d[j];
    Cand c;
    c.j = j;
    c.absAlpha = aa;
    c.ratio = dfeas / aa;
    c.harris = (dfeas + tol) / aa;
    c.range = (lo > -inf && up < inf) ? up - lo : inf;
    hmin = std::min(hmin, c.harris);
    w.cands.push_back(c);
  }
  *minHarris = hmin;
  return static_cast<int>(w.cands.size());
}

// Harris over cands[from..) given their smallest Harris bound tmax: the largest
// pivot among the breakpoints within it.
int harris_pick(const Work &w, size_t from, double tmax) {
  int best = -1;
  double bestA = 0.0;
  for (size_t i = from; i < w.cands.size(); i++) {
    const Cand &c = w.cands[i];
    if (c.ratio <= tmax && c.absAlpha > bestA) {
      bestA = c.absAlpha;
      best = static_cast<int>(i);
    }
  }
  return best;
}

}  // namespace

int ratio_test(Work &w, int s, double delta, double *t) {
  GLP *g = w.g;
  w.flipList.clear();
  *t = 0.0;
  double T = 1e300;
  const int k = collect(w, s, &T);
  if (k == 0) return -1;
  if (!w.longStep) {
    const int b = harris_pick(w, 0, T);
    if (b < 0) return -1;
    *t = w.cands[b].ratio;
    return w.cands[b].j;
  }
  // Only the breakpoints up to the point where the slope can turn matter: find
  // a step bound T that covers them, then sort those alone.
  std::vector<Cand> &c = w.cands;
  if (T < 0) T = 0;
  size_t keep = 0;
  for (int round = 0; round < 60; round++) {
    double sum = 0.0;
    size_t cnt = 0;
    bool unboxed = false;
    for (const Cand &x : c)
      if (x.ratio <= T) {
        cnt++;
        if (x.range >= g->infin) unboxed = true;
        else sum += x.absAlpha * x.range;
      }
    keep = cnt;
    if (unboxed || sum >= delta || cnt == c.size()) break;
    T = T <= 0 ? 1e-12 : T * 4.0;
  }
  // Move the kept ones to the front, the rest after, then sort the front.  The
  // smallest Harris bound of the rest (all of whose ratios exceed T) bounds the
  // last group of the kept part.
  double restMin = 1e300;
  {
    size_t at = 0;
    for (size_t i = 0; i < c.size(); i++) {
      if (c[i].ratio <= T) std::swap(c[i], c[at++]);
      else restMin = std::min(restMin, c[i].harris);
    }
    keep = at;
  }
  std::sort(c.begin(), c.begin() + static_cast<long>(keep), [](const Cand &u, const Cand &v) {
    return u.ratio < v.ratio || (u.ratio == v.ratio && u.j < v.j);
  });
  // Suffix minima of the Harris bounds over the kept part, with the bound of
  // the rest folded in.
  w.sufHarris.resize(keep + 1);
  w.sufHarris[keep] = restMin;
  for (size_t i = keep; i-- > 0;) w.sufHarris[i] = std::min(w.sufHarris[i + 1], c[i].harris);

  double slope = delta;
  size_t i = 0;
  while (i < keep) {
    const double tH = w.sufHarris[i];
    size_t e = i;
    double sum = 0.0;
    bool unboxed = false;
    while (e < keep && c[e].ratio <= tH) {
      if (c[e].range >= g->infin) unboxed = true;
      else sum += c[e].absAlpha * c[e].range;
      e++;
    }
    if (e == i) e = i + 1;  // rounding: take at least one
    // A slope that the flips leave within the feasibility tolerance has
    // turned: flipping the whole group and pivoting on nothing would leave
    // the row where it is.
    if (!unboxed && slope - sum > g->reps) {
      for (size_t f = i; f < e; f++) w.flipList.push_back(c[f].j);
      slope -= sum;
      i = e;
      continue;
    }
    // The slope turns in this group: the largest pivot enters.
    size_t best = i;
    for (size_t f = i + 1; f < e; f++)
      if (c[f].absAlpha > c[best].absAlpha) best = f;
    *t = c[best].ratio;
    return c[best].j;
  }
  if (keep < c.size()) {
    // Everything kept flipped and the slope is still positive: the rest holds
    // the entering column.
    const int b = harris_pick(w, keep, restMin);
    if (b >= 0) {
      *t = c[b].ratio;
      return c[b].j;
    }
  }
  return -1;
}

}  // namespace dual
