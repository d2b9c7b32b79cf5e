#include "orbelcast/script/script_host.h"

#include <ostream>

#include "orbelcast/picture_file.h"
#include "remote/script_error.h"

namespace orbelcast {

ScriptHost::ScriptHost(std::istream& input, std::ostream& output)
    : lines_(input),
      output_(output),
      dialogs_([this](const Json& line) { Print(line); }),
      platform_(dialogs_),
      session_(Session::Create(
          platform_.Get(), dialogs_,
          {.print = [this](const Json& line) { Print(line); },
           .write_picture = [this](const Surface& picture, const std::string& name) { Write(picture, name); }})) {}

ScriptHost::~ScriptHost() {
  session_->End();
}

bool ScriptHost::Run() {
  for (auto line = lines_.Next(); line && output_; line = lines_.Next()) CarryOut(*line);
  return !session_->Wrong();
}

void ScriptHost::CarryOut(const ScriptLine& line) {
  const auto done = session_->Begin(line.text, line.number);
  while (!*done) {
    if (Window* const window = session_->TakeNewWindow()) {
      Serve(*window);
    } else {
      platform_.Get().loop.Queue().HandleNext();
    }
  }
}

void ScriptHost::Serve(Window& window) {
  while (session_->IsOpen(&window)) {
    if (const auto line = lines_.Next()) {
      CarryOut(*line);
    } else {
      return window.Close();
    }
  }
}

void ScriptHost::Print(const Json& line) {
  output_ << ToLine(line) << std::endl;  // at once: others read along
}

void ScriptHost::Write(const Surface& picture, const std::string& file) {
  const PictureFormat format = FormatOf(file);
  if (format != PictureFormat::kBmp && format != PictureFormat::kPng) {
    throw ScriptError("a picture's file name ends in .bmp or .png, '" + file + "' does not");
  }
  if (const std::string why = WritePicture(file, picture, platform_.Get().pictures); !why.empty()) {
    throw ScriptError("cannot write " + file + ": " + why);
  }
}

}  // namespace orbelcast
