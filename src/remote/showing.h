#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "json/json.h"
#include "platform/picture_codec.h"
#include "remote/drawing_journal.h"
#include "remote/subject.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// A drawing and the path of the child control that it belongs to.
struct ShownDrawing {
  std::string path;
  Drawing drawing;
};

/// The news by which a front end mirrors controls: every child's properties at once, then each change, and drawings.
///
/// A path is a control's name, and a child's after a dot: "p.VS.lStatus", "AlertsWin.Activate".
class Showing {
 public:
  using Print = std::function<void(Json line)>;

  /// `news` is called whenever there are drawings to be taken. All outlive the showing.
  Showing(PictureCodec& pictures, Print print, std::function<void()> news)
      : pictures_(pictures), print_(std::move(print)), news_(std::move(news)) {}

  /// Tells the control or window of that path with its children, and from now on what changes.
  void Begin(const std::string& path, const Subject& subject);
  /// The control or window of that path has gone, or is to be told as new the next time.
  void End(std::string_view path);
  bool Shows() const { return !watched_.empty(); }

  /// Somebody sees what the path names, or nobody does: its drawings are kept back then.
  void SetSeen(std::string_view path, bool seen);
  /// A picture of that child was painted.
  void Painted(const std::string& path);
  /// Whether a picture was taken that is to be painted yet.
  bool AwaitsPainting() const;
  /// The drawings that the front end does not have yet: those of a surface in their order.
  std::vector<ShownDrawing> Take();

 private:
  void ShowChild(const std::string& path, const NamedChild& child, const std::string& outer);
  void ShowInner(const std::string& path, VideoServerPush& viewer, ChildControl* place);
  /// True the first time that the path is told.
  bool IsNew(const std::string& path) { return watched_.insert(path).second; }
  void Tell(const std::string& path, const char* field, Json value);
  void Follow(const std::string& path, const ChildReference& child);
  std::shared_ptr<DrawingJournal> MakeJournal(const std::string& path, std::function<const Surface&()> look);

  PictureCodec& pictures_;
  const Print print_;
  const std::function<void()> news_;
  std::set<std::string, std::less<>> watched_;
  std::map<std::string, std::shared_ptr<DrawingJournal>, std::less<>> journals_;
};

}  // namespace orbelcast
