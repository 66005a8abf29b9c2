// solve.cpp - FTRAN and BTRAN.
//
// Each triangular stage (L and U of the factorisation) runs one of four ways:
//  - search: a depth-first search from the nonzeros of the vector finds the
//    entries the stage can reach, in an order where each entry comes before the
//    entries it feeds (Gilbert and Peierls); the numeric pass touches those only;
//  - sweep: the pivots waiting for a nonzero are bits in a bitmap by pivot
//    order, and one sweep over its words takes them in order; entries that
//    become too small to count are never taken, which a search cannot know;
//  - pass: every pivot in order from the first one the vector starts at,
//    skipping zeros (the vector listed or, when expected dense, not);
//  - dot products over the other copy of the factor (by rows of U for FTRAN, by
//    columns for BTRAN, and the like for L) when the result is expected dense.
// The sweep and the pass do the same arithmetic in the same order.  Each stage
// keeps running shares of its results and of the search's reach; with the
// caller's thresholds (spvTolFtran, spvTolBtran) they pick the way: a search
// while it reaches a tiny share of m, a sweep for a few percent, a pass above.
// A search that reaches too far gives up and the stage sweeps or passes.
//
// The dense arrays and the bitmap are zero between calls.  While a vector is
// listed its list holds every nonzero once: an entry that cancels to zero keeps a
// tiny value so that it is not listed twice.
#include "lu/slu.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>

