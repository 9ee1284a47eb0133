#ifndef RQXML_XML_RQXSTATUSCODES_H
#define RQXML_XML_RQXSTATUSCODES_H

namespace RQXPrsUtil {

/// The failure codes that the operations of this library return in an RQCommon::RQStatus. The flag of the status is
/// false, except for ParameterNotFound and ParameterWithoutValue.
enum StatusCode : long {
  XmlStartFailed = 103,         ///< the XML library could not be started, or its parser not be created
  ParseFailed = 104,            ///< the input could not be read or decoded, or no document resulted
  WrongRootElement = 105,       ///< the document element is missing or has another tag than the document kind asks for
  NoDataDictionary = 106,       ///< the PMML document has no "DataDictionary"
  NotParsed = 107,              ///< the operation needs a document, and none was parsed
  AttributeMissing = 108,       ///< a required attribute is absent
  BadValue = 109,               ///< an attribute or value is none of the accepted words, or no number fit for its use
  NoBins = 110,                 ///< bins were asked for and the document defines none for the field
  VariableRefused = 111,        ///< the variable list refused a variable
  NoModelElement = 112,         ///< statistics were asked for before a model element was set
  ElementMissing = 113,         ///< a required child element is absent
  BadFrequencies = 114,         ///< a frequency array cannot be read or holds a negative number
  BadIntervals = 115,           ///< the intervals of a histogram contradict each other
  BadStatistics = 116,          ///< a standard deviation is negative, or the statistics read are not valid
  WriteFailed = 118,            ///< a document could not be written
  NoParameters = 119,           ///< a settings document has no "MiningBuildTask"/"Extension"/"Parameters"
  ParameterNotFound = 120,      ///< there is no parameter of the requested name (flag true)
  ParameterIsList = 121,        ///< a single value was asked of a list parameter
  ListValueMissing = 122,       ///< a list parameter has no "ListValue" child
  ParameterWithoutValue = 123,  ///< a parameter has no value (flag true)
  FunctionNameDiffers = 124,    ///< a split model's "functionName" differs from the first split model's
  NestedMiningModel = 125,      ///< a split model is itself a "MiningModel"
  BadSplitValues = 126          ///< the split values do not fit the split variables
};

}  // namespace RQXPrsUtil

#endif
