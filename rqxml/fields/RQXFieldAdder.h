#ifndef RQXML_FIELDS_RQXFIELDADDER_H
#define RQXML_FIELDS_RQXFIELDADDER_H

#include <optional>
#include <string>

#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/fields/RQXBins.h"
#include "rqxml/fields/RQXField.h"

namespace RQXPrsUtil {

/// In what the kinds of documents differ once a field is read.
struct RQXAddRules {
  bool withRange = false;       // continuous variables get the field's range, `flag` and `count`
  bool flag = false;            // handed on with the range
  int count = -1;               // handed on with the range
  bool missingValues = true;    // missing values and the invalid range go to the variable's encoder
  bool textsByMeasure = false;  // a continuous field's missing texts are dropped; else they follow its storage
  bool storageType = false;     // the variable is told its storage type
};

/// Adds the field to `vars` as one variable, with its labels, bins, missing values, invalid range and storage type.
/// @param bins the bins of a continuous field, or null; fewer than two bins count as none
/// @return OK, or 111 when the list refuses the variable or does not hand it out to be told its storage type
RQCommon::RQStatus AddField(RQMTD_NAMESPACE::RQVarList& vars, const RQXField& field, const RQXBins* bins,
                            const RQXAddRules& rules);

/// Where the bins of continuous fields come from, for one filling of a variable list.
class RQXBinSource {
 public:
  /// @param wanted         whether bins are asked for at all
  /// @param transDictionary the dictionary that defines them, or null
  RQXBinSource(bool wanted, const xercesc::DOMElement* transDictionary);

  bool IsWanted() const { return fWanted; }

  /// Reads the bins of the field of that name (UTF-8); false when none are defined.
  bool Read(const std::string& fieldName, RQXBins& bins);

 private:
  bool fWanted;
  std::optional<RQXDiscretizeIndex> fIndex;
};

/// AddField, with the bins of a continuous field when they are wanted.
/// @return also 110 when they are wanted and there are none
RQCommon::RQStatus AddFieldWithBins(RQMTD_NAMESPACE::RQVarList& vars, const RQXField& field, RQXBinSource& source,
                                    const RQXAddRules& rules);

}  // namespace RQXPrsUtil

#endif
