#pragma once

#include <CLI/CLI.hpp>

namespace orbelcast {

/// Tells what was wrong with the command line, and where its options are listed; answers the exit status. Help and
/// version, which come the same way, go to standard output, with status 0.
///
/// A word that is not understood is not repeated, since it may hold a password; of an option only the name is.
int ReportUsage(const CLI::App& app, const CLI::ParseError& error);

}  // namespace orbelcast
