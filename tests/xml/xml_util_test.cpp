#include "rqxml/xml/RQXMLUtil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "rqxml/common/RQMV.h"
#include "rqxml/common/RQXMLFormat.h"
#include "tests/support/dom.h"
#include "tests/support/platform.h"

namespace {

using rqtest::Document;
using rqtest::Id;
using rqtest::Tag;
using rqtest::Text;
using namespace RQXPrsUtil;
using xercesc::DOMElement;
using xercesc::DOMNode;

using Table = std::pair<unsigned int, const char*>;

class Walking : public rqtest::WithPlatform {};

// AsElement, TagNameEquals

TEST_F(Walking, AsElementTellsElementsFromOtherNodes) {
  Document document("<a>text<!--c--><?p i?><![CDATA[x]]><b/></a>");
  std::vector<std::u16string> tags;
  for (const DOMNode* node = document.Root().getFirstChild(); node != nullptr; node = node->getNextSibling()) {
    tags.push_back(Tag(AsElement(*node, nullptr)));
  }
  EXPECT_THAT(tags, ::testing::ElementsAre(u"(null)", u"(null)", u"(null)", u"(null)", u"b"));
  EXPECT_EQ(AsElement(document.Get(), nullptr), nullptr);
}

TEST_F(Walking, AsElementComparesTheTagNameWhenOneIsGiven) {
  Document document("<PMML/>");
  const DOMNode& root = document.Root();
  EXPECT_EQ(AsElement(root, "PMML"), &document.Root());
  EXPECT_EQ(AsElement(root, nullptr), &document.Root());
  for (const char* const other : {"pmml", "PMM", "PMMLX", "", " PMML", "PMML ", "\xFF"}) {
    EXPECT_EQ(AsElement(root, other), nullptr) << other;
  }
}

TEST_F(Walking, TagNamesAreComparedExactlyAndAsWritten) {
  Document document(
      "<p:Gr\xC3\xB6\xC3\x9F"
      "e/>");
  EXPECT_TRUE(TagNameEquals(document.Root(),
                            "p:Gr\xC3\xB6\xC3\x9F"
                            "e"));
  for (const char* const other : {"Gr\xC3\xB6\xC3\x9F"
                                  "e",
                                  "p:gr\xC3\xB6\xC3\x9F"
                                  "e",
                                  "p:Gr\xC3\xB6\xC3\x9F", "",
                                  "p:Gr\xF6\xDF"
                                  "e",
                                  "p:Gro\xCC\x88\xC3\x9F"
                                  "e"}) {
    EXPECT_FALSE(TagNameEquals(document.Root(), other)) << other;
  }
}

// Children and siblings by name

TEST_F(Walking, FirstChildIsTheFirstElementOfThatNameInTheDocument) {
  Document document("<a>text<!--c--><b id='1'/><c id='2'/><b id='3'/></a>");
  EXPECT_EQ(Id(GetFirstChildElmt(document.Root(), "b")), u"1");
  EXPECT_EQ(Id(GetFirstChildElmt(document.Root(), "c")), u"2");
  EXPECT_EQ(Id(GetFirstChildElmt(document.Root(), nullptr)), u"1");
  EXPECT_EQ(GetFirstChildElmt(document.Root(), "d"), nullptr);
  EXPECT_EQ(GetFirstChildElmt(document.Root(), "B"), nullptr);
}

TEST_F(Walking, OnlyDirectChildrenAreSearched) {
  Document document("<a><x><b/></x></a>");
  EXPECT_EQ(GetFirstChildElmt(document.Root(), "b"), nullptr);
}

TEST_F(Walking, ContentOfAnEntityReferenceIsNoDirectChild) {
  Document document("<!DOCTYPE a [<!ENTITY e '<b id=\"1\"/>'>]><a>&e;<b id='2'/></a>");
  EXPECT_EQ(Id(GetFirstChildElmt(document.Root(), "b")), u"2");
}

TEST_F(Walking, NodeWithoutElementChildrenHasNoFirstChildElement) {
  for (const char* const text : {"<a/>", "<a>text</a>", "<a><!--b--></a>", "<a><![CDATA[<b/>]]></a>"}) {
    Document document(text);
    EXPECT_EQ(GetFirstChildElmt(document.Root(), nullptr), nullptr) << text;
    EXPECT_EQ(GetFirstChildElmt(document.Root(), "b"), nullptr) << text;
  }
}

TEST_F(Walking, RootIsTheFirstChildElementOfTheDocument) {
  Document document("<!--c--><?p i?><a/>");
  EXPECT_EQ(GetFirstChildElmt(document.Get(), "a"), &document.Root());
}

TEST_F(Walking, FirstChildOfATextIsNothing) {
  Document document("<a>text</a>");
  EXPECT_EQ(GetFirstChildElmt(*document.Root().getFirstChild(), nullptr), nullptr);
}

TEST_F(Walking, NextSiblingIsTheNextElementOfThatNameAndNeverTheNodeItself) {
  Document document("<a><b id='1'/>text<c id='2'/><!--c--><b id='3'/><b id='4'/></a>");
  const DOMElement* const first = GetFirstChildElmt(document.Root(), nullptr);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(Id(GetNextSiblingElmt(*first, "b")), u"3");
  EXPECT_EQ(Id(GetNextSiblingElmt(*first, "c")), u"2");
  EXPECT_EQ(Id(GetNextSiblingElmt(*first, nullptr)), u"2");
  EXPECT_EQ(GetNextSiblingElmt(*first, "d"), nullptr);
  const DOMElement* const last = GetNextSiblingElmt(*GetNextSiblingElmt(*first, "b"), "b");
  EXPECT_EQ(Id(last), u"4");
  EXPECT_EQ(GetNextSiblingElmt(*last, "b"), nullptr);
  EXPECT_EQ(GetNextSiblingElmt(*last, nullptr), nullptr);
}

TEST_F(Walking, NextSiblingMayStartFromATextNode) {
  Document document("<a>text<b id='1'/></a>");
  EXPECT_EQ(Id(GetNextSiblingElmt(*document.Root().getFirstChild(), "b")), u"1");
}

TEST_F(Walking, RootHasNoSiblingElement) {
  Document document("<a/><!--c-->");
  EXPECT_EQ(GetNextSiblingElmt(document.Root(), nullptr), nullptr);
}

// Children by table

TEST_F(Walking, OrderOfTheTableWinsOverTheOrderOfTheDocument) {
  Document document("<a><B/><A/></a>");
  const Table table[] = {{7, "A"}, {8, "B"}, {0, nullptr}};
  std::size_t index = 99;
  EXPECT_EQ(Tag(GetFirstChildElmt(document.Root(), table, index)), u"A");
  EXPECT_EQ(index, 0U);
}

TEST_F(Walking, TableSearchTellsThePositionInTheTable) {
  Document document("<a><x/><C id='1'/><C id='2'/></a>");
  const Table table[] = {{7, "A"}, {7, "B"}, {7, "C"}, {7, "x"}, {0, nullptr}};
  std::size_t index = 99;
  EXPECT_EQ(Id(GetFirstChildElmt(document.Root(), table, index)), u"1");
  EXPECT_EQ(index, 2U);
}

TEST_F(Walking, TableSearchWithoutMatchGivesNothingAndPositionZero) {
  Document document("<a><x/>text</a>");
  const Table table[] = {{7, "A"}, {8, "B"}, {0, nullptr}};
  std::size_t index = 99;
  EXPECT_EQ(GetFirstChildElmt(document.Root(), table, index), nullptr);
  EXPECT_EQ(index, 0U);
}

TEST_F(Walking, EmptyTableMatchesNothing) {
  Document document("<a><x/></a>");
  const Table table[] = {{0, nullptr}};
  std::size_t index = 99;
  EXPECT_EQ(GetFirstChildElmt(document.Root(), table, index), nullptr);
  EXPECT_EQ(index, 0U);
}

TEST_F(Walking, TableEndsAtItsFirstNullName) {
  Document document("<a><x/></a>");
  const Table table[] = {{1, "A"}, {5, nullptr}, {1, "x"}, {0, nullptr}};
  std::size_t index = 99;
  EXPECT_EQ(GetFirstChildElmt(document.Root(), table, index), nullptr);
}

// Extensions

class Extensions : public rqtest::WithPlatform {
 protected:
  Extensions() {
    Document scratch("<a/>");
    const DOMElement* const own = CreateExtension(scratch.Get(), "n");
    if (own != nullptr) extender_ = ToUTF8(GetAttribute(*own, "extender"));
  }
  std::string Own(const std::string& id, const std::string& name) const {
    return "<Extension extender='" + extender_ + "' name='" + name + "' id='" + id + "'/>";
  }
  std::string extender_;
};

TEST_F(Extensions, OwnMarkIsADomainName) {
  EXPECT_THAT(extender_, ::testing::ContainsRegex("^[a-z0-9-]+(\\.[a-z0-9-]+)+$"));
}

TEST_F(Extensions, FirstChildSkipsExtensionsOfOthers) {
  Document document(
      "<a>text<Extension extender='elsewhere.example' name='n' id='1'/><Extension name='n' id='2'/>"
      "<Extension extender='' name='n' id='3'/>" +
      Own("4", "n") + "</a>");
  EXPECT_EQ(Id(GetFirstChildExtension(document.Root(), "n")), u"4");
  EXPECT_EQ(Id(GetFirstChildExtension(document.Root(), nullptr)), u"4");
}

TEST_F(Extensions, FirstChildMayBeTheVeryFirst) {
  Document document("<a>" + Own("1", "n") + Own("2", "n") + "</a>");
  EXPECT_EQ(Id(GetFirstChildExtension(document.Root(), "n")), u"1");
}

TEST_F(Extensions, NameMustBeEqualUnlessNoneIsAskedFor) {
  Document document("<a>" + Own("1", "m") + "<Extension extender='" + extender_ + "' id='2'/>" + Own("3", "N") +
                    Own("4", "n") + Own("5", "") + "</a>");
  EXPECT_EQ(Id(GetFirstChildExtension(document.Root(), "n")), u"4");
  EXPECT_EQ(Id(GetFirstChildExtension(document.Root(), nullptr)), u"1");
  EXPECT_EQ(Id(GetFirstChildExtension(document.Root(), "")), u"5");
  EXPECT_EQ(GetFirstChildExtension(document.Root(), "other"), nullptr);
}

TEST_F(Extensions, ExtensionWithoutNameMatchesOnlyWhenNoNameIsAskedFor) {
  Document document("<a><Extension extender='" + extender_ + "' id='1'/></a>");
  EXPECT_EQ(Id(GetFirstChildExtension(document.Root(), nullptr)), u"1");
  EXPECT_EQ(GetFirstChildExtension(document.Root(), ""), nullptr);
  EXPECT_EQ(GetFirstChildExtension(document.Root(), "n"), nullptr);
}

TEST_F(Extensions, OtherElementsWithTheSameAttributesDoNotMatch) {
  Document document("<a><extension extender='" + extender_ + "' name='n'/><p:Extension extender='" + extender_ +
                    "' name='n'/><x>" + Own("1", "n") + "</x></a>");
  EXPECT_EQ(GetFirstChildExtension(document.Root(), "n"), nullptr);
}

TEST_F(Extensions, NextSiblingGoesOnBehindTheNode) {
  Document document("<a>" + Own("1", "n") + Own("2", "m") +
                    "<Extension extender='elsewhere.example' name='n' id='3'/>" + "text" + Own("4", "n") + "</a>");
  const DOMElement* const first = GetFirstChildExtension(document.Root(), "n");
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(Id(GetNextSiblingExtension(*first, nullptr)), u"2");
  const DOMElement* const next = GetNextSiblingExtension(*first, "n");
  EXPECT_EQ(Id(next), u"4");
  ASSERT_NE(next, nullptr);
  EXPECT_EQ(GetNextSiblingExtension(*next, "n"), nullptr);
  EXPECT_EQ(GetNextSiblingExtension(*next, nullptr), nullptr);
}

TEST_F(Extensions, NextSiblingMayStartFromANodeThatIsNoExtension) {
  Document document("<a>text" + Own("1", "n") + "</a>");
  EXPECT_EQ(Id(GetNextSiblingExtension(*document.Root().getFirstChild(), "n")), u"1");
}

TEST_F(Extensions, NodeWithoutExtensionsHasNone) {
  for (const char* const text : {"<a/>", "<a>text</a>", "<a><b/></a>", "<a><Extension/></a>"}) {
    Document document(text);
    EXPECT_EQ(GetFirstChildExtension(document.Root(), nullptr), nullptr) << text;
  }
}

// Attributes

class Attributes : public rqtest::WithPlatform {};

TEST_F(Attributes, MissingOneIsNullAndEmptyOneIsEmpty) {
  Document document("<a empty='' full='x'/>");
  EXPECT_EQ(GetAttribute(document.Root(), "missing"), nullptr);
  EXPECT_EQ(Text(GetAttribute(document.Root(), "empty")), u"");
  EXPECT_EQ(Text(GetAttribute(document.Root(), "full")), u"x");
}

TEST_F(Attributes, ElementWithoutAttributesHasNone) {
  Document document("<a/>");
  EXPECT_EQ(GetAttribute(document.Root(), "n"), nullptr);
  EXPECT_EQ(GetAttribute(document.Root(), ""), nullptr);
}

TEST_F(Attributes, NamesAreComparedExactlyAndAsWritten) {
  Document document(
      "<a p:n='1' gr\xC3\xB6\xC3\x9F"
      "e='2'/>");
  EXPECT_EQ(Text(GetAttribute(document.Root(), "p:n")), u"1");
  EXPECT_EQ(Text(GetAttribute(document.Root(),
                              "gr\xC3\xB6\xC3\x9F"
                              "e")),
            u"2");
  for (const char* const other : {"n", "P:N", "p:",
                                  "gr\xF6\xDF"
                                  "e",
                                  "", "\xC3"}) {
    EXPECT_EQ(GetAttribute(document.Root(), other), nullptr) << other;
  }
}

TEST_F(Attributes, ReferencesInValuesAreResolved) {
  Document document("<!DOCTYPE a [<!ENTITY e 'entity'>]><a n='&lt;&amp;&#228;&#x20AC;&e;'/>");
  EXPECT_EQ(Text(GetAttribute(document.Root(), "n")), u"<&\u00E4\u20ACentity");
}

TEST_F(Attributes, DefaultFromTheDtdCountsAsPresent) {
  Document document("<!DOCTYPE a [<!ATTLIST a n CDATA 'default'>]><a/>");
  EXPECT_EQ(Text(GetAttribute(document.Root(), "n")), u"default");
}

TEST_F(Attributes, NodeFormGivesNullForNodesThatAreNoElements) {
  Document document("<a n='1'>text<!--c--><b n='2'/></a>");
  const DOMNode& root = document.Root();
  EXPECT_EQ(Text(GetAttribute(root, "n")), u"1");
  EXPECT_EQ(GetAttribute(root, "missing"), nullptr);
  EXPECT_EQ(GetAttribute(*root.getFirstChild(), "n"), nullptr);
  EXPECT_EQ(GetAttribute(*root.getFirstChild()->getNextSibling(), "n"), nullptr);
  EXPECT_EQ(Text(GetAttribute(*root.getLastChild(), "n")), u"2");
  const DOMNode& document_node = document.Get();
  EXPECT_EQ(GetAttribute(document_node, "n"), nullptr);
}

// Texts in lists

class Finding : public rqtest::WithPlatform {};

TEST_F(Finding, TableSearchGivesThePositionOfTheFirstEqualEntry) {
  const Table table[] = {{5, "a"}, {6, "b"}, {7, "b"}, {8, "\xC3\xA4"}, {9, ""}, {0, nullptr}};
  EXPECT_EQ(FindXStrInList(u"a", table), 0);
  EXPECT_EQ(FindXStrInList(u"b", table), 1);
  EXPECT_EQ(FindXStrInList(u"\u00E4", table), 3);
  EXPECT_EQ(FindXStrInList(u"", table), 4);
  EXPECT_EQ(FindXStrInList(nullptr, table), 4);
  EXPECT_EQ(FindXStrInList(u"A", table), -1);
  EXPECT_EQ(FindXStrInList(u"c", table), -1);
  const Table empty[] = {{0, nullptr}};
  EXPECT_EQ(FindXStrInList(u"a", empty), -1);
  EXPECT_EQ(FindXStrInList(u"", empty), -1);
}

TEST_F(Finding, ListSearchGivesThePositionOfTheFirstEqualEntry) {
  const std::vector<std::string> list = {"a", "b", "b", "\xC3\xA4", "\xF0\x9F\x98\x80", ""};
  EXPECT_EQ(FindXStrInList(u"a", list), 0);
  EXPECT_EQ(FindXStrInList(u"b", list), 1);
  EXPECT_EQ(FindXStrInList(u"\u00E4", list), 3);
  EXPECT_EQ(FindXStrInList(u"\U0001F600", list), 4);
  EXPECT_EQ(FindXStrInList(u"", list), 5);
  EXPECT_EQ(FindXStrInList(nullptr, list), 5);
  EXPECT_EQ(FindXStrInList(u"A", list), -1);
  EXPECT_EQ(FindXStrInList(u"ab", list), -1);
  EXPECT_EQ(FindXStrInList(u"a", std::vector<std::string>()), -1);
  EXPECT_EQ(FindXStrInList(u"", std::vector<std::string>()), -1);
}

TEST_F(Finding, MalformedEntryCountsAsEmpty) {
  const std::vector<std::string> list = {"\xFF", "\xC3", "a"};
  EXPECT_EQ(FindXStrInList(u"", list), 0);
  EXPECT_EQ(FindXStrInList(nullptr, list), 0);
  EXPECT_EQ(FindXStrInList(u"a", list), 2);
  EXPECT_EQ(FindXStrInList(u"\u00FF", list), -1);
  EXPECT_EQ(FindXStrInList(u"\uFFFD", list), -1);
}

TEST_F(Finding, EntryIsReadUpToItsFirstZero) {
  const std::vector<std::string> list = {std::string("ab\0cd", 5)};
  EXPECT_EQ(FindXStrInList(u"ab", list), 0);
}

// Building

class Building : public rqtest::WithPlatform {
 protected:
  Document document_{"<a><b id='1'/><c id='2'/></a>"};
  DOMElement* Child(const char* name) { return const_cast<DOMElement*>(GetFirstChildElmt(document_.Root(), name)); }
  std::u16string Children() {
    std::u16string tags;
    for (const DOMElement* child = GetFirstChildElmt(document_.Root(), nullptr); child != nullptr;
         child = GetNextSiblingElmt(*child, nullptr)) {
      tags += Tag(child) + u" ";
    }
    return tags;
  }
};

TEST_F(Building, NewElementIsUnattached) {
  DOMElement* const element = CreateElement(document_.Get(),
                                            "Gr\xC3\xB6\xC3\x9F"
                                            "e");
  ASSERT_NE(element, nullptr);
  EXPECT_EQ(Tag(element), u"Gr\u00F6\u00DFe");
  EXPECT_EQ(element->getParentNode(), nullptr);
  EXPECT_EQ(element->getOwnerDocument(), &document_.Get());
  EXPECT_EQ(element->getAttributes()->getLength(), 0U);
  EXPECT_EQ(Children(), u"b c ");
}

TEST_F(Building, NewElementMayHaveAPrefix) { EXPECT_EQ(Tag(CreateElement(document_.Get(), "p:n")), u"p:n"); }

TEST_F(Building, ElementNameThatTheLibraryRefusesGivesNull) {
  for (const char* const name : {"", "1a", "a b", "<", "-a", "a/", "\xFF", "\xC3"}) {
    EXPECT_EQ(CreateElement(document_.Get(), name), nullptr) << name;
  }
}

TEST_F(Building, NewExtensionHasItsMarkAndItsNameAndNothingElse) {
  DOMElement* const extension = CreateExtension(document_.Get(), "na<me \xC3\xA4");
  ASSERT_NE(extension, nullptr);
  EXPECT_EQ(Tag(extension), u"Extension");
  EXPECT_EQ(extension->getParentNode(), nullptr);
  EXPECT_EQ(extension->getAttributes()->getLength(), 2U);
  EXPECT_EQ(Text(GetAttribute(*extension, "name")), u"na<me \u00E4");
  EXPECT_NE(Text(GetAttribute(*extension, "extender")), u"");
  EXPECT_EQ(GetAttribute(*extension, "value"), nullptr);
  EXPECT_EQ(extension->getFirstChild(), nullptr);
}

TEST_F(Building, NewExtensionIsFoundByTheSearch) {
  DOMElement* const extension = CreateExtension(document_.Get(), "n");
  ASSERT_TRUE(InsertElement(document_.Root(), extension, nullptr));
  EXPECT_EQ(GetFirstChildExtension(document_.Root(), "n"), extension);
  EXPECT_EQ(GetFirstChildExtension(document_.Root(), nullptr), extension);
  EXPECT_EQ(GetFirstChildExtension(document_.Root(), "m"), nullptr);
}

TEST_F(Building, InsertsBeforeAChildOrAtTheEnd) {
  EXPECT_TRUE(InsertElement(document_.Root(), CreateElement(document_.Get(), "x"), Child("c")));
  EXPECT_EQ(Children(), u"b x c ");
  EXPECT_TRUE(InsertElement(document_.Root(), CreateElement(document_.Get(), "y"), nullptr));
  EXPECT_EQ(Children(), u"b x c y ");
  EXPECT_TRUE(InsertElement(document_.Root(), CreateElement(document_.Get(), "z"), Child("b")));
  EXPECT_EQ(Children(), u"z b x c y ");
}

TEST_F(Building, InsertingAChildAgainMovesIt) {
  EXPECT_TRUE(InsertElement(document_.Root(), Child("c"), Child("b")));
  EXPECT_EQ(Children(), u"c b ");
}

TEST_F(Building, InsertingWhereTheLibraryRefusesIsFalseAndChangesNothing) {
  Document other("<other><x/></other>");
  EXPECT_FALSE(InsertElement(document_.Root(), &other.Root(), nullptr)) << "from another document";
  EXPECT_FALSE(InsertElement(*Child("b"), &document_.Root(), nullptr)) << "an ancestor";
  EXPECT_FALSE(
      InsertElement(document_.Root(), CreateElement(document_.Get(), "x"), CreateElement(document_.Get(), "y")))
      << "before an element that is no child";
  EXPECT_EQ(Children(), u"b c ");
}

TEST_F(Building, ReplacesAChild) {
  DOMElement* const old = Child("b");
  EXPECT_TRUE(ReplaceElement(document_.Root(), CreateElement(document_.Get(), "x"), old));
  EXPECT_EQ(Children(), u"x c ");
  EXPECT_EQ(old->getParentNode(), nullptr);
}

TEST_F(Building, ReplacingWhereTheLibraryRefusesIsFalseAndChangesNothing) {
  Document other("<other/>");
  EXPECT_FALSE(ReplaceElement(document_.Root(), &other.Root(), Child("b"))) << "from another document";
  EXPECT_FALSE(ReplaceElement(*Child("b"), &document_.Root(), Child("c"))) << "an ancestor";
  EXPECT_FALSE(
      ReplaceElement(document_.Root(), CreateElement(document_.Get(), "x"), CreateElement(document_.Get(), "y")))
      << "an element that is no child";
  EXPECT_EQ(Children(), u"b c ");
}

TEST_F(Building, SetsAndOverwritesAttributes) {
  EXPECT_TRUE(SetAttribute(document_.Root(), "n", "first"));
  EXPECT_EQ(Text(GetAttribute(document_.Root(), "n")), u"first");
  EXPECT_TRUE(SetAttribute(document_.Root(), "n", "second \xE2\x82\xAC \xF0\x9F\x98\x80"));
  EXPECT_EQ(Text(GetAttribute(document_.Root(), "n")), u"second \u20AC \U0001F600");
  EXPECT_TRUE(SetAttribute(document_.Root(), "n", ""));
  EXPECT_EQ(Text(GetAttribute(document_.Root(), "n")), u"");
  EXPECT_EQ(document_.Root().getAttributes()->getLength(), 1U);
}

TEST_F(Building, MalformedAttributeValueIsSetEmpty) {
  EXPECT_TRUE(SetAttribute(document_.Root(), "n", "abc\xFF"));
  EXPECT_EQ(Text(GetAttribute(document_.Root(), "n")), u"");
}

TEST_F(Building, AttributeNameThatTheLibraryRefusesIsFalse) {
  for (const char* const name : {"", "1a", "a b", "a=", "\xFF"}) {
    EXPECT_FALSE(SetAttribute(document_.Root(), name, "value")) << name;
    EXPECT_FALSE(SetAttribute(document_.Root(), name, 1.5)) << name;
  }
  EXPECT_EQ(document_.Root().getAttributes()->getLength(), 0U);
}

TEST_F(Building, NumbersAreWrittenAsTheCommonLibraryFormatsThem) {
  for (const double value : {0.0, 3.0, -2.5, 0.1, 1e-7, 1e300, 123456789.0, 1.0 / 3, RQMV::gMissingValue}) {
    EXPECT_TRUE(SetAttribute(document_.Root(), "n", value));
    EXPECT_EQ(ToUTF8(GetAttribute(document_.Root(), "n")), RQXML_NAMESPACE::Format(value, false, nullptr));
    double read = 0;
    EXPECT_EQ(GetDoubleAttribute(document_.Root(), "n", read), 0);
    EXPECT_EQ(read, value);
  }
}

}  // namespace
