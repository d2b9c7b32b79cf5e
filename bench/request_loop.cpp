// The cost of one request through the viewer's request object and message loop, beside a bare libcurl handle that is
// used again and again: both ask the same server on this machine for the same picture.
//
//   RequestLoop/BYTES
//     cpu             CPU of the asking thread a request, in the bare handle's (the server's threads do not count)
//     cpu_q1, cpu_q3  the quartiles of the same: what a single round may show
//     rate            requests a second, in the bare handle's
//     connections     connections that the request object opened, over all rounds
//
// Each is a ratio from one run: the two take turns, the one that begins changes from round to round, and the median
// over the rounds is reported. Client and servers share one processor, so that an answer is there as a whole when the
// client runs again: on two of them, the number of its waits a request goes by the race between both.

#include <benchmark/benchmark.h>
#include <sched.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "adapters/curl/curl_http.h"
#include "adapters/fiber/fiber_loop.h"
#include "adapters/posix/headless_queue.h"
#include "bare_handle.h"
#include "fakes/scripted_server.h"
#include "measures.h"

namespace orbelcast::bench {

namespace {

constexpr int kRequestsPerTurn = 200;
constexpr int kRounds = 101;

/// This thread, and those that it starts.
void StayOnOneProcessor() {
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(sched_getcpu(), &one);
  sched_setaffinity(0, sizeof one, &one);
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

void RequestLoop(benchmark::State& state) {
  StayOnOneProcessor();
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
  const auto check = [bytes](std::size_t received) {
    if (received != bytes) throw std::runtime_error("no answer");
  };
  const auto ask = [&] {
    request->Open("GET", url, true);
    request->Send();
    loop.Yield();
    request->WaitForResponse();
    check(request->Status() == 200 ? request->ResponseBody().Size() : 0);
  };

  std::vector<double> cpu;
  std::vector<double> rate;
  bool bare_first = false;
  for (auto _ : state) {
    Cost bare_cost;
    Cost loop_cost;
    bare_first = !bare_first;
    if (bare_first) bare_cost = Turn([&] { check(bare.Ask()); });
    Completion done;
    // In a handler, as the frame loop asks: the wait suspends it and the loop goes on.
    loop.RunHandler([&] {
      loop_cost = Turn(ask);
      done.Complete();
    });
    loop.Wait(done);
    if (!bare_first) bare_cost = Turn([&] { check(bare.Ask()); });
    cpu.push_back(loop_cost.cpu / bare_cost.cpu);
    rate.push_back(bare_cost.wall / loop_cost.wall);
    state.SetIterationTime(loop_cost.cpu / kRequestsPerTurn);
  }
  state.counters["cpu"] = Median(cpu);
  state.counters["cpu_q1"] = Quantile(cpu, 0.25);
  state.counters["cpu_q3"] = Quantile(cpu, 0.75);
  state.counters["rate"] = Median(rate);
  state.counters["connections"] = for_loop.Connections();
}

BENCHMARK(RequestLoop)->Arg(1024)->Arg(20 * 1024)->Arg(100 * 1024)->UseManualTime()->Iterations(kRounds);

}  // namespace

}  // namespace orbelcast::bench

BENCHMARK_MAIN();
