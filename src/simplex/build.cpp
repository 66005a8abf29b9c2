// build.cpp - the simplex's copy of the model: structural columns without zero
// coefficients, the bounds of every structural and logical variable, costs in
// minimisation form, and the row-wise copy.
#include <algorithm>
#include <cmath>

#include "simplex/glp.h"

void spx_row_bounds(const Model *model, int i, double *lo, double *up) {
  const double inf = kx::kInfinity;
  const double b = model->rhs[i];
  const double r = model->rangeVal ? model->rangeVal[i] : inf;
  const bool ranged = std::fabs(r) < inf;
  // Bounds on the row activity a_i x.
  double alo = -inf, aup = inf;
  switch (model->conType[i]) {
    case 'L':
      aup = b;
      if (ranged) alo = b - std::fabs(r);
      break;
    case 'G':
      alo = b;
      if (ranged) aup = b + std::fabs(r);
      break;
    case 'E':
      alo = aup = b;
      if (ranged) {
        if (r > 0) aup = b + r;
        else alo = b + r;
      }
      break;
    default:  // 'N': free row
      break;
  }
  // The logical s = b - a_i x.
  *lo = aup >= inf ? -inf : b - aup;
  *up = alo <= -inf ? inf : b - alo;
}

int KXI_spx_mbuild2(GLP *g, const Model *model) {
  const int m = g->m, n = g->n;
  const double inf = g->infin;
  g->colBeg.assign(n + 1, 0);
  g->colLen.assign(n > 0 ? n : 1, 0);
  int64_t nz = 0;
  for (int j = 0; j < n; j++) {
    const int b = model->Abeg[j], l = model->Alen ? model->Alen[j] : model->Abeg[j + 1] - b;
    for (int k = b; k < b + l; k++)
      if (std::fabs(model->Acoef[k]) > g->aijzero) nz++;
  }
  g->rowInd.assign(nz > 0 ? nz : 1, 0);
  g->colVal.assign(nz > 0 ? nz : 1, 0.0);
  int64_t at = 0;
  for (int j = 0; j < n; j++) {
    g->colBeg[j] = static_cast<int>(at);
    const int b = model->Abeg[j], l = model->Alen ? model->Alen[j] : model->Abeg[j + 1] - b;
    for (int k = b; k < b + l; k++) {
      const double v = model->Acoef[k];
      if (std::fabs(v) <= g->aijzero) continue;
      g->rowInd[at] = model->Arow[k];
      g->colVal[at] = v;
      at++;
    }
    g->colLen[j] = static_cast<int>(at) - g->colBeg[j];
  }
  g->colBeg[n] = static_cast<int>(at);
  g->nonz = nz + m;

  for (int j = 0; j < n; j++) {
    double lo = model->lower ? model->lower[j] : 0.0;
    double up = model->upper ? model->upper[j] : inf;
    g->clb[j] = lo <= -inf ? -inf : lo;
    g->cub[j] = up >= inf ? inf : up;
    g->objv[j] = g->sense * model->cost[j];
  }
  for (int i = 0; i < m; i++) {
    double lo, up;
    spx_row_bounds(model, i, &lo, &up);
    g->clb[n + i] = lo;
    g->cub[n + i] = up;
    g->objv[n + i] = 0.0;
    g->rhs1[i] = model->rhs[i];
  }
  g->objconst = model->objConst;
  return 0;
}

void mattpos(GLP *g) {
  const int m = g->m, n = g->n;
  g->rowBeg.assign(m + 1, 0);
  const int nz = g->colBeg[n];
  for (int k = 0; k < nz; k++) g->rowBeg[g->rowInd[k] + 1]++;
  for (int i = 0; i < m; i++) g->rowBeg[i + 1] += g->rowBeg[i];
  g->rowCol.assign(nz > 0 ? nz : 1, 0);
  g->rowVal.assign(nz > 0 ? nz : 1, 0.0);
  std::vector<int> next(g->rowBeg.begin(), g->rowBeg.end() - 1);
  for (int j = 0; j < n; j++)
    for (int k = g->colBeg[j]; k < g->colBeg[j] + g->colLen[j]; k++) {
      const int at = next[g->rowInd[k]]++;
      g->rowCol[at] = j;
      g->rowVal[at] = g->colVal[k];
    }
}
