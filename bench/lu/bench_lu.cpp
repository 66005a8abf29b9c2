// bench_lu - factorisation and solve speed of the LU engine on generated bases
// and on bases taken from real LPs.
//
//   bench_lu [scale] [--no-real | --real-only | --hyper-only] [--models a,b,...] [--basis-dir DIR] [--threshold T]
//
// scale 1 (default) runs the generated orders 1,000 to 100,000.  For each basis:
// factor time, fill nnz(L+U)/nnz(B) (L etas, U off-diagonals and the diagonal),
// and FTRAN/BTRAN microseconds per solve for unit and dense right-hand sides.
// Then the hypersparse check: FTRAN of unit vectors on a near-triangular basis at
// orders 20,000 and 200,000 side by side.
//
// Last, the real bases: netlib models read from $KORVA_DATA_DIR/netlib (default
// ../shared/data), solved by the dual simplex without presolve (an iteration
// limit keeps the slow ones short), and the final basis, scaled as the simplex
// scales it, factorised on its own.
// Solves: unit vectors, columns of A (the simplex's FTRAN of an entering column),
// dense vectors; then a run of column replacements and the solves after them.
// With --basis-dir the bases are kept in DIR/<model>.bas and read back on later
// runs, so that two builds are measured on the same matrices.  --threshold sets
// the relative pivot threshold the real bases start from (the control loop may
// still raise it); 0.99999, its top rung, shows the factorisation at its dearest.
#include <algorithm>
#include <ctime>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "korva.h"
#include "lu/slu.h"

namespace {

struct Basis {
    int m = 0;
    std::vector<int> beg, len, ind;
    std::vector<double> val;
    int64_t nnz() const { return (int64_t)ind.size(); }
};

int fetch(void *client, int col, int **rows, double **vals) {
    Basis *b = static_cast<Basis *>(client);
    *rows = b->ind.data() + b->beg[col];
    *vals = b->val.data() + b->beg[col];
    return b->len[col];
}

struct Builder {
    Basis b;
    std::vector<int> rowMap;  // row scrambling
    explicit Builder(int m, std::mt19937 &rng) {
        b.m = m;
        rowMap.resize(m);
        std::iota(rowMap.begin(), rowMap.end(), 0);
        std::shuffle(rowMap.begin(), rowMap.end(), rng);
    }
    void column(const std::vector<int> &rows, const std::vector<double> &vals) {
        b.beg.push_back((int)b.ind.size());
        b.len.push_back((int)rows.size());
        for (size_t k = 0; k < rows.size(); k++) {
            b.ind.push_back(rowMap[rows[k]]);
            b.val.push_back(vals[k]);
        }
    }
    // Scramble the column order too.
    Basis finish(std::mt19937 &rng) {
        std::vector<int> perm(b.m);
        std::iota(perm.begin(), perm.end(), 0);
        std::shuffle(perm.begin(), perm.end(), rng);
        Basis o;
        o.m = b.m;
        for (int p : perm) {
            o.beg.push_back((int)o.ind.size());
            o.len.push_back(b.len[p]);
            o.ind.insert(o.ind.end(), b.ind.begin() + b.beg[p], b.ind.begin() + b.beg[p] + b.len[p]);
            o.val.insert(o.val.end(), b.val.begin() + b.beg[p], b.val.begin() + b.beg[p] + b.len[p]);
        }
        return o;
    }
};

// Staircase: diagonal blocks of `blk` rows; a structural column has entries in
// its own block and a link into the next block; a share of slacks.
Basis staircase(int m, uint32_t seed, int blk = 25, double slack = 0.3) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> U(-1.0, 1.0), U01(0.0, 1.0);
    Builder B(m, rng);
    for (int j = 0; j < m; j++) {
        if (U01(rng) < slack) {
            B.column({j}, {1.0});
            continue;
        }
        const int b0 = (j / blk) * blk, b1 = std::min(m, b0 + blk);
        std::vector<int> r{j};
        std::vector<double> v{0.0};
        double sum = 0.0;
        const int inBlock = 2 + (int)(rng() % 3), link = 1 + (int)(rng() % 2);
        for (int k = 0; k < inBlock + link; k++) {
            int i;
            if (k < inBlock)
                i = b0 + (int)(rng() % (b1 - b0));
            else {
                if (b1 >= m) break;
                i = b1 + (int)(rng() % std::min(blk, m - b1));
            }
            if (std::find(r.begin(), r.end(), i) != r.end()) continue;
            const double a = U(rng) + (U(rng) < 0 ? -0.2 : 0.2);
            r.push_back(i);
            v.push_back(a);
            sum += std::fabs(a);
        }
        v[0] = (0.5 * sum + 0.5 + U01(rng)) * (U(rng) < 0 ? -1.0 : 1.0);
        B.column(r, v);
    }
    return B.finish(rng);
}

