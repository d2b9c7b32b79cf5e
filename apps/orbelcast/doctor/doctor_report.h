#pragma once

#include <iosfwd>
#include <string>

#include "common/colours.h"
#include "orbelcast/event_json.h"

namespace orbelcast {

/// The outcome of a step of an examination.
enum class StepResult { kWorks, kNote, kFailed, kSkipped };

struct Step {
  std::string name;
  StepResult result = StepResult::kWorks;
  std::string found{};   ///< The finding, for people.
  std::string advice{};  ///< The next thing to do; empty where there is none.
  Json values{};         ///< The finding, for programs.
};

/// Tells of an examination's steps: to people as they happen, to programs all together at the end.
class DoctorReport {
 public:
  /// Of `server`, to `output`, as JSON or for people.
  DoctorReport(const std::string& server, bool json, std::ostream& output);

  void Add(const Step& step);
  void End();
  /// No step has failed.
  bool Works() const { return works_; }

 private:
  void AddToJson(const Step& step);
  void Print(const Step& step);

  const bool as_json_;
  std::ostream& output_;
  const Colours colours_;
  bool works_ = true;
  Json steps_ = Json::Array();
  const std::string server_;
};

}  // namespace orbelcast
