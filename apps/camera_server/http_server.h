#pragma once

#include <string>

#include "camera_server/router.h"

/// A small HTTP/1.1 server on POSIX sockets, a thread a client.
///
/// It is our own because of what the camera server must be able to do: leave a request unanswered, reset or cut a
/// connection, send bytes that are no HTTP, one byte a second, or a body without end, and read request targets that
/// hold blanks. A general server library does none of these without being bent, and answers from a small pool of
/// threads, which a handful of slow clients would hold up. With a thread a client, bounded in number, each of these is
/// a few straight lines, and a slow client slows nobody but itself.
namespace orbelcast::camera_server {

/// Listens on a numeric IPv4 or IPv6 address (port 0 takes a free one), prints where, and serves until
/// `stop_descriptor` becomes readable; then ends every connection. Throws std::runtime_error with the reason.
void ServeHttp(Router& router, const std::string& address, int port, int stop_descriptor);

}  // namespace orbelcast::camera_server
