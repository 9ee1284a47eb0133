#include "FieldFailure.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "ElementPlace.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using xercesc::DOMElement;
namespace xml = RQXPrsUtil;

// The names of the elements of each kind of field.
struct FieldElements {
  const char* dictionary;
  const char* field;
};

FieldElements ElementsOf(FieldKind kind) {
  return kind == FieldKind::Data ? FieldElements{"DataDictionary", "DataField"}
                                 : FieldElements{"TransformationDictionary", "DerivedField"};
}

// A field and its position among its kind, from 0.
struct FieldElement {
  const DOMElement* element;
  std::size_t index;
};

// The readers take the fields in document order, pass over those that are not named, and stop at the first bad one:
// `added` fields that pass the filter stand before it.
std::optional<FieldElement> FindFailedField(const DOMElement& root, const FieldElements& elements,
                                            const std::vector<std::string>& names, int added) {
  const DOMElement* const dictionary = xml::GetFirstChildElmt(root, elements.dictionary);
  if (dictionary == nullptr) return std::nullopt;
  const std::unordered_set<std::string> wanted(names.begin(), names.end());
  int passed = 0;
  std::size_t index = 0;
  for (const DOMElement* field = xml::GetFirstChildElmt(*dictionary, elements.field); field != nullptr;
       field = xml::GetNextSiblingElmt(*field, elements.field), ++index) {
    const std::optional<std::string> name = Attribute(*field, "name");
    if (!name) return FieldElement{field, index};
    if (!wanted.empty() && wanted.count(*name) == 0) continue;
    if (passed++ == added) return FieldElement{field, index};
  }
  return std::nullopt;
}

std::string TitleOf(const FieldElement& field) {
  const std::string tag = xml::ToUTF8(field.element->getTagName());
  const std::optional<std::string> name = Attribute(*field.element, "name");
  if (name) return tag + " \"" + *name + '"';
  return tag + " number " + std::to_string(field.index + 1);
}

std::string MissingAttribute(const DOMElement& field) {
  for (const char* const name : std::array{"name", "dataType", "optype"}) {
    if (!Attribute(field, name)) return std::string("the attribute \"") + name + "\" is missing";
  }
  return "an attribute is missing";
}

bool HasTransformationDictionary(const DOMElement& root) {
  return xml::GetFirstChildElmt(root, "TransformationDictionary") != nullptr;
}

// What is wrong, and a hint.
struct Explanation {
  std::string what;
  std::string hint;
};

bool HasNamesakeBefore(const DOMElement& field, const std::string& name) {
  const std::string tag = xml::ToUTF8(field.getTagName());
  const DOMElement* other = xml::GetFirstChildElmt(*field.getParentNode(), tag.c_str());
  for (; other != nullptr && other != &field; other = xml::GetNextSiblingElmt(*other, tag.c_str())) {
    if (xml::XStrEqualsUTF8Str(xml::GetAttribute(*other, "name"), name.c_str())) return true;
  }
  return false;
}

Explanation ExplainRefusal(const DOMElement& field) {
  const std::string name = Attribute(field, "name").value_or("");
  if (name.empty()) return {"the name is empty", "give each field a name"};
  if (HasNamesakeBefore(field, name)) {
    return {"a field before it has the same name", "give each field a name of its own"};
  }
  return {"its bins do not ascend", "write the bins in ascending order, or leave out --bins"};
}

bool IsSettingsType(const std::string& dataType) {
  constexpr std::array<std::string_view, 7> kTypes{"integer", "double", "float", "string", "date", "time", "dateTime"};
  return std::find(kTypes.begin(), kTypes.end(), dataType) != kTypes.end();
}

std::optional<std::string> ExplainInterval(const DOMElement& interval) {
  double left = std::numeric_limits<double>::min();
  double right = std::numeric_limits<double>::max();
  for (const auto& [name, value] : {std::pair{"leftMargin", &left}, std::pair{"rightMargin", &right}}) {
    if (xml::GetDoubleAttribute(interval, name, *value) == 1) {
      return std::string(name) + "=\"" + Attribute(interval, name).value_or("") + "\" is no number";
    }
  }
  if (left <= right) return std::nullopt;
  if (!Attribute(interval, "leftMargin")) return "without \"leftMargin\" the \"rightMargin\" must be above zero";
  return "the \"leftMargin\" lies above the \"rightMargin\"";
}

// The first of the field's intervals that cannot be read. Those of a derived field may also stand in an extension.
std::optional<std::string> ExplainIntervals(const DOMElement& field, bool derived) {
  for (const DOMElement* child = xml::GetFirstChildElmt(field, nullptr); child != nullptr;
       child = xml::GetNextSiblingElmt(*child, nullptr)) {
    const DOMElement* interval = xml::AsElement(*child, "Interval");
    if (interval == nullptr && derived && xml::TagNameEquals(*child, "Extension")) {
      interval = xml::GetFirstChildElmt(*child, "Interval");
    }
    if (interval == nullptr) continue;
    if (auto fault = ExplainInterval(*interval)) return fault;
  }
  return std::nullopt;
}

Explanation ExplainBadValue(const DOMElement& field, const Document& document, FieldKind kind) {
  const std::string dataType = Attribute(field, "dataType").value_or("");
  if (document.kind == DocumentKind::Settings && IsSettingsType(dataType)) {
    return {"Interval: " + ExplainIntervals(field, kind == FieldKind::Derived).value_or("a margin is not read"),
            "give an interval two numbers, the left one not above the right one"};
  }
  return {"dataType=\"" + dataType + "\" is not read",
          document.kind == DocumentKind::Settings ? "use string, double, float, integer, date, time or dateTime"
                                                  : "use string, double, float, integer or one of the date and "
                                                    "time types"};
}

Explanation ExplainNoBins(const DOMElement& root, const Document& document) {
  return {HasTransformationDictionary(root)
              ? "no \"Discretize\" in the \"TransformationDictionary\" defines bins for this continuous field"
              : "the document has no \"TransformationDictionary\" that could define bins for this continuous field",
          document.kind == DocumentKind::Settings
              ? "leave out --bins: every continuous field of a settings document needs them, also when it is not shown"
              : "leave out --bins, or name with --fields only those fields that have bins"};
}

Explanation Explain(const DOMElement& root, const DOMElement& field, const Document& document, FieldKind kind,
                    long code) {
  switch (code) {
    case xml::AttributeMissing:
      return {MissingAttribute(field), "a field needs \"name\", \"dataType\" and \"optype\""};
    case xml::BadValue:
      return ExplainBadValue(field, document, kind);
    case xml::NoBins:
      return ExplainNoBins(root, document);
    case xml::VariableRefused:
      return ExplainRefusal(field);
    default:
      return {"the field was refused", {}};
  }
}

}  // namespace

Failure FieldFailure(InputFile& input, const Document& document, FieldKind kind, const RQCommon::RQStatus& status,
                     const std::vector<std::string>& names, int added) {
  const DOMElement* const root = document.parser->GetRootElement();
  const auto field = root == nullptr ? std::nullopt : FindFailedField(*root, ElementsOf(kind), names, added);
  Problem problem{.file = input.GetDisplayName(), .what = "the fields cannot be read", .status = status.GetCode()};
  if (field) {
    const Explanation explanation = Explain(*root, *field->element, document, kind, status.GetCode());
    problem.element = TitleOf(*field);
    problem.what = explanation.what;
    problem.hint = explanation.hint;
    problem.place = PlaceOf(input, *field->element);
  }
  return Failure(ExitCode::Refused, std::move(problem));
}

}  // namespace rqtool
