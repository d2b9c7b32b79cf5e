#pragma once

#include <QByteArray>
#include <QImage>
#include <QPaintDevice>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

class QMimeData;

namespace orbelcast {

struct Platform;
class VideoServerPush;

/// The stream viewer as an ordinary widget: its properties, methods and events under the interface's own names.
///
/// Events come as signals on the widget's thread, in the middle of the control's work: a slot may call any method, show
/// a dialog, wait, or delete the widget (`deleteLater` or `delete`). Lengths are twips inside the control and pixels
/// outside. A widget that its container hides stops its frame loop until the next Connect; one that is merely minimised
/// does not, nor one that is shown again in the same turn of the loop, as by a dock that floats or a new parent.
class VideoServerPushWidget : public QWidget {
  Q_OBJECT
  Q_PROPERTY(int FrameRate READ FrameRate WRITE setFrameRate)
  Q_PROPERTY(QString Server READ Server STORED false)
  Q_PROPERTY(bool ShowBandwidth READ ShowBandwidth WRITE setShowBandwidth)
  Q_PROPERTY(bool MotionDetector READ MotionDetector WRITE setMotionDetector)
  Q_PROPERTY(QString Username READ Username WRITE setUsername)
  Q_PROPERTY(QString Password READ Password WRITE setPassword)
  Q_PROPERTY(bool DirectToDisk READ DirectToDisk WRITE setDirectToDisk)
  Q_PROPERTY(int MotionArea_Y2 READ MotionArea_Y2 WRITE setMotionArea_Y2)
  Q_PROPERTY(int MotionArea_y1 READ MotionArea_y1 WRITE setMotionArea_y1)
  Q_PROPERTY(int MotionArea_x2 READ MotionArea_x2 WRITE setMotionArea_x2)
  Q_PROPERTY(int MotionArea_x1 READ MotionArea_x1 WRITE setMotionArea_x1)
  Q_PROPERTY(int MotionSensivity READ MotionSensivity WRITE setMotionSensivity DESIGNABLE false)
  Q_PROPERTY(bool ShowMotion READ ShowMotion WRITE setShowMotion)
  Q_PROPERTY(bool AlwaysSmooth READ AlwaysSmooth WRITE setAlwaysSmooth)
  Q_PROPERTY(bool DisableTestScreen READ DisableTestScreen WRITE setDisableTestScreen)
  Q_PROPERTY(bool MotionByZones READ MotionByZones WRITE setMotionByZones)
  Q_PROPERTY(QString MotionString READ MotionString WRITE setMotionString)
  Q_PROPERTY(QString URL READ URL STORED false DESIGNABLE false)
  Q_PROPERTY(bool AutoReconnect READ AutoReconnect WRITE setAutoReconnect)
  Q_PROPERTY(QString url READ url WRITE setUrl NOTIFY urlChanged)

 public:
  /// A viewer with its services made for it, once an application. The QApplication must exist.
  explicit VideoServerPushWidget(QWidget* parent = nullptr);
  ~VideoServerPushWidget() override;

  /// Runs `handler` on a stack of its own: what waits in it (Connect, until the first answer) suspends it alone, and
  /// the call returns as soon as it does. A Connect called directly returns when it is done, handling events meanwhile.
  void RunHandler(std::function<void()> handler);

  /// Pictures a second that are asked for, 1 to 30; what is outside becomes the nearest of these. 1 at the beginning.
  int FrameRate() const;
  void setFrameRate(int value);
  /// Always empty.
  QString Server() const;
  /// Shows the status strip. False at the beginning.
  bool ShowBandwidth() const;
  void setShowBandwidth(bool value);
  bool MotionDetector() const;
  void setMotionDetector(bool value);
  /// Sent when the server asks for them.
  QString Username() const;
  void setUsername(const QString& value);
  QString Password() const;
  void setPassword(const QString& value);
  /// Stored only, as AlwaysSmooth.
  bool DirectToDisk() const;
  void setDirectToDisk(bool value);
  /// The watched rectangle, in hundredths of the picture's width and height. With all four 0 nothing is watched.
  int MotionArea_Y2() const;
  void setMotionArea_Y2(int value);
  int MotionArea_y1() const;
  void setMotionArea_y1(int value);
  int MotionArea_x2() const;
  void setMotionArea_x2(int value);
  int MotionArea_x1() const;
  void setMotionArea_x1(int value);
  /// Reads the stored threshold, 0 to 255; takes a sensitivity in percent.
  int MotionSensivity() const;
  void setMotionSensivity(int value);
  /// Shows the motion overlay while the motion detector is on.
  bool ShowMotion() const;
  void setShowMotion(bool value);
  bool AlwaysSmooth() const;
  void setAlwaysSmooth(bool value);
  /// When true, Connect does not show the test card while it connects.
  bool DisableTestScreen() const;
  void setDisableTestScreen(bool value);
  /// Watches zones by MotionString instead of the rectangle.
  bool MotionByZones() const;
  void setMotionByZones(bool value);
  /// One character a zone, 25 zones row by row; "0" excludes the zone.
  QString MotionString() const;
  void setMotionString(const QString& value);
  /// The address of the stream that is connected; empty after Disconnect.
  QString URL() const;
  /// Retries silently and for ever instead of reporting failures.
  bool AutoReconnect() const;
  void setAutoReconnect(bool value);

