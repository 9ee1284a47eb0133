#ifndef RQXML_PMML_RQPMMLPARSER_H
#define RQXML_PMML_RQPMMLPARSER_H

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "rqxml/common/RQExport.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQUniStats.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

class RQXDomParser;

/// Reads a PMML document and fills a variable list from its data dictionary.
///
/// The status of construction and of the last parse is kept; while it is not OK every operation returns it. Each
/// object starts the XML library in its constructor and stops it in its destructor; these two, like all starts and
/// stops of the XML library, must not run concurrently; a parse that ends with an exception counts as a start. One
/// object is used by one thread at a time. What RQXMLReadWrite says of documents with very many names holds here too.
class RQ_API RQPMMLParser {
 public:
  /// Starts the XML library and creates the parser; 103 as the status when the library threw an XMLException.
  RQPMMLParser();
  /// Destroys the parser with its document, then stops the XML library (neither when there is no parser).
  virtual ~RQPMMLParser();
  RQPMMLParser(const RQPMMLParser&) = delete;
  RQPMMLParser& operator=(const RQPMMLParser&) = delete;

  /// Parses the bytes of `in` from its current position to its end. Everything of an earlier document is gone as
  /// soon as a parse starts, the chosen model element included.
  /// @return OK; 103 without a parser; 104 when the stream cannot be read or decoded (GetXercesMessage tells why) or
  ///   no document resulted; 105 when the document element is missing or not "PMML"; 106 without "DataDictionary"
  /// @throws xercesc::SAXParseException for a document that is not well-formed. The object then holds no document
  ///   (operations give 107) and can parse again.
  /// @throws xercesc::DOMException, xercesc::OutOfMemoryException as the XML library raises them, and what the stream
  ///   is set to throw; the object is then as after a SAXParseException
  virtual RQCommon::RQStatus ParseToDOM(std::istream& in);

  /// The outcome of construction or of the last parse.
  RQCommon::RQStatus GetStatus() const;

  /// The text of the XML library exception that the last parse caught, in UTF-8; empty when there was none.
  std::string GetXercesMessage() const;

  /// The "PMML" element, or null unless the last parse succeeded. Owned by this object and valid until it parses
  /// again or is destroyed.
  const xercesc::DOMElement* GetRootElement() const;

  /// Chooses the element whose statistics are read. The element is not examined; it must belong to the document of
  /// the last parse.
  /// @return false, and nothing changed, when there is no successfully parsed document
  bool SetModelElmt(const xercesc::DOMElement& model);

  /// Adds a variable for each "DataField" of the data dictionary to `vars`, in document order, all with the input
  /// role.
  /// @param vars    receives the variables; those added before a failure stay
  /// @param names   the fields wanted (UTF-8), in any order; empty for all. Names without a field are ignored, and
  ///   fields that are not named are not examined.
  /// @param useBins takes range, cut points and bin labels of continuous fields from the transformation dictionary
  /// @return OK; the status of the last parse when that is not OK; 107 without a document; 108 for a field without
  ///   "name", "dataType" or "optype"; 109 for an unknown "dataType"; 110 when bins are wanted and a continuous field
  ///   has none; 111 when `vars` refuses a variable
  RQCommon::RQStatus FillVarList(RQMTD_NAMESPACE::RQVarList& vars, const std::vector<std::string>& names,
                                 bool useBins) const;

  /// Reads the statistics of the next field of the chosen model: those of the first "UnivariateStats" of its
  /// "ModelStats" when `cursor` is null, else those of the next one behind it. A field with "NumericInfo" is
  /// continuous, any other categorical.
  /// @param stats  receives the statistics; after any status but OK, and when there is no further field, as it was. A
  ///   field with "NumericInfo" but without "ContStats" leaves it as it was too, and gives OK when it is valid: take a
  ///   new object for each field.
  /// @param cursor moves to the element that was read, also when reading it fails, so that the next call goes on
  ///   behind it; null when there is no further field. Start with null; valid as long as the document.
  /// @return OK; the status of the last parse when that is not OK; 107 without a document; 112 without a model
  ///   element; 108 for a missing "field", "totalFreq", "type", "closure", or an interval without any margin; 109 for
  ///   a value that is no number, a negative total, an array that is neither "real" nor "int", a left margin not
  ///   below its right margin; 113 for a missing "Counts", "DiscrStats", its "Array", or the "Array" of "ContStats";
  ///   114 for counts that are no numbers or negative; 115 for intervals that contradict one another or the number
  ///   of counts; 116 for a negative standard deviation or statistics that are not valid
  RQCommon::RQStatus FillUniStats(RQMTD_NAMESPACE::RQUniStats& stats, const xercesc::DOMElement*& cursor) const;

