#include "zolt/algexpr/cas_session.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/oss/byte_format.h"
#include "zolt/oss/castable_id.h"
#include "zolt/oss/object_stream.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// The bytes of a node without text and children.
constexpr unsigned long min_record_size = oss::byte_format::start_aggregate_size +
                                          oss::byte_format::int16_size + oss::byte_format::empty_string_size +
                                          oss::byte_format::uint32_size +
                                          oss::byte_format::end_aggregate_size;

// Any stream can make nodes by id as soon as the component is loaded.
struct RegistrationS {
  RegistrationS() { Node4C::registerSerializable(); }
} const registration;

}  // namespace

oss::SerializableABC* Node4C::create() { return new Node4C; }

void Node4C::registerSerializable() {
  [[maybe_unused]] static bool const registered =
      (SerializableABC::registerSerializable(TheCastableId, create), true);
}

char16_t const* Node4C::qCastableId() const { return TheCastableId; }

oss::SerializableABC const* Node4C::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, TheCastableId) ? this : SerializableABC::lookUpBase(id);
}

void Node4C::writeObject(PointerTC<oss::ObjectOutputStreamABC>& out) const {
  out->writeStartAggregate(oss::AGGREGATE_RECORD);
  out->writeMember(static_cast<short>(type_));
  out->writeMember(type_ == NODE4_OPERATOR && op_ ? op_->getStoredName() : text_);
  out->writeMember(static_cast<unsigned long>(children_.size()));
  for (Node4C const* child : children_) child->writeObject(out);
  out->writeEndAggregate();
}

oss::bytestring writeBytes(Node4C const& node) {
  auto* const bytes = new oss::BinaryStringOutputStreamC;
  PointerTC<oss::ByteOutputStreamABC> const held(bytes);
  PointerTC<oss::ObjectOutputStreamABC> out(new oss::BinaryOutputStreamC(held));
  node.writeObject(out);
  bytes->flush();
  return bytes->getString();
}

bool Node4C::readObject(PointerTC<oss::ObjectInputStreamABC>& in) { return readNode(in, 0); }

// `levelsAbove` bounds the recursion: there is one operator or exponent between two rows, so a row takes two
// levels.
bool Node4C::readNode(PointerTC<oss::ObjectInputStreamABC>& in, unsigned long levelsAbove) {
  short type = 0;
  if (!in->readStartAggregate(oss::AGGREGATE_RECORD) || !in->readMember(type)) return false;
  type_ = type;

  unsigned long count = 0;
  if (!in->readMember(text_) || !in->readMember(count)) return false;
  if (count > in->bytesLeft() / min_record_size) return false;

  bool ok = type >= NODE4_ROOT && type <= NODE4_AUTO_CLOSE && levelsAbove < 2 * limits::max_nested_rows;
  if (ok && type_ == NODE4_OPERATOR) {
    auto const& engine = algexpr::CASSessionBC::getSession()->getEngine();
    op_ = OperatorListRepositoryC::lookup(engine)->lookupStored(text_);
    ok = static_cast<bool>(op_);
    if (ok) text_ = op_->getName();
  }
  children_.resize(count);
  for (unsigned long i = 0; i < count; ++i) {
    adopt(i, new Node4C);
    if (ok) ok = child(i)->readNode(in, levelsAbove + 1);
  }
  return ok && in->readEndAggregate();
}

}  // namespace zolt::math::ved