// Network: a random spanning tree rooted at node 0 (one slack), arcs +1/-1;
// the parent of node i is drawn among the earlier nodes.
Basis network(int m, uint32_t seed) {
    std::mt19937 rng(seed);
    Builder B(m, rng);
    B.column({0}, {1.0});
    for (int i = 1; i < m; i++) {
        const int parent = (int)(rng() % i);
        if (rng() % 2)
            B.column({i, parent}, {1.0, -1.0});
        else
            B.column({parent, i}, {1.0, -1.0});
    }
    return B.finish(rng);
}

// Near-triangular: mostly slacks, structural columns with a diagonal and two
// entries in rows within a small window on either side (small local kernels).
Basis near_triangular(int m, uint32_t seed) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> U(-1.0, 1.0), U01(0.0, 1.0);
    Builder B(m, rng);
    for (int j = 0; j < m; j++) {
        if (U01(rng) < 0.6) {
            B.column({j}, {1.0});
            continue;
        }
        std::vector<int> r{j};
        std::vector<double> v{2.0 + U01(rng)};
        for (int k = 0; k < 2; k++) {
            const int i = j + (k == 0 ? 1 + (int)(rng() % 6) : -1 - (int)(rng() % 3));
            if (i < 0 || i >= m || std::find(r.begin(), r.end(), i) != r.end()) continue;
            r.push_back(i);
            v.push_back(U(rng));
        }
        B.column(r, v);
    }
    return B.finish(rng);
}

// CPU time of this thread: the machines we measure on are often shared, and
// wall time then counts other people's work.
double now_us() {
    timespec ts;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return (double)ts.tv_sec * 1e6 + (double)ts.tv_nsec * 1e-3;
}

struct Result {
    double factorMs, fill, ftUnit, btUnit, ftDense, btDense, resid, ftNnz, btNnz;
    int status, passes;
};

double residual(const Basis &b, const std::vector<double> &x, const std::vector<double> &a) {
    std::vector<double> y(b.m, 0.0);
    for (int p = 0; p < b.m; p++)
        for (int k = b.beg[p]; k < b.beg[p] + b.len[p]; k++) y[b.ind[k]] += b.val[k] * x[p];
    double num = 0, den = 0;
    for (int i = 0; i < b.m; i++) {
        num = std::max(num, std::fabs(y[i] - a[i]));
        den = std::max(den, std::fabs(a[i]));
    }
    return num / den;
}

struct Factored {
    int status = 0, passes = 0;
    double factorMs = 0, fill = 0;
};

// Factorise b in h `reps` times: the best time, the status and passes of the
// last, and the fill nnz(L+U)/nnz(B) with the diagonal counted.
Factored factor_best_of(SLU *h, const Basis &b, int reps) {
    Factored F;
    double best = 1e300;
    for (int r = 0; r < reps; r++) {
        const double t0 = now_us();
        F.status = slu_do_factor(h, nullptr);
        best = std::min(best, now_us() - t0);
    }
    slu_get_iinfo(h, SLU_IINF_TRIES_SINCE, &F.passes);
    F.factorMs = best * 1e-3;
    F.fill = (double)(slu_num_lnonz(h) + slu_num_unonz(h) + b.m) / (double)b.nnz();
    return F;
}

struct DenseTimes {
    double ft = 0, bt = 0, resid = 0;
};

// FTRAN and BTRAN of one random dense vector, `reps` times each, and the
// residual of the FTRAN's result.
DenseTimes time_dense(SLU *h, const Basis &b, int reps, std::mt19937 &rng) {
    const int m = b.m;
    DenseTimes D;
    std::vector<double> a(m), x(m);
    std::vector<int> ind(m + 1);
    std::uniform_real_distribution<double> U(-1.0, 1.0);
    for (auto &v : a) v = U(rng);
    SLUVec din{-1, nullptr, a.data(), 0}, dout{0, ind.data(), x.data(), 0};
    double t0 = now_us();
    for (int k = 0; k < reps; k++) slu_do_ftran(h, &din, &dout, 0);
    D.ft = (now_us() - t0) / reps;
    D.resid = residual(b, x, a);
    t0 = now_us();
    for (int k = 0; k < reps; k++) slu_do_btran(h, &din, &dout);
    D.bt = (now_us() - t0) / reps;
    return D;
}

