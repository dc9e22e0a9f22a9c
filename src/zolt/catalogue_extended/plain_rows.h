#pragma once

namespace zolt::catalogue_extended {

/// Registers how plain text writes the constructs of this folder: those that it does not write as a call by
/// their own name with their arguments in their order.
void registerPlainRows();

}  // namespace zolt::catalogue_extended
