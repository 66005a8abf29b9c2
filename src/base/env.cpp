// Environment: creation, deletion and the list of its models.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/kx.h"
#include "base/outside.h"

namespace {

void free_env_record(Env *env) {
  if (!env) return;
  if (env->mutex) {
    if (env->mutexReady) pthread_mutex_destroy(env->mutex);
    std::free(env->mutex);
  }
  std::free(env->msgText);
  std::free(env->msgIndex);
  std::free(env->solverPam);
  std::free(env->splexPam);
  std::free(env->bandBPam);
  std::free(env->nlpPam);
  std::free(env->gopPam);
  std::free(env->iisPam);
  std::free(env->commonPam);
  std::free(env);
}

int create_env(Env **out) {
  *out = nullptr;
  Env *env = static_cast<Env *>(std::calloc(1, sizeof(Env)));
  if (!env) return kx::kErrMemory;

  env->mutex = static_cast<pthread_mutex_t *>(std::calloc(1, sizeof(pthread_mutex_t)));
  if (!env->mutex) {
    free_env_record(env);
    return kx::kErrMemory;
  }
  env->mutexReady = pthread_mutex_init(env->mutex, nullptr) == 0 ? 1 : 0;

  // The message file: CKORVA names its folder, joined with a backslash on every
  // platform; without it the file is looked for in the working directory.
  const char *dir = std::getenv("CKORVA");
  char *path = nullptr;
  int rc;
  if (dir) {
    size_t len = std::strlen(dir) + 12;
    path = static_cast<char *>(std::malloc(len));
    if (!path) {
      free_env_record(env);
      return kx::kErrMemory;
    }
    std::snprintf(path, len, "%s\\%s", dir, "kxerr.txt");
    rc = KXsetErrorMessages(&env->msgTextCap, &env->msgTextUsed, &env->msgIndex, &env->msgText,
                            path);
    std::free(path);
  } else {
    rc = KXsetErrorMessages(&env->msgTextCap, &env->msgTextUsed, &env->msgIndex, &env->msgText,
                            "kxerr.txt");
  }
  if (rc == 0) rc = KXloadSolverPam(&env->solverPam);
  if (rc == 0) rc = KXloadSplexPam(&env->splexPam);
  if (rc == 0) rc = KXinitBandBPam(&env->bandBPam);
  if (rc == 0) rc = KXloadNLPPam(&env->nlpPam);
  if (rc == 0) rc = KXinitGOPPam(&env->gopPam);
  if (rc == 0) rc = KXinitIISPam(&env->iisPam);
  if (rc == 0) rc = KXinitCommonPam(&env->commonPam);
  if (rc != 0) {
    free_env_record(env);
    return rc == 1 ? kx::kErrMemory : rc;
  }
  env->envInfinity = kx::kInfinity;
  // No barrier library is bound: the barrier environment and the outside solver
  // table stay null, and the interior-point defaults are the built-in ones.
  env->barrierEnv = nullptr;
  env->externalSolver = nullptr;
  *out = env;
  return 0;
}

}  // namespace

extern "C" KX_API pEnv KXcreateEnv(int *pnErrorcode) {
  return kx::guard_handle<pEnv>(pnErrorcode, [&]() -> pEnv {
    Env *env = nullptr;
    int rc = create_env(&env);
    if (pnErrorcode) *pnErrorcode = rc;
    return env;
  });
}

extern "C" KX_API int KXdeleteEnv(pEnv *ppEnv) {
  return kx::guard([&]() -> int {
    if (!ppEnv || !*ppEnv) return KXERR_ILLEGAL_NULL_POINTER;
    Env *env = *ppEnv;
    for (ModelListNode *n = env->modelList; n; n = n->next) kxi_free_solver_memory(n->model);
    while (env->modelList) {
      Model *m = env->modelList->model;
      int rc = KXdeleteModel(&m);
      if (rc != 0) return rc;
    }
    // The outside solver's own destructor runs before its table is freed.
    KXdeleteExternalSolver(env);
    free_env_record(env);
    *ppEnv = nullptr;
    return 0;
  });
}
