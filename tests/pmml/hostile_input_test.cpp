// A megabyte of anything without a DTD is read in bounded time.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <iostream>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/pmml/RQPMMLParser.h"
#include "tests/support/megabyte.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"

namespace {

using rqtest::Field;
using rqtest::MegabyteOf;
using rqtest::Pmml;
using rqtest::PmmlWithFields;

struct Hostile {
  const char* name;
  std::function<std::string()> make;
};

std::string Bins(const std::string& field, const std::string& content) {
  return "<DerivedField><Discretize field='" + field + "'>" + content + "</Discretize></DerivedField>";
}

const Hostile kHostile[] = {
    {"DeepNesting", [] { return PmmlWithFields(MegabyteOf("<a>")); }},
    {"DeepNestingClosed",
     [] {
       std::string open, close;
       for (int i = 0; i < 140000; ++i) open += "<a>", close += "</a>";
       return PmmlWithFields(open + close);
     }},
    {"ManyTinyElements", [] { return PmmlWithFields(MegabyteOf("<a/>")); }},
    {"ManyTinyChildrenOfARoot", [] { return Pmml(MegabyteOf("<a/>") + "<DataDictionary/>"); }},
    {"LongElementName", [] { return PmmlWithFields("<" + MegabyteOf("a") + "/>"); }},
    {"LongAttributeName", [] { return PmmlWithFields("<DataField " + MegabyteOf("a") + "='1' name='v'/>"); }},
    {"LongAttributeValue", [] { return PmmlWithFields(Field(MegabyteOf("a"), "categorical", "string")); }},
    {"LongText", [] { return PmmlWithFields(MegabyteOf("x ") + Field("v", "continuous", "double")); }},
    {"LongComment", [] { return PmmlWithFields("<!--" + MegabyteOf("x ") + "-->"); }},
    {"LongProcessingInstruction", [] { return PmmlWithFields("<?p " + MegabyteOf("x") + "?>"); }},
    {"LongCdata", [] { return PmmlWithFields("<![CDATA[" + MegabyteOf("]]") + "]]>"); }},
    {"ManyComments", [] { return PmmlWithFields(MegabyteOf("<!---->")); }},
    {"ManyProcessingInstructions", [] { return PmmlWithFields(MegabyteOf("<?p?>")); }},
    {"ManyCdataSections", [] { return PmmlWithFields(MegabyteOf("<![CDATA[]]>")); }},
    {"ManyCharacterReferencesInText", [] { return PmmlWithFields(MegabyteOf("&#9;")); }},
    {"ManyCharacterReferencesInAnAttribute",
     [] { return PmmlWithFields(Field(MegabyteOf("&#228;"), "categorical", "string")); }},
    {"ManyEntityReferences", [] { return PmmlWithFields(MegabyteOf("&lt;")); }},
    {"ManyDifferentElementNames",
     [] { return PmmlWithFields(MegabyteOf([](std::size_t i) { return "<e" + std::to_string(i) + "/>"; })); }},
    {"ManyElementsWithDifferentAttributes",
     [] { return PmmlWithFields(MegabyteOf([](std::size_t i) { return "<e a" + std::to_string(i) + "=''/>"; })); }},
    {"ManyAttributesOnOneElement",
     [] {
       return PmmlWithFields("<e " + MegabyteOf([](std::size_t i) { return "a" + std::to_string(i) + "='' "; }) + "/>");
     }},
    {"ManyAttributesOnADataField",
     [] {
       return PmmlWithFields("<DataField name='v' optype='continuous' dataType='double' " +
                             MegabyteOf([](std::size_t i) { return "a" + std::to_string(i) + "='' "; }) + "/>");
     }},
    {"ManyFields",
     [] { return PmmlWithFields(MegabyteOf([](std::size_t i) { return Field(std::to_string(i), "x", "double"); })); }},
    {"ManyFieldsOfOneName", [] { return PmmlWithFields(MegabyteOf(Field("v", "categorical", "double"))); }},
    {"ManyValues",
     [] { return PmmlWithFields(Field("v", "categorical", "double", MegabyteOf("<Value value='1'/>"))); }},
    {"ManyMissingValues",
     [] { return PmmlWithFields(Field("v", "continuous", "double", MegabyteOf("<Value value='1' property='m'/>"))); }},
    {"ManyDigits",
     [] {
       return PmmlWithFields(
           Field("v", "categorical", "double",
                 "<Value value='" + MegabyteOf("9") + "'/><Value value='0." + MegabyteOf("0") + "1'/>"));
     }},
    {"ManyBlanksInANumber",
     [] { return PmmlWithFields(Field("v", "categorical", "double", "<Value value='" + MegabyteOf(" ") + "1'/>")); }},
    {"ManyExtensions",
     [] { return PmmlWithFields(Field("v", "continuous", "double", MegabyteOf("<Extension name='' value='1'/>"))); }},
    {"ManyBins",
     [] {
       return PmmlWithFields(Field("v", "continuous", "double"),
                             Bins("v", MegabyteOf("<DiscretizeBin binValue=''><Interval/></DiscretizeBin>")));
     }},
    {"ManyDerivedFieldsBeforeTheRightOne",
     [] { return PmmlWithFields(Field("v", "continuous", "double"), MegabyteOf(Bins("w", "")) + Bins("v", "")); }},
    {"ManyFieldsAndManyDerivedFields",
     [] {
       std::string fields, transformations;
       for (int i = 0; i < 8000; ++i) {
         const std::string name = std::to_string(i);
         fields += Field(name, "continuous", "double");
         transformations = Bins(name, "") + transformations;
       }
       return PmmlWithFields(fields, transformations);
     }},
    {"ManyFieldsWithTheSameBins",
     [] {
       std::string fields;
       for (int i = 0; i < 8000; ++i) fields += Field("v", "continuous", "double");
       return PmmlWithFields(fields, MegabyteOf(Bins("w", "")) + Bins("v", ""));
     }},
    {"ManyFieldsOnOneLargeDiscretisation",
     [] {
       std::string fields, bins;
       for (int i = 0; i < 200; ++i) fields += Field("v", "continuous", "double");
       for (int i = 0; i < 1000; ++i) bins += "<DiscretizeBin binValue='b'><Interval rightMargin='1'/></DiscretizeBin>";
       return PmmlWithFields(fields, Bins("v", bins));
     }},
    {"UnclosedTags", [] { return MegabyteOf("<"); }},
    {"UnclosedQuotes", [] { return Pmml("<a b='" + MegabyteOf("x")); }},
    {"OnlyBlanks", [] { return MegabyteOf(" "); }},
    {"OnlyZeros", [] { return std::string(rqtest::kMegabyte, '\0'); }},
    {"OnlyHighBytes", [] { return std::string(rqtest::kMegabyte, '\xFF'); }},
};

/// A hundred thousand of what looks like attributes.
std::string LikeAttributes() {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "b='1' ";
  return text;
}

class LargeInput : public rqtest::WithPlatform {};

TEST_F(LargeInput, WhatLooksLikeATagOfManyAttributesIsReadWhereItIsNone) {
  const std::string field = Field("v", "continuous", "double");
  const std::string text = "<a " + LikeAttributes();
  for (const std::string& content : {"<!-- " + text + "-->", "<?p " + text + "?>", "<![CDATA[" + text + "]]>",
                                     "<a b=\"" + LikeAttributes() + "\"/>", "<a/>" + LikeAttributes()}) {
    const rqtest::Filled filled = rqtest::Fill(PmmlWithFields(content + field));
    EXPECT_EQ(filled.status, rqtest::Ok()) << content.substr(0, 20);
    EXPECT_EQ(filled.calls, rqtest::Calls{R"(AddContVar("v", "", role 4) -> 0)"}) << content.substr(0, 20);
  }
}

TEST_F(LargeInput, ThousandsOfDifferentNamesAreRead) {
  std::string elements;
  std::string attributes;
  for (int i = 0; i < 5000; ++i) {
    elements += "<e" + std::to_string(i) + "/>";
    attributes += " a" + std::to_string(i) + "='1'";
  }
  const rqtest::Filled filled =
      rqtest::Fill(PmmlWithFields(elements + "<e" + attributes + "/>" + Field("v", "continuous", "double")));
  EXPECT_EQ(filled.status, rqtest::Ok());
  EXPECT_EQ(filled.calls, rqtest::Calls{R"(AddContVar("v", "", role 4) -> 0)"});
}

class HostileInput : public rqtest::WithPlatform, public ::testing::WithParamInterface<Hostile> {};

TEST_P(HostileInput, IsReadInBoundedTime) {
  const std::string document = GetParam().make();
  const auto start = std::chrono::steady_clock::now();
  RQXPrsUtil::RQPMMLParser parser;
  std::string outcome;
  try {
    outcome = std::to_string(rqtest::Parse(parser, document).GetCode());
  } catch (const xercesc::SAXParseException&) {
    outcome = "not well-formed";
  }
  for (const bool useBins : {false, true}) {
    rqtest::RecordingVarList vars;
    outcome += ", " + std::to_string(parser.FillVarList(vars, {}, useBins).GetCode());
    rqtest::RecordingVarList named;
    parser.FillVarList(named, {"v", "w", "7999"}, useBins);
  }
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  std::cout << GetParam().name << ": " << document.size() << " bytes, " << seconds.count() << " s, " << outcome << '\n';
  EXPECT_LT(seconds.count(), 20);
}

INSTANTIATE_TEST_SUITE_P(Each, HostileInput, ::testing::ValuesIn(kHostile),
                         [](const ::testing::TestParamInfo<Hostile>& row) { return std::string(row.param.name); });

}  // namespace
