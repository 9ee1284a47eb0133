#include "rqxml/xml/RQXFileTarget.h"

#include <xercesc/util/IOException.hpp>
#include <xercesc/util/XMLException.hpp>

namespace RQXPrsUtil {

namespace {

using xercesc::XMLPlatformUtils;

constexpr std::size_t kRoom = 64 * 1024;

}  // namespace

RQXFileTarget::RQXFileTarget(const char* fileName)
    : fFile(XMLPlatformUtils::openFileToWrite(fileName, XMLPlatformUtils::fgMemoryManager)) {
  if (!fFile) {
    ThrowXMLwithMemMgr1(xercesc::IOException, xercesc::XMLExcepts::File_CouldNotOpenFile, fileName,
                        XMLPlatformUtils::fgMemoryManager);
  }
  fBuffer.reserve(kRoom);
}

RQXFileTarget::~RQXFileTarget() {
  if (!fFile) return;
  try {
    XMLPlatformUtils::closeFile(fFile, XMLPlatformUtils::fgMemoryManager);
  } catch (...) {
    // whatever went wrong was reported before
  }
}

void RQXFileTarget::Close() {
  WriteOut();
  const xercesc::FileHandle file = fFile;
  fFile = nullptr;
  XMLPlatformUtils::closeFile(file, XMLPlatformUtils::fgMemoryManager);
}

void RQXFileTarget::writeChars(const XMLByte* const toWrite, const XMLSize_t count, xercesc::XMLFormatter* const) {
  if (fBuffer.size() + count > kRoom) WriteOut();
  fBuffer.insert(fBuffer.end(), toWrite, toWrite + count);
}

void RQXFileTarget::flush() { WriteOut(); }

void RQXFileTarget::WriteOut() {
  if (fBuffer.empty()) return;
  XMLPlatformUtils::writeBufferToFile(fFile, fBuffer.size(), fBuffer.data(), XMLPlatformUtils::fgMemoryManager);
  fBuffer.clear();
}

}  // namespace RQXPrsUtil
