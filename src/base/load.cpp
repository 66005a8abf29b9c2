// Loading a linear program, planting a status, and the load statistics.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/kx.h"

namespace {

inline bool valid_con_type(char c) { return c == 'E' || c == 'L' || c == 'G' || c == 'N'; }

// Copy the data and run the checks from "a required vector is null" on.  On a
// failure the caller clears the model.
int load_lp(Model *m, int nCons, int nVars, int nObjSense, double dObjConst, const double *padC,
            const double *padB, const char *pszConTypes, int nAnnz, const int *paiAcols,
            const int *pacAcols, const double *padAcoef, const int *paiArows, const double *padL,
            const double *padU) {
  // 3. Required vectors.
  if (!paiAcols || (nVars > 0 && !padC) || (nCons > 0 && (!padB || !pszConTypes)) ||
      (nAnnz > 0 && (!padAcoef || !paiArows)))
    return KXERR_ILLEGAL_NULL_POINTER;

  const int n = nVars, mrows = nCons;
  const int nAlloc = n > 0 ? n : 1;
  m->nVarsAlloc = nAlloc;
  m->nConsAlloc = mrows;
  KX_CALL(IntMalloc(&m->Abeg, nAlloc + 1L, KX_HERE));
  std::memcpy(m->Abeg, paiAcols, sizeof(int) * (static_cast<size_t>(n) + 1));
  if (n == 0) m->Abeg[1] = m->Abeg[0];
  const int space = paiAcols[n];

  // 4. Total count against the space the starts take.
  if (nAnnz > space) return KXERR_TOTAL_NONZCOUNT;
  // 5. Sense.
  if (nObjSense != 1 && nObjSense != -1) return KXERR_BAD_OBJECTIVE_SENSE;
  m->objSense = nObjSense;
  m->objConst = dObjConst;

  // 6. Row types.
  KX_CALL(CharMalloc(&m->conType, mrows + 1L, KX_HERE));
  KX_CALL(DoubleMalloc(&m->rhs, mrows + 1L, KX_HERE));
  for (int i = 0; i < mrows; ++i) {
    char c = pszConTypes[i];
    if (!valid_con_type(c)) return KXERR_BAD_CONSTRAINT_TYPE;
    m->conType[i] = c;
    m->rhs[i] = padB[i];
  }
  m->conType[mrows] = '\0';
  m->rhs[mrows] = 0.0;

  // 7. Column lengths.
  KX_CALL(IntMalloc(&m->Alen, nAlloc, KX_HERE));
  if (n == 0) m->Alen[0] = 0;
  if (paiAcols[0] < 0) return pacAcols ? KXERR_BAD_COLUMN_LENGTHS : KXERR_BAD_COLUMN_STARTS;
  long total = 0;
  for (int j = 0; j < n; ++j) {
    int width = paiAcols[j + 1] - paiAcols[j];
    if (pacAcols) {
      if (pacAcols[j] < 0 || pacAcols[j] > width) return KXERR_BAD_COLUMN_LENGTHS;
      m->Alen[j] = pacAcols[j];
    } else {
      if (width < 0) return KXERR_BAD_COLUMN_STARTS;
      m->Alen[j] = width;
    }
    total += m->Alen[j];
  }
  // 8. Sum of lengths.
  if (total != nAnnz) return KXERR_TOTAL_NONZCOUNT;

  // 9. Row indices, copying the matrix with its gaps.
  m->nnzAlloc = space;
  KX_CALL(IntMalloc(&m->Arow, space > 0 ? space : 1, KX_HERE));
  KX_CALL(DoubleMalloc(&m->Acoef, space > 0 ? space : 1, KX_HERE));
  for (int j = 0; j < n; ++j) {
    int b = paiAcols[j];
    for (int k = b; k < b + m->Alen[j]; ++k) {
      int r = paiArows[k];
      if (r < 0 || r >= mrows) return KXERR_INDEX_OUT_OF_RANGE;
    }
  }
  if (space > 0 && nAnnz > 0) {
    // Gaps hold no data of the caller that needs to survive but the space itself.
    for (int j = 0; j < n; ++j) {
      int b = paiAcols[j];
      std::memcpy(m->Arow + b, paiArows + b, sizeof(int) * static_cast<size_t>(m->Alen[j]));
      std::memcpy(m->Acoef + b, padAcoef + b, sizeof(double) * static_cast<size_t>(m->Alen[j]));
    }
  }

  // Merge duplicates within each column: the first occurrence keeps its place.
  std::vector<int> mark(static_cast<size_t>(mrows) + 1, 0);
  for (int j = 0; j < n; ++j) {
    int b = m->Abeg[j], len = m->Alen[j], out = b;
    for (int k = b; k < b + len; ++k) {
      int r = m->Arow[k];
      if (mark[r]) {
        m->Acoef[mark[r] - 1] += m->Acoef[k];
      } else {
        m->Arow[out] = r;
        m->Acoef[out] = m->Acoef[k];
        mark[r] = out + 1;
        ++out;
      }
    }
    for (int k = b; k < out; ++k) mark[m->Arow[k]] = 0;
    m->Alen[j] = out - b;
  }
  m->nNonz = nAnnz;

  // Costs and bounds, clamped to the infinities.
  KX_CALL(DoubleMalloc(&m->cost, nAlloc, KX_HERE));
  KX_CALL(DoubleMalloc(&m->lower, nAlloc, KX_HERE));
  KX_CALL(DoubleMalloc(&m->upper, nAlloc, KX_HERE));
  for (int j = 0; j < nAlloc; ++j) {
    m->cost[j] = j < n ? padC[j] : 0.0;
    double l = (j < n && padL) ? padL[j] : 0.0;
    double u = (j < n && padU) ? padU[j] : kx::kInfinity;
    m->lower[j] = l < -kx::kInfinity ? -kx::kInfinity : l;
    m->upper[j] = u > kx::kInfinity ? kx::kInfinity : u;
  }
  m->nCons = mrows;
  m->nVars = n;
  return 0;
}

// Minimum and maximum of the nonzero absolute values, and their condition.
struct Spread {
  double lo = kx::kInfinity, hi = 0.0;
  void add(double v) {
    v = std::fabs(v);
    if (v == 0.0 || v >= kx::kInfinity) return;
    if (v < lo) lo = v;
    if (v > hi) hi = v;
  }
  double cond() const { return hi > 0.0 ? hi / lo : 1.0; }
};

}  // namespace

