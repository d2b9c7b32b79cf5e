#pragma once

#include "platform/dialogs.h"

namespace orbelcast {

/// The question before a file that exists is replaced, by a clip or by a snapshot.
inline Dialogs::MessageRequest OverwriteQuestion() {
  return {.text = "This file already exists, do you want to overwrite ?",
          .title = "AVI Maker",
          .buttons = Dialogs::Buttons::kYesNo,
          .icon = Dialogs::Icon::kExclamation};
}

}  // namespace orbelcast
