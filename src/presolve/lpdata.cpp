// The lpdata view: building it from a model, row activities, entry edits, and the
// reduced model written back from it.
#include "presolve/lpdata.h"

#include <algorithm>
#include <cstring>

int lpdata_build(lpdata &lp, const Model *model, double dropTol) {
  const int m = model->nCons, n = model->nVars;
  lp.m = m;
  lp.n = n;
  lp.sense = model->objSense < 0 ? -1.0 : 1.0;
  lp.row.assign(m, {});
  lp.col.assign(n, {});
  lp.rl.assign(m, -kPreInf);
  lp.ru.assign(m, kPreInf);
  lp.lb.assign(n, 0.0);
  lp.ub.assign(n, 0.0);
  lp.cost.assign(n, 0.0);
  lp.rowLive.assign(m, 1);
  lp.colLive.assign(n, 1);
  lp.nRowsLive = m;
  lp.nColsLive = n;
  lp.objOffset = 0.0;

  for (int i = 0; i < m; ++i) {
    double b = model->rhs[i];
    double r = model->rangeVal ? model->rangeVal[i] : kPreInf;
    bool ranged = std::fabs(r) < kPreInf;
    switch (model->conType[i]) {
      case 'L':
        lp.ru[i] = b;
        if (ranged) lp.rl[i] = b - std::fabs(r);
        break;
      case 'G':
        lp.rl[i] = b;
        if (ranged) lp.ru[i] = b + std::fabs(r);
        break;
      case 'E':
        lp.rl[i] = lp.ru[i] = b;
        if (ranged) {
          if (r > 0) lp.ru[i] = b + r;
          else lp.rl[i] = b + r;
        }
        break;
      default:  // 'N'
        break;
    }
  }

  // Columns: sum duplicate rows within a column through a position marker.
  std::vector<int> where(m, -1);
  long nnz = 0;
  for (int j = 0; j < n; ++j) {
    double lo = model->lower[j], up = model->upper[j];
    lp.lb[j] = lo <= -kPreInf ? -kPreInf : lo;
    lp.ub[j] = up >= kPreInf ? kPreInf : up;
    lp.cost[j] = lp.sense * model->cost[j];
    auto &cj = lp.col[j];
    int beg = model->Abeg[j], len = model->Alen[j];
    for (int k = beg; k < beg + len; ++k) {
      int i = model->Arow[k];
      double v = model->Acoef[k];
      if (where[i] >= 0) {
        cj[where[i]].val += v;
      } else {
        where[i] = static_cast<int>(cj.size());
        cj.push_back({i, v});
      }
    }
    size_t w = 0;
    for (size_t k = 0; k < cj.size(); ++k) {
      where[cj[k].idx] = -1;
      if (std::fabs(cj[k].val) > dropTol) cj[w++] = cj[k];
    }
    cj.resize(w);
    for (const LpEntry &e : cj) lp.row[e.idx].push_back({j, e.val});
    nnz += static_cast<long>(w);
  }
  lp.nnzLive = nnz;
  return 0;
}

RowAct lpdata_row_activity(const lpdata &lp, int i) {
  RowAct a;
  for (const LpEntry &e : lp.row[i]) {
    double l = lp.lb[e.idx], u = lp.ub[e.idx], v = e.val;
    bool linf = l <= -kActInf, uinf = u >= kActInf;
    if (v > 0) {
      if (linf) a.minInf++; else a.minFin += v * l;
      if (uinf) a.maxInf++; else a.maxFin += v * u;
    } else {
      if (uinf) a.minInf++; else a.minFin += v * u;
      if (linf) a.maxInf++; else a.maxFin += v * l;
    }
    double s = std::fabs(v) * std::max(linf ? 0.0 : std::fabs(l), uinf ? 0.0 : std::fabs(u));
    if (s > a.scale) a.scale = s;
  }
  return a;
}

int lpdata_find_in_row(const lpdata &lp, int i, int j) {
  const auto &r = lp.row[i];
  for (size_t k = 0; k < r.size(); ++k)
    if (r[k].idx == j) return static_cast<int>(k);
  return -1;
}

namespace {
bool remove_from(std::vector<LpEntry> &v, int idx) {
  for (size_t k = 0; k < v.size(); ++k) {
    if (v[k].idx == idx) {
      v[k] = v.back();
      v.pop_back();
      return true;
    }
  }
  return false;
}
}  // namespace

bool lpdata_remove_entry(lpdata &lp, int i, int j) {
  bool a = remove_from(lp.row[i], j);
  bool b = remove_from(lp.col[j], i);
  if (a && b) lp.nnzLive--;
  return a && b;
}

