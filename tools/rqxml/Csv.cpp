#include "Csv.h"

#include <utility>

namespace rqtool {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

class Reader {
 public:
  explicit Reader(std::string_view text) : fRest(text) {
    if (fRest.substr(0, kByteOrderMark.size()) == kByteOrderMark) fRest.remove_prefix(kByteOrderMark.size());
  }

  bool AtEnd() const { return fRest.empty(); }
  bool TakeEmptyLine() { return TakeLineEnd(); }

  CsvRecord TakeRecord() {
    CsvRecord record{fLine, {}};
    while (true) {
      record.fields.push_back(!fRest.empty() && fRest.front() == '"' ? TakeQuoted() : TakePlain());
      if (fRest.empty() || TakeLineEnd()) return record;
      if (fRest.front() != ',') throw CsvError(fLine, "something stands between a closing quote and the next comma");
      fRest.remove_prefix(1);
    }
  }

 private:
  bool TakeLineEnd() {
    const std::size_t length = fRest.substr(0, 2) == "\r\n" ? 2 : fRest.substr(0, 1) == "\n" ? 1 : 0;
    fRest.remove_prefix(length);
    if (length > 0) ++fLine;
    return length > 0;
  }

  std::string TakePlain() {
    std::string_view field = fRest.substr(0, fRest.find_first_of(",\n"));
    fRest.remove_prefix(field.size());
    const bool lineEnd = !fRest.empty() && fRest.front() == '\n';
    if (lineEnd && !field.empty() && field.back() == '\r') field.remove_suffix(1);
    if (field.find('"') != std::string_view::npos) {
      throw CsvError(fLine, "a double quote stands in a field that does not begin with one");
    }
    return std::string(field);
  }

  // The field begins with its quote.
  std::string TakeQuoted() {
    const std::size_t begin = fLine;
    std::string field;
    fRest.remove_prefix(1);
    while (!fRest.empty()) {
      const char next = fRest.front();
      fRest.remove_prefix(1);
      if (next == '"') {
        if (fRest.empty() || fRest.front() != '"') return field;
        fRest.remove_prefix(1);
      }
      if (next == '\n') ++fLine;
      field += next;
    }
    throw CsvError(begin, "a double quote is not closed");
  }

  std::string_view fRest;
  std::size_t fLine = 1;
};

}  // namespace

std::vector<CsvRecord> ParseCsv(std::string_view text) {
  Reader reader(text);
  std::vector<CsvRecord> records;
  while (!reader.AtEnd()) {
    if (!reader.TakeEmptyLine()) records.push_back(reader.TakeRecord());
  }
  return records;
}

}  // namespace rqtool
