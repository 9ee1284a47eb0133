#ifndef RQXML_SETTINGS_RQSETTINGSITEMS_H
#define RQXML_SETTINGS_RQSETTINGSITEMS_H

#include <string>
#include <utility>
#include <vector>

#include "rqxml/xml/RQXNumbers.h"
#include "rqxml/xml/RQXText.h"

namespace RQXPrsUtil {

/// @name The text of one value as each of the types that parameters have; false when it is none of that type
/// @{
inline bool ReadItem(const XMLCh* text, std::string& value) {
  AssignUTF8(text, value);
  return true;
}

/// Negative integers are refused after they were stored: callers see what stood there.
inline bool ReadItem(const XMLCh* text, int& value) { return ReadInteger(text, value) && value >= 0; }

inline bool ReadItem(const XMLCh* text, double& value) { return ReadDouble(text, value); }

inline bool ReadItem(const XMLCh* text, bool& value) {
  const bool isTrue = XStrEquals(text, u"true");
  if (!isTrue && !XStrEquals(text, u"false")) return false;
  value = isTrue;
  return true;
}
/// @}

/// Appends the value to a list unless it is an empty text; false when it is none of the type.
template <class Item>
bool AppendItem(const XMLCh* text, std::vector<Item>& items) {
  Item item{};
  if (!ReadItem(text, item)) return false;
  items.push_back(item);
  return true;
}
template <>
inline bool AppendItem(const XMLCh* text, std::vector<std::string>& items) {
  std::string item;
  AssignUTF8(text, item);
  if (!item.empty()) items.push_back(std::move(item));
  return true;
}

}  // namespace RQXPrsUtil

#endif
