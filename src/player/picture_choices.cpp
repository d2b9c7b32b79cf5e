#include "player/picture_choices.h"

#include <cstddef>
#include <cstdint>
#include <string>

#include "player/quality.h"
#include "player/registry_text.h"
#include "player/toolbar.h"
#include "protocol/text.h"
#include "toolkit/rounding.h"

namespace orbelcast {

namespace {

/// The choices where nothing is kept.
constexpr int kManual = 0;
constexpr int kUsualResolution = 15;
/// Frames a second.
constexpr int kFastest = 25;

/// A stored list index; 32-bit at most, so what is beyond is in no list.
int StoredIndex(const std::string& text) {
  return RoundToEven(LeadingNumber(text).value_or(-1));
}

}  // namespace

PictureChoices::PictureChoices(PlayerChildren& children, Registry& registry, PlayerLife& life, PlayerStream& stream,
                               ToolbarCommands& toolbar)
    : children_(children),
      registry_(registry),
      life_(life),
      stream_(stream),
      toolbar_(toolbar),
      frame_rate_(children.FrameRate, life, [this] { FrameRate_Click(); }),
      resolution_(children.Resolution, life, [this] { Resolution_Click(); }) {}

void PictureChoices::Initialize() {
  children_.FrameRate.AddItem("Manual");
  for (int rate = 1; rate <= kFastest; ++rate) children_.FrameRate.AddItem(std::to_string(rate) + " FPS");
  const std::string rate = RegReadString(registry_, kSettingsHive, kSettingsKey, kFrameRateName);
  frame_rate_.Select(rate.empty() ? kManual : StoredIndex(rate));

  for (const PictureQuality& quality : kPictureQualities) children_.Resolution.AddItem(std::string(quality.text));
  const std::string resolution = RegReadString(registry_, kSettingsHive, kSettingsKey, kResolutionName);
  resolution_.Select(resolution.empty() ? kUsualResolution : StoredIndex(resolution));
  Resolution_Click();
}

void PictureChoices::FrameRate_Click() {
  const int n = children_.FrameRate.ListIndex();
  if (n == 0) {
    toolbar_.Player_Click(toolbar::kStop);
    return;
  }
  auto rate = static_cast<std::int16_t>(n);
  children_.VS->FrameRate(rate);
  RegWriteString(registry_, kSettingsHive, kSettingsKey, kFrameRateName, std::to_string(n));
}

void PictureChoices::Resolution_Click() {
  const int n = children_.Resolution.ListIndex();
  if (n >= 0 && !kPictureQualities[static_cast<std::size_t>(n)].code.empty()) {
    stream_.TakeQuality(kPictureQualities[static_cast<std::size_t>(n)].code);
  }
  toolbar_.Repeat();
  if (life_.Ended()) return;
  RegWriteString(registry_, kSettingsHive, kSettingsKey, kResolutionName, std::to_string(n));
}

}  // namespace orbelcast
