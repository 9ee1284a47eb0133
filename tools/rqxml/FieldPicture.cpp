#include "FieldPicture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "Bars.h"
#include "DisplayText.h"
#include "MarkupText.h"
#include "ValueText.h"
#include "rqxml/common/RQMV.h"

namespace rqtool {

namespace {

// All lengths in units of the picture: 1 is a pixel where nothing scales it.
constexpr double kWidth = 380;
constexpr double kMargin = 10;
constexpr std::size_t kMostBars = 40;
constexpr std::size_t kLongestLabel = 20;  // columns, as the next two
constexpr std::size_t kLongestTitle = 36;
constexpr std::size_t kLongestLine = 52;

constexpr std::string_view kColours =
    "svg.f{--ink:#1b1f24;--soft:#59636e;--line:#d5dae0;--bar:#2f6fab;--band:#a9c9e8;--back:#fff}"
    "@media(prefers-color-scheme:dark){svg.f{--ink:#e8edf2;--soft:#9da7b3;--line:#39424d;--bar:#6cabe4;--band:#2d4f70;"
    "--back:#14181d}}";
constexpr std::string_view kRules =
    "svg.f text{font:13px system-ui,'DejaVu Sans',Arial,sans-serif;fill:var(--ink)}"
    "svg.f .t{font-size:16px;font-weight:600}svg.f .s{fill:var(--soft);font-size:12px}"
    "svg.f .e{text-anchor:end}svg.f .m{text-anchor:middle}"
    "svg.f .b{fill:var(--bar)}svg.f .a{fill:var(--band)}svg.f .l{stroke:var(--line);stroke-width:1}"
    "svg.f .k{fill:var(--back)}";

std::string Length(double value) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 2);
  return std::string(buffer.data(), end.ptr);
}

// An estimate on the large side: the fonts that a picture is shown with are not known.
double TextWidth(std::string_view text) {
  constexpr double kWide = 9.4;
  constexpr double kUsual = 7.8;
  constexpr double kNarrow = 4.9;
  double width = 0;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) continue;
    const bool wide = (c >= 'A' && c <= 'Z') || c == 'm' || c == 'w' || c == '%';
    const bool narrow = std::string_view(" .,:;'ijl|()[]tfr-").find(c) != std::string_view::npos;
    width += wide ? kWide : (narrow ? kNarrow : kUsual);
  }
  const auto ascii =
      std::count_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  return width + kUsual * static_cast<double>(DisplayWidth(text) - static_cast<std::size_t>(ascii));
}

std::string Text(double x, double y, std::string_view styles, std::string_view text) {
  const std::string attribute = styles.empty() ? "" : " class=\"" + std::string(styles) + '"';
  return "<text x=\"" + Length(x) + "\" y=\"" + Length(y) + '"' + attribute + '>' + MarkupText(text) + "</text>\n";
}

// `told` is what a pointer that rests on it is shown.
std::string Rectangle(double x, double y, double width, double height, std::string_view style, std::string_view told) {
  return "<rect x=\"" + Length(x) + "\" y=\"" + Length(y) + "\" width=\"" + Length(width) + "\" height=\"" +
         Length(height) + "\" class=\"" + std::string(style) + "\"><title>" + MarkupText(told) + "</title></rect>\n";
}

std::string Line(double x1, double y1, double x2, double y2) {
  return "<line x1=\"" + Length(x1) + "\" y1=\"" + Length(y1) + "\" x2=\"" + Length(x2) + "\" y2=\"" + Length(y2) +
         "\" class=\"l\"/>\n";
}

std::string Figures(const Bar& bar) { return bar.count + " (" + bar.share + ')'; }

std::string Told(const Bar& bar) { return bar.label + ": " + Figures(bar); }

// What is not empty is seen.
double Seen(double length, double room) { return length > 0 ? std::max(length * room, 1.0) : 0; }

// A drawing below its upper edge, and its height.
struct Drawing {
  std::string content;
  double height;
};

// A round number with one to five steps of it up to `largest`.
double RoundStep(double largest) {
  const double rough = largest / 4;
  const double power = std::pow(10.0, std::floor(std::log10(rough)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= rough) return factor * power;
  }
  return 10 * power;
}

