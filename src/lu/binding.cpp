// binding.cpp - the simplex's door to the engine: parameters in, statuses out,
// and the column fetch over the simplex's sparse column table.
#include "lu/slu.h"

#include <new>

int KXI_lu_datacol(void *client, int col, int **rows, double **vals) {
    KXI_lu *lu = static_cast<KXI_lu *>(client);
    const KXI_lu_columns &c = lu->cols;
    if (col >= 0 && col < c.n) {
        *rows = const_cast<int *>(c.rowInd + c.colBeg[col]);
        *vals = const_cast<double *>(c.val + c.colBeg[col]);
        return c.colLen[col];
    }
    const int i = col - c.n;
    if (i >= 0 && i < c.m) {
        *rows = &lu->slackRow[i];
        *vals = &lu->slackVal;
        return 1;
    }
    *rows = nullptr;
    *vals = nullptr;
    return 0;
}

int KXI_lu_set_params(KXI_lu *lu, const KXI_lu_params *pam) {
    SLU *h = lu->slu;
    slu_set_ipar(h, SLU_IPAR_NUM_CANDITS, pam->numCandits);
    slu_set_ipar(h, SLU_IPAR_MAX_UPDATES, pam->maxUpdates);
    slu_set_ipar(h, SLU_IPAR_PRINT_LEVEL, pam->printLevel);
    slu_set_ipar(h, SLU_IPAR_UPDATE_TYPE, pam->updateType);
    slu_set_ipar(h, SLU_IPAR_USE_PIVCOL, pam->usePivCol);
    slu_set_ipar(h, SLU_IPAR_MEM_EXP, pam->memExp);
    slu_set_dpar(h, SLU_DPAR_EPS_DIAG, pam->epsDiag);
    slu_set_dpar(h, SLU_DPAR_EPS_NONZ, pam->epsNonz);
    slu_set_dpar(h, SLU_DPAR_EPS_PIVABS, pam->epsPivAbs);
    slu_set_dpar(h, SLU_DPAR_EPS_PIVREL, pam->epsPivRel);
    slu_set_dpar(h, SLU_DPAR_INI_RCOND, pam->iniRcond);
    slu_set_dpar(h, SLU_DPAR_SPVTOL_UPDATE, pam->spvTolUpdate);
    slu_set_dpar(h, SLU_DPAR_SPVTOL_FTRAN, pam->spvTolFtran);
    slu_set_dpar(h, SLU_DPAR_SPVTOL_BTRAN, pam->spvTolBtran);
    return KXI_LU_ERR_OK;
}

int KXI_lu_create(KXI_lu **out, const KXI_lu_columns *cols, const KXI_lu_params *pam) {
    if (!out || !cols) return KXI_LU_ERR_INTERNAL;
    *out = nullptr;
    KXI_lu *lu = new (std::nothrow) KXI_lu;
    if (!lu) return KXI_LU_ERR_MEMORY;
    try {
        lu->cols = *cols;
        lu->slackRow.resize(cols->m);
        for (int i = 0; i < cols->m; i++) lu->slackRow[i] = i;
    } catch (...) {
        delete lu;
        return KXI_LU_ERR_MEMORY;
    }
    int st = 0;
    lu->slu = slu_create(cols->m, lu, KXI_lu_datacol, &st);
    if (!lu->slu) {
        delete lu;
        return st == SLU_STAT_MEMORY ? KXI_LU_ERR_MEMORY : KXI_LU_ERR_INTERNAL;
    }
    KXI_lu_params def;
    KXI_lu_set_params(lu, pam ? pam : &def);
    *out = lu;
    return KXI_LU_ERR_OK;
}

void KXI_lu_delete(KXI_lu **lu) {
    if (!lu || !*lu) return;
    slu_delete(&(*lu)->slu);
    delete *lu;
    *lu = nullptr;
}