Result measure(Basis &b, int unitSolves, int denseSolves, bool withDense = true) {
    Result R{};
    const int m = b.m;
    int st = 0;
    SLU *h = slu_create(m, &b, fetch, &st);
    const Factored F = factor_best_of(h, b, m <= 20000 ? 5 : 2);
    R.status = F.status;
    R.passes = F.passes;
    R.factorMs = F.factorMs;
    R.fill = F.fill;
    if (R.status != 0) {
        slu_delete(&h);
        return R;
    }
    std::mt19937 rng(7);
    std::vector<int> ind(m + 1), inInd(1);
    std::vector<double> val(m + 1), inVal(1, 1.0);
    SLUVec in{1, inInd.data(), inVal.data(), 0}, out{0, ind.data(), val.data(), 0};
    std::vector<int> units(unitSolves);
    for (auto &u : units) u = (int)(rng() % m);
    int64_t cnt = 0;
    double t0 = now_us();
    for (int u : units) {
        inInd[0] = u;
        slu_do_ftran(h, &in, &out, 0);
        cnt += out.count;
    }
    R.ftUnit = (now_us() - t0) / unitSolves;
    R.ftNnz = (double)cnt / unitSolves;
    cnt = 0;
    t0 = now_us();
    for (int u : units) {
        inInd[0] = u;
        slu_do_btran(h, &in, &out);
        cnt += out.count;
    }
    R.btUnit = (now_us() - t0) / unitSolves;
    R.btNnz = (double)cnt / unitSolves;
    if (withDense) {
        const DenseTimes D = time_dense(h, b, denseSolves, rng);
        R.ftDense = D.ft;
        R.btDense = D.bt;
        R.resid = D.resid;
    }
    slu_delete(&h);
    return R;
}

// ----- real bases ----------------------------------------------------------

struct RealModel {
    const char *name;
    int iterLimit;  // 0: solve to the end
};

// Iteration limits keep the whole table within a few minutes (qap15, whose
// factors the pivot threshold fills most, takes about 40 s of it).
const RealModel kRealModels[] = {
    {"25fv47", 0},     {"pilot87", 6000}, {"greenbea", 4000}, {"stocfor3", 6000},
    {"truss", 3000},   {"dfl001", 5000},  {"qap12", 20000}, {"qap15", 15000},
};

// The model's matrix by columns, and a basis over it (basic slacks as unit columns).
struct RealLP {
    int m = 0, n = 0;
    std::vector<int> beg, len, ind;
    std::vector<double> val;
    std::vector<int> cstat, rstat;
    int iters = 0;
};

bool file_exists(const std::string &f) {
    FILE *fp = std::fopen(f.c_str(), "rb");
    if (!fp) return false;
    std::fclose(fp);
    return true;
}

bool read_basis(const std::string &f, RealLP &lp) {
    FILE *fp = std::fopen(f.c_str(), "r");
    if (!fp) return false;
    int n = 0, m = 0;
    bool ok = std::fscanf(fp, "%d %d %d", &n, &m, &lp.iters) == 3 && n == lp.n && m == lp.m;
    lp.cstat.assign(n, 0);
    lp.rstat.assign(m, 0);
    for (int j = 0; ok && j < n; j++) ok = std::fscanf(fp, "%d", &lp.cstat[j]) == 1;
    for (int i = 0; ok && i < m; i++) ok = std::fscanf(fp, "%d", &lp.rstat[i]) == 1;
    std::fclose(fp);
    return ok;
}

void write_basis(const std::string &f, const RealLP &lp) {
    FILE *fp = std::fopen(f.c_str(), "w");
    if (!fp) return;
    std::fprintf(fp, "%d %d %d\n", lp.n, lp.m, lp.iters);
    for (int v : lp.cstat) std::fprintf(fp, "%d\n", v);
    for (int v : lp.rstat) std::fprintf(fp, "%d\n", v);
    std::fclose(fp);
}

