#include <fstream>
#include <iostream>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/common/RQVarList.h"
#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLUtil.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::ifstream file(argv[1], std::ios::binary);
  try {
    RQXPrsUtil::RQPMMLParser parser;
    RQMTD_NAMESPACE::RQVarList variables;
    RQCommon::RQStatus status = parser.ParseToDOM(file);
    if (status.IsOK()) status = parser.FillVarList(variables, {}, false);
    for (int i = 0; i < variables.Size(); ++i) std::cout << variables.GetVarAt(i)->GetName() << '\n';
    return status.IsOK() ? 0 : 1;
  } catch (const xercesc::SAXParseException& error) {  // a document that is not well-formed
    std::cerr << argv[1] << ':' << error.getLineNumber() << ": " << RQXPrsUtil::ToUTF8(error.getMessage()) << '\n';
    return 1;
  }
}
