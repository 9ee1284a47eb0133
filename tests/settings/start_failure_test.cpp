// Nobody can start the XML library.

#include <gtest/gtest.h>

#include <sstream>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/failing_start.h"
#include "tests/support/settings.h"

namespace {

using rqtest::Failure;
using RQXPrsUtil::RQSettingsParser;

class SettingsStartFailure : private rqtest::FailingStart, public rqtest::WithSettings {};

TEST_F(SettingsStartFailure, IsReportedByEveryOperationAndTouchesNoStream) {
  EXPECT_EQ(parser_.GetStatus(), Failure(103));
  ExpectEveryGetterGives(Failure(103));
  ExpectBothFillsGive(Failure(103));
  std::istringstream stream(rqtest::Settings(rqtest::Valued("p", "1")));
  EXPECT_EQ(parser_.ParseToDOM(stream), Failure(103));
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(stream.tellg(), std::streampos(0));
  EXPECT_EQ(parser_.GetStatus(), Failure(103));
  ExpectEveryGetterGives(Failure(103));
  ExpectBothFillsGive(Failure(103));
}

}  // namespace
