#include "hosts/qt/designer/formula_edit_plugin.h"

#include <QIcon>
#include <QPixmap>

#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_fonts.h"
#include "zolt/qt/formula_picture.h"

namespace zolt::designer {

FormulaEditPlugin::~FormulaEditPlugin() = default;

QString FormulaEditPlugin::name() const { return QStringLiteral("zolt::qt::FormulaEdit"); }

QString FormulaEditPlugin::group() const { return QStringLiteral("Input Widgets"); }

QString FormulaEditPlugin::toolTip() const { return tr("A field for one formula in its textbook form"); }

QString FormulaEditPlugin::whatsThis() const { return {}; }

QString FormulaEditPlugin::includeFile() const { return QStringLiteral("zolt/qt/formula_edit.h"); }

QIcon FormulaEditPlugin::icon() const {
  constexpr qreal icon_zoom = 2;
  qt::FormulaEdit const provider;  // of the operators
  QString error;
  auto const fonts = qt::FormulaFonts::share(error);
  if (!fonts) return {};
  qt::FormulaPicture picture(fonts);
  if (!picture.setPrefix(u"sqrt(x)")) return {};
  return QIcon(QPixmap::fromImage(picture.toImage(icon_zoom, 0, Qt::black, Qt::transparent)));
}

QWidget* FormulaEditPlugin::createWidget(QWidget* parent) { return new qt::FormulaEdit(parent); }

QString FormulaEditPlugin::domXml() const {
  return QStringLiteral("<ui language='c++'><widget class='zolt::qt::FormulaEdit' name='formulaEdit'/></ui>");
}

}  // namespace zolt::designer
