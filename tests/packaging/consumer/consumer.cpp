// The C++ interface of an installed zelcore: the installed schema read into a container.
#include "TCIMClass.h"
#include "TContainer.h"

#include <iostream>

int main(int argc, char** argv) {
  TContainer container;
  for (int i = 1; i < argc; ++i)
    container.PopulateContainerFromFile(argv[i]);
  TCIMClass* cls = container.FindClass("KAPLA_ManagedElement");
  std::cout << "class: " << (cls ? cls->GetName() : "none") << "\n";
  return cls ? 0 : 1;
}
