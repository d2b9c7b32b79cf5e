#pragma once

#include <CLI/CLI.hpp>

/// What the command lines of all programs have in common: wrong usage (usage.h), who asks (access.h,
/// credentials_file.h), numbers and files as options take them, colours on a terminal.
namespace orbelcast {

/// Tells what was wrong with the command line, and where its options are listed; answers the exit status. Help and
/// version, which come the same way, go to standard output, with status 0.
///
/// What was typed may hold a password, so a word that is not understood is not repeated: of an option its name alone.
int ReportUsage(const CLI::App& app, const CLI::ParseError& error);

}  // namespace orbelcast
