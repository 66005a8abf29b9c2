// handle.cpp - engine handle: creation, parameters, information queries.
#include "lu/slu.h"

#include <cmath>
#include <cstdio>
#include <new>
#include <string>

SLU *slu_create(int m, void *client, SLUFetch fetch, int *status) {
    if (status) *status = SLU_STAT_OK;
    if (m < 0) {
        if (status) *status = SLU_STAT_NUMERIC;
        return nullptr;
    }
    SLU *h = new (std::nothrow) SLU;
    if (!h) {
        if (status) *status = SLU_STAT_MEMORY;
        return nullptr;
    }
    h->m = m;
    h->cbClient = client;
    h->cbFetch = fetch;
    try {
        h->spikeInd.resize(m + 1);
        h->spikeVal.resize(m + 1);
        h->pivColInd.resize(m + 1);
        h->pivColVal.resize(m + 1);
    } catch (...) {
        delete h;
        if (status) *status = SLU_STAT_MEMORY;
        return nullptr;
    }
    return h;
}

void slu_delete(SLU **h) {
    if (!h || !*h) return;
    delete (*h)->work;
    delete *h;
    *h = nullptr;
}

void slu_set_log(SLU *h, SLULog f, void *data) {
    h->logFunc = f;
    h->logData = data;
}

int slu_set_ipar(SLU *h, int id, int v) {
    switch (id) {
        case SLU_IPAR_NUM_CANDITS: h->numCandits = v < 0 ? SLU_DEF_NUM_CANDITS : (v < 1 ? 1 : v); break;
        case SLU_IPAR_MAX_UPDATES: h->maxUpdates = v < 0 ? SLU_DEF_MAX_UPDATES : v; break;
        case SLU_IPAR_PRINT_LEVEL: h->printLevel = v < 0 ? SLU_DEF_PRINT_LEVEL : v; break;
        case SLU_IPAR_UPDATE_TYPE: h->updateType = v < 0 ? SLU_DEF_UPDATE_TYPE : (v ? 1 : 0); break;
        case SLU_IPAR_USE_PIVCOL: h->usePivCol = v < 0 ? SLU_DEF_USE_PIVCOL : (v ? 1 : 0); break;
        case SLU_IPAR_MEM_EXP: h->memExp = v < 0 ? SLU_DEF_MEM_EXP : v; break;
        case SLU_IPAR_ISDEBUG: h->isDebug = v < 0 ? SLU_DEF_ISDEBUG : v; break;
        default: return SLU_RC_UNKNOWN_ID;
    }
    return 0;
}

int slu_get_ipar(const SLU *h, int id, int *v) {
    switch (id) {
        case SLU_IPAR_NUM_CANDITS: *v = h->numCandits; break;
        case SLU_IPAR_MAX_UPDATES: *v = h->maxUpdates; break;
        case SLU_IPAR_PRINT_LEVEL: *v = h->printLevel; break;
        case SLU_IPAR_UPDATE_TYPE: *v = h->updateType; break;
        case SLU_IPAR_USE_PIVCOL: *v = h->usePivCol; break;
        case SLU_IPAR_MEM_EXP: *v = h->memExp; break;
        case SLU_IPAR_ISDEBUG: *v = h->isDebug; break;
        default: return SLU_RC_UNKNOWN_ID;
    }
    return 0;
}

int slu_set_dpar(SLU *h, int id, double v) {
    const bool def = v < 0.0 || std::isnan(v);
    switch (id) {
        case SLU_DPAR_EPS_DIAG: h->epsDiag = def ? SLU_DEF_EPS_DIAG : v; break;
        case SLU_DPAR_EPS_NONZ: h->epsNonz = def ? SLU_DEF_EPS_NONZ : v; break;
        case SLU_DPAR_EPS_PIVABS: h->epsPivAbs = def ? SLU_DEF_EPS_PIVABS : v; break;
        case SLU_DPAR_EPS_PIVREL:
            h->epsPivRel = def ? SLU_DEF_EPS_PIVREL : (v > 1.0 ? 1.0 : v);
            h->pivRelNow = h->epsPivRel;
            break;
        case SLU_DPAR_INI_RCOND:
            h->iniRcond = def ? SLU_DEF_INI_RCOND : v;
            h->rcondTarget = h->iniRcond;
            break;
        case SLU_DPAR_SPVTOL_UPDATE: h->spvTolUpdate = def ? SLU_DEF_SPVTOL_UPDATE : v; break;
        case SLU_DPAR_SPVTOL_FTRAN: h->spvTolFtran = def ? SLU_DEF_SPVTOL_FTRAN : v; break;
        case SLU_DPAR_SPVTOL_BTRAN: h->spvTolBtran = def ? SLU_DEF_SPVTOL_BTRAN : v; break;
        default: return SLU_RC_UNKNOWN_ID;
    }
    return 0;
}

