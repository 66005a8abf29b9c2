// Parameter records and the parameter registry.
//
// Every parameter is one line of base/param_rows.def.  That list generates the
// members of the blocks below (and the model-level members of the Model record
// in kx.h), their defaults, the registry table with its tests and ranges, and
// the file order.  A block is a plain record: the environment owns one of
// each, a model takes value copies at KXcreateModel, and the solvers read
// their block directly.
#pragma once

#include <cstdint>

#include "korva.h"

struct KXenv_s;
struct KXmodel_s;

// ---------------------------------------------------------------------------
// Block records, generated from the registry.
#define KXP_DECL_F(ctype, member) ctype member;
#define KXP_DECL_S(ctype, member)
#define KXP_CTYPE_SI int
#define KXP_CTYPE_SD double
#define KXP_CTYPE_SID double
#define KXP_CTYPE_SIDC double
#define KXP_CTYPE_SIDT double
#define KXP_CTYPE_SK int
#define KXP_CTYPE_ST char
#define KXP_FIELD(reg, decl, id, name, kind, member, def, store, ...) \
  KXP_DECL_##decl(KXP_CTYPE_##store, member)

// The LP time limit.
struct SolverPam {
#define KXP_SOLVER KXP_FIELD
#include "base/param_rows.def"
};

// LP, simplex, working tolerances, LU and barrier settings.
struct SplexPam {
#define KXP_SPLEX KXP_FIELD
#include "base/param_rows.def"
};

// Branch and bound.
struct BandBPam {
#define KXP_BANDB KXP_FIELD
#include "base/param_rows.def"
};

// Nonlinear solver.
struct NLPPam {
#define KXP_NLP KXP_FIELD
#include "base/param_rows.def"
};

// Global solver.
struct GOPPam {
#define KXP_GOP KXP_FIELD
#include "base/param_rows.def"
};

// IIS and IUS finders.
struct IISPam {
#define KXP_IIS KXP_FIELD
#include "base/param_rows.def"
};

// Values that live on the environment alone (ids 701 to 707, and the
// environment's stochastic debug mask).
struct CommonPam {
#define KXP_COMMON KXP_FIELD
#include "base/param_rows.def"
};

// Stochastic settings of a model (ids 600 to 642).  The stochastic subsystem
// reads them; kxp_init_stoc_pam gives the defaults.
inline constexpr int kStocPatternLen = 256;  // the name patterns, terminator included
struct StocPam {
#define KXP_STOC KXP_FIELD
#include "base/param_rows.def"
  char nodeNamePattern[kStocPatternLen];  // id 630, "_ND%06d"
  char scenNamePattern[kStocPatternLen];  // id 631, "_SC%06d"
};

// ---------------------------------------------------------------------------
// The registry table.
enum class ParamBlock : std::uint8_t { Solver, Splex, BandB, NLP, GOP, IIS, Common, Model, Stoc, Const };
enum class ParamKind : std::uint8_t { I, D, T };
enum class ParamStore : std::uint8_t { SI, SD, SID, SIDC, SIDT, SK, ST };

// Set tests.  lo and hi are the row's testLo and testHi.
enum class ParamTest : std::uint8_t {
  T_NONE,         // any value
  T_FLAG,         // 0 or 1
  T_IN,           // lo <= v <= hi
  T_GE,           // v >= lo
  T_GT,           // v > lo
  T_OPEN,         // lo < v < hi
  T_TIMLIM,       // integer time limit: v >= 0 stored, any negative stores -1
  T_NEGNONE,      // double where negative means none: a negative stores -1
  T_NEGNONE_GE,   // the same, but a value below lo is refused
  T_GE1_OR_M1,    // v >= 1 or v == -1
  T_UNIT_OR_NEG,  // 0 < v < 1 or v < 0
  T_PAIRVAL,      // any value; storing it turns the flag with id lo on
  T_PAIRFLAG,     // 0 clears the flag, any other value leaves it as it is
  T_SENSE,        // 1 or -1, else 2007; a change frees the solver memory first
  T_REFUSE,       // never stored: the code lo
  T_ELIMFILL,     // negative clamped to 0; at the environment stored into id 58
};

// Levels: where a row can be read (G) and set (S).
enum : std::uint8_t {
  KXP_ENV_GET = 1,
  KXP_ENV_SET = 2,
  KXP_MOD_GET = 4,
  KXP_MOD_SET = 8,
  KXP_STOC_DOOR = 16,  // reached through the stochastic calls of a model
  KXP_TYPED = 32,      // passes int_par_ok / dou_par_ok
};
inline constexpr std::uint8_t LV_BOTH = KXP_ENV_GET | KXP_ENV_SET | KXP_MOD_GET | KXP_MOD_SET | KXP_TYPED;
inline constexpr std::uint8_t LV_MODEL = KXP_ENV_GET | KXP_MOD_GET | KXP_MOD_SET | KXP_TYPED;
inline constexpr std::uint8_t LV_MODEL_OWN = KXP_MOD_GET | KXP_MOD_SET | KXP_TYPED;
inline constexpr std::uint8_t LV_ENV = KXP_ENV_GET | KXP_ENV_SET | KXP_TYPED;
inline constexpr std::uint8_t LV_RO = KXP_ENV_GET | KXP_MOD_GET | KXP_TYPED;
inline constexpr std::uint8_t LV_STOC = KXP_STOC_DOOR;
inline constexpr std::uint8_t LV_ENV_RAW = KXP_ENV_GET | KXP_ENV_SET;

