// Shared pieces of the catalogue tests: a scratch directory and a window that
// records what the readers did to it.
#pragma once

#include <filesystem>
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

private:
    std::filesystem::path dir_;
};

using Texts = std::vector<std::string>;

// Lines joined with CR LF, as the configuration tool writes them.
std::string Lines(const Texts& lines);

// The lines followed by n numbered rows: before + i + after, i from 0.
Texts Numbered(Texts lines, int n, const std::string& before, const std::string& after = "");

// Every call as one line of text, in order; message texts also on their own.
class RecordingWindow : public catalogue::CatalogueWindow {
public:
    void SetSubsystemMenuEntry(int16_t i, const std::string& caption, bool shown) override {
        events.push_back("menu " + std::to_string(i) + " " + caption + (shown ? " shown" : " hidden"));
    }
    void HideSubsystemMenuEntry(int16_t i) override { events.push_back("hide " + std::to_string(i)); }
    void ClearSpectrumCombo() override { events.push_back("clear combo"); }
    void AddSpectrumComboItem(const std::string& text) override { events.push_back("add " + text); }
    void SetSpectrumComboVisible(bool visible) override { events.push_back(visible ? "show combo" : "hide combo"); }
    void SelectSpectrumComboPosition(int16_t p) override { events.push_back("select " + std::to_string(p)); }
    void PrepareChannel(int16_t channel) override { events.push_back("prepare " + std::to_string(channel)); }
    void ShowMessage(const std::string& text) override {
        messages.push_back(text);
        events.push_back("message " + text);
    }
    std::vector<std::string> events, messages;
};

}  // namespace catalogue_test
