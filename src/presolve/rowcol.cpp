// Row and column routines of the LP presolve: marks, unlinking, and the two basic
// reductions that every pass uses, deleting a row and removing a fixed column.
#include "presolve/genpre.h"

void gp_mark_row(GenPre &g, int i) {
  if (!g.rowMarked[i] && g.lp.rowLive[i]) {
    g.rowMarked[i] = 1;
    g.rowQ.push_back(i);
  }
}

void gp_mark_col(GenPre &g, int j) {
  if (!g.colMarked[j] && g.lp.colLive[j]) {
    g.colMarked[j] = 1;
    g.colQ.push_back(j);
  }
}

void gp_mark_row_cols(GenPre &g, int i) {
  for (const LpEntry &e : g.lp.row[i]) gp_mark_col(g, e.idx);
}

void gp_unlink_row(GenPre &g, int i) {
  lpdata &lp = g.lp;
  for (const LpEntry &e : lp.row[i]) {
    auto &c = lp.col[e.idx];
    for (size_t k = 0; k < c.size(); ++k)
      if (c[k].idx == i) {
        c[k] = c.back();
        c.pop_back();
        break;
      }
    gp_mark_col(g, e.idx);
  }
  lp.nnzLive -= static_cast<long>(lp.row[i].size());
  lp.row[i].clear();
  lp.row[i].shrink_to_fit();
  lp.rowLive[i] = 0;
  lp.nRowsLive--;
  g.removedSomething = 1;
}

void gp_unlink_col(GenPre &g, int j) {
  lpdata &lp = g.lp;
  for (const LpEntry &e : lp.col[j]) {
    auto &r = lp.row[e.idx];
    for (size_t k = 0; k < r.size(); ++k)
      if (r[k].idx == j) {
        r[k] = r.back();
        r.pop_back();
        break;
      }
    gp_mark_row(g, e.idx);
  }
  lp.nnzLive -= static_cast<long>(lp.col[j].size());
  lp.col[j].clear();
  lp.col[j].shrink_to_fit();
  lp.colLive[j] = 0;
  lp.nColsLive--;
  g.removedSomething = 1;
}

void genpre_delete_row(GenPre &g, int i) {
  ps_begin(g.ps);
  ps_int(g.ps, i);
  ps_end(g.ps, kPsDelRow);
  gp_unlink_row(g, i);
}

void genpre_remove_fixe(GenPre &g, int j, double v) {
  lpdata &lp = g.lp;
  PostStack *ps = g.ps;
  const auto &cj = lp.col[j];
  get_post_stack_space(ps, cj.size() + 4, cj.size() + 4);
  ps_begin(ps);
  ps_int(ps, j);
  ps_real(ps, v);
  ps_real(ps, lp.cost[j]);
  ps_real(ps, lp.lb[j]);
  ps_real(ps, lp.ub[j]);
  for (const LpEntry &e : cj) {
    ps_int(ps, e.idx);
    ps_real(ps, e.val);
  }
  ps_end(ps, kPsFixCol);
  for (const LpEntry &e : cj) {
    double s = e.val * v;
    if (!pre_inf(lp.rl[e.idx])) lp.rl[e.idx] -= s;
    if (!pre_inf(lp.ru[e.idx])) lp.ru[e.idx] -= s;
  }
  lp.objOffset += lp.cost[j] * v;
  gp_unlink_col(g, j);
}
