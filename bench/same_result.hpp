// A peer that takes the steps that are promised must come to our result.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace bench {

/// Ends the program where a peer's result was another than ours: it did another job.
inline void must_agree(bool same, const char* job) {
  if (same) return;
  std::fprintf(stderr, "%s: the same steps gave another result\n", job);
  std::abort();
}

}  // namespace bench
