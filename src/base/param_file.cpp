// Parameter files: the loader (lines "NAME = value", the first line of a name
// wins), the writer with its CSV twin, and the formatted list of values used
// by reports.
#include <cctype>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "base/kx.h"

namespace {

constexpr int kLineLimit = 256;  // lines are read in pieces of at most 255 characters

struct FileCloser {
  FILE *f;
  ~FileCloser() {
    if (f) std::fclose(f);
  }
};

// The lines of a file as fgets delivers them with the line limit; false when
// the file does not open.
bool read_lines(const char *file, std::vector<std::string> *lines) {
  FileCloser in{std::fopen(file, "r")};
  if (!in.f) return false;
  char buf[kLineLimit];
  while (std::fgets(buf, sizeof buf, in.f)) lines->emplace_back(buf);
  return true;
}

bool is_space(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Does the line set `name`?  The name after optional white space, then white
// space or "=", "=" and a value that reads as an integer (width 4) or a double.
bool match_line(const std::string &line, const char *name, int width, int *iv, double *dv) {
  const char *p = line.c_str();
  while (is_space(*p)) ++p;
  size_t len = std::strlen(name);
  if (std::strncmp(p, name, len) != 0) return false;
  p += len;
  if (*p != '=' && !is_space(*p)) return false;
  while (is_space(*p)) ++p;
  if (*p != '=') return false;
  ++p;
  char *end = nullptr;
  errno = 0;
  if (width == 4) {
    long v = std::strtol(p, &end, 10);
    if (end == p || errno == ERANGE || v < -2147483647L - 1 || v > 2147483647L) return false;
    *iv = static_cast<int>(v);
  } else {
    double v = std::strtod(p, &end);
    if (end == p) return false;
    *dv = v;
  }
  return true;
}

// Logging through the sink of the level.
struct Level {
  Env *env;
  Model *model;
  bool logging() const { return model ? model->logFunc != nullptr : env->envLogFunc != nullptr; }
  void log(const char *fmt, ...) const __attribute__((format(printf, 2, 3))) {
    char buf[1024];
    va_list ap;
    va_start(ap, fmt);
    std::vsnprintf(buf, sizeof buf, fmt, ap);
    va_end(ap);
    if (model)
      kxi_log(model, "%s", buf);
    else
      kxi_env_log(env, "%s", buf);
  }
  int set_int(int id, int v) const {
    return model ? kxp_model_set_int(model, id, v) : kxp_env_set_int(env, id, v);
  }
  int set_dou(int id, double v) const {
    return model ? kxp_model_set_dou(model, id, v) : kxp_env_set_dou(env, id, v);
  }
  int get_int(int id, int *v) const {
    return model ? kxp_model_get_int(model, id, v) : kxp_env_get_int(env, id, v);
  }
  int get_dou(int id, double *v) const {
    return model ? kxp_model_get_dou(model, id, v) : kxp_env_get_dou(env, id, v);
  }
};

std::string format(const char *fmt, ...) __attribute__((format(printf, 1, 2)));
std::string format(const char *fmt, ...) {
  char buf[512];
  va_list ap;
  va_start(ap, fmt);
  std::vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  return buf;
}

}  // namespace

int kxp_load_file(Env *env, Model *model, const char *file, int rows, const KXparamRow *table) {
  const Level lv{env, model};
  if (!file) file = "korva.par";
  if (lv.logging())
    lv.log(model ? "\nReading model parameters from %s\n" : "\nReading environment parameters from %s\n",
           file);
  // The file is read once; a row that finds no line (or no file) is skipped.
  std::vector<std::string> lines;
  bool opened = read_lines(file, &lines);
  int status = 0, printed = 0;
  for (int r = 0; r < rows; ++r) {
    const KXparamRow &row = table[r];
    if (row.width != 4 && row.width != 8) return KXERR_INDEX_OUT_OF_RANGE;
    if (!row.name || !opened) continue;
    int iv = 0;
    double dv = 0.0;
    bool found = false;
    for (const std::string &line : lines)
      if (match_line(line, row.name, row.width, &iv, &dv)) {
        found = true;
        break;
      }
    if (!found) continue;
    status = row.width == 4 ? lv.set_int(row.id, iv) : lv.set_dou(row.id, dv);
    if (!row.description || !lv.logging() || row.id == KX_DPARAM_MIP_CUTOFFOBJ) continue;
    if (status != 0) {
      lv.log("\n%s: error=%u", row.description, static_cast<unsigned>(status));
    } else if (row.width == 4) {
      int back = iv;
      lv.get_int(row.id, &back);
      lv.log("\n%s: %d", row.description, back);
    } else {
      double back = dv;
      lv.get_dou(row.id, &back);
      lv.log("\n%s: %2.1e", row.description, back);
    }
    ++printed;
  }
  if (printed) lv.log("\n\n");
  return status;
}

int kxp_write_file(Env *env, Model *model, const char *file) {
  const Level lv{env, model};
  // The CSV twin: everything behind the last "." becomes "_param.csv".
  std::string csvName(file);
  size_t dot = csvName.rfind('.');
  if (dot != std::string::npos) csvName.erase(dot + 1);
  csvName += "_param.csv";

  FileCloser out{std::fopen(file, "w")};
  if (!out.f) return KXERR_CANNOT_OPEN_FILE;
  FileCloser csv{std::fopen(csvName.c_str(), "w")};
  if (!csv.f) return KXERR_CANNOT_OPEN_FILE;

  int nameLen = 0;
  NUMPARLIST(&nameLen);
  std::string names, values, previous;
  names.reserve(nameLen);
  values.reserve(2 * static_cast<size_t>(nameLen));
  int status = 0;
  for (const KXparamRow *row = parlist; row->id != 0 || row->name; ++row) {
    if (row->width == 4) {
      int v = 0;
      status = lv.get_int(row->id, &v);
      if (status != 0) continue;  // an integer that cannot be read is left out
      previous = format("%-42s = %d\n", row->name, v);
      std::fputs(previous.c_str(), out.f);
      values += format("%d,", v);
    } else {
      double v = 0.0;
      status = lv.get_dou(row->id, &v);
      if (status != 0) {
        // A double that cannot be read repeats the line before it; the loader
        // takes the first line of a name, so the file reads back the same.
        std::fputs(previous.c_str(), out.f);
        continue;
      }
      previous = format("%-42s = %g\n", row->name, v);
      std::fputs(previous.c_str(), out.f);
      std::fputs(previous.c_str(), out.f);
      values += format("%g,", v);
    }
    names += row->name;
    names += ',';
  }
  std::fprintf(csv.f, "%s\n%s\n", names.c_str(), values.c_str());
  if (std::ferror(out.f) || std::ferror(csv.f)) return KXERR_CANNOT_OPEN_FILE;
  return status;
}

namespace {
// The ids of KXI_get_param_byfmt, in their order, ending with a negative id.
constexpr int kFormattedIds[] = {
    27,  29,  31,  32,  33,  34,  37,  40,  41,  59,  368, 51,  53,  54,  55,  56,  57,  58,  200,
    201, 202, 204, 205, 206, 207, 208, 209, 210, 211, 214, 216, 217, 218, 219, 220, 226, 221, 223,
    224, 303, 304, 355, 305, 306, 307, 308, 309, 310, 311, 312, 313, 314, 315, 317, 318, 319, 324,
    366, 367, 325, 326, 327, 328, 329, 331, 332, 333, 335, 336, 337, 338, 339, 340, 343, 344, 345,
    382, 346, 353, 347, 348, 349, 350, 351, 354, 352, 400, 401, 402, 403, 404, 405, 407, 408, 409,
    410, 411, 412, 413, 414, 415, 417, 419, 420, 421, 422, 423, 424, 425, 428, 550, 551, 552, 553,
    554, 561, 562, 556, 560, 4066, 4067, -1};
static_assert(sizeof kFormattedIds / sizeof kFormattedIds[0] == 122);

void append(char *buf, int cap, int *used, const std::string &s) {
  if (cap <= 0) return;
  int n = static_cast<int>(s.size());
  if (*used + n > cap - 1) n = cap - 1 - *used;
  if (n > 0) {
    std::memcpy(buf + *used, s.data(), n);
    *used += n;
  }
  buf[*used] = '\0';
}
}  // namespace

int KXI_get_param_byfmt(Model *model, char *names, int namesLen, char *values, int valuesLen) {
  int count = NUMPARLIST(nullptr);
  std::qsort(parlist, count, sizeof(KXparamRow), parlist_cmp);
  int nUsed = 0, vUsed = 0, status = 0;
  if (names && namesLen > 0) names[0] = '\0';
  if (values && valuesLen > 0) values[0] = '\0';
  for (const int *id = kFormattedIds; *id >= 0; ++id) {
    KXparamRow key{*id, nullptr, nullptr, 0};
    const auto *row = static_cast<const KXparamRow *>(
        std::bsearch(&key, parlist, count, sizeof(KXparamRow), parlist_cmp));
    if (!row) continue;
    std::string text;
    if (row->width == 4) {
      int v = 0;
      status = kxp_model_get_int(model, *id, &v);
      if (status != 0) continue;
      text = format("%d, ", v);
    } else {
      double v = 0.0;
      status = kxp_model_get_dou(model, *id, &v);
      if (status != 0) continue;
      text = format("%g, ", v);
    }
    if (values) append(values, valuesLen, &vUsed, text);
    if (names) append(names, namesLen, &nUsed, std::string(row->name) + ", ");
  }
  // Cut the last ", " down to the value or name before it.
  if (names && nUsed >= 2 && names[nUsed - 2] == ',') names[nUsed - 2] = '\0';
  if (values && vUsed >= 2 && values[vUsed - 2] == ',') values[vUsed - 2] = '\0';
  return status;
}

// ---------------------------------------------------------------------------
// Exported calls.
extern "C" KX_API int KXreadEnvParameter(pEnv env, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!env || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxp_load_file(env, nullptr, pszFname, NUMPARLIST(nullptr), parlist);
  });
}

extern "C" KX_API int KXreadModelParameter(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxp_load_file(model->env, model, pszFname, NUMPARLIST(nullptr), parlist);
  });
}

extern "C" KX_API int KXloadEnvParameter(pEnv env, const char *pszFname, int nRows,
                                         const KXparamRow *paTable) {
  return kx::guard([&]() -> int {
    if (!env || (!paTable && nRows > 0)) return KXERR_ILLEGAL_NULL_POINTER;
    return kxp_load_file(env, nullptr, pszFname, nRows, paTable);
  });
}

extern "C" KX_API int KXloadModelParameter(pModel model, const char *pszFname, int nRows,
                                           const KXparamRow *paTable) {
  return kx::guard([&]() -> int {
    if (!model || (!paTable && nRows > 0)) return KXERR_ILLEGAL_NULL_POINTER;
    return kxp_load_file(model->env, model, pszFname, nRows, paTable);
  });
}

extern "C" KX_API int KXwriteEnvParameter(pEnv env, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!env || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxp_write_file(env, nullptr, pszFname);
  });
}

extern "C" KX_API int KXwriteModelParameter(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxp_write_file(model->env, model, pszFname);
  });
}
