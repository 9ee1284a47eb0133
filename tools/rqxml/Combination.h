#ifndef RQXML_TOOLS_COMBINATION_H
#define RQXML_TOOLS_COMBINATION_H

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Failure.h"
#include "Findings.h"
#include "OutputFile.h"
#include "SplitVariables.h"
#include "Splits.h"
#include "rqxml/combiner/RQXSplitPMMLCombiner.h"
#include "rqxml/common/RQVarList.h"

namespace rqtool {

/// Merges the files of splits one by one, and keeps account of what that does. A refused file leaves no trace, the
/// first one neither.
class Combination {
 public:
  explicit Combination(const std::vector<SplitVariable>& variables);
  ~Combination();
  Combination(const Combination&) = delete;
  Combination& operator=(const Combination&) = delete;

  /// Merges the file of a split. At most one document is held besides the combined one.
  /// @throws Failure when the file cannot be read (FileFailed) or is refused (Refused)
  void Add(const Split& split);

  /// Writes the combined document; nothing can be added any more.
  /// @throws Failure (FileFailed) when that fails
  void Write(const OutputFile& output);

  int GetSegments() const { return fCombiner->GetNModels(); }
  const Comparison& GetComparison() const { return fComparison; }

 private:
  void CheckValues(const Split& split) const;
  void CheckNamespaces(const Split& split, const SplitDocument& document) const;
  void Merge(const Split& split, const SplitDocument& document, const std::string& libraryName);
  void StartAnew();

  std::vector<SplitVariable> fVariables;
  RQMTD_NAMESPACE::RQVarList fList;
  std::unique_ptr<RQXPrsUtil::RQXSplitPMMLCombiner> fCombiner;
  std::string fFunctionName;                       // the first file's
  std::map<std::string, std::string> fNamespaces;  // the first file's
  Comparison fComparison;
};

}  // namespace rqtool

#endif
