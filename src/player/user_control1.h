#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "player/server_questions.h"
#include "player/windows.h"
#include "protocol/server_address.h"
#include "protocol/server_info.h"
#include "recording/clip_recorder.h"
#include "toolkit/controls.h"
#include "viewer/video_server_push.h"

/// The player around a stream viewer: its state and members in user_control1.h, its doings in settings, lists, toolbar,
/// archive, recording and resize, the windows that it opens in windows.h, the table of its interface in interface.h.
namespace orbelcast {

/// The properties that a host has kept for a player: texts under their keys. A key that is missing reads as empty.
using PropertyBag = std::map<std::string, std::string, std::less<>>;

/// The save dialog of the player, as it was configured last. Shown through the platform's dialogs.
struct CommonDialog {
  std::string DialogTitle;
  std::string Filter;
  std::string FileName;  ///< What was chosen last.
};

/// The player: a stream viewer with a list of the server's cameras, a toolbar, and the windows that it opens.
///
/// Everything happens on the thread of the platform's message loop. A method that waits lets other handlers run
/// meanwhile; requests of the player's own (camera list, log, message, outputs, alerts) block the thread, or the
/// handler that makes them, until they are answered or a time-out has ended them; see ServerQuestions. Nothing throws
/// and nothing is reported as an error: a step that fails is skipped and the next one runs.
///
/// The host owns the control through the pointer that Create returns. Releasing it, also while a method of it waits or
/// a window of it is open, ends the control: its windows close, its viewers end, and what waits returns without another
/// step.
class UserControl1 {
 public:
  /// Makes a control with its lists filled and the stored choices applied. `platform` outlives it.
  static std::shared_ptr<UserControl1> Create(Platform& platform);

  ~UserControl1();
  UserControl1(const UserControl1&) = delete;
  UserControl1& operator=(const UserControl1&) = delete;

  // ---- Interface --------------------------------------------------------------------------------------------------

  /// Begins a clip: asks for a file and a compression, then takes a picture at each `StreamInfo` of the viewer. Ends a
  /// clip that is being recorded. Where an answer is cancelled, or there is no picture, none begins.
  void AviStart();
  /// Ends the clip and tells "Total frames" in a message box: the clip's next position, one more than its pictures. The
  /// box is shown where none is being recorded, too.
  void StopAvi();
  /// Takes `l` as the camera's live address and `i` as its archive address, each beginning with "http://", and shows
  /// the live stream.
  void RefreshURLs(const std::string& l, const std::string& i);
  /// Whether the children follow the control's size, from the next resize on.
  void DoResize(bool X);
  /// Loads the camera list of a server, a host or host:port; the port that was set before is forgotten. Waits for the
  /// answer, at most 10 seconds for the connection and 10 for the answer. A server that does not answer gives an empty
  /// list; an empty `xServer` changes nothing but what the host has kept. A newer call takes over: what an older one,
  /// or a button of the toolbar, still waits for is not looked at any more.
  void Connect2Server(std::string xServer, std::string xUsername, std::string xPassword);
  /// What the server calls itself; its address where it did not say.
  std::string SystemName() const { return SysName.empty() ? Server : SysName; }
  /// Whether the toolbar has its extended buttons: log, alerts, inputs and outputs, message, several cameras.
  bool ShowExtendedFeatures() const { return show_extended_features_; }
  void ShowExtendedFeatures(bool value);
  /// Opens the chooser of cameras, a modal window, and shows those that were chosen together.
  void SetMultiCams();

  // ---- For the container and front ends ---------------------------------------------------------------------------

  /// Takes on the properties that the host has kept: server or addresses, camera, buttons, layout. Connects.
  void ReadProperties(PropertyBag bag);
  /// Gives the control its size in twips, from a container that reads the properties next: without a layout.
  void Site(float width, float height);
  /// Gives the control its size in twips and runs the layout.
  void Resize(float width, float height);
  /// The container shows the control.
  void Show();

  float Width() const { return width_; }
  float Height() const { return height_; }

  /// The id of the camera that is selected in the list, as the key "Device" takes it; empty where none is.
  std::string SelectedDevice() const;

  /// The child controls by name, in tab order; the viewer's own are not among them.
  std::vector<NamedChild> Children();
  /// The windows that the control opens.
  std::vector<NamedChild> Windows();

  // Positions are those in the container named; the toolbar's children move with it.
  ComboBox CamList;
  Frame PlayerControls;           ///< The toolbar: holds all that follow down to Label1.
  std::array<TextBox, 6> TCR;     ///< Year, month, day, hour, minute, second of the archive's position.
  std::array<Button, 18> Player;  ///< 11 to 15 and 17 lie inside Frame1.
  Frame Frame1;
  ComboBox FrameRate;
  ComboBox Resolution;
  Label Label1;
  PictureBox Conv;  ///< Never shown: the size of the clip's pictures.
  CommonDialog Diag;

