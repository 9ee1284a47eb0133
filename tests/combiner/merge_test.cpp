#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/combiner/combining.h"

namespace {

using namespace rqtest;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVarList;
using RQXPrsUtil::RQXSplitPMMLCombiner;
using ::testing::HasSubstr;
using ::testing::Not;

class Merge : public Combining {
 protected:
  /// The dictionary that comes of these dictionaries' fields, all models having the schema x.
  std::string MergedFields(const Texts& dictionaries) {
    Texts documents;
    for (const std::string& fields : dictionaries) documents.push_back(InPmml(Dictionary(fields) + Model({"x"})));
    const std::string text = Combine(documents);
    const std::size_t begin = text.find("<DataDictionary");
    const std::string end = "</DataDictionary>";
    return text.substr(begin, text.find(end) + end.size() - begin);
  }

  /// The schema that comes of these schemas.
  std::string MergedSchema(const Texts& schemas) {
    Texts documents;
    for (const std::string& schema : schemas) {
      documents.push_back(InPmml(Dictionary(NamedField("x")) + R"(<TreeModel functionName="classification">)" + schema +
                                 "</TreeModel>"));
    }
    const std::string text = Combine(documents);
    const std::size_t begin = text.find("<MiningSchema");
    const std::string end = "</MiningSchema>";
    return text.substr(begin, text.find(end) + end.size() - begin);
  }

