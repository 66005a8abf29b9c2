// gen_pre: builds the lpdata view of a model, runs the loop of passes selected by
// the mask, and writes the reduced model and the renumbering record.
#include <algorithm>
#include <new>

#include "presolve/genpre.h"
#include "presolve/report.h"

namespace {

constexpr int kMaxRounds = 60;
constexpr double kDropTol = 1e-13;  // entries this small are zeros of the view

struct LoopCtx {
  KXtime start;
  double limit;
  int printLevel;
};

int time_check(GenPre &g, const LoopCtx &c) {
  int t = timelapsed(g.model, c.start, KX_CALLBACK_PRESOLVE, 0, c.limit);
  if (t < 0) return 4;
  if (t > 0) return 5;
  return 0;
}

// The loop of passes.  Returns a pass code, or 4 / 5 for a stop / the time limit.
int gen_pre_loop(GenPre &g, const LoopCtx &c) {
  lpdata &lp = g.lp;
  const int mask = g.mask;
  bool anyFree = false;
  for (int i = 0; i < lp.m; ++i) {
    if (lp.rowLive[i] && pre_inf(lp.rl[i]) && pre_inf(lp.ru[i])) {
      genpre_delete_row(g, i);
      anyFree = true;
    }
  }
  if (anyFree) print_newsize(g, c.printLevel, "sp1", c.start);
  auto simple = [&]() -> int {
    if (!(mask & kPreSimple)) return kPassNone;
    int rc = simple_spre(g);
    if (rc == kPassChanged) print_newsize(g, c.printLevel, "sp1", c.start);
    return rc;
  };
  int rc = simple();
  if (rc == kPassInfeasible || rc < 0) return rc;
  int dupRowRuns = 0, dupRowAllowed = 2;
  for (int round = 0; round < kMaxRounds; ++round) {
    int changed = kPassNone;
    if (mask & kPreDualFix) {
      rc = genpre_dual_fixing(g);
      if (rc == kPassInfeasible || rc < 0) return rc;
      if (rc == kPassChanged) {
        print_newsize(g, c.printLevel, "sdb", c.start);
        changed = rc;
      }
    }
    if (!changed && (mask & kPreDupRows) && dupRowRuns <= dupRowAllowed) {
      dupRowRuns++;
      rc = genpre_dup_row(g);
      if (rc == kPassInfeasible || rc < 0) return rc;
      if (rc == kPassChanged) {
        print_newsize(g, c.printLevel, "drp", c.start);
        changed = rc;
      }
    }
    if (!changed && (mask & kPreDupCols)) {
      rc = genpre_dup_col(g);
      if (rc == kPassInfeasible || rc < 0) return rc;
      if (rc == kPassChanged) {
        print_newsize(g, c.printLevel, "dcp", c.start);
        changed = rc;
      }
    }
    if (!changed && (mask & kPreEliminate)) {
      rc = genpre_eliminator(g);
      if (rc == kPassInfeasible || rc < 0) return rc;
      if (rc == kPassChanged) {
        print_newsize(g, c.printLevel, "eli", c.start);
        dupRowAllowed = dupRowRuns + 2;
        changed = rc;
      }
    }
    if (int t = time_check(g, c)) return t;
    if (!changed) break;
    rc = simple();
    if (rc == kPassInfeasible || rc < 0) return rc;
  }
  return kPassNone;
}

void write_renumbering(PostStack *ps, const std::vector<int> &rowMap,
                       const std::vector<int> &colMap) {
  get_post_stack_space(ps, rowMap.size() + colMap.size() + 6, 0);
  ps_begin(ps);
  for (int i : rowMap) ps_int(ps, i);
  for (int j : colMap) ps_int(ps, j);
  ps_int(ps, static_cast<int>(rowMap.size()));
  ps_int(ps, static_cast<int>(colMap.size()));
  ps_end(ps, kPsRenumber);
}

unsigned long long mix(unsigned long long h, unsigned long long v) {
  h ^= v + 0x9E3779B97F4A7C15ull + (h << 6) + (h >> 2);
  return h;
}
unsigned long long mix_d(unsigned long long h, double d) {
  unsigned long long v;
  static_assert(sizeof v == sizeof d);
  __builtin_memcpy(&v, &d, sizeof v);
  return mix(h, v);
}

// A fingerprint of the LP data of a model.
unsigned long long model_fingerprint(const Model *m) {
  unsigned long long h = mix(0, static_cast<unsigned long long>(m->nCons));
  h = mix(h, static_cast<unsigned long long>(m->nVars));
  h = mix(h, static_cast<unsigned long long>(m->objSense + 2));
  h = mix_d(h, m->objConst);
  for (int i = 0; i < m->nCons; ++i) {
    h = mix_d(h, m->rhs[i]);
    h = mix(h, static_cast<unsigned char>(m->conType[i]));
    if (m->rangeVal) h = mix_d(h, m->rangeVal[i]);
  }
  for (int j = 0; j < m->nVars; ++j) {
    h = mix_d(h, m->cost[j]);
    h = mix_d(h, m->lower[j]);
    h = mix_d(h, m->upper[j]);
    const int b = m->Abeg[j], e = b + m->Alen[j];
    for (int k = b; k < e; ++k) {
      h = mix(h, static_cast<unsigned long long>(m->Arow[k]));
      h = mix_d(h, m->Acoef[k]);
    }
  }
  return h;
}

int run(Model *model, Model **reduced_out, PostStack *ps, int mask, int print_level, int fill,
        double limit, int *status_out, int pre_kind) {
  const SplexPam *sp = model->splexPam;
  ps->stack_i.clear();
  ps->stack_r.clear();
  ps->nRecords = 0;
  ps->nRows = model->nCons;
  ps->nCols = model->nVars;
  ps->mask = mask;
  ps->preKind = pre_kind;
  ps->keepDual = (pre_kind == 0 || pre_kind == 2) ? 1 : 0;
  ps->sense = model->objSense < 0 ? -1.0 : 1.0;
  ps->verdict = kPreNoChange;
  ps->redRows = model->nCons;
  ps->redCols = model->nVars;
  ps->redNnz = model->nNonz;
  ps->preLevel = mask;
  ps->fingerprint = model_fingerprint(model);
  if (mask <= 0 || kxi_has_quadratic(model) || model->nConeNonz > 0 || model->nVars == 0)
    return 0;

  GenPre g;
  g.model = model;
  g.ps = ps;
  g.mask = mask;
  g.fill = fill < 0 ? 0 : fill;
  g.feasTol = std::max(1e-10, sp->feasTol);
  g.optTol = std::max(1e-10, sp->optTol);
  g.drop = kDropTol;
  KX_CALL(lpdata_build(g.lp, model, kDropTol));
  get_post_stack_space(ps, 3L * (model->nVars + model->nCons), 3L * (model->nVars + model->nCons));
  const int m = g.lp.m, n = g.lp.n;
  g.rowMarked.assign(m, 0);
  g.colMarked.assign(n, 0);
  for (int j = n - 1; j >= 0; --j) gp_mark_col(g, j);
  for (int i = m - 1; i >= 0; --i) gp_mark_row(g, i);

  LoopCtx c{kx_now(), limit, print_level};
  if (print_level > 0 && model->logFunc)
    kxi_log(model, "\n\ntpre       ncons      nvars         nnzA      time");
  int rc = gen_pre_loop(g, c);
  if (rc == 4) return KXERR_USER_INTERRUPT;
  if (rc == 5) return KXERR_TIME_LIMIT;
  if (rc == kPassInfeasible || rc == kPassUnbounded) {
    ps->verdict = rc == kPassInfeasible ? kPreInfeasible : kPreUnbounded;
    *status_out = ps->verdict;
    return 0;
  }
  if (!g.removedSomething) return 0;

  std::vector<int> rowMap, colMap;
  Model *red = nullptr;
  KX_CALL(setup_red_model(g.lp, model, &red, rowMap, colMap));
  write_renumbering(ps, rowMap, colMap);
  // The sizes that the info calls report are those of the model handed on.
  ps->redRows = red->nCons;
  ps->redCols = red->nVars;
  ps->redNnz = red->nNonz;
  ps->verdict = (rowMap.empty() && colMap.empty()) ? kPreSolved : kPreReduced;
  *status_out = ps->verdict;
  *reduced_out = red;
  return 0;
}

}  // namespace

