// modify.cpp - piecewise changes of a loaded linear program.  Changes of
// right-hand sides, bounds, costs and row types are carried into a live simplex
// state (scaled, with the basis statuses kept valid), so that the next solve
// starts warm from the last basis; changes of the matrix's shape drop the state
// and keep the solution's basis, which the next solve loads.  Every call checks
// all of its input before it changes anything.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "base/modify_int.h"
#include "simplex/glp.h"

using namespace kxmod;

namespace {

inline double clamp_inf(double v) {
  if (v > kx::kInfinity) return kx::kInfinity;
  if (v < -kx::kInfinity) return -kx::kInfinity;
  return v;
}

inline bool valid_con_type(char c) { return c == 'E' || c == 'L' || c == 'G' || c == 'N'; }

// The simplex state if it can take a change of data in place.
GLP *live_glp(Model *m) {
  GLP *g = m->glp;
  if (!g) return nullptr;
  if (in_run(m) || g->m != m->nCons || g->n != m->nVars) {
    kxi_free_solver_memory(m);
    return nullptr;
  }
  return g;
}

void glp_touched(GLP *g) {
  g->stat = GLP_RUNNING;
  g->recompute = 1;
  if (g->wfact == WF_NONE) g->wfact = WF_LIMIT;
}

inline double scaled_bound(const GLP *g, double v, double scale, bool divide) {
  if (v >= g->infin) return g->infin;
  if (v <= -g->infin) return -g->infin;
  return divide ? v / scale : v * scale;
}

// Bounds of variable j in the state changed: keep its status valid.
void glp_bounds_changed(GLP *g, int j, double lo, double up) {
  g->clb[j] = lo;
  g->cub[j] = up;
  if (!g->clbTrue.empty()) {
    g->clbTrue[j] = lo;
    g->cubTrue[j] = up;
  }
  if (g->cbas[j] >= 0) return;
  const bool hl = lo > -g->infin, hu = up < g->infin;
  int st = g->cbas[j];
  if (hl && hu && lo == up) st = -1;
  else if (st == -1 && !hl) st = hu ? -2 : -3;
  else if (st == -2 && !hu) st = hl ? -1 : -3;
  else if ((st == -3 || st == -4) && (hl || hu)) st = (hl && (!hu || std::fabs(lo) <= std::fabs(up))) ? -1 : -2;
  g->cbas[j] = st;
  spx_place_nonbasic(g, j);
}

// Check a list of indices against [0, limit).
int check_indices(int n, const int *idx, int limit) {
  for (int k = 0; k < n; k++)
    if (idx[k] < 0 || idx[k] >= limit) return KXERR_INDEX_OUT_OF_RANGE;
  return 0;
}

int modify_bounds(Model *m, int n, const int *cols, const double *vals, bool upper) {
  if (n <= 0) return n < 0 ? KXERR_PARAMETER_OUT_OF_RANGE : 0;
  if (!m) return KXERR_ILLEGAL_NULL_POINTER;
  if (!cols || !vals || !m->lower || !m->upper) return KXERR_ILLEGAL_NULL_POINTER;
  KX_CALL(check_indices(n, cols, m->nVars));
  bool changed = false;
  for (int k = 0; k < n; k++) {
    const int j = cols[k];
    if (m->nSC > 0 && m->scPos && m->scPos[j]) return KXERR_BAD_INPUT_VALUE;
    const double v = clamp_inf(vals[k]);
    if ((upper ? m->upper[j] : m->lower[j]) != v) changed = true;
  }
  if (!changed) return 0;
  drop_presolve(m);
  GLP *g = live_glp(m);
  for (int k = 0; k < n; k++) {
    const int j = cols[k];
    const double v = clamp_inf(vals[k]);
    (upper ? m->upper[j] : m->lower[j]) = v;
    if (g) {
      const double lo = scaled_bound(g, m->lower[j], g->cscale[j], true);
      const double up = scaled_bound(g, m->upper[j], g->cscale[j], true);
      glp_bounds_changed(g, j, lo, up);
    }
  }
  if (g) glp_touched(g);
  mark_modified(m);
  stale_mip(m);
  return 0;
}

// Bounds of the logical of row i in the state from the model's data.
void glp_row_bounds(Model *m, GLP *g, int i) {
  double lo, up;
  spx_row_bounds(m, i, &lo, &up);
  const double r = g->rscale[i];
  glp_bounds_changed(g, g->n + i, scaled_bound(g, lo, r, false), scaled_bound(g, up, r, false));
}

}  // namespace

