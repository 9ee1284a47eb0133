#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <type_traits>
#include <vector>
#include <xercesc/sax/SAXParseException.hpp>

#include "tests/combiner/combining.h"
#include "tests/support/leaks.h"

namespace {

using namespace rqtest;
using RQCommon::RQStatus;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVarList;
using RQXPrsUtil::RQXSplitPMMLCombiner;
using ::testing::HasSubstr;
using ::testing::Not;

static_assert(!std::is_copy_constructible_v<RQXSplitPMMLCombiner> && !std::is_copy_assignable_v<RQXSplitPMMLCombiner>);
static_assert(!std::is_polymorphic_v<RQXSplitPMMLCombiner>);
static_assert(!std::is_convertible_v<const RQVarList&, RQXSplitPMMLCombiner>);

class AddModel : public Combining {};

// A model of a kind, with a schema.
std::string ModelOf(const std::string& tag, const std::string& attributes = R"( functionName="classification")") {
  return "<" + tag + attributes + ">" + Schema({"x"}) + "</" + tag + ">";
}

std::string WithModel(const std::string& model) { return InPmml("<Header/>" + Dictionary(NamedField("x")) + model); }

TEST_F(AddModel, NewCombinerHasNoModels) { EXPECT_EQ(Combiner().GetNModels(), 0); }

TEST_F(AddModel, DisplayWritesNothing) {
  ASSERT_EQ(Add(Source({"x"})), Ok());
  std::ostringstream stream;
  stream.width(7);
  Combiner().Display(stream);
  EXPECT_EQ(stream.str(), "");
  EXPECT_EQ(stream.width(), 7);
  EXPECT_TRUE(stream.good());
}

TEST_F(AddModel, EmptyListOfSplitVariablesTakesNoFile) {
  const RQVarList none;
  RQXSplitPMMLCombiner combiner(none);
  EXPECT_EQ(combiner.AddModel(WriteFile(File("a.pmml"), Source({"x"})), {"1"}), Failure(126));
  EXPECT_EQ(combiner.AddModel(File("a.pmml"), {}), Failure(126));
  EXPECT_EQ(combiner.GetNModels(), 0);
}

// Empty arguments

TEST_F(AddModel, EmptyArgumentsReturnThePreviousStatusAndDoNothing) {
  EXPECT_EQ(Combiner().AddModel("", {"1"}), Ok());
  EXPECT_EQ(Combiner().AddModel(File("nowhere"), {}), Ok());
  ASSERT_EQ(Add(Source({"x"})), Ok());
  ASSERT_EQ(Add(WithModel(ModelOf("TreeModel", R"( functionName="regression")"))), Failure(124));
  EXPECT_EQ(Combiner().AddModel("", {"1"}), Failure(124));
  EXPECT_EQ(Combiner().AddModel(WriteFile(File("a.pmml"), Source({"x"})), {}), Failure(124));
  EXPECT_EQ(Combiner().AddModel("", {}), Failure(124));
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(AddModel, GoodCallReplacesAnEarlierFailure) {
  ASSERT_EQ(Add(Source({"x"}), {"1", "2"}), Failure(126));
  ASSERT_EQ(Add(Source({"x"})), Ok());
  EXPECT_EQ(Combiner().AddModel("", {}), Ok());
}

// Number of values

TEST_F(AddModel, NumberOfValuesMustBeThatOfTheVariables) {
  vars_.AddCatVar("sex", "", Texts{"m", "f"}, IRQVariable::RoleInput);
  EXPECT_EQ(Add(Source({"x"}), {"1"}), Failure(126));
  EXPECT_EQ(Add(Source({"x"}), {"1", "m", "?"}), Failure(126));
  EXPECT_EQ(Combiner().GetNModels(), 0);
  EXPECT_EQ(Add(Source({"x"}), {"1", "m"}), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(AddModel, WrongNumberOfValuesIsSeenBeforeTheFileIsRead) {
  EXPECT_EQ(Combiner().AddModel(File("nowhere.pmml"), {"1", "2"}), Failure(126));
  EXPECT_EQ(Add("<PMML", {"1", "2"}), Failure(126));
}

TEST_F(AddModel, TheListIsAskedAgainForItsSize) {
  Combiner();
  vars_.AddCatVar("late", "Late", Texts{"a"}, IRQVariable::RoleInput);
  EXPECT_EQ(Add(Source({"x"}), {"1"}), Failure(126));
  EXPECT_EQ(Add(Source({"x"}), {"1", "a"}), Ok());
  // The predicate asks the list; the fields were taken from it when the combiner was made.
  const std::string text = Export();
  EXPECT_THAT(text, HasSubstr(Simple("region", "1") + Simple("late", "a")));
  EXPECT_THAT(text, Not(HasSubstr("name=\"late\"")));
}

TEST_F(AddModel, ValuesAreNotComparedWithTheCategories) {
  EXPECT_EQ(Add(Source({"x"}), {"1.0"}), Ok());
  EXPECT_EQ(Add(Source({"x"}), {" elsewhere <&\"' "}), Ok());
  const std::string text = Export();
  EXPECT_THAT(text, HasSubstr(R"(value="1.0"/><TreeModel)"));
  EXPECT_THAT(text, HasSubstr(R"(value=" elsewhere &lt;&amp;&quot;' "/><TreeModel)"));
}

// Files that cannot be read

TEST_F(AddModel, FileThatIsNotThereIsAFailedParseAndFoundsNothing) {
  EXPECT_EQ(Combiner().AddModel(File("nowhere.pmml"), {"1"}), Failure(104));
  EXPECT_EQ(Combiner().GetNModels(), 0);
  EXPECT_EQ(Combiner().ExportMiningModel(File("out.pmml")), Failure(104));
  EXPECT_FALSE(std::filesystem::exists(File("out.pmml")));
  EXPECT_EQ(Add(Source({"x"})), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(AddModel, ExceptionOfABrokenFilePassesAndTheNextFileFounds) {
  EXPECT_THROW(Add("<PMML><Header>"), xercesc::SAXParseException);
  EXPECT_EQ(Combiner().GetNModels(), 0);
  EXPECT_EQ(Combine({Source({"x"})}), InPmml("<Header/>" + Dictionary(2, NamedField("x") + kRegionField) +
                                             Mining(CombinedSchema({"x"}) + Segmentation(Segment("1", Model({"x"}))))));
}

TEST_F(AddModel, AfterAnExceptionTheLastStatusIsOk) {
  ASSERT_EQ(Add(Source({"x"}), {"1", "2"}), Failure(126));
  EXPECT_THROW(Add("<PMML>"), xercesc::SAXParseException);
  EXPECT_EQ(Combiner().AddModel("", {}), Ok());
}

TEST_F(AddModel, LaterFilesThatCannotBeReadChangeNothing) {
  const std::string expected = Combine({Source({"x"}), Source({"x"})});
  RQXSplitPMMLCombiner combiner(vars_);
  const std::string good = WriteFile(File("good.pmml"), Source({"x"}));
  ASSERT_EQ(combiner.AddModel(good, {"1"}), Ok());
  EXPECT_EQ(combiner.AddModel(File("nowhere.pmml"), {"2"}), Failure(104));
  {
    const rqtest::LeaksOfTheLibrary looksAway;
    EXPECT_EQ(combiner.AddModel(File(""), {"2"}), Failure(104));  // a folder
  }
  const std::string whole = Source({"x", "y"});
  const std::string cut = WriteFile(File("cut.pmml"), whole.substr(0, whole.size() - 9));
  EXPECT_THROW(combiner.AddModel(cut, {"2"}), xercesc::SAXParseException);
  EXPECT_EQ(combiner.GetNModels(), 1);
  ASSERT_EQ(combiner.AddModel(good, {"2"}), Ok());
  ASSERT_EQ(combiner.ExportMiningModel(File("out.pmml")), Ok());
  EXPECT_EQ(ReadFile(File("out.pmml")), kDeclaration + expected);
}

// Models

struct Refusal {
  const char* behaviour;
  std::string document;
  long code;
};

class FirstFile : public AddModel, public ::testing::WithParamInterface<Refusal> {};

TEST_P(FirstFile, IsRefused) {
  EXPECT_EQ(Add(GetParam().document), Failure(GetParam().code)) << GetParam().behaviour;
  EXPECT_EQ(Combiner().GetNModels(), 0);
  // It leaves a document without an element, which later files, good or bad, can neither found nor add to.
  EXPECT_EQ(Add(Source({"x"})), Ok());
  EXPECT_EQ(Add(WithModel(ModelOf("TreeModel", R"( functionName="regression")"))), Ok());
  EXPECT_EQ(Add(WithModel(ModelOf("MiningModel"))), Ok());
  EXPECT_EQ(Add(WithModel(ModelOf("TreeModel", ""))), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 0);
  EXPECT_EQ(Export(), "");
}

INSTANTIATE_TEST_SUITE_P(
    All, FirstFile,
    ::testing::Values(Refusal{"MiningModel", WithModel(ModelOf("MiningModel")), 125},
                      Refusal{"MiningModelWithoutFunctionName", WithModel(ModelOf("MiningModel", "")), 125},
                      Refusal{"MiningModelBehindATree", WithModel(ModelOf("TreeModel") + ModelOf("MiningModel")), 125},
                      Refusal{"NoFunctionName", WithModel(ModelOf("TreeModel", "")), 108},
                      Refusal{"NoModel", WithModel(""), 108},
                      Refusal{"UnknownModel", WithModel(ModelOf("Scorecard")), 108},
                      Refusal{"PrefixedModel", WithModel(ModelOf("p:TreeModel")), 108},
                      Refusal{"ModelInOtherCase", WithModel(ModelOf("treemodel")), 108},
                      Refusal{"ModelBelowAnExtension", WithModel("<Extension>" + ModelOf("TreeModel") + "</Extension>"),
                              108},
                      Refusal{"OtherRoot", "<pmml>" + ModelOf("TreeModel") + "</pmml>", 108},
                      Refusal{"PrefixedRoot", "<p:PMML>" + ModelOf("TreeModel") + "</p:PMML>", 108}),
    [](const auto& tested) { return tested.param.behaviour; });

TEST_F(AddModel, RootIsFoundBehindCommentsAndInstructions) {
  EXPECT_EQ(Add("<!-- c --><?pi d?>" + Source({"x"}) + "<!-- e -->"), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

struct LaterRefusal {
  const char* behaviour;
  std::string model;
  long code;
};

class LaterFile : public AddModel, public ::testing::WithParamInterface<LaterRefusal> {};

TEST_P(LaterFile, IsRefusedAndContributesNothing) {
  const Texts names = {"x"};
  ASSERT_EQ(Add(Source(names)), Ok());
  const std::string document = InPmml(Dictionary(NamedField("x", {"new"}) + NamedField("new")) + GetParam().model);
  EXPECT_EQ(Add(document, {"2"}), Failure(GetParam().code)) << GetParam().behaviour;
  EXPECT_EQ(Combiner().GetNModels(), 1);
  EXPECT_EQ(Add(Source(names), {"2"}), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 2);
  EXPECT_EQ(Export(), InPmml("<Header/>" + Dictionary(2, NamedField("x") + kRegionField) +
                             Mining(CombinedSchema(names) +
                                    Segmentation(Segment("1", Model(names)) + Segment("2", Model(names))))));
}

INSTANTIATE_TEST_SUITE_P(
    All, LaterFile,
    ::testing::Values(
        LaterRefusal{"MiningModel", ModelOf("MiningModel"), 125},
        LaterRefusal{"MiningModelBehindATree", ModelOf("TreeModel") + ModelOf("MiningModel"), 125},
        LaterRefusal{"NoFunctionName", ModelOf("TreeModel", ""), 108},
        LaterRefusal{"OtherFunctionName", ModelOf("TreeModel", R"( functionName="regression")"), 124},
        LaterRefusal{"FunctionNameInOtherCase", ModelOf("TreeModel", R"( functionName="Classification")"), 124},
        LaterRefusal{"LongerFunctionName", ModelOf("TreeModel", R"( functionName="classification ")"), 124},
        LaterRefusal{"EmptyFunctionName", ModelOf("TreeModel", R"( functionName="")"), 124}),
    [](const auto& tested) { return tested.param.behaviour; });

TEST_F(AddModel, LaterFileWithoutModelGivesItsFieldsAndNoSegment) {
  ASSERT_EQ(Add(Source({"x"})), Ok());
  EXPECT_EQ(Add(InPmml(Dictionary(NamedField("x", {"a"}) + NamedField("y"))), {"2"}), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 1);
  EXPECT_EQ(Export(), InPmml("<Header/>" + Dictionary(3, NamedField("x", {"a"}) + kRegionField + NamedField("y")) +
                             Mining(CombinedSchema({"x"}) + Segmentation(Segment("1", Model({"x"}))))));
}

TEST_F(AddModel, LaterFileWithoutRootElementOfTheNameAddsNothing) {
  ASSERT_EQ(Add(Source({"x"})), Ok());
  EXPECT_EQ(Add("<other>" + Dictionary(NamedField("y")) + Model({"y"}) + "</other>", {"2"}), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 1);
  EXPECT_THAT(Export(), Not(HasSubstr("\"y\"")));
}

class EachModel : public AddModel, public ::testing::WithParamInterface<const char*> {};

TEST_P(EachModel, IsRecognised) {
  EXPECT_EQ(Add(WithModel(ModelOf(GetParam()))), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 1);
  EXPECT_THAT(Export(), HasSubstr(Segment("1", ModelOf(GetParam()))));
}

constexpr const char* kModels[] = {"AssociationModel", "ClusteringModel", "GeneralRegressionModel",
                                   "NaiveBayesModel",  "NeuralNetwork",   "RegressionModel",
                                   "RuleSetModel",     "SequenceModel",   "SupportVectorMachineModel",
                                   "TextModel",        "TimeSeriesModel", "TreeModel"};

INSTANTIATE_TEST_SUITE_P(All, EachModel, ::testing::ValuesIn(kModels),
                         [](const auto& tested) { return std::string(tested.param); });

class Priority : public AddModel, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(Priority, TheFirstOfTheOrderIsChosenWhateverItsPlace) {
  const std::size_t first = GetParam();
  std::string models;
  for (std::size_t i = std::size(kModels); i > first; --i) models += ModelOf(kModels[i - 1]);
  ASSERT_EQ(Add(WithModel(models)), Ok());
  const std::string text = Export();
  EXPECT_THAT(text, HasSubstr(Segment("1", ModelOf(kModels[first]))));
  EXPECT_EQ(Count(text, "<MiningSchema>"), 2) << "no other model may reach the output";
}

INSTANTIATE_TEST_SUITE_P(All, Priority, ::testing::Range(std::size_t{0}, std::size(kModels)));

TEST_F(AddModel, OfTwoModelsOfOneKindTheFirstIsTaken) {
  ASSERT_EQ(Add(WithModel(Model({"x"}, "<Node id=\"1\"/>") + Model({"x"}, "<Node id=\"2\"/>"))), Ok());
  const std::string text = Export();
  EXPECT_THAT(text, HasSubstr("<Node id=\"1\"/>"));
  EXPECT_THAT(text, Not(HasSubstr("<Node id=\"2\"/>")));
}

// Algorithm names

TEST_F(AddModel, TheFirstAlgorithmNameStays) {
  const auto model = [](const std::string& algorithm) {
    return ModelOf("TreeModel", algorithm + R"( functionName="classification")");
  };
  ASSERT_EQ(Add(WithModel(model(R"( algorithmName="CART")"))), Ok());
  EXPECT_EQ(Add(WithModel(model(R"( algorithmName="C5")"))), Ok());
  EXPECT_EQ(Add(WithModel(model(""))), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 3);
  const std::string text = Export();
  EXPECT_THAT(text, HasSubstr(R"(<MiningModel algorithmName="CART" functionName="classification">)"));
  EXPECT_EQ(Count(text, "CART"), 2);
  EXPECT_EQ(Count(text, "C5"), 1);
}

TEST_F(AddModel, LaterOrEmptyAlgorithmNameIsNotTakenUp) {
  ASSERT_EQ(Add(WithModel(ModelOf("TreeModel", R"( algorithmName="" functionName="classification")"))), Ok());
  ASSERT_EQ(Add(WithModel(ModelOf("TreeModel", R"( algorithmName="C5" functionName="classification")"))), Ok());
  EXPECT_THAT(Export(), HasSubstr(R"(<MiningModel functionName="classification">)"));
}

TEST_F(AddModel, EmptyFunctionNameMakesNoMiningModel) {
  // The attribute is there, so that the file is accepted; but nothing can be made of it.
  EXPECT_EQ(Add(WithModel(ModelOf("TreeModel", R"( functionName="")"))), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 0);
  EXPECT_EQ(Add(WithModel(ModelOf("TreeModel", R"( functionName="anything")"))), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 0);
}

TEST_F(AddModel, AnyOtherFunctionNameIsTakenAsItIs) {
  const std::string odd = ModelOf("TreeModel", " functionName=\" \xC3\xBC &amp; &lt;\"");
  ASSERT_EQ(Add(WithModel(odd)), Ok());
  ASSERT_EQ(Add(WithModel(odd)), Ok());
  EXPECT_EQ(Count(Export(), " functionName=\" \xC3\xBC &amp; &lt;\""), 3);
}

}  // namespace
