#ifndef RQXML_ENCODING_RQMEMCONVERSIONS_H
#define RQXML_ENCODING_RQMEMCONVERSIONS_H

// The conversions, each an object that writes its output piece by piece:
//   bool Next(Out*& target, Out* limit)    writes on; true when the output is full and more may come
//   bool Problem() const                   something was malformed, was replaced or failed
//   void MarkCut()                         after the first full Next: remembers how far the source went
//   void CutToWhole(begin, target, limit)  takes from the output what is not a whole character; ends the object's use

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "rqxml/encoding/RQMEMClone.h"
#include "rqxml/encoding/RQMEMHzShift.h"
#include "rqxml/encoding/RQMEMSources.h"
#include "rqxml/encoding/RQMEMSubstitution.h"
#include "rqxml/encoding/RQMEMSurrogateCheck.h"
#include "rqxml/encoding/RQMEMUtf16.h"

namespace RQMEM_NAMESPACE {

/// UTF-8 to UTF-16; ends where the text is malformed.
template <class Unit>
class Utf8ToUtf16 {
 public:
  using Out = Unit;
  explicit Utf8ToUtf16(Text<char> text) : fText(text) {}

  bool Next(Unit*& target, Unit* limit) {
    const Stop stop = DecodeUtf8(fText.begin, fText.end, target, limit);
    fMalformed = stop == Stop::Malformed;
    return stop == Stop::Full;
  }
  bool Problem() const { return fMalformed; }
  void MarkCut() {}
  void CutToWhole(Unit*, Unit*&, Unit*) {}

 private:
  Text<char> fText;
  bool fMalformed = false;
};

/// UTF-16 to UTF-8; ends where the text is malformed.
template <class Unit>
class Utf16ToUtf8 {
 public:
  using Out = char;
  explicit Utf16ToUtf8(Text<Unit> text) : fText(text) {}

  bool Next(char*& target, char* limit) {
    const Stop stop = EncodeUtf8(fText.begin, fText.end, target, limit);
    fMalformed = stop == Stop::Malformed;
    return stop == Stop::Full;
  }
  bool Problem() const { return fMalformed; }
  void MarkCut() {}
  void CutToWhole(char*, char*&, char*) {}

 private:
  Text<Unit> fText;
  bool fMalformed = false;
};

/// The side of a conversion that a converter does. Text may begin with ASCII that the converter leaves as it is; that
/// is copied, and a clone is made only where more follows.
class CodePageSide {
 public:
  /// @param converter null for the default converter, which is made if there is none
  CodePageSide(void* converter, Direction direction);

  /// How much of the text's beginning is the same on both sides.
  template <class Unit>
  std::size_t SameLength(Text<Unit> text) const;
  /// The clone; null, and a problem, when there is none.
  UConverter* Clone();
  /// The clone in its initial state; null, and a problem, when there is none.
  UConverter* RestartedClone();
  bool HasClone() const { return fClone.has_value(); }
  bool Problem() const { return fFailed || (fClone && fClone->Replaced()); }
  /// Notes a problem.
  void Fail() { fFailed = true; }
  /// What is known of the converter; nothing when there is none.
  const ConverterTraits& Traits() const { return fTraits; }

 private:
  const UConverter* const fConverter;
  const ConverterTraits fTraits;
  const Direction fDirection;
  std::optional<ConverterClone> fClone;
  bool fFailed = false;
};

/// Long UTF-8 text from or to another converter in one go, for which ICU has faster ways than through UTF-16.
class Utf8Shortcut {
 public:
  /// Shorter text is not worth the clone.
  static constexpr std::size_t kShortest = 256;

  /// @param text what is converted
  /// @param direction what becomes of the UTF-8
  Utf8Shortcut(Text<char> text, Direction direction) : fText(text), fUtf8(direction) {}

  /// Writes on from UTF-8.
  bool NextTo(UConverter* target, char*& to, char* limit) { return Next(target, fUtf8.Get(), to, limit); }
  /// Writes on to UTF-8.
  bool NextFrom(UConverter* source, char*& to, char* limit) { return Next(fUtf8.Get(), source, to, limit); }
  bool Problem() const { return fFailed || fUtf8.Replaced(); }
  /// The end of the last character that has been read.
  const char* Place() const;

 private:
  bool Next(UConverter* target, UConverter* source, char*& to, char* limit);

  Text<char> fText;
  Utf8Clone fUtf8;
  bool fFailed = false;
  std::array<UChar, kPivotSize> fPivot;
  UChar* fPivotSource = fPivot.data();
  UChar* fPivotTarget = fPivot.data();
};

/// Reads a code page, as 16-bit units.
class CodePageReader {
 public:
  CodePageReader(void* converter, Text<char> text);

