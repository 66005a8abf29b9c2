// Shared pieces of the text model files (LP and KORVA), the basis, start point,
// priority and solution files: a buffered writer, exact number texts, names
// fit for the text formats, a scanner over a whole text, and the collector that
// gathers a model row by row and loads it through the load calls.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>
#include <vector>

#include "base/kx.h"
#include "io/hashtab.h"

namespace kxi {

// ---------------------------------------------------------------------------
// Output
// ---------------------------------------------------------------------------

// Text gathered in memory and written at once (gzip-compressed when the path
// ends in ".gz").
struct TextOut {
  std::string s;
  void put(const char *fmt, ...) __attribute__((format(printf, 2, 3)));
  void add(std::string_view v) { s.append(v.data(), v.size()); }
  int save(const char *path) const;  // 0, or 2002 when the file cannot be written
};

// The shortest text that reads back to the same double ("1e+30", "-0.5", "3").
std::string num_exact(double v);
// The same with a leading sign ("+3", "-0.5").
std::string num_signed(double v);

// ---------------------------------------------------------------------------
// Names
// ---------------------------------------------------------------------------

// Which characters a name may begin with and which end it, in one language.
struct NameRules {
  const char *first;   // characters besides letters that may begin a name
  const char *delims;  // characters that end a name (besides the end of the text)
  char rowMark;        // the mark that ends a row name: ':' or ')'
  char comment;        // the character that opens a comment to the end of the line
};
extern const NameRules kLpRules;
extern const NameRules kKorvaRules;

bool name_first_ok(const NameRules &r, char c);
bool name_char_ok(const NameRules &r, char c);

// Names of a model's columns and rows as a text format can hold them: a
// character that cannot stand in a name becomes '_', a name that cannot begin
// as it does gets a leading '_', a missing name takes "C%07d" / "R%07d" (index
// from 0), and a name that would clash with an earlier one, or read as a
// keyword at the start of a line, takes the fallback pattern with a suffix.
void text_names(const Model *m, const NameRules &r, std::vector<std::string> &cols,
                std::vector<std::string> &rows);
// One name made fit (no uniqueness test); an empty name stays empty.
std::string fit_name(std::string_view s, const NameRules &r);
// True when a name read at the start of a line could be taken for a keyword.
bool keyword_like(std::string_view s);

// The matrix of a model by rows: m+1 starts, columns (ascending) and values.
void model_rows(const Model *m, std::vector<int> &beg, std::vector<int> &col,
                std::vector<double> &val);
// True when listing the nonzero objective terms first and then the rows in
// order would meet the columns in their index order, every column included.
bool natural_column_order(const Model *m, const std::vector<int> &rbeg,
                          const std::vector<int> &rcol);

// Fallback names: "C%07d", "R%07d" of an index.
std::string col_fallback(int j);
std::string row_fallback(int i);

// ---------------------------------------------------------------------------
// Input
// ---------------------------------------------------------------------------

// The whole text of a plain or gzip-compressed file: 0, or 2002.
int read_whole_file(const char *path, std::vector<char> &out);

// A parser of a whole text into an unloaded model (title: the model's name).
using TextParser = int (*)(Model *m, const char *text, size_t len, const char *title);
// The common frame of the File and Stream entry points of the text readers:
// argument checks, reading the file or naming the stream by its checksum, and
// a clean model after any failure.  `format` names the format in log lines.
int read_text_file(Model *m, const char *path, TextParser parse);
int read_text_stream(Model *m, const char *text, int len, const char *format, TextParser parse);

// Keyword test at p (lower-cased input against a pattern whose bracketed parts
// are optional tails).  On a match that ends at the end of the text, a blank,
// tab, line feed, carriage return, '<', '=' or '>', returns the end of the
// match; else null.
const char *match_keyword(const char *p, const char *end, const char *pattern);

// A cursor over a whole text, counting lines.
struct Scan {
  const char *b = nullptr, *p = nullptr, *e = nullptr;
  int line = 1;
  int tokLine = 1;  // line of the last token taken
  bool bol = true;  // the next token is the first on its line
  char comment = '\\';

  void init(const char *text, size_t len, char commentChar) {
    b = p = text;
    e = text + len;
    line = 1;
    tokLine = 1;
    bol = true;
    comment = commentChar;
  }
  bool end() const { return p >= e; }
  // Skip blanks, comments and line ends; sets bol when a line end was crossed.
  void skip();
  // Skip blanks and comments on this line only.
  void skip_line_blanks();
  // The keyword pattern at the cursor: moves behind it on a match.
  bool keyword(const char *pattern);
  // An unsigned number (digits, a point, an exponent) at the cursor.
  bool number(double *v);
  // A name by the rules at the cursor; empty when none begins here.
  std::string_view name(const NameRules &r);
  // A row name: looks ahead on this line for the mark; the text before it, blanks
  // dropped, must be one run of name characters.  On success the cursor moves
  // behind the mark and *out holds the name (possibly empty).
  bool row_name(const NameRules &r, std::string_view *out);
  // The text of the current line, for error records.
  std::string line_text() const;
};

// A model gathered row by row.
struct TextModel {
  std::string title, objName;
  int sense = 1;
  double objConst = 0.0;
  KXnameHash colHash, rowHash;
  std::vector<double> cost, lo, up;
  std::vector<char> vtype;  // 'C', 'I', 'B'
  std::vector<char> isSC;
  std::vector<int> rowBeg, rowCol;  // row-wise entries
  std::vector<double> rowVal;
  std::vector<char> conType;
  std::vector<double> rhs, rng;
  std::vector<int> rowNamed;  // 1 when the row had a name in the text
  bool anyRange = false, anyInt = false;
  std::vector<char> setType;
  std::vector<int> setCard, setBeg, setVar;
  bool anyCard = false;

