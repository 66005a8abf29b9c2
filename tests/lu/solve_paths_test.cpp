// The ways a solve can run (depth-first search, pass over the pivots, dot
// products over the other copy of the factors; listed or not) give the same
// answers, before and after updates; the order of the basis columns does not
// change the factors; and the line store keeps its lines when it packs them.
#include <gtest/gtest.h>

#include "lu/slu.h"
#include "lu_test_util.h"

using namespace lutest;

namespace {

// Three handles on one basis: one never searches (thresholds 0), one always
// searches (thresholds above 1), one keeps the defaults and picks by the running
// shares of its results.
struct Trio {
    Pool &pool;
    std::vector<int> &head;
    Handle loops, search, picks;
    Trio(Pool &p, std::vector<int> &hd) : pool(p), head(hd), loops(p.m, &p), search(p.m, &p), picks(p.m, &p) {
        for (int id : {SLU_DPAR_SPVTOL_FTRAN, SLU_DPAR_SPVTOL_BTRAN}) {
            slu_set_dpar(loops.h, id, 0.0);
            slu_set_dpar(search.h, id, 4.0);
        }
        for (SLU *h : all()) EXPECT_EQ(slu_do_factor(h, head.data()), SLU_STAT_OK);
    }
    std::vector<SLU *> all() { return {loops.h, search.h, picks.h}; }

    // The same solve on the three: residual of each, and agreement with the first.
    void check(const std::vector<double> &rhs, bool sparse, bool ftran, double tol) {
        const int m = pool.m;
        std::vector<double> first;
        for (SLU *h : all()) {
            Solver s(h, m);
            auto x = s.run(rhs, sparse, ftran);
            ASSERT_TRUE(s.lastRc == 0 || s.lastRc == SLU_RC_EMPTY);
            EXPECT_EQ(s.lastCount < 0, !sparse);
            const auto back = ftran ? mul_B(pool, head, x) : mul_Bt(pool, head, x);
            EXPECT_LT(rel_residual(back, rhs), tol) << (ftran ? "ftran" : "btran") << (sparse ? " sparse" : " dense");
            if (first.empty())
                first = x;
            else
                EXPECT_LT(rel_residual(x, first), 1e-10);
        }
    }

    // The bare blocks the passes copy really are bare: no U entry in a column
    // of the first block or a row of the last.
    void expect_bare_blocks() {
        for (SLU *h : all()) {
            const SLUFactor &f = *h->work;
            const int m = pool.m;
            ASSERT_GE(f.bareCols, 0);
            ASSERT_GE(f.bareRows, 0);
            ASSERT_LE(f.bareCols + f.bareRows, m);
            for (int pos = 0; pos < f.bareCols; pos++) EXPECT_EQ(f.ucol.len[f.colPerm[pos]], 0) << pos;
            for (int pos = m - f.bareRows; pos < m; pos++) EXPECT_EQ(f.urow.len[f.rowPerm[pos]], 0) << pos;
        }
    }

    void round(std::mt19937 &rng, double tol) {
        const int m = pool.m;
        expect_bare_blocks();
        for (int rep = 0; rep < 12; rep++) {
            std::vector<double> a(m, 0.0);
            if (rep % 3 == 0)
                a[rng() % m] = 1.0;
            else if (rep % 3 == 1)
                a = random_sparse(m, 1 + (int)(rng() % 8), rng);
            else
                a = random_dense(m, rng);
            const bool sparse = rep % 3 != 2;
            check(a, sparse, true, tol);
            check(a, sparse, false, tol);
        }
    }

