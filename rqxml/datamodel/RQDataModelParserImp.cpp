#include "rqxml/datamodel/RQDataModelParserImp.h"

#include <istream>
#include <streambuf>
#include <xercesc/dom/DOMDocument.hpp>

#include "rqxml/fields/RQXFieldAdder.h"
#include "rqxml/fields/RQXFieldReader.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXNumbers.h"
#include "rqxml/xml/RQXPlatform.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::IRQVariable;
using xercesc::DOMElement;

constexpr XMLCh kField[] = u"Field";
constexpr XMLCh kDisplayLabel[] = u"displayLabel";

/// Reads a text where it lies: documents are large.
class TextBuffer final : public std::streambuf {
 public:
  explicit TextBuffer(const std::string& text) {
    char* const start = const_cast<char*>(text.data());  // the get area is never written to
    setg(start, start, start + text.size());
  }
};

constexpr RQXTypeWord kStorages[] = {
    {u"integer", 1, true}, {u"real", 2, true}, {u"string", 3, false},
    {u"date", 4, true},    {u"time", 5, true}, {u"timestamp", 6, true},
};

void ReadValues(const DOMElement& values, RQXField& field) {
  for (auto* value = FirstChild(values, Names::kValueElement); value;
       value = NextSibling(*value, Names::kValueElement)) {
    AppendValue(*value, Names::kValueAttribute, field.numeric, field.numbers, field.texts);
    AppendLabel(*value, kDisplayLabel, field.labels);
  }
}

/// A bound that is absent or no number leaves the range open there.
void ReadBounds(const DOMElement& range, RQXField& field) {
  ReadDoubleAttribute(range, u"minValue", field.low);
  ReadDoubleAttribute(range, u"maxValue", field.high);
}

RQStatus ReadChild(const DOMElement& child, RQXField& field) {
  if (HasTag(child, u"Values")) ReadValues(child, field);
  if (field.numeric && HasTag(child, u"Range")) ReadBounds(child, field);
  return {};
}

constexpr RQXFieldDialect kDialect{kDisplayLabel, u"storage", kStorages, u"measure", ReadChild};

IRQVariable::VariableRole ReadRole(const DOMElement& element, IRQVariable::VariableRole input) {
  const XMLCh* const word = AttributeOf(element, u"role");
  if (!word) return IRQVariable::RoleNone;
  if (XStrEquals(word, u"input")) return input;
  if (XStrEquals(word, u"target")) return IRQVariable::RoleTarget;
  if (XStrEquals(word, u"freqWeight")) return IRQVariable::RoleFrequencyWeight;
  return IRQVariable::RoleNone;
}

RQXAddRules MakeRules(bool flag, int count) {
  const bool counted = flag && count > 1;
  return {
      .withRange = true, .flag = counted, .count = counted ? count : -1, .missingValues = false, .storageType = true};
}

}  // namespace

RQDataModelParserImp::RQDataModelParserImp() { fStatus = StartParser(fParser); }

RQDataModelParserImp::~RQDataModelParserImp() { StopParser(fParser); }

RQStatus RQDataModelParserImp::ParseToDOM(const std::string& text) {
  ForgetDocument();
  if (fParser) {
    fStatus = {};
    RenewIfLocked(fParser);
    TextBuffer buffer(text);
    std::istream in(&buffer);
    const RQXDomParser::Result result = fParser->ParseStream(in);
    fStatus = result.status;
    fDocument = result.document;
  }
  if (fStatus.IsOK()) fStatus = FindElements();
  if (!fStatus.IsOK()) ForgetDocument();
  return fStatus;
}

RQStatus RQDataModelParserImp::FindElements() {
  const DOMElement* const root = fDocument->getDocumentElement();
  if (!root || !HasTag(*root, u"DataModel")) return {WrongRootElement, false};
  fRootElement = root;
  fFields = FirstChild(*root, u"Fields");
  return fFields ? RQStatus() : RQStatus(ElementMissing, false);
}

void RQDataModelParserImp::ForgetDocument() {
  fDocument = nullptr;
  fRootElement = nullptr;
  fFields = nullptr;
}

RQStatus RQDataModelParserImp::FillVarList(RQMTD_NAMESPACE::RQVarList& vars, bool fieldRoles, bool flag,
                                           int count) const {
  if (!fStatus.IsOK()) return fStatus;
  if (!fDocument) return {NotParsed, false};
  const IRQVariable::VariableRole input = fieldRoles ? IRQVariable::RoleInputField : IRQVariable::RoleInput;
  const RQXAddRules rules = MakeRules(flag, count);
  RQXField field;
  for (auto* element = FirstChild(*fFields, kField); element; element = NextSibling(*element, kField)) {
    Prefetch(*element);
    if (const RQStatus status = ReadField(*element, kDialect, field); !status.IsOK()) return status;
    field.role = ReadRole(*element, input);
    if (const RQStatus status = AddField(vars, field, nullptr, rules); !status.IsOK()) return status;
  }
  return {};
}

}  // namespace RQXPrsUtil
