#ifndef RQXML_XML_RQXFILETARGET_H
#define RQXML_XML_RQXFILETARGET_H

#include <cstddef>
#include <vector>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLFileMgr.hpp>

namespace RQXPrsUtil {

/// A file that a document is written to. The XML library's own target closes its file in its destructor, where the
/// news of a full disk gets lost; here closing is a step of its own that tells.
class RQXFileTarget final : public xercesc::XMLFormatTarget {
 public:
  /// Creates or truncates the file. @throws xercesc::IOException when it cannot be opened
  explicit RQXFileTarget(const char* fileName);
  /// Closes a file that was not closed, without a word.
  ~RQXFileTarget() override;
  RQXFileTarget(const RQXFileTarget&) = delete;
  RQXFileTarget& operator=(const RQXFileTarget&) = delete;

  /// Writes what is left and closes the file. @throws xercesc::XMLException when that fails
  void Close();

  void writeChars(const XMLByte* const toWrite, const XMLSize_t count, xercesc::XMLFormatter* const formatter) override;
  void flush() override;

 private:
  void WriteOut();

  xercesc::FileHandle fFile;
  std::vector<XMLByte> fBuffer;
};

}  // namespace RQXPrsUtil

#endif
