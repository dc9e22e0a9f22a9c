// The plugin as Qt Designer loads and uses it.

#include <QIcon>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QTest>
#include <QWidget>
#include <memory>

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

class DesignerTest final : public QObject {
  Q_OBJECT

 private slots:
  void formsHaveFormulas() {
    QPluginLoader loader(qEnvironmentVariable("ZOLT_DESIGNER_PLUGIN"));
    auto* const plugin = qobject_cast<QDesignerCustomWidgetInterface*>(loader.instance());
    QVERIFY2(plugin, qPrintable(loader.errorString()));
    QVERIFY(plugin->domXml().contains(plugin->name()));
    QVERIFY(!plugin->icon().isNull());
    QWidget form;
    QWidget* const edit = plugin->createWidget(&form);
    QCOMPARE(edit->parentWidget(), &form);
    QCOMPARE(plugin->name(), QLatin1String(edit->metaObject()->className()));
    // What the editor of properties offers can be set.
    for (auto const& [name, value] : {std::pair{"expression", QVariant(QStringLiteral("(a+b)/2"))},
                                      {"alignment", QVariant::fromValue<Qt::Alignment>(Qt::AlignRight)},
                                      {"placeholderText", QStringLiteral("f")},
                                      {"clearButtonEnabled", true},
                                      {"zoom", 2.5}}) {
      QVERIFY2(edit->setProperty(name, value) && edit->property(name) == value, name);
    }
    form.show();
    QTest::keyClicks(edit, "+c");
    QCOMPARE(edit->property("expression").toString(), QStringLiteral("(a+b)/2+c"));
  }
};

QTEST_MAIN(DesignerTest)
#include "designer_test.moc"
