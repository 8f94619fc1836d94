// Redaction: every value marked SENSITIVE replaced by a keyed hash, the same for the same
// value under one site key, so that redacted inventories of one site still compare.
#ifndef ZELCOLLECT_REDACTION_H
#define ZELCOLLECT_REDACTION_H

#include <cstddef>
#include <string>

class TContainer;

namespace zelcollect {

/// Where the site key is kept when no --redact-key is given: /var/lib/zelcore/redact.key
/// for root, else $HOME/.config/zelcore/redact.key.
std::string DefaultRedactionKeyFile();

/// The key held in the file; a new random key is written there first (mode 0600, its
/// directory made) when the file does not exist. Throws TSetUpError with the reason.
std::string LoadRedactionKey(const std::string& path);

/// "redacted:" followed by the first 16 hex digits of HMAC-SHA-256(key, text).
std::string RedactedText(const std::string& key, const std::string& text);

/// Replaces the value of every SENSITIVE property of every instance, and the SENSITIVE
/// key values inside references, so that paths and references still match. Strings
/// become their redacted text, other types NULL. Returns how many values were replaced.
size_t RedactContainer(TContainer& container, const std::string& key);

} // namespace zelcollect

#endif
