// Recording what the viewer shows.

#include "player/user_control1.h"

namespace orbelcast {

void UserControl1::AviStart() {}

void UserControl1::StopAvi() {}

}  // namespace orbelcast
