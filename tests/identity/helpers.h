// Identity tests: collected data built in memory, the way a collection run leaves it.
#ifndef IDENTITY_HELPERS_H
#define IDENTITY_HELPERS_H

#include "ZelTest.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMSchemaHelper.h"
#include "TContainer.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

class IdentityTest : public ZelTest {
protected:
  typedef std::vector<std::pair<std::string, TCIMValue::TCIMType::ECIMType> > TProperties;

  void SetUp() override {
    ZelTest::SetUp();
    fKey = fContainer.AllocateQualifierDecl("KEY", TCIMValue(false), TCIMQualifierDecl::eProperty,
                                            TCIMQualifierDecl::eToSubclass);
    fKey->AddToContainer();
  }

  /// A class whose first property is its key.
  TCIMClass* AddClass(std::string const& name, TProperties const& properties,
                      TCIMClass* superclass = nullptr) {
    TCIMClass* cls = fContainer.AllocateClass(name, superclass);
    for (size_t i = 0; i < properties.size(); ++i) {
      TCIMPropertyDecl* decl =
          new TCIMPropertyDecl(properties[i].first, *cls, TCIMValue(properties[i].second, 0));
      if (i == 0)
        decl->AddQualifier(*new TCIMQualifier(*fKey, TCIMValue(true)));
      decl->AddToContainer();
    }
    cls->AddToContainer();
    return cls;
  }

  /// An instance with the values given; the others stay NULL.
  TCIMInstance* AddInstance(TCIMClass* cls, std::map<std::string, TCIMValue> const& values) {
    TCIMInstance* instance = fContainer.AllocateInstance(cls);
    for (auto const& value : values)
      instance->SetPropertyValue(value.first, value.second);
    instance->AddToContainer();
    return instance;
  }

  /// The computer system with one instance of the given product name and serial number.
  TCIMClass* AddComputerSystem(TCIMValue productName, TCIMValue serialNumber) {
    TCIMClass* cls = AddClass("KAPLA_ComputerSystem", {{"Name", TCIMValue::TCIMType::kString},
                                                      {"ProductName", productName.GetType()},
                                                      {"SerialNumber", serialNumber.GetType()}});
    AddInstance(cls, {{"Name", TCIMValue("zelhost")},
                      {"ProductName", productName},
                      {"SerialNumber", serialNumber}});
    return cls;
  }

  /// A data source product of that version.
  void AddProduct(std::string const& version) {
    TCIMClass* cls = AddClass("KAPLA_VOKProduct", {{"IdentifyingNumber", TCIMValue::TCIMType::kString},
                                                  {"Version", TCIMValue::TCIMType::kString}});
    AddInstance(cls, {{"IdentifyingNumber", TCIMValue("VOK")}, {"Version", TCIMValue(version)}});
  }

  TContainer fContainer;
  TCIMQualifierDecl* fKey = nullptr;
};

#endif
