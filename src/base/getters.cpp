// The data getters: a loaded model handed back as it was loaded.
#include <cstring>

#include "base/kx.h"

namespace {

template <class T>
void copy_out(T *dst, const T *src, int n) {
  if (dst && src && n > 0) std::memcpy(dst, src, sizeof(T) * static_cast<size_t>(n));
}

// Common entry test of a data query.
int check(const Model *m) {
  if (m->modelState == KX_STATUS_UNLOADED || m->cbLevel < 0) return KXERR_INFO_NOT_AVAILABLE;
  return 0;
}

}  // namespace

extern "C" KX_API int KXgetLPData(pModel model, int *pnObjSense, double *pdObjConst,
                                  double *padC, double *padB, char *pachConTypes,
                                  int *paiAcols, int *pacAcols, double *padAcoef,
                                  int *paiArows, double *padL, double *padU) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (pnObjSense) *pnObjSense = m->objSense;
    if (pdObjConst) *pdObjConst = m->objConst;
    copy_out(padC, m->cost, m->nVars);
    copy_out(padB, m->rhs, m->nCons);
    copy_out(pachConTypes, m->conType, m->nCons);
    int at = 0;
    for (int j = 0; j < m->nVars; ++j) {
      const int b = m->Abeg[j], len = m->Alen[j];
      if (paiAcols) paiAcols[j] = at;
      if (pacAcols) pacAcols[j] = len;
      copy_out(padAcoef ? padAcoef + at : nullptr, m->Acoef + b, len);
      copy_out(paiArows ? paiArows + at : nullptr, m->Arow + b, len);
      at += len;
    }
    if (paiAcols) paiAcols[m->nVars] = at;
    copy_out(padL, m->lower, m->nVars);
    copy_out(padU, m->upper, m->nVars);
    return 0;
  });
}

extern "C" KX_API int KXgetLPConstraintDatai(pModel model, int iCon, char *pchConType,
                                             double *pdB, int *pnNnz, int *paiVar,
                                             double *padAcoef) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (iCon < 0 || iCon >= m->nCons) return KXERR_INDEX_OUT_OF_RANGE;
    if (pchConType) *pchConType = m->conType[iCon];
    if (pdB) *pdB = m->rhs[iCon];
    int cnt = 0;
    for (int j = 0; j < m->nVars; ++j)
      for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; ++k)
        if (m->Arow[k] == iCon) {
          if (paiVar) paiVar[cnt] = j;
          if (padAcoef) padAcoef[cnt] = m->Acoef[k];
          ++cnt;
        }
    if (pnNnz) *pnNnz = cnt;
    return 0;
  });
}

extern "C" KX_API int KXgetLPVariableDataj(pModel model, int iVar, char *pchVarType,
                                           double *pdC, double *pdL, double *pdU, int *pnAnnz,
                                           int *paiArows, double *padAcoef) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (iVar < 0 || iVar >= m->nVars) return KXERR_INDEX_OUT_OF_RANGE;
    if (pchVarType) *pchVarType = m->vartype ? m->vartype[iVar] : 'C';
    if (pdC) *pdC = m->cost[iVar];
    if (pdL) *pdL = m->lower[iVar];
    if (pdU) *pdU = m->upper[iVar];
    const int b = m->Abeg[iVar], len = m->Alen[iVar];
    if (pnAnnz) *pnAnnz = len;
    copy_out(paiArows, m->Arow + b, len);
    copy_out(padAcoef, m->Acoef + b, len);
    return 0;
  });
}

extern "C" KX_API int KXgetConstraintDatai(pModel model, int iCon, char *pchConType,
                                           char *pchIsNlp, double *pdB) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    if (iCon < 0 || iCon >= model->nCons) return KXERR_INDEX_OUT_OF_RANGE;
    if (pchConType) *pchConType = model->conType[iCon];
    if (pchIsNlp) *pchIsNlp = 0;
    if (pdB) *pdB = model->rhs[iCon];
    return 0;
  });
}

namespace {

template <class F>
int column_value(Model *model, int j, double *out, F pick) {
  return kx::guard([&]() -> int {
    if (!model || !out) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    if (j < 0 || j >= model->nVars) return KXERR_INDEX_OUT_OF_RANGE;
    *out = pick(model)[j];
    return 0;
  });
}

}  // namespace

