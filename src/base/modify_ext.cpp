// modify_ext.cpp - changes of the data beyond the plain LP: semi-continuous
// columns, sets, cones and quadratic terms.  Each call builds the whole new
// list beside the model and installs it through the load of that data, which
// checks it; a failing check leaves the model as it was.  All of them drop the
// simplex state and the presolved model.
#include <algorithm>
#include <vector>

#include "base/modify_int.h"

using namespace kxmod;

namespace {

int check_list(int n, const int *idx, int limit, std::vector<char> &mark) {
  mark.assign(static_cast<size_t>(std::max(limit, 1)), 0);
  for (int k = 0; k < n; k++) {
    if (idx[k] < 0 || idx[k] >= limit) return KXERR_INDEX_OUT_OF_RANGE;
    if (mark[static_cast<size_t>(idx[k])]) return KXERR_INDEX_DUPLICATE;
    mark[static_cast<size_t>(idx[k])] = 1;
  }
  return 0;
}

struct SetList {
  std::vector<char> type;
  std::vector<int> card, beg{0}, var;
  void add(char t, int c, const int *v, int len) {
    type.push_back(t);
    card.push_back(c);
    var.insert(var.end(), v, v + len);
    beg.push_back(static_cast<int>(var.size()));
  }
};

SetList current_sets(const Model *m) {
  SetList s;
  for (int k = 0; k < m->nSets; k++)
    s.add(m->setType[k], m->setCard ? m->setCard[k] : 0, m->setVar + m->setBeg[k], m->setLen[k]);
  return s;
}

int install_sets(Model *m, const SetList &s) {
  const int n = static_cast<int>(s.type.size());
  drop_presolve(m);
  if (n == 0) {
    // An empty list: drop the sets.
    kx_free(m->setType);
    kx_free(m->setCard);
    kx_free(m->setBeg);
    kx_free(m->setLen);
    kx_free(m->setVar);
    m->nSets = m->nSetsAlloc = m->setNnz = m->setNnzAlloc = 0;
    kxi_reset_solution(m);
    mark_modified(m);
    return 0;
  }
  KX_CALL(kxi_load_sets(m, n, s.type.data(), s.card.data(), s.beg.data(),
                        s.var.empty() ? s.beg.data() : s.var.data()));
  mark_modified(m);
  return 0;
}

struct ConeList {
  std::vector<char> type;
  std::vector<int> beg{0}, var;
  void add(char t, const int *v, int len) {
    type.push_back(t);
    var.insert(var.end(), v, v + len);
    beg.push_back(static_cast<int>(var.size()));
  }
};

ConeList current_cones(const Model *m) {
  ConeList c;
  for (int k = 0; k < m->nCones; k++) c.add(m->coneType[k], m->coneVar + m->coneBeg[k], m->coneLen[k]);
  return c;
}

int install_cones(Model *m, const ConeList &c) {
  const int n = static_cast<int>(c.type.size());
  drop_presolve(m);
  if (n == 0) {
    kx_free(m->coneType);
    kx_free(m->coneBeg);
    kx_free(m->coneLen);
    kx_free(m->coneVar);
    kx_free(m->coneMark);
    m->nCones = m->nConeNonz = m->nConeNonzAlloc = 0;
    kxi_reset_solution(m);
    mark_modified(m);
    return 0;
  }
  KX_CALL(kxi_load_cones(m, n, c.type.data(), c.beg.data(), c.var.empty() ? c.beg.data() : c.var.data()));
  mark_modified(m);
  return 0;
}

struct QCList {
  std::vector<int> row, c1, c2;
  std::vector<double> v;
};

QCList current_qc(const Model *m) {
  QCList q;
  for (int r = 0; r < m->nQCRows; r++)
    for (int k = m->qcBeg[r]; k < m->qcBeg[r + 1]; k++) {
      q.row.push_back(m->qcRow[r]);
      q.c1.push_back(m->qcCol1[k]);
      q.c2.push_back(m->qcCol2[k]);
      q.v.push_back(m->qcVal[k]);
    }
  return q;
}

int install_qc(Model *m, const QCList &q) {
  drop_presolve(m);
  static const int zi = 0;
  static const double zd = 0.0;
  const int n = static_cast<int>(q.row.size());
  KX_CALL(kxi_load_qc(m, n, n ? q.row.data() : &zi, n ? q.c1.data() : &zi, n ? q.c2.data() : &zi,
                      n ? q.v.data() : &zd));
  mark_modified(m);
  return 0;
}

}  // namespace

