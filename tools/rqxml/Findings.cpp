#include "Findings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "TextTable.h"

namespace rqtool {

namespace {

constexpr std::size_t kListWidth = 100;

// A kind of finding and its words; %f is the field, %k what is known, %h what the file has, %i the items.
struct KindText {
  std::string_view kind;
  std::string_view text;
};
constexpr std::array kKinds{
    KindText{"dataTypeDiffers", "field %f: dataType %h, but %k in the combined document, which keeps it"},
    KindText{"optypeDiffers", "field %f: optype %h, but %k in the combined document, which keeps it"},
    KindText{"valuesAtOtherPosition",
             "field %f: its values were compared with those of %k, which stands at its position in the combined "
             "document"},
    KindText{"valuesLeftOut",
             "field %f: its values %i were left out: the combined document has no field at its position"},
    KindText{"fieldAdded", "field %f was added: the files before do not have it"},
    KindText{"valuesAdded", "field %k gained the values %i, which the files before do not have"},
    KindText{"miningFieldAdded", "mining field %f was added: the files before do not have it"},
    KindText{"algorithmNameDiffers", "algorithmName %h, but %k in the combined document, which keeps it"},
    KindText{"miningSchemaMissing", "the model has no \"MiningSchema\""},
    KindText{"headerMissing", "there is no \"Header\""},
    KindText{"dataDictionaryMissing", "there is no \"DataDictionary\""},
    KindText{
        "splitVariablesNotDescribed",
        "the first file has no \"DataDictionary\" or no \"MiningSchema\": the combined document describes no split "
        "variable"},
    KindText{"secondLocalTransformations",
             "the model has \"LocalTransformations\", and gained a second one from the \"TransformationDictionary\""},
    KindText{"functionsLeftOut",
             "the functions %i of the \"TransformationDictionary\" were left out: what calls them cannot be computed"},
    KindText{"versionDiffers", "the version of PMML is %h, but %k in the combined document, which keeps it"},
    KindText{"namespaceDiffers", "the declaration %f is %h, but %k in the combined document, which keeps it"},
    KindText{"valueOutsideCategories", "split variable %f: the value %h is none of its categories"},
    KindText{"sameSplitValues", "the split values %h are those of %k: this segment can never be chosen"},
    KindText{"splitVariableIsField", "the split variable %f is a data field of this file too"},
    KindText{"numberOfFieldsWrong", "numberOfFields is %h, but the \"DataDictionary\" has %k"},
    KindText{"modelMissing", "there is no model that can be combined: the file gave no segment"},
    KindText{"modelLeftOut", "the models %i were left out: a segment holds one model"},
};

std::string Quoted(const std::string& text) { return text.empty() ? "(none)" : '"' + text + '"'; }

std::string QuotedList(const std::vector<std::string>& items) {
  std::vector<std::string> quoted;
  for (const std::string& item : items) quoted.push_back('"' + item + '"');
  return ShortenList(quoted, kListWidth);
}

std::string Replacement(const Finding& finding, char letter) {
  switch (letter) {
    case 'f':
      return '"' + finding.field + '"';
    case 'k':
      return Quoted(finding.known);
    case 'h':
      return Quoted(finding.found);
    default:
      return QuotedList(finding.items);
  }
}

// A key for the values of all split variables; the lengths keep it from being ambiguous.
std::string KeyOf(const std::vector<SplitVariable>& variables, const Split& split) {
  std::string key;
  for (std::size_t i = 0; i < variables.size(); ++i) {
    const std::string part = ValueKey(variables[i].type, split.values[i]).value_or(split.values[i]);
    key += std::to_string(part.size()) + ':' + part;
  }
  return key;
}

std::string Joined(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values) text += (text.empty() ? "" : ", ") + value;
  return text;
}

bool IsNumber(const std::string& text, std::size_t expected) {
  std::size_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && number == expected;
}

}  // namespace

std::string FindingText(const Finding& finding) {
  const auto* const kind = std::find_if(kKinds.begin(), kKinds.end(),
                                        [&finding](const KindText& entry) { return entry.kind == finding.kind; });
  std::string text;
  for (std::string_view rest = kind->text; !rest.empty();) {
    const std::size_t mark = std::min(rest.find('%'), rest.size());
    text += rest.substr(0, mark);
    rest.remove_prefix(mark);
    if (rest.empty()) break;
    text += Replacement(finding, rest[1]);
    rest.remove_prefix(2);
  }
  return text;
}

Comparison::Comparison(std::vector<SplitVariable> variables) : fVariables(std::move(variables)) {
  for (const SplitVariable& variable : fVariables) {
    std::unordered_set<std::string>& keys = fCategoryKeys.emplace_back();
    for (const std::string& category : variable.categories) keys.insert(*ValueKey(variable.type, category));
  }
}

void Comparison::Add(const Split& split, const SplitDocument& document) {
  fFile = split.file;
  if (!document.model.empty()) CompareSplitValues(split);
  CompareParts(document);
  CompareSplitVariables(document);
  if (fFounded) {
    Merge(document);
  } else {
    Found(document);
  }
}

void Comparison::Report(Finding finding) {
  finding.file = fFile;
  fFindings.push_back(std::move(finding));
}

void Comparison::CompareSplitValues(const Split& split) {
  for (std::size_t i = 0; i < fVariables.size(); ++i) {
    const SplitVariable& variable = fVariables[i];
    const std::string& value = split.values[i];
    if (!variable.declared || fCategoryKeys[i].count(*ValueKey(variable.type, value)) == 1) continue;
    Report({.kind = "valueOutsideCategories", .field = variable.name, .found = value});
  }
  const auto [known, added] = fFilesBySplit.emplace(KeyOf(fVariables, split), split.file);
  if (!added) Report({.kind = "sameSplitValues", .known = known->second, .found = Joined(split.values)});
}