extern "C" KX_API int KXgetObjectivej(pModel model, int iVar, double *pdC) {
  return column_value(model, iVar, pdC, [](Model *m) { return m->cost; });
}

extern "C" KX_API int KXgetLowerBoundj(pModel model, int iVar, double *pdL) {
  return column_value(model, iVar, pdL, [](Model *m) { return m->lower; });
}

extern "C" KX_API int KXgetUpperBoundj(pModel model, int iVar, double *pdU) {
  return column_value(model, iVar, pdU, [](Model *m) { return m->upper; });
}

extern "C" KX_API int KXgetConstraintRangeValues(pModel model, double *padR) {
  return kx::guard([&]() -> int {
    if (!model || !padR) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    for (int i = 0; i < model->nCons; ++i)
      padR[i] = model->rangeVal ? model->rangeVal[i] : KX_INFINITY;
    return 0;
  });
}

extern "C" KX_API int KXgetDimensions(pModel model, int *pnVars, int *pnCons, int *pnCones,
                                      int *pnAnnz, int *pnQCnnz, int *pnConennz, int *pnNLPnnz,
                                      int *pnNLPobjnnz, int *pnVarNamelen, int *pnConNamelen,
                                      int *pnConeNamelen) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (pnVars) *pnVars = m->nVars;
    if (pnCons) *pnCons = m->nCons;
    if (pnCones) *pnCones = m->nCones;
    if (pnAnnz) *pnAnnz = m->nNonz;
    if (pnQCnnz) *pnQCnnz = m->nQCNonz;
    if (pnConennz) *pnConennz = m->nConeNonz;
    if (pnNLPnnz) *pnNLPnnz = 0;
    if (pnNLPobjnnz) *pnNLPobjnnz = 0;
    // Without a list the default names ("C0000001") are 9 bytes each with the terminator.
    if (pnVarNamelen) *pnVarNamelen = m->varNames ? m->varNameLen : 9 * m->nVars;
    if (pnConNamelen) *pnConNamelen = m->conNames ? m->conNameLen : 9 * m->nCons;
    if (pnConeNamelen) *pnConeNamelen = m->coneNames ? m->coneNameLen : 9 * m->nCones;
    return 0;
  });
}

extern "C" KX_API int KXgetVarType(pModel model, char *pachVarTypes) {
  return kx::guard([&]() -> int {
    if (!model || !pachVarTypes) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    for (int j = 0; j < model->nVars; ++j)
      pachVarTypes[j] = model->vartype ? model->vartype[j] : 'C';
    return 0;
  });
}

extern "C" KX_API int KXgetVarTypeCount(pModel model, int *pnBin, int *pnInt, int *pnCont) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    if (pnBin) *pnBin = model->nBin;
    if (pnInt) *pnInt = model->nInt;
    if (pnCont) *pnCont = model->nVars - model->nBin - model->nInt;
    return 0;
  });
}

// Counts of binary, integer and continuous columns with a nonzero entry in row
// iCon (columns whose coefficient there is an explicit zero are counted too).
extern "C" KX_API int KXgetVarTypeCountByCons(pModel model, int iCon, int *pnBin, int *pnInt,
                                              int *pnCont) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (iCon < 0 || iCon >= m->nCons) return KXERR_INDEX_OUT_OF_RANGE;
    int nb = 0, ni = 0, nc = 0;
    for (int j = 0; j < m->nVars; ++j) {
      for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; ++k) {
        if (m->Arow[k] != iCon) continue;
        const char t = m->vartype ? m->vartype[j] : 'C';
        if (t == 'B') ++nb;
        else if (t == 'I') ++ni;
        else ++nc;
        break;
      }
    }
    if (pnBin) *pnBin = nb;
    if (pnInt) *pnInt = ni;
    if (pnCont) *pnCont = nc;
    return 0;
  });
}