// Read the model, solve it (or read its kept basis); false with a note on failure.
bool load_real(const std::string &file, const RealModel &rm, const std::string &basisDir, RealLP &lp,
               std::string &note) {
    int err = 0;
    pEnv env = KXcreateEnv(&err);
    if (!env) {
        note = "no environment";
        return false;
    }
    pModel model = KXcreateModel(env, &err);
    bool ok = model != nullptr;
    if (ok && (err = KXreadMPSFile(model, file.c_str(), KX_MPS_FIXED)) != 0)
        ok = KXreadMPSFile(model, file.c_str(), KX_MPS_FREE) == 0;
    if (!ok) note = "cannot read";
    int nz = 0;
    if (ok) {
        KXgetInfo(model, KX_IINFO_NUM_CONS, &lp.m);
        KXgetInfo(model, KX_IINFO_NUM_VARS, &lp.n);
        KXgetInfo(model, KX_IINFO_NUM_NONZ, &nz);
        lp.beg.assign(lp.n + 1, 0);
        lp.len.assign(lp.n, 0);
        lp.ind.assign(std::max(nz, 1), 0);
        lp.val.assign(std::max(nz, 1), 0.0);
        ok = KXgetLPData(model, nullptr, nullptr, nullptr, nullptr, nullptr, lp.beg.data(), lp.len.data(),
                         lp.val.data(), lp.ind.data(), nullptr, nullptr) == 0;
        if (!ok) note = "no matrix";
    }
    const std::string kept = basisDir.empty() ? "" : basisDir + "/" + rm.name + ".bas";
    if (ok && !(kept.size() && read_basis(kept, lp))) {
        KXsetModelIntParameter(model, KX_IPARAM_LP_PRELEVEL, 0);
        KXsetModelIntParameter(model, KX_IPARAM_LP_PRINTLEVEL, 0);
        if (rm.iterLimit > 0) KXsetModelIntParameter(model, KX_IPARAM_LP_ITRLMT, rm.iterLimit);
        int status = 0;
        KXoptimize(model, KX_METHOD_DSIMPLEX, &status);
        KXgetInfo(model, KX_IINFO_SIM_ITER, &lp.iters);
        lp.cstat.assign(lp.n, 0);
        lp.rstat.assign(lp.m, 0);
        ok = KXgetBasis(model, lp.cstat.data(), lp.rstat.data()) == 0;
        if (!ok) note = "no basis";
        if (ok && kept.size()) write_basis(kept, lp);
    }
    KXdeleteModel(&model);
    KXdeleteEnv(&env);
    return ok;
}

// The simplex factorises the scaled matrix: geometric-mean passes over rows and
// columns while they still help, then each column and each row equilibrated to
// a largest entry of 1, factors rounded to powers of two.  The same here, so that
// the pivots and the growth are those the simplex sees.
void scale_matrix(RealLP &lp) {
    const int m = lp.m, n = lp.n;
    std::vector<double> r(m, 1.0), c(n, 1.0), rmin(m), rmax(m);
    auto cond = [&]() {
        double lo = 1e300, hi = 0.0;
        for (int j = 0; j < n; j++)
            for (int k = lp.beg[j]; k < lp.beg[j] + lp.len[j]; k++) {
                const double a = std::fabs(lp.val[k]) * r[lp.ind[k]] * c[j];
                if (a == 0.0) continue;
                lo = std::min(lo, a);
                hi = std::max(hi, a);
            }
        return hi > 0.0 ? hi / lo : 1.0;
    };
    double now = cond();
    for (int pass = 0; pass < 10 && now > 1.0; pass++) {
        std::fill(rmin.begin(), rmin.end(), 1e300);
        std::fill(rmax.begin(), rmax.end(), 0.0);
        for (int j = 0; j < n; j++)
            for (int k = lp.beg[j]; k < lp.beg[j] + lp.len[j]; k++) {
                const double a = std::fabs(lp.val[k]) * c[j];
                if (a == 0.0) continue;
                rmin[lp.ind[k]] = std::min(rmin[lp.ind[k]], a);
                rmax[lp.ind[k]] = std::max(rmax[lp.ind[k]], a);
            }
        for (int i = 0; i < m; i++)
            if (rmax[i] > 0.0) r[i] = 1.0 / std::sqrt(rmin[i] * rmax[i]);
        for (int j = 0; j < n; j++) {
            double lo = 1e300, hi = 0.0;
            for (int k = lp.beg[j]; k < lp.beg[j] + lp.len[j]; k++) {
                const double a = std::fabs(lp.val[k]) * r[lp.ind[k]];
                if (a == 0.0) continue;
                lo = std::min(lo, a);
                hi = std::max(hi, a);
            }
            if (hi > 0.0) c[j] = 1.0 / std::sqrt(lo * hi);
        }
        const double next = cond();
        const bool small = now - next < 0.05 * now;
        now = next;
        if (small) break;
    }
    for (int j = 0; j < n; j++) {
        double hi = 0.0;
        for (int k = lp.beg[j]; k < lp.beg[j] + lp.len[j]; k++)
            hi = std::max(hi, std::fabs(lp.val[k]) * r[lp.ind[k]] * c[j]);
        if (hi > 0.0) c[j] /= hi;
    }
    std::fill(rmax.begin(), rmax.end(), 0.0);
    for (int j = 0; j < n; j++)
        for (int k = lp.beg[j]; k < lp.beg[j] + lp.len[j]; k++)
            rmax[lp.ind[k]] = std::max(rmax[lp.ind[k]], std::fabs(lp.val[k]) * r[lp.ind[k]] * c[j]);
    for (int i = 0; i < m; i++)
        if (rmax[i] > 0.0) r[i] /= rmax[i];
    auto pow2 = [](double x) { return std::exp2(std::round(std::log2(x))); };
    for (int j = 0; j < n; j++)
        for (int k = lp.beg[j]; k < lp.beg[j] + lp.len[j]; k++) lp.val[k] *= pow2(r[lp.ind[k]]) * pow2(c[j]);
}

