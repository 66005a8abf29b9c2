// update.cpp - column replacement: the Forrest-Tomlin update of U with a row
// eta, and the product-form update with a column eta applied after U.
#include "lu/slu.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

inline bool line_remove_val(SLUStore &s, int j, int x) {
    int *ind = s.ind.data() + s.beg[j];
    double *val = s.val.data() + s.beg[j];
    const int l = s.len[j];
    for (int k = l - 1; k >= 0; k--) {
        if (ind[k] == x) {
            ind[k] = ind[l - 1];
            val[k] = val[l - 1];
            s.len[j] = l - 1;
            s.nnz--;
            return true;
        }
    }
    return false;
}

inline void line_append(SLUStore &s, int j, int x, double v, int spare) {
    if (s.len[j] == s.cap[j]) slu_store_reserve(s, j, 1, spare);
    const int at = s.beg[j] + s.len[j]++;
    s.ind[at] = x;
    s.val[at] = v;
    s.nnz++;
}

// Clear the elimination work after a failed update.
void ft_post_singular(SLUFactor &f, const std::vector<int> &touched) {
    for (int j : touched) {
        f.workVal[j] = 0.0;
        f.workMark[j] = 0;
    }
}

// Replace column c (position t) of U by the spike and restore triangularity.
int ft_update(SLU *h, SLUFactor &f, int c, const int *sInd, const double *sVal, int sLen) {
    const int m = h->m;
    const double eps = h->epsNonz;
    const int spare = std::max(h->memExp, 0);
    const int t = f.colPos[c];
    if (t < 0 || t >= m) return SLU_STAT_NUMERIC;
    if (sLen <= 0) return SLU_STAT_NUMERIC;
    int p = -1;
    for (int k = 0; k < sLen; k++)
        if (std::fabs(sVal[k]) > eps) p = std::max(p, f.rowPos[sInd[k]]);
    if (p < t) return SLU_STAT_NUMERIC;  // the spike must reach position t
    // The bare blocks (see SLUFactor): positions below t keep their empty
    // columns, those above p their empty rows; the spike's column and the rows
    // it enters are bare no more.
    if (t < f.bareCols) f.bareCols = std::min(f.bareCols - 1, p);
    f.bareRows = std::min(f.bareRows, m - 1 - p);

    const int rt = f.rowPerm[t];
    double maxU = f.maxAbsU;
    // 1. Take the old column out of the rows.
    {
        SLUStore &uc = f.ucol;
        const int b = uc.beg[c], l = uc.len[c];
        for (int e = 0; e < l; e++)
            if (!line_remove_val(f.urow, uc.ind[b + e], c)) return SLU_STAT_NUMERIC;
        uc.nnz -= l;
        uc.len[c] = 0;
    }
    // 2. Install the spike (the entry of row rt is handled by the elimination).
    double srt = 0.0;
    {
        int cnt = 0;
        for (int k = 0; k < sLen; k++)
            if (std::fabs(sVal[k]) > eps) cnt++;
        slu_store_reserve(f.ucol, c, cnt, spare);
        for (int k = 0; k < sLen; k++) {
            const double v = sVal[k];
            if (!(std::fabs(v) > eps)) continue;
            const int i = sInd[k];
            if (i == rt) {
                srt = v;
                continue;
            }
            const int at = f.ucol.beg[c] + f.ucol.len[c]++;
            f.ucol.ind[at] = i;
            f.ucol.val[at] = v;
            f.ucol.nnz++;
            line_append(f.urow, i, c, v, spare);
            maxU = std::max(maxU, std::fabs(v));
        }
    }
    if (p == t) {
        if (!(std::fabs(srt) >= h->epsDiag)) return SLU_STAT_NUMERIC;
        f.dinv[rt] = 1.0 / srt;
        f.maxAbsU = std::max(maxU, std::fabs(f.dinv[rt]));
        return 0;
    }
    // 3. Cyclic shift: positions t+1..p move down, row rt and column c go to p.
    for (int q = t; q < p; q++) {
        const int r = f.rowPerm[q + 1], cc = f.colPerm[q + 1];
        f.rowPerm[q] = r;
        f.colPerm[q] = cc;
        f.rowPos[r] = q;
        f.colPos[cc] = q;
    }
    f.rowPerm[p] = rt;
    f.colPerm[p] = c;
    f.rowPos[rt] = p;
    f.colPos[c] = p;

    // 4. Eliminate row rt's entries in positions t..p-1 with the rows there.
    std::vector<int> &touched = f.tmpInt;
    touched.clear();
    double *wv = f.workVal.data();
    char *mk = f.workMark.data();
    int rowLen = 0;
    {
        SLUStore &ur = f.urow;
        const int b = ur.beg[rt];
        rowLen = ur.len[rt];
        for (int e = 0; e < rowLen; e++) {
            const int j = ur.ind[b + e];
            wv[j] = ur.val[b + e];
            mk[j] = 1;
            touched.push_back(j);
            line_remove_val(f.ucol, j, rt);
        }
        ur.nnz -= rowLen;
        ur.len[rt] = 0;
    }
    if (!mk[c]) {
        mk[c] = 1;
        touched.push_back(c);
    }
    wv[c] += srt;
    const int *colPos = f.colPos.data();
    const int etaStart = (int)f.Lrow.size();
    // Dense walk over the positions when the row is long, else a min-heap.
    const bool denseWalk = (double)(m - t) * h->spvTolUpdate <= (double)rowLen;
    std::vector<int> &hp = f.heap;
    hp.clear();
    if (!denseWalk) {
        for (int j : touched)
            if (colPos[j] < p) hp.push_back(colPos[j]);
        std::make_heap(hp.begin(), hp.end(), std::greater<int>());
    }
    auto eliminate = [&](int q) {
        const int cq = f.colPerm[q];
        const double a = wv[cq];
        if (a == 0.0) return;
        wv[cq] = 0.0;
        const int rq = f.rowPerm[q];
        const double mult = a * f.dinv[rq];
        if (std::fabs(mult) <= eps) return;
        f.Lrow.push_back(rq);
        f.Lval.push_back(mult);
        maxU = std::max(maxU, std::fabs(mult));
        const SLUStore &ur = f.urow;
        const int b = ur.beg[rq], l = ur.len[rq];
        for (int e = 0; e < l; e++) {
            const int j = ur.ind[b + e];
            if (!mk[j]) {
                mk[j] = 1;
                touched.push_back(j);
                wv[j] = -mult * ur.val[b + e];
                if (!denseWalk && colPos[j] < p) {
                    hp.push_back(colPos[j]);
                    std::push_heap(hp.begin(), hp.end(), std::greater<int>());
                }
            } else {
                wv[j] -= mult * ur.val[b + e];
            }
        }
    };
    if (denseWalk) {
        for (int q = t; q < p; q++) eliminate(q);
    } else {
        while (!hp.empty()) {
            std::pop_heap(hp.begin(), hp.end(), std::greater<int>());
            const int q = hp.back();
            hp.pop_back();
            eliminate(q);
        }
    }
    // 5. The new diagonal.
    const double diag = wv[c];
    wv[c] = 0.0;
    if (!(std::fabs(diag) >= h->epsDiag)) {
        ft_post_singular(f, touched);
        f.Lrow.resize(etaStart);
        f.Lval.resize(etaStart);
        return SLU_STAT_NUMERIC;
    }
    f.dinv[rt] = 1.0 / diag;
    maxU = std::max(maxU, std::fabs(f.dinv[rt]));
    // 6. The rest of row rt: entries beyond position p.
    {
        int cnt = 0;
        for (int j : touched)
            if (colPos[j] > p && std::fabs(wv[j]) > eps) cnt++;
        slu_store_reserve(f.urow, rt, cnt, spare);
        SLUStore &ur = f.urow;
        for (int j : touched) {
            const double v = wv[j];
            wv[j] = 0.0;
            mk[j] = 0;
            if (colPos[j] > p && std::fabs(v) > eps) {
                const int at = ur.beg[rt] + ur.len[rt]++;
                ur.ind[at] = j;
                ur.val[at] = v;
                ur.nnz++;
                line_append(f.ucol, j, rt, v, spare);
                maxU = std::max(maxU, std::fabs(v));
            }
        }
    }
    // 7. Close the row eta.
    if ((int)f.Lrow.size() > etaStart) {
        f.Lpiv.push_back(rt);
        f.Lbeg.push_back((int)f.Lrow.size());
        f.nL++;
    }
    f.maxAbsU = maxU;
    return 0;
}

