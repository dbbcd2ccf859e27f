// Channel selection: the channel chooser starts the live links of the whole
// spectrum (the entry and its appended entries), the element chooser and the
// property boxes add selected items, the range boxes set plot limits.
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <vector>

#include "ui/controls/dialogs.h"
#include "ui/controls/event_loop.h"
#include "ui/controls/full_item_texts.h"
#include "ui/plot/plex_plot.h"
#include "viewer/channel_map.h"
#include "viewer/control_colours.h"
#include "viewer/initialising_guard.h"
#include "viewer/spectrum_form.h"
#include "viewer/value_text.h"
#include "catalogue/readers.h"
#include "vire/link.h"

namespace viewer {

namespace {

constexpr uint32_t kPropBoxBack = 0x80FFFF;
constexpr uint32_t kPendingBack = 0xC0FFC0;
constexpr uint32_t kAppliedBack = 0xE0E0E0;

std::string ElementLine(const catalogue::SpectrumRecord& record, std::size_t k) {
    const std::string& name = k < record.ElementNames.size() ? record.ElementNames[k] : std::string();
    if (!record.HasExtDevName) return name;
    const std::string& location = k < record.ElementLocations.size() ? record.ElementLocations[k] : std::string();
    return location + " (" + name + ")";
}

}  // namespace

void SpectrumForm::SpectrumCombo_Click() {
    if (s_.Initialising) return;
    catalogue::Catalogue& cat = s_.cat;
    {
        // Busy and initialising while the channel changes.
        FlagGuard busy(s_.Busy);
        FlagGuard initialising(s_.Initialising);
        // Spectra arriving while the links are rebuilt belong to no channel.
        FlagGuard suppress(s_.SuppressSpectrumUpdates);
        // A reference belongs to the spectrum it was taken of.
        if (refDisplay->isChecked()) {
            PLEXPlotSpectrum->SetRelativeDisplay(false, cat.SpectrumTrace);
            refDisplay->setChecked(false);
        }
        if (refMark->isChecked()) {
            refMark->setChecked(false);
            PLEXPlotSpectrum->DeleteTrace(s_.ReferenceTrace);
            s_.ReferenceTrace = -1;
        }
        // A new channel starts without peak hold, auto-scaled continuously.
        LivePeakHold->setChecked(false);
        LiveAutoScale[0]->setChecked(false);
        LiveAutoScale[1]->setChecked(false);
        LiveAutoScale[2]->setChecked(true);
        ui::YieldToEventLoop();
        s_.ChannelsStarted = 0;
        // The chosen channel; its threshold menus only where it has thresholds.
        cat.CurrentSpectrum = cat.ComboToSpectrum[SpectrumCombo->currentIndex()];
        const bool thresholds = !cat.SpectrumList[cat.CurrentSpectrum].ThresholdSource.empty();
        liveShowThreshold->setVisible(thresholds);
        histShowThreshold->setVisible(thresholds);
        modThreshold->setVisible(thresholds);
        // Every part of the spectrum gets its own live link.
        cat.SpectrumTrace = -1;
        StartSpectrumLinks(cat.CurrentSpectrum, true);
        // Property boxes, and the addresses the history reads use.
        InitPropSelections(false);
        const catalogue::SpectrumRecord& chosen = cat.SpectrumList[cat.CurrentSpectrum];
        s_.HistoryServer = chosen.HstServer;
        s_.HistoryProperty = chosen.HstProperty;
        s_.ArchiveServer = chosen.ArcServer;
        s_.ArchiveProperty = chosen.ArcProperty;
        s_.CurrentElementName = chosen.ElementNames.empty() ? std::string() : chosen.ElementNames[0];
        // The items follow the channel change.
        ReselectItems();
        // The next channel change keeps the items of this one.
        s_.PrevChannel = cat.CurrentSpectrum;
    }
    // In archive mode the new channel's past is read at once.
    if (OptArchiveData->isChecked() && s_.Items[0].hasData) ReloadArchiveData();
}

int16_t SpectrumForm::OpenSpectrumParts(int16_t head, const std::function<void(int16_t)>& opened) {
    const catalogue::Catalogue& cat = s_.cat;
    s_.OpenFailure.clear();
    int16_t count = 0;
    for (int16_t k = 0; k < kMaxSpectrumParts; ++k) {
        const auto e = static_cast<int16_t>(head + k);
        const int16_t status = OpenChannel(e);
        if (status != 0) {
            // The parts after a failing one are not opened either: all of
            // them are missing from the picture.
            const catalogue::SpectrumRecord& record = cat.SpectrumList[e];
            const int16_t parts = SpectrumPartCount(cat, head);
            const std::string missing = k + 1 == parts ? "part " + std::to_string(parts)
                                                       : "parts " + std::to_string(k + 1) + " to " + std::to_string(parts);
            s_.OpenFailure = missing + " of " + std::to_string(parts) + " missing: /" + record.Context + "/" +
                             record.Server + "/" + record.Device + " " + record.Property +
                             " not opened: " + vire::ErrorText(status) + " (" + std::to_string(status) + ")";
            ui::MsgBox("PROBLEMS!   " + vire::ErrorText(status));
            break;
        }
        if (opened) opened(e);
        ++count;
        if (e + 1 >= catalogue::kMaxSpectrum || !cat.SpectrumList[e + 1].Append) break;
    }
    return count;
}

void SpectrumForm::StartSpectrumLinks(int16_t first, bool fillChooser) {
    if (fillChooser) ComboDevs->clear();
    s_.ChannelsStarted = 0;
    s_.OversizeReported = false;
    // Nothing of the previous channel stays: one whose server does not
    // answer must not show another channel's hover labels or live time
    // under its name (its links, trace and texts go with the head entry's
    // frame below).
    s_.LivePointCount = 0;
    s_.LastLiveUpdate = 0;
    const int16_t opened = OpenSpectrumParts(first, [&](int16_t e) {
        if (fillChooser) {
            const catalogue::SpectrumRecord& record = s_.cat.SpectrumList[e];
            QStringList lines;
            for (int32_t i = 0; i < record.Size; ++i)
                lines << QString::fromStdString(ElementLine(record, static_cast<std::size_t>(i)));
            ComboDevs->addItems(lines);
        }
        initSpectrumInfo(e);
        ++s_.ChannelsStarted;
    });
    if (fillChooser) ui::FitToItemTexts(ComboDevs);
    // Nothing opened: the plot still names the chosen channel, with its own
    // unit and range, and says what is missing.
    if (opened == 0) ShowChannelFrame(first);
    ShowLinkStatus();
}

void SpectrumForm::ReselectItems() {
    catalogue::Catalogue& cat = s_.cat;
    const auto readd = [this, &cat] {
        const std::vector<SelectedItem> old = s_.Items.Items();
        RemoveAllItems();
        for (const SelectedItem& item : old) {
            int16_t element = item.elementIndex1;
            int16_t number = item.elementNumber;
            int16_t channel = cat.CurrentSpectrum;
            SelectAChannel(element, channel, number, channel);
        }
    };
    if (s_.ExtrasMode == 1) {
        if (cat.SpectrumList[cat.CurrentSpectrum].ExtraPropComboIndex == s_.CompanionMarker) return;
        bool allOfPrevious = true;
        for (int16_t i = 0; i < s_.Items.Count() && allOfPrevious; ++i)
            allOfPrevious = s_.Items[i].plottedChannel == s_.PrevChannel;
        if (allOfPrevious) readd();
        SwitchExtras(s_.ExtrasMode);
    } else if (!MenuOperations[1]->isVisible()) {
        SwitchExtras(s_.ExtrasMode);
    } else {
        readd();
        if (s_.ExtrasMode == 2) PrepareExtraPlot();
        else SwitchExtras(s_.ExtrasMode);
        EnterHistoryMode();
    }
}

void SpectrumForm::initSpectrumInfo(int16_t channel) {
    ShowChannelFrame(channel);
    // The link parameters in the order the plot takes them, then the link.
    catalogue::SpectrumRecord& record = s_.cat.SpectrumList[channel];
    ui::PlexPlot* plot = PLEXPlotSpectrum;
    plot->SetAccessMode("POLL");
    plot->SetPollingInterval(s_.PollIntervalMs);
    plot->SetProtocol("VIRE");
    plot->SetContext(record.Context);
    plot->SetServer(record.Server);
    plot->SetDevice(record.Device);
    plot->SetProperty(record.Property);
    record.LinkHandle = plot->Attach(record.Values);
    record.Started = true;
    // Without items the history addresses follow the spectrum.
    if (s_.Items.Count() == 0) setSpectrumHistoryParameters();
}

void SpectrumForm::ShowChannelFrame(int16_t channel) {
    const catalogue::SpectrumRecord& record = s_.cat.SpectrumList[channel];
    ui::PlexPlot* plot = PLEXPlotSpectrum;
    // An entry that could not be opened has no values yet: its size says
    // how wide it would be.
    const int32_t upper =
        record.Values.empty() ? record.Size - 1 : catalogue::SpectrumRecord::UpperBound(record.Values);
    // Parts of one spectrum are drawn side by side.
    if (!record.Append) {
        plot->SetXMin(-0.2);
        plot->SetXMax(upper + 0.2);
        s_.AxisReset = true;
        plot->Clear(true);  // the items' marks stay
        s_.SpectrumModeText = -1;
    } else {
        plot->SetXMax(plot->XMax() + upper + 1);
    }
    plot->SetXMin(-0.2);
    // Vertical range: 120 % in percent mode, else the catalogue's.
    if (s_.PercentMode) {
        plot->SetYMax(120);
        plot->SetYMin(0);
    } else {
        for (int twice = 0; twice < 2; ++twice) {
            plot->SetYMax(record.Max);
            plot->SetYMin(record.Min);
        }
    }
    // The range boxes show the limits.
    {
        FlagGuard initialising(s_.Initialising);
        TxtSelect[0]->setText(QString::fromStdString(LimitText(plot->YMax())));
        TxtSelect[1]->setText(QString::fromStdString(LimitText(plot->YMin())));
    }
    // Axis titles, colour and the caption naming the machine and channel.
    plot->SetYLabel(s_.PercentMode ? std::string("% of Threshold") : record.Egu);
    plot->SetXLabel("Device Name/Location");
    plot->SetForeColour(0x000000);
    plot->SetCaption(TraceCaptionPrefix() + record.Description);
}

std::string SpectrumForm::TraceCaptionPrefix() const {
    // The caption names the machine the spectrum belongs to.
    const catalogue::Catalogue& cat = s_.cat;
    if (cat.CurrentMachine < 0 || cat.CurrentMachine >= cat.MachineCount) return std::string();
    return cat.MachineList[cat.CurrentMachine].Name + ": ";
}

void SpectrumForm::InitPropSelections(bool fromItem) {
    const catalogue::Catalogue& cat = s_.cat;
    // Every box starts hidden, unticked and yellow.
    FrameProps->setVisible(false);
    {
        FlagGuard initialising(s_.Initialising);
        for (int k = 0; k < kPropBoxes; ++k) {
            ChkProps[k]->setVisible(false);
            ChkProps[k]->setChecked(false);
            PaintControl(ChkProps[k], kPropBoxBack, 0x000000);
        }
    }
    int16_t n = 0;
    // A fifth property is recorded in the maps but has no box.
    const auto offer = [&](int16_t channel, int16_t head) -> int16_t {
        s_.PropChannel[n] = channel;
        s_.PropHeadChannel[n] = head;
        const int16_t box = n;
        if (box < kPropBoxes) {
            const QString caption = QString::fromStdString(cat.SpectrumList[channel].PropShort);
            ChkProps[box]->setText(caption);
            ChkProps[box]->setAccessibleName(caption);
            ChkProps[box]->setVisible(true);
        }
        ++n;
        return box;
    };
    if (fromItem) {
        // Boxes of the current item: its element in each property of its group.
        if (s_.Items.Current() < 0) return;
        const SelectedItem& item = s_.Items[s_.Items.Current()];
        LabelExtDevice[0]->setVisible(true);
        LabelExtDevice[0]->setText(QString::fromStdString(item.elementName));
        LabelExtDevice[1]->setVisible(item.hasLocation);
        if (item.hasLocation) LabelExtDevice[1]->setText(QString::fromStdString(item.location));
        if (item.propertyLink < 1) return;
        for (int16_t i = 0; i < catalogue::kMaxSpectrum; ++i) {
            const catalogue::SpectrumRecord& entry = cat.SpectrumList[i];
            if (entry.Append || entry.PropLink != item.propertyLink) continue;
            const int16_t box = offer(i, i);
            if (box >= kPropBoxes) continue;
            for (int16_t j = 0; j < s_.Items.Count(); ++j) {
                const SelectedItem& other = s_.Items[j];
                if (other.elementName == item.elementName && other.propertyLink == item.propertyLink &&
                    other.PropShort == entry.PropShort) {
                    FlagGuard initialising(s_.Initialising);
                    ChkProps[box]->setChecked(true);
                    // The box wears the colour of the item it stands for.
                    PaintControl(ChkProps[box], s_.ItemColours[j], 0xFFFFFF);
                }
            }
        }
    } else {
        // Boxes of the chosen channel: every entry of its group.
        const int16_t link = cat.SpectrumList[cat.CurrentSpectrum].PropLink;
        for (int16_t i = 0; i < catalogue::kMaxSpectrum; ++i) {
            if (cat.SpectrumList[i].PropLink != link) continue;
            int16_t head = i;
            while (head > 0 && cat.SpectrumList[head].Append) --head;
            offer(i, cat.SpectrumList[i].Append ? head : i);
        }
    }
    // The frame shows again unless extras take its place.
    s_.PropBoxesUsed = n;
    if (s_.ExtrasMode == 0) FrameProps->setVisible(true);
}

void SpectrumForm::ChkProps_Click(int16_t index) {
    if (s_.Initialising) return;
    catalogue::Catalogue& cat = s_.cat;
    if (ChkProps.at(static_cast<std::size_t>(index))->isChecked()) {
        const int16_t head = s_.PropHeadChannel[index];
        if (cat.SpectrumList[head].ElementCount == 0) OpenSpectrumParts(head, nullptr);
        if (s_.Items.Current() < 0) return;
        const SelectedItem& current = s_.Items[s_.Items.Current()];
        int16_t element = current.elementIndex1;
        int16_t number = current.elementNumber;
        int16_t channel = s_.PropChannel[index];
        SelectAChannel(element, channel, number, channel);
        return;
    }
    const std::string caption = ChkProps[index]->text().toStdString();
    const auto findItem = [this](const std::string& text, int16_t channel) { return s_.Items.Find(text, channel); };
    const int16_t found = findItem(caption, s_.PropChannel[index]);
    if (found < 0) return;
    s_.Items.SetCurrent(found);
    RemoveSelectedItem();
    s_.Items.SetCurrent(-1);
    for (int16_t k = 0; k < kPropBoxes; ++k)
        if (ChkProps[k]->isChecked()) findItem(ChkProps[k]->text().toStdString(), s_.PropChannel[k]);
}

void SpectrumForm::ComSelDevice_Click() {
    if (s_.Initialising) return;
    const int index = ComboDevs->currentIndex();
    if (index < 0) return;
    const ChannelElement target = MapRowToChannel(s_.cat, s_.cat.CurrentSpectrum, static_cast<int16_t>(index));
    int16_t element = static_cast<int16_t>(index);
    int16_t source = target.channel;
    int16_t number = target.element;
    int16_t plotted = target.channel;
    SelectAChannel(element, source, number, plotted);
    if (histShowThreshold->isChecked()) DrawThresholds(PLEXPlotSelected);
}

void SpectrumForm::ComSelect_Click(int16_t index) {
    if (index < 0 || index > 5) catalogue::ThrowOutOfBounds("ComSelect", index, 0, 5);
    const int pair = index <= 2 ? 0 : 2;
    PaintControl(TxtSelect[pair], kAppliedBack, 0x000000);
    PaintControl(TxtSelect[pair + 1], kAppliedBack, 0x000000);
    switch (index) {
        case 0:
            PLEXPlotSpectrum->SetYMax(NumberOfText(TxtSelect[0]->text().toStdString()));
            PLEXPlotSpectrum->SetYMin(NumberOfText(TxtSelect[1]->text().toStdString()));
            break;
        case 4: {
            if (ChkAuto[1]->isChecked()) {
                ui::MsgBox("Auto-Scale is switched on!!!!!");
                return;
            }
            {
                FlagGuard initialising(s_.Initialising);
                ChkAuto[1]->setChecked(false);
            }
            const auto restore = [](SelectedItem& item) {
                item.zoomFlag = 0;
                item.historyUpper = item.liveUpper;
                item.historyLower = item.liveLower;
                item.historyScaleType = item.liveScaleType;
                item.rescaled = true;
            };
            if (s_.CommonScale != 0) {
                for (int16_t i = 0; i < s_.Items.Count(); ++i) restore(s_.Items[i]);
                for (int16_t i = 0; i < s_.Extras.Count(); ++i) restore(s_.Extras[i]);
            } else {
                restore(s_.Items[s_.Items.Current()]);
            }
            PaintControl(ComSelect[2], kAppliedBack, 0x000000);
            for (int k = 0; k <= 2; ++k) PaintControl(TxtSelect[k], kAppliedBack, 0x000000);
            break;
        }
        default:
            ScalingAction(index);
            break;
    }
}

void SpectrumForm::TxtSelect_Change(int16_t index) {
    if (s_.Initialising) return;
    PaintControl(TxtSelect.at(static_cast<std::size_t>(index)), kPendingBack, 0x000000);
}

void SpectrumForm::LinkRestart() {
    // The first call of a pair only counts; the second sets the links up again.
    ++s_.LinkRestartCalls;
    if (s_.LinkRestartCalls < 2) return;
    s_.cat.CurrentSpectrum = s_.cat.ComboToSpectrum[std::max(SpectrumCombo->currentIndex(), 0)];
    s_.cat.SpectrumTrace = -1;
    StartSpectrumLinks(s_.cat.CurrentSpectrum, false);
    s_.LinkRestartCalls = 0;
}

void SpectrumForm::displayReset_Click() {
    catalogue::Catalogue& cat = s_.cat;
    s_.ChannelsStarted = 0;
    for (int16_t i = 0; i < kMaxSpectrumParts; ++i) {
        const auto e = static_cast<int16_t>(cat.CurrentSpectrum + i);
        cat.SpectrumList[e].Started = false;
        catalogue::ReadChannelThresholds(cat, *this, e);
        initSpectrumInfo(e);
        ++s_.ChannelsStarted;
        if (e + 1 > catalogue::kMaxSpectrum || !cat.SpectrumList[e + 1].Append) break;
    }
    cat.SpectrumTrace = -1;
    ShowLinkStatus();
}

}  // namespace viewer
