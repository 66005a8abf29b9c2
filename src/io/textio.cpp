// Shared pieces of the text files: writer buffer, numbers, names, scanner and
// the row-wise model collector.
#include "io/textio.h"

#include <zlib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unordered_set>

#include "io/mps.h"

namespace kxi {

// ---------------------------------------------------------------------------
// Output
// ---------------------------------------------------------------------------

void TextOut::put(const char *fmt, ...) {
  char buf[512];
  va_list ap;
  va_start(ap, fmt);
  int n = std::vsnprintf(buf, sizeof buf, fmt, ap);
  va_end(ap);
  if (n < 0) return;
  if (n < static_cast<int>(sizeof buf)) {
    s.append(buf, static_cast<size_t>(n));
    return;
  }
  std::vector<char> big(static_cast<size_t>(n) + 1);
  va_start(ap, fmt);
  std::vsnprintf(big.data(), big.size(), fmt, ap);
  va_end(ap);
  s.append(big.data(), static_cast<size_t>(n));
}

int TextOut::save(const char *path) const {
  size_t n = std::strlen(path);
  if (n >= 3 && std::strcmp(path + n - 3, ".gz") == 0) {
    gzFile f = gzopen(path, "wb");
    if (!f) return KXERR_CANNOT_OPEN_FILE;
    bool ok = s.empty() || gzwrite(f, s.data(), static_cast<unsigned>(s.size())) ==
                               static_cast<int>(s.size());
    ok = gzclose(f) == Z_OK && ok;
    return ok ? 0 : KXERR_CANNOT_OPEN_FILE;
  }
  FILE *f = std::fopen(path, "w");
  if (!f) return KXERR_CANNOT_OPEN_FILE;
  bool ok = std::fwrite(s.data(), 1, s.size(), f) == s.size();
  ok = std::fclose(f) == 0 && ok;
  return ok ? 0 : KXERR_CANNOT_OPEN_FILE;
}

std::string num_exact(double v) {
  char buf[64];
  auto r = std::to_chars(buf, buf + sizeof buf, v);
  return std::string(buf, r.ptr);
}

std::string num_signed(double v) {
  std::string t = num_exact(v);
  if (t[0] != '-') t.insert(t.begin(), '+');
  return t;
}

// ---------------------------------------------------------------------------
// Names
// ---------------------------------------------------------------------------

const NameRules kLpRules = {"!\"#$%&(),.;?@_'`{}~", " \t\n\r+-<>=:\\", ':', '\\'};
const NameRules kKorvaRules = {"\"#$%&(:,.;?@_'`{}~", " \t\n\r+-<>=!)", ')', '!'};

namespace {
inline bool is_alpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
inline bool is_digit(char c) { return c >= '0' && c <= '9'; }
inline char lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// Section and statement words of both languages; a name that reads as one of
// them at the start of a line is renamed by the writers.
const char *const kAllKeywords[] = {
    "max[imize]", "max[imise]", "max[imum]", "min[imize]", "min[imise]", "min[imum]",
    "s[ubject][   ]t[o]", "s[uch][    ]t[hat]", "s[.][    ]t[.]", "bound[s]", "bin[ary]",
    "bin[aries]", "gen[erals]", "gen[eral]", "int[egers]", "semi[-continuous]", "semi[s]",
    "sos", "end", "free", "inf[inity]", "title", "sub", "slb", "gin", "range"};
}  // namespace

bool name_first_ok(const NameRules &r, char c) {
  if (is_alpha(c) || static_cast<unsigned char>(c) >= 128) return true;
  return c != '\0' && std::strchr(r.first, c) != nullptr;
}

bool name_char_ok(const NameRules &r, char c) {
  if (static_cast<unsigned char>(c) <= ' ' || c == 127) return false;
  return std::strchr(r.delims, c) == nullptr && c != r.comment;
}

bool keyword_like(std::string_view s) {
  if (s.empty()) return false;
  const char *b = s.data(), *e = s.data() + s.size();
  for (const char *k : kAllKeywords)
    if (match_keyword(b, e, k) == e) return true;
  return false;
}

std::string fit_name(std::string_view s, const NameRules &r) {
  std::string t(s);
  for (char &c : t)
    if (!name_char_ok(r, c)) c = '_';
  if (!t.empty() && !name_first_ok(r, t[0])) t.insert(t.begin(), '_');
  if (t.size() >= 2 && t[0] == '.' && is_digit(t[1])) t.insert(t.begin(), '_');
  return t;
}

std::string col_fallback(int j) {
  char b[32];
  std::snprintf(b, sizeof b, "C%07d", j);
  return b;
}

std::string row_fallback(int i) {
  char b[32];
  std::snprintf(b, sizeof b, "R%07d", i);
  return b;
}

namespace {
void fit_list(char **names, int count, const NameRules &r, std::string (*fallback)(int),
              std::vector<std::string> &out) {
  out.assign(static_cast<size_t>(count), std::string());
  std::unordered_set<std::string> seen;
  seen.reserve(static_cast<size_t>(count) * 2 + 1);
  for (int i = 0; i < count; ++i) {
    std::string t = names && names[i] && names[i][0] ? fit_name(names[i], r) : fallback(i);
    if (keyword_like(t) || seen.count(t)) {
      std::string base = fallback(i);
      t = base;
      for (int k = 1; seen.count(t); ++k) t = base + "_" + std::to_string(k);
    }
    seen.insert(t);
    out[static_cast<size_t>(i)] = std::move(t);
  }
}
}  // namespace

void text_names(const Model *m, const NameRules &r, std::vector<std::string> &cols,
                std::vector<std::string> &rows) {
  fit_list(m->varNames, m->nVars, r, col_fallback, cols);
  fit_list(m->conNames, m->nCons, r, row_fallback, rows);
}

void model_rows(const Model *m, std::vector<int> &beg, std::vector<int> &col,
                std::vector<double> &val) {
  const int nr = m->nCons, nc = m->nVars;
  beg.assign(static_cast<size_t>(nr) + 1, 0);
  for (int j = 0; j < nc; ++j)
    for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; ++k) ++beg[static_cast<size_t>(m->Arow[k]) + 1];
  for (int i = 0; i < nr; ++i) beg[static_cast<size_t>(i) + 1] += beg[static_cast<size_t>(i)];
  col.assign(static_cast<size_t>(beg[static_cast<size_t>(nr)]), 0);
  val.assign(col.size(), 0.0);
  std::vector<int> pos(beg.begin(), beg.end() - 1);
  for (int j = 0; j < nc; ++j)
    for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; ++k) {
      int &q = pos[static_cast<size_t>(m->Arow[k])];
      col[static_cast<size_t>(q)] = j;
      val[static_cast<size_t>(q)] = m->Acoef[k];
      ++q;
    }
}

