#include "TextArray.h"

#include <cstddef>

namespace rqtool {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// Takes an item off `text`, which begins with it.
std::string TakeItem(std::string_view& text) {
  const bool quoted = text.front() == '"';
  std::size_t i = quoted ? 1 : 0;
  std::string item;
  for (; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '"') {
      item += text[++i];
      continue;
    }
    const bool ends = quoted ? text[i] == '"' : kBlanks.find(text[i]) != std::string_view::npos;
    if (ends) break;
    item += text[i];
  }
  text.remove_prefix(i < text.size() ? i + 1 : i);
  return item;
}

}  // namespace

std::vector<std::string> SplitTextArray(std::string_view text) {
  std::vector<std::string> items;
  for (;;) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return items;
    text.remove_prefix(begin);
    items.push_back(TakeItem(text));
  }
}

}  // namespace rqtool
