#include "FileNames.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using rqtool::FileNames;

namespace {

TEST(FileNames, KeepLettersAndDigitsOfAllScripts) {
  FileNames names(".x");
  EXPECT_EQ(names.Make("Income_2-b.c"), "Income_2-b.c.x");
  EXPECT_EQ(names.Make("Größe вес भाषा"), "Größe_вес_भाषा.x");
}

TEST(FileNames, AreDifferentAlsoWhereCaseAndAccentsDoNotCount) {
  FileNames names("");
  EXPECT_EQ(names.Make("\u00e9"), "\u00e9");
  EXPECT_EQ(names.Make("e\u0301"), "e\u0301-2");
  EXPECT_EQ(names.Make("\u00c9"), "\u00c9-3");
  EXPECT_EQ(names.Make("a-2"), "a-2");
  EXPECT_EQ(names.Make("a"), "a");
  EXPECT_EQ(names.Make("A"), "A-3");
}

TEST(FileNames, LeadNowhereAndAreNoDevicesOrOptions) {
  for (const std::string text : {"", ".", "..", "../x", "/", "-rf", "con", "NUL", "com1.x", "lpt9", "a/b", "a\\b",
                                 "a\nb", "\x01", "\xff", "a:b", "*"}) {
    FileNames names("");
    const std::string name = names.Make(text);
    EXPECT_EQ(name.find_first_of("/\\:*\n\x01"), std::string::npos) << name;
    EXPECT_TRUE(name.front() != '.' && name.front() != '-') << name;
    EXPECT_TRUE(name != "con" && name != "NUL" && name != "com1.x" && name != "lpt9") << name;
  }
}

TEST(FileNames, OfManyTextsThatAreTheSameComeQuicklyAndDiffer) {
  FileNames names(".svg");
  std::set<std::string> made;
  for (int i = 0; i < 20'000; ++i) made.insert(names.Make(std::string(500, 'x')));
  EXPECT_EQ(made.size(), 20'000u);
}

}  // namespace
