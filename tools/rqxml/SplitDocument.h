#ifndef RQXML_TOOLS_SPLITDOCUMENT_H
#define RQXML_TOOLS_SPLITDOCUMENT_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "InputFile.h"

namespace rqtool {

/// A "DataField" of a split document: its attributes, absent ones empty, and the texts of its values.
struct SourceField {
  std::string name{};
  bool named = false;  ///< false without the attribute "name"
  std::string optype{};
  std::string dataType{};
  std::vector<std::string> values{};
};

/// What a combination takes from one split document, as far as it is compared with the other ones.
struct SplitDocument {
  std::string version{};                            ///< of PMML
  std::map<std::string, std::string> namespaces{};  ///< what "PMML" declares, as in xmlns:p; xmlns always
  std::vector<std::string> usedNamespaces{};        ///< those that fields and model use, sorted
  bool hasHeader = false;
  bool hasDictionary = false;
  bool hasTransformations = false;
  std::vector<std::string> functions{};  ///< the names of those that its "TransformationDictionary" defines
  std::optional<std::string> numberOfFields{};
  std::vector<SourceField> fields{};
  std::string model{};                     ///< the element name of the model that is taken; empty without one
  std::vector<std::string> otherModels{};  ///< the element names of the models that are left out
  std::optional<std::string> functionName{};
  std::string algorithmName{};
  bool hasSchema = false;
  bool hasLocalTransformations = false;
  std::vector<std::string> miningFields{};
};

/// Reads the PMML document that `input` holds.
/// @throws Failure when it cannot be read (FileFailed), is not well-formed or no PMML document (Refused)
SplitDocument ReadSplitDocument(InputFile& input);

}  // namespace rqtool

#endif
