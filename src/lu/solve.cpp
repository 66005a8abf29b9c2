// solve.cpp - FTRAN and BTRAN.  Each solve starts hypersparse (lists of
// nonzeros, heaps of pivot positions, dense scatter arrays that are zero between
// calls) and switches to plain dense loops once the vector fills in.
#include "lu/slu.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr double kTiny = 1e-100;  // keeps a cancelled entry listed

inline void heap_push_max(std::vector<int> &hp, int v) {
    hp.push_back(v);
    std::push_heap(hp.begin(), hp.end());
}
inline int heap_pop_max(std::vector<int> &hp) {
    std::pop_heap(hp.begin(), hp.end());
    const int v = hp.back();
    hp.pop_back();
    return v;
}
inline void heap_push_min(std::vector<int> &hp, int v) {
    hp.push_back(v);
    std::push_heap(hp.begin(), hp.end(), std::greater<int>());
}
inline int heap_pop_min(std::vector<int> &hp) {
    std::pop_heap(hp.begin(), hp.end(), std::greater<int>());
    const int v = hp.back();
    hp.pop_back();
    return v;
}

// Load a vector into the dense array w, listing the nonzeros in list.
// Returns false when the input is dense.
bool load_input(const SLUVec *in, int m, double *w, std::vector<int> &list) {
    list.clear();
    if (in->count < 0) {
        std::copy(in->val, in->val + m, w);
        return false;
    }
    for (int k = 0; k < in->count; k++) {
        const int i = in->ind[k];
        const double v = in->scattered ? in->val[i] : in->val[k];
        if (v == 0.0) continue;
        if (w[i] == 0.0) list.push_back(i);
        w[i] += v;
        if (w[i] == 0.0) w[i] = kTiny;
    }
    return true;
}

// Write the result held in w (listed in list when sparse) to out and clear w.
// Values at or below eps are dropped from a sparse result.
int store_output(const SLUVec *in, SLUVec *out, int m, double *w, const std::vector<int> &list, bool sparse,
                 double eps, int *saveInd = nullptr, double *saveVal = nullptr, int *saveCnt = nullptr) {
    int ns = 0;
    if (in->count < 0) {
        for (int i = 0; i < m; i++) {
            const double v = w[i];
            out->val[i] = v;
            if (v != 0.0) {
                w[i] = 0.0;
                if (saveInd) {
                    saveInd[ns] = i;
                    saveVal[ns++] = v;
                }
            }
        }
        out->count = -1;
        if (saveCnt) *saveCnt = ns;
        return 0;
    }
    int n = 0;
    auto put = [&](int i) {
        const double v = w[i];
        w[i] = 0.0;
        if (std::fabs(v) <= eps) return;
        out->ind[n] = i;
        if (out->scattered)
            out->val[i] = v;
        else
            out->val[n] = v;
        n++;
        if (saveInd) {
            saveInd[ns] = i;
            saveVal[ns++] = v;
        }
    };
    if (sparse) {
        for (int i : list) put(i);
    } else {
        for (int i = 0; i < m; i++)
            if (w[i] != 0.0) put(i);
    }
    out->count = n;
    if (saveCnt) *saveCnt = ns;
    return n == 0 ? SLU_RC_EMPTY : 0;
}

// ----- FTRAN pieces ------------------------------------------------------

// L etas of the factorisation, w by row.
void ftran_L(const SLU *h, SLUFactor &f, double *w, std::vector<int> &list, bool &sparse) {
    const int nLf = f.nLfactor;
    if (nLf == 0) return;
    const double eps = h->epsNonz;
    const int *Lbeg = f.Lbeg.data(), *Lrow = f.Lrow.data(), *Lpiv = f.Lpiv.data();
    const double *Lval = f.Lval.data();
    int eStart = 0;
    if (sparse) {
        // Etas are numbered in pivot order: a heap of eta numbers.
        const int *etaOf = f.etaOfRow.data();
        std::vector<int> &hp = f.heap;
        hp.clear();
        for (int i : list)
            if (etaOf[i] >= 0) hp.push_back(etaOf[i]);
        std::make_heap(hp.begin(), hp.end(), std::greater<int>());
        const double limit = h->spvTolFtran * h->m;
        while (!hp.empty()) {
            if ((double)list.size() > limit) {
                sparse = false;
                eStart = hp.front();
                break;
            }
            const int e = heap_pop_min(hp);
            const double v = w[Lpiv[e]];
            if (std::fabs(v) <= eps) continue;
            for (int k = Lbeg[e]; k < Lbeg[e + 1]; k++) {
                const int i = Lrow[k];
                if (w[i] == 0.0) {
                    list.push_back(i);
                    if (etaOf[i] >= 0) heap_push_min(hp, etaOf[i]);
                    w[i] = -Lval[k] * v;
                    if (w[i] == 0.0) w[i] = kTiny;
                } else {
                    w[i] -= Lval[k] * v;
                    if (w[i] == 0.0) w[i] = kTiny;
                }
            }
        }
        if (sparse) return;
    }
    for (int e = eStart; e < nLf; e++) {
        const double v = w[Lpiv[e]];
        if (v == 0.0 || std::fabs(v) <= eps) continue;
        const int kend = Lbeg[e + 1];
        int k = Lbeg[e];
        for (; k + 1 < kend; k += 2) {
            w[Lrow[k]] -= Lval[k] * v;
            w[Lrow[k + 1]] -= Lval[k + 1] * v;
        }
        if (k < kend) w[Lrow[k]] -= Lval[k] * v;
    }
}

