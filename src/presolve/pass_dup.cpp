// Duplicate rows and duplicate columns.  Candidates are found by sorting the hashes
// of the index patterns; a pair is parallel when one line is a multiple of the
// other entry by entry.  Parallel rows merge into one row with the tighter sides;
// parallel columns with proportional costs merge into one column whose bounds are
// the sum, and with costs not in proportion one of them may be dominated and fixed.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "presolve/genpre.h"

namespace {

constexpr double kParallelTol = 1e-11;  // relative agreement of parallel entries
constexpr int kMaxCompare = 8;          // earlier members of a group each line is tried on

double tol_rel(double base, double v) { return base * (1.0 + std::fabs(v)); }

struct Cand {
  uint64_t key;
  int size;
  int idx;
};

uint64_t pattern_hash(const std::vector<LpEntry> &v) {
  // Order-free: sum and xor of mixed indices.
  uint64_t s = 0, x = 0;
  for (const LpEntry &e : v) {
    uint64_t h = static_cast<uint64_t>(e.idx) * 0x9E3779B97F4A7C15ull;
    h ^= h >> 29;
    h *= 0xBF58476D1CE4E5B9ull;
    h ^= h >> 32;
    s += h;
    x ^= h;
  }
  return s * 31 + x + v.size();
}

std::vector<LpEntry> sorted_copy(const std::vector<LpEntry> &v) {
  std::vector<LpEntry> c(v);
  std::sort(c.begin(), c.end(), [](const LpEntry &a, const LpEntry &b) { return a.idx < b.idx; });
  return c;
}

// lambda with b = lambda * a entry by entry, or 0 when the lines are not parallel.
double parallel(const std::vector<LpEntry> &a, const std::vector<LpEntry> &b) {
  if (a.size() != b.size() || a.empty()) return 0.0;
  const double lam = b[0].val / a[0].val;
  for (size_t t = 0; t < a.size(); ++t) {
    if (a[t].idx != b[t].idx) return 0.0;
    if (std::fabs(b[t].val - lam * a[t].val) > kParallelTol * std::fabs(b[t].val)) return 0.0;
  }
  return lam;
}

// Groups of lines with equal hash and size, each group in index order.
template <class F>
void for_groups(const std::vector<std::vector<LpEntry>> &lines, const std::vector<char> &live,
                F &&fn) {
  std::vector<Cand> cand;
  for (int i = 0; i < static_cast<int>(lines.size()); ++i)
    if (live[i] && !lines[i].empty())
      cand.push_back({pattern_hash(lines[i]), static_cast<int>(lines[i].size()), i});
  std::sort(cand.begin(), cand.end(), [](const Cand &a, const Cand &b) {
    if (a.key != b.key) return a.key < b.key;
    if (a.size != b.size) return a.size < b.size;
    return a.idx < b.idx;
  });
  std::vector<int> group;
  for (size_t s = 0; s < cand.size();) {
    size_t e = s + 1;
    while (e < cand.size() && cand[e].key == cand[s].key && cand[e].size == cand[s].size) ++e;
    if (e - s > 1) {
      group.clear();
      for (size_t t = s; t < e; ++t) group.push_back(cand[t].idx);
      fn(group);
    }
    s = e;
  }
}

// Merge row s = lambda * row r into r.
int merge_rows(GenPre &g, int r, int s, double lam) {
  lpdata &lp = g.lp;
  double lo, up;  // row s as bounds on the activity of r
  const double rls = lp.rl[s], rus = lp.ru[s];
  if (lam > 0) {
    lo = pre_inf(rls) ? -kPreInf : rls / lam;
    up = pre_inf(rus) ? kPreInf : rus / lam;
  } else {
    lo = pre_inf(rus) ? -kPreInf : rus / lam;
    up = pre_inf(rls) ? kPreInf : rls / lam;
  }
  const double rlr = lp.rl[r], rur = lp.ru[r];
  double nl = rlr, nu = rur;
  if (lo > -kPreInf && (pre_inf(rlr) || lo > rlr + tol_rel(g.eps, rlr))) nl = lo;
  if (up < kPreInf && (pre_inf(rur) || up < rur - tol_rel(g.eps, rur))) nu = up;
  if (nl > nu) {
    if (nl > nu + tol_rel(g.feasTol, std::max(std::fabs(nl), std::fabs(nu))))
      return kPassInfeasible;
    if (nl != rlr) nl = nu;
    else nu = nl;
  }
  PostStack *ps = g.ps;
  ps_begin(ps);
  ps_int(ps, r);
  ps_int(ps, s);
  ps_real(ps, lam);
  ps_real(ps, rlr);
  ps_real(ps, rur);
  ps_real(ps, rls);
  ps_real(ps, rus);
  ps_real(ps, nl);
  ps_real(ps, nu);
  ps_end(ps, kPsDupRow);
  gp_unlink_row(g, s);
  lp.rl[r] = nl;
  lp.ru[r] = nu;
  gp_mark_row(g, r);
  gp_mark_row_cols(g, r);
  return kPassChanged;
}

// Columns k = lambda * j (entries).  Returns a pass code; `done` is set when a
// column was merged or fixed.
int try_dup_cols(GenPre &g, int j, int k, double lam, bool *done) {
  lpdata &lp = g.lp;
  *done = false;
  const double cj = lp.cost[j], ck = lp.cost[k];
  const double delta = ck - lam * cj;
  const double lj = lp.lb[j], uj = lp.ub[j], lk = lp.lb[k], uk = lp.ub[k];
  const bool ljInf = lj <= -kActInf, ujInf = uj >= kActInf;
  const bool lkInf = lk <= -kActInf, ukInf = uk >= kActInf;
  if (std::fabs(delta) <= 1e-12 * (1.0 + std::fabs(ck))) {
    // Merge: x_j' = x_j + lambda x_k.
    double nl, nu;
    bool nlInf, nuInf;
    if (lam > 0) {
      nlInf = ljInf || lkInf;
      nuInf = ujInf || ukInf;
      nl = nlInf ? -kPreInf : lj + lam * lk;
      nu = nuInf ? kPreInf : uj + lam * uk;
    } else {
      nlInf = ljInf || ukInf;
      nuInf = ujInf || lkInf;
      nl = nlInf ? -kPreInf : lj + lam * uk;
      nu = nuInf ? kPreInf : uj + lam * lk;
    }
    const bool bothFree = ljInf && ujInf && lkInf && ukInf;
    if (nlInf && nuInf && !bothFree) return kPassNone;
    PostStack *ps = g.ps;
    ps_begin(ps);
    ps_int(ps, j);
    ps_int(ps, k);
    ps_real(ps, lam);
    ps_real(ps, lj);
    ps_real(ps, uj);
    ps_real(ps, lk);
    ps_real(ps, uk);
    ps_end(ps, kPsDupCol);
    gp_unlink_col(g, k);
    lp.lb[j] = nl;
    lp.ub[j] = nu;
    gp_mark_col(g, j);
    for (const LpEntry &e : lp.col[j]) gp_mark_row(g, e.idx);
    *done = true;
    return kPassChanged;
  }
  // d_k = lambda d_j + delta; d_j >= 0 whenever u_j is infinite, <= 0 when l_j is.
  const bool djNonNeg = ujInf, djNonPos = ljInf;
  if (delta > 0 && ((lam > 0 && djNonNeg) || (lam < 0 && djNonPos))) {
    if (lkInf) return kPassNone;  // the solver tells whether this is unbounded
    genpre_remove_fixe(g, k, lk);
    *done = true;
    return kPassChanged;
  }
  if (delta < 0 && ((lam > 0 && djNonPos) || (lam < 0 && djNonNeg))) {
    if (ukInf) return kPassNone;
    genpre_remove_fixe(g, k, uk);
    *done = true;
    return kPassChanged;
  }
  return kPassNone;
}

}  // namespace

