// A megabyte of anything without a DTD is read in bounded time.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <xercesc/sax/SAXParseException.hpp>

#include "tests/support/datamodel.h"
#include "tests/support/megabyte.h"
#include "tests/support/platform.h"

namespace {

using rqtest::DataModel;
using rqtest::MegabyteOf;
using rqtest::ModelField;

const std::string kNumbers = "storage='real' measure='x'";
const std::string kTexts = "storage='string' measure='x'";
const std::string kReal = "storage='real' measure='continuous'";

struct Hostile {
  const char* name;
  std::function<std::string()> make;
};

const Hostile kHostile[] = {
    {"ManyFields",
     [] { return DataModel(MegabyteOf([](std::size_t i) { return ModelField(std::to_string(i), kReal); })); }},
    {"ManyFieldsOfOneName", [] { return DataModel(MegabyteOf(ModelField("v", kReal))); }},
    {"ManyElementsThatAreNoFields", [] { return DataModel(MegabyteOf("<a/>")); }},
    {"ManyFieldsElements", [] { return "<DataModel>" + MegabyteOf("<Fields/>") + "</DataModel>"; }},
    {"ManyChildrenBeforeTheFields", [] { return "<DataModel>" + MegabyteOf("<a/>") + "<Fields/></DataModel>"; }},
    {"ManyValues",
     [] { return DataModel(ModelField("v", kTexts, "<Values>" + MegabyteOf("<Value value='1'/>") + "</Values>")); }},
    {"ManyValuesThatAreNoNumbers",
     [] { return DataModel(ModelField("v", kNumbers, "<Values>" + MegabyteOf("<Value value='x'/>") + "</Values>")); }},
    {"ManyValuesElements", [] { return DataModel(ModelField("v", kNumbers, MegabyteOf("<Values/>"))); }},
    {"ManyRanges", [] { return DataModel(ModelField("v", kReal, MegabyteOf("<Range minValue='x' maxValue='1'/>"))); }},
    {"ManyDigits", [] { return DataModel(ModelField("v", kReal, "<Range maxValue='" + MegabyteOf("9") + "'/>")); }},
    {"LongName", [] { return DataModel(ModelField(MegabyteOf("a"), kReal)); }},
    {"LongStorage", [] { return DataModel(ModelField("v", "measure='' storage='" + MegabyteOf("real") + "'")); }},
    {"LongRole", [] { return DataModel(ModelField("v", kReal + " role='" + MegabyteOf("input") + "'")); }},
    {"LongText", [] { return DataModel(MegabyteOf("x ")); }},
    {"ManyComments", [] { return DataModel(MegabyteOf("<!---->")); }},
    {"DeepNesting", [] { return DataModel(MegabyteOf("<Fields>")); }},
    {"UnclosedTags", [] { return MegabyteOf("<"); }},
    {"OnlyZeros", [] { return std::string(rqtest::kMegabyte, '\0'); }},
    {"OnlyHighBytes", [] { return std::string(rqtest::kMegabyte, '\xFF'); }},
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
