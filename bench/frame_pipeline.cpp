// The cost of one frame, from its bytes to the picture shown and the motion found in it: by the viewer, and by the
// libraries that a user would pick instead.
//
// Everything is a ratio of CPU times from one run: in each round every contestant shows the same few frames in turn, so
// whatever else the machine does meets all of them, and the median over the rounds is reported.
//
//   FramePipeline/SOURCE/AREA
//     bare      the viewer's cost, in decodes of the same frames by libjpeg-turbo alone (BGRX, native size)
//     parts     the same for the decoder and the motion scan without a viewer around them
//     opencv, ffmpeg   their cost for the same work, in the viewer's
//     psnr      the picture shown against a native decode resized with Lanczos' filter, in decibels
//     opencv_psnr, ffmpeg_psnr   the same for theirs
//   Memory/SOURCE/AREA   requests for memory a frame, from the eleventh on, of frames of one size
//   Yields
//     share     the cost of a motion scan's yields to the message loop, as a share of a 640x480 frame's
//     scan      the same of the whole scan

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "adapters/fiber/fiber_loop.h"
#include "adapters/posix/headless_queue.h"
#include "frame_pipeline_memory.h"
#include "frame_pipeline_pictures.h"
#include "frame_pipelines.h"
#include "imaging/motion.h"
#include "measures.h"