void Comparison::CompareParts(const SplitDocument& document) {
  if (!document.hasHeader) Report({.kind = "headerMissing"});
  if (!document.hasDictionary) Report({.kind = "dataDictionaryMissing"});
  if (document.model.empty()) Report({.kind = "modelMissing"});
  if (!document.model.empty() && !document.hasSchema) Report({.kind = "miningSchemaMissing"});
  if (!document.otherModels.empty()) Report({.kind = "modelLeftOut", .items = document.otherModels});
  if (document.hasTransformations && document.hasLocalTransformations) Report({.kind = "secondLocalTransformations"});
  if (!document.model.empty() && !document.functions.empty()) {
    Report({.kind = "functionsLeftOut", .items = document.functions});
  }
  const std::size_t count = document.fields.size();
  if (document.numberOfFields && !IsNumber(*document.numberOfFields, count)) {
    Report({.kind = "numberOfFieldsWrong", .known = std::to_string(count), .found = *document.numberOfFields});
  }
}

void Comparison::CompareVersions(const SplitDocument& document) {
  if (document.version != fVersion) {
    Report({.kind = "versionDiffers", .known = fVersion, .found = document.version});
  }
  for (const std::string& name : document.usedNamespaces) {
    const auto known = fNamespaces.find(name);
    const std::string address = known == fNamespaces.end() ? "" : known->second;
    if (const std::string& found = document.namespaces.at(name); found != address) {
      Report({.kind = "namespaceDiffers", .field = name, .known = address, .found = found});
    }
  }
}

void Comparison::CompareSplitVariables(const SplitDocument& document) {
  for (const SplitVariable& variable : fVariables) {
    const bool isField = std::any_of(document.fields.begin(), document.fields.end(),
                                     [&variable](const SourceField& f) { return f.named && f.name == variable.name; });
    if (isField) Report({.kind = "splitVariableIsField", .field = variable.name});
  }
}

void Comparison::Found(const SplitDocument& document) {
  fFounded = true;
  fVersion = document.version;
  fNamespaces = document.namespaces;
  fHasDictionary = document.hasDictionary;
  fHasSchema = document.hasSchema;
  fAlgorithmName = document.algorithmName;
  // Without one of them the combiner adds no split variable, and keeps no books.
  if (!fHasDictionary || !fHasSchema) return Report({.kind = "splitVariablesNotDescribed"});
  for (const SourceField& field : document.fields) KnowField(field);
  for (const SplitVariable& variable : fVariables) {
    KnowField({.name = variable.name, .named = true, .values = variable.categories});
    fMiningFields.insert(variable.name);
  }
  fMiningFields.insert(document.miningFields.begin(), document.miningFields.end());
}

void Comparison::KnowField(const SourceField& field) {
  if (field.named) fPositions.emplace(field.name, fFields.size());
  KnownField& known = fFields.emplace_back(KnownField{field, {field.values.begin(), field.values.end()}});
  known.field.values.clear();
}

void Comparison::Merge(const SplitDocument& document) {
  CompareVersions(document);
  if (!document.model.empty() && document.algorithmName != fAlgorithmName) {
    Report({.kind = "algorithmNameDiffers", .known = fAlgorithmName, .found = document.algorithmName});
  }
  if (fHasDictionary) MergeFields(document);
  if (fHasSchema) MergeMiningFields(document);
}

void Comparison::MergeFields(const SplitDocument& document) {
  // The combiner counts named fields and all fields apart, and takes what stands at the same place in both.
  std::size_t position = 0;
  for (const SourceField& named : document.fields) {
    if (!named.named) continue;
    const SourceField& source = document.fields[position];
    if (fPositions.count(named.name) == 1) {
      CompareField(named);
      MergeValues(source, position, named.name);
    } else {
      ++fAdded.fields;
      Report({.kind = "fieldAdded", .field = named.name});
      KnowField(source);
    }
    ++position;
  }
}

void Comparison::CompareField(const SourceField& source) {
  const SourceField& known = fFields[fPositions.at(source.name)].field;
  const bool splitVariable = std::any_of(fVariables.begin(), fVariables.end(),
                                         [&](const SplitVariable& variable) { return variable.name == source.name; });
  if (splitVariable) return;  // reported as such
  if (source.dataType != known.dataType) {
    Report({.kind = "dataTypeDiffers", .field = source.name, .known = known.dataType, .found = source.dataType});
  }
  if (source.optype != known.optype) {
    Report({.kind = "optypeDiffers", .field = source.name, .known = known.optype, .found = source.optype});
  }
}

void Comparison::MergeValues(const SourceField& source, std::size_t position, const std::string& name) {
  if (source.values.empty()) return;
  if (position >= fFields.size()) {
    return Report({.kind = "valuesLeftOut", .field = name, .items = source.values});
  }
  KnownField& target = fFields[position];
  if (target.field.name != name) {
    Report({.kind = "valuesAtOtherPosition", .field = name, .known = target.field.name});
  }
  Finding finding{.kind = "valuesAdded", .field = name, .known = target.field.name};
  for (const std::string& value : source.values) {
    if (target.values.count(value) == 0) finding.items.push_back(value);
  }
  if (finding.items.empty()) return;
  target.values.insert(finding.items.begin(), finding.items.end());
  fAdded.values += finding.items.size();
  Report(std::move(finding));
}

void Comparison::MergeMiningFields(const SplitDocument& document) {
  for (const std::string& name : document.miningFields) {
    if (!fMiningFields.insert(name).second) continue;
    ++fAdded.miningFields;
    Report({.kind = "miningFieldAdded", .field = name});
  }
}

}  // namespace rqtool
