// ICIMAllowQualifiers: a schema object that carries qualifiers (classes and property
// declarations). Qualifier names compare case-insensitively.
#ifndef ICIMALLOWQUALIFIERS_H
#define ICIMALLOWQUALIFIERS_H

#include "zelcore.h"

#include <string>
#include <vector>

class TCIMQualifier;

class ZEL_API ICIMAllowQualifiers {
public:
  virtual ~ICIMAllowQualifiers();
  /// Takes ownership of the heap object passed when it is inserted; replaces an existing
  /// qualifier only if that one is overridable (zelStatusNotOverridable otherwise, unless
  /// value and flavors are equal, when nothing changes and the caller keeps it).
  virtual void AddQualifier(TCIMQualifier& qualifier) = 0;
  /// zelStatusNotFound when absent.
  virtual TCIMQualifier& GetQualifier(const std::string& name) const = 0;
  /// In ascending normalised name; valid until the entry is removed or the holder dies.
  virtual std::vector<TCIMQualifier*> EnumerateQualifiers() const = 0;
  /// Deletes the held qualifier of that name (possibly the argument itself);
  /// zelStatusNotFound when absent.
  virtual void RemoveQualifier(TCIMQualifier& qualifier) = 0;
};

#endif
