// The container: name normalisation, registries, the root class and the diff state.
#include "SchemaHelpers.h"
#include "ILogger.h"
#include "container/TContainerImpl.h"
#include "TRootObject.h"

class ContainerTest : public ZelTest {
protected:
  TContainer fContainer;
};

TEST_F(ContainerTest, NormalizeNameLowersAndValidatesTheRootHasTheEmptyName) {
  EXPECT_EQ("_cim_x9", TContainerImpl::NormalizeName("_CIM_X9"));
  EXPECT_EQ("", TContainerImpl::NormalizeName(""));
  for (const char* name : {"1abc", "a-b"}) {
    SCOPED_TRACE(name);
    EXPECT_ZEL_THROW(TContainerImpl::NormalizeName(name), zelStatusInvalidCIMName);
    EXPECT_LOGGED(std::string("ZEL_Core: [Error] CIM name '") + name + "' is invalid");
  }

  // The root class is reached only by the empty name.
  TCIMClass* root = fContainer.GetRootClass();
  EXPECT_EQ("<root>", root->GetName());
  EXPECT_EQ(root, fContainer.GetClass(""));
  EXPECT_EQ(root, fContainer.FindClass(""));
  EXPECT_ZEL_THROW(fContainer.FindClass("<root>"), zelStatusInvalidCIMName);
  EXPECT_ZEL_THROW(fContainer.GetQualifierDecl(""), zelStatusNotFound);
  EXPECT_FALSE(root->IsRootClass()); // Only classes made without a superclass are.
}

TEST_F(ContainerTest, NamesAreKeyedNormalisedAndDuplicatesLoggedAtDebug) {
  EXPECT_TRUE(fContainer.EnumerateQualifiers().empty());
  Declare(fContainer, "Key", TCIMValue(false), 0);
  TCIMQualifierDecl* again = fContainer.AllocateQualifierDecl(
      "KEY", TCIMValue(true), TCIMQualifierDecl::eProperty, Flavors(0));
  EXPECT_ZEL_THROW(again->AddToContainer(), zelStatusAlreadyExists);
  EXPECT_TRUE(LoggedLines().empty()); // The duplicate is told only at debug.
  TRootObject::GetCoreLogger()->SetLogThreshold(zelLogDebug);
  EXPECT_ZEL_THROW(fContainer.AddQualifierDecl(*again), zelStatusAlreadyExists);
  EXPECT_LOGGED("ZEL_Core: [Debug] TContainer: qualifier KEY already defined");
  delete again;

  TCIMClass* system = fContainer.AllocateClass("CIM_System", 0);
  fContainer.AddClass(*system); // The registry itself asks for no keys.
  EXPECT_EQ(system, fContainer.FindClass("cim_system"));
  EXPECT_EQ(nullptr, fContainer.FindClass("_x9"));
  EXPECT_ZEL_THROW(fContainer.GetClass("Missing"), zelStatusNotFound);
  TCIMClass* other = fContainer.AllocateClass("cim_SYSTEM", 0);
  EXPECT_ZEL_THROW(fContainer.AddClass(*other), zelStatusAlreadyExists);
  EXPECT_LOGGED("ZEL_Core: [Debug] TContainer: class cim_SYSTEM already defined");
  EXPECT_EQ(system, fContainer.FindClass("CIM_System")); // The registered one stays.
  delete other; // Refused: still the caller's.

  // Qualifier declarations enumerate in normalised order.
  Declare(fContainer, "ABSTRACT", TCIMValue(false), 0);
  Declare(fContainer, "description", TCIMValue(""), 0);
  std::vector<TCIMQualifierDecl*> decls = fContainer.EnumerateQualifiers();
  EXPECT_EQ((TNames{"ABSTRACT", "description", "Key"}), Names(decls));
  EXPECT_EQ(decls[2], fContainer.GetQualifierDecl("kEy"));

  fContainer.RemoveQualifierDecl(*decls[0]);
  EXPECT_EQ(nullptr, fContainer.FindQualifierDecl("abstract"));
  EXPECT_EQ(2u, fContainer.EnumerateQualifiers().size());
}

TEST_F(ContainerTest, DiffStateIsGuardedUntilTurnedOn) {
  EXPECT_ZEL_THROW(fContainer.hasDifferences(), zelStatusNotSupported);
  EXPECT_LOGGED("ZEL_Core: [Error] TContainer: Cannot access DiffInstances if the containter is "
                "not a Diff Container");

  fContainer.hackhack_TurnIntoADiffContainer();
  EXPECT_FALSE(fContainer.hasDifferences());
  DeclareStandardQualifiers(fContainer);
  TCIMInstance& changed = NamedInstance(KeyedClass(fContainer, "Zel_Thing"), "a");
  fContainer.setDiffInstances({&changed});
  EXPECT_TRUE(fContainer.hasDifferences());
  EXPECT_EQ(std::vector<TCIMInstance*>{&changed}, fContainer.getDiffInstances());
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
