// factor.cpp - one factorisation pass: loading the basis, the column and row
// singleton phases, the Markowitz kernel with threshold pivoting and its dense
// tail, and the final assembly of U by columns and of the row-wise copy of L.
#include "lu/slu.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

// ----- count lists -------------------------------------------------------

void lists_init(SLUCountLists &L, int m) {
    for (int c = 0; c <= m; c++) {
        L.next[m + c] = m + c;
        L.prev[m + c] = m + c;
    }
    std::fill(L.linked.begin(), L.linked.end(), 0);
}

inline void list_link(SLUCountLists &L, int m, int i, int count) {
    const int s = m + count;
    const int n = L.next[s];
    L.next[s] = i;
    L.prev[i] = s;
    L.next[i] = n;
    L.prev[n] = i;
    L.linked[i] = 1;
}

inline void list_unlink(SLUCountLists &L, int i) {
    if (!L.linked[i]) return;
    L.next[L.prev[i]] = L.next[i];
    L.prev[L.next[i]] = L.prev[i];
    L.linked[i] = 0;
}

inline int list_first(const SLUCountLists &L, int m, int count) {
    const int s = m + count;
    const int n = L.next[s];
    return n == s ? -1 : n;
}

// ----- line helpers ------------------------------------------------------

// Remove index x from pattern line j of store s (swap with the last entry).
inline bool line_remove(SLUStore &s, int j, int x) {
    int *ind = s.ind.data() + s.beg[j];
    const int l = s.len[j];
    for (int k = l - 1; k >= 0; k--) {
        if (ind[k] == x) {
            ind[k] = ind[l - 1];
            if (!s.val.empty()) {
                double *val = s.val.data() + s.beg[j];
                val[k] = val[l - 1];
            }
            s.len[j] = l - 1;
            return true;
        }
    }
    return false;
}

// Position inside row i of the entry in column j, or -1.
inline int row_find(const SLUStore &s, int i, int j) {
    const int *ind = s.ind.data() + s.beg[i];
    for (int k = s.len[i] - 1; k >= 0; k--)
        if (ind[k] == j) return s.beg[i] + k;
    return -1;
}

inline void row_remove_at(SLUStore &s, int i, int at) {
    const int last = s.beg[i] + s.len[i] - 1;
    s.ind[at] = s.ind[last];
    s.val[at] = s.val[last];
    s.len[i]--;
}

// Largest magnitude in row i of the active part, kept until the row changes
// (the elimination of a row computes it on the way).
inline double row_max(SLUFactor &f, int i) {
    double v = f.rowMaxAbs[i];
    if (v >= 0.0) return v;
    v = 0.0;
    const double *val = f.urow.val.data() + f.urow.beg[i];
    for (int k = 0, l = f.urow.len[i]; k < l; k++) v = std::max(v, std::fabs(val[k]));
    f.rowMaxAbs[i] = v;
    f.accCnt[i] = -1;
    return v;
}

// The entries of row i that pass the threshold of this pass: up to kAccept of
// them are kept with their magnitudes, with their count (-1: not known yet).
constexpr int kAccept = 4;
void row_accept(SLUFactor &f, int i, double bound) {
    const int *ind = f.urow.ind.data() + f.urow.beg[i];
    const double *val = f.urow.val.data() + f.urow.beg[i];
    int *ac = f.accCol.data() + (size_t)i * kAccept;
    double *av = f.accVal.data() + (size_t)i * kAccept;
    int n = 0;
    for (int k = 0, l = f.urow.len[i]; k < l; k++) {
        const double a = std::fabs(val[k]);
        if (a < bound) continue;
        if (n < kAccept) {
            ac[n] = ind[k];
            av[n] = a;
        }
        n++;
    }
    f.accCnt[i] = n;
}

// |a_ic| when entry (i, c) passes row i's threshold, else -1.  The column
// search asks this of many rows between two changes of a row: the kept
// entries answer without a search of the row unless the row has many.
inline double accepted(SLUFactor &f, int i, int c, double u, double absTol) {
    const double rmax = row_max(f, i);
    if (f.accCnt[i] < 0) row_accept(f, i, std::max(u * rmax, absTol));
    const int n = f.accCnt[i];
    if (n <= kAccept) {
        const int *ac = f.accCol.data() + (size_t)i * kAccept;
        for (int t = 0; t < n; t++)
            if (ac[t] == c) return f.accVal[(size_t)i * kAccept + t];
        return -1.0;
    }
    const int at = row_find(f.urow, i, c);
    if (at < 0) return -1.0;
    const double a = std::fabs(f.urow.val[at]);
    return a >= std::max(u * rmax, absTol) ? a : -1.0;
}