extern "C" KX_API int KXmodifyRHS(pModel model, int nCons, const int *paiCons, const double *padValues) {
  return kx::guard([&]() -> int {
    if (nCons == 0) return 0;
    if (!model || !model->rhs || !paiCons || !padValues) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    KX_CALL(check_indices(nCons, paiCons, model->nCons));
    drop_presolve(model);
    GLP *g = live_glp(model);
    for (int k = 0; k < nCons; k++) {
      const int i = paiCons[k];
      model->rhs[i] = padValues[k];
      if (g) g->rhs1[i] = padValues[k] * g->rscale[i];
    }
    if (g) glp_touched(g);
    mark_modified(model);
    stale_mip(model);
    return 0;
  });
}

extern "C" KX_API int KXmodifyLowerBounds(pModel model, int nVars, const int *paiVars,
                                          const double *padL) {
  return kx::guard([&]() -> int { return modify_bounds(model, nVars, paiVars, padL, false); });
}

extern "C" KX_API int KXmodifyUpperBounds(pModel model, int nVars, const int *paiVars,
                                          const double *padU) {
  return kx::guard([&]() -> int { return modify_bounds(model, nVars, paiVars, padU, true); });
}

extern "C" KX_API int KXmodifyObjective(pModel model, int nVars, const int *paiVars, const double *padC) {
  return kx::guard([&]() -> int {
    if (nVars == 0) return 0;
    if (!model || !model->cost || !paiVars || !padC) return KXERR_ILLEGAL_NULL_POINTER;
    if (nVars < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    KX_CALL(check_indices(nVars, paiVars, model->nVars));
    drop_presolve(model);
    GLP *g = live_glp(model);
    for (int k = 0; k < nVars; k++) {
      const int j = paiVars[k];
      model->cost[j] = padC[k];
      if (g) g->objv[j] = g->sense * padC[k] * g->cscale[j] * g->objscale;
    }
    if (g) glp_touched(g);
    mark_modified(model);
    stale_mip(model);
    return 0;
  });
}

extern "C" KX_API int KXmodifyObjConstant(pModel model, double dObjConst) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    drop_presolve(model);
    model->objConst = dObjConst;
    if (GLP *g = live_glp(model)) {
      g->objconst = dObjConst;
      glp_touched(g);
    }
    mark_modified(model);
    stale_mip(model);
    return 0;
  });
}

extern "C" KX_API int KXmodifyConstraintType(pModel model, int nCons, const int *paiCons,
                                             const char *pszConTypes) {
  return kx::guard([&]() -> int {
    if (nCons == 0) return 0;
    if (!model || !model->conType || !paiCons || !pszConTypes) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    KX_CALL(check_indices(nCons, paiCons, model->nCons));
    for (int k = 0; k < nCons; k++)
      if (!valid_con_type(pszConTypes[k])) return KXERR_PARAMETER_OUT_OF_RANGE;
    drop_presolve(model);
    GLP *g = live_glp(model);
    for (int k = 0; k < nCons; k++) {
      const int i = paiCons[k];
      model->conType[i] = pszConTypes[k];
      if (g) glp_row_bounds(model, g, i);
    }
    if (g) glp_touched(g);
    KXI_LoadBaseStats(model);
    mark_modified(model);
    stale_mip(model);
    return 0;
  });
}

