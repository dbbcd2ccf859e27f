// The viewer control: the one widget a host program places on its window to
// open the spectrum viewer and steer it to a device.
//
//     control::Lumiscope* scope = new control::Lumiscope(hostWindow);
//     scope->DoSomething();        // locate the configuration, show the viewer
//     scope->SelectADevice(12);    // make row 12 of the item grid the device
//
// The control keeps almost no state of its own: the paths and flags it settles
// are the library's shared values (viewer::Library()), which the viewer
// window reads. Several members are placeholders that hosts call; they accept
// anything and change nothing.
#pragma once

#include <QString>
#include <QWidget>
#include <cstdint>
#include <string>

class QLabel;

namespace control {

class Lumiscope : public QWidget {
    Q_OBJECT
    // For form editors and for hosts that set properties by name; each reads
    // and writes through the members below.
    Q_PROPERTY(int SelectView READ SelectView WRITE SelectView)
    Q_PROPERTY(QString ViewerCaption READ ViewerCaptionText WRITE SetViewerCaptionText)
    Q_PROPERTY(QString InfoPath READ InfoPathText WRITE SetInfoPathText)
    Q_PROPERTY(QString InfoName READ InfoNameText)
    Q_PROPERTY(int InfoMode READ InfoModeValue)

public:
    explicit Lumiscope(QWidget* parent = nullptr);

    // --- public members, in the order of the control's interface ---

    // Data rows of "HistoryConfig.csv" in the application's directory; 0 when
    // it is missing. Throws catalogue::RuntimeError past 32767 rows.
    int16_t TestHistoryConfigLoad();
    // Placeholder: always 0; assignments are ignored.
    int16_t SelectView() const;
    void SelectView(int16_t value);
    // The members a host calls on an event are slots, so that form editors
    // offer them for connections.
public slots:
    // Asks the server "/context/server" for its property list (time-out
    // 1000 ms) and drops the answer. The last two arguments are not used.
    void SelectAProp(const std::string& context, const std::string& server, const std::string& property,
                     int32_t unused1 = 0, int32_t unused2 = 0);
    void AddAProp(const std::string& context, const std::string& server, const std::string& property,
                  int32_t unused1 = 0, int32_t unused2 = 0);
public:
    // Placeholder: always ""; assignments are ignored.
    std::string ViewerCaption() const;
    void ViewerCaption(const std::string& caption);
public slots:
    // Settles the program and configuration paths and shows the viewer, or
    // tells the operator that the configuration files are missing.
    void DoSomething();
    void OpenViewer();
    // Reads InfoName and InfoMode from InfoPath + "HistoryInfo.csv". Throws
    // catalogue::RuntimeError for a malformed data line (the members then keep
    // "" and 2).
    void OpenInfoFile();
public:
    // -1 once the viewer has been opened, else 0 (not a device number).
    int16_t SelectADevice() const;
public slots:
    // Makes a row of the viewer's item grid the chosen device, reloading the
    // window first if it was closed; ignored until the viewer was opened.
    void SelectADevice(int32_t row);

public:
    std::string InfoName;
    int16_t InfoMode = 2;
    std::string InfoPath;  // no operation sets it (a host may, as a property): by default the bare name

    // --- the control's own parts ---
    QLabel* ImageColumn = nullptr;
    QLabel* LABEL_main = nullptr;

    // The string members as Qt text, for the properties.
    QString ViewerCaptionText() const { return QString::fromStdString(ViewerCaption()); }
    void SetViewerCaptionText(const QString& caption) { ViewerCaption(caption.toStdString()); }
    QString InfoPathText() const { return QString::fromStdString(InfoPath); }
    void SetInfoPathText(const QString& path) { InfoPath = path.toStdString(); }
    QString InfoNameText() const { return QString::fromStdString(InfoName); }
    int InfoModeValue() const { return InfoMode; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ImageColumn_DblClick();
    void LABEL_main_DblClick();
};

}  // namespace control
