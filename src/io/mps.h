// MPS files: the line reader, the tokenizer, the reader and the writer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/kx.h"

namespace kxi {

// The whole text of a plain or gzip-compressed file, read in blocks of 0x40000
// bytes through zlib, served line by line.  A line is cut to 255 characters,
// a carriage return before the line feed becomes a blank, and a last line
// without a line feed is served like the others.
struct LineReader {
  std::vector<char> data;
  size_t pos = 0;
  long lineNo = 0;  // number of the last line served (from 1)
  char line[256];
  int len = 0;

  int open(const char *path);  // 0, or 2002 when the file cannot be read
  void rewind() {
    pos = 0;
    lineNo = 0;
  }
  // The next line that is not blank and not a comment ("*" in column 1); false at the end.
  bool next();
};

// Tokens of one line: up to six, each a text that ends with a 0 in the line copy.
struct MpsTokens {
  const char *t[6];
  int len[6];
  int n;          // free tokens found, or 6 for a line cut by columns
  bool bySlots;   // true: t[k] is field k+1 of the fixed layout (null when blank)
  char buf[264];
};

// Split a data line: fixed layout by columns when the line fits them, else at
// blanks and tabs (a token beginning with "$" or "!" ends the line, but for the
// first token, so that names such as "$0AICCB" read).
void mps_tokens_fixed(const char *line, int len, MpsTokens &tk);
void mps_tokens_free(const char *line, int len, MpsTokens &tk);

// Parse a number as the MPS reader does (d or D exponents are accepted).
bool mps_number(const char *s, int len, double *out);

// free_fmt: the shortest text of 6 to 22 significant digits below 23 characters.
std::string mps_free_fmt(double v);
// A text of at most 12 characters when one reads back exactly (else the shortest exact text).
std::string mps_fixed_fmt(double v);

int mps_read(Model *model, const char *path, int format);
int mps_write(Model *model, const char *path, int format);

}  // namespace kxi
