// The KORVA text writer, and the writer of a linear model's explicit dual in
// the same format.
//
// Coefficients stand as "%+.16f" where that text reads back to the same
// number, else in their shortest exact form with a sign, so that a model
// written and read again holds the same data.  Ranged rows get a RANGE
// statement after END; a title a TITLE line.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "io/textio.h"

namespace kxi {
namespace {

constexpr double kInf = kx::kInfinity;

std::string knum(double v) {
  char buf[400];
  if (std::fabs(v) < 1e17) {
    std::snprintf(buf, sizeof buf, "%+.16f", v);
    if (std::strtod(buf, nullptr) == v) return buf;
  }
  return num_signed(v);
}

struct KorvaWriter {
  const Model *m;
  TextOut o;

  int write() {
    const int n = m->nVars, nr = m->nCons;
    std::vector<std::string> cn, rn;
    text_names(m, kKorvaRules, cn, rn);
    std::vector<int> rbeg, rcol;
    std::vector<double> rval;
    model_rows(m, rbeg, rcol, rval);
    const bool allCols = !natural_column_order(m, rbeg, rcol);

    if (m->modelName && *m->modelName) {
      std::string t = m->modelName;
      for (char &c : t)
        if (c == '\n' || c == '\r') c = ' ';
      o.put("TITLE %s\n", t.c_str());
    }
    o.s += m->objSense == -1 ? "MAXIMIZE\n" : "MINIMIZE\n";
    for (int j = 0; j < n; ++j)
      if (m->cost[j] != 0.0 || allCols)
        o.put("   %s %s\n", knum(m->cost[j]).c_str(), cn[static_cast<size_t>(j)].c_str());
    if (m->objConst != 0.0) o.put("   %s\n", knum(m->objConst).c_str());
    o.s += "\nSUBJECT TO\n";
    for (int i = 0; i < nr; ++i) {
      o.put("%s)\n", rn[static_cast<size_t>(i)].c_str());
      for (int k = rbeg[static_cast<size_t>(i)]; k < rbeg[static_cast<size_t>(i) + 1]; ++k)
        o.put("   %s %s\n", knum(rval[static_cast<size_t>(k)]).c_str(),
              cn[static_cast<size_t>(rcol[static_cast<size_t>(k)])].c_str());
      const char t = m->conType[i];
      if (t == 'N')
        o.put("   < +inf \n");
      else
        o.put("   %c %s \n", t == 'L' ? '<' : t == 'G' ? '>' : '=', knum(m->rhs[i]).c_str());
    }
    o.s += "\nEND\n";
    for (int j = 0; j < n; ++j) {
      const std::string &c = cn[static_cast<size_t>(j)];
      const double l = m->lower[j], u = m->upper[j];
      const bool bin = m->vartype && m->vartype[j] == 'B';
      if (l <= -kInf && u >= kInf) {
        o.put("FREE %8s\n", c.c_str());
        continue;
      }
      if (l != 0.0) o.put("SLB   %8s %s\n", c.c_str(), l <= -kInf ? "-inf" : knum(l).c_str());
      if (u != (bin ? 1.0 : kInf)) o.put("SUB   %s %s\n", c.c_str(), u >= kInf ? "+inf" : knum(u).c_str());
    }
    for (int j = 0; j < n; ++j)
      if (m->vartype && m->vartype[j] == 'I') o.put("GIN  %8s\n", cn[static_cast<size_t>(j)].c_str());
    for (int j = 0; j < n; ++j)
      if (m->vartype && m->vartype[j] == 'B') o.put("INT  %8s\n", cn[static_cast<size_t>(j)].c_str());
    if (m->rangeVal)
      for (int i = 0; i < nr; ++i)
        if (std::fabs(m->rangeVal[i]) < kInf && m->conType[i] != 'N')
          o.put("RANGE %s %s\n", rn[static_cast<size_t>(i)].c_str(), knum(m->rangeVal[i]).c_str());
    return 0;
  }
};

// Activity bounds of row i: lo <= a x <= hi.
void row_span(const Model *m, int i, double *lo, double *hi) {
  const double b = m->rhs[i];
  const double r = m->rangeVal ? m->rangeVal[i] : kInf;
  const bool ranged = std::fabs(r) < kInf;
  switch (m->conType[i]) {
    case 'L':
      *hi = b;
      *lo = ranged ? b - std::fabs(r) : -kInf;
      break;
    case 'G':
      *lo = b;
      *hi = ranged ? b + std::fabs(r) : kInf;
      break;
    case 'E':
      *lo = *hi = b;
      if (ranged) {
        if (r > 0) *hi = b + r;
        else *lo = b + r;
      }
      break;
    default:
      *lo = -kInf;
      *hi = kInf;
      break;
  }
}

}  // namespace

int korva_write(const Model *m, const char *path) {
  if (m->nQCNonz > 0 || m->nCones > 0 || m->nSets > 0 || m->nSC > 0 ||
      (m->instr && m->instr->codeLen > 0))
    return KXERR_NOT_SUPPORTED;
  KorvaWriter w{m, {}};
  w.o.s.reserve(static_cast<size_t>(m->nNonz) * 40 + 4096);
  KX_CALL(w.write());
  return w.o.save(path);
}

// The explicit dual of a linear model, loaded into an empty model `d`.
//
// For the primal  min (max) c x + c0,  lo_i <= a_i x <= hi_i,  l <= x <= u  the
// dual has one column per finite side of each row (Y_ for the upper side or an
// equation, YL_ for the lower side of a ranged row) and one per finite
// nonzero bound (BL_, BU_), and one row per primal column:
//     sum_i a_ij y_i + w_j + v_j  (rel)  c_j
// where a bound at 0 becomes the row's relation instead of a column.  Sides
// and bounds enter the dual objective with their values; the dual's sense is
// the opposite one and its constant is c0.
int dual_model(const Model *m, Model *d) {
  const int n = m->nVars, nr = m->nCons;
  const double s = m->objSense == -1 ? -1.0 : 1.0;  // +1 min, -1 max
  std::vector<std::string> pc, pr;
  text_names(m, kKorvaRules, pc, pr);

  std::vector<double> dc, dl, du;
  std::vector<std::string> names;
  std::vector<std::vector<std::pair<int, double>>> cols;  // dual column -> (dual row, coef)
  auto add_col = [&](const std::string &name, double obj, double l, double u) {
    names.push_back(name);
    dc.push_back(obj);
    dl.push_back(l);
    du.push_back(u);
    cols.emplace_back();
    return static_cast<int>(cols.size()) - 1;
  };
  // Row duals: an upper side has a multiplier of sign -s, a lower side +s.
  for (int i = 0; i < nr; ++i) {
    double lo, hi;
    row_span(m, i, &lo, &hi);
    const std::string &nm = pr[static_cast<size_t>(i)];
    if (lo > -kInf && hi < kInf && lo == hi) {
      add_col("Y_" + nm, lo, -kInf, kInf);
    } else {
      if (hi < kInf) add_col("Y_" + nm, hi, s > 0 ? -kInf : 0.0, s > 0 ? 0.0 : kInf);
      if (lo > -kInf)
        add_col((hi < kInf ? "YL_" : "Y_") + nm, lo, s > 0 ? 0.0 : -kInf, s > 0 ? kInf : 0.0);
    }
  }
  // Map each primal row to its dual columns (one or two), in the order made.
  std::vector<int> firstCol(static_cast<size_t>(nr) + 1, 0);
  {
    int c = 0;
    for (int i = 0; i < nr; ++i) {
      firstCol[static_cast<size_t>(i)] = c;
      double lo, hi;
      row_span(m, i, &lo, &hi);
      if (lo > -kInf && hi < kInf && lo == hi) c += 1;
      else c += (hi < kInf ? 1 : 0) + (lo > -kInf ? 1 : 0);
    }
    firstCol[static_cast<size_t>(nr)] = c;
  }
  for (int j = 0; j < n; ++j)
    for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; ++k) {
      const int i = m->Arow[k];
      for (int c = firstCol[static_cast<size_t>(i)]; c < firstCol[static_cast<size_t>(i) + 1]; ++c)
        cols[static_cast<size_t>(c)].push_back({j, m->Acoef[k]});
    }
  // Dual rows, one per primal column, with bound columns.
  std::vector<char> types(static_cast<size_t>(n) + 1, '\0');
  std::vector<double> rhs(static_cast<size_t>(n) + 1, 0.0);
  for (int j = 0; j < n; ++j) {
    const double l = m->lower[j], u = m->upper[j];
    const std::string &nm = pc[static_cast<size_t>(j)];
    bool slackLo = false, slackUp = false;
    if (l > -kInf) {
      if (l == 0.0) slackLo = true;
      else {
        add_col("BL_" + nm, l, s > 0 ? 0.0 : -kInf, s > 0 ? kInf : 0.0);
        cols.back().push_back({j, 1.0});
      }
    }
    if (u < kInf) {
      if (u == 0.0) slackUp = true;
      else {
        add_col("BU_" + nm, u, s > 0 ? -kInf : 0.0, s > 0 ? 0.0 : kInf);
        cols.back().push_back({j, 1.0});
      }
    }
    rhs[static_cast<size_t>(j)] = m->cost[j];
    // A bound at 0 leaves a free multiplier of one sign: the row becomes an inequality.
    char t = 'E';
    if (slackLo && slackUp) t = 'N';
    else if (slackLo) t = s > 0 ? 'L' : 'G';
    else if (slackUp) t = s > 0 ? 'G' : 'L';
    types[static_cast<size_t>(j)] = t;
  }
  const int dn = static_cast<int>(cols.size());
  std::vector<int> beg(static_cast<size_t>(dn) + 1, 0), rows;
  std::vector<double> vals;
  for (int c = 0; c < dn; ++c) {
    for (auto &e : cols[static_cast<size_t>(c)]) {
      rows.push_back(e.first);
      vals.push_back(e.second);
    }
    beg[static_cast<size_t>(c) + 1] = static_cast<int>(rows.size());
  }
  if (rows.empty()) {
    rows.push_back(0);
    vals.push_back(0.0);
  }
  if (dc.empty()) return KXERR_NO_MODEL_LOADED;
  KX_CALL(KXloadLPData(d, n, dn, m->objSense == -1 ? 1 : -1, m->objConst, dc.data(), rhs.data(),
                       types.data(), beg[static_cast<size_t>(dn)], beg.data(), nullptr,
                       vals.data(), rows.data(), dl.data(), du.data()));
  std::vector<char *> cnp(static_cast<size_t>(dn)), rnp(static_cast<size_t>(n) + 1);
  for (int c = 0; c < dn; ++c) cnp[static_cast<size_t>(c)] = names[static_cast<size_t>(c)].data();
  for (int j = 0; j < n; ++j) rnp[static_cast<size_t>(j)] = pc[static_cast<size_t>(j)].data();
  std::string title = std::string("DUAL_") + (m->modelName ? m->modelName : "");
  KX_CALL(kxi_load_names(d, title.c_str(), nullptr, nullptr, nullptr, nullptr,
                         n > 0 ? rnp.data() : nullptr, cnp.data(), nullptr));
  return 0;
}

}  // namespace kxi

extern "C" KX_API int KXwriteKORVAFile(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
    return kxi::korva_write(model, pszFname);
  });
}

extern "C" KX_API int KXwriteDualKORVAFile(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
    if (model->nQCNonz > 0 || model->nCones > 0 || (model->instr && model->instr->codeLen > 0))
      return KXERR_NOT_SUPPORTED;
    int rc = 0;
    pModel dual = KXcreateModel(model->env, &rc);
    if (!dual) return rc;
    try {
      kxi_log(model, "\nConstructing the explicit dual model...");
      rc = kxi::dual_model(model, dual);
      if (rc == 0) rc = kxi::korva_write(dual, pszFname);
    } catch (...) {
      KXdeleteModel(&dual);
      throw;
    }
    KXdeleteModel(&dual);
    return rc;
  });
}