  /// An extension, off by default: many writers put the categories' texts before the counts of a discrete field, or
  /// leave out the histogram of a continuous one. When on, FillUniStats passes over leading text arrays of
  /// "DiscrStats" (instead of 109), and "NumericInfo" without "ContStats" gives statistics without a histogram
  /// (instead of 116). Nothing else changes. Stays set over later parses.
  void SetLenientStatistics(bool lenient);

 protected:
  /// Reads the bins that the transformation dictionary (which must be there) defines for the field `fieldName`
  /// (UTF-8): those of the first "Discretize" of that field.
  /// @param cutPoints receives the first left margin and each bin's right margin, in document order; an open or
  ///   unreadable margin is the lowest or the largest double
  /// @param labels    receives the bins' "binValue" texts; a bin without one adds none
  /// @return false, with both lists empty, when the field is not discretised
  bool SetBinsFrTransDict(const std::string& fieldName, std::vector<double>& cutPoints,
                          std::vector<std::string>& labels) const;

  /// Reads the category counts of a "UnivariateStats" element into `stats`, which is replaced only when all is good.
  /// @param total the total frequency, already examined
  RQCommon::RQStatus FillUniStatsCat(RQMTD_NAMESPACE::RQUniStats& stats, const std::string& name, double total,
                                     const xercesc::DOMElement& element) const;

  /// Reads the summary statistics and the histogram of a "UnivariateStats" element into `stats`, which is replaced
  /// only when all is good and there is a "ContStats" (or the reading is lenient).
  RQCommon::RQStatus FillUniStatsCont(RQMTD_NAMESPACE::RQUniStats& stats, const std::string& name, double total,
                                      const xercesc::DOMElement& element) const;

  /// Reads the intervals of a "ContStats" element and their counts.
  /// @param cutPoints   receives the margins in ascending order, the system-missing value for an open end
  /// @param frequencies receives the counts, one less than cut points
  /// @param openAtLeft  receives whether the intervals exclude their left margins
  RQCommon::RQStatus FillCutPointsFreqs(std::vector<double>& cutPoints, std::vector<double>& frequencies,
                                        bool& openAtLeft, const xercesc::DOMElement& contStats) const;

  /// Reads one "Interval": its margins (the system-missing value for one that is absent) and whether it is open at
  /// the left.
  RQCommon::RQStatus ExtractInterval(double& left, double& right, bool& openAtLeft,
                                     const xercesc::DOMElement& interval) const;

  /// What every operation that reads the document starts from: the kept status, or 107 without a document.
  RQCommon::RQStatus GetReadiness() const;

  RQCommon::RQStatus fStatus;                             ///< outcome of construction and of the last parse
  std::unique_ptr<RQXDomParser> fParser;                  ///< null when the XML library could not be started
  std::string fMessage;                                   ///< text of the exception that the last parse caught
  xercesc::DOMDocument* fDocument = nullptr;              ///< owned by the parser
  const xercesc::DOMElement* fRootElement = nullptr;      ///< "PMML"
  const xercesc::DOMElement* fDataDictionary = nullptr;   ///< "DataDictionary"
  const xercesc::DOMElement* fTransDictionary = nullptr;  ///< "TransformationDictionary", may be absent
  const xercesc::DOMElement* fModelElement = nullptr;     ///< chosen by SetModelElmt
  bool fLenientStatistics = false;                        ///< see SetLenientStatistics

 private:
  RQ_LOCAL RQCommon::RQStatus ReadFrequencies(std::vector<double>& frequencies, const xercesc::DOMElement& array) const;
  RQ_LOCAL RQCommon::RQStatus FindElements();
  RQ_LOCAL void ForgetDocument();
};

}  // namespace RQXPrsUtil

#endif
