// What the first use in a process does. Each test runs in a child process, since it can be seen only once.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "rqxml/encoding/ExtNameStr.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"
#include "tests/support/test_locale.h"

namespace {

using namespace RQMEM_NAMESPACE;

// What the work prints in a process of its own.
std::string InChild(const std::function<std::string()>& work) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t child = fork();
  if (child == 0) {
    const std::string said = work();
    const bool written = write(ends[1], said.data(), said.size()) == static_cast<ssize_t>(said.size());
    _exit(written ? 0 : 1);
  }
  close(ends[1]);
  std::string said;
  char buffer[256];
  for (ssize_t count = 0; (count = read(ends[0], buffer, sizeof buffer)) > 0;)
    said.append(buffer, static_cast<std::size_t>(count));
  close(ends[0]);
  int outcome = 0;
  waitpid(child, &outcome, 0);
  return WIFEXITED(outcome) && WEXITSTATUS(outcome) == 0 ? said : "died: " + said;
}

std::string Locale(int category) { return std::setlocale(category, nullptr); }

std::string LcAll() {
  const char* const value = std::getenv("LC_ALL");
  return value == nullptr ? "unset" : value;
}

void FindTestLocales() { setenv("LOCPATH", RQXML_TEST_LOCALE_DIR, 1); }

// Makes one of the tests' locales the current one.
void UseTestLocale(const char* name, int category = LC_ALL) {
  FindTestLocales();
  std::setlocale(category, name);
}

TEST(FirstUse, EnableLocalePutsEnglishIntoTheEnvironmentOfAProgramWithoutLocale) {
  EXPECT_EQ(InChild([] {
              setenv("LOCPATH", "/no/locales/here", 1);
              unsetenv("LC_ALL");
              EnableLocale();
              return LcAll() + " " + Locale(LC_ALL);
            }),
            "en_US C");
}

TEST(FirstUse, EnableLocaleSetsAllCategoriesToEnglishTheNumbersToo) {
  EXPECT_EQ(InChild([] {
              FindTestLocales();
              EnableLocale();
              return Locale(LC_ALL);  // one name where the categories have the same
            }),
            "en_US");
}

TEST(FirstUse, EnableLocaleReplacesALocaleThatOnlyTheEnvironmentNames) {
  EXPECT_EQ(InChild([] {
              FindTestLocales();
              setenv("LC_ALL", "de_DE.UTF-8", 1);
              EnableLocale();
              return LcAll() + " " + Locale(LC_CTYPE);
            }),
            "en_US en_US");
}

TEST(FirstUse, EnableLocaleLooksAtTheLocaleOfCharactersAlone) {
  EXPECT_EQ(InChild([] {
              unsetenv("LC_ALL");
              UseTestLocale("de_DE.UTF-8", LC_TIME);
              EnableLocale();
              return LcAll() + " " + Locale(LC_TIME);
            }),
            "en_US en_US");
  EXPECT_EQ(InChild([] {
              unsetenv("LC_ALL");
              UseTestLocale("de_DE.UTF-8", LC_CTYPE);
              EnableLocale();
              return LcAll() + " " + Locale(LC_TIME);
            }),
            "unset C");
}

TEST(FirstUse, EnableLocaleKeepsAChosenLocaleButItsNumbers) {
  EXPECT_EQ(InChild([] {
              unsetenv("LC_ALL");
              UseTestLocale("de_DE.UTF-8");
              EnableLocale();
              return LcAll() + " " + Locale(LC_CTYPE) + " " + Locale(LC_NUMERIC);
            }),
            "unset de_DE.UTF-8 C");
}

TEST(FirstUse, OnlyTheFirstEnableLocaleDoesAnything) {
  EXPECT_EQ(InChild([] {
              UseTestLocale("de_DE.UTF-8");
              EnableLocale();
              std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
              EnableLocale();
              return Locale(LC_NUMERIC);
            }),
            "de_DE.UTF-8");
}

