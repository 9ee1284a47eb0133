#include "StatusTable.h"

#include <algorithm>

#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

namespace codes = RQXPrsUtil;

constexpr std::array kTable{
    StatusEntry{codes::XmlStartFailed,
                false,
                "the XML library could not be started, or its parser not be created",
                {"the XML library is damaged or does not fit the program", "there was not enough memory to start it"},
                "check the installation of the XML library and the free memory"},
    StatusEntry{codes::ParseFailed,
                false,
                "the input could not be read or decoded, or no document resulted",
                {"the bytes are not text in the encoding that the XML declaration names",
                 "the encoding that the XML declaration names is not known", "the file is compressed, or no XML at all",
                 "reading broke off in the middle"},
                "look at the first line of the file and its encoding; unpack it if it is packed"},
    StatusEntry{codes::WrongRootElement,
                false,
                "the document element is missing or not the one asked for",
                {"the document is of another kind", "the name is written otherwise: upper and lower case count",
                 "the name has a namespace prefix, as in \"pmml:PMML\""},
                "give a document whose element is \"PMML\" (or \"DataModel\"), unprefixed"},
    StatusEntry{codes::NoDataDictionary,
                false,
                "the PMML document has no \"DataDictionary\"",
                {"there is none, or it is not a direct child of \"PMML\"", "its name has a namespace prefix"},
                "add a \"DataDictionary\" below \"PMML\""},
    StatusEntry{codes::NotParsed,
                false,
                "the operation needs a document, and none was parsed",
                {"nothing was parsed before, or the last parse ended in an exception"},
                "parse a document first, and look at the outcome"},
    StatusEntry{codes::AttributeMissing,
                false,
                "a required attribute is absent",
                {"a \"DataField\" without \"name\", \"dataType\" or \"optype\"",
                 "a field, parameter or statistics element without its name or type",
                 "a split file without a model that could be combined"},
                "add the attribute; the message names the element where it can"},
    StatusEntry{codes::BadValue,
                false,
                "a value is no accepted word, or no number fit for its use",
                {"a \"dataType\" that is not read: \"boolean\" is not among those that are",
                 "a word in other letters: upper and lower case count",
                 "text where a number is asked for, or a number out of its bounds"},
                "write one of the accepted words or a number that fits"},
    StatusEntry{codes::NoBins,
                false,
                "bins were asked for and the document defines none for the field",
                {"the document has no \"TransformationDictionary\"",
                 "no \"DerivedField\" in it holds a \"Discretize\" of the continuous field",
                 "the bins stand in a model's \"LocalTransformations\", which is not read"},
                "ask without bins, or only for the fields that have them"},
    StatusEntry{codes::VariableRefused,
                false,
                "the variable list refused a variable",
                {"two fields of the same name, or an empty name",
                 "bins whose margins do not ascend, or leave a range that is upside down"},
                "give each field its own name, and its bins in ascending order"},
    StatusEntry{codes::NoModelElement,
                false,
                "statistics were asked for before a model element was set",
                {"no model was chosen after the document was parsed"},
                "choose the model element after each parse"},
    StatusEntry{codes::ElementMissing,
                false,
                "a required child element is absent",
                {"statistics without \"Counts\", \"NumericInfo\", \"DiscrStats\" or their \"Array\"",
                 "a data model without its \"Fields\""},
                "add the element, or leave out the element that needs it"},
    StatusEntry{codes::BadFrequencies,
                false,
                "a frequency array cannot be read or holds a negative number",
                {"the array holds something that is no number", "its text is broken up by a comment or other markup",
                 "a frequency is negative"},
                "write the frequencies as numbers, zero or above, with blanks between them"},
    StatusEntry{codes::BadIntervals,
                false,
                "the intervals of a histogram contradict each other",
                {"intervals overlap, descend, or follow one that is open above",
                 "a margin is missing where only the outermost may be", "intervals close on different sides",
                 "there are more or fewer intervals than frequencies"},
                "write one interval for each frequency, ascending, closed on the same side"},
    StatusEntry{codes::BadStatistics,
                false,
                "a standard deviation is negative, or the statistics are not valid",
                {"a negative \"standardDeviation\"", "a minimum above the maximum",
                 "statistics that lack what their kind needs"},
                "correct the statistics in the document, or leave them out"},
    StatusEntry{codes::WriteFailed,
                false,
                "a document could not be written",
                {"the disk is full or the connection to it was lost",
                 "the document holds a character that XML cannot hold", "the document is nested too deeply"},
                "make room, or write elsewhere; remove what XML cannot hold"},
    StatusEntry{
        codes::NoParameters,
        false,
        "the settings document has no \"Parameters\"",
        {"the document is a plain PMML model", "\"Parameters\" does not stand at \"MiningBuildTask\"/\"Extension\""},
        "give a settings document, or read the file as a PMML document"},
    StatusEntry{codes::ParameterNotFound,
                true,
                "there is no parameter of the requested name",
                {"the name is written otherwise: upper and lower case count",
                 "the parameter stands inside a complex parameter", "it is of another kind than the one asked for"},
                "list the parameters of the document and compare the names"},
    StatusEntry{codes::ParameterIsList,
                false,
                "a single value was asked of a list parameter",
                {"the parameter is marked as a list"},
                "read it as a list"},
    StatusEntry{codes::ListValueMissing,
                false,
                "a list parameter has no \"ListValue\" child",
                {"\"isList\" is \"true\", and the values stand elsewhere or not at all"},
                "add a \"ListValue\", or drop \"isList\""},
    StatusEntry{codes::ParameterWithoutValue,
                true,
                "a parameter has no value",
                {"its \"value\" is absent, or its list is empty"},
                "give the parameter a value, or leave it out"},
    StatusEntry{codes::FunctionNameDiffers,
                false,
                "a split model's \"functionName\" differs from the first one's",
                {"the files hold different kinds of model, as regression and classification"},
                "combine only models of the same function"},
    StatusEntry{codes::NestedMiningModel,
                false,
                "a split model is itself a \"MiningModel\"",
                {"the file is an ensemble, or was combined before"},
                "combine the single models instead"},
    StatusEntry{
        codes::BadSplitValues,
        false,
        "the split values do not fit the split variables",
        {"there are more or fewer values than split variables", "a value is none of the categories of its variable"},
        "give one value for each split variable, each from its categories"},
};

static_assert(std::is_sorted(kTable.begin(), kTable.end(),
                             [](const StatusEntry& a, const StatusEntry& b) { return a.code < b.code; }));

}  // namespace

std::span<const StatusEntry> StatusTable() { return kTable; }

const StatusEntry& GoodStatus() {
  static constexpr StatusEntry kGood{
      0, false, "good, nothing failed", {"the operation did what was asked"}, "nothing needs to be done"};
  return kGood;
}

const StatusEntry* FindStatus(long code) {
  const auto found =
      std::find_if(kTable.begin(), kTable.end(), [code](const StatusEntry& e) { return e.code == code; });
  return found == kTable.end() ? nullptr : &*found;
}

}  // namespace rqtool
