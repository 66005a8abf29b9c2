// slu.h - the basis factorization engine (slu_) and its simplex binding (KXI_lu_).
//
// The engine factorises a square basis B, given column by column through a fetch
// callback, as  R_k ... R_1 L_e ... L_1 B = U  (up to row and column permutations):
// L_i are column etas of the factorisation, R_i row etas added by Forrest-Tomlin
// updates, U is upper triangular in pivot order and held both by rows and by columns.
// With the product-form update, column etas E_i are applied after U instead.
//
// This header is the only door into the engine.  Everything is plain records and
// free functions; no exception leaves any function declared here.
#pragma once

#include <cstdint>
#include <vector>

// ---------------------------------------------------------------------------
// Codes
// ---------------------------------------------------------------------------

// Factor status (SLUFactor::status).
constexpr int SLU_STAT_OK = 0;
constexpr int SLU_STAT_SINGULAR = 1;
constexpr int SLU_STAT_MEMORY = 2;
constexpr int SLU_STAT_NUMERIC = 3;
constexpr int SLU_STAT_REFACTOR = 4;
constexpr int SLU_STAT_NOFACTOR = 5;

// Return codes of the engine calls that are not statuses.
constexpr int SLU_RC_UNKNOWN_ID = 1001;  // unknown parameter or information id
constexpr int SLU_RC_EMPTY = 1002;       // a sparse solve produced an empty result

// Library error codes used by the binding.
constexpr int KXI_LU_ERR_OK = 0;
constexpr int KXI_LU_ERR_MEMORY = 2001;
constexpr int KXI_LU_ERR_INTERNAL = 2015;
constexpr int KXI_LU_ERR_NUMERIC = 2019;

// LAPACK's dgetrf (LU with partial pivoting, column-major), opened on first use
// (lapack.cpp); null when no LAPACK can be loaded.
using SluDgetrf = void (*)(const int *m, const int *n, double *a, const int *lda, int *ipiv, int *info);
SluDgetrf slu_lapack_dgetrf();

// Marks in rowPos / colPos.
constexpr int SLU_UNPIVOTED = -5;
constexpr int SLU_SINGULAR = -2;   // column left without a pivot (or row)
constexpr int SLU_EMPTYCOL = -3;   // empty basis column

// Parameter ids.
constexpr int SLU_IPAR_NUM_CANDITS = 1300;
constexpr int SLU_IPAR_MAX_UPDATES = 1301;
constexpr int SLU_IPAR_PRINT_LEVEL = 1302;
constexpr int SLU_IPAR_UPDATE_TYPE = 1303;
constexpr int SLU_IPAR_USE_PIVCOL = 1304;
constexpr int SLU_IPAR_MEM_EXP = 1305;
constexpr int SLU_IPAR_ISDEBUG = 1307;
constexpr int SLU_DPAR_EPS_DIAG = 2400;
constexpr int SLU_DPAR_EPS_NONZ = 2401;
constexpr int SLU_DPAR_EPS_PIVABS = 2402;
constexpr int SLU_DPAR_EPS_PIVREL = 2403;
constexpr int SLU_DPAR_INI_RCOND = 2404;
constexpr int SLU_DPAR_SPVTOL_UPDATE = 2405;
constexpr int SLU_DPAR_SPVTOL_FTRAN = 2406;
constexpr int SLU_DPAR_SPVTOL_BTRAN = 2407;

// Defaults.
constexpr int SLU_DEF_NUM_CANDITS = 4;
constexpr int SLU_DEF_MAX_UPDATES = 500;
constexpr int SLU_DEF_PRINT_LEVEL = 2;
constexpr int SLU_DEF_UPDATE_TYPE = 1;
constexpr int SLU_DEF_USE_PIVCOL = 0;
constexpr int SLU_DEF_MEM_EXP = 5;
constexpr int SLU_DEF_ISDEBUG = 0;
constexpr double SLU_DEF_EPS_DIAG = 1e-6;
constexpr double SLU_DEF_EPS_NONZ = 2.22044604925032e-16;
constexpr double SLU_DEF_EPS_PIVABS = 1e-10;
constexpr double SLU_DEF_EPS_PIVREL = 0.01;
constexpr double SLU_DEF_INI_RCOND = 0.01;
constexpr double SLU_DEF_SPVTOL_UPDATE = 0.001;
constexpr double SLU_DEF_SPVTOL_FTRAN = 0.2;
constexpr double SLU_DEF_SPVTOL_BTRAN = 0.1;

