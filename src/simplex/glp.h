// glp.h - the simplex state and the only door into the simplex engine.
//
// The engine works on the bounded form  A x + s = b  with n structural columns
// and m logical columns (variable n+i is the logical of row i, coefficient 1),
// scaled and with the objective held as a minimisation.  Every variable j in
// 0..n+m-1 has bounds clb[j] <= x[j] <= cub[j] (+-infin meaning none), a cost
// objv[j], a basis status cbas[j] and a value x[j].  The basis head rbas[p]
// names the variable at basis position p; the LU engine factorises the columns
// of the head, and its solves are indexed by position (FTRAN out, BTRAN in) and
// by row (FTRAN in, BTRAN out).
#pragma once

#include <cstdint>
#include <vector>

#include "base/kx.h"
#include "lu/slu.h"

// Solver status (GLP::stat).
enum : int {
  GLP_RUNNING = 1,
  GLP_OPTIMAL = 2,
  GLP_INFEASIBLE = 3,
  GLP_DUALRAY = 4,
  GLP_UNBOUNDED = 5,
  GLP_ITERLIMIT = 6,
  GLP_SWITCH = 7,  // numerical trouble: try the other method
  GLP_TIMELIMIT = 8,
  GLP_USERBREAK = 9,
  GLP_CUTOFF = 10,
};

// Results of psimplex / dsimplex.
enum : int { SPX_OK = 0, SPX_NOMEM = 2, SPX_NUMERIC = 3, SPX_BREAK = 9 };

// Reasons to refactorise (GLP::wfact).
enum : int {
  WF_NONE = 0,
  WF_FIRST = 1,
  WF_LIMIT = 2,        // update limit reached, or reoptimising
  WF_CHECK = 4,        // final check of a verdict
  WF_CONFIRM = 5,      // confirm before believing a verdict
  WF_SINGULAR = 6,     // an update failed
  WF_ACCURACY = 7,     // pivot row and column disagree
  WF_PERTEND = 9,      // end of perturbation
  WF_FILL = 10,        // the LU engine advises it
  WF_REFUSED = 11,     // update limit or refusal by the engine
};

// A sparse vector with a full-length value array: val[ind[k]] is the value of
// the k-th listed entry; count -1 means every entry of val may be nonzero.
struct SpxVec {
  int count = 0;
  std::vector<int> ind;
  std::vector<double> val;
  void resize(int len) {
    ind.assign(static_cast<size_t>(len > 0 ? len : 1), 0);
    val.assign(static_cast<size_t>(len > 0 ? len : 1), 0.0);
    count = 0;
  }
  // Zero the value array again after use.
  void clear(int len) {
    if (count < 0) {
      for (int i = 0; i < len; i++) val[i] = 0.0;
    } else {
      for (int k = 0; k < count; k++) val[ind[k]] = 0.0;
    }
    count = 0;
  }
  SLUVec as_slu() { return SLUVec{count, ind.data(), val.data(), 1}; }
};

struct GLP {
  Model *model = nullptr;

  // Parameters copied by lpini.
  double itrlmt = -1;
  int prtfg = 0, printLevel = 0;
  int oprfree = 1, palloc = 5;
  double infin = kx::kInfinity, bndinf = kx::kBoundInfinity;
  double reps = kx::kFeasTol, ceps = kx::kOptTol;       // working tolerances
  double repsUser = kx::kFeasTol, cepsUser = kx::kOptTol;  // the caller's
  double repsmin = kx::kTolFloor, cepsmin = kx::kTolFloor;
  double repsmax = kx::kTolCeiling, cepsmax = kx::kTolCeiling;
  double pvteps = kx::kPivotTol, pvtepsInit = kx::kPivotTol, pvtbig = kx::kLargePivot;
  double aijzero = kx::kZeroCoef;
  int ratrange = 7;
  double bigm = 1e6;
  int ppricing = -1;   // -1 automatic, 0 partial, else devex
  int pricing = 2;     // current mode: 0 partial Dantzig, 2 devex
  int ppartial = 0;    // partial scan scheme, 0 chosen by plpini
  int refactfrq = 100, refactfrqMin = 50, refactfrqSaved = 100;
  int scaleMode = 1;
  double timelimit = -1;
  KXtime started{};

