// Status codes, their names and the exception.
#include "ZelTest.h"

#include "TRootObject.h"

#include <cstring>

TEST(StatusTest, TableNamesEveryCodeByItsEnumerator) {
  EXPECT_STREQ(zelTranslateStatusCode(zelStatusOK), "zelStatusOK");
  EXPECT_STREQ(zelTranslateStatusCode(zelStatusFail), "zelStatusFail");
  EXPECT_STREQ(zelTranslateStatusCode(static_cast<zelStatusCode>(21)), "zelStatusInvalidDateTime");
  EXPECT_STREQ(zelTranslateStatusCode(static_cast<zelStatusCode>(29)), "zelStatusInvalidGzipFile");
  EXPECT_STREQ(zelTranslateStatusCode(static_cast<zelStatusCode>(37)),
               "zelStatusContainerMismatch");
  EXPECT_STREQ(zelTranslateStatusCode(zelStatusEnd), "zelStatusEnd");
  EXPECT_EQ(zelStatusEnd, 38);
  EXPECT_EQ(zelStatusValueIsNULL, 32);
  EXPECT_EQ(kZELErrorMessages[34], std::string("zelStatusConnectionFailed"));
  EXPECT_EQ(sizeof(zelStatusCode), 4u);
}

TEST(StatusTest, ExceptionCarriesOnlyItsCode) {
  try {
    throw TZELException(zelStatusInvalidDateTime);
  } catch (std::exception const& e) {
    EXPECT_STREQ(e.what(), "zelStatusInvalidDateTime");
    EXPECT_EQ(dynamic_cast<TZELException const&>(e).GetCode(), zelStatusInvalidDateTime);
  }
}

TEST(StatusTest, RootAccessorsCreateNothingOnDemand) {
  CoreInit(); // A no-op that hosts may call.
  EXPECT_EQ(TRootObject::GetQueryManager(), nullptr);
  EXPECT_EQ(TRootObject::GetPluginManager(), nullptr);
  EXPECT_NE(TRootObject::GetCoreLogger(), nullptr); // Created by the test environment.
}
