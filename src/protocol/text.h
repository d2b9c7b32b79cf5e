#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Texts are bytes. A user's texts are sent unchanged; a server's are split at their separators, and nothing else is
/// assumed of them.
namespace orbelcast {

/// The separator of the lines of an info text, of a list made from it and of a mosaic's camera list.
inline constexpr std::string_view kCrLf = "\r\n";

/// The text without "http://" at its beginning, in any letter case; a text without it as it is.
std::string_view WithoutHttp(std::string_view text);

/// The text with every occurrence of `what` (not empty) replaced, from left to right, letter case exact.
std::string Replaced(std::string_view text, std::string_view what, std::string_view with);

/// The decimal number that the text begins with, after blanks; 0 where it begins with none, nothing where it is beyond
/// all numbers.
std::optional<double> LeadingNumber(std::string_view text);

/// The parts between the separators (not empty): one more than there are separators, empty ones included; none of an
/// empty text. Those beyond `at_most` are not looked at. They view `text`.
std::vector<std::string_view> Split(std::string_view text, std::string_view separator,
                                    std::size_t at_most = std::string_view::npos);

/// The same parts one after another, for a text too long to hold them all.
class Parts {
 public:
  Parts(std::string_view text, std::string_view separator)
      : rest_(text), separator_(separator), at_end_(text.empty()) {}

  /// Sets `part` to the next one; false when there is none.
  bool Next(std::string_view& part);
  /// The text after the last separator that was met.
  std::string_view Rest() const { return at_end_ ? std::string_view() : rest_; }

 private:
  std::string_view rest_;
  std::string_view separator_;
  bool at_end_;
};

}  // namespace orbelcast
