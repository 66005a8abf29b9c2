// Reading and setting parameters at the environment and model levels, their
// published ranges and log texts.  One getter and one setter interpret the
// registry rows; the exported calls are shells around them.
#include <cmath>
#include <cstring>

#include "base/kx.h"
#include "base/outside.h"

namespace {

constexpr int kOk = 0;
constexpr int kNull = KXERR_ILLEGAL_NULL_POINTER;
constexpr int kNotAvailable = KXERR_INFO_NOT_AVAILABLE;
constexpr int kCannotSet = KXERR_UNABLE_TO_SET_PARAM;
constexpr int kOutOfRange = KXERR_PARAMETER_OUT_OF_RANGE;

// The record that holds a row's member: at the environment when model is null.
char *record_of(const ParamDef &d, Env *env, Model *model) {
  if (!model) {
    switch (d.block) {
      case ParamBlock::Solver: return reinterpret_cast<char *>(env->solverPam);
      case ParamBlock::Splex: return reinterpret_cast<char *>(env->splexPam);
      case ParamBlock::BandB: return reinterpret_cast<char *>(env->bandBPam);
      case ParamBlock::NLP: return reinterpret_cast<char *>(env->nlpPam);
      case ParamBlock::GOP: return reinterpret_cast<char *>(env->gopPam);
      case ParamBlock::IIS: return reinterpret_cast<char *>(env->iisPam);
      case ParamBlock::Common: return reinterpret_cast<char *>(env->commonPam);
      default: return nullptr;
    }
  }
  switch (d.block) {
    case ParamBlock::Solver: return reinterpret_cast<char *>(model->solverPam);
    case ParamBlock::Splex: return reinterpret_cast<char *>(model->splexPam);
    case ParamBlock::BandB: return reinterpret_cast<char *>(model->bandBPam);
    case ParamBlock::NLP: return reinterpret_cast<char *>(model->nlpPam);
    case ParamBlock::GOP: return reinterpret_cast<char *>(model->gopPam);
    case ParamBlock::IIS: return reinterpret_cast<char *>(model->iisPam);
    case ParamBlock::Model: return reinterpret_cast<char *>(model);
    case ParamBlock::Stoc: return reinterpret_cast<char *>(model->stocPam);
    default: return nullptr;
  }
}

int load_int(const char *rec, const ParamDef &d) {
  int v;
  std::memcpy(&v, rec + d.offset, sizeof v);
  return v;
}
double load_dbl(const char *rec, const ParamDef &d) {
  double v;
  std::memcpy(&v, rec + d.offset, sizeof v);
  return v;
}
void store_int(char *rec, const ParamDef &d, int v) { std::memcpy(rec + d.offset, &v, sizeof v); }
void store_dbl(char *rec, const ParamDef &d, double v) { std::memcpy(rec + d.offset, &v, sizeof v); }

// A double truncated to an int the way the hardware conversion does it: a value
// outside the int range (or NaN) gives INT_MIN.
int trunc_int(double v) {
  if (!(v > -2147483649.0 && v < 2147483648.0)) return -2147483647 - 1;
  return static_cast<int>(v);
}

// The value of a row read from its record.
int read_row(const ParamDef &d, const char *rec, void *out) {
  switch (d.store) {
    case ParamStore::SK:
      *static_cast<int *>(out) = static_cast<int>(d.def);
      return kOk;
    case ParamStore::SI:
      *static_cast<int *>(out) = load_int(rec, d);
      return kOk;
    case ParamStore::SD:
      *static_cast<double *>(out) = load_dbl(rec, d);
      return kOk;
    case ParamStore::SID:
      *static_cast<int *>(out) = trunc_int(load_dbl(rec, d));
      return kOk;
    case ParamStore::SIDC: {
      double v = load_dbl(rec, d);
      *static_cast<int *>(out) = v > 2147483647.0 ? 2147483647 : trunc_int(v);
      return kOk;
    }
    case ParamStore::SIDT: {
      double v = load_dbl(rec, d);
      *static_cast<int *>(out) = v < 0.0 ? -1 : trunc_int(v);
      return kOk;
    }
    case ParamStore::ST:
      std::memcpy(out, rec + d.offset, kStocPatternLen);
      return kOk;
  }
  return kNotAvailable;
}

// Store v (already tested) into the row's member.
void write_row(const ParamDef &d, char *rec, double v) {
  if (d.store == ParamStore::SI)
    store_int(rec, d, static_cast<int>(v));
  else
    store_dbl(rec, d, v);
}

// A node or scenario name pattern: at most 255 characters and exactly one
// integer conversion ("%d" with flags and width), "%%" allowed.
bool pattern_ok(const char *s) {
  size_t len = strnlen(s, kStocPatternLen);
  if (len >= static_cast<size_t>(kStocPatternLen)) return false;
  int conversions = 0;
  for (size_t i = 0; i < len; ++i) {
    if (s[i] != '%') continue;
    ++i;
    if (i < len && s[i] == '%') continue;
    while (i < len && std::strchr("-+ #0", s[i])) ++i;
    while (i < len && s[i] >= '0' && s[i] <= '9') ++i;
    if (i >= len || !std::strchr("diuxXo", s[i])) return false;
    ++conversions;
  }
  return conversions == 1;
}

// The set test of a row.  On success *v holds the value to store (a time limit
// or a "none" value normalised to -1) and 0 is returned; else the refusal code.
int test_value(const ParamDef &d, double *v) {
  double x = *v, lo = d.testLo, hi = d.testHi;
  bool ok = true;
  switch (d.test) {
    case ParamTest::T_NONE:
    case ParamTest::T_PAIRVAL:
    case ParamTest::T_PAIRFLAG:
      break;
    case ParamTest::T_FLAG: ok = x == 0.0 || x == 1.0; break;
    case ParamTest::T_IN: ok = x >= lo && x <= hi; break;
    case ParamTest::T_GE: ok = x >= lo; break;
    case ParamTest::T_GT: ok = x > lo; break;
    case ParamTest::T_OPEN: ok = x > lo && x < hi; break;
    case ParamTest::T_TIMLIM:
    case ParamTest::T_NEGNONE:
      if (x < 0.0) *v = -1.0;
      break;
    case ParamTest::T_NEGNONE_GE:
      ok = x >= lo;
      if (ok && x < 0.0) *v = -1.0;
      break;
    case ParamTest::T_GE1_OR_M1: ok = x >= 1.0 || x == -1.0; break;
    case ParamTest::T_UNIT_OR_NEG: ok = (x > 0.0 && x < 1.0) || x < 0.0; break;
    case ParamTest::T_SENSE:
      if (x != 1.0 && x != -1.0) return KXERR_BAD_OBJECTIVE_SENSE;
      break;
    case ParamTest::T_REFUSE: return static_cast<int>(lo);
    case ParamTest::T_ELIMFILL:
      if (x < 0.0) *v = 0.0;
      break;
  }
  return ok ? kOk : kOutOfRange;
}

// Set a row at one level (model null: the environment).
int set_row(const ParamDef &d, Env *env, Model *model, const void *in) {
  char *rec = record_of(d, env, model);
  if (!rec) return kCannotSet;
  if (d.kind == ParamKind::T) {
    const char *s = static_cast<const char *>(in);
    if (!pattern_ok(s)) return kOutOfRange;
    std::memcpy(rec + d.offset, s, std::strlen(s) + 1);
    return kOk;
  }
  double v = d.kind == ParamKind::I ? static_cast<double>(*static_cast<const int *>(in))
                                    : *static_cast<const double *>(in);
  KX_CALL(test_value(d, &v));
  const ParamDoor door = model ? ParamDoor::Model : ParamDoor::Env;
  switch (d.test) {
    case ParamTest::T_PAIRFLAG:
      // Only clearing goes through; the flag is turned on by storing its value.
      if (v == 0.0) write_row(d, rec, 0.0);
      return kOk;
    case ParamTest::T_PAIRVAL: {
      write_row(d, rec, v);
      const ParamDef *flag = kxp_find(static_cast<int>(d.testLo), door);
      char *frec = flag ? record_of(*flag, env, model) : nullptr;
      if (frec) write_row(*flag, frec, 1.0);
      return kOk;
    }
    case ParamTest::T_SENSE:
      if (model->objSense != static_cast<int>(v)) kxi_free_solver_memory(model);
      write_row(d, rec, v);
      return kOk;
    case ParamTest::T_ELIMFILL:
      if (!model) {
        // The environment keeps this value in the field of id 58.
        const ParamDef *target = kxp_find(KX_IPARAM_SOLVER_USECUTOFFVAL, ParamDoor::Env);
        char *trec = target ? record_of(*target, env, nullptr) : nullptr;
        if (!trec) return kCannotSet;
        write_row(*target, trec, v);
        return kOk;
      }
      write_row(d, rec, v);
      return kOk;
    default:
      write_row(d, rec, v);
      return kOk;
  }
}

int get_row(const ParamDef &d, Env *env, Model *model, void *out) {
  const char *rec = d.store == ParamStore::SK ? "" : record_of(d, env, model);
  if (!rec) return kNotAvailable;
  if (!model && d.test == ParamTest::T_PAIRVAL) {
    // At the environment the value is only there while its flag is on.
    const ParamDef *flag = kxp_find(static_cast<int>(d.testLo), ParamDoor::Env);
    int on = 0;
    if (!flag || read_row(*flag, record_of(*flag, env, nullptr), &on) != 0 || on == 0)
      return kNotAvailable;
  }
  return read_row(d, rec, out);
}

}  // namespace

