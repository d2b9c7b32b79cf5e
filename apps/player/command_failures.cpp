#include "player/command_failures.h"

#include <system_error>
#include <utility>

#include "common/http_status.h"
#include "player/login.h"
#include "protocol/server_address.h"
#include "qt_common/qt_texts.h"

namespace orbelcast {

namespace {

std::optional<std::filesystem::file_time_type> TimeOf(const std::string& file) {
  std::error_code error;
  const auto time = std::filesystem::last_write_time(file, error);
  return error ? std::nullopt : std::optional(time);
}

QString WhatFailed(ServerCommand command) {
  switch (command) {
    case ServerCommand::kActivityLog:
      return CommandFailures::tr("The log could not be had");
    case ServerCommand::kMessage:
      return CommandFailures::tr("The message was not sent");
    case ServerCommand::kOutput:
      return CommandFailures::tr("The output was not switched");
    case ServerCommand::kAlert:
      return CommandFailures::tr("The alert was not activated");
  }
  return {};
}

QString WhyFailed(const YieldingHttp::Outcome& outcome) {
  if (!outcome.answered) return CommandFailures::tr("the server does not answer");
  if (Login::IsRefused(outcome.status)) return CommandFailures::tr("the server does not allow it to this user");
  return CommandFailures::tr("the server answers with status %1").arg(outcome.status);
}

}  // namespace

CommandFailures::CommandFailures(QtPlatform& platform, StatusLine& line) : QObject(&line), line_(line) {
  check_.setSingleShot(true);
  QObject::connect(&check_, &QTimer::timeout, this, &CommandFailures::CheckSnapshot);
  QtDialogs& questions = platform.Questions();
  connections_.push_back(platform.Requests().Ended().Connect([this](const auto& outcome) { TellOfRequest(outcome); }));
  connections_.push_back(questions.NameChosen.Connect([this](const auto& request, const std::string& name) {
    if (request.filter.find("*.jpg") != std::string::npos) WatchSnapshot(name);
  }));
  connections_.push_back(questions.Asks.Connect([this] {
    asked_meanwhile_ = check_.isActive();
    check_.stop();
  }));
  connections_.push_back(questions.Answered.Connect([this](Dialogs::Answer answer) {
    if (std::exchange(asked_meanwhile_, false) && answer != Dialogs::Answer::kNo) check_.start(0);
  }));
}

void CommandFailures::TellOfRequest(const YieldingHttp::Outcome& outcome) {
  const auto command = CommandOf(outcome.url);
  if (!command || (outcome.answered && outcome.status == kHttpOk)) return;
  line_.Tell(tr("%1: %2.").arg(WhatFailed(*command), WhyFailed(outcome)));
}

void CommandFailures::WatchSnapshot(const std::string& file) {
  file_ = file;
  written_before_ = TimeOf(file);
  check_.start(0);
}

void CommandFailures::CheckSnapshot() {
  if (const FileTime written = TimeOf(file_); written && written != written_before_) return;
  line_.Tell(tr("The picture could not be saved as %1. May you write there, and is there room?").arg(ToLine(file_)));
}

}  // namespace orbelcast