namespace {

constexpr double kTiny = 1e-100;
constexpr double kDensWeight = 0.05;  // weight of the newest solve in the running shares
constexpr double kHyperShare = 0.5;   // search while the expected share is below this part of the threshold
constexpr double kReachShare = 1.0 / 64;  // ... and the running reach below this part of it
constexpr double kSweepShare = 0.05;  // below this expected share a stage sweeps, above it passes every pivot
constexpr double kListShare = 0.3;    // above this expected share of the result the L stages drop their lists
constexpr double kDotShare = 0.6;     // above this expected share a stage runs as dot products over the other copy

// Whether a stage expected to fill `dens` of the vector runs as dot products
// over the other copy of its factor (nnz entries): every entry is then read
// once, gathered into a running sum; the copy by pivots skips zeros but
// scatters.  Short lines gain nothing.
inline bool use_dot(double dens, int64_t nnz, int m, bool denseIn) {
    return (denseIn || dens >= kDotShare) && nnz >= 2 * (int64_t)m;
}

// Dot product of val[kb..ke) with w gathered at idx, in four running sums.
inline double dot(const double *val, const int *idx, int kb, int ke, const double *w) {
    double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
    int k = kb;
    for (; k + 3 < ke; k += 4) {
        s0 += val[k] * w[idx[k]];
        s1 += val[k + 1] * w[idx[k + 1]];
        s2 += val[k + 2] * w[idx[k + 2]];
        s3 += val[k + 3] * w[idx[k + 3]];
    }
    for (; k < ke; k++) s0 += val[k] * w[idx[k]];
    return (s0 + s1) + (s2 + s3);
}

inline void track(double &dens, int count, int m) { dens += kDensWeight * ((double)count / m - dens); }

// Whether a stage with n listed entries should search.  A search costs some
// tens of nanoseconds a reached entry, a sweep about one a 64 pivots and the
// work on the nonzeros: the search pays only while it reaches a tiny share of
// m (the running reach, which the threshold scales).
inline bool use_search(int n, int m, double dens, double reach, double tol) {
    const double share = kHyperShare * tol;
    return reach < tol * kReachShare && dens < share && (double)n < share * m;
}

// The search's budget of reached entries before it gives up (four times the
// reach it is meant for).
inline int search_limit(int m, double tol) { return std::max(64, (int)(4.0 * kReachShare * tol * m)); }

// w[x] += d, keeping the list whole.
inline void axpy_listed(double *w, int x, double d, int *list, int &n) {
    const double v = w[x];
    if (v == 0.0) {
        list[n++] = x;
        w[x] = d != 0.0 ? d : kTiny;
    } else {
        const double r = v + d;
        w[x] = r != 0.0 ? r : kTiny;
    }
}

// w[idx[k]] -= val[k] * v for k in [kb, ke).
inline void axpy(double *w, const int *idx, const double *val, int kb, int ke, double v) {
    for (int k = kb; k < ke; k++) w[idx[k]] -= val[k] * v;
}

// The same on a listed vector (Listed) or not; a listed one lists its new nonzeros.
template <bool Listed>
inline void scatter(double *w, const int *idx, const double *val, int kb, int ke, double v, int *list, int &n) {
    if constexpr (Listed) {
        for (int k = kb; k < ke; k++) axpy_listed(w, idx[k], -val[k] * v, list, n);
    } else {
        axpy(w, idx, val, kb, ke, v);
    }
}

// body(listed) with listed a compile-time true when n >= 0: one loop serves both.
template <class Body>
inline void by_listing(int n, Body body) {
    if (n >= 0)
        body(std::true_type{});
    else
        body(std::false_type{});
}

inline void set_bit(uint64_t *bits, int k) { bits[k >> 6] |= uint64_t(1) << (k & 63); }

// Take the waiting pivots of the bitmap in increasing order from word w0, or in
// decreasing order from word w0 down; take(k) may set bits further on.
template <class Take>
inline void sweep_up(uint64_t *bits, int w0, int words, Take take) {
    for (int wd = w0; wd < words; wd++) {
        uint64_t word;
        while ((word = bits[wd]) != 0) {
            const int b = std::countr_zero(word);
            bits[wd] = word & (word - 1);
            take((wd << 6) | b);
        }
    }
}
template <class Take>
inline void sweep_down(uint64_t *bits, int w0, Take take) {
    for (int wd = w0; wd >= 0; wd--) {
        uint64_t word;
        while ((word = bits[wd]) != 0) {
            const int b = 63 - std::countl_zero(word);
            bits[wd] = word & ~(uint64_t(1) << b);
            take((wd << 6) | b);
        }
    }
}

struct Search {
    char *mark;
    int *node, *edge, *end, *order;
};

Search search_space(SLUFactor &f) {
    return Search{f.mark.data(), f.dfsNode.data(), f.dfsEdge.data(), f.dfsEnd.data(), f.dfsOrder.data()};
}

// Depth-first search from roots[0..nRoots) over the graph whose node v has the
// edges idx[kb .. ke) set by range(v, kb, ke).  The reached nodes are marked and
// written to S.order[top .. m), each before the nodes it reaches.  Returns top,
// or -1 (marks cleared) once more than `limit` nodes are reached.
template <class Range>
int reach(const Search &S, const int *roots, int nRoots, const int *idx, Range range, int m, int limit) {
    char *mark = S.mark;
    int *stNode = S.node, *stEdge = S.edge, *stEnd = S.end, *order = S.order;
    int top = m;
    for (int q = 0; q < nRoots; q++) {
        const int root = roots[q];
        if (mark[root]) continue;
        mark[root] = 1;
        int sp = 0;
        stNode[0] = root;
        range(root, stEdge[0], stEnd[0]);
        while (sp >= 0) {
            int k = stEdge[sp];
            const int ke = stEnd[sp];
            while (k < ke && mark[idx[k]]) k++;
            if (k < ke) {
                const int u = idx[k];
                stEdge[sp] = k + 1;
                mark[u] = 1;
                sp++;
                stNode[sp] = u;
                range(u, stEdge[sp], stEnd[sp]);
                continue;
            }
            order[--top] = stNode[sp--];
            if (m - top > limit) {
                for (int t = top; t < m; t++) mark[order[t]] = 0;
                for (int t = 0; t <= sp; t++) mark[stNode[t]] = 0;
                return -1;
            }
        }
    }
    return top;
}

// Run a search for a stage: on success its reach is tracked and top returned;
// a search that gives up counts as reaching its limit and returns -1.
template <class Range>
int try_search(SLUFactor &f, double &reachShare, const int *roots, int nRoots, const int *idx, Range range, int m,
               double tol) {
    const int limit = search_limit(m, tol);
    const int top = reach(search_space(f), roots, nRoots, idx, range, m, limit);
    track(reachShare, top >= 0 ? m - top : limit, m);
    return top;
}

// The entries a search reached, in its order (each before those it feeds),
// with their marks cleared: take(x, v) gets each with its value, which leaves w.
template <class Take>
inline void take_reached(SLUFactor &f, int top, int m, double *w, Take take) {
    const int *order = f.dfsOrder.data();
    char *mark = f.mark.data();
    for (int q = top; q < m; q++) {
        const int x = order[q];
        mark[x] = 0;
        const double v = w[x];
        w[x] = 0.0;
        take(x, v);
    }
}

// The same for a stage whose result stays in w: the entries above eps are
// listed in list (their count returned) and handed to apply(x, v); the others
// are cleared.
template <class Apply>
inline int keep_reached(SLUFactor &f, int top, int m, double *w, double eps, int *list, Apply apply) {
    const int *order = f.dfsOrder.data();
    char *mark = f.mark.data();
    int cnt = 0;
    for (int q = top; q < m; q++) {
        const int x = order[q];
        mark[x] = 0;
        const double v = w[x];
        if (v == 0.0) continue;
        if (std::fabs(v) <= eps) {
            w[x] = 0.0;
            continue;
        }
        list[cnt++] = x;
        apply(x, v);
    }
    return cnt;
}

// Load a vector into the dense array w.  A listed input fills list and returns
// its count; a dense one returns -1.
int load_input(const SLUVec *in, int m, double *w, int *list) {
    if (in->count < 0) {
        std::copy(in->val, in->val + m, w);
        return -1;
    }
    int n = 0;
    for (int k = 0; k < in->count; k++) {
        const int i = in->ind[k];
        const double v = in->scattered ? in->val[i] : in->val[k];
        if (v == 0.0) continue;
        axpy_listed(w, i, v, list, n);
    }
    return n;
}

// Write the result held in w (listed in list[0..n) unless n < 0) to out and clear
// w.  Values at or below eps are dropped from a listed result.
int store_output(const SLUVec *in, SLUVec *out, int m, double *w, const int *list, int n, double eps,
                 int *saveInd = nullptr, double *saveVal = nullptr, int *saveCnt = nullptr) {
    int ns = 0;
    if (in->count < 0) {
        double *ov = out->val;
        if (saveInd) {
            for (int i = 0; i < m; i++) {
                const double v = w[i];
                ov[i] = v;
                if (v != 0.0) {
                    saveInd[ns] = i;
                    saveVal[ns++] = v;
                }
            }
            *saveCnt = ns;
        } else {
            std::copy(w, w + m, ov);
        }
        std::fill(w, w + m, 0.0);
        out->count = -1;
        return 0;
    }
    int cnt = 0;
    int *oi = out->ind;
    double *ov = out->val;
    const bool scattered = out->scattered != 0;
    auto put = [&](int i) {
        const double v = w[i];
        w[i] = 0.0;
        if (std::fabs(v) <= eps) return;
        oi[cnt] = i;
        if (scattered)
            ov[i] = v;
        else
            ov[cnt] = v;
        cnt++;
        if (saveInd) {
            saveInd[ns] = i;
            saveVal[ns++] = v;
        }
    };
    if (n >= 0) {
        for (int k = 0; k < n; k++) put(list[k]);
    } else {
        for (int i = 0; i < m; i++)
            if (w[i] != 0.0) put(i);
    }
    out->count = cnt;
    if (saveCnt) *saveCnt = ns;
    return cnt == 0 ? SLU_RC_EMPTY : 0;
}

// Pivots at positions [lo, hi) whose line in the direction of the solve is
// empty: each value moves from `from` (at fromPerm[pos]) to `to` (at
// toPerm[pos]) times the inverse diagonal, with no branch on the value.  `to`
// is zero there on entry.  Returns the new count of `list`.
int move_bare(int lo, int hi, const int *fromPerm, const int *toPerm, const int *rowPerm, const double *dinv,
              double *from, double *to, int *list, int n, double eps) {
    for (int pos = lo; pos < hi; pos++) {
        const int a = fromPerm[pos], b = toPerm[pos];
        const double v = from[a];
        from[a] = 0.0;
        const bool keep = std::fabs(v) > eps;
        to[b] = keep ? v * dinv[rowPerm[pos]] : 0.0;
        list[n] = b;
        n += keep;
    }
    return n;
}

// ----- FTRAN pieces ------------------------------------------------------

// L etas of the factorisation, w by row.  n < 0: not listed.
void ftran_L(const SLU *h, SLUFactor &f, double *w, int *list, int &n) {
    const int nLf = f.nLfactor;
    if (nLf == 0) return;
    const int m = h->m;
    const double eps = h->epsNonz;
    const int *Lbeg = f.Lbeg.data(), *Lrow = f.Lrow.data(), *Lpiv = f.Lpiv.data();
    const double *Lval = f.Lval.data();
    const int *etaOf = f.etaOfRow.data();
    const double tol = h->spvTolFtran;
    const bool denseIn = n < 0;
    // A result expected dense gains nothing from the list: the U stage then runs
    // without it, and one scan of m lists the result.
    if (n >= 0 && f.densFtU >= kListShare) n = -1;
    if (n >= 0 && use_search(n, m, f.densFtL, f.reachFtL, tol)) {
        auto range = [&](int v, int &kb, int &ke) {
            const int e = etaOf[v];
            kb = e >= 0 ? Lbeg[e] : 0;
            ke = e >= 0 ? Lbeg[e + 1] : 0;
        };
        const int top = try_search(f, f.reachFtL, list, n, Lrow, range, m, tol);
        if (top >= 0) {
            // In this order an entry is final when it is reached.
            n = keep_reached(f, top, m, w, eps, list, [&](int i, double v) {
                const int e = etaOf[i];
                if (e >= 0) axpy(w, Lrow, Lval, Lbeg[e], Lbeg[e + 1], v);
            });
            track(f.densFtL, n, m);
            return;
        }
    }
    if (n >= 0 && f.densFtL < kSweepShare) {
        // Sweep the etas of the listed rows and of the rows they reach.
        uint64_t *bits = f.sweepBits.data();
        int e0 = nLf;
        for (int q = 0; q < n; q++) {
            const int e = etaOf[list[q]];
            if (e < 0) continue;
            set_bit(bits, e);
            e0 = std::min(e0, e);
        }
        if (e0 < nLf) {
            sweep_up(bits, e0 >> 6, (nLf + 63) >> 6, [&](int e) {
                const double v = w[Lpiv[e]];
                if (v == 0.0 || std::fabs(v) <= eps) return;
                for (int k = Lbeg[e], kend = Lbeg[e + 1]; k < kend; k++) {
                    const int i = Lrow[k];
                    if (w[i] == 0.0 && etaOf[i] >= 0) set_bit(bits, etaOf[i]);
                    axpy_listed(w, i, -Lval[k] * v, list, n);
                }
            });
        }
        track(f.densFtL, n, m);
        return;
    }
    if (denseIn && Lbeg[nLf] >= 2 * (int64_t)m) {
        // A dense input: by rows of L through the row-wise copy, first pivot
        // first.  (For a listed input the result of L is much sparser than the
        // whole solve's, and the etas skip what stays zero.)
        const int *LRbeg = f.LRbeg.data(), *LRpiv = f.LRpiv.data(), *order = f.LRorder.data();
        const double *LRval = f.LRval.data();
        for (int q = (int)f.LRorder.size() - 1; q >= 0; q--) {
            const int i = order[q];
            w[i] -= dot(LRval, LRpiv, LRbeg[i], LRbeg[i + 1], w);
        }
        return;
    }
    // Every eta from the first one a listed entry starts.
    int e0 = 0;
    if (n >= 0) {
        e0 = nLf;
        for (int q = 0; q < n; q++) {
            const int e = etaOf[list[q]];
            if (e >= 0 && e < e0) e0 = e;
        }
    }
    by_listing(n, [&](auto listed) {
        for (int e = e0; e < nLf; e++) {
            const double v = w[Lpiv[e]];
            if (v == 0.0 || std::fabs(v) <= eps) continue;
            scatter<decltype(listed)::value>(w, Lrow, Lval, Lbeg[e], Lbeg[e + 1], v, list, n);
        }
    });
    if (n >= 0) track(f.densFtL, n, m);
}

// Row etas of the Forrest-Tomlin updates.
void ftran_R(SLUFactor &f, double *w, int *list, int &n) {
    const int *Lbeg = f.Lbeg.data(), *Lrow = f.Lrow.data(), *Lpiv = f.Lpiv.data();
    const double *Lval = f.Lval.data();
    for (int e = f.nLfactor; e < f.nL; e++) {
        const double s = dot(Lval, Lrow, Lbeg[e], Lbeg[e + 1], w);
        if (s == 0.0) continue;
        const int r = Lpiv[e];
        if (n >= 0)
            axpy_listed(w, r, -s, list, n);
        else
            w[r] -= s;
    }
}

// U by columns: wr by row in (listed in listR unless nR < 0), wc by column out,
// listed in listC; returns the count of listC.  Sparse inputs update the share.
int ftran_U(const SLU *h, SLUFactor &f, double *wr, const int *listR, int nR, double *wc, int *listC, bool sparseIn) {
    const int m = h->m;
    const double eps = h->epsNonz;
    const int *rowPerm = f.rowPerm.data(), *colPerm = f.colPerm.data(), *rowPos = f.rowPos.data();
    const double *dinv = f.dinv.data();
    const int *cbeg = f.ucol.beg.data(), *clen = f.ucol.len.data(), *cind = f.ucol.ind.data();
    const double *cval = f.ucol.val.data();
    const double tol = h->spvTolFtran;
    int nC = 0;
    // The pivot at position pos, of row r, with the value v gathered in the row;
    // newly nonzero rows are handed to fresh(i).
    auto pivot = [&](int pos, int r, double v, auto fresh) {
        if (std::fabs(v) <= eps) return;
        const int c = colPerm[pos];
        const double x = v * dinv[r];
        wc[c] = x;
        listC[nC++] = c;
        for (int k = cbeg[c], kend = cbeg[c] + clen[c]; k < kend; k++) {
            const int i = cind[k];
            fresh(i);
            wr[i] -= cval[k] * x;
        }
    };
    auto none = [](int) {};
    if (nR >= 0 && use_search(nR, m, f.densFtU, f.reachFtU, tol)) {
        auto range = [&](int r, int &kb, int &ke) {
            const int c = colPerm[rowPos[r]];
            kb = cbeg[c];
            ke = kb + clen[c];
        };
        const int top = try_search(f, f.reachFtU, listR, nR, cind, range, m, tol);
        if (top >= 0) {
            take_reached(f, top, m, wr, [&](int r, double v) { pivot(rowPos[r], r, v, none); });
            track(f.densFtU, nC, m);
            return nC;
        }
    }
    if (use_dot(f.densFtU, f.urow.nnz, m, !sparseIn)) {
        // By rows of U: x_c = (w_r - sum over the row of u_rj x_j) / u_rc, last pivot first.
        const int *rbeg = f.urow.beg.data(), *rlen = f.urow.len.data(), *rind = f.urow.ind.data();
        const double *rval = f.urow.val.data();
        const int rest = m - f.bareRows;
        nC = move_bare(rest, m, rowPerm, colPerm, rowPerm, dinv, wr, wc, listC, nC, eps);
        for (int pos = rest - 1; pos >= 0; pos--) {
            const int r = rowPerm[pos];
            const double v = wr[r] - dot(rval, rind, rbeg[r], rbeg[r] + rlen[r], wc);
            wr[r] = 0.0;
            if (std::fabs(v) <= eps) continue;
            const int c = colPerm[pos];
            wc[c] = v * dinv[r];
            listC[nC++] = c;
        }
    } else if (nR >= 0 && f.densFtU < kSweepShare) {
        // Sweep the positions of the listed rows and of the rows they reach, last first.
        uint64_t *bits = f.sweepBits.data();
        int top = -1;
        for (int q = 0; q < nR; q++) {
            const int pos = rowPos[listR[q]];
            set_bit(bits, pos);
            top = std::max(top, pos);
        }
        auto fresh = [&](int i) {
            if (wr[i] == 0.0) set_bit(bits, rowPos[i]);
        };
        if (top >= 0) sweep_down(bits, top >> 6, [&](int pos) {
            const int r = rowPerm[pos];
            const double v = wr[r];
            wr[r] = 0.0;
            pivot(pos, r, v, fresh);
        });
    } else {
        int top = m - 1;
        if (nR >= 0) {
            top = -1;
            for (int q = 0; q < nR; q++) top = std::max(top, rowPos[listR[q]]);
        }
        const int bare = f.bareCols;
        for (int pos = top; pos >= bare; pos--) {
            const int r = rowPerm[pos];
            const double v = wr[r];
            if (v == 0.0) continue;
            wr[r] = 0.0;
            pivot(pos, r, v, none);
        }
        nC = move_bare(0, std::min(top + 1, bare), rowPerm, colPerm, rowPerm, dinv, wr, wc, listC, nC, eps);
    }
    if (sparseIn) track(f.densFtU, nC, m);
    return nC;
}

// Product-form etas after U, w by basis position, listed.
void ftran_P(SLUFactor &f, double *w, int *list, int &n) {
    const int *Pbeg = f.Pbeg.data(), *Pind = f.Pind.data(), *Ppiv = f.Ppiv.data();
    const double *Pval = f.Pval.data();
    for (int e = 0; e < f.nP; e++) {
        const double v = w[Ppiv[e]];
        if (v != 0.0) scatter<true>(w, Pind, Pval, Pbeg[e], Pbeg[e + 1], v, list, n);
    }
}

// ----- BTRAN pieces ------------------------------------------------------

void btran_P(SLUFactor &f, double *w, int *list, int &n) {
    const int *Pbeg = f.Pbeg.data(), *Pind = f.Pind.data(), *Ppiv = f.Ppiv.data();
    const double *Pval = f.Pval.data();
    for (int e = f.nP - 1; e >= 0; e--) {
        const double s = dot(Pval, Pind, Pbeg[e], Pbeg[e + 1], w);
        if (s == 0.0) continue;
        const int r = Ppiv[e];
        if (n >= 0)
            axpy_listed(w, r, -s, list, n);
        else
            w[r] -= s;
    }
}

// U^T by rows: wc by column in (listed in listC unless nC < 0), wr by row out,
// listed in listR; returns the count of listR.
int btran_U(const SLU *h, SLUFactor &f, double *wc, const int *listC, int nC, double *wr, int *listR) {
    const int m = h->m;
    const double eps = h->epsNonz;
    const int *rowPerm = f.rowPerm.data(), *colPerm = f.colPerm.data(), *colPos = f.colPos.data();
    const double *dinv = f.dinv.data();
    const int *rbeg = f.urow.beg.data(), *rlen = f.urow.len.data(), *rind = f.urow.ind.data();
    const double *rval = f.urow.val.data();
    const double tol = h->spvTolBtran;
    int nR = 0;
    // The pivot at position pos with the value v gathered in its column; newly
    // nonzero columns are handed to fresh(j).
    auto pivot = [&](int pos, double v, auto fresh) {
        if (std::fabs(v) <= eps) return;
        const int r = rowPerm[pos];
        const double y = v * dinv[r];
        wr[r] = y;
        listR[nR++] = r;
        for (int k = rbeg[r], kend = rbeg[r] + rlen[r]; k < kend; k++) {
            const int j = rind[k];
            fresh(j);
            wc[j] -= rval[k] * y;
        }
    };
    auto none = [](int) {};
    if (nC >= 0 && use_search(nC, m, f.densBtU, f.reachBtU, tol)) {
        auto range = [&](int c, int &kb, int &ke) {
            const int r = rowPerm[colPos[c]];
            kb = rbeg[r];
            ke = kb + rlen[r];
        };
        const int top = try_search(f, f.reachBtU, listC, nC, rind, range, m, tol);
        if (top >= 0) {
            take_reached(f, top, m, wc, [&](int c, double v) { pivot(colPos[c], v, none); });
            track(f.densBtU, nR, m);
            return nR;
        }
    }
    if (use_dot(f.densBtU, f.urow.nnz, m, nC < 0)) {
        // By columns of U: y_r = (w_c - sum over the column of u_ic y_i) / u_rc, first pivot first.
        const int *cbeg = f.ucol.beg.data(), *clen = f.ucol.len.data(), *cind = f.ucol.ind.data();
        const double *cval = f.ucol.val.data();
        nR = move_bare(0, f.bareCols, colPerm, rowPerm, rowPerm, dinv, wc, wr, listR, nR, eps);
        for (int pos = f.bareCols; pos < m; pos++) {
            const int c = colPerm[pos];
            const double v = wc[c] - dot(cval, cind, cbeg[c], cbeg[c] + clen[c], wr);
            wc[c] = 0.0;
            if (std::fabs(v) <= eps) continue;
            const int r = rowPerm[pos];
            wr[r] = v * dinv[r];
            listR[nR++] = r;
        }
    } else if (nC >= 0 && f.densBtU < kSweepShare) {
        // Sweep the positions of the listed columns and of those they reach, first first.
        uint64_t *bits = f.sweepBits.data();
        int bottom = m;
        for (int q = 0; q < nC; q++) {
            const int pos = colPos[listC[q]];
            set_bit(bits, pos);
            bottom = std::min(bottom, pos);
        }
        auto fresh = [&](int j) {
            if (wc[j] == 0.0) set_bit(bits, colPos[j]);
        };
        if (bottom < m) sweep_up(bits, bottom >> 6, (m + 63) >> 6, [&](int pos) {
            const int c = colPerm[pos];
            const double v = wc[c];
            wc[c] = 0.0;
            pivot(pos, v, fresh);
        });
    } else {
        int bottom = 0;
        if (nC >= 0) {
            bottom = m;
            for (int q = 0; q < nC; q++) bottom = std::min(bottom, colPos[listC[q]]);
        }
        const int rest = m - f.bareRows;
        for (int pos = bottom; pos < rest; pos++) {
            const int c = colPerm[pos];
            const double v = wc[c];
            if (v == 0.0) continue;
            wc[c] = 0.0;
            pivot(pos, v, none);
        }
        nR = move_bare(std::max(bottom, rest), m, colPerm, rowPerm, rowPerm, dinv, wc, wr, listR, nR, eps);
    }
    if (nC >= 0) track(f.densBtU, nR, m);
    return nR;
}

// Row etas of the updates, transposed, in reverse.
void btran_R(SLUFactor &f, double *w, int *list, int &n) {
    const int *Lbeg = f.Lbeg.data(), *Lrow = f.Lrow.data(), *Lpiv = f.Lpiv.data();
    const double *Lval = f.Lval.data();
    by_listing(n, [&](auto listed) {
        for (int e = f.nL - 1; e >= f.nLfactor; e--) {
            const double v = w[Lpiv[e]];
            if (v != 0.0) scatter<decltype(listed)::value>(w, Lrow, Lval, Lbeg[e], Lbeg[e + 1], v, list, n);
        }
    });
}

// L^T through the row-wise copy, w by row.
void btran_L(const SLU *h, SLUFactor &f, double *w, int *list, int &n, bool denseIn) {
    if (f.nLfactor == 0) return;
    const int m = h->m;
    const double eps = h->epsNonz;
    const int *LRbeg = f.LRbeg.data(), *LRpiv = f.LRpiv.data();
    const double *LRval = f.LRval.data();
    const double tol = h->spvTolBtran;
    if (n >= 0 && use_search(n, m, f.densBtL, f.reachBtL, tol)) {
        auto range = [&](int i, int &kb, int &ke) {
            kb = LRbeg[i];
            ke = LRbeg[i + 1];
        };
        const int top = try_search(f, f.reachBtL, list, n, LRpiv, range, m, tol);
        if (top >= 0) {
            n = keep_reached(f, top, m, w, eps, list,
                             [&](int i, double v) { axpy(w, LRpiv, LRval, LRbeg[i], LRbeg[i + 1], v); });
            track(f.densBtL, n, m);
            return;
        }
    }
    if (n >= 0 && f.densBtL < kSweepShare) {
        // Sweep the rows by their pivot order in L, last first; only rows with
        // entries in the row-wise copy wait.
        uint64_t *bits = f.sweepBits.data();
        const int *rowPos = f.LrowPos.data(), *rowPerm = f.LrowPerm.data();
        int top = -1;
        for (int q = 0; q < n; q++) {
            const int i = list[q];
            if (LRbeg[i + 1] == LRbeg[i]) continue;
            set_bit(bits, rowPos[i]);
            top = std::max(top, rowPos[i]);
        }
        if (top >= 0) sweep_down(bits, top >> 6, [&](int pos) {
            const int i = rowPerm[pos];
            const double v = w[i];
            if (v == 0.0 || std::fabs(v) <= eps) return;
            for (int k = LRbeg[i], kend = LRbeg[i + 1]; k < kend; k++) {
                const int r = LRpiv[k];
                if (w[r] == 0.0 && LRbeg[r + 1] > LRbeg[r]) set_bit(bits, rowPos[r]);
                axpy_listed(w, r, -LRval[k] * v, list, n);
            }
        });
        track(f.densBtL, n, m);
        return;
    }
    if (n < 0 && use_dot(f.densBtL, f.Lbeg[f.nLfactor], m, denseIn)) {
        // By the column etas, last first: w_p -= sum over eta p of l_i w_i.
        const int *Lbeg = f.Lbeg.data(), *Lrow = f.Lrow.data(), *Lpiv = f.Lpiv.data();
        const double *Lval = f.Lval.data();
        for (int e = f.nLfactor - 1; e >= 0; e--) w[Lpiv[e]] -= dot(Lval, Lrow, Lbeg[e], Lbeg[e + 1], w);
        return;
    }
    // By rows of the row-wise copy, last pivot first.
    const int *order = f.LRorder.data();
    by_listing(n, [&](auto listed) {
        for (int q = 0, nOrder = (int)f.LRorder.size(); q < nOrder; q++) {
            const int i = order[q];
            const double v = w[i];
            if (v == 0.0 || std::fabs(v) <= eps) continue;
            scatter<decltype(listed)::value>(w, LRpiv, LRval, LRbeg[i], LRbeg[i + 1], v, list, n);
        }
    });
    if (n >= 0) track(f.densBtL, n, m);
}

// Swaps the FTRAN shares with the set kept for solves without a spike, for
// the length of one solve.
struct OtherShares {
    SLUFactor &f;
    bool on;
    OtherShares(SLUFactor &f_, bool on_) : f(f_), on(on_) { swap(); }
    ~OtherShares() { swap(); }
    void swap() {
        if (!on) return;
        std::swap(f.densFtL, f.otherFt[0]);
        std::swap(f.densFtU, f.otherFt[1]);
        std::swap(f.reachFtL, f.otherFt[2]);
        std::swap(f.reachFtU, f.otherFt[3]);
    }
};

// The factor ready to solve with, or null with the reason in *rc.
SLUFactor *ready(SLU *h, const SLUVec *in, const SLUVec *out, int *rc) {
    *rc = SLU_STAT_NUMERIC;
    if (!h || !in || !out) return nullptr;
    *rc = SLU_STAT_NOFACTOR;
    if (!h->work) return nullptr;
    *rc = h->work->status;
    return *rc == SLU_STAT_OK ? h->work : nullptr;
}

// An FTRAN's input through L and the row etas, left in wRow; returns its
// count in listRow, or -1 when not listed.
int ftran_lower(const SLU *h, SLUFactor &f, const SLUVec *in) {
    int nR = load_input(in, h->m, f.wRow.data(), f.listRow.data());
    ftran_L(h, f, f.wRow.data(), f.listRow.data(), nR);
    ftran_R(f, f.wRow.data(), f.listRow.data(), nR);
    return nR;
}

// The rest of an FTRAN from wRow (nR listed, or -1): U, the product-form etas,
// and the result into out; savePF keeps it as the product-form spike.
int ftran_upper(SLU *h, SLUFactor &f, const SLUVec *in, SLUVec *out, int nR, bool savePF) {
    int *listC = f.listCol.data();
    double *wc = f.wCol.data();
    int nC = ftran_U(h, f, f.wRow.data(), f.listRow.data(), nR, wc, listC, in->count >= 0);
    ftran_P(f, wc, listC, nC);
    if (savePF) {
        h->spikeSource = 0;
        return store_output(in, out, h->m, wc, listC, nC, h->epsNonz, h->pivColInd.data(), h->pivColVal.data(),
                            &h->pivColCount);
    }
    return store_output(in, out, h->m, wc, listC, nC, h->epsNonz);
}

}  // namespace

