// The container: name normalisation, registries of classes and qualifier declarations,
// the root class, the factories and the diff state.
#include "../cim/helpers.h"
#include "ILogger.h"
#include "TContainerImpl.h"
#include "TRootObject.h"
#include "ZelTest.h"

#include <vector>

class ContainerTest : public ZelTest {};

TEST_F(ContainerTest, NormalizeNameLowersAndValidates) {
  EXPECT_EQ("cim_system", TContainerImpl::NormalizeName("CIM_System"));
  EXPECT_EQ("_x9", TContainerImpl::NormalizeName("_X9"));
  EXPECT_EQ("", TContainerImpl::NormalizeName(""));
  EXPECT_ZEL_THROW(TContainerImpl::NormalizeName("1abc"), zelStatusInvalidCIMName);
  EXPECT_ZEL_THROW(TContainerImpl::NormalizeName("a-b"), zelStatusInvalidCIMName);
  EXPECT_ZEL_THROW(TContainerImpl::NormalizeName("A B"), zelStatusInvalidCIMName);
  EXPECT_ZEL_THROW(TContainerImpl::NormalizeName("a.b"), zelStatusInvalidCIMName);
  EXPECT_LOGGED("ZEL_Core: [Error] CIM name '1abc' is invalid");
  EXPECT_LOGGED("ZEL_Core: [Error] CIM name 'A B' is invalid"); // As passed, not lowered.
}

TEST_F(ContainerTest, RootClassIsReachedOnlyByTheEmptyName) {
  TContainer container;
  TCIMClass* root = container.GetRootClass();
  ASSERT_TRUE(root);
  EXPECT_EQ("<root>", root->GetName());
  EXPECT_EQ(root, container.GetClass(""));
  EXPECT_EQ(root, container.FindClass(""));
  EXPECT_ZEL_THROW(container.FindClass("<root>"), zelStatusInvalidCIMName);
  EXPECT_ZEL_THROW(container.GetQualifierDecl(""), zelStatusNotFound);
  EXPECT_EQ(nullptr, container.FindQualifierDecl(""));
  EXPECT_FALSE(root->IsRootClass()); // Only classes made without a superclass are.
  EXPECT_EQ(nullptr, root->GetSuperClass());
}

TEST_F(ContainerTest, ClassesAreFoundCaseInsensitively) {
  TContainer container;
  DeclareStandardQualifiers(container);
  TCIMClass& system = KeyedClass(container, "CIM_System");
  EXPECT_EQ(&system, container.FindClass("cim_system"));
  EXPECT_EQ(&system, container.GetClass("CIM_SYSTEM"));
  EXPECT_EQ(nullptr, container.FindClass("_x9"));
  EXPECT_ZEL_THROW(container.GetClass("Missing"), zelStatusNotFound);
  EXPECT_ZEL_THROW(container.FindClass("a-b"), zelStatusInvalidCIMName);
  EXPECT_TRUE(system.IsRootClass());
  EXPECT_EQ(container.GetRootClass(), system.GetSuperClass());

  TCIMClass* duplicate = container.AllocateClass("cim_SYSTEM", 0);
  EXPECT_ZEL_THROW(container.AddClass(*duplicate), zelStatusAlreadyExists);
  EXPECT_EQ(&system, container.FindClass("CIM_System")); // The registered one stays.
  delete duplicate; // Refused: still the caller's.
}

TEST_F(ContainerTest, DuplicateLinesAreDebugAndNeedTheThreshold) {
  TContainer container;
  Declare(container, "Key", TCIMValue(false), 0);
  TCIMQualifierDecl* again = container.AllocateQualifierDecl("KEY", TCIMValue(true), D::eProperty,
                                                             Flavors(0));
  EXPECT_ZEL_THROW(again->AddToContainer(), zelStatusAlreadyExists);
  EXPECT_NOT_LOGGED("ZEL_Core: [Debug] TContainer: qualifier KEY already defined");
  TRootObject::GetCoreLogger()->SetLogThreshold(zelLogDebug);
  EXPECT_ZEL_THROW(container.AddQualifierDecl(*again), zelStatusAlreadyExists);
  EXPECT_LOGGED("ZEL_Core: [Debug] TContainer: qualifier KEY already defined");
  delete again;

  TCIMClass* cls = container.AllocateClass("Thing", 0);
  container.AddClass(*cls); // The registry itself asks for no keys.
  TCIMClass* other = container.AllocateClass("THING", 0);
  EXPECT_ZEL_THROW(container.AddClass(*other), zelStatusAlreadyExists);
  EXPECT_LOGGED("ZEL_Core: [Debug] TContainer: class THING already defined");
  delete other;
}

TEST_F(ContainerTest, QualifierDeclarationsEnumerateInNormalisedOrder) {
  TContainer container;
  EXPECT_TRUE(container.EnumerateQualifiers().empty());
  Declare(container, "Key", TCIMValue(false), 0);
  Declare(container, "ABSTRACT", TCIMValue(false), 0);
  Declare(container, "description", TCIMValue(""), 0);
  std::vector<TCIMQualifierDecl*> decls = container.EnumerateQualifiers();
  ASSERT_EQ(3u, decls.size());
  EXPECT_EQ("ABSTRACT", decls[0]->GetName());
  EXPECT_EQ("description", decls[1]->GetName());
  EXPECT_EQ("Key", decls[2]->GetName());
  EXPECT_EQ(decls[2], container.GetQualifierDecl("kEy"));

  container.RemoveQualifierDecl(*decls[0]);
  EXPECT_EQ(nullptr, container.FindQualifierDecl("abstract"));
  TCIMQualifierDecl stranger(container, "Abstract", TCIMValue(), D::eClass, Flavors(0));
  EXPECT_ZEL_THROW(container.RemoveQualifierDecl(stranger), zelStatusNotFound);
  EXPECT_EQ(2u, container.EnumerateQualifiers().size());
}

