#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.h"
#include "player/alerts_window.h"
#include "player/archive_controls.h"
#include "player/busy_pointer.h"
#include "player/camera_list.h"
#include "player/full_screen_command.h"
#include "player/full_screen_window.h"
#include "player/list_choice.h"
#include "player/log_window.h"
#include "player/multi_cams_window.h"
#include "player/multiple_cameras.h"
#include "player/picture_choices.h"
#include "player/player_children.h"
#include "player/player_layout.h"
#include "player/player_life.h"
#include "player/player_server.h"
#include "player/player_stream.h"
#include "player/server_commands.h"
#include "player/snapshot_command.h"
#include "player/toolbar_commands.h"
#include "recording/clip_recorder.h"
#include "toolkit/controls.h"

namespace orbelcast {

/// The properties that a host has kept for a player: texts under their keys. A key that is missing reads as empty.
using PropertyBag = std::map<std::string, std::string, std::less<>>;

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
class UserControl1 : public PlayerChildren {
 public:
  /// Makes a control with its lists filled and the stored choices applied. `platform` outlives it.
  static std::shared_ptr<UserControl1> Create(Platform& platform);

  // ---- Interface --------------------------------------------------------------------------------------------------

  // Each member's meaning is in its interface's description, interface/user_control1_interface.h.

  void AviStart();
  void StopAvi();
  void RefreshURLs(const std::string& l, const std::string& i);
  void DoResize(bool X) { layout_.Freeze(!X); }
  void Connect2Server(std::string xServer, std::string xUsername, std::string xPassword);
  std::string SystemName() const { return server_.SystemName(); }
  bool ShowExtendedFeatures() const { return layout_.ShowExtendedFeatures(); }
  void ShowExtendedFeatures(bool value);
  void SetMultiCams();

  // ---- For the container and front ends ---------------------------------------------------------------------------

  /// Takes on the properties that the host has kept: server or addresses, camera, buttons, layout. Connects.
  void ReadProperties(PropertyBag bag);
  /// Gives the control its size in twips, from a container that reads the properties next: without a layout.
  void Site(float width, float height) { layout_.Site(width, height); }
  /// Gives the control its size in twips and runs the layout.
  void Resize(float width, float height);
  /// The container shows the control.
  void Show() { layout_.UserControl_Resize(); }

  float Width() const { return layout_.Width(); }
  float Height() const { return layout_.Height(); }

  /// The id of the camera that is selected in the list, as the key "Device" takes it; empty where none is.
  std::string SelectedDevice() const { return cameras_.DeviceOf(CamList.ListIndex()); }

  /// The address of the chosen camera's archive, which its steps are added to; empty where there is none.
  const std::string& ArchiveAddress() const { return stream_.ArchiveAddress(); }

  /// A camera's live address, without the picture's size and quality; empty where there is no such camera.
  std::string LiveAddressOf(int camera) const { return cameras_.LiveUrlOf(camera); }
  /// The live addresses of the cameras that were chosen to be shown together, each followed by CR LF; empty since a
  /// single one was chosen.
  const std::string& Together() const { return multiple_cameras_.Selection(); }
  /// Shows cameras together, as when they were chosen in the control's own window.
  void ShowTogether(const std::string& cameras);

  /// The windows that the control opens.
  std::vector<NamedChild> Windows();

  /// The hourglass while the player waits for its server or opens full screen.
  Property<int> MousePointer{kDefaultPointer};
  static constexpr int kDefaultPointer = BusyPointer::kDefault;
  static constexpr int kHourglass = BusyPointer::kHourglass;

 private:
  // Declared before the windows, which use them.
  PlayerLife life_;
  BusyPointer pointer_{MousePointer};
  PlayerServer server_;

 public:
  AlertsWindow AlertsWin;
  MultiCamsWindow MultiCams;
  LogWindow LogForm;
  FullScreenWindow XFullScreen;

 private:
  explicit UserControl1(Platform& platform);

  void ConnectHandlers();
  void UserControl_Initialize();
  void UserControl_Terminate();
  void ReadServer(const PropertyBag& bag);
  /// False once the player has turned to another server meanwhile, or ended: the answer was not looked at.
  bool LoadCameraList(const std::string& address);
  void SelectDevice(const std::string& device, const ServerQuestions::Server& server);
  void CamList_Click();

  CameraList cameras_{CamList, server_};
  PlayerStream stream_{life_, VS};
  ArchiveControls archive_{*this, life_, stream_};
  ClipRecorder recorder_;
  SnapshotCommand snapshot_;
  ServerCommands server_commands_;
  MultipleCameras multiple_cameras_{*this, life_, cameras_, MultiCams};
  FullScreenCommand full_screen_{*this, life_, pointer_, multiple_cameras_, XFullScreen};
  ToolbarCommands toolbar_;
  PictureChoices picture_choices_;
  PlayerLayout layout_;
  ListChoice camera_choice_;
};

}  // namespace orbelcast