struct ParamDef {
  int id;
  const char *name;         // KX_IPARAM_... / KX_DPARAM_..., null for an unnamed id
  const char *description;  // log text, or null
  ParamKind kind;
  ParamBlock block;
  std::uint32_t offset;     // of the member in its block record
  ParamStore store;
  double def;               // default (the value of a constant for SK)
  double pubLo, pubHi;      // published range
  ParamTest test;
  double testLo, testHi;
  std::uint8_t level;
  bool registry;            // a row of the parameter files
};

// Lookups.  A door is where a call comes in: the environment, the model, or
// the stochastic calls of a model.  Null when the id has no row at that door.
enum class ParamDoor : std::uint8_t { Env, Model, Stoc };
const ParamDef *kxp_find(int id, ParamDoor door);
const ParamDef *kxp_find_any(int id);  // first row of the id, at any door
const ParamDef *kxp_defs(int *count);  // the whole table, in the order of the list

// Id tests of the typed calls.
bool int_par_ok(int id);
bool dou_par_ok(int id);
bool int_sp_par_ok(int id);
bool dou_sp_par_ok(int id);

// The registry in the row form of the parameter files (id, name, description,
// width), terminated by a row with id 0 and a null name.  Mutable: it is sorted
// by id in place by KXI_get_param_byfmt.
extern KXparamRow parlist[];
// Number of rows of parlist; *nameLen receives the sum over the rows of
// max(12, length of name), from which the CSV lines of a written file are sized.
int NUMPARLIST(int *nameLen);
int parlist_cmp(const void *a, const void *b);

// ---------------------------------------------------------------------------
// Initialisers: allocate a block and fill in the defaults; 0 or 2001.
int KXloadSolverPam(SolverPam **p);
int KXloadSplexPam(SplexPam **p);  // includes the barrier defaults (KXloadIPMPam)
int KXloadIPMPam(SplexPam *p);     // barrier rows 150 to 169 from the built-in constants
int KXinitBandBPam(BandBPam **p);
int KXloadNLPPam(NLPPam **p);
int KXinitGOPPam(GOPPam **p);
int KXinitIISPam(IISPam **p);
int KXinitCommonPam(CommonPam **p);
// Defaults of the model-level members of a model record (ids 22 to 53).
void kxp_init_model_fields(KXmodel_s *model);
// Defaults of a model's stochastic block; 619 and 642 start from the
// environment's debug mask and the model's KX_IPARAM_USE_NAMEDATA.
void kxp_init_stoc_pam(KXmodel_s *model);

// ---------------------------------------------------------------------------
// Internal get and set (no null checks of env or model; the exported calls do
// them).  value points to an int for kind I, a double for kind D, a char
// buffer of at least 256 bytes for kind T.
int kxp_env_get(KXenv_s *env, int id, void *value);
int kxp_env_set(KXenv_s *env, int id, const void *value);
int kxp_model_get(KXmodel_s *model, int id, void *value);
int kxp_model_set(KXmodel_s *model, int id, const void *value);
int kxp_stoc_get(KXmodel_s *model, int id, void *value);
int kxp_stoc_set(KXmodel_s *model, int id, const void *value);
// The typed forms, with the id tests and the routing of stochastic ids.
int kxp_env_get_int(KXenv_s *env, int id, int *value);
int kxp_env_get_dou(KXenv_s *env, int id, double *value);
int kxp_env_set_int(KXenv_s *env, int id, int value);
int kxp_env_set_dou(KXenv_s *env, int id, double value);
int kxp_model_get_int(KXmodel_s *model, int id, int *value);
int kxp_model_get_dou(KXmodel_s *model, int id, double *value);
int kxp_model_set_int(KXmodel_s *model, int id, int value);
int kxp_model_set_dou(KXmodel_s *model, int id, double value);

// Parameter files.  Exactly one of env and model is non-null.
int kxp_load_file(KXenv_s *env, KXmodel_s *model, const char *file, int rows,
                  const KXparamRow *table);
int kxp_write_file(KXenv_s *env, KXmodel_s *model, const char *file);

// The values of a fixed list of 121 ids at the model level, as "name, name"
// and "value, value" (sorts parlist by id first).  Outputs are cut to their
// lengths.  Returns the status of the last read.
int KXI_get_param_byfmt(KXmodel_s *model, char *names, int namesLen, char *values, int valuesLen);
