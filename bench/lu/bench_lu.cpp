// bench_lu - factorisation and solve speed of the LU engine on generated bases.
//
//   bench_lu [scale]      scale 1 (default) runs orders 1,000 to 100,000
//
// For each basis: factor time, fill nnz(L+U)/nnz(B) (L etas, U off-diagonals and
// the diagonal), and FTRAN/BTRAN microseconds per solve for unit and dense
// right-hand sides.  Last, the hypersparse check: FTRAN of unit vectors on a
// near-triangular basis at orders 20,000 and 200,000 side by side.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <random>
#include <string>
#include <vector>

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

double now_us() {
    using namespace std::chrono;
    return (double)duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count() * 1e-3;
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

Result measure(Basis &b, int unitSolves, int denseSolves, bool withDense = true) {
    Result R{};
    const int m = b.m;
    int st = 0;
    SLU *h = slu_create(m, &b, fetch, &st);
    // Factor: best of a few runs.
    double best = 1e300;
    const int reps = m <= 20000 ? 5 : 2;
    for (int r = 0; r < reps; r++) {
        const double t0 = now_us();
        st = slu_do_factor(h, nullptr);
        best = std::min(best, now_us() - t0);
    }
    R.status = st;
    slu_get_iinfo(h, SLU_IINF_TRIES_SINCE, &R.passes);
    R.factorMs = best * 1e-3;
    R.fill = (double)(slu_num_lnonz(h) + slu_num_unonz(h) + m) / (double)b.nnz();
    if (st != 0) {
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
        std::vector<double> a(m), x(m);
        std::uniform_real_distribution<double> U(-1.0, 1.0);
        for (auto &v : a) v = U(rng);
        SLUVec din{-1, nullptr, a.data(), 0}, dout{0, ind.data(), x.data(), 0};
        t0 = now_us();
        for (int k = 0; k < denseSolves; k++) slu_do_ftran(h, &din, &dout, 0);
        R.ftDense = (now_us() - t0) / denseSolves;
        R.resid = residual(b, x, a);
        t0 = now_us();
        for (int k = 0; k < denseSolves; k++) slu_do_btran(h, &din, &dout);
        R.btDense = (now_us() - t0) / denseSolves;
    }
    slu_delete(&h);
    return R;
}

}  // namespace

int main(int argc, char **argv) {
    const double scale = argc > 1 ? std::atof(argv[1]) : 1.0;
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
    return 0;
}
