// The plot demo's window: the spectrum plot with a chooser above it, the two
// item trend plots side by side and the machine overview below.
#pragma once

#include <QWidget>
#include <memory>

#include "spectrum_feed.h"
#include "trend_feed.h"

class QComboBox;

namespace demo {

class DemoWindow : public QWidget {
    Q_OBJECT
public:
    explicit DemoWindow(QWidget* parent = nullptr);
    ~DemoWindow() override;
    // Chooser positions: 0 orbit horizontal, 1 orbit vertical, 2 fill pattern, 3 losses.
    void ChooseSpectrum(int index);

private:
    QComboBox* chooser_ = nullptr;
    ui::PlexPlot* spectrum_ = nullptr;
    ui::PlexPlot* selected_ = nullptr;
    ui::PlexPlot* extra_ = nullptr;
    ui::PlexPlot* accelerator_ = nullptr;
    std::unique_ptr<SpectrumFeed> spectrumFeed_;
    std::unique_ptr<TrendFeed> selectedFeed_, extraFeed_, acceleratorFeed_;
};

}  // namespace demo
