// Data a model holds beyond the plain LP: variable types, sets, semi-continuous
// variables, cones, quadratic terms, ranges, priorities, start points and a
// starting basis.  Every load checks all its input before it changes the model.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <vector>

#include "base/kx.h"

namespace {

void free_sets(Model *m) {
  kx_free(m->setType);
  kx_free(m->setCard);
  kx_free(m->setBeg);
  kx_free(m->setLen);
  kx_free(m->setVar);
  m->nSets = m->nSetsAlloc = m->setNnz = m->setNnzAlloc = 0;
}

void free_semicont(Model *m) {
  kx_free(m->scVar);
  kx_free(m->scPos);
  kx_free(m->scLower);
  m->nSC = m->nSCAlloc = 0;
}

void free_cones(Model *m) {
  kx_free(m->coneType);
  kx_free(m->coneBeg);
  kx_free(m->coneLen);
  kx_free(m->coneVar);
  kx_free(m->coneMark);
  m->nCones = m->nConeNonz = m->nConeNonzAlloc = 0;
}

void free_qc(Model *m) {
  kx_free(m->qcRow);
  kx_free(m->qcBeg);
  kx_free(m->qcCol1);
  kx_free(m->qcCol2);
  kx_free(m->qcVal);
  kx_free(m->qcHelp);
  m->nQCRows = m->nQCNonz = m->qcDirty = 0;
}

void count_types(Model *m) {
  m->nBin = m->nInt = 0;
  if (!m->vartype) return;
  for (int j = 0; j < m->nVars; ++j) {
    if (m->vartype[j] == 'B') ++m->nBin;
    else if (m->vartype[j] == 'I') ++m->nInt;
  }
}

// A raw model array built beside the model and handed over only on success.
template <class T>
struct Owned {
  T *p = nullptr;
  ~Owned() { std::free(p); }
  T *release() {
    T *q = p;
    p = nullptr;
    return q;
  }
};

}  // namespace

void kxi_clear_extended(Model *m) {
  kx_free(m->vartype);
  m->nBin = m->nInt = 0;
  free_sets(m);
  free_semicont(m);
  free_cones(m);
  free_qc(m);
  kxi_free_names(m);
  kx_free(m->varPriority);
  kx_free(m->startX);
}

int kxi_has_quadratic(const Model *m) { return m->nQCNonz > 0; }

void kxi_reset_solution(Model *m) {
  if (m->sol) {
    m->sol->model_status = KX_STATUS_LOADED;
    if (m->sol->primal_status != KX_STATUS_UNLOADED) m->sol->primal_status = KX_STATUS_UNKNOWN;
    m->sol->method = 0;
  }
  if (m->mipsol) {
    std::free(m->mipsol->x);
    kx_free(m->mipsol);
  }
  kxi_free_solver_memory(m);
}

int kxi_load_var_type(Model *m, const char *types) {
  if (!types) {
    kx_free(m->vartype);
    m->nBin = m->nInt = 0;
    kxi_reset_solution(m);
    return 0;
  }
  const int n = m->nVars;
  for (int j = 0; j < n; ++j)
    if (types[j] != 'C' && types[j] != 'I' && types[j] != 'B') return KXERR_BAD_VARIABLE_TYPE;
  if (!m->vartype && m->nVarsAlloc > 0) KX_CALL(CharMalloc(&m->vartype, m->nVarsAlloc, KX_HERE));
  for (int j = 0; j < n; ++j) {
    m->vartype[j] = types[j];
    if (types[j] == 'B') {
      double &l = m->lower[j], &u = m->upper[j];
      if (u >= 0.0 && l <= 1.0) {
        u = std::min(1.0, u);
        l = std::max(0.0, l);
      }
    }
  }
  for (int j = n; j < m->nVarsAlloc; ++j) m->vartype[j] = 'C';
  count_types(m);
  KXI_LoadBaseStats(m);
  kxi_reset_solution(m);
  return 0;
}

