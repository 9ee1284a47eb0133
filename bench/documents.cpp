#include "documents.h"

#include <array>

#include "text_pieces.h"

namespace rqxml_bench {
namespace {

std::string FieldName(std::size_t i) { return Join({"field_", std::to_string(i)}); }

std::string FieldStart(std::size_t i, const char* optype, const char* type) {
  return Join({"\t\t<DataField name=\"", FieldName(i), "\" displayName=\"Field number ", std::to_string(i),
               "\" optype=\"", optype, "\" dataType=\"", type, "\">\n"});
}

std::string Value(const std::string& attributes) { return Join({"\t\t\t<Value ", attributes, "/>\n"}); }

constexpr std::string_view kFieldEnd = "\t\t</DataField>\n";

std::string ContinuousField(std::size_t i) {
  std::string text = FieldStart(i, "continuous", "double");
  for (const char* number : {"-9", "-8.5", "-7e1"})
    text += Value(Join({"value=\"", number, "\" property=\"missing\" displayValue=\"No answer\""}));
  return text += kFieldEnd;
}

std::string NumericField(std::size_t i) {
  std::string text = FieldStart(i, "categorical", "integer");
  for (std::size_t value = 1; value <= 3; ++value)
    text += Value(
        Join({"value=\"", std::to_string(i + value), "\" displayValue=\"Category ", std::to_string(value), "\""}));
  return text += kFieldEnd;
}

std::string TextField(std::size_t i) {
  std::string text = FieldStart(i, "ordinal", "string");
  for (const char* word : {"low", "middle", "high"})
    text += Value(Join({"value=\"", word, "\" property=\"valid\" displayValue=\"Quite ", word, "\""}));
  return text += kFieldEnd;
}

std::string PlainField(std::size_t i) {
  constexpr std::array kKinds = {ContinuousField, NumericField, TextField};
  return kKinds[i % kKinds.size()](i);
}

std::string Bin(const std::string& label, const std::string& margins) {
  return Join({"\t\t\t\t<DiscretizeBin binValue=\"", label, "\"><Interval closure=\"openClosed\" ", margins,
               "/></DiscretizeBin>\n"});
}

std::string DerivedField(std::size_t i) {
  const std::string name = FieldName(i);
  return Join({"\t\t<DerivedField name=\"", name, "_bin\" optype=\"ordinal\" dataType=\"string\">\n",
               "\t\t\t<Discretize field=\"", name, "\">\n", Bin("low", "rightMargin=\"10\""),
               Bin("middle", "leftMargin=\"10\" rightMargin=\"20.5\""), Bin("high", "leftMargin=\"20.5\""),
               "\t\t\t</Discretize>\n\t\t</DerivedField>\n"});
}

template <class Piece>
std::string Repeat(std::size_t count, Piece piece) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += piece(i);
  return text;
}

std::string MakeText(std::size_t fields, bool withBins) {
  std::string text = Join(
      {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", "<PMML xmlns=\"http://www.dmg.org/PMML-4_4\" version=\"4.4\">\n",
       "\t<Header copyright=\"none\"/>\n\t<DataDictionary numberOfFields=\"", std::to_string(fields), "\">\n"});
  text += Repeat(fields, withBins ? ContinuousField : PlainField);
  text += "\t</DataDictionary>\n";
  if (withBins)
    text += Join({"\t<TransformationDictionary>\n", Repeat(fields, DerivedField), "\t</TransformationDictionary>\n"});
  return text += "</PMML>\n";
}

}  // namespace

const char* NameOf(Variant variant) {
  switch (variant) {
    case Variant::Plain:
      return "plain";
    case Variant::Bins:
      return "bins";
    case Variant::Filter:
      return "filter";
  }
  return "";
}

Document MakeDocument(std::size_t fields, Variant variant) {
  Document document;
  document.useBins = variant == Variant::Bins;
  document.text = MakeText(fields, document.useBins);
  if (variant == Variant::Filter)
    for (std::size_t i = 0; i < fields; i += 2) document.names.push_back(FieldName(i));
  document.variables = static_cast<int>(variant == Variant::Filter ? document.names.size() : fields);
  return document;
}

}  // namespace rqxml_bench
