// dualmodel.cpp - the explicit dual of a linear model, and the solve through
// it: the primal basis mapped onto the dual, the dual solved, its basis mapped
// back and the primal finished from there.
//
// For the primal  min c x + c0,  lo_i <= a_i x <= hi_i,  l <= x <= u  the dual
// is  max  sum_i (hi_i y_i^+ + lo_i y_i^-) + sum_j (l_j w_j + u_j v_j) + c0  with
// one column per finite side of each row (y^+ <= 0 for the upper side, y^- >= 0
// for the lower, one free column for an equation), one per finite nonzero
// bound (w_j >= 0, v_j <= 0), and one row per primal column j:
//     sum_i a_ij y_i + w_j + v_j  (rel)  c_j,
// where rel is "<=" when l_j = 0 (the multiplier of that bound is the row's
// slack), ">=" when u_j = 0, free when both are 0, "=" otherwise.  A
// maximisation is the same with every sign restriction and relation reversed.
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "base/kx.h"
#include "base/optimize.h"
#include "base/query.h"
#include "simplex/glp.h"

namespace {

constexpr double kInf = kx::kInfinity;

// Where each primal row and bound went in the dual.
struct DualMap {
  std::vector<int> upCol, loCol;   // per primal row: dual column of its upper / lower side, or -1
  std::vector<int> blCol, buCol;   // per primal column: dual column of a nonzero finite bound, or -1
  std::vector<char> zeroLo, zeroUp;  // per primal column: the bound at 0 that became the relation
  int nCols = 0;
};

void activity_span(const Model *m, int i, double *lo, double *hi) {
  double slo, sup;  // bounds of the logical s = b - a x
  spx_row_bounds(m, i, &slo, &sup);
  *lo = sup >= kInf ? -kInf : m->rhs[i] - sup;
  *hi = slo <= -kInf ? kInf : m->rhs[i] - slo;
}

std::string row_name(const Model *m, int i) {
  if (m->conNames) return m->conNames[i];
  char b[32];
  std::snprintf(b, sizeof b, "R%07d", i);
  return b;
}

std::string col_name(const Model *m, int j) {
  if (m->varNames) return m->varNames[j];
  char b[32];
  std::snprintf(b, sizeof b, "C%07d", j);
  return b;
}

bool linear(const Model *m) {
  return m->nQCNonz == 0 && m->nCones == 0 && m->nConeNonz == 0 && !(m->instr && m->instr->codeLen > 0);
}

int build_dual(const Model *m, Model *d, DualMap &map) {
  const int n = m->nVars, nr = m->nCons;
  const bool min = m->objSense != -1;
  // Sign ranges of a multiplier of an upper side (<= 0 in a minimisation) and a lower side.
  const double upL = min ? -kInf : 0.0, upU = min ? 0.0 : kInf;
  const double loL = min ? 0.0 : -kInf, loU = min ? kInf : 0.0;
  std::vector<double> obj, cl, cu;
  std::vector<std::string> names;
  std::vector<std::vector<std::pair<int, double>>> cols;
  auto add = [&](const std::string &name, double c, double l, double u) {
    names.push_back(name);
    obj.push_back(c);
    cl.push_back(l);
    cu.push_back(u);
    cols.emplace_back();
    return static_cast<int>(cols.size()) - 1;
  };
  map.upCol.assign(nr, -1);
  map.loCol.assign(nr, -1);
  for (int i = 0; i < nr; i++) {
    double lo, hi;
    activity_span(m, i, &lo, &hi);
    const std::string nm = row_name(m, i);
    if (lo > -kInf && lo == hi) {
      map.upCol[i] = add("Y_" + nm, hi, -kInf, kInf);
      continue;
    }
    if (hi < kInf) map.upCol[i] = add("Y_" + nm, hi, upL, upU);
    if (lo > -kInf) map.loCol[i] = add((hi < kInf ? "YL_" : "Y_") + nm, lo, loL, loU);
  }
  for (int j = 0; j < n; j++)
    for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; k++) {
      const int i = m->Arow[k];
      if (map.upCol[i] >= 0) cols[map.upCol[i]].push_back({j, m->Acoef[k]});
      if (map.loCol[i] >= 0) cols[map.loCol[i]].push_back({j, m->Acoef[k]});
    }
  map.blCol.assign(n, -1);
  map.buCol.assign(n, -1);
  map.zeroLo.assign(n, 0);
  map.zeroUp.assign(n, 0);
  std::vector<char> types(n > 0 ? n : 1, 'E');
  std::vector<double> rhs(n > 0 ? n : 1, 0.0);
  for (int j = 0; j < n; j++) {
    const double l = m->lower[j], u = m->upper[j];
    const std::string nm = col_name(m, j);
    if (l > -kInf) {
      if (l == 0.0) map.zeroLo[j] = 1;
      else map.blCol[j] = add("BL_" + nm, l, loL, loU), cols.back().push_back({j, 1.0});
    }
    if (u < kInf) {
      if (u == 0.0) map.zeroUp[j] = 1;
      else map.buCol[j] = add("BU_" + nm, u, upL, upU), cols.back().push_back({j, 1.0});
    }
    rhs[j] = m->cost[j];
    if (map.zeroLo[j] && map.zeroUp[j]) types[j] = 'N';
    else if (map.zeroLo[j]) types[j] = min ? 'L' : 'G';
    else if (map.zeroUp[j]) types[j] = min ? 'G' : 'L';
  }
  const int dn = static_cast<int>(cols.size());
  map.nCols = dn;
  std::vector<int> beg(dn + 1, 0), rows;
  std::vector<double> vals;
  for (int c = 0; c < dn; c++) {
    for (const auto &e : cols[c]) {
      rows.push_back(e.first);
      vals.push_back(e.second);
    }
    beg[c + 1] = static_cast<int>(rows.size());
  }
  KX_CALL(KXloadLPData(d, n, dn, min ? -1 : 1, m->objConst, obj.data(), rhs.data(), types.data(),
                       beg[dn], beg.data(), nullptr, vals.data(), rows.data(), cl.data(), cu.data()));
  std::vector<char *> rn(n > 0 ? n : 1), cn(dn > 0 ? dn : 1);
  std::vector<std::string> pc(n);
  for (int j = 0; j < n; j++) pc[j] = col_name(m, j), rn[j] = pc[j].data();
  for (int c = 0; c < dn; c++) cn[c] = names[c].data();
  const std::string title = std::string("DUAL_") + (m->modelName ? m->modelName : "");
  return kxi_load_names(d, title.c_str(), nullptr, nullptr, nullptr, nullptr, n > 0 ? rn.data() : nullptr,
                        dn > 0 ? cn.data() : nullptr, nullptr);
}

