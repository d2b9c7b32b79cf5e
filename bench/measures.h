#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <vector>

/// Functions that the benchmarks measure with.
namespace orbelcast::bench {

inline double CpuSeconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}
/// CPU of the whole process, whichever of its threads used it.
inline double ProcessCpuSeconds() {
  return CpuSeconds(CLOCK_PROCESS_CPUTIME_ID);
}
inline double ThreadCpuSeconds() {
  return CpuSeconds(CLOCK_THREAD_CPUTIME_ID);
}
inline double WallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// The value that this part of them, 0 to 1, does not exceed; 0 of none.
inline double Quantile(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  const auto place = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1) + 0.5);
  std::nth_element(values.begin(), values.begin() + place, values.end());
  return values[static_cast<std::size_t>(place)];
}
inline double Median(std::vector<double> values) {
  return Quantile(std::move(values), 0.5);
}

}  // namespace orbelcast::bench