  // Sizes.
  int m = 0, n = 0, nm = 0;
  int64_t nonz = 0;  // nonzeroes with the m logicals
  int sense = 1;

  // Scaled data.  Structural columns by column (colBeg/colLen/rowInd/val) and
  // by row (rowBeg/rowCol/rowVal); logical columns are implicit.
  std::vector<int> colBeg, colLen, rowInd;
  std::vector<double> colVal;
  std::vector<int> rowBeg, rowCol;
  std::vector<double> rowVal;
  std::vector<double> objv, clb, cub;      // n+m
  std::vector<double> clbTrue, cubTrue;    // bounds before perturbation
  std::vector<double> rhs1;                // m scaled right-hand sides
  std::vector<double> rscale, cscale;      // m, n
  double objscale = 1.0, objconst = 0.0;
  int badScaleMask = 0;

  // Basis and point.
  std::vector<int> cbas;   // n+m
  std::vector<int> rbas;   // m
  std::vector<double> x;   // n+m values (basics updated, nonbasics at their place)
  std::vector<double> rdc; // n+m reduced costs (0 for basics)
  std::vector<double> y;   // m duals
  std::vector<double> cph; // n+m cost of the current phase
  std::vector<double> devexw;
  std::vector<char> devexRef;  // reference framework membership
  std::vector<char> rejected;  // columns skipped by pricing until the next factorisation
  int nrejected = 0;

  // Work vectors.
  SpxVec pivcol;   // FTRAN of the entering column, by position
  SpxVec binvi;    // row of the inverse, by row
  SpxVec pivrow;   // pivot row over n+m columns
  SpxVec work;     // scratch by position or row
  SpxVec work2;    // second scratch
  std::vector<double> dwork;  // m dense scratch
  std::vector<int> iwork;     // scratch of length n+m
  std::vector<char> mark;     // n+m marks, zero between uses

  int scanStart = 0;  // where the next partial scan starts
  // Devex pricing's candidates: a list that holds every nonbasic column whose
  // reduced cost is infeasible (and others, weeded out as the scan meets them)
  // while candValid; a fresh set of reduced costs clears candValid and the next
  // scan rebuilds it from all columns.
  std::vector<int> cand;
  std::vector<char> inCand;
  bool candValid = false;

  // The LU engine.
  KXI_lu *lu = nullptr;
  KXI_lu_params luPam;

  // Run state.
  int stat = GLP_RUNNING;
  int method = 0;  // 0 primal, 1 dual
  int phase = 1;
  int wfact = WF_FIRST;
  int factorFailed = 0;
  double iter = 0, iterBase = 0;
  int nfact = 0, nupdates = 0;
  int npinf = 0, ndinf = 0;
  double sumpinf = 0, maxpinf = 0, sumdinf = 0, maxdinf = 0;
  int pivi = -2, pivj = -1;
  double mrat = 0;
  int pert = 0, npert = 0;
  double ptval = 2e-4;
  int numerr = 0;
  int nflips = 0;
  int nnoimp = 0, nworse = 0, nbad = 0;
  int ndeg = 0, olddeg = 0;
  double olditer = 0;
  double lastobj = 1e30, bestobj = 1e30, bestinf = 1e30;
  std::vector<int> forced;
  int nforced = 0;
  int recompute = 0;
  double objval = 0;
  int freshStart = 1;
  int leapAtStart = 0;  // the dual handed a primal feasible cold start to the primal
  int badEnd = 0;   // set when a run ended in a way that spoils the state
  int everFeasible = 0;
  int lastRefactorIter = 0;
  int verdictTries = 0;
  std::vector<int> fixedBasic;  // fixed structurals basic at the start

