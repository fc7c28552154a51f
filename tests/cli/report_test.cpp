// `mxbook report`: a card filled by its builder and printed, by the card's
// name or the builder's.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "mxbook/data.h"
#include "run_mxbook.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

using testing::Outcome;

class ReportTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = std::make_unique<testing::TempFolder>();
        ASSERT_EQ(run({"init"}).exitCode, 0);
        db::Connection connection = testing::openMainDatabase(root());
        connection.execute("insert into ETAAGREGAT (ID, ID_NAME, NAZVANIE, CHERT_NOMER) values (1, 7, 'Насос', 'НП-1')");
        connection.execute(
            "insert into AGREGAT (ID, ID_NAME, ZAVODSKOI_NOMER, TIP_VS, GDE_STOIT, KOL_VO_REMONTOV, SROK_OBSH) "
            "values (5, 7, '00412', 'Ми-8', 'Склад', 0, '05.06')");
    }
    static void TearDownTestSuite() { folder_.reset(); }
    static std::string root() { return (folder_->path() / "velmo").string(); }
    static Outcome run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin() + 1, {"--root", root(), "--today", "2024-04-15"});
        return testing::runMxbook(arguments, folder_->path());
    }

private:
    static inline std::unique_ptr<testing::TempFolder> folder_;
};

TEST_F(ReportTest, PrintsTheFilledCardInEachFormat) {
    const Outcome csv = run({"report", "component", "5", "--format", "csv"});
    ASSERT_EQ(csv.exitCode, 0) << csv.err;
    EXPECT_EQ(csv.out.substr(0, csv.out.find('\n')).substr(0, 42), "ID,ID_AGREGATA,NAZVANIE,CHERT_NOMER,ZAVODS");
    EXPECT_NE(csv.out.find(",5,Насос,НП-1,00412,"), std::string::npos) << csv.out;

    const Outcome json = run({"report", "FunMainReportAgregatPodrobno", "5", "--format", "json"});
    ASSERT_EQ(json.exitCode, 0) << json.err;
    EXPECT_NE(json.out.find("\"SROK_OBSH\": \"05г. 06м.\", \"OSTATOK_SROKA_OBSH\": null"), std::string::npos)
        << json.out;

    const Outcome table = run({"report", "component", "5"});
    EXPECT_NE(table.out.find("GDE_STOIT                   Склад"), std::string::npos) << table.out;
}

TEST_F(ReportTest, RefusesWhatNamesNoCardOrNoUnit) {
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* says;
    } cases[] = {
        {{"report", "component", "99"}, 2, "nothing found for the card of a general component: 99"},
        {{"report", "zcu", "1;drop"}, 2, "1;drop"},
        {{"report", "gearbox", "Ми-8"}, 1, "the gearbox card takes TYPE SERIAL LOCATION, 1 given"},
        {{"report", "blade", "1"}, 1, "no report card blade"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = run(c.arguments);
        EXPECT_EQ(outcome.exitCode, c.exitCode) << c.says;
        EXPECT_NE(outcome.err.find(c.says), std::string::npos) << outcome.err;
    }
}

}  // namespace
}  // namespace mxbook
