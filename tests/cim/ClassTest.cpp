// Classes: inheritance of declarations and qualifiers, the override rules, keys, abstract
// classes, subclasses, instances by path and the association lookups.
#include "ZelTest.h"
#include "helpers.h"

class ClassTest : public ZelTest {
protected:
  ClassTest() { DeclareStandardQualifiers(fContainer); }

  // Zel_Element (abstract) <- Zel_Device (key DeviceID, Caption) <- Zel_Disk <- Zel_SubDisk
  void BuildDevices() {
    fElement = &NewClass(fContainer, "Zel_Element");
    Qualify(*fElement, fContainer, "ABSTRACT", TCIMValue(true));
    Qualify(*fElement, fContainer, "Description", TCIMValue("root of all"));
    fElement->AddToContainer();
    fDevice = &NewClass(fContainer, "Zel_Device", fElement);
    Property(*fDevice, "DeviceID", TCIMValue(T::kString, 0), true);
    Property(*fDevice, "Caption", TCIMValue("none"));
    fDevice->AddToContainer();
    fDisk = &NewClass(fContainer, "Zel_Disk", fDevice);
    Property(*fDisk, "Size", TCIMValue(T::kUint64, 0));
    fDisk->AddToContainer();
    fSubDisk = &NewClass(fContainer, "Zel_SubDisk", fDisk);
    fSubDisk->AddToContainer();
  }

  // A declaration carrying OVERRIDE, not yet added.
  TCIMPropertyDecl* Overriding(TCIMClass& cls, const std::string& name, const TCIMValue& value) {
    TCIMPropertyDecl* decl = new TCIMPropertyDecl(name, cls, value);
    Qualify(*decl, fContainer, "OVERRIDE", TCIMValue(name));
    return decl;
  }

  TContainer fContainer;
  TCIMClass* fElement = 0;
  TCIMClass* fDevice = 0;
  TCIMClass* fDisk = 0;
  TCIMClass* fSubDisk = 0;
};

TEST_F(ClassTest, SubclassesShareDeclarationsAndInheritToSubclassQualifiers) {
  BuildDevices();
  TCIMPropertyDecl& caption = fDevice->GetPropertyDecl("caption");
  EXPECT_EQ(&caption, &fSubDisk->GetPropertyDecl("CAPTION")); // The same object, three levels down.
  EXPECT_EQ(fDevice, &fSubDisk->GetPropertyDecl("Caption").GetClass());
  EXPECT_EQ(fDisk, &fSubDisk->GetPropertyDecl("Size").GetClass());

  TCIMQualifier& own = fElement->GetQualifier("Description");
  TCIMQualifier& copied = fSubDisk->GetQualifier("Description");
  EXPECT_NE(&own, &copied);
  EXPECT_FALSE(own.GetPropagated());
  EXPECT_TRUE(copied.GetPropagated());
  EXPECT_EQ("root of all", static_cast<std::string>(copied.GetValue()));
  EXPECT_EQ(nullptr, fDevice->FindQualifier("ABSTRACT")); // Not tosubclass.
  EXPECT_TRUE(fElement->IsAbstract());
  EXPECT_FALSE(fDevice->IsAbstract());

  std::vector<TCIMPropertyDecl*> decls = fSubDisk->EnumeratePropertyDecls();
  ASSERT_EQ(3u, decls.size());
  EXPECT_EQ("Caption", decls[0]->GetName());
  EXPECT_EQ("DeviceID", decls[1]->GetName());
  EXPECT_EQ("Size", decls[2]->GetName());

  Property(*fDisk, "Late", TCIMValue(1u)); // Existing subclasses copied the map earlier.
  EXPECT_EQ(nullptr, fSubDisk->FindPropertyDecl("Late"));
  EXPECT_TRUE(fDisk->FindPropertyDecl("late"));
}

