#include "lumiscope_widget_plugin.h"

#include <QIcon>

#include "control/control_picture.h"
#include "control/lumiscope.h"

LumiscopeWidgetPlugin::LumiscopeWidgetPlugin(QObject* parent) : QObject(parent) {}

// The class with its namespace: forms then create control::Lumiscope.
QString LumiscopeWidgetPlugin::name() const { return QStringLiteral("control::Lumiscope"); }

QString LumiscopeWidgetPlugin::group() const { return QStringLiteral("Lumiscope"); }

QString LumiscopeWidgetPlugin::toolTip() const { return QStringLiteral("Lumiscope spectrum viewer control"); }

QString LumiscopeWidgetPlugin::whatsThis() const {
    return QStringLiteral(
        "The Lumiscope control: double-clicked, or through DoSomething, it opens the spectrum viewer; "
        "SelectADevice then makes a row of the viewer's item grid the chosen device.");
}

// As a host includes it from the installed tree (<prefix>/include/lumiscope).
QString LumiscopeWidgetPlugin::includeFile() const { return QStringLiteral("control/lumiscope.h"); }

// The picture the control itself shows.
QIcon LumiscopeWidgetPlugin::icon() const { return QIcon(control::ControlPicture()); }

bool LumiscopeWidgetPlugin::isContainer() const { return false; }

QWidget* LumiscopeWidgetPlugin::createWidget(QWidget* parent) { return new control::Lumiscope(parent); }

bool LumiscopeWidgetPlugin::isInitialized() const { return initialized_; }

void LumiscopeWidgetPlugin::initialize(QDesignerFormEditorInterface*) { initialized_ = true; }

QString LumiscopeWidgetPlugin::domXml() const {
    return QStringLiteral(
        "<ui language=\"c++\">\n"
        " <widget class=\"control::Lumiscope\" name=\"scope\">\n"
        "  <property name=\"geometry\"><rect><x>0</x><y>0</y><width>160</width><height>120</height></rect></property>\n"
        " </widget>\n"
        "</ui>\n");
}
