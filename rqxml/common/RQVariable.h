#ifndef RQXML_COMMON_RQVARIABLE_H
#define RQXML_COMMON_RQVARIABLE_H

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "rqxml/common/IRQEncoder.h"
#include "rqxml/common/IRQVariable.h"
#include "rqxml/common/RQExport.h"

namespace RQMTD_NAMESPACE {

class RQVarList;

/// The reference encoder: keeps what it is told and hands it out again.
///
/// An operation that throws std::bad_alloc has changed nothing. References that it hands out are valid until the next
/// operation that changes the encoder.
class RQ_API RQEncoder final : public IRQEncoder {
 public:
  /// A missing number with its label.
  using NumMissingValue = std::pair<double, std::string>;
  /// A missing text with its label.
  using StrMissingValue = std::pair<std::string, std::string>;

  RQEncoder();
  ~RQEncoder() override;
  RQEncoder(const RQEncoder&) = delete;
  RQEncoder& operator=(const RQEncoder&) = delete;

  void SetBinLabels(const std::vector<std::string>& labels) override;
  void AddNumMissingValue(double value, const std::string& label) override;
  void AddStrMissingValue(const std::string& value, const std::string& label) override;
  void SetInvalidRange(double lower, double upper) override;

  /// The labels last given to SetBinLabels; empty before.
  const std::vector<std::string>& GetBinLabels() const;
  /// The missing numbers in the order in which they were added.
  const std::vector<NumMissingValue>& GetNumMissingValues() const;
  /// The missing texts in the order in which they were added.
  const std::vector<StrMissingValue>& GetStrMissingValues() const;
  /// True once an invalid range was set.
  bool HasInvalidRange() const;
  /// Lower end of the invalid range; 0 when there is none.
  double GetInvalidLower() const;
  /// Upper end of the invalid range; 0 when there is none.
  double GetInvalidUpper() const;

 private:
  struct Contents;
  RQ_LOCAL Contents& Told();
  RQ_LOCAL const Contents& Told() const;

  std::unique_ptr<Contents> fContents;  // made when the encoder is told something; most never are
};

/// The reference variable: everything that RQVarList was told about it can be read back here.
///
/// Objects are made by RQVarList alone, live in it at a fixed address, and die with it.
class RQ_API RQVariable final : public IRQVariable {
 public:
  /// Which family of add operations made the variable.
  enum class Kind {
    Categorical,  ///< AddCatVar
    Continuous,   ///< AddContVar
    Weight        ///< SetWeightVar
  };

  ~RQVariable() override;
  RQVariable(const RQVariable&) = delete;
  RQVariable& operator=(const RQVariable&) = delete;

  /// 1 for continuous variables and weights, 2 for numeric and 3 for string categories.
  int GetTypeCode() const override;
  std::string GetName() const override;
  std::string GetLabel() const override;
  int GetNumCategories() const override;
  /// 1 when the storage type is integer (1), or when no storage type was set and the variable has numeric
  /// categories which are all whole numbers (the system-missing value is none); else 0.
  int GetIntegerIndicator() const override;
  /// A string category as it is, a numeric one as RQXML_NAMESPACE::Format writes it; empty when there is no such
  /// category.
  std::string GetCategoryText(int index) const override;
  void SetStorageType(int code) override;

  /// Which operation made the variable.
  Kind GetKind() const { return fKind; }
  /// True when the values are texts.
  bool IsString() const { return fString; }
  /// The role given; RoleFrequencyWeight for a weight.
  VariableRole GetRole() const { return fRole; }
  /// The storage code last set; 0 when none was.
  int GetStorageType() const { return fStorage; }
  /// The rounding given to SetWeightVar; RoundingNone for other variables.
  WRoundingOption GetRounding() const { return fRounding; }
  /// True when the add operation carried a minimum and a maximum.
  bool HasRange() const { return fHasRange; }
  /// The minimum given; 0 without a range.
  double GetMinimum() const { return fMinimum; }
  /// The maximum given; 0 without a range.
  double GetMaximum() const { return fMaximum; }
  /// The interior cut points, ascending; empty when none were given.
  const std::vector<double>& GetCutPoints() const { return fCutPoints; }
  /// The numeric categories; empty for other variables.
  const std::vector<double>& GetNumericValues() const { return fNumbers; }
  /// The string categories; empty for other variables.
  const std::vector<std::string>& GetStringValues() const { return fStrings; }
  /// The labels of the categories, as many as categories; empty for an unlabelled list.
  const std::vector<std::string>& GetLabels() const { return fLabels; }
  /// The flag given to AddContVar; false when none was.
  bool GetFlag() const { return fFlag; }
  /// The count given to AddContVar; -1 when none was.
  int GetCount() const { return fCount; }
  /// The variable's encoder, alive as long as the variable.
  const RQEncoder& GetEncoder() const { return fEncoder; }

 private:
  friend class RQVarList;
  RQ_LOCAL static std::unique_ptr<RQVariable> Make(Kind kind, const std::string& name, const std::string& label,
                                                   VariableRole role);
  RQ_LOCAL RQVariable(Kind kind, const std::string& name, const std::string& label, VariableRole role);
  RQ_LOCAL void SetRange(double minimum, double maximum);
  RQ_LOCAL void SetValues(const std::vector<double>& values);
  RQ_LOCAL void SetValues(const std::vector<std::string>& values);

  std::string fName;
  std::string fLabel;
  std::vector<double> fNumbers;
  std::vector<std::string> fStrings;
  std::vector<std::string> fLabels;
  std::vector<double> fCutPoints;
  RQEncoder fEncoder;
  double fMinimum = 0;
  double fMaximum = 0;
  Kind fKind;
  VariableRole fRole;
  WRoundingOption fRounding = RoundingNone;
  int fStorage = 0;
  int fCount = -1;
  bool fString = false;
  bool fHasRange = false;
  bool fFlag = false;
};

}  // namespace RQMTD_NAMESPACE

#endif