extern "C" KX_API int KXmodifyVariableType(pModel model, int nVars, const int *paiVars,
                                           const char *pszVarTypes) {
  return kx::guard([&]() -> int {
    if (nVars == 0) return 0;
    if (!model || !paiVars || !pszVarTypes) return KXERR_ILLEGAL_NULL_POINTER;
    if (nVars < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    KX_CALL(check_indices(nVars, paiVars, model->nVars));
    for (int k = 0; k < nVars; k++) {
      const char t = pszVarTypes[k];
      if (t != 'C' && t != 'B' && t != 'I') return KXERR_BAD_VARIABLE_TYPE;
    }
    if (!model->vartype) {
      KX_CALL(CharMalloc(&model->vartype, std::max(model->nVarsAlloc, 1), KX_HERE));
      for (int j = 0; j < std::max(model->nVarsAlloc, 1); j++) model->vartype[j] = 'C';
    }
    std::vector<int> binCols;
    std::vector<double> lo, up;
    for (int k = 0; k < nVars; k++) {
      const int j = paiVars[k];
      model->vartype[j] = pszVarTypes[k];
      if (pszVarTypes[k] == 'B') {
        const double u = model->upper[j], l = model->lower[j];
        if (u >= 0.0 && l <= 1.0 && (u > 1.0 || l < 0.0)) {
          binCols.push_back(j);
          lo.push_back(std::max(0.0, l));
          up.push_back(std::min(1.0, u));
        }
      }
    }
    model->nBin = model->nInt = 0;
    for (int j = 0; j < model->nVars; j++) {
      if (model->vartype[j] == 'B') model->nBin++;
      else if (model->vartype[j] == 'I') model->nInt++;
    }
    drop_mip(model);
    if (!binCols.empty()) {
      const int c = static_cast<int>(binCols.size());
      KX_CALL(modify_bounds(model, c, binCols.data(), lo.data(), false));
      KX_CALL(modify_bounds(model, c, binCols.data(), up.data(), true));
    }
    return 0;
  });
}

// --- the matrix -----------------------------------------------------------------

namespace {

// Position of row i in column j, or -1.
int find_entry(const Model *m, int j, int i) {
  for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; k++)
    if (m->Arow[k] == i) return k;
  return -1;
}

void shape_changed(Model *m) {
  drop_presolve(m);
  kxi_free_solver_memory(m);
  mark_modified(m);
  stale_mip(m);
}

}  // namespace

extern "C" KX_API int KXmodifyAj(pModel model, int iVar, int nCons, const int *paiCons,
                                 const double *padAj) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons == 0) return 0;
    if (!paiCons || !padAj || !model->Abeg) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (iVar < 0 || iVar >= model->nVars) return KXERR_INDEX_OUT_OF_RANGE;
    KX_CALL(check_indices(nCons, paiCons, model->nCons));
    // New entries: the rows not in the column yet, each once.
    std::vector<int> fresh;
    for (int k = 0; k < nCons; k++) {
      const int i = paiCons[k];
      if (find_entry(model, iVar, i) < 0 && std::find(fresh.begin(), fresh.end(), i) == fresh.end())
        fresh.push_back(i);
    }
    if (!fresh.empty()) {
      const int room = model->Abeg[iVar + 1] - model->Abeg[iVar] - model->Alen[iVar];
      if (room < static_cast<int>(fresh.size())) {
        const long need = static_cast<long>(model->Abeg[model->nVars]) + static_cast<long>(fresh.size());
        if (need > model->nnzAlloc) KX_CALL(set_alloc(model, -1, -1, static_cast<int>(need + 100), -1, -1, -1, -1));
        std::vector<int> extra(static_cast<size_t>(model->nVars), 0);
        extra[static_cast<size_t>(iVar)] = model->Alen[iVar] + static_cast<int>(fresh.size());
        KX_CALL(open_gaps(model, extra.data()));
      }
    }
    for (int k = 0; k < nCons; k++) {
      const int i = paiCons[k];
      int at = find_entry(model, iVar, i);
      if (at < 0) {
        at = model->Abeg[iVar] + model->Alen[iVar]++;
        model->Arow[at] = i;
        model->nNonz++;
      }
      model->Acoef[at] = padAj[k];
    }
    shape_changed(model);
    KXI_LoadBaseStats(model);
    return 0;
  });
}