// Product form: pivot column v (by basis position) with pivot r.
int eta_update(SLU *h, SLUFactor &f, int r, const int *ind, const double *val, int len, double vr, bool drop) {
    const double eps = h->epsNonz;
    if (!(vr != 0.0) || !std::isfinite(vr)) return SLU_STAT_NUMERIC;
    const double inv = 1.0 / vr;
    double maxU = f.maxAbsU;
    for (int k = 0; k < len; k++) {
        const int i = ind[k];
        if (i == r) continue;
        const double e = val[k] * inv;
        if (drop && std::fabs(e) <= eps) continue;
        f.Pind.push_back(i);
        f.Pval.push_back(e);
        maxU = std::max(maxU, std::fabs(e));
    }
    f.Pind.push_back(r);
    f.Pval.push_back(1.0 - inv);
    maxU = std::max(maxU, std::fabs(inv));
    f.Ppiv.push_back(r);
    f.Pbeg.push_back((int)f.Pind.size());
    f.nP++;
    f.maxAbsU = maxU;
    return 0;
}

}  // namespace

int slu_update(SLU *h, int position) {
    if (!h) return SLU_STAT_NUMERIC;
    SLUFactor *fp = h->work;
    if (!fp) return SLU_STAT_NOFACTOR;
    SLUFactor &f = *fp;
    if (f.status != SLU_STAT_OK) return f.status;
    if (position < 0 || position >= h->m) {
        if (h->logFunc && h->printLevel >= 5) {
            h->logFunc(h->logData, "The statement should not have been reached @FILE=update.cpp\n");
        }
        return SLU_STAT_NUMERIC;
    }
    if (h->updatesSinceFactor >= h->maxUpdates) {
        f.status = SLU_STAT_REFACTOR;
        return SLU_STAT_REFACTOR;
    }
    int rc = 0;
    try {
        if (h->updateType == 1) {
            rc = ft_update(h, f, position, h->spikeInd.data(), h->spikeVal.data(), h->spikeCount);
            h->spikeCount = 0;
        } else {
            const int *ind = h->pivColInd.data();
            const double *val = h->pivColVal.data();
            const int len = h->pivColCount;
            double vr = 0.0;
            for (int k = 0; k < len; k++)
                if (ind[k] == position) vr = val[k];
            if (h->usePivCol) {
                // The caller's pivot element, with the sign of the flip.
                if (f.spikeAlpha != 0.0) vr = f.spikeFlip ? -f.spikeAlpha : f.spikeAlpha;
                rc = eta_update(h, f, position, ind, val, len, vr, true);
            } else {
                rc = eta_update(h, f, position, ind, val, len, vr, false);
            }
            h->pivColCount = 0;
        }
    } catch (...) {
        rc = SLU_STAT_MEMORY;
    }
    h->spikeSource = 0;
    if (rc != 0) {
        f.status = rc;
        return rc;
    }
    h->updatesSinceFactor++;
    h->lastNnz = slu_num_lnonz(h) + slu_num_unonz(h);
    return 0;
}
