// The LP format reader.  The text, in the common form of hand-written linear
// and integer models:
//
//   \ a comment runs to the end of the line
//   Maximize | Minimize            (also max, min, maximum, minimise ...)
//    [name:] terms and constants, over as many lines as needed
//   Subject To                     (also st, s.t., such that)
//    [name:] expr rel expr         rel: <, <=, =<, >, >=, =>, =
//    [name:] const rel expr rel const        a ranged row; both rel alike
//   Bounds
//    x >= l | x <= u | x = v | l <= x <= u | x free | -inf <= x ...
//   General | Generals | Integers     names, any number per line
//   Binary | Binaries                 names
//   Semi-continuous | Semis           names (bounds from the Bounds section)
//   SOS
//    [name:] S1:: x:1 y:2 z:3         S1, S2, S3 sets, C<k> cardinality k
//   End
//
// Section words count only at the start of a line.  Terms after the first need
// a sign; the right-hand side of a row ends with its line.  The sections after
// the rows come in any order.  A name in a section after the rows that no row
// or objective holds is skipped with a message.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "io/textio.h"

namespace kxi {
namespace {

enum Section { kNone = 0, kSubject, kBounds, kGeneral, kBinary, kSemi, kSos, kEnd };

int lp_section(const Scan &sc) {
  static const struct {
    const char *pat;
    int id;
  } kWords[] = {{"s[ubject][   ]t[o]", kSubject}, {"s[uch][    ]t[hat]", kSubject},
                {"s[.][    ]t[.]", kSubject},     {"bound[s]", kBounds},
                {"gen[erals]", kGeneral},         {"int[egers]", kGeneral},
                {"bin[ary]", kBinary},            {"bin[aries]", kBinary},
                {"semi[-continuous]", kSemi},     {"semi[continuous]", kSemi},
                {"semi[s]", kSemi},               {"sos", kSos},
                {"end", kEnd}};
  for (const auto &w : kWords)
    if (match_keyword(sc.p, sc.e, w.pat)) return w.id;
  return kNone;
}

const char *section_pattern_end(const Scan &sc, int id) {
  static const struct {
    const char *pat;
    int id;
  } kWords[] = {{"s[ubject][   ]t[o]", kSubject}, {"s[uch][    ]t[hat]", kSubject},
                {"s[.][    ]t[.]", kSubject},     {"bound[s]", kBounds},
                {"gen[erals]", kGeneral},         {"int[egers]", kGeneral},
                {"bin[ary]", kBinary},            {"bin[aries]", kBinary},
                {"semi[-continuous]", kSemi},     {"semi[continuous]", kSemi},
                {"semi[s]", kSemi},               {"sos", kSos},
                {"end", kEnd}};
  for (const auto &w : kWords)
    if (w.id == id)
      if (const char *q = match_keyword(sc.p, sc.e, w.pat)) return q;
  return nullptr;
}

struct LpReader : TextReader {
  int lines = 0;

  void skip_section_word(int id) {
    sc.p = section_pattern_end(sc, id);
    sc.bol = false;
  }

  int objective() {
    sc.skip();
    static const char *const kMax[] = {"max[imize]", "max[imise]", "max[imum]"};
    static const char *const kMin[] = {"min[imize]", "min[imise]", "min[imum]"};
    bool found = false;
    for (const char *k : kMax)
      if (!found && sc.keyword(k)) {
        tm.sense = -1;
        found = true;
      }
    for (const char *k : kMin)
      if (!found && sc.keyword(k)) {
        tm.sense = 1;
        found = true;
      }
    if (!found) return fail("the objective sense must come first");
    sc.skip();
    std::string_view nm;
    if (!sc.end() && !section_here() && sc.row_name(*R, &nm)) tm.objName.assign(nm);
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
    if (!sc.end() && !section_here()) return fail("unexpected token in the objective");
    return 0;
  }

  int rows() {
    for (;;) {
      sc.skip();
      if (sc.end() || section_here()) return 0;
      KX_CALL(row());
    }
  }

