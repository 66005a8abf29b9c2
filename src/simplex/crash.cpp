// crash.cpp - starting bases: the slack basis, the check of a given basis, the
// transfer of the solution record's statuses, and the comparison used by the
// retry chain.
#include <cmath>

#include "simplex/glp.h"

void spx_place_nonbasic(GLP *g, int j) {
  const double inf = g->infin;
  const double lo = g->clb[j], up = g->cub[j];
  const bool hasLo = lo > -inf, hasUp = up < inf;
  int s = g->cbas[j];
  if (s == -4) s = -1;
  if (s == -1 && !hasLo) s = hasUp ? -2 : -3;
  if (s == -2 && !hasUp) s = hasLo ? -1 : -3;
  if (s == -3 && (hasLo || hasUp)) {
    if (hasLo && hasUp) s = std::fabs(lo) <= std::fabs(up) ? -1 : -2;
    else s = hasLo ? -1 : -2;
  }
  g->cbas[j] = s;
  g->x[j] = s == -1 ? lo : (s == -2 ? up : 0.0);
}

namespace {

// Status of a structural at the bound nearer zero.
int natural_status(const GLP *g, int j) {
  const double inf = g->infin;
  const double lo = g->clb[j], up = g->cub[j];
  const bool hasLo = lo > -inf, hasUp = up < inf;
  if (hasLo && hasUp) return std::fabs(lo) <= std::fabs(up) ? -1 : -2;
  if (hasLo) return -1;
  if (hasUp) return -2;
  return -3;
}

}  // namespace

void psetbas(GLP *g) {
  const int m = g->m, n = g->n, nm = g->nm;
  int nbas = 0;
  bool positionsOk = true;
  std::vector<int> seen(m, 0);
  for (int j = 0; j < nm; j++)
    if (g->cbas[j] >= 0) {
      nbas++;
      if (g->cbas[j] >= m || seen[g->cbas[j]]++) positionsOk = false;
    }
  if (nbas == 0 && g->freshStart) {
    // Slack basis.
    for (int j = 0; j < n; j++) {
      g->cbas[j] = natural_status(g, j);
      spx_place_nonbasic(g, j);
    }
    for (int i = 0; i < m; i++) {
      g->cbas[n + i] = i;
      g->rbas[i] = n + i;
    }
    return;
  }
  if (nbas != m || !positionsOk) {
    // Keep the first m basics in order, fill with logicals.
    int placed = 0;
    for (int j = 0; j < nm; j++)
      if (g->cbas[j] >= 0) {
        if (placed < m) {
          g->cbas[j] = placed;
          g->rbas[placed++] = j;
        } else {
          g->cbas[j] = natural_status(g, j);
        }
      }
    for (int i = 0; i < m && placed < m; i++)
      if (g->cbas[n + i] < 0) {
        g->cbas[n + i] = placed;
        g->rbas[placed++] = n + i;
      }
  } else {
    for (int j = 0; j < nm; j++)
      if (g->cbas[j] >= 0) g->rbas[g->cbas[j]] = j;
  }
  for (int j = 0; j < nm; j++)
    if (g->cbas[j] < 0) spx_place_nonbasic(g, j);
}

int setup_basic(Model *model, GLP *g) {
  const Sol *s = model->sol;
  if (!s) return 0;
  const int m = g->m, n = g->n;
  int placed = 0;
  auto take = [&](int j, int st) -> int {
    if (st < -4) return kx::kErrInternal;
    if (st >= 0) {
      if (placed < m) {
        g->cbas[j] = placed;
        g->rbas[placed++] = j;
      } else {
        g->cbas[j] = -1;
      }
    } else if (st == -1) {
      g->cbas[j] = g->clb[j] > -g->infin ? -1 : -2;
    } else if (st == -2) {
      g->cbas[j] = -2;
    } else {
      g->cbas[j] = -3;
    }
    return 0;
  };
  for (int j = 0; j < n; j++) KX_CALL(take(j, s->colstat[j]));
  for (int i = 0; i < m; i++) KX_CALL(take(n + i, s->rowstat[i]));
  g->freshStart = 0;
  psetbas(g);
  g->wfact = WF_FIRST;
  return 0;
}

int checkbas(GLP *g, const char *name) {
  spx_debug(g, 2, "\n%s is checking last known basis ... ", name);
  int nbas = 0;
  for (int j = 0; j < g->nm; j++)
    if (g->cbas[j] >= 0) nbas++;
  if (nbas > g->m) {
    spx_debug(g, 2, "\ncheckbas: too many basic columns (m=%d,nbas=%d)\n", g->m, nbas);
    return 1;
  }
  if (nbas < g->m) {
    spx_debug(g, 2, "\ncheckbas: too few basic columns (m=%d,nbas=%d)\n", g->m, nbas);
    return 1;
  }
  return 0;
}

int check_basis_glp(Model *model) {
  GLP *g = model->glp;
  const Sol *s = model->sol;
  if (!g || !s) return 0;
  if (g->n != model->nVars || g->m != model->nCons) return 0;
  int nbas = 0;
  for (int j = 0; j < g->nm; j++) {
    const int ss = j < g->n ? s->colstat[j] : s->rowstat[j - g->n];
    const int gs = g->cbas[j];
    if (ss >= 0) {
      if (gs < 0) return 0;
      nbas++;
      continue;
    }
    if (gs >= 0) return 0;
    if (ss == -1 && !(gs == -1 || (gs == -2 && g->clb[j] <= -g->infin))) return 0;
    if (ss == -2 && gs != -2) return 0;
    if (ss == -3 && gs != -3) return 0;
  }
  return nbas == g->m;
}
