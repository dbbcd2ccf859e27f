#include "wide_config.h"

#include <QDir>
#include <QFile>

namespace viewer_bench {
namespace {

QByteArray WideFillPattern() {
    QByteArray text =
        "CONTEXT,SERVER,PROPERTY,SIZE,HSTSERVER,HSTPROPERTY,ARCSERVER,ARCPROPERTY,DESCRIPTION,MAX,MIN,EGU,"
        "APPEND,HIGH,TAG,PROPLINK,PROPSHORT,EXTDEVNAMEDEV,EXTDEVNAMEPROP,EXTRAPROPCOMBOINDEX\r\n";
    for (int part = 1; part <= kWideParts; ++part) {
        const QByteArray p = QByteArray::number(part);
        text += "ORKA,BCMSRV/FILL.P" + p + ",CHARGE," + QByteArray::number(kWidePartSize) + ",/ORKA/BCMHIST,CHARGE.P" +
                p + ".HIST,/ORKA/OKHISTORY,CHARGE.P" + p + ",Bunch fill pattern part " + p + ",100,0,pC," +
                (part == 1 ? "" : "yes") + ",,P" + p + "," + (part == 1 ? "1,Q" : "0,") + ",,,-1\r\n";
    }
    return text;
}

}  // namespace

WideConfig::WideConfig() {
    if (!dir_.isValid()) return;
    const QDir sample(LUMISCOPE_SAMPLE_CONFIG_DIR);
    QDir root(dir_.path());
    if (!root.mkpath("configs")) return;
    for (const QString& name : sample.entryList(QDir::Files))
        if (!QFile::copy(sample.filePath(name), root.filePath("configs/" + name))) return;
    QFile fill(root.filePath("configs/ORKA_FILL.csv"));
    if (!fill.remove() || !fill.open(QIODevice::WriteOnly)) return;
    ok_ = fill.write(WideFillPattern()) > 0;
}

std::string WideConfig::AppPath() const { return dir_.path().toStdString(); }

std::string WideConfig::ConfigDir() const { return dir_.filePath("configs").toStdString() + "/"; }

}  // namespace viewer_bench
