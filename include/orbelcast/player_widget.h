#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

#include "orbelcast/video_server_push_widget.h"

namespace orbelcast {

struct Platform;
class UserControl1;

/// The player as an ordinary widget: the stream viewer with a list of the server's cameras and a toolbar, its members
/// under the interface's own names.
///
/// The persisted properties (`Server`, `Device`, …) are set before the widget is shown; they are read once, when the
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
  Q_PROPERTY(QString Password READ Password WRITE setPassword)
  Q_PROPERTY(QString LURL READ LURL WRITE setLURL)
  Q_PROPERTY(QString IURL READ IURL WRITE setIURL)
  Q_PROPERTY(QString Start READ Start WRITE setStart)
  Q_PROPERTY(QString ExtendedControls READ ExtendedControls WRITE setExtendedControls)
  Q_PROPERTY(QString Device READ Device WRITE setDevice)
  Q_PROPERTY(QString _ExtentX READ ExtentX WRITE setExtentX)
  Q_PROPERTY(QString _ExtentY READ ExtentY WRITE setExtentY)
  Q_PROPERTY(QString _Resize READ Resize WRITE setResize)

 public:
  /// A player with its services made for it, once an application. The QApplication must exist.
  explicit PlayerWidget(QWidget* parent = nullptr);
  ~PlayerWidget() override;

  /// The stream viewer in it.
  VideoServerPushWidget& VS();

  /// Runs `handler` on a stack of its own, as VideoServerPushWidget::RunHandler does.
  void RunHandler(std::function<void()> handler);

  /// The server's name for itself; its address where it did not say.
  QString SystemName() const;
  /// Whether the toolbar has its extended buttons.
  bool ShowExtendedFeatures() const;
  void setShowExtendedFeatures(bool value);

  // Kept as they are given, and read when the player begins or by Load.

  /// The camera server: a host name or address. Empty: the player shows `LURL`.
  QString Server() const { return Kept("Server"); }
  void setServer(const QString& value) { Keep("Server", value); }
  QString Port() const { return Kept("Port"); }
  void setPort(const QString& value) { Keep("Port", value); }
  QString Username() const { return Kept("Username"); }
  void setUsername(const QString& value) { Keep("Username", value); }
  /// A form file would hold it readable for everybody: better set by the program.
  QString Password() const { return Kept("Password"); }
  void setPassword(const QString& value) { Keep("Password", value); }
  /// Without a server: the address of the live stream, and the one that archive steps are added to.
  QString LURL() const { return Kept("LURL"); }
  void setLURL(const QString& value) { Keep("LURL", value); }
  QString IURL() const { return Kept("IURL"); }
  void setIURL(const QString& value) { Keep("IURL", value); }
  /// "Yes" shows the stream of `LURL` at once.
  QString Start() const { return Kept("Start"); }
  void setStart(const QString& value) { Keep("Start", value); }
  /// "Yes" shows the buttons for log, messages, alerts, inputs and outputs, several cameras.
  QString ExtendedControls() const { return Kept("ExtendedControls"); }
  void setExtendedControls(const QString& value) { Keep("ExtendedControls", value); }
  /// The id of the camera to begin with, in any letter case. Empty: none is chosen.
  QString Device() const { return Kept("Device"); }
  void setDevice(const QString& value) { Keep("Device", value); }
  /// With both extents set, everything stays at its place when the widget changes its size; `Resize` "Yes" lets it
  /// follow all the same.
  QString ExtentX() const { return Kept("_ExtentX"); }
  void setExtentX(const QString& value) { Keep("_ExtentX", value); }
  QString ExtentY() const { return Kept("_ExtentY"); }
  void setExtentY(const QString& value) { Keep("_ExtentY", value); }
  QString Resize() const { return Kept("_Resize"); }
  void setResize(const QString& value) { Keep("_Resize", value); }

  /// For tools in which forms are designed: the player asks no server and starts no stream, whatever is set, and shows
  /// what can be seen of its properties at once.
  void ShowDesign();

  QSize sizeHint() const override;

  // ---- For programs that are built from the library's sources -----------------------------------------------------

  /// A player on services of the caller's, which outlive the widget; see QtPlatform.
  explicit PlayerWidget(Platform& platform, QWidget* parent = nullptr);
  /// The control that the widget shows.
  UserControl1& Control();

 public Q_SLOTS:
  /// Starts recording a clip; ends one that is being recorded.
  void AviStart();
  void StopAvi();
  /// Takes `l` as the camera's live address and `i` as its archive address, and shows the live stream.
  void RefreshURLs(const QString& l, const QString& i);
  /// Whether the children follow the widget's size, from the next resize on.
  void DoResize(bool X);
  /// Loads the camera list of a server. The port is forgotten: `xServer` may name one.
  void Connect2Server(const QString& xServer, const QString& xUsername, const QString& xPassword);
  /// Lets the user choose cameras and shows them together.
  void SetMultiCams();

  /// Reads what the host has kept again, and connects again with it.
  void Load();

 Q_SIGNALS:
  /// The persisted properties were read; the server, if one is named, has told its cameras or has failed to.
  void Loaded();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  struct Parts;

  PlayerWidget(std::shared_ptr<Platform> platform, QWidget* parent);

  void MakeChildren();
  void MakeWindows();
  void ShowPointer(int pointer);
  void Site();
  void NameForScreenReaders();
  /// False where the widget was deleted meanwhile.
  bool EnsureLoaded();
  QString Kept(const char* key) const;
  void Keep(const char* key, const QString& value);

  const std::unique_ptr<Parts> parts_;
};

}  // namespace orbelcast