extern "C" KX_API int KXmodifySemiContVars(pModel model, int nSC, const int *paiVars, const double *padL,
                                           const double *padU) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSC == 0) return 0;
    if (!paiVars || !padL || !padU) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSC < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    std::vector<char> mark;
    KX_CALL(check_list(nSC, paiVars, model->nVars, mark));
    std::vector<int> var;
    std::vector<double> lo, up;
    for (int k = 0; k < model->nSC; k++) {
      const int j = model->scVar[k];
      if (mark[static_cast<size_t>(j)]) continue;
      var.push_back(j);
      lo.push_back(model->scLower[k]);
      up.push_back(model->upper[j]);
    }
    for (int k = 0; k < nSC; k++) {
      var.push_back(paiVars[k]);
      lo.push_back(padL[k]);
      up.push_back(padU[k]);
    }
    drop_presolve(model);
    KX_CALL(kxi_load_semicont(model, static_cast<int>(var.size()), var.data(), lo.data(), up.data()));
    mark_modified(model);
    return 0;
  });
}

extern "C" KX_API int KXdeleteSemiContVars(pModel model, int nSC, const int *paiVars) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSC == 0) return 0;
    if (!paiVars) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSC < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    std::vector<char> mark;
    KX_CALL(check_list(nSC, paiVars, model->nVars, mark));
    for (int k = 0; k < nSC; k++)
      if (!model->scPos || !model->scPos[paiVars[k]]) return KXERR_BAD_INPUT_VALUE;
    std::vector<int> var;
    std::vector<double> lo, up;
    for (int k = 0; k < model->nSC; k++) {
      const int j = model->scVar[k];
      if (mark[static_cast<size_t>(j)]) {
        model->lower[j] = model->scLower[k];  // the true lower bound returns
        continue;
      }
      var.push_back(j);
      lo.push_back(model->scLower[k]);
      up.push_back(model->upper[j]);
    }
    drop_presolve(model);
    if (var.empty()) {
      kx_free(model->scVar);
      kx_free(model->scPos);
      kx_free(model->scLower);
      model->nSC = model->nSCAlloc = 0;
      kxi_reset_solution(model);
    } else {
      KX_CALL(kxi_load_semicont(model, static_cast<int>(var.size()), var.data(), lo.data(), up.data()));
    }
    KXI_LoadBaseStats(model);
    mark_modified(model);
    return 0;
  });
}

extern "C" KX_API int KXaddSETS(pModel model, int nSets, const char *pszSETStype, const int *paiCARDnum,
                                const int *paiSETSbegcol, const int *paiSETScols) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSets == 0) return 0;
    if (!pszSETStype || !paiSETSbegcol || !paiSETScols) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSets < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    SetList s = current_sets(model);
    for (int k = 0; k < nSets; k++) {
      const int len = paiSETSbegcol[k + 1] - paiSETSbegcol[k];
      if (len < 0) return KXERR_BAD_COLUMN_LENGTHS;
      s.add(pszSETStype[k], paiCARDnum ? paiCARDnum[k] : 0, paiSETScols + paiSETSbegcol[k], len);
      if (pszSETStype[k] == 4 && !paiCARDnum) return KXERR_ILLEGAL_NULL_POINTER;
    }
    return install_sets(model, s);
  });
}

extern "C" KX_API int KXdeleteSETS(pModel model, int nSets, const int *paiSets) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSets == 0) return 0;
    if (!paiSets) return KXERR_ILLEGAL_NULL_POINTER;
    if (nSets < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    std::vector<char> mark;
    KX_CALL(check_list(nSets, paiSets, model->nSets, mark));
    SetList s;
    for (int k = 0; k < model->nSets; k++)
      if (!mark[static_cast<size_t>(k)])
        s.add(model->setType[k], model->setCard ? model->setCard[k] : 0, model->setVar + model->setBeg[k],
              model->setLen[k]);
    return install_sets(model, s);
  });
}