TEST(FirstUse, SystemEncodingIsWhatFollowsTheFirstPointOfTheLocale) {
  EXPECT_EQ(InChild([] {
              UseTestLocale("de_DE.UTF-8");
              return std::string(SystemEncoding());
            }),
            "UTF-8");
}

TEST(FirstUse, SystemEncodingGoesOnBehindASecondPoint) {
  EXPECT_EQ(InChild([] {
              UseTestLocale("de_DE.UTF-8@variant.2");
              return std::string(SystemEncoding());
            }),
            "UTF-8@variant.2");
}

struct AsksAtTheEnd {
  ~AsksAtTheEnd() { std::fputs(SystemEncoding(), stderr); }
};

TEST(FirstUse, SystemEncodingIsThereForTheDestructorsOfStaticObjects) {
  const auto work = [] {
    static const AsksAtTheEnd asks;
    UseTestLocale("de_DE.UTF-8@longer.than.a.string.itself");  // its memory would be released
    SystemEncoding();
    std::exit(0);
  };
  EXPECT_EXIT(work(), testing::ExitedWithCode(0), "^UTF-8@longer.than.a.string.itself$");
}

TEST(FirstUse, SystemEncodingOfALocaleWithoutPointIsCp1252) {
  EXPECT_EQ(InChild([] { return std::string(SystemEncoding()); }), "CP1252");
  EXPECT_EQ(InChild([] {
              UseTestLocale("en_US");
              return std::string(SystemEncoding());
            }),
            "CP1252");
}

TEST(FirstUse, SystemEncodingIsDecidedOnceAndStays) {
  EXPECT_EQ(InChild([] {
              const char* const first = SystemEncoding();
              UseTestLocale("de_DE.UTF-8");
              return std::string(SystemEncoding() == first ? "same " : "moved ") + SystemEncoding();
            }),
            "same CP1252");
}

TEST(FirstUse, SystemEncodingEnablesTheLocale) {
  EXPECT_EQ(InChild([] {
              unsetenv("LC_ALL");
              SystemEncoding();
              return LcAll();
            }),
            "en_US");
}

TEST(FirstUse, DefaultConverterIsCountedWhenItIsMade) {
  EXPECT_EQ(InChild([] {
              std::string counts = std::to_string(QULTMBDefaultConverterID());
              QULTMBGetDefaultConverter();
              counts += std::to_string(QULTMBDefaultConverterID());
              QULTMBGetDefaultConverter();
              return counts + std::to_string(QULTMBDefaultConverterID());
            }),
            "011");
}

TEST(FirstUse, NewConverterByUtf8NameMakesTheDefaultOne) {
  EXPECT_EQ(InChild([] {
              const QULTMBConverterHandle converter(QULTMBConverterNew_8("1252"));
              return std::to_string(QULTMBDefaultConverterID());
            }),
            "1");
}

TEST(FirstUse, NewConverterByLocalNameOrLikeTheDefaultMakesNone) {
  EXPECT_EQ(InChild([] {
              const QULTMBConverterHandle named(QULTMBConverterNew_C("1252"));
              const QULTMBConverterHandle like(QULTMBConverterNew_8(nullptr));
              return std::to_string(QULTMBDefaultConverterID()) + (named && like ? " both" : " not both");
            }),
            "0 both");
}

TEST(FirstUse, SettingADefaultConverterCountsOnce) {
  EXPECT_EQ(InChild([] {
              const bool refused = !QULTMBSetDefaultConverter("no such encoding");
              std::string counts = std::to_string(QULTMBDefaultConverterID());
              const bool taken = QULTMBSetDefaultConverter("1252");
              counts += std::to_string(QULTMBDefaultConverterID());
              return counts + (refused && taken ? " right" : " wrong");
            }),
            "01 right");
}

TEST(FirstUse, ConversionWithoutConverterMakesTheDefaultOne) {
  EXPECT_EQ(InChild([] {
              std::string converted;
              QULTMBU8ToCodePage(nullptr, converted, "a");
              return converted + std::to_string(QULTMBDefaultConverterID());
            }),
            "a1");
}

