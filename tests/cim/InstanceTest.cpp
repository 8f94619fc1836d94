// Instances: properties, collection stamp, keys, paths, order and associations.
#include "SchemaHelpers.h"

class InstanceTest : public SchemaTest {
protected:
  InstanceTest() : fMixed(*fContainer.AllocateClass("Zel_Mixed", 0)) {
    Property(*fDisk, "DateTimeOfCollection", TCIMValue(TCIMType::kDateTime, 0));
    Property(fMixed, "alpha", TCIMValue(TCIMType::kString, 0), true);
    Property(fMixed, "Beta", TCIMValue(TCIMType::kUint32, 0), true);
    fMixed.AddToContainer();
  }

  TCIMClass& fMixed;
};

TEST_F(InstanceTest, HoldsOnePropertyPerDeclarationIsStampedAndSetByName) {
  TCIMInstance disk(fDisk);
  EXPECT_EQ((TNames{"Caption", "DateTimeOfCollection", "Name", "Size"}),
            Names(disk.EnumerateProperties()));
  TCIMValue stamp = disk.GetProperty("datetimeofcollection").GetValue();
  ASSERT_FALSE(stamp.IsNull());
  EXPECT_EQ(25u, stamp.ToString(10).size());

  TCIMInstance device(fDevice);
  EXPECT_ZEL_THROW(device.GetProperty("DateTimeOfCollection"), zelStatusNotFound);
  EXPECT_ZEL_THROW(device.SetPropertyValue("Missing", TCIMValue(1u)), zelStatusNotFound);
  EXPECT_ZEL_THROW((void)TCIMInstance(device, *fDevice), zelStatusNotImplemented);

  // The setters reach the named property.
  device.SetPrevPropertyValue("CAPTION", TCIMValue("old"));
  EXPECT_EQ("old", static_cast<std::string>(device.GetProperty("Caption").GetPrevValue()));
  device.SetPrevPropertyValue("caption");
  EXPECT_TRUE(device.GetProperty("Caption").GetPrevValue().IsNull());

  TCIMProperty replacement(fDevice->GetPropertyDecl("Caption"), TCIMValue("new"));
  device.SetProperty(replacement);
  TCIMProperty& held = device.GetProperty("caption"); // The whole property was replaced.
  EXPECT_TRUE(held == replacement && !held.IsPrevValueDifferent());
  EXPECT_ZEL_THROW(device.SetProperty(TCIMProperty(fDisk->GetPropertyDecl("Size"))),
                   zelStatusNotFound);
}

// A declaration renamed after it was filed: instances made later hold it under the new
// name, in name order, and of two names that now agree only the first declaration counts.
TEST_F(InstanceTest, RenamedDeclarationsAreHeldUnderTheirNewNames) {
  TCIMPropertyDecl& beta = fMixed.GetPropertyDecl("Beta");
  beta.SetName("Aardvark");
  TCIMInstance renamed(&fMixed);
  EXPECT_EQ((TNames{"Aardvark", "alpha"}), Names(renamed.EnumerateProperties()));
  renamed.SetPropertyValue("AARDVARK", TCIMValue(7u));
  EXPECT_EQ(7u, static_cast<unsigned>(renamed.GetProperty("aardvark").GetValue()));
  EXPECT_EQ(nullptr, renamed.FindProperty("Beta"));
  renamed.SetPropertyValue("Alpha", TCIMValue("a"));
  EXPECT_NO_THROW(renamed.Validate());

  beta.SetName("ALPHA");
  TCIMInstance clashing(&fMixed);
  std::vector<const TCIMProperty*> properties = clashing.EnumerateProperties();
  ASSERT_EQ(1u, properties.size());
  EXPECT_EQ("alpha", properties[0]->GetName());
  EXPECT_EQ(TCIMType::kString, clashing.GetProperty("Alpha").GetType());
  EXPECT_EQ(nullptr, clashing.FindProperty("Aardvark"));
}

TEST_F(InstanceTest, KeysMustBeSetOutsideDiffContainersAndMakeThePath) {
  TCIMInstance* instance = fContainer.AllocateInstance(&fMixed);
  instance->SetPropertyValue("Alpha", TCIMValue("host \"one\""));
  EXPECT_ZEL_THROW(instance->AddToContainer(), zelStatusInvalidInstance);
  EXPECT_LOGGED("ZEL_Core: [Error] Instance Zel_Mixed: key property Beta is NULL");
  EXPECT_TRUE(fMixed.EnumerateInstances(false).empty());
  // Bindings sort by the declared names: Beta before alpha, unlike their normalised forms.
  instance->SetPropertyValue("beta", TCIMValue(42u));
  instance->AddToContainer();
  TCIMReference path = instance->BuildPath();
  EXPECT_EQ("Zel_Mixed.Beta=\"42\",alpha=\"host \"one\"\"", path.GetPath());
  EXPECT_EQ(instance, fMixed.FindInstance(path));

  TCIMClass& defaulted = *fContainer.AllocateClass("Zel_Defaulted", 0);
  Property(defaulted, "Slot", TCIMValue(0u), true);
  defaulted.AddToContainer();
  TCIMInstance* slot = fContainer.AllocateInstance(&defaulted);
  EXPECT_NO_THROW(slot->AddToContainer()); // A non-NULL default satisfies the key.
  EXPECT_EQ("Zel_Defaulted.Slot=\"0\"", slot->BuildPath().GetPath());

  TContainer diff;
  diff.hackhack_TurnIntoADiffContainer();
  DeclareStandardQualifiers(diff);
  TCIMInstance* empty = diff.AllocateInstance(&KeyedClass(diff, "Zel_System"));
  EXPECT_NO_THROW(empty->AddToContainer());
  EXPECT_EQ("Zel_System.Name=\"\"", empty->BuildPath().GetPath());
}

