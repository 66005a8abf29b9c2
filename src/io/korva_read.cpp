// The KORVA text format reader (files ending in .kvx):
//
//   ! a comment runs to the end of the line
//   TITLE the rest of the line
//   MAX | MIN   terms and constants         (MAXIMIZE, MINIMIZE, ...)
//   SUBJECT TO                              (also ST, S.T., SUCH THAT)
//   [name)] expr rel expr                   rel: <, <=, =<, >, >=, =>, =
//   [name)] const rel expr rel const        a ranged row
//   END
//   FREE name | SUB name value | SLB name value | GIN name | INT name
//   RANGE name value                        the row's range, as in MPS RANGES
//
// Words count wherever a term could begin without a sign, so a whole model may
// stand on one line.  INT makes a column binary, GIN general integer.  A name
// that no row or objective holds is skipped with a message.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "io/textio.h"

namespace kxi {
namespace {

enum Word { kNone = 0, kSubject, kEnd };

int korva_section(const Scan &sc) {
  if (match_keyword(sc.p, sc.e, "s[ubject][   ]t[o]") || match_keyword(sc.p, sc.e, "s[uch][    ]t[hat]") ||
      match_keyword(sc.p, sc.e, "s[.][    ]t[.]"))
    return kSubject;
  if (match_keyword(sc.p, sc.e, "end")) return kEnd;
  return kNone;
}

struct KorvaReader : TextReader {
  int lines = 0;

  bool subject_word() {
    return sc.keyword("s[ubject][   ]t[o]") || sc.keyword("s[uch][    ]t[hat]") ||
           sc.keyword("s[.][    ]t[.]");
  }

  int statements() {
    for (;;) {
      sc.skip();
      if (sc.end()) return 0;
      const int line = sc.line;
      const char *what;
      int kind;  // 0 FREE, 1 SUB, 2 SLB, 3 GIN, 4 INT, 5 RANGE
      if (sc.keyword("free")) {
        kind = 0;
        what = "FREE";
      } else if (sc.keyword("sub")) {
        kind = 1;
        what = "SUB";
      } else if (sc.keyword("slb")) {
        kind = 2;
        what = "SLB";
      } else if (sc.keyword("gin")) {
        kind = 3;
        what = "GIN";
      } else if (sc.keyword("int")) {
        kind = 4;
        what = "INT";
      } else if (sc.keyword("range")) {
        kind = 5;
        what = "RANGE";
      } else {
        return fail("FREE, SUB, SLB, GIN, INT or RANGE was expected");
      }
      sc.skip();
      std::string_view nm = sc.name(*R);
      if (nm.empty()) return fail("a name was expected");
      double v = 0.0;
      if (kind == 1 || kind == 2 || kind == 5) KX_CALL(value(&v));
      if (kind == 5) {
        int i = hash_lookup(tm.rowHash, nm);
        if (i < 0) {
          kxi_log(m, "\nRANGE: Ignoring unknown constraint at line %d.", line);
          continue;
        }
        tm.rng[static_cast<size_t>(i)] = v;
        if (std::fabs(v) < kx::kInfinity) tm.anyRange = true;
        continue;
      }
      int j = tm.find_col(nm);
      if (j < 0) {
        kxi_log(m, "\n%s: Ignoring unknown variable at line %d.", what, line);
        continue;
      }
      const size_t jj = static_cast<size_t>(j);
      switch (kind) {
        case 0:
          tm.lo[jj] = -kx::kInfinity;
          tm.up[jj] = kx::kInfinity;
          break;
        case 1: tm.up[jj] = v; break;
        case 2: tm.lo[jj] = v; break;
        case 3:
          tm.vtype[jj] = 'I';
          tm.anyInt = true;
          break;
        default:
          tm.vtype[jj] = 'B';
          tm.anyInt = true;
          break;
      }
    }
  }

  int parse() {
    sc.skip();
    if (sc.keyword("title")) {
      sc.skip_line_blanks();
      const char *a = sc.p;
      while (sc.p < sc.e && *sc.p != '\n') ++sc.p;
      const char *z = sc.p;
      while (z > a && (z[-1] == ' ' || z[-1] == '\t' || z[-1] == '\r')) --z;
      tm.title.assign(a, static_cast<size_t>(z - a));
      if (sc.p < sc.e) {
        ++sc.p;
        ++sc.line;
      }
      sc.bol = true;
      sc.skip();
    }
    if (sc.keyword("max[imize]") || sc.keyword("max[imise]"))
      tm.sense = -1;
    else if (sc.keyword("min[imize]") || sc.keyword("min[imise]"))
      tm.sense = 1;
    else
      return fail("the objective sense must come first");
    Expr o;
    KX_CALL(expr(o, false));
    for (auto &t : o.t) {
      double &c = tm.cost[static_cast<size_t>(t.first)];
      c += t.second;
      if (!std::isfinite(c)) return fail_last("coefficient out of range");
    }
    if (!(std::fabs(o.c) < kx::kInfinity)) return fail_last("infinite objective constant");
    tm.objConst = o.c;
    sc.skip();
    if (subject_word()) {
      for (;;) {
        sc.skip();
        if (sc.end() || korva_section(sc)) break;
        KX_CALL(row());
      }
    }
    sc.skip();
    if (!sc.keyword("end")) {
      if (sc.end()) {
        why = "Missing token 'END'";
        kxi_log(m, "\nMissing token 'END'");
      }
      return fail(sc.end() ? "Missing token 'END'" : "unexpected token");
    }
    KX_CALL(statements());
    lines = sc.line;
    if (tm.cost.empty()) return fail("the model has no variables");
    return 0;
  }
};

}  // namespace

// Read KORVA text into an unloaded model.  title: the model's name unless the
// text gives one.
int korva_read_text(Model *m, const char *text, size_t len, const char *title) {
  KorvaReader rd;
  rd.m = m;
  rd.R = &kKorvaRules;
  rd.section_at = korva_section;
  rd.kwAnywhere = true;
  rd.sc.init(text, len, kKorvaRules.comment);
  rd.tm.start_rows();
  hash_init(rd.tm.colHash, static_cast<int>(std::min<size_t>(len / 16 + 16, 1u << 22)));
  hash_init(rd.tm.rowHash, static_cast<int>(std::min<size_t>(len / 32 + 16, 1u << 22)));
  rd.tm.title = title ? title : "";
  int rc = rd.parse();
  if (rc == 0) rc = rd.tm.load(m);
  if (rc) {
    kxi_clear_model(m);
    rd.report("KORVA");
    return rc;
  }
  kxi_log(m, "\nProcessed %d lines in KORVA format.", rd.lines);
  return 0;
}

}  // namespace kxi

extern "C" KX_API int KXreadKORVAFile(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int { return kxi::read_text_file(model, pszFname, kxi::korva_read_text); });
}

extern "C" KX_API int KXreadKORVAStream(pModel model, const char *pszStream, int nStreamLen) {
  return kx::guard([&]() -> int {
    return kxi::read_text_stream(model, pszStream, nStreamLen, "KVX", kxi::korva_read_text);
  });
}