TEST_F(ClassTest, OverrideRulesLogAndRefuse) {
  BuildDevices();
  TCIMPropertyDecl* unknown = Overriding(*fDisk, "Speed", TCIMValue(1u));
  EXPECT_ZEL_THROW(fDisk->AddPropertyDecl(*unknown), zelStatusNotFound);
  EXPECT_LOGGED("ZEL_Core: [Error] Attempt to override property Speed in class Zel_Disk: "
                "property doesn't exist in base class");
  delete unknown;

  TCIMPropertyDecl* retyped = Overriding(*fDisk, "Caption", TCIMValue(1u));
  EXPECT_ZEL_THROW(fDisk->AddPropertyDecl(*retyped), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] Attempt to override property Caption in class Zel_Disk: "
                "different types");
  delete retyped;

  TCIMPropertyDecl* own = Overriding(*fDisk, "SIZE", TCIMValue(T::kUint64, 0));
  EXPECT_ZEL_THROW(own->AddToContainer(), zelStatusAlreadyExists);
  EXPECT_LOGGED("ZEL_Core: [Error] Attempt to override property SIZE in class Zel_Disk: "
                "original was defined in this class");
  delete own;

  TCIMPropertyDecl* redeclared = new TCIMPropertyDecl("caption", *fDisk, TCIMValue("x"));
  EXPECT_ZEL_THROW(fDisk->AddPropertyDecl(*redeclared), zelStatusAlreadyExists);
  EXPECT_LOGGED("ZEL_Core: [Error] Attempt to add property caption to class Zel_Disk: "
                "already exists");
  delete redeclared;

  TCIMClass& plain = KeyedClass(fContainer, "Zel_Plain");
  TCIMValue pointer(T::kReference, 0);
  pointer.SetReferencedClass(*fDisk);
  TCIMPropertyDecl* reference = new TCIMPropertyDecl("Target", plain, pointer);
  EXPECT_ZEL_THROW(reference->AddToContainer(), zelStatusNotAssociation);
  EXPECT_LOGGED("ZEL_Core: [Error] Attempt to add reference property Target to "
                "non-association class Zel_Plain");
  delete reference;
  EXPECT_EQ(fDevice, &fDisk->GetPropertyDecl("Caption").GetClass()); // All left unchanged.
}

TEST_F(ClassTest, OverrideReplacesInTheSubclassOnly) {
  BuildDevices();
  TCIMPropertyDecl& original = fDevice->GetPropertyDecl("Caption");
  Qualify(original, fContainer, "Description", TCIMValue("base text"));
  TCIMPropertyDecl* replacement = Overriding(*fDisk, "Caption", TCIMValue("disk"));
  fDisk->AddPropertyDecl(*replacement);
  EXPECT_EQ(replacement, &fDisk->GetPropertyDecl("Caption"));
  EXPECT_EQ(&original, &fDevice->GetPropertyDecl("Caption"));
  EXPECT_EQ(nullptr, replacement->FindQualifier("Description")); // Not carried over.
  EXPECT_EQ(&original, &fSubDisk->GetPropertyDecl("Caption")); // Made before the override.
}

TEST_F(ClassTest, ValidationNeedsATrueKeyUnlessAbstract) {
  TCIMClass& noKey = NewClass(fContainer, "Zel_NoKey");
  Property(noKey, "Name", TCIMValue(T::kString, 0));
  TCIMPropertyDecl& falseKey = Property(noKey, "Id", TCIMValue(1u));
  Qualify(falseKey, fContainer, "KEY", TCIMValue(false));
  Qualify(noKey, fContainer, "ABSTRACT", TCIMValue(T::kBoolean, 0)); // NULL: not abstract.
  EXPECT_FALSE(noKey.IsAbstract());
  EXPECT_ZEL_THROW(noKey.AddToContainer(), zelStatusInvalidClass);
  EXPECT_LOGGED("ZEL_Core: [Error] Class Zel_NoKey has no keys");
  EXPECT_EQ(nullptr, fContainer.FindClass("Zel_NoKey"));
  EXPECT_TRUE(noKey.EnumerateKeyNames().empty());
  delete &noKey;

  TCIMClass& abstract = NewClass(fContainer, "Zel_Abstract");
  Qualify(abstract, fContainer, "ABSTRACT", TCIMValue(true));
  EXPECT_NO_THROW(abstract.AddToContainer());

  TCIMClass& keyed = KeyedClass(fContainer, "Zel_Keyed");
  Property(keyed, "Id", TCIMValue(T::kUint32, 0), true);
  TCIMClass& child = NewClass(fContainer, "Zel_Child", &keyed);
  EXPECT_NO_THROW(child.Validate()); // Inherited keys count.
  std::vector<std::string> keys = child.EnumerateKeyNames();
  ASSERT_EQ(2u, keys.size());
  EXPECT_EQ("Id", keys[0]);
  EXPECT_EQ("Name", keys[1]);
  delete &child;
}

