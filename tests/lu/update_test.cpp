// Column replacement: Forrest-Tomlin and product-form updates, the update
// limit, and spikes that cannot be pivoted.
#include <gtest/gtest.h>

#include "lu/slu.h"
#include "lu_test_util.h"

using namespace lutest;

namespace {

// A random entering column with a few entries.
int entering_column(Pool &pool, std::mt19937 &rng) {
    const int m = pool.m;
    std::uniform_real_distribution<double> U(-1.0, 1.0);
    const int cnt = 1 + (int)(rng() % 6);
    std::vector<int> r;
    std::vector<double> v;
    for (int k = 0; k < cnt; k++) {
        const int i = (int)(rng() % m);
        if (std::find(r.begin(), r.end(), i) != r.end()) continue;
        r.push_back(i);
        v.push_back(U(rng) + (U(rng) < 0 ? -0.5 : 0.5));
    }
    return pool.add(r, v);
}

// Leaving position: among entries of the pivot column at least half of
// the largest, a random one (keeps the basis reasonably conditioned).
int leaving_position(const std::vector<double> &x, std::mt19937 &rng) {
    double big = 0.0;
    for (double v : x) big = std::max(big, std::fabs(v));
    std::vector<int> cand;
    for (size_t p = 0; p < x.size(); p++)
        if (std::fabs(x[p]) >= 0.5 * big) cand.push_back((int)p);
    return cand[rng() % cand.size()];
}

double max_residuals(SLU *h, const Pool &pool, const std::vector<int> &head, std::mt19937 &rng) {
    const int m = pool.m;
    Solver s(h, m);
    double worst = 0.0;
    auto a = random_dense(m, rng);
    worst = std::max(worst, rel_residual(mul_B(pool, head, s.ftran(a, false)), a));
    worst = std::max(worst, rel_residual(mul_Bt(pool, head, s.btran(a, false)), a));
    auto e = random_sparse(m, 2, rng);
    worst = std::max(worst, rel_residual(mul_B(pool, head, s.ftran(e, true)), e));
    worst = std::max(worst, rel_residual(mul_Bt(pool, head, s.btran(e, true)), e));
    return worst;
}

void run_updates(int m, double density, double slackShare, int updateType, int count, uint32_t seed) {
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, m, density, slackShare, seed, 1.0);
    Handle H(m, &pool, updateType);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    std::mt19937 rng(seed + 1);
    Solver s(H.h, m);
    double worst = 0.0;
    for (int it = 0; it < count; it++) {
        const int col = entering_column(pool, rng);
        std::vector<double> a(m, 0.0);
        for (size_t k = 0; k < pool.rows[col].size(); k++) a[pool.rows[col][k]] = pool.vals[col][k];
        const auto x = s.ftran(a, true, 1);
        const int p = leaving_position(x, rng);
        ASSERT_EQ(slu_update(H.h, p), SLU_STAT_OK) << "update " << it;
        head[p] = col;
        EXPECT_EQ(slu_eta_size(H.h), it + 1);
        if (it % 25 == 24 || it == count - 1) {
            const double r = max_residuals(H.h, pool, head, rng);
            worst = std::max(worst, r);
            ASSERT_LT(r, 1e-8) << "after update " << it;
        }
    }
    EXPECT_LT(worst, 1e-8);
    // A fresh factorisation of the final basis agrees.
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    EXPECT_EQ(slu_eta_size(H.h), 0);
    EXPECT_LT(max_residuals(H.h, pool, head, rng), 1e-10);
}

TEST(ForrestTomlin, FiveHundredReplacementsKeepResiduals) {
    run_updates(1000, 0.004, 0.4, 1, 500, 21);
    run_updates(300, 0.02, 0.2, 1, 500, 22);
    run_updates(40, 0.1, 0.0, 1, 500, 23);
}

// Updates of factors with a dense tail (the kernel fills up).
TEST(ForrestTomlin, ReplacementsAfterADenseTail) { run_updates(150, 0.3, 0.0, 1, 300, 41); }

TEST(ProductForm, FiveHundredReplacementsKeepResiduals) { run_updates(300, 0.02, 0.3, 0, 500, 24); }

