// The environment and model records, the solution record, and the internal
// functions of the call frame.  Every subsystem reaches the model through here.
#pragma once

#include <pthread.h>

#include "korva.h"
#include "base/kxdefs.h"
#include "base/kxmem.h"
#include "base/params.h"

// A CPU and a wall-clock stamp, in seconds.
struct KXtime {
  double cpu;
  double wall;
};
KXtime kx_now();

// Records owned by subsystems that arrive later.  They exist so that create,
// clear and delete are complete; their owners fill them in.
struct CutPool {
  int nCuts;
};
struct StocState {
  int unused;
};
struct InstructionList {
  int *code;
  int codeLen;
};
struct IISInfo {
  int nRows;
  int nBnds;
};
struct PostStack;  // presolve undo stack
struct GLP;        // live simplex state
struct OutsideSolver;  // table of functions of an installed outside solver

// Statistics gathered at load: model summary and scaling measure.
struct ModelStats {
  int nL, nE, nG, nN, nR;               // rows by kind (R: ranged)
  int nFree, nFixed, nLowerOnly, nUpperOnly, nBoxed;  // columns by bounds
  double aMin, aMax, cMin, cMax, bMin, bMax, lMin, lMax, uMin, uMax;
  int badScaleMask;                     // bits: 1 A, 2 c, 4 l, 8 u, 16 b
};

// The LP solution record.
struct Sol {
  double pobj;
  double pinfeas, dinfeas;
  double dobj;
  int *colstat;
  int *rowstat;
  double *x;      // x and dj share one block of 2n doubles
  double *y;      // y and slack share one block of 2m doubles
  double *slack;
  double *dj;
  double *xIpm, *yIpm, *slackIpm, *djIpm;
  int model_status;
  int basic_status;
  int ipm_status;
  int primal_status, dual_status;
  double barIter, simIter, nlpIter;
  double accSimIter, accBarIter, accNlpIter;
  int method;  // method used plus 1; -1 when presolve alone settled the model
  KXtime elapsed, started;
  int inFinalCallback;
  int luCount, luStableCount, luFailCount;
  int luCountRetry, luStableCountRetry, luFailCountRetry;
  int nColsAlloc, nRowsAlloc;  // lengths the vectors were made for
};

struct MIPSol {
  int MIPstatus;
  double obj;
  double bestBound;
  double *x;
  int n;
};

struct GOPSol {
  int GOPstatus;
  double obj;
  double *x;
  int n;
};

struct ModelListNode {
  struct KXmodel_s *model;
  ModelListNode *next;
};

struct KXenv_s {
  char *msgText;
  int *msgIndex;
  int msgTextUsed, msgTextCap;
  SolverPam *solverPam;
  SplexPam *splexPam;
  BandBPam *bandBPam;
  NLPPam *nlpPam;
  GOPPam *gopPam;
  IISPam *iisPam;
  CommonPam *commonPam;
  ModelListNode *modelList;
  int mutexReady;
  pthread_mutex_t *mutex;
  double envInfinity;
  KXenvLogfunc envLogFunc;
  void *envLogData;
  void *barrierEnv;
  OutsideSolver *externalSolver;
  // Last file error of a reader: line number and text.
  int fileErrLine;
  char fileErrText[1024];
};
typedef struct KXenv_s Env;

// The model-level error record: the kind of the last row error and its row.
struct ErrRecord {
  int kind;
  int row;
};
inline constexpr int kErrKindRow = 11;

struct KXmodel_s {
  Env *env;
  KXcallback cbFunc, cbFunc2;
  void *cbData;
  KXmodelLogfunc logFunc, userLogFunc;
  void *logData;
  void *mipCbFunc;
  void *mipCbData;
  void *gopCbFunc;  // set by KXsetGOPCallback
  void *gopCbData;
  int lastError;
  int modelState;
  Sol *sol;
  MIPSol *mipsol;
  GOPSol *gopsol;
  SolverPam *solverPam;
  SplexPam *splexPam;
  BandBPam *bandBPam;
  NLPPam *nlpPam;
  GOPPam *gopPam;
  IISPam *iisPam;
  StocPam *stocPam;
  StocState *stocState;
  struct KXmodel_s *presolved;
  PostStack *poststack;
  GLP *glp;
  void *extTask;
  int inCallback;
  int cbLevel;
  int logTag;  // tag copied into inCallback around a log call
  KXtime solveStart, lastCallback;
  struct KXmodel_s *parent;  // model whose callbacks this one forwards to, or null
  ErrRecord errRecord;
  CutPool *cutPool;
  InstructionList *instr;
  IISInfo *iis;
  IISInfo *ius;
  void *bindingHandles;

  // Model-level parameter fields (ids 24, 27, 38, 39, 42, 43, 53; 22 is objSense
  // below), generated from the parameter registry.
#define KXP_MODEL KXP_FIELD
#include "base/param_rows.def"

  // Scale factors of the sizes (kept for reports).
  double rowScaleFactor, colScaleFactor, nnzScaleFactor;

