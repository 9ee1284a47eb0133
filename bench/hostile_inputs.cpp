#include "hostile_inputs.h"

#include <string_view>

#include "text_pieces.h"

namespace rqxml_bench {
namespace {

constexpr std::string_view kOpen = "<PMML><DataDictionary>";
constexpr std::string_view kClose = "</DataDictionary></PMML>";

constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

// The number in base 52, letters only: the shortest way to many different names.
std::string ShortName(std::size_t number) {
  std::string name;
  do {
    name += kLetters[number % kLetters.size()];
    number /= kLetters.size();
  } while (number > 0);
  return name;
}

// One of 140,608 names with the same hash in Xerces-C, whatever the size of the table: the hash grows by the factor 38
// with each character, so that one more in the first character of a pair is 38 less in the second.
std::string CollidingName(std::size_t number) {
  constexpr std::size_t kPairs = 3;
  std::string name;
  for (std::size_t pair = 0; pair < kPairs; ++pair) {
    const char first = kLetters[number % kLetters.size()];
    number /= kLetters.size();
    const unsigned second = 0x6000U - 38U * static_cast<unsigned char>(first);  // a Chinese character
    name += first;
    name += static_cast<char>(0xE0U | (second >> 12U));
    name += static_cast<char>(0x80U | ((second >> 6U) & 0x3FU));
    name += static_cast<char>(0x80U | (second & 0x3FU));
  }
  return name;
}

// One piece after the other, each told its number, until the document is full.
template <typename Piece>
std::string Fill(std::size_t bytes, std::string_view before, std::string_view after, Piece piece) {
  std::string text(before);
  text.reserve(bytes + 64);
  for (std::size_t i = 0; text.size() + after.size() < bytes; ++i) text += piece(i);
  text += after;
  return text;
}

std::string Repeat(std::size_t bytes, std::string_view before, std::string_view piece, std::string_view after) {
  return Fill(bytes, before, after, [piece](std::size_t) { return piece; });
}

std::string InDictionary(std::size_t bytes, std::string_view piece) { return Repeat(bytes, kOpen, piece, kClose); }

std::string AttributesOnOneElement(std::size_t bytes) {
  return Fill(bytes, "<PMML><DataDictionary><a", "/></DataDictionary></PMML>", [](std::size_t i) {
    return Join({" ", ShortName(i), "=''"});
  });
}

std::string AttributesOnDataField(std::size_t bytes) {
  return Fill(bytes, "<PMML><DataDictionary><DataField name='x' dataType='double' optype='continuous'",
              "/></DataDictionary></PMML>", [](std::size_t i) {
                return Join({" ", ShortName(i), "=''"});
              });
}

std::string DuplicateAttributeAtTheEnd(std::size_t bytes) {
  return Fill(bytes, "<PMML><DataDictionary><a", " a=''/></DataDictionary></PMML>", [](std::size_t i) {
    return Join({" ", ShortName(i), "=''"});
  });
}

// The square root of the bytes on each of many elements: a check that is quadratic in one element adds up too.
std::string AttributesOnManyElements(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t) {
    std::string element = "<a";
    for (std::size_t i = 0; i < 150; ++i) element += Join({" ", ShortName(i), "=''"});
    return Join({element, "/>"});
  });
}

std::string OneNewAttributeOnEachElement(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) { return Join({"<a ", ShortName(i), "=''/>"}); });
}

std::string DeepNesting(std::size_t bytes) {
  std::string text(kOpen);
  const std::size_t depth = bytes / 7;
  for (std::size_t i = 0; i < depth; ++i) text += "<a>";
  for (std::size_t i = 0; i < depth; ++i) text += "</a>";
  return text += kClose;
}

std::string DeepNestingOfNewNames(std::size_t bytes) {
  std::string text(kOpen);
  const std::size_t depth = bytes / 12;
  for (std::size_t i = 0; i < depth; ++i) text += Join({"<", ShortName(i), ">"});
  for (std::size_t i = depth; i > 0; --i) text += Join({"</", ShortName(i - 1), ">"});
  return text += kClose;
}

std::string DeepNestingUnclosed(std::size_t bytes) { return Repeat(bytes, kOpen, "<a>", ""); }

std::string DeepNestingOfDataFields(std::size_t bytes) {
  std::string text(kOpen);
  constexpr std::string_view kStart = "<DataField name='x' dataType='double' optype='continuous'>";
  constexpr std::string_view kEnd = "</DataField>";
  const std::size_t depth = bytes / (kStart.size() + kEnd.size());
  for (std::size_t i = 0; i < depth; ++i) text += kStart;
  for (std::size_t i = 0; i < depth; ++i) text += kEnd;
  return text += kClose;
}

