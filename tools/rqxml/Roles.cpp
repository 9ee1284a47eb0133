#include "Roles.h"

#include "ParameterValue.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using RQXPrsUtil::RQSettingsParser;

using Getter = RQCommon::RQStatus (RQSettingsParser::*)(std::vector<std::string>&) const;

Role ReadList(const RQSettingsParser& parser, const char* title, const char* parameter, Getter getter) {
  Role role{.title = title, .parameter = parameter};
  role.status = (parser.*getter)(role.names);
  return role;
}

Role ReadWeight(const RQSettingsParser& parser) {
  Role role{.title = "frequency weight", .parameter = "FrequencyWeightVar"};
  std::string name;
  role.status = parser.GetFrequencyWeight(name);
  if (role.status.IsOK() && !name.empty()) role.names.push_back(name);
  return role;
}

}  // namespace

std::vector<Role> ReadRoles(const RQSettingsParser& parser) {
  return {ReadList(parser, "targets", "target", &RQSettingsParser::GetTargetVars),
          ReadList(parser, "categorical responses", "CatResponses", &RQSettingsParser::GetCatResponseVars),
          ReadList(parser, "continuous responses", "ContResponses", &RQSettingsParser::GetContResponseVars),
          ReadList(parser, "inputs", "inputs", &RQSettingsParser::GetPredictors),
          ReadList(parser, "categorical inputs", "CatPredictors", &RQSettingsParser::GetCatPredictors),
          ReadList(parser, "continuous inputs", "ContPredictors", &RQSettingsParser::GetContPredictors),
          ReadWeight(parser)};
}

std::string RolesText(const std::vector<Role>& roles) {
  std::string text;
  for (const Role& role : roles) {
    if (role.status.GetCode() == RQXPrsUtil::ParameterNotFound) continue;
    text += "  " + role.title + ": ";
    text += role.status.IsOK() ? ValueLines(role.names).front()
                               : "not read (status " + std::to_string(role.status.GetCode()) + ')';
    text += '\n';
  }
  return text;
}

Json RolesToJson(const std::vector<Role>& roles) {
  Json json = Json::object();
  for (const Role& role : roles) {
    const bool good = role.status.IsOK();
    json[role.parameter] = {{"names", good ? Json(role.names) : Json::array()},
                            {"status", good ? Json() : Json(role.status.GetCode())}};
  }
  return json;
}

}  // namespace rqtool
