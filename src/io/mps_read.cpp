// The MPS reader: a counting pass, then a state machine with one function per
// section that fills the arrays sized by the first pass.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "io/hashtab.h"
#include "io/mps.h"

namespace kxi {
namespace {

enum State {
  kBegin = 0,
  kName = 1,
  kObjSense = 2,
  kRows = 3,
  kColumns = 4,
  kRhs = 5,
  kRanges = 6,
  kBounds = 7,
  kWaitQSection = 8,
  kQMatrix = 9,
  kTail = 10,
  kCSection = 11,
  kDone = 12,
};

// Values of the row hash beside the row index.
constexpr int kObjRow = -2;
constexpr int kFreeRow = -3;

constexpr double kInf = kx::kInfinity;

std::string_view sv(const char *p, int n) { return std::string_view(p, static_cast<size_t>(n)); }

struct SectionCounts {
  long rows = 0, cols = 0, bounds = 0, quad = 0, cone = 0, cones = 0;
};

struct Reader {
  Model *m = nullptr;
  LineReader lr;
  bool fixed = true;
  bool modeFlag = false;
  MpsTokens tk;
  const char *S[6];
  int L[6];
  int state = kBegin;
  const char *why = "";

  std::string title, objName;
  int objSense = 1;
  double objConst = 0.0;

  KXnameHash rowHash, colHash;
  std::vector<char> conType;
  std::vector<double> rhs, rng;
  bool anyRange = false;

  std::vector<int> colBeg, arow;
  std::vector<double> aval, cost, lo, up;
  std::vector<char> vtype, lowSet, isSC;
  std::vector<int> mark;  // row -> position of its entry in the current column plus 1
  int cur = -1;
  bool intRun = false, anyInt = false;

  bool setOpen = false;
  std::vector<char> setType;
  std::vector<int> setCard, setBeg, setVar;
  bool anyCard = false;

  std::vector<int> qRow, qC1, qC2;
  std::vector<double> qVal;
  int qTarget = -1;  // row of the quadratic section being read (-1 objective)
  bool qFull = false;  // QMATRIX: both triangles are listed, the upper one is skipped

  std::vector<char> coneType;
  std::vector<int> coneBeg, coneVar;
  std::vector<std::string> coneNames;

  std::string rhsSet, rngSet, bndSet;
  bool rhsSeen = false, rngSeen = false, bndSeen = false;

  int fail(const char *reason) {
    why = reason;
    return KXERR_BAD_MPS_FILE;
  }

  void tokenize() {
    if (fixed)
      mps_tokens_fixed(lr.line, lr.len, tk);
    else
      mps_tokens_free(lr.line, lr.len, tk);
  }

  // Put the tokens of a data line into the slots of the fixed layout.
  bool map_slots() {
    for (int k = 0; k < 6; ++k) {
      S[k] = nullptr;
      L[k] = 0;
    }
    auto put = [&](int slot, int tok) {
      S[slot] = tk.t[tok];
      L[slot] = tk.len[tok];
    };
    if (tk.bySlots) {
      for (int k = 0; k < 6; ++k) put(k, k);
      return true;
    }
    const int n = tk.n;
    switch (state) {
      case kRows:
        if (n != 2) return false;
        put(0, 0);
        put(1, 1);
        return true;
      case kColumns:
        if (n != 3 && n != 5) return false;
        for (int k = 0; k < n; ++k) put(k + 1, k);
        return true;
      case kRhs:
      case kRanges:
        if (n < 2 || n > 5) return false;
        if (n % 2 == 1) {
          for (int k = 0; k < n; ++k) put(k + 1, k);
        } else {
          for (int k = 0; k < n; ++k) put(k + 2, k);
        }
        return true;
      case kBounds: {
        if (n < 2 || n > 4) return false;
        put(0, 0);
        if (n == 4) {
          put(1, 1);
          put(2, 2);
          put(3, 3);
        } else if (n == 2) {
          put(2, 1);
        } else {
          // Three tokens: set and column for the types without a value, column and
          // value for the others; BV and SC take either form.
          std::string_view t = sv(tk.t[0], tk.len[0]);
          bool noValue = t == "FR" || t == "MI" || t == "PL";
          bool either = t == "BV" || t == "SC";
          if (noValue || (either && hash_lookup(colHash, sv(tk.t[2], tk.len[2])) >= 0)) {
            put(1, 1);
            put(2, 2);
          } else {
            put(2, 1);
            put(3, 2);
          }
        }
        return true;
      }
      case kQMatrix:
        if (n != 3) return false;
        for (int k = 0; k < 3; ++k) put(k + 1, k);
        return true;
      case kCSection:
        if (n < 1) return false;
        put(1, 0);
        return true;
      default:
        return false;
    }
  }