int slu_get_dpar(const SLU *h, int id, double *v) {
    switch (id) {
        case SLU_DPAR_EPS_DIAG: *v = h->epsDiag; break;
        case SLU_DPAR_EPS_NONZ: *v = h->epsNonz; break;
        case SLU_DPAR_EPS_PIVABS: *v = h->epsPivAbs; break;
        case SLU_DPAR_EPS_PIVREL: *v = h->epsPivRel; break;
        case SLU_DPAR_INI_RCOND: *v = h->iniRcond; break;
        case SLU_DPAR_SPVTOL_UPDATE: *v = h->spvTolUpdate; break;
        case SLU_DPAR_SPVTOL_FTRAN: *v = h->spvTolFtran; break;
        case SLU_DPAR_SPVTOL_BTRAN: *v = h->spvTolBtran; break;
        default: return SLU_RC_UNKNOWN_ID;
    }
    return 0;
}

void slu_disp_params(const SLU *h) {
    if (!h->logFunc || h->printLevel < 3) return;
    static const struct { int id; const char *name; } ipars[] = {
        {SLU_IPAR_NUM_CANDITS, "SLU_IPAR_NUM_CANDITS"}, {SLU_IPAR_MAX_UPDATES, "SLU_IPAR_MAX_UPDATES"},
        {SLU_IPAR_PRINT_LEVEL, "SLU_IPAR_PRINT_LEVEL"}, {SLU_IPAR_UPDATE_TYPE, "SLU_IPAR_UPDATE_TYPE"},
        {SLU_IPAR_USE_PIVCOL, "SLU_IPAR_USE_PIVCOL"},   {SLU_IPAR_MEM_EXP, "SLU_IPAR_MEM_EXP"},
        {SLU_IPAR_ISDEBUG, "SLU_IPAR_ISDEBUG"}};
    static const struct { int id; const char *name; } dpars[] = {
        {SLU_DPAR_EPS_DIAG, "SLU_DPAR_EPS_DIAG"},           {SLU_DPAR_EPS_NONZ, "SLU_DPAR_EPS_NONZ"},
        {SLU_DPAR_EPS_PIVABS, "SLU_DPAR_EPS_PIVABS"},       {SLU_DPAR_EPS_PIVREL, "SLU_DPAR_EPS_PIVREL"},
        {SLU_DPAR_INI_RCOND, "SLU_DPAR_INI_RCOND"},         {SLU_DPAR_SPVTOL_UPDATE, "SLU_DPAR_SPVTOL_UPDATE"},
        {SLU_DPAR_SPVTOL_FTRAN, "SLU_DPAR_SPVTOL_FTRAN"},   {SLU_DPAR_SPVTOL_BTRAN, "SLU_DPAR_SPVTOL_BTRAN"}};
    std::string text = "\nWorking LU options \n";
    char line[128];
    for (const auto &p : ipars) {
        int v = 0;
        slu_get_ipar(h, p.id, &v);
        std::snprintf(line, sizeof line, "%s : %d\n", p.name, v);
        text += line;
    }
    for (const auto &p : dpars) {
        double v = 0;
        slu_get_dpar(h, p.id, &v);
        std::snprintf(line, sizeof line, "%s : %g\n", p.name, v);
        text += line;
    }
    h->logFunc(h->logData, text.c_str());
}

int slu_set_iinfo(SLU *h, int id, int v) {
    switch (id) {
        case SLU_IINF_ITER: h->iter = v; break;
        case SLU_IINF_LPCOUNT: h->lpCount = v; break;
        case SLU_IINF_SPIKEFLIP:
            if (h->work) h->work->spikeFlip = v;
            break;
        default: return SLU_RC_UNKNOWN_ID;
    }
    return 0;
}

int slu_get_iinfo(const SLU *h, int id, int *v) {
    switch (id) {
        case SLU_IINF_ITER: *v = h->iter; break;
        case SLU_IINF_LPCOUNT: *v = h->lpCount; break;
        case SLU_IINF_STABLE: *v = h->stableCount; break;
        case SLU_IINF_FACTORS: *v = h->factorCount; break;
        case SLU_IINF_TRIES: *v = h->tryCount; break;
        case SLU_IINF_TRIES_SINCE: *v = h->tryCountSinceLast; break;
        default: return SLU_RC_UNKNOWN_ID;
    }
    return 0;
}

int slu_set_dinfo(SLU *h, int id, double v) {
    if (id != SLU_DINF_ALPHA) return SLU_RC_UNKNOWN_ID;
    if (h->work) h->work->spikeAlpha = v;
    return 0;
}

