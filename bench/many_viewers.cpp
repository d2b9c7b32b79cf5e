// Many viewers in one process, without a front end: nobody looks at their pictures. Each configuration has a process of
// its own, and one camera that serves all of them 640x480 pictures; the camera's process does not count.
//
//   ManyViewers/viewers:N/rate:R/motion:M/dead:D   N viewers at R pictures a second, with motion detection or without,
//                                                  beside D more whose servers do not answer
//     requests    CPU a picture, in requests for the same picture by a bare libcurl handle, one after another
//     paced       the same in such requests with a pause before each, as a single viewer makes them
//     decodes     the same in decodes of the camera's pictures, in turn, by libjpeg-turbo alone
//     to_16       the same in the CPU a picture of 16 viewers
//     reached     pictures that came, as a share of N x R a second
//     kib         memory a viewer, in KiB
//
// The bare handle and the bare decoder work in the same process, before and after the viewers. Of their turns the lower
// quartile counts, so that the ratios are rather too large.
//
// --seconds=S in front of the other options is the time for which viewers are watched (4).

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <vector>

#include "assembly/headless_platform.h"
#include "bare_handle.h"
#include "frame_pipeline_pictures.h"
#include "frame_pipelines.h"
#include "measures.h"
#include "picture_server.h"
#include "silent_servers.h"
#include "toolkit/twips.h"
#include "viewer/video_server_push.h"
#include "whole_picture.h"

namespace orbelcast::bench {

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;
constexpr int kPictures = 8;
constexpr int kBareTurns = 5;
constexpr int kBareRequests = 100;
constexpr int kBareDecodes = 24;
constexpr int kPacedRequests = 10;
constexpr std::chrono::milliseconds kPause{20};
constexpr std::chrono::milliseconds kSettling{1500};

std::chrono::milliseconds watched{4000};

struct Setting {
  int viewers;
  int rate;
  bool motion;
  int dead;
};

struct Figures {
  double cpu;  // a picture, in seconds
  double request;
  double paced;
  double decode;
  double reached;
  double kib;
};

double ResidentKib() {
  long pages = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

/// Lets the loop run for a time.
void Run(MessageLoop& loop, std::chrono::milliseconds time) {
  Completion over;
  loop.Queue().ArmTimer(time, [&over] { over.Complete(); });
  loop.Wait(over);
}

/// The viewers of one setting, on one platform, and what they show.
class Viewers {
 public:
  Viewers(const Setting& setting, const std::string& url) {
    for (int i = 0; i < setting.viewers; ++i) Add(setting, url);
    for (int i = 0; i < setting.dead; ++i) Add(setting, dead_.Url(i));
  }

  MessageLoop& Loop() { return platform_.Get().loop; }
  std::int64_t Pictures() const { return pictures_; }

 private:
  void Add(const Setting& setting, const std::string& url) {
    auto viewer = VideoServerPush::Create(platform_.Get());
    const TwipsScale scale = TwipsScale::Of(platform_.Get().screen);
    viewer->Resize(scale.TwipsX(kWidth), scale.TwipsY(kHeight));
    auto rate = static_cast<std::int16_t>(setting.rate);
    viewer->FrameRate(rate);
    if (setting.motion) WatchWholePicture(*viewer);
    listening_.push_back(viewer->Events.VigilboxTCR.Connect([this](auto&&...) { ++pictures_; }));
    Loop().RunHandler([viewer, url] { viewer->Connect(url); });
    viewers_.push_back(std::move(viewer));
  }

  SilentServers dead_;
  HeadlessPlatform platform_;
  std::vector<std::shared_ptr<VideoServerPush>> viewers_;
  std::vector<Connection> listening_;
  std::int64_t pictures_ = 0;
};

/// CPU of what there is to compare with.
class Bare {
 public:
  Bare(const std::string& url, const std::vector<FrameBytes>& pictures) : handle_(url), pictures_(pictures) {}

  void Turn() {
    for (int i = 0; i < kBareTurns; ++i) {
      requests_.push_back(CpuOf(kBareRequests, [this] { handle_.Ask(); }));
      decodes_.push_back(CpuOf(kBareDecodes, [this] { decoder_->Show(pictures_[decoded_++ % pictures_.size()]); }));
      paced_.push_back(CpuOf(kPacedRequests, [this] {
        std::this_thread::sleep_for(kPause);
        handle_.Ask();
      }));
    }
  }
  double Request() const { return Quantile(requests_, kLower); }
  double Paced() const { return Quantile(paced_, kLower); }
  double Decode() const { return Quantile(decodes_, kLower); }

 private:
  static constexpr double kLower = 0.25;

  template <typename Work>
  static double CpuOf(int times, const Work& work) {
    const double start = ProcessCpuSeconds();
    for (int i = 0; i < times; ++i) work();
    return (ProcessCpuSeconds() - start) / times;
  }
  BareHandle handle_;
  const std::vector<FrameBytes>& pictures_;
  std::size_t decoded_ = 0;
  std::unique_ptr<Pipeline> decoder_ = BareDecode();
  std::vector<double> requests_;
  std::vector<double> paced_;
  std::vector<double> decodes_;
};

Figures Measure(const Setting& setting, const std::string& url, const std::vector<FrameBytes>& pictures) {
  Bare bare(url, pictures);
  bare.Turn();
  Figures figures{};
  {
    const double before = ResidentKib();
    Viewers viewers(setting, url);
    Run(viewers.Loop(), kSettling);
    const double cpu = ProcessCpuSeconds();
    const double wall = WallSeconds();
    const std::int64_t shown = viewers.Pictures();
    Run(viewers.Loop(), watched);
    const double came = static_cast<double>(std::max<std::int64_t>(viewers.Pictures() - shown, 1));
    figures.cpu = (ProcessCpuSeconds() - cpu) / came;
    figures.reached = came / (WallSeconds() - wall) / setting.viewers / setting.rate;
    figures.kib = (ResidentKib() - before) / (setting.viewers + setting.dead);
  }
  bare.Turn();
  figures.request = bare.Request();
  figures.paced = bare.Paced();
  figures.decode = bare.Decode();
  return figures;
}

/// In a process of its own.
Figures MeasureApart(const Setting& setting, const std::string& url, const std::vector<FrameBytes>& pictures) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    const Figures figures = Measure(setting, url, pictures);
    _exit(write(ends[1], &figures, sizeof figures) == sizeof figures ? 0 : 1);
  }
  close(ends[1]);
  Figures figures{};
  const bool whole = read(ends[0], &figures, sizeof figures) == sizeof figures;
  close(ends[0]);
  waitpid(child, nullptr, 0);
  if (!whole) throw std::runtime_error("the viewers' process failed");
  return figures;
}

