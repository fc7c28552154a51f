// A host for tests: a fixed clock, scripted answers, recorded message boxes.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "mxbook/host.h"

namespace mxbook::testing {

class FakeHost : public Host {
public:
    struct Shown {
        Window owner;
        std::string text;
        std::string caption;
        unsigned flags;
    };

    Answer messageBox(Window owner, const std::string& text, const std::string& caption, unsigned flags) override;
    Window foregroundWindow() override { return foreground; }
    std::string windowTitle(Window window) override;
    std::string executablePath() override { return executable; }
    std::string documentsFolder() override { return documents; }
    std::string desktopFolder() override { return desktop; }
    std::string sharedDocumentsFolder() override { return sharedDocuments; }
    Date today() override { return todayDate; }
    Timestamp now() override { return Timestamp{todayDate, timeOfDay}; }
    FormatSettings formatSettings() override { return settings; }
    std::optional<std::string> databaseLocation(std::string_view section) override {
        const auto found = locations.find(std::string(section));
        return found == locations.end() ? std::nullopt : std::optional(found->second);
    }

    // Every box shown, in order.
    std::vector<Shown> shown;
    // Answers to Yes/No questions, taken in order; a question with none left fails the test.
    std::deque<Answer> answers;

    Window foreground{42};
    std::map<std::uint64_t, std::string> titles{{42, "Формуляр агрегата"}};
    std::string executable = "/opt/velmo/bin/velmo";
    std::string documents = "/home/tester/Documents";
    std::string desktop = "/home/tester/Desktop";
    std::string sharedDocuments = "/var/lib";
    Date todayDate = Date::fromYmd(2024, 3, 15);
    Time timeOfDay = Time::fromHms(9, 30);
    FormatSettings settings;
    // Locations chosen for the run, by values-file section.
    std::map<std::string, std::string> locations;
};

}  // namespace mxbook::testing