  int bounds() {
    for (;;) {
      sc.skip();
      if (sc.end() || section_here()) return 0;
      const int line = sc.line;
      double v1 = 0.0, v2 = 0.0;
      int s1 = 0, s2 = 0;
      std::string_view nm;
      bool valueFirst = !sc.end() && (*sc.p == '+' || *sc.p == '-' ||
                                      (*sc.p == '.' && sc.p + 1 < sc.e && sc.p[1] >= '0' &&
                                       sc.p[1] <= '9') ||
                                      (*sc.p >= '0' && *sc.p <= '9') ||
                                      match_keyword(sc.p, sc.e, "inf[inity]"));
      bool isFree = false;
      if (valueFirst) {
        KX_CALL(value(&v1));
        s1 = sense();
        if (!s1) return fail("missing relation in a bound");
        sc.skip();
        nm = sc.name(*R);
        if (nm.empty()) return fail("missing name in a bound");
        const Mark k = mark();
        s2 = sense();
        if (s2) {
          if (s2 == kEQ) return fail("bad relation in a bound");
          KX_CALL(value(&v2));
        } else {
          reset(k);
        }
      } else {
        nm = sc.name(*R);
        if (nm.empty()) return fail("a bound must begin with a name or a value");
        sc.skip();
        if (sc.keyword("free")) {
          isFree = true;
        } else {
          s2 = sense();
          if (!s2) return fail("missing relation in a bound");
          KX_CALL(value(&v2));
        }
      }
      int j = tm.find_col(nm);
      if (j < 0) {
        kxi_log(m, "\nBounds: Ignoring unknown variable at line %d.", line);
        continue;
      }
      double &l = tm.lo[static_cast<size_t>(j)], &u = tm.up[static_cast<size_t>(j)];
      if (isFree) {
        l = -kx::kInfinity;
        u = kx::kInfinity;
        continue;
      }
      // "v rel x": the value stands left of the name.
      if (s1 == kLE) l = v1;
      else if (s1 == kGE) u = v1;
      else if (s1 == kEQ) l = u = v1;
      // "x rel v".
      if (s2 == kLE) u = v2;
      else if (s2 == kGE) l = v2;
      else if (s2 == kEQ) l = u = v2;
    }
  }

  int names(int id) {
    for (;;) {
      sc.skip();
      if (sc.end() || section_here()) return 0;
      const int line = sc.line;
      std::string_view nm = sc.name(*R);
      if (nm.empty()) return fail("a name was expected");
      int j = tm.find_col(nm);
      if (j < 0) {
        const char *what = id == kBinary ? "Binaries" : id == kGeneral ? "Generals" : "Semis";
        kxi_log(m, "\n%s: Ignoring unknown variable at line %d.", what, line);
        continue;
      }
      if (id == kGeneral) {
        tm.vtype[static_cast<size_t>(j)] = 'I';
        tm.anyInt = true;
      } else if (id == kBinary) {
        tm.vtype[static_cast<size_t>(j)] = 'B';
        tm.anyInt = true;
      } else {
        tm.isSC[static_cast<size_t>(j)] = 1;
      }
    }
  }

  // "S1", "S2", "S3" or "C<k>" before "::": the set's type and cardinality.
  static bool set_type(std::string_view t, char *type, int *card) {
    if (t.size() == 2 && (t[0] == 's' || t[0] == 'S') && t[1] >= '1' && t[1] <= '3') {
      *type = static_cast<char>(t[1] - '0');
      *card = 0;
      return true;
    }
    if (t.size() >= 2 && t.size() <= 10 && (t[0] == 'c' || t[0] == 'C')) {
      long k = 0;
      for (size_t i = 1; i < t.size(); ++i) {
        if (t[i] < '0' || t[i] > '9') return false;
        k = k * 10 + (t[i] - '0');
      }
      if (k > 2147483647L) return false;
      *type = 4;
      *card = static_cast<int>(k);
      return true;
    }
    return false;
  }