bool natural_column_order(const Model *m, const std::vector<int> &rbeg,
                          const std::vector<int> &rcol) {
  const int nc = m->nVars;
  std::vector<char> seen(static_cast<size_t>(nc), 0);
  int next = 0;
  auto meet = [&](int j) {
    if (seen[static_cast<size_t>(j)]) return true;
    if (j != next) return false;
    seen[static_cast<size_t>(j)] = 1;
    ++next;
    return true;
  };
  for (int j = 0; j < nc; ++j)
    if (m->cost[j] != 0.0 && !meet(j)) return false;
  for (size_t k = 0; k < rcol.size(); ++k)
    if (!meet(rcol[k])) return false;
  (void)rbeg;
  return next == nc;
}

// ---------------------------------------------------------------------------
// Input
// ---------------------------------------------------------------------------

int read_whole_file(const char *path, std::vector<char> &out) {
  LineReader lr;
  int rc = lr.open(path);
  if (rc) return rc;
  out.swap(lr.data);
  return 0;
}

int read_text_file(Model *m, const char *path, TextParser parse) {
  if (!m || !path) return KXERR_ILLEGAL_NULL_POINTER;
  if (m->nVars > 0 || m->nCons > 0) return KXERR_ALREADY_LOADED;
  std::vector<char> data;
  int rc = read_whole_file(path, data);
  if (rc) {
    kxi_log(m, "\nFailed to open %s", path);
    return rc;
  }
  try {
    return parse(m, data.data(), data.size(), path);
  } catch (...) {
    kxi_clear_model(m);
    throw;
  }
}

