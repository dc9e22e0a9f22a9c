#pragma once

#include <QIcon>
#include <QString>
#include <memory>

namespace zolt::qt {
class FormulaFonts;
}

namespace zolt::desktop {

// Icons that are drawn in the colours of their background, light or dark, and are sharp at any size.

/// The icon of a command of the program, such as "open". It is null for a name without an icon.
QIcon commandIcon(QString const& name);

/// The icon of a formula given in tree notation. `fonts` must not be null.
QIcon formulaIcon(QString const& tree, std::shared_ptr<qt::FormulaFonts> fonts);

/// The program's own icon.
QIcon programIcon(std::shared_ptr<qt::FormulaFonts> fonts);

}  // namespace zolt::desktop
