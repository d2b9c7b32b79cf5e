#pragma once

namespace orbelcast {

/// The programs' exit statuses.
enum ExitStatus : int {
  kWorked = 0,
  kFailed = 1,        ///< The task failed; the others of this number say which part.
  kNoPictures = 1,    ///< The connection failed, was broken at the end, or no picture or no information came.
  kNotDone = 1,       ///< The registry could not be written, or the controls' library is missing.
  kWrongCommand = 1,  ///< A command of the script was wrong.
  kBadUsage = 2,      ///< A wrong option, a file that cannot be written, or the player is missing.
};

}  // namespace orbelcast
