// Model: creation, deletion, clearing and the release of its memories.
#include <cstdlib>
#include <cstring>

#include "base/kx.h"
#include "base/outside.h"
#include "presolve/presolve.h"

namespace {

// Link or unlink under the environment's mutex when it works; unlocked otherwise.
struct ListLock {
  Env *env;
  bool locked = false;
  explicit ListLock(Env *e) : env(e) {
    if (env->mutexReady && pthread_mutex_lock(env->mutex) == 0) locked = true;
  }
  ~ListLock() {
    if (locked) pthread_mutex_unlock(env->mutex);
  }
};

template <class T>
int copy_block(T **dst, const T *src) {
  *dst = static_cast<T *>(std::malloc(sizeof(T)));
  if (!*dst) return kx::kErrMemory;
  std::memcpy(*dst, src, sizeof(T));
  return 0;
}

void free_model_record(Model *m) {
  std::free(m->solverPam);
  std::free(m->splexPam);
  std::free(m->bandBPam);
  std::free(m->nlpPam);
  std::free(m->gopPam);
  std::free(m->iisPam);
  std::free(m->stocPam);
  std::free(m->stocState);
  std::free(m);
}

}  // namespace

int KXinitializeModel(Model *model) {
  model->modelState = KX_STATUS_UNLOADED;
  model->objSense = 1;
  model->rowScaleFactor = model->colScaleFactor = model->nnzScaleFactor = 1.0;
  model->solveStart = model->lastCallback = kx_now();
  kxp_init_model_fields(model);
  model->cutPool = static_cast<CutPool *>(std::calloc(1, sizeof(CutPool)));
  return model->cutPool ? 0 : kx::kErrMemory;
}

void kxi_free_sol(Sol *&sol) {
  if (!sol) return;
  std::free(sol->colstat);
  std::free(sol->rowstat);
  std::free(sol->x);  // x and dj share one block
  std::free(sol->y);  // y and slack share one block
  std::free(sol->xIpm);
  std::free(sol->yIpm);
  std::free(sol);
  sol = nullptr;
}

int kxi_ensure_sol(Model *model) {
  Sol *s = model->sol;
  int n = model->nVars, m = model->nCons;
  if (s && s->nColsAlloc >= n && s->nRowsAlloc >= m && (n == 0 || s->x) && (m == 0 || s->y))
    return 0;
  kxi_free_sol(model->sol);
  s = static_cast<Sol *>(std::calloc(1, sizeof(Sol)));
  if (!s) return kx::kErrMemory;
  model->sol = s;
  s->model_status = KX_STATUS_UNKNOWN;
  s->basic_status = s->ipm_status = s->primal_status = KX_STATUS_UNLOADED;
  s->dual_status = KX_STATUS_UNLOADED;
  s->method = 0;
  int n1 = n > 0 ? n : 1, m1 = m > 0 ? m : 1;
  if (IntCalloc(&s->colstat, n1, KX_HERE) || IntCalloc(&s->rowstat, m1, KX_HERE) ||
      DoubleCalloc(&s->x, 2L * n1, KX_HERE) || DoubleCalloc(&s->y, 2L * m1, KX_HERE) ||
      DoubleCalloc(&s->xIpm, 2L * n1, KX_HERE) || DoubleCalloc(&s->yIpm, 2L * m1, KX_HERE)) {
    kxi_free_sol(model->sol);
    return kx::kErrMemory;
  }
  s->dj = s->x + n1;
  s->slack = s->y + m1;
  s->djIpm = s->xIpm + n1;
  s->slackIpm = s->yIpm + m1;
  s->nColsAlloc = n;
  s->nRowsAlloc = m;
  return 0;
}

int kxi_free_solver_memory(Model *model) {
  if (model->glp) kxi_release_glp(model);
  kxi_delete_external_task(model);
  model->extTask = nullptr;
  return 0;
}

int kxi_clear_model(Model *model) {
  kxi_free_sol(model->sol);
  if (model->mipsol) {
    std::free(model->mipsol->x);
    kx_free(model->mipsol);
  }
  if (model->gopsol) {
    std::free(model->gopsol->x);
    kx_free(model->gopsol);
  }
  if (model->iis) kx_free(model->iis);
  if (model->ius) kx_free(model->ius);
  model->bindingHandles = nullptr;
  kxi_free_solver_memory(model);
  if (model->presolved || model->poststack) gen_free_presolve(model);
  if (model->cutPool) std::memset(model->cutPool, 0, sizeof(CutPool));
  if (model->stocPam) kxp_init_stoc_pam(model);  // stochastic settings back to defaults
  if (model->stocState) std::memset(model->stocState, 0, sizeof(StocState));
  if (model->instr) {
    std::free(model->instr->code);
    kx_free(model->instr);
  }
  kxi_clear_extended(model);

  kx_free(model->Acoef);
  kx_free(model->Abeg);
  kx_free(model->Alen);
  kx_free(model->Arow);
  kx_free(model->rhs);
  kx_free(model->cost);
  kx_free(model->lower);
  kx_free(model->upper);
  kx_free(model->conType);
  kx_free(model->rangeVal);
  model->nCons = model->nVars = model->nnzAlloc = model->nNonz = 0;
  model->nConsAlloc = model->nVarsAlloc = 0;
  model->objSense = 1;
  model->objConst = 0.0;
  model->stats = ModelStats{};
  model->errRecord = ErrRecord{};
  model->modelState = KX_STATUS_UNLOADED;
  return 0;
}

