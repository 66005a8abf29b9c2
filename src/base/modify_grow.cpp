// modify_grow.cpp - room for changes: the allocation sizes of a model's arrays,
// gaps in the columns of A, the solution record reshaped after rows or columns
// come and go, the names rebuilt, and the marks a change leaves on the model.
#include <algorithm>
#include <cstring>

#include "base/modify_int.h"
#include "presolve/presolve.h"

namespace kxmod {

bool in_run(const Model *m) { return m->inCallback != 0; }

void drop_presolve(Model *m) {
  if (m->presolved || m->poststack) gen_free_presolve(m);
}

void mark_modified(Model *m) {
  m->modelState = KX_STATUS_LOADED;
  if (Sol *s = m->sol) {
    s->model_status = KX_STATUS_LOADED;
    if (s->basic_status != KX_STATUS_UNLOADED) s->basic_status = KX_STATUS_LOADED;
    if (s->primal_status != KX_STATUS_UNLOADED) s->primal_status = KX_STATUS_UNKNOWN;
    s->method = 0;
  }
}

void stale_mip(Model *m) {
  if (m->mipsol) m->mipsol->MIPstatus = KX_STATUS_UNKNOWN;
}

void drop_mip(Model *m) {
  if (m->mipsol) {
    std::free(m->mipsol->x);
    kx_free(m->mipsol);
  }
}

void drop_shape_data(Model *m) {
  kxi_free_name_hashes(m);
  if (m->iis) kx_free(m->iis);
  if (m->ius) kx_free(m->ius);
}

int remap_sol(Model *m, int newN, const int *colFrom, int newM, const int *rowFrom) {
  Sol *old = m->sol;
  if (!old) return 0;
  Sol *s = static_cast<Sol *>(std::calloc(1, sizeof(Sol)));
  if (!s) return kx::kErrMemory;
  *s = *old;
  s->colstat = s->rowstat = nullptr;
  s->x = s->y = s->xIpm = s->yIpm = nullptr;
  const int n1 = newN > 0 ? newN : 1, m1 = newM > 0 ? newM : 1;
  if (IntCalloc(&s->colstat, n1, KX_HERE) || IntCalloc(&s->rowstat, m1, KX_HERE) ||
      DoubleCalloc(&s->x, 2L * n1, KX_HERE) || DoubleCalloc(&s->y, 2L * m1, KX_HERE) ||
      DoubleCalloc(&s->xIpm, 2L * n1, KX_HERE) || DoubleCalloc(&s->yIpm, 2L * m1, KX_HERE)) {
    kxi_free_sol(s);
    return kx::kErrMemory;
  }
  s->dj = s->x + n1;
  s->slack = s->y + m1;
  s->djIpm = s->xIpm + n1;
  s->slackIpm = s->yIpm + m1;
  s->nColsAlloc = newN;
  s->nRowsAlloc = newM;
  const bool had = old->colstat && old->x;
  for (int k = 0; k < newN; k++) {
    const int j = colFrom ? colFrom[k] : k;
    if (j >= 0 && had && j < old->nColsAlloc) {
      s->colstat[k] = old->colstat[j];
      s->x[k] = old->x[j];
      s->dj[k] = old->dj[j];
      if (old->xIpm) {
        s->xIpm[k] = old->xIpm[j];
        s->djIpm[k] = old->djIpm[j];
      }
    } else {
      s->colstat[k] = -1;
    }
  }
  const bool hadR = old->rowstat && old->y;
  for (int k = 0; k < newM; k++) {
    const int i = rowFrom ? rowFrom[k] : k;
    if (i >= 0 && hadR && i < old->nRowsAlloc) {
      s->rowstat[k] = old->rowstat[i];
      s->y[k] = old->y[i];
      s->slack[k] = old->slack[i];
      if (old->yIpm) {
        s->yIpm[k] = old->yIpm[i];
        s->slackIpm[k] = old->slackIpm[i];
      }
    } else {
      s->rowstat[k] = k;  // basic at its logical
    }
  }
  kxi_free_sol(m->sol);
  m->sol = s;
  return 0;
}

namespace {

template <class T>
int grow(T **p, long n, long used, T fill) {
  if (n < 1) n = 1;
  T *q = static_cast<T *>(std::realloc(*p, sizeof(T) * static_cast<size_t>(n)));
  if (!q) return kx::kErrMemory;
  for (long k = used; k < n; k++) q[k] = fill;
  *p = q;
  return 0;
}

}  // namespace

int set_alloc(Model *m, int nCons, int nVars, int nnz, int nQC, int nConeNz, int nSets, int nSetNnz) {
  (void)nQC;
  if (nCons >= 0) {
    const int want = std::max(nCons, m->nCons);
    if (want != m->nConsAlloc || !m->rhs) {
      KX_CALL(grow(&m->rhs, want + 1L, m->nCons, 0.0));
      KX_CALL(grow(&m->conType, want + 1L, m->nCons, 'E'));
      m->conType[m->nCons] = '\0';
      if (m->rangeVal) KX_CALL(grow(&m->rangeVal, want, m->nCons, kx::kInfinity));
      if (m->qcHelp) KX_CALL(grow(&m->qcHelp, 2L * want, 2L * std::min(want, m->nConsAlloc), 0.0));
      if (m->conNames) KX_CALL(grow(&m->conNames, want, m->nCons, static_cast<char *>(nullptr)));
      m->nConsAlloc = want;
    }
  }
  if (nVars >= 0) {
    const int want = std::max(std::max(nVars, m->nVars), 1);
    if (want != m->nVarsAlloc || !m->Abeg) {
      const int n = m->nVars;
      KX_CALL(grow(&m->Abeg, want + 1L, n + 1L, m->Abeg ? m->Abeg[n] : 0));
      KX_CALL(grow(&m->Alen, want, n, 0));
      KX_CALL(grow(&m->cost, want, n, 0.0));
      KX_CALL(grow(&m->lower, want, n, 0.0));
      KX_CALL(grow(&m->upper, want, n, kx::kInfinity));
      if (m->vartype) KX_CALL(grow(&m->vartype, want, n, 'C'));
      if (m->varPriority) KX_CALL(grow(&m->varPriority, want, n, 0));
      if (m->startX) KX_CALL(grow(&m->startX, want, n, 0.0));
      if (m->coneMark) KX_CALL(grow(&m->coneMark, want, n, static_cast<char>(0)));
      if (m->scPos) KX_CALL(grow(&m->scPos, want, n, 0));
      if (m->varNames) KX_CALL(grow(&m->varNames, want, n, static_cast<char *>(nullptr)));
      m->nVarsAlloc = want;
    }
  }
  if (nnz >= 0) {
    const int used = m->Abeg ? m->Abeg[m->nVars] : 0;
    const int want = std::max(std::max(nnz, used), 1);
    if (want != m->nnzAlloc || !m->Arow) {
      KX_CALL(grow(&m->Arow, want, used, 0));
      KX_CALL(grow(&m->Acoef, want, used, 0.0));
      m->nnzAlloc = want;
    }
  }
  if (nConeNz >= 0 && m->coneVar) {
    const int want = std::max(nConeNz, m->nConeNonz);
    KX_CALL(grow(&m->coneVar, want, m->nConeNonz, 0));
    m->nConeNonzAlloc = want;
  }
  if (nSets >= 0 && m->setType) {
    const int want = std::max(nSets, m->nSets);
    KX_CALL(grow(&m->setType, want, m->nSets, static_cast<char>(1)));
    KX_CALL(grow(&m->setBeg, want + 1L, m->nSets + 1L, m->setBeg[m->nSets]));
    KX_CALL(grow(&m->setLen, want, m->nSets, 0));
    if (m->setCard) KX_CALL(grow(&m->setCard, want, m->nSets, 0));
    m->nSetsAlloc = want;
  }
  if (nSetNnz >= 0 && m->setVar) {
    const int want = std::max(nSetNnz, m->setNnz);
    KX_CALL(grow(&m->setVar, want, m->setNnz, 0));
    m->setNnzAlloc = want;
  }
  return 0;
}

int open_gaps(Model *m, const int *extra) {
  const int n = m->nVars;
  long total = 0;
  for (int j = 0; j < n; j++) {
    if (extra[j] <= 0) continue;
    const int room = m->Abeg[j + 1] - m->Abeg[j] - m->Alen[j];
    total += std::max(0, extra[j] - room);
  }
  if (total == 0) return 0;
  const long need = total + m->Abeg[n];
  if (need > m->nnzAlloc) {
    KX_CALL(IntRealloc(&m->Arow, need, KX_HERE));
    KX_CALL(DoubleRealloc(&m->Acoef, need, KX_HERE));
    m->nnzAlloc = static_cast<int>(need);
  }
  // New starts: each column keeps its room plus its shortfall.
  long shift = total;
  m->Abeg[n] = static_cast<int>(m->Abeg[n] + total);
  for (int j = n - 1; j >= 0; j--) {
    const int room = m->Abeg[j + 1] - static_cast<int>(shift) - m->Abeg[j] - m->Alen[j];
    const int shortfall = extra[j] > 0 ? std::max(0, extra[j] - room) : 0;
    shift -= shortfall;
    const int oldStart = m->Abeg[j];
    const int newStart = static_cast<int>(oldStart + shift);
    if (newStart != oldStart) {
      for (int k = m->Alen[j] - 1; k >= 0; k--) {
        m->Arow[newStart + k] = m->Arow[oldStart + k];
        m->Acoef[newStart + k] = m->Acoef[oldStart + k];
      }
      m->Abeg[j] = newStart;
    }
  }
  return 0;
}

std::vector<std::string> con_names(const Model *m) {
  std::vector<std::string> v;
  if (!m->conNames) return v;
  v.reserve(static_cast<size_t>(m->nCons));
  for (int i = 0; i < m->nCons; i++) v.emplace_back(m->conNames[i] ? m->conNames[i] : "");
  return v;
}

std::vector<std::string> var_names(const Model *m) {
  std::vector<std::string> v;
  if (!m->varNames) return v;
  v.reserve(static_cast<size_t>(m->nVars));
  for (int j = 0; j < m->nVars; j++) v.emplace_back(m->varNames[j] ? m->varNames[j] : "");
  return v;
}

namespace {

int put_names(Model *m, const std::vector<std::string> &names, bool rows) {
  std::vector<char *> p(names.size() + 1, nullptr);
  for (size_t k = 0; k < names.size(); k++) p[k] = const_cast<char *>(names[k].c_str());
  if (rows) {
    kx_free(m->conNames);
    kx_free(m->conNameText);
    m->conNameLen = 0;
    if (names.empty()) return 0;
    return kxi_load_names(m, nullptr, nullptr, nullptr, nullptr, nullptr, p.data(), nullptr, nullptr);
  }
  kx_free(m->varNames);
  kx_free(m->varNameText);
  m->varNameLen = 0;
  if (names.empty()) return 0;
  return kxi_load_names(m, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, p.data(), nullptr);
}

}  // namespace

int put_con_names(Model *m, const std::vector<std::string> &names) { return put_names(m, names, true); }
int put_var_names(Model *m, const std::vector<std::string> &names) { return put_names(m, names, false); }

}  // namespace kxmod

extern "C" KX_API int KXsetProbAllocSizes(pModel model, int nCons, int nVars, int nAnnz, int nQCnnz,
                                          int nConeNnz, int nSets, int nSetNnz) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    return kxmod::set_alloc(model, nCons, nVars, nAnnz, nQCnnz, nConeNnz, nSets, nSetNnz);
  });
}

extern "C" KX_API int KXaddEmptySpacesAcolumns(pModel model, const int *paiColnnz) {
  return kx::guard([&]() -> int {
    if (!model || !paiColnnz) return KXERR_ILLEGAL_NULL_POINTER;
    if (!model->Abeg || model->nVars == 0) return 0;
    return kxmod::open_gaps(model, paiColnnz);
  });
}
