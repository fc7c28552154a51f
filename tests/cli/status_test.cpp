// `mxbook status` over a register of our own: units past, near and well
// within their limits, in both orders and every format.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "mxbook/data.h"
#include "run_mxbook.h"
#include "temp_folder.h"

namespace mxbook {
namespace {

using testing::Outcome;

class StatusTest : public ::testing::Test {
protected:
    // Three aircraft; five general components counted directly (flag 0),
    // their serial numbers A to E in the order they are booked.
    static void SetUpTestSuite() {
        folder_ = std::make_unique<testing::TempFolder>();
        ASSERT_EQ(run({"init"}).exitCode, 0);
        db::Connection connection = testing::openMainDatabase(root());
        for (const char* tail : {"RA-21001", "RA-21002", "RA-31001"})
            connection.execute(std::string("insert into REESTR (BORTOVOI_NOMER, TIP_VS, NARABOTKA_PPR_CHASOV) "
                                           "values ('") + tail + "', 'Ми-8', '2000:00')");
        const std::string unit =
            "insert into AGREGAT (NAZVANIE, NEPRIAMOI_UCHET_NAR_AGREGATA, ZAVODSKOI_NOMER, GDE_STOIT, "
            "EDINICA_NARABOTKI, RESURS_OBSH, NARABOTKA_SNE, RESURS_MR, NARABOTKA_PPR, SROK_OBSH, DATA_VYPUSKA) "
            "values ('Насос', 0, ";
        for (const char* values : {
                 "'C', 'RA-21001', 1, 500, '507', null, null, null, null)",
                 "'D', 'RA-21001', 0, 1000, '100:00', 200, '150:00', null, null)",
                 "'E', 'RA-21001', 0, 100, '95:00', null, null, null, null)",
                 "'A', 'RA-21002', 0, 1000, '1012:30', null, null, null, null)",
                 "'B', 'RA-21002', 0, null, null, null, null, '05.00', '2019-01-20')",
             })
            connection.execute(unit + values);
    }
    static void TearDownTestSuite() { folder_.reset(); }
    static std::string root() { return (folder_->path() / "velmo").string(); }

    static Outcome run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin() + 1, {"--root", root(), "--today", "2024-04-15"});
        return testing::runMxbook(arguments, folder_->path());
    }

    // The CSV rows after the header, each split into its cells.
    static std::vector<std::vector<std::string>> csvRows(const std::string& text) {
        std::vector<std::vector<std::string>> rows;
        std::istringstream lines(text);
        std::string line;
        std::getline(lines, line);
        while (std::getline(lines, line)) {
            std::vector<std::string> cells;
            std::istringstream split(line + ",");
            for (std::string cell; std::getline(split, cell, ',');) cells.push_back(cell);
            rows.push_back(cells);
        }
        return rows;
    }

private:
    static inline std::unique_ptr<testing::TempFolder> folder_;
};

// Worked by hand, today 15.04.2024:
// A: 1000 h less 1012:30 is 12:30 overdue, -1.25% of the limit;
// B: 5 years from 01.2019 is 60 months less 63 run (to 04.2024), 3 overdue, -5%;
// C: 500 landings less 507, 7 overdue, -1.4%;
// D: 900:00 of 1000 h (90%), 50:00 of 200 h to overhaul (25%): the overhaul decides;
// E: 5:00 of 100 h, 5%: under a tenth, "!".
// Comes off: D at the aircraft's 2000:00 + 200 h − 150:00 = 2050:00; the
// others have no hours since overhaul booked, which the plan counts from.
TEST_F(StatusTest, OverdueLimitsShowByHowMuchTheMostUrgentFirst) {
    const Outcome status = run({"status", "--format", "csv"});
    ASSERT_EQ(status.exitCode, 0) << status.err;
    EXPECT_EQ(status.out.substr(0, status.out.find('\n')),
              "Tail,Kind,Unit,Serial,On,Counts,Booked,Left,Left to overhaul,\"Left, other\",Comes off at,"
              "Tightest,Tightest limit,Alert");
    const std::vector<std::vector<std::string>> expected = {
        {"RA-21002", "B", "", "", "", "срок −3 мес.", "", "0%", "срок", "!!"},
        {"RA-21001", "C", "507", "−7", "", "", "", "0%", "ресурс", "!!"},
        {"RA-21002", "A", "1012:30", "−12:30", "", "", "", "0%", "ресурс", "!!"},
        {"RA-21001", "E", "95:00", "5:00", "", "", "", "5%", "ресурс", "!"},
        {"RA-21001", "D", "100:00", "900:00", "50:00", "", "2050:00", "25%", "ППР", ""},
    };
    const auto rows = csvRows(status.out);
    ASSERT_EQ(rows.size(), expected.size()) << status.out;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(expected[i][1]);
        ASSERT_EQ(rows[i].size(), 14u);
        const std::vector<std::string> shown = {rows[i][0],  rows[i][3],  rows[i][6],  rows[i][7],  rows[i][8],
                                                rows[i][9],  rows[i][10], rows[i][11], rows[i][12], rows[i][13]};
        EXPECT_EQ(shown, expected[i]);
    }
}

TEST_F(StatusTest, SortsByUrgencyOrByAircraftAndKind) {
    const struct {
        std::vector<std::string> arguments;
        std::string serials;
    } cases[] = {
        {{"status", "--format", "csv"}, "BCAED"},
        {{"status", "--format", "csv", "--sort", "urgency"}, "BCAED"},
        {{"status", "--format", "csv", "--sort", "aircraft"}, "CDEAB"},
        {{"status", "RA-21001", "--format", "csv"}, "CED"},
        {{"status", "RA-21001", "--format", "csv", "--sort", "aircraft"}, "CDE"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.serials);
        const Outcome status = run(c.arguments);
        ASSERT_EQ(status.exitCode, 0) << status.err;
        std::string serials;
        for (const auto& row : csvRows(status.out)) serials += row.at(3);
        EXPECT_EQ(serials, c.serials);
    }
    EXPECT_EQ(run({"status", "--sort", "tail"}).exitCode, 1);
}

TEST_F(StatusTest, JsonGivesCountsAndSharesAsNumbers) {
    const Outcome status = run({"status", "RA-21001", "--format", "json"});
    ASSERT_EQ(status.exitCode, 0) << status.err;
    for (const char* field : {
             R"("Counts": "посадки", "Booked": 507, "Left": -7, "Left to overhaul": "")",
             R"("Booked": "100:00", "Left": "900:00", "Left to overhaul": "50:00")",
             R"("Tightest": 25, "Tightest limit": "ППР", "Alert": "")",
         })
        EXPECT_NE(status.out.find(field), std::string::npos) << field << "\n" << status.out;
}

TEST_F(StatusTest, AnUnknownTailOffersTheNearestOnes) {
    const struct {
        std::string tail;
        std::string error;
    } cases[] = {
        // One insertion from RA-21001 and RA-21002, two from RA-31001.
        {"ra-2100", "no aircraft 'ra-2100'; did you mean RA-21001, RA-21002?"},
        {"ra-31001", "no aircraft 'ra-31001'; did you mean RA-31001?"},
        {"N404", "no aircraft 'N404' in the register"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tail);
        const Outcome status = run({"status", c.tail});
        EXPECT_EQ(status.exitCode, 2);
        EXPECT_EQ(status.err, "mxbook: " + c.error + "\n");
        EXPECT_EQ(status.out, "");
    }
}

}  // namespace
}  // namespace mxbook
