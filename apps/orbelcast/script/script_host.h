#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "assembly/headless_platform.h"
#include "orbelcast/script/line_reader.h"
#include "remote/script_dialogs.h"
#include "remote/session.h"

namespace orbelcast {

/// Carries out a script, line by line, on a platform without a screen, and prints what the session tells as JSON lines.
class ScriptHost {
 public:
  ScriptHost(std::istream& input, std::ostream& output);
  ~ScriptHost();
  ScriptHost(const ScriptHost&) = delete;
  ScriptHost& operator=(const ScriptHost&) = delete;

  /// Carries out every line. True where no command was wrong.
  bool Run();

 private:
  void CarryOut(const ScriptLine& line);
  /// Reads lines until the window has closed, or the script has ended, which closes it.
  void Serve(Window& window);
  void Print(const Json& line);
  void Write(const Surface& picture, const std::string& file);

  LineReader lines_;
  std::ostream& output_;
  ScriptDialogs dialogs_;
  HeadlessPlatform platform_;
  std::shared_ptr<Session> session_;
};

}  // namespace orbelcast