// Row etas of the Forrest-Tomlin updates.
void ftran_R(SLUFactor &f, double *w, std::vector<int> &list, bool sparse) {
    const int *Lbeg = f.Lbeg.data(), *Lrow = f.Lrow.data(), *Lpiv = f.Lpiv.data();
    const double *Lval = f.Lval.data();
    for (int e = f.nLfactor; e < f.nL; e++) {
        double s = 0.0;
        for (int k = Lbeg[e]; k < Lbeg[e + 1]; k++) s += Lval[k] * w[Lrow[k]];
        if (s == 0.0) continue;
        const int r = Lpiv[e];
        if (sparse && w[r] == 0.0) list.push_back(r);
        w[r] -= s;
        if (sparse && w[r] == 0.0) w[r] = kTiny;
    }
}

// U by columns: wr by row in, wc by column out.
void ftran_U(const SLU *h, SLUFactor &f, double *wr, double *wc, std::vector<int> &listR, std::vector<int> &listC,
             bool &sparse) {
    const int m = h->m;
    const double eps = h->epsNonz;
    const int *rowPerm = f.rowPerm.data(), *colPerm = f.colPerm.data(), *rowPos = f.rowPos.data();
    const double *dinv = f.dinv.data();
    const int *cbeg = f.ucol.beg.data(), *clen = f.ucol.len.data(), *cind = f.ucol.ind.data();
    const double *cval = f.ucol.val.data();
    listC.clear();
    int top = m - 1;
    if (sparse) {
        std::vector<int> &hp = f.heap;
        hp.clear();
        for (int i : listR) {
            if (std::fabs(wr[i]) > eps)
                hp.push_back(rowPos[i]);
            else
                wr[i] = 0.0;
        }
        std::make_heap(hp.begin(), hp.end());
        const double tol = h->spvTolFtran;
        while (!hp.empty()) {
            const int pos = hp.front();
            if ((double)hp.size() > pos * tol) {
                sparse = false;
                top = pos;
                break;
            }
            heap_pop_max(hp);
            const int r = rowPerm[pos];
            const double v = wr[r];
            wr[r] = 0.0;
            if (std::fabs(v) <= eps) continue;
            const int c = colPerm[pos];
            const double x = v * dinv[r];
            wc[c] = x;
            listC.push_back(c);
            for (int k = cbeg[c], kend = cbeg[c] + clen[c]; k < kend; k++) {
                const int i = cind[k];
                if (wr[i] == 0.0) {
                    heap_push_max(hp, rowPos[i]);
                    wr[i] = -cval[k] * x;
                    if (wr[i] == 0.0) wr[i] = kTiny;
                } else {
                    wr[i] -= cval[k] * x;
                    if (wr[i] == 0.0) wr[i] = kTiny;
                }
            }
        }
        if (sparse) return;
    }
    for (int pos = top; pos >= 0; pos--) {
        const int r = rowPerm[pos];
        const double v = wr[r];
        if (v == 0.0) continue;
        wr[r] = 0.0;
        if (std::fabs(v) <= eps) continue;
        const int c = colPerm[pos];
        const double x = v * dinv[r];
        wc[c] = x;
        listC.push_back(c);
        const int kend = cbeg[c] + clen[c];
        int k = cbeg[c];
        for (; k + 1 < kend; k += 2) {
            wr[cind[k]] -= cval[k] * x;
            wr[cind[k + 1]] -= cval[k + 1] * x;
        }
        if (k < kend) wr[cind[k]] -= cval[k] * x;
    }
}

// Product-form etas after U, w by basis position.
void ftran_P(SLUFactor &f, double *w, std::vector<int> &list, bool sparse) {
    const int *Pbeg = f.Pbeg.data(), *Pind = f.Pind.data(), *Ppiv = f.Ppiv.data();
    const double *Pval = f.Pval.data();
    for (int e = 0; e < f.nP; e++) {
        const double v = w[Ppiv[e]];
        if (v == 0.0) continue;
        for (int k = Pbeg[e]; k < Pbeg[e + 1]; k++) {
            const int i = Pind[k];
            if (sparse && w[i] == 0.0) list.push_back(i);
            w[i] -= Pval[k] * v;
            if (sparse && w[i] == 0.0) w[i] = kTiny;
        }
    }
}

