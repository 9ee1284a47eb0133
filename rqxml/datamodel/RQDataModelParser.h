#ifndef RQXML_DATAMODEL_RQDATAMODELPARSER_H
#define RQXML_DATAMODEL_RQDATAMODELPARSER_H

#include <memory>
#include <string>

#include "rqxml/common/RQExport.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"

namespace RQXPrsUtil {

class RQDataModelParserImp;

/// Reads a data-model document, which describes the fields of a data set, and fills a variable list from it.
///
/// The status of construction and of the last parse is kept; while it is not OK every operation returns it. Each
/// object starts the XML library in its constructor and stops it in its destructor; these two, like all starts and
/// stops of the XML library, must not run concurrently; a parse that ends with an exception counts as a start. One
/// object is used by one thread at a time. What RQXMLReadWrite says of documents with very many names holds here too.
class RQ_API RQDataModelParser {
 public:
  /// Starts the XML library and creates the parser; 103 as the status when the library threw an XMLException.
  RQDataModelParser();
  /// Destroys the parser with its document, then stops the XML library (neither when there is no parser).
  virtual ~RQDataModelParser();
  RQDataModelParser(const RQDataModelParser&) = delete;
  RQDataModelParser& operator=(const RQDataModelParser&) = delete;

  /// The outcome of construction or of the last parse.
  RQCommon::RQStatus GetStatus() const;

  /// Parses a document. Everything of an earlier one is gone as soon as a parse starts.
  /// @param text the document itself, not its name, in any encoding that it declares; not needed after the call
  /// @return OK; 103 without a parser; 104 when the text cannot be decoded or no document resulted; 105 when the
  ///   document element is missing or not "DataModel"; 113 when it has no "Fields"
  /// @throws xercesc::SAXParseException for a document that is not well-formed. The object then holds no document
  ///   (FillVarList gives 107) and can parse again.
  /// @throws xercesc::DOMException, xercesc::OutOfMemoryException as the XML library raises them; the object is then
  ///   as after a SAXParseException
  RQCommon::RQStatus ParseToDOM(const std::string& text);

  /// Adds a variable for each "Field" to `vars`, in document order, with its role and its storage type. A continuous
  /// field with the role "freqWeight" becomes the list's weight variable.
  /// @param vars       receives the variables; those added before a failure stay
  /// @param fieldRoles gives fields with the role "input" the role RoleInputField, else they get RoleInput
  /// @param flag       handed on with the range of each continuous variable when `count` is above 1, else false
  /// @param count      handed on together with a true flag, else -1
  /// @return OK; the status of the last parse when that is not OK; 107 without a document; 108 for a field without
  ///   "name", "storage" or "measure"; 109 for an unknown "storage"; 111 when `vars` refuses a variable or does not
  ///   hand it out
  RQCommon::RQStatus FillVarList(RQMTD_NAMESPACE::RQVarList& vars, bool fieldRoles, bool flag, int count) const;

 private:
  std::unique_ptr<RQDataModelParserImp> fImp;
};

}  // namespace RQXPrsUtil

#endif