inline void set_pivot(SLUFactor &f, int r, int c, double piv) {
    const int pos = f.nPiv++;
    f.rowPerm[pos] = r;
    f.colPerm[pos] = c;
    f.rowPos[r] = pos;
    f.colPos[c] = pos;
    f.dinv[r] = 1.0 / piv;
}

inline void close_eta(SLUFactor &f, int pivRow) {
    const int end = (int)f.Lrow.size();
    if (end == f.Lbeg[f.nL]) return;  // empty eta: nothing to keep
    f.Lpiv.push_back(pivRow);
    f.Lbeg.push_back(end);
    f.etaOfRow[pivRow] = f.nL;
    f.nL++;
}

// ----- loading -----------------------------------------------------------

struct Ctx {
    SLU *h;
    SLUFactor &f;
    int m;
    int spare;
    int64_t activeNnz = 0;  // entries of the active rows, kept by the kernel
    bool denseTried = false;
};

int init_factor(Ctx &x, const int *head) {
    SLU *h = x.h;
    SLUFactor &f = x.f;
    const int m = x.m;
    f.status = SLU_STAT_OK;
    f.nPiv = 0;
    f.nL = 0;
    f.nLfactor = 0;
    f.Lbeg.assign(1, 0);
    f.Lpiv.clear();
    f.Lrow.clear();
    f.Lval.clear();
    f.nP = 0;
    f.Pbeg.assign(1, 0);
    f.Ppiv.clear();
    f.Pind.clear();
    f.Pval.clear();
    std::fill(f.rowPos.begin(), f.rowPos.end(), SLU_UNPIVOTED);
    std::fill(f.colPos.begin(), f.colPos.end(), SLU_UNPIVOTED);
    std::fill(f.etaOfRow.begin(), f.etaOfRow.end(), -1);
    std::fill(f.rowMaxAbs.begin(), f.rowMaxAbs.end(), -1.0);
    f.maxAbsA = 0.0;
    f.maxAbsU = 0.0;
    f.nnzA = 0;
    f.singRows.clear();
    f.singCols.clear();
    f.nSingRows = f.nSingCols = 0;
    f.lastSingletonPos = -1;
    f.denseOrder = 0;

    // Pass 1: lengths.
    std::vector<int> &rowCnt = f.tmpInt;
    rowCnt.assign(m, 0);
    slu_store_init(f.ucol, m, false);
    int64_t total = 0;
    for (int p = 0; p < m; p++) {
        int *ri = nullptr;
        double *rv = nullptr;
        const int col = head ? head[p] : p;
        const int len = h->cbFetch(h->cbClient, col, &ri, &rv);
        int nz = 0;
        for (int k = 0; k < len; k++) {
            if (ri[k] < 0 || ri[k] >= m) return SLU_STAT_NUMERIC;
            if (rv[k] != 0.0) nz++;
        }
        f.ucol.len[p] = nz;
        f.nnzA += nz;
        if (nz >= 2) {
            for (int k = 0; k < len; k++)
                if (rv[k] != 0.0) rowCnt[ri[k]]++;
            total += nz;
        }
    }
    // Storage: U rows with values, column patterns; room for fill.
    const int spare = x.spare;
    {
        SLUStore &s = f.urow;
        slu_store_init(s, m, true);
        int64_t pos = 0;
        for (int i = 0; i < m; i++) {
            s.beg[i] = (int)pos;
            s.cap[i] = rowCnt[i] + spare;
            pos += s.cap[i];
        }
        s.used = (int)pos;
        const int64_t size = pos + 2 * total + 1024;
        s.ind.resize((size_t)size);
        s.val.resize((size_t)size);
    }
    {
        SLUStore &s = f.ucol;
        int64_t pos = 0;
        for (int j = 0; j < m; j++) {
            s.beg[j] = (int)pos;
            s.cap[j] = (s.len[j] >= 2 ? s.len[j] : 0) + spare;
            pos += s.cap[j];
            s.len[j] = 0;
        }
        s.used = (int)pos;
        const int64_t size = pos + 2 * total + 1024;
        s.ind.resize((size_t)size);
        s.val.clear();
    }

    // Pass 2: fill rows and patterns; pivot the column singletons on the spot.
    // The columns go in by the caller's column number, not by position, and so
    // do they into the kernel's lists: every choice after this depends on the
    // entries and their order in the rows and lists only, so the same columns
    // in another order give the same pivots and the same factors.
    std::vector<int> &byCol = f.posOrder;
    byCol.resize(m);
    for (int p = 0; p < m; p++) byCol[p] = p;
    if (head) {
        // The column numbers of a basis are distinct: when they are not much
        // larger than m a table by number sorts them in linear time.  Repeated
        // or far-off numbers take the sort, which keeps equal ones by position.
        int top = 0, low = 0;
        for (int p = 0; p < m; p++) {
            top = std::max(top, head[p]);
            low = std::min(low, head[p]);
        }
        int k = 0;
        if (low >= 0 && top < 8 * m) {
            std::vector<int> &at = f.listA;
            at.assign((size_t)top + 1, -1);
            for (int p = 0; p < m; p++) at[head[p]] = p;
            for (int v : at)
                if (v >= 0) byCol[k++] = v;
        }
        if (k != m) {
            for (int p = 0; p < m; p++) byCol[p] = p;
            std::stable_sort(byCol.begin(), byCol.end(), [head](int a, int b) { return head[a] < head[b]; });
        }
    }
    double maxA = 0.0;
    for (int p : byCol) {
        int *ri = nullptr;
        double *rv = nullptr;
        const int col = head ? head[p] : p;
        const int len = h->cbFetch(h->cbClient, col, &ri, &rv);
        int nz = 0, r1 = -1;
        double v1 = 0.0;
        for (int k = 0; k < len; k++)
            if (rv[k] != 0.0) {
                nz++;
                r1 = ri[k];
                v1 = rv[k];
                maxA = std::max(maxA, std::fabs(rv[k]));
            }
        if (nz == 0) {
            f.colPos[p] = SLU_EMPTYCOL;
            f.status = SLU_STAT_SINGULAR;
            continue;
        }
        if (nz == 1) {
            if (f.rowPos[r1] == SLU_UNPIVOTED) {
                set_pivot(f, r1, p, v1);
            } else {
                f.colPos[p] = SLU_SINGULAR;
                f.status = SLU_STAT_SINGULAR;
            }
            continue;
        }
        int *cind = f.ucol.ind.data() + f.ucol.beg[p];
        int cl = 0;
        for (int k = 0; k < len; k++) {
            const double v = rv[k];
            if (v == 0.0) continue;
            const int r = ri[k];
            const int at = f.urow.beg[r] + f.urow.len[r]++;
            f.urow.ind[at] = p;
            f.urow.val[at] = v;
            cind[cl++] = r;
        }
        f.ucol.len[p] = cl;
    }
    f.maxAbsA = maxA;
    return 0;
}

