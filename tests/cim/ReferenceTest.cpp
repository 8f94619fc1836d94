// References: building by fields, the path text, resolution, comparison, reference values
// and the C functions that build references.
#include "ZelTest.h"
#include "helpers.h"

#include "TCIMDateTime.h"
#include "cwrappers.h"
#include "zeliIOHandle.h"

#include <vector>

class ReferenceTest : public ZelTest {
protected:
  ReferenceTest() {
    DeclareStandardQualifiers(fContainer);
    fFoo = &NewClass(fContainer, "Foo");
    Property(*fFoo, "Name", TCIMValue(T::kString, 0), true);
    Property(*fFoo, "Id", TCIMValue(T::kUint32, 0), true);
    Property(*fFoo, "Caption", TCIMValue(T::kString, 0));
    TCIMPropertyDecl& notKey = Property(*fFoo, "Slot", TCIMValue(T::kUint32, 0));
    Qualify(notKey, fContainer, "KEY", TCIMValue(false));
    fFoo->AddToContainer();
    fBar = &KeyedClass(fContainer, "Bar");
  }

  TCIMReference FooPath(const std::string& name, unsigned int id) {
    TCIMReference path(&fContainer);
    path.SetClassName("foo");
    path.AddKeyValue("Name", TCIMValue(name));
    path.AddKeyValue("Id", TCIMValue(id));
    return path;
  }

  TCIMInstance& AddFoo(const std::string& name, unsigned int id) {
    TCIMInstance* foo = fContainer.AllocateInstance(fFoo);
    foo->SetPropertyValue("Name", TCIMValue(name));
    foo->SetPropertyValue("Id", TCIMValue(id));
    foo->AddToContainer();
    return *foo;
  }

  TContainer fContainer;
  TCIMClass* fFoo;
  TCIMClass* fBar;
};

TEST_F(ReferenceTest, PathTextQuotesEveryValueInKeyOrder) {
  TCIMReference path = FooPath("a", 3);
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", path.GetPath());
  EXPECT_EQ("Foo", path.GetClassName());
  EXPECT_EQ(fFoo, path.GetClass());
  TCIMReference bare(&fContainer);
  bare.SetClass(*fFoo);
  EXPECT_EQ("Foo", bare.GetPath());

  TCIMReference::TKeyBindings keys = path.EnumerateKeyBindings();
  ASSERT_EQ(2u, keys.size());
  EXPECT_EQ("Id", keys.begin()->first);
  path.AddKeyValue("Name", TCIMValue("b")); // The first binding is kept.
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", path.GetPath());
  bare.SetKeyBindings(keys);
  EXPECT_EQ(path.GetPath(), bare.GetPath());
}

TEST_F(ReferenceTest, BuildingOrderIsEnforced) {
  TCIMReference loose(nullptr);
  EXPECT_ZEL_THROW(loose.SetClassName("Foo"), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] SetClassName() called before container set");
  EXPECT_ZEL_THROW(loose.AddKeyValue("Name", TCIMValue("a")), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] AddKeyValue() called before class set");
  EXPECT_ZEL_THROW(loose.GetClass(), zelStatusInvalidReference);
  EXPECT_LOGGED("ZEL_Core: [Error] GetClass() called before container set");
  EXPECT_ZEL_THROW(loose.SetPath("Foo.Name=\"a\""), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] SetPath() called before container set");

  TCIMReference path = FooPath("a", 3);
  EXPECT_ZEL_THROW(path.SetPath("Foo"), zelStatusNotImplemented);
  EXPECT_ZEL_THROW(TCIMReference(&fContainer, "Foo.Id=\"3\""), zelStatusNotImplemented);
  EXPECT_ZEL_THROW(path.SetClassName("Bar"), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] SetClassName() called with keybindings filled in");
  EXPECT_ZEL_THROW(path.SetClass(*fBar), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] SetClass() called with keybindings filled in");
  EXPECT_EQ(fFoo, path.GetClass());

  EXPECT_ZEL_THROW(path.AddKeyValue("Caption", TCIMValue("x")), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] AddKeyValue() called with a non-key property Caption");
  EXPECT_ZEL_THROW(path.AddKeyValue("Slot", TCIMValue(1u)), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] AddKeyValue() called with a non-key property Slot");
  EXPECT_ZEL_THROW(path.AddKeyValue("Id", TCIMValue((unsigned short)3)), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] Declaration type: uint32 Value type: uint16");
  EXPECT_ZEL_THROW(path.AddKeyValue("Missing", TCIMValue(1u)), zelStatusNotFound);
  EXPECT_ZEL_THROW(path.SetClassName("Missing"), zelStatusInvalidOpSequence);
  EXPECT_EQ(2u, path.EnumerateKeyBindings().size());

  path.Clear();
  EXPECT_ZEL_THROW(path.SetClassName("Foo"), zelStatusInvalidOpSequence); // No container now.
  path.SetContainer(&fContainer);
  path.SetClassName("FOO");
  EXPECT_EQ("Foo", path.GetPath());
  EXPECT_ZEL_THROW(path.SetClassName("Missing"), zelStatusNotFound);
}