  /// The beginning that is plain ASCII, and is for the caller to copy.
  Text<char>& Ascii() { return fAscii; }
  /// Writes units of what follows; true when the output is full and more may come.
  bool Next(char16_t*& target, char16_t* limit);
  bool Problem() const { return fSide.Problem(); }
  /// What follows the ASCII, where that is UTF-8 and long.
  std::optional<Text<char>> LongUtf8() const;
  /// The clone that reads; null, and a problem, when there is none.
  UConverter* Clone() { return fSide.Clone(); }

 private:
  enum class Result { Full, Failed, AtEnd };

  Result Read(UConverter* clone, bool flush, char16_t*& target, char16_t* limit);
  bool NextChecked(UConverter* clone, char16_t*& target, char16_t* limit);
  bool NextToldEnd(UConverter* clone, char16_t*& target, char16_t* limit);

  CodePageSide fSide;
  Text<char> fAscii;
  Text<char> fText;
  SurrogateCheck fSurrogates;
  bool fOwesReplacement = false;
};

/// A code page to UTF-16.
template <class Unit>
class CodePageToUtf16 {
 public:
  using Out = Unit;
  CodePageToUtf16(void* converter, Text<char> text) : fReader(converter, text) {}

  bool Next(Unit*& target, Unit* limit);
  bool Problem() const { return fReader.Problem(); }
  void MarkCut() {}
  /// Takes off the first half of a surrogate pair.
  void CutToWhole(Unit* begin, Unit*& target, Unit*) {
    if (target != begin && target[-1] >= Unit{0xD800} && target[-1] <= Unit{0xDBFF}) --target;
  }

 private:
  CodePageReader fReader;
};

template <>
bool CodePageToUtf16<char16_t>::Next(char16_t*& target, char16_t* limit);
template <>
bool CodePageToUtf16<wchar_t>::Next(wchar_t*& target, wchar_t* limit);

/// A code page to UTF-8.
class CodePageToUtf8 {
 public:
  using Out = char;
  CodePageToUtf8(void* converter, Text<char> text);

  bool Next(char*& target, char* limit);
  bool Problem() const { return fMalformed || fReader.Problem() || (fShortcut && fShortcut->Problem()); }
  void MarkCut() {}
  /// What went through ICU may end inside a character.
  void CutToWhole(char* begin, char*& target, char* limit);

 private:
  void Refill();

  CodePageReader fReader;
  std::optional<Utf8Shortcut> fShortcut;
  UConverter* fShortcutSource = nullptr;
  bool fMore = true;
  bool fMalformed = false;
  std::array<char16_t, kPivotSize> fPivot;
  Text<char16_t> fUnits{fPivot.data(), fPivot.data()};
};

/// UTF-16 or UTF-8 to a code page. Next does not keep to whole characters; CutToWhole converts again what fits.
template <class Source>
class ToCodePage {
 public:
  using Out = char;
  using Unit = typename Source::Unit;
  ToCodePage(void* converter, Text<Unit> text);

  bool Next(char*& target, char* limit);
  bool Problem() const { return fWriter.Problem() || fSide.Problem() || (fShortcut && fShortcut->Problem()); }
  void MarkCut();
  void CutToWhole(char* begin, char*& target, char* limit);

 private:
  /// Writes a text through a clone.
  class Writer {
   public:
    Writer(Text<Unit> text, const ConverterTraits& traits) : fSource(text), fIsHz(traits.type == UCNV_HZ) {}
    bool Next(UConverter* clone, char*& target, char* limit);
    bool Problem() const { return fFailed || fSource.Malformed(); }
    const Unit* Place() const { return fSource.Place(fUnits.begin); }

   private:
    bool Write(UConverter* clone, char*& target, char* limit);
    bool WriteHz(UConverter* clone, char*& target, char* limit);

    Source fSource;
    const bool fIsHz;
    Text<char16_t> fUnits{nullptr, nullptr};
    HzShift fShift;
    Text<char> fShiftBack{nullptr, nullptr};
    bool fWritten = false;
    bool fFailed = false;
  };

  bool WantsShortcut() const;
  bool Fits(const Unit* end, char*& target, char* limit);
  const Unit* WholeUpTo(const Unit* place) const;
  const Unit* LongestBetween(const Unit* fitting, const Unit* tooLong, char* from, char* limit);

  CodePageSide fSide;
  const std::size_t fAsciiLength;
  Text<Unit> fAscii;
  const Text<Unit> fText;  // what follows the ASCII
  Writer fWriter;
  std::optional<Utf8Shortcut> fShortcut;
  const Unit* fReached = nullptr;
};

}  // namespace RQMEM_NAMESPACE

#endif