  /// The predicate of the first segment.
  std::string Predicate(const Texts& values) {
    EXPECT_EQ(Add(Source({"x"}), values), Ok());
    const std::string text = Export();
    const std::string start = "<Segment>";
    const std::size_t begin = text.find(start) + start.size();
    return text.substr(begin, text.find("<TreeModel") - begin);
  }
};

// Founding

TEST_F(Merge, FirstFileFoundsTheWholeDocument) {
  const std::string header = R"(<Header copyright="c"><Application name="a" version="1"/> text </Header>)";
  const std::string x =
      R"(<DataField dataType="double" name="x" optype="continuous"><Interval closure="openOpen"/></DataField>)";
  const std::string y =
      R"(<DataField dataType="string" name="y" optype="categorical">)" + Values({"n", "y"}) + "</DataField>";
  const std::string schema = R"(<MiningField name="x"/><MiningField name="y" usageType="predicted"/>)";
  const std::string model = R"(<TreeModel functionName="classification"><MiningSchema>)" + schema +
                            R"(</MiningSchema><Node score="n"><True/></Node></TreeModel>)";
  EXPECT_EQ(Combine({InPmml(header + Dictionary(x + y) + model)}),
            InPmml(header + Dictionary(3, x + y + kRegionField) +
                   Mining("<MiningSchema>" + schema + kRegionMining + "</MiningSchema>" +
                          Segmentation(Segment("1", model)))));
}

TEST_F(Merge, RootIsCopiedWithItsAttributesAndWithoutItsChildren) {
  const std::string start =
      "<PMML version=\"4.4\" x:y=\"&lt;&quot;&#x9;&#xA;\xC3\xBC\" xmlns=\"http://www.dmg.org/PMML-4_4\" "
      "xmlns:x=\"urn:x\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:schemaLocation=\"a b\">";
  EXPECT_EQ(Combine({start + "text<!-- c --><Extension/>" + Dictionary(NamedField("x")) + "<MiningBuildTask/>" +
                     Model({"x"}) + Model({"y"}) + "</PMML>"}),
            start + Dictionary(2, NamedField("x") + kRegionField) +
                Mining(CombinedSchema({"x"}) + Segmentation(Segment("1", Model({"x"})))) + "</PMML>");
}

TEST_F(Merge, RootHasNoVersionOfItsOwn) {
  EXPECT_EQ(Combine({"<PMML><MiningBuildTask/>" + Model({"x"}) + "</PMML>"}).substr(0, 6), "<PMML>");
}

TEST_F(Merge, LaterRootsAndHeadersAreNotTakenUp) {
  const std::string text = Combine({Source({"x"}), "<PMML version=\"9\" new=\"n\"><Header copyright=\"later\"/>" +
                                                       Dictionary(NamedField("x")) + Model({"x"}) + "</PMML>"});
  EXPECT_EQ(text.find(R"(<PMML version="4.1"><Header/><DataDictionary)"), 0U);
  EXPECT_THAT(text, Not(HasSubstr("later")));
}

TEST_F(Merge, FirstFileWithoutHeaderGivesNone) {
  const std::string source = InPmml(Dictionary(NamedField("x")) + Model({"x"}));
  EXPECT_EQ(
      Combine({source, Source({"x"})}),
      InPmml(Dictionary(2, NamedField("x") + kRegionField) +
             Mining(CombinedSchema({"x"}) + Segmentation(Segment("1", Model({"x"})) + Segment("2", Model({"x"}))))));
}

TEST_F(Merge, WithoutDictionaryThereAreNoSplitFieldsOfEitherKind) {
  const std::string first = InPmml("<Header/>" + Model({"x"}));
  // Nothing is known of the mining schema either, so that the second file's fields are all new.
  EXPECT_EQ(Combine({first, Source({"x", "y"})}),
            InPmml("<Header/>" + Mining(Schema({"x", "x", "y"}) +
                                        Segmentation(Segment("1", Model({"x"})) + Segment("2", Model({"x", "y"}))))));
}

TEST_F(Merge, WithoutSchemaThereAreNoSplitFieldsOfEitherKind) {
  const std::string bare = R"(<TreeModel functionName="classification"><Node/></TreeModel>)";
  const std::string first = InPmml("<Header/>" + Dictionary(NamedField("x", {"a"})) + bare);
  // Nothing is known of the dictionary, so that the second file's fields are all new, and they alone are counted.
  EXPECT_EQ(Combine({first, InPmml(Dictionary(NamedField("x", {"b"})) + Model({"x"})),
                     InPmml(Dictionary(NamedField("x", {"c"})) + Model({"x"}))}),
            InPmml("<Header/>" + Dictionary(1, NamedField("x", {"a"}) + NamedField("x", {"b", "c"})) +
                   Mining(Segmentation(Segment("1", bare) + Segment("2", Model({"x"})) + Segment("1", Model({"x"}))))));
}

TEST_F(Merge, PiecesMustBeDirectChildren) {
  const std::string hidden = "<Extension><Header/>" + Dictionary(NamedField("h")) + "</Extension>";
  const std::string model =
      R"(<TreeModel functionName="classification"><Extension>)" + Schema({"h"}) + "</Extension></TreeModel>";
  EXPECT_EQ(Combine({InPmml(hidden + model)}), InPmml(Mining(Segmentation(Segment("1", model)))));
}

TEST_F(Merge, OfTwoPiecesOfOneNameTheFirstIsTaken) {
  const std::string model =
      R"(<TreeModel functionName="classification">)" + Schema({"x"}) + Schema({"second"}) + "</TreeModel>";
  EXPECT_EQ(Combine({InPmml("<Header a=\"1\"/><Header a=\"2\"/>" + Dictionary(NamedField("x")) +
                            Dictionary(NamedField("second")) + model)}),
            InPmml("<Header a=\"1\"/>" + Dictionary(2, NamedField("x") + kRegionField) +
                   Mining(CombinedSchema({"x"}) + Segmentation(Segment("1", model)))));
}

// Split variables

TEST_F(Merge, NumberOfFieldsIsRewritten) {
  const std::string source = R"(<DataDictionary a="b" numberOfFields="99">)" + NamedField("x") + "</DataDictionary>";
  const std::string text = Combine({InPmml(source + Model({"x"})), Source({"x", "y", "z"})});
  EXPECT_THAT(text, HasSubstr(R"(<DataDictionary a="b" numberOfFields="4">)"));
}

TEST_F(Merge, NumberOfFieldsIsWrittenInPlainDigits) {
  Texts names;
  for (int i = 0; i < 1233; ++i) names.push_back("f" + std::to_string(i));
  EXPECT_THAT(Combine({Source(names)}), HasSubstr(R"( numberOfFields="1234">)"));
}

TEST_F(Merge, SplitVariablesStandBehindTheFieldsInTheirOrder) {
  vars_.AddCatVar("grade", "", std::vector<double>{1, 2.5, 1e-7}, IRQVariable::RoleNone);
  vars_.AddCatVar("count", "Count <&\"", std::vector<double>{1, 2}, IRQVariable::RoleTarget);
  vars_.AddContVar("age", "", 1, 99, IRQVariable::RoleInput, true, 5);
  vars_.AddCatVar("empty", "", Texts{}, IRQVariable::RoleInput);
  ASSERT_EQ(Add(Source({"x"}), {"1", "1", "1", "1", "1"}), Ok());
  const std::string text = Export();
  EXPECT_THAT(
      text,
      HasSubstr(Dictionary(
          6,
          NamedField("x") + kRegionField +
              R"(<DataField dataType="double" displayName="" name="grade" optype="categorical">)" +
              Values({"1", "2.5", "1e-07"}) + "</DataField>" +
              R"(<DataField dataType="integer" displayName="Count &lt;&amp;&quot;" name="count" optype="categorical">)" +
              Values({"1", "2"}) + "</DataField>" +
              R"(<DataField dataType="double" displayName="" name="age" optype="continuous"/>)" +
              R"(<DataField dataType="string" displayName="" name="empty" optype="categorical"/>)")));
  EXPECT_THAT(text, HasSubstr(R"(<MiningField name="x"/>)" + kRegionMining +
                              R"(<MiningField name="grade" usageType="active"/>)"
                              R"(<MiningField name="count" usageType="active"/>)"
                              R"(<MiningField name="age" usageType="active"/>)"
                              R"(<MiningField name="empty" usageType="active"/></MiningSchema>)"));
}

TEST_F(Merge, IntegerIndicatorDecidesTheDataTypeOfEveryKind) {
  vars_.AddContVar("age", "", IRQVariable::RoleInput);
  vars_.GetVarAt(0)->SetStorageType(1);
  vars_.GetVarAt(1)->SetStorageType(1);
  ASSERT_EQ(Add(Source({"x"}), {"1", "1"}), Ok());
  const std::string text = Export();
  EXPECT_THAT(text,
              HasSubstr(R"(<DataField dataType="integer" displayName="Region" name="region" optype="categorical">)"));
  EXPECT_THAT(text, HasSubstr(R"(<DataField dataType="integer" displayName="" name="age" optype="continuous"/>)"));
}

TEST_F(Merge, MetadataIsTakenWhenTheCombinerIsMade) {
  Combiner();
  vars_.GetVarAt(0)->SetStorageType(1);
  EXPECT_THAT(Combine({Source({"x"})}), HasSubstr(kRegionField));
}

TEST_F(Merge, SplitVariableThatIsAFieldAlreadyStandsTwice) {
  const std::string own = NamedField("region", {"3"});
  EXPECT_EQ(MergedFields({own, own}), Dictionary(2, own + kRegionField));
}

// Lists that hand out other variables than the reference one

struct OddVariable final : IRQVariable {
  int type = 3;
  int integer = 0;
  int categories = 0;
  std::string name = "odd";
  int GetTypeCode() const override { return type; }
  std::string GetName() const override { return name; }
  std::string GetLabel() const override { return "Odd"; }
  int GetNumCategories() const override { return categories; }
  int GetIntegerIndicator() const override { return integer; }
  std::string GetCategoryText(int index) const override { return "c" + std::to_string(index); }
  void SetStorageType(int) override {}
};

struct OddList final : RQVarList {
  std::vector<IRQVariable*> variables;
  const IRQVariable* GetVarAt(int index) const override {
    return index < 0 || index >= Size() ? nullptr : variables[static_cast<std::size_t>(index)];
  }
  IRQVariable* GetVarAt(int index) override {
    return const_cast<IRQVariable*>(static_cast<const OddList*>(this)->GetVarAt(index));
  }
  int Size() const override { return static_cast<int>(variables.size()); }
};

class OddVariables : public Merge {
 protected:
  std::string CombineWith(const Texts& values) {
    RQXSplitPMMLCombiner combiner(list_);
    EXPECT_EQ(combiner.AddModel(WriteFile(File("a.pmml"), Source({"x"})), values), Ok());
    EXPECT_EQ(combiner.GetNModels(), 1);
    EXPECT_EQ(combiner.ExportMiningModel(File("out.pmml")), Ok());
    return ReadFile(File("out.pmml"));
  }
  OddVariable first_, second_;
  OddList list_;
};

TEST_F(OddVariables, UnknownTypeCodeGivesEmptyTypes) {
  list_.variables = {&first_};
  for (const int type : {0, 4, -1, 99}) {
    first_.type = type;
    EXPECT_THAT(CombineWith({"1"}), HasSubstr(R"(<DataField dataType="" displayName="Odd" name="odd" optype=""/>)"));
  }
  first_.integer = 1;
  EXPECT_THAT(CombineWith({"1"}),
              HasSubstr(R"(<DataField dataType="integer" displayName="Odd" name="odd" optype=""/>)"));
}

TEST_F(OddVariables, OnlyAnIndicatorOfOneMeansIntegers) {
  list_.variables = {&first_};
  for (const int integer : {0, 2, -1}) {
    first_.integer = integer;
    EXPECT_THAT(CombineWith({"1"}), HasSubstr(R"(dataType="string" displayName="Odd")"));
  }
}

TEST_F(OddVariables, NegativeNumberOfCategoriesMeansNone) {
  list_.variables = {&first_};
  first_.categories = -3;
  EXPECT_THAT(CombineWith({"1"}), HasSubstr(R"(name="odd" optype="categorical"/>)"));
}

TEST_F(OddVariables, CategoriesAreAskedOfEveryKindOfVariable) {
  list_.variables = {&first_};
  first_.type = 1;
  first_.categories = 2;
  EXPECT_THAT(CombineWith({"1"}), HasSubstr(R"(optype="continuous">)" + Values({"c0", "c1"}) + "</DataField>"));
}

TEST_F(OddVariables, NullVariableIsSkippedAndTheStoredListsAreShorter) {
  first_.name = "a";
  second_.name = "b";
  list_.variables = {&first_, nullptr, &second_};
  const std::string text = CombineWith({"1", "2", "3"});
  // The fields close ranks; the predicates ask the list by its own positions, where one variable has no name.
  EXPECT_THAT(text, HasSubstr(Dictionary(
                        3, NamedField("x") +
                               R"(<DataField dataType="string" displayName="Odd" name="a" optype="categorical"/>)"
                               R"(<DataField dataType="string" displayName="Odd" name="b" optype="categorical"/>)")));
  EXPECT_THAT(text, HasSubstr("<CompoundPredicate booleanOperator=\"and\">" + Simple("a", "1") + Simple("b", "3") +
                              "</CompoundPredicate>"));
}

TEST_F(OddVariables, NullVariablesAlone) {
  list_.variables = {nullptr};
  const std::string text = CombineWith({"1"});
  EXPECT_THAT(text, HasSubstr("<Segment><TreeModel"));
  EXPECT_THAT(text, HasSubstr(Dictionary(1, NamedField("x"))));
}

// Gets longer while it is read, up to three variables.
struct GrowingList final : RQVarList {
  mutable int size = 1;
  OddVariable variable;
  const IRQVariable* GetVarAt(int index) const override {
    if (size < 3) ++size;
    return index < 0 || index >= size ? nullptr : &variable;
  }
  IRQVariable* GetVarAt(int) override { return nullptr; }
  int Size() const override { return size; }
};

TEST_F(OddVariables, ListIsAskedForItsSizeAfterEachVariable) {
  const GrowingList list;
  RQXSplitPMMLCombiner combiner(list);
  ASSERT_EQ(combiner.AddModel(WriteFile(File("a.pmml"), Source({"x"})), Texts(3, "1")), Ok());
  ASSERT_EQ(combiner.ExportMiningModel(File("out.pmml")), Ok());
  EXPECT_EQ(Count(ReadFile(File("out.pmml")), "displayName=\"Odd\""), 3);
}

TEST_F(OddVariables, VariablesThatTheListLostHaveNoFields) {
  first_.name = "a";
  second_.name = "b";
  list_.variables = {&first_, &second_};
  RQXSplitPMMLCombiner combiner(list_);
  list_.variables.pop_back();
  ASSERT_EQ(combiner.AddModel(WriteFile(File("a.pmml"), Source({"x"})), {"1"}), Ok());
  ASSERT_EQ(combiner.ExportMiningModel(File("out.pmml")), Ok());
  const std::string text = ReadFile(File("out.pmml"));
  EXPECT_THAT(text, HasSubstr("name=\"a\""));
  EXPECT_THAT(text, Not(HasSubstr("name=\"b\"")));
}

TEST_F(OddVariables, VariableWithoutNameHasAFieldButNoPredicate) {
  first_.name = "";
  list_.variables = {&first_};
  const std::string text = CombineWith({"1"});
  EXPECT_THAT(text, HasSubstr(R"(<DataField dataType="string" displayName="Odd" name="" optype="categorical"/>)"));
  EXPECT_THAT(text, HasSubstr(R"(<MiningField name="" usageType="active"/>)"));
  EXPECT_THAT(text, HasSubstr(R"( numberOfFields="2">)"));
  EXPECT_THAT(text, HasSubstr("<Segment><TreeModel"));
}

TEST_F(OddVariables, PredicatesUseTheNamesOfTheMoment) {
  list_.variables = {&first_};
  RQXSplitPMMLCombiner combiner(list_);
  first_.name = "renamed";
  ASSERT_EQ(combiner.AddModel(WriteFile(File("a.pmml"), Source({"x"})), {"1"}), Ok());
  ASSERT_EQ(combiner.ExportMiningModel(File("out.pmml")), Ok());
  const std::string text = ReadFile(File("out.pmml"));
  EXPECT_THAT(text, HasSubstr(Simple("renamed", "1")));
  EXPECT_THAT(text, HasSubstr(R"(displayName="Odd" name="odd")"));
}

// Predicates

TEST_F(Merge, OneValueIsASimplePredicate) { EXPECT_EQ(Predicate({"1"}), Simple("region", "1")); }

TEST_F(Merge, ValueStandsAsItIsGiven) {
  EXPECT_EQ(Predicate({" 1.0\t\r\n\xE2\x82\xAC"}), Simple("region", " 1.0&#x9;&#xD;&#xA;\xE2\x82\xAC"));
}

TEST_F(Merge, EmptyValueLeavesTheSegmentWithoutPredicate) {
  EXPECT_EQ(Predicate({""}), "");
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(Merge, ManyValuesAreACompoundPredicateInTheOrderOfTheVariables) {
  vars_.AddCatVar("b", "", Texts{}, IRQVariable::RoleInput);
  vars_.AddCatVar("a", "", Texts{}, IRQVariable::RoleInput);
  EXPECT_EQ(Predicate({"3", "2", "1"}), R"(<CompoundPredicate booleanOperator="and">)" + Simple("region", "3") +
                                            Simple("b", "2") + Simple("a", "1") + "</CompoundPredicate>");
}

TEST_F(Merge, EmptyValueAmongManyIsLeftOut) {
  vars_.AddCatVar("b", "", Texts{}, IRQVariable::RoleInput);
  EXPECT_EQ(Predicate({"", "2"}),
            R"(<CompoundPredicate booleanOperator="and">)" + Simple("b", "2") + "</CompoundPredicate>");
}

TEST_F(Merge, EmptyValuesAloneLeaveAnEmptyCompoundPredicate) {
  vars_.AddCatVar("b", "", Texts{}, IRQVariable::RoleInput);
  EXPECT_EQ(Predicate({"", ""}), R"(<CompoundPredicate booleanOperator="and"/>)");
}

// Segments

TEST_F(Merge, SegmentsStandInTheOrderOfTheCallsAlsoForTheSameValues) {
  const auto model = [](const std::string& id) { return Model({"x"}, "<Node id=\"" + id + "\"/>"); };
  for (const char* id : {"b", "a", "c"}) {
    ASSERT_EQ(Add(InPmml(Dictionary(NamedField("x")) + model(id)), {"1"}), Ok());
  }
  EXPECT_EQ(Combiner().GetNModels(), 3);
  EXPECT_THAT(Export(),
              HasSubstr(Segmentation(Segment("1", model("b")) + Segment("1", model("a")) + Segment("1", model("c")))));
}

TEST_F(Merge, ModelsOfDifferentKindsMayStandTogether) {
  const std::string regression =
      R"(<RegressionModel functionName="classification">)" + Schema({"x"}) + "</RegressionModel>";
  EXPECT_THAT(Combine({Source({"x"}), InPmml(Dictionary(NamedField("x")) + regression)}),
              HasSubstr(Segment("1", Model({"x"})) + Segment("2", regression)));
}

TEST_F(Merge, TransformationsBecomeTheLastChildOfTheModelOfTheirSegment) {
  const std::string derived =
      "<DerivedField name=\"d\"><FieldRef field=\"x\"/></DerivedField><DerivedField name=\"e\"/>";
  const std::string dictionary =
      "<TransformationDictionary a=\"b\"><DefineFunction/> <!-- c -->" + derived +
      "text<Extension><DerivedField name=\"hidden\"/></Extension></TransformationDictionary>";
  const std::string own = "<LocalTransformations><DerivedField name=\"own\"/></LocalTransformations><Node/>";
  const auto expected = [&](const std::string& rest) {
    return Model({"x"}, rest + "<LocalTransformations>" + derived + "</LocalTransformations>");
  };
  const std::string text = Combine({InPmml(Dictionary(NamedField("x")) + dictionary + Model({"x"})), Source({"x"}),
                                    InPmml(dictionary + Model({"x"}, own))});
  EXPECT_THAT(text, HasSubstr(Segmentation(Segment("1", expected("<Node/>")) + Segment("2", Model({"x"})) +
                                           Segment("1", expected(own)))));
  EXPECT_THAT(text, Not(HasSubstr("TransformationDictionary")));
}

TEST_F(Merge, EmptyTransformationDictionaryLeavesEmptyTransformations) {
  EXPECT_THAT(Combine({InPmml("<TransformationDictionary/>" + Model({"x"}))}),
              HasSubstr(Segment("1", Model({"x"}, "<Node/><LocalTransformations/>"))));
}

// Data fields

TEST_F(Merge, NewFieldsComeBehindTheSplitVariablesAsTheyAreMet) {
  const std::string z = R"(<DataField dataType="integer" name="z" optype="ordinal"><Extension/>)" + Values({"1", "1"}) +
                        " text</DataField>";
  EXPECT_EQ(MergedFields({NamedField("x"), NamedField("x") + z + NamedField("y"), NamedField("w") + NamedField("y")}),
            Dictionary(5, NamedField("x") + kRegionField + z + NamedField("y") + NamedField("w")));
}

TEST_F(Merge, FirstDefinitionOfAFieldWins) {
  const std::string first = R"(<DataField dataType="string" name="x" optype="categorical"/>)";
  const std::string later =
      R"(<DataField dataType="double" displayName="X" name="x" optype="continuous"><Interval/></DataField>)";
  EXPECT_EQ(MergedFields({first, later}), Dictionary(2, first + kRegionField));
}

TEST_F(Merge, NamesAreComparedExactly) {
  EXPECT_EQ(MergedFields({NamedField("x"), NamedField("X") + NamedField("x ") + NamedField("")}),
            Dictionary(5, NamedField("x") + kRegionField + NamedField("X") + NamedField("x ") + NamedField("")));
}

TEST_F(Merge, NewFieldThatAFileListsTwiceIsInsertedOnce) {
  // The second one is known by then, and its values go to the field at its position, the region.
  EXPECT_EQ(MergedFields({NamedField("x"), NamedField("y", {"a"}) + NamedField("y", {"b"})}),
            Dictionary(3, NamedField("x") + kRegionField.substr(0, kRegionField.size() - 12) + Value("b") +
                              "</DataField>" + NamedField("y", {"a"})));
}

TEST_F(Merge, FirstFilesDuplicatesStay) {
  EXPECT_EQ(MergedFields({NamedField("x", {"a", "a"}) + NamedField("x", {"b"}), ""}),
            Dictionary(3, NamedField("x", {"a", "a"}) + NamedField("x", {"b"}) + kRegionField));
}

// Values

TEST_F(Merge, NewValuesComeBehindTheChildrenOfTheFieldWithAllTheirContent) {
  const std::string c = R"(<Value displayValue="C" property="missing" value="c"><Extension/></Value>)";
  EXPECT_EQ(MergedFields({R"(<DataField name="x"><Value value="a"/><Value value="b"/><Interval/></DataField>)",
                          R"(<DataField name="x"><Value value="a"/>)" + c + "</DataField>"}),
            Dictionary(2, R"(<DataField name="x"><Value value="a"/><Value value="b"/><Interval/>)" + c +
                              "</DataField>" + kRegionField));
}

TEST_F(Merge, ValuesOfThreeFilesBecomeTheirUnion) {
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}), NamedField("x", {"b", "a"}), NamedField("x", {"c", "b", "a", "d"})}),
            Dictionary(2, NamedField("x", {"a", "b", "c", "d"}) + kRegionField));
}

