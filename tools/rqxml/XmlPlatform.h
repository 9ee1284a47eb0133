#ifndef RQXML_TOOLS_XMLPLATFORM_H
#define RQXML_TOOLS_XMLPLATFORM_H

namespace rqtool {

/// What is done with a document type declaration (DTD), which can make the XML library read other files, reach for
/// the network, and expand a short text without limit.
enum class DtdPolicy {
  Refuse,  ///< a document that has one is refused
  Allow    ///< as the XML library does by default
};

/// Starts the XML library for the whole run of the command, and stops it at the end. Exceptions of the XML library
/// must not outlive it.
class XmlPlatform {
 public:
  /// With DtdPolicy::Refuse the variable XERCES_DISABLE_DTD is set in the environment of this process; with
  /// DtdPolicy::Allow it is left as the caller of the command has it.
  /// @throws Failure when the library does not start
  explicit XmlPlatform(DtdPolicy dtds);
  ~XmlPlatform();
  XmlPlatform(const XmlPlatform&) = delete;
  XmlPlatform& operator=(const XmlPlatform&) = delete;
};

/// True when documents with a DTD are refused, by XmlPlatform or by the environment that the command was given.
bool RefusesDtds();

}  // namespace rqtool

#endif
