#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orbelcast {

/// The questions that a control asks a person. Each waits for its answer, letting the message loop run.
///
/// This class itself serves programs without a screen: every dialog is cancelled at once, a message box that asks is
/// answered No, and one that informs is answered OK.
class Dialogs {
 public:
  struct SaveRequest {
    std::string title;
    /// Kinds of files and their names' endings, as pairs: "JPEG Image (*.jpg)|*.jpg".
    std::string filter;
  };
  enum class Icon { kNone, kExclamation, kInformation };
  enum class Buttons { kOk, kYesNo };
  enum class Answer { kOk, kYes, kNo };
  struct MessageRequest {
    std::string text;
    std::string title;  ///< Empty: the program's own.
    Buttons buttons = Buttons::kOk;
    Icon icon = Icon::kNone;
  };
  struct InputRequest {
    std::string prompt;
    std::string title;
  };
  struct CompressionRequest {
    std::vector<std::string> codecs;  ///< Names to choose from.
    bool key_frames = true;           ///< Offer the key-frame interval.
    bool data_rate = true;            ///< Offer the data rate.
  };
  struct Compression {
    std::string codec;
    int key_frame_every = 0;       ///< Frames; 0 leaves it to the codec.
    int kilobytes_per_second = 0;  ///< 0 leaves it to the codec.
  };

  virtual ~Dialogs() = default;

  /// Asks for a file name to save under, without asking about one that exists; nothing when it is cancelled.
  virtual std::optional<std::string> AskSaveName(const SaveRequest&) { return std::nullopt; }
  virtual Answer ShowMessage(const MessageRequest& request) {
    return request.buttons == Buttons::kYesNo ? Answer::kNo : Answer::kOk;
  }
  /// Asks for a line of text; empty when it is cancelled.
  virtual std::string AskText(const InputRequest&) { return {}; }
  virtual std::optional<Compression> ChooseCompression(const CompressionRequest&) { return std::nullopt; }
  virtual void Beep() {}
};

}  // namespace orbelcast
