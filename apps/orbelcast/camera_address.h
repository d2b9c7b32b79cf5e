#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orbelcast/problem.h"
#include "orbelcast/server_entries.h"
#include "orbelcast/server_talk.h"
#include "stream/stream_options.h"

namespace orbelcast {

/// The camera of that id among a server's, in any letter case, and the first one for an empty id; null without one.
const Entry* FindCamera(const std::vector<Entry>& cameras, const std::string& device);

/// The ids of the cameras, for people: "1, 2".
std::string DevicesOf(const std::vector<Entry>& cameras);

/// The suffix of a picture's address that asks for the size and quality which commands ask a camera server for.
std::string AskedPicture();

/// The server of a camera, with the login and the messages of its stream.
ServerOptions ServerOfStream(const StreamOptions& stream, std::optional<double> time_out);

/// Puts the address of the camera's live picture in the place of the server in `stream.url`, and the camera's id into
/// `stream.device`. Nothing is done where that is an address already, and no id is given. The error, where the server
/// tells none; it may take kAnswerWithin to answer, or
/// `time_out` seconds where that is less.
std::optional<Problem> FindPicture(StreamOptions& stream, std::optional<double> time_out);

/// Puts the live addresses of all its cameras, without picture codes, in the place of each server in `places`.
std::optional<Problem> FindAllCameras(std::vector<std::string>& places, const ServerOptions& options);

}  // namespace orbelcast
