#include "FieldFailure.h"

#include <array>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <xercesc/dom/DOMElement.hpp>

#include "DocumentScan.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using xercesc::DOMElement;
namespace xml = RQXPrsUtil;

// A "DataField" and its position among its kind, from 0.
struct FieldElement {
  const DOMElement* element;
  std::size_t index;
};

std::optional<std::string> Attribute(const DOMElement& element, const char* name) {
  const XMLCh* const value = xml::GetAttribute(element, name);
  if (value == nullptr) return std::nullopt;
  return xml::ToUTF8(value);
}

// The reader takes the fields in document order, passes over those that are not named, and stops at the first bad
// one: `added` fields that pass the filter stand before it.
std::optional<FieldElement> FindFailedField(const DOMElement& root, const std::vector<std::string>& names, int added) {
  const DOMElement* const dictionary = xml::GetFirstChildElmt(root, "DataDictionary");
  if (dictionary == nullptr) return std::nullopt;
  const std::unordered_set<std::string> wanted(names.begin(), names.end());
  int passed = 0;
  std::size_t index = 0;
  for (const DOMElement* field = xml::GetFirstChildElmt(*dictionary, "DataField"); field != nullptr;
       field = xml::GetNextSiblingElmt(*field, "DataField"), ++index) {
    const std::optional<std::string> name = Attribute(*field, "name");
    if (!name) return FieldElement{field, index};
    if (!wanted.empty() && wanted.count(*name) == 0) continue;
    if (passed++ == added) return FieldElement{field, index};
  }
  return std::nullopt;
}

std::string TitleOf(const FieldElement& field) {
  const std::optional<std::string> name = Attribute(*field.element, "name");
  if (name) return "DataField \"" + *name + '"';
  return "DataField number " + std::to_string(field.index + 1);
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

bool HasNamesakeBefore(const DOMElement& root, const DOMElement& field, const std::string& name) {
  const DOMElement* other = xml::GetFirstChildElmt(*xml::GetFirstChildElmt(root, "DataDictionary"), "DataField");
  for (; other != nullptr && other != &field; other = xml::GetNextSiblingElmt(*other, "DataField")) {
    if (xml::XStrEqualsUTF8Str(xml::GetAttribute(*other, "name"), name.c_str())) return true;
  }
  return false;
}

Explanation ExplainRefusal(const DOMElement& root, const DOMElement& field) {
  const std::string name = Attribute(field, "name").value_or("");
  if (name.empty()) return {"the name is empty", "give each field a name"};
  if (HasNamesakeBefore(root, field, name)) {
    return {"a field before it has the same name", "give each field a name of its own"};
  }
  return {"its bins do not ascend", "write the bins in ascending order, or leave out --bins"};
}

Explanation Explain(const DOMElement& root, const DOMElement& field, long code) {
  switch (code) {
    case xml::AttributeMissing:
      return {MissingAttribute(field), "a field needs \"name\", \"dataType\" and \"optype\""};
    case xml::BadValue:
      return {"dataType=\"" + Attribute(field, "dataType").value_or("") + "\" is not read",
              "use string, double, float, integer or one of the date and time types"};
    case xml::NoBins:
      return {HasTransformationDictionary(root)
                  ? "no \"Discretize\" in the \"TransformationDictionary\" defines bins for this continuous field"
                  : "the document has no \"TransformationDictionary\" that could define bins for this continuous field",
              "leave out --bins, or name with --fields only those fields that have bins"};
    case xml::VariableRefused:
      return ExplainRefusal(root, field);
    default:
      return {"the field was refused", {}};
  }
}

}  // namespace

Failure FieldFailure(InputFile& input, const RQXPrsUtil::RQPMMLParser& parser, const RQCommon::RQStatus& status,
                     const std::vector<std::string>& names, int added) {
  const DOMElement* const root = parser.GetRootElement();
  const auto field = root == nullptr ? std::nullopt : FindFailedField(*root, names, added);
  Problem problem{.file = input.GetDisplayName(), .what = "the fields cannot be read", .status = status.GetCode()};
  if (field) {
    const Explanation explanation = Explain(*root, *field->element, status.GetCode());
    problem.element = TitleOf(*field);
    problem.what = explanation.what;
    problem.hint = explanation.hint;
    problem.place = FindDataField(input.FromStart(), field->index);
  }
  return Failure(ExitCode::Refused, std::move(problem));
}

}  // namespace rqtool
