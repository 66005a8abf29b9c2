// lpini.cpp - creation of the simplex state: parameters, arrays, the LU engine,
// the scaled copy of the model; and its release.
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <new>

#include "simplex/glp.h"

namespace {

void copy_params(GLP *g, const Model *model) {
  const SplexPam *p = model->splexPam;
  g->itrlmt = p->lpItrLmt;
  g->prtfg = p->prtFg;
  g->printLevel = p->lpPrintLevel;
  g->oprfree = p->oprFree;
  g->palloc = p->pAlloc;
  g->infin = p->lpInfinity > 0 ? p->lpInfinity : kx::kInfinity;
  g->bndinf = p->bndInf > 0 ? p->bndInf : kx::kBoundInfinity;
  g->repsmin = p->minFeasTol;
  g->repsmax = p->maxFeasTol;
  g->cepsmin = p->minOptTol;
  g->cepsmax = p->maxOptTol;
  auto clampTol = [](double v, double lo, double hi) { return v < lo ? lo : (v > hi ? hi : v); };
  g->repsUser = clampTol(p->feasTol, g->repsmin, g->repsmax);
  g->cepsUser = clampTol(p->optTol, g->cepsmin, g->cepsmax);
  g->reps = g->repsUser;
  g->ceps = g->cepsUser;
  g->pvteps = g->pvtepsInit = p->pivZeroTol > 0 ? p->pivZeroTol : kx::kPivotTol;
  g->pvtbig = p->pivBigTol;
  g->aijzero = p->aijZeroTol;
  g->ratrange = p->ratRange;
  g->bigm = p->bigM;
  g->ppricing = p->pPricing;
  g->ppartial = p->pPartial;
  g->dpricing = p->dPricing;
  g->dphase = 0;
  g->scaleMode = p->lpScale;
  g->useCutoff = p->useCutoffVal;
  g->cutoff = model->cutoffVal;
  g->timelimit = model->solverPam ? model->solverPam->timeLimit : -1.0;

  KXI_lu_params &lp = g->luPam;
  lp.numCandits = p->luNumCandits;
  lp.maxUpdates = p->luMaxUpdates;
  lp.printLevel = p->luPrintLevel;
  lp.updateType = p->luUpdateType;
  lp.usePivCol = p->luUsePivCol;
  lp.epsDiag = p->luEpsDiag;
  lp.epsNonz = p->luEpsNonz;
  lp.epsPivAbs = p->luEpsPivAbs;
  lp.epsPivRel = p->luEpsPivRel;
  lp.iniRcond = p->luIniRcond;
  lp.spvTolUpdate = p->luSpvTolUpdate;
  lp.spvTolFtran = p->luSpvTolFtran;
  lp.spvTolBtran = p->luSpvTolBtran;
}

void lu_log(void *data, const char *text) {
  GLP *g = static_cast<GLP *>(data);
  if (g->prtfg >= 3) std::fputs(text, stdout);
}

}  // namespace

void glp_set_refactfrq(GLP *g) {
  const int m = g->m;
  int f = static_cast<int>(std::pow(static_cast<double>(m), 0.7));
  if (f < 21) f = 20;
  const int param = g->model ? g->model->splexPam->refacFrq : 200;
  int cap = std::min(m / 4, param);
  f = std::max(f, cap);
  // The update limit of the engine is a hard ceiling.
  if (g->luPam.maxUpdates > 0) f = std::min(f, g->luPam.maxUpdates);
  g->refactfrq = g->refactfrqSaved = f;
}

int KXI_spx_malloc(GLP *g) {
  const int m = g->m, nm = g->nm;
  g->objv.assign(nm, 0.0);
  g->clb.assign(nm, 0.0);
  g->cub.assign(nm, 0.0);
  g->rhs1.assign(m, 0.0);
  g->rscale.assign(m, 1.0);
  g->cscale.assign(g->n, 1.0);
  g->cbas.assign(nm, -1);
  g->rbas.assign(m, 0);
  g->x.assign(nm, 0.0);
  g->rdc.assign(nm, 0.0);
  g->y.assign(m, 0.0);
  g->cph.assign(nm, 0.0);
  g->devexw.assign(nm, 1.0);
  g->devexRef.assign(nm, 1);
  g->rejected.assign(nm, 0);
  g->pivcol.resize(m);
  g->binvi.resize(m);
  g->pivrow.resize(nm);
  g->work.resize(m);
  g->work2.resize(m);
  g->dwork.assign(m, 0.0);
  g->iwork.assign(nm, 0);
  g->mark.assign(nm, 0);
  return 0;
}

int lpini(Model *model, GLP **out, int sense) {
  *out = nullptr;
  GLP *g = new (std::nothrow) GLP;
  if (!g) return kx::kErrMemory;
  try {
    g->model = model;
    g->m = model->nCons;
    g->n = model->nVars;
    g->nm = g->m + g->n;
    g->sense = sense;
    copy_params(g, model);
    g->wfact = WF_FIRST;
    g->stat = GLP_RUNNING;
    g->ptval = 2e-4;
    KX_CALL(KXI_spx_malloc(g));
    int rc = KXI_spx_mbuild2(g, model);
    if (rc == 0) rc = KXI_spx_mscale(g);
    if (rc != 0) {
      freeglp(&g);
      return rc;
    }
    mattpos(g);
    KXI_lu_columns cols;
    cols.m = g->m;
    cols.n = g->n;
    cols.colBeg = g->colBeg.data();
    cols.colLen = g->colLen.data();
    cols.rowInd = g->rowInd.data();
    cols.val = g->colVal.data();
    rc = KXI_lu_create(&g->lu, &cols, &g->luPam);
    if (rc != 0) {
      freeglp(&g);
      return rc == KXI_LU_ERR_MEMORY ? kx::kErrMemory : kx::kErrInternal;
    }
    slu_set_log(g->lu->slu, lu_log, g);
    glp_set_refactfrq(g);
    g->started = kx_now();
    psetbas(g);
  } catch (const std::bad_alloc &) {
    freeglp(&g);
    return kx::kErrMemory;
  }
  *out = g;
  return 0;
}

void freeglp(GLP **g) {
  if (!g || !*g) return;
  KXI_lu_delete(&(*g)->lu);
  delete *g;
  *g = nullptr;
}

void KXsplexResetTime(Model *model) {
  model->solveStart = kx_now();
  if (model->glp) model->glp->started = model->solveStart;
}

void spx_log(GLP *g, const char *fmt, ...) {
  Model *model = g->model;
  if (!model || !model->logFunc || g->printLevel <= 0) return;
  char buf[1024];
  va_list ap;
  va_start(ap, fmt);
  std::vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  model->logFunc(model, buf, model->logData);
}

void spx_debug(GLP *g, int level, const char *fmt, ...) {
  if (g->prtfg < level) return;
  va_list ap;
  va_start(ap, fmt);
  std::vprintf(fmt, ap);
  va_end(ap);
  std::fflush(stdout);
}
