#pragma once

#include "platform/screen.h"
#include "player/player_children.h"
#include "player/player_life.h"

namespace orbelcast {

/// The player's size, in twips, and where its children are put in it.
class PlayerLayout {
 public:
  /// Twips: the control must be larger than this to have room for the toolbar, with a picture above it.
  static constexpr float kToolbarNeedsWidth = PlayerChildren::kToolbarWidth;
  static constexpr float kToolbarNeedsHeight = 5900;

  /// All outlive this object.
  PlayerLayout(PlayerChildren& children, PlayerLife& life, const Screen& screen)
      : children_(children), life_(life), screen_(screen) {}

  /// Takes on a size without a layout.
  void Site(float width, float height);
  float Width() const { return width_; }
  float Height() const { return height_; }

  /// Whether the children stay where they are.
  void Freeze(bool frozen) { LayoutFrozen = frozen; }
  /// Whether the toolbar has its extended buttons; they come and go with a layout.
  bool ShowExtendedFeatures() const { return show_extended_features_; }
  void ShowExtendedFeatures(bool value) { show_extended_features_ = value; }

  /// Puts the children where they belong. It yields.
  void UserControl_Resize();

 private:
  /// False where the host has released the player meanwhile.
  bool PlaceViewer(Property<float>& field, float value);

  PlayerChildren& children_;
  PlayerLife& life_;
  const Screen& screen_;
  bool show_extended_features_ = false;
  bool LayoutFrozen = false;
  float width_ = PlayerChildren::kDesignWidth;  ///< Until the host sites the control.
  float height_ = PlayerChildren::kDesignHeight;
};

}  // namespace orbelcast
