// What the readers need of the window: the subsystem menu, the spectrum
// chooser, the channel preparation and message boxes. The viewer window
// implements it; so do lumiscope-config and the tests, which therefore drive
// the very reader code the window runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace catalogue {

class CatalogueWindow {
public:
    virtual ~CatalogueWindow() = default;

    // MenuSubsystem(index), index 0..kSubsystemMenuEntries-1 (the readers never
    // pass another index: they fail first).
    virtual void SetSubsystemMenuEntry(int16_t index, const std::string& caption, bool visible) = 0;
    // Hides MenuSubsystem(index) and leaves its caption as it is.
    virtual void HideSubsystemMenuEntry(int16_t index) = 0;

    // SpectrumCombo.
    virtual void ClearSpectrumCombo() = 0;
    virtual void AddSpectrumComboItem(const std::string& text) = 0;
    virtual void SetSpectrumComboVisible(bool visible) = 0;
    // Selects a list position; in the window this fires the chooser's handler.
    virtual void SelectSpectrumComboPosition(int16_t position) = 0;

    // The channel preparation run for a catalogue with a single channel: reads
    // the channel's thresholds and its property information.
    virtual void PrepareChannel(int16_t channel) = 0;

    // A message box with an OK button and no title.
    virtual void ShowMessage(const std::string& text) = 0;
};

// A window with no menu and no chooser, for programs that only read: it keeps
// the texts of the message boxes the readers raise.
class QuietWindow : public CatalogueWindow {
public:
    void SetSubsystemMenuEntry(int16_t, const std::string&, bool) override {}
    void HideSubsystemMenuEntry(int16_t) override {}
    void ClearSpectrumCombo() override {}
    void AddSpectrumComboItem(const std::string&) override {}
    void SetSpectrumComboVisible(bool) override {}
    void SelectSpectrumComboPosition(int16_t) override {}
    void PrepareChannel(int16_t) override {}
    void ShowMessage(const std::string& text) override { messages.push_back(text); }

    std::vector<std::string> messages;
};

}  // namespace catalogue