int read_text_stream(Model *m, const char *text, int len, const char *format, TextParser parse) {
  if (!m || !text) return KXERR_ILLEGAL_NULL_POINTER;
  if (len < 0) return KXERR_PARAMETER_OUT_OF_RANGE;
  if (m->nVars > 0 || m->nCons > 0) return KXERR_ALREADY_LOADED;
  if (len < 3) {
    kxi_log(m, "\n%s stream is too short.", format);
    return KXERR_ERROR_IN_INPUT;
  }
  const size_t n = static_cast<size_t>(len);
  char title[32];
  std::snprintf(title, sizeof title, "stream_%x",
                static_cast<unsigned>(crc32(0L, reinterpret_cast<const Bytef *>(text),
                                            static_cast<uInt>(n))));
  try {
    return parse(m, text, n, title);
  } catch (...) {
    kxi_clear_model(m);
    throw;
  }
}

const char *match_keyword(const char *p, const char *end, const char *pattern) {
  const char *q = p;
  const char *t = pattern;
  while (*t) {
    if (*t == '[') {
      ++t;
      while (*t && *t != ']') {
        if (q < end && lower(*q) == *t) {
          ++q;
          ++t;
        } else {
          while (*t && *t != ']') ++t;
        }
      }
      if (*t == ']') ++t;
    } else {
      if (q < end && lower(*q) == *t) {
        ++q;
        ++t;
      } else {
        return nullptr;
      }
    }
  }
  if (q < end && std::memchr(" \t\n\r<=>", *q, 7) == nullptr) return nullptr;
  return q;
}

void Scan::skip() {
  while (p < e) {
    char c = *p;
    if (c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v' || c == '\0') {
      ++p;
    } else if (c == '\n') {
      ++p;
      ++line;
      bol = true;
    } else if (c == comment) {
      const char *nl = static_cast<const char *>(std::memchr(p, '\n', static_cast<size_t>(e - p)));
      p = nl ? nl : e;
    } else {
      break;
    }
  }
}

void Scan::skip_line_blanks() {
  while (p < e) {
    char c = *p;
    if (c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v' || c == '\0') {
      ++p;
    } else if (c == comment) {
      const char *nl = static_cast<const char *>(std::memchr(p, '\n', static_cast<size_t>(e - p)));
      p = nl ? nl : e;
    } else {
      break;
    }
  }
}

bool Scan::keyword(const char *pattern) {
  const char *q = match_keyword(p, e, pattern);
  if (!q) return false;
  p = q;
  bol = false;
  tokLine = line;
  return true;
}

bool Scan::number(double *v) {
  const char *q = p;
  int digits = 0;
  while (q < e && is_digit(*q)) ++q, ++digits;
  if (q < e && *q == '.') {
    ++q;
    while (q < e && is_digit(*q)) ++q, ++digits;
  }
  if (digits == 0) return false;
  if (q < e && (*q == 'e' || *q == 'E')) {
    const char *x = q + 1;
    if (x < e && (*x == '+' || *x == '-')) ++x;
    if (x < e && is_digit(*x)) {
      while (x < e && is_digit(*x)) ++x;
      q = x;
    }
  }
  auto r = std::from_chars(p, q, *v);
  if (r.ec == std::errc::result_out_of_range) {
    char tmp[512];
    size_t n = static_cast<size_t>(q - p);
    if (n >= sizeof tmp) return false;
    std::memcpy(tmp, p, n);
    tmp[n] = '\0';
    *v = std::strtod(tmp, nullptr);
  } else if (r.ec != std::errc() || r.ptr != q) {
    return false;
  }
  p = q;
  bol = false;
  tokLine = line;
  return true;
}

