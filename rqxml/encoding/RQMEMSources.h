#ifndef RQXML_ENCODING_RQMEMSOURCES_H
#define RQXML_ENCODING_RQMEMSOURCES_H

#include <array>
#include <cstddef>

namespace RQMEM_NAMESPACE {

/// A piece of text.
template <class Unit>
struct Text {
  const Unit* begin;
  const Unit* end;

  std::size_t Length() const { return static_cast<std::size_t>(end - begin); }
  bool Empty() const { return begin == end; }
};

/// How much text goes through a converter at a time.
constexpr std::size_t kPivotSize = 4096;

// What a code page is written from: UTF-16 in pieces, and the way back from a place in a piece to one in the source.

/// UTF-16 in 16-bit elements, as it is.
class Char16Source {
 public:
  using Unit = char16_t;
  explicit Char16Source(Text<Unit> text) : fText(text) {}

  bool AtEnd() const { return fText.Empty(); }
  bool Malformed() const { return false; }
  /// The next piece; valid until the next call.
  Text<char16_t> Next();
  /// The place in the source that a place in the last piece came from.
  const Unit* Place(const char16_t* inPiece) const { return inPiece; }
  /// The start of the character of which the last unit stands before `place`.
  static const Unit* Before(const Unit* begin, const Unit* place, const Unit* end);
  /// The start of the next character.
  static const Unit* After(const Unit* place, const Unit* end);

 private:
  Text<Unit> fText;
};

/// UTF-16 in wider elements.
class WideSource {
 public:
  using Unit = wchar_t;
  explicit WideSource(Text<Unit> text) : fText(text), fPieceBegin(text.begin) {}

  bool AtEnd() const { return fText.Empty(); }
  bool Malformed() const { return false; }
  Text<char16_t> Next();
  const Unit* Place(const char16_t* inPiece) const;
  static const Unit* Before(const Unit* begin, const Unit* place, const Unit* end);
  static const Unit* After(const Unit* place, const Unit* end);

 private:
  Text<Unit> fText;
  const Unit* fPieceBegin;
  bool fPlain = true;  // no element above 0xFFFF has been met
  char16_t fLast = 0;
  std::array<char16_t, kPivotSize> fPiece;
};

/// UTF-8. What is malformed becomes U+FFFD.
class Utf8Source {
 public:
  using Unit = char;
  explicit Utf8Source(Text<Unit> text) : fText(text), fPieceBegin(text.begin) {}

  bool AtEnd() const { return fText.Empty(); }
  /// True when something malformed has been met.
  bool Malformed() const { return fMalformed; }
  Text<char16_t> Next();
  const Unit* Place(const char16_t* inPiece) const;
  static const Unit* Before(const Unit* begin, const Unit* place, const Unit* end);
  static const Unit* After(const Unit* place, const Unit* end);

 private:
  Text<Unit> fText;
  const Unit* fPieceBegin;
  bool fMalformed = false;
  std::array<char16_t, kPivotSize> fPiece;
};

}  // namespace RQMEM_NAMESPACE

#endif
