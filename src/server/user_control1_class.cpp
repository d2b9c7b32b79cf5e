#include "player/interface.h"
#include "player/user_control1.h"
#include "server/control_class.h"

namespace orbelcast::server {

namespace {

using Player = UserControl1;
using Values = std::span<ArgumentValue>;

const PropertyBinding<Player> kProperties[] = {
    {"SystemName", [](Player& p) -> ResultValue { return p.SystemName(); }},
    {"ShowExtendedFeatures", [](Player& p) -> ResultValue { return p.ShowExtendedFeatures(); },
     [](Player& p, ArgumentValue& x) { p.ShowExtendedFeatures(Boolean(x)); }},
};

const MethodBinding<Player> kMethods[] = {
    {"AviStart", Sub<Player, [](Player& p, Values) { p.AviStart(); }>},
    {"StopAvi", Sub<Player, [](Player& p, Values) { p.StopAvi(); }>},
    {"RefreshURLs", Sub<Player, [](Player& p, Values a) { p.RefreshURLs(Text(a[0]), Text(a[1])); }>},
    {"DoResize", Sub<Player, [](Player& p, Values a) { p.DoResize(Boolean(a[0])); }>},
    {"Connect2Server", Sub<Player, [](Player& p, Values a) { p.Connect2Server(Text(a[0]), Text(a[1]), Text(a[2])); }>},
    {"SetMultiCams", Sub<Player, [](Player& p, Values) { p.SetMultiCams(); }>},
};

class Model final : public BoundModel<Player> {
 public:
  explicit Model(std::shared_ptr<UserControl1> player) : BoundModel(std::move(player), kProperties, kMethods) {}

  void Place(float width, float height) override { Controlled().Resize(width, height); }
  /// A container that hides the player hides the viewer in it.
  void Hide() override { Controlled().VS->UserControl_Hide(); }
  void Load(PersistedProperties bag) override { Controlled().ReadProperties(std::move(bag)); }
  UserControl1* Player() override { return &Controlled(); }
};

}  // namespace

std::unique_ptr<ControlModel> CreateUserControl1(Platform& platform) {
  return std::make_unique<Model>(UserControl1::Create(platform));
}

}  // namespace orbelcast::server
