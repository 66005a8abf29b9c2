// The LP format writer: the form the LP reader takes, read back to the same
// data.  Numbers are written in their shortest exact text.  Every column is
// listed in the objective (zero costs included) when the rows alone would not
// meet the columns in their order, so that a reader that numbers columns as it
// meets them numbers them as the model does.  A ranged row is written as a
// double inequality, "lo <= expr <= hi" for an L row and "hi >= expr >= lo" for
// the others.
#include <cmath>
#include <string>
#include <vector>

#include "io/textio.h"

namespace kxi {
namespace {

constexpr double kInf = kx::kInfinity;

struct LpWriter {
  const Model *m;
  TextOut o;
  std::vector<std::string> cn, rn;
  size_t lineStart = 0;

  void wrap() {
    if (o.s.size() - lineStart > 72) {
      o.s += "\n  ";
      lineStart = o.s.size() - 3;
    }
  }
  void newline() {
    o.s += '\n';
    lineStart = o.s.size();
  }
  std::string val(double v) const {
    if (v >= kInf) return "+inf";
    if (v <= -kInf) return "-inf";
    return num_exact(v);
  }
  // " + 2 x", " - x"; the first term without a leading blank sign when positive.
  void term(double v, const std::string &name, bool first) {
    wrap();
    if (v < 0 || std::signbit(v)) o.s += first ? "- " : " - ";
    else if (!first) o.s += " + ";
    double a = std::fabs(v);
    if (a != 1.0) {
      o.s += num_exact(a);
      o.s += ' ';
    }
    o.s += name;
  }

