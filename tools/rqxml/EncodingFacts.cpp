#include "EncodingFacts.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "Encoding.h"

namespace rqtool {

namespace {

std::string StandardName(const std::string& name, const char* standard) {
  UErrorCode error = U_ZERO_ERROR;
  const char* const found = ucnv_getStandardName(name.c_str(), standard, &error);
  return U_SUCCESS(error) && found != nullptr ? found : "";
}

std::vector<std::string> Aliases(const std::string& name) {
  std::vector<std::string> aliases;
  UErrorCode error = U_ZERO_ERROR;
  const std::uint16_t count = ucnv_countAliases(name.c_str(), &error);
  for (std::uint16_t i = 0; U_SUCCESS(error) && i < count; ++i) {
    const char* const alias = ucnv_getAlias(name.c_str(), i, &error);
    if (alias != nullptr && alias != name) aliases.emplace_back(alias);
  }
  return aliases;
}

std::string TypeWord(UConverterType type) {
  switch (type) {
    case UCNV_SBCS:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII:
      return "single-byte";
    case UCNV_DBCS:
      return "double-byte";
    case UCNV_MBCS:
      return "multi-byte";
    case UCNV_UTF7:
    case UCNV_UTF8:
    case UCNV_UTF16:
    case UCNV_UTF16_BigEndian:
    case UCNV_UTF16_LittleEndian:
    case UCNV_UTF32:
    case UCNV_UTF32_BigEndian:
    case UCNV_UTF32_LittleEndian:
    case UCNV_CESU8:
    case UCNV_SCSU:
    case UCNV_BOCU1:
    case UCNV_IMAP_MAILBOX:
      return "Unicode";
    default:
      return "stateful";
  }
}

std::string Substitute(const UConverter& converter) {
  std::array<char, 16> bytes{};
  auto length = static_cast<std::int8_t>(bytes.size());
  UErrorCode error = U_ZERO_ERROR;
  ucnv_getSubstChars(&converter, bytes.data(), &length, &error);
  std::string digits;
  for (std::int8_t i = 0; U_SUCCESS(error) && i < length; ++i) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]));
    digits += pair;
  }
  return digits;
}

Json TextOrNull(const std::string& text) { return text.empty() ? Json(nullptr) : Json(text); }

}  // namespace

EncodingFacts FactsOf(const UConverter& converter) {
  EncodingFacts facts;
  facts.name = CanonicalName(converter);
  facts.iana = StandardName(facts.name, "IANA");
  facts.mime = StandardName(facts.name, "MIME");
  facts.aliases = Aliases(facts.name);
  facts.type = TypeWord(ucnv_getType(&converter));
  facts.minBytes = ucnv_getMinCharSize(&converter);
  facts.maxBytes = ucnv_getMaxCharSize(&converter);
  facts.substitute = Substitute(converter);
  return facts;
}

Json FactsToJson(const EncodingFacts& facts) {
  return {{"name", facts.name},
          {"iana", TextOrNull(facts.iana)},
          {"mime", TextOrNull(facts.mime)},
          {"type", facts.type},
          {"minBytes", facts.minBytes},
          {"maxBytesOfUnit", facts.maxBytes},
          {"substitute", TextOrNull(facts.substitute)},
          {"aliases", facts.aliases}};
}

}  // namespace rqtool