int slu_do_ftran(SLU *h, const SLUVec *in, SLUVec *out, int save) {
    int rc;
    SLUFactor *fp = ready(h, in, out, &rc);
    if (!fp) return rc;
    SLUFactor &f = *fp;
    const OtherShares shares(f, save == 0);
    const int m = h->m;
    double *wr = f.wRow.data();
    const int *listR = f.listRow.data();
    const int nR = ftran_lower(h, f, in);
    if (save && h->updateType == 1) {
        // The spike: the vector after L and the row etas.
        int n = 0;
        const double eps = h->epsNonz;
        int *si = h->spikeInd.data();
        double *sv = h->spikeVal.data();
        auto keep = [&](int i) {
            const double v = wr[i];
            if (std::fabs(v) > eps) {
                si[n] = i;
                sv[n++] = v;
            } else {
                wr[i] = 0.0;
            }
        };
        if (nR >= 0) {
            for (int q = 0; q < nR; q++) keep(listR[q]);
        } else {
            for (int i = 0; i < m; i++)
                if (wr[i] != 0.0) keep(i);
        }
        h->spikeCount = n;
        h->spikeSource = 0;
    }
    return ftran_upper(h, f, in, out, nR, save && h->updateType == 0);
}

int slu_do_ftran_some(SLU *h, const SLUVec *in, const int *want, int nWant, SLUVec *out, int *some) {
    *some = 0;
    if (!want || nWant < 0) return SLU_STAT_NUMERIC;
    int rc;
    SLUFactor *fp = ready(h, in, out, &rc);
    if (!fp) return rc;
    SLUFactor &f = *fp;
    const OtherShares shares(f, true);
    const int m = h->m;
    const int nR = ftran_lower(h, f, in);

    // x_c = (w_r - sum over row r of U of u_rj x_j) / u_rc with r the pivot row
    // of column c: the wanted columns need the columns of their rows, and so
    // on.  A search over the rows finds them; it gives up at the limit, and a
    // run of give-ups stops the tries but for one in sixteen, which keeps the
    // share fresh.
    const int limit = std::max(64, m / 8);
    const bool tryIt = f.nP == 0 && out->scattered && (f.someMiss < 0.5 || (++f.someSkips & 15) == 0);
    int top = -1;
    const int *rowPerm = f.rowPerm.data(), *colPos = f.colPos.data();
    const int *rbeg = f.urow.beg.data(), *rlen = f.urow.len.data(), *rind = f.urow.ind.data();
    const double *rval = f.urow.val.data();
    if (tryIt) {
        auto range = [&](int c, int &kb, int &ke) {
            const int r = rowPerm[colPos[c]];
            kb = rbeg[r];
            ke = kb + rlen[r];
        };
        top = reach(search_space(f), want, nWant, rind, range, m, limit);
        f.someMiss += kDensWeight * ((top < 0 ? 1.0 : 0.0) - f.someMiss);
    }
    if (top < 0) return ftran_upper(h, f, in, out, nR, false);  // the whole solve from here
    double *wr = f.wRow.data(), *wc = f.wCol.data();
    const int *listR = f.listRow.data();
    const int *order = f.dfsOrder.data();
    char *mark = f.mark.data();
    const double *dinv = f.dinv.data();
    for (int q = m - 1; q >= top; q--) {
        const int c = order[q];
        const int r = rowPerm[colPos[c]];
        wc[c] = (wr[r] - dot(rval, rind, rbeg[r], rbeg[r] + rlen[r], wc)) * dinv[r];
    }
    for (int k = 0; k < nWant; k++) {
        const int c = want[k];
        out->ind[k] = c;
        out->val[c] = wc[c];
    }
    out->count = nWant;
    for (int q = top; q < m; q++) {
        mark[order[q]] = 0;
        wc[order[q]] = 0.0;
    }
    if (nR >= 0) {
        for (int k = 0; k < nR; k++) wr[listR[k]] = 0.0;
    } else {
        std::fill(wr, wr + m, 0.0);
    }
    *some = 1;
    return 0;
}

int slu_do_btran(SLU *h, const SLUVec *in, SLUVec *out) {
    int rc;
    SLUFactor *fp = ready(h, in, out, &rc);
    if (!fp) return rc;
    SLUFactor &f = *fp;
    const int m = h->m;
    double *wr = f.wRow.data();
    double *wc = f.wCol.data();
    int *listR = f.listRow.data();
    int *listC = f.listCol.data();
    int nC = load_input(in, m, wc, listC);
    btran_P(f, wc, listC, nC);
    int nR = btran_U(h, f, wc, listC, nC, wr, listR);
    // A result expected dense is listed by one scan of m at the end instead.
    const bool sparseIn = in->count >= 0;
    if (!sparseIn || f.densBtL >= kListShare) nR = -1;
    btran_R(f, wr, listR, nR);
    btran_L(h, f, wr, listR, nR, !sparseIn);
    const bool listed = nR >= 0;
    rc = store_output(in, out, m, wr, listR, nR, h->epsNonz);
    if (sparseIn && !listed) track(f.densBtL, out->count, m);
    return rc;
}