// Nonbasic status of a variable with bounds [l, u] resting at its finite bound.
int rest_status(double l, double u) { return l > -kInf ? -1 : u < kInf ? -2 : -3; }

// Make exactly `want` entries basic: promote the nonbasic logicals of rows
// (rstat) in order, or demote basic entries, columns first.
void fix_count(std::vector<int> &cstat, std::vector<int> &rstat, int want,
               const std::vector<double> &cl, const std::vector<double> &cu) {
  int have = 0;
  for (int s : cstat) have += s >= 0;
  for (int s : rstat) have += s >= 0;
  for (size_t i = 0; i < rstat.size() && have < want; i++)
    if (rstat[i] < 0) rstat[i] = 0, have++;
  for (size_t j = cstat.size(); j-- > 0 && have > want;)
    if (cstat[j] >= 0) cstat[j] = rest_status(cl[j], cu[j]), have--;
  for (size_t i = rstat.size(); i-- > 0 && have > want;)
    if (rstat[i] >= 0) rstat[i] = -1, have--;
}

// The primal basis as a basis of the dual (complementary pairs).
void primal_to_dual(const Model *m, const Model *d, const DualMap &map, std::vector<int> &cs,
                    std::vector<int> &rs) {
  const int n = m->nVars, nr = m->nCons;
  const Sol *s = m->sol;
  std::vector<double> cl(d->lower, d->lower + d->nVars), cu(d->upper, d->upper + d->nVars);
  cs.resize(d->nVars);
  for (int c = 0; c < d->nVars; c++) cs[c] = rest_status(cl[c], cu[c]);
  rs.assign(n, -1);
  for (int i = 0; i < nr; i++) {
    const int st = s->rowstat[i];
    if (st >= 0) continue;
    int c = -1;
    if (map.upCol[i] >= 0 && map.loCol[i] >= 0) {
      double lo, hi;
      activity_span(m, i, &lo, &hi);
      const double act = m->rhs[i] - s->slack[i];
      const bool atHi = st == -1 || (st != -2 && std::fabs(act - hi) <= std::fabs(act - lo));
      c = atHi ? map.upCol[i] : map.loCol[i];
    } else {
      c = map.upCol[i] >= 0 ? map.upCol[i] : map.loCol[i];
    }
    if (c >= 0) cs[c] = 0;
  }
  for (int j = 0; j < n; j++) {
    const int st = s->colstat[j];
    if (st >= 0 || st == -3) continue;
    const bool atUp = st == -2 || (st == -4 && m->lower[j] <= -kInf);
    if (atUp) {
      if (map.zeroUp[j]) rs[j] = 0;
      else if (map.buCol[j] >= 0) cs[map.buCol[j]] = 0;
    } else {
      if (map.zeroLo[j]) rs[j] = 0;
      else if (map.blCol[j] >= 0) cs[map.blCol[j]] = 0;
    }
  }
  fix_count(cs, rs, n, cl, cu);
}

