// Instances: properties made from the class, the collection stamp, key validation, paths,
// equality and order, and the association lookups between instances.
#include "ZelTest.h"
#include "helpers.h"

#include "TCIMDateTime.h"
#include "TCIMProperty.h"

class InstanceTest : public ZelTest {
protected:
  InstanceTest() {
    DeclareStandardQualifiers(fContainer);
    fSystem = &NewClass(fContainer, "Zel_System");
    Property(*fSystem, "Name", TCIMValue(T::kString, 0), true);
    Property(*fSystem, "Id", TCIMValue(T::kUint32, 0), true);
    Property(*fSystem, "Caption", TCIMValue("unnamed"));
    fSystem->AddToContainer();
    fComputer = &NewClass(fContainer, "Zel_Computer", fSystem);
    Property(*fComputer, "DateTimeOfCollection", TCIMValue(T::kDateTime, 0));
    fComputer->AddToContainer();
  }

  TCIMInstance* Make(TCIMClass& cls, const std::string& name, unsigned int id) {
    TCIMInstance* instance = fContainer.AllocateInstance(&cls);
    instance->SetPropertyValue("name", TCIMValue(name));
    instance->SetPropertyValue("ID", TCIMValue(id));
    return instance;
  }

  TContainer fContainer;
  TCIMClass* fSystem;
  TCIMClass* fComputer;
};