int slu_get_dinfo(const SLU *h, int id, double *v) {
    const SLUFactor *f = h->work;
    const double nA = (f && f->nnzA > 0) ? (double)f->nnzA : 1.0;
    switch (id) {
        case SLU_DINF_ALPHA: *v = f ? (double)slu_num_lnonz(h) / nA : 0.0; break;
        case SLU_DINF_UFILL: *v = f ? (double)(slu_num_unonz(h) + h->m) / nA : 0.0; break;
        case SLU_DINF_STABLE_SHARE:
            *v = h->factorCount > 0 ? (double)h->stableCount / h->factorCount : 0.0;
            break;
        case SLU_DINF_DONE_SHARE: *v = h->tryCount > 0 ? (double)h->factorCount / h->tryCount : 0.0; break;
        default: return SLU_RC_UNKNOWN_ID;
    }
    return 0;
}

int slu_set_vinfo(SLU *h, int id, const SLUVec *v) {
    if (id == 0) {
        h->spikeSource = 0;
        return 0;
    }
    if (id != SLU_VINF_PIVCOL && id != SLU_VINF_SPIKE) return SLU_RC_UNKNOWN_ID;
    std::vector<int> &ind = id == SLU_VINF_PIVCOL ? h->pivColInd : h->spikeInd;
    std::vector<double> &val = id == SLU_VINF_PIVCOL ? h->pivColVal : h->spikeVal;
    int &cnt = id == SLU_VINF_PIVCOL ? h->pivColCount : h->spikeCount;
    int n = 0;
    if (v->count < 0) {
        for (int i = 0; i < h->m; i++)
            if (v->val[i] != 0.0) {
                ind[n] = i;
                val[n++] = v->val[i];
            }
    } else {
        for (int k = 0; k < v->count; k++) {
            const int i = v->ind[k];
            if (i < 0 || i >= h->m) return SLU_STAT_NUMERIC;
            const double x = v->scattered ? v->val[i] : v->val[k];
            if (x != 0.0) {
                ind[n] = i;
                val[n++] = x;
            }
        }
    }
    cnt = n;
    h->spikeSource = id;
    return 0;
}

double slu_get_rcond(const SLU *h) { return h->rcond; }

int slu_eta_size(const SLU *h) { return h->updatesSinceFactor; }

int64_t slu_num_lnonz(const SLU *h) {
    const SLUFactor *f = h->work;
    if (!f) return 0;
    return (int64_t)f->Lbeg[f->nL] + (int64_t)f->Pbeg[f->nP];
}

int64_t slu_num_unonz(const SLU *h) { return h->work ? h->work->urow.nnz : 0; }

int64_t slu_num_spsize(const SLU *h) {
    const SLUFactor *f = h->work;
    if (!f) return 0;
    return (int64_t)f->urow.ind.size() + (int64_t)f->Lrow.size() + (int64_t)f->Pind.size() + h->m;
}

int64_t slu_num_pnonz(const SLU *h) {
    const SLUFactor *f = h->work;
    if (!f) return 0;
    return (int64_t)f->Lbeg[f->nLfactor] + f->urow.nnz + f->nPiv;
}

int slu_get_npcand(const SLU *h) { return h->numCandits; }

int slu_get_lu_stat(const SLU *h) { return h->work ? h->work->status : SLU_STAT_NOFACTOR; }

int slu_get_singular_cnt(const SLU *h) {
    const SLUFactor *f = h->work;
    if (!f || f->status != SLU_STAT_SINGULAR) return 0;
    return f->nSingCols > f->nSingRows ? f->nSingCols : f->nSingRows;
}

int slu_get_singular_idx(const SLU *h, int *col, int *row, int k) {
    const SLUFactor *f = h->work;
    if (!f || k < 0 || k >= slu_get_singular_cnt(h)) return SLU_RC_UNKNOWN_ID;
    *col = k < f->nSingCols ? f->singCols[k] : -1;
    *row = k < f->nSingRows ? f->singRows[k] : -1;
    return 0;
}

int slu_get_wfact(const SLU *h, int limit, int minimum) {
    const int cnt = h->updatesSinceFactor;
    if (cnt == limit) return 2;
    if (cnt <= 2 * minimum) return 0;
    const double m = h->m;
    const double e = cnt;
    const double f = (double)(slu_num_lnonz(h) + slu_num_unonz(h));
    const double s = (double)slu_num_spsize(h);
    const double p = std::pow(m, 0.45);
    double value = 2.0 * m * s - (f - 1.5 * m) * (f - 1.5 * m);
    if (p > e) value = 0.0;
    return value > 0.0 ? 10 : 0;
}
