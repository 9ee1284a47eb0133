// Reads a small PMML document and prints its only variable: "age: Age in years".
#include <iostream>
#include <sstream>

#include "rqxml/common/RQVarList.h"
#include "rqxml/pmml/RQPMMLParser.h"

int main() {
  std::istringstream document(R"(<?xml version="1.0" encoding="UTF-8"?>
<PMML version="4.2">
  <Header/>
  <DataDictionary numberOfFields="1">
    <DataField name="age" displayName="Age in years" optype="continuous" dataType="double"/>
  </DataDictionary>
</PMML>)");

  RQXPrsUtil::RQPMMLParser parser;
  RQMTD_NAMESPACE::RQVarList variables;
  RQCommon::RQStatus status = parser.ParseToDOM(document);
  if (status.IsOK()) status = parser.FillVarList(variables, {}, false);
  if (!status.IsOK()) {
    std::cerr << "status " << status.GetCode() << ' ' << parser.GetXercesMessage() << '\n';
    return 1;
  }
  for (int index = 0; index < variables.Size(); ++index) {
    const RQMTD_NAMESPACE::IRQVariable* variable = variables.GetVarAt(index);
    std::cout << variable->GetName() << ": " << variable->GetLabel() << '\n';
  }
  return 0;
}