extern "C" KX_API int KXmodifySET(pModel model, int iSet, char chType, int nCard, int nCols,
                                  const int *paiCols) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (iSet < 0 || iSet >= model->nSets) return KXERR_INDEX_OUT_OF_RANGE;
    if (nCols < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (nCols > 0 && !paiCols) return KXERR_ILLEGAL_NULL_POINTER;
    SetList s;
    for (int k = 0; k < model->nSets; k++) {
      if (k == iSet) s.add(chType, nCard, paiCols, nCols);
      else s.add(model->setType[k], model->setCard ? model->setCard[k] : 0, model->setVar + model->setBeg[k],
                 model->setLen[k]);
    }
    return install_sets(model, s);
  });
}

extern "C" KX_API int KXaddCones(pModel model, int nCones, const char *pszConeTypes, const int *paiConebegcol,
                                 const int *paiConecols) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCones == 0) return 0;
    if (!pszConeTypes || !paiConebegcol || !paiConecols) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCones < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    ConeList c = current_cones(model);
    for (int k = 0; k < nCones; k++) {
      const int len = paiConebegcol[k + 1] - paiConebegcol[k];
      if (len < 0) return KXERR_BAD_COLUMN_LENGTHS;
      c.add(pszConeTypes[k], paiConecols + paiConebegcol[k], len);
    }
    return install_cones(model, c);
  });
}

extern "C" KX_API int KXdeleteCones(pModel model, int nCones, const int *paiCones) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCones == 0) return 0;
    if (!paiCones) return KXERR_ILLEGAL_NULL_POINTER;
    if (nCones < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    std::vector<char> mark;
    KX_CALL(check_list(nCones, paiCones, model->nCones, mark));
    ConeList c;
    for (int k = 0; k < model->nCones; k++)
      if (!mark[static_cast<size_t>(k)]) c.add(model->coneType[k], model->coneVar + model->coneBeg[k], model->coneLen[k]);
    return install_cones(model, c);
  });
}

extern "C" KX_API int KXmodifyCone(pModel model, int iCone, char chType, int nCols, const int *paiCols) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (iCone < 0 || iCone >= model->nCones) return KXERR_INDEX_OUT_OF_RANGE;
    if (nCols < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (nCols > 0 && !paiCols) return KXERR_ILLEGAL_NULL_POINTER;
    ConeList c;
    for (int k = 0; k < model->nCones; k++) {
      if (k == iCone) c.add(chType, paiCols, nCols);
      else c.add(model->coneType[k], model->coneVar + model->coneBeg[k], model->coneLen[k]);
    }
    return install_cones(model, c);
  });
}

extern "C" KX_API int KXaddQCterms(pModel model, int nQCnnz, const int *paiQCrows, const int *paiQCcols1,
                                   const int *paiQCcols2, const double *padQCcoef) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nQCnnz == 0) return 0;
    if (!paiQCrows || !paiQCcols1 || !paiQCcols2 || !padQCcoef) return KXERR_ILLEGAL_NULL_POINTER;
    if (nQCnnz < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    QCList q = current_qc(model);
    for (int k = 0; k < nQCnnz; k++) {
      q.row.push_back(paiQCrows[k]);
      q.c1.push_back(paiQCcols1[k]);
      q.c2.push_back(paiQCcols2[k]);
      q.v.push_back(padQCcoef[k]);
    }
    return install_qc(model, q);
  });
}

extern "C" KX_API int KXdeleteQCterms(pModel model, int nRows, const int *paiRows) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (nRows == 0) return 0;
    if (!paiRows) return KXERR_ILLEGAL_NULL_POINTER;
    if (nRows < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
    std::vector<char> mark(static_cast<size_t>(model->nCons) + 1, 0);  // slot 0 is the objective
    for (int k = 0; k < nRows; k++) {
      const int r = paiRows[k];
      if (r < -1 || r >= model->nCons) return KXERR_INDEX_OUT_OF_RANGE;
      if (mark[static_cast<size_t>(r + 1)]) return KXERR_INDEX_DUPLICATE;
      mark[static_cast<size_t>(r + 1)] = 1;
    }
    QCList all = current_qc(model), keep;
    for (size_t k = 0; k < all.row.size(); k++) {
      if (mark[static_cast<size_t>(all.row[k] + 1)]) continue;
      keep.row.push_back(all.row[k]);
      keep.c1.push_back(all.c1[k]);
      keep.c2.push_back(all.c2[k]);
      keep.v.push_back(all.v[k]);
    }
    return install_qc(model, keep);
  });
}