int kxi_load_sets(Model *m, int nSets, const char *types, const int *card, const int *beg,
                  const int *cols) {
  if (!types || !beg || !cols) return KXERR_ILLEGAL_NULL_POINTER;
  const int n = m->nVars;
  bool anyCard = false;
  for (int s = 0; s < nSets; ++s) {
    int t = types[s];
    if (t < 1 || t > 4) return KXERR_BAD_CONSTRAINT_TYPE;
    if (t == 4) {
      if (!card) return KXERR_ILLEGAL_NULL_POINTER;
      if (card[s] < 0) return KXERR_BAD_INPUT_VALUE;
      anyCard = true;
    }
    int len = beg[s + 1] - beg[s];
    if (len < (t == 2 ? 2 : 1)) return KXERR_BAD_COLUMN_LENGTHS;
  }
  if (beg[0] < 0) return KXERR_BAD_COLUMN_LENGTHS;
  std::vector<int> stamp(static_cast<size_t>(n), -1);
  for (int s = 0; s < nSets; ++s)
    for (int k = beg[s]; k < beg[s + 1]; ++k) {
      int j = cols[k];
      if (j < 0 || j >= n || stamp[static_cast<size_t>(j)] == s)
        return KXERR_COLUMN_INDEX_OUT_OF_RANGE;
      stamp[static_cast<size_t>(j)] = s;
    }
  const int nnz = beg[nSets] - beg[0];
  Owned<char> t;
  Owned<int> c, b, l, v;
  KX_CALL(CharMalloc(&t.p, nSets, KX_HERE));
  if (anyCard) KX_CALL(IntMalloc(&c.p, nSets, KX_HERE));
  KX_CALL(IntMalloc(&b.p, nSets + 1L, KX_HERE));
  KX_CALL(IntMalloc(&l.p, nSets, KX_HERE));
  KX_CALL(IntMalloc(&v.p, std::max(nnz, 1), KX_HERE));
  for (int s = 0; s < nSets; ++s) {
    t.p[s] = types[s];
    if (c.p) c.p[s] = types[s] == 4 ? card[s] : 0;
    b.p[s] = beg[s] - beg[0];
    l.p[s] = beg[s + 1] - beg[s];
  }
  b.p[nSets] = nnz;
  std::memcpy(v.p, cols + beg[0], sizeof(int) * static_cast<size_t>(nnz));
  free_sets(m);
  m->setType = t.release();
  m->setCard = c.release();
  m->setBeg = b.release();
  m->setLen = l.release();
  m->setVar = v.release();
  m->nSets = m->nSetsAlloc = nSets;
  m->setNnz = m->setNnzAlloc = nnz;
  kxi_reset_solution(m);
  return 0;
}

int kxi_load_semicont(Model *m, int nSC, const int *vars, const double *l, const double *u) {
  if (!vars || !l || !u) return KXERR_ILLEGAL_NULL_POINTER;
  const int n = m->nVars;
  Owned<int> pos, var;
  Owned<double> low;
  KX_CALL(IntCalloc(&pos.p, std::max(m->nVarsAlloc, 1), KX_HERE));
  for (int k = 0; k < nSC; ++k) {
    int j = vars[k];
    if (j < 0 || j >= n) return KXERR_COLUMN_INDEX_OUT_OF_RANGE;
    if (pos.p[j]) return KXERR_INDEX_DUPLICATE;
    pos.p[j] = k + 1;
  }
  KX_CALL(IntMalloc(&var.p, nSC, KX_HERE));
  KX_CALL(DoubleMalloc(&low.p, nSC, KX_HERE));
  for (int k = 0; k < nSC; ++k) {
    var.p[k] = vars[k];
    low.p[k] = l[k];
    int j = vars[k];
    m->upper[j] = u[k] > kx::kInfinity ? kx::kInfinity : u[k];
    m->lower[j] = 0.0;  // the true lower bound is held in scLower
  }
  free_semicont(m);
  m->scPos = pos.release();
  m->scVar = var.release();
  m->scLower = low.release();
  m->nSC = m->nSCAlloc = nSC;
  KXI_LoadBaseStats(m);
  kxi_reset_solution(m);
  return 0;
}

