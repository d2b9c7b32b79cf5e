#include "adapters/curl/multiplexer.h"

#include <poll.h>

#include <algorithm>
#include <mutex>
#include <utility>

namespace orbelcast {

namespace {

void InitializeLibrary() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

int ToCurl(EventQueue::SocketEvents events) {
  return (events.readable ? CURL_CSELECT_IN : 0) | (events.writable ? CURL_CSELECT_OUT : 0);
}

}  // namespace

Multiplexer::Multiplexer(MessageLoop& loop) : loop_(&loop) {
  InitializeLibrary();
  multi_ = curl_multi_init();
  curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, &OnSocketWanted);
  curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, &OnTimerWanted);
  curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
  curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, kIdleConnections);
}

Multiplexer::~Multiplexer() {
  Close();
  curl_multi_cleanup(multi_);
}

void Multiplexer::Close() {
  if (loop_ == nullptr) return;
  EventQueue& queue = loop_->Queue();
  loop_ = nullptr;
  while (!transfers_.empty()) End(*transfers_.back(), CURLE_ABORTED_BY_CALLBACK);
  if (timer_ != 0) queue.CancelTimer(std::exchange(timer_, 0));
  for (const Socket& each : std::exchange(sockets_, {})) queue.UnwatchSocket(each.socket);
}

void Multiplexer::CountRequests(long change) {
  requests_ += change;
  // A smaller number closes nothing that is open.
  curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, std::max(kIdleConnections, requests_));
}

bool Multiplexer::Begin(MultiplexedTransfer& transfer) {
  if (loop_ == nullptr || curl_easy_setopt(transfer.Handle(), CURLOPT_PRIVATE, &transfer) != CURLE_OK ||
      curl_multi_add_handle(multi_, transfer.Handle()) != CURLM_OK) {
    return false;
  }
  transfers_.push_back(&transfer);
  Act(CURL_SOCKET_TIMEOUT, 0);
  return true;
}

void Multiplexer::Drop(MultiplexedTransfer& transfer) {
  if (std::erase(transfers_, &transfer) != 0) curl_multi_remove_handle(multi_, transfer.Handle());
}

bool Multiplexer::IsUnderWay(const MultiplexedTransfer& transfer) const {
  return std::ranges::find(transfers_, &transfer) != transfers_.end();
}

void Multiplexer::Block(const MultiplexedTransfer& transfer) {
  while (IsUnderWay(transfer)) PollOnce();
}

std::optional<curl_socket_t> Multiplexer::SocketOf(MultiplexedTransfer& transfer) const {
  const auto found = std::ranges::find(sockets_, transfer.Handle(), &Socket::easy);
  return found == sockets_.end() ? std::nullopt : std::optional(found->socket);
}

int Multiplexer::OnSocketWanted(CURL* easy, curl_socket_t socket, int what, void* self, void*) {
  static_cast<Multiplexer*>(self)->SetSocket(easy, socket, what);
  return 0;
}

int Multiplexer::OnTimerWanted(CURLM*, long milliseconds, void* self) {
  auto& multiplexer = *static_cast<Multiplexer*>(self);
  if (multiplexer.loop_ == nullptr || milliseconds < 0) {
    multiplexer.curl_due_ = Nanoseconds::max();
  } else if (milliseconds == 0) {
    multiplexer.curl_due_ = Nanoseconds::zero();
  } else {
    multiplexer.curl_due_ = multiplexer.loop_->Queue().Now() + std::chrono::milliseconds(milliseconds);
  }
  return 0;
}

void Multiplexer::SetSocket(CURL* easy, curl_socket_t socket, int what) {
  std::erase_if(sockets_, [socket](const Socket& each) { return each.socket == socket; });
  if (loop_ == nullptr) return;
  if (what == CURL_POLL_REMOVE) {
    loop_->Queue().UnwatchSocket(socket);
    return;
  }
  const EventQueue::SocketEvents events{(what & CURL_POLL_IN) != 0, (what & CURL_POLL_OUT) != 0};
  sockets_.push_back({socket, events, easy});
  loop_->Queue().WatchSocket(socket, events,
                             [this, socket](EventQueue::SocketEvents ready) { Act(socket, ToCurl(ready)); });
}

void Multiplexer::Act(curl_socket_t socket, int events) {
  if (socket == CURL_SOCKET_TIMEOUT) curl_due_ = Nanoseconds::max();
  int running = 0;
  curl_multi_socket_action(multi_, socket, events, &running);
  EndFinished();
  ArmTimer();
}

void Multiplexer::HandleTime() {
  const Nanoseconds now = loop_->Queue().Now();
  if (curl_due_ <= now) Act(CURL_SOCKET_TIMEOUT, 0);
  if (first_deadline_ <= now) EndLate(now);
  ArmTimer();
}

void Multiplexer::EndLate(Nanoseconds now) {
  const auto late = [&] {
    return std::ranges::find_if(transfers_, [now](const MultiplexedTransfer* each) {
      const auto deadline = each->Deadline();
      return deadline && *deadline <= now;
    });
  };
  for (auto each = late(); each != transfers_.end(); each = late()) End(**each, CURLE_OPERATION_TIMEDOUT);
  first_deadline_ = Nanoseconds::max();
  for (const MultiplexedTransfer* each : transfers_) {
    if (const auto deadline = each->Deadline()) NoteDeadline(*deadline);
  }
}

void Multiplexer::EndFinished() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode result = message->data.result;
    MultiplexedTransfer* finished = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &finished);
    End(*finished, result);
  }
}

void Multiplexer::End(MultiplexedTransfer& transfer, CURLcode result) {
  Drop(transfer);
  transfer.Ended(result);
}

void Multiplexer::ArmTimer() {
  const Nanoseconds next = NextTime();
  if (loop_ == nullptr || next >= timer_due_) return;
  EventQueue& queue = loop_->Queue();
  if (timer_ != 0) queue.CancelTimer(timer_);
  timer_due_ = next;
  timer_ = queue.ArmTimer(next - queue.Now(), [this] {
    timer_ = 0;
    timer_due_ = Nanoseconds::max();
    HandleTime();
  });
}

void Multiplexer::PollOnce() {
  const Nanoseconds next = NextTime();
  const Nanoseconds now = loop_->Queue().Now();
  timespec time{};
  if (next > now) {
    const std::int64_t wait = (next == Nanoseconds::max() ? Nanoseconds(std::chrono::hours(1)) : next - now).count();
    time = {static_cast<time_t>(wait / 1'000'000'000), static_cast<long>(wait % 1'000'000'000)};
  }
  std::vector<pollfd> polled;
  for (const Socket& each : sockets_) {
    const int events = (each.events.readable ? POLLIN : 0) | (each.events.writable ? POLLOUT : 0);
    polled.push_back({each.socket, static_cast<short>(events), 0});
  }
  const int found = ppoll(polled.data(), static_cast<nfds_t>(polled.size()), &time, nullptr);
  for (const pollfd& each : polled) {
    if (found <= 0 || each.revents == 0) continue;
    const bool error = (each.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    Act(each.fd, ToCurl({error || (each.revents & POLLIN) != 0, error || (each.revents & POLLOUT) != 0}));
  }
  HandleTime();
}

}  // namespace orbelcast