  int number(int slot, double *v) {
    if (!S[slot]) return fail("missing number");
    if (!mps_number(S[slot], L[slot], v)) return fail("bad number");
    return 0;
  }

  // ---------------------------------------------------------------------------
  // First pass: count the lines of each section.
  int count_pass(SectionCounts &c) {
    // Only section lines are cut into tokens; every other line that is not a
    // comment counts for its section (blank lines too: the counts are bounds).
    const char *p = lr.data.data(), *end = p + lr.data.size();
    long *slot = nullptr;
    while (p < end) {
      const char *nl = static_cast<const char *>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
      const char *e = nl ? nl : end;
      const char c0 = *p;
      if (c0 == ' ' || c0 == '\t') {
        if (slot) ++*slot;
      } else if (c0 != '*' && c0 != '\n' && c0 != '\r') {
        int n = static_cast<int>(std::min<long>(e - p, 255));
        mps_tokens_free(p, n, tk);
        std::string_view w = tk.n ? sv(tk.t[0], tk.len[0]) : std::string_view();
        slot = nullptr;
        if (w == "ROWS") slot = &c.rows;
        else if (w == "COLUMNS") slot = &c.cols;
        else if (w == "BOUNDS") slot = &c.bounds;
        else if (w == "QMATRIX" || w == "QUADOBJ" || w == "QUADS" || w == "QSECTION") slot = &c.quad;
        else if (w == "CSECTION") {
          slot = &c.cone;
          ++c.cones;
        } else if (w == "ENDATA") break;
      }
      p = e + 1;
    }
    return 0;
  }

  // ---------------------------------------------------------------------------
  // Section lines.
  int section() {
    mps_tokens_free(lr.line, lr.len, tk);
    std::string_view w = sv(tk.t[0], tk.len[0]);
    std::string_view second = tk.n > 1 ? sv(tk.t[1], tk.len[1]) : std::string_view();
    if (state == kBegin) {
      if (w != "NAME") return fail("the file must begin with NAME");
      title = std::string(second);
      state = kName;
      return 0;
    }
    if (state == kName || state == kObjSense) {
      if (w == "ROWS") {
        state = kRows;
        return 0;
      }
      if (w == "OBJSENSE") {
        state = kObjSense;
        if (!second.empty()) return objsense_word(second);
        return 0;
      }
      if (state == kObjSense) return objsense_word(w);
      return fail("ROWS expected");
    }
    if (state == kRows) {
      if (w != "COLUMNS") return fail("COLUMNS expected");
      begin_columns();
      state = kColumns;
      return 0;
    }
    // From COLUMNS on, any later section may follow.
    if (state == kColumns) end_column();
    if (setOpen) return fail("set not closed");
    intRun = false;
    if (w == "RHS") state = kRhs;
    else if (w == "RANGES") state = kRanges;
    else if (w == "BOUNDS") state = kBounds;
    else if (w == "QMATRIX" || w == "QUADOBJ" || w == "QUADS") {
      state = kQMatrix;
      qTarget = -1;
      qFull = w == "QMATRIX";
    } else if (w == "QSECTION") {
      if (second.empty()) return fail("QSECTION needs a row name");
      int r = hash_lookup(rowHash, second);
      if (r == kObjRow) r = -1;
      else if (r < 0) return fail("QSECTION names an unknown row");
      state = kQMatrix;
      qTarget = r;
      qFull = false;
    } else if (w == "CSECTION") {
      return begin_cone();
    } else if (w == "ENDATA") {
      state = kDone;
    } else if (w == "NAME" || w == "ROWS" || w == "COLUMNS" || w == "OBJSENSE") {
      return fail("section out of order");
    } else {
      return fail("unknown section");
    }
    return 0;
  }

