// The conversions between text encodings against ICU alone doing the same work, alternately in one loop; what counts is
// the ratio of each pair. The runtime's iconv stands beside them, without the copying into wchar_t.
//   rqxml_bench_encoding [--all] [--only WORD]...   the tables; --all with a row for each text, --only conversions that
//                                                   have all the words in their names

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "encoding_floor.h"
#include "encoding_texts.h"
#include "rqxml/encoding/ExtNameStr.h"
#include "rqxml/encoding/RQMEMChar16.h"
#include "rqxml/encoding/RQMEMConverter.h"
#include "rqxml/encoding/RQMEMTranscode.h"
#include "workload.h"

namespace rqxml_bench {
namespace {

using namespace RQMEM_NAMESPACE;

constexpr std::array<std::size_t, 3> kSizes = {20, std::size_t{1} << 10, std::size_t{1} << 20};
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

/// Into a buffer that the result fills; from a zero-terminated text into a buffer with room; into a string.
enum Shape { kFilled, kTerminated, kString };
constexpr std::array<const char*, 3> kShapes = {"filled buffer", "terminated", "string"};

struct Ratio {
  double floorNs = 0;
  double subjectNs = 0;
  double median = kNone;
  double lower = kNone;
  double upper = kNone;
  double iconv = kNone;
};

/// One conversion at one size: a ratio for each shape and script.
struct Row {
  std::string conversion;
  std::size_t bytes;
  Ratio ratios[kShapes.size()][kScripts.size()];
};

template <class Step>
double NanosecondsEach(int calls, Step& step) {
  return MillisecondsOf([&] {
           for (int i = 0; i < calls; ++i) step();
         }) *
         1e6 / calls;
}

/// How many calls take long enough for the clock.
template <class Step>
int CallsFor(Step& step) {
  constexpr double kBatch = 1.5e5;
  NanosecondsEach(3, step);
  return std::max(1, static_cast<int>(kBatch / std::max(NanosecondsEach(10, step), 1.0)));
}

template <class Floor, class Subject>
Ratio Compare(Floor floor, Subject subject) {
  const int calls = CallsFor(floor);
  const int pairs = calls > 1 ? 41 : 11;
  std::vector<double> floors, subjects, ratios;
  for (int i = 0; i < pairs; ++i) {
    if (i % 2 == 0) floors.push_back(NanosecondsEach(calls, floor));
    subjects.push_back(NanosecondsEach(calls, subject));
    if (i % 2 != 0) floors.push_back(NanosecondsEach(calls, floor));
    ratios.push_back(subjects.back() / floors.back());
  }
  Ratio ratio;
  ratio.floorNs = Quantile(floors, 0.5);
  ratio.subjectNs = Quantile(subjects, 0.5);
  ratio.median = Quantile(ratios, 0.5);
  ratio.lower = Quantile(ratios, 0.25);
  ratio.upper = Quantile(ratios, 0.75);
  return ratio;
}

/// The library's conversion and ICU's, between units of type In and Out.
/// - buffer(target, room, source, length, status), string(target, source): the library's
/// - floor(target, room, source, length): ICU's, which writes at most unitsEach units for each unit
template <class Out, class In, class BufferWay, class StringWay, class FloorWay>
struct Conversion {
  BufferWay buffer;
  StringWay string;
  FloorWay floor;
  int unitsEach;

  template <class Unit>
  static int Length(const std::basic_string<Unit>& text) {
    return static_cast<int>(text.size());
  }

  std::basic_string<Out> Expected(const std::basic_string<In>& source) const {
    std::basic_string<Out> text(source.size() * static_cast<std::size_t>(unitsEach), Out{});
    text.resize(static_cast<std::size_t>(floor(text.data(), Length(text), source.data(), Length(source))));
    return text;
  }

  Ratio Filled(const std::basic_string<In>& source) const {
    const std::basic_string<Out> expected = Expected(source);
    std::basic_string<Out> target(expected.size(), Out{});
    const int room = static_cast<int>(target.size());
    const Ratio ratio = Compare([&] { floor(target.data(), room, source.data(), Length(source)); },
                                [&] {
                                  int status = 0;
                                  buffer(target.data(), room, source.data(), Length(source), &status);
                                });
    Require(target == expected, "the conversion into a buffer gives what ICU gives");
    return ratio;
  }

