#include "gateway/page_session.h"

#include <chrono>
#include <utility>
#include <variant>

namespace orbelcast {

namespace {

/// Bytes of lines that go out as one message, but for the last line.
constexpr std::size_t kBytesTogether = 16 * 1024;

}  // namespace

std::shared_ptr<PageSession> PageSession::Create(Platform& platform, std::shared_ptr<const NamedServers> named,
                                                 std::shared_ptr<Page> page, std::shared_ptr<void> kept) {
  std::shared_ptr<PageSession> session(new PageSession(platform, std::move(named), std::move(page), std::move(kept)));
  session->self_ = session;
  session->loop_.KeepAlive(session);
  return session;
}

PageSession::PageSession(Platform& platform, std::shared_ptr<const NamedServers> named, std::shared_ptr<Page> page,
                         std::shared_ptr<void> kept)
    : kept_(std::move(kept)),
      page_(std::move(page)),
      loop_(platform.loop, [this] { return IsAway(); }),
      named_http_(platform.http, std::move(named)),
      http_(named_http_),
      files_([this](const std::string& name, FrameBytes bytes) { Offer(name, std::move(bytes)); }),
      clips_(platform.avi_files, [this](const std::string& name, FrameBytes bytes) { Offer(name, std::move(bytes)); }),
      registry_([this](const std::string& key, const Registry::Value& value) {
        Print({{"keep", key}, {"name", value.name}, {"text", value.text}});
      }),
      clipboard_(platform.pictures,
                 [this](FrameBytes png) {
                   Send({{"clipboard", "image/png"}}, std::move(png));
                 }),
      dialogs_([this](const Json& line) { Print(line); }, &loop_),
      platform_{.loop = loop_,
                .clock = platform.clock,
                .screen = platform.screen,
                .text_mapper = platform.text_mapper,
                .files = files_,
                .http = http_,
                .jpeg_decoder = platform.jpeg_decoder,
                .pictures = platform.pictures,
                .clipboard = clipboard_,
                .device_contexts = device_contexts_,
                .registry = registry_,
                .dialogs = dialogs_,
                .avi_files = clips_,
                .configuration = platform.configuration},
      session_(Session::Create(platform_, dialogs_,
                               {.print = [this](const Json& line) { Print(line); },
                                .write_picture = [](const Surface& /*picture*/, const std::string& /*name*/) {},
                                .drawn = [this] { FlushSoon(); }})) {}

void PageSession::TakeLine(const std::string& line) {
  session_->Begin(line, ++lines_);
  NoteLife();
}

void PageSession::TellIdle() {
  if (!session_->AwaitsPainting()) NoteLife();
  Flush();
}

void PageSession::NoteLife() {
  awaited_since_.reset();
  loop_.Queue().Resume();
}

bool PageSession::IsAway() {
  const bool awaited = page_ && (!page_->IsIdle() || session_->AwaitsPainting());
  if (!awaited || clips_.AreOpen()) {
    awaited_since_.reset();
    return false;
  }
  const auto now = loop_.Queue().Now();
  if (!awaited_since_) awaited_since_ = now;
  return now - *awaited_since_ >= std::chrono::seconds(kMaxAwaitedSeconds);
}

void PageSession::TellGone() {
  page_.reset();
  // As a handler: a control's end may wait.
  loop_.RunHandler([session = session_] { session->Release(); });
}

void PageSession::Print(const Json& line) {
  if (!page_) return;
  if (!lines_to_send_.empty()) lines_to_send_ += '\n';
  lines_to_send_ += ToLine(line);
  if (lines_to_send_.size() >= kBytesTogether) SendLines();
  FlushSoon();
}

void PageSession::SendLines() {
  if (page_ && !lines_to_send_.empty()) page_->SendText(std::exchange(lines_to_send_, {}));
}

void PageSession::Send(const Json& line, FrameBytes bytes) {
  if (!page_) return;
  if (!lines_to_send_.empty()) lines_to_send_ += '\n';
  page_->SendBytes(std::exchange(lines_to_send_, {}) + ToLine(line), std::move(bytes));
}

void PageSession::Offer(const std::string& name, FrameBytes bytes) {
  Send({{"file", name}}, std::move(bytes));
}

// Not in the middle of the control's drawing. What is told and drawn in one go is sent in one go: a message costs more
// than what is in it.
void PageSession::FlushSoon() {
  if (std::exchange(posted_, true)) return;
  loop_.Queue().Post([weak = self_] {
    const auto session = weak.lock();
    if (!session) return;
    session->posted_ = false;
    session->Flush();
  });
}

void PageSession::Flush() {
  SendDrawings();
  SendLines();
}

// A picture that the page has to wait for is not sent before what is newer can take its place.
void PageSession::SendDrawings() {
  if (!page_ || !page_->IsIdle()) return;
  for (const auto& [path, drawing] : session_->TakeDrawings()) {
    Json line{{"draw", path},
              {"x", drawing.box.left},
              {"y", drawing.box.top},
              {"width", drawing.box.right - drawing.box.left + 1},
              {"height", drawing.box.bottom - drawing.box.top + 1}};
    if (const auto* color = std::get_if<Color>(&drawing.what)) {
      line["color"] = *color;
      Print(line);
    } else if (const auto* jpeg = std::get_if<FrameBytes>(&drawing.what)) {
      line["type"] = "image/jpeg";
      Send(line, *jpeg);
    } else {
      line["type"] = "image/png";
      Send(line, FrameBytes(std::get<Drawing::Png>(drawing.what)));
    }
  }
}

}  // namespace orbelcast
