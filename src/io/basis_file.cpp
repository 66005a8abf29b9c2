// Basis files in three forms (binary, an MPS model of the basis matrix, text),
// the start point file that also carries a basis, and the priority file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "io/textio.h"
#include "simplex/glp.h"

namespace kxi {
namespace {

// Status words of the text files, with and without their prefix.
const char *status_word(int s) {
  if (s >= 0) return "KX_BASTYPE_BAS ";
  switch (s) {
    case -1: return "KX_BASTYPE_ATLO";
    case -2: return "KX_BASTYPE_ATUP";
    case -3: return "KX_BASTYPE_FNUL";
    default: return "KX_BASTYPE_SBAS";
  }
}

// 0 basic, -1..-4; 1 for a word that is no status.
int parse_status(const char *t) {
  if (std::strncmp(t, "KX_BASTYPE_", 11) == 0) t += 11;
  if (std::strcmp(t, "BAS") == 0) return 0;
  if (std::strcmp(t, "ATLO") == 0) return -1;
  if (std::strcmp(t, "ATUP") == 0) return -2;
  if (std::strcmp(t, "FNUL") == 0) return -3;
  if (std::strcmp(t, "SBAS") == 0) return -4;
  return 1;
}

std::string name_or(char **names, int i, const char *fmt, int shown) {
  if (names && names[i] && names[i][0]) return names[i];
  char b[32];
  std::snprintf(b, sizeof b, fmt, shown);
  return b;
}

int write_binary(const char *path, const std::vector<int> &cs, const std::vector<int> &rs) {
  FILE *f = std::fopen(path, "wb");
  if (!f) return KXERR_CANNOT_OPEN_FILE;
  bool ok = std::fwrite(cs.data(), sizeof(int), cs.size(), f) == cs.size();
  ok = ok && std::fwrite(rs.data(), sizeof(int), rs.size(), f) == rs.size();
  ok = std::fclose(f) == 0 && ok;
  return ok ? 0 : kx::kErrInternal;
}

// The basis matrix as a square MPS model: basic columns, and an artificial
// column A%07d for each row whose logical is basic.
int write_bas_mps(const Model *m, const char *path) {
  const Sol *s = m->sol;
  TextOut o;
  o.put("NAME           %8s\n", m->modelName && *m->modelName ? m->modelName : "NO_TITLE");
  o.put("ROWS\n");
  const std::string obj = m->objName && *m->objName ? m->objName : "OBJ";
  o.put(" N  %8s\n", obj.c_str());
  const int n = m->nVars, nr = m->nCons;
  std::vector<std::string> rn(static_cast<size_t>(nr));
  for (int i = 0; i < nr; ++i) {
    const char t = m->conType[i];
    if (t != 'R' && t != 'L' && t != 'E' && t != 'G') {
      o.save(path);
      return KXERR_BAD_MODEL;
    }
    rn[static_cast<size_t>(i)] = name_or(m->conNames, i, "R%07d", i);
    o.put(" E  %8s\n", rn[static_cast<size_t>(i)].c_str());
  }
  if (!s || s->basic_status == KX_STATUS_UNLOADED || !s->colstat) return KXERR_BAD_MODEL;
  o.put("COLUMNS\n");
  std::vector<std::string> basic;
  for (int j = 0; j < n; ++j) {
    if (s->colstat[j] < 0) continue;
    const std::string c = name_or(m->varNames, j, "C%07d", j);
    basic.push_back(c);
    const int k0 = m->Abeg[j], k1 = m->Abeg[j] + m->Alen[j];
    if (m->cost[j] == 0.0 && k0 == k1) {
      o.put("    %8s\n", c.c_str());
      continue;
    }
    if (m->cost[j] != 0.0) o.put("    %8s  %8s  %12g\n", c.c_str(), obj.c_str(), m->cost[j]);
    for (int k = k0; k < k1; k += 2) {
      if (k + 1 < k1)
        o.put("    %8s  %8s  %12g   %8s  %12g\n", c.c_str(), rn[static_cast<size_t>(m->Arow[k])].c_str(),
              m->Acoef[k], rn[static_cast<size_t>(m->Arow[k + 1])].c_str(), m->Acoef[k + 1]);
      else
        o.put("    %8s  %8s  %12g\n", c.c_str(), rn[static_cast<size_t>(m->Arow[k])].c_str(),
              m->Acoef[k]);
    }
  }
  for (int i = 0; i < nr; ++i) {
    if (!s->rowstat || s->rowstat[i] < 0) continue;
    char a[32];
    std::snprintf(a, sizeof a, "A%07d", i);
    basic.push_back(a);
    o.put("    %8s  %8s  %12g\n", a, rn[static_cast<size_t>(i)].c_str(), 1.0);
  }
  o.put("RHS\n");
  o.put("BOUNDS\n");
  for (const auto &b : basic) o.put(" FR BND1      %s\n", b.c_str());
  o.put("ENDATA\n");
  return o.save(path);
}

// Text basis: columns then rows, "  name    status".
int write_bas_txt(const Model *m, const char *path, const std::vector<int> &cs,
                  const std::vector<int> &rs) {
  const int n = m->nVars, nr = m->nCons;
  size_t w = 8;
  for (int j = 0; j < n; ++j)
    if (m->varNames && m->varNames[j]) w = std::max(w, std::strlen(m->varNames[j]));
  for (int i = 0; i < nr; ++i)
    if (m->conNames && m->conNames[i]) w = std::max(w, std::strlen(m->conNames[i]));
  w += 5;
  const int iw = static_cast<int>(w);
  TextOut o;
  const char *last = "KX_BASTYPE_BAS ";
  for (int j = 0; j < n; ++j) {
    const std::string c = name_or(m->varNames, j, "C%-7d", j + 1);
    last = status_word(cs[static_cast<size_t>(j)]);
    o.put("  %-*s    %22s\n", iw, c.c_str(), last);
  }
  for (int i = 0; i < nr; ++i) {
    const std::string r = name_or(m->conNames, i, "R%-7d", i + 2);
    const int st = rs[static_cast<size_t>(i)];
    // Rows know BAS, ATLO and ATUP; another status repeats the word before it.
    if (st >= 0 || st == -1 || st == -2) last = status_word(st);
    o.put("  %-*s    %22s\n", iw, r.c_str(), last);
  }
  return o.save(path);
}

bool has_nonlinear_parts(const Model *m) {
  return m->nQCNonz > 0 || m->nCones > 0 || m->nConeNonz > 0 || (m->instr && m->instr->codeLen > 0);
}

// Lines of a text file cut to 255 characters.
void split_lines(const std::vector<char> &data, std::vector<std::string> &lines) {
  size_t a = 0;
  while (a < data.size()) {
    const void *nl = std::memchr(data.data() + a, '\n', data.size() - a);
    size_t z = nl ? static_cast<size_t>(static_cast<const char *>(nl) - data.data()) : data.size();
    size_t len = std::min<size_t>(z - a, 255);
    std::string s(data.data() + a, len);
    for (char &c : s)
      if (c == '\r' || c == '\0') c = ' ';
    lines.push_back(std::move(s));
    a = z + 1;
  }
}

// Up to `max` tokens cut at blanks and tabs.
int tokens(std::string &s, char **t, int max) {
  int k = 0;
  char *p = s.data();
  while (k < max) {
    while (*p == ' ' || *p == '\t') ++p;
    if (!*p) break;
    t[k++] = p;
    while (*p && *p != ' ' && *p != '\t') ++p;
    if (*p) *p++ = '\0';
  }
  return k;
}

}  // namespace

int write_basis(Model *m, const char *path, int format) {
  const int form = std::abs(format);
  if (form < 1 || form > 3) return KXERR_PARAMETER_OUT_OF_RANGE;
  std::vector<int> cs(static_cast<size_t>(m->nVars)), rs(static_cast<size_t>(m->nCons));
  int rc = KXgetBasis(m, cs.data(), rs.data());
  if (format < 0 && m->glp) {
    // Bring out the basis of the live simplex state, even of a stopped solve.
    int prc = putsolution(m, m->glp);
    if (prc == 0) rc = KXgetBasis(m, cs.data(), rs.data());
  }
  if (rc == KXERR_INFO_NOT_AVAILABLE && m->sol && m->sol->colstat && m->sol->rowstat &&
      m->sol->basic_status == KX_STATUS_LOADED) {
    // A basis given by KXloadBasis and not yet solved from.
    std::copy(m->sol->colstat, m->sol->colstat + m->nVars, cs.begin());
    std::copy(m->sol->rowstat, m->sol->rowstat + m->nCons, rs.begin());
    rc = 0;
  }
  if (rc) return rc;
  switch (form) {
    case 1: return write_binary(path, cs, rs);
    case 2: return write_bas_mps(m, path);
    default:
      if (!m->sol) return KXERR_INFO_NOT_AVAILABLE;
      if (has_nonlinear_parts(m)) return kx::kErrInternal;
      return write_bas_txt(m, path, cs, rs);
  }
}

int read_basis(Model *m, const char *path) {
  FILE *f = std::fopen(path, "rb");
  if (!f) return KXERR_CANNOT_OPEN_FILE;
  std::vector<int> cs(static_cast<size_t>(m->nVars)), rs(static_cast<size_t>(m->nCons));
  bool ok = std::fread(cs.data(), sizeof(int), cs.size(), f) == cs.size();
  ok = ok && std::fread(rs.data(), sizeof(int), rs.size(), f) == rs.size();
  std::fclose(f);
  if (!ok) return kx::kErrInternal;
  return KXloadBasis(m, cs.data(), rs.data());
}

int read_start_point(Model *m, const char *path) {
  kxi_log(m, "\n\nReading initial solution from file %s", path);
  std::vector<char> data;
  if (read_whole_file(path, data)) {
    kxi_log(m, "\nFailed to open %s", path);
    return KXERR_CANNOT_OPEN_FILE;
  }
  const int n = m->nVars, nr = m->nCons;
  std::vector<double> x(static_cast<size_t>(n), 0.0);
  std::vector<int> stat;  // n column then m row statuses, made at the first status
  std::vector<std::string> lines;
  split_lines(data, lines);
  int stored = 0;
  for (size_t ln = 0; ln < lines.size(); ++ln) {
    std::string &s = lines[ln];
    size_t f = s.find_first_not_of(" \t");
    if (f == std::string::npos || s[f] == '!' || s[f] == '*') continue;
    const std::string whole = s;
    char *t[4];
    int k = tokens(s, t, 4);
    if (k < 2) continue;
    const int lineNo = static_cast<int>(ln) + 1;
    // A text basis line holds a name and a status word alone.
    int st = 1;
    if (k == 4) st = parse_status(t[3]);
    else if (k == 2) st = parse_status(t[1]);
    const bool column = stored < n;
    int idx = -1;
    int rc = column ? KXgetVariableIndex(m, t[0], &idx) : KXgetConstraintIndex(m, t[0], &idx);
    if (rc) {
      // A name with blanks in a text basis: all that stands before the status word.
      size_t z = whole.find_last_not_of(" \t");
      size_t y = whole.find_last_of(" \t", z);
      if (z != std::string::npos && y != std::string::npos) {
        std::string last = whole.substr(y + 1, z - y);
        std::string nm = whole.substr(0, y);
        size_t p0 = nm.find_first_not_of(" \t"), p1 = nm.find_last_not_of(" \t");
        if (parse_status(last.c_str()) != 1 && p0 != std::string::npos) {
          nm = nm.substr(p0, p1 - p0 + 1);
          int rc2 = column ? KXgetVariableIndex(m, nm.c_str(), &idx)
                           : KXgetConstraintIndex(m, nm.c_str(), &idx);
          if (rc2 == 0) {
            rc = 0;
            k = 2;
            st = parse_status(last.c_str());
          }
        }
      }
    }
    const bool hasStatusNow = k == 4 || (k == 2 && st != 1);
    if (rc) {
      kxi_log(m, "\nSkipping unknown token %s", t[0]);
      continue;
    }
    if (column) {
      ++stored;
      if (!(k == 2 && hasStatusNow)) x[static_cast<size_t>(idx)] = std::strtod(t[1], nullptr);
    }
    if (!hasStatusNow) continue;
    if (stat.empty()) stat.assign(static_cast<size_t>(n) + static_cast<size_t>(nr), -4);
    if (st == 1) {
      if (column)
        kxi_log(m, "\nUnknown column basis status %s at line %d", t[k - 1], lineNo);
      else
        kxi_log(m, "\nUnknown row basis status %s at line %d", t[k - 1], lineNo);
      continue;
    }
    if (column) {
      if (idx < 0 || idx >= n) {
        kxi_log(m, "\nVariable index %d out of range %s at line %d", idx, t[0], lineNo);
        continue;
      }
      stat[static_cast<size_t>(idx)] = st;
    } else {
      if (idx < 0 || idx >= nr) {
        kxi_log(m, "\nConstraint index %d out of range %s at line %d in .sol", idx, t[0], lineNo);
        continue;
      }
      stat[static_cast<size_t>(n) + static_cast<size_t>(idx)] = st;
    }
  }
  if (n > 0) KX_CALL(KXloadVarStartPoint(m, x.data()));
  if (!stat.empty()) {
    int rc = KXloadBasis(m, stat.data(), stat.data() + n);
    if (rc) kxi_log(m, "\nFailed loading the given basis in file.");
  }
  return 0;
}

int read_priorities(Model *m, const char *path) {
  std::vector<char> data;
  if (read_whole_file(path, data)) return KXERR_CANNOT_OPEN_FILE;
  std::vector<int> prio(static_cast<size_t>(m->nVars), 0);
  std::vector<std::string> lines;
  split_lines(data, lines);
  int rc = 0;
  for (auto &s : lines) {
    char name[256];
    int p;
    if (std::sscanf(s.c_str(), " %255s %d ", name, &p) != 2) continue;
    int j = -1;
    rc = KXgetVariableIndex(m, name, &j);
    if (rc) break;
    if (j >= 0 && j < m->nVars && p > 0) prio[static_cast<size_t>(j)] = p;
  }
  if (m->nVars > 0) {
    int lrc = KXloadVarPriorities(m, prio.data());
    if (rc == 0) rc = lrc;
  }
  kxi_free_name_hashes(m);
  return rc;
}

}  // namespace kxi

extern "C" KX_API int KXwriteBasis(pModel model, const char *pszFname, int nFormat) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi::write_basis(model, pszFname, nFormat);
  });
}

extern "C" KX_API int KXreadBasis(pModel model, const char *pszFname, int nFormat) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    if (nFormat != 1 && nFormat != -1) return KXERR_PARAMETER_OUT_OF_RANGE;
    return kxi::read_basis(model, pszFname);
  });
}

extern "C" KX_API int KXreadVarStartPoint(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi::read_start_point(model, pszFname);
  });
}

extern "C" KX_API int KXreadVarPriorities(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi::read_priorities(model, pszFname);
  });
}
