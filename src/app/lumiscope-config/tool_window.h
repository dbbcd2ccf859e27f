// The window as lumiscope-config sees it: the subsystem menu, the spectrum
// chooser and the message boxes are recorded for the JSON documents; the
// channel preparation reads the channel's thresholds as the window does.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_window.h"
#include "catalogue/readers.h"

struct MenuEntry {
    std::string caption;
    bool visible = false;
};

class ToolWindow : public catalogue::CatalogueWindow {
public:
    explicit ToolWindow(catalogue::Catalogue& cat) : cat_(cat) {}

    void SetSubsystemMenuEntry(int16_t index, const std::string& caption, bool visible) override {
        menu.at(static_cast<std::size_t>(index)) = MenuEntry{caption, visible};
    }
    void HideSubsystemMenuEntry(int16_t index) override {
        menu.at(static_cast<std::size_t>(index)).visible = false;
    }
    void ClearSpectrumCombo() override { combo.clear(); }
    void AddSpectrumComboItem(const std::string& text) override { combo.push_back(text); }
    void SetSpectrumComboVisible(bool visible) override { comboVisible = visible; }
    void SelectSpectrumComboPosition(int16_t) override {}
    void PrepareChannel(int16_t channel) override {
        catalogue::ReadChannelThresholds(cat_, *this, channel);
    }
    void ShowMessage(const std::string& text) override { messages.push_back(text); }

    std::array<MenuEntry, catalogue::kSubsystemMenuEntries> menu{};
    std::vector<std::string> combo;
    bool comboVisible = false;
    std::vector<std::string> messages;

private:
    catalogue::Catalogue& cat_;
};