std::string_view Scan::name(const NameRules &r) {
  if (p >= e || !name_first_ok(r, *p)) return {};
  // A point before a digit begins a number, not a name.
  if (*p == '.' && p + 1 < e && is_digit(p[1])) return {};
  const char *q = p + 1;
  while (q < e && name_char_ok(r, *q)) ++q;
  std::string_view s(p, static_cast<size_t>(q - p));
  p = q;
  bol = false;
  tokLine = line;
  return s;
}

bool Scan::row_name(const NameRules &r, std::string_view *out) {
  const char *q = p;
  while (q < e && *q != '\n' && *q != r.rowMark && *q != r.comment) ++q;
  if (q >= e || *q != r.rowMark) return false;
  const char *t = q;
  while (t > p && (t[-1] == ' ' || t[-1] == '\t' || t[-1] == '\r')) --t;
  if (t == p) {
    *out = std::string_view();
    p = q + 1;
    bol = false;
    tokLine = line;
    return true;
  }
  if (!name_first_ok(r, *p)) return false;
  for (const char *k = p; k < t; ++k)
    if (!name_char_ok(r, *k)) return false;
  *out = std::string_view(p, static_cast<size_t>(t - p));
  p = q + 1;
  bol = false;
  tokLine = line;
  return true;
}

std::string Scan::line_text() const {
  const char *a = std::min(p, e);
  while (a > b && a[-1] != '\n') --a;
  const char *z = a;
  while (z < e && *z != '\n') ++z;
  size_t n = static_cast<size_t>(z - a);
  if (n > 1000) n = 1000;
  std::string s(a, n);
  for (char &c : s)
    if (c == '\r' || c == '\0') c = ' ';
  return s;
}


// ---------------------------------------------------------------------------
// Shared reader
// ---------------------------------------------------------------------------

int TextReader::fail(const char *reason) {
  // At the end of the text the fault belongs to the last token's line.
  if (sc.end()) return fail_last(reason);
  if (errLine == 0) {
    why = reason;
    errLine = sc.line;
    errText = sc.line_text();
  }
  return KXERR_ERROR_IN_INPUT;
}

int TextReader::fail_last(const char *reason) {
  if (errLine == 0) {
    why = reason;
    errLine = sc.tokLine;
    // The text of that line: walk back from the cursor.
    const char *a = sc.p;
    int ln = sc.line;
    while (a > sc.b && ln > sc.tokLine) {
      --a;
      if (*a == '\n') --ln;
    }
    Scan t = sc;
    t.p = a;
    errText = t.line_text();
  }
  return KXERR_ERROR_IN_INPUT;
}

void TextReader::report(const char *lang) {
  if (errLine == 0) return;
  kxi_log(m, "\nError at line %d.", errLine);
  kxi_log(m, "\nUnexpected or missing token. Invalid %s format. (%s)", lang, why.c_str());
  kxi_set_file_error(m->env, errLine, errText.c_str());
}

int TextReader::sense() {
  sc.skip();
  if (sc.end()) return 0;
  const char c = *sc.p;
  const char n = sc.p + 1 < sc.e ? sc.p[1] : '\0';
  if (c == '<') {
    adv(n == '=' ? 2 : 1);
    return kLE;
  }
  if (c == '>') {
    adv(n == '=' ? 2 : 1);
    return kGE;
  }
  if (c == '=') {
    if (n == '<') {
      adv(2);
      return kLE;
    }
    if (n == '>') {
      adv(2);
      return kGE;
    }
    adv(n == '=' ? 2 : 1);
    return kEQ;
  }
  return 0;
}