extern "C" KX_API int KXmodifyAij(pModel model, int iCon, int iVar, double dAij) {
  return KXmodifyAj(model, iVar, 1, &iCon, &dAij);
}

extern "C" KX_API int KXdeleteAj(pModel model, int iVar, int nCons, const int *paiCons) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons == 0) return 0;
    if (!paiCons || !model->Abeg) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (iVar < 0 || iVar >= model->nVars) return KXERR_INDEX_OUT_OF_RANGE;
    KX_CALL(check_indices(nCons, paiCons, model->nCons));
    int removed = 0;
    for (int k = 0; k < nCons; k++) {
      const int at = find_entry(model, iVar, paiCons[k]);
      if (at < 0) continue;
      // Keep the order of the rest of the column.
      const int end = model->Abeg[iVar] + model->Alen[iVar];
      for (int q = at; q + 1 < end; q++) {
        model->Arow[q] = model->Arow[q + 1];
        model->Acoef[q] = model->Acoef[q + 1];
      }
      model->Alen[iVar]--;
      model->nNonz--;
      removed++;
    }
    if (removed == 0) return 0;
    shape_changed(model);
    KXI_LoadBaseStats(model);
    return 0;
  });
}

// --- rows and columns -------------------------------------------------------------

extern "C" KX_API int KXaddConstraints(pModel model, int nCons, const char *pszConTypes,
                                       char **paszConNames, const int *paiArows,
                                       const double *padAcoef, const int *paiAcols,
                                       const double *padB) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons == 0) return 0;
    if (nCons < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (model->modelState == KX_STATUS_UNLOADED && !model->Abeg) return KXERR_NO_MODEL_LOADED;
    const int m0 = model->nCons, n = model->nVars;
    if (pszConTypes)
      for (int i = 0; i < nCons; i++)
        if (!valid_con_type(pszConTypes[i])) return KXERR_BAD_CONSTRAINT_TYPE;
    std::vector<int> perCol;
    if (paiArows) {
      if (!padAcoef || !paiAcols) return KXERR_ILLEGAL_NULL_POINTER;
      if (paiArows[0] < 0) return KXERR_BAD_COLUMN_STARTS;
      perCol.assign(static_cast<size_t>(std::max(n, 1)), 0);
      std::vector<int> stamp(static_cast<size_t>(std::max(n, 1)), -1);
      for (int i = 0; i < nCons; i++) {
        if (paiArows[i + 1] < paiArows[i]) return KXERR_BAD_COLUMN_STARTS;
        for (int k = paiArows[i]; k < paiArows[i + 1]; k++) {
          const int j = paiAcols[k];
          if (j < 0 || j >= n) return KXERR_INDEX_OUT_OF_RANGE;
          if (stamp[static_cast<size_t>(j)] == i) return KXERR_INDEX_DUPLICATE;
          stamp[static_cast<size_t>(j)] = i;
          perCol[static_cast<size_t>(j)]++;
        }
      }
    }
    std::vector<std::string> names;
    const bool withNames = model->conNames || paszConNames;
    if (withNames) {
      names = con_names(model);
      names.resize(static_cast<size_t>(m0));
      for (int i = 0; i < nCons; i++)
        names.emplace_back(paszConNames && paszConNames[i] ? paszConNames[i] : "");
    }
    if (m0 + nCons > model->nConsAlloc) KX_CALL(set_alloc(model, m0 + nCons + 100, -1, -1, -1, -1, -1, -1));
    for (int i = 0; i < nCons; i++) {
      model->rhs[m0 + i] = padB ? padB[i] : 0.0;
      model->conType[m0 + i] = pszConTypes ? pszConTypes[i] : 'E';
      if (model->rangeVal) model->rangeVal[m0 + i] = kx::kInfinity;
    }
    model->conType[m0 + nCons] = '\0';
    if (paiArows) {
      std::vector<int> extra(static_cast<size_t>(std::max(n, 1)), 0);
      long total = 0;
      for (int j = 0; j < n; j++) {
        const int need = perCol[static_cast<size_t>(j)];
        if (need > 0) extra[static_cast<size_t>(j)] = model->Alen[j] + need;
        total += need;
      }
      const long want = static_cast<long>(model->Abeg[n]) + total;
      if (want > model->nnzAlloc) KX_CALL(set_alloc(model, -1, -1, static_cast<int>(want + 100), -1, -1, -1, -1));
      KX_CALL(open_gaps(model, extra.data()));
      for (int i = 0; i < nCons; i++)
        for (int k = paiArows[i]; k < paiArows[i + 1]; k++) {
          const int j = paiAcols[k];
          const int at = model->Abeg[j] + model->Alen[j]++;
          model->Arow[at] = m0 + i;
          model->Acoef[at] = padAcoef[k];
          model->nNonz++;
        }
    }
    model->nCons = m0 + nCons;
    if (withNames) KX_CALL(put_con_names(model, names));
    std::vector<int> rowFrom(static_cast<size_t>(model->nCons));
    for (int i = 0; i < model->nCons; i++) rowFrom[static_cast<size_t>(i)] = i < m0 ? i : -1;
    KX_CALL(remap_sol(model, n, nullptr, model->nCons, rowFrom.data()));
    drop_shape_data(model);
    shape_changed(model);
    KXI_LoadBaseStats(model);
    return 0;
  });
}

