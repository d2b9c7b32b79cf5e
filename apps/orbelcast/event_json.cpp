#include "event_json.h"

#include <string>
#include <utility>

#include "shown_text.h"

namespace orbelcast {

Json WithoutPasswords(Json value) {
  if (value.is_string()) return HidePasswords(value.get_ref<const std::string&>());
  if (value.is_structured()) {
    for (Json& each : value) each = WithoutPasswords(std::move(each));
  }
  return value;
}

}  // namespace orbelcast