void lpdata_add_to_entry(lpdata &lp, int i, int j, double v, double drop) {
  int k = lpdata_find_in_row(lp, i, j);
  if (k < 0) {
    if (std::fabs(v) <= drop) return;
    lp.row[i].push_back({j, v});
    lp.col[j].push_back({i, v});
    lp.nnzLive++;
    return;
  }
  double nv = lp.row[i][k].val + v;
  if (std::fabs(nv) <= drop) {
    lpdata_remove_entry(lp, i, j);
    return;
  }
  lp.row[i][k].val = nv;
  for (LpEntry &e : lp.col[j])
    if (e.idx == i) {
      e.val = nv;
      break;
    }
}

int setup_red_model(const lpdata &lp, Model *model, Model **out, std::vector<int> &rowMap,
                    std::vector<int> &colMap) {
  *out = nullptr;
  rowMap.clear();
  colMap.clear();
  std::vector<int> newRow(lp.m, -1);
  for (int i = 0; i < lp.m; ++i)
    if (lp.rowLive[i]) {
      newRow[i] = static_cast<int>(rowMap.size());
      rowMap.push_back(i);
    }
  for (int j = 0; j < lp.n; ++j)
    if (lp.colLive[j]) colMap.push_back(j);
  const int m = static_cast<int>(rowMap.size()), n = static_cast<int>(colMap.size());

  std::vector<double> rhs(m > 0 ? m : 1), range(m > 0 ? m : 1, kPreInf);
  std::vector<char> types(m + 1, '\0');
  bool anyRange = false;
  for (int r = 0; r < m; ++r) {
    int i = rowMap[r];
    double lo = lp.rl[i], up = lp.ru[i];
    bool loInf = lo <= -kPreInf, upInf = up >= kPreInf;
    if (loInf && upInf) {
      types[r] = 'N';
      rhs[r] = 0.0;
    } else if (loInf) {
      types[r] = 'L';
      rhs[r] = up;
    } else if (upInf) {
      types[r] = 'G';
      rhs[r] = lo;
    } else if (lo == up) {
      types[r] = 'E';
      rhs[r] = lo;
    } else {
      types[r] = 'L';
      rhs[r] = up;
      range[r] = up - lo;
      anyRange = true;
    }
  }
  std::vector<int> beg(n + 1, 0), rows;
  std::vector<double> coef, c(n > 0 ? n : 1), l(n > 0 ? n : 1), u(n > 0 ? n : 1);
  rows.reserve(static_cast<size_t>(lp.nnzLive));
  coef.reserve(static_cast<size_t>(lp.nnzLive));
  std::vector<LpEntry> tmp;
  for (int q = 0; q < n; ++q) {
    int j = colMap[q];
    tmp.clear();
    for (const LpEntry &e : lp.col[j]) tmp.push_back({newRow[e.idx], e.val});
    std::sort(tmp.begin(), tmp.end(), [](const LpEntry &a, const LpEntry &b) { return a.idx < b.idx; });
    for (const LpEntry &e : tmp) {
      rows.push_back(e.idx);
      coef.push_back(e.val);
    }
    beg[q + 1] = static_cast<int>(rows.size());
    c[q] = lp.sense * lp.cost[j];
    l[q] = lp.lb[j] <= -kPreInf ? -kx::kInfinity : lp.lb[j];
    u[q] = lp.ub[j] >= kPreInf ? kx::kInfinity : lp.ub[j];
  }
  if (rows.empty()) {
    rows.push_back(0);
    coef.push_back(0.0);
  }

  int rc = 0;
  Model *red = KXcreateModel(model->env, &rc);
  if (!red) return rc ? rc : kx::kErrMemory;
  rc = KXloadLPData(red, m, n, model->objSense < 0 ? -1 : 1,
                    model->objConst + lp.sense * lp.objOffset, c.data(), rhs.data(),
                    types.data(), beg[n], beg.data(), nullptr, coef.data(), rows.data(),
                    l.data(), u.data());
  if (rc == 0 && anyRange) rc = kxi_load_ranges(red, range.data());
  if (rc == 0) {
    *red->solverPam = *model->solverPam;
    *red->splexPam = *model->splexPam;
    *red->bandBPam = *model->bandBPam;
    *red->nlpPam = *model->nlpPam;
    *red->gopPam = *model->gopPam;
    *red->iisPam = *model->iisPam;
    red->logFunc = model->logFunc;
    red->userLogFunc = model->userLogFunc;
    red->logData = model->logData;
  }
  if (rc != 0) {
    KXdeleteModel(&red);
    return rc;
  }
  *out = red;
  return 0;
}