int TextReader::value(double *v) {
  sc.skip();
  double sign = 1.0;
  while (!sc.end() && (*sc.p == '+' || *sc.p == '-')) {
    if (*sc.p == '-') sign = -sign;
    adv(1);
    sc.skip();
  }
  if (sc.end()) return fail("missing value");
  double x;
  if (sc.number(&x)) {
    x *= sign;
  } else if (sc.keyword("inf[inity]")) {
    x = sign * kx::kInfinity;
  } else {
    return fail("missing value");
  }
  if (x >= kx::kInfinity) x = kx::kInfinity;
  if (x <= -kx::kInfinity) x = -kx::kInfinity;
  *v = x;
  return 0;
}

int TextReader::expr(Expr &x, bool rhs) {
  bool first = true;
  for (;;) {
    sc.skip();
    if (sc.end()) break;
    if (!first && rhs && sc.bol) break;
    double sign = 1.0;
    bool hadSign = false;
    const Mark before = mark();
    while (!sc.end() && (*sc.p == '+' || *sc.p == '-')) {
      if (*sc.p == '-') sign = -sign;
      hadSign = true;
      adv(1);
      sc.skip();
    }
    if (!hadSign && section_here()) break;
    if (!first && !hadSign) break;
    if (sc.end()) return fail("a sign without a term");
    double v;
    if (sc.number(&v)) {
      // A coefficient with its name, or a constant.
      const Mark k = mark();
      sc.skip();
      bool name = false;
      if (!sc.end() && !(rhs && sc.bol) && !section_here() &&
          !match_keyword(sc.p, sc.e, "inf[inity]")) {
        const Mark k2 = mark();
        std::string_view nm = sc.name(*R);
        if (!nm.empty()) {
          // A name followed by the row mark opens the next row.
          const Mark k3 = mark();
          sc.skip_line_blanks();
          if (!sc.end() && *sc.p == R->rowMark) {
            reset(k2);
          } else {
            if (!std::isfinite(v)) return fail("coefficient out of range");
            reset(k3);
            x.t.push_back({tm.col(nm), sign * v});
            name = true;
          }
        }
      }
      if (!name) {
        reset(k);
        x.c += sign * v;
      }
    } else if (sc.keyword("inf[inity]")) {
      x.c += sign * kx::kInfinity;
    } else {
      const Mark k = mark();
      std::string_view nm = sc.name(*R);
      if (nm.empty()) {
        if (!hadSign) {
          reset(before);
          break;
        }
        return fail("a sign without a term");
      }
      const Mark k2 = mark();
      sc.skip_line_blanks();
      if (!hadSign && !sc.end() && *sc.p == R->rowMark) {
        reset(k);
        break;
      }
      reset(k2);
      x.t.push_back({tm.col(nm), sign});
    }
    first = false;
    x.any = true;
  }
  return 0;
}

namespace {
double clamp_inf(double v) {
  if (v >= kx::kInfinity) return kx::kInfinity;
  if (v <= -kx::kInfinity) return -kx::kInfinity;
  return v;
}
}  // namespace

