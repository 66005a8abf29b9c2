// The MPS line reader, tokenizer and number scanner.
#include <zlib.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "io/mps.h"

namespace kxi {

int LineReader::open(const char *path) {
  data.clear();
  pos = 0;
  lineNo = 0;
  gzFile f = gzopen(path, "rb");
  if (!f) return KXERR_CANNOT_OPEN_FILE;
  // Blocks go through a buffer that is never cleared, and the text grows by
  // what was read only: a small file touches a few pages, not a whole block
  // of zeros, which at every start of a process cost more than reading it.
  const size_t kBlock = 0x40000;
  std::unique_ptr<char[]> block(new char[kBlock]);
  for (;;) {
    const int got = gzread(f, block.get(), static_cast<unsigned>(kBlock));
    if (got < 0) {
      gzclose(f);
      data.clear();
      return KXERR_CANNOT_OPEN_FILE;
    }
    data.insert(data.end(), block.get(), block.get() + got);
    if (static_cast<size_t>(got) < kBlock) break;
  }
  gzclose(f);
  return 0;
}

bool LineReader::next() {
  const char *base = data.data();
  const size_t size = data.size();
  while (pos < size) {
    const char *p = base + pos;
    const char *nl = static_cast<const char *>(std::memchr(p, '\n', size - pos));
    size_t n = nl ? static_cast<size_t>(nl - p) : size - pos;
    pos += n + (nl ? 1 : 0);
    ++lineNo;
    if (n > sizeof(line) - 1) n = sizeof(line) - 1;
    std::memcpy(line, p, n);
    if (n > 0 && line[n - 1] == '\r') line[n - 1] = ' ';
    line[n] = '\0';
    len = static_cast<int>(n);
    if (n == 0 || line[0] == '*') continue;
    size_t k = 0;
    while (k < n && (line[k] == ' ' || line[k] == '\t' || line[k] == '\r')) ++k;
    if (k == n) continue;
    return true;
  }
  return false;
}

void mps_tokens_free(const char *line, int len, MpsTokens &tk) {
  std::memcpy(tk.buf, line, static_cast<size_t>(len));
  tk.buf[len] = '\0';
  tk.bySlots = false;
  tk.n = 0;
  char *s = tk.buf;
  int i = 0;
  while (tk.n < 6) {
    while (i < len && (s[i] == ' ' || s[i] == '\t')) ++i;
    if (i >= len) break;
    // A comment token ends the line; a name in the first place may begin with "$".
    if ((s[i] == '$' || s[i] == '!') && tk.n > 0) break;
    int b = i;
    while (i < len && s[i] != ' ' && s[i] != '\t') ++i;
    tk.t[tk.n] = s + b;
    tk.len[tk.n] = i - b;
    ++tk.n;
    if (i < len) s[i++] = '\0';
  }
  for (int k = tk.n; k < 6; ++k) {
    tk.t[k] = nullptr;
    tk.len[k] = 0;
  }
}

void mps_tokens_fixed(const char *line, int len, MpsTokens &tk) {
  // Fields (0-based, end exclusive); everything between them must be blank.
  static const int kFrom[6] = {1, 4, 14, 24, 39, 49};
  static const int kTo[6] = {3, 12, 22, 36, 47, 61};
  auto blank = [&](int c) { return c >= len || line[c] == ' ' || line[c] == '\t'; };
  bool fits = blank(0) && blank(3) && blank(12) && blank(13) && blank(22) && blank(23) &&
              blank(36) && blank(37) && blank(38) && blank(47) && blank(48);
  for (int c = 61; fits && c < len; ++c) fits = blank(c);
  for (int c = 0; fits && c < len; ++c) fits = line[c] != '\t';
  if (!fits) {
    mps_tokens_free(line, len, tk);
    return;
  }
  std::memcpy(tk.buf, line, static_cast<size_t>(len));
  if (len < 64) std::memset(tk.buf + len, ' ', 64 - static_cast<size_t>(len));
  tk.bySlots = true;
  tk.n = 6;
  for (int k = 0; k < 6; ++k) {
    int b = kFrom[k], e = kTo[k];
    while (b < e && tk.buf[b] == ' ') ++b;
    while (e > b && tk.buf[e - 1] == ' ') --e;
    if (b == e) {
      tk.t[k] = nullptr;
      tk.len[k] = 0;
    } else {
      tk.buf[e] = '\0';
      tk.t[k] = tk.buf + b;
      tk.len[k] = e - b;
    }
  }
}

bool mps_number(const char *s, int len, double *out) {
  if (len <= 0) return false;
  const char *b = s, *e = s + len;
  if (*b == '+') ++b;
  if (b < e && *b == '+') return false;
  auto r = std::from_chars(b, e, *out);
  if (r.ec == std::errc() && r.ptr == e) return *out == *out;  // no NaN
  if (r.ec == std::errc::result_out_of_range) {
    // Overflow and underflow: take what strtod gives.
    char tmp[64];
    if (len >= static_cast<int>(sizeof tmp)) return false;
    std::memcpy(tmp, s, static_cast<size_t>(len));
    tmp[len] = '\0';
    *out = std::strtod(tmp, nullptr);
    return true;
  }
  // Exponents written with d or D.
  char tmp[64];
  if (len >= static_cast<int>(sizeof tmp)) return false;
  int n = 0;
  for (const char *p = b; p < e; ++p) {
    char c = *p;
    if (c == 'd' || c == 'D') c = 'e';
    if (!((c >= '0' && c <= '9') || c == 'e' || c == 'E' || c == '+' || c == '-' || c == '.'))
      return false;
    tmp[n++] = c;
  }
  r = std::from_chars(tmp, tmp + n, *out);
  return r.ec == std::errc() && r.ptr == tmp + n;
}

}  // namespace kxi