TEST_F(Merge, ValuesAreComparedExactly) {
  EXPECT_EQ(MergedFields({NamedField("x", {"1"}), NamedField("x", {"1.0", " 1", "", "1"})}),
            Dictionary(2, NamedField("x", {"1", "1.0", " 1", ""}) + kRegionField));
}

TEST_F(Merge, ValueThatIsNewTwiceInOneFieldIsInsertedTwice) {
  // Compared with what was known before the field.
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}), NamedField("x", {"b", "b"}), NamedField("x", {"b", "a"})}),
            Dictionary(2, NamedField("x", {"a", "b", "b"}) + kRegionField));
}

TEST_F(Merge, ValuesGoToTheFieldAtThePositionNotToTheOneOfTheName) {
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}) + NamedField("y", {"p"}),
                          NamedField("y", {"p", "q"}) + NamedField("x", {"a", "b"})}),
            Dictionary(3, NamedField("x", {"a", "p", "q"}) + NamedField("y", {"p", "a", "b"}) + kRegionField));
}

TEST_F(Merge, FieldLeftOutShiftsTheValuesOfThoseBehindIt) {
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}) + NamedField("y", {"p"}), NamedField("y", {"q"})}),
            Dictionary(3, NamedField("x", {"a", "q"}) + NamedField("y", {"p"}) + kRegionField));
}

