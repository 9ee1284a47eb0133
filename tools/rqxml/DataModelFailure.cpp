#include "DataModelFailure.h"

#include <array>
#include <limits>
#include <string>
#include <utility>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "Document.h"
#include "ElementPlace.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using xercesc::DOMElement;
namespace xml = RQXPrsUtil;

// What is wrong, and a hint.
struct Explanation {
  std::string what;
  std::string hint;
};

const DOMElement* Child(const DOMElement* element, const char* tag) {
  return element == nullptr ? nullptr : xml::GetFirstChildElmt(*element, tag);
}

// Each field before the bad one added a variable.
const DOMElement* FindField(const DOMElement* root, int added) {
  const DOMElement* field = Child(Child(root, "Fields"), "Field");
  for (; field != nullptr && added > 0; --added) field = xml::GetNextSiblingElmt(*field, "Field");
  return field;
}

std::string TitleOf(const DOMElement& field, int index) {
  const auto name = Attribute(field, "name");
  return name ? "Field \"" + *name + '"' : "Field number " + std::to_string(index + 1);
}

std::string MissingAttribute(const DOMElement& field) {
  for (const char* const name : std::array{"name", "storage", "measure"}) {
    if (!Attribute(field, name)) return std::string("the attribute \"") + name + "\" is missing";
  }
  return "an attribute is missing";
}

bool HasFieldBefore(const DOMElement& field, const char* attribute, const std::string& value) {
  const DOMElement* other = xml::GetFirstChildElmt(*field.getParentNode(), "Field");
  for (; other != nullptr && other != &field; other = xml::GetNextSiblingElmt(*other, "Field")) {
    if (Attribute(*other, attribute) == value) return true;
  }
  return false;
}

bool IsRangeUpsideDown(const DOMElement& field) {
  double low = std::numeric_limits<double>::lowest();
  double high = std::numeric_limits<double>::max();
  const DOMElement* range = Child(&field, "Range");
  for (; range != nullptr; range = xml::GetNextSiblingElmt(*range, "Range")) {
    xml::GetDoubleAttribute(*range, "minValue", low);
    xml::GetDoubleAttribute(*range, "maxValue", high);
  }
  return low > high;
}

Explanation ExplainRefusal(const DOMElement& field) {
  const std::string name = Attribute(field, "name").value_or("");
  if (name.empty()) return {"the name is empty", "give each field a name"};
  if (HasFieldBefore(field, "name", name)) {
    return {"a field before it has the same name", "give each field a name of its own"};
  }
  if (IsRangeUpsideDown(field)) return {"the \"minValue\" of its range lies above the \"maxValue\"", "exchange them"};
  if (Attribute(field, "role") == "freqWeight" && HasFieldBefore(field, "role", "freqWeight")) {
    return {"a field before it is the frequency weight already", "let one field have the role \"freqWeight\""};
  }
  return {"the variable was refused", {}};
}

Explanation Explain(const DOMElement& field, long code) {
  switch (code) {
    case xml::AttributeMissing:
      return {MissingAttribute(field), "a field needs \"name\", \"storage\" and \"measure\""};
    case xml::BadValue:
      return {"storage=\"" + Attribute(field, "storage").value_or("") + "\" is not read",
              "use integer, real, string, date, time or timestamp"};
    case xml::VariableRefused:
      return ExplainRefusal(field);
    default:
      return {"the field was refused", {}};
  }
}

}  // namespace

Failure DataModelFailure(InputFile& input, const RQCommon::RQStatus& status, int added) {
  Problem problem{.file = input.GetDisplayName(),
                  .element = "Field number " + std::to_string(added + 1),
                  .what = "the field cannot be read",
                  .status = status.GetCode()};
  if (FollowsDoctype(input)) return Failure(ExitCode::Refused, std::move(problem));
  xml::RQXMLReadWrite reader;
  ReadTree(input, reader);
  if (const DOMElement* const field = FindField(xml::GetFirstChildElmt(*reader.GetDocument(), nullptr), added)) {
    Explanation explanation = Explain(*field, status.GetCode());
    problem.place = PlaceOf(input, *field);
    problem.element = TitleOf(*field, added);
    problem.what = std::move(explanation.what);
    problem.hint = std::move(explanation.hint);
  }
  return Failure(ExitCode::Refused, std::move(problem));
}

}  // namespace rqtool