// ----- BTRAN pieces ------------------------------------------------------

void btran_P(SLUFactor &f, double *w, std::vector<int> &list, bool sparse) {
    const int *Pbeg = f.Pbeg.data(), *Pind = f.Pind.data(), *Ppiv = f.Ppiv.data();
    const double *Pval = f.Pval.data();
    for (int e = f.nP - 1; e >= 0; e--) {
        double s = 0.0;
        for (int k = Pbeg[e]; k < Pbeg[e + 1]; k++) s += Pval[k] * w[Pind[k]];
        if (s == 0.0) continue;
        const int r = Ppiv[e];
        if (sparse && w[r] == 0.0) list.push_back(r);
        w[r] -= s;
        if (sparse && w[r] == 0.0) w[r] = kTiny;
    }
}

// U^T by rows: wc by column in, wr by row out.
void btran_U(const SLU *h, SLUFactor &f, double *wc, double *wr, std::vector<int> &listC, std::vector<int> &listR,
             bool &sparse) {
    const int m = h->m;
    const double eps = h->epsNonz;
    const int *rowPerm = f.rowPerm.data(), *colPerm = f.colPerm.data(), *colPos = f.colPos.data();
    const double *dinv = f.dinv.data();
    const int *rbeg = f.urow.beg.data(), *rlen = f.urow.len.data(), *rind = f.urow.ind.data();
    const double *rval = f.urow.val.data();
    listR.clear();
    int bottom = 0;
    if (sparse) {
        std::vector<int> &hp = f.heap;
        hp.clear();
        for (int j : listC) {
            if (std::fabs(wc[j]) > eps)
                hp.push_back(colPos[j]);
            else
                wc[j] = 0.0;
        }
        std::make_heap(hp.begin(), hp.end(), std::greater<int>());
        const double tol = h->spvTolBtran;
        while (!hp.empty()) {
            const int pos = hp.front();
            if ((double)hp.size() > (m - pos) * tol) {
                sparse = false;
                bottom = pos;
                break;
            }
            heap_pop_min(hp);
            const int c = colPerm[pos];
            const double v = wc[c];
            wc[c] = 0.0;
            if (std::fabs(v) <= eps) continue;
            const int r = rowPerm[pos];
            const double y = v * dinv[r];
            wr[r] = y;
            listR.push_back(r);
            for (int k = rbeg[r], kend = rbeg[r] + rlen[r]; k < kend; k++) {
                const int j = rind[k];
                if (wc[j] == 0.0) {
                    heap_push_min(hp, colPos[j]);
                    wc[j] = -rval[k] * y;
                    if (wc[j] == 0.0) wc[j] = kTiny;
                } else {
                    wc[j] -= rval[k] * y;
                    if (wc[j] == 0.0) wc[j] = kTiny;
                }
            }
        }
        if (sparse) return;
    }
    for (int pos = bottom; pos < m; pos++) {
        const int c = colPerm[pos];
        const double v = wc[c];
        if (v == 0.0) continue;
        wc[c] = 0.0;
        if (std::fabs(v) <= eps) continue;
        const int r = rowPerm[pos];
        const double y = v * dinv[r];
        wr[r] = y;
        listR.push_back(r);
        const int kend = rbeg[r] + rlen[r];
        int k = rbeg[r];
        for (; k + 1 < kend; k += 2) {
            wc[rind[k]] -= rval[k] * y;
            wc[rind[k + 1]] -= rval[k + 1] * y;
        }
        if (k < kend) wc[rind[k]] -= rval[k] * y;
    }
}

// Row etas of the updates, transposed, in reverse.
void btran_R(SLUFactor &f, double *w, std::vector<int> &list, bool sparse) {
    const int *Lbeg = f.Lbeg.data(), *Lrow = f.Lrow.data(), *Lpiv = f.Lpiv.data();
    const double *Lval = f.Lval.data();
    for (int e = f.nL - 1; e >= f.nLfactor; e--) {
        const double v = w[Lpiv[e]];
        if (v == 0.0) continue;
        for (int k = Lbeg[e]; k < Lbeg[e + 1]; k++) {
            const int i = Lrow[k];
            if (sparse && w[i] == 0.0) list.push_back(i);
            w[i] -= Lval[k] * v;
            if (sparse && w[i] == 0.0) w[i] = kTiny;
        }
    }
}