// ---------------------------------------------------------------------------
// Internal calls.
int kxp_env_get(Env *env, int id, void *value) {
  const ParamDef *d = kxp_find(id, ParamDoor::Env);
  if (!d || !(d->level & KXP_ENV_GET)) return kNotAvailable;
  return get_row(*d, env, nullptr, value);
}

int kxp_env_set(Env *env, int id, const void *value) {
  const ParamDef *d = kxp_find(id, ParamDoor::Env);
  if (!d || !(d->level & KXP_ENV_SET)) return kCannotSet;
  return set_row(*d, env, nullptr, value);
}

int kxp_model_get(Model *model, int id, void *value) {
  const ParamDef *d = kxp_find(id, ParamDoor::Model);
  if (!d || !(d->level & KXP_MOD_GET)) return kNotAvailable;
  return get_row(*d, model->env, model, value);
}

int kxp_model_set(Model *model, int id, const void *value) {
  const ParamDef *d = kxp_find(id, ParamDoor::Model);
  if (!d || !(d->level & KXP_MOD_SET)) return kCannotSet;
  return set_row(*d, model->env, model, value);
}

int kxp_stoc_get(Model *model, int id, void *value) {
  const ParamDef *d = kxp_find(id, ParamDoor::Stoc);
  if (!d) return kNotAvailable;
  return get_row(*d, model->env, model, value);
}