TEST_F(ReferenceTest, ResolvesToTheClassOrTheInstance) {
  TCIMReference bare(&fContainer);
  bare.SetClass(*fFoo);
  EXPECT_EQ(fFoo, bare.GetCIMElement());
  TCIMInstance& a3 = AddFoo("a", 3);
  TCIMReference path = FooPath("a", 3);
  EXPECT_EQ(&a3, path.GetCIMElement());
  EXPECT_EQ(&a3, path.GetCIMElement());
  TCIMReference missing = FooPath("a", 4);
  EXPECT_ZEL_THROW(missing.GetCIMElement(), zelStatusNotFound);
}

TEST_F(ReferenceTest, ComparisonAndCopies) {
  TCIMReference a3 = FooPath("a", 3);
  TCIMReference again = FooPath("a", 3);
  TCIMReference a4 = FooPath("a", 4);
  EXPECT_TRUE(a3 == again);
  EXPECT_FALSE(a3 == a4);
  EXPECT_TRUE(a3 < a4);
  EXPECT_FALSE(a4 < a3);
  TCIMReference bar(&fContainer);
  bar.SetClass(*fBar);
  EXPECT_NE(a3 < bar, bar < a3); // Classes order by identity.
  EXPECT_EQ(fFoo < fBar, a3 < bar);

  TCIMReference copy(a3);
  EXPECT_NE(copy.GetBody(), a3.GetBody());
  copy.Clear();
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", a3.GetPath());
  copy = a4;
  EXPECT_TRUE(copy == a4);
}