std::string Siblings(std::size_t bytes) { return InDictionary(bytes, "<a/>"); }

std::string SiblingsOfNewNames(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) { return Join({"<", ShortName(i), "/>"}); });
}

std::string SiblingsOfCollidingNames(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) { return Join({"<", CollidingName(i), "/>"}); });
}

std::string CollidingAttributesOnOneElement(std::size_t bytes) {
  return Fill(bytes, "<PMML><DataDictionary><a", "/></DataDictionary></PMML>", [](std::size_t i) {
    return Join({" ", CollidingName(i), "=''"});
  });
}

// The text, UTF-8 of at most three bytes a character, as UTF-16 with the high byte first.
std::string AsUtf16(const std::string& text) {
  std::string wide = "\xFE\xFF";
  unsigned unit = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool continues = (byte & 0xC0U) == 0x80U;
    unit = continues ? (unit << 6U) | (byte & 0x3FU) : byte < 0x80U ? byte : byte & (byte < 0xE0U ? 0x1FU : 0x0FU);
    const bool last = i + 1 == text.size() || (static_cast<unsigned char>(text[i + 1]) & 0xC0U) != 0x80U;
    if (last) wide += {static_cast<char>(unit >> 8U), static_cast<char>(unit & 0xFFU)};
  }
  return wide;
}

std::string CollidingAttributesInUtf16(std::size_t bytes) {
  return AsUtf16(CollidingAttributesOnOneElement(bytes * 4 / 5));
}

std::string OneCollidingAttributeOnEachElement(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) { return Join({"<a ", CollidingName(i), "=''/>"}); });
}

std::string LongElementName(std::size_t bytes) {
  const std::string name(bytes / 2, 'n');
  return Join({kOpen, "<", name, "></", name, ">", kClose});
}

std::string LongElementNames(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) {
    return Join({"<", std::string(1000, 'n'), ShortName(i), "/>"});
  });
}

std::string LongAttributeName(std::size_t bytes) {
  return Join({kOpen, "<a ", std::string(bytes, 'n'), "=''/>", kClose});
}

std::string LongAttributeNames(std::size_t bytes) {
  return Fill(bytes, "<PMML><DataDictionary><a", "/></DataDictionary></PMML>", [](std::size_t i) {
    return Join({" ", std::string(100, 'n'), ShortName(i), "=''"});
  });
}

std::string PrefixesOnOneElement(std::size_t bytes) {
  return Fill(bytes, "<PMML><DataDictionary><a", "/></DataDictionary></PMML>", [](std::size_t i) {
    return Join({" xmlns:", ShortName(i), "='u'"});
  });
}

std::string PrefixesOnSiblings(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) {
    const std::string prefix = ShortName(i);
    return Join({"<", prefix, ":a xmlns:", prefix, "='u'/>"});
  });
}

std::string PrefixesOnNestedElements(std::size_t bytes) {
  std::string text(kOpen);
  const std::size_t depth = bytes / 30;
  for (std::size_t i = 0; i < depth; ++i) text += Join({"<", ShortName(i), ":a xmlns:", ShortName(i), "='u'>"});
  for (std::size_t i = depth; i > 0; --i) text += Join({"</", ShortName(i - 1), ":a>"});
  return text += kClose;
}

std::string Colons(std::size_t bytes) { return Join({kOpen, "<a", std::string(bytes, ':'), "/>", kClose}); }

std::string CharacterReferencesInText(std::size_t bytes) { return InDictionary(bytes, "&#65;"); }
std::string NamedReferencesInText(std::size_t bytes) { return InDictionary(bytes, "&lt;"); }
std::string CharacterReferencesInAttribute(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary><a b='", "&#65;", "'/></DataDictionary></PMML>");
}
std::string NamedReferencesInAttribute(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary><a b='", "&lt;", "'/></DataDictionary></PMML>");
}
std::string LongCharacterReference(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary>&#", "0", "65;</DataDictionary></PMML>");
}

std::string HugeAttribute(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary><a b='", "x", "'/></DataDictionary></PMML>");
}
std::string HugeText(std::size_t bytes) { return InDictionary(bytes, "x"); }
std::string HugeTextOfLines(std::size_t bytes) { return InDictionary(bytes, "\r\n"); }
std::string HugeTextOfBrackets(std::size_t bytes) { return InDictionary(bytes, "]"); }
std::string HugeComment(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary><!--", "x", "--></DataDictionary></PMML>");
}
std::string HugeInstruction(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary><?a ", "?", "?></DataDictionary></PMML>");
}
std::string HugeSection(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary><![CDATA[", "]", "]]></DataDictionary></PMML>");
}
std::string HugeTextOfWideCharacters(std::size_t bytes) { return InDictionary(bytes, "\xF0\x9F\x98\x80"); }

