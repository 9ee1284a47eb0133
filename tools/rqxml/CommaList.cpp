#include "CommaList.h"

namespace rqtool {

namespace {

std::string TakePlain(std::string_view& rest) {
  std::string item(rest.substr(0, rest.find(',')));
  rest.remove_prefix(item.size());
  return item;
}

// Takes a quoted item off `rest`, which begins with the quote.
std::optional<std::string> TakeQuoted(std::string_view& rest) {
  std::string item;
  rest.remove_prefix(1);
  while (true) {
    const std::size_t quote = rest.find('"');
    if (quote == std::string_view::npos) return std::nullopt;
    item += rest.substr(0, quote);
    rest.remove_prefix(quote + 1);
    if (rest.empty() || rest.front() != '"') return item;
    item += '"';
    rest.remove_prefix(1);
  }
}

}  // namespace

std::optional<std::vector<std::string>> SplitCommaList(std::string_view list) {
  std::vector<std::string> items;
  while (true) {
    const bool quoted = !list.empty() && list.front() == '"';
    std::optional<std::string> item = quoted ? TakeQuoted(list) : TakePlain(list);
    if (!item) return std::nullopt;
    items.push_back(std::move(*item));
    if (list.empty()) return items;
    if (list.front() != ',') return std::nullopt;
    list.remove_prefix(1);
  }
}

}  // namespace rqtool
