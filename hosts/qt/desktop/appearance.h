#pragma once

#include <QString>

namespace zolt::desktop {

/// The colours of the program.
enum class Appearance { System, Light, Dark };

/// Applies the colours to the application. The system's own colours are those that it started with.
void applyAppearance(Appearance appearance);

/// The names for settings and the command line: "system", "light", "dark".
QString appearanceName(Appearance appearance);
Appearance appearanceOf(QString const& name);

}  // namespace zolt::desktop
