#pragma once

#include <QByteArray>
#include <QImage>
#include <QMetaMethod>
#include <QQuickItem>
#include <QString>
#include <QVariantMap>
#include <QtQmlIntegration>
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "qt_common/camera_address.h"
#include "qt_common/qt_texts.h"
#include "viewer/video_server_push.h"

class QSGImageNode;

namespace orbelcast {

/// The stream viewer as an item of a QML scene. Its members are the interface's, each with a small first letter, as QML
/// wants it; `URL` is `url`, which can be set. RenderPicture is not among them: a scene has no device for it.
///
/// Everything happens on the application's thread. A call never waits: what takes its time goes on by itself, and its
/// outcome is a signal. Signals come from the event loop, in their order, and not in the middle of the control's work:
/// an argument is what it was when the event was raised, and a script may do anything in its handler. An item that
/// becomes invisible stops its stream; one whose `url` was set goes on with it when it is visible again.
class VideoServerPushItem : public QQuickItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(VideoServerPush)
  Q_PROPERTY(QString url READ url WRITE setUrl NOTIFY urlChanged FINAL)

 public:
  explicit VideoServerPushItem(QQuickItem* parent = nullptr);
  ~VideoServerPushItem() override;

  /// The address of the camera that is to be shown, as of the widget: setting it connects, an empty one disconnects,
  /// and connect, disconnect and multiCamView take over.
  QString url() const { return address_->Get(); }
  void setUrl(const QString& value) { address_->Set(value); }

  Q_INVOKABLE void connect(const QString& URL, bool OnlyOnce = false, const QString& msg = {});
  Q_INVOKABLE void disconnect(bool NoNewStatus = false);
  Q_INVOKABLE void multiCamView(const QString& inpString);

  // clang-format off
  // made by tools/make_reference: QML
  /// Pictures asked for a second, 1 to 30; 1 at first. What is beyond becomes the nearest, which the let writes back
  /// into `value`.
  Q_PROPERTY(int frameRate READ frameRate WRITE setFrameRate NOTIFY settingsChanged FINAL)
  int frameRate() const { return ToQml(control_->FrameRate()); }
  void setFrameRate(int value) { Put(&VideoServerPush::FrameRate, value); }

  /// Always empty.
  Q_PROPERTY(QString server READ server CONSTANT FINAL)
  QString server() const { return ToQml(control_->Server()); }

  /// Shows the status strip. Connecting, disconnecting and `ShowStatus` show it as well.
  Q_PROPERTY(bool showBandwidth READ showBandwidth WRITE setShowBandwidth NOTIFY settingsChanged FINAL)
  bool showBandwidth() const { return ToQml(control_->ShowBandwidth()); }
  void setShowBandwidth(bool value) { Put(&VideoServerPush::ShowBandwidth, value); }

  /// Looks for motion in each frame: in the rectangle `MotionArea_…`, or in zones with `MotionByZones`.
  Q_PROPERTY(bool motionDetector READ motionDetector WRITE setMotionDetector NOTIFY settingsChanged FINAL)
  bool motionDetector() const { return ToQml(control_->MotionDetector()); }
  void setMotionDetector(bool value) { Put(&VideoServerPush::MotionDetector, value); }

  /// The user's name, sent once the server asks for one (Basic or Digest), and from then on at once.
  Q_PROPERTY(QString username READ username WRITE setUsername NOTIFY settingsChanged FINAL)
  QString username() const { return ToQml(control_->Username()); }
  void setUsername(const QString& value) { Put(&VideoServerPush::Username, value); }