// Information ids.
constexpr int SLU_IINF_ITER = 1001;
constexpr int SLU_IINF_LPCOUNT = 1002;
constexpr int SLU_IINF_SPIKEFLIP = 1003;
constexpr int SLU_IINF_STABLE = 1004;
constexpr int SLU_IINF_FACTORS = 1005;
constexpr int SLU_IINF_TRIES = 1006;
constexpr int SLU_IINF_TRIES_SINCE = 1007;
constexpr int SLU_DINF_ALPHA = 2001;      // set: spikeAlpha; get: fill of L
constexpr int SLU_DINF_UFILL = 2002;
constexpr int SLU_DINF_STABLE_SHARE = 2003;
constexpr int SLU_DINF_DONE_SHARE = 2004;
constexpr int SLU_VINF_PIVCOL = 3001;     // caller's full pivot column (product form)
constexpr int SLU_VINF_SPIKE = 3002;      // caller's L-transformed spike (Forrest-Tomlin)

// ---------------------------------------------------------------------------
// Records
// ---------------------------------------------------------------------------

// Sparse vector passed to and from the engine.
//   count == -1 : dense; val holds m values.
//   count >= 0  : ind[0..count) are the listed indices; the values are packed
//                 (val[k] belongs to ind[k]) unless scattered != 0, in which case
//                 val is a full-length array and val[ind[k]] is the value.
// For an output, ind and val must have room for m entries; a scattered output
// writes only the listed positions (the caller keeps the rest zero).
struct SLUVec {
    int count = 0;
    int *ind = nullptr;
    double *val = nullptr;
    int scattered = 0;
};

// Column fetch: gives the rows and values of basis column `col` (the value of
// basisHead at a position), returns its length.
using SLUFetch = int (*)(void *client, int col, int **rows, double **vals);

// Optional log sink; the engine never writes to a terminal.
using SLULog = void (*)(void *data, const char *text);

// A growable compressed store of m lines (rows or columns of U, or patterns).
// Line i occupies ind/val[beg[i] .. beg[i]+len[i]), with room up to beg[i]+cap[i].
struct SLUStore {
    std::vector<int> beg, len, cap;
    std::vector<int> ind;
    std::vector<double> val;  // empty while the store holds a pattern only
    int used = 0;             // end of the last line in the arrays
    int64_t nnz = 0;          // sum of len
};

// Doubly linked lists of lines by count, one circular list with a sentinel per
// count 0..m.  Node ids 0..m-1 are lines, m+c is the sentinel of count c.
struct SLUCountLists {
    std::vector<int> next, prev;
    std::vector<char> linked;
};

// The factor workspace.
struct SLUFactor {
    int m = 0;
    int status = SLU_STAT_NOFACTOR;
    int nPiv = 0;

    SLUStore urow;  // U by rows with values; the active submatrix during factorisation
    SLUStore ucol;  // U by columns; pattern of the active part during factorisation

    // L etas (factorisation part below nLfactor, Forrest-Tomlin row etas above).
    std::vector<int> Lbeg, Lpiv, Lrow;
    std::vector<double> Lval;
    int nL = 0, nLfactor = 0;
    std::vector<int> etaOfRow;  // row -> factorisation eta with that pivot row, or -1
    // Row-wise copy of the factorisation etas: for row i the pairs (pivot row, l).
    std::vector<int> LRbeg, LRpiv;
    std::vector<double> LRval;
    // Row order of the factorisation; updates move rows, L keeps this order.
    std::vector<int> LrowPos, LrowPerm;

    // Product-form etas: E_k has pivot position Ppiv[k], entries (PFind, PFval).
    std::vector<int> Pbeg, Ppiv, Pind;
    std::vector<double> Pval;
    int nP = 0;

    std::vector<int> rowPerm, colPerm, rowPos, colPos;
    std::vector<double> dinv;

