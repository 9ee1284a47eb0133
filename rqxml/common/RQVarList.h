#ifndef RQXML_COMMON_RQVARLIST_H
#define RQXML_COMMON_RQVARLIST_H

#include <memory>
#include <string>
#include <vector>

#include "rqxml/common/IRQEncoder.h"
#include "rqxml/common/IRQVariable.h"
#include "rqxml/common/RQExport.h"
#include "rqxml/common/RQVariable.h"

namespace RQMTD_NAMESPACE {

/// An ordered list of variables with unique names. Usable as it is; every operation can be overridden.
///
/// Each add operation returns the new variable's index (0, 1, ...) or a negative number when it refuses; a refusal
/// adds nothing. Refused are an empty or already used name, a second weight variable, a minimum above its maximum
/// (or one of them not a number), cut points that do not ascend strictly, and labels whose number differs from the
/// number of values. The list owns its variables; pointers stay valid until the list is destroyed. An add operation
/// that throws std::bad_alloc has added nothing. Objects are used by one thread at a time.
class RQ_API RQVarList {
 public:
  /// Short for the role enumeration.
  using Role = IRQVariable::VariableRole;

  RQVarList();
  virtual ~RQVarList();
  RQVarList(const RQVarList&) = delete;
  RQVarList& operator=(const RQVarList&) = delete;

  /// Adds a categorical variable with numeric categories, unlabelled.
  virtual int AddCatVar(const std::string& name, const std::string& label, const std::vector<double>& values,
                        Role role);
  /// Adds a categorical variable with string categories, unlabelled.
  virtual int AddCatVar(const std::string& name, const std::string& label, const std::vector<std::string>& values,
                        Role role);
  /// Adds a categorical variable with numeric categories and one label for each.
  virtual int AddCatVar(const std::string& name, const std::string& label, const std::vector<double>& values,
                        const std::vector<std::string>& labels, Role role);
  /// Adds a categorical variable with string categories and one label for each.
  virtual int AddCatVar(const std::string& name, const std::string& label, const std::vector<std::string>& values,
                        const std::vector<std::string>& labels, Role role);
  /// Adds a continuous variable without range.
  virtual int AddContVar(const std::string& name, const std::string& label, Role role);
  /// Adds a continuous variable with a range and interior cut points.
  virtual int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum,
                         const std::vector<double>& cutPoints, bool flag, Role role);
  /// Adds a continuous variable with a range, a flag and a count.
  virtual int AddContVar(const std::string& name, const std::string& label, double minimum, double maximum, Role role,
                         bool flag, int count);
  /// Adds the frequency weight. There can be one; it has an index like any other variable.
  virtual int SetWeightVar(const std::string& name, const std::string& label, IRQVariable::WRoundingOption rounding);
  /// The variable at `index`, or null when there is none.
  virtual const IRQVariable* GetVarAt(int index) const;
  /// The variable at `index`, or null when there is none.
  virtual IRQVariable* GetVarAt(int index);
  /// The encoder of the variable at `index`, or null when there is none.
  virtual IRQEncoder* GetEncoderAt(int index);
  /// How many variables the list holds.
  virtual int Size() const;

  /// The variable that this list itself keeps at `index`, with everything it was told; null when there is none.
  /// Not virtual: variables that a derived class keeps elsewhere are not seen here.
  const RQVariable* GetVariable(int index) const;

 private:
  template <typename Value>
  RQ_LOCAL int AddCategorical(const std::string& name, const std::string& label, const std::vector<Value>& values,
                              const std::vector<std::string>* labels, Role role);
  RQ_LOCAL int Keep(std::unique_ptr<RQVariable> variable);
  RQ_LOCAL bool Accepts(const std::string& name) const;
  RQ_LOCAL RQVariable* Find(int index) const;

  struct Contents;
  std::unique_ptr<Contents> fContents;
};

}  // namespace RQMTD_NAMESPACE

#endif
