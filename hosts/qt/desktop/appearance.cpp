#include "hosts/qt/desktop/appearance.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace zolt::desktop {

namespace {

struct ShadeS {
  QPalette::ColorRole role;
  QRgb light;
  QRgb dark;
};

constexpr ShadeS shades[] = {
    {QPalette::Window, 0xfff3f4f6, 0xff24262b},      {QPalette::WindowText, 0xff1d2026, 0xffe6e8ec},
    {QPalette::Base, 0xffffffff, 0xff1a1c20},        {QPalette::AlternateBase, 0xfff7f8fa, 0xff202328},
    {QPalette::Text, 0xff16181d, 0xffeceef2},        {QPalette::PlaceholderText, 0xff8a9099, 0xff7d838d},
    {QPalette::Button, 0xffeceef1, 0xff2e3138},      {QPalette::ButtonText, 0xff2a2e36, 0xffd9dce2},
    {QPalette::BrightText, 0xffffffff, 0xffffffff},  {QPalette::Light, 0xffffffff, 0xff3a3e46},
    {QPalette::Midlight, 0xfff8f9fa, 0xff33363d},    {QPalette::Mid, 0xffc3c8d0, 0xff1f2126},
    {QPalette::Dark, 0xffa0a6b0, 0xff17191d},        {QPalette::Shadow, 0xff6b7079, 0xff0c0d0f},
    {QPalette::Highlight, 0xff2f6fd0, 0xff4c8df0},   {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
    {QPalette::Link, 0xff1f5fbf, 0xff7fb0ff},        {QPalette::LinkVisited, 0xff6a4fb0, 0xffb39dff},
    {QPalette::ToolTipBase, 0xffffffff, 0xff33363d}, {QPalette::ToolTipText, 0xff1d2026, 0xffe6e8ec},
};

constexpr ShadeS disabled_shades[] = {
    {QPalette::WindowText, 0xff9aa0a9, 0xff6d727b},
    {QPalette::Text, 0xff9aa0a9, 0xff6d727b},
    {QPalette::ButtonText, 0xffa6acb5, 0xff666b74},
    {QPalette::Highlight, 0xffc3c8d0, 0xff4a4e57},
};

QPalette makePalette(bool dark) {
  QPalette palette;
  for (ShadeS const& shade : shades) palette.setColor(shade.role, QColor(dark ? shade.dark : shade.light));
  for (ShadeS const& shade : disabled_shades) {
    palette.setColor(QPalette::Disabled, shade.role, QColor(dark ? shade.dark : shade.light));
  }
  return palette;
}

}  // namespace

void applyAppearance(Appearance appearance) {
  static QString const system_style = QApplication::style()->name();
  bool const own = appearance != Appearance::System;
  // Fusion is the only style that follows every palette.
  QApplication::setStyle(own ? QStringLiteral("fusion") : system_style);
  // A default palette is the system's.
  QApplication::setPalette(own ? makePalette(appearance == Appearance::Dark) : QPalette());
}

QString appearanceName(Appearance appearance) {
  switch (appearance) {
    case Appearance::Light:
      return QStringLiteral("light");
    case Appearance::Dark:
      return QStringLiteral("dark");
    default:
      return QStringLiteral("system");
  }
}

Appearance appearanceOf(QString const& name) {
  if (name == QLatin1String("light")) return Appearance::Light;
  return name == QLatin1String("dark") ? Appearance::Dark : Appearance::System;
}

}  // namespace zolt::desktop