TEST_F(ClassTest, HierarchyQueries) {
  BuildDevices();
  TCIMClass& tape = KeyedClass(fContainer, "Zel_Tape", fDevice);
  EXPECT_TRUE(fSubDisk->IsSubclassOf(fSubDisk));
  EXPECT_TRUE(fSubDisk->IsSubclassOf(fElement));
  EXPECT_TRUE(fSubDisk->IsSubclassOf(fContainer.GetRootClass()));
  EXPECT_FALSE(fDisk->IsSubclassOf(fSubDisk));
  EXPECT_FALSE(tape.IsSubclassOf(fDisk));
  EXPECT_TRUE(fElement->IsRootClass());
  EXPECT_FALSE(fDevice->IsRootClass());

  std::vector<TCIMClass*> direct = fDevice->EnumerateSubClasses(false);
  ASSERT_EQ(2u, direct.size());
  EXPECT_EQ(fDisk, direct[0]);
  EXPECT_EQ(&tape, direct[1]);
  std::vector<TCIMClass*> all = fElement->EnumerateSubClasses(true); // Pre-order.
  ASSERT_EQ(4u, all.size());
  EXPECT_EQ(fDevice, all[0]);
  EXPECT_EQ(fDisk, all[1]);
  EXPECT_EQ(fSubDisk, all[2]);
  EXPECT_EQ(&tape, all[3]);
  EXPECT_EQ(fElement, fContainer.GetRootClass()->EnumerateSubClasses(false).at(0));
}

TEST_F(ClassTest, EqualityComparesStoredNamesCaseSensitively) {
  TCIMClass& lower = NewClass(fContainer, "zel_thing");
  TCIMClass& upper = NewClass(fContainer, "Zel_Thing");
  TCIMClass& same = NewClass(fContainer, "Zel_Thing");
  EXPECT_FALSE(lower == upper);
  EXPECT_TRUE(upper == same);
  EXPECT_TRUE(upper < lower); // 'Z' sorts before 'z'.
  EXPECT_FALSE(upper < same);
  delete &lower;
  delete &upper;
  delete &same;
}

TEST_F(ClassTest, InstancesAreFiledByPath) {
  BuildDevices();
  TCIMInstance* first = fContainer.AllocateInstance(fDisk);
  first->SetPropertyValue("DeviceID", TCIMValue("sda"));
  first->AddToContainer();
  TCIMInstance* twin = fContainer.AllocateInstance(fDisk);
  twin->SetPropertyValue("DeviceID", TCIMValue("sda"));
  twin->SetPropertyValue("Size", TCIMValue(10ul));
  twin->AddToContainer(); // The same path is kept twice, on purpose.
  TCIMInstance* other = fContainer.AllocateInstance(fDisk);
  other->SetPropertyValue("DeviceID", TCIMValue("hda"));
  other->AddToContainer();
  TCIMInstance* below = fContainer.AllocateInstance(fSubDisk);
  below->SetPropertyValue("DeviceID", TCIMValue("aaa"));
  below->AddToContainer();

  std::vector<TCIMInstance*> own = fDisk->EnumerateInstances(false);
  ASSERT_EQ(3u, own.size());
  EXPECT_EQ(other, own[0]); // Zel_Disk.DeviceID="hda" sorts before "sda".
  std::vector<TCIMInstance*> deep = fDevice->EnumerateInstances(true);
  ASSERT_EQ(4u, deep.size());
  EXPECT_EQ(below, deep[3]);

  TCIMReference sda(&fContainer);
  sda.SetClass(*fDisk);
  sda.AddKeyValue("DeviceID", TCIMValue("sda"));
  EXPECT_EQ(first, fDisk->FindInstance(sda));
  EXPECT_EQ(first, &fDisk->GetInstance(sda));
  fDisk->RemoveInstance(*twin); // Both entries of that path go.
  EXPECT_EQ(nullptr, fDisk->FindInstance(sda));
  EXPECT_ZEL_THROW(fDisk->GetInstance(sda), zelStatusNotFound);
  EXPECT_EQ(1u, fDisk->EnumerateInstances(false).size());
  TCIMInstance loose(fDisk);
  loose.SetPropertyValue("DeviceID", TCIMValue("none"));
  EXPECT_NO_THROW(fDisk->RemoveInstance(loose)); // An absent path does nothing.
}

