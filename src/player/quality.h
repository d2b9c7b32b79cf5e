#pragma once

#include <array>
#include <string_view>

namespace orbelcast {

/// A choice of picture size and quality: the text for the user, and the code for the server.
struct PictureQuality {
  std::string_view text;
  std::string_view code;  ///< Empty: the choice asks for nothing of its own, and the code before it stays.
};

/// The choices in the list's order. Those of 352 × 288 ask for 640 × 480, and those of 640 × 480 for nothing: servers
/// and stored choices go by these places.
inline constexpr std::array<PictureQuality, 30> kPictureQualities{{
    {"160x120 (80% compression)", "0160x0120020"},
    {"160x120 (60% compression)", "0160x0120040"},
    {"160x120 (40% compression)", "0160x0120060"},
    {"160x120 (20% compression)", "0160x0120080"},
    {"160x120 (0% compression)", "0160x0120090"},
    {"176x144 (80% compression)", "0176x0144020"},
    {"176x144 (60% compression)", "0176x0144040"},
    {"176x144 (40% compression)", "0176x0144060"},
    {"176x144 (20% compression)", "0176x0144080"},
    {"176x144 (0% compression)", "0176x0144090"},
    {"320x200 (80% compression)", "0320x0200020"},
    {"320x200 (60% compression)", "0320x0200040"},
    {"320x200 (40% compression)", "0320x0200060"},
    {"320x200 (20% compression)", "0320x0200080"},
    {"320x200 (0% compression)", "0320x0200090"},
    {"320x240 (80% compression)", "0320x0240020"},
    {"320x240 (60% compression)", "0320x0240040"},
    {"320x240 (40% compression)", "0320x0240060"},
    {"320x240 (20% compression)", "0320x0240080"},
    {"320x240 (0% compression)", "0320x0240090"},
    {"352x288 (80% compression)", "0640x0480020"},
    {"352x288 (60% compression)", "0640x0480040"},
    {"352x288 (40% compression)", "0640x0480060"},
    {"352x288 (20% compression)", "0640x0480080"},
    {"352x288 (0% compression)", "0640x0480090"},
    {"640x480 (80% compression)", {}},
    {"640x480 (60% compression)", {}},
    {"640x480 (40% compression)", {}},
    {"640x480 (20% compression)", {}},
    {"640x480 (0% compression)", {}},
}};

}  // namespace orbelcast
