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
#include "simplex/pivot_row.h"

namespace dual {

namespace {

// How far past the smallest Harris bound the long step collects at first: a
// power of two, three rounds of its widening by 4.
constexpr double kCapMul = 64.0;

// The candidates of a pivot row for the sign s, fed one entry at a time in
// the order of the row; w.cands receives them.
//
// With capMul >= 1, a candidate whose ratio is sure to exceed capMul times the
// smallest Harris bound seen so far (ratio_surely_above) is left out and only
// counted: its ratio, as the division would give it, and so its Harris bound
// exceed capMul times the final smallest bound.  Everything with a ratio up
// to that bound is collected, in row order, exactly as without the cap.
struct Collector {
  Work &w;
  const int s;
  const double capMul;
  const double *d, *clb, *cub;
  const double tol, atol, inf;
  double hmin = 1e300;
  int drop = 0;

  Collector(Work &w_, int s_, double capMul_)
      : w(w_), s(s_), capMul(capMul_), d(w_.g->rdc.data()), clb(w_.g->clb.data()), cub(w_.g->cub.data()),
        tol(w_.g->ceps), atol(w_.alphaTol), inf(w_.g->infin) {
    w.cands.clear();
  }

  // j is nonbasic (st < 0), as the pivot row hands its entries.  The tests
  // that need no memory come first.
  void add(int j, double a, int st) {
    const double sa = s * a;
    const double aa = std::fabs(sa);
    if (aa <= atol) return;
    if (st == -1) {
      if (sa <= 0) return;
    } else if (st == -2) {
      if (sa >= 0) return;
    }
    const double lo = clb[j], up = cub[j];
    if (lo == up) return;  // fixed: never enters
    const double dfeas = sa > 0 ? d[j] : -d[j];
    // capMul is a power of two, so capMul * hmin is exact.
    if (capMul > 0 && hmin > 0 && hmin < 1e300 && ratio_surely_above(dfeas, aa, capMul * hmin)) {
      drop++;
      return;
    }
    Cand c;
    c.j = j;
    c.absAlpha = aa;
    c.ratio = dfeas / aa;
    c.harris = (dfeas + tol) / aa;
    c.range = (lo > -inf && up < inf) ? up - lo : inf;
    hmin = std::min(hmin, c.harris);
    w.cands.push_back(c);
  }

  void finish() {
    w.candMin = hmin;
    w.candDropped = drop;
  }
};

// Collects the candidates of g->pivrow again, all of them.
void collect_all(Work &w, int s) {
  const GLP *g = w.g;
  const SpxVec &row = g->pivrow;
  Collector col(w, s, 0.0);
  for (int k = 0; k < row.count; k++) {
    const int j = row.ind[k];
    col.add(j, row.val[j], g->cbas[j]);
  }
  col.finish();
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

// The long-step test over w.cands, whose smallest Harris bound is hmin.  When
// `dropped` candidates were left out by a cap at capT (every one of them has a
// ratio above capT), the test only goes as far as capT and returns -2 when it
// would need to look past it.
int long_step(Work &w, double delta, double hmin, int dropped, double capT, double *t) {
  GLP *g = w.g;
  std::vector<Cand> &c = w.cands;
  const size_t all = c.size() + static_cast<size_t>(dropped);
  // Only the breakpoints up to the point where the slope can turn matter: find
  // a step bound T that covers them, then sort those alone.
  double T = hmin < 0 ? 0.0 : hmin;
  if (dropped > 0 && !(T <= capT)) return -2;
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
    if (unboxed || sum >= delta || cnt == all) break;
    T = T <= 0 ? 1e-12 : T * 4.0;
    if (dropped > 0 && !(T <= capT)) return -2;
  }
  // Move the kept ones to the front, the rest after, then sort the front.  The
  // smallest Harris bound of the rest (all of whose ratios exceed T) bounds the
  // last group of the kept part.
  double restMin = 1e300;
  size_t keep = 0;
  for (size_t i = 0; i < c.size(); i++) {
    if (c[i].ratio <= T) std::swap(c[i], c[keep++]);
    else restMin = std::min(restMin, c[i].harris);
  }
  std::sort(c.begin(), c.begin() + static_cast<long>(keep), [](const Cand &u, const Cand &v) {
    return u.ratio < v.ratio || (u.ratio == v.ratio && u.j < v.j);
  });
  // Suffix minima of the Harris bounds over the kept part, with the bound of
  // the rest folded in.  (That bound exceeds T, so it never cuts a group of
  // the kept part short; it does not matter that a cap left some of the rest
  // out of it.)
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
  if (keep < all) {
    // Everything kept flipped and the slope is still positive: the rest holds
    // the entering column.
    if (dropped > 0) return -2;
    const int b = harris_pick(w, keep, restMin);
    if (b >= 0) {
      *t = c[b].ratio;
      return c[b].j;
    }
  }
  return -1;
}

}  // namespace

void pivot_row(Work &w, int s, const SpxVec &rho) {
  // Harris picks among the ratios up to the smallest Harris bound, so any
  // candidate whose ratio is above the running minimum can be left out.  The
  // long step usually ends within a few rounds of widening from that bound,
  // so it first takes the candidates up to kCapMul times it.
  Collector col(w, s, w.longStep ? kCapMul : 1.0);
  spx_pivot_row_visit(w.g, rho, [&col](int j, double a, int st) { col.add(j, a, st); });
  col.finish();
}

int ratio_test(Work &w, int s, double delta, double *t) {
  w.flipList.clear();
  *t = 0.0;
  if (w.cands.empty()) return -1;
  if (!w.longStep) {
    const int b = harris_pick(w, 0, w.candMin);
    if (b < 0) return -1;
    *t = w.cands[b].ratio;
    return w.cands[b].j;
  }
  if (w.candDropped > 0) {
    const int q = long_step(w, delta, w.candMin, w.candDropped, w.candMin * kCapMul, t);
    if (q != -2) return q;
    // The test needs candidates past the cap: take them all.
    w.flipList.clear();
    *t = 0.0;
    collect_all(w, s);
  }
  return long_step(w, delta, w.candMin, 0, 0.0, t);
}

}  // namespace dual
