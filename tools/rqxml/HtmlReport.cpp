#include "HtmlReport.h"

#include <string_view>

#include "Bars.h"
#include "FieldPicture.h"
#include "MarkupText.h"
#include "TextTable.h"
#include "VariableSelection.h"
#include "VariableTable.h"

namespace rqtool {

namespace {

constexpr std::size_t kLongestList = 160;  // columns

// Scripts, frames and everything from elsewhere are forbidden, whatever the document holds.
constexpr std::string_view kPolicy = "default-src 'none'; style-src 'unsafe-inline'";

constexpr std::string_view kStyle =
    ":root{color-scheme:light dark;--fore:#1b1f24;--dim:#59636e;--rule:#d5dae0;--paper:#fff;--card:#f6f8fa;"
    "--bad:#b3261e}"
    "@media(prefers-color-scheme:dark){:root{--fore:#e8edf2;--dim:#9da7b3;--rule:#39424d;--paper:#14181d;--card:#"
    "1c2128;"
    "--bad:#ff8a80}}"
    "*{box-sizing:border-box}"
    "body{margin:0 auto;padding:1rem;max-width:70rem;background:var(--paper);color:var(--fore);"
    "font:1rem/1.5 system-ui,'DejaVu Sans',Arial,sans-serif;overflow-wrap:anywhere}"
    "h1{font-size:1.5rem;line-height:1.25;margin:.5rem 0}h2{font-size:1.2rem;margin:2rem 0 .5rem}"
    "h3{font-size:1rem;margin:0}p{margin:.25rem 0}.dim{color:var(--dim)}.small{font-size:.875rem}.bad{color:var(--bad)}"
    ".scroll{overflow-x:auto}"
    "table{border-collapse:collapse;font-size:.875rem;overflow-wrap:normal}"
    "th,td{padding:.3rem .75rem .3rem 0;text-align:left;vertical-align:top;border-bottom:1px solid var(--rule)}"
    "th{color:var(--dim);font-weight:600;white-space:nowrap}td.n,th.n{text-align:right;font-variant-numeric:tabular-"
    "nums}"
    "td:last-child{min-width:12rem}table.counts td:last-child{min-width:0}"
    ".cards{display:grid;grid-template-columns:repeat(auto-fill,minmax(min(100%,26rem),1fr));gap:1rem}"
    ".card{padding:1rem;border:1px solid var(--rule);border-radius:.5rem;background:var(--card);min-width:0}"
    ".card svg{display:block;width:100%;max-width:28rem;height:auto;margin:.5rem 0}"
    "summary{cursor:pointer;color:var(--dim);font-size:.875rem}"
    "@media print{.card{break-inside:avoid}}";

std::string Element(std::string_view tag, std::string_view styles, std::string_view markup) {
  std::string text = '<' + std::string(tag);
  if (!styles.empty()) text += " class=\"" + std::string(styles) + '"';
  return text.append(">").append(markup).append("</").append(tag).append(">\n");
}

std::string Paragraph(std::string_view styles, std::string_view text) {
  return text.empty() ? "" : Element("p", styles, MarkupText(text));
}

std::string Join(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

std::string Count(std::size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string ProblemMarkup(const Problem& problem) {
  return Paragraph("bad", ProblemText(problem)) + Paragraph("small dim", StatusText(problem.status.value_or(0)));
}

std::string VariablesMarkup(const ReadableVariables& variables) {
  const TextTable table = MakeVariableTable(SelectVariables(*variables.list, {}));
  std::string head;
  for (const std::string& title : table.Titles()) head += "<th>" + MarkupText(title) + "</th>";
  std::string rows = Element("tr", "", head);
  for (const TextTable::Row& row : table.Rows()) {
    std::string cells;
    for (const TextTable::Cell& cell : row) cells += "<td>" + MarkupText(ShortenList(cell, kLongestList)) + "</td>";
    rows += Element("tr", "", cells);
  }
  std::string text = Element("h2", "", "Variables");
  if (variables.list->Size() > 0) text += Element("div", "scroll", Element("table", "", rows));
  for (const Problem& problem : variables.problems) {
    Problem told = problem;
    told.what = (problem.element.empty() ? "" : problem.element + ": ") + problem.what;
    text += ProblemMarkup(told);
  }
  return text;
}

// The figures of a picture, for reading and copying.
std::string CountsMarkup(const FieldStatistics& field) {
  std::string rows = Element("tr", "",
                             std::string("<th>") + (field.continuous ? "Interval" : "Category") +
                                 "</th><th class=\"n\">Count</th><th class=\"n\">Share</th>");
  for (const Bar& bar : MakeBars(field)) {
    rows += Element("tr", "",
                    "<td>" + MarkupText(bar.label) + "</td><td class=\"n\">" + MarkupText(bar.count) +
                        "</td><td class=\"n\">" + MarkupText(bar.share) + "</td>");
  }
  return Element("details", "",
                 "<summary>Counts</summary>\n" + Element("div", "scroll", Element("table", "counts", rows)));
}

std::string FieldMarkup(const ReportedField& reported) {
  const FieldStatistics& field = reported.statistics;
  std::string text = Element("h3", "", MarkupText(FieldTitle(field))) + Paragraph("", field.label);
  if (reported.problem) {
    return Element("section", "card", text + Paragraph("small dim", "not read") + ProblemMarkup(*reported.problem));
  }
  text += Paragraph("small dim", (field.continuous ? "continuous, " : "categorical, ") + Join(CaseTexts(field)));
  text += Paragraph("small", Join(SummaryTexts(field))) + FieldPicture(field, PictureUse::Page);
  text += Paragraph("small dim", LenienceText(field));
  if (!field.stats.GetFrequencies().empty()) text += CountsMarkup(field);
  return Element("section", "card", text);
}

std::string ModelMarkup(const StatisticsReport& report) {
  std::string text = Element("h2", "", MarkupText(TitleOf(report.model)));
  if (!report.hasStatistics) return text + Paragraph("dim", "no statistics: it has no \"ModelStats\"");
  text += Paragraph("dim", "statistics of " + Count(report.fields.size(), "field"));
  std::string cards;
  for (const ReportedField& field : report.fields) cards += FieldMarkup(field);
  return cards.empty() ? text : text + Element("div", "cards", cards);
}

}  // namespace

std::string HtmlReport(const std::string& file, const ReadableVariables& variables,
                       const std::vector<StatisticsReport>& models) {
  std::string body = Element("h1", "", MarkupText(file));
  const auto count = static_cast<std::size_t>(variables.list->Size());
  body += Paragraph("dim", Count(count, "variable") + ", " + Count(models.size(), "model"));
  body += VariablesMarkup(variables);
  for (const StatisticsReport& report : models) body += ModelMarkup(report);
  return "<!DOCTYPE html>\n<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n<meta "
         "charset=\"utf-8\"/>\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
         std::string(kPolicy) +
         "\"/>\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n"
         "<meta name=\"color-scheme\" content=\"light dark\"/>\n" +
         Element("title", "", MarkupText(file)) + Element("style", "", std::string(kStyle) + PictureStyle()) +
         "</head>\n<body>\n" + body + "</body>\n</html>\n";
}

}  // namespace rqtool