    SLUCountLists rowLists, colLists;
    std::vector<char> colWaits;  // kernel column out of the lists until a row of it changes
    std::vector<double> rowMaxAbs;
    // Entries of an active row that pass the threshold (a few, with their count).
    std::vector<int> accCnt, accCol;
    std::vector<double> accVal;
    std::vector<double> workVal;
    std::vector<char> workMark;
    std::vector<int> tmpInt;
    std::vector<int> posOrder;  // basis positions by the caller's column number

    double maxAbsA = 0.0, maxAbsU = 0.0;
    int64_t nnzA = 0;
    std::vector<int> singRows, singCols;
    int nSingRows = 0, nSingCols = 0;
    int lastSingletonPos = -1, savedSingletonPos = -1;
    double spikeAlpha = 0.0;
    int spikeFlip = 0;
    int64_t spSize = 0;  // storage size of U, with m for the diagonal
    // U's pivots in three blocks: positions [0, bareCols) have no entry in their
    // column off the diagonal, positions [m - bareRows, m) none in their row.
    // FTRAN's and BTRAN's passes over every pivot copy those blocks scaled by
    // the diagonal instead of visiting each pivot's empty line.
    int bareCols = 0, bareRows = 0;

    // Work lists of the factorisation and the update.
    std::vector<int> listA, listB, heap;
    // The dense tail of the factorisation: the block, and its order in the
    // last factorisation (0 when the kernel stayed sparse to the end).
    std::vector<double> dense;
    int denseOrder = 0;

    // Solve workspace: dense arrays zero between calls with the lists of their
    // nonzeros, and the depth-first search (marks zero between calls, the stack,
    // the reached nodes in topological order).
    std::vector<double> wRow, wCol;
    std::vector<int> listRow, listCol;
    std::vector<char> mark;
    std::vector<int> dfsNode, dfsEdge, dfsEnd, dfsOrder;
    // Rows with entries in the row-wise copy of L, last pivot first (the L^T loop).
    std::vector<int> LRorder;
    // Pivots waiting in a sweep, one bit each (zero between calls).
    std::vector<uint64_t> sweepBits;
    // Running share of nonzeros in the results of the four triangular stages
    // (FTRAN L and U, BTRAN U and L); it picks the method of the next solve.
    double densFtL = 0.0, densFtU = 0.0, densBtU = 0.0, densBtL = 0.0;
    // Running share of the entries a search reaches (values that get too small
    // to count are reached all the same); reset by each factorisation.
    double reachFtL = 0.0, reachFtU = 0.0, reachBtU = 0.0, reachBtL = 0.0;
    // The FTRAN shares (densFtL, densFtU, reachFtL, reachFtU) of the solves
    // that save no spike: the simplex's entering columns save one, and its other
    // solves (steepest-edge and flip vectors) fill differently.
    double otherFt[4] = {0.0, 0.0, 0.0, 0.0};
    // Running share of the partial solves (slu_do_ftran_some) that end in full
    // solves because their entries depend on too many others.
    double someMiss = 0.0;
    unsigned someSkips = 0;
};

struct SLU {
    int m = 0;
    double epsNonz = SLU_DEF_EPS_NONZ;
    double epsDiag = SLU_DEF_EPS_DIAG;
    double epsPivRel = SLU_DEF_EPS_PIVREL;
    double epsPivAbs = SLU_DEF_EPS_PIVABS;
    double iniRcond = SLU_DEF_INI_RCOND;
    double pivRelNow = SLU_DEF_EPS_PIVREL;
    double spvTolUpdate = SLU_DEF_SPVTOL_UPDATE;
    double spvTolFtran = SLU_DEF_SPVTOL_FTRAN;
    double spvTolBtran = SLU_DEF_SPVTOL_BTRAN;
    double rcondTarget = SLU_DEF_INI_RCOND;
    double rcond = 0.0;  // estimate of the last factorisation
    int numCandits = SLU_DEF_NUM_CANDITS;
    int updateType = SLU_DEF_UPDATE_TYPE;
    int printLevel = SLU_DEF_PRINT_LEVEL;
    int maxUpdates = SLU_DEF_MAX_UPDATES;
    int usePivCol = SLU_DEF_USE_PIVCOL;
    int memExp = SLU_DEF_MEM_EXP;
    int isDebug = SLU_DEF_ISDEBUG;
    int updatesSinceFactor = 0, iter = 0, lpCount = 0;
    int stableCount = 0, factorCount = 0, tryCount = 0, tryCountSinceLast = 0;
    int64_t lastNnz = 0;
    SLUFactor *work = nullptr;
    SLUFetch cbFetch = nullptr;
    void *cbClient = nullptr;
    SLULog logFunc = nullptr;
    void *logData = nullptr;
    // Saved vectors: spike (rows, after L and row etas) for Forrest-Tomlin,
    // pivot column (positions, the full solve) for the product form.
    std::vector<int> spikeInd, pivColInd;
    std::vector<double> spikeVal, pivColVal;
    int spikeCount = 0, pivColCount = 0;
    int spikeSource = 0;  // 0 own saved vectors, SLU_VINF_* a vector given by set_vinfo
};

