#pragma once

#include <chrono>
#include <cstddef>

/// The camera server's bounds, each with its reason. A client is never trusted with more.
namespace orbelcast::camera_server {

/// Clients at a time; each has a thread.
inline constexpr std::size_t kMaxConnections = 256;
/// Clients beyond those that are told 503 before they are closed; any further one is closed at once.
inline constexpr std::size_t kMaxRefusals = 64;
/// Bytes of a request from its method to the empty line; also of a body that comes with it, which is not used.
inline constexpr std::size_t kMaxRequestBytes = 64 * 1024;
/// Of a request. A viewer sends half a dozen.
inline constexpr std::size_t kMaxHeaderLines = 100;
/// Of a Host header that is believed and written into addresses: the longest name there is, and a port.
inline constexpr std::size_t kMaxHostBytes = 261;
/// A connection that was kept open waits this long for its next request: longer than the slowest viewer's pause.
inline constexpr std::chrono::seconds kIdleTime{75};
/// A request that has begun must be complete after this: a viewer's is one packet.
inline constexpr std::chrono::seconds kRequestTime{10};
/// A client that takes no byte of an answer for this long is given up.
inline constexpr std::chrono::seconds kSendStallTime{30};
/// Requests that are remembered for who asks what was asked, and their bytes.
inline constexpr std::size_t kMaxKeptRequests = 1000;
inline constexpr std::size_t kMaxKeptRequestBytes = 4 * 1024 * 1024;
/// The request log's file is closed at this size: a server that was forgotten must not fill a disk.
inline constexpr std::size_t kMaxLogFileBytes = 256 * 1024 * 1024;
/// How long the server waits, after its last bytes, for the client to close its side.
inline constexpr std::chrono::milliseconds kLingerTime{500};

/// Sides of a drawn picture, in pixels. A request beyond them gets the nearest: a thumbnail still shows something, and
/// a 4K picture takes well under a second to draw and encode.
inline constexpr int kMinSide = 16;
inline constexpr int kMaxWidth = 3840;
inline constexpr int kMaxHeight = 2160;
/// A JPEG quality, as encoders count it.
inline constexpr int kMinQuality = 1;
inline constexpr int kMaxQuality = 100;

/// Pictures a second of a stream: as often as a drawn one changes, and as many as a viewer asks for.
inline constexpr int kUsualRate = 10;
inline constexpr int kMaxRate = 30;

/// The largest mosaic that a screen still shows well is 8 by 8.
inline constexpr int kMaxCameras = 64;
/// Of alerts, inputs, outputs and relay accounts each: what a person can still choose from in a list.
inline constexpr int kMaxItems = 64;

/// Clients whose doings are remembered (their place in the archive, what they are about), and for how long: longer
/// than a person leaves a player alone.
inline constexpr std::size_t kMaxSessions = 1024;
inline constexpr std::chrono::hours kSessionTime{1};
/// A doing that has paused for so long begins anew in the activity log.
inline constexpr std::chrono::minutes kActivityPause{5};
/// Lines that the activity log keeps, the oldest going first.
inline constexpr std::size_t kMaxActivityLines = 1000;
/// Bytes of a user's name, and of a message or another detail, that the activity log keeps.
inline constexpr std::size_t kMaxActivityUser = 64;
inline constexpr std::size_t kMaxActivityDetail = 500;
/// An alert that was activated stays active for so long.
inline constexpr std::chrono::seconds kAlertTime{60};

/// The archive's length and the time from one of its pictures to the next.
inline constexpr int kMaxArchiveHours = 24 * 366;
inline constexpr int kMaxArchiveStep = 3600;
/// The largest text that --info-text sends: large enough to try a client's patience.
inline constexpr std::size_t kMaxInfoTextBytes = 256 * 1024 * 1024;

/// Files of a folder of pictures; the rest is left out.
inline constexpr std::size_t kMaxFolderFiles = 10000;
/// The largest file of a folder that is sent: what a viewer would take.
inline constexpr std::size_t kMaxFileBytes = 64 * 1024 * 1024;

}  // namespace orbelcast::camera_server
