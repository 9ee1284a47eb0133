#ifndef RQXML_BENCH_ENCODING_TEXTS_H
#define RQXML_BENCH_ENCODING_TEXTS_H

#include <array>
#include <cstddef>
#include <string>

namespace rqxml_bench {

struct Script {
  const char* name;
  const char* sample;  // UTF-8, repeated as often as needed
};

/// The ideographs are in both double-byte pages, the Latin letters in the single-byte page; the double-byte pages lack
/// some of these, and all pages lack the emoji.
constexpr std::array<Script, 4> kScripts = {
    {{"ASCII", "customer_income_2026, as it was asked for in the yearly survey of all households. "},
     {"Latin", "Höhe_der_größten_Häuser, où l'été dernier à Málaga; größter Abstand zur Straße in München. "},
     {"CJK", "人口年間中国地区合計平均数値分布東西南北一二三四五六七八九十百千万"},
     {"emoji", "😀🎉🚀🌍🔥👍😂🙏💡📈📊🧪"}}};

/// The script's sample, repeated, up to `bytes` bytes of whole characters.
inline std::string TextOf(const Script& script, std::size_t bytes) {
  std::string text;
  while (text.size() <= bytes) text += script.sample;
  while ((static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U) --bytes;
  text.resize(bytes);
  return text;
}

}  // namespace rqxml_bench

#endif
