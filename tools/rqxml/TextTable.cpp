#include "TextTable.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "DisplayText.h"

namespace rqtool {

namespace {

constexpr std::string_view kBetweenItems = ", ";
constexpr std::string_view kBetweenColumns = "  ";
// Narrower than this a column is hard to read.
constexpr std::size_t kReadable = 24;
// Narrower than this a column says nothing any more.
constexpr std::size_t kNarrowest = 10;
// A longer cell does not push the columns behind it to the right in every other row.
constexpr std::size_t kWidestAlignment = 60;

std::string JoinItems(const std::vector<std::string>& items) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) text += kBetweenItems;
    text += items[i];
  }
  return text;
}

std::string FitCell(const TextTable::Cell& cell, TextTable::Fit fit, std::size_t width) {
  if (fit == TextTable::Fit::Keep) return JoinItems(cell);
  if (fit == TextTable::Fit::ShortenList && cell.size() > 1) return ShortenList(cell, width);
  return CutToWidth(JoinItems(cell), width);
}

void AppendPadded(std::string& line, const std::string& text, std::size_t width, bool alignRight) {
  const std::size_t used = DisplayWidth(text);
  const std::string padding(width > used ? width - used : 0, ' ');
  line += alignRight ? padding + text : text + padding;
}

std::string EndLine(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

}  // namespace

std::string ShortenList(const std::vector<std::string>& items, std::size_t width) {
  const std::string tail = "\u2026 (" + std::to_string(items.size()) + " in all)";
  const std::size_t tailWidth = kBetweenItems.size() + DisplayWidth(tail);
  std::string text;
  std::size_t used = 0;
  std::size_t fitting = 0;  // bytes of whole items that leave room for the tail
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i > 0) {
      text += kBetweenItems;
      used += kBetweenItems.size();
    }
    text += items[i];
    used += DisplayWidth(items[i]);
    if (used > width) {
      if (fitting == 0) return CutToWidth(tail, width);
      return text.substr(0, fitting).append(kBetweenItems).append(tail);
    }
    if (used + tailWidth <= width) fitting = text.size();
  }
  return text;
}

TextTable::TextTable(std::vector<Column> columns) : fColumns(std::move(columns)) {}

void TextTable::AddRow(Row row) { fRows.push_back(std::move(row)); }

std::vector<std::string> TextTable::Titles() const {
  std::vector<std::string> titles;
  for (const Slot& slot : MeasureSlots()) titles.push_back(slot.column->title);
  return titles;
}

std::vector<TextTable::Row> TextTable::Rows() const {
  const Slots slots = MeasureSlots();
  std::vector<Row> rows;
  for (const Row& row : fRows) {
    Row& shown = rows.emplace_back();
    for (const Slot& slot : slots) shown.push_back(row[slot.index]);
  }
  return rows;
}

TextTable::Slots TextTable::MeasureSlots() const {
  Slots slots;
  for (std::size_t index = 0; index < fColumns.size(); ++index) {
    const Column& column = fColumns[index];
    std::size_t widest = 0;
    for (const Row& row : fRows) widest = std::max(widest, DisplayWidth(JoinItems(row[index])));
    if (widest == 0 && column.optional) continue;
    slots.push_back({&column, index, std::max(widest, DisplayWidth(column.title))});
  }
  return slots;
}

// The width that each column may take at most so that the line takes `width` or less; nothing when all are as narrow
// as that already.
std::optional<std::size_t> TextTable::FindLimit(const Slots& slots, std::size_t width) {
  std::size_t fixed = 0;
  std::vector<std::size_t> flexible;
  for (const Slot& slot : slots) {
    if (&slot != &slots.front()) fixed += kBetweenColumns.size();
    if (slot.column->fit == Fit::Keep) {
      fixed += slot.width;
    } else {
      flexible.push_back(slot.width);
    }
  }
  std::sort(flexible.begin(), flexible.end());
  std::size_t available = width > fixed ? width - fixed : 0;
  std::size_t open = flexible.size();
  for (const std::size_t natural : flexible) {
    const std::size_t share = available / open;
    if (natural > share) return std::max(share, kNarrowest);
    available -= natural;
    --open;
  }
  return std::nullopt;
}

std::string TextTable::RenderHead(const Slots& slots) {
  std::string titles;
  std::string rule;
  for (const Slot& slot : slots) {
    const std::size_t width = std::min(slot.width, kWidestAlignment);
    AppendPadded(titles, CutToWidth(slot.column->title, width), width, slot.column->alignRight);
    titles += kBetweenColumns;
    rule.append(width, '-').append(kBetweenColumns);
  }
  return EndLine(std::move(titles)) + EndLine(std::move(rule));
}

std::string TextTable::RenderLine(const Slots& slots, const Row& row) {
  std::string line;
  for (const Slot& slot : slots) {
    const std::string text = FitCell(row[slot.index], slot.column->fit, slot.width);
    AppendPadded(line, text, std::min(slot.width, kWidestAlignment), slot.column->alignRight);
    line += kBetweenColumns;
  }
  return EndLine(std::move(line));
}

std::string TextTable::RenderBeneath(const Slots& slots, const Row& row, std::size_t indent, std::size_t width) {
  std::string lines;
  for (const Slot& slot : slots) {
    const Cell& cell = row[slot.index];
    if (cell.empty()) continue;
    const std::string start = std::string(indent, ' ') + slot.column->beneath + ": ";
    const std::size_t used = DisplayWidth(start);
    const std::size_t left = width > used ? width - used : 0;
    lines += EndLine(start + FitCell(cell, slot.column->fit, std::max(left, kNarrowest)));
  }
  return lines;
}

std::string TextTable::Render(std::optional<std::size_t> width) const {
  Slots slots = MeasureSlots();
  Slots beneath;
  if (width) {
    std::optional<std::size_t> limit = FindLimit(slots, *width);
    if (limit && *limit < kReadable) {
      const auto stays = [](const Slot& slot) { return slot.column->beneath.empty(); };
      const auto first = std::stable_partition(slots.begin(), slots.end(), stays);
      beneath.assign(first, slots.end());
      slots.erase(first, slots.end());
      limit = FindLimit(slots, *width);
    }
    for (Slot& slot : slots) {
      if (limit && slot.column->fit != Fit::Keep) slot.width = std::min(slot.width, *limit);
    }
  }

  const std::size_t indent = slots.empty() ? 0 : slots.front().width + kBetweenColumns.size();
  std::string text = RenderHead(slots);
  for (const Row& row : fRows) {
    text += RenderLine(slots, row);
    if (width) text += RenderBeneath(beneath, row, indent, *width);
  }
  return text;
}

}  // namespace rqtool
