// The parameter registry table, its id index, the file-order row list and the
// initialisers of the parameter blocks, all expanded from param_rows.def.
#include "base/params.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "base/kx.h"

namespace {

constexpr int KXP_MAXINT = 2147483647;
constexpr int KXP_MININT = -2147483647 - 1;

// One table row from one line of the list.  #name is taken in the first macro
// level, before the constant of korva.h could replace the token.
#define KXP_NAME_R(s) s
#define KXP_NAME_N(s) s
#define KXP_NAME_X(s) nullptr
#define KXP_REG_R true
#define KXP_REG_N false
#define KXP_REG_X false
#define KXP_DEF(blk, off, reg, sname, id, kind, def, store, plo, phi, test, tlo, thi, lv, desc) \
  ParamDef{id,                                                                                  \
           KXP_NAME_##reg(sname),                                                               \
           desc,                                                                                \
           ParamKind::kind,                                                                     \
           ParamBlock::blk,                                                                     \
           static_cast<std::uint32_t>(off),                                                     \
           ParamStore::store,                                                                   \
           static_cast<double>(def),                                                            \
           static_cast<double>(plo),                                                            \
           static_cast<double>(phi),                                                            \
           ParamTest::test,                                                                     \
           static_cast<double>(tlo),                                                            \
           static_cast<double>(thi),                                                            \
           lv,                                                                                  \
           KXP_REG_##reg},
#define KXP_ROW(blk, rec, reg, sname, id, kind, member, ...) \
  KXP_DEF(blk, offsetof(rec, member), reg, sname, id, kind, __VA_ARGS__)

constexpr ParamDef kDefs[] = {
#define KXP_SOLVER(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(Solver, SolverPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_SPLEX(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(Splex, SplexPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_BANDB(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(BandB, BandBPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_NLP(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(NLP, NLPPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_GOP(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(GOP, GOPPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_IIS(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(IIS, IISPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_COMMON(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(Common, CommonPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_MODEL(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(Model, KXmodel_s, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_STOC(reg, decl, id, name, kind, member, ...) \
  KXP_ROW(Stoc, StocPam, reg, #name, id, kind, member, __VA_ARGS__)
#define KXP_CONST(reg, decl, id, name, kind, member, ...) \
  KXP_DEF(Const, 0, reg, #name, id, kind, __VA_ARGS__)
#include "base/param_rows.def"
};
constexpr int kNumDefs = static_cast<int>(sizeof kDefs / sizeof kDefs[0]);

// Index from id to row, one per door; -1 where the id has no row there.
constexpr int kMaxId = 4907;
struct DoorIndex {
  short env[kMaxId + 1];
  short model[kMaxId + 1];
  short stoc[kMaxId + 1];
};

constexpr DoorIndex build_index() {
  DoorIndex x{};
  for (int i = 0; i <= kMaxId; ++i) x.env[i] = x.model[i] = x.stoc[i] = -1;
  for (int r = 0; r < kNumDefs; ++r) {
    const ParamDef &d = kDefs[r];
    if (d.level & (KXP_ENV_GET | KXP_ENV_SET)) x.env[d.id] = static_cast<short>(r);
    if (d.level & (KXP_MOD_GET | KXP_MOD_SET)) x.model[d.id] = static_cast<short>(r);
    if (d.level & KXP_STOC_DOOR) x.stoc[d.id] = static_cast<short>(r);
  }
  return x;
}
constexpr DoorIndex kIndex = build_index();

// Checks of the list that the compiler can make.
constexpr bool list_is_sound() {
  for (int r = 0; r < kNumDefs; ++r) {
    const ParamDef &d = kDefs[r];
    if (d.id <= 0 || d.id > kMaxId) return false;
    // Blocks without an environment copy cannot be reached from the environment.
    bool envDoor = d.level & (KXP_ENV_GET | KXP_ENV_SET);
    if (envDoor && (d.block == ParamBlock::Model || d.block == ParamBlock::Stoc)) return false;
    // The common record is not copied into a model.
    if ((d.level & (KXP_MOD_GET | KXP_MOD_SET | KXP_STOC_DOOR)) && d.block == ParamBlock::Common)
      return false;
    // A row is at one door at most once.
    for (int q = r + 1; q < kNumDefs; ++q) {
      const ParamDef &e = kDefs[q];
      if (e.id == d.id && (e.level & d.level & ~KXP_TYPED)) return false;
    }
    // Integer-in-double storage only for integer ids; a named row has a name.
    if ((d.store == ParamStore::SID || d.store == ParamStore::SIDC || d.store == ParamStore::SIDT) &&
        d.kind != ParamKind::I)
      return false;
    if (d.registry && !d.name) return false;
  }
  return true;
}
static_assert(list_is_sound(), "param_rows.def: inconsistent row");

template <class T>
int alloc_block(T **p) {
  *p = static_cast<T *>(std::calloc(1, sizeof(T)));
  return *p ? 0 : kx::kErrMemory;
}

// Write the default of every row of one block into a record of that block.
void fill_defaults(ParamBlock block, void *rec, int idLo = 0, int idHi = kMaxId) {
  char *base = static_cast<char *>(rec);
  for (const ParamDef &d : kDefs) {
    if (d.block != block || d.id < idLo || d.id > idHi) continue;
    switch (d.store) {
      case ParamStore::SI: {
        int v = static_cast<int>(d.def);
        std::memcpy(base + d.offset, &v, sizeof v);
        break;
      }
      case ParamStore::SD:
      case ParamStore::SID:
      case ParamStore::SIDC:
      case ParamStore::SIDT:
        std::memcpy(base + d.offset, &d.def, sizeof d.def);
        break;
      case ParamStore::SK:
      case ParamStore::ST:
        break;
    }
  }
}

}  // namespace

const ParamDef *kxp_find(int id, ParamDoor door) {
  if (id <= 0 || id > kMaxId) return nullptr;
  const short *ix = door == ParamDoor::Env     ? kIndex.env
                    : door == ParamDoor::Model ? kIndex.model
                                               : kIndex.stoc;
  return ix[id] >= 0 ? &kDefs[ix[id]] : nullptr;
}

const ParamDef *kxp_find_any(int id) {
  if (const ParamDef *d = kxp_find(id, ParamDoor::Model)) return d;
  if (const ParamDef *d = kxp_find(id, ParamDoor::Stoc)) return d;
  return kxp_find(id, ParamDoor::Env);
}

const ParamDef *kxp_defs(int *count) {
  if (count) *count = kNumDefs;
  return kDefs;
}

namespace {
bool typed_ok(int id, ParamKind kind) {
  for (ParamDoor door : {ParamDoor::Env, ParamDoor::Model}) {
    const ParamDef *d = kxp_find(id, door);
    if (d && d->kind == kind && (d->level & KXP_TYPED)) return true;
  }
  return false;
}
bool stoc_ok(int id, ParamKind kind) {
  const ParamDef *d = kxp_find(id, ParamDoor::Stoc);
  return d && d->kind == kind;
}
}  // namespace

bool int_par_ok(int id) { return typed_ok(id, ParamKind::I); }
bool dou_par_ok(int id) { return typed_ok(id, ParamKind::D); }
bool int_sp_par_ok(int id) { return stoc_ok(id, ParamKind::I); }
bool dou_sp_par_ok(int id) { return stoc_ok(id, ParamKind::D); }

// ---------------------------------------------------------------------------
// The registry rows in file order, in the row form of the parameter files.
#define KXP_PL_R(id, sname, kind, desc) {id, sname, desc, KXP_WIDTH_##kind},
#define KXP_PL_N(id, sname, kind, desc)
#define KXP_PL_X(id, sname, kind, desc)
#define KXP_WIDTH_I 4
#define KXP_WIDTH_D 8
#define KXP_PL(reg, decl, id, name, kind, member, def, store, plo, phi, test, tlo, thi, lv, desc) \
  KXP_PL_##reg(id, #name, kind, desc)
KXparamRow parlist[] = {
#define KXP_SOLVER KXP_PL
#define KXP_SPLEX KXP_PL
#define KXP_BANDB KXP_PL
#define KXP_NLP KXP_PL
#define KXP_GOP KXP_PL
#define KXP_IIS KXP_PL
#define KXP_COMMON KXP_PL
#define KXP_MODEL KXP_PL
#define KXP_STOC KXP_PL
#define KXP_CONST KXP_PL
#include "base/param_rows.def"
    {0, nullptr, nullptr, 0},
};

int NUMPARLIST(int *nameLen) {
  int n = 0, total = 0;
  for (; parlist[n].id != 0 || parlist[n].name; ++n) {
    int len = static_cast<int>(std::strlen(parlist[n].name));
    total += len > 12 ? len : 12;
  }
  if (nameLen) *nameLen = total;
  return n;
}

int parlist_cmp(const void *a, const void *b) {
  int x = static_cast<const KXparamRow *>(a)->id, y = static_cast<const KXparamRow *>(b)->id;
  return (x > y) - (x < y);
}

// ---------------------------------------------------------------------------
// Initialisers.
int KXloadSolverPam(SolverPam **p) {
  KX_CALL(alloc_block(p));
  fill_defaults(ParamBlock::Solver, *p);
  return 0;
}

// No barrier library is bound, so the barrier rows take the built-in defaults
// of the list (159 and 160 at 1e-7, 166 at 1000, 167 at 40, 169 at 1).
int KXloadIPMPam(SplexPam *p) {
  fill_defaults(ParamBlock::Splex, p, 150, 169);
  return 0;
}

int KXloadSplexPam(SplexPam **p) {
  KX_CALL(alloc_block(p));
  fill_defaults(ParamBlock::Splex, *p);
  return KXloadIPMPam(*p);
}

int KXinitBandBPam(BandBPam **p) {
  KX_CALL(alloc_block(p));
  fill_defaults(ParamBlock::BandB, *p);
  return 0;
}

int KXloadNLPPam(NLPPam **p) {
  KX_CALL(alloc_block(p));
  fill_defaults(ParamBlock::NLP, *p);
  return 0;
}

int KXinitGOPPam(GOPPam **p) {
  KX_CALL(alloc_block(p));
  fill_defaults(ParamBlock::GOP, *p);
  return 0;
}

int KXinitIISPam(IISPam **p) {
  KX_CALL(alloc_block(p));
  fill_defaults(ParamBlock::IIS, *p);
  return 0;
}

int KXinitCommonPam(CommonPam **p) {
  KX_CALL(alloc_block(p));
  fill_defaults(ParamBlock::Common, *p);
  return 0;
}

void kxp_init_model_fields(Model *model) { fill_defaults(ParamBlock::Model, model); }

void kxp_init_stoc_pam(Model *model) {
  StocPam *s = model->stocPam;
  if (!s) return;
  std::memset(s, 0, sizeof *s);
  fill_defaults(ParamBlock::Stoc, s);
  std::strcpy(s->nodeNamePattern, "_ND%06d");
  std::strcpy(s->scenNamePattern, "_SC%06d");
  if (model->env && model->env->commonPam) s->debugMask = model->env->commonPam->stocDebugMask;
  s->debugLevel = s->debugMask;
  s->nameDataLevel = model->useNameData;
}
