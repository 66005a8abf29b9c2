// Shared helpers of the LU tests: a column pool with a fetch callback, random
// basis generators, and residual checks.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "lu/slu.h"

namespace lutest {

// A pool of sparse columns; the basis head picks columns from it.
struct Pool {
    int m = 0;
    std::vector<std::vector<int>> rows;
    std::vector<std::vector<double>> vals;
    int add(std::vector<int> r, std::vector<double> v) {
        rows.push_back(std::move(r));
        vals.push_back(std::move(v));
        return (int)rows.size() - 1;
    }
};

inline int fetch(void *client, int col, int **rows, double **vals) {
    Pool *p = static_cast<Pool *>(client);
    *rows = p->rows[col].data();
    *vals = p->vals[col].data();
    return (int)p->rows[col].size();
}

// Random nonsingular basis of order m: column p has its "diagonal" at row
// rowOf[p] dominating the column; a share of the columns are slacks; rows are
// scaled by factors in [1/rowScale, rowScale] afterwards (keeps it nonsingular).
inline void random_basis(Pool &pool, std::vector<int> &head, int m, double density, double slackShare,
                         uint32_t seed, double rowScale = 1.0) {
    std::mt19937 rng(seed);
    std::uniform_real_distribution<double> U(-1.0, 1.0), U01(0.0, 1.0);
    pool = Pool();
    pool.m = m;
    std::vector<int> rowOf(m);
    std::iota(rowOf.begin(), rowOf.end(), 0);
    std::shuffle(rowOf.begin(), rowOf.end(), rng);
    std::vector<double> rs(m, 1.0);
    if (rowScale > 1.0)
        for (int i = 0; i < m; i++) rs[i] = std::exp(U(rng) * std::log(rowScale));
    std::vector<char> used(m, 0);
    head.assign(m, -1);
    for (int p = 0; p < m; p++) {
        std::vector<int> r;
        std::vector<double> v;
        const int d = rowOf[p];
        if (U01(rng) < slackShare) {
            r.push_back(d);
            v.push_back(rs[d]);
        } else {
            int cnt = std::max(1, (int)std::lround(density * m * (0.5 + U01(rng))));
            cnt = std::min(cnt, m - 1);
            double sum = 0.0;
            std::vector<int> picked;
            for (int k = 0; k < cnt; k++) {
                int i = (int)(U01(rng) * m) % m;
                if (i == d || used[i]) continue;
                used[i] = 1;
                picked.push_back(i);
            }
            for (int i : picked) {
                used[i] = 0;
                double a = U(rng);
                if (a == 0.0) a = 0.5;
                sum += std::fabs(a);
                r.push_back(i);
                v.push_back(a * rs[i]);
            }
            const double dv = (sum + 0.1 + U01(rng)) * (U(rng) < 0 ? -1.0 : 1.0);
            // Diagonal placed at a random spot in the column.
            const size_t at = r.empty() ? 0 : (size_t)(U01(rng) * (r.size() + 1)) % (r.size() + 1);
            r.insert(r.begin() + at, d);
            v.insert(v.begin() + at, dv * rs[d]);
        }
        head[p] = pool.add(r, v);
    }
    // Shuffle positions so that the slacks are mixed in everywhere.
    std::shuffle(head.begin(), head.end(), rng);
}

// B x for x indexed by position.
inline std::vector<double> mul_B(const Pool &pool, const std::vector<int> &head, const std::vector<double> &x) {
    std::vector<double> y(pool.m, 0.0);
    for (int p = 0; p < pool.m; p++) {
        if (x[p] == 0.0) continue;
        const int c = head[p];
        for (size_t k = 0; k < pool.rows[c].size(); k++) y[pool.rows[c][k]] += pool.vals[c][k] * x[p];
    }
    return y;
}

// B^T y, indexed by position.
inline std::vector<double> mul_Bt(const Pool &pool, const std::vector<int> &head, const std::vector<double> &y) {
    std::vector<double> z(pool.m, 0.0);
    for (int p = 0; p < pool.m; p++) {
        const int c = head[p];
        double s = 0.0;
        for (size_t k = 0; k < pool.rows[c].size(); k++) s += pool.vals[c][k] * y[pool.rows[c][k]];
        z[p] = s;
    }
    return z;
}

inline double rel_residual(const std::vector<double> &got, const std::vector<double> &want) {
    double num = 0.0, den = 0.0;
    for (size_t i = 0; i < got.size(); i++) {
        num = std::max(num, std::fabs(got[i] - want[i]));
        den = std::max(den, std::fabs(want[i]));
    }
    return den > 0.0 ? num / den : num;
}

// Run a solve with the vector given densely (sparse=false) or as a packed
// sparse record, and return the dense result.
struct Solver {
    SLU *h;
    int m;
    std::vector<int> ind;
    std::vector<double> val, inVal;
    std::vector<int> inInd;
    int lastCount = 0;
    int lastRc = 0;
    Solver(SLU *h_, int m_) : h(h_), m(m_), ind(m_ + 1), val(m_ + 1), inVal(m_ + 1), inInd(m_ + 1) {}

    std::vector<double> run(const std::vector<double> &rhs, bool sparse, bool ftran, int save = 0) {
        SLUVec in, out;
        out.ind = ind.data();
        out.val = val.data();
        if (sparse) {
            int n = 0;
            for (int i = 0; i < m; i++)
                if (rhs[i] != 0.0) {
                    inInd[n] = i;
                    inVal[n++] = rhs[i];
                }
            in.count = n;
            in.ind = inInd.data();
            in.val = inVal.data();
        } else {
            inVal.assign(rhs.begin(), rhs.end());
            in.count = -1;
            in.val = inVal.data();
        }
        lastRc = ftran ? slu_do_ftran(h, &in, &out, save) : slu_do_btran(h, &in, &out);
        lastCount = out.count;
        std::vector<double> x(m, 0.0);
        if (out.count < 0) {
            for (int i = 0; i < m; i++) x[i] = val[i];
        } else {
            for (int k = 0; k < out.count; k++) x[ind[k]] = val[k];
        }
        return x;
    }
    std::vector<double> ftran(const std::vector<double> &a, bool sparse, int save = 0) {
        return run(a, sparse, true, save);
    }
    std::vector<double> btran(const std::vector<double> &c, bool sparse) { return run(c, sparse, false); }
};

inline std::vector<double> random_dense(int m, std::mt19937 &rng) {
    std::uniform_real_distribution<double> U(-1.0, 1.0);
    std::vector<double> v(m);
    for (auto &x : v) x = U(rng);
    return v;
}

inline std::vector<double> random_sparse(int m, int nnz, std::mt19937 &rng) {
    std::uniform_real_distribution<double> U(-1.0, 1.0);
    std::vector<double> v(m, 0.0);
    for (int k = 0; k < nnz; k++) v[rng() % m] = U(rng) + 2.0;
    return v;
}

// An engine handle over a pool of columns, deleted with the scope; an update
// type of -1 keeps the default.
struct Handle {
    SLU *h = nullptr;
    explicit Handle(int m, Pool *pool, int updateType = -1) {
        int st = -1;
        h = slu_create(m, pool, fetch, &st);
        EXPECT_EQ(st, 0);
        if (updateType >= 0) slu_set_ipar(h, SLU_IPAR_UPDATE_TYPE, updateType);
    }
    ~Handle() { slu_delete(&h); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
};

}  // namespace lutest