  /// The viewer; null once the host has released the player.
  std::shared_ptr<VideoServerPush> VS;
  /// Where the player has put it.
  ChildControl VSPlace;

  /// The hourglass while the player waits for its server or opens full screen.
  Property<int> MousePointer{kDefaultPointer};
  static constexpr int kDefaultPointer = BusyPointer::kDefault;
  static constexpr int kHourglass = BusyPointer::kHourglass;

  AlertsWindow AlertsWin;
  MultiCamsWindow MultiCams;
  LogWindow LogForm;
  FullScreenWindow XFullScreen;

 private:
  explicit UserControl1(Platform& platform);

  // Lifecycle (user_control1.cpp).
  void PlaceChildren();
  void ConnectHandlers();
  void UserControl_Initialize();
  void UserControl_Terminate();

  // Settings (settings.cpp).
  void ReadServer(const PropertyBag& bag);
  void SelectDevice(const std::string& device, const ServerQuestions::Server& server);
  /// False once the player has turned to another server meanwhile, or ended: the answer was not looked at.
  bool LoadCameraList(const std::string& address);

  // Layout (resize.cpp).
  void UserControl_Resize();

  // The lists (lists.cpp).
  void CamList_Click();
  void FrameRate_Click();
  void Resolution_Click();
  std::string LiveUrlOf(std::size_t camera) const;

  // The toolbar (toolbar.cpp).
  void Player_Click(std::int16_t Index);
  void SaveSnapshot();
  void ShowLog();
  void SendTextMessage();
  void ShowInputsAndOutputs();
  void ShowAlerts();
  void ShowFullScreen();
  std::string CommandBase() const;
  std::string ServerAddress() const;
  /// Asks a server as one question; nothing where that does not hold any more.
  std::optional<ServerInfo> AskServer(std::string address, InfoMode mode);
  /// Sends a command as one question, by way of the relay service where its address names an account. False where that
  /// does not hold any more; the command is not sent then, unless it was already.
  bool SendByRelay(HttpRequest& request, const std::string& url);
  bool DropsPress(std::int16_t Index) const;

  // The archive (archive.cpp).
  void ShowArchiveEnd(ArchiveStep end, bool bandwidth_was_shown);
  void PlayArchive(ArchiveStep direction, bool once);
  void SearchArchive();
  void VS_VigilboxTCR(const std::array<std::string, 6>& fields);
  void TCR_LostFocus(std::size_t Index);

  // Recording (recording.cpp).
  ClipRecorder::Host RecorderHost();
  void ShowRecording(bool recording);

  /// Selects an item from code: the list's click handling runs here and has ended when this returns.
  void Select(ComboBox& list, int index);
  /// Connects the viewer. False once the host has released the control meanwhile, as all of the following.
  bool ConnectViewer(const std::string& url, bool once, const std::string& message = {});
  bool ShowBandwidth(bool show);
  bool PlaceViewer(Property<float>& field, float value);
  bool Yield();
  bool OpenWindow(Window& window);
  /// Starts a handler that keeps the control alive until it ends, whatever the host does meanwhile.
  void Start(std::function<void()> handler);
  HandlerStarter Starter();
  std::shared_ptr<UserControl1> StayAlive() const { return self_.lock(); }

  Platform& platform_;
  std::weak_ptr<UserControl1> self_;

  // The control's state.
  std::string Server;
  std::string Port;
  std::string Username;
  std::string Password;
  std::string SysName;
  std::string LiveUrl;
  std::string ArchiveUrl;
  std::string QualitySuffix;
  std::int16_t LastCommand = 0;
  std::vector<std::string> CamDevice;  ///< By lines of the camera list, as CamLive: may outgrow the list.
  std::vector<std::string> CamLive;
  std::string MultiCamSelection;
  bool show_extended_features_ = false;
  bool LayoutFrozen = false;
  int archive_ends_awaited_ = 0;  ///< Presses that wait for the archive's first or last picture.
  bool bandwidth_before_archive_end_ = false;
  bool Terminating = false;              ///< The host has released the control.
  const ComboBox* selecting_ = nullptr;  ///< The list of which an item is being selected from code.

  BusyPointer pointer_{MousePointer};
  ServerQuestions questions_{pointer_};
  ClipRecorder recorder_;

  float width_ = 5295;  ///< The design size, until the host sites the control.
  float height_ = 5940;
};

}  // namespace orbelcast
