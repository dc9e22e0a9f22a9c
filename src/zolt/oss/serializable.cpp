#include "zolt/oss/serializable.h"

#include <map>

#include "zolt/oss/castable_id.h"

namespace zolt::oss {

namespace {

// Inside a function, because classes register themselves while other files' static objects are being made.
std::map<wstring, SerializableABC::FactoryF>& factories() {
  static std::map<wstring, SerializableABC::FactoryF> map;
  return map;
}

}  // namespace

SerializableABC::~SerializableABC() = default;

char16_t const* SerializableABC::getCastableId() { return u"SerializableABC"; }

SerializableABC const* SerializableABC::lookUpBase(char16_t const* id) const {
  return equalCastableIds(id, SerializableABC::getCastableId()) ? this : nullptr;
}

void SerializableABC::registerSerializable(char16_t const* id, FactoryF factory) {
  factories()[wstring(id)] = factory;
}

std::unique_ptr<SerializableABC> SerializableABC::createById(wstring const& id) {
  auto const found = factories().find(id);
  return std::unique_ptr<SerializableABC>(found == factories().end() ? nullptr : found->second());
}

}  // namespace zolt::oss
