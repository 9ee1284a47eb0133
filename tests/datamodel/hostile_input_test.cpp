// A megabyte of anything without a DTD is read in bounded time.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <xercesc/sax/SAXParseException.hpp>

#include "tests/support/datamodel.h"
#include "tests/support/platform.h"

namespace {

using rqtest::DataModel;
using rqtest::ModelField;

/// Pieces, numbered from zero, up to a megabyte.
std::string Fill(const std::function<std::string(std::size_t)>& piece) {
  std::string text;
  for (std::size_t i = 0; text.size() < 1000000; ++i) text += piece(i);
  return text;
}
std::string Fill(const std::string& piece) {
  return Fill([&](std::size_t) { return piece; });
}

const std::string kNumbers = "storage='real' measure='x'";
const std::string kTexts = "storage='string' measure='x'";
const std::string kReal = "storage='real' measure='continuous'";

struct Hostile {
  const char* name;
  std::function<std::string()> make;
};

const Hostile kHostile[] = {
    {"ManyFields", [] { return DataModel(Fill([](std::size_t i) { return ModelField(std::to_string(i), kReal); })); }},
    {"ManyFieldsOfOneName", [] { return DataModel(Fill(ModelField("v", kReal))); }},
    {"ManyElementsThatAreNoFields", [] { return DataModel(Fill("<a/>")); }},
    {"ManyFieldsElements", [] { return "<DataModel>" + Fill("<Fields/>") + "</DataModel>"; }},
    {"ManyChildrenBeforeTheFields", [] { return "<DataModel>" + Fill("<a/>") + "<Fields/></DataModel>"; }},
    {"ManyValues",
     [] { return DataModel(ModelField("v", kTexts, "<Values>" + Fill("<Value value='1'/>") + "</Values>")); }},
    {"ManyValuesThatAreNoNumbers",
     [] { return DataModel(ModelField("v", kNumbers, "<Values>" + Fill("<Value value='x'/>") + "</Values>")); }},
    {"ManyValuesElements", [] { return DataModel(ModelField("v", kNumbers, Fill("<Values/>"))); }},
    {"ManyRanges", [] { return DataModel(ModelField("v", kReal, Fill("<Range minValue='x' maxValue='1'/>"))); }},
    {"ManyDigits", [] { return DataModel(ModelField("v", kReal, "<Range maxValue='" + Fill("9") + "'/>")); }},
    {"LongName", [] { return DataModel(ModelField(Fill("a"), kReal)); }},
    {"LongStorage", [] { return DataModel(ModelField("v", "measure='' storage='" + Fill("real") + "'")); }},
    {"LongRole", [] { return DataModel(ModelField("v", kReal + " role='" + Fill("input") + "'")); }},
    {"LongText", [] { return DataModel(Fill("x ")); }},
    {"ManyComments", [] { return DataModel(Fill("<!---->")); }},
    {"DeepNesting", [] { return DataModel(Fill("<Fields>")); }},
    {"UnclosedTags", [] { return Fill("<"); }},
    {"OnlyZeros", [] { return std::string(1000000, '\0'); }},
    {"OnlyHighBytes", [] { return std::string(1000000, '\xFF'); }},
};

class DataModelHostileInput : public rqtest::WithPlatform, public ::testing::WithParamInterface<Hostile> {};

TEST_P(DataModelHostileInput, IsReadInBoundedTime) {
  const std::string document = GetParam().make();
  const auto start = std::chrono::steady_clock::now();
  RQXPrsUtil::RQDataModelParser parser;
  try {
    parser.ParseToDOM(document);
  } catch (const xercesc::SAXParseException&) {
    EXPECT_EQ(rqtest::FillFrom(parser).status, rqtest::Failure(107));
  }
  rqtest::FillFrom(parser);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_LT(seconds.count(), 20);
}

INSTANTIATE_TEST_SUITE_P(Each, DataModelHostileInput, ::testing::ValuesIn(kHostile),
                         [](const ::testing::TestParamInfo<Hostile>& row) { return std::string(row.param.name); });

}  // namespace
