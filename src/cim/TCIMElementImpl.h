// TCIMElementImpl: the body base of the schema objects that live in a container.
#ifndef TCIMELEMENTIMPL_H
#define TCIMELEMENTIMPL_H

class TContainer;

class TCIMElementImpl {
public:
  virtual ~TCIMElementImpl();
  virtual void Validate() const = 0;
  virtual TContainer& GetContainer() const = 0;
};

#endif