TEST_F(Merge, ValuesCanReachTheSplitVariablesField) {
  const std::string region =
      R"(<DataField dataType="string" displayName="Region" name="region" optype="categorical">)" +
      Values({"1", "2", "a"}) + "</DataField>";
  EXPECT_EQ(MergedFields({NamedField("x"), NamedField("x") + NamedField("x", {"1", "a"})}),
            Dictionary(2, NamedField("x") + region));
}

TEST_F(Merge, ValuesAtAPositionBeyondTheFieldsAreSkipped) {
  EXPECT_EQ(MergedFields({NamedField("x"), NamedField("x") + NamedField("x") + NamedField("x", {"lost"})}),
            Dictionary(2, NamedField("x") + kRegionField));
}

TEST_F(Merge, PositionCountsTheFieldsInsertedByTheSameFile) {
  // y and z are inserted at the positions 2 and 3; the third field of the source, x, has the position 2.
  EXPECT_EQ(MergedFields({NamedField("x"), NamedField("y") + NamedField("z") + NamedField("x", {"v"})}),
            Dictionary(4, NamedField("x") + kRegionField + NamedField("y", {"v"}) + NamedField("z")));
}

TEST_F(Merge, ValuesOfTheSplitVariableAsAKnownFieldGoByPosition) {
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}), NamedField("region", {"3"})}),
            Dictionary(2, NamedField("x", {"a", "3"}) + kRegionField));
}

