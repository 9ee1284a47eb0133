#include "rqxml/settings/RQSettingsParser.h"

#include <istream>
#include <utility>

#include "rqxml/settings/RQSettingsItems.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

using RQCommon::RQStatus;
using xercesc::DOMElement;

constexpr XMLCh kParameter[] = u"Parameter";
constexpr XMLCh kComplexParameter[] = u"ComplexParameter";
constexpr XMLCh kMatrixParameter[] = u"MatrixParmeter";  // the documents spell it so
constexpr XMLCh kArrayParameter[] = u"ArrayParameter";
constexpr XMLCh kListValue[] = u"ListValue";

constexpr RQStatus kNotFound{ParameterNotFound, true};
constexpr RQStatus kWithoutValue{ParameterWithoutValue, true};
constexpr RQStatus kIsList{ParameterIsList, false};
constexpr RQStatus kBad{BadValue, false};
constexpr RQStatus kMissing{AttributeMissing, false};

constexpr std::pair<const XMLCh*, RQSettingsParser::ParamType> kTypes[] = {
    {u"string", RQSettingsParser::ParamString},   {u"double", RQSettingsParser::ParamDouble},
    {u"integer", RQSettingsParser::ParamInteger}, {u"boolean", RQSettingsParser::ParamBoolean},
    {u"enum", RQSettingsParser::ParamEnum},       {u"fieldName", RQSettingsParser::ParamFieldName},
};

/// The first child of that tag whose "name" is the one asked for.
const DOMElement* FindNamed(const DOMElement& scope, const XMLCh* tag, const char* name) {
  return FindElement(scope.getFirstChild(), [=](const DOMElement& element) {
    if (!HasTag(element, tag)) return false;
    const XMLCh* const ownName = AttributeOf(element, Names::kName);
    return ownName && XStrEqualsUTF8Str(ownName, name);
  });
}

const XMLCh* ValueOf(const DOMElement& element) { return AttributeOf(element, Names::kValueAttribute); }

bool SaysItIsList(const DOMElement& parameter) {
  const XMLCh* const isList = AttributeOf(parameter, u"isList");
  return isList && XStrEquals(isList, u"true");
}

/// Shows the texts of the items from `item` on to `append` until that fails; `missing` for an item without text.
template <class Append>
RQStatus ReadItems(const DOMElement* item, RQStatus missing, Append append) {
  for (; item; item = NextSibling(*item, Names::kValueElement)) {
    const XMLCh* const text = ValueOf(*item);
    if (!text) return missing;
    if (!append(text)) return kBad;
  }
  return {};
}

template <class Item>
std::vector<Item> ReadRow(const DOMElement& row) {
  std::vector<Item> items;
  for (auto* value = FirstChild(row, Names::kValueElement); value; value = NextSibling(*value, Names::kValueElement)) {
    const XMLCh* const text = ValueOf(*value);
    Item item{};
    if (text && ReadItem(text, item)) items.push_back(std::move(item));
  }
  return items;
}

}  // namespace

RQSettingsParser::RQSettingsParser() = default;

RQSettingsParser::~RQSettingsParser() = default;

RQStatus RQSettingsParser::ParseToDOM(std::istream& in) {
  fParameters = nullptr;  // also when an exception leaves the parse
  RQPMMLParser::ParseToDOM(in);
  if (!fStatus.IsOK()) return fStatus;
  const DOMElement* element = fRootElement;
  for (const XMLCh* tag : {u"MiningBuildTask", Names::kExtension, u"Parameters"}) {
    if (element) element = FirstChild(*element, tag);
  }
  fParameters = element;
  if (!fParameters) fStatus = {NoParameters, false};
  return fStatus;
}

RQStatus RQSettingsParser::GetParameterReadiness() const {
  const RQStatus status = GetReadiness();
  if (status.IsOK() && !fParameters) return {NoParameters, false};
  return status;
}

const DOMElement* RQSettingsParser::GetScope(void* scope) const {
  return scope ? static_cast<const DOMElement*>(scope) : fParameters;
}

/// The way of every getter: readiness, then the element of that name in the scope, then what is to be read of it.
template <class Read>
RQStatus RQSettingsParser::WithParameter(const XMLCh* tag, const char* name, void* scope, Read read) const {
  if (const RQStatus status = GetParameterReadiness(); !status.IsOK()) return status;
  const DOMElement* const parameter = FindNamed(*GetScope(scope), tag, name);
  return parameter ? read(*parameter) : kNotFound;
}

template <class Value>
RQStatus RQSettingsParser::GetScalar(const char* name, Value& value, void* scope) const {
  return WithParameter(kParameter, name, scope, [&](const DOMElement& parameter) {
    if (const XMLCh* const text = ValueOf(parameter)) return ReadItem(text, value) ? RQStatus() : kBad;
    return FirstChild(parameter, kListValue) ? kIsList : kWithoutValue;
  });
}

template <class Item>
RQStatus RQSettingsParser::GetItems(const char* name, std::vector<Item>& out, void* scope) const {
  return WithParameter(kParameter, name, scope, [&](const DOMElement& parameter) {
    out.clear();
    const auto append = [&](const XMLCh* text) { return AppendItem(text, out); };
    const DOMElement* const list = FirstChild(parameter, kListValue);
    if (!list) {
      const XMLCh* const text = ValueOf(parameter);
      if (!text) return kWithoutValue;
      return append(text) ? RQStatus() : kBad;
    }
    const DOMElement* const first = FirstChild(*list, Names::kValueElement);
    return first ? ReadItems(first, kWithoutValue, append) : kWithoutValue;
  });
}