void ManyViewers(benchmark::State& state) {
  const Setting setting{static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), state.range(2) != 0,
                        static_cast<int>(state.range(3))};
  static std::map<std::tuple<int, bool>, double> of_16;
  const auto pictures = CameraFrames(kWidth, kHeight, kPictures);
  const PictureServer camera(pictures, setting.rate);
  for (auto _ : state) {
    const Figures figures = MeasureApart(setting, camera.Url(), pictures);
    const std::tuple kind(setting.rate, setting.motion);
    if (setting.viewers == 16 && setting.dead == 0) of_16[kind] = figures.cpu;
    state.SetIterationTime(figures.cpu);
    state.counters["requests"] = figures.cpu / figures.request;
    state.counters["paced"] = figures.cpu / figures.paced;
    state.counters["decodes"] = figures.cpu / figures.decode;
    if (of_16.contains(kind)) state.counters["to_16"] = figures.cpu / of_16[kind];
    state.counters["reached"] = figures.reached;
    state.counters["kib"] = figures.kib;
  }
}

void RegisterAll() {
  const std::vector<std::string> names{"viewers", "rate", "motion", "dead"};
  auto* each = benchmark::RegisterBenchmark("ManyViewers", ManyViewers);
  each->ArgNames(names)->UseManualTime()->Iterations(1)->Unit(benchmark::kMicrosecond);
  for (const int motion : {0, 1}) {
    for (const int rate : {10, 25}) {
      for (const int viewers : {1, 16, 64, 256}) each->Args({viewers, rate, motion, 0});
    }
  }
  for (const int viewers : {16, 64, 256}) each->Args({viewers, 25, 0, 8});
}

/// Takes the options of this program off the front of the line.
void TakeOptions(int& argc, char** argv) {
  constexpr std::string_view kSeconds = "--seconds=";
  if (argc < 2 || !std::string_view(argv[1]).starts_with(kSeconds)) return;
  watched = std::chrono::milliseconds(static_cast<int>(std::stod(argv[1] + kSeconds.size()) * 1000));
  std::rotate(argv + 1, argv + 2, argv + argc);
  --argc;
}

/// A connection and a watch a viewer, and no more.
void AllowDescriptors() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

}  // namespace orbelcast::bench

int main(int argc, char** argv) {
  orbelcast::bench::TakeOptions(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  orbelcast::bench::AllowDescriptors();
  orbelcast::bench::RegisterAll();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
