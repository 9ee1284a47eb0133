#include "DocumentText.h"

#include <algorithm>
#include <string>

#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

// Of a UTF-16 unit; surrogates come in pairs here.
bool IsAllowed(XMLCh unit) {
  if (unit == u'\t' || unit == u'\n' || unit == u'\r') return true;
  return unit >= 0x20 && unit != 0xFFFE && unit != 0xFFFF;
}

}  // namespace

bool IsDocumentText(std::string_view text) {
  if (text.find('\0') != std::string_view::npos) return false;
  const std::vector<XMLCh> units = RQXPrsUtil::ToUTF16(std::string(text).c_str());
  const bool converted = text.empty() || units.size() > 1;
  return converted && std::all_of(units.begin(), units.end() - 1, IsAllowed);
}

}  // namespace rqtool