// ---------------------------------------------------------------------------
// Engine
// ---------------------------------------------------------------------------

// Handle: create with order m, callback client and fetch; *status 0 or 2.
SLU *slu_create(int m, void *client, SLUFetch fetch, int *status);
// Free the handle and its workspace (null is accepted).
void slu_delete(SLU **h);
// Install a log sink (null: silent).
void slu_set_log(SLU *h, SLULog f, void *data);

// Parameters; a negative value restores the default; unknown id -> 1001.
int slu_set_ipar(SLU *h, int id, int v);
int slu_get_ipar(const SLU *h, int id, int *v);
int slu_set_dpar(SLU *h, int id, double v);
int slu_get_dpar(const SLU *h, int id, double *v);
// Write the working options to the log when the print level asks for it.
void slu_disp_params(const SLU *h);

// Information ids (see SLU_IINF_*, SLU_DINF_*, SLU_VINF_*).
int slu_set_iinfo(SLU *h, int id, int v);
int slu_get_iinfo(const SLU *h, int id, int *v);
int slu_set_dinfo(SLU *h, int id, double v);
int slu_get_dinfo(const SLU *h, int id, double *v);
// Give the vector an update uses in place of the saved one (copied), or select
// the saved one again with id 0.
int slu_set_vinfo(SLU *h, int id, const SLUVec *v);
double slu_get_rcond(const SLU *h);

// Factorise the basis whose position p holds column basisHead[p] (null: p).
// The reciprocal-condition loop may refactorise with a raised threshold.
int slu_do_factor(SLU *h, const int *basisHead);
// One factorisation pass with the threshold pivRelNow (no control loop).
int slu_refactor(SLU *h, const int *basisHead);
// Replace the column at basis position `position` with the saved spike.
int slu_update(SLU *h, int position);
// Solve B x = in; x indexed by basis position.  save 1 keeps the spike.
int slu_do_ftran(SLU *h, const SLUVec *in, SLUVec *out, int save);
// Solve B^T y = in; in indexed by basis position, y by row.
int slu_do_btran(SLU *h, const SLUVec *in, SLUVec *out);
// The entries want[0..nWant) (distinct basis positions) of x = B^-1 in, when
// they depend on few others: out (scattered) then lists exactly those and
// *some is 1.  Otherwise the whole of x is solved into out as by slu_do_ftran
// without a spike, and *some is 0.  No spike is saved either way.
int slu_do_ftran_some(SLU *h, const SLUVec *in, const int *want, int nWant, SLUVec *out, int *some);

// Sizes and counts.
int slu_eta_size(const SLU *h);
int64_t slu_num_lnonz(const SLU *h);
int64_t slu_num_unonz(const SLU *h);
int64_t slu_num_spsize(const SLU *h);
int64_t slu_num_pnonz(const SLU *h);
int slu_get_npcand(const SLU *h);
int slu_get_lu_stat(const SLU *h);
int slu_get_singular_cnt(const SLU *h);
// k-th singular pair: column (basis position) and row; 0 or 1001 when k is out of range.
int slu_get_singular_idx(const SLU *h, int *col, int *row, int k);
// Advice: 2 the update limit is reached, 10 the fill says refactorise, 0 go on.
int slu_get_wfact(const SLU *h, int limit, int minimum);