// Lists of names and of elements that drift apart

TEST_F(Merge, FieldWithoutNameIsNotCounted) {
  EXPECT_EQ(MergedFields({"<DataField/>" + NamedField("x")}),
            Dictionary(2, "<DataField/>" + NamedField("x") + kRegionField));
}

TEST_F(Merge, FieldWithoutNameInTheFirstFileShiftsThePositionsOfTheOthers) {
  EXPECT_EQ(
      MergedFields({R"(<DataField a="0"/>)" + NamedField("x", {"a"}), NamedField("x", {"b"})}),
      Dictionary(2, R"(<DataField a="0"><Value value="b"/></DataField>)" + NamedField("x", {"a"}) + kRegionField));
}

TEST_F(Merge, FieldWithoutNameInALaterFileShiftsItsElements) {
  // The names are y and z, the elements the nameless one, y and z: what is inserted for y is the nameless one.
  EXPECT_EQ(MergedFields({NamedField("x"), R"(<DataField a="0"/>)" + NamedField("y") + NamedField("z")}),
            Dictionary(3, NamedField("x") + kRegionField + R"(<DataField a="0"/>)" + NamedField("y")));
}

TEST_F(Merge, KnownNameBehindANamelessFieldTakesTheNamelessFieldsValues) {
  EXPECT_EQ(MergedFields(
                {NamedField("x", {"a"}), R"(<DataField><Value value="n"/></DataField>)" + NamedField("x", {"lost"})}),
            Dictionary(2, NamedField("x", {"a", "n"}) + kRegionField));
}