  Ratio Terminated(const std::basic_string<In>& source) const {
    const std::basic_string<Out> expected = Expected(source);
    const int room = Length(source) * unitsEach + 1;
    std::basic_string<Out> target(static_cast<std::size_t>(room), Out{});
    const Ratio ratio = Compare(
        [&] {
          const auto length = static_cast<int>(std::char_traits<In>::length(source.c_str()));
          target[static_cast<std::size_t>(floor(target.data(), room - 1, source.c_str(), length))] = Out{};
        },
        [&] {
          int status = 0;
          buffer(target.data(), room, source.c_str(), -1, &status);
        });
    Require(target.c_str() == expected, "the terminated conversion gives what ICU gives");
    return ratio;
  }

  Ratio String(const std::basic_string<In>& source) const {
    std::basic_string<Out> made;
    std::basic_string<Out> other;
    const Ratio ratio = Compare(
        [&] {
          other.resize(source.size() * static_cast<std::size_t>(unitsEach));
          other.resize(static_cast<std::size_t>(floor(other.data(), Length(other), source.data(), Length(source))));
        },
        [&] { string(made, source); });
    Require(made == other, "the conversion into a string gives what ICU gives");
    return ratio;
  }
};

template <class Out, class In, class BufferWay, class StringWay, class FloorWay>
auto MakeConversion(int unitsEach, BufferWay buffer, StringWay string, FloorWay floor) {
  return Conversion<Out, In, BufferWay, StringWay, FloorWay>{buffer, string, floor, unitsEach};
}

/// One text in all the forms that conversions start from; empty where a form cannot hold it.
struct Forms {
  std::string utf8;
  std::u16string utf16;
  std::wstring wide;
  std::string page;

  template <class Unit>
  const std::basic_string<Unit>& Unicode() const {
    if constexpr (std::is_same_v<Unit, char>) return utf8;
    if constexpr (std::is_same_v<Unit, char16_t>) return utf16;
    if constexpr (std::is_same_v<Unit, wchar_t>) return wide;
  }
};

Forms FormsOf(const std::string& utf8, const IcuConverter* page) {
  Forms forms;
  forms.utf8 = utf8;
  forms.utf16.resize(utf8.size());
  const int length = static_cast<int>(utf8.size());
  forms.utf16.resize(static_cast<std::size_t>(IcuFrom8(forms.utf16.data(), length, utf8.data(), length)));
  forms.wide.assign(forms.utf16.begin(), forms.utf16.end());
  if (page == nullptr) return forms;
  forms.page.resize(utf8.size());
  forms.page.resize(static_cast<std::size_t>(IcuFrom8ToPage(*page, forms.page.data(), length, utf8.data(), length)));
  if (forms.page.find('?') != std::string::npos) forms.page.clear();
  return forms;
}

class Table {
 public:
  explicit Table(std::vector<const char*> words) : fWords(std::move(words)) {}

  /// Measures a conversion in all sizes and scripts.
  /// @param source the form of a text that is converted
  template <class Convert, class Source>
  void Add(const std::string& name, const IcuConverter* page, const char* from, const char* to, const Convert& convert,
           Source source) {
    for (const char* word : fWords)
      if (name.find(word) == std::string::npos) return;
    const Iconv iconv(from, to);
    for (const std::size_t bytes : kSizes) {
      Row row{name, bytes, {}};
      for (std::size_t i = 0; i < kScripts.size(); ++i) {
        const Forms forms = FormsOf(TextOf(kScripts[i], bytes), page);
        const auto& text = source(forms);
        if (text.empty()) continue;
        row.ratios[kFilled][i] = convert.Filled(text);
        row.ratios[kTerminated][i] = convert.Terminated(text);
        row.ratios[kString][i] = convert.String(text);
        MeasureIconv(iconv, forms, text, row.ratios[kFilled][i]);
      }
      fRows.push_back(row);
    }
  }

  const std::vector<Row>& Rows() const { return fRows; }