TEST(ProductForm, SameSolvesAsForrestTomlin) {
    const int m = 400;
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, m, 0.01, 0.3, 31, 1.0);
    Handle ft(m, &pool, 1), pf(m, &pool, 0);
    ASSERT_EQ(slu_do_factor(ft.h, head.data()), 0);
    ASSERT_EQ(slu_do_factor(pf.h, head.data()), 0);
    Solver sf(ft.h, m), sp(pf.h, m);
    std::mt19937 rng(32);
    for (int it = 0; it < 200; it++) {
        const int col = entering_column(pool, rng);
        std::vector<double> a(m, 0.0);
        for (size_t k = 0; k < pool.rows[col].size(); k++) a[pool.rows[col][k]] = pool.vals[col][k];
        const auto xf = sf.ftran(a, true, 1);
        const auto xp = sp.ftran(a, true, 1);
        ASSERT_LT(rel_residual(xp, xf), 1e-9);
        const int p = leaving_position(xf, rng);
        ASSERT_EQ(slu_update(ft.h, p), 0);
        ASSERT_EQ(slu_update(pf.h, p), 0);
        head[p] = col;
        auto c = random_sparse(m, 3, rng);
        ASSERT_LT(rel_residual(sp.btran(c, true), sf.btran(c, true)), 1e-9);
        ASSERT_LT(rel_residual(sp.ftran(c, false), sf.ftran(c, false)), 1e-9);
    }
    EXPECT_LT(max_residuals(pf.h, pool, head, rng), 1e-8);
    EXPECT_GT(pf.h->work->nP, 0);
    EXPECT_EQ(ft.h->work->nP, 0);
}

TEST(ProductForm, CallersPivotColumnAndAlpha) {
    const int m = 100;
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, m, 0.03, 0.3, 41, 1.0);
    Handle H(m, &pool, 0);
    slu_set_ipar(H.h, SLU_IPAR_USE_PIVCOL, 1);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
    Solver s(H.h, m);
    std::mt19937 rng(42);
    for (int it = 0; it < 30; it++) {
        const int col = entering_column(pool, rng);
        std::vector<double> a(m, 0.0);
        for (size_t k = 0; k < pool.rows[col].size(); k++) a[pool.rows[col][k]] = pool.vals[col][k];
        // The simplex solves without saving and hands over its own column.
        auto x = s.ftran(a, false, 0);
        const int p = leaving_position(x, rng);
        std::vector<double> xn(x);
        const int flip = it % 2;
        SLUVec v{-1, nullptr, xn.data(), 0};
        ASSERT_EQ(slu_set_vinfo(H.h, SLU_VINF_PIVCOL, &v), 0);
        // With the flip set the pivot element arrives with the opposite sign.
        slu_set_dinfo(H.h, SLU_DINF_ALPHA, flip ? -x[p] : x[p]);
        slu_set_iinfo(H.h, SLU_IINF_SPIKEFLIP, flip);
        ASSERT_EQ(slu_update(H.h, p), 0);
        head[p] = col;
    }
    EXPECT_LT(max_residuals(H.h, pool, head, rng), 1e-8);
}

TEST(UpdateLimit, AdviceAndRefusalAtTheLimit) {
    for (int type = 0; type < 2; type++) {
        const int m = 80;
        Pool pool;
        std::vector<int> head;
        random_basis(pool, head, m, 0.05, 0.3, 51, 1.0);
        Handle H(m, &pool, type);
        const int limit = 12;
        slu_set_ipar(H.h, SLU_IPAR_MAX_UPDATES, limit);
        ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
        Solver s(H.h, m);
        std::mt19937 rng(52);
        for (int it = 0; it <= limit; it++) {
            EXPECT_EQ(slu_get_wfact(H.h, limit, 100) == 2, it == limit) << it;
            const int col = entering_column(pool, rng);
            std::vector<double> a(m, 0.0);
            for (size_t k = 0; k < pool.rows[col].size(); k++) a[pool.rows[col][k]] = pool.vals[col][k];
            const auto x = s.ftran(a, true, 1);
            const int p = leaving_position(x, rng);
            const int rc = slu_update(H.h, p);
            if (it < limit) {
                ASSERT_EQ(rc, 0);
                head[p] = col;
            } else {
                EXPECT_EQ(rc, SLU_STAT_REFACTOR);
                EXPECT_EQ(slu_get_lu_stat(H.h), SLU_STAT_REFACTOR);
                EXPECT_EQ(KXI_lu_map_stat(rc), 4);
                s.ftran(a, false);
                EXPECT_EQ(s.lastRc, SLU_STAT_REFACTOR);
            }
        }
        ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
        EXPECT_EQ(slu_eta_size(H.h), 0);
        EXPECT_EQ(slu_get_wfact(H.h, limit, 100), 0);
        EXPECT_LT(max_residuals(H.h, pool, head, rng), 1e-10);
    }
}