extern "C" KX_API int KXaddVariables(pModel model, int nVars, const char *pszVarTypes,
                                     char **paszVarNames, const int *paiAcols, const int *pacAcols,
                                     const double *padAcoef, const int *paiArows, const double *padC,
                                     const double *padL, const double *padU) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nVars == 0) return 0;
    if (nVars < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (model->modelState == KX_STATUS_UNLOADED && !model->Abeg) return KXERR_NO_MODEL_LOADED;
    const int n0 = model->nVars, m = model->nCons;
    if (pszVarTypes)
      for (int j = 0; j < nVars; j++) {
        const char t = pszVarTypes[j];
        if (t != 'C' && t != 'B' && t != 'I') return KXERR_PARAMETER_OUT_OF_RANGE;
      }
    long nz = 0;
    if (paiAcols) {
      if (paiAcols[0] < 0) return KXERR_BAD_COLUMN_STARTS;
      for (int j = 0; j < nVars; j++) {
        const int width = paiAcols[j + 1] - paiAcols[j];
        const int len = pacAcols ? pacAcols[j] : width;
        if (width < 0) return KXERR_BAD_COLUMN_STARTS;
        if (len < 0 || len > width) return KXERR_BAD_COLUMN_LENGTHS;
        if (len > 0 && (!padAcoef || !paiArows)) return KXERR_ILLEGAL_NULL_POINTER;
        for (int k = paiAcols[j]; k < paiAcols[j] + len; k++)
          if (paiArows[k] < 0 || paiArows[k] >= m) return KXERR_INDEX_OUT_OF_RANGE;
        nz += len;
      }
    }
    std::vector<std::string> names;
    const bool withNames = model->varNames || paszVarNames;
    if (withNames) {
      names = var_names(model);
      names.resize(static_cast<size_t>(n0));
      for (int j = 0; j < nVars; j++)
        names.emplace_back(paszVarNames && paszVarNames[j] ? paszVarNames[j] : "");
    }
    if (n0 + nVars > model->nVarsAlloc) KX_CALL(set_alloc(model, -1, n0 + nVars + 100, -1, -1, -1, -1, -1));
    const long want = static_cast<long>(model->Abeg[n0]) + nz;
    if (want > model->nnzAlloc) KX_CALL(set_alloc(model, -1, -1, static_cast<int>(want + 100), -1, -1, -1, -1));
    if (pszVarTypes && !model->vartype) {
      KX_CALL(CharMalloc(&model->vartype, model->nVarsAlloc, KX_HERE));
      for (int j = 0; j < model->nVarsAlloc; j++) model->vartype[j] = 'C';
    }
    std::vector<int> mark(static_cast<size_t>(std::max(m, 1)), 0);
    for (int j = 0; j < nVars; j++) {
      const int c = n0 + j;
      const int beg = model->Abeg[c];
      int out = beg;
      if (paiAcols) {
        const int len = pacAcols ? pacAcols[j] : paiAcols[j + 1] - paiAcols[j];
        for (int k = paiAcols[j]; k < paiAcols[j] + len; k++) {
          const int r = paiArows[k];
          if (mark[static_cast<size_t>(r)]) {
            model->Acoef[mark[static_cast<size_t>(r)] - 1] += padAcoef[k];
          } else {
            model->Arow[out] = r;
            model->Acoef[out] = padAcoef[k];
            mark[static_cast<size_t>(r)] = out + 1;
            out++;
          }
        }
        for (int k = beg; k < out; k++) mark[static_cast<size_t>(model->Arow[k])] = 0;
      }
      model->Alen[c] = out - beg;
      model->Abeg[c + 1] = out;
      model->nNonz += out - beg;
      model->cost[c] = padC ? padC[j] : 0.0;
      double l = padL ? clamp_inf(padL[j]) : 0.0;
      double u = padU ? clamp_inf(padU[j]) : kx::kInfinity;
      const char t = pszVarTypes ? pszVarTypes[j] : 'C';
      if (model->vartype) model->vartype[c] = t;
      if (t == 'B' && u >= 0.0 && l <= 1.0) {
        u = std::min(1.0, u);
        l = std::max(0.0, l);
      }
      model->lower[c] = l;
      model->upper[c] = u;
      if (model->scPos) model->scPos[c] = 0;
      if (model->coneMark) model->coneMark[c] = 0;
      if (model->varPriority) model->varPriority[c] = 0;
      if (model->startX) model->startX[c] = 0.0;
    }
    model->nVars = n0 + nVars;
    if (model->vartype) {
      model->nBin = model->nInt = 0;
      for (int j = 0; j < model->nVars; j++) {
        if (model->vartype[j] == 'B') model->nBin++;
        else if (model->vartype[j] == 'I') model->nInt++;
      }
    }
    if (withNames) KX_CALL(put_var_names(model, names));
    std::vector<int> colFrom(static_cast<size_t>(model->nVars));
    for (int j = 0; j < model->nVars; j++) colFrom[static_cast<size_t>(j)] = j < n0 ? j : -1;
    KX_CALL(remap_sol(model, model->nVars, colFrom.data(), m, nullptr));
    drop_mip(model);
    drop_shape_data(model);
    shape_changed(model);
    KXI_LoadBaseStats(model);
    return 0;
  });
}

