#include "metadata_documents.h"

#include <array>

#include "text_pieces.h"

namespace rqxml_bench {
namespace {

// What a field of a data model is beside its name.
struct Kind {
  const char* attributes;
  const char* content;
};

constexpr std::array<Kind, 3> kKinds = {
    {{"storage=\"real\" measure=\"continuous\" role=\"input\"", "\t\t\t<Range minValue=\"-10\" maxValue=\"99.5\"/>\n"},
     {"storage=\"integer\" measure=\"discrete\" role=\"input\"",
      "\t\t\t<Values>\n\t\t\t\t<Value value=\"1\" displayLabel=\"Low\"/>\n"
      "\t\t\t\t<Value value=\"2\" displayLabel=\"Middle\"/>\n\t\t\t\t<Value value=\"3\" displayLabel=\"High\"/>\n"
      "\t\t\t</Values>\n"},
     {"storage=\"string\" measure=\"discrete\" role=\"target\"",
      "\t\t\t<Values>\n\t\t\t\t<Value value=\"low\" displayLabel=\"Quite low\"/>\n"
      "\t\t\t\t<Value value=\"middle\" displayLabel=\"Quite middle\"/>\n"
      "\t\t\t\t<Value value=\"high\" displayLabel=\"Quite high\"/>\n\t\t\t</Values>\n"}}};

std::string Field(std::size_t i) {
  const Kind& kind = kKinds[i % kKinds.size()];
  const std::string number = std::to_string(i);
  return Join({"\t\t<Field name=\"field_", number, "\" displayLabel=\"Field number ", number, "\" ", kind.attributes,
               ">\n", kind.content, "\t\t</Field>\n"});
}

std::string Interval(std::size_t i) {
  return Join({"\t\t\t\t\t\t<Interval closure=\"closedOpen\" leftMargin=\"", std::to_string(i), ".5\" rightMargin=\"",
               std::to_string(i + 1), ".5\"/>\n"});
}

std::string Histogram() {
  std::string intervals, counts;
  for (std::size_t i = 0; i < kIntervals; ++i) {
    intervals += Interval(i);
    counts += Join({i > 0 ? " " : "", std::to_string(100 * i)});
  }
  return Join({"\t\t\t\t\t<ContStats>\n", intervals, "\t\t\t\t\t\t<Array type=\"int\" n=\"", std::to_string(kIntervals),
               "\">", counts, "</Array>\n\t\t\t\t\t</ContStats>\n"});
}

std::string Statistics(std::size_t i, const std::string& histogram) {
  return Join({"\t\t\t\t<UnivariateStats field=\"field_", std::to_string(i),
               "\">\n\t\t\t\t\t<Counts totalFreq=\"19000\" missingFreq=\"0\" invalidFreq=\"0\"/>\n"
               "\t\t\t\t\t<NumericInfo minimum=\"0.5\" maximum=\"20.5\" mean=\"13.25\" standardDeviation=\"4.75\"/>\n",
               histogram, "\t\t\t\t</UnivariateStats>\n"});
}

}  // namespace

Document MakeDataModel(std::size_t fields) {
  Document document;
  document.text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<DataModel>\n\t<Fields>\n";
  for (std::size_t i = 0; i < fields; ++i) document.text += Field(i);
  document.text += "\t</Fields>\n</DataModel>\n";
  document.variables = static_cast<int>(fields);
  return document;
}

Document MakeStatistics(std::size_t fields) {
  Document document;
  document.text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML version=\"4.4\">\n\t<DataDictionary/>\n\t<TreeModel>\n"
      "\t\t\t<ModelStats>\n";
  const std::string histogram = Histogram();
  for (std::size_t i = 0; i < fields; ++i) document.text += Statistics(i, histogram);
  document.text += "\t\t\t</ModelStats>\n\t</TreeModel>\n</PMML>\n";
  document.variables = static_cast<int>(fields);
  return document;
}

}  // namespace rqxml_bench
