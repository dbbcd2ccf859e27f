// The Lumiscope control in Qt Designer's widget box: forms can hold it, its
// properties are edited in the property editor, and its slots (DoSomething,
// OpenViewer, SelectAProp, ...) are offered in the signal/slot editor.
#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

class LumiscopeWidgetPlugin : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetInterface")
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    explicit LumiscopeWidgetPlugin(QObject* parent = nullptr);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QWidget* createWidget(QWidget* parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface* core) override;
    QString domXml() const override;

private:
    bool initialized_ = false;
};
