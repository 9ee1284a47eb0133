#include "ValueText.h"

#include "DisplayText.h"
#include "rqxml/common/RQMV.h"
#include "rqxml/common/RQXMLFormat.h"

namespace rqtool {

std::string NumberText(double value) {
  if (value == RQMV::gMissingValue) return "(system-missing)";
  return RQXML_NAMESPACE::Format(value, false, nullptr);
}

std::string ItemText(const std::string& text) {
  const bool plain =
      !text.empty() && text.front() != ' ' && text.back() != ' ' && text.find_first_of(",=\"") == std::string::npos;
  return plain ? Printable(text) : '"' + Printable(text) + '"';
}

}  // namespace rqtool