// ----- singleton phases --------------------------------------------------

void rem_singleton_cols(Ctx &x) {
    SLUFactor &f = x.f;
    for (int k = 0; k < f.nPiv; k++) {
        const int r = f.rowPerm[k];
        const int rl = f.urow.len[r];
        if (rl > 0) f.lastSingletonPos = k;
        for (int e = 0; e < rl; e++) {
            const int j = f.urow.ind[f.urow.beg[r] + e];
            line_remove(f.ucol, j, r);
            if (f.colPos[j] != SLU_UNPIVOTED) continue;
            const int cl = f.ucol.len[j];
            if (cl == 1) {
                const int i = f.ucol.ind[f.ucol.beg[j]];
                const int at = row_find(f.urow, i, j);
                if (f.rowPos[i] != SLU_UNPIVOTED || at < 0) {
                    f.colPos[j] = SLU_SINGULAR;
                    f.status = SLU_STAT_SINGULAR;
                    continue;
                }
                const double v = f.urow.val[at];
                row_remove_at(f.urow, i, at);
                f.ucol.len[j] = 0;
                set_pivot(f, i, j, v);
            } else if (cl == 0) {
                f.colPos[j] = SLU_SINGULAR;
                f.status = SLU_STAT_SINGULAR;
            }
        }
    }
    f.savedSingletonPos = f.lastSingletonPos;
}

