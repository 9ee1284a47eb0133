#include "ParameterValue.h"

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "DisplayText.h"
#include "ValueText.h"

namespace rqtool {

namespace {

using RQXPrsUtil::RQSettingsParser;

constexpr std::array kTypes{
    std::pair{RQSettingsParser::ParamString, "string"},   std::pair{RQSettingsParser::ParamDouble, "double"},
    std::pair{RQSettingsParser::ParamInteger, "integer"}, std::pair{RQSettingsParser::ParamBoolean, "boolean"},
    std::pair{RQSettingsParser::ParamEnum, "enum"},       std::pair{RQSettingsParser::ParamFieldName, "fieldName"},
};

template <class Value>
Reading ReadScalar(const RQSettingsParser& parser, const std::string& name, void* scope) {
  Value value{};
  const RQCommon::RQStatus status = parser.GetParameter(name.c_str(), value, scope);
  return status.IsOK() ? Reading{status, value} : Reading{status, {}};
}

template <class Item>
Reading ReadArrayOf(const RQSettingsParser& parser, const std::string& name, void* scope) {
  std::vector<Item> items;
  const RQCommon::RQStatus status = parser.GetArray(name.c_str(), items, scope);
  return {status, std::move(items)};
}

Reading ReadArray(const RQSettingsParser& parser, const std::string& name, void* scope,
                  RQSettingsParser::ParamType type) {
  switch (type) {
    case RQSettingsParser::ParamInteger:
      return ReadArrayOf<int>(parser, name, scope);
    case RQSettingsParser::ParamDouble:
      return ReadArrayOf<double>(parser, name, scope);
    default:
      return ReadArrayOf<std::string>(parser, name, scope);
  }
}

Reading ReadMatrix(RQSettingsParser& parser, const std::string& name, void* scope) {
  std::vector<std::vector<std::string>> texts;
  std::vector<std::vector<double>> numbers;
  const RQCommon::RQStatus status = parser.GetMatrix(name.c_str(), texts, scope);
  if (!status.IsOK()) return {status, {}};
  // Items that are no numbers are left out of the rows of numbers.
  bool allNumbers = parser.GetMatrix(name.c_str(), numbers, scope).IsOK();
  for (std::size_t row = 0; allNumbers && row < texts.size(); ++row) {
    allNumbers = texts[row].size() == numbers[row].size();
  }
  if (allNumbers) return {status, std::move(numbers)};
  return {status, std::move(texts)};
}

std::string Text(const std::string& item) { return ItemText(item); }
std::string Text(int item) { return std::to_string(item); }
std::string Text(double item) { return NumberText(item); }
std::string Text(bool item) { return item ? "true" : "false"; }

template <class Item>
std::string ListText(const std::vector<Item>& items) {
  std::string text = "[";
  for (const Item& item : items) {
    if (text.size() > 1) text += ", ";
    text += Text(item);
  }
  return text + ']';
}

template <class Item>
std::vector<std::string> Lines(const std::vector<std::vector<Item>>& rows) {
  std::vector<std::string> lines;
  for (const auto& row : rows) lines.push_back(ListText(row));
  return lines;
}
template <class Item>
std::vector<std::string> Lines(const std::vector<Item>& items) {
  return {ListText(items)};
}
template <class Item>
std::vector<std::string> Lines(const Item& item) {
  return {Text(item)};
}
std::vector<std::string> Lines(std::monostate) { return {}; }

template <class Item>
Json ToJson(const Item& item) {
  return item;
}
Json ToJson(std::monostate) { return nullptr; }
Json ToJson(double item) { return JsonNumber(item); }
template <class Item>
Json ToJson(const std::vector<Item>& items) {
  Json array = Json::array();
  for (const Item& item : items) array.push_back(ToJson(item));
  return array;
}

template <class Item>
std::vector<std::string> ItemLines(const std::vector<Item>& items) {
  std::vector<std::string> lines;
  for (const Item& item : items) lines.push_back(Text(item));
  return lines;
}
std::vector<std::string> ItemLines(const std::vector<std::string>& items) {
  std::vector<std::string> lines;
  for (const std::string& item : items) lines.push_back(Printable(item));
  return lines;
}
std::vector<std::string> ItemLines(const std::string& text) { return {Printable(text)}; }
template <class Item>
std::vector<std::string> ItemLines(const std::vector<std::vector<Item>>& rows) {
  return Lines(rows);
}
template <class Item>
std::vector<std::string> ItemLines(const Item& item) {
  return Lines(item);
}

}  // namespace

ReadAs ScalarOf(RQSettingsParser::ParamType type) {
  switch (type) {
    case RQSettingsParser::ParamInteger:
      return ReadAs::Int;
    case RQSettingsParser::ParamDouble:
      return ReadAs::Double;
    case RQSettingsParser::ParamBoolean:
      return ReadAs::Bool;
    default:
      return ReadAs::String;
  }
}

RQSettingsParser::ParamType TypeOf(const std::string& word) {
  for (const auto& [type, typeWord] : kTypes) {
    if (word == typeWord) return type;
  }
  return RQSettingsParser::ParamUnknown;
}

std::string TypeWord(RQSettingsParser::ParamType type) {
  for (const auto& [known, word] : kTypes) {
    if (type == known) return word;
  }
  return "unknown";
}

Reading ReadParameter(RQSettingsParser& parser, const std::string& name, void* scope, ReadAs as,
                      RQSettingsParser::ParamType type) {
  switch (as) {
    case ReadAs::String:
      return ReadScalar<std::string>(parser, name, scope);
    case ReadAs::Int:
      return ReadScalar<int>(parser, name, scope);
    case ReadAs::Double:
      return ReadScalar<double>(parser, name, scope);
    case ReadAs::Bool:
      return ReadScalar<bool>(parser, name, scope);
    case ReadAs::Array:
      return ReadArray(parser, name, scope, type);
    case ReadAs::Matrix:
      return ReadMatrix(parser, name, scope);
  }
  return {};
}

Json ValueToJson(const ParameterValue& value) {
  return std::visit([](const auto& held) { return ToJson(held); }, value);
}

std::vector<std::string> ValueLines(const ParameterValue& value) {
  return std::visit([](const auto& held) { return Lines(held); }, value);
}

std::vector<std::string> PlainLines(const ParameterValue& value) {
  return std::visit([](const auto& held) { return ItemLines(held); }, value);
}

}  // namespace rqtool