int TextReader::row() {
  sc.skip();
  std::string_view nm;
  if (!sc.row_name(*R, &nm)) nm = std::string_view();
  Expr a, b, c;
  KX_CALL(expr(a, false));
  int s1 = sense();
  if (!s1) return fail("missing relation");
  // After a lone constant the middle of a double inequality may run over lines.
  KX_CALL(expr(b, !(a.any && a.t.empty())));
  if (!b.any) return fail("missing right-hand side");
  const Mark k = mark();
  int s2 = sense();
  if (s2) {
    KX_CALL(expr(c, true));
    if (!c.any) return fail("missing right-hand side");
  } else {
    reset(k);
  }
  std::vector<std::pair<int, double>> terms;
  char type;
  double rhsv, range = kx::kInfinity;
  const double inf = kx::kInfinity;
  if (!s2) {
    if (a.t.empty() && !b.t.empty()) {
      std::swap(a, b);
      s1 = s1 == kLE ? kGE : s1 == kGE ? kLE : kEQ;
    }
    terms = std::move(a.t);
    for (auto &t : b.t) terms.push_back({t.first, -t.second});
    rhsv = clamp_inf(b.c - a.c);
    type = s1 == kLE ? 'L' : s1 == kGE ? 'G' : 'E';
    if ((s1 == kLE && rhsv >= inf) || (s1 == kGE && rhsv <= -inf)) {
      type = 'N';
      rhsv = 0.0;
    }
    if (type == 'E' && std::fabs(rhsv) >= inf) return fail_last("infinite right-hand side of an equation");
  } else {
    if (!a.t.empty() || !c.t.empty()) return fail_last("a double inequality needs constants at both ends");
    if (s1 != s2 || s1 == kEQ) return fail_last("the relations of a double inequality differ");
    terms = std::move(b.t);
    double lo, hi;
    if (s1 == kLE) {
      lo = clamp_inf(a.c - b.c);
      hi = clamp_inf(c.c - b.c);
    } else {
      hi = clamp_inf(a.c - b.c);
      lo = clamp_inf(c.c - b.c);
    }
    if (lo > hi) return fail_last("the lower side of a double inequality is above the upper side");
    if (lo <= -inf && hi >= inf) {
      type = 'N';
      rhsv = 0.0;
    } else if (lo <= -inf) {
      type = 'L';
      rhsv = hi;
    } else if (hi >= inf) {
      type = 'G';
      rhsv = lo;
    } else if (lo == hi) {
      type = 'E';
      rhsv = lo;
    } else if (s1 == kLE) {
      type = 'L';
      rhsv = hi;
      range = hi - lo;
    } else {
      type = 'G';
      rhsv = lo;
      range = hi - lo;
    }
  }
  merge_terms(terms);
  for (auto &t : terms)
    if (!std::isfinite(t.second)) return fail_last("coefficient out of range");
  if (!(rhsv == rhsv) || !(range == range)) return fail_last("bad right-hand side");
  if (!tm.add_row(nm, type, rhsv, range)) return fail_last("duplicate row name");
  for (auto &t : terms)
    if (t.second != 0.0) tm.term(t.first, t.second);
  tm.end_row();
  return 0;
}

// ---------------------------------------------------------------------------
// Collector
// ---------------------------------------------------------------------------

int TextModel::col(std::string_view name) {
  int j = hash_lookup(colHash, name);
  if (j >= 0) return j;
  j = static_cast<int>(cost.size());
  hash_insert(colHash, name, j);
  cost.push_back(0.0);
  lo.push_back(0.0);
  up.push_back(kx::kInfinity);
  vtype.push_back('C');
  isSC.push_back(0);
  return j;
}

bool TextModel::add_row(std::string_view name, char type, double b, double range) {
  const int i = static_cast<int>(conType.size());
  if (!name.empty()) {
    if (hash_lookup(rowHash, name) >= 0) return false;
    hash_insert(rowHash, name, i);
  }
  rowNamed.push_back(name.empty() ? 0 : 1);
  conType.push_back(type);
  rhs.push_back(b);
  rng.push_back(range);
  if (std::fabs(range) < kx::kInfinity) anyRange = true;
  return true;
}

void merge_terms(std::vector<std::pair<int, double>> &t) {
  std::stable_sort(t.begin(), t.end(),
                   [](const auto &a, const auto &b) { return a.first < b.first; });
  size_t w = 0;
  for (size_t r = 0; r < t.size(); ++r) {
    if (w > 0 && t[w - 1].first == t[r].first)
      t[w - 1].second += t[r].second;
    else
      t[w++] = t[r];
  }
  t.resize(w);
}

