// Properties: own and previous values, defaults, and the type and referenced-class checks.
#include "SchemaHelpers.h"

class PropertyTest : public SchemaTest {
protected:
  PropertyTest()
      : fCount(&Property(*fSystem, "Count", TCIMValue(7u))),
        fBytes(&Property(*fSystem, "Bytes", TCIMValue(TCIMType::kUint8, 4))),
        fTarget(&fLink->GetPropertyDecl("Part")) {}

  TCIMPropertyDecl *fCount, *fBytes, *fTarget;
};

TEST_F(PropertyTest, DefaultUntilAValueIsSetPreviousValueUntilOneIsSet) {
  TCIMProperty count(*fCount);
  EXPECT_TRUE(count.GetPropagated());
  EXPECT_EQ(7u, static_cast<unsigned int>(count.GetValue()));
  count.SetValue(TCIMValue(9u));
  EXPECT_FALSE(count.GetPropagated());
  EXPECT_EQ(9u, static_cast<unsigned int>(count.GetValue()));
  EXPECT_EQ(7u, static_cast<unsigned int>(fCount->GetValue())); // The default is untouched.
  // A NULL array default still makes an array property.
  EXPECT_EQ(TCIMType::kUint8 | TCIMType::kArray, TCIMProperty(*fBytes).GetType());

  // The previous value is the value until one is set.
  count = TCIMProperty(*fCount, TCIMValue(9u));
  EXPECT_FALSE(count.IsPrevValueDifferent());
  EXPECT_EQ(9u, static_cast<unsigned int>(count.GetPrevValue())); // Same as the value.
  count.SetPrevValue(TCIMValue(3u));
  EXPECT_TRUE(count.IsPrevValueDifferent());
  EXPECT_EQ(3u, static_cast<unsigned int>(count.GetPrevValue()));
  count.SetPrevValue(); // Did not exist before.
  EXPECT_TRUE(count.GetPrevValue().IsNull() && !count.GetValue().IsNull());
  count.SetPrevValue(TCIMValue(TCIMType::kString, 0)); // A NULL of any type is accepted.
  EXPECT_TRUE(count.GetPrevValue().IsNull());
}

TEST_F(PropertyTest, TypesMustMatchExactly) {
  TCIMProperty count(*fCount, TCIMValue(9u));
  EXPECT_ZEL_THROW(count.SetValue(TCIMValue((unsigned short)9)), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] SetValue: decl is type uint32 but value is type uint16");
  EXPECT_ZEL_THROW(count.SetValue(TCIMValue(TCIMType::kString, 0)),
                   zelStatusTypeMismatch);  // NULL too.
  EXPECT_ZEL_THROW(count.SetPrevValue(TCIMValue("9")), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] SetPrevValue: decl is type uint32 but value is type string");
  EXPECT_FALSE(count.IsPrevValueDifferent()); // Both left as they were.
  EXPECT_ZEL_THROW((void)TCIMProperty(*fCount, TCIMValue(1)), zelStatusTypeMismatch);

  TCIMProperty bytes(*fBytes);
  EXPECT_ZEL_THROW(bytes.SetValue(TCIMValue((unsigned char)1)), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] SetValue: decl is type uint8 but value is type uint8");
  bytes.SetValue(TCIMValue(TCIMType::kUint8, 4, {(unsigned char)1, (unsigned char)255}));
  EXPECT_EQ("{ 1, 255 }", bytes.GetValue().ToString(10));
}

TEST_F(PropertyTest, ReferencesMustPointAtTheDeclaredClassOrBelow) {
  TCIMProperty target(*fTarget);
  EXPECT_NO_THROW(target.SetValue(Pointing(*fSubDisk)));
  EXPECT_ZEL_THROW(target.SetValue(Pointing(*fDevice)), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] SetValue: decl references type Zel_Disk but value "
                "references Zel_Device");
  EXPECT_ZEL_THROW(target.SetValue(TCIMValue(TCIMType::kReference, 0)), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] SetValue: decl references type Zel_Disk but value "
                "references ");

  NamedInstance(*fDevice, "d");
  EXPECT_ZEL_THROW(target.SetPrevValue(TCIMValue(PathTo(*fDevice, "d"))), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] SetPrevValue: decl references type Zel_Disk but value "
                "references Zel_Device");
}

TEST_F(PropertyTest, CopiesAreDeepComparisonByNameThenOwnValue) {
  TCIMProperty count(*fCount, TCIMValue(9u));
  count.SetPrevValue(TCIMValue(3u));
  TCIMProperty copy(count), assigned(*fCount);
  assigned = count;
  assigned = assigned;
  copy.SetValue(TCIMValue(1u));
  assigned.SetPrevValue(TCIMValue(2u));
  EXPECT_EQ(9u, static_cast<unsigned int>(count.GetValue()));
  EXPECT_EQ(3u, static_cast<unsigned int>(count.GetPrevValue()));
  EXPECT_EQ(3u, static_cast<unsigned int>(copy.GetPrevValue()));
  EXPECT_EQ(9u, static_cast<unsigned int>(assigned.GetValue()));

  // Comparison goes by name, then by the own value only.
  TCIMProperty& nine = count;
  TCIMProperty three(*fCount, TCIMValue(3u));
  TCIMProperty second(Property(*fSystem, "COUNT2", TCIMValue(0u)), TCIMValue(1u));
  EXPECT_TRUE(nine == TCIMProperty(*fCount, TCIMValue(9u)));
  EXPECT_FALSE(nine == three);
  EXPECT_TRUE(three < nine && !(nine < three));
  EXPECT_TRUE(nine < second && !(second < three)); // "count" < "count2" whatever the values.
}
