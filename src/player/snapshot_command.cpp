#include "player/snapshot_command.h"

#include <optional>
#include <string>

#include "recording/overwrite_question.h"

namespace orbelcast {

void SnapshotCommand::SaveSnapshot() {
  const std::string temporary = platform_.files.ModuleFolder() + "tempf.jpg";
  children_.VS->SaveImage(temporary);
  CommonDialog& dialog = children_.Diag;
  dialog.DialogTitle = "Choose the filename...";
  dialog.Filter = "JPEG Image (*.jpg)|*.jpg";
  const auto name = platform_.dialogs.AskSaveName({.title = dialog.DialogTitle, .filter = dialog.Filter});
  if (life_.Ended() || !name) return;
  dialog.FileName = *name;
  // A name that nothing has is asked about as well: its length cannot be told.
  const auto length = platform_.files.LengthOf(*name);
  if (!length || *length > 0) {
    if (!MayReplace()) return;
    platform_.files.Delete(*name);
  }
  platform_.files.Move(temporary, *name);
}

bool SnapshotCommand::MayReplace() {
  const auto answer = platform_.dialogs.ShowMessage(OverwriteQuestion());
  return !life_.Ended() && answer == Dialogs::Answer::kYes;
}

}  // namespace orbelcast
