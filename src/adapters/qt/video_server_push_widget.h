#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "viewer/video_server_push.h"

namespace orbelcast {

/// The stream viewer as an ordinary widget: its properties, methods and events under the interface's own names.
///
/// Events come as signals on the widget's thread, in the middle of the control's work: a slot may call any method, show
/// a dialog, wait, or delete the widget (`deleteLater` or `delete`). Lengths are twips inside the control and pixels
/// outside. A widget that its container hides (not one that is merely minimised) stops its frame loop until the next
/// Connect.
class VideoServerPushWidget : public QWidget {
  Q_OBJECT
  Q_PROPERTY(int FrameRate READ FrameRate WRITE setFrameRate)
  Q_PROPERTY(QString Server READ Server)
  Q_PROPERTY(bool ShowBandwidth READ ShowBandwidth WRITE setShowBandwidth)
  Q_PROPERTY(bool MotionDetector READ MotionDetector WRITE setMotionDetector)
  Q_PROPERTY(QString Username READ Username WRITE setUsername)
  Q_PROPERTY(QString Password READ Password WRITE setPassword DESIGNABLE false)
  Q_PROPERTY(bool DirectToDisk READ DirectToDisk WRITE setDirectToDisk)
  Q_PROPERTY(int MotionArea_Y2 READ MotionArea_Y2 WRITE setMotionArea_Y2)
  Q_PROPERTY(int MotionArea_y1 READ MotionArea_y1 WRITE setMotionArea_y1)
  Q_PROPERTY(int MotionArea_x2 READ MotionArea_x2 WRITE setMotionArea_x2)
  Q_PROPERTY(int MotionArea_x1 READ MotionArea_x1 WRITE setMotionArea_x1)
  Q_PROPERTY(int MotionSensivity READ MotionSensivity WRITE setMotionSensivity)
  Q_PROPERTY(bool ShowMotion READ ShowMotion WRITE setShowMotion)
  Q_PROPERTY(bool AlwaysSmooth READ AlwaysSmooth WRITE setAlwaysSmooth)
  Q_PROPERTY(bool DisableTestScreen READ DisableTestScreen WRITE setDisableTestScreen)
  Q_PROPERTY(bool MotionByZones READ MotionByZones WRITE setMotionByZones)
  Q_PROPERTY(QString MotionString READ MotionString WRITE setMotionString)
  Q_PROPERTY(QString URL READ URL)
  Q_PROPERTY(bool AutoReconnect READ AutoReconnect WRITE setAutoReconnect)

 public:
  /// `platform` outlives the widget; see QtPlatform.
  explicit VideoServerPushWidget(Platform& platform, QWidget* parent = nullptr);
  /// Shows a viewer that somebody else made and sizes, such as a player.
  VideoServerPushWidget(Platform& platform, std::shared_ptr<VideoServerPush> control, QWidget* parent);
  ~VideoServerPushWidget() override;

  /// The control behind the widget.
  VideoServerPush& Control() { return *control_; }

  /// Runs `handler` on a stack of its own: what waits in it (Connect, until the first answer) suspends it alone, and
  /// the call returns as soon as it does. A Connect called directly returns when it is done, handling events meanwhile.
  void RunHandler(std::function<void()> handler) { platform_.loop.RunHandler(std::move(handler)); }

  int FrameRate() const { return control_->FrameRate(); }
  void setFrameRate(int value);
  QString Server() const;
  bool ShowBandwidth() const { return control_->ShowBandwidth(); }
  void setShowBandwidth(bool value) { control_->ShowBandwidth(value); }
  bool MotionDetector() const { return control_->MotionDetector(); }
  void setMotionDetector(bool value) { control_->MotionDetector(value); }
  QString Username() const;
  void setUsername(const QString& value);
  QString Password() const;
  void setPassword(const QString& value);
  bool DirectToDisk() const { return control_->DirectToDisk(); }
  void setDirectToDisk(bool value) { control_->DirectToDisk(value); }
  int MotionArea_Y2() const { return control_->MotionArea_Y2(); }
  void setMotionArea_Y2(int value) { control_->MotionArea_Y2(value); }
  int MotionArea_y1() const { return control_->MotionArea_y1(); }
  void setMotionArea_y1(int value) { control_->MotionArea_y1(value); }
  int MotionArea_x2() const { return control_->MotionArea_x2(); }
  void setMotionArea_x2(int value) { control_->MotionArea_x2(value); }
  int MotionArea_x1() const { return control_->MotionArea_x1(); }
  void setMotionArea_x1(int value) { control_->MotionArea_x1(value); }
  /// Reads the stored threshold; takes a sensitivity in percent.
  int MotionSensivity() const { return control_->MotionSensivity(); }
  void setMotionSensivity(int value) { control_->MotionSensivity(value); }
  bool ShowMotion() const { return control_->ShowMotion(); }
  void setShowMotion(bool value) { control_->ShowMotion(value); }
  bool AlwaysSmooth() const { return control_->AlwaysSmooth(); }
  void setAlwaysSmooth(bool value) { control_->AlwaysSmooth(value); }
  bool DisableTestScreen() const { return control_->DisableTestScreen(); }
  void setDisableTestScreen(bool value) { control_->DisableTestScreen(value); }
  bool MotionByZones() const { return control_->MotionByZones(); }
  void setMotionByZones(bool value) { control_->MotionByZones(value); }
  QString MotionString() const;
  void setMotionString(const QString& value);
  QString URL() const;
  bool AutoReconnect() const { return control_->AutoReconnect(); }
  void setAutoReconnect(bool value) { control_->AutoReconnect(value); }

  QSize sizeHint() const override;

 public Q_SLOTS:
  void Connect(const QString& URL, bool OnlyOnce = false, const QString& msg = {});
  void Disconnect(bool NoNewStatus = false);
  void StopGettingFrames();
  void ShowStatus(const QString& X);
  void ToogleClock(bool X);
  void Pulse();
  void RequestEnd();
  void MultiCamView(const QString& inpString);
  void SaveImage(const QString& Filename);
  void ImageOnClipboard();

 Q_SIGNALS:
  void StreamInfo(int BytesPerSecond, int FrameRate);
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
  /// `Effect` is the answer to the data's source: 0 none, 1 copy, 2 move.
  void OLEDragDrop(const DropData& Data, int& Effect, short Button, short Shift, float X, float y);
  void MotionArea(int X1, int Y1, int X2, int Y2);
  void MotionDetectedArea(short Area);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void MakeChildren();
  void ForwardEvents();
  void PopUpMenu();

  Platform& platform_;
  std::shared_ptr<VideoServerPush> control_;
  bool sizes_control_ = false;
  Connection menu_popped_up_;
};

}  // namespace orbelcast