  // Dual simplex members, set up here so the state suits both methods.
  int dphase = 0, dpricing = -1;
  std::vector<double> dwts;
  double pivnorm = 0;
  int wantDense = 0;
  double pcolal = 0;
  int dpickrow = 0;
  std::vector<int> rject;
  int nrject = 0;
  std::vector<double> vpert;
  double cutoff = 1e30, dualobj = -1e30;
  int useCutoff = 0;
  // --- dual simplex ---
  std::vector<int> dwtsHead;  // basis head the row weights dwts belong to
  std::vector<double> ray;    // dual ray by row (scaled) after an infeasible end
  int rayLen = 0;
  int nbfix = 0, ncinf = 0;   // fixed basics, infeasible costs at the last check
  double smax = 0;            // magnitude of the last dual pivot
  // --- end dual simplex ---
};

// --- lpini.cpp: creation, parameters, allocation, release ---------------------
int lpini(Model *model, GLP **out, int sense);
void freeglp(GLP **g);
int KXI_spx_malloc(GLP *g);
void KXsplexResetTime(Model *model);
void glp_set_refactfrq(GLP *g);

// --- build.cpp: the scaled copy of the model -----------------------------------
int KXI_spx_mbuild2(GLP *g, const Model *model);
void mattpos(GLP *g);  // row-wise copy of the structural columns
// Bounds of the logical of row i in unscaled terms.
void spx_row_bounds(const Model *model, int i, double *lo, double *up);

// --- scale.cpp: scaling and its measure ---------------------------------------
int KXI_spx_mscale(GLP *g);
int hyb_scaler(GLP *g, int equilibrate, int round);
void coemax(const GLP *g, double *amin, double *amax);
int spx_bad_scale_mask(double aMin, double aMax, double cMin, double cMax, double lMin, double lMax,
                       double uMin, double uMax, double bMin, double bMax);

// --- crash.cpp: starting bases ------------------------------------------------
void psetbas(GLP *g);                 // slack basis, or check the one in cbas
int setup_basic(Model *model, GLP *g);  // sol's statuses into glp; 0 or 2015
int checkbas(GLP *g, const char *name);
int check_basis_glp(Model *model);    // 1 when sol's basis matches glp's
void spx_place_nonbasic(GLP *g, int j);  // x[j] from the status cbas[j]

// --- bupdate.cpp / recover.cpp: factorisation, updates and basis repair ---------
int KXI_spx_bupdate(GLP *g);          // 0 ok, 1 retry, 2 memory, 3 numeric, 4 refactor done
int spx_factor(GLP *g);               // factorise with repair: 0, 2 memory, 3 numeric
int spx_repair_basis(GLP *g, const char *tag);