// B from the basis statuses: position p holds the variable with status p; a
// basic slack is the unit column of its row (the simplex's logical s = b - a x
// enters a x + s = b with coefficient +1).
bool basis_matrix(const RealLP &lp, Basis &b, std::vector<int> &nonbasic) {
    const int m = lp.m, n = lp.n;
    std::vector<int> var(m, -1);
    nonbasic.clear();
    for (int j = 0; j < n + m; j++) {
        const int s = j < n ? lp.cstat[j] : lp.rstat[j - n];
        if (s >= 0 && s < m && var[s] < 0)
            var[s] = j;
        else if (j < n && lp.len[j] > 0)
            nonbasic.push_back(j);
    }
    b = Basis{};
    b.m = m;
    for (int p = 0; p < m; p++) {
        const int j = var[p];
        if (j < 0) return false;
        b.beg.push_back((int)b.ind.size());
        if (j < n) {
            for (int k = lp.beg[j]; k < lp.beg[j] + lp.len[j]; k++) {
                b.ind.push_back(lp.ind[k]);
                b.val.push_back(lp.val[k]);
            }
            b.len.push_back(lp.len[j]);
        } else {
            b.ind.push_back(j - n);
            b.val.push_back(1.0);
            b.len.push_back(1);
        }
    }
    return true;
}

// Solves with scattered vectors as the simplex makes them; the output is
// cleared after each solve (the caller's job in the simplex too).
struct Solver {
    SLU *h;
    int m;
    std::vector<int> inInd, outInd;
    std::vector<double> inVal, outVal;
    int64_t nnzOut = 0;
    Solver(SLU *hh, int mm) : h(hh), m(mm), inInd(mm + 1), outInd(mm + 1), inVal(mm + 1, 0.0), outVal(mm + 1, 0.0) {}
    void run(const int *ind, const double *val, int cnt, bool ftran, int save = 0) {
        for (int k = 0; k < cnt; k++) {
            inInd[k] = ind[k];
            inVal[ind[k]] = val[k];
        }
        SLUVec in{cnt, inInd.data(), inVal.data(), 1}, out{0, outInd.data(), outVal.data(), 1};
        if (ftran)
            slu_do_ftran(h, &in, &out, save);
        else
            slu_do_btran(h, &in, &out);
        for (int k = 0; k < cnt; k++) inVal[ind[k]] = 0.0;
        nnzOut += out.count;
        for (int k = 0; k < out.count; k++) outVal[outInd[k]] = 0.0;
    }
};

struct RealResult {
    double factorMs = 0, fill = 0;
    double ftUnit = 0, btUnit = 0, ftCol = 0, btCol = 0, ftDense = 0, btDense = 0;
    double ftUnitNnz = 0, btUnitNnz = 0, ftColNnz = 0;
    double updUs = 0, ftColAfter = 0, btUnitAfter = 0, resid = 0;
    int nUpd = 0, status = 0, passes = 0;
    double thr = 0;
};

