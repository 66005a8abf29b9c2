// Parameter records.  Each block is a plain record copied by value from the
// environment into a model at KXcreateModel; solvers read their block directly.
#pragma once

struct SolverPam {
  double timeLimit;  // LP time limit in seconds, negative for none
};

struct SplexPam {
  double callbackFreq;   // seconds between progress callbacks
  int checkForErrors;
  int allowCtrlBreak;    // poll the SIGINT flag
  int lpScale;
  double lpItrLmt;       // simplex iteration limit, negative for none
  int pPricing;
  int refacFrq;
  int barrierSolver;
  int probToSolve;
  int lpPrintLevel;
  int mpsObjWriteStyle;
  int dPricing;
  int dualPhase;
  int lpPreLevel;
  int useExternal;
  int iuSol;
  double feasTol;
  int restart;
  int ipmSol;
  double optTol;
  int useCutoffVal;
  int preElimFill;
  int concurrentOptMode;
  // Working tolerances of the simplex.
  double minFeasTol, maxFeasTol, minOptTol, maxOptTol;
  double aijZeroTol, pivZeroTol, pivBigTol, bigM, bndInf, lpInfinity;
  int pPartial, dRatio, ratRange, dpSwitch, pAlloc, prtFg, oprFree;
  // LU engine.
  int luNumCandits, luMaxUpdates, luPrintLevel, luUpdateType, luUsePivCol, luPivMod;
  double luEpsDiag, luEpsNonz, luEpsPivAbs, luEpsPivRel, luIniRcond, luSpvTolUpdate,
      luSpvTolFtran, luSpvTolBtran;
};

struct BandBPam {
  double timeLimit;
};

struct NLPPam {
  int printLevel;
};

struct GOPPam {
  int printLevel;
};

struct IISPam {
  int printLevel;
};

// Parameters that live on the environment alone (ids 701 to 707).
struct CommonPam {
  int p701;
  double p702;
  int p703;
  double p704;
  int p705;
  int p706;
  double p707;
};

// Initialisers: allocate a block and fill it with the defaults; 0 or 2001.
int KXloadSolverPam(SolverPam **p);
int KXloadSplexPam(SplexPam **p);
int KXinitBandBPam(BandBPam **p);
int KXloadNLPPam(NLPPam **p);
int KXinitGOPPam(GOPPam **p);
int KXinitIISPam(IISPam **p);
int KXinitCommonPam(CommonPam **p);
