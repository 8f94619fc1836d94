// References: building, path text, resolution, reference values and the C functions.
#include "SchemaHelpers.h"

#include "TCIMDateTime.h"
#include "plugins/cwrappers.h"
#include "plugins/zeliIOHandle.h"

class ReferenceTest : public SchemaTest {
protected:
  ReferenceTest() : fFoo(fContainer.AllocateClass("Foo", 0)) {
    Property(*fFoo, "Name", TCIMValue(TCIMType::kString, 0), true);
    Property(*fFoo, "Id", TCIMValue(TCIMType::kUint32, 0), true);
    Property(*fFoo, "Caption", TCIMValue(TCIMType::kString, 0));
    TCIMPropertyDecl& slot = Property(*fFoo, "Slot", TCIMValue(TCIMType::kUint32, 0));
    Qualify(slot, fContainer, "KEY", TCIMValue(false));
    fFoo->AddToContainer();
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

  TCIMClass* fFoo;
};

TEST_F(ReferenceTest, PathTextQuotesEveryValueInKeyOrderResolvesComparesAndCopies) {
  TCIMReference path = FooPath("a", 3);
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", path.GetPath());
  path.AddKeyValue("Name", TCIMValue("b")); // The first binding is kept.
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", path.GetPath());
  TCIMReference bare(&fContainer);
  bare.SetClass(*fFoo);
  EXPECT_EQ("Foo", bare.GetPath());
  EXPECT_EQ(fFoo, bare.GetCIMElement());

  TCIMInstance& instance = AddFoo("a", 3);
  TCIMReference a3 = FooPath("a", 3);
  EXPECT_EQ(&instance, a3.GetCIMElement());
  TCIMReference a4 = FooPath("a", 4);
  EXPECT_ZEL_THROW(a4.GetCIMElement(), zelStatusNotFound);

  EXPECT_TRUE(a3 == FooPath("a", 3));
  EXPECT_TRUE(!(a3 == a4) && a3 < a4 && !(a4 < a3));
  TCIMReference system(&fContainer);
  system.SetClass(*fSystem);
  EXPECT_EQ(fFoo < fSystem, a3 < system); // Classes order by identity.
  TCIMReference copy(a3);
  copy.Clear();
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", a3.GetPath());
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
  EXPECT_ZEL_THROW(path.SetClassName("Zel_System"), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] SetClassName() called with keybindings filled in");
  EXPECT_ZEL_THROW(path.SetClass(*fSystem), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] SetClass() called with keybindings filled in");
  EXPECT_EQ(fFoo, path.GetClass());

  EXPECT_ZEL_THROW(path.AddKeyValue("Caption", TCIMValue("x")), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] AddKeyValue() called with a non-key property Caption");
  EXPECT_ZEL_THROW(path.AddKeyValue("Slot", TCIMValue(1u)), zelStatusInvalidOpSequence);
  EXPECT_LOGGED("ZEL_Core: [Error] AddKeyValue() called with a non-key property Slot");
  EXPECT_ZEL_THROW(path.AddKeyValue("Id", TCIMValue((unsigned short)3)), zelStatusTypeMismatch);
  EXPECT_LOGGED("ZEL_Core: [Error] Declaration type: uint32 Value type: uint16");
  EXPECT_EQ(2u, path.EnumerateKeyBindings().size());

  path.Clear(); // Drops the container, the class and the bindings.
  path.SetContainer(&fContainer);
  path.SetClassName("FOO");
  EXPECT_EQ("Foo", path.GetPath());
}

TEST_F(ReferenceTest, ReferenceValuesResolveFirst) {
  TCIMInstance& a3 = AddFoo("a", 3);
  TCIMValue value(FooPath("a", 3));
  EXPECT_EQ(fFoo, value.GetReferencedClass());
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", value.ToString(10));
  EXPECT_EQ(&a3, static_cast<TCIMReference>(value).GetCIMElement());

  TCIMValue number(5u);
  EXPECT_ZEL_THROW(number.Set(FooPath("zz", 9)), zelStatusNotFound);
  EXPECT_TRUE(number.IsNull() && number.GetType() == TCIMType::kReference);
  EXPECT_ZEL_THROW(static_cast<TCIMReference>(number), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(static_cast<TCIMReference>(TCIMValue(1u)), zelStatusTypeMismatch);

  TCIMValue classless;
  EXPECT_ZEL_THROW(classless.Set(TCIMReference(&fContainer)), zelStatusInvalidReference);
  EXPECT_FALSE(classless.IsNull()); // The new body stays in place.
  // The constructor fails the same way and leaves no body behind (the leak check sees it).
  EXPECT_ZEL_THROW(TCIMValue{TCIMReference(&fContainer)}, zelStatusInvalidReference);

  std::string text = "Foo.Id=\"3\",Name=\"a\"";
  EXPECT_ZEL_THROW(TCIMValue(TCIMType::kReference, text, fContainer), zelStatusNotImplemented);
}

TEST_F(ReferenceTest, CFunctionsBuildReferencesWithKeysOfEveryType) {
  TCIMReference* ref = 0;
  zelIOHandle handle(&fContainer, 0);
  zelCIMValueArray* array = 0;
  ASSERT_EQ(zelStatusOK, zelNewCIMReference(&ref, &handle));
  ASSERT_EQ(zelStatusOK, zelNewCIMValueArray(&array));
  TCIMReference target = FooPath("a", 3);
  TCIMReference nowhere = FooPath("zz", 1);
  struct Row { zelStatusCode status; const char* log; } nulls[] = {
      {zelNewCIMReference(0, 0), "zelNewCIMReference: NULL zelIOHandle parameter"},
      {zelNewCIMReference(0, &handle), "zelNewCIMReference: NULL ref parameter"},
      {zelSetReferencePath(ref, 0), "zelSetReferencePath: NULL ref and/or objectName parameter"},
      {zelSetReferenceClassName(0, "Foo"),
       "zelSetReferenceClassName: NULL ref and/or className parameter"},
      {zelReferenceAddString(ref, "Name", 0),
       "zelReferenceAddString: NULL ref, key and/or value parameter"},
      {zelReferenceAddReference(ref, "Name", 0),
       "zelReferenceAddReference: NULL ref, key and/or value parameter"},
      {zelReferenceAddDateTime(0, "Name", 0),
       "zelReferenceAddDateTime: NULL ref, key and/or value parameter"},
      {zelReferenceAddBoolean(ref, 0, 1), "zelReferenceAddBoolean: NULL ref and/or key parameter"},
      {zelReferenceAddSint8(0, "Id", 1), "zelReferenceAddSint8: NULL ref and/or key parameter"},
      {zelReferenceAddUint64(0, "Id", 1), "zelReferenceAddUint64: NULL ref and/or key parameter"},
      {zelDeleteCIMReference(0), "zelDeleteCIMReference: NULL ref parameter"},
      {zelArrayAddReference(0, &target), "zelArrayAddReference: NULL array and/or value parameter"},
  };
  for (const Row& row : nulls) {
    SCOPED_TRACE(row.log);
    EXPECT_ZEL_STATUS(row.status, zelStatusFail);
    EXPECT_LOGGED(std::string("ZEL_Core: [Error] ") + row.log);
  }

  TCIMClass& wide = *fContainer.AllocateClass("Zel_Wide", 0);
  Qualify(wide, fContainer, "ASSOCIATION", TCIMValue(true));
  std::pair<const char*, TCIMType::ECIMType> keys[] = {
      {"B", TCIMType::kBoolean},  {"U8", TCIMType::kUint8},       {"S8", TCIMType::kSint8},
      {"S32", TCIMType::kSint32}, {"U64", TCIMType::kUint64},     {"S64", TCIMType::kSint64},
      {"Str", TCIMType::kString}, {"Stamp", TCIMType::kDateTime}, {"U16", TCIMType::kUint16},
      {"S16", TCIMType::kSint16}, {"U32", TCIMType::kUint32}};
  for (const auto& key : keys)
    Property(wide, key.first, TCIMValue(key.second, 0), true);
  Property(wide, "Link", Pointing(*fFoo), true);
  wide.AddToContainer();
  AddFoo("a", 3);
  EXPECT_ZEL_STATUS(zelSetReferencePath(ref, "Zel_Wide.B=\"true\""), zelStatusNotImplemented);
  EXPECT_ZEL_STATUS(zelReferenceAddString(ref, "Str", "a"), zelStatusInvalidOpSequence);
  ASSERT_EQ(zelStatusOK, zelSetReferenceClassName(ref, "Zel_Wide"));
  TCIMDateTime stamp("20240102030405.000006+060");
  zelStatusCode added[] = {
      zelReferenceAddBoolean(ref, "B", 2),    zelReferenceAddUint8(ref, "U8", 200),
      zelReferenceAddSint8(ref, "S8", -8),    zelReferenceAddSint32(ref, "S32", -32),
      zelReferenceAddUint64(ref, "U64", 64),  zelReferenceAddSint64(ref, "S64", -64),
      zelReferenceAddUint16(ref, "U16", 16),  zelReferenceAddSint16(ref, "S16", -16),
      zelReferenceAddUint32(ref, "U32", 32),  zelReferenceAddString(ref, "Str", "s"),
      zelReferenceAddDateTime(ref, "Stamp", &stamp),
      zelReferenceAddReference(ref, "Link", &target)};
  for (zelStatusCode status : added)
    EXPECT_ZEL_STATUS(status, zelStatusOK);
  EXPECT_ZEL_STATUS(zelReferenceAddSint64(ref, "U64", 1), zelStatusTypeMismatch);
  EXPECT_ZEL_STATUS(zelReferenceAddReference(ref, "Link", &nowhere), zelStatusNotFound);
  EXPECT_EQ("Zel_Wide.B=\"true\",Link=\"Foo.Id=\"3\",Name=\"a\"\",S16=\"-16\",S32=\"-32\","
            "S64=\"-64\",S8=\"-8\",Stamp=\"20240102030405.000006+060\",Str=\"s\",U16=\"16\","
            "U32=\"32\",U64=\"64\",U8=\"200\"",
            ref->GetPath());
  EXPECT_ZEL_STATUS(zelDeleteCIMReference(ref), zelStatusOK);

  // Value arrays take references that resolve.
  EXPECT_ZEL_STATUS(zelArrayAddReference(array, &target), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddReference(array, &nowhere), zelStatusNotFound);
  ASSERT_EQ(1u, array->fValues.size());
  EXPECT_EQ("Foo.Id=\"3\",Name=\"a\"", array->fValues[0].ToString(10));
  zelDeleteCIMValueArray(array);
}
