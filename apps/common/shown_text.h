#pragma once

#include <string>
#include <string_view>

/// Texts for display and logs: without passwords, and without characters that drive a terminal.
namespace orbelcast {

/// Hides a password from now on, in everything that HidePasswords is given. One of fewer than three bytes cannot be
/// told from other text and is hidden in addresses alone. To be called before there is a second thread.
void KeepSecret(std::string_view password);
/// The same for the passwords in an address.
void KeepSecretsOf(std::string_view address);

/// The text with "***" in place of each password that is known, also where some or all of its bytes are
/// percent-encoded, and of each in an address, "http://…" up to the next blank.
std::string HidePasswords(std::string_view text);

/// The same of a text that is an address, or the part of one from its path on, as a whole: blanks belong to it. A
/// password is found before an "@", after "$openlogin/USER/", after the path's first ":" (as live addresses have it),
/// or in a field of the query that is named for it.
std::string HidePasswordsOfAddress(std::string_view address);

/// A text on its way to people: without passwords, and with "?" in place of control characters.
std::string Shown(std::string_view text);

/// An address on its way to a person: the one way in which a message holds one.
class MaskedAddress {
 public:
  explicit MaskedAddress(std::string_view address);
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace orbelcast
