// The full solution report: banner, problem name, status, counters, the
// objective value, the tables of variables and constraints, and ranges.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "io/textio.h"

namespace kxi {
namespace {

const char *const kDashes = "* -----------------------------------------------------------------";

// A number in a field of 22: fixed with 9 decimals when that shows it well,
// else in exponent form with 14 digits.
std::string field(double v) {
  char b[64];
  if (v == 0.0) v = 0.0;  // no "-0.000000000"
  const double a = std::fabs(v);
  if (v == 0.0 || (a >= 1e-4 && a < 1e10))
    std::snprintf(b, sizeof b, "%22.9f", v);
  else
    std::snprintf(b, sizeof b, "%22.14e", v);
  return b;
}

const char *basis_word(int s) {
  if (s >= 0) return "BAS";
  switch (s) {
    case -1: return "ATLO";
    case -2: return "ATUP";
    case -3: return "FNUL";
    default: return "SBAS";
  }
}

int info_int(Model *m, int id) {
  int v = 0;
  if (KXgetInfo(m, id, &v) != 0) return 0;
  return v;
}

const char *model_kind(const Model *m, const SolutionView &v) {
  const bool nlp = m->instr && m->instr->codeLen > 0;
  const bool quad = m->nQCNonz > 0;
  const bool cone = m->nCones > 0;
  if (v.kind == KX_SOLTYPE_MIP) {
    if (nlp) return "MINLP";
    if (cone) return "MICONE";
    if (quad) return "MIQC";
    return "MILP";
  }
  if (nlp) return "NLP";
  if (cone) return "CONE";
  if (quad) return "QP";
  return v.kind == KX_SOLTYPE_IPM ? "LP_IPM" : "LP";
}

}  // namespace

int write_report(Model *m, const SolutionView &v, const char *path, bool ranges) {
  TextOut o;
  const int n = m->nVars, nr = m->nCons;
  // 1. Banner.
  o.put("%s", kDashes);
  o.put("\n*                    SOLUTION REPORT");
  o.put("\n* KORVA API Version %d.%d.%d.%d built on %s\n*", KX_VERSION_MAJOR, KX_VERSION_MINOR,
        KX_VERSION_BUILD, KX_VERSION_REVISION, __DATE__);
  o.put("\n* Korva optimization library: linear, integer, quadratic and nonlinear models\n");
  o.put("%s\n", kDashes);
  // 2. Name.
  if (m->modelName && *m->modelName)
    o.put("* PROBLEM NAME     %s\n* \n", m->modelName);
  else
    o.put("* PROBLEM NAME\n* \n");
  // 3. Status.
  const char *kind = model_kind(m, v);
  switch (v.status) {
    case KX_STATUS_OPTIMAL:
    case KX_STATUS_BASIC_OPTIMAL:
      o.put("*   %s GLOBAL OPTIMUM FOUND\n* \n", kind);
      break;
    case KX_STATUS_LOCAL_OPTIMAL: o.put("*   %s LOCAL OPTIMUM FOUND\n* \n", kind); break;
    case KX_STATUS_INFEASIBLE:
    case KX_STATUS_LOCAL_INFEASIBLE:
    case KX_STATUS_INFORUNB: o.put("*   %s SOLUTION INFEASIBLE\n* \n", kind); break;
    case KX_STATUS_UNBOUNDED: o.put("*   %s SOLUTION UNBOUNDED\n* \n", kind); break;
    case KX_STATUS_UNKNOWN: o.put("\n*  UNKNOWN MODEL\n"); break;
    default: o.put("*   %s SOLUTION MAY BE NONOPTIMAL\n* \n", kind); break;
  }
  // 4. Counters.
  const bool mip = v.kind == KX_SOLTYPE_MIP;
  if (!mip) {
    const Sol *s = m->sol;
    const int sim = s ? static_cast<int>(s->simIter) : 0;
    const int bar = s ? static_cast<int>(s->barIter) : 0;
    const int nlp = s ? static_cast<int>(s->nlpIter) : 0;
    const int secs = s ? static_cast<int>(s->elapsed.wall) : 0;
    o.put("*   ITERATIONS BY SIMPLEX METHOD = %11d\n", sim);
    o.put("*   ITERATIONS BY BARRIER METHOD = %11d\n", bar);
    o.put("*   ITERATIONS BY NLP METHOD     = %11d\n", nlp);
    o.put("*   TIME ELAPSED (s)             = %11d\n* \n", secs);
  } else {
    o.put("*   ITERATIONS BY SIMPLEX METHOD    = %11g\n",
          static_cast<double>(info_int(m, KX_IINFO_MIP_SIM_ITER)));
    o.put("*   ITERATIONS BY BARRIER METHOD    = %11g\n",
          static_cast<double>(info_int(m, KX_IINFO_MIP_BAR_ITER)));
    o.put("*   ITERATIONS BY NLP METHOD        = %11g\n",
          static_cast<double>(info_int(m, KX_IINFO_MIP_NLP_ITER)));
    double t = 0.0;
    KXgetInfo(m, KX_DINFO_MIP_TOT_TIME, &t);
    o.put("*   TIME ELAPSED (s)                = %11d\n", static_cast<int>(t));
    o.put("*   TOTAL BRANCHES CREATED          = %11d\n", info_int(m, KX_IINFO_MIP_BRANCHCOUNT));
    o.put("*   TOTAL NUMBER OF LPs SOLVED      = %11d\n", info_int(m, KX_IINFO_MIP_LPCOUNT));
    static const struct {
      const char *label;
      int id;
    } kCuts[] = {{"GOMORY", KX_IINFO_MIP_GOMORY_CUTS},
                 {"CONTRA", KX_IINFO_MIP_CONTRA_CUTS},
                 {"OBJECTIVE", KX_IINFO_MIP_OBJ_CUT},
                 {"GUB", KX_IINFO_MIP_GUB_COVER_CUTS},
                 {"LIFTING", KX_IINFO_MIP_LIFT_CUTS},
                 {"FLOW COVER", KX_IINFO_MIP_FLOW_COVER_CUTS},
                 {"GCD", KX_IINFO_MIP_GCD_CUTS},
                 {"CLIQUE", KX_IINFO_MIP_CLIQUE_CUTS},
                 {"DISAGGREGATION", KX_IINFO_MIP_DISAGG_CUTS},
                 {"PLANT LOCATION", KX_IINFO_MIP_PLAN_LOC_CUTS},
                 {"LATTICE", KX_IINFO_MIP_LATTICE_CUTS},
                 {"COEFF. REDUCTION", KX_IINFO_MIP_COEF_REDC_CUTS}};
    for (const auto &c : kCuts) {
      std::string label = std::string("NUMBER OF ") + c.label + " CUTS";
      o.put("*   %-32s= %11d\n", label.c_str(), info_int(m, c.id));
    }
    o.put("*   TOTAL NUMBER OF CUTS GENERATED  = %11d\n* \n", info_int(m, KX_IINFO_MIP_NUM_TOTAL_CUTS));
  }
  // 5. Objective.
  o.put("*   OBJECTIVE FUNCTION VALUE\n* \n");
  o.put("*    1)      %s\n* \n", field(v.obj).c_str());
  // 6. Variables.
  size_t w = 12;
  for (int j = 0; j < n; ++j) w = std::max(w, col_name(m, j).size());
  for (int i = 0; i < nr; ++i) w = std::max(w, row_name(m, i).size());
  const int iw = static_cast<int>(w);
  const bool basis = v.colstat && v.rowstat;
  o.put("* \n*   %-*s %22s %22s%s\n", iw, "VARIABLES", "VALUE", "REDUCED COST",
        basis ? "   BASIS STATUS" : "");
  o.put("* \n");
  for (int j = 0; j < n; ++j) {
    o.put("    %-*s %s %s", iw, col_name(m, j).c_str(), field(v.x[j]).c_str(),
          v.dj ? field(v.dj[j]).c_str() : field(0.0).c_str());
    if (basis) o.put("   %s", basis_word(v.colstat[j]));
    o.put("\n");
  }
  o.put("* \n");
  // 7. Constraints.
  bool duals = v.y != nullptr;
  if (mip && !duals) {
    // The dual values of an integer solution come from the LP with the
    // integers fixed, which this report does not solve.
    kxi_log(m, "\nComputing dual solution.\n\n");
    o.put("\n*  Error %d in computing dual solution.\n", KXERR_INFO_NOT_AVAILABLE);
    o.put("*  Computation of dual solution is skipped.\n* \n");
  }
  o.put("* \n*   %-*s %22s %22s%s\n", iw, "CONSTRAINTS", "SLACK OR SURPLUS", "DUAL PRICES",
        basis ? "   BASIS STATUS" : "");
  o.put("* \n");
  for (int i = 0; i < nr; ++i) {
    o.put("    %-*s %s %s", iw, row_name(m, i).c_str(),
          v.slack ? field(v.slack[i]).c_str() : field(0.0).c_str(),
          duals ? field(v.y[i]).c_str() : field(0.0).c_str());
    if (basis) o.put("   %s", basis_word(v.rowstat[i]));
    o.put("\n");
  }
  o.put("* \n");
  // 8. Ranges.
  if (ranges) {
    o.put("\n*\n* OBJECTIVE COEFFICIENT RANGES (%g secs)\n*\n", 0.0);
    o.put("*   %-*s %22s %22s %22s\n", iw, "VARIABLES", "CURRENT", "ALLOWABLE", "ALLOWABLE");
    o.put("*   %-*s %22s %22s %22s\n", iw, "", "COEFF.", "INCREASE", "DECREASE");
    o.put("\n*  Error %d occured while writing solution report.\n", KXERR_NOT_SUPPORTED);
    o.put("*  Error Message: %s.\n", "ranges are not available in this build");
    o.put("\n*\n* RIGHTHAND SIDE RANGES (%g secs)\n*\n", 0.0);
    o.put("*   %-*s %22s %22s %22s\n", iw, "CONSTRAINTS", "CURRENT", "ALLOWABLE", "ALLOWABLE");
    o.put("*   %-*s %22s %22s %22s\n", iw, "", "RHS", "INCREASE", "DECREASE");
    o.put("\n*  Error %d occured while writing solution report.\n", KXERR_NOT_SUPPORTED);
    o.put("*  Error Message: %s.\n", "ranges are not available in this build");
  }
  o.put("\n* END OF REPORT\n");
  return o.save(path);
}

}  // namespace kxi
