#include "rqxml/xml/RQXPlatform.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "rqxml/xml/RQXDomParser.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

/// Balances the start of the platform unless it is dismissed.
class StopOnFailure {
 public:
  StopOnFailure() = default;
  ~StopOnFailure() {
    if (fArmed) StopPlatform();
  }
  StopOnFailure(const StopOnFailure&) = delete;
  StopOnFailure& operator=(const StopOnFailure&) = delete;
  void Dismiss() { fArmed = false; }

 private:
  bool fArmed = true;
};

}  // namespace

RQCommon::RQStatus StartPlatform() {
  try {
    xercesc::XMLPlatformUtils::Initialize();
  } catch (const xercesc::XMLException&) {
    return {XmlStartFailed, false};
  }
  return {};
}

bool MakeParser(std::unique_ptr<RQXDomParser>& parser) {
  parser.reset();
  try {
    parser = std::make_unique<RQXDomParser>();
    return true;
  } catch (const xercesc::XMLException&) {
    return false;
  } catch (...) {
    KeepPlatform();
    throw;
  }
}

void StopPlatform() { xercesc::XMLPlatformUtils::Terminate(); }

RQCommon::RQStatus StartParser(std::unique_ptr<RQXDomParser>& parser) {
  if (const RQCommon::RQStatus status = StartPlatform(); !status.IsOK()) return status;
  StopOnFailure guard;
  if (!MakeParser(parser)) return {XmlStartFailed, false};
  guard.Dismiss();
  return {};
}

void StopParser(std::unique_ptr<RQXDomParser>& parser) {
  if (!parser) return;
  parser.reset();
  StopPlatform();
}

void KeepPlatform() {
  static const bool kept = [] {
    xercesc::XMLPlatformUtils::Initialize();
    return true;
  }();
  static_cast<void>(kept);
}

}  // namespace RQXPrsUtil