  int objsense_word(std::string_view w) {
    if (w == "MAX" || w == "MAXIMIZE" || w == "MAXIMISE") objSense = -1;
    else if (w == "MIN" || w == "MINIMIZE" || w == "MINIMISE") objSense = 1;
    else return fail("OBJSENSE must be MAX or MIN");
    return 0;
  }

  // ---------------------------------------------------------------------------
  int do_rows() {
    if (!S[0] || !S[1]) return fail("row type and name expected");
    char c = S[0][0];
    if (c == ' ' && L[0] > 1) c = S[0][1];
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (L[0] > 1 && !(S[0][0] == ' ')) return fail("bad row type");
    std::string_view name = sv(S[1], L[1]);
    if (c == 'N') {
      if (objName.empty() && hash_lookup(rowHash, name) != kFreeRow) {
        if (hash_insert(rowHash, name, kObjRow) < 0) return fail("duplicate row");
        objName = std::string(name);
      } else if (hash_insert(rowHash, name, kFreeRow) < 0) {
        return fail("duplicate row");
      }
      return 0;
    }
    if (c != 'E' && c != 'L' && c != 'G') return fail("bad row type");
    int i = static_cast<int>(conType.size());
    if (hash_insert(rowHash, name, i) < 0) return fail("duplicate row");
    conType.push_back(c);
    return 0;
  }

  void begin_columns() {
    const size_t nr = conType.size();
    rhs.assign(nr, 0.0);
    mark.assign(nr, 0);
  }

  void end_column() {
    if (cur < 0) return;
    for (size_t k = static_cast<size_t>(colBeg[static_cast<size_t>(cur)]); k < arow.size(); ++k)
      mark[static_cast<size_t>(arow[k])] = 0;
  }

  int new_column(std::string_view name) {
    end_column();
    int j = static_cast<int>(colBeg.size());
    if (hash_insert(colHash, name, j) < 0) return -1;
    colBeg.push_back(static_cast<int>(arow.size()));
    cost.push_back(0.0);
    lo.push_back(0.0);
    up.push_back(kInf);
    vtype.push_back(intRun ? 'I' : 'C');
    if (intRun) anyInt = true;
    if (setOpen) setVar.push_back(j);
    cur = j;
    return j;
  }

  int add_entry(int slot) {
    if (!S[slot]) return 0;
    int r = hash_lookup(rowHash, sv(S[slot], L[slot]));
    double v;
    KX_CALL(number(slot + 1, &v));
    if (r == kObjRow) {
      cost[static_cast<size_t>(cur)] += v;
      return 0;
    }
    if (r == kFreeRow) return 0;
    if (r < 0) return fail("unknown row");
    int &mk = mark[static_cast<size_t>(r)];
    if (mk) {
      aval[static_cast<size_t>(mk - 1)] += v;
      return 0;
    }
    if (v == 0.0) return 0;
    arow.push_back(r);
    aval.push_back(v);
    mk = static_cast<int>(arow.size());
    return 0;
  }

