#include "base/memory.h"

#include <cstdlib>  // tells which C library this is

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#endif

namespace frt {

void prefer_large_pages() {
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && defined(MADV_HUGEPAGE)
  // Only addresses are set aside here; memory is used as it is touched.
  constexpr int kRegion = 1 << 30;
  constexpr std::uintptr_t kLargePage = std::uintptr_t{2} << 20;
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
  mallopt(M_TOP_PAD, kRegion);
  std::free(std::malloc(std::size_t{1} << 20));  // more than what start-up left over: this sets the region aside
  char* const end = static_cast<char*>(sbrk(0));
  const std::uintptr_t beyond = reinterpret_cast<std::uintptr_t>(end) % kLargePage;
  if (reinterpret_cast<std::uintptr_t>(end) - beyond > kRegion) madvise(end - beyond - kRegion, kRegion, MADV_HUGEPAGE);
#endif
}

}  // namespace frt
