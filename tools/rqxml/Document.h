#ifndef RQXML_TOOLS_DOCUMENT_H
#define RQXML_TOOLS_DOCUMENT_H

#include <iosfwd>
#include <memory>
#include <string_view>

#include "Failure.h"
#include "InputFile.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/datamodel/RQDataModelParser.h"
#include "rqxml/settings/RQSettingsParser.h"
#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace rqtool {

/// The kinds of document that the command tells apart.
enum class DocumentKind {
  Pmml,      ///< a PMML document
  Settings,  ///< a PMML document whose build task has parameters
  DataModel  ///< a document that describes the fields of a data set
};

/// The word for a kind in JSON output.
std::string_view KindWord(DocumentKind kind);

/// The words for a kind in texts for people.
std::string_view KindTitle(DocumentKind kind);

/// Reads both kinds in one parse: a document without a build task is none the worse for having no parameters.
class DocumentParser : public RQXPrsUtil::RQSettingsParser {
 public:
  RQCommon::RQStatus ParseToDOM(std::istream& in) override;

  /// The first "MiningBuildTask" below the document element of the parsed document, or null.
  const xercesc::DOMElement* GetBuildTask() const { return fBuildTask; }

  /// Takes a build task without parameters for good too: such a document is read as if it had no build task.
  void ForgiveMissingParameters() { fForgiving = true; }

 private:
  bool fForgiving = false;
  const xercesc::DOMElement* fBuildTask = nullptr;
};

/// A document that was read whole.
struct Document {
  DocumentKind kind;
  std::unique_ptr<DocumentParser> parser;                    ///< holds the parsed document; null for a data model
  std::unique_ptr<RQXPrsUtil::RQDataModelParser> dataModel;  ///< the same for a data model; null for other documents
};

/// Reads the document that `input` holds. This is the one place that decides which kind of document it is.
/// @throws Failure when it cannot be read (FileFailed) or is refused (Refused)
Document ReadDocument(InputFile& input);

/// Reads the PMML document that `input` holds for its models, whatever the state of its build task.
/// @throws Failure as ReadDocument does
Document ReadModelDocument(InputFile& input);

/// Reads the settings document that `input` holds.
/// @throws Failure as ReadDocument does, and for a document of another kind (Refused)
Document ReadSettings(InputFile& input);

/// Reads the document that `input` holds into `reader`, whatever its kind.
/// @throws Failure when it cannot be read (FileFailed) or is refused (Refused)
void ReadTree(InputFile& input, RQXPrsUtil::RQXMLReadWrite& reader);

/// True when the document has a DOCTYPE that is followed: its parts may be gone or never come a second time, and so it
/// is parsed once only.
bool FollowsDoctype(InputFile& input);

/// Tells that the document element of what `input` holds is not "PMML".
Failure NoPmmlDocument(InputFile& input);

}  // namespace rqtool

#endif
