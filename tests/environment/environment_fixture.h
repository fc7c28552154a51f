// A user's machine in a temporary folder: the executable's folder with its
// "res.dat", a documents folder (with a Cyrillic name), a shared documents
// folder and a desktop, served by a FakeHost.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "fake_host.h"
#include "mxbook/data/connection.h"
#include "mxbook/host.h"
#include "temp_folder.h"

namespace mxbook::testing {

class EnvironmentTest : public ::testing::Test {
protected:
    EnvironmentTest() {
        std::filesystem::create_directories(folder_.path() / "bin");
        std::filesystem::create_directories(documents());
        host_->executable = (folder_.path() / "bin" / "velmo").string();
        host_->documents = documents().string();
        host_->sharedDocuments = (folder_.path() / "shared").string();
        host_->desktop = (folder_.path() / "Рабочий стол").string();
    }
    ~EnvironmentTest() override { db::Connection::setProviderNames(db::Connection::defaultProviderNames()); }

    std::filesystem::path documents() const { return folder_.path() / "Документы"; }
    std::filesystem::path userRoot(const std::string& programRoot = "VELMO") const { return documents() / programRoot; }
    void writeSettings(const std::string& text) const { std::ofstream(folder_.path() / "bin" / "res.dat") << text; }
    static std::string contents(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    FakeHost& host() { return *host_; }
    const std::filesystem::path& folder() const { return folder_.path(); }

private:
    TempFolder folder_;
    std::shared_ptr<FakeHost> host_ = std::make_shared<FakeHost>();
    ScopedHost installed_{host_};
};

}  // namespace mxbook::testing
