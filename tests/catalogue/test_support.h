// Shared pieces of the catalogue tests: a scratch directory and a window that
// records what the readers did to it.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"
#include "catalogue/catalogue_window.h"

namespace catalogue_test {

// A fresh directory under the system's temporary directory, removed at the end.
class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    // Writes a file (bytes as given) and returns its path.
    std::string Write(const std::string& name, const std::string& contents) const;
    std::string Path(const std::string& name = "") const { return (dir_ / name).string(); }
    // The directory with a trailing "/".
    std::string Dir() const { return dir_.string() + "/"; }

private:
    std::filesystem::path dir_;
};

// Lines joined with CR LF, as the configuration tool writes them.
std::string Lines(const std::vector<std::string>& lines);

class RecordingWindow : public catalogue::CatalogueWindow {
public:
    void SetSubsystemMenuEntry(int16_t index, const std::string& caption, bool visible) override {
        events.push_back("menu " + std::to_string(index) + " " + caption + (visible ? " shown" : " hidden"));
    }
    void HideSubsystemMenuEntry(int16_t index) override {
        events.push_back("hide " + std::to_string(index));
    }
    void ClearSpectrumCombo() override {
        combo.clear();
        events.push_back("clear combo");
    }
    void AddSpectrumComboItem(const std::string& text) override {
        combo.push_back(text);
        events.push_back("add " + text);
    }
    void SetSpectrumComboVisible(bool visible) override {
        comboVisible = visible;
        events.push_back(visible ? "show combo" : "hide combo");
    }
    void SelectSpectrumComboPosition(int16_t position) override {
        events.push_back("select " + std::to_string(position));
    }
    void PrepareChannel(int16_t channel) override {
        events.push_back("prepare " + std::to_string(channel));
    }
    void ShowMessage(const std::string& text) override {
        messages.push_back(text);
        events.push_back("message " + text);
    }

    std::vector<std::string> events;
    std::vector<std::string> combo;
    std::vector<std::string> messages;
    bool comboVisible = false;
};

}  // namespace catalogue_test
