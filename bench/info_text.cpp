// The cost of a line of an info text, from a thousand lines to a million: the same, if the scan is linear.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <string>

#include "protocol/info_text.h"

namespace {

using namespace orbelcast;

std::string TextOf(std::int64_t cameras) {
  std::string text = "RDXVIEWER\r\nSNM:Front gate\r\nSVR:2.1\r\n";
  for (std::int64_t i = 0; i < cameras; ++i) {
    text += "CAM:device" + std::to_string(i) + "\tCamera in the yard\thttp://camera.example/live/1\r\n";
  }
  return text + "\r\n";
}

void BM_ParseInfoText(benchmark::State& state, InfoMode mode) {
  const std::string text = TextOf(state.range(0));
  for (auto _ : state) {
    ServerInfo info;
    ParseInfoText(text, mode, info);
    benchmark::DoNotOptimize(info.Lines.data());
  }
  using benchmark::Counter;
  state.counters["per_line"] =
      Counter(static_cast<double>(state.range(0)), Counter::kIsIterationInvariantRate | Counter::kInvert);
}

BENCHMARK_CAPTURE(BM_ParseInfoText, cameras, InfoMode::kCameras)->RangeMultiplier(10)->Range(1000, 1'000'000);
BENCHMARK_CAPTURE(BM_ParseInfoText, all_lines, InfoMode::kAllLines)->RangeMultiplier(10)->Range(1000, 1'000'000);

}  // namespace

// Memory is kept between the runs, however much it is: a page that is touched for the first time costs what the system
// takes for it, which is not the scan's doing.
int main(int argc, char** argv) {
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
