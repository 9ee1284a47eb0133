#include <memory>

#include "rqxml/combiner/RQXSplitPMMLCombiner.h"

namespace RQXPrsUtil {

void RQXSplitPMMLCombiner::InitStandardPMMLModels() {
  // An order of priority: a "MiningModel" must be found before any other model, so that it is refused.
  for (const char* name : {"MiningModel", "AssociationModel", "ClusteringModel", "GeneralRegressionModel",
                           "NaiveBayesModel", "NeuralNetwork", "RegressionModel", "RuleSetModel", "SequenceModel",
                           "SupportVectorMachineModel", "TextModel", "TimeSeriesModel", "TreeModel"}) {
    fStandardModels.emplace_back(name);
  }
}

void RQXSplitPMMLCombiner::InitSplitVarMetadata(const RQVarList& splitVars) {
  for (int i = 0; i < splitVars.Size(); ++i) {
    const IRQVariable* const var = splitVars.GetVarAt(i);
    if (!var) continue;
    std::string name;
    std::string label;
    std::string optype;
    std::string dataType;
    GetSplitVariableInfo(var, name, label, optype, dataType);
    fSplitVarNames.push_back(name);
    fSplitVarLabels.push_back(label);
    fSplitVarOptypes.push_back(optype);
    fSplitVarDataTypes.push_back(dataType);
    Strings categories;
    const int count = var->GetNumCategories();
    for (int k = 0; k < count; ++k) {
      categories.push_back(var->GetCategoryText(k));
      fAllCategories.push_back(categories.back());
    }
    fSplitVarCategories.push_back(std::move(categories));
  }
}

bool RQXSplitPMMLCombiner::GetSplitVariableInfo(const IRQVariable* var, std::string& name, std::string& label,
                                                std::string& optype, std::string& dataType) {
  if (!var) return false;
  name = var->GetName();
  label = var->GetLabel();
  switch (var->GetTypeCode()) {
    case 1:
      optype = "continuous";
      dataType = "double";
      break;
    case 2:
      optype = "categorical";
      dataType = "double";
      break;
    case 3:
      optype = "categorical";
      dataType = "string";
      break;
    default:
      break;
  }
  if (var->GetIntegerIndicator() == 1) dataType = "integer";  // whatever the type, texts included
  return true;
}

std::string RQXSplitPMMLCombiner::GetSplitVarName(int index) const {
  const IRQVariable* const var = fSplitVars.GetVarAt(index);
  return var ? var->GetName() : std::string();
}

}  // namespace RQXPrsUtil