  /// The address of the camera that is to be shown, beginning with "http://". Setting it connects when the event loop
  /// runs next, so the properties that are set with it hold; an empty one disconnects. `Connect`, `Disconnect` and
  /// `MultiCamView` take over: `url` becomes what was connected, or empty. A connection that fails leaves it, and
  /// setting it once more tries again; what becomes of a connection is told by the same signals as of `Connect`. Unlike
  /// what `Connect` began, it streams again when a widget that was hidden is shown, and waits for that where it is set
  /// before.
  QString url() const;
  void setUrl(const QString& value);

  /// For tools in which forms are designed: from now on setting `url` connects nothing.
  void ShowDesign();

  QSize sizeHint() const override;

  // ---- For programs that are built from the library's sources -----------------------------------------------------

  /// A viewer on services of the caller's, which outlive the widget; see QtPlatform.
  explicit VideoServerPushWidget(Platform& platform, QWidget* parent = nullptr);
  /// Shows a viewer that another object, such as a player, made and sizes.
  VideoServerPushWidget(Platform& platform, std::shared_ptr<VideoServerPush> control, QWidget* parent);
  /// The control that the widget shows.
  VideoServerPush& Control();

 public Q_SLOTS:
  /// Opens a stream, or with `OnlyOnce` fetches and shows one picture. `URL` is the whole address and begins with
  /// "http://" in any letter case; any other is ignored. `msg` is shown in a box while the first request is under way.
  void Connect(const QString& URL, bool OnlyOnce = false, const QString& msg = {});
  /// Ends the stream and shows the test card. With `NoNewStatus` the status texts stay as they are.
  void Disconnect(bool NoNewStatus = false);
  /// Lets one more picture come, then stops; the last picture stays on screen.
  void StopGettingFrames();
  /// Shows `X` on the status line.
  void ShowStatus(const QString& X);
  /// Pauses (false) or resumes (true) the frame loop without touching the connection.
  void ToogleClock(bool X);
  /// Steps one frame with the frame loop switched off. Nothing before the first frame.
  void Pulse();
  /// Treats the answer that the request object holds as a frame.
  void RequestEnd();
  /// Shows several cameras as a grid, one tile every half second, until the next Connect. `inpString` holds the
  /// cameras' live addresses, each followed by CR LF.
  void MultiCamView(const QString& inpString);
  /// Saves the picture that is shown as the file `Filename`, replacing it: of a stream the server's JPEG byte for byte,
  /// of several cameras or the test card a bitmap, whatever the name ends in.
  void SaveImage(const QString& Filename);
  /// Puts the picture that is shown on the clipboard, at the size at which it is shown.
  void ImageOnClipboard();
  /// The newest picture at its own size, in pixels, opaque 32-bit pixels; a null image where there is none or it cannot
  /// be read. Decoded by this call, each time; the image keeps its own pixels, and may go to another thread.
  QImage GetPicture();
  /// A copy of the newest answer's bytes, a JPEG as the server sent it; empty before the first.
  QByteArray GetPictureArray() const;
  /// Draws the newest picture at the top-left corner of `device`, stretched to `sX` × `sY` of its units; 0 is the
  /// picture's own size in pixels. Nothing where there is no device or no picture. A widget can be drawn on in its
  /// paintEvent alone.
  void RenderPicture(QPaintDevice* device, int sX = 0, int sY = 0);

 Q_SIGNALS:
  /// Once a second while pictures come: bytes and pictures since the last time.
  void StreamInfo(int BytesPerSecond, int FrameRate);
  /// Motion's bounding box in hundredths of the picture's width and height.
  void MotionDetected(int X1, int Y1, int X2, int Y2);
  void Connected();
  void Disconnected();
  void ConnectionFailed();
  void ConnectionFailedV2(const QString& xUrl, bool xType);
  void ConnectionBroken();
  void Status(const QString& xDesc);
  void VigilboxInfo(const QString& rX);
  void VigilboxTCR(const QString& xYear, const QString& xMonth, const QString& xDay, const QString& xHour,
                   const QString& xMinute, const QString& xSecond, const QString& xDs, const QString& xTCR);
  void MouseDown(short Button);
  void RCQueryMethod(const QString& Rc_Query);
  void Plugin(const QString& Plugin);
  /// `Data` is valid while the signal is emitted. `Effect` is the answer to the data's source: 0 none, 1 copy, 2 move.
  void OLEDragDrop(const QMimeData* Data, int& Effect, short Button, short Shift, float X, float y);
  void MotionArea(int X1, int Y1, int X2, int Y2);
  void MotionDetectedArea(short Area);

  /// A new frame of a stream was taken, in the widget's thread; not one of several cameras. It carries nothing, so that
  /// it costs nothing: `GetPicture` decodes the frame for who asks, `GetPictureArray` copies its JPEG. Both give the
  /// newest frame, which is this one until the slot returns or waits.
  void NewFrame();
  void urlChanged();

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  struct Parts;

  VideoServerPushWidget(std::shared_ptr<Platform> platform, QWidget* parent);
  VideoServerPushWidget(std::shared_ptr<Platform> platform, std::shared_ptr<VideoServerPush> control, QWidget* parent);

  void MakeChildren();
  void ForwardEvents();
  void PopUpMenu();

  const std::unique_ptr<Parts> parts_;
};

}  // namespace orbelcast