TEST_F(ContainerTest, RemovingAClassDeletesItAndItsInstances) {
  TContainer container;
  DeclareStandardQualifiers(container);
  TCIMClass& base = KeyedClass(container, "Zel_Base");
  TCIMClass& derived = KeyedClass(container, "Zel_Derived", &base);
  NamedInstance(derived, "one");
  NamedInstance(derived, "two");
  ASSERT_EQ(1u, base.EnumerateSubClasses(false).size());

  container.RemoveClass(derived); // The sanitizer build checks that nothing leaks or dangles.
  EXPECT_EQ(nullptr, container.FindClass("Zel_Derived"));
  EXPECT_TRUE(base.EnumerateSubClasses(true).empty());
  EXPECT_TRUE(base.EnumerateInstances(true).empty());

  TCIMClass* ghost = container.AllocateClass("Zel_Derived", &base);
  EXPECT_ZEL_THROW(container.RemoveClass(*ghost), zelStatusNotFound);
  delete ghost;
}

TEST_F(ContainerTest, RemovingAnAssociationUnlinksItsEnds) {
  TContainer container;
  DeclareStandardQualifiers(container);
  TCIMClass& system = KeyedClass(container, "Zel_System");
  TCIMClass& disk = KeyedClass(container, "Zel_Disk");
  TCIMClass& link = Association(container, "Zel_SystemDisk", "Owner", system, "Part", disk);
  ASSERT_EQ(1u, system.References("", "").size());
  container.RemoveClass(link);
  EXPECT_TRUE(system.References("", "").empty());
  EXPECT_TRUE(disk.Associators("", "", "", "").empty());
}

TEST_F(ContainerTest, DiffStateIsGuardedUntilTurnedOn) {
  TContainer container;
  EXPECT_FALSE(container.isDiffContainer());
  EXPECT_ZEL_THROW(container.hasDifferences(), zelStatusNotSupported);
  EXPECT_ZEL_THROW(container.getDiffInstances(), zelStatusNotSupported);
  EXPECT_ZEL_THROW(container.setDiffInstances(std::vector<TCIMInstance*>()),
                   zelStatusNotSupported);
  EXPECT_LOGGED("ZEL_Core: [Error] TContainer: Cannot access DiffInstances if the containter is "
                "not a Diff Container");

  container.hackhack_TurnIntoADiffContainer();
  EXPECT_TRUE(container.isDiffContainer());
  EXPECT_FALSE(container.hasDifferences());
  DeclareStandardQualifiers(container);
  TCIMClass& cls = KeyedClass(container, "Zel_Thing");
  TCIMInstance& changed = NamedInstance(cls, "a");
  container.setDiffInstances(std::vector<TCIMInstance*>(1, &changed));
  EXPECT_TRUE(container.hasDifferences());
  ASSERT_EQ(1u, container.getDiffInstances().size());
  EXPECT_EQ(&changed, container.getDiffInstances()[0]);
}

TEST_F(ContainerTest, BodyReferencesKeepTheRegistryAlive) {
  boost::shared_ptr<TContainerImpl> body;
  {
    TContainer container;
    Declare(container, "Key", TCIMValue(false), 0);
    body = container.GetBody();
  }
  EXPECT_TRUE(body->FindQualifierDecl("key"));
}

// A container that makes its own object types, as hosts do to attach their data.
namespace {
int gMadeClasses;
int gMadeInstances;
int gMadeDecls;

class TCountingClass : public TCIMClass {
public:
  TCountingClass(TContainer& c, const std::string& name, TCIMClass* super)
      : TCIMClass(c, name, super) {}
};

class TCountingContainer : public TContainer {
public:
  TCIMClass* AllocateClass(const std::string& name, TCIMClass* superclass) const override {
    ++gMadeClasses;
    return new TCountingClass(const_cast<TCountingContainer&>(*this), name, superclass);
  }
  TCIMInstance* AllocateInstance(TCIMClass* cls) const override {
    ++gMadeInstances;
    return TContainer::AllocateInstance(cls);
  }
  TCIMQualifierDecl* AllocateQualifierDecl(const std::string& name, const TCIMValue& value,
                                           D::EScope scope, D::EFlavor flavor) const override {
    ++gMadeDecls;
    return TContainer::AllocateQualifierDecl(name, value, scope, flavor);
  }
};
} // namespace

TEST_F(ContainerTest, SubclassFactoriesSubstituteTheObjectTypes) {
  gMadeClasses = gMadeInstances = gMadeDecls = 0;
  TCountingContainer container;
  EXPECT_EQ(0, gMadeClasses); // The root is made while only the base container exists.
  DeclareStandardQualifiers(container);
  EXPECT_EQ(5, gMadeDecls);
  TCIMClass& cls = KeyedClass(container, "Zel_Counted");
  EXPECT_TRUE(dynamic_cast<TCountingClass*>(&cls));
  EXPECT_EQ(1, gMadeClasses);
  NamedInstance(cls, "x");
  EXPECT_EQ(1, gMadeInstances);
  EXPECT_EQ(&container, &cls.GetContainer());
}
