#ifndef TESTS_TOOL_COMBINE_SUPPORT_H
#define TESTS_TOOL_COMBINE_SUPPORT_H

#include <string>

namespace rqtest {

/// The pieces of a small split document; each can be replaced.
struct SplitText {
  std::string root = "<PMML>";
  std::string header = "<Header/>";
  std::string dictionary = "<DataDictionary>";
  std::string fields =
      "<DataField name='x' optype='continuous' dataType='double'/>"
      "<DataField name='c' optype='categorical' dataType='string'><Value value='u'/><Value value='v'/></DataField>";
  std::string transformations{};
  std::string model = "TreeModel";
  std::string attributes = "functionName='regression' algorithmName='one'";
  std::string schema = "<MiningSchema><MiningField name='x'/><MiningField name='c'/></MiningSchema>";
  std::string local{};
  std::string more{};  ///< behind the model
};

/// The whole document.
inline std::string Text(const SplitText& split) {
  const std::string dictionary = split.dictionary.empty() ? "" : split.dictionary + split.fields + "</DataDictionary>";
  return split.root + split.header + dictionary + split.transformations + "<" + split.model + " " + split.attributes +
         ">" + split.schema + split.local + "</" + split.model + ">" + split.more + "</PMML>";
}

}  // namespace rqtest

#endif