void rem_singleton_rows(Ctx &x) {
    SLUFactor &f = x.f;
    const int m = x.m;
    std::vector<int> &stack = f.listA;
    stack.clear();
    for (int i = 0; i < m; i++)
        if (f.rowPos[i] == SLU_UNPIVOTED && f.urow.len[i] == 1) stack.push_back(i);
    while (!stack.empty()) {
        const int i = stack.back();
        stack.pop_back();
        if (f.rowPos[i] != SLU_UNPIVOTED || f.urow.len[i] != 1) continue;
        const int b = f.urow.beg[i];
        const int j = f.urow.ind[b];
        const double v = f.urow.val[b];
        if (f.colPos[j] != SLU_UNPIVOTED) continue;
        f.urow.len[i] = 0;
        set_pivot(f, i, j, v);
        const double dv = f.dinv[i];
        const int cb = f.ucol.beg[j], cl = f.ucol.len[j];
        for (int e = 0; e < cl; e++) {
            const int k = f.ucol.ind[cb + e];
            if (k == i) continue;
            const int at = row_find(f.urow, k, j);
            if (at < 0) continue;
            const double l = f.urow.val[at] * dv;
            row_remove_at(f.urow, k, at);
            f.Lrow.push_back(k);
            f.Lval.push_back(l);
            if (f.urow.len[k] == 1) stack.push_back(k);
        }
        f.ucol.len[j] = 0;
        close_eta(f, i);
    }
}

// ----- kernel ------------------------------------------------------------

// Eliminate with row i the pivot row scattered in workVal/workMark (the pivot
// column entry of row i is at column c); l = a_ic / pivot.
void update_row(Ctx &x, int i, int c, double dpiv, const std::vector<int> &pivCols) {
    SLU *h = x.h;
    SLUFactor &f = x.f;
    const double eps = h->epsNonz;
    const int at = row_find(f.urow, i, c);
    if (at < 0) return;
    const int len0 = f.urow.len[i];
    const double l = f.urow.val[at] * dpiv;
    row_remove_at(f.urow, i, at);
    f.Lrow.push_back(i);
    f.Lval.push_back(l);

    char *mark = f.workMark.data();
    const double *wv = f.workVal.data();
    int rl = f.urow.len[i];
    int *ind = f.urow.ind.data() + f.urow.beg[i];
    double *val = f.urow.val.data() + f.urow.beg[i];
    char *waits = f.colWaits.data();
    int matched = 0;
    double vmax = 0.0;
    for (int e = 0; e < rl;) {
        const int j = ind[e];
        if (waits[j]) {
            // The row changes: its entry may now pass the threshold.
            waits[j] = 0;
            list_link(f.colLists, x.m, j, f.ucol.len[j]);
        }
        if (mark[j] == 1) {
            const double v = val[e] - l * wv[j];
            mark[j] = 2;
            matched++;
            if (std::fabs(v) <= eps) {
                ind[e] = ind[rl - 1];
                val[e] = val[rl - 1];
                rl--;
                line_remove(f.ucol, j, i);
                continue;
            }
            val[e] = v;
        }
        vmax = std::max(vmax, std::fabs(val[e]));
        e++;
    }
    f.urow.len[i] = rl;
    const int fill = (int)pivCols.size() - matched;
    if (fill > 0) {
        slu_store_reserve(f.urow, i, fill, x.spare);
        ind = f.urow.ind.data() + f.urow.beg[i];
        val = f.urow.val.data() + f.urow.beg[i];
    }
    for (int j : pivCols) {
        if (mark[j] == 1) {
            const double v = -l * wv[j];
            if (std::fabs(v) > eps) {
                ind[rl] = j;
                val[rl] = v;
                rl++;
                vmax = std::max(vmax, std::fabs(v));
                if (f.ucol.len[j] == f.ucol.cap[j]) slu_store_reserve(f.ucol, j, 1, x.spare);
                f.ucol.ind[f.ucol.beg[j] + f.ucol.len[j]++] = i;
            }
        } else {
            mark[j] = 1;
        }
    }
    f.urow.len[i] = rl;
    x.activeNnz += rl - len0;
    f.rowMaxAbs[i] = vmax;
    f.accCnt[i] = -1;
    list_unlink(f.rowLists, i);
    list_link(f.rowLists, x.m, i, rl);
}

