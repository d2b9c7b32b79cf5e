/// orbelcast: cameras on the command line.
///
/// A folder of small parts: each command in a file of its own, and what they print and write beside them.

#include <CLI/CLI.hpp>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "common/program.h"
#include "common/usage.h"
#include "orbelcast/doctor_command.h"
#include "orbelcast/exit_status.h"
#include "orbelcast/info_command.h"
#include "orbelcast/log_command.h"
#include "orbelcast/mosaic_command.h"
#include "orbelcast/play_command.h"
#include "orbelcast/record_command.h"
#include "orbelcast/register_command.h"
#include "orbelcast/script/script_command.h"
#include "orbelcast/snapshot_command.h"
#include "orbelcast/watch_options.h"
#include "orbelcast/watcher.h"
#include "toolkit/version.h"

namespace {

using namespace orbelcast;

constexpr const char* kFooter =
    "Exit status: 0 it worked; 1 the connection failed, was broken at the end, or no\n"
    "picture (of info: no information) came; 2 wrong usage, a file that cannot be\n"
    "written (standard output is one), or a missing player.";

constexpr const char* kDoctorFooter =
    "Such as:\n"
    "  orbelcast doctor 192.168.1.20:8080 --credentials my-login\n\n"
    "Exit status: 0 everything works; 1 a step failed, and what to do is told; 2 wrong usage.";

constexpr const char* kSnapshotFooter =
    "Exit status: 0 the picture is in FILE; 1 no picture came, and FILE is as it was; 2 wrong\n"
    "usage, or a file that cannot be written.";

constexpr const char* kLogFooter =
    "Exit status: 0 the log is in FILE; 1 no log came, and FILE is as it was; 2 wrong usage,\n"
    "or a file that cannot be written.";

constexpr const char* kRegisterFooter =
    "The registry file is the one that ORBELCAST_REGISTRY names, else the user's own; the\n"
    "library is liborbelcast.so beside this program, in ../lib, or where the system finds it.\n\n"
    "Exit status: 0 it was done; 1 the file cannot be written, or there is no library; 2\n"
    "wrong usage.";

constexpr const char* kScriptFooter =
    "Such as:\n"
    "  create v VideoServerPush\n"
    "  place v 9600 7200\n"
    "  call v Connect \"http://127.0.0.1:8080/live/1\"\n"
    "  until StreamInfo 3000\n"
    "  call v SaveImage now.jpg\n"
    "docs/script-host.md lists every command.\n\n"
    "Exit status: 0 every command was right; 1 one was wrong, and said so in a line with\n"
    "\"error\"; 2 FILE cannot be read.";

int Run(int argc, char** argv) {
  CLI::App app("Watches Motion-JPEG cameras.", "orbelcast");
  app.footer(kFooter);
  app.require_subcommand(1);
  app.set_version_flag("--version", VersionText());

  CLI::App* play = app.add_subcommand("play", "Opens a window that shows a camera: play URL [OPTION...]");
  play->footer(
      "What follows 'play' goes to the player program as it stands, whose options\n"
      "'orbelcast play URL --help' shows.");
  play->prefix_command();

  WatchOptions options;
  CLI::App* watch = app.add_subcommand("watch", "Watches a camera without a window, printing its events as JSON lines");
  watch->footer(kFooter);
  AddWatchOptions(*watch, options);

  InfoOptions info_options;
  CLI::App* info =
      app.add_subcommand("info", "Prints what a camera server says of itself: its cameras, alerts, outputs");
  info->footer(kFooter);
  AddInfoOptions(*info, info_options);

  DoctorOptions doctor_options;
  CLI::App* doctor =
      app.add_subcommand("doctor", "Finds out why a camera cannot be seen, step by step, and what to do");
  doctor->footer(kDoctorFooter);
  AddDoctorOptions(*doctor, doctor_options);

  MosaicOptions mosaic_options;
  CLI::App* mosaic = app.add_subcommand("mosaic", "Shows several cameras as a grid, in a file or in a window");
  mosaic->footer(kFooter);
  AddMosaicOptions(*mosaic, mosaic_options);

  RecordOptions record_options;
  CLI::App* record = app.add_subcommand("record", "Records a camera as an AVI clip: record URL FILE.avi [OPTION...]");
  record->footer(kFooter);
  AddRecordOptions(*record, record_options);

  SnapshotOptions snapshot_options;
  CLI::App* snapshot = app.add_subcommand("snapshot", "Saves a camera's picture as the server sent it");
  snapshot->footer(kSnapshotFooter);
  AddSnapshotOptions(*snapshot, snapshot_options);

  LogOptions log_options;
  CLI::App* log = app.add_subcommand("log", "Saves a camera server's whole activity log as the server sent it");
  log->footer(kLogFooter);
  AddLogOptions(*log, log_options);

  CLI::App* write_classes = app.add_subcommand("register", "Writes the controls' classes into the registry file");
  write_classes->footer(kRegisterFooter);
  CLI::App* remove_classes = app.add_subcommand("unregister", "Removes the controls' classes from the registry file");
  remove_classes->footer(kRegisterFooter);

  std::string script_file;
  CLI::App* script = app.add_subcommand("script", "Does what a script says with the controls, printing JSON lines");
  script->footer(kScriptFooter);
  script->add_option("FILE", script_file, "The script, one command a line (default: standard input)")->type_name("");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return ReportUsage(app, error);
  }
  if (play->parsed()) return Play(play->remaining(), std::cerr);
  if (info->parsed()) return Info(info_options, std::cout, std::cerr);
  if (doctor->parsed()) return Doctor(doctor_options, std::cout);
  if (mosaic->parsed()) return Mosaic(mosaic_options, std::cout, std::cerr);
  if (record->parsed()) return Record(record_options, std::cout, std::cerr);
  if (snapshot->parsed()) return Snapshot(snapshot_options, std::cout, std::cerr);
  if (log->parsed()) return Log(log_options, std::cerr);
  if (write_classes->parsed()) return Register(Registration::kWrite, std::cout, std::cerr);
  if (remove_classes->parsed()) return Register(Registration::kRemove, std::cout, std::cerr);
  if (script->parsed()) return RunScript(script_file, std::cin, std::cout, std::cerr);
  return Watcher(std::move(options), std::cout, std::cerr).Run();
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): what escapes is a lack of memory, which ends the program.
int main(int argc, char** argv) {
  SurviveFailedWrites();
  return EndOutput("orbelcast", Run(argc, argv));
}