  int write() {
    const int n = m->nVars, nr = m->nCons;
    text_names(m, kLpRules, cn, rn);
    std::vector<int> rbeg, rcol;
    std::vector<double> rval;
    model_rows(m, rbeg, rcol, rval);
    const bool allCols = !natural_column_order(m, rbeg, rcol);

    if (m->modelName && *m->modelName) o.put("\\ Problem name: %s\n", m->modelName);
    o.put("%s\n", m->objSense == -1 ? "Maximize" : "Minimize");
    // Objective name: kept when it fits and no row holds it.
    std::string obj = m->objName && *m->objName ? fit_name(m->objName, kLpRules) : "obj";
    bool clash = keyword_like(obj);
    for (const auto &r : rn) clash = clash || r == obj;
    if (clash) {
      std::string base = "obj";
      obj = base;
      for (int k = 1;; ++k) {
        bool taken = false;
        for (const auto &r : rn) taken = taken || r == obj;
        if (!taken) break;
        obj = base + "_" + std::to_string(k);
      }
    }
    lineStart = o.s.size();
    o.s += " " + obj + ":";
    bool first = true;
    for (int j = 0; j < n; ++j) {
      if (m->cost[j] == 0.0 && !allCols) continue;
      o.s += first ? " " : "";
      if (m->cost[j] == 0.0) {
        wrap();
        o.s += first ? "0 " : " + 0 ";
        o.s += cn[static_cast<size_t>(j)];
      } else {
        term(m->cost[j], cn[static_cast<size_t>(j)], first);
      }
      first = false;
    }
    if (m->objConst != 0.0) {
      wrap();
      o.s += first ? " " : " ";
      o.s += m->objConst < 0 ? "- " : (first ? "" : "+ ");
      o.s += num_exact(std::fabs(m->objConst));
    }
    newline();

    if (nr > 0) o.s += "Subject To\n";
    for (int i = 0; i < nr; ++i) {
      lineStart = o.s.size();
      o.s += " " + rn[static_cast<size_t>(i)] + ":";
      const char t = m->conType[i];
      const double b = m->rhs[i];
      const double r = m->rangeVal ? m->rangeVal[i] : kInf;
      const bool ranged = std::fabs(r) < kInf && (t == 'L' || t == 'G' || t == 'E');
      double lo = 0, hi = 0;
      bool lower = false;  // written as "hi >= expr >= lo"
      if (t == 'N') {
        lo = -kInf;
        hi = kInf;
        o.s += " -inf <=";
      } else if (ranged) {
        if (t == 'L') {
          lo = b - std::fabs(r);
          hi = b;
        } else if (t == 'G') {
          lo = b;
          hi = b + std::fabs(r);
          lower = true;
        } else if (r > 0) {
          lo = b;
          hi = b + r;
          lower = true;
        } else {
          lo = b + r;
          hi = b;
        }
        o.s += ' ';
        o.s += lower ? val(hi) : val(lo);
        o.s += lower ? " >=" : " <=";
      }
      const int k0 = rbeg[static_cast<size_t>(i)], k1 = rbeg[static_cast<size_t>(i) + 1];
      if (k0 == k1) o.s += " 0";
      for (int k = k0; k < k1; ++k) {
        if (k == k0) o.s += " ";
        term(rval[static_cast<size_t>(k)], cn[static_cast<size_t>(rcol[static_cast<size_t>(k)])],
             k == k0);
      }
      if (t == 'N') {
        o.s += " <= +inf";
      } else if (ranged) {
        o.s += lower ? " >= " + val(lo) : " <= " + val(hi);
      } else {
        o.s += t == 'L' ? " <= " : t == 'G' ? " >= " : " = ";
        o.s += val(b);
      }
      newline();
    }

    // Bounds.
    bool head = false;
    auto bound_line = [&](const std::string &text) {
      if (!head) o.s += "Bounds\n";
      head = true;
      o.s += " " + text + "\n";
    };
    for (int j = 0; j < n; ++j) {
      const std::string &c = cn[static_cast<size_t>(j)];
      double l = m->lower[j], u = m->upper[j];
      if (m->scPos && m->scPos[j]) l = m->scLower[m->scPos[j] - 1];
      const bool bin = m->vartype && m->vartype[j] == 'B';
      const double dl = 0.0, du = bin ? 1.0 : kInf;
      if (l == dl && u == du) continue;
      if (l == u) bound_line(c + " = " + val(l));
      else if (l <= -kInf && u >= kInf) bound_line(c + " free");
      else if (u == du) bound_line(c + " >= " + val(l));
      else if (l == dl) bound_line(c + " <= " + val(u));
      else bound_line(val(l) + " <= " + c + " <= " + val(u));
    }
    // Integer, binary and semi-continuous lists.
    auto list = [&](const char *title, auto pick) {
      bool any = false;
      for (int j = 0; j < n; ++j) {
        if (!pick(j)) continue;
        if (!any) {
          o.s += title;
          newline();
          o.s += " ";
        }
        any = true;
        wrap();
        o.s += " " + cn[static_cast<size_t>(j)];
      }
      if (any) newline();
    };
    list("Generals", [&](int j) { return m->vartype && m->vartype[j] == 'I'; });
    list("Binaries", [&](int j) { return m->vartype && m->vartype[j] == 'B'; });
    list("Semi-continuous", [&](int j) { return m->scPos && m->scPos[j] != 0; });
    if (m->nSets > 0) {
      o.s += "SOS\n";
      for (int s = 0; s < m->nSets; ++s) {
        lineStart = o.s.size();
        const int type = m->setType[s];
        if (type == 4)
          o.put(" SOS%d: C%d::", s + 1, m->setCard ? m->setCard[s] : 0);
        else
          o.put(" SOS%d: S%d::", s + 1, type);
        for (int k = 0; k < m->setLen[s]; ++k) {
          wrap();
          o.put(" %s:%d", cn[static_cast<size_t>(m->setVar[m->setBeg[s] + k])].c_str(), k + 1);
        }
        newline();
      }
    }
    o.s += "End\n";
    return 0;
  }
};

}  // namespace

int lp_write(const Model *m, const char *path) {
  if (m->nQCNonz > 0 || m->nCones > 0 || (m->instr && m->instr->codeLen > 0))
    return KXERR_NOT_SUPPORTED;
  LpWriter w{m, {}, {}, {}, 0};
  w.o.s.reserve(static_cast<size_t>(m->nNonz) * 16 + 4096);
  KX_CALL(w.write());
  return w.o.save(path);
}

}  // namespace kxi

extern "C" KX_API int KXwriteLPFile(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
    return kxi::lp_write(model, pszFname);
  });
}