void KXI_LoadBaseStats(Model *m) {
  ModelStats &s = m->stats;
  s = ModelStats{};
  for (int i = 0; i < m->nCons; ++i) {
    switch (m->conType[i]) {
      case 'L': ++s.nL; break;
      case 'E': ++s.nE; break;
      case 'G': ++s.nG; break;
      default: ++s.nN; break;
    }
    if (m->rangeVal && m->rangeVal[i] != 0.0 && std::fabs(m->rangeVal[i]) < kx::kInfinity) ++s.nR;
  }
  Spread a, c, b, l, u;
  for (int j = 0; j < m->nVars; ++j) {
    double lo = m->lower[j], up = m->upper[j];
    bool fl = lo > -kx::kInfinity, fu = up < kx::kInfinity;
    if (fl && fu && lo == up) ++s.nFixed;
    else if (fl && fu) ++s.nBoxed;
    else if (fl) ++s.nLowerOnly;
    else if (fu) ++s.nUpperOnly;
    else ++s.nFree;
    c.add(m->cost[j]);
    l.add(lo);
    u.add(up);
    for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; ++k) a.add(m->Acoef[k]);
  }
  for (int i = 0; i < m->nCons; ++i) b.add(m->rhs[i]);
  auto fill = [](const Spread &sp, double &lo, double &hi) {
    lo = sp.hi > 0.0 ? sp.lo : 0.0;
    hi = sp.hi;
  };
  fill(a, s.aMin, s.aMax);
  fill(c, s.cMin, s.cMax);
  fill(b, s.bMin, s.bMax);
  fill(l, s.lMin, s.lMax);
  fill(u, s.uMin, s.uMax);
  s.badScaleMask = (a.cond() > 1e9 ? 1 : 0) | (c.cond() > 1e12 ? 2 : 0) |
                   (l.cond() > 1e12 ? 4 : 0) | (u.cond() > 1e12 ? 8 : 0) |
                   (b.cond() > 1e12 ? 16 : 0);
}

extern "C" KX_API int KXloadLPData(pModel model, int nCons, int nVars, int nObjSense,
                                   double dObjConst, const double *padC, const double *padB,
                                   const char *pszConTypes, int nAnnz, const int *paiAcols,
                                   const int *pacAcols, const double *padAcoef,
                                   const int *paiArows, const double *padL, const double *padU) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->nVars > 0 || model->nCons > 0) return KXERR_ALREADY_LOADED;
    int rc;
    if (nCons < 0 || nVars < 0 || nAnnz < 0) {
      rc = KXERR_PARAMETER_OUT_OF_RANGE;
    } else {
      try {
        rc = load_lp(model, nCons, nVars, nObjSense, dObjConst, padC, padB, pszConTypes, nAnnz,
                     paiAcols, pacAcols, padAcoef, paiArows, padL, padU);
      } catch (const std::bad_alloc &) {
        rc = kx::kErrMemory;
      }
    }
    if (rc != 0) {
      kxi_clear_model(model);
      return rc;
    }
    model->modelState = KX_STATUS_LOADED;
    KXI_LoadBaseStats(model);
    return 0;
  });
}

extern "C" KX_API int KXloadModelStatus(pModel model, int nStatus, int nErrorcode) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    bool ok = (nStatus >= 1 && nStatus <= 7) || nStatus == 10 || nStatus == 11 || nStatus == 12 ||
              nStatus == 14;
    if (!ok) return KXERR_ERROR_IN_INPUT;
    if (nErrorcode != 0 && (nErrorcode < 2001 || nErrorcode > kMsgMaxCode))
      return KXERR_ERROR_IN_INPUT;
    KX_CALL(kxi_ensure_sol(model));
    model->sol->model_status = nStatus;
    model->sol->primal_status = nStatus;
    model->lastError = nErrorcode;
    return 0;
  });
}
