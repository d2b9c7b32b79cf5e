#include "dispatch/host_dialogs.h"

#include <vector>

namespace orbelcast::server {

namespace {

/// The text that the host answered with, as an argument of an event: nothing where it is no text.
std::optional<std::string> TakeText(Result result, Variant& variant) {
  std::optional<std::string> text;
  if (result == S_OK && variant.type == kText && variant.text != nullptr) text.emplace(variant.text, variant.size);
  Clear(variant);
  return text;
}

MessageIcon IconOf(Dialogs::Icon icon) {
  switch (icon) {
    case Dialogs::Icon::kExclamation:
      return kExclamationIcon;
    case Dialogs::Icon::kInformation:
      return kInformationIcon;
    case Dialogs::Icon::kNone:
      break;
  }
  return kNoIcon;
}

}  // namespace

// The host may take its object away while it answers: each question holds it.

std::optional<std::string> HostDialogs::AskSaveName(const SaveRequest& request) {
  const Held<IHostDialogs> host = host_;
  if (!host) return std::nullopt;
  Variant name{};
  const Result result = host->AskSaveName(request.title.c_str(), request.filter.c_str(), &name);
  return TakeText(result, name);
}

Dialogs::Answer HostDialogs::ShowMessage(const MessageRequest& request) {
  const Held<IHostDialogs> host = host_;
  const bool question = request.buttons == Buttons::kYesNo;
  const bool yes = host && host->ShowMessage(request.text.c_str(), request.title.c_str(), question ? 1 : 0,
                                             IconOf(request.icon)) == S_OK;
  if (!question) return Answer::kOk;
  return yes ? Answer::kYes : Answer::kNo;
}

std::string HostDialogs::AskText(const InputRequest& request) {
  const Held<IHostDialogs> host = host_;
  if (!host) return {};
  Variant text{};
  const Result result = host->AskText(request.prompt.c_str(), request.title.c_str(), &text);
  return TakeText(result, text).value_or("");
}

std::optional<Dialogs::Compression> HostDialogs::ChooseCompression(const CompressionRequest& request) {
  const Held<IHostDialogs> host = host_;
  if (!host) return std::nullopt;
  std::vector<const char*> codecs;
  for (const std::string& each : request.codecs) codecs.push_back(each.c_str());
  std::uint32_t codec = 0;
  Compression chosen;
  const Result result = host->ChooseCompression(codecs.data(), static_cast<std::uint32_t>(codecs.size()), &codec,
                                                &chosen.key_frame_every, &chosen.kilobytes_per_second);
  if (result != S_OK || codec >= codecs.size()) return std::nullopt;
  if (chosen.key_frame_every < 0 || chosen.kilobytes_per_second < 0) return std::nullopt;
  chosen.codec = request.codecs[codec];
  return chosen;
}

void HostDialogs::Beep() {
  const Held<IHostDialogs> host = host_;
  if (host) host->Beep();
}

}  // namespace orbelcast::server