  // LP portion.
  int nCons;
  int nVars;
  int nnzAlloc;
  int nConsAlloc, nVarsAlloc;
  int objSense;
  int nNonz;
  double *Acoef;
  int *Abeg;
  int *Alen;
  int *Arow;
  double *rhs;
  double *cost;
  double objConst;
  double *lower, *upper;
  char *conType;
  double *rangeVal;  // range of each row when any row is ranged, else null; the value R
                     // of an MPS RANGES entry, KX_INFINITY for a row without range.  Row i
                     // then spans [rhs-|R|, rhs] (L), [rhs, rhs+|R|] (G), and for an E row
                     // [rhs, rhs+R] when R > 0, [rhs+R, rhs] when R < 0.

  // Extended portion: integrality, sets, semi-continuous variables, cones,
  // quadratic terms, names, priorities and the start point (model_ext.cpp,
  // names.cpp).  Every array is null or owned; kxi_clear_extended frees them.
  char *vartype;  // nVarsAlloc entries 'C', 'B', 'I'; null: all continuous
  int nBin, nInt;
  int nSets, nSetsAlloc;
  char *setType;  // 1, 2, 3 SOS kinds, 4 cardinality
  int *setCard;   // null unless a type-4 set exists
  int *setBeg;    // nSets + 1
  int *setLen;
  int *setVar;
  int setNnz, setNnzAlloc;
  int nSC, nSCAlloc;
  int *scVar;
  int *scPos;       // nVarsAlloc: 0, or position in scVar plus 1
  double *scLower;  // true lower bound of each semi-continuous variable
  int nCones;
  int nConeNonz, nConeNonzAlloc;
  char *coneType;  // 'Q' quadratic, 'R' rotated quadratic
  int *coneBeg, *coneLen;
  int *coneVar;
  char *coneMark;  // nVarsAlloc: use count of a variable in cones
  int nQCRows;     // rows with a quadratic part
  int nQCNonz;
  int qcDirty;
  int *qcRow;      // nQCRows row indices, ascending; -1 is the objective
  int *qcBeg;      // nQCRows + 1 starts into qcCol1, qcCol2, qcVal
  int *qcCol1, *qcCol2;  // lower triangle: qcCol1 >= qcCol2
  double *qcVal;   // entries of the symmetric Q; a row's form is x'Qx/2
  double *qcHelp;  // 2 nConsAlloc doubles for evaluation
  char *modelName, *objName, *rhsName, *rngName, *bndName;
  char **conNames, **varNames, **coneNames;  // pointers into the text blocks
  char *conNameText, *varNameText, *coneNameText;
  int conNameLen, varNameLen, coneNameLen;   // total lengths, terminators included
  struct KXnameHash *conHash, *varHash, *coneHash;  // built on demand
  int *varPriority;
  double *startX;

  ModelStats stats;
};
typedef struct KXmodel_s Model;

// Internal functions of the call frame.
int KXinitializeModel(Model *model);
int kxi_clear_model(Model *model);
int kxi_free_solver_memory(Model *model);
void kxi_free_sol(Sol *&sol);
int kxi_ensure_sol(Model *model);  // allocate sol (vectors sized to the model) if missing
void KXI_LoadBaseStats(Model *model);
void kxi_release_glp(Model *model);       // delete the simplex state
void kxi_clear_extended(Model *model);    // free the data beyond the plain LP
void kxi_free_name_hashes(Model *model);  // free the name hash tables

// Extended data (model_ext.cpp, names.cpp).
void kxi_reset_solution(Model *model);  // after any load: status 14, solver memory freed
void kxi_free_names(Model *model);      // names, their texts and hashes
int kxi_load_var_type(Model *model, const char *types);
int kxi_load_sets(Model *model, int nSets, const char *types, const int *card, const int *beg,
                  const int *cols);
int kxi_load_semicont(Model *model, int nSC, const int *vars, const double *l, const double *u);
int kxi_load_cones(Model *model, int nCones, const char *types, const int *beg, const int *cols);
int kxi_load_qc(Model *model, int nnz, const int *rows, const int *c1, const int *c2,
                const double *v);
int kxi_load_names(Model *model, const char *title, const char *obj, const char *rhs,
                   const char *rng, const char *bnd, char **conNames, char **varNames,
                   char **coneNames);
int kxi_load_ranges(Model *model, const double *r);
int kxi_has_quadratic(const Model *model);  // nonzero when quadratic terms are loaded

// Messages.
int KXsetErrorMessages(int *bufferLength, int *usedLength, int **offsets, char **text,
                       const char *path);
int KXloadDefaultMessages(int *bufferLength, int *usedLength, int **offsets, char **text);
int check_buf_len(char **text, int *offsets, int *bufferLength, const char *message,
                  int *usedLength, int code);
inline constexpr int kMsgTableSize = 2385;
inline constexpr int kMsgMaxCode = 2383;

// Record a reader's bad line in the environment.
void kxi_set_file_error(Env *env, int line, const char *text);

// Logging: call sites test model->logFunc before formatting.
void internal_LOG(pModel model, char *text, void *userData);
void kxi_log(Model *model, const char *fmt, ...) __attribute__((format(printf, 2, 3)));
void kxi_env_log(Env *env, const char *fmt, ...) __attribute__((format(printf, 2, 3)));

// Time, callback and interrupt checkpoint: positive when the limit (seconds of
// CPU since start, ignored when negative) is reached, negative for a stop asked
// by the callback or SIGINT, 0 otherwise.
int timelapsed(Model *model, KXtime start, int location, int forced, double limit);
int kxi_interrupt_raised();
void kxi_raise_interrupt();  // used by tests to simulate SIGINT
