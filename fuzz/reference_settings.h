#ifndef RQXML_FUZZ_REFERENCE_SETTINGS_H
#define RQXML_FUZZ_REFERENCE_SETTINGS_H

#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "rqxml/common/RQStatus.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace rqxml_fuzz {

/// What the getters of RQSettingsParser do with a document that has parameters, written as the rules read: every search
/// from the start with the public element functions, every conversion the slow way.
class SlowSettings {
 public:
  /// @param root the "PMML" element
  explicit SlowSettings(const xercesc::DOMElement& root);

  /// The parameters of the task; null when there are none.
  const xercesc::DOMElement* Parameters() const { return fParameters; }

  /// Each takes the element in whose children it searches.
  template <class Value>
  RQCommon::RQStatus GetParameter(const xercesc::DOMElement& scope, const std::string& name, Value& value) const;
  template <class Item>
  RQCommon::RQStatus GetArray(const xercesc::DOMElement& scope, const std::string& name,
                              std::vector<Item>& items) const;
  template <class Item>
  RQCommon::RQStatus GetMatrix(const xercesc::DOMElement& scope, const std::string& name,
                               std::vector<std::vector<Item>>& rows) const;
  int GetParameterType(const xercesc::DOMElement& scope, const std::string& name) const;
  const xercesc::DOMElement* GetComplexParameter(const xercesc::DOMElement& scope, const std::string& name) const;

  RQCommon::RQStatus GetVariables(const std::string& name, std::vector<std::string>& names) const;
  RQCommon::RQStatus GetVariables(const std::string& name, std::string& value) const;

 private:
  const xercesc::DOMElement* fParameters = nullptr;
};

/// The values of all attributes called "name" below `root`, each once, in document order.
std::vector<std::string> AllNames(const xercesc::DOMElement& root);

}  // namespace rqxml_fuzz

#endif