TEST_F(ClassTest, PropertyDeclarationLookups) {
  BuildDevices();
  EXPECT_ZEL_THROW(fDisk->GetPropertyDecl("Missing"), zelStatusNotFound);
  EXPECT_EQ(nullptr, fDisk->FindPropertyDecl("Missing"));
  EXPECT_ZEL_THROW(fDisk->FindPropertyDecl("bad name"), zelStatusInvalidCIMName);
  fSubDisk->RemovePropertyDecl(fSubDisk->GetPropertyDecl("Size"));
  EXPECT_EQ(nullptr, fSubDisk->FindPropertyDecl("Size"));
  EXPECT_TRUE(fDisk->FindPropertyDecl("Size")); // Still shared with the superclass.
  TCIMPropertyDecl stranger("Size", *fSubDisk, TCIMValue());
  EXPECT_ZEL_THROW(fSubDisk->RemovePropertyDecl(stranger), zelStatusNotFound);
}

class AssociationTest : public ClassTest {
protected:
  void SetUp() override {
    ClassTest::SetUp();
    BuildDevices();
    fSystem = &KeyedClass(fContainer, "Zel_System");
    fSystemDevice = &Association(fContainer, "Zel_SystemDevice", "Owner", *fSystem, "Part", *fDisk);
  }
  TCIMClass* fSystem = 0;
  TCIMClass* fSystemDevice = 0;
};

TEST_F(AssociationTest, ReferencesFindTheAssociationClasses) {
  EXPECT_TRUE(fSystemDevice->IsAssociation());
  std::vector<TCIMClass*> found = fSystem->References("", "");
  ASSERT_EQ(1u, found.size());
  EXPECT_EQ(fSystemDevice, found[0]);
  EXPECT_EQ(1u, fSystem->References("Zel_SystemDevice", "Owner").size());
  EXPECT_TRUE(fSystem->References("", "Part").empty()); // Part points at the disk.
  EXPECT_EQ(1u, fDisk->References("", "part").size());
  EXPECT_TRUE(fSystem->References("Zel_System", "").empty());
  EXPECT_ZEL_THROW(fSystem->References("Zel_Missing", ""), zelStatusNotFound);
  // From a subclass the walk meets the association one level up; the role must then name
  // the subclass itself, which it does not.
  EXPECT_EQ(1u, fSubDisk->References("", "").size());
  EXPECT_TRUE(fSubDisk->References("", "Part").empty());
  EXPECT_TRUE(fDevice->References("", "").empty()); // Recorded where the reference points.
}

TEST_F(AssociationTest, AssociatorsGiveTheOtherEnds) {
  std::vector<TCIMClass*> ends = fSystem->Associators("Zel_SystemDevice", "", "", "");
  ASSERT_EQ(1u, ends.size());
  EXPECT_EQ(fDisk, ends[0]);
  EXPECT_EQ(fDisk, fSystem->Associators("", "Zel_Device", "Owner", "").at(0));
  EXPECT_EQ(fDisk, fSystem->Associators("", "", "", "Part").at(0));
  EXPECT_TRUE(fSystem->Associators("", "", "", "Owner").size() == 1); // resultRole is not
  EXPECT_EQ(fSystem, fSystem->Associators("", "", "", "Owner").at(0)); // checked against self.
  EXPECT_EQ(fSystem, fDisk->Associators("", "", "", "").at(0));
  EXPECT_TRUE(fSystem->Associators("", "Zel_SubDisk", "", "").empty());
  EXPECT_TRUE(fSystem->Associators("Zel_Missing", "", "", "").empty());
  EXPECT_TRUE(fSystem->Associators("", "Zel_Missing", "", "").empty());
}

TEST_F(AssociationTest, AnAssociationIsRecordedOnceForRelatedTargets) {
  // Left points at the disk, Right at its subclass: only the disk records the pair.
  TCIMClass& pair = Association(fContainer, "Zel_DiskPair", "Left", *fDisk, "Right", *fSubDisk);
  EXPECT_EQ(1u, fDisk->References("Zel_DiskPair", "").size());
  EXPECT_EQ(1u, fSubDisk->References("Zel_DiskPair", "").size());
  // Both ends are other than the starting class, so both are reported.
  std::vector<TCIMClass*> ends = fDisk->Associators("Zel_DiskPair", "", "", "");
  ASSERT_EQ(1u, ends.size()); // Left refers to the disk itself and is skipped.
  EXPECT_EQ(fSubDisk, ends[0]);
  EXPECT_TRUE(pair.IsSubclassOf(&pair));
}
