#ifndef RQXML_TOOLS_ROLES_H
#define RQXML_TOOLS_ROLES_H

#include <string>
#include <vector>

#include "Json.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/settings/RQSettingsParser.h"

namespace rqtool {

/// The variables that a settings document gives a role.
struct Role {
  std::string title;      ///< for people
  std::string parameter;  ///< where they stand
  RQCommon::RQStatus status{};
  std::vector<std::string> names{};  ///< after a failure those before it
};

/// All roles, also those that the document does not give.
std::vector<Role> ReadRoles(const RQXPrsUtil::RQSettingsParser& parser);

/// The roles that the document gives, one line each.
std::string RolesText(const std::vector<Role>& roles);

/// The roles as one JSON object.
Json RolesToJson(const std::vector<Role>& roles);

}  // namespace rqtool

#endif