std::vector<double> Ticks(double largest) {
  std::vector<double> ticks{0};
  const double step = largest > 0 ? RoundStep(largest) : 0;
  for (int i = 1; i <= 5 && std::isfinite(step) && step > 0 && i * step <= largest; ++i) ticks.push_back(i * step);
  return ticks;
}

std::string BoundText(double bound, bool first) {
  if (bound == RQMV::gMissingValue) return first ? "-\u221e" : "\u221e";
  return ShortNumberText(bound);
}

// The bounds below the columns, as many as there is room for.
std::string BoundLabels(const std::vector<double>& bounds, double left, double step, double y) {
  double widest = 0;
  for (std::size_t i = 0; i < bounds.size(); ++i) widest = std::max(widest, TextWidth(BoundText(bounds[i], i == 0)));
  const auto every = static_cast<std::size_t>(std::max(1.0, std::ceil((widest + kMargin) / step)));
  std::string text;
  for (std::size_t i = 0; i < bounds.size(); i += every) {
    const std::string label = BoundText(bounds[i], i == 0);
    const double half = TextWidth(label) / 2;
    const double x = std::min(left + step * static_cast<double>(i), kWidth - half);
    text += Text(x, y, "s m", label);
  }
  return text;
}

Drawing DrawColumns(const FieldStatistics& field) {
  constexpr double kHeight = 150;
  constexpr double kTop = 8;
  constexpr double kLabels = 22;
  const std::vector<Bar> bars = MakeBars(field);
  const std::vector<double>& counts = field.stats.GetFrequencies();
  const double largest = *std::max_element(counts.begin(), counts.end());
  const std::vector<double> ticks = Ticks(largest);
  double left = 0;
  for (const double tick : ticks) left = std::max(left, TextWidth(ShortNumberText(tick)));
  left += 2 * kMargin;
  const double step = (kWidth - 2 * kMargin - left) / static_cast<double>(bars.size());
  const double ground = kTop + kHeight;
  std::string text;
  for (const double tick : ticks) {
    const double y = ground - (largest > 0 ? tick / largest : 0) * kHeight;
    text += Line(left, y, kWidth - 2 * kMargin, y) + Text(left - 6, y + 4, "s e", ShortNumberText(tick));
  }
  const double gap = step > 6 ? 1 : 0;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const double height = Seen(bars[i].length, kHeight);
    text += Rectangle(left + step * static_cast<double>(i) + gap / 2, ground - height, step - gap, height, "b",
                      Told(bars[i]));
  }
  text += BoundLabels(field.stats.GetCutPoints(), left, step, ground + 16);
  return {text, ground + kLabels};
}

Drawing DrawRows(const FieldStatistics& field) {
  constexpr double kRow = 24;
  const std::vector<Bar> bars = MakeBars(field);
  const std::size_t shown = std::min(bars.size(), kMostBars);
  double labels = 0;
  double figures = 0;
  for (std::size_t i = 0; i < shown; ++i) {
    labels = std::max(labels, TextWidth(CutToWidth(bars[i].label, kLongestLabel)));
    figures = std::max(figures, TextWidth(Figures(bars[i])));
  }
  const double left = kMargin + labels + 8;
  const double room = std::max(kWidth - kMargin - figures - 8 - left, kMargin);
  std::string text;
  double y = 0;
  for (std::size_t i = 0; i < shown; ++i, y += kRow) {
    const double width = Seen(bars[i].length, room);
    text += Text(left - 8, y + 16, "e", CutToWidth(bars[i].label, kLongestLabel)) +
            Rectangle(left, y + 3, width, kRow - 6, "b", Told(bars[i])) +
            Text(left + width + 6, y + 16, "s", Figures(bars[i]));
  }
  if (shown == bars.size()) return {text, y};
  return {text + Text(left, y + 16, "s", "\u2026 and " + std::to_string(bars.size() - shown) + " more"), y + kRow};
}

