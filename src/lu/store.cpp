// store.cpp - growable line stores for U (by rows and by columns) and the
// allocation of the factor workspace.
#include "lu/slu.h"

#include <algorithm>

void slu_store_init(SLUStore &s, int m, bool withValues) {
    s.beg.assign(m, 0);
    s.len.assign(m, 0);
    s.cap.assign(m, 0);
    s.used = 0;
    s.nnz = 0;
    if (!withValues) s.val.clear();
}

// Copy every line compactly into fresh arrays of at least `need` free entries
// at the end; each line keeps `spare` entries of room.
static void store_regrow(SLUStore &s, int64_t need, int spare) {
    const int m = (int)s.beg.size();
    int64_t live = 0;
    for (int i = 0; i < m; i++) live += s.len[i];
    int64_t size = live + (int64_t)m * spare + need;
    size = std::max<int64_t>(size + size / 2, (int64_t)s.ind.size());
    std::vector<int> nind((size_t)size);
    std::vector<double> nval;
    const bool vals = !s.val.empty();
    if (vals) nval.resize((size_t)size);
    int64_t pos = 0;
    for (int i = 0; i < m; i++) {
        const int b = s.beg[i], l = s.len[i];
        std::copy(s.ind.begin() + b, s.ind.begin() + b + l, nind.begin() + pos);
        if (vals) std::copy(s.val.begin() + b, s.val.begin() + b + l, nval.begin() + pos);
        s.beg[i] = (int)pos;
        s.cap[i] = l + spare;
        pos += l + spare;
    }
    s.used = (int)pos;
    s.ind.swap(nind);
    if (vals) s.val.swap(nval);
}

void slu_store_reserve(SLUStore &s, int i, int extra, int spare) {
    const int want = s.len[i] + extra;
    if (want <= s.cap[i]) return;
    // Line at the end of the used area: grow in place when room allows.
    const int newCap = want + spare + want / 4;
    if (s.beg[i] + s.cap[i] == s.used && (int64_t)s.beg[i] + newCap <= (int64_t)s.ind.size()) {
        s.cap[i] = newCap;
        s.used = s.beg[i] + newCap;
        return;
    }
    if ((int64_t)s.used + newCap > (int64_t)s.ind.size()) {
        store_regrow(s, newCap, spare);
        if (want <= s.cap[i]) return;
    }
    // Move the line to the end.
    const int b = s.beg[i], l = s.len[i], nb = s.used;
    std::copy(s.ind.begin() + b, s.ind.begin() + b + l, s.ind.begin() + nb);
    if (!s.val.empty()) std::copy(s.val.begin() + b, s.val.begin() + b + l, s.val.begin() + nb);
    s.beg[i] = nb;
    s.cap[i] = newCap;
    s.used = nb + newCap;
}

int slu_alloc_work(SLU *h) {
    if (h->work) return 0;
    SLUFactor *f = new SLUFactor;
    const int m = h->m;
    f->m = m;
    f->status = SLU_STAT_NOFACTOR;
    f->rowPerm.assign(m, -1);
    f->colPerm.assign(m, -1);
    f->rowPos.assign(m, SLU_UNPIVOTED);
    f->colPos.assign(m, SLU_UNPIVOTED);
    f->dinv.assign(m, 0.0);
    f->etaOfRow.assign(m, -1);
    f->rowMaxAbs.assign(m, -1.0);
    f->workVal.assign(m, 0.0);
    f->workMark.assign(m, 0);
    f->candRow.assign(m, 0);
    f->candCol.assign(m, 0);
    f->wRow.assign(m, 0.0);
    f->wCol.assign(m, 0.0);
    f->mark.assign(m, 0);
    f->listA.reserve(m);
    f->listB.reserve(m);
    f->heap.reserve(m);
    f->rowLists.next.assign(2 * m + 1, 0);
    f->rowLists.prev.assign(2 * m + 1, 0);
    f->rowLists.linked.assign(m, 0);
    f->colLists.next.assign(2 * m + 1, 0);
    f->colLists.prev.assign(2 * m + 1, 0);
    f->colLists.linked.assign(m, 0);
    // Eta stacks: room for the factorisation plus the updates, and 500 spare.
    f->Lbeg.reserve(m + h->maxUpdates + 1);
    f->Lpiv.reserve(m + h->maxUpdates);
    f->Lbeg.assign(1, 0);
    f->Pbeg.assign(1, 0);
    f->Lrow.reserve(500);
    f->Lval.reserve(500);
    h->work = f;
    return 0;
}
