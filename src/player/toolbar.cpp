// The toolbar's buttons.

#include "player/toolbar.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "player/command_request.h"
#include "player/limits.h"
#include "player/texts.h"
#include "player/user_control1.h"
#include "protocol/relay.h"
#include "protocol/server_address.h"
#include "protocol/server_info.h"
#include "recording/picture_file.h"

namespace orbelcast {

namespace {

constexpr float kAlertsWidth = 3600;
constexpr float kInputsAndOutputsWidth = 7125;

/// Moves a file to a name that nothing has; false, and the file stays, where something has it or it cannot be.
bool MoveFile(const std::filesystem::path& from, const std::filesystem::path& to) {
  namespace fs = std::filesystem;
  std::error_code error;
  if (fs::exists(fs::symlink_status(to, error))) return false;
  fs::rename(from, to, error);
  if (!error) return true;
  // Another file system.
  if (!fs::copy_file(from, to, error)) {
    std::error_code ignored;
    if (error != std::errc::file_exists) fs::remove(to, ignored);
    return false;
  }
  fs::remove(from, error);
  return true;
}

/// The length of a file; nothing where it cannot be told.
std::optional<std::uintmax_t> LengthOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::uintmax_t length = std::filesystem::file_size(file, error);
  return error ? std::nullopt : std::optional(length);
}

/// Adds a line's name to the list, with the state that the line tells. What is not told counts as on.
void AddWithState(ListBox& list, const std::vector<std::string_view>& fields) {
  if (fields.size() < 2) return;
  const bool off = fields.size() > 2 && fields[2] == "0";
  AddShown(list, std::string(fields[1]) + (off ? " [OFF]" : " [ON]"));
}

}  // namespace

// A question is asked one at a time, and its window is closed before the next one.
bool UserControl1::DropsPress(std::int16_t Index) const {
  return toolbar::AsksServer(Index) && (questions_.UnderWay() || AlertsWin.IsOpen() || LogForm.IsOpen());
}

void UserControl1::Player_Click(std::int16_t Index) {
  if (Terminating || DropsPress(Index)) return;
  LastCommand = Index;
  VS->DisableTestScreen(true);
  const bool once = FrameRate.ListIndex() == 0;
  const bool bandwidth_was_shown = VS->ShowBandwidth();
  switch (Index) {
    case toolbar::kArchiveTop:
      return ShowArchiveEnd(ArchiveStep::kTop, bandwidth_was_shown);
    case toolbar::kReversePlay:
      return PlayArchive(ArchiveStep::kReversePlay, once);
    case toolbar::kStop:
      return VS->StopGettingFrames();
    case toolbar::kPlay:
      return PlayArchive(ArchiveStep::kPlay, once);
    case toolbar::kArchiveEnd:
      return ShowArchiveEnd(ArchiveStep::kEnd, bandwidth_was_shown);
    case toolbar::kLive:
      return VS->Connect(LiveUrl + QualitySuffix, false);
    case toolbar::kInformation:
      LastCommand = toolbar::kNotRepeated;
      return VS->ShowBandwidth(!bandwidth_was_shown);
    case toolbar::kSearch:
      return SearchArchive();
    case toolbar::kStopAvi:
      LastCommand = toolbar::kNotRepeated;
      return StopAvi();
    case toolbar::kSaveAvi:
      LastCommand = toolbar::kNotRepeated;
      return AviStart();
    case toolbar::kSnapshot:
      LastCommand = toolbar::kNotRepeated;
      return SaveSnapshot();
    case toolbar::kLogViewer:
      return ShowLog();
    case toolbar::kSendMessage:
      return SendTextMessage();
    case toolbar::kInputsAndOutputs:
      return ShowInputsAndOutputs();
    case toolbar::kAlerts:
      return ShowAlerts();
    case toolbar::kFullScreen:
      return ShowFullScreen();
    case toolbar::kMultipleCameras:
      return SetMultiCams();
    default:
      return;
  }
}

std::string UserControl1::CommandBase() const {
  return LoginBase(Server, Port, Username, Password);
}

std::string UserControl1::ServerAddress() const {
  return Port.empty() ? Server : Server + ":" + Port;
}

// Of copies: the player may turn to another server while this one is asked.
std::optional<ServerInfo> UserControl1::AskServer(std::string address, InfoMode mode) {
  const ServerQuestions::Question question(questions_);
  ServerInfo info = question.WaitFor([&, user_name = Username, password = Password] {
    return QueryServerInfo(platform_.http, platform_.configuration, address, user_name, password,
                           player_limits::kInformationTimeout, mode);
  });
  return question.Holds() ? std::optional(std::move(info)) : std::nullopt;
}

bool UserControl1::SendByRelay(HttpRequest& request, const std::string& url) {
  const ServerQuestions::Question question(questions_);
  question.WaitFor([&] {
    const std::string resolved =
        ResolveRelayUrl(platform_.http, platform_.configuration, url, player_limits::kRelayTimeout);
    return question.Holds() && SendCommand(request, resolved);
  });
  return question.Holds();
}

