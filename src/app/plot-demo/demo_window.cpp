#include "demo_window.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

#include "vire/queries.h"

namespace demo {
namespace {

// Item colours of the viewer (slots 0..5).
constexpr ui::Colour kItemColours[] = {0x800000, 0x000080, 0x0000C0, 0xFF0000, 0x0000FF, 0x00FF00};

std::vector<SpectrumChoice> Spectra() {
    auto orbit = [](const std::string& property, const std::string& title) {
        SpectrumChoice c{title, "mm", -5, 5, {}};
        for (int q = 1; q <= 4; ++q)
            c.parts.push_back({"ORKA", "BPMQ" + std::to_string(q), "ORBIT", property, "Q" + std::to_string(q), 32,
                               q == 3});
        return c;
    };
    SpectrumChoice fill{"ORKA bunch fill pattern (7920 buckets)", "pC", 0, 100, {}};
    for (int p = 1; p <= 4; ++p)
        fill.parts.push_back({"ORKA", "BCMSRV", "FILL.P" + std::to_string(p), "CHARGE", "P" + std::to_string(p),
                              1980, false});
    SpectrumChoice losses{"ORKA beam losses fast (96 BLMs)", "counts/s", 0, 1000, {}};
    losses.parts.push_back({"ORKA", "BLMSRV", "LOSS.RING", "LOSS.FAST", "", 96, false});
    return {orbit("ORBIT.X", "ORKA orbit horizontal (128 BPMs)"), orbit("ORBIT.Y", "ORKA orbit vertical (128 BPMs)"),
            fill, losses};
}

// Element names of a server, "" where it has none.
std::string ElementName(const std::string& server, const std::string& property, int32_t element) {
    int32_t count = element + 1;
    std::vector<std::string> names;
    if (vire::GetDeviceNames(server, property, count, names) != 0 || element >= static_cast<int32_t>(names.size()))
        return "#" + std::to_string(element);
    return names[static_cast<size_t>(element)];
}

TrendItem OrbitItem(int32_t element, ui::Colour colour) {
    const std::string name = ElementName("/ORKA/BPMQ1", "ORBIT.X", element);
    return TrendItem{name, "ORKA", "BPMQ1", "ORBIT", "ORBIT.X", 32, element,
                     "/ORKA/BPMHIST/" + name, "ORBIT.X.Q1.HIST", colour, -5, 5};
}

TrendItem LossItem(int32_t element, ui::Colour colour) {
    const std::string name = ElementName("/ORKA/BLMSRV", "LOSS.FAST", element);
    return TrendItem{name, "ORKA", "BLMSRV", "LOSS.RING", "LOSS.FAST", 96, element,
                     "/ORKA/BLMHIST/" + name, "LOSS.FAST.HIST", colour, 0, 1000};
}

TrendItem MachineItem(const std::string& title, const std::string& server, const std::string& device,
                      const std::string& property, double min, double max, ui::Colour colour) {
    // The machine quantities' past comes from the archiver (15-minute steps).
    return TrendItem{title, "ORKA", server, device, property, 1, 0, "/ORKA/OKHISTORY/" + device, property, colour, min, max};
}

ui::PlexPlot* NewPlot(QWidget* parent) {
    auto* plot = new ui::PlexPlot(parent);
    plot->setMinimumSize(300, 200);
    // The options request opens the plot's pop-up menu, as in the viewer.
    QObject::connect(plot, &ui::PlexPlot::OptionsRequest, plot, [plot](QPoint at) {
        QMenu menu;
        menu.addAction("Unzoom", [plot] { plot->UnZoom(); });
        menu.addAction("Auto-scale", [plot] { plot->AutoScale(0, 0, 1, 1); });
        menu.exec(at);
    });
    return plot;
}

}  // namespace

DemoWindow::DemoWindow(QWidget* parent) : QWidget(parent) {
    setWindowTitle("Lumiscope plot demo");
    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel("Spectrum:"));
    chooser_ = new QComboBox;
    for (const SpectrumChoice& c : Spectra()) chooser_->addItem(QString::fromStdString(c.title));
    top->addWidget(chooser_);
    top->addStretch(1);
    top->addWidget(new QLabel("Drag a rectangle to zoom, drag backwards or double-click to unzoom, "
                              "right-click for the menu."));
    layout->addLayout(top);

    spectrum_ = NewPlot(this);
    layout->addWidget(spectrum_, 3);
    auto* trends = new QHBoxLayout;
    selected_ = NewPlot(this);
    extra_ = NewPlot(this);
    trends->addWidget(selected_);
    trends->addWidget(extra_);
    layout->addLayout(trends, 2);
    accelerator_ = NewPlot(this);
    layout->addWidget(accelerator_, 2);

    spectrumFeed_ = std::make_unique<SpectrumFeed>(*spectrum_);
    selectedFeed_ = std::make_unique<TrendFeed>(*selected_, 600);
    extraFeed_ = std::make_unique<TrendFeed>(*extra_, 600);
    acceleratorFeed_ = std::make_unique<TrendFeed>(*accelerator_, 21600);

    // Marks of the selected items on the spectrum, in their colours.
    connect(spectrum_, &ui::PlexPlot::CursorClick, this, [this](double x, double) {
        spectrum_->SetMarkColour(kItemColours[spectrum_->Model().marks.size() % 6]);
        spectrum_->AddMark(std::round(x));
    });
    connect(chooser_, &QComboBox::currentIndexChanged, this, &DemoWindow::ChooseSpectrum);
    ChooseSpectrum(0);

    selectedFeed_->Show("Selected items: orbit horizontal", "mm", -5, 5,
                        {OrbitItem(3, kItemColours[0]), OrbitItem(14, kItemColours[1]),
                         OrbitItem(25, kItemColours[2])},
                        false, true);
    extraFeed_->Show("Extra channels: beam losses", "counts/s", 0, 1000,
                     {LossItem(0, kItemColours[3]), LossItem(10, kItemColours[4]), LossItem(50, kItemColours[5])},
                     false, true);
    acceleratorFeed_->Show("ORKA overview (each curve on its own scale)", "% of scale", 0, 100,
                           {MachineItem("Beam current 0-300 mA", "DCCT", "RING", "CURRENT", 0, 300, kItemColours[0]),
                            MachineItem("Lifetime 0-30 h", "LIFETIME", "RING", "LIFETIME", 0, 30, kItemColours[1]),
                            MachineItem("RF voltage 0-4 MV", "RF", "CAVITIES", "RF.VOLTAGE", 0, 4, kItemColours[5])},
                           true, false);
    spectrum_->SetCursorVisible(false);
}

DemoWindow::~DemoWindow() = default;

void DemoWindow::ChooseSpectrum(int index) {
    const auto spectra = Spectra();
    if (index < 0 || index >= static_cast<int>(spectra.size())) return;
    if (chooser_->currentIndex() != index) chooser_->setCurrentIndex(index);
    spectrumFeed_->Show(spectra[static_cast<size_t>(index)]);
}

}  // namespace demo
