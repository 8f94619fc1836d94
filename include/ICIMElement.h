// ICIMElement: a schema object that lives in a container (classes and instances).
#ifndef ICIMELEMENT_H
#define ICIMELEMENT_H

#include "zelcore.h"

class TContainer;

class ZEL_API ICIMElement {
public:
  virtual ~ICIMElement();
  /// Throws TZELException after one core log line when the object is not valid.
  virtual void Validate() const = 0;
  /// Validates, then hands this heap object to its owner, which deletes it later.
  virtual void AddToContainer() const = 0;
  virtual TContainer& GetContainer() const = 0;
};

#endif
