#include "rqxml/encoding/ExtNameStr.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "rqxml/encoding/RQMEMConverter.h"

namespace {

using namespace RQMEM_NAMESPACE;

// The system encoding is CP1252 here: the process has no locale.
class Name : public testing::Test {
 protected:
  Name() {
    QULTMBSetDefaultConverter("1252");
    SetUTF8mode(1);
  }
  ~Name() override {
    SetUTF8mode(1);
    QULTMBSetDefaultConverter("UTF-8");
  }

  static ExtNameStr Of(const std::string& utf8) {
    ExtNameStr name;
    name.SetU8(utf8);
    return name;
  }

  const QULTMBConverterHandle japanese_{QULTMBConverterNew_8("932")};
};

TEST_F(Name, NewOneIsEmptyInEveryForm) {
  const ExtNameStr name;
  EXPECT_TRUE(name.Empty());
  EXPECT_EQ(name.ErrorCode(), 0);
  EXPECT_EQ(name.GetU8() + name.GetCP() + name.GetGeneric() + name.GetSystem() + name.GetCP(nullptr), "");
  EXPECT_EQ(name.GetU16(), L"");
  EXPECT_STREQ(name.GetU8Z(), "");
  EXPECT_STREQ(name.GetCPZ(), "");
  EXPECT_STREQ(name.GetGenericZ(), "");
  EXPECT_STREQ(name.GetSystemZ(), "");
  EXPECT_STREQ(name.GetU16Z(), L"");
}

TEST_F(Name, SetFromUtf8HasEveryForm) {
  const ExtNameStr name = Of("caf\u00e9");
  EXPECT_FALSE(name.Empty());
  EXPECT_EQ(name.GetU8(), "caf\u00e9");
  EXPECT_STREQ(name.GetU8Z(), "caf\u00e9");
  EXPECT_EQ(name.GetCP(), "caf\xE9");
  EXPECT_STREQ(name.GetCPZ(), "caf\xE9");
  EXPECT_EQ(name.GetSystem(), "caf\xE9");
  EXPECT_STREQ(name.GetSystemZ(), "caf\xE9");
  EXPECT_EQ(name.GetU16(), L"caf\u00e9");
  EXPECT_STREQ(name.GetU16Z(), L"caf\u00e9");
  EXPECT_EQ(name.ErrorCode(), 0);
}

TEST_F(Name, CharacterThatTheCodePageLacksIsAQuestionMarkAndNoError) {
  const ExtNameStr name = Of("a\u4e2d");
  EXPECT_EQ(name.GetCP(), "a?");
  EXPECT_EQ(name.GetSystem(), "a?");
  EXPECT_EQ(name.ErrorCode(), 0);
}

TEST_F(Name, MalformedUtf8IsTheErrorOfTheUtf16Form) {
  const ExtNameStr name = Of("a\xFFz");
  EXPECT_EQ(name.GetU8(), "a\xFFz");
  EXPECT_EQ(name.GetU16(), L"a");
  EXPECT_EQ(name.GetCP(), "a?z");
  EXPECT_EQ(name.ErrorCode(), 3);
}

TEST_F(Name, SetFromACodePage) {
  ExtNameStr name;
  name.SetCP("\x82\xA0", japanese_.Get());
  EXPECT_EQ(name.GetU8(), "\u3042");
  EXPECT_EQ(name.GetCP(), "?");
  EXPECT_EQ(name.ErrorCode(), 0);
  name.SetCP("\xE9", nullptr);
  EXPECT_EQ(name.GetU8(), "\u00e9");
}

TEST_F(Name, SetFromACodePageWithoutConverterUsesTheDefaultOne) {
  ASSERT_TRUE(QULTMBSetDefaultConverter("932"));
  ExtNameStr name;
  name.SetCP("\x82\xA0", nullptr);
  EXPECT_EQ(name.GetU8(), "\u3042");
}

TEST_F(Name, ErrorOfTheSettersOwnConversionIsNotKept) {
  ExtNameStr name;
  name.SetCP("a\x82", japanese_.Get());
  EXPECT_EQ(name.GetU8(), "a?");
  EXPECT_EQ(name.ErrorCode(), 0);
}

TEST_F(Name, SetFromGenericTextFollowsUtf8Mode) {
  ExtNameStr name;
  name.SetGeneric("\u00e9");
  EXPECT_EQ(name.GetU8(), "\u00e9");
  SetUTF8mode(0);
  name.SetGeneric("\xE9");
  EXPECT_EQ(name.GetU8(), "\u00e9");
}

TEST_F(Name, SetFromUtf16) {
  ExtNameStr name;
  name.SetU16(L"\u4e2d");
  EXPECT_EQ(name.GetU8(), "\u4e2d");
  EXPECT_EQ(name.GetU16(), L"\u4e2d");
}

TEST_F(Name, GenericIsUtf8InUtf8ModeAndTheCodePageOtherwise) {
  const ExtNameStr name = Of("caf\u00e9");
  EXPECT_EQ(&name.GetGeneric(), &name.GetU8());
  EXPECT_STREQ(name.GetGenericZ(), "caf\u00e9");
  SetUTF8mode(0);
  EXPECT_EQ(&name.GetGeneric(), &name.GetCP());
  EXPECT_STREQ(name.GetGenericZ(), "caf\xE9");
}

TEST_F(Name, SetFromTheSystemEncodingKeepsTheOldUtf16) {
  ExtNameStr name = Of("old");
  name.SetSystem("caf\xE9");
  EXPECT_EQ(name.GetSystem(), "caf\xE9");
  EXPECT_EQ(name.GetU8(), "caf\u00e9");
  EXPECT_EQ(name.GetCP(), "caf\xE9");
  EXPECT_EQ(name.GetU16(), L"old");
  EXPECT_EQ(name.ErrorCode(), 0);
}

TEST_F(Name, SetFromTheSystemEncodingReportsTheCodePageForm) {
  QULTMBSetDefaultConverter("US-ASCII");
  ExtNameStr name;
  name.SetSystem("caf\xE9");
  EXPECT_EQ(name.GetCP(), "caf?");
  EXPECT_EQ(name.ErrorCode(), 3);
}

TEST_F(Name, CodePageFormFollowsTheDefaultConverter) {
  const ExtNameStr name = Of("\u3042");
  EXPECT_EQ(name.GetCP(), "?");
  QULTMBSetDefaultConverter("932");
  EXPECT_EQ(name.GetCP(), "\x82\xA0");
  EXPECT_STREQ(name.GetCPZ(), "\x82\xA0");
  EXPECT_EQ(name.ErrorCode(), 3) << "the system form lacks it";
  SetUTF8mode(0);
  QULTMBSetDefaultConverter("1252");
  EXPECT_EQ(name.GetGeneric(), "?");
}

TEST_F(Name, CodePageFormOfAChosenConverterIsMadeAfreshAndRecorded) {
  const ExtNameStr name = Of("\u3042");
  EXPECT_EQ(name.GetCP(japanese_.Get()), "\x82\xA0");
  EXPECT_EQ(name.ErrorCode(), 0);
  EXPECT_EQ(name.GetCP(nullptr), "?");
  EXPECT_EQ(name.ErrorCode(), 3);
}

TEST_F(Name, ClearEmptiesEveryFormAndTheError) {
  ExtNameStr name = Of("a\xFF");
  name.Clear();
  EXPECT_TRUE(name.Empty());
  EXPECT_EQ(name.GetU8() + name.GetCP() + name.GetSystem(), "");
  EXPECT_EQ(name.GetU16(), L"");
  EXPECT_EQ(name.ErrorCode(), 0);
}

TEST_F(Name, MayBeSetFromItsOwnForms) {
  ExtNameStr name = Of("caf\u00e9");
  name.SetU8(name.GetU8());
  EXPECT_EQ(name.GetU8(), "caf\u00e9");
  name.SetCP(name.GetCP(), nullptr);
  EXPECT_EQ(name.GetU8(), "caf\u00e9");
  name.SetU16(name.GetU16());
  EXPECT_EQ(name.GetU8(), "caf\u00e9");
  name.SetGeneric(name.GetGeneric());
  EXPECT_EQ(name.GetU8(), "caf\u00e9");
  name.SetSystem(name.GetSystem());
  EXPECT_EQ(name.GetU8(), "caf\u00e9");
  name.SetSystem(name.GetU8());
  EXPECT_EQ(name.GetSystem(), "caf\u00e9");
}

TEST_F(Name, KeepsZeros) {
  const std::string text("a\0b", 3);
  const ExtNameStr name = Of(text);
  EXPECT_EQ(name.GetU8(), text);
  EXPECT_EQ(name.GetCP(), text);
  EXPECT_EQ(name.GetU16().size(), 3U);
}

TEST_F(Name, CopyHasAllFormsAndTheError) {
  ExtNameStr name = Of("a\xFF");
  const ExtNameStr copy(name);
  name.SetU8("other");
  EXPECT_EQ(copy.GetU8(), "a\xFF");
  EXPECT_EQ(copy.GetCP(), "a?");
  EXPECT_EQ(copy.GetU16(), L"a");
  EXPECT_EQ(copy.ErrorCode(), 3);
  ExtNameStr assigned;
  assigned = copy;
  EXPECT_EQ(assigned.ErrorCode(), 3);
  EXPECT_EQ(assigned.GetSystem(), "a?");
}

TEST_F(Name, CopyOfAStaleNameIsRefreshedByItself) {
  const ExtNameStr name = Of("\u3042");
  const ExtNameStr copy = name;
  QULTMBSetDefaultConverter("932");
  EXPECT_EQ(copy.GetCP(), "\x82\xA0");
}

TEST_F(Name, CopyIsAsFreshAsItsOriginal) {
  const ExtNameStr name = Of("\u4e2d");
  const ExtNameStr copy = name;
  EXPECT_EQ(copy.GetCP(), "?");
  EXPECT_EQ(copy.ErrorCode(), 0);  // a refresh would have recorded 3
}

TEST_F(Name, RefreshRecordsTheCodePageFormsErrorBeforeTheSystemForms) {
  const ExtNameStr name = Of("\u00e9");
  ASSERT_TRUE(QULTMBSetDefaultConverter("US-ASCII"));
  EXPECT_EQ(name.GetCP(), "?");
  EXPECT_EQ(name.ErrorCode(), 3);  // the system form has it
  EXPECT_EQ(name.GetSystem(), "\xE9");
}

TEST_F(Name, RefreshLeavesUtf16) {
  ExtNameStr name = Of("before");
  name.SetSystem("after");
  ASSERT_TRUE(QULTMBSetDefaultConverter("1252"));
  EXPECT_EQ(name.GetCP(), "after");
  EXPECT_EQ(name.GetU16(), L"before");
}

TEST_F(Name, SetFromTheSystemEncodingIsFreshAfterwards) {
  const QULTMBConverterHandle latin(QULTMBConverterNew_8("1252"));
  ExtNameStr name = Of("a");
  ASSERT_TRUE(QULTMBSetDefaultConverter("US-ASCII"));
  name.SetSystem("\xE9");
  EXPECT_EQ(name.ErrorCode(), 3);
  EXPECT_EQ(name.GetCP(latin.Get()), "\xE9");
  EXPECT_EQ(name.GetCP(), "?");
  EXPECT_EQ(name.ErrorCode(), 0);  // a refresh would have recorded 3
}

TEST_F(Name, CodePageFormOfAChosenConverterIsNotKept) {
  const ExtNameStr name = Of("\u3042");
  EXPECT_EQ(name.GetCP(japanese_.Get()), "\x82\xA0");
  EXPECT_EQ(name.GetCP(), "?");
}

TEST_F(Name, SetFromMalformedUtf16KeepsWhatStandsBefore) {
  ExtNameStr name;
  name.SetU16(std::wstring{L'a', 0xD800, L'b'});
  EXPECT_EQ(name.GetU8(), "a");
  EXPECT_EQ(name.GetU16(), L"a");
  EXPECT_EQ(name.ErrorCode(), 0);
}

TEST_F(Name, AssignmentToItselfDoesNothing) {
  ExtNameStr name = Of("a");
  const ExtNameStr& same = name;
  name = same;
  EXPECT_EQ(name.GetU8(), "a");
}

TEST_F(Name, MovedFromOneIsEmptyAndUsable) {
  ExtNameStr name = Of("a\u00e9");
  ExtNameStr moved(std::move(name));
  EXPECT_EQ(moved.GetCP(), "a\xE9");
  EXPECT_TRUE(name.Empty());
  EXPECT_EQ(name.ErrorCode(), 0);
  name.SetU8("b");
  moved = std::move(name);
  EXPECT_EQ(moved.GetU8(), "b");
  const ExtNameStr copyOfMoved(name);
  EXPECT_TRUE(copyOfMoved.Empty());
  static_assert(std::is_nothrow_move_constructible_v<ExtNameStr> && std::is_nothrow_move_assignable_v<ExtNameStr>);
}

TEST_F(Name, SwapExchanges) {
  ExtNameStr a = Of("a");
  ExtNameStr b = Of("b");
  swap(a, b);
  EXPECT_EQ(a.GetCP() + b.GetCP(), "ba");
  a.Swap(b);
  EXPECT_EQ(a.GetCP() + b.GetCP(), "ab");
}

TEST_F(Name, IsComparedByItsCodePoints) {
  const ExtNameStr first = Of("a");
  const ExtNameStr last = Of("\U0001F600");
  EXPECT_TRUE(first == Of("a") && !(first != Of("a")));
  EXPECT_TRUE(first != last && !(first == last));
  EXPECT_TRUE(first < last && first <= last && last > first && last >= first);
  EXPECT_FALSE(last < first || last <= first || first > last || first >= last);
  EXPECT_TRUE(Of("\uFF71") < last);
}

}  // namespace