int kxp_stoc_set(Model *model, int id, const void *value) {
  const ParamDef *d = kxp_find(id, ParamDoor::Stoc);
  if (!d) return kCannotSet;
  return set_row(*d, model->env, model, value);
}

int kxp_env_get_int(Env *env, int id, int *value) {
  return int_par_ok(id) ? kxp_env_get(env, id, value) : kOutOfRange;
}
int kxp_env_get_dou(Env *env, int id, double *value) {
  return dou_par_ok(id) ? kxp_env_get(env, id, value) : kOutOfRange;
}
int kxp_env_set_int(Env *env, int id, int value) {
  return int_par_ok(id) ? kxp_env_set(env, id, &value) : kOutOfRange;
}
int kxp_env_set_dou(Env *env, int id, double value) {
  return dou_par_ok(id) ? kxp_env_set(env, id, &value) : kOutOfRange;
}

int kxp_model_get_int(Model *model, int id, int *value) {
  if (int_par_ok(id)) return kxp_model_get(model, id, value);
  if (int_sp_par_ok(id)) return kxp_stoc_get(model, id, value);
  return kOutOfRange;
}
int kxp_model_get_dou(Model *model, int id, double *value) {
  if (dou_par_ok(id)) return kxp_model_get(model, id, value);
  if (dou_sp_par_ok(id)) return kxp_stoc_get(model, id, value);
  return kOutOfRange;
}
namespace {
// The parameters an outside solver's task receives (the same that
// setup_external_task sends when it makes the task).
bool is_external_solve_par(int id) {
  static constexpr int kIds[] = {61, 35, 37, 31, 32, 29, 30, 34, 41, 40, 59, 51, 58,
                                 54, 57, 60, 23, 53};
  for (int x : kIds)
    if (x == id) return true;
  return false;
}

// A model with an outside solver's task hears of a change before it is stored.
void forward_to_outside(Model *model, int id, const int *iv, const double *dv) {
  const OutsideSolver *t = model->env ? model->env->externalSolver : nullptr;
  if (!model->extTask || !t || !is_external_solve_par(id)) return;
  if (iv && t->setIntParam) t->setIntParam(model->extTask, id, *iv);
  if (dv && t->setDouParam) t->setDouParam(model->extTask, id, *dv);
}
}  // namespace