int genpre_dup_row(GenPre &g) {
  lpdata &lp = g.lp;
  int result = kPassNone;
  std::vector<std::vector<LpEntry>> sorted;
  for_groups(lp.row, lp.rowLive, [&](const std::vector<int> &group) {
    if (result == kPassInfeasible) return;
    sorted.clear();
    for (int i : group) sorted.push_back(sorted_copy(lp.row[i]));
    for (size_t b = 1; b < group.size(); ++b) {
      int tried = 0;
      for (size_t a = 0; a < b && tried < kMaxCompare; ++a) {
        if (!lp.rowLive[group[a]]) continue;
        ++tried;
        double lam = parallel(sorted[a], sorted[b]);
        if (lam == 0.0) continue;
        int rc = merge_rows(g, group[a], group[b], lam);
        if (rc == kPassInfeasible) {
          result = rc;
          return;
        }
        if (rc == kPassChanged) {
          result = kPassChanged;
          break;
        }
      }
    }
  });
  return result;
}

int genpre_dup_col(GenPre &g) {
  lpdata &lp = g.lp;
  int result = kPassNone;
  std::vector<char> used(lp.n, 0);  // a column takes part in one reduction per pass
  std::vector<std::vector<LpEntry>> sorted;
  for_groups(lp.col, lp.colLive, [&](const std::vector<int> &group) {
    sorted.clear();
    for (int j : group) sorted.push_back(sorted_copy(lp.col[j]));
    for (size_t b = 1; b < group.size(); ++b) {
      const int k = group[b];
      if (used[k] || !lp.colLive[k]) continue;
      int tried = 0;
      for (size_t a = 0; a < b && tried < kMaxCompare; ++a) {
        const int j = group[a];
        if (used[j] || !lp.colLive[j]) continue;
        ++tried;
        double lam = parallel(sorted[a], sorted[b]);
        if (lam == 0.0) continue;
        bool done = false;
        try_dup_cols(g, j, k, lam, &done);
        if (!done) try_dup_cols(g, k, j, 1.0 / lam, &done);
        if (done) {
          used[j] = used[k] = 1;
          result = kPassChanged;
          break;
        }
      }
    }
  });
  return result;
}
