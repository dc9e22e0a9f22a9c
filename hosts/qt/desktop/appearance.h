#pragma once

#include <QString>

namespace zolt::desktop {

/// The colours of the program.
enum class Appearance { System, Light, Dark };

/// Makes them the application's. The system's own are those it started with.
void applyAppearance(Appearance appearance);

/// For settings and the command line: "system", "light", "dark".
QString appearanceName(Appearance appearance);
Appearance appearanceOf(QString const& name);

}  // namespace zolt::desktop
