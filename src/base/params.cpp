#include "base/params.h"

#include <cstdlib>
#include <new>

namespace {
template <class T>
int alloc_block(T **p) {
  *p = static_cast<T *>(std::calloc(1, sizeof(T)));
  return *p ? 0 : 2001;
}
}  // namespace

int KXloadSolverPam(SolverPam **p) {
  if (alloc_block(p)) return 2001;
  (*p)->timeLimit = -1.0;
  return 0;
}

int KXloadSplexPam(SplexPam **p) {
  if (alloc_block(p)) return 2001;
  SplexPam &s = **p;
  s.callbackFreq = 0.5;
  s.checkForErrors = 0;
  s.allowCtrlBreak = 1;
  s.lpScale = 1;
  s.lpItrLmt = -1;
  s.pPricing = -1;
  s.refacFrq = 200;
  s.barrierSolver = 4;
  s.probToSolve = 0;
  s.lpPrintLevel = 0;
  s.mpsObjWriteStyle = 2;
  s.dPricing = -1;
  s.dualPhase = 0;
  s.lpPreLevel = 126;
  s.useExternal = 0;
  s.iuSol = 0;
  s.feasTol = 1e-7;
  s.restart = 0;
  s.ipmSol = 0;
  s.optTol = 1e-7;
  s.useCutoffVal = 0;
  s.preElimFill = 1000;
  s.concurrentOptMode = 0;
  s.minFeasTol = 5e-9;
  s.maxFeasTol = 5e-5;
  s.minOptTol = 5e-9;
  s.maxOptTol = 5e-5;
  s.aijZeroTol = 1e-16;
  s.pivZeroTol = 1e-8;
  s.pivBigTol = 1e-5;
  s.bigM = 1e6;
  s.bndInf = 1e15;
  s.lpInfinity = 1e30;
  s.pPartial = 0;
  s.dRatio = 1;
  s.ratRange = 7;
  s.dpSwitch = 1;
  s.pAlloc = 5;
  s.prtFg = 0;
  s.oprFree = 1;
  s.luNumCandits = 4;
  s.luMaxUpdates = 500;
  s.luPrintLevel = 2;
  s.luUpdateType = 1;
  s.luUsePivCol = 0;
  s.luPivMod = 0;
  s.luEpsDiag = 1e-6;
  s.luEpsNonz = 2.22044604925032e-16;
  s.luEpsPivAbs = 1e-10;
  s.luEpsPivRel = 0.01;
  s.luIniRcond = 0.01;
  s.luSpvTolUpdate = 0.001;
  s.luSpvTolFtran = 0.2;
  s.luSpvTolBtran = 0.1;
  return 0;
}

int KXinitBandBPam(BandBPam **p) {
  if (alloc_block(p)) return 2001;
  (*p)->timeLimit = -1.0;
  return 0;
}

int KXloadNLPPam(NLPPam **p) { return alloc_block(p) ? 2001 : 0; }
int KXinitGOPPam(GOPPam **p) { return alloc_block(p) ? 2001 : 0; }
int KXinitIISPam(IISPam **p) { return alloc_block(p) ? 2001 : 0; }

int KXinitCommonPam(CommonPam **p) {
  if (alloc_block(p)) return 2001;
  CommonPam &c = **p;
  c.p701 = 5;
  c.p702 = -1e30;
  c.p703 = -1;
  c.p704 = 1e-6;
  c.p705 = 0;
  c.p706 = 100;
  c.p707 = 1e-7;
  return 0;
}