 private:
  /// iconv takes and gives UTF-16 in 16-bit units.
  template <class Unit>
  static void MeasureIconv(const Iconv& iconv, const Forms& forms, const std::basic_string<Unit>& text, Ratio& ratio) {
    const auto* const source = std::is_same_v<Unit, wchar_t> ? static_cast<const void*>(forms.utf16.data())
                                                             : static_cast<const void*>(text.data());
    const std::size_t bytes = text.size() * (sizeof(Unit) == 1 ? 1 : 2);
    std::vector<char> target(text.size() * 4 + 4);
    if (!iconv.Convert(source, bytes, target.data(), target.size())) return;
    auto step = [&] { iconv.Convert(source, bytes, target.data(), target.size()); };
    const int calls = CallsFor(step);
    std::vector<double> times;
    for (int i = 0; i < 9; ++i) times.push_back(NanosecondsEach(calls, step));
    ratio.iconv = Quantile(times, 0.5) / ratio.floorNs;
  }

  std::vector<const char*> fWords;
  std::vector<Row> fRows;
};

const auto kFromPage = [](const Forms& forms) -> const std::string& { return forms.page; };

template <class Unit>
const auto kFromUnicode =
    [](const Forms& forms) -> const std::basic_string<Unit>& { return forms.template Unicode<Unit>(); };

// The calls of the library, by the types of their arguments.
const auto k8to16 = [](auto... arguments) { return QULTMB8to16(arguments...); };
const auto k16to8 = [](auto... arguments) { return QULTMB16to8(arguments...); };
const auto kU8ToU16 = [](auto& target, const auto& source) { return QULTMBU8ToU16(target, source); };
const auto kU16ToU8 = [](auto& target, const auto& source) { return QULTMBU16ToU8(target, source); };

void AddUnicode(Table& table) {
  Pivot pivot;
  const auto floorFrom8 = [&](auto... arguments) { return IcuFrom8(pivot, arguments...); };
  const auto floorTo8 = [&](auto... arguments) { return IcuTo8(pivot, arguments...); };
  const auto floorFrom8Narrow = [](auto... arguments) { return IcuFrom8(arguments...); };
  const auto floorTo8Narrow = [](auto... arguments) { return IcuTo8(arguments...); };
  table.Add("UTF-8 to wchar_t", nullptr, "UTF-8", "UTF-16LE",
            MakeConversion<wchar_t, char>(1, k8to16, kU8ToU16, floorFrom8), kFromUnicode<char>);
  table.Add("wchar_t to UTF-8", nullptr, "UTF-16LE", "UTF-8",
            MakeConversion<char, wchar_t>(3, k16to8, kU16ToU8, floorTo8), kFromUnicode<wchar_t>);
  table.Add("UTF-8 to char16_t", nullptr, "UTF-8", "UTF-16LE",
            MakeConversion<char16_t, char>(1, k8to16, kU8ToU16, floorFrom8Narrow), kFromUnicode<char>);
  table.Add("char16_t to UTF-8", nullptr, "UTF-16LE", "UTF-8",
            MakeConversion<char, char16_t>(3, k16to8, kU16ToU8, floorTo8Narrow), kFromUnicode<char16_t>);
}

/// The conversions between a page and UTF-16 in the given type.
template <class Unit>
void AddPageAndUtf16(Table& table, const std::string& unit, const char* number, const IcuConverter& page,
                     void* converter, const char* iconvName) {
  const auto toPage = [=](auto... arguments) { return QULTMB16toCodePage(converter, arguments...); };
  const auto fromPage = [=](auto... arguments) { return QULTMBCodePageto16(converter, arguments...); };
  const auto toPageString = [=](auto& to, const auto& from) { return QULTMBU16ToCodePage(converter, to, from); };
  const auto fromPageString = [=](auto& to, const auto& from) { return QULTMBCodePageToU16(converter, to, from); };
  const auto floorTo = [&](auto... arguments) { return IcuToPage(page, arguments...); };
  const auto floorFrom = [&](auto... arguments) { return IcuFromPage(page, arguments...); };
  table.Add(unit + " to " + number, &page, "UTF-16LE", iconvName,
            MakeConversion<char, Unit>(2, toPage, toPageString, floorTo), kFromUnicode<Unit>);
  table.Add(number + (" to " + unit), &page, iconvName, "UTF-16LE",
            MakeConversion<Unit, char>(1, fromPage, fromPageString, floorFrom), kFromPage);
}

void AddPage(Table& table, const char* number, const char* icuName, const char* iconvName) {
  const IcuConverter page = OpenIcu(icuName);
  const QULTMBConverterHandle handle(QULTMBConverterNew_8(number));
  void* const converter = handle.Get();
  const auto toPage = [=](auto... arguments) { return QULTMB8toCodePage(converter, arguments...); };
  const auto fromPage = [=](auto... arguments) { return QULTMBCodePageto8(converter, arguments...); };
  const auto toPageString = [=](auto& to, const auto& from) { return QULTMBU8ToCodePage(converter, to, from); };
  const auto fromPageString = [=](auto& to, const auto& from) { return QULTMBCodePageToU8(converter, to, from); };
  const auto floorTo = [&](auto... arguments) { return IcuFrom8ToPage(page, arguments...); };
  const auto floorFrom = [&](auto... arguments) { return IcuFromPageTo8(page, arguments...); };
  table.Add(std::string("UTF-8 to ") + number, &page, "UTF-8", iconvName,
            MakeConversion<char, char>(1, toPage, toPageString, floorTo), kFromUnicode<char>);
  table.Add(number + std::string(" to UTF-8"), &page, iconvName, "UTF-8",
            MakeConversion<char, char>(3, fromPage, fromPageString, floorFrom), kFromPage);
  AddPageAndUtf16<wchar_t>(table, "wchar_t", number, page, converter, iconvName);
  AddPageAndUtf16<char16_t>(table, "char16_t", number, page, converter, iconvName);
}

int CopyBytes(char* target, int, const char* source, int length) {
  std::memcpy(target, source, static_cast<std::size_t>(length));
  return length;
}

const auto k8toGeneric = [](auto... arguments) { return QULTMB8toGeneric(arguments...); };
const auto kGenericto8 = [](auto... arguments) { return QULTMBGenericto8(arguments...); };
const auto k16toGeneric = [](auto... arguments) { return QULTMB16toGeneric(arguments...); };
const auto kGenericto16 = [](auto... arguments) { return QULTMBGenericto16(arguments...); };
const auto kU8ToGeneric = [](auto& target, const auto& source) { return QULTMBU8ToGeneric(target, source); };
const auto kGenericToU8 = [](auto& target, const auto& source) { return QULTMBGenericToU8(target, source); };
const auto kU16ToGeneric = [](auto& target, const auto& source) { return QULTMBU16ToGeneric(target, source); };
const auto kGenericToU16 = [](auto& target, const auto& source) { return QULTMBGenericToU16(target, source); };

/// Generic text is UTF-8.
void AddGenericUtf8(Table& table) {
  Pivot pivot;
  const auto floorFrom8 = [&](auto... arguments) { return IcuFrom8(pivot, arguments...); };
  const auto floorTo8 = [&](auto... arguments) { return IcuTo8(pivot, arguments...); };
  table.Add("generic (UTF-8) to wchar_t", nullptr, "UTF-8", "UTF-16LE",
            MakeConversion<wchar_t, char>(1, kGenericto16, kGenericToU16, floorFrom8), kFromUnicode<char>);
  table.Add("wchar_t to generic (UTF-8)", nullptr, "UTF-16LE", "UTF-8",
            MakeConversion<char, wchar_t>(3, k16toGeneric, kU16ToGeneric, floorTo8), kFromUnicode<wchar_t>);
  table.Add("UTF-8 to generic (UTF-8)", nullptr, "UTF-8", "UTF-8",
            MakeConversion<char, char>(1, k8toGeneric, kU8ToGeneric, CopyBytes), kFromUnicode<char>);
}

/// Generic text is in the default converter's encoding, which is the page.
void AddGenericPage(Table& table) {
  const IcuConverter page = OpenIcu("windows-1252");
  const auto floorTo16 = [&](auto... arguments) { return IcuFromPage(page, arguments...); };
  const auto floorFrom16 = [&](auto... arguments) { return IcuToPage(page, arguments...); };
  const auto floorTo8 = [&](auto... arguments) { return IcuFromPageTo8(page, arguments...); };
  const auto floorFrom8 = [&](auto... arguments) { return IcuFrom8ToPage(page, arguments...); };
  table.Add("generic (1252) to wchar_t", &page, "CP1252", "UTF-16LE",
            MakeConversion<wchar_t, char>(1, kGenericto16, kGenericToU16, floorTo16), kFromPage);
  table.Add("wchar_t to generic (1252)", &page, "UTF-16LE", "CP1252",
            MakeConversion<char, wchar_t>(2, k16toGeneric, kU16ToGeneric, floorFrom16), kFromUnicode<wchar_t>);
  table.Add("generic (1252) to UTF-8", &page, "CP1252", "UTF-8",
            MakeConversion<char, char>(3, kGenericto8, kGenericToU8, floorTo8), kFromPage);
  table.Add("UTF-8 to generic (1252)", &page, "UTF-8", "CP1252",
            MakeConversion<char, char>(1, k8toGeneric, kU8ToGeneric, floorFrom8), kFromUnicode<char>);
}

void AddAll(Table& table) {
  AddUnicode(table);
  AddPage(table, "1252", "windows-1252", "CP1252");
  AddPage(table, "932", "windows-31j", "CP932");
  AddPage(table, "936", "GBK", "CP936");
  AddGenericUtf8(table);
  Require(QULTMBSetDefaultConverter("1252"), "the default converter is replaced");
  SetUTF8mode(0);
  AddGenericPage(table);
  SetUTF8mode(1);
  Require(QULTMBSetDefaultConverter("UTF-8"), "the default converter is put back");
}

void PrintCell(double value) {
  if (std::isnan(value))
    std::printf(" - ");
  else
    std::printf(" %.2f ", value);
}

double Worst(const Ratio (&ratios)[kScripts.size()]) {
  double worst = 0;
  for (const Ratio& ratio : ratios) worst = std::fmax(worst, ratio.median);
  return worst;
}

void PrintTable(const std::vector<Row>& rows) {
  std::puts("| conversion | bytes | ASCII | Latin | CJK | emoji | terminated, worst | string, worst |");
  std::puts("|---|---|---|---|---|---|---|---|");
  for (const Row& row : rows) {
    std::printf("| %s | %zu |", row.conversion.c_str(), row.bytes);
    for (const Ratio& ratio : row.ratios[kFilled]) {
      PrintCell(ratio.median);
      std::printf("/");
      PrintCell(ratio.iconv);
      std::printf("|");
    }
    std::printf(" %.2f | %.2f |\n", Worst(row.ratios[kTerminated]), Worst(row.ratios[kString]));
  }
}

constexpr std::array<const char*, 5> kFamilies = {"UTF-8 and wchar_t", "UTF-8 and char16_t", "Unicode to code page",
                                                  "code page to Unicode", "copy of UTF-8 as generic text"};

/// The index of a conversion's family.
std::size_t FamilyOf(const std::string& conversion) {
  if (conversion == "UTF-8 to generic (UTF-8)") return 4;
  for (const char* page : {"1252", "932", "936"}) {
    const std::size_t place = conversion.find(page);
    if (place != std::string::npos) return place > conversion.find(" to ") ? 2 : 3;
  }
  return conversion.find("char16_t") != std::string::npos ? 1 : 0;
}

/// One ratio of a family.
struct Member {
  Ratio ratio;
  std::string name;
};

std::vector<Member> Members(const std::vector<Row>& rows, std::size_t family, std::size_t bytes, Shape shape) {
  std::vector<Member> members;
  for (const Row& row : rows)
    for (std::size_t i = 0; i < kScripts.size(); ++i)
      if (FamilyOf(row.conversion) == family && row.bytes == bytes && !std::isnan(row.ratios[shape][i].median))
        members.push_back({row.ratios[shape][i], row.conversion + ", " + kScripts[i].name});
  std::sort(members.begin(), members.end(),
            [](const Member& left, const Member& right) { return left.ratio.median < right.ratio.median; });
  return members;
}

void PrintFamily(const std::vector<Row>& rows, std::size_t family, std::size_t bytes) {
  const std::vector<Member> filled = Members(rows, family, bytes, kFilled);
  if (filled.empty()) return;
  constexpr double kAim = 1.05;
  const auto above = std::count_if(filled.begin(), filled.end(), [](const Member& m) { return m.ratio.median > kAim; });
  const Member& worst = filled.back();
  std::printf("| %s | %zu | %.2f | %.2f | %.3f | %.3f | %.3f | %s | %.3f | %.3f | %td of %zu |\n", kFamilies[family],
              bytes, filled.front().ratio.median, filled[filled.size() / 2].ratio.median, worst.ratio.median,
              worst.ratio.lower, worst.ratio.upper, worst.name.c_str(),
              Members(rows, family, bytes, kTerminated).back().ratio.median,
              Members(rows, family, bytes, kString).back().ratio.median, above, filled.size());
}

void PrintFamilies(const std::vector<Row>& rows) {
  std::puts(
      "\n| conversions | bytes | best | median | worst | lower quartile | upper quartile | the worst one | terminated, "
      "worst | string, worst | above 1.05 |");
  std::puts("|---|---|---|---|---|---|---|---|---|---|---|");
  for (std::size_t family = 0; family < kFamilies.size(); ++family)
    for (const std::size_t bytes : kSizes) PrintFamily(rows, family, bytes);
}

void PrintEach(const std::vector<Row>& rows) {
  std::puts(
      "| conversion | shape | text | bytes | ICU, ns | this library, ns | ratio | lower quartile | upper quartile |");
  std::puts("|---|---|---|---|---|---|---|---|---|");
  for (const Row& row : rows)
    for (std::size_t shape = 0; shape < kShapes.size(); ++shape)
      for (std::size_t i = 0; i < kScripts.size(); ++i) {
        const Ratio& ratio = row.ratios[shape][i];
        if (std::isnan(ratio.median)) continue;
        std::printf("| %s | %s | %s | %zu | %.0f | %.0f | %.3f | %.3f | %.3f |\n", row.conversion.c_str(),
                    kShapes[shape], kScripts[i].name, row.bytes, ratio.floorNs, ratio.subjectNs, ratio.median,
                    ratio.lower, ratio.upper);
      }
}

/// A name is set while the system encoding and the default converter are what they are.
void PrintNames() {
  std::puts(
      "\n| name of 20 bytes, default converter | clone + close, ns | SetU8, ns | ratio | lower quartile | "
      "upper quartile |");
  std::puts("|---|---|---|---|---|---|");
  const IcuConverter page = OpenIcu("windows-1252");
  for (const char* converter : {"UTF-8", "1252", "932"}) {
    Require(QULTMBSetDefaultConverter(converter), "the default converter is replaced");
    for (const Script& script : {kScripts[0], kScripts[1]}) {
      const std::string text = TextOf(script, kSizes[0]);
      ExtNameStr name;
      const Ratio ratio = Compare([&] { CloneIcu(page); }, [&] { name.SetU8(text); });
      Require(name.GetU8() == text && name.GetU16().size() <= text.size() && name.ErrorCode() == 0, "the name is set");
      std::printf("| %s, %s | %.0f | %.0f | %.3f | %.3f | %.3f |\n", script.name, converter, ratio.floorNs,
                  ratio.subjectNs, ratio.median, ratio.lower, ratio.upper);
    }
  }
}

}  // namespace
}  // namespace rqxml_bench

int main(int argc, char** argv) {
  bool each = false;
  std::vector<const char*> words;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--all") == 0)
      each = true;
    else if (std::strcmp(argv[i], "--only") == 0 && i + 1 < argc)
      words.push_back(argv[++i]);
  }
  rqxml_bench::Table table(words);
  rqxml_bench::AddAll(table);
  rqxml_bench::PrintTable(table.Rows());
  rqxml_bench::PrintFamilies(table.Rows());
  if (each) {
    std::puts("");
    rqxml_bench::PrintEach(table.Rows());
  }
  rqxml_bench::PrintNames();
  return 0;
}