TEST_F(Merge, ValueWithoutTextShiftsTheElementsOfAField) {
  // The texts are b and c, the elements the one without, b and c.
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}),
                          R"(<DataField name="x"><Value p="0"/>)" + Values({"b", "c"}) + "</DataField>"}),
            Dictionary(2, R"(<DataField name="x"><Value value="a"/><Value p="0"/><Value value="b"/></DataField>)" +
                              kRegionField));
}

TEST_F(Merge, ValuesInsertedInTheDriftAreKnownByTheirOwnTexts) {
  const std::string drifted = R"(<DataField name="x"><Value p="0"/>)" + Values({"b", "c"}) + "</DataField>";
  // b was inserted for c, so that it is known, and c is not.
  EXPECT_EQ(MergedFields({NamedField("x"), drifted, NamedField("x", {"b", "c"})}),
            Dictionary(2, R"(<DataField name="x"><Value p="0"/><Value value="b"/><Value value="c"/></DataField>)" +
                              kRegionField));
}

// Descendants

TEST_F(Merge, NestedFieldsAreFieldsToo) {
  const std::string nested = "<Extension>" + NamedField("deep", {"d"}) + "</Extension>";
  EXPECT_EQ(
      MergedFields({NamedField("x") + nested, NamedField("x") + NamedField("deep", {"e"})}),
      Dictionary(3, NamedField("x") + "<Extension>" + NamedField("deep", {"d", "e"}) + "</Extension>" + kRegionField));
}