int gen_pre(Model *model, Model **reduced_out, PostStack *ps, int mask, int print_level,
            int fill, double limit, int *status_out, int pre_kind) {
  if (!model || !reduced_out || !ps || !status_out) return KXERR_ILLEGAL_NULL_POINTER;
  *reduced_out = nullptr;
  *status_out = kPreNoChange;
  try {
    int rc = run(model, reduced_out, ps, mask, print_level, fill, limit, status_out, pre_kind);
    if (rc != 0) {
      if (*reduced_out) KXdeleteModel(reduced_out);
      *status_out = kPreNoChange;
      ps->verdict = kPreNoChange;
    }
    return rc;
  } catch (const std::bad_alloc &) {
    if (*reduced_out) KXdeleteModel(reduced_out);
    *status_out = kPreNoChange;
    return kx::kErrMemory;
  }
}

void genpre_reduced_size(const PostStack *ps, int *nCons, int *nVars, int *nNonz) {
  if (nCons) *nCons = ps->redRows;
  if (nVars) *nVars = ps->redCols;
  if (nNonz) *nNonz = ps->redNnz;
}

int genpre_verdict(const PostStack *ps) { return ps->verdict; }

bool gen_presolve_is_current(const Model *model, int level) {
  const PostStack *ps = model->poststack;
  return ps && ps->preLevel == level && ps->nRows == model->nCons && ps->nCols == model->nVars &&
         ps->fingerprint == model_fingerprint(model);
}

void gen_free_presolve(Model *model) {
  if (!model) return;
  if (model->presolved) KXdeleteModel(&model->presolved);
  model->presolved = nullptr;
  deallocate_poststack(&model->poststack);
}