    // Replace the column at a random position with a fresh one, on all three.
    bool replace(std::mt19937 &rng) {
        const int m = pool.m;
        std::uniform_real_distribution<double> U(-1.0, 1.0);
        std::vector<int> r;
        std::vector<double> v;
        for (int k = 0; k < 12; k++) {
            const int i = (int)(rng() % m);
            if (std::find(r.begin(), r.end(), i) != r.end()) continue;
            r.push_back(i);
            v.push_back(U(rng) + (U(rng) < 0 ? -0.5 : 0.5));
        }
        const int col = pool.add(r, v);
        std::vector<double> a(m, 0.0);
        for (size_t k = 0; k < r.size(); k++) a[r[k]] = v[k];
        // The position with the largest entry of B^-1 a keeps the basis sound.
        Solver s0(loops.h, m);
        auto x = s0.ftran(a, true, 0);
        int p = 0;
        for (int i = 1; i < m; i++)
            if (std::fabs(x[i]) > std::fabs(x[p])) p = i;
        if (std::fabs(x[p]) < 1e-3) return false;
        for (SLU *h : all()) {
            Solver s(h, m);
            s.ftran(a, true, 1);
            EXPECT_EQ(slu_update(h, p), 0);
        }
        head[p] = col;
        return true;
    }
};

TEST(SolvePaths, EveryPathGivesTheSameAnswers) {
    Pool pool;
    std::vector<int> head;
    // Dense enough that U has over two entries a row (the dot products take
    // dense inputs) and that B^-1 is dense (the running shares climb).
    random_basis(pool, head, 300, 0.04, 0.2, 91, 1.0);
    Trio t(pool, head);
    for (SLU *h : t.all()) EXPECT_GE(h->work->urow.nnz, 2 * 300);
    std::mt19937 rng(5);
    t.round(rng, 1e-9);
    // The default handle has seen dense results: its shares pick the dot
    // products.  Solves that save no spike keep their own shares, apart from
    // those of the entering columns (none so far).
    EXPECT_GE(t.picks.h->work->otherFt[1], 0.3);
    EXPECT_EQ(t.picks.h->work->densFtU, 0.0);
    t.round(rng, 1e-9);
    int done = 0;
    for (int k = 0; k < 40; k++) done += t.replace(rng);
    EXPECT_GE(done, 30);
    t.round(rng, 1e-8);
}

TEST(SolvePaths, HypersparseBasisSearches) {
    // Mostly slacks: the results stay small and the default handle searches.
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, 2000, 0.001, 0.7, 17, 1.0);
    Trio t(pool, head);
    // The slacks' columns hold nothing off the diagonal: they form the first block.
    EXPECT_GE(t.picks.h->work->bareCols, 1000);
    std::mt19937 rng(9);
    t.round(rng, 1e-11);
    EXPECT_LT(t.picks.h->work->otherFt[1], 0.1);
    for (int k = 0; k < 30; k++) t.replace(rng);
    t.round(rng, 1e-10);
}

TEST(Factor, ColumnOrderDoesNotChangeTheFactors) {
    // The same columns at other positions: the same pivots, bit for bit the
    // same solves (read by column), also with a kernel and after updates of
    // the same columns.
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, 400, 0.02, 0.3, 23, 10.0);
    std::vector<int> perm(400);
    for (int p = 0; p < 400; p++) perm[p] = p;
    std::mt19937 rng(4);
    std::shuffle(perm.begin(), perm.end(), rng);
    std::vector<int> head2(400);
    for (int p = 0; p < 400; p++) head2[perm[p]] = head[p];  // column head[p] sits at perm[p]
    Handle a(400, &pool), b(400, &pool);
    ASSERT_EQ(slu_do_factor(a.h, head.data()), SLU_STAT_OK);
    ASSERT_EQ(slu_do_factor(b.h, head2.data()), SLU_STAT_OK);
    EXPECT_GT(a.h->work->nL, 0);
    EXPECT_EQ(slu_num_lnonz(a.h), slu_num_lnonz(b.h));
    EXPECT_EQ(slu_num_unonz(a.h), slu_num_unonz(b.h));
    EXPECT_EQ(slu_get_rcond(a.h), slu_get_rcond(b.h));
    Solver sa(a.h, 400), sb(b.h, 400);
    auto same = [&](int round) {
        for (int rep = 0; rep < 6; rep++) {
            std::vector<double> r = rep % 2 ? random_dense(400, rng) : random_sparse(400, 3, rng);
            const bool sparse = rep % 2 == 0;
            auto xa = sa.ftran(r, sparse), xb = sb.ftran(r, sparse);
            for (int p = 0; p < 400; p++) ASSERT_EQ(xa[p], xb[perm[p]]) << "ftran, round " << round;
            // BTRAN takes its input by position.
            std::vector<double> c(400), c2(400);
            for (int p = 0; p < 400; p++) c2[perm[p]] = c[p] = r[p];
            auto ya = sa.btran(c, sparse), yb = sb.btran(c2, sparse);
            for (int i = 0; i < 400; i++) ASSERT_EQ(ya[i], yb[i]) << "btran, round " << round;
        }
    };
    same(0);
    std::uniform_real_distribution<double> U(-1.0, 1.0);
    for (int k = 0; k < 10; k++) {
        const int col = pool.add({(int)(rng() % 400), (int)(rng() % 400)}, {2.0 + U(rng), U(rng)});
        std::vector<double> a1(400, 0.0);
        for (size_t t = 0; t < pool.rows[col].size(); t++) a1[pool.rows[col][t]] += pool.vals[col][t];
        auto x = sa.ftran(a1, true, 1);
        int p = 0;
        for (int q = 1; q < 400; q++)
            if (std::fabs(x[q]) > std::fabs(x[p])) p = q;
        sb.ftran(a1, true, 1);
        ASSERT_EQ(slu_update(a.h, p), 0);
        ASSERT_EQ(slu_update(b.h, perm[p]), 0);
    }
    same(1);
}

