#include "HistogramText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "DisplayText.h"

namespace rqtool {

namespace {

constexpr std::string_view kIndent = "  ";
constexpr std::size_t kBetween = 2;
constexpr std::size_t kUsualBar = 40;     // where no terminal sets a width
constexpr std::size_t kNarrowestBar = 8;  // shorter bars tell nothing
constexpr std::size_t kShortestLabel = 8;
constexpr std::size_t kWidestAlignment = 60;
constexpr std::size_t kMostBars = 40;  // on a terminal

std::size_t Widest(const std::vector<Bar>& bars, std::string Bar::*text) {
  std::size_t widest = 0;
  for (const Bar& bar : bars) widest = std::max(widest, DisplayWidth(bar.*text));
  return widest;
}

std::string Repeat(std::string_view piece, std::size_t times) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

// A bar that is not empty is seen.
std::string DrawBar(double length, std::size_t width) {
  constexpr std::array<std::string_view, 8> kEighths{"",       "\u258f", "\u258e", "\u258d",
                                                     "\u258c", "\u258b", "\u258a", "\u2589"};
  if (!(length > 0)) return {};
  const auto eighths =
      std::max<std::size_t>(1, static_cast<std::size_t>(std::lround(length * 8 * static_cast<double>(width))));
  return Repeat("\u2588", eighths / 8).append(kEighths[eighths % 8]);
}

std::string Padding(const std::string& text, std::size_t width) {
  const std::size_t used = DisplayWidth(text);
  return std::string(width > used ? width - used : 0, ' ');
}

std::string EndLine(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

// The columns that labels, counts, shares and bars take.
struct Columns {
  std::size_t label;
  std::size_t count;
  std::size_t share;
  std::size_t bar;
};

Columns Measure(const std::vector<Bar>& bars, std::optional<std::size_t> width) {
  Columns columns{Widest(bars, &Bar::label), Widest(bars, &Bar::count), Widest(bars, &Bar::share), kUsualBar};
  if (!width) return columns;
  const std::size_t fixed = kIndent.size() + columns.count + columns.share + 3 * kBetween;
  const std::size_t left = *width > fixed ? *width - fixed : 0;
  // Labels take what they need, but no more than half of the room.
  columns.label = std::min(columns.label, std::max(left / 2, kShortestLabel));
  columns.bar = left > columns.label + kNarrowestBar ? left - columns.label : kNarrowestBar;
  return columns;
}

std::string Line(const Bar& bar, const Columns& columns) {
  const std::string between(kBetween, ' ');
  const std::string label = CutToWidth(bar.label, columns.label);
  return EndLine(std::string(kIndent) + label + Padding(label, std::min(columns.label, kWidestAlignment)) + between +
                 Padding(bar.count, columns.count) + bar.count + between + Padding(bar.share, columns.share) +
                 bar.share + between + DrawBar(bar.length, columns.bar));
}

}  // namespace

std::string HistogramText(const std::vector<Bar>& bars, std::optional<std::size_t> width) {
  const bool all = !width || bars.size() <= kMostBars;
  const auto end = all ? bars.end() : bars.begin() + static_cast<std::ptrdiff_t>(kMostBars);
  const std::vector<Bar> shown(bars.begin(), end);
  const Columns columns = Measure(shown, width);
  std::string text;
  for (const Bar& bar : shown) text += Line(bar, columns);
  if (!all) {
    text +=
        std::string(kIndent) + "\u2026 and " + std::to_string(bars.size() - kMostBars) + " more; --wide shows all\n";
  }
  return text;
}

std::string SpreadText(const Spread& spread, const std::string& minimum, const std::string& maximum,
                       std::optional<std::size_t> width) {
  const std::size_t fixed = kIndent.size() + DisplayWidth(minimum) + DisplayWidth(maximum) + 4;
  const std::size_t room = width ? (*width > fixed + kNarrowestBar ? *width - fixed : kNarrowestBar) : kUsualBar;
  const auto column = [room](double place) {
    return static_cast<std::size_t>(std::lround(place * static_cast<double>(room - 1)));
  };
  std::string line;
  for (std::size_t i = 0; i < room; ++i) {
    const bool around = i >= column(spread.low) && i <= column(spread.high);
    line += i == column(spread.mean) ? "\u25cf" : (around ? "\u2501" : "\u2500");
  }
  return std::string(kIndent) + minimum + " \u251c" + line + "\u2524 " + maximum + '\n';
}

}  // namespace rqtool