// Pivot on (r, c) and eliminate the other rows of column c.
void kern_row(Ctx &x, int r, int c) {
    SLUFactor &f = x.f;
    const int m = x.m;
    list_unlink(f.rowLists, r);
    list_unlink(f.colLists, c);
    f.colWaits[c] = 0;
    x.activeNnz -= f.urow.len[r];
    const int at = row_find(f.urow, r, c);
    const double piv = f.urow.val[at];
    row_remove_at(f.urow, r, at);
    set_pivot(f, r, c, piv);
    const double dpiv = f.dinv[r];

    std::vector<int> &pivCols = f.listA;
    pivCols.clear();
    {
        const int b = f.urow.beg[r], l = f.urow.len[r];
        for (int e = 0; e < l; e++) {
            const int j = f.urow.ind[b + e];
            f.workVal[j] = f.urow.val[b + e];
            f.workMark[j] = 1;
            pivCols.push_back(j);
            line_remove(f.ucol, j, r);
            list_unlink(f.colLists, j);
            f.colWaits[j] = 0;  // linked again below
        }
    }
    std::vector<int> &colRows = f.listB;
    colRows.clear();
    {
        const int b = f.ucol.beg[c], l = f.ucol.len[c];
        for (int e = 0; e < l; e++) {
            const int i = f.ucol.ind[b + e];
            if (i != r) colRows.push_back(i);
        }
    }
    f.ucol.len[c] = 0;
    for (int i : colRows) update_row(x, i, c, dpiv, pivCols);
    close_eta(f, r);
    for (int j : pivCols) {
        f.workMark[j] = 0;
        f.workVal[j] = 0.0;
        list_link(f.colLists, m, j, f.ucol.len[j]);
    }
}

// Markowitz search for one pivot: columns, then rows, of count k = 2, 3, ...
// A candidate must pass the threshold on its row; the least merit (r-1)(c-1)
// wins, and between equal merits the larger pivot relative to its row (which
// keeps the growth down and spares the control loop a second pass).  The search
// ends when no later line can beat the best merit, or once numCandits lines have
// been searched since the first candidate.
bool pick_pivot(Ctx &x, int &pr, int &pc) {
    SLUFactor &f = x.f;
    SLU *h = x.h;
    const int m = x.m;
    const int want = std::max(1, h->numCandits);
    const double u = h->pivRelNow, absTol = h->epsPivAbs;
    const int remaining = m - f.nPiv;
    int64_t best = INT64_MAX;
    double bestRatio = 0.0;
    int br = -1, bc = -1, found = 0;
    const int *rlen = f.urow.len.data(), *clen = f.ucol.len.data();
    for (int k = 2; k <= remaining; k++) {
        const int64_t km1 = k - 1;
        // After a line with a candidate: stop at a merit no later line can beat,
        // or once enough lines have offered one.
        auto line_done = [&]() {
            if (br < 0) return false;
            found++;
            if (best > km1 * km1 && found < want) return false;
            pr = br;
            pc = bc;
            return true;
        };
        int cnext = -1;
        for (int c = list_first(f.colLists, m, k); c >= 0; c = cnext) {
            cnext = f.colLists.next[c] >= m ? -1 : f.colLists.next[c];
            const int b = f.ucol.beg[c];
            const bool full = br < 0;  // nothing pruned yet: every row gets tested
            bool acceptable = false;
            for (int e = 0; e < k; e++) {
                const int i = f.ucol.ind[b + e];
                const int64_t merit = km1 * (rlen[i] - 1);
                if (merit > best) continue;
                const double a = accepted(f, i, c, u, absTol);
                if (a < 0.0) continue;
                acceptable = true;
                const double ratio = a / f.rowMaxAbs[i];
                if (merit == best && ratio <= bestRatio) continue;
                bestRatio = ratio;
                best = merit;
                br = i;
                bc = c;
            }
            if (full && !acceptable) {
                // No entry passes its row's threshold, and none will before one
                // of its rows changes: the column waits outside the lists.
                list_unlink(f.colLists, c);
                f.colWaits[c] = 1;
                continue;
            }
            if (line_done()) return true;
        }
        for (int r = list_first(f.rowLists, m, k); r >= 0; r = f.rowLists.next[r] >= m ? -1 : f.rowLists.next[r]) {
            const double rmax = row_max(f, r);
            const double bound = std::max(u * rmax, absTol);
            const int b = f.urow.beg[r];
            for (int e = 0; e < k; e++) {
                const int j = f.urow.ind[b + e];
                const int64_t merit = km1 * (clen[j] - 1);
                if (merit > best) continue;
                const double a = std::fabs(f.urow.val[b + e]);
                if (a < bound) continue;
                if (merit == best && a <= bestRatio * rmax) continue;
                bestRatio = a / rmax;
                best = merit;
                br = r;
                bc = j;
            }
            if (line_done()) return true;
        }
        if (br >= 0 && best <= (int64_t)k * k) break;  // later lines have both counts above k
    }
    pr = br;
    pc = bc;
    return br >= 0;
}