template <class Item>
RQStatus RQSettingsParser::GetRows(const char* name, std::vector<std::vector<Item>>& out, void* scope) const {
  return WithParameter(kMatrixParameter, name, scope, [&](const DOMElement& matrix) {
    out.clear();
    for (auto* row = FirstChild(matrix, kArrayParameter); row; row = NextSibling(*row, kArrayParameter)) {
      out.push_back(ReadRow<Item>(*row));
    }
    return RQStatus();
  });
}

RQStatus RQSettingsParser::GetParameter(const char* name, std::string& value, void* scope) const {
  return GetScalar(name, value, scope);
}
RQStatus RQSettingsParser::GetParameter(const char* name, int& value, void* scope) const {
  return GetScalar(name, value, scope);
}
RQStatus RQSettingsParser::GetParameter(const char* name, double& value, void* scope) const {
  return GetScalar(name, value, scope);
}
RQStatus RQSettingsParser::GetParameter(const char* name, bool& value, void* scope) const {
  return GetScalar(name, value, scope);
}

RQSettingsParser::ParamType RQSettingsParser::GetParameterType(const char* name, void* scope) {
  ParamType result = ParamUnknown;
  WithParameter(kParameter, name, scope, [&](const DOMElement& parameter) {
    const XMLCh* const word = AttributeOf(parameter, u"type");
    for (const auto& [typeWord, type] : kTypes) {
      if (word && XStrEquals(word, typeWord)) result = type;
    }
    return RQStatus();
  });
  return result;
}

void* RQSettingsParser::GetComplexParameter(const char* name, void* scope) {
  void* handle = nullptr;
  WithParameter(kComplexParameter, name, scope, [&](const DOMElement& parameter) {
    handle = const_cast<DOMElement*>(&parameter);  // handed back as a scope only, never written through
    return RQStatus();
  });
  return handle;
}

RQStatus RQSettingsParser::GetVariables(const char* name, std::vector<std::string>& names) const {
  return WithParameter(kParameter, name, nullptr, [&](const DOMElement& parameter) {
    names.clear();
    const auto append = [&](const XMLCh* text) { return AppendItem(text, names); };
    if (!SaysItIsList(parameter)) {
      const XMLCh* const text = ValueOf(parameter);
      if (!text) return kMissing;
      append(text);
      return RQStatus();
    }
    const DOMElement* const list = FirstChild(parameter, kListValue);
    if (!list) return RQStatus(ListValueMissing, false);
    return ReadItems(FirstChild(*list, Names::kValueElement), kMissing, append);
  });
}

RQStatus RQSettingsParser::GetVariables(const char* name, std::string& name_out) const {
  return WithParameter(kParameter, name, nullptr, [&](const DOMElement& parameter) {
    const XMLCh* const text = ValueOf(parameter);
    if (!text) return SaysItIsList(parameter) ? kIsList : kMissing;
    AssignUTF8(text, name_out);
    return RQStatus();
  });
}

RQStatus RQSettingsParser::GetTargetVars(std::vector<std::string>& names) const {
  return GetArray("target", names, nullptr);
}
RQStatus RQSettingsParser::GetCatResponseVars(std::vector<std::string>& names) const {
  return GetVariables("CatResponses", names);
}
RQStatus RQSettingsParser::GetContResponseVars(std::vector<std::string>& names) const {
  return GetVariables("ContResponses", names);
}
RQStatus RQSettingsParser::GetPredictors(std::vector<std::string>& names) const {
  return GetArray("inputs", names, nullptr);
}
RQStatus RQSettingsParser::GetCatPredictors(std::vector<std::string>& names) const {
  return GetVariables("CatPredictors", names);
}
RQStatus RQSettingsParser::GetContPredictors(std::vector<std::string>& names) const {
  return GetVariables("ContPredictors", names);
}
RQStatus RQSettingsParser::GetFrequencyWeight(std::string& name) const {
  return GetVariables("FrequencyWeightVar", name);
}

RQStatus RQSettingsParser::GetArray(const char* name, std::vector<std::string>& out, void* scope) const {
  return GetItems(name, out, scope);
}
RQStatus RQSettingsParser::GetArray(const char* name, std::vector<int>& out, void* scope) const {
  return GetItems(name, out, scope);
}
RQStatus RQSettingsParser::GetArray(const char* name, std::vector<double>& out, void* scope) const {
  return GetItems(name, out, scope);
}

RQStatus RQSettingsParser::GetMatrix(const char* name, std::vector<std::vector<std::string>>& out, void* scope) {
  return GetRows(name, out, scope);
}
RQStatus RQSettingsParser::GetMatrix(const char* name, std::vector<std::vector<int>>& out, void* scope) {
  return GetRows(name, out, scope);
}
RQStatus RQSettingsParser::GetMatrix(const char* name, std::vector<std::vector<double>>& out, void* scope) {
  return GetRows(name, out, scope);
}

}  // namespace RQXPrsUtil
