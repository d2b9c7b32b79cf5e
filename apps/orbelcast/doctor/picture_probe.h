#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "common/access.h"
#include "platform/platform.h"
#include "viewer/failure.h"

/// Requests for a camera's pictures, to examine size, rate and answers.
namespace orbelcast {

/// One picture, asked for directly.
struct PictureAnswer {
  int status = 0;  ///< 0 where no complete answer came.
  double milliseconds = 0;
  std::size_t bytes = 0;
  std::string content_type;
  std::string time_code;
  bool of_stream = false;  ///< The camera sends one picture after the other, unasked; otherwise one for each request.
  Failure failure;
  int width = 0;  ///< In pixels.
  int height = 0;
};

/// Each of the request's steps may take `limit`.
PictureAnswer FetchPicture(Platform& platform, const std::string& address, const Access& access,
                           std::chrono::milliseconds limit);

/// Pictures a second that the rate is measured at.
inline constexpr std::int16_t kAskedRate = 10;

struct PictureRate {
  int pictures = 0;
  double seconds = 0;  ///< From the first to the last.

  /// Pictures a second; 0 where there were too few to tell.
  double PerSecond() const { return pictures > 1 && seconds > 0 ? (pictures - 1) / seconds : 0; }
};

/// The rate as a viewer sees it, for `seconds` from its first picture on, which may take `first_within` seconds.
PictureRate MeasureRate(const std::string& address, const Access& access, double seconds, double first_within);

/// To one decimal: no clock here is good for more.
double RoundedMilliseconds(std::chrono::nanoseconds time);

}  // namespace orbelcast