// ----- dense tail ---------------------------------------------------------

// Once the active part has filled up, the sparse elimination spends its time
// on index work for entries that are all there anyway.  The rest is then
// factorised as one dense block by LAPACK with partial pivoting, P D = L U:
// each pivot is the largest entry left in its column, so the multipliers stay
// at most 1 and the growth is that of Gaussian elimination with row
// interchanges.  Row t of U and column t of L are the U row and the L eta of
// the t-th pivot.  A pivot below the absolute tolerance leaves the block to
// the sparse kernel, which deals with what is singular; nothing has been
// changed by then.
constexpr int kDenseMin = 48;       // smaller tails cost little either way
constexpr int kDenseMax = 3000;     // a block of 72 MB at most
constexpr double kDenseShare = 0.4;  // share of entries present that switches

bool dense_tail(Ctx &x) {
    const SluDgetrf dgetrf = slu_lapack_dgetrf();
    if (!dgetrf) return false;
    SLUFactor &f = x.f;
    const int m = x.m;
    std::vector<int> &rows = f.listA, &cols = f.listB, &colAt = f.tmpInt;
    rows.clear();
    cols.clear();
    for (int i = 0; i < m; i++)
        if (f.rowPos[i] == SLU_UNPIVOTED) rows.push_back(i);
    for (int j : f.posOrder)  // by the caller's column number, as in the lists
        if (f.colPos[j] == SLU_UNPIVOTED) cols.push_back(j);
    const int k = (int)rows.size();
    if (k != (int)cols.size() || k < 2) return false;
    colAt.assign(m, -1);
    for (int t = 0; t < k; t++) colAt[cols[t]] = t;
    std::vector<double> &a = f.dense;
    a.assign((size_t)k * k, 0.0);
    for (int s = 0; s < k; s++) {
        const int i = rows[s];
        const int b = f.urow.beg[i];
        for (int e = 0; e < f.urow.len[i]; e++) {
            const int t = colAt[f.urow.ind[b + e]];
            if (t < 0) return false;
            a[(size_t)t * k + s] = f.urow.val[b + e];
        }
    }
    std::vector<int> &ipiv = f.heap;
    ipiv.resize(k);
    int info = 0;
    dgetrf(&k, &k, a.data(), &k, ipiv.data(), &info);
    if (info < 0) return false;
    const double absTol = std::max(x.h->epsPivAbs, 0.0);
    for (int t = 0; t < k; t++) {
        const double d = a[(size_t)t * k + t];
        if (!(std::fabs(d) >= absTol) || d == 0.0) return false;
    }
    for (int t = 0; t < k; t++) std::swap(rows[t], rows[ipiv[t] - 1]);
    const double eps = x.h->epsNonz;
    for (int t = 0; t < k; t++) {
        const int r = rows[t];
        const double d = a[(size_t)t * k + t];
        set_pivot(f, r, cols[t], d);
        f.urow.len[r] = 0;
        slu_store_reserve(f.urow, r, k - 1 - t, x.spare);
        int *ind = f.urow.ind.data() + f.urow.beg[r];
        double *val = f.urow.val.data() + f.urow.beg[r];
        int n = 0;
        for (int j = t + 1; j < k; j++) {
            const double v = a[(size_t)j * k + t];
            if (std::fabs(v) > eps) {
                ind[n] = cols[j];
                val[n++] = v;
            }
        }
        f.urow.len[r] = n;
        const double *colT = a.data() + (size_t)t * k;
        for (int i = t + 1; i < k; i++) {
            const double l = colT[i];
            if (std::fabs(l) > eps) {
                f.Lrow.push_back(rows[i]);
                f.Lval.push_back(l);
            }
        }
        close_eta(f, r);
    }
    f.denseOrder = k;
    return true;
}