// The threshold ladder step and the relaxation used by the control loop.
double slu_ladder_step(double x);
double slu_ladder_relax(double pivRelNow, double epsPivRel);

// ---------------------------------------------------------------------------
// Internal pieces shared between the engine's files
// ---------------------------------------------------------------------------
int slu_alloc_work(SLU *h);
void slu_compute_rcond(SLU *h);
// Make room for `extra` more entries in line i (may move the line or regrow).
void slu_store_reserve(SLUStore &s, int i, int extra, int spare);
void slu_store_init(SLUStore &s, int m, bool withValues);

// ---------------------------------------------------------------------------
// Binding for the simplex
// ---------------------------------------------------------------------------

// LU parameter values as the simplex holds them (ids 1300-1305 and 2400-2407).
struct KXI_lu_params {
    int numCandits = SLU_DEF_NUM_CANDITS;
    int maxUpdates = SLU_DEF_MAX_UPDATES;
    int printLevel = SLU_DEF_PRINT_LEVEL;
    int updateType = SLU_DEF_UPDATE_TYPE;
    int usePivCol = SLU_DEF_USE_PIVCOL;
    int memExp = SLU_DEF_MEM_EXP;
    double epsDiag = SLU_DEF_EPS_DIAG;
    double epsNonz = SLU_DEF_EPS_NONZ;
    double epsPivAbs = SLU_DEF_EPS_PIVABS;
    double epsPivRel = SLU_DEF_EPS_PIVREL;
    double iniRcond = SLU_DEF_INI_RCOND;
    double spvTolUpdate = SLU_DEF_SPVTOL_UPDATE;
    double spvTolFtran = SLU_DEF_SPVTOL_FTRAN;
    double spvTolBtran = SLU_DEF_SPVTOL_BTRAN;
};

// The simplex's sparse column table: structural column j (0 <= j < n) is
// rowInd/val[colBeg[j] .. colBeg[j]+colLen[j]); variable n+i is the slack of row i.
struct KXI_lu_columns {
    int m = 0, n = 0;
    const int *colBeg = nullptr;
    const int *colLen = nullptr;
    const int *rowInd = nullptr;
    const double *val = nullptr;
};

struct KXI_lu {
    SLU *slu = nullptr;
    KXI_lu_columns cols;
    std::vector<int> slackRow;  // slackRow[i] = i, handed out for slack columns
    double one = 1.0;
    double slackVal = 1.0;      // coefficient of a slack column
    int64_t nDenseFtran = 0, nSparseFtran = 0, nDenseBtran = 0, nSparseBtran = 0;
};

// Fetch callback over KXI_lu_columns (client is the KXI_lu).
int KXI_lu_datacol(void *client, int col, int **rows, double **vals);
// Make the binding and its engine; returns a library error code.
int KXI_lu_create(KXI_lu **lu, const KXI_lu_columns *cols, const KXI_lu_params *pam);
void KXI_lu_delete(KXI_lu **lu);
// Copy parameter values into the engine.
int KXI_lu_set_params(KXI_lu *lu, const KXI_lu_params *pam);
// Engine status -> simplex status: 0 -> 0, 1 and 3 -> 1, 4 -> 4, others -> 2.
int KXI_lu_map_stat(int engineStatus);
// Engine status -> library error code.
int KXI_lu_error_code(int engineStatus);
// Factorise the basis head; *luStat gets the mapped status; returns an error code.
int KXI_lu_fact(KXI_lu *lu, const int *head, int iter, int lpCount, int *luStat);
// Set alpha and flip, then replace the column at basis position `position`.
int KXI_lu_update(KXI_lu *lu, int position, double alpha, int flip, int *luStat);
// Solves; the result's count says whether it came out dense or sparse.
int KXI_lu_ftran(KXI_lu *lu, const SLUVec *in, SLUVec *out, int save);
int KXI_lu_btran(KXI_lu *lu, const SLUVec *in, SLUVec *out);
int KXI_lu_ftran_some(KXI_lu *lu, const SLUVec *in, const int *want, int nWant, SLUVec *out, int *some);
// 21500 stable, 21501 completed, 21502 tried factorisations; other ids go through.
int KXI_lu_get_iinfo(const KXI_lu *lu, int id, int *v);
