#ifndef RQXML_TOOLS_FINDINGS_H
#define RQXML_TOOLS_FINDINGS_H

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "SplitDocument.h"
#include "SplitVariables.h"
#include "Splits.h"

namespace rqtool {

/// Something that a combination takes silently, and that may not be what its user wants.
struct Finding {
  std::string kind{};                ///< a word for programs
  std::string file{};                ///< the file as it is found from here
  std::string field{};               ///< the field, split variable or declaration; empty for none
  std::string known{};               ///< what the combined document has; empty for nothing
  std::string found{};               ///< what the file has; empty for nothing
  std::vector<std::string> items{};  ///< what was added or left out
};

/// The finding in words, one line without its file.
std::string FindingText(const Finding& finding);

/// What the combined document gained behind the first file.
struct Added {
  std::size_t fields = 0;
  std::size_t values = 0;
  std::size_t miningFields = 0;
};

/// Follows a combination file by file: keeps what the combined document knows, by the rules of the combiner, and
/// compares each file with it before the file is added.
class Comparison {
 public:
  explicit Comparison(std::vector<SplitVariable> variables);

  /// Takes a file that the combiner accepted.
  /// @param split    the split
  /// @param document what its file holds
  void Add(const Split& split, const SplitDocument& document);

  const std::vector<Finding>& GetFindings() const { return fFindings; }
  const Added& GetAdded() const { return fAdded; }

 private:
  // A field of the combined document.
  struct KnownField {
    SourceField field;  // its values stand in the set
    std::unordered_set<std::string> values;
  };

  void Report(Finding finding);
  void CompareSplitValues(const Split& split);
  void CompareParts(const SplitDocument& document);
  void CompareVersions(const SplitDocument& document);
  void CompareSplitVariables(const SplitDocument& document);
  void Found(const SplitDocument& document);
  void KnowField(const SourceField& field);
  void Merge(const SplitDocument& document);
  void MergeFields(const SplitDocument& document);
  void MergeValues(const SourceField& source, std::size_t position, const std::string& name);
  void CompareField(const SourceField& source);
  void MergeMiningFields(const SplitDocument& document);

  std::vector<SplitVariable> fVariables;
  std::vector<std::unordered_set<std::string>> fCategoryKeys;
  std::unordered_map<std::string, std::string> fFilesBySplit;
  std::string fFile;  // being added
  bool fFounded = false;
  std::string fVersion;
  std::map<std::string, std::string> fNamespaces;
  bool fHasDictionary = false;
  bool fHasSchema = false;
  std::string fAlgorithmName;
  std::vector<KnownField> fFields;
  std::unordered_map<std::string, std::size_t> fPositions;  // the first of each name
  std::unordered_set<std::string> fMiningFields;
  std::vector<Finding> fFindings;
  Added fAdded;
};

}  // namespace rqtool

#endif