// --- compute.cpp: primal and dual values from scratch ----------------------------
int spx_compute_xb(GLP *g);           // basic values from the nonbasic ones
int spx_compute_duals(GLP *g, const std::vector<double> &cost);  // y and rdc
// out = B^-1 in (in by row, out by position); in = B^-T out-side (in by position,
// out by row).  The input is cleared; the output must be clear on entry.
int spx_ftran(GLP *g, SpxVec &in, SpxVec &out, int save);
int spx_btran(GLP *g, SpxVec &in, SpxVec &out);
// out = B^-1 in at the positions want[0..nWant) at least (all of it when those
// depend on too many others); in is cleared as by spx_ftran.
int spx_ftran_some(GLP *g, SpxVec &in, const int *want, int nWant, SpxVec &out);
int spx_refine_xb(GLP *g);  // one refinement step of the basic values
// What an unscaled reduced cost is measured against in the end tests: the
// model's largest cost (at least 1) in the units of the scaled objective.
double spx_unscaled_cost_size(const GLP *g);
// Whether reduced cost d violates the status st of its column by more than
// tol, with the violation in *v: at the lower bound it should not be
// negative, at the upper bound not positive, free or between bounds it should
// be zero; basics have none.  Fixed columns are left to the caller.
inline bool spx_status_viol(int st, double d, double tol, double *v) {
  if (st == -1) {
    *v = -d;
    return d < -tol;
  }
  if (st == -2) {
    *v = d;
    return d > tol;
  }
  *v = d < 0 ? -d : d;
  return st <= -3 && *v > tol;
}
// The end test's tolerances against what the unscaled point shows: the
// largest primal and dual violations (pv, dv) and the dual gap share (gs).
// Where one exceeds the caller's tolerance the working one tightens; returns
// whether any did.
bool spx_tighten(GLP *g, double pv, double dv, double gs);
// What the reduced costs of the wrong sign at the nonbasic columns with finite
// bounds (each within the tolerance) could still gain over those columns'
// spans, as a share of the objective (at least 1), unscaled; `objective` is
// the point's objective on the model's scale.  Large costs leave the reduced costs a
// large absolute tolerance, and over spans in the thousands many of them add
// up to a visible part of the objective.
double spx_dual_gap_share(const GLP *g, double objective);
void spx_load_column(const GLP *g, int j, SpxVec &v);  // column j by row
// Row r of B^-1 N: g->pivrow over all columns, from rho = g->binvi.  (The
// dual computes it through spx_pivot_row_visit in pivot_row.h.)
void spx_pivot_row(GLP *g, const SpxVec &rho);
double spx_primal_infeas(GLP *g, int *count, double *maxv);
// Nonbasic, not fixed columns whose reduced cost (rdc) has the wrong sign for
// their status (beyond ceps; any nonzero one for a free column).
int spx_wrong_costs(const GLP *g);
double spx_objective(const GLP *g);  // scaled internal objective of x

// --- pricing.cpp: choice of the entering column and devex ----------------------
void devex_reset(GLP *g);
int pgetpj(GLP *g);                   // entering column or -1
void pupdrdc(GLP *g, int q, int r, double alphaq, int leave);  // reduced costs and weights
void spx_cand_touch(GLP *g, int j);   // column j's reduced cost or status changed
void pckstp(GLP *g);

// --- primal_ratio.cpp: ratio tests ---------------------------------------------
// Direction dir (+1 the entering variable rises).  Results: leaving position in
// *pivi (-1 bound flip, -2 no block), the step in *step, the value the leaving
// variable takes in *leaveVal.
int ratio2(GLP *g, int q, int dir, int *pivi, double *step, double *leaveVal);
int ratio1(GLP *g, int q, int dir, int *pivi, double *step, double *leaveVal);

// --- primal.cpp: the primal simplex ----------------------------------------------
int psimplex(GLP *g);
void pperturb(GLP *g);
void spx_remove_perturbation(GLP *g);

// --- splex.cpp: entry points --------------------------------------------------
int KXsplexOptimize(Model *model, int method);
int KXsplexReoptimize(Model *model, int method);
int spx_run_method(GLP *g, int method);  // psimplex, or the dual when it exists

// --- dual simplex ---
// dual.cpp: the dual simplex on the state (0, 2 memory, 3 numeric, 9 break; see
// stat), and drecover, which leaves true costs, bounds, duals and reduced costs.
int dsimplex(GLP *g);
void drecover(GLP *g);
// --- end dual simplex ---

// --- putsolution.cpp: from glp to sol ---------------------------------------------
int compsol(GLP *g);
int putsolution(Model *model, GLP *g);
// Largest primal and dual violation of sol on the model's own data (the dual one
// relative to max(1, largest |cost|)).
void spx_measure_solution(const Model *model, double *pinf, double *dinf);

// Debug and log helpers.
void spx_log(GLP *g, const char *fmt, ...) __attribute__((format(printf, 2, 3)));
void spx_debug(GLP *g, int level, const char *fmt, ...) __attribute__((format(printf, 3, 4)));