TEST_F(InstanceTest, HoldsOnePropertyPerDeclarationAndIsStamped) {
  TCIMInstance* computer = fContainer.AllocateInstance(fComputer);
  std::vector<const TCIMProperty*> properties = computer->EnumerateProperties();
  ASSERT_EQ(4u, properties.size());
  EXPECT_EQ("Caption", properties[0]->GetName());
  EXPECT_EQ("DateTimeOfCollection", properties[1]->GetName());
  EXPECT_EQ("Id", properties[2]->GetName());
  EXPECT_EQ("Name", properties[3]->GetName());
  TCIMValue stamp = computer->GetProperty("datetimeofcollection").GetValue();
  ASSERT_FALSE(stamp.IsNull());
  EXPECT_EQ(T::kDateTime, stamp.GetType());
  EXPECT_EQ(25u, stamp.ToString(10).size());
  EXPECT_EQ(&fContainer, &computer->GetContainer());
  EXPECT_EQ(fComputer, &computer->GetClass());
  delete computer;

  TCIMInstance system(fSystem);
  EXPECT_EQ(nullptr, system.FindProperty("DateTimeOfCollection"));
  EXPECT_ZEL_THROW(system.GetProperty("DateTimeOfCollection"), zelStatusNotFound);
  EXPECT_ZEL_THROW(system.SetPropertyValue("Missing", TCIMValue(1u)), zelStatusNotFound);
  EXPECT_ZEL_THROW(system.SetPrevPropertyValue("Missing"), zelStatusNotFound);
  EXPECT_ZEL_THROW(system.SetPrevPropertyValue("Missing", TCIMValue(1u)), zelStatusNotFound);
  EXPECT_ZEL_THROW(system.SetPropertyValue("Id", TCIMValue(1)), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW((void)TCIMInstance(system, *fSystem), zelStatusNotImplemented);
}

TEST_F(InstanceTest, SettersReachTheNamedProperty) {
  TCIMInstance system(fSystem);
  system.SetPrevPropertyValue("CAPTION", TCIMValue("old"));
  EXPECT_EQ("old", static_cast<std::string>(system.GetProperty("Caption").GetPrevValue()));
  system.SetPrevPropertyValue("caption");
  EXPECT_TRUE(system.GetProperty("Caption").GetPrevValue().IsNull());

  TCIMProperty replacement(fSystem->GetPropertyDecl("Caption"), TCIMValue("new"));
  system.SetProperty(replacement);
  TCIMProperty& held = system.GetProperty("caption");
  EXPECT_NE(&held, &replacement);
  EXPECT_EQ("new", static_cast<std::string>(held.GetValue()));
  EXPECT_FALSE(held.IsPrevValueDifferent()); // The whole property was replaced.

  TCIMClass& other = KeyedClass(fContainer, "Zel_Other");
  TCIMPropertyDecl& foreign = Property(other, "Foreign", TCIMValue(1u));
  EXPECT_ZEL_THROW(system.SetProperty(TCIMProperty(foreign)), zelStatusNotFound);
}

TEST_F(InstanceTest, KeysMustBeSetOutsideDiffContainers) {
  TCIMInstance* partial = fContainer.AllocateInstance(fSystem);
  partial->SetPropertyValue("Name", TCIMValue("a"));
  EXPECT_ZEL_THROW(partial->AddToContainer(), zelStatusInvalidInstance);
  EXPECT_LOGGED("ZEL_Core: [Error] Instance Zel_System: key property Id is NULL");
  EXPECT_TRUE(fSystem->EnumerateInstances(false).empty());
  delete partial;

  TCIMClass& defaulted = NewClass(fContainer, "Zel_Defaulted");
  Property(defaulted, "Slot", TCIMValue(0u), true);
  defaulted.AddToContainer();
  TCIMInstance* slot = fContainer.AllocateInstance(&defaulted);
  EXPECT_NO_THROW(slot->AddToContainer()); // A non-NULL default satisfies the key.
  EXPECT_EQ("Zel_Defaulted.Slot=\"0\"", slot->BuildPath().GetPath());

  TContainer diff;
  diff.hackhack_TurnIntoADiffContainer();
  DeclareStandardQualifiers(diff);
  TCIMClass& cls = KeyedClass(diff, "Zel_System");
  TCIMInstance* empty = diff.AllocateInstance(&cls);
  EXPECT_NO_THROW(empty->AddToContainer());
  EXPECT_EQ("Zel_System.Name=\"\"", empty->BuildPath().GetPath());
}

TEST_F(InstanceTest, PathHoldsTheKeysInOrder) {
  TCIMInstance* computer = Make(*fComputer, "host \"one\"", 42);
  EXPECT_EQ("Zel_Computer.Id=\"42\",Name=\"host \"one\"\"", computer->BuildPath().GetPath());
  computer->AddToContainer();
  TCIMReference path = computer->BuildPath();
  EXPECT_EQ(computer, fComputer->FindInstance(path));
  EXPECT_EQ(computer, path.GetCIMElement());
}

TEST_F(InstanceTest, FiledUnderTheBuiltPathWhateverTheKeyNames) {
  // Bindings sort by the declared names: Beta before alpha, unlike their normalised forms.
  TCIMClass& mixed = NewClass(fContainer, "Zel_Mixed");
  Property(mixed, "alpha", TCIMValue(T::kString, 0), true);
  Property(mixed, "Beta", TCIMValue(T::kUint32, 0), true);
  mixed.AddToContainer();
  TCIMInstance* instance = fContainer.AllocateInstance(&mixed);
  instance->SetPropertyValue("Alpha", TCIMValue("x"));
  instance->SetPropertyValue("beta", TCIMValue(2u));
  instance->AddToContainer();
  TCIMReference path = instance->BuildPath();
  EXPECT_EQ("Zel_Mixed.Beta=\"2\",alpha=\"x\"", path.GetPath());
  EXPECT_EQ(instance, mixed.FindInstance(path));
  mixed.RemoveInstance(*instance);
  EXPECT_TRUE(mixed.EnumerateInstances(false).empty());

  // A declaration renamed after it was filed: new instances know it by its new name.
  fSystem->GetPropertyDecl("Caption").SetName("Label");
  TCIMInstance renamed(fSystem);
  EXPECT_EQ(nullptr, renamed.FindProperty("Caption"));
  EXPECT_EQ("unnamed", static_cast<std::string>(renamed.GetProperty("label").GetValue()));
}

TEST_F(InstanceTest, EqualityByPropertiesOrderByClassIdentity) {
  TCIMInstance* a = Make(*fSystem, "a", 1);
  TCIMInstance* b = Make(*fSystem, "a", 1);
  EXPECT_TRUE(*a == *b);
  EXPECT_FALSE(*a < *b);
  EXPECT_FALSE(*b < *a);
  b->SetPropertyValue("Caption", TCIMValue("changed"));
  EXPECT_FALSE(*a == *b);
  EXPECT_FALSE(*a < *b); // Properties take no part in the order.

  TCIMInstance* c = Make(*fComputer, "a", 1);
  EXPECT_FALSE(*a == *c);
  EXPECT_NE(*a < *c, *c < *a);
  EXPECT_EQ(fSystem < fComputer, *a < *c);
  delete a;
  delete b;
  delete c;
}

class InstanceAssociationTest : public ZelTest {
protected:
  void SetUp() override {
    ZelTest::SetUp();
    DeclareStandardQualifiers(fContainer);
    fSystem = &KeyedClass(fContainer, "Zel_System");
    fDisk = &KeyedClass(fContainer, "Zel_Disk");
    fLink = &Association(fContainer, "Zel_SystemDisk", "Owner", *fSystem, "Part", *fDisk);
    fHost = &NamedInstance(*fSystem, "host");
    fOther = &NamedInstance(*fSystem, "other");
    fSda = &NamedInstance(*fDisk, "sda");
    fSdb = &NamedInstance(*fDisk, "sdb");
    Link(fHost, "host", "sda");
    Link(fHost, "host", "sdb");
    Link(fOther, "other", "sdb");
  }

  void Link(TCIMInstance*, const std::string& system, const std::string& disk) {
    TCIMInstance* link = fContainer.AllocateInstance(fLink);
    link->SetPropertyValue("Owner", TCIMValue(PathTo(*fSystem, system)));
    link->SetPropertyValue("Part", TCIMValue(PathTo(*fDisk, disk)));
    link->AddToContainer();
  }

  TContainer fContainer;
  TCIMClass* fSystem;
  TCIMClass* fDisk;
  TCIMClass* fLink;
  TCIMInstance* fHost;
  TCIMInstance* fOther;
  TCIMInstance* fSda;
  TCIMInstance* fSdb;
};

TEST_F(InstanceAssociationTest, LinksAreFiledUnderTheirReferencePaths) {
  std::vector<TCIMInstance*> links = fLink->EnumerateInstances(false);
  ASSERT_EQ(3u, links.size());
  EXPECT_EQ("Zel_SystemDisk.Owner=\"Zel_System.Name=\"host\"\",Part=\"Zel_Disk.Name=\"sda\"\"",
            links[0]->BuildPath().GetPath());
}

TEST_F(InstanceAssociationTest, ReferencesAndAssociatorsFollowTheLinks) {
  EXPECT_EQ(2u, fHost->References("", "").size());
  EXPECT_EQ(2u, fSdb->References("Zel_SystemDisk", "Part").size());
  EXPECT_TRUE(fSdb->References("", "Owner").empty());

  std::vector<TCIMInstance*> disks = fHost->Associators("", "", "", "");
  ASSERT_EQ(2u, disks.size());
  EXPECT_EQ(fSda, disks[0]);
  EXPECT_EQ(fSdb, disks[1]);
  std::vector<TCIMInstance*> owners = fSdb->Associators("Zel_SystemDisk", "Zel_System", "Part",
                                                        "Owner");
  ASSERT_EQ(2u, owners.size());
  EXPECT_EQ(fHost, owners[0]);
  EXPECT_EQ(fOther, owners[1]);
  EXPECT_TRUE(fSda->Associators("", "Zel_Disk", "", "").empty());
  EXPECT_TRUE(fSda->Associators("", "Zel_Missing", "", "").empty());
}