// L^T through the row-wise copy, w by row.
void btran_L(const SLU *h, SLUFactor &f, double *w, std::vector<int> &list, bool &sparse) {
    if (f.nLfactor == 0) return;
    const int m = h->m;
    const double eps = h->epsNonz;
    const int *LRbeg = f.LRbeg.data(), *LRpiv = f.LRpiv.data();
    const double *LRval = f.LRval.data();
    const int *rowPerm = f.LrowPerm.data(), *rowPos = f.LrowPos.data();
    int top = m - 1;
    if (sparse) {
        std::vector<int> &hp = f.heap;
        hp.clear();
        for (int i : list)
            if (LRbeg[i + 1] > LRbeg[i]) hp.push_back(rowPos[i]);
        std::make_heap(hp.begin(), hp.end());
        const double tol = h->spvTolBtran;
        while (!hp.empty()) {
            const int pos = hp.front();
            if ((double)hp.size() > pos * tol) {
                sparse = false;
                top = pos;
                break;
            }
            heap_pop_max(hp);
            const int i = rowPerm[pos];
            const double v = w[i];
            if (std::fabs(v) <= eps) continue;
            for (int k = LRbeg[i]; k < LRbeg[i + 1]; k++) {
                const int r = LRpiv[k];
                if (w[r] == 0.0) {
                    list.push_back(r);
                    if (LRbeg[r + 1] > LRbeg[r]) heap_push_max(hp, rowPos[r]);
                    w[r] = -LRval[k] * v;
                    if (w[r] == 0.0) w[r] = kTiny;
                } else {
                    w[r] -= LRval[k] * v;
                    if (w[r] == 0.0) w[r] = kTiny;
                }
            }
        }
        if (sparse) return;
    }
    for (int pos = top; pos >= 0; pos--) {
        const int i = rowPerm[pos];
        const double v = w[i];
        if (v == 0.0 || std::fabs(v) <= eps) continue;
        for (int k = LRbeg[i], kend = LRbeg[i + 1]; k < kend; k++) {
            const int r = LRpiv[k];
            if (w[r] == 0.0) list.push_back(r);
            w[r] -= LRval[k] * v;
            if (w[r] == 0.0) w[r] = kTiny;
        }
    }
}

}  // namespace

int slu_do_ftran(SLU *h, const SLUVec *in, SLUVec *out, int save) {
    if (!h || !in || !out) return SLU_STAT_NUMERIC;
    SLUFactor *fp = h->work;
    if (!fp) return SLU_STAT_NOFACTOR;
    SLUFactor &f = *fp;
    if (f.status != SLU_STAT_OK) return f.status;
    const int m = h->m;
    double *wr = f.wRow.data();
    double *wc = f.wCol.data();
    std::vector<int> &listR = f.listA;
    std::vector<int> &listC = f.listB;
    bool sparse = load_input(in, m, wr, listR);
    if (sparse && (double)listR.size() > h->spvTolFtran * m) sparse = false;

    ftran_L(h, f, wr, listR, sparse);
    ftran_R(f, wr, listR, sparse);
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
        if (sparse) {
            for (int i : listR) keep(i);
        } else {
            for (int i = 0; i < m; i++)
                if (wr[i] != 0.0) keep(i);
        }
        h->spikeCount = n;
        h->spikeSource = 0;
    }
    ftran_U(h, f, wr, wc, listR, listC, sparse);
    sparse = true;  // the U solve lists every result entry
    ftran_P(f, wc, listC, sparse);
    if (save && h->updateType == 0) {
        h->spikeSource = 0;
        return store_output(in, out, m, wc, listC, sparse, h->epsNonz, h->pivColInd.data(), h->pivColVal.data(),
                            &h->pivColCount);
    }
    return store_output(in, out, m, wc, listC, sparse, h->epsNonz);
}

int slu_do_btran(SLU *h, const SLUVec *in, SLUVec *out) {
    if (!h || !in || !out) return SLU_STAT_NUMERIC;
    SLUFactor *fp = h->work;
    if (!fp) return SLU_STAT_NOFACTOR;
    SLUFactor &f = *fp;
    if (f.status != SLU_STAT_OK) return f.status;
    const int m = h->m;
    double *wr = f.wRow.data();
    double *wc = f.wCol.data();
    std::vector<int> &listR = f.listA;
    std::vector<int> &listC = f.listB;
    bool sparse = load_input(in, m, wc, listC);
    if (sparse && (double)listC.size() > h->spvTolBtran * m) sparse = false;
    btran_P(f, wc, listC, sparse);
    btran_U(h, f, wc, wr, listC, listR, sparse);
    sparse = true;  // the U solve lists every entry; R and L keep the list whole
    btran_R(f, wr, listR, sparse);
    bool lsparse = true;
    btran_L(h, f, wr, listR, lsparse);
    return store_output(in, out, m, wr, listR, sparse, h->epsNonz);
}
