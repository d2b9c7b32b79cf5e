#pragma once

#include <memory>
#include <string>

#include "adapters/http/yielding_http.h"
#include "gateway/named_servers.h"
#include "gateway/page.h"
#include "gateway/page_services.h"
#include "platform/platform.h"
#include "remote/json.h"
#include "remote/script_dialogs.h"
#include "remote/session.h"

namespace orbelcast {

/// A page's session: the controls that it shows, on services that are the page's own.
///
/// It ends with its page, and its memory when the last handler of its controls has returned.
class PageSession final : public PageUser {
 public:
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
  bool posted_ = false;        ///< A flush is.
  std::string lines_to_send_;  ///< Those that wait for it, in their order.
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