int kxi_load_cones(Model *m, int nCones, const char *types, const int *beg, const int *cols) {
  if (!types || !beg || !cols) return KXERR_ILLEGAL_NULL_POINTER;
  const int n = m->nVars;
  for (int c = 0; c < nCones; ++c) {
    if (types[c] != 'Q' && types[c] != 'R') return KXERR_BAD_CONSTRAINT_TYPE;
    if (beg[c + 1] - beg[c] < (types[c] == 'Q' ? 1 : 2)) return KXERR_BAD_COLUMN_LENGTHS;
  }
  if (beg[0] < 0) return KXERR_BAD_COLUMN_LENGTHS;
  Owned<char> mark, t;
  Owned<int> b, l, v;
  KX_CALL(CharCalloc(&mark.p, std::max(m->nVarsAlloc, 1), KX_HERE));
  for (int k = beg[0]; k < beg[nCones]; ++k) {
    int j = cols[k];
    if (j < 0 || j >= n || mark.p[j] >= 1) return KXERR_COLUMN_INDEX_OUT_OF_RANGE;
    mark.p[j] = 1;
  }
  const int nnz = beg[nCones] - beg[0];
  KX_CALL(CharMalloc(&t.p, nCones, KX_HERE));
  KX_CALL(IntMalloc(&b.p, nCones + 1L, KX_HERE));
  KX_CALL(IntMalloc(&l.p, nCones, KX_HERE));
  KX_CALL(IntMalloc(&v.p, std::max(nnz, 1), KX_HERE));
  for (int c = 0; c < nCones; ++c) {
    t.p[c] = types[c];
    b.p[c] = beg[c] - beg[0];
    l.p[c] = beg[c + 1] - beg[c];
  }
  b.p[nCones] = nnz;
  std::memcpy(v.p, cols + beg[0], sizeof(int) * static_cast<size_t>(nnz));
  free_cones(m);
  m->coneMark = mark.release();
  m->coneType = t.release();
  m->coneBeg = b.release();
  m->coneLen = l.release();
  m->coneVar = v.release();
  m->nCones = nCones;
  m->nConeNonz = m->nConeNonzAlloc = nnz;
  kxi_reset_solution(m);
  return 0;
}

int kxi_load_qc(Model *m, int nnz, const int *rows, const int *c1, const int *c2,
                const double *v) {
  if (!rows || !c1 || !c2 || !v) return KXERR_ILLEGAL_NULL_POINTER;
  const int n = m->nVars, mr = m->nCons;
  for (int k = 0; k < nnz; ++k) {
    if (rows[k] < -1 || rows[k] >= mr) return KXERR_ROW_INDEX_OUT_OF_RANGE;
    if (c1[k] < 0 || c1[k] >= n || c2[k] < 0 || c2[k] >= n)
      return KXERR_COLUMN_INDEX_OUT_OF_RANGE;
  }
  // Sort by row, then by the (larger, smaller) column pair; sum duplicates.
  struct Term {
    int row, j, k;
    double v;
  };
  std::vector<Term> t;
  t.reserve(static_cast<size_t>(nnz));
  for (int q = 0; q < nnz; ++q) {
    if (v[q] == 0.0) continue;
    int a = c1[q], b = c2[q];
    if (a < b) std::swap(a, b);
    t.push_back({rows[q], a, b, v[q]});
  }
  std::stable_sort(t.begin(), t.end(), [](const Term &x, const Term &y) {
    if (x.row != y.row) return x.row < y.row;
    if (x.j != y.j) return x.j < y.j;
    return x.k < y.k;
  });
  size_t out = 0;
  for (size_t q = 0; q < t.size(); ++q) {
    if (out > 0 && t[out - 1].row == t[q].row && t[out - 1].j == t[q].j && t[out - 1].k == t[q].k)
      t[out - 1].v += t[q].v;
    else
      t[out++] = t[q];
  }
  t.resize(out);
  int nRows = 0;
  for (size_t q = 0; q < t.size(); ++q)
    if (q == 0 || t[q].row != t[q - 1].row) ++nRows;
  const int nz = static_cast<int>(t.size());
  Owned<int> row, beg, a1, a2;
  Owned<double> val, help;
  KX_CALL(IntMalloc(&row.p, nRows, KX_HERE));
  KX_CALL(IntMalloc(&beg.p, nRows + 1L, KX_HERE));
  KX_CALL(IntMalloc(&a1.p, nz, KX_HERE));
  KX_CALL(IntMalloc(&a2.p, nz, KX_HERE));
  KX_CALL(DoubleMalloc(&val.p, nz, KX_HERE));
  if (nz > 0) KX_CALL(DoubleCalloc(&help.p, 2L * std::max(m->nConsAlloc, 1), KX_HERE));
  int r = -1;
  for (int q = 0; q < nz; ++q) {
    if (q == 0 || t[static_cast<size_t>(q)].row != t[static_cast<size_t>(q) - 1].row) {
      ++r;
      row.p[r] = t[static_cast<size_t>(q)].row;
      beg.p[r] = q;
    }
    a1.p[q] = t[static_cast<size_t>(q)].j;
    a2.p[q] = t[static_cast<size_t>(q)].k;
    val.p[q] = t[static_cast<size_t>(q)].v;
  }
  if (beg.p) beg.p[nRows] = nz;
  free_qc(m);
  m->qcRow = row.release();
  m->qcBeg = beg.release();
  m->qcCol1 = a1.release();
  m->qcCol2 = a2.release();
  m->qcVal = val.release();
  m->qcHelp = help.release();
  m->nQCRows = nRows;
  m->nQCNonz = nz;
  kxi_reset_solution(m);
  return 0;
}

