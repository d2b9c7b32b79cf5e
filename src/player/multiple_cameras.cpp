#include "player/multiple_cameras.h"

#include <cstddef>
#include <cstdint>

namespace orbelcast {

void MultipleCameras::SetMultiCams() {
  ComboBox& list = children_.CamList;
  list.ListIndex(-1);
  Forget();
  MultiCams.Cameras.Clear();
  for (int k = 0; k < list.ListCount(); ++k) {
    MultiCams.Cameras.AddItem(list.List()[static_cast<std::size_t>(k)]);
    MultiCams.CamerasMatrix(static_cast<std::int16_t>(k), cameras_.LiveUrlOf(k));
  }
  MultiCams.SelectionResult = "";
  if (!life_.Open(MultiCams) || MultiCams.SelectionResult.empty()) return;
  Show(MultiCams.SelectionResult);
}

void MultipleCameras::Show(const std::string& selection) {
  MultiCamSelection = selection;
  children_.VS->MultiCamView(MultiCamSelection);
}

}  // namespace orbelcast