int kxp_model_set_int(Model *model, int id, int value) {
  if (int_par_ok(id)) {
    forward_to_outside(model, id, &value, nullptr);
    return kxp_model_set(model, id, &value);
  }
  if (int_sp_par_ok(id)) return kxp_stoc_set(model, id, &value);
  return kOutOfRange;
}
int kxp_model_set_dou(Model *model, int id, double value) {
  if (dou_par_ok(id)) {
    forward_to_outside(model, id, nullptr, &value);
    return kxp_model_set(model, id, &value);
  }
  if (dou_sp_par_ok(id)) return kxp_stoc_set(model, id, &value);
  return kOutOfRange;
}

// ---------------------------------------------------------------------------
// Exported calls.
extern "C" KX_API int KXgetEnvParameter(pEnv env, int nParameter, void *pvValue) {
  return kx::guard([&]() -> int {
    if (!env || !pvValue) return kNull;
    return kxp_env_get(env, nParameter, pvValue);
  });
}

extern "C" KX_API int KXsetEnvParameter(pEnv env, int nParameter, const void *pvValue) {
  return kx::guard([&]() -> int {
    if (!env || !pvValue) return kNull;
    return kxp_env_set(env, nParameter, pvValue);
  });
}

extern "C" KX_API int KXgetEnvIntParameter(pEnv env, int nParameter, int *pnValue) {
  return kx::guard([&]() -> int {
    if (!env || !pnValue) return kNull;
    return kxp_env_get_int(env, nParameter, pnValue);
  });
}

extern "C" KX_API int KXsetEnvIntParameter(pEnv env, int nParameter, int nValue) {
  return kx::guard([&]() -> int {
    if (!env) return kNull;
    return kxp_env_set_int(env, nParameter, nValue);
  });
}

extern "C" KX_API int KXgetEnvDouParameter(pEnv env, int nParameter, double *pdValue) {
  return kx::guard([&]() -> int {
    if (!env || !pdValue) return kNull;
    return kxp_env_get_dou(env, nParameter, pdValue);
  });
}

extern "C" KX_API int KXsetEnvDouParameter(pEnv env, int nParameter, double dValue) {
  return kx::guard([&]() -> int {
    if (!env) return kNull;
    return kxp_env_set_dou(env, nParameter, dValue);
  });
}

extern "C" KX_API int KXgetModelParameter(pModel model, int nParameter, void *pvValue) {
  return kx::guard([&]() -> int {
    if (!model || !pvValue) return kNull;
    return kxp_model_get(model, nParameter, pvValue);
  });
}

extern "C" KX_API int KXsetModelParameter(pModel model, int nParameter, const void *pvValue) {
  return kx::guard([&]() -> int {
    if (!model || !pvValue) return kNull;
    return kxp_model_set(model, nParameter, pvValue);
  });
}

extern "C" KX_API int KXgetModelIntParameter(pModel model, int nParameter, int *pnValue) {
  return kx::guard([&]() -> int {
    if (!model || !pnValue) return kNull;
    return kxp_model_get_int(model, nParameter, pnValue);
  });
}

extern "C" KX_API int KXsetModelIntParameter(pModel model, int nParameter, int nValue) {
  return kx::guard([&]() -> int {
    if (!model) return kNull;
    return kxp_model_set_int(model, nParameter, nValue);
  });
}