  // At the cursor: "[name:] type::" (true, cursor behind it) or not a header.
  bool set_header(char *type, int *card) {
    const Mark k = mark();
    std::string_view a = sc.name(*R);
    if (a.empty()) return false;
    sc.skip_line_blanks();
    if (sc.end() || *sc.p != ':') {
      reset(k);
      return false;
    }
    adv(1);
    if (!sc.end() && *sc.p == ':') {
      adv(1);
      if (set_type(a, type, card)) return true;
      reset(k);
      return false;
    }
    sc.skip_line_blanks();
    std::string_view t = sc.name(*R);
    if (t.empty() || sc.e - sc.p < 2 || sc.p[0] != ':' || sc.p[1] != ':' ||
        !set_type(t, type, card)) {
      reset(k);
      return false;
    }
    adv(2);
    return true;
  }

  int sos() {
    for (;;) {
      sc.skip();
      if (sc.end() || section_here()) return 0;
      char type;
      int card;
      if (!set_header(&type, &card)) return fail("a set must begin with [name:] S1::, S2::, S3:: or C<k>::");
      std::vector<std::pair<double, int>> members;
      bool unknown = false;
      int unknownLine = 0;
      for (;;) {
        sc.skip();
        if (sc.end() || section_here()) break;
        const Mark k = mark();
        char t2;
        int c2;
        if (set_header(&t2, &c2)) {
          reset(k);
          break;
        }
        const int line = sc.line;
        std::string_view nm = sc.name(*R);
        if (nm.empty()) return fail("a set member was expected");
        sc.skip_line_blanks();
        if (sc.end() || *sc.p != ':') return fail("a set member needs a weight (name:weight)");
        adv(1);
        double w;
        KX_CALL(value(&w));
        int j = tm.find_col(nm);
        if (j < 0) {
          unknown = true;
          unknownLine = line;
          continue;
        }
        members.push_back({w, j});
      }
      if (unknown) kxi_log(m, "\nSOS: Ignoring unknown tags at line %d. ", unknownLine);
      if (members.empty()) continue;
      std::stable_sort(members.begin(), members.end(),
                       [](const auto &a, const auto &b) { return a.first < b.first; });
      tm.setBeg.push_back(static_cast<int>(tm.setVar.size()));
      tm.setType.push_back(type);
      tm.setCard.push_back(card);
      if (type == 4) tm.anyCard = true;
      for (auto &mb : members) tm.setVar.push_back(mb.second);
    }
  }

  int parse() {
    KX_CALL(objective());
    for (;;) {
      sc.skip();
      if (sc.end()) break;
      int id = section_here();
      if (!id) return fail("a section word was expected");
      skip_section_word(id);
      if (id == kEnd) break;
      switch (id) {
        case kSubject: KX_CALL(rows()); break;
        case kBounds: KX_CALL(bounds()); break;
        case kGeneral:
        case kBinary:
        case kSemi: KX_CALL(names(id)); break;
        case kSos: KX_CALL(sos()); break;
        default: return fail("unknown section");
      }
    }
    lines = sc.line;
    if (tm.cost.empty()) return fail("the model has no variables");
    return 0;
  }
};

}  // namespace

// Read LP text into an unloaded model.  title: the model's name.
int lp_read_text(Model *m, const char *text, size_t len, const char *title) {
  LpReader rd;
  rd.m = m;
  rd.R = &kLpRules;
  rd.section_at = lp_section;
  rd.sc.init(text, len, kLpRules.comment);
  rd.tm.start_rows();
  hash_init(rd.tm.colHash, static_cast<int>(std::min<size_t>(len / 16 + 16, 1u << 22)));
  hash_init(rd.tm.rowHash, static_cast<int>(std::min<size_t>(len / 32 + 16, 1u << 22)));
  rd.tm.title = title ? title : "";
  int rc = rd.parse();
  if (rc == 0) rc = rd.tm.load(m);
  if (rc) {
    kxi_clear_model(m);
    rd.report("LP");
    return rc;
  }
  kxi_log(m, "\nProcessed %d lines in LP format.", rd.lines);
  return 0;
}

}  // namespace kxi

extern "C" KX_API int KXreadLPFile(pModel model, const char *pszFname) {
  return kx::guard([&]() -> int { return kxi::read_text_file(model, pszFname, kxi::lp_read_text); });
}

extern "C" KX_API int KXreadLPStream(pModel model, const char *pszStream, int nStreamLen) {
  return kx::guard([&]() -> int {
    return kxi::read_text_stream(model, pszStream, nStreamLen, "LP", kxi::lp_read_text);
  });
}