TEST_F(ReferenceTest, ReferenceValuesResolveFirst) {
  TCIMInstance& a3 = AddFoo("a", 3);
  TCIMValue value(FooPath("a", 3));
  EXPECT_TRUE(value.IsReference());
  EXPECT_EQ(fFoo, value.GetReferencedClass());
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", value.ToString(10));
  TCIMReference back = value;
  EXPECT_EQ(&a3, back.GetCIMElement());
  TCIMValue copy(value);
  EXPECT_TRUE(copy == value);
  EXPECT_EQ(fFoo, copy.GetReferencedClass());
  AddFoo("b", 3);
  EXPECT_TRUE(TCIMValue(FooPath("a", 3)) < TCIMValue(FooPath("b", 3)));
  EXPECT_FALSE(TCIMValue(FooPath("b", 3)) == value);

  TCIMValue number(5u);
  EXPECT_ZEL_THROW(number.Set(FooPath("zz", 9)), zelStatusNotFound);
  EXPECT_TRUE(number.IsNull());
  EXPECT_EQ(T::kReference, number.GetType());
  EXPECT_ZEL_THROW(static_cast<TCIMReference>(number), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(static_cast<TCIMReference>(TCIMValue(1u)), zelStatusTypeMismatch);

  TCIMValue classless;
  EXPECT_ZEL_THROW(classless.Set(TCIMReference(&fContainer)), zelStatusInvalidReference);
  EXPECT_LOGGED("ZEL_Core: [Error] GetClass() called before container set");
  EXPECT_FALSE(classless.IsNull()); // The new body stays in place.

  std::string text = "Foo.Id=\"3\",Name=\"a\"";
  EXPECT_ZEL_THROW(TCIMValue(T::kReference, text, fContainer), zelStatusNotImplemented);
}

TEST_F(ReferenceTest, CFunctionsBuildReferences) {
  TCIMReference* ref = 0;
  EXPECT_ZEL_STATUS(zelNewCIMReference(0, 0), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelNewCIMReference: NULL zelIOHandle parameter");
  zelIOHandle handle(&fContainer, 0);
  EXPECT_ZEL_STATUS(zelNewCIMReference(0, &handle), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelNewCIMReference: NULL ref parameter");
  ASSERT_EQ(zelStatusOK, zelNewCIMReference(&ref, &handle));

  EXPECT_ZEL_STATUS(zelSetReferencePath(ref, "Foo.Id=\"3\""), zelStatusNotImplemented);
  EXPECT_ZEL_STATUS(zelSetReferencePath(ref, 0), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelSetReferencePath: NULL ref and/or objectName parameter");
  EXPECT_ZEL_STATUS(zelSetReferenceClassName(0, "Foo"), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelSetReferenceClassName: NULL ref and/or className "
                "parameter");
  EXPECT_ZEL_STATUS(zelReferenceAddString(ref, "Name", "a"), zelStatusInvalidOpSequence);
  EXPECT_ZEL_STATUS(zelSetReferenceClassName(ref, "Missing"), zelStatusNotFound);
  EXPECT_ZEL_STATUS(zelSetReferenceClassName(ref, "Foo"), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddString(ref, "Name", "a"), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddUint32(ref, "Id", 3), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddUint16(ref, "Slot", 3), zelStatusTypeMismatch);
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", ref->GetPath());

  EXPECT_ZEL_STATUS(zelReferenceAddString(ref, "Name", 0), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelReferenceAddString: NULL ref, key and/or value parameter");
  EXPECT_ZEL_STATUS(zelReferenceAddReference(ref, "Name", 0), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelReferenceAddReference: NULL ref, key and/or value "
                "parameter");
  EXPECT_ZEL_STATUS(zelReferenceAddDateTime(0, "Name", 0), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelReferenceAddDateTime: NULL ref, key and/or value "
                "parameter");
  EXPECT_ZEL_STATUS(zelReferenceAddBoolean(ref, 0, 1), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelReferenceAddBoolean: NULL ref and/or key parameter");
  EXPECT_ZEL_STATUS(zelReferenceAddSint8(0, "Id", 1), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelReferenceAddSint8: NULL ref and/or key parameter");
  EXPECT_ZEL_STATUS(zelReferenceAddUint64(0, "Id", 1), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelReferenceAddUint64: NULL ref and/or key parameter");
  EXPECT_ZEL_STATUS(zelReferenceAddSint64(ref, "Id", 1), zelStatusTypeMismatch);

  EXPECT_ZEL_STATUS(zelDeleteCIMReference(0), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelDeleteCIMReference: NULL ref parameter");
  EXPECT_ZEL_STATUS(zelDeleteCIMReference(ref), zelStatusOK);
}

TEST_F(ReferenceTest, KeysOfEveryTypeFromC) {
  TCIMClass& wide = NewClass(fContainer, "Zel_Wide");
  const char* names[] = {"B", "U8", "S8", "U16", "S16", "U32", "S32", "U64", "S64", "Str",
                         "Stamp", "Link"};
  TCIMValue types[] = {TCIMValue(T::kBoolean, 0), TCIMValue(T::kUint8, 0),
                       TCIMValue(T::kSint8, 0),   TCIMValue(T::kUint16, 0),
                       TCIMValue(T::kSint16, 0),  TCIMValue(T::kUint32, 0),
                       TCIMValue(T::kSint32, 0),  TCIMValue(T::kUint64, 0),
                       TCIMValue(T::kSint64, 0),  TCIMValue(T::kString, 0),
                       TCIMValue(T::kDateTime, 0)};
  Qualify(wide, fContainer, "ASSOCIATION", TCIMValue(true));
  for (int i = 0; i < 11; ++i)
    Property(wide, names[i], types[i], true);
  ReferenceProperty(wide, names[11], *fFoo);
  wide.AddToContainer();
  AddFoo("a", 3);

  zelIOHandle handle(&fContainer, 0);
  TCIMReference* ref = 0;
  ASSERT_EQ(zelStatusOK, zelNewCIMReference(&ref, &handle));
  ASSERT_EQ(zelStatusOK, zelSetReferenceClassName(ref, "Zel_Wide"));
  TCIMDateTime stamp("20240102030405.000006+060");
  TCIMReference target = FooPath("a", 3);
  EXPECT_ZEL_STATUS(zelReferenceAddBoolean(ref, "B", 2), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddUint8(ref, "U8", 200), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddSint8(ref, "S8", -8), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddUint16(ref, "U16", 16), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddSint16(ref, "S16", -16), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddUint32(ref, "U32", 32), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddSint32(ref, "S32", -32), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddUint64(ref, "U64", 64), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddSint64(ref, "S64", -64), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddString(ref, "Str", "s"), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddDateTime(ref, "Stamp", &stamp), zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddReference(ref, "Link", &target), zelStatusOK);
  EXPECT_EQ("Zel_Wide.B=\"true\",Link=\"Foo.Id=\"3\",Name=\"a\"\",S16=\"-16\",S32=\"-32\","
            "S64=\"-64\",S8=\"-8\",Stamp=\"20240102030405.000006+060\",Str=\"s\","
            "U16=\"16\",U32=\"32\",U64=\"64\",U8=\"200\"",
            ref->GetPath());
  TCIMReference nowhere = FooPath("zz", 1);
  EXPECT_ZEL_STATUS(zelReferenceAddReference(ref, "Link", &nowhere), zelStatusNotFound);
  zelDeleteCIMReference(ref);
}

TEST_F(ReferenceTest, ArraysTakeResolvedReferences) {
  AddFoo("a", 3);
  zelCIMValueArray* array = 0;
  ASSERT_EQ(zelStatusOK, zelNewCIMValueArray(&array));
  TCIMReference path = FooPath("a", 3);
  TCIMReference nowhere = FooPath("b", 3);
  EXPECT_ZEL_STATUS(zelArrayAddReference(array, &path), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddReference(array, &nowhere), zelStatusNotFound);
  EXPECT_ZEL_STATUS(zelArrayAddReference(array, 0), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelArrayAddReference: NULL array and/or value parameter");
  EXPECT_ZEL_STATUS(zelArrayAddReference(0, &path), zelStatusFail);
  ASSERT_EQ(1u, array->fValues.size());
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", array->fValues[0].ToString(10));
  zelDeleteCIMValueArray(array);
}
