#ifndef RQXML_COMBINER_RQXNODECOPY_H
#define RQXML_COMBINER_RQXNODECOPY_H

#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// A copy of `source` that belongs to `document` and is attached nowhere; `deep` for its whole subtree.
///
/// The result is that of the XML library's import, with two differences: references to entities are replaced by what
/// they stand for, since the declarations stay behind; and it does not recurse, so that no nesting is too deep.
/// @return null for a node that the XML library cannot import; such nodes below `source` are left out with all that is
///   below them
xercesc::DOMNode* CopyNode(xercesc::DOMDocument& document, const xercesc::DOMNode& source, bool deep);

}  // namespace RQXPrsUtil

#endif
