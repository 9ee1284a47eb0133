#include <exception>
#include <fstream>
#include <iostream>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/common/RQVarList.h"
#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXMLUtil.h"

int ListVariables(const char* name) {
  std::ifstream file(name, std::ios::binary);
  if (!file) {
    std::cerr << name << ": cannot be opened\n";
    return 1;
  }
  RQXPrsUtil::RQPMMLParser parser;
  RQMTD_NAMESPACE::RQVarList variables;
  RQCommon::RQStatus status = parser.ParseToDOM(file);
  if (status.IsOK()) status = parser.FillVarList(variables, {}, false);
  if (!status.IsOK()) {
    std::cerr << name << ": status " << status.GetCode() << ' ' << parser.GetXercesMessage() << '\n';
    return 1;
  }
  for (int i = 0; i < variables.Size(); ++i) std::cout << variables.GetVarAt(i)->GetName() << '\n';
  return 0;
}

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    return ListVariables(argv[1]);
  } catch (const xercesc::SAXParseException& error) {  // a document that is not well-formed
    std::cerr << argv[1] << ':' << error.getLineNumber() << ": " << RQXPrsUtil::ToUTF8(error.getMessage()) << '\n';
  } catch (const xercesc::DOMException& error) {  // one that the DOM has no place for, such as XML version 1.2
    std::cerr << argv[1] << ": " << RQXPrsUtil::ToUTF8(error.getMessage()) << '\n';
  } catch (const std::exception& error) {
    std::cerr << argv[1] << ": " << error.what() << '\n';
  } catch (...) {  // the XML library ran out of memory
    std::cerr << argv[1] << ": too large\n";
  }
  return 1;
}