  int do_marker() {
    // The marker word follows 'MARKER'; a set type stands in the first slot.
    const char *word = nullptr, *type = nullptr, *card = nullptr;
    int wl = 0, tl = 0, cl = 0;
    if (tk.bySlots) {
      word = tk.t[4], wl = tk.len[4];
      type = tk.t[0], tl = tk.len[0];
      card = tk.t[3], cl = tk.len[3];
    } else {
      int at = -1;
      for (int k = 0; k < tk.n; ++k)
        if (sv(tk.t[k], tk.len[k]) == "'MARKER'") at = k;
      for (int k = at + 1; k < tk.n; ++k) {
        if (tk.t[k][0] == '\'' && !word) word = tk.t[k], wl = tk.len[k];
        else if (tk.t[k][0] != '\'' && !card) card = tk.t[k], cl = tk.len[k];
      }
      if (at >= 2) type = tk.t[0], tl = tk.len[0];
    }
    if (!word) return fail("marker word missing");
    std::string_view w = sv(word, wl), t = type ? sv(type, tl) : std::string_view();
    end_column();
    cur = -1;
    if (w == "'SOSORG'") {
      if (setOpen) return 0;
      int st;
      if (t == "S1") st = 1;
      else if (t == "S2") st = 2;
      else if (t == "CA") st = 4;
      else if (t.empty()) st = modeFlag ? 1 : 3;
      else return fail("bad set type");
      int c = 0;
      if (st == 4) {
        double v = 0.0;
        if (card && !mps_number(card, cl, &v)) return fail("bad cardinality");
        c = static_cast<int>(v);
        anyCard = true;
      }
      setType.push_back(static_cast<char>(st));
      setCard.push_back(c);
      setBeg.push_back(static_cast<int>(setVar.size()));
      setOpen = true;
      return 0;
    }
    if (t == "S1" || t == "S2") return fail("set type on a marker that is not a set");
    if (w == "'SOSEND'") {
      setOpen = false;
      return 0;
    }
    intRun = w == "'INTORG'";
    return 0;
  }

  int do_columns() {
    // Marker lines carry 'MARKER' in the third slot.
    bool marker = false;
    if (tk.bySlots) {
      marker = tk.t[2] && sv(tk.t[2], tk.len[2]) == "'MARKER'";
    } else {
      for (int k = 0; k < tk.n && !marker; ++k) marker = sv(tk.t[k], tk.len[k]) == "'MARKER'";
    }
    if (marker) return do_marker();
    if (!map_slots()) return fail("bad column line");
    if (!S[1]) return fail("column name missing");
    std::string_view name = sv(S[1], L[1]);
    if (cur < 0 || name != colHash.view(colHash.count() - 1)) {
      int j = hash_lookup(colHash, name);
      if (j >= 0) {
        if (!setOpen) return fail("column listed twice");
        // Within a set, a column given earlier only joins the set.
        for (int k = setBeg.back(); k < static_cast<int>(setVar.size()); ++k)
          if (setVar[static_cast<size_t>(k)] == j) return fail("column twice in a set");
        end_column();
        cur = -1;
        setVar.push_back(j);
        return 0;
      }
      if (new_column(name) < 0) return fail("column listed twice");
    }
    if (!S[2]) return fail("row name missing");
    KX_CALL(add_entry(2));
    KX_CALL(add_entry(4));
    return 0;
  }

  // RHS and RANGES: only the first set named is read.
  int do_rhs(bool ranges) {
    if (!map_slots()) return fail(ranges ? "bad RANGES line" : "bad RHS line");
    std::string_view set = S[1] ? sv(S[1], L[1]) : std::string_view();
    std::string &name = ranges ? rngSet : rhsSet;
    bool &seen = ranges ? rngSeen : rhsSeen;
    if (!seen) {
      name = std::string(set);
      seen = true;
    } else if (set != name) {
      return 0;
    }
    for (int slot = 2; slot <= 4; slot += 2) {
      if (!S[slot]) {
        if (slot == 2) return fail("row name missing");
        continue;
      }
      double v;
      KX_CALL(number(slot + 1, &v));
      int r = hash_lookup(rowHash, sv(S[slot], L[slot]));
      if (r == kFreeRow) continue;
      if (r == kObjRow) {
        if (!ranges) objConst = -v;
        continue;
      }
      if (r < 0) return fail("unknown row");
      if (ranges) {
        if (rng.empty()) rng.assign(conType.size(), kInf);
        rng[static_cast<size_t>(r)] = std::fabs(v) >= kInf ? kInf : v;
        anyRange = true;
      } else {
        rhs[static_cast<size_t>(r)] = v;
      }
    }
    return 0;
  }

