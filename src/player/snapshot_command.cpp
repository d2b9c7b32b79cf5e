#include "player/snapshot_command.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "recording/picture_file.h"

namespace orbelcast {

namespace {

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

}  // namespace

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
  const auto length = LengthOf(*name);
  if (!length || *length > 0) {
    if (!MayReplace()) return;
    DeleteFile(*name);
  }
  MoveFile(temporary, *name);
}

bool SnapshotCommand::MayReplace() {
  const auto answer = platform_.dialogs.ShowMessage({.text = "This file already exists, do you want to overwrite ?",
                                                     .title = "AVI Maker",
                                                     .buttons = Dialogs::Buttons::kYesNo,
                                                     .icon = Dialogs::Icon::kExclamation});
  return !life_.Ended() && answer == Dialogs::Answer::kYes;
}

}  // namespace orbelcast