  // Index of a column by name; a new one is made (cost 0, bounds [0, inf]).
  int col(std::string_view name);
  // Index of a column, or -1 when unknown.
  int find_col(std::string_view name) const { return hash_lookup(colHash, name); }
  // Open a new row; returns false when the name is taken.  An empty name takes
  // the fallback pattern at load.
  bool add_row(std::string_view name, char type, double b, double range);
  // Terms of the row being built; equal columns are summed at load.
  void term(int j, double v) {
    rowCol.push_back(j);
    rowVal.push_back(v);
  }
  void start_rows() { rowBeg.assign(1, 0); }
  // Close the current row's entries (call after its terms).
  void end_row() { rowBeg.push_back(static_cast<int>(rowCol.size())); }

  // Transpose and load through the load calls; names of rows without a name
  // take "R%07d".  Returns 0 or the code of the failing load.
  int load(Model *m);
};


// The part of the LP and KORVA readers that both languages share: terms,
// relations, values and whole rows, with the error record.
struct TextReader {
  Model *m = nullptr;
  Scan sc;
  TextModel tm;
  const NameRules *R = &kLpRules;
  // A section word at the cursor (tested only at the start of a line unless
  // kwAnywhere), or 0; does not move the cursor.
  int (*section_at)(const Scan &) = nullptr;
  bool kwAnywhere = false;
  const char *unknownTag = "";  // "Bounds", "FREE"...: names the skip message
  std::string why;
  int errLine = 0;
  std::string errText;

  struct Mark {
    const char *p;
    int line;
    bool bol;
  };
  Mark mark() const { return {sc.p, sc.line, sc.bol}; }
  void reset(const Mark &k) {
    sc.p = k.p;
    sc.line = k.line;
    sc.bol = k.bol;
  }
  void adv(int k) {
    sc.p += k;
    sc.bol = false;
    sc.tokLine = sc.line;
  }
  int section_here() const {
    return section_at && (sc.bol || kwAnywhere) && !sc.end() ? section_at(sc) : 0;
  }

  // A syntax fault at the cursor's line: keeps the reason, line and text; 2025.
  int fail(const char *reason);
  // A fault found after the fact, on the line of the last token taken.
  int fail_last(const char *reason);

  struct Expr {
    std::vector<std::pair<int, double>> t;
    double c = 0.0;
    bool any = false;
  };
  enum { kLE = 1, kGE = 2, kEQ = 3 };
  // A sum of terms and constants.  Terms after the first need a sign; in a
  // right-hand side (rhs true) a line end after a whole term ends the sum.
  int expr(Expr &x, bool rhs);
  // A relation: <, <=, =<, >, >=, =>, =, ==; 0 when none stands here.
  int sense();
  // A signed number or infinity (|v| >= 1e30 is infinite): 0, or fail.
  int value(double *v);
  // One row: an optional name, then "expr rel expr" or "const rel expr rel const".
  int row();
  // Log the fault and record it in the environment (lang: "LP" or "KORVA").
  void report(const char *lang);
};


// ---------------------------------------------------------------------------
// Solutions
// ---------------------------------------------------------------------------

// One solution of a model as the solution files show it.
struct SolutionView {
  int kind = 0;         // KX_SOLTYPE_BASIC, _IPM or _MIP
  bool integer = false;  // the model has integer columns or sets
  int status = 0;       // model status (KX_STATUS_) of that solution
  double obj = 0.0;
  const double *x = nullptr, *dj = nullptr, *y = nullptr, *slack = nullptr;
  const int *colstat = nullptr, *rowstat = nullptr;  // null without a basis
  std::vector<double> slackOwn;                      // slacks computed for a MIP point
};
// Pick the solution of a kind (KX_SOLTYPE_); 2009 when there is none, 2024 for a bad kind.
int solution_view(Model *m, int kind, SolutionView &v);
// The compact file and the full report.
int write_compact(Model *m, const SolutionView &v, const char *path);
int write_report(Model *m, const SolutionView &v, const char *path, bool ranges);
// Column name or "C%07d", row name or "R%07d".
std::string col_name(const Model *m, int j);
std::string row_name(const Model *m, int i);

// Sum equal (column) entries of one row in place: pairs sorted by column.
void merge_terms(std::vector<std::pair<int, double>> &t);

}  // namespace kxi