  int do_bounds() {
    if (!map_slots()) return fail("bad BOUNDS line");
    if (!S[0] || !S[2]) return fail("bound type and column expected");
    std::string_view set = S[1] ? sv(S[1], L[1]) : std::string_view();
    if (!bndSeen) {
      bndSet = std::string(set);
      bndSeen = true;
    } else if (set != bndSet) {
      return 0;
    }
    int j = hash_lookup(colHash, sv(S[2], L[2]));
    if (j < 0) return fail("unknown column");
    const size_t jj = static_cast<size_t>(j);
    if (lowSet.empty()) lowSet.assign(colBeg.size(), 0);
    std::string_view t = sv(S[0], L[0]);
    double v = 0.0;
    auto val = [&]() -> int {
      KX_CALL(number(3, &v));
      if (v > kInf) v = kInf;
      if (v < -kInf) v = -kInf;
      return 0;
    };
    auto integral = [&]() {
      double r = std::floor(v + 0.5);
      if (std::fabs(r - v) > 1e-15) v = r;
      vtype[jj] = 'I';
      anyInt = true;
    };
    if (t == "SC") {
      if (S[3]) KX_CALL(val());
      up[jj] = v == 0.0 ? kInf : v;
      if (isSC.empty()) isSC.assign(colBeg.size(), 0);
      isSC[jj] = 1;
    } else if (t == "LO") {
      KX_CALL(val());
      lo[jj] = v;
      lowSet[jj] = 1;
    } else if (t == "UP") {
      KX_CALL(val());
      up[jj] = v;
      if (v < 0.0 && lo[jj] == 0.0 && !lowSet[jj]) lo[jj] = -kInf;
    } else if (t == "FX") {
      KX_CALL(val());
      lo[jj] = up[jj] = v;
      lowSet[jj] = 1;
    } else if (t == "FR") {
      lo[jj] = -kInf;
      up[jj] = kInf;
      lowSet[jj] = 1;
    } else if (t == "MI") {
      lo[jj] = -kInf;
      lowSet[jj] = 1;
    } else if (t == "PL") {
      up[jj] = kInf;
    } else if (t == "BV") {
      lo[jj] = 0.0;
      up[jj] = 1.0;
      lowSet[jj] = 1;
      vtype[jj] = 'B';
      anyInt = true;
    } else if (t == "LI") {
      KX_CALL(val());
      integral();
      lo[jj] = v;
      lowSet[jj] = 1;
    } else if (t == "UI") {
      KX_CALL(val());
      integral();
      up[jj] = v;
      if (v < 0.0 && lo[jj] == 0.0 && !lowSet[jj]) lo[jj] = -kInf;
    } else {
      return fail("bad bound type");
    }
    return 0;
  }

  int do_quad() {
    if (!map_slots()) return fail("bad quadratic line");
    if (!S[1] || !S[2]) return fail("two columns expected");
    int a = hash_lookup(colHash, sv(S[1], L[1]));
    int b = hash_lookup(colHash, sv(S[2], L[2]));
    if (a < 0 || b < 0) return fail("unknown column");
    double v;
    KX_CALL(number(3, &v));
    if (qFull && a < b) return 0;  // the upper triangle repeats the lower one
    qRow.push_back(qTarget);
    qC1.push_back(a);
    qC2.push_back(b);
    qVal.push_back(v);
    return 0;
  }

  int begin_cone() {
    // CSECTION name value type
    if (tk.n < 4) return fail("Invalid cone mark.");
    std::string_view t = sv(tk.t[3], tk.len[3]);
    char c;
    if (t == "QUAD") c = 'Q';
    else if (t == "RQUAD") c = 'R';
    else return fail("Invalid cone mark.");
    coneType.push_back(c);
    coneBeg.push_back(static_cast<int>(coneVar.size()));
    coneNames.emplace_back(sv(tk.t[1], tk.len[1]));
    state = kCSection;
    return 0;
  }