namespace {

// Marks of a deletion list: 2012 out of range, 2032 repeated.
int mark_list(int n, const int *idx, int limit, std::vector<char> &gone) {
  gone.assign(static_cast<size_t>(std::max(limit, 1)), 0);
  for (int k = 0; k < n; k++) {
    const int i = idx[k];
    if (i < 0 || i >= limit) return KXERR_INDEX_OUT_OF_RANGE;
    if (gone[static_cast<size_t>(i)]) return KXERR_INDEX_DUPLICATE;
    gone[static_cast<size_t>(i)] = 1;
  }
  return 0;
}

}  // namespace

extern "C" KX_API int KXdeleteConstraints(pModel model, int nCons, const int *paiCons) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons == 0) return 0;
    if (!paiCons) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCons < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    const int m0 = model->nCons, n = model->nVars;
    std::vector<char> gone;
    KX_CALL(mark_list(nCons, paiCons, m0, gone));
    std::vector<int> map(static_cast<size_t>(std::max(m0, 1)), -1), rowFrom;
    int m1 = 0;
    for (int i = 0; i < m0; i++)
      if (!gone[static_cast<size_t>(i)]) {
        map[static_cast<size_t>(i)] = m1++;
        rowFrom.push_back(i);
      }
    std::vector<std::string> names = con_names(model);
    // The matrix, column by column.
    for (int j = 0; j < n; j++) {
      const int b = model->Abeg[j];
      int out = b;
      for (int k = b; k < b + model->Alen[j]; k++) {
        const int r = map[static_cast<size_t>(model->Arow[k])];
        if (r < 0) continue;
        model->Arow[out] = r;
        model->Acoef[out] = model->Acoef[k];
        out++;
      }
      model->nNonz -= b + model->Alen[j] - out;
      model->Alen[j] = out - b;
    }
    for (int k = 0; k < m1; k++) {
      const int i = rowFrom[static_cast<size_t>(k)];
      model->rhs[k] = model->rhs[i];
      model->conType[k] = model->conType[i];
      if (model->rangeVal) model->rangeVal[k] = model->rangeVal[i];
    }
    model->conType[m1] = '\0';
    // Quadratic rows follow the map; the rows deleted lose their terms.
    if (model->nQCRows > 0) {
      int outRow = 0, outNz = 0;
      for (int q = 0; q < model->nQCRows; q++) {
        const int r = model->qcRow[q];
        const int nr = r < 0 ? -1 : map[static_cast<size_t>(r)];
        const int b = model->qcBeg[q], e = model->qcBeg[q + 1];
        if (r >= 0 && nr < 0) continue;
        model->qcRow[outRow] = nr;
        model->qcBeg[outRow] = outNz;
        for (int k = b; k < e; k++) {
          model->qcCol1[outNz] = model->qcCol1[k];
          model->qcCol2[outNz] = model->qcCol2[k];
          model->qcVal[outNz] = model->qcVal[k];
          outNz++;
        }
        outRow++;
      }
      model->qcBeg[outRow] = outNz;
      model->nQCRows = outRow;
      model->nQCNonz = outNz;
    }
    model->nCons = m1;
    if (!names.empty()) {
      std::vector<std::string> kept;
      for (int i : rowFrom) kept.push_back(names[static_cast<size_t>(i)]);
      KX_CALL(put_con_names(model, kept));
    }
    KX_CALL(remap_sol(model, n, nullptr, m1, rowFrom.data()));
    drop_shape_data(model);
    shape_changed(model);
    KXI_LoadBaseStats(model);
    return 0;
  });
}

