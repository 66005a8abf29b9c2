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
    rc = KXgetDualModel(model, dual);  // guarded: never throws
    if (rc == 0) rc = kxi::korva_write(dual, pszFname);
    KXdeleteModel(&dual);
    return rc;
  });
}
