#ifndef TESTS_COMBINER_COMBINING_H
#define TESTS_COMBINER_COMBINING_H

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "rqxml/combiner/RQXSplitPMMLCombiner.h"
#include "rqxml/common/RQVarList.h"
#include "tests/support/files.h"
#include "tests/support/status.h"
#include "tests/support/temp_folder.h"

namespace rqtest {

using Texts = std::vector<std::string>;

// Documents are written here as the serialiser writes them, with attributes sorted by name and nothing between the
// elements, so that whole files can be compared.

constexpr const char* kDeclaration = R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>)";

inline std::string InPmml(const std::string& content) { return R"(<PMML version="4.1">)" + content + "</PMML>"; }

inline std::string Value(const std::string& text) { return "<Value value=\"" + text + "\"/>"; }

inline std::string Values(const Texts& texts) {
  std::string all;
  for (const std::string& text : texts) all += Value(text);
  return all;
}

/// A data field with nothing but a name and values.
inline std::string NamedField(const std::string& name, const Texts& values = {}) {
  const std::string start = "<DataField name=\"" + name + "\"";
  return values.empty() ? start + "/>" : start + ">" + Values(values) + "</DataField>";
}

/// A dictionary that a source file has: without a count.
inline std::string Dictionary(const std::string& fields) { return "<DataDictionary>" + fields + "</DataDictionary>"; }

/// A dictionary of the combined document.
inline std::string Dictionary(int count, const std::string& fields) {
  return "<DataDictionary numberOfFields=\"" + std::to_string(count) + "\">" + fields + "</DataDictionary>";
}

inline std::string Schema(const Texts& names) {
  std::string fields;
  for (const std::string& name : names) fields += "<MiningField name=\"" + name + "\"/>";
  return names.empty() ? "<MiningSchema/>" : "<MiningSchema>" + fields + "</MiningSchema>";
}

/// A tree model around what follows its schema.
inline std::string Model(const Texts& schema, const std::string& rest = "<Node/>") {
  return R"(<TreeModel functionName="classification">)" + Schema(schema) + rest + "</TreeModel>";
}

/// A whole source file with these fields, all of them in the mining schema.
inline std::string Source(const Texts& names) {
  std::string fields;
  for (const std::string& name : names) fields += NamedField(name);
  return InPmml("<Header/>" + Dictionary(fields) + Model(names));
}

inline std::string Simple(const std::string& field, const std::string& value) {
  return "<SimplePredicate field=\"" + field + "\" operator=\"equal\" value=\"" + value + "\"/>";
}

/// The split variable "region" as a data field and as a mining field.
inline const std::string kRegionField =
    R"(<DataField dataType="string" displayName="Region" name="region" optype="categorical">)" + Values({"1", "2"}) +
    "</DataField>";
inline const std::string kRegionMining = R"(<MiningField name="region" usageType="active"/>)";

/// The combined schema: the names of the first file, the split variable, and names added later.
inline std::string CombinedSchema(const Texts& names, const Texts& added = {}) {
  std::string fields;
  for (const std::string& name : names) fields += "<MiningField name=\"" + name + "\"/>";
  fields += kRegionMining;
  for (const std::string& name : added) fields += "<MiningField name=\"" + name + "\"/>";
  return "<MiningSchema>" + fields + "</MiningSchema>";
}

inline std::string Segment(const std::string& value, const std::string& model) {
  return "<Segment>" + Simple("region", value) + model + "</Segment>";
}

inline std::string Segmentation(const std::string& segments) {
  const std::string start = R"(<Segmentation multipleModelMethod="selectFirst")";
  return segments.empty() ? start + "/>" : start + ">" + segments + "</Segmentation>";
}

inline std::string Mining(const std::string& content) {
  return R"(<MiningModel functionName="classification">)" + content + "</MiningModel>";
}

/// A list with the split variable "region" of the categories 1 and 2.
inline void AddRegion(RQMTD_NAMESPACE::RQVarList& vars) {
  vars.AddCatVar("region", "Region", Texts{"1", "2"}, RQMTD_NAMESPACE::IRQVariable::RoleInput);
}

/// Counts of elements in a written document, without any parser.
inline int Count(const std::string& text, const std::string& piece) {
  int count = 0;
  for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + piece.size())) ++count;
  return count;
}

/// A fixture with one combiner over the split variable "region". Nobody but the combiner holds the XML library.
class Combining : public ::testing::Test {
 protected:
  Combining() { AddRegion(vars_); }
  // The combiner gives back no document that was not exported.
  ~Combining() override {
    if (combiner_) combiner_->ExportMiningModel("");
  }

  /// The combiner; made at the first use, so that a test may add split variables before.
  RQXPrsUtil::RQXSplitPMMLCombiner& Combiner() {
    if (!combiner_) combiner_.emplace(vars_);
    return *combiner_;
  }

  std::string File(const std::string& name) const { return folder_.File(name); }

  RQCommon::RQStatus Add(const std::string& document, const Texts& values = {"1"}) {
    return Combiner().AddModel(WriteFile(File("split.pmml"), document), values);
  }

  /// The combined document behind its declaration; the combiner gives it up.
  std::string Export() {
    const std::string path = File("combined.pmml");
    EXPECT_EQ(Combiner().ExportMiningModel(path), Ok());
    const std::string text = ReadFile(path);
    EXPECT_EQ(text.substr(0, std::string(kDeclaration).size()), kDeclaration);
    return text.substr(std::string(kDeclaration).size());
  }

  /// What came of the files, each for region 1, 2, 1, ...
  std::string Combine(const Texts& documents) {
    for (std::size_t i = 0; i < documents.size(); ++i) EXPECT_EQ(Add(documents[i], {i % 2 == 0 ? "1" : "2"}), Ok());
    return Export();
  }

  RQMTD_NAMESPACE::RQVarList vars_;

 private:
  TempFolder folder_;
  std::optional<RQXPrsUtil::RQXSplitPMMLCombiner> combiner_;
};

}  // namespace rqtest

#endif