std::string Comments(std::size_t bytes) { return InDictionary(bytes, "<!---->"); }
std::string Instructions(std::size_t bytes) { return InDictionary(bytes, "<?a?>"); }
std::string InstructionsOfNewNames(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) { return Join({"<?p", ShortName(i), "?>"}); });
}
std::string InstructionsOfCollidingNames(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) { return Join({"<?", CollidingName(i), "?>"}); });
}
std::string Sections(std::size_t bytes) { return InDictionary(bytes, "<![CDATA[]]>"); }
std::string SectionsBetweenTexts(std::size_t bytes) { return InDictionary(bytes, "x<![CDATA[y]]>"); }
std::string CommentsBeforeTheRoot(std::size_t bytes) {
  return Repeat(bytes, "", "<!---->", "<PMML><DataDictionary/></PMML>");
}
std::string CommentsBehindTheRoot(std::size_t bytes) {
  return Repeat(bytes, "<PMML><DataDictionary/></PMML>", "<!---->", "");
}
std::string ShortTextsBetweenElements(std::size_t bytes) { return InDictionary(bytes, "x<a/>"); }
std::string Garbage(std::size_t bytes) { return std::string(bytes, '\xFF'); }
std::string Blanks(std::size_t bytes) { return std::string(bytes, ' '); }

constexpr std::string_view kField = "<PMML><DataDictionary><DataField name='x' dataType='double' optype='categorical'>";
constexpr std::string_view kFieldEnd = "</DataField></DataDictionary></PMML>";

std::string RefusedNumbers(std::size_t bytes) { return Repeat(bytes, kField, "<Value value='x'/>", kFieldEnd); }
std::string RefusedLongNumbers(std::size_t bytes) {
  return Fill(bytes, kField, kFieldEnd, [](std::size_t) {
    return Join({"<Value value='", std::string(10000, '1'), "x'/>"});
  });
}
std::string LongNumber(std::size_t bytes) {
  return Repeat(bytes,
                "<PMML><DataDictionary><DataField name='x' dataType='double' optype='categorical'><Value value='", "1",
                "'/></DataField></DataDictionary></PMML>");
}
std::string LongFraction(std::size_t bytes) {
  return Repeat(bytes,
                "<PMML><DataDictionary><DataField name='x' dataType='double' optype='categorical'><Value value='0.",
                "1", "'/></DataField></DataDictionary></PMML>");
}
std::string LongExponent(std::size_t bytes) {
  return Repeat(bytes,
                "<PMML><DataDictionary><DataField name='x' dataType='double' optype='categorical'><Value value='1e",
                "0", "1'/></DataField></DataDictionary></PMML>");
}
std::string LongBlankNumber(std::size_t bytes) {
  return Repeat(bytes,
                "<PMML><DataDictionary><DataField name='x' dataType='double' optype='categorical'><Value value='", " ",
                "1'/></DataField></DataDictionary></PMML>");
}
std::string InfiniteNumbers(std::size_t bytes) { return Repeat(bytes, kField, "<Value value='1e999'/>", kFieldEnd); }
std::string PlainNumbers(std::size_t bytes) { return Repeat(bytes, kField, "<Value value='1'/>", kFieldEnd); }
std::string InvalidRanges(std::size_t bytes) {
  return Repeat(bytes, kField, "<Extension name='invalidRangeLower' value='1e'/>", kFieldEnd);
}

std::string Fields(std::size_t bytes) {
  return Fill(bytes, kOpen, kClose, [](std::size_t i) {
    return Join({"<DataField name='", ShortName(i), "' dataType='double' optype='continuous'/>"});
  });
}

std::string UnknownDictionariesBeforeTheRightOne(std::size_t bytes) {
  return Repeat(bytes, "<PMML>", "<DataDictionar/>", "<DataDictionary/></PMML>");
}

// Every field is discretised, in the opposite order: a search that starts anew for each field is quadratic.
std::string BinsInReverse(std::size_t bytes) {
  constexpr std::size_t kEach = 175;
  const std::size_t count = bytes / kEach;
  std::string text(kOpen);
  for (std::size_t i = 0; i < count; ++i)
    text += Join({"<DataField name='", ShortName(i), "' dataType='double' optype='continuous'/>"});
  text += "</DataDictionary><TransformationDictionary>";
  for (std::size_t i = count; i > 0; --i)
    text += Join({"<DerivedField><Discretize field='", ShortName(i - 1),
                  "'><DiscretizeBin><Interval rightMargin='1'/></DiscretizeBin></Discretize></DerivedField>"});
  return text += "</TransformationDictionary></PMML>";
}