  /// The user's password, sent together with the name.
  Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY settingsChanged FINAL)
  QString password() const { return ToQml(control_->Password()); }
  void setPassword(const QString& value) { Put(&VideoServerPush::Password, value); }

  /// Kept for the host; it changes nothing.
  Q_PROPERTY(bool directToDisk READ directToDisk WRITE setDirectToDisk NOTIFY settingsChanged FINAL)
  bool directToDisk() const { return ToQml(control_->DirectToDisk()); }
  void setDirectToDisk(bool value) { Put(&VideoServerPush::DirectToDisk, value); }

  /// The lower edge of the watched rectangle, in hundredths of the picture's height. What lies below it is watched
  /// all the same. Any number is stored; with all four edges 0, as they are at first, nothing is watched.
  Q_PROPERTY(int motionArea_Y2 READ motionArea_Y2 WRITE setMotionArea_Y2 NOTIFY settingsChanged FINAL)
  int motionArea_Y2() const { return ToQml(control_->MotionArea_Y2()); }
  void setMotionArea_Y2(int value) { Put(&VideoServerPush::MotionArea_Y2, value); }

  /// The upper edge of the watched rectangle, in hundredths of the picture's height.
  Q_PROPERTY(int motionArea_y1 READ motionArea_y1 WRITE setMotionArea_y1 NOTIFY settingsChanged FINAL)
  int motionArea_y1() const { return ToQml(control_->MotionArea_y1()); }
  void setMotionArea_y1(int value) { Put(&VideoServerPush::MotionArea_y1, value); }

  /// The right edge of the watched rectangle, in hundredths of the picture's width.
  Q_PROPERTY(int motionArea_x2 READ motionArea_x2 WRITE setMotionArea_x2 NOTIFY settingsChanged FINAL)
  int motionArea_x2() const { return ToQml(control_->MotionArea_x2()); }
  void setMotionArea_x2(int value) { Put(&VideoServerPush::MotionArea_x2, value); }

  /// The left edge of the watched rectangle, in hundredths of the picture's width.
  Q_PROPERTY(int motionArea_x1 READ motionArea_x1 WRITE setMotionArea_x1 NOTIFY settingsChanged FINAL)
  int motionArea_x1() const { return ToQml(control_->MotionArea_x1()); }
  void setMotionArea_x1(int value) { Put(&VideoServerPush::MotionArea_x1, value); }

  /// Write: how small a change counts as motion, in percent (100 takes any, what is beyond counts as 100); the let
  /// writes 100 minus it back into `value`. Read: the threshold that it was made into, a difference of grey levels in
  /// percent of 256, 0 to 255.
  Q_PROPERTY(int motionSensivity READ motionSensivity WRITE setMotionSensivity NOTIFY settingsChanged FINAL)
  int motionSensivity() const { return ToQml(control_->MotionSensivity()); }
  void setMotionSensivity(int value) { Put(&VideoServerPush::MotionSensivity, value); }

  /// Shows what the motion detection sees in a corner of the picture, while `MotionDetector` is on.
  Q_PROPERTY(bool showMotion READ showMotion WRITE setShowMotion NOTIFY settingsChanged FINAL)
  bool showMotion() const { return ToQml(control_->ShowMotion()); }
  void setShowMotion(bool value) { Put(&VideoServerPush::ShowMotion, value); }

  /// Kept for the host; it changes nothing.
  Q_PROPERTY(bool alwaysSmooth READ alwaysSmooth WRITE setAlwaysSmooth NOTIFY settingsChanged FINAL)
  bool alwaysSmooth() const { return ToQml(control_->AlwaysSmooth()); }
  void setAlwaysSmooth(bool value) { Put(&VideoServerPush::AlwaysSmooth, value); }

  /// When true, `Connect` leaves the last picture on screen while it connects, instead of the test card.
  Q_PROPERTY(bool disableTestScreen READ disableTestScreen WRITE setDisableTestScreen NOTIFY settingsChanged FINAL)
  bool disableTestScreen() const { return ToQml(control_->DisableTestScreen()); }
  void setDisableTestScreen(bool value) { Put(&VideoServerPush::DisableTestScreen, value); }

  /// Watches the zones of `MotionString` instead of the rectangle. Yields.
  Q_PROPERTY(bool motionByZones READ motionByZones WRITE setMotionByZones NOTIFY settingsChanged FINAL)
  bool motionByZones() const { return ToQml(control_->MotionByZones()); }
  void setMotionByZones(bool value) { Put(&VideoServerPush::MotionByZones, value); }

  /// One character a zone, 25 zones in five rows from the top; "0" excludes the zone, anything else, and a text that
  /// is too short, includes it. Yields.
  Q_PROPERTY(QString motionString READ motionString WRITE setMotionString NOTIFY settingsChanged FINAL)
  QString motionString() const { return ToQml(control_->MotionString()); }
  void setMotionString(const QString& value) { Put(&VideoServerPush::MotionString, value); }

  /// Retries silently and for ever instead of reporting failures.
  Q_PROPERTY(bool autoReconnect READ autoReconnect WRITE setAutoReconnect NOTIFY settingsChanged FINAL)
  bool autoReconnect() const { return ToQml(control_->AutoReconnect()); }
  void setAutoReconnect(bool value) { Put(&VideoServerPush::AutoReconnect, value); }

  /// Puts the picture that is shown on the clipboard, at the size at which it is shown.
  Q_INVOKABLE void imageOnClipboard() { Call(&VideoServerPush::ImageOnClipboard); }

  /// Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte for
  /// byte, of a mosaic or the test card a bitmap, whatever the name ends in. A name that cannot be written leaves no
  /// file.
  Q_INVOKABLE void saveImage(const QString& Filename) { Call(&VideoServerPush::SaveImage, Filename); }

  /// Lets one more tick fetch its picture, then stops; the last picture stays on screen.
  Q_INVOKABLE void stopGettingFrames() { Call(&VideoServerPush::StopGettingFrames); }

  /// Shows `X` on the status line, and the status strip. Yields.
  Q_INVOKABLE void showStatus(const QString& X) { Call(&VideoServerPush::ShowStatus, X); }

  /// Pauses (false) or resumes (true) the frame loop without touching the connection.
  Q_INVOKABLE void toogleClock(bool X) { Call(&VideoServerPush::ToogleClock, X); }

  /// Steps one frame with the frame loop switched off. Nothing before the first frame.
  Q_INVOKABLE void pulse() { Call(&VideoServerPush::Pulse); }

  /// Treats the answer that the request object holds as a frame.
  Q_INVOKABLE void requestEnd() { Call(&VideoServerPush::RequestEnd); }

  /// A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first.
  Q_INVOKABLE QByteArray getPictureArray() { return ToQml(control_->GetPictureArray()); }

  /// The newest picture at its own size, in pixels; nothing where there is none or it cannot be read.
  Q_INVOKABLE QImage getPicture() { return ToQml(control_->GetPicture()); }

 Q_SIGNALS:
  /// Once a clock second while pictures come: bytes received and frames shown since the last time. A second in which
  /// less than half a kilobyte came has none. Of a mosaic once a round, as (0, 1).
  void streamInfo(int BytesPerSecond, int FrameRate);
  /// Motion, with `MotionDetector` on: its bounding box in hundredths of the picture's width and height; X1 is the
  /// column of the first sample found, not the leftmost one.
  void motionDetected(int X1, int Y1, int X2, int Y2);
  /// The server has answered with status 200 and the stream runs; for a stream once more with its second new frame.
  void connected();
  /// `Disconnect` has ended the stream, also the one that a failed `Connect` makes.
  void disconnected();
  /// `Connect` got no answer, or another status than 200; the `Status` before it tells which. Not with
  /// `AutoReconnect`.
  void connectionFailed();
  /// The same, right after it: the address that failed, and whether a single picture was asked for.
  void connectionFailedV2(const QString& xUrl, bool xType);
  /// Five frame requests in a row have failed; raised again after each further five. The viewer goes on trying. Not
  /// with `AutoReconnect`.
  void connectionBroken();
  /// The status line's new text, in the language of the text mapper.
  void status(const QString& xDesc);
  /// The first answer's header "VigilboxInfo", whatever the answer's status, where it begins with "1".
  void vigilboxInfo(const QString& rX);
  /// Each frame's time, and the first answer's: the parts of the header "RC_TCR" by their position, whatever they
  /// hold, and the header as a whole; `xDs` is "00". A frame without that header has this machine's clock.
  void vigilboxTCR(const QString& xYear, const QString& xMonth, const QString& xDay, const QString& xHour, const QString& xMinute, const QString& xSecond, const QString& xDs, const QString& xTCR);
  /// A mouse button was pressed over the picture: 1 left, 2 right, 4 middle. Over the video the left one alone, over
  /// the test card any.
  void mouseDown(int Button);
  /// Declared; nothing raises it.
  void rCQueryMethod(const QString& Rc_Query);
  /// The first answer's header "PlugIns", where there is one.
  void plugin(const QString& Plugin);
  /// Something was dropped on the picture: what it holds by media type, the effect that the source expects (a
  /// listener may change it), the buttons and keys held, and the place in twips of the control that was dropped on.
  void oLEDragDrop(const QVariantMap& Data, int Effect, int Button, int Shift, double X, double y);
  /// Right before `MotionDetected`, with the same box.
  void motionArea(int X1, int Y1, int X2, int Y2);
  /// Right after `MotionDetected`: the zone of the first sample found, 1 to 25; −1 where the rectangle is watched.
  void motionDetectedArea(int Area);
  // end of QML
  // clang-format on

 Q_SIGNALS:
  void urlChanged();
  /// A property other than `url` was set.
  void settingsChanged();
  /// A new frame of a stream was taken. It carries nothing, and costs nothing: getPicture decodes the newest frame for
  /// who asks, getPictureArray copies its JPEG.
  void newFrame();

 protected:
  void geometryChange(const QRectF& now, const QRectF& before) override;
  void itemChange(ItemChange change, const ItemChangeData& data) override;
  void updatePolish() override;
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
  void mousePressEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  /// A child control as the scene shows it; `picture` makes its image anew.
  struct Layer {
    ChildControl& control;
    std::function<QImage()> picture;
    const std::function<void(Drop&)>* on_drop = nullptr;
    QImage image{};
    bool stale = true;    ///< The image is to be made again.
    bool changed = true;  ///< The scene has not got it yet.
  };

  // Values of the interface in QML's types, and back.
  static bool ToQml(bool value) { return value; }
  static int ToQml(std::int32_t value) { return value; }
  static double ToQml(float value) { return static_cast<double>(value); }
  static QString ToQml(const std::string& value) { return ToText(value); }
  static QVariantMap ToQml(const DropData& value);
  static QByteArray ToQml(const std::vector<std::uint8_t>& value);
  static QImage ToQml(std::optional<Surface> value);
  template <typename To, typename From>
  static To FromQml(const From& value) {
    if constexpr (std::is_same_v<To, std::string>) {
      return FromText(value);
    } else if constexpr (std::is_same_v<To, std::int16_t>) {
      return static_cast<To>(std::clamp<int>(value, std::numeric_limits<To>::min(), std::numeric_limits<To>::max()));
    } else {
      return value;
    }
  }

  template <typename Value, typename Given>
  void Put(void (VideoServerPush::*put)(Value), const Given& given) {
    Run([this, put, value = FromQml<std::remove_cvref_t<Value>>(given)]() mutable { (*control_.*put)(value); });
    Q_EMIT settingsChanged();
  }
  template <typename... Args, typename... Given>
  void Call(void (VideoServerPush::*call)(Args...), const Given&... given) {
    Run([this, call, values = std::tuple(FromQml<std::remove_cvref_t<Args>>(given)...)] {
      std::apply([&](const auto&... each) { (*control_.*call)(each...); }, values);
    });
  }
  /// Raises `signal` at each `event`, from the event loop; nothing is made of one that nobody listens to.
  template <typename... Args, typename... Given>
  void Forward(Signal<Args...>& event, void (VideoServerPushItem::*signal)(Given...)) {
    Keep(event.Connect([this, signal, method = QMetaMethod::fromSignal(signal)](Args... args) {
      if (!isSignalConnected(method)) return;
      QMetaObject::invokeMethod(
          this,
          [this, signal, values = std::tuple(ToQml(args)...)] {
            std::apply([&](const auto&... each) { Q_EMIT(this->*signal)(each...); }, values);
          },
          Qt::QueuedConnection);
    }));
  }
  void ForwardEvents();

  /// Runs it as a handler of the loop: what it waits for holds up nobody.
  void Run(std::function<void()> handler) { platform_->loop.RunHandler(std::move(handler)); }
  void Keep(Connection connection) { connections_.push_back(std::move(connection)); }

  void MakeLayers();
  void AddLayer(Layer layer);
  /// Has the layer's image made again, before the scene is rendered next.
  void Touch(std::size_t layer);
  /// Brings the layer's image into the scene, below the node `above`; `shown` is its node.
  void Show(const Layer& layer, QSGNode& scene, QSGImageNode*& shown, QSGNode* above) const;
  /// The topmost visible layer there; null outside all.
  Layer* LayerAt(QPointF position);
  QImage Strip() const;
  QImage Warning() const;

  const std::shared_ptr<Platform> platform_;
  std::shared_ptr<VideoServerPush> control_;
  std::unique_ptr<CameraAddress> address_;
  std::vector<Layer> layers_;  // from the bottommost
  std::vector<Connection> connections_;
};

}  // namespace orbelcast