TEST(UpdateLimit, FillAdvice) {
    // Below twice the minimum: no advice; at the limit: 2.
    const int m = 50;
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, m, 0.05, 0.3, 61, 1.0);
    Handle H(m, &pool, 1);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
    EXPECT_EQ(slu_get_wfact(H.h, 0, 5), 2);
    EXPECT_EQ(slu_get_wfact(H.h, 10, 0), 0);  // no etas yet: p > e
}

TEST(BadSpike, NoEntryAtThePivotPosition) {
    const int m = 60;
    for (int type = 0; type < 2; type++) {
        Pool pool;
        std::vector<int> head;
        random_basis(pool, head, m, 0.05, 0.3, 71, 1.0);
        Handle H(m, &pool, type);
        ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
        Solver s(H.h, m);
        // The entering column equals the basis column at position 5, so its
        // representation is e_5: it has nothing at position 9.
        const int col = head[5];
        std::vector<double> a(m, 0.0);
        for (size_t k = 0; k < pool.rows[col].size(); k++) a[pool.rows[col][k]] = pool.vals[col][k];
        const auto x = s.ftran(a, true, 1);
        EXPECT_NEAR(x[5], 1.0, 1e-12);
        EXPECT_EQ(x[9], 0.0);
        EXPECT_EQ(slu_update(H.h, 9), SLU_STAT_NUMERIC);
        EXPECT_EQ(slu_get_lu_stat(H.h), SLU_STAT_NUMERIC);
        EXPECT_EQ(KXI_lu_map_stat(SLU_STAT_NUMERIC), 1);
        s.ftran(a, false);
        EXPECT_EQ(s.lastRc, SLU_STAT_NUMERIC);
        // Refactorisation recovers.
        ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
        std::mt19937 rng(1);
        EXPECT_LT(max_residuals(H.h, pool, head, rng), 1e-10);
    }
}

TEST(BadSpike, SpikeEndingAboveThePivotAndMissingSpike) {
    // Identity basis: replacing position 3 by a spike that only reaches
    // position 1 is a fault; an update without a saved spike is one too.
    const int m = 5;
    Pool pool;
    pool.m = m;
    std::vector<int> head;
    for (int i = 0; i < m; i++) head.push_back(pool.add({i}, {1.0}));
    Handle H(m, &pool, 1);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
    EXPECT_EQ(slu_update(H.h, 3), SLU_STAT_NUMERIC);  // nothing saved
    ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
    Solver s(H.h, m);
    std::vector<double> a(m, 0.0);
    a[1] = 2.0;
    s.ftran(a, true, 1);
    EXPECT_EQ(slu_update(H.h, 3), SLU_STAT_NUMERIC);
    EXPECT_EQ(slu_update(H.h, -1), SLU_STAT_NUMERIC);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
    // A proper spike works.
    a[3] = 0.5;
    s.ftran(a, true, 1);
    ASSERT_EQ(slu_update(H.h, 3), 0);
    head[3] = pool.add({1, 3}, {2.0, 0.5});
    std::mt19937 rng(3);
    EXPECT_LT(max_residuals(H.h, pool, head, rng), 1e-14);
}

TEST(BadSpike, DiagonalTooSmallAfterElimination) {
    // Replacing a column by a near copy of another leaves a diagonal below epsDiag.
    const int m = 30;
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, m, 0.1, 0.0, 81, 1.0);
    Handle H(m, &pool, 1);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
    Solver s(H.h, m);
    std::vector<double> a(m, 0.0);
    for (size_t k = 0; k < pool.rows[head[2]].size(); k++) a[pool.rows[head[2]][k]] = pool.vals[head[2]][k];
    for (size_t k = 0; k < pool.rows[head[7]].size(); k++) a[pool.rows[head[7]][k]] += 1e-9 * pool.vals[head[7]][k];
    const auto x = s.ftran(a, true, 1);
    EXPECT_NEAR(x[7], 1e-9, 1e-12);
    EXPECT_EQ(slu_update(H.h, 7), SLU_STAT_NUMERIC);
}

}  // namespace