void do_kern(Ctx &x) {
    SLUFactor &f = x.f;
    const int m = x.m;
    lists_init(f.rowLists, m);
    lists_init(f.colLists, m);
    f.colWaits.assign(m, 0);
    f.accCnt.assign(m, 0);
    f.accCol.resize((size_t)m * kAccept);
    f.accVal.resize((size_t)m * kAccept);
    x.activeNnz = 0;
    for (int i = 0; i < m; i++)
        if (f.rowPos[i] == SLU_UNPIVOTED) {
            x.activeNnz += f.urow.len[i];
            if (f.urow.len[i] == 0) f.status = SLU_STAT_SINGULAR;
            list_link(f.rowLists, m, i, f.urow.len[i]);
        }
    for (int j : f.posOrder)
        if (f.colPos[j] == SLU_UNPIVOTED) {
            if (f.ucol.len[j] == 0) f.status = SLU_STAT_SINGULAR;
            list_link(f.colLists, m, j, f.ucol.len[j]);
        }
    // Singletons of the active part first.  Their entries may come out of the
    // elimination: one below the absolute pivot tolerance is a cancelled zero, and
    // its line leaves the lists without a pivot (until an elimination changes it).
    const double absTol = x.h->epsPivAbs;
    while (f.nPiv < m) {
        const int r = list_first(f.rowLists, m, 1);
        if (r >= 0) {
            const int b = f.urow.beg[r];
            if (std::fabs(f.urow.val[b]) >= absTol)
                kern_row(x, r, f.urow.ind[b]);
            else
                list_unlink(f.rowLists, r);
            continue;
        }
        const int c = list_first(f.colLists, m, 1);
        if (c >= 0) {
            const int i = f.ucol.ind[f.ucol.beg[c]];
            const int at = row_find(f.urow, i, c);
            if (at >= 0 && std::fabs(f.urow.val[at]) >= absTol)
                kern_row(x, i, c);
            else
                list_unlink(f.colLists, c);
            continue;
        }
        const int64_t rem = m - f.nPiv;
        if (!x.denseTried && rem >= kDenseMin && rem <= kDenseMax &&
            (double)x.activeNnz >= kDenseShare * (double)rem * (double)rem) {
            x.denseTried = true;
            const bool done = dense_tail(x);
            // A block over 8 MB is not kept between factorisations.
            if (f.dense.size() > ((size_t)1 << 20)) std::vector<double>().swap(f.dense);
            if (done) break;
        }
        int pr = -1, pc = -1;
        if (!pick_pivot(x, pr, pc)) break;
        kern_row(x, pr, pc);
    }
}

// ----- final assembly ----------------------------------------------------

// Reorder U's pivots, each block keeping its order: pivots whose column is
// empty off the diagonal first, pivots whose row is empty (and column not)
// last, the rest between.  U stays triangular: its entries lie in rows of the
// first two blocks and columns of the last two.
void order_bare_pivots(SLUFactor &f, int m) {
    std::vector<int> &newRow = f.listA, &newCol = f.listB;
    newRow.resize(m);
    newCol.resize(m);
    int a = 0;
    for (int k = 0; k < m; k++)
        if (f.ucol.len[f.colPerm[k]] == 0) {
            newRow[a] = f.rowPerm[k];
            newCol[a++] = f.colPerm[k];
        }
    int b = a;
    for (int k = 0; k < m; k++)
        if (f.ucol.len[f.colPerm[k]] != 0 && f.urow.len[f.rowPerm[k]] != 0) {
            newRow[b] = f.rowPerm[k];
            newCol[b++] = f.colPerm[k];
        }
    const int mid = b;
    for (int k = 0; k < m; k++)
        if (f.ucol.len[f.colPerm[k]] != 0 && f.urow.len[f.rowPerm[k]] == 0) {
            newRow[b] = f.rowPerm[k];
            newCol[b++] = f.colPerm[k];
        }
    for (int k = 0; k < m; k++) {
        f.rowPerm[k] = newRow[k];
        f.colPerm[k] = newCol[k];
        f.rowPos[newRow[k]] = k;
        f.colPos[newCol[k]] = k;
    }
    f.bareCols = a;
    f.bareRows = m - mid;
}

