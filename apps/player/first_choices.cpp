#include "player/first_choices.h"

#include <QSettings>
#include <QUrl>
#include <algorithm>

#include "player/picture_choices.h"
#include "player/quality.h"
#include "player/user_control1.h"

namespace orbelcast {

namespace {

/// In the lists: pictures a second are at their own place.
constexpr int kFirstRate = 10;
constexpr int kFirstSize = 28;
static_assert(kPictureQualities[kFirstSize].text == "640x480 (20% compression)");
/// The choices that ask for 640 × 480 stand so far before those that say so, in the same order.
constexpr int kRowsBefore = 5;

bool Has(const Registry& registry, const char* name) {
  const auto values = registry.Values(PictureChoices::kSettingsHive, PictureChoices::kSettingsKey);
  return values &&
         std::ranges::any_of(*values, [name](const auto& each) { return each.name == name && !each.text.empty(); });
}

QString KeyOf(const QString& server) {
  return QStringLiteral("player/cameras/") + QString::fromLatin1(QUrl::toPercentEncoding(server));
}

}  // namespace

FirstChoices::FirstChoices(const Registry& registry)
    : has_rate_(Has(registry, PictureChoices::kFrameRateName)),
      has_size_(Has(registry, PictureChoices::kResolutionName)) {}

void FirstChoices::Choose(PlayerWidget& player) const {
  ComboBox& rates = player.Control().FrameRate;
  ComboBox& sizes = player.Control().Resolution;
  if (!has_rate_) rates.Choose(kFirstRate);
  const int size = has_size_ ? sizes.ListIndex() : kFirstSize;
  if (size < 0 || !kPictureQualities[static_cast<std::size_t>(size)].code.empty()) return;
  sizes.Choose(size - kRowsBefore);
  sizes.Choose(size);
}

LastCamera::LastCamera(PlayerWidget& player, const QString& server, const QString& asked_for) : QObject(&player) {
  chosen_ = player.Control().CamList.ListIndexChanged.Connect([&player, server, asked_for](int index) {
    const QString device = QString::fromStdString(player.Control().SelectedDevice());
    if (index < 0 || server.isEmpty() || device == asked_for) return;
    QSettings().setValue(KeyOf(server), device);
  });
}

QString LastCamera::On(const QString& server) {
  return server.isEmpty() ? QString() : QSettings().value(KeyOf(server)).toString();
}

}  // namespace orbelcast