  int do_cone() {
    if (!map_slots()) return fail("Invalid cone mark.");
    if (!S[1]) return fail("Invalid cone mark.");
    int j = hash_lookup(colHash, sv(S[1], L[1]));
    if (j < 0) return fail("unknown column");
    coneVar.push_back(j);
    return 0;
  }

  int data_line() {
    switch (state) {
      case kBegin:
      case kName:
        return fail("data line before ROWS");
      case kObjSense: {
        mps_tokens_free(lr.line, lr.len, tk);
        return objsense_word(sv(tk.t[0], tk.len[0]));
      }
      case kRows:
        tokenize();
        if (!map_slots()) return fail("bad ROWS line");
        return do_rows();
      case kColumns:
        tokenize();
        return do_columns();
      case kRhs:
        tokenize();
        return do_rhs(false);
      case kRanges:
        tokenize();
        return do_rhs(true);
      case kBounds:
        tokenize();
        return do_bounds();
      case kQMatrix:
        tokenize();
        return do_quad();
      case kCSection:
        tokenize();
        return do_cone();
      default:
        return fail("unexpected line");
    }
  }

  int fill_pass() {
    while (lr.next()) {
      const char c0 = lr.line[0];
      int rc = (c0 != ' ' && c0 != '\t') ? section() : data_line();
      if (rc) return rc;
      if (state == kDone) return 0;
    }
    why = "Unexpected end of file. ENDATA section missing.";
    return KXERR_BAD_MPS_FILE;
  }