// The dual's basis brought back to the primal.
void dual_to_primal(const Model *m, const Model *d, const DualMap &map, std::vector<int> &cs,
                    std::vector<int> &rs) {
  const int n = m->nVars, nr = m->nCons;
  const Sol *s = d->sol;
  rs.assign(nr, 0);
  for (int i = 0; i < nr; i++) {
    const bool up = map.upCol[i] >= 0 && s->colstat[map.upCol[i]] >= 0;
    const bool lo = map.loCol[i] >= 0 && s->colstat[map.loCol[i]] >= 0;
    if (up) rs[i] = -1;       // activity at the upper side: the logical at its lower bound
    else if (lo) rs[i] = -2;  // at the lower side
  }
  // A -2 is taken only where the logical has an upper bound (KXloadBasis).
  for (int i = 0; i < nr; i++) {
    double slo, sup;
    spx_row_bounds(m, i, &slo, &sup);
    if (rs[i] == -2 && sup >= kInf) rs[i] = -1;
  }
  cs.assign(n, 0);
  // A basic slack of dual row j: x_j rests on the bound at 0 that made the row an
  // inequality; a basic bound column: on that bound; otherwise x_j is basic.
  for (int j = 0; j < n; j++) {
    if (s->rowstat[j] >= 0 && (map.zeroLo[j] || map.zeroUp[j])) cs[j] = map.zeroLo[j] ? -1 : -2;
    else if (map.blCol[j] >= 0 && s->colstat[map.blCol[j]] >= 0) cs[j] = -1;
    else if (map.buCol[j] >= 0 && s->colstat[map.buCol[j]] >= 0) cs[j] = -2;
  }
  std::vector<double> cl(m->lower, m->lower + n), cu(m->upper, m->upper + n);
  fix_count(cs, rs, nr, cl, cu);
}

// Deletes the dual model at scope exit.
struct ModelHolder {
  pModel model = nullptr;
  ~ModelHolder() {
    if (model) KXdeleteModel(&model);
  }
};

// Saves the three parameters the dual path changes and puts them back.
struct ParamSaver {
  SplexPam *p;
  int prob, pre, scale;
  explicit ParamSaver(SplexPam *pam) : p(pam), prob(pam->probToSolve), pre(pam->lpPreLevel), scale(pam->lpScale) {}
  ~ParamSaver() {
    p->probToSolve = prob;
    p->lpPreLevel = pre;
    p->lpScale = scale;
  }
};

bool basis_usable(const Sol *s) {
  if (!s || !s->colstat) return false;
  switch (s->basic_status) {
    case KX_STATUS_BASIC_OPTIMAL:
    case KX_STATUS_INFEASIBLE:
    case KX_STATUS_UNBOUNDED:
    case KX_STATUS_FEASIBLE:
    case KX_STATUS_LOADED:
      return true;
    default:
      return false;
  }
}

