#pragma once

/// The HTTP statuses that the programs distinguish, besides 200.
namespace orbelcast {

inline constexpr int kBadRequest = 400;
inline constexpr int kUnauthorized = 401;
inline constexpr int kForbidden = 403;
inline constexpr int kNotFound = 404;
/// Camera servers' own: there is no such camera, or it has no picture.
inline constexpr int kVideoNotFound = 506;

}  // namespace orbelcast
