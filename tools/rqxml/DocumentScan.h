#ifndef RQXML_TOOLS_DOCUMENTSCAN_H
#define RQXML_TOOLS_DOCUMENTSCAN_H

/// @file
/// A second look at a document, for better messages only: what cannot be found out is simply not told. No part of a
/// document type declaration is followed, and nothing behind one is found.

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Failure.h"

namespace rqtool {

/// The name of the document element, as written, and the end of its start tag.
struct DocumentElement {
  std::string name;
  Place place;
};

/// The name that the library gives to a stream that it reads from. Other names in its messages belong to external
/// entities.
inline constexpr const char* kStreamName = "istream";

/// Finds the place of the first error that makes the document that `in` holds unreadable. The XML library decodes in
/// blocks: the place of bytes that cannot be decoded is not where they stand.
std::optional<Place> FindError(std::istream& in);

/// Finds the document element of the document that `in` holds from its current position on. The XML library must
/// have been started.
std::optional<DocumentElement> FindDocumentElement(std::istream& in);

/// The way from the document element to another element: the position (from 0) of each element on it among the elements
/// that have the same parent. Empty for the document element itself.
using ElementPath = std::vector<std::size_t>;

/// Finds where the start tag of the element at the end of `path` ends.
std::optional<Place> FindElement(std::istream& in, const ElementPath& path);

/// True when a document type declaration is the first markup besides comments and processing instructions. Works for
/// every encoding whose markup is ASCII or UTF-16.
bool HasDoctype(std::istream& in);

/// True when the first markup besides comments and processing instructions is the start of an element `name`, or a
/// document type declaration for one. Works for the same encodings, and reads no further.
bool BeginsWithElement(std::istream& in, std::string_view name);

}  // namespace rqtool

#endif
