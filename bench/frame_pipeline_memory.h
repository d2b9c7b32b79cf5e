#pragma once

#include <cstdint>

namespace orbelcast::bench {

/// How often memory was asked for so far by this program, the libraries it is linked with included.
struct MemoryRequests {
  std::uint64_t by_new = 0;     ///< `operator new`: this project's code, and C++ libraries.
  std::uint64_t by_malloc = 0;  ///< malloc and its like, those behind `operator new` aside: C libraries.
};

MemoryRequests CountMemoryRequests();

}  // namespace orbelcast::bench
