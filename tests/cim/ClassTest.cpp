// Classes: inheritance, override rules, keys, subclasses, instances by path, associations.
#include "SchemaHelpers.h"

typedef std::vector<TCIMClass*> TClasses;

class ClassTest : public SchemaTest {
protected:
  TCIMPropertyDecl* Overriding(TCIMClass& cls, const std::string& name, const TCIMValue& value) {
    TCIMPropertyDecl* decl = new TCIMPropertyDecl(name, cls, value);
    Qualify(*decl, fContainer, "OVERRIDE", TCIMValue(name));
    return decl;
  }
};

TEST_F(ClassTest, SubclassesShareDeclarationsAndInheritToSubclassQualifiers) {
  // The same declaration object, three levels down.
  EXPECT_EQ(&fDevice->GetPropertyDecl("caption"), &fSubDisk->GetPropertyDecl("CAPTION"));
  EXPECT_EQ((TNames{"Caption", "Name", "Size"}), Names(fSubDisk->EnumeratePropertyDecls()));

  TCIMQualifier& copied = fSubDisk->GetQualifier("Description");
  EXPECT_TRUE(copied.GetPropagated() && !fElement->GetQualifier("Description").GetPropagated());
  EXPECT_EQ("root of all", static_cast<std::string>(copied.GetValue()));
  EXPECT_EQ(nullptr, fDevice->FindQualifier("ABSTRACT")); // Not tosubclass.

  Property(*fDisk, "Late", TCIMValue(1u)); // Existing subclasses copied the map earlier.
  EXPECT_EQ(nullptr, fSubDisk->FindPropertyDecl("Late"));
  EXPECT_TRUE(fDisk->FindPropertyDecl("late"));

  EXPECT_ZEL_THROW(fDisk->GetPropertyDecl("Missing"), zelStatusNotFound);
  fSubDisk->RemovePropertyDecl(fSubDisk->GetPropertyDecl("Size"));
  EXPECT_EQ(nullptr, fSubDisk->FindPropertyDecl("Size"));
  EXPECT_TRUE(fDisk->FindPropertyDecl("Size")); // Still shared with the superclass.
  TCIMPropertyDecl stranger("Size", *fSubDisk, TCIMValue());
  EXPECT_ZEL_THROW(fSubDisk->RemovePropertyDecl(stranger), zelStatusNotFound);
}

TEST_F(ClassTest, OverrideRulesLogAndRefuseOrReplaceInTheSubclassOnly) {
  TCIMClass& plain = KeyedClass(fContainer, "Zel_Plain");
  struct Row { TCIMClass* cls; TCIMPropertyDecl* decl; zelStatusCode code; const char* log; };
  Row rows[] = {
      {fDisk, Overriding(*fDisk, "Speed", TCIMValue(1u)), zelStatusNotFound,
       "Attempt to override property Speed in class Zel_Disk: property doesn't exist in base "
       "class"},
      {fDisk, Overriding(*fDisk, "Caption", TCIMValue(1u)), zelStatusTypeMismatch,
       "Attempt to override property Caption in class Zel_Disk: different types"},
      {fDisk, Overriding(*fDisk, "SIZE", TCIMValue(TCIMType::kUint64, 0)), zelStatusAlreadyExists,
       "Attempt to override property SIZE in class Zel_Disk: original was defined in this class"},
      {fDisk, new TCIMPropertyDecl("caption", *fDisk, TCIMValue("x")), zelStatusAlreadyExists,
       "Attempt to add property caption to class Zel_Disk: already exists"},
      {&plain, new TCIMPropertyDecl("Target", plain, Pointing(*fDisk)), zelStatusNotAssociation,
       "Attempt to add reference property Target to non-association class Zel_Plain"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.log);
    EXPECT_ZEL_THROW(row.cls->AddPropertyDecl(*row.decl), row.code);
    EXPECT_LOGGED(std::string("ZEL_Core: [Error] ") + row.log);
    delete row.decl;
  }
  TCIMPropertyDecl& original = fDevice->GetPropertyDecl("Caption");
  EXPECT_EQ(&original, &fDisk->GetPropertyDecl("Caption")); // All left unchanged.

  // OVERRIDE of the same type replaces in the subclass only.
  Qualify(original, fContainer, "Description", TCIMValue("base text"));
  TCIMPropertyDecl* replacement = Overriding(*fDisk, "Caption", TCIMValue("disk"));
  fDisk->AddPropertyDecl(*replacement);
  EXPECT_EQ(replacement, &fDisk->GetPropertyDecl("Caption"));
  EXPECT_EQ(&original, &fDevice->GetPropertyDecl("Caption"));
  EXPECT_EQ(nullptr, replacement->FindQualifier("Description")); // Not carried over.
  EXPECT_EQ(&original, &fSubDisk->GetPropertyDecl("Caption")); // Made before the override.
}