double g_threshold = 0.0;  // --threshold: relative pivot threshold of the real bases (0: default)

RealResult measure_real(Basis &b, const RealLP &lp, const std::vector<int> &nonbasic) {
    RealResult R;
    const int m = b.m;
    int st = 0;
    SLU *h = slu_create(m, &b, fetch, &st);
    slu_set_ipar(h, SLU_IPAR_PRINT_LEVEL, 0);
    if (g_threshold > 0.0) slu_set_dpar(h, SLU_DPAR_EPS_PIVREL, g_threshold);
    const Factored F = factor_best_of(h, b, 3);
    R.status = F.status;
    R.passes = F.passes;
    R.thr = h->pivRelNow;
    R.factorMs = F.factorMs;
    R.fill = F.fill;
    if (R.status != 0) {
        slu_delete(&h);
        return R;
    }
    std::mt19937 rng(17);
    Solver S(h, m);
    const int nUnit = 2000, nCol = 2000, nDense = std::max(20, std::min(200, 2000000 / std::max(1, (int)b.nnz())));
    std::vector<int> units(nUnit), cols(nCol);
    for (auto &u : units) u = (int)(rng() % m);
    for (auto &c : cols) c = nonbasic.empty() ? -1 : nonbasic[rng() % nonbasic.size()];
    const double one = 1.0;
    auto time_units = [&](bool ftran, double *nnz) {
        S.nnzOut = 0;
        const double t0 = now_us();
        for (int u : units) S.run(&u, &one, 1, ftran);
        const double t = (now_us() - t0) / nUnit;
        if (nnz) *nnz = (double)S.nnzOut / nUnit;
        return t;
    };
    auto time_cols = [&](bool ftran, double *nnz) {
        if (nonbasic.empty()) return 0.0;
        S.nnzOut = 0;
        const double t0 = now_us();
        for (int j : cols) S.run(lp.ind.data() + lp.beg[j], lp.val.data() + lp.beg[j], lp.len[j], ftran);
        const double t = (now_us() - t0) / nCol;
        if (nnz) *nnz = (double)S.nnzOut / nCol;
        return t;
    };
    R.ftUnit = time_units(true, &R.ftUnitNnz);
    R.btUnit = time_units(false, &R.btUnitNnz);
    R.ftCol = time_cols(true, &R.ftColNnz);
    R.btCol = time_cols(false, nullptr);
    {
        const DenseTimes D = time_dense(h, b, nDense, rng);
        R.ftDense = D.ft;
        R.btDense = D.bt;
        R.resid = D.resid;
    }
    // Column replacements: an entering column of A replaces the position with its
    // largest transformed entry, as a simplex step would (timed: the FTRAN that
    // saves the spike and the update).
    const int nUpd = std::min(100, m / 10);
    std::vector<char> used(lp.n, 0);
    double tUpd = 0.0;
    std::vector<int> outInd(m + 1);
    std::vector<double> outVal(m + 1, 0.0), inVal(m + 1, 0.0);
    std::vector<int> inInd(m + 1);
    for (int k = 0; k < nUpd && !nonbasic.empty(); k++) {
        int j = -1;
        for (int tries = 0; tries < 50 && j < 0; tries++) {
            const int c = nonbasic[rng() % nonbasic.size()];
            if (!used[c]) j = c;
        }
        if (j < 0) break;
        const int cnt = lp.len[j];
        for (int e = 0; e < cnt; e++) {
            inInd[e] = lp.ind[lp.beg[j] + e];
            inVal[inInd[e]] = lp.val[lp.beg[j] + e];
        }
        SLUVec in{cnt, inInd.data(), inVal.data(), 1}, out{0, outInd.data(), outVal.data(), 1};
        const double t0 = now_us();
        slu_do_ftran(h, &in, &out, 1);
        double t1 = now_us();
        for (int e = 0; e < cnt; e++) inVal[inInd[e]] = 0.0;
        int p = -1;
        double big = 0.0;
        for (int e = 0; e < out.count; e++)
            if (std::fabs(outVal[outInd[e]]) > big) {
                big = std::fabs(outVal[outInd[e]]);
                p = outInd[e];
            }
        for (int e = 0; e < out.count; e++) outVal[outInd[e]] = 0.0;
        if (p < 0 || big < 1e-7) continue;
        const double t2 = now_us();
        const int rc = slu_update(h, p);
        tUpd += (t1 - t0) + (now_us() - t2);
        if (rc != 0) break;
        used[j] = 1;
        // Keep the basis matrix in step (for the residual check below).
        b.beg[p] = (int)b.ind.size();
        b.len[p] = cnt;
        for (int e = 0; e < cnt; e++) {
            b.ind.push_back(lp.ind[lp.beg[j] + e]);
            b.val.push_back(lp.val[lp.beg[j] + e]);
        }
        R.nUpd++;
    }
    if (R.nUpd > 0) {
        R.updUs = tUpd / R.nUpd;
        R.ftColAfter = time_cols(true, nullptr);
        R.btUnitAfter = time_units(false, nullptr);
        std::vector<double> a(m), x(m);
        std::uniform_real_distribution<double> U(-1.0, 1.0);
        for (auto &v : a) v = U(rng);
        std::vector<int> dind(m + 1);
        SLUVec din{-1, nullptr, a.data(), 0}, dout{0, dind.data(), x.data(), 0};
        slu_do_ftran(h, &din, &dout, 0);
        R.resid = std::max(R.resid, residual(b, x, a));
    }
    slu_delete(&h);
    return R;
}

