// Qualifier declarations, qualifiers, and the override rule of their holders.
#include "SchemaHelpers.h"

class QualifierTest : public ZelTest {
protected:
  QualifierTest() { DeclareStandardQualifiers(fContainer); }
  TContainer fContainer;
};

TEST_F(QualifierTest, DeclarationFlavorsTypeAndUncheckedScope) {
  TCIMQualifierDecl empty(fContainer);
  EXPECT_TRUE(empty.GetName().empty() && empty.GetScope() == 0 && empty.GetFlavor() == 0);
  EXPECT_NO_THROW(empty.Validate());

  TCIMQualifierDecl units(fContainer, "Units", TCIMValue(TCIMType::kString, 3),
                          TCIMQualifierDecl::eProperty, Flavors(TCIMQualifierDecl::eTranslatable));
  EXPECT_EQ(TCIMType::kString | TCIMType::kArray, units.GetType());
  units.SetFlavor(Flavors(TCIMQualifierDecl::eOverridable | TCIMQualifierDecl::eToSubclass));
  EXPECT_EQ(TCIMQualifierDecl::eOverridable | TCIMQualifierDecl::eToSubclass |
                TCIMQualifierDecl::eTranslatable,
            units.GetFlavor());
  units.UnsetFlavor(Flavors(TCIMQualifierDecl::eTranslatable | TCIMQualifierDecl::eOverridable));
  EXPECT_EQ(TCIMQualifierDecl::eToSubclass, units.GetFlavor());
  units.SetValue(TCIMValue("Bytes"));
  EXPECT_EQ(TCIMType::kString, units.GetType());

  // The scope is never checked: a class qualifier may qualify a property.
  ASSERT_EQ(TCIMQualifierDecl::eClass,
            Declare(fContainer, "ClassOnly", TCIMValue(true), 0).GetScope());
  TCIMClass cls(fContainer, "Zel_Holder", 0);
  EXPECT_NO_THROW(Qualify(Property(cls, "Name", TCIMValue("")), fContainer, "ClassOnly", true));
}

TEST_F(QualifierTest, DeclarationsCompareByNormalisedNameOnly) {
  TCIMQualifierDecl key(fContainer, "Key", TCIMValue(true), TCIMQualifierDecl::eProperty,
                        Flavors(0));
  TCIMQualifierDecl upper(fContainer, "KEY", TCIMValue(7), TCIMQualifierDecl::eClass, Flavors(2));
  TCIMQualifierDecl abstract(fContainer, "ABSTRACT", TCIMValue(), TCIMQualifierDecl::eClass,
                             Flavors(0));
  EXPECT_TRUE(key == upper);
  EXPECT_FALSE(key < upper || upper < key);
  EXPECT_TRUE(abstract < key);

  TCIMQualifier a(key, TCIMValue(true));
  EXPECT_TRUE(a == TCIMQualifier(upper, TCIMValue(false)));
  EXPECT_TRUE(TCIMQualifier(abstract, TCIMValue(true)) < a);
}

TEST_F(QualifierTest, QualifierTakesFlavorsAndCopiesDeeply) {
  TCIMQualifierDecl& description = *fContainer.GetQualifierDecl("Description");
  TCIMQualifier inherited(description, TCIMValue("text"));
  EXPECT_EQ(TCIMQualifierDecl::eOverridable | TCIMQualifierDecl::eToSubclass,
            inherited.GetFlavor());

  TCIMQualifier own(description, TCIMValue((unsigned char)5),
                    Flavors(TCIMQualifierDecl::eTranslatable));
  EXPECT_EQ(TCIMQualifierDecl::eTranslatable, own.GetFlavor());
  EXPECT_EQ(TCIMType::kUint8, own.GetType()); // Its own value's type, unchecked against the string.

  inherited.SetPropagated(true);
  TCIMQualifier copy(inherited);
  EXPECT_TRUE(copy.GetPropagated());
  copy.SetValue(TCIMValue("changed"));
  own = inherited;
  own.SetValue(TCIMValue("changed"));
  EXPECT_EQ("text", static_cast<std::string>(inherited.GetValue()));
}

TEST_F(QualifierTest, EveryChangeClearsThePropagatedMark) {
  TCIMQualifier q(*fContainer.GetQualifierDecl("KEY"), TCIMValue(true));
  q.SetPropagated(true);
  q.SetValue(TCIMValue(true)); // Even a change that changes nothing.
  EXPECT_FALSE(q.GetPropagated());
  q.SetPropagated(true);
  q.SetFlavor(Flavors(TCIMQualifierDecl::eToSubclass));
  EXPECT_FALSE(q.GetPropagated());
  q.SetPropagated(true);
  q.UnsetFlavor(Flavors(TCIMQualifierDecl::eTranslatable));
  EXPECT_FALSE(q.GetPropagated());
}

TEST_F(QualifierTest, ClassesAndPropertyDeclarationsApplyTheOverrideRule) {
  TCIMClass cls(fContainer, "Zel_Holder", 0);
  ICIMAllowQualifiers* holders[] = {&cls, &Property(cls, "Name", TCIMValue(TCIMType::kString, 0))};
  TCIMQualifierDecl& key = *fContainer.GetQualifierDecl("KEY");
  TCIMQualifierDecl& description = *fContainer.GetQualifierDecl("Description");
  for (ICIMAllowQualifiers* holder : holders) {
    SCOPED_TRACE(holder == &cls ? "class" : "property declaration");
    TCIMQualifier* first = new TCIMQualifier(key, TCIMValue(true));
    holder->AddQualifier(*first);
    TCIMQualifier same(key, TCIMValue(true));
    EXPECT_NO_THROW(holder->AddQualifier(same)); // Accepted without change; still ours.
    TCIMQualifier other(key, TCIMValue(false));
    EXPECT_ZEL_THROW(holder->AddQualifier(other), zelStatusNotOverridable);
    TCIMQualifier extraFlavor(
        key, TCIMValue(true),
        Flavors(TCIMQualifierDecl::eToSubclass | TCIMQualifierDecl::eTranslatable));
    EXPECT_ZEL_THROW(holder->AddQualifier(extraFlavor), zelStatusNotOverridable);
    EXPECT_EQ(first, &holder->GetQualifier("key")); // The very object, not a copy.

    holder->AddQualifier(*new TCIMQualifier(description, TCIMValue("a")));
    TCIMQualifier* locked = new TCIMQualifier(description, TCIMValue("b"), Flavors(0));
    holder->AddQualifier(*locked); // Replaces the overridable one.
    TCIMQualifier late(description, TCIMValue("c"), Flavors(TCIMQualifierDecl::eOverridable));
    EXPECT_ZEL_THROW(holder->AddQualifier(late), zelStatusNotOverridable);
    EXPECT_EQ((std::vector<TCIMQualifier*>{locked, first}), holder->EnumerateQualifiers());

    TCIMQualifier probe(key, TCIMValue(false));
    holder->RemoveQualifier(probe); // Removes the held one of that name.
    EXPECT_ZEL_THROW(holder->GetQualifier("KEY"), zelStatusNotFound);
    EXPECT_ZEL_THROW(holder->RemoveQualifier(probe), zelStatusNotFound);
  }
}