TEST_F(ClassTest, ValidationNeedsATrueKeyUnlessAbstract) {
  TCIMClass& noKey = *fContainer.AllocateClass("Zel_NoKey", 0);
  Property(noKey, "Name", TCIMValue(TCIMType::kString, 0));
  Qualify(Property(noKey, "Id", TCIMValue(1u)), fContainer, "KEY", TCIMValue(false));
  Qualify(noKey, fContainer, "ABSTRACT", TCIMValue(TCIMType::kBoolean, 0)); // NULL: not abstract.
  EXPECT_ZEL_THROW(noKey.AddToContainer(), zelStatusInvalidClass);
  EXPECT_LOGGED("ZEL_Core: [Error] Class Zel_NoKey has no keys");
  EXPECT_EQ(nullptr, fContainer.FindClass("Zel_NoKey"));
  delete &noKey;

  TCIMClass& abstract = *fContainer.AllocateClass("Zel_Abstract", 0);
  Qualify(abstract, fContainer, "ABSTRACT", TCIMValue(true));
  EXPECT_NO_THROW(abstract.AddToContainer());

  TCIMClass& keyed = KeyedClass(fContainer, "Zel_Keyed");
  Property(keyed, "Id", TCIMValue(TCIMType::kUint32, 0), true);
  TCIMClass child(fContainer, "Zel_Child", &keyed);
  EXPECT_NO_THROW(child.Validate()); // Inherited keys count.
  EXPECT_EQ((TNames{"Id", "Name"}), child.EnumerateKeyNames());
}

TEST_F(ClassTest, HierarchyQueriesAndEquality) {
  TCIMClass& tape = KeyedClass(fContainer, "Zel_Tape", fDevice);
  EXPECT_TRUE(fSubDisk->IsSubclassOf(fSubDisk));
  EXPECT_TRUE(fSubDisk->IsSubclassOf(fContainer.GetRootClass()));
  EXPECT_FALSE(fDisk->IsSubclassOf(fSubDisk));
  EXPECT_TRUE(fElement->IsRootClass() && !fDevice->IsRootClass());

  EXPECT_EQ((TClasses{fDisk, &tape}), fDevice->EnumerateSubClasses(false));
  EXPECT_EQ((TClasses{fDevice, fDisk, fSubDisk, &tape}), fElement->EnumerateSubClasses(true));

  // Equality compares the stored names, case-sensitively.
  TCIMClass lower(fContainer, "zel_thing", 0), upper(fContainer, "Zel_Thing", 0);
  EXPECT_FALSE(lower == upper);
  EXPECT_TRUE(upper == TCIMClass(fContainer, "Zel_Thing", 0));
  EXPECT_TRUE(upper < lower && !(lower < upper)); // 'Z' sorts before 'z'.
}

TEST_F(ClassTest, InstancesAreFiledByPath) {
  TCIMInstance& first = NamedInstance(*fDisk, "sda");
  NamedInstance(*fDisk, "sda"); // The same path is kept twice, on purpose.
  TCIMInstance& other = NamedInstance(*fDisk, "hda");
  TCIMInstance& below = NamedInstance(*fSubDisk, "aaa");
  std::vector<TCIMInstance*> own = fDisk->EnumerateInstances(false);
  ASSERT_EQ(3u, own.size());
  EXPECT_EQ(&other, own[0]); // Zel_Disk.Name="hda" sorts before "sda".
  EXPECT_EQ(&below, fDevice->EnumerateInstances(true).at(3));

  EXPECT_EQ(&first, &fDisk->GetInstance(PathTo(*fDisk, "sda")));
  fDisk->RemoveInstance(first); // Both entries of that path go.
  EXPECT_ZEL_THROW(fDisk->GetInstance(PathTo(*fDisk, "sda")), zelStatusNotFound);
  EXPECT_EQ(1u, fDisk->EnumerateInstances(false).size());
  TCIMInstance loose(fDisk);
  EXPECT_NO_THROW(fDisk->RemoveInstance(loose)); // An absent path does nothing.
}

TEST_F(ClassTest, ReferencesAndAssociatorsFindTheAssociationClasses) {
  EXPECT_EQ(TClasses{fLink}, fSystem->References("Zel_SystemDevice", "Owner"));
  EXPECT_TRUE(fSystem->References("", "Part").empty()); // Part points at the disk.
  EXPECT_TRUE(fSystem->References("Zel_System", "").empty());
  EXPECT_ZEL_THROW(fSystem->References("Zel_Missing", ""), zelStatusNotFound);
  // From a subclass the walk meets the association one level up; the role must then name
  // the subclass itself, which it does not.
  EXPECT_EQ(1u, fSubDisk->References("", "").size());
  EXPECT_TRUE(fSubDisk->References("", "Part").empty());
  EXPECT_TRUE(fDevice->References("", "").empty()); // Recorded where the reference points.

  EXPECT_EQ(TClasses{fDisk}, fSystem->Associators("Zel_SystemDevice", "Zel_Device", "Owner", ""));
  EXPECT_EQ(TClasses{fDisk}, fSystem->Associators("", "", "", "Part"));
  // resultRole is not checked against the starting class itself.
  EXPECT_EQ(TClasses{fSystem}, fSystem->Associators("", "", "", "Owner"));
  EXPECT_EQ(TClasses{fSystem}, fDisk->Associators("", "", "", ""));
  EXPECT_TRUE(fSystem->Associators("", "Zel_SubDisk", "", "").empty());
  EXPECT_TRUE(fSystem->Associators("", "Zel_Missing", "", "").empty());
}

TEST_F(ClassTest, AnAssociationIsRecordedOnceForRelatedTargets) {
  // Left points at the disk, Right at its subclass: only the disk records the pair.
  Association(fContainer, "Zel_DiskPair", "Left", *fDisk, "Right", *fSubDisk);
  EXPECT_EQ(1u, fDisk->References("Zel_DiskPair", "").size());
  EXPECT_EQ(1u, fSubDisk->References("Zel_DiskPair", "").size());
  // Left refers to the disk itself and is skipped.
  EXPECT_EQ(TClasses{fSubDisk}, fDisk->Associators("Zel_DiskPair", "", "", ""));
}
