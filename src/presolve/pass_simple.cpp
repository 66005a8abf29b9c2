// The simple passes: empty, free, singleton, redundant and forcing rows; fixed,
// empty and singleton columns (free or implied-free singletons are taken out with
// their row, zero-cost singletons fold into their row's range).  They work off the
// queues of marked rows and columns until both are quiet.
#include <algorithm>
#include <cmath>

#include "presolve/genpre.h"

namespace {

constexpr double kPivotRatio = 1e-3;  // smallest |a_rj| / max |a_r.| of a substitution
constexpr size_t kMaxStoredRow = 2000;  // longest row a singleton-column record copies

double tol_rel(double base, double v) { return base * (1.0 + std::fabs(v)); }

// Singleton row r: bounds on its column.
int singleton_row(GenPre &g, int r) {
  lpdata &lp = g.lp;
  const LpEntry e = lp.row[r][0];
  const int j = e.idx;
  const double a = e.val, rl = lp.rl[r], ru = lp.ru[r];
  double lo = -kPreInf, up = kPreInf;
  if (a > 0) {
    if (!pre_inf(rl)) lo = rl / a;
    if (!pre_inf(ru)) up = ru / a;
  } else {
    if (!pre_inf(ru)) lo = ru / a;
    if (!pre_inf(rl)) up = rl / a;
  }
  const double lOld = lp.lb[j], uOld = lp.ub[j];
  double nl = lOld, nu = uOld;
  if (lo > -kPreInf && (lOld <= -kPreInf || lo > lOld + tol_rel(g.eps, lOld))) nl = lo;
  if (up < kPreInf && (uOld >= kPreInf || up < uOld - tol_rel(g.eps, uOld))) nu = up;
  if (nl > nu) {
    if (nl > nu + tol_rel(g.feasTol, std::max(std::fabs(nl), std::fabs(nu))))
      return kPassInfeasible;
    // Within tolerance: a fixed column at the bound that stays.
    if (nl != lOld) nl = nu;
    else nu = nl;
  }
  PostStack *ps = g.ps;
  ps_begin(ps);
  ps_int(ps, r);
  ps_int(ps, j);
  ps_real(ps, a);
  ps_real(ps, rl);
  ps_real(ps, ru);
  ps_real(ps, lOld);
  ps_real(ps, uOld);
  ps_real(ps, nl);
  ps_real(ps, nu);
  ps_end(ps, kPsSingRow);
  lp.lb[j] = nl;
  lp.ub[j] = nu;
  gp_unlink_row(g, r);
  gp_mark_col(g, j);
  for (const LpEntry &f : lp.col[j]) gp_mark_row(g, f.idx);
  return kPassChanged;
}

// Forcing row: side +1 when the least activity meets ru, -1 when the largest meets rl.
void forcing_row(GenPre &g, int r, int side) {
  lpdata &lp = g.lp;
  PostStack *ps = g.ps;
  const auto &row = lp.row[r];
  size_t words = 8;
  for (const LpEntry &e : row) words += lp.col[e.idx].size() + 4;
  get_post_stack_space(ps, words, words);
  ps_begin(ps);
  ps_int(ps, r);
  ps_int(ps, side);
  ps_int(ps, static_cast<int>(row.size()));
  ps_real(ps, lp.rl[r]);
  ps_real(ps, lp.ru[r]);
  std::vector<std::pair<int, double>> fixes;
  fixes.reserve(row.size());
  for (const LpEntry &e : row) {
    const int j = e.idx;
    const bool toLower = (e.val > 0) == (side > 0);
    const double v = toLower ? lp.lb[j] : lp.ub[j];
    fixes.push_back({j, v});
    ps_int(ps, j);
    ps_int(ps, static_cast<int>(lp.col[j].size()) - 1);
    ps_real(ps, e.val);
    ps_real(ps, lp.cost[j]);
    ps_real(ps, v);
    for (const LpEntry &f : lp.col[j]) {
      if (f.idx == r) continue;
      ps_int(ps, f.idx);
      ps_real(ps, f.val);
    }
  }
  ps_end(ps, kPsForceRow);
  gp_unlink_row(g, r);
  for (const auto &[j, v] : fixes) {
    for (const LpEntry &f : lp.col[j]) {
      double s = f.val * v;
      if (!pre_inf(lp.rl[f.idx])) lp.rl[f.idx] -= s;
      if (!pre_inf(lp.ru[f.idx])) lp.ru[f.idx] -= s;
    }
    lp.objOffset += lp.cost[j] * v;
    gp_unlink_col(g, j);
  }
}

int check_row(GenPre &g, int i) {
  lpdata &lp = g.lp;
  const double rl = lp.rl[i], ru = lp.ru[i];
  if (pre_inf(rl) && pre_inf(ru)) {
    genpre_delete_row(g, i);
    return kPassChanged;
  }
  const size_t len = lp.row[i].size();
  if (len == 0) {
    if (rl > tol_rel(g.feasTol, 0) || ru < -tol_rel(g.feasTol, 0)) return kPassInfeasible;
    genpre_delete_row(g, i);
    return kPassChanged;
  }
  if (len == 1) return singleton_row(g, i);
  const RowAct a = lpdata_row_activity(lp, i);
  const double sc = 1e-13 * a.scale;
  if (!pre_inf(ru) && !a.minInf && a.minFin > ru + tol_rel(g.feasTol, ru) + sc) {
    if (!(g.mask & kPreConfirm)) return kPassInfeasible;
    // Confirm in long double before giving the verdict.
    long double s = 0;
    for (const LpEntry &e : lp.row[i]) s += (long double)e.val * (e.val > 0 ? lp.lb[e.idx] : lp.ub[e.idx]);
    if (s > ru + tol_rel(g.feasTol, ru)) return kPassInfeasible;
  }
  if (!pre_inf(rl) && !a.maxInf && a.maxFin < rl - tol_rel(g.feasTol, rl) - sc) {
    if (!(g.mask & kPreConfirm)) return kPassInfeasible;
    long double s = 0;
    for (const LpEntry &e : lp.row[i]) s += (long double)e.val * (e.val > 0 ? lp.ub[e.idx] : lp.lb[e.idx]);
    if (s < rl - tol_rel(g.feasTol, rl)) return kPassInfeasible;
  }
  const bool lowRed = pre_inf(rl) || (!a.minInf && a.minFin >= rl - tol_rel(g.eps, rl) - sc);
  const bool upRed = pre_inf(ru) || (!a.maxInf && a.maxFin <= ru + tol_rel(g.eps, ru) + sc);
  if (lowRed && upRed) {
    genpre_delete_row(g, i);
    return kPassChanged;
  }
  if (!pre_inf(ru) && !a.minInf && a.minFin >= ru - tol_rel(g.eps, ru) - sc) {
    forcing_row(g, i, +1);
    return kPassChanged;
  }
  if (!pre_inf(rl) && !a.maxInf && a.maxFin <= rl + tol_rel(g.eps, rl) + sc) {
    forcing_row(g, i, -1);
    return kPassChanged;
  }
  int changed = kPassNone;
  if (lowRed && !pre_inf(rl)) {
    lp.rl[i] = -kPreInf;
    changed = kPassChanged;
  }
  if (upRed && !pre_inf(ru)) {
    lp.ru[i] = kPreInf;
    changed = kPassChanged;
  }
  if (changed) gp_mark_row_cols(g, i);
  return changed;
}

// Free or implied-free column singleton j in row r: substitute it out with its row.
int free_col_singleton(GenPre &g, int j, int r, double a) {
  lpdata &lp = g.lp;
  const auto &row = lp.row[r];
  if (row.size() > kMaxStoredRow) return kPassNone;
  const double l = lp.lb[j], u = lp.ub[j];
  const bool free = l <= -kActInf && u >= kActInf;
  double amax = 0;
  double minO = 0, maxO = 0;
  int minInf = 0, maxInf = 0;
  for (const LpEntry &e : row) {
    amax = std::max(amax, std::fabs(e.val));
    if (e.idx == j) continue;
    double lk = lp.lb[e.idx], uk = lp.ub[e.idx], v = e.val;
    bool linf = lk <= -kActInf, uinf = uk >= kActInf;
    if (v > 0) {
      if (linf) minInf++; else minO += v * lk;
      if (uinf) maxInf++; else maxO += v * uk;
    } else {
      if (uinf) minInf++; else minO += v * uk;
      if (linf) maxInf++; else maxO += v * lk;
    }
  }
  if (std::fabs(a) < kPivotRatio * amax) return kPassNone;
  if (!free) {
    const double rl = lp.rl[r], ru = lp.ru[r];
    // Bounds on a x_j implied by the row: [rl - maxO, ru - minO].
    double loA = (pre_inf(rl) || maxInf) ? -kPreInf : rl - maxO;
    double upA = (pre_inf(ru) || minInf) ? kPreInf : ru - minO;
    double lo, up;
    if (a > 0) {
      lo = loA <= -kPreInf ? -kPreInf : loA / a;
      up = upA >= kPreInf ? kPreInf : upA / a;
    } else {
      lo = upA >= kPreInf ? -kPreInf : upA / a;
      up = loA <= -kPreInf ? kPreInf : loA / a;
    }
    bool okL = l <= -kActInf || (lo > -kPreInf && lo >= l - tol_rel(g.eps, l));
    bool okU = u >= kActInf || (up < kPreInf && up <= u + tol_rel(g.eps, u));
    if (!okL || !okU) return kPassNone;
  }
  const double c = lp.cost[j];
  const double rl = lp.rl[r], ru = lp.ru[r];
  double y = 0.0;
  int side = 0;  // 1: the row rests at rl, 2: at ru, 0: dual zero, any side
  if (c != 0.0) {
    y = c / a;
    if (!pre_inf(rl) && rl == ru) side = 1;
    else if (y > 0) side = 1;
    else side = 2;
    if ((side == 1 && pre_inf(rl)) || (side == 2 && pre_inf(ru))) return kPassNone;
  }
  PostStack *ps = g.ps;
  get_post_stack_space(ps, row.size() + 8, row.size() + 8);
  ps_begin(ps);
  ps_int(ps, r);
  ps_int(ps, j);
  ps_int(ps, side);
  ps_real(ps, a);
  ps_real(ps, c);
  ps_real(ps, rl);
  ps_real(ps, ru);
  ps_real(ps, l);
  ps_real(ps, u);
  for (const LpEntry &e : row) {
    if (e.idx == j) continue;
    ps_int(ps, e.idx);
    ps_real(ps, e.val);
  }
  ps_end(ps, kPsElimCol);
  if (side != 0) {
    for (const LpEntry &e : row) {
      if (e.idx == j) continue;
      lp.cost[e.idx] -= y * e.val;
    }
    lp.objOffset += y * (side == 1 ? rl : ru);
  }
  gp_unlink_col(g, j);
  gp_unlink_row(g, r);
  return kPassChanged;
}

// Zero-cost column singleton j in row r: the row's range absorbs it.
int slack_col_singleton(GenPre &g, int j, int r, double a) {
  lpdata &lp = g.lp;
  const auto &row = lp.row[r];
  if (row.size() > kMaxStoredRow || row.size() < 2) return kPassNone;
  const double l = lp.lb[j], u = lp.ub[j], rl = lp.rl[r], ru = lp.ru[r];
  // Range of a x_j.
  double lo = a > 0 ? l : u, up = a > 0 ? u : l;
  bool loInf = a > 0 ? l <= -kActInf : u >= kActInf;
  bool upInf = a > 0 ? u >= kActInf : l <= -kActInf;
  double axMin = loInf ? -kPreInf : a * lo, axMax = upInf ? kPreInf : a * up;
  double nrl = (pre_inf(rl) || axMax >= kPreInf) ? -kPreInf : rl - axMax;
  double nru = (pre_inf(ru) || axMin <= -kPreInf) ? kPreInf : ru - axMin;
  PostStack *ps = g.ps;
  get_post_stack_space(ps, row.size() + 8, row.size() + 8);
  ps_begin(ps);
  ps_int(ps, r);
  ps_int(ps, j);
  ps_real(ps, a);
  ps_real(ps, l);
  ps_real(ps, u);
  ps_real(ps, rl);
  ps_real(ps, ru);
  for (const LpEntry &e : row) {
    if (e.idx == j) continue;
    ps_int(ps, e.idx);
    ps_real(ps, e.val);
  }
  ps_end(ps, kPsSlackCol);
  lp.rl[r] = nrl;
  lp.ru[r] = nru;
  gp_unlink_col(g, j);
  gp_mark_row(g, r);
  gp_mark_row_cols(g, r);
  return kPassChanged;
}

int check_col(GenPre &g, int j) {
  lpdata &lp = g.lp;
  const double l = lp.lb[j], u = lp.ub[j];
  if (l > u) {
    if (l > u + tol_rel(g.feasTol, std::max(std::fabs(l), std::fabs(u)))) return kPassInfeasible;
    genpre_remove_fixe(g, j, l);
    return kPassChanged;
  }
  if (l == u) {
    genpre_remove_fixe(g, j, l);
    return kPassChanged;
  }
  const size_t len = lp.col[j].size();
  if (len == 0) {
    const double c = lp.cost[j];
    const bool lInf = l <= -kActInf, uInf = u >= kActInf;
    double v;
    if (c > 0) {
      if (lInf) return kPassUnbounded;
      v = l;
    } else if (c < 0) {
      if (uInf) return kPassUnbounded;
      v = u;
    } else if (!lInf && !uInf) {
      v = std::fabs(l) <= std::fabs(u) ? l : u;
    } else if (!lInf) {
      v = l;
    } else if (!uInf) {
      v = u;
    } else {
      v = 0.0;
    }
    genpre_remove_fixe(g, j, v);
    return kPassChanged;
  }
  if (len == 1) {
    const LpEntry e = lp.col[j][0];
    int rc = free_col_singleton(g, j, e.idx, e.val);
    if (rc != kPassNone) return rc;
    if (lp.cost[j] == 0.0) return slack_col_singleton(g, j, e.idx, e.val);
  }
  return kPassNone;
}

}  // namespace

int simple_spre(GenPre &g) {
  int changed = kPassNone;
  while (!g.rowQ.empty() || !g.colQ.empty()) {
    while (!g.rowQ.empty()) {
      int i = g.rowQ.back();
      g.rowQ.pop_back();
      g.rowMarked[i] = 0;
      if (!g.lp.rowLive[i]) continue;
      int rc = check_row(g, i);
      if (rc == kPassInfeasible || rc == kPassUnbounded) return rc;
      if (rc == kPassChanged) changed = kPassChanged;
    }
    while (!g.colQ.empty() && g.rowQ.empty()) {
      int j = g.colQ.back();
      g.colQ.pop_back();
      g.colMarked[j] = 0;
      if (!g.lp.colLive[j]) continue;
      int rc = check_col(g, j);
      if (rc == kPassInfeasible || rc == kPassUnbounded) return rc;
      if (rc == kPassChanged) changed = kPassChanged;
    }
  }
  return changed;
}