Drawing DrawSpread(const FieldStatistics& field, const Spread& spread) {
  constexpr double kAxis = 34;
  const auto& summary = field.stats.GetSummStats();
  const double left = 2 * kMargin;
  const double room = kWidth - 2 * left;
  const auto place = [&](double part) { return left + part * room; };
  const std::string mean = "mean " + ShortNumberText(summary.mean);
  const double half = TextWidth(mean) / 2;
  const double meanAt = std::clamp(place(spread.mean), left + half, kWidth - left - half);
  std::string text;
  if (spread.high > spread.low) {
    text += Rectangle(place(spread.low), kAxis - 9, place(spread.high) - place(spread.low), 18, "a",
                      "one standard deviation around the mean");
  }
  text += Line(left, kAxis, kWidth - left, kAxis) + Line(left, kAxis - 6, left, kAxis + 6) +
          Line(kWidth - left, kAxis - 6, kWidth - left, kAxis + 6);
  text += Rectangle(place(spread.mean) - 2, kAxis - 11, 4, 22, "b", mean);
  text += Text(meanAt, kAxis - 18, "m", mean) + Text(left, kAxis + 24, "s", NumberText(summary.minimum)) +
          Text(kWidth - left, kAxis + 24, "s e", NumberText(summary.maximum));
  return {text, kAxis + 32};
}

std::optional<Drawing> Draw(const FieldStatistics& field) {
  if (!field.stats.GetFrequencies().empty()) return field.continuous ? DrawColumns(field) : DrawRows(field);
  const std::optional<Spread> spread = SpreadOf(field);
  if (!spread) return std::nullopt;
  return DrawSpread(field, *spread);
}

// `texts` with commas between them, on as many lines as they need.
std::vector<std::string> Wrap(const std::vector<std::string>& texts) {
  std::vector<std::string> lines;
  for (const std::string& text : texts) {
    const bool fits = !lines.empty() && DisplayWidth(lines.back()) + 2 + DisplayWidth(text) <= kLongestLine;
    if (fits) {
      lines.back() += ", " + text;
    } else {
      lines.push_back(CutToWidth(text, kLongestLine));
    }
  }
  return lines;
}

// Title and figures, for a picture that stands alone.
Drawing DrawHead(const FieldStatistics& field) {
  double y = 26;
  std::string text = Text(kMargin, y, "t", CutToWidth(FieldTitle(field), kLongestTitle));
  if (!field.label.empty()) {
    y += 18;
    text += Text(kMargin, y, "", CutToWidth(field.label, kLongestLine));
  }
  const std::string lenience = LenienceText(field);
  const std::vector<std::string> last(lenience.empty() ? 0 : 1, lenience);
  for (const std::vector<std::string>& texts : {CaseTexts(field), SummaryTexts(field), last}) {
    for (const std::string& line : Wrap(texts)) {
      y += 17;
      text += Text(kMargin, y, "s", line);
    }
  }
  return {text, y + 16};
}

}  // namespace

std::string FieldPicture(const FieldStatistics& field, PictureUse use) {
  const std::optional<Drawing> drawing = Draw(field);
  const bool alone = use == PictureUse::File;
  if (!drawing && !alone) return {};
  const Drawing head = alone ? DrawHead(field) : Drawing{{}, 4};
  const double height = head.height + (drawing ? drawing->height : 0) + kMargin;
  const std::string size = Length(kWidth) + ' ' + Length(height);
  std::string text = "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"f\" viewBox=\"0 0 " + size + '"';
  if (alone) text += " width=\"" + Length(kWidth) + "\" height=\"" + Length(height) + '"';
  text += " role=\"img\">\n<title>" + MarkupText(FieldTitle(field)) + "</title>\n";
  if (alone) text += "<style>" + PictureStyle() + "</style>\n<rect width=\"100%\" height=\"100%\" class=\"k\"/>\n";
  text += head.content;
  if (drawing) text += "<g transform=\"translate(0 " + Length(head.height) + ")\">\n" + drawing->content + "</g>\n";
  return text + "</svg>\n";
}

std::string PictureStyle() { return std::string(kColours) + std::string(kRules); }

}  // namespace rqtool