void UserControl1::SaveSnapshot() {
  const std::string temporary = platform_.files.ModuleFolder() + "tempf.jpg";
  VS->SaveImage(temporary);
  Diag.DialogTitle = "Choose the filename...";
  Diag.Filter = "JPEG Image (*.jpg)|*.jpg";
  const auto name = platform_.dialogs.AskSaveName({.title = Diag.DialogTitle, .filter = Diag.Filter});
  if (Terminating || !name) return;
  Diag.FileName = *name;
  // A name that nothing has is asked about as well: its length cannot be told.
  const auto length = LengthOf(*name);
  if (!length || *length > 0) {
    const auto answer = platform_.dialogs.ShowMessage({.text = "This file already exists, do you want to overwrite ?",
                                                       .title = "AVI Maker",
                                                       .buttons = Dialogs::Buttons::kYesNo,
                                                       .icon = Dialogs::Icon::kExclamation});
    if (Terminating || answer != Dialogs::Answer::kYes) return;
    DeleteFile(*name);
  }
  MoveFile(temporary, *name);
}

void UserControl1::ShowLog() {
  const auto request = platform_.http.Create();
  if (!SendByRelay(*request, ActivityLogAddress(CommandBase()))) return;
  LogForm.Caption = "Activity Log";
  const FrameBytes log = request->ResponseBody();
  LogForm.Log.Text = LogText({reinterpret_cast<const char*>(log.Bytes().data()), log.Size()});
  OpenWindow(LogForm);
}

// What was typed goes out decoded, not encoded: so blanks and "&" are sent as they are.
void UserControl1::SendTextMessage() {
  const ServerQuestions::Question question(questions_);
  const std::string answer = platform_.dialogs.AskText({.prompt = "Message:", .title = SysName});
  if (!question.Holds() || answer.empty()) return;
  SendByRelay(*platform_.http.Create(), MessageAddress(CommandBase(), UrlDecode(answer)));
}

void UserControl1::ShowInputsAndOutputs() {
  const auto info = AskServer(ServerAddress(), InfoMode::kAllLines);
  if (!info) return;
  AlertsWin.OutList.Clear();
  ForEachLine(info->Lines, [&](std::size_t, const std::vector<std::string_view>& fields) {
    if (fields.empty()) return;
    if (fields[0].starts_with("HWO:")) AddWithState(AlertsWin.OutList, fields);
    if (fields[0].starts_with("HWI:")) AddWithState(AlertsWin.AlertList, fields);
  });
  AlertsWin.OutToogle.Tag = OutputCommand(CommandBase());
  AlertsWin.Activate.Visible = false;
  AlertsWin.BoxLabel[0].Caption = "Inputs:";
  AlertsWin.BoxLabel[1].Caption = "Outputs:";
  AlertsWin.OutToogle.Visible = true;
  AlertsWin.OutToogleOff.Visible = true;
  AlertsWin.Caption = "I/O Control";
  AlertsWin.Width = kInputsAndOutputsWidth;
  OpenWindow(AlertsWin);
}

void UserControl1::ShowAlerts() {
  const auto info = AskServer(ServerAddress(), InfoMode::kAlerts);
  if (!info) return;
  AlertsWin.AlertList.Clear();
  ForEachLine(info->Lines, [&](std::size_t, const std::vector<std::string_view>& fields) {
    if (fields.size() > 1) AddShown(AlertsWin.AlertList, std::string(fields[1]));
  });
  AlertsWin.AlertList.ListIndex(0);
  AlertsWin.Activate.Visible = true;
  AlertsWin.BoxLabel[0].Caption = "Alerts:";
  AlertsWin.Caption = "Alerts";
  AlertsWin.Activate.Tag = AlertCommand(CommandBase());
  AlertsWin.Width = kAlertsWidth;
  OpenWindow(AlertsWin);
}

void UserControl1::ShowFullScreen() {
  std::optional<BusyPointer::Scope> busy(pointer_);
  if (!Yield()) return;
  VS->StopGettingFrames();
  const bool toolbar_was_visible = PlayerControls.Visible;
  PlayerControls.Visible = false;
  if (!Yield()) return;
  VideoServerPush& viewer = XFullScreen.Viewer();
  std::int16_t rate = VS->FrameRate();
  viewer.FrameRate(rate);
  viewer.AlwaysSmooth(true);
  viewer.ShowBandwidth(true);
  if (Terminating) return;
  busy.reset();
  XFullScreen.Tag = MultiCamSelection.empty() ? VS->URL() : "*" + MultiCamSelection;
  if (!Yield() || !OpenWindow(XFullScreen)) return;
  PlayerControls.Visible = toolbar_was_visible;
}

void UserControl1::SetMultiCams() {
  const auto alive = StayAlive();
  Select(CamList, -1);
  MultiCamSelection = "";
  MultiCams.Cameras.Clear();
  for (int k = 0; k < CamList.ListCount(); ++k) {
    const auto camera = static_cast<std::size_t>(k);
    MultiCams.Cameras.AddItem(CamList.List()[camera]);
    MultiCams.CamerasMatrix(static_cast<std::int16_t>(k), LiveUrlOf(camera));
  }
  MultiCams.SelectionResult = "";
  if (!OpenWindow(MultiCams) || MultiCams.SelectionResult.empty()) return;
  MultiCamSelection = MultiCams.SelectionResult;
  VS->MultiCamView(MultiCamSelection);
}

}  // namespace orbelcast
