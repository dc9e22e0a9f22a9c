#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

namespace zolt::designer {

/// Makes `FormulaEdit` one of the widgets of Qt Designer and of `QUiLoader`.
class FormulaEditPlugin final : public QObject, public QDesignerCustomWidgetInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QDesignerCustomWidgetInterface_iid)
  Q_INTERFACES(QDesignerCustomWidgetInterface)

 public:
  ~FormulaEditPlugin() override;

  QString name() const override;
  QString group() const override;
  QString toolTip() const override;
  QString whatsThis() const override;
  QString includeFile() const override;
  QIcon icon() const override;
  bool isContainer() const override { return false; }
  QWidget* createWidget(QWidget* parent) override;
  QString domXml() const override;
};

}  // namespace zolt::designer
