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

// Pack every line (each keeps `spare` entries of room) and make sure the arrays
// have at least `need` free entries at the end; the arrays only ever grow (to
// half as much again as the packed lines ask).  The lines move in place, in
// the order they sit in the arrays: down to a tight packing first, then up,
// last line first, to their places with room.
static void store_regrow(SLUStore &s, int64_t need, int spare) {
    const int m = (int)s.beg.size();
    int64_t live = 0;
    for (int i = 0; i < m; i++) live += s.len[i];
    int64_t size = live + (int64_t)m * spare + need;
    size = std::max<int64_t>(size + size / 2, (int64_t)s.ind.size());
    std::vector<int> order(m);
    for (int i = 0; i < m; i++) order[i] = i;
    std::sort(order.begin(), order.end(), [&](int a, int b) { return s.beg[a] < s.beg[b]; });
    const bool vals = !s.val.empty();
    int64_t pos = 0;
    for (int i : order) {
        const int b = s.beg[i], l = s.len[i];
        if (b != pos) {
            std::copy(s.ind.begin() + b, s.ind.begin() + b + l, s.ind.begin() + pos);
            if (vals) std::copy(s.val.begin() + b, s.val.begin() + b + l, s.val.begin() + pos);
        }
        s.beg[i] = (int)pos;
        pos += l;
    }
    if ((int64_t)s.ind.size() < size) {
        s.ind.resize((size_t)size);
        if (vals) s.val.resize((size_t)size);
    }
    int64_t end = pos + (int64_t)m * spare;
    s.used = (int)end;
    for (int q = m - 1; q >= 0; q--) {
        const int i = order[q];
        const int b = s.beg[i], l = s.len[i];
        const int64_t nb = end - l - spare;
        if (nb != b) {
            std::copy_backward(s.ind.begin() + b, s.ind.begin() + b + l, s.ind.begin() + nb + l);
            if (vals) std::copy_backward(s.val.begin() + b, s.val.begin() + b + l, s.val.begin() + nb + l);
        }
        s.beg[i] = (int)nb;
        s.cap[i] = l + spare;
        end = nb;
    }
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
    f->wRow.assign(m, 0.0);
    f->wCol.assign(m, 0.0);
    f->mark.assign(m, 0);
    f->listRow.assign(m + 1, 0);
    f->listCol.assign(m + 1, 0);
    f->dfsNode.assign(m + 1, 0);
    f->dfsEdge.assign(m + 1, 0);
    f->dfsEnd.assign(m + 1, 0);
    f->dfsOrder.assign(m + 1, 0);
    f->sweepBits.assign((size_t)m / 64 + 1, 0);
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