  // Hand everything to the model through the load calls.
  int load() {
    const int nr = static_cast<int>(conType.size());
    const int nc = static_cast<int>(colBeg.size());
    if (nc < 1) return fail("no columns");
    if (nr < 1 && objName.empty()) return fail("no rows");
    end_column();
    colBeg.push_back(static_cast<int>(arow.size()));
    const int nnz = static_cast<int>(arow.size());
    conType.push_back('\0');
    if (rhs.size() < static_cast<size_t>(nr)) rhs.assign(static_cast<size_t>(nr), 0.0);
    int rc = KXloadLPData(m, nr, nc, objSense, objConst, cost.data(), rhs.data(),
                          conType.data(), nnz, colBeg.data(), nullptr, aval.data(),
                          arow.data(), lo.data(), up.data());
    if (rc) return rc;
    if (anyRange) KX_CALL(kxi_load_ranges(m, rng.data()));
    if (anyInt) {
      vtype.push_back('\0');
      KX_CALL(kxi_load_var_type(m, vtype.data()));
    }
    if (!isSC.empty()) {
      std::vector<int> v;
      std::vector<double> l, u;
      for (int j = 0; j < nc; ++j)
        if (isSC[static_cast<size_t>(j)]) {
          v.push_back(j);
          l.push_back(lo[static_cast<size_t>(j)]);
          u.push_back(up[static_cast<size_t>(j)]);
        }
      KX_CALL(kxi_load_semicont(m, static_cast<int>(v.size()), v.data(), l.data(), u.data()));
    }
    if (!setType.empty()) {
      setBeg.push_back(static_cast<int>(setVar.size()));
      int r = kxi_load_sets(m, static_cast<int>(setType.size()), setType.data(),
                            anyCard ? setCard.data() : nullptr, setBeg.data(), setVar.data());
      if (r) return fail("bad set");
    }
    if (!coneType.empty()) {
      coneBeg.push_back(static_cast<int>(coneVar.size()));
      int r = kxi_load_cones(m, static_cast<int>(coneType.size()), coneType.data(),
                             coneBeg.data(), coneVar.data());
      if (r) return fail("Invalid cone mark.");
    }
    if (!qRow.empty()) {
      KX_CALL(kxi_load_qc(m, static_cast<int>(qRow.size()), qRow.data(), qC1.data(),
                          qC2.data(), qVal.data()));
    }
    // Names, straight from the hash tables' texts.
    std::vector<char *> rn(static_cast<size_t>(nr) + 1), cn(static_cast<size_t>(nc) + 1);
    for (int e = 0; e < rowHash.count(); ++e) {
      int v = rowHash.value[static_cast<size_t>(e)];
      if (v >= 0) rn[static_cast<size_t>(v)] = const_cast<char *>(rowHash.name(e));
    }
    for (int e = 0; e < colHash.count(); ++e)
      cn[static_cast<size_t>(colHash.value[static_cast<size_t>(e)])] =
          const_cast<char *>(colHash.name(e));
    std::vector<char *> kn;
    for (auto &s : coneNames) kn.push_back(s.data());
    KX_CALL(kxi_load_names(m, title.c_str(), objName.c_str(),
                           rhsSeen ? rhsSet.c_str() : nullptr, rngSeen ? rngSet.c_str() : nullptr,
                           bndSeen ? bndSet.c_str() : nullptr, rn.data(), cn.data(),
                           kn.empty() ? nullptr : kn.data()));
    return 0;
  }
};

}  // namespace

int mps_read(Model *m, const char *path, int format) {
  KXtime t0 = kx_now();
  Reader rd;
  rd.m = m;
  rd.fixed = format == 1 || format == 3;
  rd.modeFlag = format >= 2;
  KX_CALL(rd.lr.open(path));

  SectionCounts c;
  rd.count_pass(c);
  // A file without rows or columns fails in the second pass, which names the line.
  hash_init(rd.rowHash, static_cast<int>(c.rows));
  hash_init(rd.colHash, static_cast<int>(c.cols));
  rd.conType.reserve(static_cast<size_t>(c.rows));
  rd.colBeg.reserve(static_cast<size_t>(c.cols));
  rd.cost.reserve(static_cast<size_t>(c.cols));
  rd.lo.reserve(static_cast<size_t>(c.cols));
  rd.up.reserve(static_cast<size_t>(c.cols));
  rd.vtype.reserve(static_cast<size_t>(c.cols) + 1);
  rd.arow.reserve(static_cast<size_t>(2 * c.cols));
  rd.aval.reserve(static_cast<size_t>(2 * c.cols));
  rd.qRow.reserve(static_cast<size_t>(c.quad));
  rd.qC1.reserve(static_cast<size_t>(c.quad));
  rd.qC2.reserve(static_cast<size_t>(c.quad));
  rd.qVal.reserve(static_cast<size_t>(c.quad));
  rd.coneVar.reserve(static_cast<size_t>(c.cone));
  if (m->splexPam && m->splexPam->lpPrintLevel > 4) {
    KXtime t1 = kx_now();
    kxi_log(m, "\nMPS Reader: Initial pass completed in %.2f secs.", t1.wall - t0.wall);
    kxi_log(m, "\nMPS Reader: Found %ld rows, %ld column lines", c.rows, c.cols);
    if (c.cones) kxi_log(m, "\nMPS Reader: Found %ld cones, %ld cone nonzs", c.cones, c.cone);
  }

  rd.lr.rewind();
  int rc = rd.fill_pass();
  if (rc == 0) rc = rd.load();
  if (rc) {
    kxi_clear_model(m);
    if (rc == KXERR_BAD_MPS_FILE) {
      kxi_log(m, "\nMPS Reader: %s", rd.why);
      kxi_log(m, "\nMPS Reader: Last line processed: %s", rd.lr.line);
      char text[1024];
      std::snprintf(text, sizeof text, "%s", rd.lr.line);
      kxi_set_file_error(m->env, static_cast<int>(rd.lr.lineNo), text);
    }
    return rc;
  }
  kxi_log(m, "\nMPS Reader: Completed successfully... (%.2f secs)\n", kx_now().wall - t0.wall);
  return 0;
}

}  // namespace kxi

extern "C" KX_API int KXreadMPSFile(pModel model, const char *pszFname, int nFormat) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    if (nFormat < 0 || nFormat > 3) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (model->nVars > 0 || model->nCons > 0) return KXERR_ALREADY_LOADED;
    int rc;
    try {
      rc = kxi::mps_read(model, pszFname, nFormat);
    } catch (const std::bad_alloc &) {
      rc = kx::kErrMemory;
    }
    if (rc) kxi_clear_model(model);
    return rc;
  });
}