extern "C" KX_API pModel KXcreateModel(pEnv env, int *pnErrorcode) {
  return kx::guard_handle<pModel>(pnErrorcode, [&]() -> pModel {
    if (!env) {
      if (pnErrorcode) *pnErrorcode = KXERR_ILLEGAL_NULL_POINTER;
      return nullptr;
    }
    Model *m = static_cast<Model *>(std::calloc(1, sizeof(Model)));
    if (!m) {
      if (pnErrorcode) *pnErrorcode = kx::kErrMemory;
      return nullptr;
    }
    m->env = env;
    int rc = KXinitializeModel(m);
    ModelListNode *node = nullptr;
    if (rc == 0) {
      node = static_cast<ModelListNode *>(std::malloc(sizeof(ModelListNode)));
      if (!node) rc = kx::kErrMemory;
    }
    if (rc == 0) {
      ListLock lock(env);
      node->model = m;
      node->next = env->modelList;
      env->modelList = node;
    }
    if (rc == 0) rc = copy_block(&m->solverPam, env->solverPam);
    if (rc == 0) rc = copy_block(&m->splexPam, env->splexPam);
    if (rc == 0) rc = copy_block(&m->bandBPam, env->bandBPam);
    if (rc == 0) rc = copy_block(&m->nlpPam, env->nlpPam);
    if (rc == 0) rc = copy_block(&m->gopPam, env->gopPam);
    if (rc == 0) rc = copy_block(&m->iisPam, env->iisPam);
    if (rc == 0) {
      m->stocPam = static_cast<StocPam *>(std::calloc(1, sizeof(StocPam)));
      m->stocState = static_cast<StocState *>(std::calloc(1, sizeof(StocState)));
      if (!m->stocPam || !m->stocState) rc = kx::kErrMemory;
      else kxp_init_stoc_pam(m);
    }
    if (rc != 0) {
      if (node) {
        KXdeleteModel(&m);
      } else {
        std::free(m->cutPool);
        free_model_record(m);
      }
      if (pnErrorcode) *pnErrorcode = rc;
      return nullptr;
    }
    if (pnErrorcode) *pnErrorcode = 0;
    return m;
  });
}

extern "C" KX_API int KXdeleteModel(pModel *ppModel) {
  return kx::guard([&]() -> int {
    if (!ppModel || !*ppModel) return 0;
    Model *m = *ppModel;
    Env *env = m->env;
    ModelListNode *found = nullptr;
    {
      ListLock lock(env);
      for (ModelListNode **pp = &env->modelList; *pp; pp = &(*pp)->next) {
        if ((*pp)->model == m) {
          found = *pp;
          *pp = found->next;
          break;
        }
      }
    }
    if (!found) return KXERR_INTERNAL_ERROR;
    int rc = kxi_clear_model(m);
    if (rc != 0) {
      ListLock lock(env);
      found->next = env->modelList;
      env->modelList = found;
      return rc;
    }
    std::free(m->cutPool);
    free_model_record(m);
    std::free(found);
    *ppModel = nullptr;
    return 0;
  });
}

extern "C" KX_API int KXclearModel(pModel model) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi_clear_model(model);
  });
}

extern "C" KX_API int KXfreeSolverMemory(pModel model) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi_free_solver_memory(model);
  });
}

extern "C" KX_API int KXfreeSolutionMemory(pModel model) {
  if (!model) return KXERR_ILLEGAL_NULL_POINTER;
  kxi_free_sol(model->sol);
  return 0;
}

extern "C" KX_API int KXfreeMIPSolutionMemory(pModel model) {
  if (!model) return KXERR_ILLEGAL_NULL_POINTER;
  if (model->mipsol) {
    std::free(model->mipsol->x);
    kx_free(model->mipsol);
  }
  return 0;
}

extern "C" KX_API int KXfreeGOPSolutionMemory(pModel model) {
  if (!model) return KXERR_ILLEGAL_NULL_POINTER;
  if (model->gopsol) {
    std::free(model->gopsol->x);
    kx_free(model->gopsol);
  }
  return 0;
}

extern "C" KX_API int KXfreeHashMemory(pModel model) {
  if (!model) return KXERR_ILLEGAL_NULL_POINTER;
  kxi_free_name_hashes(model);
  return 0;
}
