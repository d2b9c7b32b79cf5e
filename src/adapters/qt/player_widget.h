#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "adapters/qt/mirrors.h"
#include "adapters/qt/video_server_push_widget.h"
#include "player/user_control1.h"

namespace orbelcast {

/// The player as an ordinary widget: the stream viewer with a list of the server's cameras and a toolbar, its members
/// under the interface's own names.
///
/// What a host keeps for a player (`Server`, `Device`, …) is set before the widget is shown; it is read once, when the
/// widget is shown or one of its methods is called, whichever comes first. Texts are as the interface has them: "Yes"
/// switches on, anything else does not.
///
/// The windows that the player opens are dialogs, modal to the window that the widget is on. A method that waits
/// (Connect2Server, until the server has told its cameras) handles events meanwhile; in RunHandler it suspends that
/// handler alone. The widget may be deleted at any time, also while it waits or one of its windows is open.
class PlayerWidget final : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString SystemName READ SystemName STORED false)
  Q_PROPERTY(bool ShowExtendedFeatures READ ShowExtendedFeatures WRITE setShowExtendedFeatures STORED false)
  Q_PROPERTY(QString Server READ Server WRITE setServer)
  Q_PROPERTY(QString Port READ Port WRITE setPort)
  Q_PROPERTY(QString Username READ Username WRITE setUsername)
  Q_PROPERTY(QString Password READ Password WRITE setPassword DESIGNABLE false)
  Q_PROPERTY(QString LURL READ LURL WRITE setLURL)
  Q_PROPERTY(QString IURL READ IURL WRITE setIURL)
  Q_PROPERTY(QString Start READ Start WRITE setStart)
  Q_PROPERTY(QString ExtendedControls READ ExtendedControls WRITE setExtendedControls)
  Q_PROPERTY(QString Device READ Device WRITE setDevice)
  Q_PROPERTY(QString _ExtentX READ ExtentX WRITE setExtentX)
  Q_PROPERTY(QString _ExtentY READ ExtentY WRITE setExtentY)
  Q_PROPERTY(QString _Resize READ Resize WRITE setResize)

 public:
  /// `platform` outlives the widget; see QtPlatform.
  explicit PlayerWidget(Platform& platform, QWidget* parent = nullptr);
  ~PlayerWidget() override;

  /// The control behind the widget.
  UserControl1& Control() { return *control_; }
  /// The stream viewer in it.
  VideoServerPushWidget& VS() { return *viewer_; }

  /// Runs `handler` on a stack of its own, as VideoServerPushWidget::RunHandler does.
  void RunHandler(std::function<void()> handler) { platform_.loop.RunHandler(std::move(handler)); }

  QString SystemName() const;
  bool ShowExtendedFeatures() const { return control_->ShowExtendedFeatures(); }
  void setShowExtendedFeatures(bool value);

  /// Whether the automatic layout is off, and so on, is the control's business: these are kept as they are given.
  QString Server() const { return Kept("Server"); }
  void setServer(const QString& value) { Keep("Server", value); }
  QString Port() const { return Kept("Port"); }
  void setPort(const QString& value) { Keep("Port", value); }
  QString Username() const { return Kept("Username"); }
  void setUsername(const QString& value) { Keep("Username", value); }
  QString Password() const { return Kept("Password"); }
  void setPassword(const QString& value) { Keep("Password", value); }
  QString LURL() const { return Kept("LURL"); }
  void setLURL(const QString& value) { Keep("LURL", value); }
  QString IURL() const { return Kept("IURL"); }
  void setIURL(const QString& value) { Keep("IURL", value); }
  QString Start() const { return Kept("Start"); }
  void setStart(const QString& value) { Keep("Start", value); }
  QString ExtendedControls() const { return Kept("ExtendedControls"); }
  void setExtendedControls(const QString& value) { Keep("ExtendedControls", value); }
  QString Device() const { return Kept("Device"); }
  void setDevice(const QString& value) { Keep("Device", value); }
  QString ExtentX() const { return Kept("_ExtentX"); }
  void setExtentX(const QString& value) { Keep("_ExtentX", value); }
  QString ExtentY() const { return Kept("_ExtentY"); }
  void setExtentY(const QString& value) { Keep("_ExtentY", value); }
  QString Resize() const { return Kept("_Resize"); }
  void setResize(const QString& value) { Keep("_Resize", value); }

  QSize sizeHint() const override;

 public Q_SLOTS:
  void AviStart();
  void StopAvi();
  void RefreshURLs(const QString& l, const QString& i);
  void DoResize(bool X);
  void Connect2Server(const QString& xServer, const QString& xUsername, const QString& xPassword);
  void SetMultiCams();

  /// Reads what the host has kept again, and connects again with it.
  void Load();

 Q_SIGNALS:
  /// What the host has kept was read; the server, if one is named, has told its cameras or has failed to.
  void Loaded();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void MakeChildren();
  void MakeWindows();
  void NameForScreenReaders();
  /// False where the widget was deleted meanwhile.
  bool EnsureLoaded();
  QString Kept(const char* key) const;
  void Keep(const char* key, const QString& value);

  Platform& platform_;
  std::shared_ptr<UserControl1> control_;
  PropertyBag kept_;
  bool loaded_ = false;
  VideoServerPushWidget* viewer_ = nullptr;
  std::unique_ptr<Mirror> viewer_place_;
  Connection pointer_;
};

}  // namespace orbelcast