TEST_F(Merge, NestedFieldOfALaterFileIsInsertedBesideTheOthers) {
  const std::string outer = R"(<DataField name="o"><DataField name="i"><Value value="v"/></DataField></DataField>)";
  EXPECT_EQ(MergedFields({NamedField("x"), outer}),
            Dictionary(4, NamedField("x") + kRegionField + outer + NamedField("i", {"v"})));
}

TEST_F(Merge, NestedValuesAreValuesToo) {
  const std::string nested = R"(<DataField name="x"><Extension><Value value="a"/></Extension></DataField>)";
  EXPECT_EQ(MergedFields({nested, NamedField("x", {"a"})}), Dictionary(2, nested + kRegionField));
}

TEST_F(Merge, NestedValuesOfALaterFileAreInsertedBesideTheOthers) {
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}),
                          R"(<DataField name="x"><Extension><Value value="b"/></Extension></DataField>)"}),
            Dictionary(2, NamedField("x", {"a", "b"}) + kRegionField));
}

TEST_F(Merge, ValueInAValueIsInsertedWithItAndAlone) {
  const std::string pair = R"(<Value value="b"><Value value="c"/></Value>)";
  EXPECT_EQ(MergedFields({NamedField("x", {"a"}), R"(<DataField name="x">)" + pair + "</DataField>"}),
            Dictionary(2, R"(<DataField name="x"><Value value="a"/>)" + pair + R"(<Value value="c"/></DataField>)" +
                              kRegionField));
}