void run_real(const std::string &dataDir, const std::vector<std::string> &only, const std::string &basisDir) {
    const std::string dir = dataDir + "/netlib/feasible";
    std::printf("\nBases of netlib models (dual simplex, presolve off, final basis; data %s):\n", dir.c_str());
    if (!file_exists(dir + "/afiro.mps.gz") && !file_exists(dir + "/25fv47.mps.gz")) {
        std::printf("  no netlib data under %s: the real-basis part is skipped (set KORVA_DATA_DIR)\n", dir.c_str());
        return;
    }
    std::printf("%-9s %6s %7s %6s %8s %5s %4s %5s %5s %8s %8s %8s %8s %8s %8s %6s %6s %5s %7s %8s %8s %7s\n", "model", "m",
                "iters", "slack", "nnz(B)", "fact", "pass", "thr", "fill", "FT unit", "BT unit", "FT col", "BT col", "FT dens",
                "BT dens", "FTu nz", "FTc nz", "BTu", "upd", "FTcol+u", "BTunit+u", "resid");
    std::printf("%-9s %6s %7s %6s %8s %5s %4s %5s %5s %8s %8s %8s %8s %8s %8s %6s %6s %5s %7s %8s %8s %7s\n", "", "", "",
                "", "", "ms", "", "", "", "us", "us", "us", "us", "us", "us", "avg", "avg", "nz", "us", "us", "us", "");
    for (const RealModel &rm : kRealModels) {
        if (!only.empty() && std::find(only.begin(), only.end(), rm.name) == only.end()) continue;
        const std::string file = dir + "/" + rm.name + ".mps.gz";
        if (!file_exists(file)) {
            std::printf("%-9s (not in the data set)\n", rm.name);
            continue;
        }
        RealLP lp;
        std::string note;
        if (!load_real(file, rm, basisDir, lp, note)) {
            std::printf("%-9s (%s)\n", rm.name, note.c_str());
            continue;
        }
        scale_matrix(lp);
        Basis b;
        std::vector<int> nonbasic;
        if (!basis_matrix(lp, b, nonbasic)) {
            std::printf("%-9s (incomplete basis)\n", rm.name);
            continue;
        }
        int slacks = 0;
        for (int i = 0; i < lp.m; i++) slacks += lp.rstat[i] >= 0;
        const int64_t nnzB = b.nnz();
        RealResult r = measure_real(b, lp, nonbasic);
        std::printf("%-9s %6d %7d %6d %8lld %5.1f %4d %5.2f %5.2f %8.2f %8.2f %8.2f %8.2f %8.1f %8.1f %6.0f %6.0f %5.0f %7.1f "
                    "%8.2f %8.2f %7.1e%s\n",
                    rm.name, lp.m, lp.iters, slacks, (long long)nnzB, r.factorMs, r.passes, r.thr, r.fill, r.ftUnit, r.btUnit, r.ftCol,
                    r.btCol, r.ftDense, r.btDense, r.ftUnitNnz, r.ftColNnz, r.btUnitNnz, r.updUs, r.ftColAfter,
                    r.btUnitAfter, r.resid, r.status ? "  (singular)" : "");
        std::fflush(stdout);
    }
    std::printf("iters: dual iterations to the basis; fact: best of 3 (the threshold stays where the control loop\n"
                "left it), pass: passes of the last; upd: FTRAN with the spike plus the update, over up to 100\n"
                "replacements; +u: after them; resid: max |Bx-a|/|a| of a dense solve, before and after the updates\n");
}

}  // namespace

