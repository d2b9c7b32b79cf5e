#pragma once

#include <memory>
#include <optional>
#include <string>

#include "adapters/http/yielding_http.h"
#include "gateway/named_servers.h"
#include "gateway/page.h"
#include "gateway/page_services.h"
#include "json/json.h"
#include "platform/platform.h"
#include "remote/script_dialogs.h"
#include "remote/session.h"

namespace orbelcast {

/// A page's session: the controls that it shows, on services that are the page's own.
///
/// It ends with its page, and its memory when the last handler of its controls has returned.
class PageSession final : public PageUser {
 public:
  /// Seconds for which a page may say nothing while it has not taken what it was sent, or has not painted a picture.
  /// Then it is away, and the controls' timers wait for it: nothing is asked of a camera for nobody.
  static constexpr int kMaxAwaitedSeconds = 5;

  /// `platform`'s loop, requests, decoder and clips are shared by all sessions; it outlives them. `kept` goes when
  /// the session's memory is free, which is after its page has gone where its controls still wait for a camera.
  static std::shared_ptr<PageSession> Create(Platform& platform, std::shared_ptr<const NamedServers> named,
                                             std::shared_ptr<Page> page, std::shared_ptr<void> kept = nullptr);
  ~PageSession() override = default;
  PageSession(const PageSession&) = delete;
  PageSession& operator=(const PageSession&) = delete;

  void TakeLine(const std::string& line) override;
  void TellIdle() override;
  void TellGone() override;

 private:
  PageSession(Platform& platform, std::shared_ptr<const NamedServers> named, std::shared_ptr<Page> page,
              std::shared_ptr<void> kept);

  /// Whether the page is away. Never while a clip is being made, which is to have no gap.
  bool IsAway();
  /// A sign of life of the page's.
  void NoteLife();
  void Print(const Json& line);
  void Send(const Json& line, FrameBytes bytes);
  void Offer(const std::string& name, FrameBytes bytes);
  /// Sends what there is as soon as the loop looks.
  void FlushSoon();
  void Flush();
  void SendLines();
  void SendDrawings();

  const std::shared_ptr<void> kept_;
  std::shared_ptr<Page> page_;  ///< Null once it has gone.
  std::weak_ptr<PageSession> self_;
  int lines_ = 0;
  std::optional<EventQueue::Nanoseconds> awaited_since_;  ///< The page's next sign of life.
  bool posted_ = false;                                   ///< A flush is.
  std::string lines_to_send_;                             ///< Those that wait for it, in their order.
  PageLoop loop_;
  NamedServersHttp named_http_;
  YieldingHttp http_;
  PageFiles files_;
  PageClips clips_;
  PageRegistry registry_;
  PageClipboard clipboard_;
  DeviceContexts device_contexts_;
  ScriptDialogs dialogs_;
  Platform platform_;
  std::shared_ptr<Session> session_;
};

}  // namespace orbelcast