TEST_F(Merge, PrefixedAndOtherElementsAreNoFieldsAndValues) {
  EXPECT_EQ(MergedFields({NamedField("x"), R"(<p:DataField name="p"/><datafield name="d"/><DataField name="x">)"
                                           R"(<p:Value value="v"/><value value="v"/></DataField>)"}),
            Dictionary(2, NamedField("x") + kRegionField));
}

// Mining schema

TEST_F(Merge, SchemaOfTheFirstFileAddsNothing) {
  EXPECT_EQ(MergedSchema({Schema({"x", "y"}), Schema({"x", "y"})}), CombinedSchema({"x", "y"}));
}

TEST_F(Merge, EmptyOrMissingSchemaAddsNothing) {
  EXPECT_EQ(MergedSchema({Schema({"x"}), Schema({}), "", "<MiningSchema><MiningField/></MiningSchema>"}),
            CombinedSchema({"x"}));
}

TEST_F(Merge, NewMiningFieldsComeLastAndKnownOnesStayAsTheyAre) {
  const std::string y = R"(<MiningField name="y" usageType="predicted"><Extension/></MiningField>)";
  EXPECT_EQ(MergedSchema({Schema({"x"}),
                          R"(<MiningSchema><MiningField name="x" usageType="predicted"/>)" + y + "</MiningSchema>"}),
            "<MiningSchema><MiningField name=\"x\"/>" + kRegionMining + y + "</MiningSchema>");
}

TEST_F(Merge, KnownNamesInAnotherOrderAddNothing) {
  EXPECT_EQ(MergedSchema({Schema({"x", "y", "z"}), Schema({"z", "x"}), Schema({"region", "z", "y", "x"})}),
            CombinedSchema({"x", "y", "z"}));
}

TEST_F(Merge, NewNameThatOneSchemaListsTwiceIsInsertedOnce) {
  EXPECT_EQ(MergedSchema({Schema({"x"}), Schema({"y", "y"}), Schema({"y", "w"})}), CombinedSchema({"x"}, {"y", "w"}));
}

TEST_F(Merge, DuplicatesOfTheFirstSchemaStay) {
  EXPECT_EQ(MergedSchema({Schema({"x", "x"}), Schema({"x", "x", "x"})}), CombinedSchema({"x", "x"}));
}

TEST_F(Merge, MiningFieldsWithoutNameAreLeftOutOfLaterFiles) {
  EXPECT_EQ(MergedSchema({"<MiningSchema><MiningField/><MiningField name=\"x\"/></MiningSchema>",
                          "<MiningSchema><MiningField/><MiningField name=\"y\"/></MiningSchema>"}),
            "<MiningSchema><MiningField/><MiningField name=\"x\"/>" + kRegionMining +
                "<MiningField name=\"y\"/></MiningSchema>");
}

TEST_F(Merge, OnlyDirectMiningFieldsCount) {
  EXPECT_EQ(MergedSchema({Schema({"x"}),
                          "<MiningSchema><Extension><MiningField name=\"y\"/></Extension>"
                          "<p:MiningField name=\"z\"/></MiningSchema>"}),
            CombinedSchema({"x"}));
}

TEST_F(Merge, LaterFileMayNameTheSplitVariableInItsSchema) {
  EXPECT_EQ(MergedSchema({Schema({"x"}), Schema({"x", "region", "y"})}), CombinedSchema({"x"}, {"y"}));
}

}  // namespace
