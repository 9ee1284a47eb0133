#ifndef RQXML_BENCH_METADATA_WORKLOAD_H
#define RQXML_BENCH_METADATA_WORKLOAD_H

#include "documents.h"
#include "rqxml/common/RQUniStats.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/datamodel/RQDataModelParser.h"
#include "rqxml/pmml/RQPMMLParser.h"

namespace rqxml_bench {

/// What this library reads of a data model.
class DataModelSubject {
 public:
  /// Parses the document.
  explicit DataModelSubject(const Document& document);
  /// Reads all fields into the list.
  void Fill();
  /// Ends the program unless what was read is what MakeDataModel wrote.
  void Check(const Document& document) const;

 private:
  RQXPrsUtil::RQDataModelParser fParser;
  RQMTD_NAMESPACE::RQVarList fVariables;
};

/// What this library reads of a model's statistics.
class StatisticsSubject {
 public:
  /// Parses the document and chooses its model.
  explicit StatisticsSubject(const Document& document);
  /// Reads all fields, one after the other, each into a new object.
  void Fill();
  /// Ends the program unless what was read is what MakeStatistics wrote.
  void Check(const Document& document) const;

 private:
  RQXPrsUtil::RQPMMLParser fParser;
  RQMTD_NAMESPACE::RQUniStats fLast;
  int fFields = 0;
};

}  // namespace rqxml_bench

#endif
