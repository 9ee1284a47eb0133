#include "rqxml/datamodel/RQDataModelParser.h"

#include "rqxml/datamodel/RQDataModelParserImp.h"

namespace RQXPrsUtil {

RQDataModelParser::RQDataModelParser() : fImp(std::make_unique<RQDataModelParserImp>()) {}

RQDataModelParser::~RQDataModelParser() = default;

RQCommon::RQStatus RQDataModelParser::GetStatus() const { return fImp->GetStatus(); }

RQCommon::RQStatus RQDataModelParser::ParseToDOM(const std::string& text) { return fImp->ParseToDOM(text); }

RQCommon::RQStatus RQDataModelParser::FillVarList(RQMTD_NAMESPACE::RQVarList& vars, bool fieldRoles, bool flag,
                                                  int count) const {
  return fImp->FillVarList(vars, fieldRoles, flag, count);
}

}  // namespace RQXPrsUtil
