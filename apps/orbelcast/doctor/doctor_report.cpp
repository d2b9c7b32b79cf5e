#include "orbelcast/doctor/doctor_report.h"

#include <unistd.h>

#include <array>
#include <ostream>

#include "common/shown_text.h"

namespace orbelcast {

namespace {

/// The columns of a step's name and of its finding.
constexpr std::size_t kNameColumn = 9;
constexpr std::size_t kFoundColumn = 13;

std::string WordOf(StepResult result) {
  constexpr std::array kWords{"ok", "note", "failed", "skipped"};
  return kWords.at(static_cast<std::size_t>(result));
}

Colour ColourOf(StepResult result) {
  constexpr std::array kColours{Colour::kGood, Colour::kWarning, Colour::kBad, Colour::kFaint};
  return kColours.at(static_cast<std::size_t>(result));
}

std::string Blanks(std::size_t column, const std::string& text) {
  return std::string(column - text.size(), ' ');
}

}  // namespace

DoctorReport::DoctorReport(const std::string& server, bool json, std::ostream& output)
    : as_json_(json), output_(output), colours_(STDOUT_FILENO), server_(MaskedAddress(server).Text()) {}

void DoctorReport::Add(const Step& step) {
  if (step.result == StepResult::kFailed) works_ = false;
  if (as_json_) {
    AddToJson(step);
  } else {
    Print(step);
  }
}

void DoctorReport::End() {
  if (as_json_) {
    const Json all{{"server", server_}, {"works", works_}, {"steps", std::move(steps_)}};
    output_ << ToLines(WithoutPasswords(all)) << '\n';
  } else if (works_) {
    output_ << colours_.Paint(Colour::kGood, "Everything works.") << '\n';
  } else {
    output_ << colours_.Paint(Colour::kBad, "It does not work yet; see what to do above.") << '\n';
  }
}

void DoctorReport::AddToJson(const Step& step) {
  Json entry;
  entry["step"] = step.name;
  entry["result"] = WordOf(step.result);
  entry["found"] = step.found;
  entry["advice"] = step.advice.empty() ? Json(nullptr) : Json(step.advice);
  entry.Update(step.values);
  steps_.Append(std::move(entry));
}

void DoctorReport::Print(const Step& step) {
  const std::string word = WordOf(step.result);
  output_ << colours_.Paint(ColourOf(step.result), word) << Blanks(kNameColumn, word) << step.name
          << Blanks(kFoundColumn, step.name) << Shown(step.found) << '\n';
  if (!step.advice.empty()) output_ << Blanks(kNameColumn, {}) << "-> " << Shown(step.advice) << '\n';
  output_.flush();  // a step may take a while: what is known so far is shown
}

}  // namespace orbelcast
