// pivot_row.h - row r of B^-1 N (g->pivrow) from rho = row r of B^-1, handing
// each kept entry to visit(j, value, cbas[j]) as it is stored, in the order of
// g->pivrow.ind.  The dual's ratio test screens its candidates there, while
// the entry and its status are at hand.
#pragma once

#include <cmath>
#include <cstdint>

#include "simplex/glp.h"

inline constexpr double kDropRowEntry = 1e-12;  // pivot row entries below this are dropped

template <class Visit>
void spx_pivot_row_visit(GLP *g, const SpxVec &rho, Visit &&visit) {
  const int m = g->m, n = g->n;
  SpxVec &row = g->pivrow;
  row.clear(g->nm);
  double *v = row.val.data();
  int *ind = row.ind.data();
  int cnt = 0;
  const int *cbas = g->cbas.data();
  // Work of the row-wise product against the column-wise one.
  bool rowwise = rho.count >= 0;
  if (rowwise) {
    int64_t work = 0;
    for (int k = 0; k < rho.count; k++) {
      const int i = rho.ind[k];
      work += g->rowBeg[i + 1] - g->rowBeg[i];
    }
    if (work > 0.3 * static_cast<double>(g->colBeg[n])) rowwise = false;
  }
  if (rowwise) {
    // Local copies of the pointers: the marks are chars, which may alias
    // anything, and would make every pass reload them.
    char *mk = g->mark.data();
    const int *rowBeg = g->rowBeg.data(), *rowCol = g->rowCol.data();
    const double *rowVal = g->rowVal.data();
    for (int k = 0; k < rho.count; k++) {
      const int i = rho.ind[k];
      const double r = rho.val[i];
      if (r == 0.0) continue;
      for (int e = rowBeg[i]; e < rowBeg[i + 1]; e++) {
        const int j = rowCol[e];
        if (cbas[j] >= 0) continue;
        if (!mk[j]) {
          mk[j] = 1;
          ind[cnt++] = j;
        }
        v[j] += r * rowVal[e];
      }
      if (cbas[n + i] < 0) {
        mk[n + i] = 1;
        ind[cnt++] = n + i;
        v[n + i] = r;
      }
    }
    int c2 = 0;
    for (int k = 0; k < cnt; k++) {
      const int j = ind[k];
      mk[j] = 0;
      if (std::fabs(v[j]) > kDropRowEntry) {
        ind[c2++] = j;
        visit(j, v[j], cbas[j]);
      } else {
        v[j] = 0.0;
      }
    }
    row.count = c2;
    return;
  }
  const double *r = rho.val.data();
  const int *colBeg = g->colBeg.data(), *colLen = g->colLen.data(), *rowInd = g->rowInd.data();
  const double *colVal = g->colVal.data();
  for (int j = 0; j < n; j++) {
    const int st = cbas[j];
    if (st >= 0) continue;
    const int kb = colBeg[j], ke = kb + colLen[j];
    if (kb == ke) continue;
    // The sum starts from the first product rather than from zero: one
    // addition less on its chain, and the same value wherever it is kept.
    double s = r[rowInd[kb]] * colVal[kb];
    for (int k = kb + 1; k < ke; k++) s += r[rowInd[k]] * colVal[k];
    if (std::fabs(s) > kDropRowEntry) {
      v[j] = s;
      ind[cnt++] = j;
      visit(j, s, st);
    }
  }
  for (int i = 0; i < m; i++)
    if (cbas[n + i] < 0 && std::fabs(r[i]) > kDropRowEntry) {
      v[n + i] = r[i];
      ind[cnt++] = n + i;
      visit(n + i, r[i], cbas[n + i]);
    }
  row.count = cnt;
}
