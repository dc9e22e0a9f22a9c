#pragma once

#include <cstddef>

#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"

namespace zolt::oss {

/// What an aggregate holds; the number is stored.
enum AggregateKindE {
  AGGREGATE_RECORD = 2  ///< the members of one object
};

/// What both directions share: an error that stays once it is set.
class ObjectStreamABC : public RefCountedBC {
 public:
  [[nodiscard]] bool isError() const { return error_; }
  /// Marks the stream as failed: what a reader calls when the members read make no sense together.
  void setError() { error_ = true; }

 private:
  bool error_ = false;
};

/// Takes the members of objects in order. After the first error nothing more is written.
class ObjectOutputStreamABC : public ObjectStreamABC {
 public:
  virtual void writeStartAggregate(short kind) = 0;
  virtual void writeMember(short value) = 0;
  /// At most 2^32 - 1 characters; longer text is an error.
  virtual void writeMember(wstring const& value) = 0;
  /// At most 32 bits on every platform; a larger value is an error.
  virtual void writeMember(unsigned long value) = 0;
  virtual void writeEndAggregate() = 0;
};

/// Gives the members back in the order written. Every operation answers false, sets the error and leaves its
/// argument alone when the stream holds something else next, too few bytes, or has failed before.
class ObjectInputStreamABC : public ObjectStreamABC {
 public:
  /// Succeeds only on the start of an aggregate of this kind.
  [[nodiscard]] virtual bool readStartAggregate(short kind) = 0;
  [[nodiscard]] virtual bool readMember(short& value) = 0;
  [[nodiscard]] virtual bool readMember(wstring& value) = 0;
  [[nodiscard]] virtual bool readMember(unsigned long& value) = 0;
  [[nodiscard]] virtual bool readEndAggregate() = 0;

  /// How many encoded bytes are left, 0 after an error. A reader checks a count against it, with the sizes in
  /// `byte_format.h`, before it allocates for that many items.
  virtual std::size_t bytesLeft() const = 0;
};

}  // namespace zolt::oss
