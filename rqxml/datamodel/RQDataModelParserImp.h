#ifndef RQXML_DATAMODEL_RQDATAMODELPARSERIMP_H
#define RQXML_DATAMODEL_RQDATAMODELPARSERIMP_H

#include <memory>
#include <string>

#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/xml/RQXDomParser.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// What stands behind RQDataModelParser; its operations are described there.
class RQDataModelParserImp {
 public:
  RQDataModelParserImp();
  virtual ~RQDataModelParserImp();
  RQDataModelParserImp(const RQDataModelParserImp&) = delete;
  RQDataModelParserImp& operator=(const RQDataModelParserImp&) = delete;

  RQCommon::RQStatus GetStatus() const { return fStatus; }
  RQCommon::RQStatus ParseToDOM(const std::string& text);
  RQCommon::RQStatus FillVarList(RQMTD_NAMESPACE::RQVarList& vars, bool fieldRoles, bool flag, int count) const;

 private:
  RQCommon::RQStatus FindElements();
  void ForgetDocument();

  RQCommon::RQStatus fStatus;                         // outcome of construction and of the last parse
  std::unique_ptr<RQXDomParser> fParser;              // null when the XML library could not be started
  xercesc::DOMDocument* fDocument = nullptr;          // owned by the parser
  const xercesc::DOMElement* fRootElement = nullptr;  // "DataModel"
  const xercesc::DOMElement* fFields = nullptr;       // "Fields"
};

}  // namespace RQXPrsUtil

#endif