namespace orbelcast::bench {

namespace {

struct Size {
  int width;
  int height;
};

std::string Name(Size size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

constexpr Size kSources[] = {{320, 240}, {640, 480}, {1280, 720}, {1920, 1080}};
constexpr Size kAreas[] = {{320, 240}, {640, 480}, {1280, 720}};

/// Frames that are shown in a row before it is the next one's turn: enough for the caches to be one's own.
constexpr int kFramesPerTurn = 4;

double Turn(Pipeline& pipeline, const std::vector<FrameBytes>& frames) {
  const double start = ProcessCpuSeconds();
  for (const FrameBytes& frame : frames) pipeline.Show(frame);
  return ProcessCpuSeconds() - start;
}

/// The same bytes under new serials, as frames come from a camera.
std::vector<FrameBytes> Receive(const std::vector<FrameBytes>& frames) {
  std::vector<FrameBytes> received;
  for (const FrameBytes& frame : frames)
    received.emplace_back(FrameBytes::Storage(frame.Bytes().begin(), frame.Bytes().end()));
  return received;
}

double Quality(Pipeline& pipeline, const FrameBytes& frame, const Surface& careful) {
  pipeline.Show(frame);
  return Psnr(pipeline.Shown(), careful);
}

void FramePipeline(benchmark::State& state, Size source, Size area) {
  const auto frames = CameraFrames(source.width, source.height, kFramesPerTurn);
  const auto bare = BareDecode();
  const auto viewer = ViewerPipeline(area.width, area.height);
  const auto parts = PartsPipeline(area.width, area.height);
  const auto opencv = OpenCvPipeline(area.width, area.height);
  const auto ffmpeg = FfmpegPipeline(area.width, area.height);

  bare->Show(frames.front());
  const Surface native = bare->Shown();
  const bool same = source.width == area.width && source.height == area.height;
  const Surface careful = same ? native : ResizeCarefully(native, area.width, area.height);
  state.counters["psnr"] = Quality(*viewer, frames.front(), careful);
  if (opencv) state.counters["opencv_psnr"] = Quality(*opencv, frames.front(), careful);
  if (ffmpeg) state.counters["ffmpeg_psnr"] = Quality(*ffmpeg, frames.front(), careful);

  std::vector<double> to_bare, parts_to_bare, opencv_to_viewer, ffmpeg_to_viewer;
  for (auto _ : state) {
    const auto received = Receive(frames);
    const auto received_by_parts = Receive(frames);
    const double bare_time = Turn(*bare, frames);
    const double viewer_time = Turn(*viewer, received);
    parts_to_bare.push_back(Turn(*parts, received_by_parts) / bare_time);
    to_bare.push_back(viewer_time / bare_time);
    if (opencv) opencv_to_viewer.push_back(Turn(*opencv, frames) / viewer_time);
    if (ffmpeg) ffmpeg_to_viewer.push_back(Turn(*ffmpeg, frames) / viewer_time);
    state.SetIterationTime(viewer_time / kFramesPerTurn);
  }
  state.counters["bare"] = Median(to_bare);
  state.counters["parts"] = Median(parts_to_bare);
  if (opencv) state.counters["opencv"] = Median(opencv_to_viewer);
  if (ffmpeg) state.counters["ffmpeg"] = Median(ffmpeg_to_viewer);
}

void Memory(benchmark::State& state, Size source, Size area) {
  constexpr int kWarmUp = 10;
  constexpr int kCounted = 100;
  const auto frames = CameraFrames(source.width, source.height, kFramesPerTurn);
  const auto count = [&](Pipeline& pipeline) {
    std::vector<FrameBytes> received;
    while (received.size() < kWarmUp + kCounted) {
      for (FrameBytes& frame : Receive(frames)) received.push_back(std::move(frame));
    }
    for (int i = 0; i < kWarmUp; ++i) pipeline.Show(received[static_cast<std::size_t>(i)]);
    const MemoryRequests before = CountMemoryRequests();
    for (int i = kWarmUp; i < kWarmUp + kCounted; ++i) pipeline.Show(received[static_cast<std::size_t>(i)]);
    const MemoryRequests after = CountMemoryRequests();
    return std::pair(static_cast<double>(after.by_new - before.by_new) / kCounted,
                     static_cast<double>(after.by_malloc - before.by_malloc) / kCounted);
  };
  for (auto _ : state) {
    std::tie(state.counters["new"].value, state.counters["malloc"].value) =
        count(*ViewerPipeline(area.width, area.height));
    state.counters["parts_new"] = count(*PartsPipeline(area.width, area.height)).first;
    state.counters["bare_malloc"] = count(*BareDecode()).second;
  }
}

void Yields(benchmark::State& state) {
  const Size size{640, 480};
  const auto frames = CameraFrames(size.width, size.height, kFramesPerTurn);
  const auto viewer = ViewerPipeline(size.width, size.height);
  HeadlessQueue queue;
  FiberLoop loop(queue);
  Surface current(89, 82);
  Surface reference(89, 82);
  Surface overlay(89, 82);
  MotionSettings settings;
  const auto scan = [&](const std::function<bool()>& after_sample) {
    const double start = ProcessCpuSeconds();
    for (int i = 0; i < kFramesPerTurn; ++i) ScanMotion(current, reference, overlay, settings, after_sample);
    return ProcessCpuSeconds() - start;
  };

  std::vector<double> shares;
  std::vector<double> scans;
  for (auto _ : state) {
    loop.RunHandler([&] {
      const double without = scan([] { return true; });
      const double with = scan([&loop, turn = 0u]() mutable {
        loop.YieldInTurn(turn++);
        return true;
      });
      shares.push_back(with - without);
      scans.push_back(with);
    });
    while (loop.Handlers() > 0) queue.HandleDue();
    const double frame = Turn(*viewer, Receive(frames));
    shares.back() /= frame;
    scans.back() /= frame;
    state.SetIterationTime(frame / kFramesPerTurn);
  }
  state.counters["share"] = Median(shares);
  state.counters["scan"] = Median(scans);
}

void RegisterAll() {
  for (const Size source : kSources) {
    for (const Size area : kAreas) {
      const std::string sizes = Name(source) + "/" + Name(area);
      benchmark::RegisterBenchmark(("FramePipeline/" + sizes).c_str(), FramePipeline, source, area)
          ->UseManualTime()
          ->Unit(benchmark::kMicrosecond);
    }
  }
  for (const auto& [source, area] : {std::pair(kSources[1], kAreas[1]), std::pair(kSources[2], kAreas[0])}) {
    benchmark::RegisterBenchmark(("Memory/" + Name(source) + "/" + Name(area)).c_str(), Memory, source, area)
        ->Iterations(1);
  }
  benchmark::RegisterBenchmark("Yields", Yields)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

}  // namespace

}  // namespace orbelcast::bench

int main(int argc, char** argv) {
  // One row a benchmark, the counters as columns, unless the command line wants it otherwise.
  std::vector<char*> arguments(argv, argv + argc);
  std::string tabular = "--benchmark_counters_tabular=true";
  arguments.insert(arguments.begin() + 1, tabular.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  orbelcast::bench::RegisterAll();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
