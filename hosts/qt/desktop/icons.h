#pragma once

#include <QIcon>
#include <QString>
#include <memory>

namespace zolt::qt {
class FormulaFonts;
}

namespace zolt::desktop {

// Icons that are drawn in the colours of whatever they stand on, light or dark, sharp at any size.

/// The icon of a command of the program, such as "open"; null for a name without one.
QIcon commandIcon(QString const& name);

/// A formula, given in tree notation, as an icon. `fonts` must not be null.
QIcon formulaIcon(QString const& tree, std::shared_ptr<qt::FormulaFonts> fonts);

/// The program's own icon.
QIcon programIcon(std::shared_ptr<qt::FormulaFonts> fonts);

}  // namespace zolt::desktop
