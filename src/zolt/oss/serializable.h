#pragma once

#include <memory>

#include "zolt/oss/object_stream.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::oss {

/// An object that writes itself to an object stream and reads itself back into a fresh instance.
class SerializableABC {
 public:
  /// Makes a default instance, owned by the caller; null when there is no memory for it.
  using FactoryF = SerializableABC* (*)();

  virtual ~SerializableABC();
  /// This object when `id` names its class or one of its bases, else null.
  virtual SerializableABC const* lookUpBase(char16_t const* id) const;
  virtual char16_t const* qCastableId() const = 0;
  /// Writes one record; errors are kept by the stream.
  virtual void writeObject(PointerTC<ObjectOutputStreamABC>& out) const = 0;
  /// Reads one record into this fresh object. False leaves an object that can be destroyed, nothing more.
  [[nodiscard]] virtual bool readObject(PointerTC<ObjectInputStreamABC>& in) = 0;

  static char16_t const* getCastableId();

  /// Makes `factory` the maker of objects of class `id`; the last registration counts.
  static void registerSerializable(char16_t const* id, FactoryF factory);
  /// A default instance of the class registered as `id`; null when there is none.
  [[nodiscard]] static std::unique_ptr<SerializableABC> createById(wstring const& id);
};

}  // namespace zolt::oss