int main(int argc, char **argv) {
    double scale = 1.0;
    bool gen = true, real = true, hyperOnly = false;
    std::vector<std::string> only;
    std::string basisDir;
    for (int a = 1; a < argc; a++) {
        const std::string s = argv[a];
        if (s == "--no-real") {
            real = false;
        } else if (s == "--hyper-only") {
            hyperOnly = true;
            real = false;
        } else if (s == "--real-only") {
            gen = false;
        } else if (s == "--models" && a + 1 < argc) {
            std::string list = argv[++a];
            size_t p = 0;
            while (p <= list.size()) {
                const size_t q = std::min(list.find(',', p), list.size());
                if (q > p) only.push_back(list.substr(p, q - p));
                p = q + 1;
            }
        } else if (s == "--basis-dir" && a + 1 < argc) {
            basisDir = argv[++a];
        } else if (s == "--threshold" && a + 1 < argc) {
            g_threshold = std::atof(argv[++a]);
        } else if (!s.empty() && s[0] != '-') {
            scale = std::atof(s.c_str());
        } else {
            std::fprintf(stderr,
                         "usage: bench_lu [scale] [--no-real | --real-only] [--models a,b] [--basis-dir DIR]"
                         " [--threshold T] [--hyper-only]\n");
            return 2;
        }
    }
    if (!gen) {
        const char *e = std::getenv("KORVA_DATA_DIR");
        run_real(e && *e ? e : "../shared/data", only, basisDir);
        return 0;
    }
    if (!hyperOnly) {
        std::printf("%-10s %7s %8s %9s %4s %5s %8s %8s %8s %8s %8s %8s %8s\n", "basis", "order", "nnz(B)", "factor", "pass", "fill",
                    "FT unit", "BT unit", "FT nnz", "BT nnz", "FT dense", "BT dense", "residual");
        std::printf("%-10s %7s %8s %9s %4s %5s %8s %8s %8s %8s %8s %8s %8s\n", "", "", "", "ms", "", "", "us", "us", "avg", "avg",
                    "us", "us", "");
        const int orders[] = {1000, 10000, 100000};
        for (int kind = 0; kind < 2; kind++) {
            for (int m0 : orders) {
                const int m = std::max(10, (int)(m0 * scale));
                Basis b = kind == 0 ? staircase(m, 11) : network(m, 12);
                const int dense = m <= 10000 ? 200 : 20;
                Result r = measure(b, 2000, dense);
                std::printf("%-10s %7d %8lld %9.2f %4d %5.2f %8.2f %8.2f %8.1f %8.1f %8.1f %8.1f %8.1e%s\n",
                            kind == 0 ? "staircase" : "network", m, (long long)b.nnz(), r.factorMs, r.passes, r.fill,
                            r.ftUnit, r.btUnit, r.ftNnz, r.btNnz, r.ftDense, r.btDense, r.resid, r.status ? "  (singular)" : "");
            }
        }
    }
    std::printf("\nHypersparse FTRAN/BTRAN of unit vectors, near-triangular basis:\n");
    std::printf("%8s %9s %10s %6s %12s %12s %8s %8s\n", "order", "nnz(B)", "factor ms", "fill", "FT unit us",
                "BT unit us", "FT nnz", "BT nnz");
    for (int m0 : {20000, 200000}) {
        const int m = std::max(10, (int)(m0 * scale));
        Basis b = near_triangular(m, 13);
        Result r = measure(b, 20000, 0, false);
        std::printf("%8d %9lld %10.2f %6.2f %12.3f %12.3f %8.2f %8.2f\n", m, (long long)b.nnz(), r.factorMs, r.fill,
                    r.ftUnit, r.btUnit, r.ftNnz, r.btNnz);
    }
    if (real) {
        std::fflush(stdout);
        const char *e = std::getenv("KORVA_DATA_DIR");
        run_real(e && *e ? e : "../shared/data", only, basisDir);
    }
    return 0;
}
