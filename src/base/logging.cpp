// Log sinks of environments and models, and the time/callback/interrupt checkpoint.
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <ctime>

#include "base/kx.h"

KXtime kx_now() {
  timespec c{}, w{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &c);
  clock_gettime(CLOCK_MONOTONIC, &w);
  return KXtime{c.tv_sec + 1e-9 * c.tv_nsec, w.tv_sec + 1e-9 * w.tv_nsec};
}

void internal_LOG(pModel model, char *text, void *userData) {
  if (!model || !model->userLogFunc) return;
  model->inCallback = model->cbLevel;
  model->userLogFunc(model, text, userData);
  model->inCallback = 0;
}

void kxi_log(Model *model, const char *fmt, ...) {
  if (!model || !model->logFunc) return;
  char buf[4096];
  va_list ap;
  va_start(ap, fmt);
  std::vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  model->logFunc(model, buf, model->logData);
}

void kxi_env_log(Env *env, const char *fmt, ...) {
  if (!env || !env->envLogFunc) return;
  char buf[4096];
  va_list ap;
  va_start(ap, fmt);
  std::vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  env->envLogFunc(env, buf, env->envLogData);
}

extern "C" KX_API int KXsetEnvLogfunc(pEnv env, KXenvLogfunc pfLogfunc, void *pvUserData) {
  if (!env) return KXERR_ILLEGAL_NULL_POINTER;
  env->envLogFunc = pfLogfunc;
  env->envLogData = pvUserData;
  return 0;
}

extern "C" KX_API int KXsetModelLogfunc(pModel model, KXmodelLogfunc pfLogfunc, void *pvUserData) {
  if (!model) return KXERR_ILLEGAL_NULL_POINTER;
  model->userLogFunc = pfLogfunc;
  model->logData = pvUserData;
  model->logFunc = pfLogfunc ? internal_LOG : nullptr;
  return 0;
}

// ---------------------------------------------------------------------------
// SIGINT: a process-wide flag set by the handler and polled by timelapsed.
namespace {
volatile std::sig_atomic_t g_interrupt = 0;

extern "C" void kx_sigint_handler(int) {
  g_interrupt = 1;
  std::signal(SIGINT, kx_sigint_handler);  // re-arm
}
}  // namespace

int kxi_interrupt_raised() { return g_interrupt != 0; }
void kxi_raise_interrupt() { g_interrupt = 1; }

extern "C" KX_API int KXresetctrlc(void) {
  g_interrupt = 0;
  std::signal(SIGINT, kx_sigint_handler);
  return 0;
}

int timelapsed(Model *model, KXtime start, int location, int forced, double limit) {
  KXtime now = kx_now();
  if (limit >= 0.0 && now.cpu - start.cpu >= limit) return 1;

  const SplexPam *sp = model->splexPam;
  double freq = sp ? sp->callbackFreq : 0.5;
  if (forced || now.wall - model->lastCallback.wall >= freq) {
    int stop = 0;
    bool passes = !(location == KX_CALLBACK_END && model->cutPool && model->cutPool->nCuts > 0 &&
                    model->mipsol != nullptr);
    if (passes) {
      if (model->cbFunc) {
        model->inCallback = model->cbLevel ? model->cbLevel : 1;
        stop |= model->cbFunc(model, location, model->cbData) != 0;
        model->inCallback = 0;
      }
      KXcallback second = model->cbFunc2;
      Model *owner = model;
      if (!second && model->parent) {
        second = model->parent->cbFunc;
        owner = model->parent;
      }
      if (second) {
        const int was = owner->inCallback;
        owner->inCallback = owner->cbLevel ? owner->cbLevel : 1;
        stop |= second(owner, location, owner->cbData) != 0;
        owner->inCallback = was;
      }
    }
    model->lastCallback = now;
    if (stop) return -1;
  }
  if (sp && sp->allowCtrlBreak && g_interrupt) {
    g_interrupt = 0;
    std::signal(SIGINT, kx_sigint_handler);
    return -2;
  }
  return 0;
}
