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

/// Declares at `copy`, which is to stand below `target`, the namespace prefixes that it uses and that only what was
/// around `source` declares. A prefix that `target` knows keeps what it means there.
void DeclarePrefixes(xercesc::DOMElement& copy, const xercesc::DOMNode& source, const xercesc::DOMNode& target);

}  // namespace RQXPrsUtil

#endif