extern "C" KX_API int KXgetModelDouParameter(pModel model, int nParameter, double *pdValue) {
  return kx::guard([&]() -> int {
    if (!model || !pdValue) return kNull;
    return kxp_model_get_dou(model, nParameter, pdValue);
  });
}

extern "C" KX_API int KXsetModelDouParameter(pModel model, int nParameter, double dValue) {
  return kx::guard([&]() -> int {
    if (!model) return kNull;
    return kxp_model_set_dou(model, nParameter, dValue);
  });
}

extern "C" KX_API int KXgetModelStocParameter(pModel model, int nParameter, void *pvValue) {
  return kx::guard([&]() -> int {
    if (!model || !pvValue) return kNull;
    return kxp_stoc_get(model, nParameter, pvValue);
  });
}

extern "C" KX_API int KXsetModelStocParameter(pModel model, int nParameter, const void *pvValue) {
  return kx::guard([&]() -> int {
    if (!model || !pvValue) return kNull;
    return kxp_stoc_set(model, nParameter, pvValue);
  });
}

extern "C" KX_API int KXgetModelStocIntParameter(pModel model, int nParameter, int *pnValue) {
  return kx::guard([&]() -> int {
    if (!model || !pnValue) return kNull;
    return int_sp_par_ok(nParameter) ? kxp_stoc_get(model, nParameter, pnValue) : kOutOfRange;
  });
}

extern "C" KX_API int KXsetModelStocIntParameter(pModel model, int nParameter, int nValue) {
  return kx::guard([&]() -> int {
    if (!model) return kNull;
    return int_sp_par_ok(nParameter) ? kxp_stoc_set(model, nParameter, &nValue) : kOutOfRange;
  });
}

extern "C" KX_API int KXgetModelStocDouParameter(pModel model, int nParameter, double *pdValue) {
  return kx::guard([&]() -> int {
    if (!model || !pdValue) return kNull;
    return dou_sp_par_ok(nParameter) ? kxp_stoc_get(model, nParameter, pdValue) : kOutOfRange;
  });
}

extern "C" KX_API int KXsetModelStocDouParameter(pModel model, int nParameter, double dValue) {
  return kx::guard([&]() -> int {
    if (!model) return kNull;
    return dou_sp_par_ok(nParameter) ? kxp_stoc_set(model, nParameter, &dValue) : kOutOfRange;
  });
}

extern "C" KX_API int KXgetIntParameterRange(pModel model, int nParameter, int *pnValMIN,
                                             int *pnValMAX) {
  return kx::guard([&]() -> int {
    if (pnValMIN) *pnValMIN = 0;
    if (pnValMAX) *pnValMAX = 0;
    if (!model) return kNull;
    const ParamDef *d = kxp_find_any(nParameter);
    if (!d || d->kind != ParamKind::I) return kOk;
    if (pnValMIN) *pnValMIN = static_cast<int>(d->pubLo);
    if (pnValMAX) *pnValMAX = static_cast<int>(d->pubHi);
    return kOk;
  });
}

extern "C" KX_API int KXgetDouParameterRange(pModel model, int nParameter, double *pdValMIN,
                                             double *pdValMAX) {
  return kx::guard([&]() -> int {
    if (pdValMIN) *pdValMIN = 0.0;
    if (pdValMAX) *pdValMAX = 0.0;
    if (!model) return kNull;
    const ParamDef *d = kxp_find_any(nParameter);
    if (!d || d->kind != ParamKind::D) return kOk;
    if (pdValMIN) *pdValMIN = d->pubLo;
    if (pdValMAX) *pdValMAX = d->pubHi;
    return kOk;
  });
}

extern "C" KX_API int KXgetParamDescription(pEnv env, int nParameter, char *pachDescription) {
  return kx::guard([&]() -> int {
    if (!env || !pachDescription) return kNull;
    const char *text = nullptr;
    for (const KXparamRow *r = parlist; r->id != 0 || r->name; ++r)
      if (r->id == nParameter) {
        text = r->description;
        break;
      }
    if (!text || !*text) text = "NULL";
    std::strcpy(pachDescription, text);
    return kOk;
  });
}
