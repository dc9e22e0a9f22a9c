#include "zolt/mathjson/mathjson.h"

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "zolt/mathjson/detail/json_reader.h"
#include "zolt/mathjson/detail/json_writer.h"
#include "zolt/oss/code_point.h"
#include "zolt/oss/utf8.h"

namespace zolt::mathjson {

using namespace math::common;

namespace {

/// Hands what the parser of the JSON library finds to a reader.
class EventsC {
 public:
  using JsonT = nlohmann::json;

  explicit EventsC(detail::JsonReaderC& reader) : reader_(reader) {}

  bool null() { return reader_.takeWord(); }
  bool boolean(bool) { return reader_.takeWord(); }
  bool number_integer(JsonT::number_integer_t) { return reader_.takeNumber(); }
  bool number_unsigned(JsonT::number_unsigned_t) { return reader_.takeNumber(); }
  bool number_float(JsonT::number_float_t, std::string const&) { return reader_.takeNumber(); }
  bool string(std::string const& value) { return reader_.takeString(oss::fromUtf8(value)); }
  bool binary(JsonT::binary_t const&) { return reader_.takeWord(); }
  bool start_object(std::size_t) { return reader_.beginObject(); }
  bool key(std::string const& key) { return reader_.takeKey(oss::fromUtf8(key)); }
  bool end_object() { return reader_.endObject(); }
  bool start_array(std::size_t) { return reader_.beginArray(); }
  bool end_array() { return reader_.endArray(); }
  bool parse_error(std::size_t, std::string const&, JsonT::exception const&) { return reader_.refuseText(); }

 private:
  detail::JsonReaderC& reader_;
};

/// The place of a character that no JSON text has, or that the parser cannot read; the length when there is
/// none.
std::size_t findBadCharacter(wstring const& text) {
  std::size_t i = 0;
  while (i < text.size()) {
    std::size_t const begin = i;
    char32_t const c = oss::readCodePoint(text, i);
    if (c == 0 || c == detail::not_read || oss::isSurrogate(c)) return begin;
  }
  return i;
}

}  // namespace

PointerTC<AlgebraicExpressionC> fromMathJson(wstring const& text, PointerTC<CASSessionBC> session,
                                             ReadErrorS* error) {
  std::size_t const bad = findBadCharacter(text);
  if (bad < text.size()) {
    unsigned long const place = static_cast<unsigned long>(bad);
    if (error) *error = {READ_ERROR_BAD_CHARACTER, place, place + 1, describe(READ_ERROR_BAD_CHARACTER)};
    return nullptr;
  }
  detail::JsonReaderC reader(text);
  EventsC events(reader);
  if (nlohmann::json::sax_parse(text.begin(), text.end(), &events)) {
    if (auto node = reader.takeNode()) return new AlgebraicExpressionC(std::move(node), std::move(session));
  }
  if (error) *error = reader.crefError();
  return nullptr;
}

wstring toMathJson(AlgebraicExpressionC const& expression) {
  PointerTC<math::algexpr::NodeABC> const node = expression.getNode();
  return node ? detail::JsonWriterC().write(*node) : wstring();
}

}  // namespace zolt::mathjson
