// rcond.cpp - the factorisation control loop: growth estimate and the ladder
// of relative pivot thresholds.
#include "lu/slu.h"

#include <cmath>
#include <cstdio>

double slu_ladder_step(double x) {
    if (x < 0.1) return 10.0 * x;
    if (x < 0.9) return 0.5 * (1.0 + x);
    if (x < 0.999) return 0.99999;
    return x;
}

// Highest rung (counted from epsPivRel) whose successor still lies below now.
double slu_ladder_relax(double now, double epsPivRel) {
    if (now <= slu_ladder_step(epsPivRel)) return epsPivRel;
    double x = epsPivRel, best = epsPivRel;
    for (int guard = 0; guard < 64; guard++) {
        const double nx = slu_ladder_step(x);
        if (!(nx < now)) break;
        best = x;
        if (nx == x) break;
        x = nx;
    }
    return best;
}

void slu_compute_rcond(SLU *h) {
    const SLUFactor *f = h->work;
    if (!f || f->status != SLU_STAT_OK) {
        h->rcond = 0.0;
        return;
    }
    if (f->maxAbsA >= f->maxAbsU)
        h->rcond = 1.0;
    else
        h->rcond = f->maxAbsA / f->maxAbsU;
}

int slu_do_factor(SLU *h, const int *basisHead) {
    if (!h) return SLU_STAT_NUMERIC;
    if (!h->cbFetch) return SLU_STAT_NUMERIC;
    try {
        slu_alloc_work(h);
    } catch (...) {
        return SLU_STAT_MEMORY;
    }
    SLUFactor &f = *h->work;
    // A comfortable previous estimate lets the threshold come down again.
    if (h->factorCount > 0 && h->rcond > 2.0 * h->rcondTarget) {
        h->pivRelNow = slu_ladder_relax(h->pivRelNow, h->epsPivRel);
        h->rcondTarget = 2.0 * h->iniRcond;
    }
    h->tryCountSinceLast = 0;
    for (;;) {
        slu_refactor(h, basisHead);
        h->tryCount++;
        h->tryCountSinceLast++;
        if (f.status == SLU_STAT_MEMORY) break;
        h->factorCount++;
        if (f.status != SLU_STAT_OK) break;
        slu_compute_rcond(h);
        if (h->rcond >= h->rcondTarget) {
            h->stableCount++;
            break;
        }
        const double next = slu_ladder_step(h->pivRelNow);
        if (next == h->pivRelNow) break;
        h->pivRelNow = next;
        h->rcondTarget *= 0.5;
    }
    if (f.status != SLU_STAT_OK) h->rcond = 0.0;
    h->updatesSinceFactor = 0;
    h->spikeCount = 0;
    h->pivColCount = 0;
    h->spikeSource = 0;
    h->lastNnz = slu_num_lnonz(h) + slu_num_unonz(h);
    if (h->logFunc && h->printLevel >= 4) {
        char line[160];
        std::snprintf(line, sizeof line, "LU factor: m=%d status=%d nnzL=%lld nnzU=%lld rcond=%g thr=%g\n",
                      h->m, f.status, (long long)slu_num_lnonz(h), (long long)slu_num_unonz(h), h->rcond,
                      h->pivRelNow);
        h->logFunc(h->logData, line);
    }
    return f.status;
}
