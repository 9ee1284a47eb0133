#include "Models.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <system_error>
#include <xercesc/dom/DOMElement.hpp>

#include "ElementPlace.h"
#include "Failure.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using xercesc::DOMElement;

constexpr std::array<std::string_view, 19> kModelElements{"AnomalyDetectionModel",
                                                          "AssociationModel",
                                                          "BaselineModel",
                                                          "BayesianNetworkModel",
                                                          "ClusteringModel",
                                                          "GaussianProcessModel",
                                                          "GeneralRegressionModel",
                                                          "MiningModel",
                                                          "NaiveBayesModel",
                                                          "NearestNeighborModel",
                                                          "NeuralNetwork",
                                                          "RegressionModel",
                                                          "RuleSetModel",
                                                          "Scorecard",
                                                          "SequenceModel",
                                                          "SupportVectorMachineModel",
                                                          "TextModel",
                                                          "TimeSeriesModel",
                                                          "TreeModel"};

// More models than this are counted, not listed.
constexpr std::size_t kMostListed = 5;

std::string List(const std::vector<Model>& models) {
  std::string text;
  for (const Model& model : models) {
    if (model.number > kMostListed) return text + ", ... (" + std::to_string(models.size()) + " in all)";
    if (!text.empty()) text += ", ";
    text += std::to_string(model.number) + " is " + TitleOf(model);
  }
  return text;
}

std::optional<std::size_t> NumberIn(const std::string& text) {
  std::size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

std::vector<Model> FindModels(const Document& document) {
  std::vector<Model> models;
  const DOMElement* element = RQXPrsUtil::GetFirstChildElmt(*document.parser->GetRootElement(), nullptr);
  for (; element != nullptr; element = RQXPrsUtil::GetNextSiblingElmt(*element, nullptr)) {
    std::string tag = RQXPrsUtil::ToUTF8(element->getTagName());
    if (std::find(kModelElements.begin(), kModelElements.end(), tag) == kModelElements.end()) continue;
    models.push_back({element, models.size() + 1, std::move(tag), Attribute(*element, "modelName")});
  }
  return models;
}

const Model& ChooseModel(const InputFile& input, const std::vector<Model>& models,
                         const std::optional<std::string>& choice) {
  if (models.empty()) {
    throw Failure(ExitCode::Refused, {.file = input.GetDisplayName(),
                                      .what = "has no model, and so no statistics",
                                      .hint = "statistics stand in a model, such as \"TreeModel\", directly below "
                                              "\"PMML\"; rqxml vars lists the variables"});
  }
  if (!choice) return models.front();
  for (const Model& model : models) {
    if (model.name == choice) return model;
  }
  const std::optional<std::size_t> number = NumberIn(*choice);
  if (number && *number >= 1 && *number <= models.size()) return models[*number - 1];
  throw Failure(ExitCode::Refused, {.file = input.GetDisplayName(),
                                    .what = "has no model \"" + *choice + '"',
                                    .hint = "give a modelName or a number: " + List(models)});
}

std::string TitleOf(const Model& model) { return model.name ? model.tag + " \"" + *model.name + '"' : model.tag; }

}  // namespace rqtool
