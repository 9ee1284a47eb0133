#ifndef RQXML_TOOLS_FIELDPICTURE_H
#define RQXML_TOOLS_FIELDPICTURE_H

#include <string>

#include "FieldStatistics.h"

namespace rqtool {

/// Where a picture stands.
enum class PictureUse {
  File,  ///< a document of its own, with its title and its colours
  Page   ///< part of a page that tells the title and sets the colours
};

/// The statistics of a field whose status is OK as an SVG picture: columns over intervals, bars of categories, or where
/// there is no histogram the range with the mean. Empty when there is nothing to draw.
std::string FieldPicture(const FieldStatistics& field, PictureUse use);

/// The style rules of the pictures on a page, for light and dark surroundings.
std::string PictureStyle();

}  // namespace rqtool

#endif