TEST(Store, PackingKeepsTheLines) {
    // Lines filled to their room, grown one after the other until the arrays
    // pack and grow: every line keeps its entries.
    SLUStore s;
    const int m = 7, spare = 2;
    slu_store_init(s, m, true);
    std::vector<std::vector<int>> want(m);
    int pos = 0;
    for (int i = 0; i < m; i++) {
        s.beg[i] = pos;
        s.cap[i] = 3;
        pos += 3;
    }
    s.used = pos;
    s.ind.assign(pos + 4, -1);
    s.val.assign(pos + 4, 0.0);
    std::mt19937 rng(3);
    for (int step = 0; step < 400; step++) {
        const int i = (int)(rng() % m);
        const int extra = 1 + (int)(rng() % 3);
        slu_store_reserve(s, i, extra, spare);
        ASSERT_GE(s.cap[i], s.len[i] + extra);
        for (int e = 0; e < extra; e++) {
            const int x = step * 10 + e;
            s.ind[s.beg[i] + s.len[i]] = x;
            s.val[s.beg[i] + s.len[i]] = 0.5 * x;
            s.len[i]++;
            want[i].push_back(x);
        }
        if (step % 7 == 0 && s.len[i] > 0) {
            s.len[i]--;  // lines shrink too
            want[i].pop_back();
        }
        for (int j = 0; j < m; j++) {
            ASSERT_EQ(s.len[j], (int)want[j].size());
            ASSERT_LE((int64_t)s.beg[j] + s.cap[j], (int64_t)s.ind.size());
            for (int e = 0; e < s.len[j]; e++) {
                ASSERT_EQ(s.ind[s.beg[j] + e], want[j][e]) << "line " << j << " step " << step;
                ASSERT_EQ(s.val[s.beg[j] + e], 0.5 * want[j][e]);
            }
        }
    }
    // No two lines share room.
    std::vector<std::pair<int, int>> spans;
    for (int j = 0; j < m; j++) spans.push_back({s.beg[j], s.beg[j] + s.cap[j]});
    std::sort(spans.begin(), spans.end());
    for (int j = 1; j < m; j++) EXPECT_LE(spans[j - 1].second, spans[j].first);
}

}  // namespace

namespace {

// B^-1 a at a few positions, by slu_do_ftran_some, into a dense vector (NaN
// elsewhere after a partial solve, so that a stray read shows); *some tells
// which way it went.
std::vector<double> ftran_some(SLU *h, int m, const std::vector<double> &a, const std::vector<int> &want, int *some) {
    std::vector<int> inInd, outInd(m);
    std::vector<double> inVal, outVal(m, 0.0);
    for (int i = 0; i < m; i++)
        if (a[i] != 0.0) {
            inInd.push_back(i);
            inVal.push_back(a[i]);
        }
    SLUVec in{(int)inInd.size(), inInd.data(), inVal.data(), 0};
    SLUVec out{0, outInd.data(), outVal.data(), 1};
    EXPECT_EQ(slu_do_ftran_some(h, &in, want.data(), (int)want.size(), &out, some), 0);
    // A full solve lists its nonzeros only; a partial one lists every wanted entry.
    std::vector<double> x(m, *some ? std::nan("") : 0.0);
    if (out.count < 0) {
        for (int i = 0; i < m; i++) x[i] = outVal[i];
    } else {
        for (int k = 0; k < out.count; k++) x[outInd[k]] = outVal[outInd[k]];
    }
    return x;
}

}  // namespace

TEST(SolvePaths, SomeEntriesMatchTheFullSolve) {
    // A sparse basis (the wanted entries depend on few others) and a denser one
    // (they depend on many: the call solves in full), before and after updates.
    for (double dens : {0.002, 0.03}) {
        SCOPED_TRACE(dens);
        Pool pool;
        std::vector<int> head;
        const int m = 600;
        random_basis(pool, head, m, dens, 0.5, 31, 1.0);
        Trio t(pool, head);
        std::mt19937 rng(12);
        int partial = 0, full = 0;
        for (int round = 0; round < 3; round++) {
            for (int rep = 0; rep < 40; rep++) {
                const std::vector<double> a = random_sparse(m, 1 + (int)(rng() % 6), rng);
                std::vector<int> want;
                for (int k = 0; k < 1 + (int)(rng() % 12); k++) {
                    const int p = (int)(rng() % m);
                    if (std::find(want.begin(), want.end(), p) == want.end()) want.push_back(p);
                }
                Solver s(t.loops.h, m);
                const std::vector<double> x = s.ftran(a, true);
                int some = -1;
                const std::vector<double> y = ftran_some(t.picks.h, m, a, want, &some);
                (some ? partial : full)++;
                for (int p : want) EXPECT_NEAR(y[p], x[p], 1e-9 * (1.0 + std::fabs(x[p]))) << p;
                if (!some) {
                    for (int p = 0; p < m; p++) EXPECT_NEAR(y[p], x[p], 1e-9 * (1.0 + std::fabs(x[p]))) << p;
                }
            }
            for (int k = 0; k < 15; k++) t.replace(rng);
            t.round(rng, 1e-8);  // the work arrays were left clean for the other solves
        }
        if (dens < 0.01)
            EXPECT_GT(partial, 100);
        else
            EXPECT_GT(full, 0);
    }
}