TEST(FirstUse, Utf8ModeIsOnAtTheStart) {
  EXPECT_EQ(InChild([] { return std::to_string(qUTF8mode()); }), "1");
}

TEST(FirstUse, NameSetBeforeTheDefaultConverterExistsIsReadInItsEncoding) {
  EXPECT_EQ(InChild([] {
              ExtNameStr name;
              name.SetU8("caf\u00e9");
              return name.GetCP() + " " + std::to_string(name.ErrorCode());
            }),
            "caf\u00e9 0");
}

TEST(FirstUse, NameThatMadeTheDefaultConverterIsRefreshedOnce) {
  EXPECT_EQ(InChild([] {
              ExtNameStr name;
              name.SetU8("\u4e2d");
              std::string said = std::to_string(name.ErrorCode());
              name.GetCP();
              said += std::to_string(name.ErrorCode());  // the system encoding lacks it
              name.GetCP(nullptr);
              said += std::to_string(name.ErrorCode());
              name.GetCP();
              return said + std::to_string(name.ErrorCode());
            }),
            "0300");
}

TEST(FirstUse, NewNameIsRefreshedThoughItHasNoText) {
  EXPECT_EQ(InChild([] {
              const ExtNameStr name;
              std::string counts = std::to_string(QULTMBDefaultConverterID());
              name.GetCP();
              return counts + std::to_string(QULTMBDefaultConverterID());
            }),
            "01");
}

TEST(FirstUse, NameIsWrittenInTheSystemEncoding) {
  EXPECT_EQ(InChild([] {
              ExtNameStr name;
              name.SetU8("caf\u00e9");
              return name.GetSystem();
            }),
            "caf\xE9");
}

TEST(FirstUse, NameIsWrittenInTheSystemEncodingOfALocaleOfTwoByteCharacters) {
  EXPECT_EQ(InChild([] {
              UseTestLocale("ja_JP.SJIS");
              ExtNameStr name;
              name.SetU8("\u3042");
              return name.GetSystem();
            }),
            "\x82\xA0");
}

TEST(FirstUse, MalformedSystemTextIsKeptAndNotReportedUntilARefresh) {
  EXPECT_EQ(InChild([] {
              UseTestLocale("ja_JP.SJIS");
              ExtNameStr name;
              name.SetSystem("a\x82");
              std::string said = name.GetSystem() + " " + name.GetU8() + " " + std::to_string(name.ErrorCode());
              QULTMBSetDefaultConverter("1252");
              said += " " + name.GetCP() + " " + name.GetSystem() + " " + std::to_string(name.ErrorCode());
              return said;
            }),
            "a\x82 a? 0 a? a? 0");
}

TEST(FirstUse, NameIsWrittenWithTheDefaultConverterWhereTheSystemEncodingIsUnknown) {
  for (const int mode : {0, 1}) {
    EXPECT_EQ(InChild([mode] {
                UseTestLocale("de_DE.UTF-8@variant.2");
                SetUTF8mode(mode);
                QULTMBSetDefaultConverter("932");
                ExtNameStr name;
                name.SetU8("\u3042");
                return name.GetSystem();
              }),
              "\x82\xA0")
        << mode;
  }
}

// The name of the encoding is converted first: a default converter that has no ASCII makes it unreadable.
TEST(FirstUse, NameIsWrittenWithTheDefaultConverterWhereTheSystemOneCannotBeNamed) {
  EXPECT_EQ(InChild([] {
              QULTMBSetDefaultConverter("ibm-37");
              ExtNameStr name;
              name.SetU8("a");
              std::string said = name.GetSystem() + name.GetCP();
              SetUTF8mode(0);
              name.SetU8("a");
              return said + name.GetSystem() + name.GetCP();
            }),
            "\x81\x81"
            "a\x81");
}

}  // namespace
