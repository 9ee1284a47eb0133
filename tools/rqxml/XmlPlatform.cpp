#include "XmlPlatform.h"

#include <cstdlib>
#include <string_view>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "Failure.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {
constexpr const char* kDisableDtd = "XERCES_DISABLE_DTD";
}

XmlPlatform::XmlPlatform(DtdPolicy dtds) {
  if (dtds == DtdPolicy::Refuse) ::setenv(kDisableDtd, "1", 1);
  try {
    xercesc::XMLPlatformUtils::Initialize();
  } catch (const xercesc::XMLException&) {
    // Its text cannot be converted without the library that did not start.
    throw Failure(ExitCode::Refused, {.what = "the XML library does not start",
                                      .status = RQXPrsUtil::XmlStartFailed,
                                      .hint = "check the installation of the XML library"});
  }
}

XmlPlatform::~XmlPlatform() { xercesc::XMLPlatformUtils::Terminate(); }

bool RefusesDtds() {
  const char* const value = std::getenv(kDisableDtd);
  return value != nullptr && std::string_view(value) == "1";
}

}  // namespace rqtool