int KXI_lu_map_stat(int s) {
    switch (s) {
        case SLU_STAT_OK: return 0;
        case SLU_STAT_SINGULAR:
        case SLU_STAT_NUMERIC: return 1;
        case SLU_STAT_REFACTOR: return 4;
        default: return 2;
    }
}

int KXI_lu_error_code(int s) {
    switch (s) {
        case SLU_STAT_OK:
        case SLU_STAT_SINGULAR:
        case SLU_STAT_REFACTOR: return KXI_LU_ERR_OK;
        case SLU_STAT_MEMORY: return KXI_LU_ERR_MEMORY;
        case SLU_STAT_NUMERIC: return KXI_LU_ERR_NUMERIC;
        default: return KXI_LU_ERR_INTERNAL;
    }
}

int KXI_lu_fact(KXI_lu *lu, const int *head, int iter, int lpCount, int *luStat) {
    slu_set_iinfo(lu->slu, SLU_IINF_ITER, iter);
    slu_set_iinfo(lu->slu, SLU_IINF_LPCOUNT, lpCount);
    const int s = slu_do_factor(lu->slu, head);
    if (luStat) *luStat = KXI_lu_map_stat(s);
    // A factorisation fault (status 3) is an internal inconsistency here.
    if (s == SLU_STAT_NUMERIC) return KXI_LU_ERR_INTERNAL;
    return KXI_lu_error_code(s);
}

int KXI_lu_update(KXI_lu *lu, int position, double alpha, int flip, int *luStat) {
    slu_set_dinfo(lu->slu, SLU_DINF_ALPHA, alpha);
    slu_set_iinfo(lu->slu, SLU_IINF_SPIKEFLIP, flip);
    const int s = slu_update(lu->slu, position);
    if (luStat) *luStat = KXI_lu_map_stat(s);
    // A failed update is not an error: the simplex refactorises.
    return s == SLU_STAT_MEMORY ? KXI_LU_ERR_MEMORY : KXI_LU_ERR_OK;
}

namespace {

// The library code of an FTRAN's engine result, counting the solve as dense or
// sparse by its output.
int ftran_done(KXI_lu *lu, int rc, const SLUVec *out) {
    if (rc != 0 && rc != SLU_RC_EMPTY) return rc == SLU_STAT_MEMORY ? KXI_LU_ERR_MEMORY : KXI_LU_ERR_INTERNAL;
    if (out->count < 0)
        lu->nDenseFtran++;
    else
        lu->nSparseFtran++;
    return KXI_LU_ERR_OK;
}

}  // namespace

int KXI_lu_ftran(KXI_lu *lu, const SLUVec *in, SLUVec *out, int save) {
    return ftran_done(lu, slu_do_ftran(lu->slu, in, out, save), out);
}

int KXI_lu_ftran_some(KXI_lu *lu, const SLUVec *in, const int *want, int nWant, SLUVec *out, int *some) {
    return ftran_done(lu, slu_do_ftran_some(lu->slu, in, want, nWant, out, some), out);
}

int KXI_lu_btran(KXI_lu *lu, const SLUVec *in, SLUVec *out) {
    const int rc = slu_do_btran(lu->slu, in, out);
    if (rc != 0 && rc != SLU_RC_EMPTY) return rc == SLU_STAT_MEMORY ? KXI_LU_ERR_MEMORY : KXI_LU_ERR_INTERNAL;
    if (out->count < 0)
        lu->nDenseBtran++;
    else
        lu->nSparseBtran++;
    return KXI_LU_ERR_OK;
}

int KXI_lu_get_iinfo(const KXI_lu *lu, int id, int *v) {
    switch (id) {
        case 21500: id = SLU_IINF_STABLE; break;
        case 21501: id = SLU_IINF_FACTORS; break;
        case 21502: id = SLU_IINF_TRIES; break;
        default: break;
    }
    return slu_get_iinfo(lu->slu, id, v);
}