int kxi_load_ranges(Model *m, const double *r) {
  if (!r) {
    kx_free(m->rangeVal);
  } else {
    if (!m->rangeVal && m->nCons > 0) KX_CALL(DoubleMalloc(&m->rangeVal, m->nConsAlloc, KX_HERE));
    for (int i = 0; i < m->nCons; ++i) {
      double v = r[i];
      m->rangeVal[i] = std::fabs(v) >= kx::kInfinity ? kx::kInfinity : v;
    }
  }
  KXI_LoadBaseStats(m);
  kxi_reset_solution(m);
  return 0;
}

extern "C" KX_API int KXloadVarType(pModel model, const char *pachVarTypes) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi_load_var_type(model, pachVarTypes);
  });
}

extern "C" KX_API int KXloadSETSData(pModel model, int nSETS, const char *pszSETStype,
                                     const int *paiCARDnum, const int *paiSETSbegcol,
                                     const int *paiSETScols) {
  return kx::guard([&]() -> int {
    if (nSETS == 0) return 0;
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->nSets > 0) return KXERR_ALREADY_LOADED;
    if (nSETS < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    return kxi_load_sets(model, nSETS, pszSETStype, paiCARDnum, paiSETSbegcol, paiSETScols);
  });
}

extern "C" KX_API int KXloadSemiContData(pModel model, int nSCVars, const int *paiVars,
                                         const double *padL, const double *padU) {
  return kx::guard([&]() -> int {
    if (nSCVars == 0) return 0;
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->nSC > 0) return KXERR_ALREADY_LOADED;
    if (nSCVars < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    return kxi_load_semicont(model, nSCVars, paiVars, padL, padU);
  });
}

extern "C" KX_API int KXloadConeData(pModel model, int nCone, const char *pszConeTypes,
                                     const int *paiConebegcone, const int *paiConecols) {
  return kx::guard([&]() -> int {
    if (nCone == 0) return 0;
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->nCones > 0 || model->nQCNonz > 0 || model->instr) return KXERR_ALREADY_LOADED;
    if (nCone < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    return kxi_load_cones(model, nCone, pszConeTypes, paiConebegcone, paiConecols);
  });
}

extern "C" KX_API int KXloadQCData(pModel model, int nQCnnz, const int *paiQCrows,
                                   const int *paiQCcols1, const int *paiQCcols2,
                                   const double *padQCcoef) {
  return kx::guard([&]() -> int {
    if (nQCnnz == 0) return 0;
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->nCones > 0 || model->instr) return KXERR_ALREADY_LOADED;
    if (nQCnnz < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    return kxi_load_qc(model, nQCnnz, paiQCrows, paiQCcols1, paiQCcols2, padQCcoef);
  });
}

extern "C" KX_API int KXloadConstraintRanges(pModel model, const double *padR) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi_load_ranges(model, padR);
  });
}

