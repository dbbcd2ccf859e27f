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

#include <QWidget>
#include <cstdint>
#include <string>

class QLabel;

namespace control {

class Lumiscope : public QWidget {
    Q_OBJECT

public:
    explicit Lumiscope(QWidget* parent = nullptr);

    // --- public members, in the order of the control's interface ---

    // Data rows of "HistoryConfig.csv" in the application's directory; 0 when
    // it is missing. Throws catalogue::RuntimeError past 32767 rows.
    int16_t TestHistoryConfigLoad();
    // Placeholder: always 0; assignments are ignored.
    int16_t SelectView() const;
    void SelectView(int16_t value);
    // Asks the server "/context/server" for its property list (time-out
    // 1000 ms) and drops the answer. The last two arguments are not used.
    void SelectAProp(const std::string& context, const std::string& server, const std::string& property,
                     int32_t unused1 = 0, int32_t unused2 = 0);
    void AddAProp(const std::string& context, const std::string& server, const std::string& property,
                  int32_t unused1 = 0, int32_t unused2 = 0);
    // Placeholder: always ""; assignments are ignored.
    std::string ViewerCaption() const;
    void ViewerCaption(const std::string& caption);
    // Settles the program and configuration paths and shows the viewer, or
    // tells the operator that the configuration files are missing.
    void DoSomething();
    void OpenViewer();
    // Reads InfoName and InfoMode from InfoPath + "HistoryInfo.csv". Throws
    // catalogue::RuntimeError for a malformed data line (the members then keep
    // "" and 2).
    void OpenInfoFile();
    // -1 once the viewer has been opened, else 0 (not a device number).
    int16_t SelectADevice() const;
    // Makes a row of the viewer's item grid the chosen device, reloading the
    // window first if it was closed; ignored until the viewer was opened.
    void SelectADevice(int32_t row);

    std::string InfoName;
    int16_t InfoMode = 2;
    std::string InfoPath;  // no operation sets it: the file is looked for under its bare name

    // --- the control's own parts ---
    QLabel* ImageColumn = nullptr;
    QLabel* LABEL_main = nullptr;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ImageColumn_DblClick();
    void LABEL_main_DblClick();
};

}  // namespace control
