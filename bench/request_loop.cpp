// The cost of one request through the viewer's request object and message loop, beside a bare libcurl handle that is
// used again and again: both ask the same server on this machine for the same picture.
//
//   RequestLoop/BYTES
//     cpu             CPU of the asking thread a request, in the bare handle's (the server's threads do not count)
//     rate            requests a second, in the bare handle's
//     connections     connections that the request object opened, over all rounds
//
// Each is a ratio from one run: the two take turns, and the median over the rounds is reported.

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <ctime>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "adapters/curl/curl_http.h"
#include "adapters/fiber/fiber_loop.h"
#include "adapters/posix/headless_queue.h"
#include "fakes/scripted_server.h"

namespace orbelcast::bench {

namespace {

constexpr int kRequestsPerTurn = 200;
/// The size of one read, the same as the request object's, for the bare handle.
constexpr long kReceiveBufferBytes = 64 * 1024;

double ThreadCpuSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

double WallSeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

struct Cost {
  double cpu = 0;
  double wall = 0;
};

template <typename Ask>
Cost Turn(const Ask& ask) {
  const double cpu = ThreadCpuSeconds();
  const double wall = WallSeconds();
  for (int i = 0; i < kRequestsPerTurn; ++i) ask();
  return {ThreadCpuSeconds() - cpu, WallSeconds() - wall};
}

/// A handle as a program without any loop uses it: it blocks until the answer is there.
class BareHandle {
 public:
  explicit BareHandle(const std::string& url) : easy_(curl_easy_init()) {
    curl_easy_setopt(easy_, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy_, CURLOPT_BUFFERSIZE, kReceiveBufferBytes);
    curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, &OnBody);
    curl_easy_setopt(easy_, CURLOPT_WRITEDATA, this);
  }
  BareHandle(const BareHandle&) = delete;
  BareHandle& operator=(const BareHandle&) = delete;
  ~BareHandle() { curl_easy_cleanup(easy_); }

  void Ask(std::size_t expected) {
    body_.clear();
    if (curl_easy_perform(easy_) != CURLE_OK || body_.size() != expected) throw std::runtime_error("no answer");
  }

 private:
  static std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* self) {
    auto& body = static_cast<BareHandle*>(self)->body_;
    body.insert(body.end(), data, data + size * count);
    return size * count;
  }
  CURL* easy_;
  std::vector<char> body_;
};

void RequestLoop(benchmark::State& state) {
  const auto bytes = static_cast<std::size_t>(state.range(0));
  const std::string answer = fakes::AnswerBytes(200, std::string(bytes, 'x'), "Content-Type: image/jpeg\r\n");
  fakes::ScriptedServer for_bare(answer);
  fakes::ScriptedServer for_loop(answer);

  BareHandle bare(for_bare.Url("/live/1"));
  HeadlessQueue queue;
  FiberLoop loop(queue);
  CurlHttp http(loop);
  const auto request = http.Create();
  const std::string url = for_loop.Url("/live/1");
  const auto ask = [&] {
    request->Open("GET", url, true);
    request->Send();
    loop.Yield();
    request->WaitForResponse();
    if (request->Status() != 200 || request->ResponseBody().Size() != bytes) throw std::runtime_error("no answer");
  };

  std::vector<double> cpu;
  std::vector<double> rate;
  for (auto _ : state) {
    const Cost bare_cost = Turn([&] { bare.Ask(bytes); });
    Cost loop_cost;
    Completion done;
    // In a handler, as the frame loop asks: the wait suspends it and the loop goes on.
    loop.RunHandler([&] {
      loop_cost = Turn(ask);
      done.Complete();
    });
    loop.Wait(done);
    cpu.push_back(loop_cost.cpu / bare_cost.cpu);
    rate.push_back(bare_cost.wall / loop_cost.wall);
    state.SetIterationTime(loop_cost.cpu / kRequestsPerTurn);
  }
  state.counters["cpu"] = Median(cpu);
  state.counters["rate"] = Median(rate);
  state.counters["connections"] = for_loop.Connections();
}

BENCHMARK(RequestLoop)->Arg(1024)->Arg(20 * 1024)->Arg(100 * 1024)->UseManualTime()->Iterations(15);

}  // namespace

}  // namespace orbelcast::bench

BENCHMARK_MAIN();