extern "C" KX_API int KXloadVarPriorities(pModel model, const int *panCprior) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (!panCprior) {
      kx_free(model->varPriority);
      return 0;
    }
    if (!model->varPriority && model->nVarsAlloc > 0)
      KX_CALL(IntCalloc(&model->varPriority, model->nVarsAlloc, KX_HERE));
    int rc = 0;
    for (int j = 0; j < model->nVars; ++j) {
      if (panCprior[j] < 0) {
        rc = KXERR_INDEX_OUT_OF_RANGE;
        continue;
      }
      model->varPriority[j] = panCprior[j];
    }
    return rc;
  });
}

extern "C" KX_API int KXgetVarPriorities(pModel model, int *panCprior) {
  return kx::guard([&]() -> int {
    if (!model || !panCprior) return KXERR_ILLEGAL_NULL_POINTER;
    if (!model->varPriority) return KXERR_INFO_NOT_AVAILABLE;
    std::memcpy(panCprior, model->varPriority, sizeof(int) * static_cast<size_t>(model->nVars));
    return 0;
  });
}

extern "C" KX_API int KXloadVarStartPoint(pModel model, const double *padPrimal) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (!padPrimal) {
      kx_free(model->startX);
      return 0;
    }
    if (!model->startX && model->nVarsAlloc > 0)
      KX_CALL(DoubleMalloc(&model->startX, model->nVarsAlloc, KX_HERE));
    std::memcpy(model->startX, padPrimal, sizeof(double) * static_cast<size_t>(model->nVars));
    return 0;
  });
}

extern "C" KX_API int KXgetVarStartPoint(pModel model, double *padPrimal) {
  return kx::guard([&]() -> int {
    if (!model || !padPrimal) return KXERR_ILLEGAL_NULL_POINTER;
    if (!model->startX) return KXERR_INFO_NOT_AVAILABLE;
    std::memcpy(padPrimal, model->startX, sizeof(double) * static_cast<size_t>(model->nVars));
    return 0;
  });
}

extern "C" KX_API int KXloadBasis(pModel model, const int *panCstatus, const int *panRstatus) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    const int n = model->nVars, m = model->nCons;
    if ((!panCstatus && n > 0) || (!panRstatus && m > 0)) {
      kxi_free_solver_memory(model);
      if (model->sol) {
        model->sol->basic_status = KX_STATUS_UNLOADED;
        if (model->sol->primal_status == KX_STATUS_BASIC_OPTIMAL) {
          model->sol->primal_status = KX_STATUS_OPTIMAL;
          model->sol->model_status = KX_STATUS_OPTIMAL;
        }
      }
      return 0;
    }
    // Check first: columns, rows, then the count of basic positions.
    int basic = 0;
    std::vector<int> cs(static_cast<size_t>(n)), rs(static_cast<size_t>(m));
    for (int j = 0; j < n; ++j) {
      int s = panCstatus[j];
      if (s < -4) return KXERR_BASIS_COL_STATUS;
      if (s >= 0) {
        cs[static_cast<size_t>(j)] = basic < m ? basic++ : KX_BASIS_BY_BOUNDS;
      } else {
        cs[static_cast<size_t>(j)] = s == -4 ? KX_BASIS_FREE_ZERO : s;
      }
    }
    for (int i = 0; i < m; ++i) {
      int s = panRstatus[i];
      // -2 (at upper) is taken where the row's logical b - a x has a finite upper
      // bound: a G or E row, or an L row with a range.  KXgetBasis gives it there.
      const char t = model->conType[i];
      const bool upper = t == 'G' || t == 'E' ||
                         (t == 'L' && model->rangeVal && std::fabs(model->rangeVal[i]) < KX_INFINITY);
      if (s < -1 && s != -3 && s != -4 && !(s == -2 && upper)) return KXERR_BASIS_ROW_STATUS;
      if (s >= 0) {
        rs[static_cast<size_t>(i)] = basic++;
      } else {
        rs[static_cast<size_t>(i)] = s == -4 ? KX_BASIS_FREE_ZERO : s;
      }
    }
    if (basic != m) return KXERR_BASIS_INVALID;
    kxi_free_solver_memory(model);
    KX_CALL(kxi_ensure_sol(model));
    std::copy(cs.begin(), cs.end(), model->sol->colstat);
    std::copy(rs.begin(), rs.end(), model->sol->rowstat);
    // A given basis is one the next solve starts from (KX_STATUS_LOADED).
    model->sol->basic_status = KX_STATUS_LOADED;
    return 0;
  });
}
