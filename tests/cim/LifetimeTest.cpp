// Ownership: the container is the root of every lifetime. Run under the sanitizer build,
// these tests fail on any leak (beyond the root class) or use after free.
#include "ZelTest.h"
#include "helpers.h"

namespace {

// A schema four levels deep with overrides, an association and linked instances.
void BuildPopulatedSchema(TContainer& container) {
  DeclareStandardQualifiers(container);
  TCIMClass& element = NewClass(container, "Zel_Element");
  Qualify(element, container, "ABSTRACT", TCIMValue(true));
  Qualify(element, container, "Description", TCIMValue("top"));
  Property(element, "Caption", TCIMValue("none"));
  element.AddToContainer();
  TCIMClass& system = NewClass(container, "Zel_System", &element);
  Property(system, "Id", TCIMValue(T::kUint16, 0), true);
  system.AddToContainer();
  TCIMClass& named = NewClass(container, "Zel_Named", &element);
  Property(named, "Name", TCIMValue(T::kString, 0), true);
  named.AddToContainer();
  TCIMClass& disk = NewClass(container, "Zel_Disk", &named);
  TCIMPropertyDecl* caption = new TCIMPropertyDecl("Caption", disk, TCIMValue("disk"));
  Qualify(*caption, container, "OVERRIDE", TCIMValue("Caption"));
  caption->AddToContainer();
  disk.AddToContainer();
  TCIMClass& ssd = KeyedClass(container, "Zel_Ssd", &disk);
  TCIMClass& link = Association(container, "Zel_Mirror", "Left", disk, "Right", ssd);
  for (int i = 0; i < 5; ++i) {
    NamedInstance(disk, "d" + std::to_string(i));
    NamedInstance(ssd, "s" + std::to_string(i));
    TCIMInstance* mirror = container.AllocateInstance(&link);
    mirror->SetPropertyValue("Left", TCIMValue(PathTo(disk, "d" + std::to_string(i))));
    mirror->SetPropertyValue("Right", TCIMValue(PathTo(ssd, "s" + std::to_string(i))));
    mirror->AddToContainer();
  }
}

} // namespace

class LifetimeTest : public ZelTest {};

TEST_F(LifetimeTest, DestroyingAPopulatedContainerFreesEverything) {
  TContainer* container = new TContainer;
  BuildPopulatedSchema(*container);
  TCIMClass* disk = container->GetClass("Zel_Disk");
  EXPECT_EQ(10u, disk->EnumerateInstances(true).size());
  EXPECT_EQ(5u, disk->GetInstance(PathTo(*disk, "d1")).References("", "").size() + 4);
  delete container;
}

TEST_F(LifetimeTest, RemovingClassesWithInstancesLeavesTheRestSound) {
  TContainer container;
  BuildPopulatedSchema(container);
  TCIMClass& ssd = *container.GetClass("Zel_Ssd");
  TCIMClass& disk = *container.GetClass("Zel_Disk");
  container.RemoveClass(*container.GetClass("Zel_Mirror"));
  EXPECT_TRUE(disk.References("", "").empty());
  container.RemoveClass(ssd);
  EXPECT_EQ(5u, disk.EnumerateInstances(true).size());
  std::vector<TCIMClass*> below = container.GetClass("Zel_Element")->EnumerateSubClasses(true);
  ASSERT_EQ(3u, below.size());
  EXPECT_EQ("Zel_System", below[0]->GetName());
  EXPECT_EQ("Zel_Named", below[1]->GetName());
  EXPECT_EQ("Zel_Disk", below[2]->GetName());
  container.RemoveQualifierDecl(*container.GetQualifierDecl("Description"));
  disk.RemoveInstance(disk.GetInstance(PathTo(disk, "d0")));
  EXPECT_EQ(4u, disk.EnumerateInstances(false).size());
}

TEST_F(LifetimeTest, DeclarationsOutliveTheClassThatSharesThem) {
  TContainer container;
  BuildPopulatedSchema(container);
  TCIMClass& named = *container.GetClass("Zel_Named");
  TCIMPropertyDecl& name = named.GetPropertyDecl("Name");
  container.RemoveClass(named); // Zel_Disk still holds the declaration it inherited.
  TCIMClass& disk = *container.GetClass("Zel_Disk");
  EXPECT_EQ(&name, &disk.GetPropertyDecl("Name"));
  EXPECT_EQ("Name", name.GetName());
}
