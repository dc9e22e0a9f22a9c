#include "zolt/oss/ref_counted.h"

namespace zolt::oss {

RefCountedBC::~RefCountedBC() = default;

}  // namespace zolt::oss