int mirror(int method) { return method == KX_METHOD_PSIMPLEX ? KX_METHOD_DSIMPLEX : method == KX_METHOD_DSIMPLEX ? KX_METHOD_PSIMPLEX : method; }

}  // namespace

int kxi_optimize_dual(Model *model, int method) {
  if (!linear(model)) return KXERR_BAD_SOLVER_TYPE;
  KX_CALL(kxi_ensure_sol(model));
  SplexPam *p = model->splexPam;
  ParamSaver saved(p);
  p->probToSolve = 0;  // the solves below take the plain path

  int rc = 0;
  ModelHolder dual;
  dual.model = KXcreateModel(model->env, &rc);
  if (!dual.model) return rc;
  Model *d = dual.model;
  *d->splexPam = *p;
  *d->solverPam = *model->solverPam;
  d->splexPam->probToSolve = 0;
  d->logFunc = model->logFunc;
  d->userLogFunc = model->userLogFunc;
  d->logData = model->logData;
  if (p->lpPrintLevel > 0) kxi_log(model, "\nConstructing the explicit dual model...");
  DualMap map;
  KX_CALL(build_dual(model, d, map));
  if (basis_usable(model->sol) && model->sol->nColsAlloc >= model->nVars) {
    std::vector<int> cs, rs;
    primal_to_dual(model, d, map, cs, rs);
    if (KXloadBasis(d, cs.data(), rs.data()) == 0) d->splexPam->lpPreLevel = 0;
  }
  d->parent = model;  // the caller's callback follows the dual's solve
  int dstatus = 0;
  rc = KXoptimize(d, mirror(method), &dstatus);
  d->parent = nullptr;
  const double dualIter = d->sol ? d->sol->simIter : 0.0;
  if (rc == KXERR_USER_INTERRUPT || rc == KXERR_OUT_OF_MEMORY) return rc;

  Sol *s = model->sol;
  if (rc == 0 && (dstatus == KX_STATUS_OPTIMAL || dstatus == KX_STATUS_BASIC_OPTIMAL) && d->sol->colstat) {
    std::vector<int> cs, rs;
    dual_to_primal(model, d, map, cs, rs);
    rc = KXloadBasis(model, cs.data(), rs.data());
    if (rc) return rc;
    p->lpPreLevel = 0;
    p->lpScale = 0;
    if (p->lpPrintLevel > 0) kxi_log(model, "\n\nConstructing a primal basis from the explicit dual...\n");
    rc = KXoptimizeLP(model, KX_METHOD_PSIMPLEX);
  } else {
    // No optimal dual: the primal itself tells infeasible from unbounded.
    p->lpPreLevel = saved.pre;
    p->lpScale = saved.scale;
    rc = KXoptimizeLP(model, method);
  }
  s = model->sol;
  s->simIter += dualIter;
  if (model->cbFunc && rc != KXERR_USER_INTERRUPT) {
    const int loc = method == KX_METHOD_BARRIER ? KX_CALLBACK_BARRIER
                    : method == KX_METHOD_PSIMPLEX ? KX_CALLBACK_PRIMAL
                                                   : KX_CALLBACK_DUAL;
    if (timelapsed(model, s->started, loc, 1, -1.0) < 0) rc = KXERR_USER_INTERRUPT;
  }
  return rc;
}

extern "C" KX_API int KXgetDualModel(pModel model, pModel dual) {
  return kx::guard([&]() -> int {
    if (!model || !dual) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
    if (dual->modelState != KX_STATUS_UNLOADED || dual->nVars > 0 || dual->nCons > 0) return KXERR_ALREADY_LOADED;
    if (!linear(model)) return KXERR_NOT_SUPPORTED;
    if (model->logFunc && model->splexPam->lpPrintLevel > 0) kxi_log(model, "\nConstructing the explicit dual model...");
    DualMap map;
    const int rc = build_dual(model, dual, map);
    if (rc) KXclearModel(dual);
    return rc;
  });
}

extern "C" KX_API int KXIoptimizeDual(pModel model, int nMethod, int *pnStatus) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
    SplexPam *p = model->splexPam;
    const int prob = p->probToSolve;
    p->probToSolve = 2;
    const int rc = KXoptimize(model, nMethod, pnStatus);  // guarded: never throws
    p->probToSolve = prob;
    return rc;
  });
}
