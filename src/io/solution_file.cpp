// The compact solution file, the choice between it and the full report, and
// the public calls that write solutions.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "io/textio.h"

namespace kxi {

std::string col_name(const Model *m, int j) {
  if (m->varNames && m->varNames[j] && m->varNames[j][0]) return m->varNames[j];
  return col_fallback(j);
}

std::string row_name(const Model *m, int i) {
  if (m->conNames && m->conNames[i] && m->conNames[i][0]) return m->conNames[i];
  return row_fallback(i);
}

int solution_view(Model *m, int kind, SolutionView &v) {
  if (kind < KX_SOLTYPE_DEFAULT || kind > KX_SOLTYPE_MIP) return KXERR_PARAMETER_OUT_OF_RANGE;
  if (m->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
  v.integer = m->nBin + m->nInt > 0 || m->nSets > 0 || m->nSC > 0;
  const bool haveMip = m->mipsol && m->mipsol->x && m->mipsol->n == m->nVars;
  if (kind == KX_SOLTYPE_DEFAULT) kind = v.integer && haveMip ? KX_SOLTYPE_MIP : KX_SOLTYPE_BASIC;
  v.kind = kind;
  const Sol *s = m->sol;
  if (kind == KX_SOLTYPE_MIP) {
    if (!haveMip) return KXERR_INFO_NOT_AVAILABLE;
    v.status = m->mipsol->MIPstatus;
    v.obj = m->mipsol->obj;
    v.x = m->mipsol->x;
    // Row activities of the point: slack = b - a x, as the LP solution keeps it.
    v.slackOwn.assign(m->rhs, m->rhs + m->nCons);
    for (int j = 0; j < m->nVars; ++j)
      for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; ++k)
        v.slackOwn[static_cast<size_t>(m->Arow[k])] -= m->Acoef[k] * v.x[j];
    v.slack = v.slackOwn.data();
    return 0;
  }
  if (!s || s->model_status == KX_STATUS_LOADED || s->model_status == KX_STATUS_UNLOADED ||
      !s->x)
    return KXERR_INFO_NOT_AVAILABLE;
  if (kind == KX_SOLTYPE_IPM) {
    if (!s->xIpm) return KXERR_INFO_NOT_AVAILABLE;
    v.status = s->ipm_status ? s->ipm_status : s->model_status;
    v.x = s->xIpm;
    v.dj = s->djIpm;
    v.y = s->yIpm;
    v.slack = s->slackIpm;
    double obj = m->objConst;
    for (int j = 0; j < m->nVars; ++j) obj += m->cost[j] * v.x[j];
    v.obj = obj;
    return 0;
  }
  v.status = s->model_status;
  v.obj = s->pobj;
  v.x = s->x;
  v.dj = s->dj;
  v.y = s->y;
  v.slack = s->slack;
  if (s->colstat && s->rowstat && s->basic_status != KX_STATUS_UNLOADED) {
    v.colstat = s->colstat;
    v.rowstat = s->rowstat;
  }
  return 0;
}

int write_compact(Model *m, const SolutionView &v, const char *path) {
  TextOut o;
  const char *type = v.integer ? "MIP" : "LP";
  if (v.status == KX_STATUS_OPTIMAL || v.status == KX_STATUS_BASIC_OPTIMAL)
    o.put("SOLUTION %s (OPTIMAL)\n", type);
  else if (v.status == KX_STATUS_INFEASIBLE)
    o.put("SOLUTION  %s (INFEASIBLE)\n", type);
  else if (v.status == KX_STATUS_UNBOUNDED)
    o.put("SOLUTION %s (UNBOUNDED)\n", type);
  else
    o.put("SOLUTION %s \n", type);
  if (m->modelName && *m->modelName)
    o.put("PROBLEM NAME        %s\n", m->modelName);
  else
    o.put("PROBLEM NAME        \n");
  o.put("OBJECTIVE VALUE     %16.10e\n", v.obj);
  o.put("\n\nNUMBER  ......COLUMNS...... AT ...ACTIVITY...\n");
  const double tol = m->splexPam ? m->splexPam->feasTol : kx::kFeasTol;
  for (int j = 0; j < m->nVars; ++j) {
    std::string nm = col_name(m, j);
    if (nm.size() > 12) nm.resize(12);
    const double x = v.x[j];
    const char *st = "EQ";
    if (!m->vartype || m->vartype[j] == 'C') {
      if (std::fabs(x - m->lower[j]) <= tol) st = "LL";
      else if (std::fabs(x - m->upper[j]) <= tol) st = "UL";
      else st = "BS";
    }
    o.put("%6u  %-20s%2s   %16.10e\n", static_cast<unsigned>(j + 1), nm.c_str(), st, x);
  }
  return o.save(path);
}

namespace {

int write_solution(Model *m, const char *path, int kind) {
  SolutionView v;
  KX_CALL(solution_view(m, kind, v));
  kxi_log(m, "\n\nWriting model solution.\n");
  switch (m->solReportStyle) {
    case KX_SOLREPORT_COMPACT: return write_compact(m, v, path);
    case KX_SOLREPORT_RANGES: return write_report(m, v, path, true);
    default: return write_report(m, v, path, false);
  }
}

}  // namespace
}  // namespace kxi

extern "C" KX_API int KXwriteSolution(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi::write_solution(model, pszFname, KX_SOLTYPE_DEFAULT);
  });
}

extern "C" KX_API int KXwriteSolutionOfType(pModel model, const char *pszFname, int nType) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi::write_solution(model, pszFname, nType);
  });
}
