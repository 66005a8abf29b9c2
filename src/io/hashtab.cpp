// Name hash table.
#include "io/hashtab.h"

#include <cstring>

namespace {

// Ascending primes, each about 1.5 to 2 times the one before, up to about 2e9.
constexpr uint32_t kPrimes[] = {
    53u,        97u,        193u,       389u,       769u,        1543u,      3079u,
    6151u,      12289u,     24593u,     49157u,     98317u,      196613u,    393241u,
    786433u,    1572869u,   3145739u,   6291469u,   12582917u,   25165843u,  50331653u,
    100663319u, 201326611u, 402653189u, 805306457u, 1610612741u, 2147483647u};

inline uint32_t fold_hash(const char *p, size_t n) {
  uint32_t h = 0;
  for (size_t i = 0; i < n; ++i) {
    h = (h << 4) + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(p[i])));
    uint32_t g = h & 0xf0000000u;
    if (g) h = (h ^ (g >> 24)) & ~g;
  }
  return h;
}

void rehash(KXnameHash &h, uint32_t size) {
  h.head.assign(size, -1);
  for (int e = 0; e < h.count(); ++e) {
    uint32_t b = fold_hash(h.name(e), h.name_len(e)) % size;
    h.next[static_cast<size_t>(e)] = h.head[b];
    h.head[b] = e;
  }
}

}  // namespace

namespace kxi {

uint32_t name_hash(std::string_view s) { return fold_hash(s.data(), s.size()); }

uint32_t hash_prime(uint32_t n) {
  for (uint32_t p : kPrimes)
    if (p >= n) return p;
  return kPrimes[sizeof(kPrimes) / sizeof(kPrimes[0]) - 1];
}

void hash_init(KXnameHash &h, int expected) {
  if (expected < 1) expected = 1;
  h.head.assign(hash_prime(static_cast<uint32_t>(expected)), -1);
  size_t nodes = static_cast<size_t>(expected);
  size_t cap = (nodes + 1) / 10 + 1000;
  if (cap > nodes) cap = nodes;
  h.next.clear();
  h.value.clear();
  h.off.clear();
  h.text.clear();
  h.next.reserve(cap);
  h.value.reserve(cap);
  h.off.reserve(cap);
}

int hash_lookup(const KXnameHash &h, std::string_view s) {
  if (h.head.empty()) return -1;
  uint32_t b = fold_hash(s.data(), s.size()) % static_cast<uint32_t>(h.head.size());
  for (int e = h.head[b]; e >= 0; e = h.next[static_cast<size_t>(e)]) {
    if (h.name_len(e) == s.size() && std::memcmp(h.name(e), s.data(), s.size()) == 0)
      return h.value[static_cast<size_t>(e)];
  }
  return -1;
}

int hash_insert(KXnameHash &h, std::string_view s, int val) {
  if (h.head.empty()) hash_init(h, 16);
  uint32_t hv = fold_hash(s.data(), s.size());
  uint32_t b = hv % static_cast<uint32_t>(h.head.size());
  for (int e = h.head[b]; e >= 0; e = h.next[static_cast<size_t>(e)]) {
    if (h.name_len(e) == s.size() && std::memcmp(h.name(e), s.data(), s.size()) == 0) return -1;
  }
  int e = h.count();
  h.off.push_back(static_cast<uint32_t>(h.text.size()));
  h.text.insert(h.text.end(), s.begin(), s.end());
  h.text.push_back('\0');
  h.value.push_back(val);
  h.next.push_back(h.head[b]);
  h.head[b] = e;
  // Keep chains short when more names arrive than the table was made for.
  if (static_cast<size_t>(h.count()) > 2 * h.head.size() &&
      h.head.size() < hash_prime(0xffffffffu))
    rehash(h, hash_prime(static_cast<uint32_t>(h.head.size()) + 1));
  return e;
}

}  // namespace kxi
