// genpre_postsolv_prob: the reduced model's solution is spread to the original
// places, the stack is replayed from the top, and the full primal, dual and basis
// solution of the original model is written to its `sol`.  Each record's rule is
// written beside its kind in poststack.h.
#include <algorithm>
#include <cmath>
#include <new>

#include "presolve/genpre.h"

namespace {

// Column statuses; row statuses use the same numbers as the library: -1 the
// activity at the top of the row's range, -2 at the bottom.
constexpr int kB = 0, kL = -1, kU = -2, kF = -3;
constexpr int kRowUp = -1, kRowLo = -2;

struct Post {
  int m, n;
  std::vector<double> x, d, y;
  std::vector<int> cs, rs;
  bool basisOk = true;
};

double row_lo(const Model *mdl, int i) {
  double b = mdl->rhs[i], r = mdl->rangeVal ? mdl->rangeVal[i] : kPreInf;
  bool ranged = std::fabs(r) < kPreInf;
  switch (mdl->conType[i]) {
    case 'L': return ranged ? b - std::fabs(r) : -kPreInf;
    case 'G': return b;
    case 'E': return (ranged && r < 0) ? b + r : b;
    default: return -kPreInf;
  }
}

double row_up(const Model *mdl, int i) {
  double b = mdl->rhs[i], r = mdl->rangeVal ? mdl->rangeVal[i] : kPreInf;
  bool ranged = std::fabs(r) < kPreInf;
  switch (mdl->conType[i]) {
    case 'L': return b;
    case 'G': return ranged ? b + std::fabs(r) : kPreInf;
    case 'E': return (ranged && r > 0) ? b + r : b;
    default: return kPreInf;
  }
}

// The nearer finite bound's status for a nonbasic value v in [l, u].
int near_bound(double v, double l, double u) {
  bool lf = l > -kActInf, uf = u < kActInf;
  if (lf && uf) return std::fabs(v - l) <= std::fabs(v - u) ? kL : kU;
  if (lf) return kL;
  if (uf) return kU;
  return kF;
}

// Spread the reduced solution through the renumbering record.
bool undo_renumber(Post &p, const PsRecord &rec, const Model *red, double sense) {
  if (rec.ni < 2) return false;
  const int nr = rec.iv[rec.ni - 2], nc = rec.iv[rec.ni - 1];
  if (nr < 0 || nc < 0 || nr + nc + 2 != rec.ni) return false;
  const int *rowMap = rec.iv, *colMap = rec.iv + nr;
  if (nr == 0 && nc == 0) return true;
  if (!red) return false;
  if (red->nCons != nr || red->nVars != nc || !red->sol) return false;
  const Sol *s = red->sol;
  for (int r = 0; r < nr; ++r) {
    const int i = rowMap[r];
    if (i < 0 || i >= p.m) return false;
    const double yy = sense * s->y[r];
    p.y[i] = yy;
    int st = s->rowstat[r];
    if (st >= 0) {
      p.rs[i] = kB;
      continue;
    }
    const double lo = row_lo(red, r), up = row_up(red, r);
    const double act = red->rhs[r] - s->slack[r];
    if (lo <= -kPreInf) st = kRowUp;
    else if (up >= kPreInf) st = kRowLo;
    else if (lo == up) st = yy > 0 ? kRowLo : yy < 0 ? kRowUp : (st == kRowLo ? kRowLo : kRowUp);
    else st = std::fabs(act - lo) <= std::fabs(act - up) ? kRowLo : kRowUp;
    p.rs[i] = st;
  }
  for (int q = 0; q < nc; ++q) {
    const int j = colMap[q];
    if (j < 0 || j >= p.n) return false;
    p.x[j] = s->x[q];
    p.d[j] = sense * s->dj[q];
    int st = s->colstat[q];
    const double l = red->lower[q], u = red->upper[q];
    if (st >= 0) st = kB;
    else if (st == kF && (l > -kActInf || u < kActInf)) st = near_bound(s->x[q], l, u);
    else if (st == kL || st == kU || st < kF) {
      const bool lf = l > -kActInf, uf = u < kActInf;
      if (lf && uf && l == u) st = p.d[j] >= 0 ? kL : kU;
      else if (lf && uf) st = std::fabs(s->x[q] - l) <= std::fabs(s->x[q] - u) ? kL : kU;
      else if (lf) st = kL;
      else if (uf) st = kU;
      else st = kF;
    }
    p.cs[j] = st;
  }
  return true;
}

void undo_fix_col(Post &p, const PsRecord &rec) {
  const int j = rec.iv[0];
  const double v = rec.rv[0], c = rec.rv[1], l = rec.rv[2], u = rec.rv[3];
  double dd = c;
  for (int t = 1; t < rec.ni; ++t) dd -= rec.rv[3 + t] * p.y[rec.iv[t]];
  p.x[j] = v;
  p.d[j] = dd;
  const bool atL = l > -kActInf && v == l, atU = u < kActInf && v == u;
  int st;
  if (atL && atU) st = dd >= 0 ? kL : kU;
  else if (atL) st = kL;
  else if (atU) st = kU;
  else if (l <= -kActInf && u >= kActInf && v == 0.0) st = kF;
  else {
    st = near_bound(v, l, u);
    p.basisOk = false;
  }
  p.cs[j] = st;
}

void undo_del_row(Post &p, const PsRecord &rec) {
  const int i = rec.iv[0];
  p.y[i] = 0.0;
  p.rs[i] = kB;
}

void undo_elim_col(Post &p, const PsRecord &rec, double ftol) {
  const int r = rec.iv[0], j = rec.iv[1], side = rec.iv[2];
  const double a = rec.rv[0], c = rec.rv[1], rl = rec.rv[2], ru = rec.rv[3], l = rec.rv[4],
               u = rec.rv[5];
  double s = 0.0;
  for (int t = 3; t < rec.ni; ++t) s += rec.rv[3 + t] * p.x[rec.iv[t]];
  double act;
  int rst;
  if (side == 1) {
    act = rl;
    rst = kRowLo;
  } else if (side == 2) {
    act = ru;
    rst = kRowUp;
  } else {
    // Dual zero: either finite side keeps x_j within its bounds; take one that does.
    auto inside = [&](double v) {
      double xj = (v - s) / a;
      return xj >= l - ftol * (1 + std::fabs(l)) && xj <= u + ftol * (1 + std::fabs(u));
    };
    if (!pre_inf(rl) && inside(rl)) {
      act = rl;
      rst = kRowLo;
    } else if (!pre_inf(ru) && inside(ru)) {
      act = ru;
      rst = kRowUp;
    } else if (!pre_inf(rl)) {
      act = rl;
      rst = kRowLo;
    } else {
      act = pre_inf(ru) ? s : ru;
      rst = kRowUp;
    }
  }
  p.x[j] = (act - s) / a;
  p.d[j] = 0.0;
  p.y[r] = side == 0 ? 0.0 : c / a;
  p.cs[j] = kB;
  p.rs[r] = rst;
}

void undo_sing_row(Post &p, const PsRecord &rec) {
  const int r = rec.iv[0], j = rec.iv[1];
  const double a = rec.rv[0], lOld = rec.rv[3], uOld = rec.rv[4], nl = rec.rv[5], nu = rec.rv[6];
  const int st = p.cs[j];
  const bool fromLo = nl != lOld, fromUp = nu != uOld;
  if ((st == kL && fromLo) || (st == kU && fromUp)) {
    p.y[r] = p.d[j] / a;
    p.d[j] = 0.0;
    p.cs[j] = kB;
    const bool colLow = st == kL;
    p.rs[r] = (colLow == (a > 0)) ? kRowLo : kRowUp;
  } else {
    p.y[r] = 0.0;
    p.rs[r] = kB;
  }
}

bool undo_force_row(Post &p, const PsRecord &rec) {
  const int r = rec.iv[0], side = rec.iv[1], nc = rec.iv[2];
  struct C {
    int j;
    double a, v, d0;
  };
  std::vector<C> cols;
  cols.reserve(nc);
  int pi = 3, pr = 2;
  for (int t = 0; t < nc; ++t) {
    if (pi + 2 > rec.ni || pr + 3 > rec.nr) return false;
    const int j = rec.iv[pi], cnt = rec.iv[pi + 1];
    pi += 2;
    const double a = rec.rv[pr], c = rec.rv[pr + 1], v = rec.rv[pr + 2];
    pr += 3;
    if (pi + cnt > rec.ni || pr + cnt > rec.nr) return false;
    double d0 = c;
    for (int q = 0; q < cnt; ++q) d0 -= rec.rv[pr + q] * p.y[rec.iv[pi + q]];
    pi += cnt;
    pr += cnt;
    cols.push_back({j, a, v, d0});
  }
  double yr = 0.0;
  int arg = -1;
  for (int t = 0; t < nc; ++t) {
    const double ratio = cols[t].d0 / cols[t].a;
    if (side > 0 ? ratio < yr : ratio > yr) {
      yr = ratio;
      arg = t;
    }
  }
  for (int t = 0; t < nc; ++t) {
    const C &c = cols[t];
    p.x[c.j] = c.v;
    p.d[c.j] = c.d0 - c.a * yr;
    p.cs[c.j] = ((c.a > 0) == (side > 0)) ? kL : kU;
  }
  p.y[r] = yr;
  if (arg >= 0) {
    p.cs[cols[arg].j] = kB;
    p.d[cols[arg].j] = 0.0;
    p.rs[r] = side > 0 ? kRowUp : kRowLo;
  } else {
    p.rs[r] = kB;
  }
  return true;
}

void undo_slack_col(Post &p, const PsRecord &rec, double ftol) {
  const int r = rec.iv[0], j = rec.iv[1];
  const double a = rec.rv[0], l = rec.rv[1], u = rec.rv[2], rl = rec.rv[3], ru = rec.rv[4];
  double rest = 0.0;
  for (int t = 2; t < rec.ni; ++t) rest += rec.rv[3 + t] * p.x[rec.iv[t]];
  const double yr = p.y[r];
  p.d[j] = -a * yr;
  const bool lf = l > -kActInf, uf = u < kActInf;
  const int rst = p.rs[r];
  if (rst == kRowLo || rst == kRowUp) {
    // The reduced row rests at a side: a x_j is at its largest (lower side) or least.
    const bool wantMax = rst == kRowLo;
    const bool toUpper = wantMax == (a > 0);
    if ((toUpper && uf) || (!toUpper && lf)) {
      p.x[j] = toUpper ? u : l;
      p.cs[j] = toUpper ? kU : kL;
      return;
    }
    // The side was infinite: place x_j by the row below.
  }
  // Row basic: x_j at a bound of its own when that keeps the row feasible, else
  // x_j basic and the row at one of its sides.
  auto rowOk = [&](double xj) {
    double act = rest + a * xj;
    return (pre_inf(rl) || act >= rl - ftol * (1 + std::fabs(rl))) &&
           (pre_inf(ru) || act <= ru + ftol * (1 + std::fabs(ru)));
  };
  const bool wasBasic = rst == kB;
  if (lf && rowOk(l)) {
    p.x[j] = l;
    p.cs[j] = kL;
  } else if (uf && rowOk(u)) {
    p.x[j] = u;
    p.cs[j] = kU;
  } else {
    double xl = pre_inf(rl) ? 0 : (rl - rest) / a, xu = pre_inf(ru) ? 0 : (ru - rest) / a;
    bool okl = !pre_inf(rl) && (!lf || xl >= l - ftol * (1 + std::fabs(l))) &&
               (!uf || xl <= u + ftol * (1 + std::fabs(u)));
    if (okl) {
      p.x[j] = xl;
      p.rs[r] = kRowLo;
    } else {
      p.x[j] = pre_inf(ru) ? std::clamp(0.0, lf ? l : -kPreInf, uf ? u : kPreInf) : xu;
      p.rs[r] = kRowUp;
    }
    p.cs[j] = kB;
    if (!wasBasic) p.basisOk = false;
  }
}

void undo_doubleton(Post &p, const PsRecord &rec) {
  const int r = rec.iv[0], j = rec.iv[1], k = rec.iv[2];
  const double aj = rec.rv[0], ak = rec.rv[1], b = rec.rv[2], ck = rec.rv[3], lOld = rec.rv[4],
               uOld = rec.rv[5], lk = rec.rv[6], uk = rec.rv[7], nl = rec.rv[8], nu = rec.rv[9];
  double Dk = ck;
  for (int t = 3; t < rec.ni; ++t) Dk -= rec.rv[7 + t] * p.y[rec.iv[t]];
  const int st = p.cs[j];
  double xk = (b - aj * p.x[j]) / ak;
  const bool fromLo = nl != lOld, fromUp = nu != uOld;
  double dk;
  if ((st == kL && fromLo) || (st == kU && fromUp)) {
    // x_k moves against x_j by -aj/ak: x_j at its lower bound holds x_k at its lower
    // bound when that ratio is positive, at its upper bound when negative.
    const bool kLow = (st == kL) == (aj / ak < 0);
    const int sk = kLow ? kL : kU;
    xk = kLow ? lk : uk;
    dk = -(ak / aj) * p.d[j];
    p.d[j] = 0.0;
    p.cs[j] = kB;
    p.cs[k] = sk;
  } else {
    dk = 0.0;
    p.cs[k] = kB;
  }
  p.x[k] = xk;
  p.d[k] = dk;
  p.y[r] = (Dk - dk) / ak;
  p.rs[r] = p.y[r] >= 0 ? kRowLo : kRowUp;
}

void undo_dup_row(Post &p, const PsRecord &rec) {
  const int r = rec.iv[0], s = rec.iv[1];
  const double lam = rec.rv[0], rlr = rec.rv[1], rur = rec.rv[2], nl = rec.rv[5], nu = rec.rv[6];
  const int st = p.rs[r];
  const double yr = p.y[r];
  if (st == kB) {
    p.y[s] = 0.0;
    p.rs[s] = kB;
    return;
  }
  const bool atLo = yr > 0 || (yr == 0 && st == kRowLo);
  const bool fromS = atLo ? nl != rlr : nu != rur;
  if (fromS) {
    p.y[s] = yr / lam;
    p.y[r] = 0.0;
    p.rs[r] = kB;
    p.rs[s] = (atLo == (lam > 0)) ? kRowLo : kRowUp;
  } else {
    p.y[s] = 0.0;
    p.rs[s] = kB;
  }
}

void undo_dup_col(Post &p, const PsRecord &rec, double ftol) {
  const int j = rec.iv[0], k = rec.iv[1];
  const double lam = rec.rv[0], lj = rec.rv[1], uj = rec.rv[2], lk = rec.rv[3], uk = rec.rv[4];
  const double xp = p.x[j], dp = p.d[j];
  const int st = p.cs[j];
  p.d[j] = dp;
  p.d[k] = lam * dp;
  const bool ljf = lj > -kActInf, ujf = uj < kActInf, lkf = lk > -kActInf, ukf = uk < kActInf;
  if (st == kL || st == kU) {
    const bool low = st == kL;
    p.x[j] = low ? lj : uj;
    p.cs[j] = low ? kL : kU;
    const bool kLow = low == (lam > 0);
    p.x[k] = kLow ? lk : uk;
    p.cs[k] = kLow ? kL : kU;
    if ((low && !ljf) || (!low && !ujf) || (kLow && !lkf) || (!kLow && !ukf)) p.basisOk = false;
    return;
  }
  if (st == kF) {
    p.x[j] = p.x[k] = 0.0;
    p.cs[j] = p.cs[k] = kF;
    return;
  }
  auto inJ = [&](double v) {
    return (!ljf || v >= lj - ftol * (1 + std::fabs(lj))) && (!ujf || v <= uj + ftol * (1 + std::fabs(uj)));
  };
  auto inK = [&](double v) {
    return (!lkf || v >= lk - ftol * (1 + std::fabs(lk))) && (!ukf || v <= uk + ftol * (1 + std::fabs(uk)));
  };
  // x_k at a bound, x_j basic.
  if (lkf && inJ(xp - lam * lk)) {
    p.x[k] = lk; p.cs[k] = kL; p.x[j] = xp - lam * lk; p.cs[j] = kB;
  } else if (ukf && inJ(xp - lam * uk)) {
    p.x[k] = uk; p.cs[k] = kU; p.x[j] = xp - lam * uk; p.cs[j] = kB;
  } else if (ljf && inK((xp - lj) / lam)) {
    p.x[j] = lj; p.cs[j] = kL; p.x[k] = (xp - lj) / lam; p.cs[k] = kB;
  } else if (ujf && inK((xp - uj) / lam)) {
    p.x[j] = uj; p.cs[j] = kU; p.x[k] = (xp - uj) / lam; p.cs[k] = kB;
  } else if (!lkf && !ukf) {
    p.x[k] = 0.0; p.cs[k] = kF; p.x[j] = xp; p.cs[j] = kB;
  } else {
    // Nothing fits within the tolerance: keep the merged value on x_j.
    p.x[k] = lkf ? lk : uk; p.cs[k] = lkf ? kL : kU; p.x[j] = xp - lam * p.x[k]; p.cs[j] = kB;
  }
}

// Write the rebuilt solution into model->sol.
void finish(Post &p, Model *model, const Model *red, double sense, int verdict) {
  const int m = p.m, n = p.n;
  Sol *s = model->sol;
  // Nonbasic columns sit exactly on their bounds.
  for (int j = 0; j < n; ++j) {
    const double l = model->lower[j], u = model->upper[j];
    if (p.cs[j] == kL && l > -kActInf) p.x[j] = l;
    else if (p.cs[j] == kU && u < kActInf) p.x[j] = u;
  }
  std::vector<double> act(m, 0.0);
  // Reduced costs afresh on the original matrix; activities.
  for (int j = 0; j < n; ++j) {
    double dj = sense * model->cost[j];
    const int beg = model->Abeg[j], end = beg + model->Alen[j];
    for (int k = beg; k < end; ++k) {
      const int i = model->Arow[k];
      dj -= model->Acoef[k] * p.y[i];
      act[i] += model->Acoef[k] * p.x[j];
    }
    p.d[j] = dj;
  }
  int nb = 0;
  for (int j = 0; j < n; ++j) nb += p.cs[j] == kB;
  for (int i = 0; i < m; ++i) nb += p.rs[i] == kB;
  if (nb != m) p.basisOk = false;
  int pos = 0;
  double pobj = model->objConst, pinf = 0.0, dinf = 0.0;
  for (int j = 0; j < n; ++j) {
    s->x[j] = p.x[j];
    s->dj[j] = sense * p.d[j];
    s->colstat[j] = p.cs[j] == kB ? pos++ : p.cs[j];
    pobj += model->cost[j] * p.x[j];
    const double l = model->lower[j], u = model->upper[j];
    pinf = std::max({pinf, l - p.x[j], p.x[j] - u});
    double dv;
    if (l == u) dv = 0.0;
    else if (p.cs[j] == kL) dv = std::max(0.0, -p.d[j]);
    else if (p.cs[j] == kU) dv = std::max(0.0, p.d[j]);
    else dv = std::fabs(p.d[j]);
    dinf = std::max(dinf, dv);
  }
  for (int i = 0; i < m; ++i) {
    s->slack[i] = model->rhs[i] - act[i];
    s->y[i] = sense * p.y[i];
    s->rowstat[i] = p.rs[i] == kB ? pos++ : p.rs[i];
    const double lo = row_lo(model, i), up = row_up(model, i);
    if (lo > -kPreInf) pinf = std::max(pinf, lo - act[i]);
    if (up < kPreInf) pinf = std::max(pinf, act[i] - up);
    double dv;
    if (lo == up) dv = 0.0;
    else if (p.rs[i] == kRowLo) dv = std::max(0.0, -p.y[i]);
    else if (p.rs[i] == kRowUp) dv = std::max(0.0, p.y[i]);
    else dv = std::fabs(p.y[i]);
    dinf = std::max(dinf, dv);
  }
  double cmax = 1.0;  // the dual measure is relative to the largest cost, as the simplex's
  for (int j = 0; j < n; ++j) cmax = std::max(cmax, std::fabs(model->cost[j]));
  s->pobj = pobj;
  s->pinfeas = pinf;
  s->dinfeas = dinf / cmax;
  if (red && red->sol && red->nCons + red->nVars > 0) {
    const Sol *rs = red->sol;
    s->dobj = rs->dobj;
    s->model_status = rs->model_status;
    s->primal_status = rs->primal_status;
    s->dual_status = rs->dual_status;
    s->basic_status = p.basisOk ? rs->basic_status : KX_STATUS_UNKNOWN;
    s->method = rs->method;
    s->simIter = rs->simIter;
    s->barIter = rs->barIter;
    s->nlpIter = rs->nlpIter;
  } else {
    s->dobj = pobj;
    s->model_status = s->primal_status = s->dual_status = KX_STATUS_BASIC_OPTIMAL;
    s->basic_status = p.basisOk ? KX_STATUS_BASIC_OPTIMAL : KX_STATUS_UNKNOWN;
    s->method = -1;
    s->simIter = s->barIter = s->nlpIter = 0;
  }
  (void)verdict;
}

int postsolve(Model *reduced, Model *model, PostStack *ps, int *status_out) {
  const int m = model->nCons, n = model->nVars;
  if (ps->nRows != m || ps->nCols != n) return kx::kErrInternal;
  if (ps->verdict != kPreReduced && ps->verdict != kPreSolved) return kx::kErrInternal;
  KX_CALL(kxi_ensure_sol(model));
  Post p;
  p.m = m;
  p.n = n;
  p.x.assign(n, 0.0);
  p.d.assign(n, 0.0);
  p.y.assign(m, 0.0);
  p.cs.assign(n, kB);
  p.rs.assign(m, kB);
  const double ftol = std::max(1e-10, model->splexPam->feasTol);
  size_t ti = ps->stack_i.size(), tr = ps->stack_r.size();
  PsRecord rec;
  bool bad = false;
  if (!ps_read_down(ps, &ti, &tr, &rec, &bad) || rec.kind != kPsRenumber ||
      !undo_renumber(p, rec, reduced, ps->sense))
    return kx::kErrInternal;
  while (ps_read_down(ps, &ti, &tr, &rec, &bad)) {
    switch (rec.kind) {
      case kPsMark: break;
      case kPsFixCol: undo_fix_col(p, rec); break;
      case kPsElimCol: undo_elim_col(p, rec, ftol); break;
      case kPsDelRow: undo_del_row(p, rec); break;
      case kPsSingRow: undo_sing_row(p, rec); break;
      case kPsForceRow:
        if (!undo_force_row(p, rec)) return kx::kErrInternal;
        break;
      case kPsSlackCol: undo_slack_col(p, rec, ftol); break;
      case kPsDoubleton: undo_doubleton(p, rec); break;
      case kPsDupRow: undo_dup_row(p, rec); break;
      case kPsDupCol: undo_dup_col(p, rec, ftol); break;
      default: return kx::kErrInternal;
    }
  }
  if (bad) {
    if (model->logFunc) {
      kxi_log(model, "\n 333 fault in genpre stack stack_num=%d ostack_num=%d ",
              static_cast<int>(ti), static_cast<int>(ps->stack_i.size()));
      kxi_log(model, "\n nidata=%d nrdata=%d", static_cast<int>(ti), static_cast<int>(tr));
    }
    return kx::kErrInternal;
  }
  finish(p, model, reduced, ps->sense, ps->verdict);
  if (status_out) *status_out = model->sol->model_status;
  return 0;
}

}  // namespace

int genpre_postsolv_prob(Model *reduced, Model *model, PostStack *ps, int *status_out) {
  if (!model || !ps) return KXERR_ILLEGAL_NULL_POINTER;
  try {
    return postsolve(reduced, model, ps, status_out);
  } catch (const std::bad_alloc &) {
    return kx::kErrMemory;
  }
}
