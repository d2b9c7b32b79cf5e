#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "gateway/page_queue.h"
#include "platform/avi_file.h"
#include "platform/clipboard.h"
#include "platform/files.h"
#include "platform/frame_bytes.h"
#include "platform/message_loop.h"
#include "platform/picture_codec.h"
#include "platform/registry.h"
#include "toolkit/surface.h"

/// The services of a control whose person sits in front of a page: nothing of them reads or writes a file that the page
/// names on this machine.
namespace orbelcast {

/// Hands a file to the page, which offers it as a download.
using OfferFile = std::function<void(const std::string& name, FrameBytes bytes)>;

/// Files in memory. What a control writes under a name of the page's goes to the page at once, and is not kept; what it
/// writes in its own folder stays until it is moved or deleted.
class PageFiles final : public Files {
 public:
  /// Bytes kept, of all files together; a file with which they would be more is not written.
  static constexpr std::size_t kMaxFileBytes = 64UL * 1024 * 1024;

  explicit PageFiles(OfferFile offer) : offer_(std::move(offer)) {}

  std::string TemporaryDirectory() const override { return "temporary/"; }
  std::string ModuleFolder() const override { return kModuleFolder; }
  bool Write(const std::string& path, std::span<const std::uint8_t> bytes) override;
  void Delete(const std::string& path) override { kept_.erase(path); }
  std::optional<std::uintmax_t> LengthOf(const std::string& path) const override;
  bool Move(const std::string& from, const std::string& to) override;

 private:
  static constexpr const char* kModuleFolder = "module/";
  bool Put(const std::string& path, FrameBytes bytes);

  const OfferFile offer_;
  std::map<std::string, FrameBytes> kept_;
};

/// Clips in temporary files of this program's own, which become downloads when they are finished.
class PageClips final : public AviFiles {
 public:
  /// Of one clip; at this length its pictures are refused.
  static constexpr std::uintmax_t kMaxClipBytes = 256UL * 1024 * 1024;

  /// `clips` makes the files; it outlives this.
  PageClips(AviFiles& clips, OfferFile offer) : clips_(clips), offer_(std::move(offer)) {}

  std::vector<std::string> Codecs() const override { return clips_.Codecs(); }
  std::unique_ptr<AviFile> Create(const std::string& path) override;
  /// Whether a clip is being made.
  bool AreOpen() const { return *open_ > 0; }

 private:
  AviFiles& clips_;
  const OfferFile offer_;
  const std::shared_ptr<int> open_ = std::make_shared<int>(0);
};

/// Settings in memory, which the page keeps: it gives them when a session begins, and is told each that is stored.
class PageRegistry final : public Registry {
 public:
  /// Values kept, and the bytes of a name or a text; others are not stored.
  static constexpr std::size_t kMaxValues = 256;
  static constexpr std::size_t kMaxTextBytes = 4096;

  using Stored = std::function<void(const std::string& key, const Value& value)>;
  explicit PageRegistry(Stored stored) : stored_(std::move(stored)) {}

  bool SetValue(Hive hive, const std::string& key, const std::string& name, const std::string& text) override;

 private:
  const Stored stored_;
  std::set<std::pair<std::string, std::string>> names_;
};

/// The clipboard of the page's browser: pictures go there as PNG, and what it holds stays the person's own.
class PageClipboard final : public Clipboard {
 public:
  using SetPng = std::function<void(FrameBytes png)>;
  PageClipboard(PictureCodec& codec, SetPng set) : codec_(codec), set_(std::move(set)) {}

  void Clear() override {}
  void SetPicture(const Surface& picture) override { set_(FrameBytes(codec_.Encode(picture))); }
  Surface Picture() const override { return {}; }

 private:
  PictureCodec& codec_;
  const SetPng set_;
};

/// The program's loop, for one session: whatever a handler of the session's controls is in the middle of, the session
/// and its services are there until it has returned. Its timers wait while the page is away.
class PageLoop final : public MessageLoop {
 public:
  /// `page_is_away` as PageQueue's.
  PageLoop(MessageLoop& loop, std::function<bool()> page_is_away)
      : loop_(loop), queue_(loop.Queue(), std::move(page_is_away)) {}
  /// The session that handlers keep alive.
  void KeepAlive(const std::weak_ptr<void>& session) { session_ = session; }

  PageQueue& Queue() override { return queue_; }
  void RunHandler(std::function<void()> handler) override;
  void RunToEnd(const std::function<void()>& action) override { loop_.RunToEnd(action); }
  std::size_t Handlers() const override { return loop_.Handlers(); }
  bool InHandler() const override { return loop_.InHandler(); }
  void Yield() override { loop_.Yield(); }
  void YieldInTurn(unsigned turn) override { loop_.YieldInTurn(turn); }
  void Wait(Completion& completion) override { loop_.Wait(completion); }

 private:
  MessageLoop& loop_;
  PageQueue queue_;
  std::weak_ptr<void> session_;
};

}  // namespace orbelcast
