// Redaction with HMAC-SHA-256 from libcrypto under a site key kept in a file.
#include "Redaction.h"

#include "Errors.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMValue.h"
#include "TContainer.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace zelcollect {

typedef TCIMValue::TCIMType TType;

static const size_t kKeyBytes = 32;
static const size_t kDigestHexDigits = 16;

static std::string Hex(const unsigned char* bytes, size_t count) {
  static const char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (size_t i = 0; i < count; ++i) {
    hex += kDigits[bytes[i] >> 4];
    hex += kDigits[bytes[i] & 15];
  }
  return hex;
}

std::string DefaultRedactionKeyFile() {
  if (geteuid() == 0)
    return "/var/lib/zelcore/redact.key";
  const char* home = getenv("HOME");
  return std::string(home && *home ? home : ".") + "/.config/zelcore/redact.key";
}

// Writes a new random key; O_EXCL, so that a key made meanwhile by another run is kept.
static void CreateKey(const std::string& path) {
  std::error_code ignored;
  std::filesystem::path parent = std::filesystem::path(path).parent_path();
  if (!parent.empty())
    std::filesystem::create_directories(parent, ignored);
  unsigned char bytes[kKeyBytes];
  if (RAND_bytes(bytes, sizeof bytes) != 1)
    throw TSetUpError("cannot make a redaction key: no random bytes");
  std::string key = Hex(bytes, sizeof bytes) + "\n";
  int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (fd < 0) {
    if (errno == EEXIST)
      return;
    throw TSetUpError("cannot create redaction key " + path + ": " + std::strerror(errno));
  }
  bool written = write(fd, key.data(), key.size()) == static_cast<ssize_t>(key.size());
  if (close(fd) != 0 || !written)
    throw TSetUpError("cannot write redaction key " + path + ": " + std::strerror(errno));
}

std::string LoadRedactionKey(const std::string& path) {
  if (access(path.c_str(), F_OK) != 0)
    CreateKey(path);
  std::ifstream in(path.c_str(), std::ios::binary);
  std::ostringstream key;
  key << in.rdbuf();
  if (!in)
    throw TSetUpError("cannot read redaction key " + path + ": " + std::strerror(errno));
  if (key.str().empty())
    throw TSetUpError("redaction key " + path + " is empty");
  return key.str();
}

std::string RedactedText(const std::string& key, const std::string& text) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()),
       reinterpret_cast<const unsigned char*>(text.data()), text.size(), digest, &length);
  return "redacted:" + Hex(digest, length).substr(0, kDigestHexDigits);
}

static bool IsSensitive(const TCIMPropertyDecl& decl) {
  TCIMQualifier* sensitive = decl.FindQualifier("SENSITIVE");
  if (!sensitive || sensitive->GetValue().IsNull() ||
      sensitive->GetValue().GetType() != TType::kBoolean)
    return false;
  return static_cast<bool>(sensitive->GetValue());
}

static TCIMValue Redacted(const std::string& key, const TCIMValue& value) {
  if (value.IsNull())
    return value;
  if (value.GetType() == TType::kString)
    return TCIMValue(RedactedText(key, static_cast<std::string>(value)));
  if (value.GetType() == (TType::kString | TType::kArray)) {
    TCIMValue copy(value);
    std::vector<TCIMValue>& elements = copy;
    for (TCIMValue& element : elements)
      element = TCIMValue(RedactedText(key, static_cast<std::string>(element)));
    return copy;
  }
  return TCIMValue(value.GetType(), 0); // NULL of the same type
}

// The reference with its SENSITIVE keys redacted, nested references too.
static TCIMReference RedactedReference(const std::string& key, const TCIMReference& reference,
                                       size_t& count) {
  TCIMClass* cls = reference.GetClass();
  TCIMReference::TKeyBindings bindings;
  for (const auto& binding : reference.EnumerateKeyBindings()) {
    TCIMValue value = binding.second;
    TCIMPropertyDecl* decl = cls->FindPropertyDecl(binding.first);
    if (value.IsReference() && !value.IsNull()) {
      value = TCIMValue(RedactedReference(key, static_cast<TCIMReference>(value), count));
    } else if (decl && IsSensitive(*decl) && !value.IsNull()) {
      value = Redacted(key, value);
      ++count;
    }
    bindings.insert({binding.first, value});
  }
  TCIMReference redacted(reference);
  redacted.SetKeyBindings(bindings);
  return redacted;
}

// Redacts one instance. An instance whose keys change is made again under its new path and
// the old one removed: the class files instances by path.
static void RedactInstance(TContainer& container, TCIMClass& cls, TCIMInstance& instance,
                           const std::string& key, size_t& count) {
  std::vector<std::pair<std::string, TCIMValue>> changed;
  bool keysChanged = false;
  for (const TCIMProperty* property : instance.EnumerateProperties()) {
    TCIMValue value = property->GetValue();
    if (value.IsNull())
      continue;
    size_t before = count;
    if (value.GetType() == TType::kReference) {
      value = TCIMValue(RedactedReference(key, static_cast<TCIMReference>(value), count));
    } else if (IsSensitive(property->GetDeclaration())) {
      value = Redacted(key, value);
      ++count;
    }
    if (count == before)
      continue;
    TCIMQualifier* isKey = property->GetDeclaration().FindQualifier("KEY");
    keysChanged |= isKey && !isKey->GetValue().IsNull() && static_cast<bool>(isKey->GetValue());
    changed.push_back({property->GetName(), value});
  }
  if (!keysChanged) {
    for (const auto& change : changed)
      instance.SetPropertyValue(change.first, change.second);
    return;
  }
  TCIMInstance* copy = container.AllocateInstance(&cls);
  for (const TCIMProperty* property : instance.EnumerateProperties())
    copy->SetProperty(*property);
  for (const auto& change : changed)
    copy->SetPropertyValue(change.first, change.second);
  copy->AddToContainer();
  cls.RemoveInstance(instance);
}

size_t RedactContainer(TContainer& container, const std::string& key) {
  size_t count = 0;
  std::vector<TCIMClass*> classes = container.GetRootClass()->EnumerateSubClasses(true);
  // Associations last: their references then name the instances already redacted.
  for (bool associations : {false, true})
    for (TCIMClass* cls : classes)
      if (cls->IsAssociation() == associations)
        for (TCIMInstance* instance : cls->EnumerateInstances(false))
          RedactInstance(container, *cls, *instance, key, count);
  return count;
}

} // namespace zelcollect
