#ifndef RQXML_TOOLS_CSV_H
#define RQXML_TOOLS_CSV_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace rqtool {

/// A record of comma-separated values, and the line on which it begins, from 1.
struct CsvRecord {
  std::size_t line = 0;
  std::vector<std::string> fields;
};

/// Says what makes a text no comma-separated values, and in which line.
class CsvError : public std::runtime_error {
 public:
  CsvError(std::size_t line, const std::string& what) : std::runtime_error(what), fLine(line) {}
  std::size_t GetLine() const { return fLine; }

 private:
  std::size_t fLine;
};

/// Takes `text` apart as RFC 4180 has it: lines end with CRLF or LF; a field in double quotes may hold commas, line
/// ends and, doubled, double quotes. Blanks count. A byte order mark at the beginning and empty lines are passed over.
/// @throws CsvError for a quote that is not closed, one in the middle of a field, and anything but a comma or a line
///   end behind a closing one
std::vector<CsvRecord> ParseCsv(std::string_view text);

}  // namespace rqtool

#endif
