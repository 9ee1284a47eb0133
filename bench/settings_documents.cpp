#include "settings_documents.h"

#include <array>

#include "text_pieces.h"

namespace rqxml_bench {
namespace {

std::string FieldName(std::size_t i) { return Join({"field_", std::to_string(i)}); }

std::string DataField(std::size_t i) {
  const std::string number = std::to_string(i);
  return Join({"\t\t<DataField name=\"", FieldName(i), "\" displayName=\"Field number ", number,
               "\" optype=\"continuous\" dataType=\"double\">\n",
               "\t\t\t<Interval closure=\"closedClosed\" leftMargin=\"-", number, "\" rightMargin=\"", number,
               ".5\"/>\n", "\t\t\t<Value value=\"-9\" property=\"missing\" displayValue=\"No answer\"/>\n",
               "\t\t\t<Value value=\"-8.5\" property=\"missing\" displayValue=\"Refused\"/>\n", "\t\t</DataField>\n"});
}

std::string Bin(const char* label, const char* margins) {
  return Join({"\t\t\t\t<DiscretizeBin binValue=\"", label, "\"><Interval closure=\"openClosed\" ", margins,
               "/></DiscretizeBin>\n"});
}

std::string Bins(std::size_t i) {
  return Join({"\t\t\t<Discretize field=\"", FieldName(i), "\">\n", Bin("low", "rightMargin=\"10\""),
               Bin("middle", "leftMargin=\"10\" rightMargin=\"20.5\""), Bin("high", "leftMargin=\"20.5\""),
               "\t\t\t</Discretize>\n"});
}

// What a derived field is beside the bins.
struct Derived {
  const char* attributes;
  const char* content;
};

constexpr std::array<Derived, 3> kDerived = {
    {{"optype=\"continuous\" dataType=\"double\"",
      "\t\t\t<Extension name=\"range\"><Interval leftMargin=\"0\" rightMargin=\"30\"/></Extension>\n"},
     {"optype=\"ordinal\" dataType=\"integer\"",
      "\t\t\t<Value value=\"1\" displayValue=\"Low\"/>\n\t\t\t<Value value=\"2\" displayValue=\"Middle\"/>\n"
      "\t\t\t<Value value=\"3\" displayValue=\"High\"/>\n"},
     {"optype=\"categorical\" dataType=\"string\"",
      "\t\t\t<Value value=\"low\"/>\n\t\t\t<Value value=\"middle\"/>\n\t\t\t<Value value=\"high\"/>\n"}}};

std::string DerivedField(std::size_t i) {
  const Derived& kind = kDerived[i % kDerived.size()];
  return Join({"\t\t<DerivedField name=\"", FieldName(i), "_bin\" displayName=\"Bin of field number ",
               std::to_string(i), "\" ", kind.attributes, ">\n", Bins(i), kind.content, "\t\t</DerivedField>\n"});
}

std::string ListOf(std::size_t i) {
  std::string text = "<ListValue>";
  for (std::size_t item = i; item < i + 3; ++item) text += Join({"<Value value=\"", std::to_string(item), "\"/>"});
  return text += "</ListValue>";
}

std::string Parameter(std::size_t i) {
  const std::string number = std::to_string(i);
  const std::string start = Join({"\t\t\t\t<Parameter name=\"", ParameterName(i), "\" type="});
  switch (TypeOf(i)) {
    case Type::Text:
      return Join({start, "\"string\" value=\"the value number ", number, "\"/>\n"});
    case Type::Integer:
      return Join({start, "\"integer\" value=\"", number, "\"/>\n"});
    case Type::Double:
      return Join({start, "\"double\" value=\"", number, ".5\"/>\n"});
    case Type::Boolean:
      return Join({start, "\"boolean\" value=\"true\"/>\n"});
    default:
      return Join({start, "\"integer\" isList=\"true\">", ListOf(i), "</Parameter>\n"});
  }
}

template <class Piece>
std::string Repeat(std::size_t count, Piece piece) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece(i);
  return text;
}

std::string MakeText(const std::string& parameters, const std::string& fields, const std::string& derivedFields) {
  return Join({"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",
               "<PMML xmlns=\"http://www.dmg.org/PMML-4_4\" version=\"4.4\">\n\t<Header copyright=\"none\"/>\n",
               "\t<MiningBuildTask>\n\t\t<Extension>\n\t\t\t<Parameters>\n", parameters,
               "\t\t\t</Parameters>\n\t\t</Extension>\n\t</MiningBuildTask>\n\t<DataDictionary>\n", fields,
               "\t</DataDictionary>\n\t<TransformationDictionary>\n", derivedFields,
               "\t</TransformationDictionary>\n</PMML>\n"});
}

}  // namespace

Document MakeFieldSettings(std::size_t fields) {
  Document document;
  document.text = MakeText("", Repeat(fields, DataField), Repeat(fields, DerivedField));
  document.useBins = true;
  document.variables = static_cast<int>(2 * fields);
  return document;
}

std::string ParameterName(std::size_t i) { return Join({"parameter_", std::to_string(i)}); }

Document MakeParameterSettings(std::size_t parameters) {
  Document document;
  document.text = MakeText(Repeat(parameters, Parameter), "", "");
  return document;
}

}  // namespace rqxml_bench