// Many derived fields that discretise nothing stand before the one that counts.
std::string UselessDerivedFields(std::size_t bytes) {
  std::string text(kOpen);
  for (std::size_t i = 0; text.size() < bytes / 3; ++i)
    text += Join({"<DataField name='", ShortName(i), "' dataType='double' optype='continuous'/>"});
  text += "</DataDictionary><TransformationDictionary>";
  while (text.size() < bytes - 100) text += "<DerivedField/>";
  text += "<DerivedField><Discretize field='a'/></DerivedField>";
  return text += "</TransformationDictionary></PMML>";
}

}  // namespace

const std::vector<HostileShape>& HostileShapes() {
  static const std::vector<HostileShape> shapes = {
      {"attributes on one element", AttributesOnOneElement},
      {"attributes on one DataField", AttributesOnDataField},
      {"attributes on one element, the last a duplicate", DuplicateAttributeAtTheEnd},
      {"150 attributes on each of many elements", AttributesOnManyElements},
      {"one new attribute on each of many elements", OneNewAttributeOnEachElement},
      {"deep nesting", DeepNesting},
      {"deep nesting of new names", DeepNestingOfNewNames},
      {"deep nesting, never closed", DeepNestingUnclosed},
      {"deep nesting of DataFields", DeepNestingOfDataFields},
      {"siblings", Siblings},
      {"siblings of new names", SiblingsOfNewNames},
      {"siblings of new names with one hash", SiblingsOfCollidingNames},
      {"attributes with one hash on one element", CollidingAttributesOnOneElement},
      {"attributes with one hash on one element, UTF-16", CollidingAttributesInUtf16},
      {"one new attribute with one hash on each of many elements", OneCollidingAttributeOnEachElement},
      {"one long element name", LongElementName},
      {"many element names of 1,000 characters", LongElementNames},
      {"one long attribute name", LongAttributeName},
      {"attribute names of 100 characters on one element", LongAttributeNames},
      {"prefix declarations on one element", PrefixesOnOneElement},
      {"new prefixes on siblings", PrefixesOnSiblings},
      {"new prefixes on nested elements", PrefixesOnNestedElements},
      {"a name of colons", Colons},
      {"character references in text", CharacterReferencesInText},
      {"named references in text", NamedReferencesInText},
      {"character references in one attribute", CharacterReferencesInAttribute},
      {"named references in one attribute", NamedReferencesInAttribute},
      {"one long character reference", LongCharacterReference},
      {"one huge attribute", HugeAttribute},
      {"huge text", HugeText},
      {"huge text of CR LF", HugeTextOfLines},
      {"huge text of closing brackets", HugeTextOfBrackets},
      {"huge text of four-byte characters", HugeTextOfWideCharacters},
      {"huge comment", HugeComment},
      {"huge processing instruction", HugeInstruction},
      {"huge CDATA section", HugeSection},
      {"comments", Comments},
      {"comments before the root", CommentsBeforeTheRoot},
      {"comments behind the root", CommentsBehindTheRoot},
      {"processing instructions", Instructions},
      {"processing instructions of new names", InstructionsOfNewNames},
      {"processing instructions of new names with one hash", InstructionsOfCollidingNames},
      {"empty CDATA sections", Sections},
      {"CDATA sections between texts", SectionsBetweenTexts},
      {"short texts between elements", ShortTextsBetweenElements},
      {"bytes that are no XML", Garbage},
      {"blanks", Blanks},
      {"refused numbers", RefusedNumbers},
      {"refused numbers of 10,000 digits", RefusedLongNumbers},
      {"one long number", LongNumber},
      {"one long fraction", LongFraction},
      {"one long exponent", LongExponent},
      {"one number behind many blanks", LongBlankNumber},
      {"infinite numbers", InfiniteNumbers},
      {"plain numbers in one field", PlainNumbers},
      {"invalid ranges in one field", InvalidRanges},
      {"continuous fields", Fields},
      {"children before the data dictionary", UnknownDictionariesBeforeTheRightOne},
      {"bins for every field, in reverse", BinsInReverse},
      {"derived fields without bins", UselessDerivedFields},
  };
  return shapes;
}

}  // namespace rqxml_bench