int TextModel::load(Model *m) {
  const int nr = static_cast<int>(conType.size());
  const int nc = static_cast<int>(cost.size());
  // Column form: count, start, fill (rows ascend within each column).
  std::vector<int> beg(static_cast<size_t>(nc) + 1, 0);
  for (int c : rowCol) ++beg[static_cast<size_t>(c) + 1];
  for (int j = 0; j < nc; ++j) beg[static_cast<size_t>(j) + 1] += beg[static_cast<size_t>(j)];
  const size_t nnz = rowCol.size();
  std::vector<int> arow(nnz);
  std::vector<double> aval(nnz);
  std::vector<int> pos(beg.begin(), beg.end() - 1);
  for (int i = 0; i < nr; ++i) {
    for (int k = rowBeg[static_cast<size_t>(i)]; k < rowBeg[static_cast<size_t>(i) + 1]; ++k) {
      int &q = pos[static_cast<size_t>(rowCol[static_cast<size_t>(k)])];
      arow[static_cast<size_t>(q)] = i;
      aval[static_cast<size_t>(q)] = rowVal[static_cast<size_t>(k)];
      ++q;
    }
  }
  std::vector<char> types(conType);
  types.push_back('\0');
  std::vector<double> b(rhs);
  if (b.empty()) b.push_back(0.0);
  KX_CALL(KXloadLPData(m, nr, nc, sense, objConst, cost.data(), b.data(), types.data(),
                       static_cast<int>(nnz), beg.data(), nullptr, aval.data(), arow.data(),
                       lo.data(), up.data()));
  if (anyRange) KX_CALL(kxi_load_ranges(m, rng.data()));
  if (anyInt) {
    std::vector<char> vt(vtype);
    vt.push_back('\0');
    KX_CALL(kxi_load_var_type(m, vt.data()));
  }
  {
    std::vector<int> v;
    std::vector<double> l, u;
    for (int j = 0; j < nc; ++j)
      if (isSC[static_cast<size_t>(j)]) {
        v.push_back(j);
        l.push_back(lo[static_cast<size_t>(j)]);
        u.push_back(up[static_cast<size_t>(j)]);
      }
    if (!v.empty())
      KX_CALL(kxi_load_semicont(m, static_cast<int>(v.size()), v.data(), l.data(), u.data()));
  }
  if (!setType.empty()) {
    std::vector<int> sb(setBeg);
    sb.push_back(static_cast<int>(setVar.size()));
    KX_CALL(kxi_load_sets(m, static_cast<int>(setType.size()), setType.data(),
                          anyCard ? setCard.data() : nullptr, sb.data(), setVar.data()));
  }
  // Names: rows from the hash (unnamed rows take the pattern), columns from the hash.
  std::vector<std::string> fallback;
  std::vector<char *> rn(static_cast<size_t>(nr) + 1, nullptr), cn(static_cast<size_t>(nc) + 1);
  for (int e = 0; e < rowHash.count(); ++e)
    rn[static_cast<size_t>(rowHash.value[static_cast<size_t>(e)])] =
        const_cast<char *>(rowHash.name(e));
  fallback.reserve(static_cast<size_t>(nr));
  for (int i = 0; i < nr; ++i)
    if (!rn[static_cast<size_t>(i)]) {
      fallback.push_back(row_fallback(i));
      rn[static_cast<size_t>(i)] = fallback.back().data();
    }
  for (int e = 0; e < colHash.count(); ++e)
    cn[static_cast<size_t>(colHash.value[static_cast<size_t>(e)])] =
        const_cast<char *>(colHash.name(e));
  KX_CALL(kxi_load_names(m, title.empty() ? nullptr : title.c_str(),
                         objName.empty() ? nullptr : objName.c_str(), nullptr, nullptr, nullptr,
                         nr > 0 ? rn.data() : nullptr, nc > 0 ? cn.data() : nullptr, nullptr));
  return 0;
}

}  // namespace kxi