int finish_factor(Ctx &x) {
    SLUFactor &f = x.f;
    const int m = x.m;
    f.nLfactor = f.nL;
    f.reachFtL = f.reachFtU = f.reachBtU = f.reachBtL = 0.0;
    f.otherFt[2] = f.otherFt[3] = 0.0;
    f.LrowPos = f.rowPos;
    f.LrowPerm = f.rowPerm;
    // Row-wise copy of L.
    f.LRbeg.assign(m + 1, 0);
    const int nzL = f.Lbeg[f.nL];
    for (int k = 0; k < nzL; k++) f.LRbeg[f.Lrow[k] + 1]++;
    for (int i = 0; i < m; i++) f.LRbeg[i + 1] += f.LRbeg[i];
    if (f.LRbeg[m] != nzL) return SLU_STAT_NUMERIC;
    f.LRpiv.resize(nzL);
    f.LRval.resize(nzL);
    {
        std::vector<int> &next = f.tmpInt;
        next.assign(f.LRbeg.begin(), f.LRbeg.end() - 1);
        for (int e = 0; e < f.nL; e++) {
            const int r = f.Lpiv[e];
            for (int k = f.Lbeg[e]; k < f.Lbeg[e + 1]; k++) {
                const int at = next[f.Lrow[k]]++;
                f.LRpiv[at] = r;
                f.LRval[at] = f.Lval[k];
            }
        }
    }
    f.LRorder.clear();
    for (int k = m - 1; k >= 0; k--) {
        const int i = f.rowPerm[k];
        if (f.LRbeg[i + 1] > f.LRbeg[i]) f.LRorder.push_back(i);
    }
    // U by columns with values, entries in pivot order (last pivot first).
    // The growth that the control loop weighs is the largest of U's entries
    // and of the inverse pivots.
    double maxU = 0.0;
    SLUStore &uc = f.ucol;
    SLUStore &ur = f.urow;
    std::fill(uc.len.begin(), uc.len.end(), 0);
    int64_t nnzU = 0;
    for (int i = 0; i < m; i++) {
        const int b = ur.beg[i];
        for (int e = 0; e < ur.len[i]; e++) uc.len[ur.ind[b + e]]++;
        nnzU += ur.len[i];
    }
    int64_t pos = 0;
    for (int j = 0; j < m; j++) {
        uc.beg[j] = (int)pos;
        uc.cap[j] = uc.len[j] + x.spare;
        pos += uc.cap[j];
        uc.len[j] = 0;
    }
    uc.used = (int)pos;
    const int64_t size = pos + nnzU / 2 + 1024;
    uc.ind.resize((size_t)size);
    uc.val.resize((size_t)size);
    for (int k = m - 1; k >= 0; k--) {
        const int r = f.rowPerm[k];
        maxU = std::max(maxU, std::fabs(f.dinv[r]));
        const int b = ur.beg[r];
        for (int e = 0; e < ur.len[r]; e++) {
            const int j = ur.ind[b + e];
            const double v = ur.val[b + e];
            maxU = std::max(maxU, std::fabs(v));
            const int at = uc.beg[j] + uc.len[j]++;
            uc.ind[at] = r;
            uc.val[at] = v;
        }
    }
    ur.nnz = nnzU;
    uc.nnz = nnzU;
    f.maxAbsU = maxU;
    f.spSize = nnzU + m;
    order_bare_pivots(f, m);
    return 0;
}

void list_singular(Ctx &x) {
    SLUFactor &f = x.f;
    const int m = x.m;
    f.singRows.clear();
    f.singCols.clear();
    for (int i = 0; i < m; i++)
        if (f.rowPos[i] < 0) {
            f.rowPos[i] = SLU_SINGULAR;
            f.singRows.push_back(i);
        }
    for (int j = 0; j < m; j++)
        if (f.colPos[j] < 0) {
            if (f.colPos[j] != SLU_EMPTYCOL) f.colPos[j] = SLU_SINGULAR;
            f.singCols.push_back(j);
        }
    f.nSingRows = (int)f.singRows.size();
    f.nSingCols = (int)f.singCols.size();
    if (f.nSingRows == 0 && f.nSingCols == 0) f.status = SLU_STAT_OK;
}

}  // namespace

int slu_refactor(SLU *h, const int *basisHead) {
    try {
        slu_alloc_work(h);
        SLUFactor &f = *h->work;
        Ctx x{h, f, h->m, std::max(h->memExp, 0)};
        int rc = init_factor(x, basisHead);
        if (rc != 0) {
            f.status = rc;
            return rc;
        }
        rem_singleton_cols(x);
        rem_singleton_rows(x);
        if (f.nPiv < x.m) do_kern(x);
        if (f.nPiv < x.m) {
            f.status = SLU_STAT_SINGULAR;
            f.nLfactor = f.nL;
            list_singular(x);  // nPiv < m: both lists are nonempty
            return f.status;
        }
        f.status = SLU_STAT_OK;
        rc = finish_factor(x);
        if (rc != 0) f.status = rc;
        return f.status;
    } catch (...) {
        if (h->work) h->work->status = SLU_STAT_MEMORY;
        return SLU_STAT_MEMORY;
    }
}
