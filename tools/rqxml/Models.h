#ifndef RQXML_TOOLS_MODELS_H
#define RQXML_TOOLS_MODELS_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Document.h"
#include "InputFile.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace rqtool {

/// A model of a PMML document.
struct Model {
  const xercesc::DOMElement* element;  ///< belongs to the document
  std::size_t number;                  ///< its position among the models, from 1
  std::string tag;                     ///< the name of the element, such as "TreeModel"
  std::optional<std::string> name;     ///< "modelName"; nothing without that
};

/// The standard model elements directly below the document element, in document order.
std::vector<Model> FindModels(const Document& document);

/// The model that `choice` names by its "modelName" or, where none is named so, by its number; the first one without a
/// choice.
/// @throws Failure when there is no model (Refused), or none that fits (Refused)
const Model& ChooseModel(const InputFile& input, const std::vector<Model>& models,
                         const std::optional<std::string>& choice);

/// The model's element and name, for people; anything but printable.
std::string TitleOf(const Model& model);

}  // namespace rqtool

#endif