extern "C" KX_API int KXdeleteVariables(pModel model, int nVars, const int *paiVars) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nVars == 0) return 0;
    if (!paiVars) return KXERR_ILLEGAL_NULL_POINTER;
    if (nVars < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    const int n0 = model->nVars, m = model->nCons;
    std::vector<char> gone;
    KX_CALL(mark_list(nVars, paiVars, n0, gone));
    std::vector<int> map(static_cast<size_t>(std::max(n0, 1)), -1), colFrom;
    int n1 = 0;
    for (int j = 0; j < n0; j++)
      if (!gone[static_cast<size_t>(j)]) {
        map[static_cast<size_t>(j)] = n1++;
        colFrom.push_back(j);
      }
    std::vector<std::string> names = var_names(model);
    // Matrix and column arrays, compacted in place (new index <= old index).
    int at = 0;
    for (int k = 0; k < n1; k++) {
      const int j = colFrom[static_cast<size_t>(k)];
      const int b = model->Abeg[j], l = model->Alen[j];
      for (int q = 0; q < l; q++) {
        model->Arow[at + q] = model->Arow[b + q];
        model->Acoef[at + q] = model->Acoef[b + q];
      }
      model->Abeg[k] = at;
      model->Alen[k] = l;
      at += l;
      model->cost[k] = model->cost[j];
      model->lower[k] = model->lower[j];
      model->upper[k] = model->upper[j];
      if (model->vartype) model->vartype[k] = model->vartype[j];
      if (model->varPriority) model->varPriority[k] = model->varPriority[j];
      if (model->startX) model->startX[k] = model->startX[j];
      if (model->coneMark) model->coneMark[k] = model->coneMark[j];
    }
    model->Abeg[n1] = at;
    model->nNonz = at;
    // Semi-continuous list.
    if (model->nSC > 0) {
      int out = 0;
      for (int k = 0; k < model->nSC; k++) {
        const int j = map[static_cast<size_t>(model->scVar[k])];
        if (j < 0) continue;
        model->scVar[out] = j;
        model->scLower[out] = model->scLower[k];
        out++;
      }
      model->nSC = out;
      for (int j = 0; j < model->nVarsAlloc; j++) model->scPos[j] = 0;
      for (int k = 0; k < out; k++) model->scPos[model->scVar[k]] = k + 1;
    }
    // Sets and cones lose their deleted members.
    if (model->nSets > 0) {
      int out = 0;
      for (int s = 0; s < model->nSets; s++) {
        const int b = model->setBeg[s], l = model->setLen[s];
        model->setBeg[s] = out;
        for (int k = b; k < b + l; k++) {
          const int j = map[static_cast<size_t>(model->setVar[k])];
          if (j >= 0) model->setVar[out++] = j;
        }
        model->setLen[s] = out - model->setBeg[s];
      }
      model->setBeg[model->nSets] = out;
      model->setNnz = out;
    }
    if (model->nCones > 0) {
      int out = 0;
      for (int c = 0; c < model->nCones; c++) {
        const int b = model->coneBeg[c], l = model->coneLen[c];
        model->coneBeg[c] = out;
        for (int k = b; k < b + l; k++) {
          const int j = map[static_cast<size_t>(model->coneVar[k])];
          if (j >= 0) model->coneVar[out++] = j;
        }
        model->coneLen[c] = out - model->coneBeg[c];
      }
      model->coneBeg[model->nCones] = out;
      model->nConeNonz = out;
    }
    if (model->nQCNonz > 0) {
      int outRow = 0, outNz = 0;
      for (int q = 0; q < model->nQCRows; q++) {
        const int b = model->qcBeg[q], e = model->qcBeg[q + 1];
        const int start = outNz;
        for (int k = b; k < e; k++) {
          const int a = map[static_cast<size_t>(model->qcCol1[k])];
          const int c = map[static_cast<size_t>(model->qcCol2[k])];
          if (a < 0 || c < 0) continue;
          model->qcCol1[outNz] = a;
          model->qcCol2[outNz] = c;
          model->qcVal[outNz] = model->qcVal[k];
          outNz++;
        }
        if (outNz == start) continue;
        model->qcRow[outRow] = model->qcRow[q];
        model->qcBeg[outRow] = start;
        outRow++;
      }
      if (model->qcBeg) model->qcBeg[outRow] = outNz;
      model->nQCRows = outRow;
      model->nQCNonz = outNz;
    }
    model->nVars = n1;
    if (model->vartype) {
      model->nBin = model->nInt = 0;
      for (int j = 0; j < n1; j++) {
        if (model->vartype[j] == 'B') model->nBin++;
        else if (model->vartype[j] == 'I') model->nInt++;
      }
    }
    if (!names.empty()) {
      std::vector<std::string> kept;
      for (int j : colFrom) kept.push_back(names[static_cast<size_t>(j)]);
      KX_CALL(put_var_names(model, kept));
    }
    KX_CALL(remap_sol(model, n1, colFrom.data(), m, nullptr));
    drop_mip(model);
    drop_shape_data(model);
    shape_changed(model);
    KXI_LoadBaseStats(model);
    return 0;
  });
}
