#include "player/server_commands.h"

#include <string>
#include <string_view>
#include <vector>

#include "player/texts.h"
#include "protocol/server_address.h"

namespace orbelcast {

namespace {

/// Adds a line's name to the list, with the state in the line. A missing state counts as on.
void AddWithState(ListBox& list, const std::vector<std::string_view>& fields) {
  if (fields.size() < 2) return;
  const bool off = fields.size() > 2 && fields[2] == "0";
  AddShown(list, std::string(fields[1]) + (off ? " [OFF]" : " [ON]"));
}

}  // namespace

bool ServerCommands::DropsPress() const {
  return server_.Questions().UnderWay() || AlertsWin.IsOpen() || LogForm.IsOpen();
}

void ServerCommands::ShowLog() {
  const auto request = platform_.http.Create();
  if (!server_.SendByRelay(*request, ActivityLogAddress(server_.CommandBase()))) return;
  LogForm.Caption = "Activity Log";
  const FrameBytes log = request->ResponseBody();
  LogForm.Log.Text = LogText({reinterpret_cast<const char*>(log.Bytes().data()), log.Size()});
  life_.Open(LogForm);
}

// The typed text goes out decoded, not encoded: so blanks and "&" are sent as they are.
void ServerCommands::SendTextMessage() {
  const ServerQuestions::Question question(server_.Questions());
  const std::string answer = platform_.dialogs.AskText({.prompt = "Message:", .title = server_.ReportedName()});
  if (!question.Holds() || answer.empty()) return;
  server_.SendByRelay(*platform_.http.Create(), MessageAddress(server_.CommandBase(), UrlDecode(answer)));
}

void ServerCommands::ShowInputsAndOutputs() {
  const auto info = server_.Ask(InfoMode::kAllLines);
  if (!info) return;
  AlertsWin.OutList.Clear();
  ForEachLine(info->Lines, [&](std::size_t, const std::vector<std::string_view>& fields) {
    if (fields.empty()) return;
    if (fields[0].starts_with("HWO:")) AddWithState(AlertsWin.OutList, fields);
    if (fields[0].starts_with("HWI:")) AddWithState(AlertsWin.AlertList, fields);
  });
  AlertsWin.OutToogle.Tag = OutputCommand(server_.CommandBase());
  AlertsWin.Activate.Visible = false;
  AlertsWin.BoxLabel[0].Caption = "Inputs:";
  AlertsWin.BoxLabel[1].Caption = "Outputs:";
  AlertsWin.OutToogle.Visible = true;
  AlertsWin.OutToogleOff.Visible = true;
  AlertsWin.Caption = "I/O Control";
  AlertsWin.Width = AlertsWindow::kInputsAndOutputsWidth;
  life_.Open(AlertsWin);
}

void ServerCommands::ShowAlerts() {
  const auto info = server_.Ask(InfoMode::kAlerts);
  if (!info) return;
  AlertsWin.AlertList.Clear();
  ForEachLine(info->Lines, [&](std::size_t, const std::vector<std::string_view>& fields) {
    if (fields.size() > 1) AddShown(AlertsWin.AlertList, std::string(fields[1]));
  });
  AlertsWin.AlertList.ListIndex(0);
  AlertsWin.Activate.Visible = true;
  AlertsWin.BoxLabel[0].Caption = "Alerts:";
  AlertsWin.Caption = "Alerts";
  AlertsWin.Activate.Tag = AlertCommand(server_.CommandBase());
  AlertsWin.Width = AlertsWindow::kAlertsWidth;
  life_.Open(AlertsWin);
}

}  // namespace orbelcast