TEST_F(InstanceTest, EqualityByPropertiesOrderByClassIdentity) {
  TCIMInstance a(fDevice), b(fDevice), c(fSubDisk);
  for (TCIMInstance* instance : {&a, &b, &c})
    instance->SetPropertyValue("Name", TCIMValue("a"));
  EXPECT_TRUE(a == b && !(a < b) && !(b < a));
  b.SetPropertyValue("Caption", TCIMValue("changed"));
  EXPECT_FALSE(a == b || a < b || b < a); // Properties take no part in the order.
  EXPECT_FALSE(a == c);
  EXPECT_EQ(fDevice < fSubDisk, a < c);
}

// Systems host and other, disks sda and sdb, linked host-sda, host-sdb and other-sdb.
class InstanceAssociationTest : public SchemaTest {
protected:
  InstanceAssociationTest()
      : fHost(&NamedInstance(*fSystem, "host")), fOther(&NamedInstance(*fSystem, "other")),
        fSda(&NamedInstance(*fDisk, "sda")), fSdb(&NamedInstance(*fDisk, "sdb")) {
    typedef std::pair<const char*, const char*> TLink;
    for (TLink link : {TLink("host", "sda"), TLink("host", "sdb"), TLink("other", "sdb")}) {
      TCIMInstance* instance = fContainer.AllocateInstance(fLink);
      instance->SetPropertyValue("Owner", TCIMValue(PathTo(*fSystem, link.first)));
      instance->SetPropertyValue("Part", TCIMValue(PathTo(*fDisk, link.second)));
      instance->AddToContainer();
    }
  }

  TCIMInstance *fHost, *fOther, *fSda, *fSdb;
};

TEST_F(InstanceAssociationTest, ReferencesAndAssociatorsFollowTheLinks) {
  std::vector<TCIMInstance*> links = fLink->EnumerateInstances(false);
  ASSERT_EQ(3u, links.size());
  EXPECT_EQ("Zel_SystemDevice.Owner=\"Zel_System.Name=\"host\"\",Part=\"Zel_Disk.Name=\"sda\"\"",
            links[0]->BuildPath().GetPath());
  EXPECT_EQ(2u, fSdb->References("Zel_SystemDevice", "Part").size());
  typedef std::vector<TCIMInstance*> TInstances;
  EXPECT_EQ((TInstances{fSda, fSdb}), fHost->Associators("", "", "", ""));
  EXPECT_EQ((TInstances{fHost, fOther}), fSdb->Associators("", "Zel_System", "", ""));
}

// The container is the root of every lifetime: the sanitizer build fails this test on any
// leak (beyond the root class) or use after free.
TEST_F(InstanceAssociationTest, RemovingClassesLeavesTheRestSound) {
  fContainer.RemoveClass(*fLink);
  EXPECT_TRUE(fSystem->References("", "").empty());
  EXPECT_TRUE(fHost->References("", "").empty());
  EXPECT_TRUE(fDisk->Associators("", "", "", "").empty());
  TCIMPropertyDecl& name = fDevice->GetPropertyDecl("Name");
  fContainer.RemoveClass(*fDevice); // Zel_Disk still holds the declaration it inherited.
  EXPECT_EQ(&name, &fDisk->GetPropertyDecl("Name"));
  EXPECT_EQ("Name", name.GetName());
  EXPECT_EQ(2u, fDisk->EnumerateInstances(false).size());
  EXPECT_EQ((TNames{"Zel_Element", "Zel_System"}),
            Names(fContainer.GetRootClass()->EnumerateSubClasses(true)));
  TCIMClass* ghost = fContainer.AllocateClass("Zel_Device", 0); // Removed already.
  EXPECT_ZEL_THROW(fContainer.RemoveClass(*ghost), zelStatusNotFound);
  delete ghost;
  // Qualifiers refer to their declaration without keeping it alive.
  fContainer.RemoveQualifierDecl(*fContainer.GetQualifierDecl("Description"));
}