extern "C" KX_API int KXgetQCData(pModel model, int *pnQCnnz, int *paiQCrows, int *paiQCcols1,
                                  int *paiQCcols2, double *padQCcoef) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (pnQCnnz) *pnQCnnz = m->nQCNonz;
    for (int r = 0; r < m->nQCRows; ++r)
      for (int k = m->qcBeg[r]; k < m->qcBeg[r + 1]; ++k) {
        if (paiQCrows) paiQCrows[k] = m->qcRow[r];
        if (paiQCcols1) paiQCcols1[k] = m->qcCol1[k];
        if (paiQCcols2) paiQCcols2[k] = m->qcCol2[k];
        if (padQCcoef) padQCcoef[k] = m->qcVal[k];
      }
    return 0;
  });
}

extern "C" KX_API int KXgetQCDatai(pModel model, int iCon, int *pnQCnnz, int *paiQCcols1,
                                   int *paiQCcols2, double *padQCcoef) {
  return kx::guard([&]() -> int {
    if (!model || !pnQCnnz) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (iCon < -1 || iCon >= m->nCons) return KXERR_ROW_INDEX_OUT_OF_RANGE;
    *pnQCnnz = 0;
    for (int r = 0; r < m->nQCRows; ++r) {
      if (m->qcRow[r] != iCon) continue;
      const int b = m->qcBeg[r], len = m->qcBeg[r + 1] - b;
      copy_out(paiQCcols1, m->qcCol1 + b, len);
      copy_out(paiQCcols2, m->qcCol2 + b, len);
      copy_out(padQCcoef, m->qcVal + b, len);
      *pnQCnnz = len;
    }
    return 0;
  });
}

extern "C" KX_API int KXgetSETSData(pModel model, int *pnSETS, int *pnSETnnz, char *pachSETtype,
                                    int *paiCARDnum, int *paiSETSbegcol, int *paiSETScols) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (pnSETS) *pnSETS = m->nSets;
    if (pnSETnnz) *pnSETnnz = m->setNnz;
    for (int s = 0; s < m->nSets; ++s) {
      if (pachSETtype) pachSETtype[s] = m->setType[s];
      if (paiCARDnum) paiCARDnum[s] = m->setCard ? m->setCard[s] : 0;
      if (paiSETSbegcol) paiSETSbegcol[s] = m->setBeg[s];
    }
    if (paiSETSbegcol) paiSETSbegcol[m->nSets] = m->setNnz;
    copy_out(paiSETScols, m->setVar, m->setNnz);
    return 0;
  });
}

extern "C" KX_API int KXgetSETSDatai(pModel model, int iSet, char *pchSETtype, int *pnCARDnum,
                                     int *pnSETnnz, int *paiSETScols) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (iSet < 0 || iSet >= m->nSets) return KXERR_INDEX_OUT_OF_RANGE;
    if (pchSETtype) *pchSETtype = m->setType[iSet];
    if (pnCARDnum) *pnCARDnum = m->setCard ? m->setCard[iSet] : 0;
    if (pnSETnnz) *pnSETnnz = m->setLen[iSet];
    copy_out(paiSETScols, m->setVar + m->setBeg[iSet], m->setLen[iSet]);
    return 0;
  });
}

extern "C" KX_API int KXgetSemiContData(pModel model, int *pnSCVars, int *paiVars, double *padL,
                                        double *padU) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (pnSCVars) *pnSCVars = m->nSC;
    for (int k = 0; k < m->nSC; ++k) {
      if (paiVars) paiVars[k] = m->scVar[k];
      if (padL) padL[k] = m->scLower[k];
      if (padU) padU[k] = m->upper[m->scVar[k]];
    }
    return 0;
  });
}

extern "C" KX_API int KXgetConeDatai(pModel model, int iCone, char *pchConeType, int *pnNnz,
                                     int *paiCols) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    KX_CALL(check(model));
    const Model *m = model;
    if (iCone < 0 || iCone >= m->nCones) return KXERR_INDEX_OUT_OF_RANGE;
    if (pchConeType) *pchConeType = m->coneType[iCone];
    if (pnNnz) *pnNnz = m->coneLen[iCone];
    copy_out(paiCols, m->coneVar + m->coneBeg[iCone], m->coneLen[iCone]);
    return 0;
  });
}
