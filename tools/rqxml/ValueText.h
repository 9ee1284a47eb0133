#ifndef RQXML_TOOLS_VALUETEXT_H
#define RQXML_TOOLS_VALUETEXT_H

#include <string>

namespace rqtool {

/// A number for people; words for the system-missing value.
std::string NumberText(double value);

/// A number for people, with six significant digits and all digits of its whole part; words for the system-missing
/// value.
std::string ShortNumberText(double value);

/// `text`, printable; in quotes where it could be mistaken for something else in a list.
std::string ItemText(const std::string& text);

}  // namespace rqtool

#endif
