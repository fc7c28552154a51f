// The units on an engine following it: re-pointed to an aircraft, moved
// between locations, deleted from the repair pool.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/movements.h"

namespace mxbook {
namespace {

const Date march10 = Date::fromYmd(2024, 3, 10);
constexpr const char* oldType = "Ми-8МТВ-1";
constexpr const char* newType = "Ми-8АМТ";

class EngineUnitWalksTest : public testing::RemainingLifeTest {
protected:
    int unit(const char* serial, int plan, const char* location, testing::Columns more = {}) {
        more.insert(
            more.end(),
            {{"TIP_VS", oldType}, {"NUMER_DVIG_VSU", serial}, {"PLAN_DVIG_VSU", plan}, {"GDE_STOIT", location}});
        return insert("AGREGAT", more);
    }
    // The unit's columns as text, each followed by '|'.
    std::string text(int id, std::initializer_list<const char*> columns) {
        std::string joined;
        for (const char* column : columns)
            joined +=
                scalar(std::string("select ") + column + " from AGREGAT where ID = " + std::to_string(id)).asText() +
                "|";
        return joined;
    }
    void aircraft(const char* tail, const char* owner) {
        insert("REESTR", {{"TIP_VS", newType}, {"BORTOVOI_NOMER", tail}, {"SOBSTVENNOST", owner}});
    }
};

TEST_F(EngineUnitWalksTest, RePointingTakesTheTypesEntryAndTheAircraftsOwnerAcrossGroups) {
    const std::tuple<int, int, const char*, const char*> entries[] = {
        {1, 10, oldType, "НП-25"}, {2, 20, newType, "НП-25"}, {3, 19, newType, "НП-25"}, {4, 11, oldType, "КП-3"}};
    for (const auto& [id, key, type, drawing] : entries)
        insert("ETAAGREGAT", {{"ID", id}, {"ID_NAME", key}, {"TIP_VS", type}, {"CHERT_NOMER", drawing}});
    const std::pair<const char*, int> owners[] = {{"A", 1}, {"B", 2}, {"C", 2}, {"N", -1}};  // -1: no group
    for (const auto& [owner, group] : owners)
        insert("SOBSTVENNIKI", {{"ID_NAME", owner}, {"GRUPPA", group < 0 ? db::Value() : db::Value(group)}});
    aircraft("RA-2", "B");  // group 2
    aircraft("RA-3", "Z");  // no owner row: group 0
    const struct {
        const char* serial;
        db::Value key;
        const char *owner, *expected;  // key, owner, location
    } cases[] = {
        {"Д-1", 10, "A", "20|B|RA-2|"},  // the new type's first entry by ID (20, not 19); groups 1 and 2
        {"Д-1", 11, "C", "11|C|RA-2|"},  // no entry of the new type for КП-3; both group 2
        {"Д-1", {}, "X", "|B|RA-2|"},    // no entry; no owner row (0) against 2
        {"Д-2", 10, "N", "20|N|RA-3|"},  // a null group is 0, as the aircraft's owner without a row
        {"Д-2", 10, "A", "20|Z|RA-3|"},
    };
    std::vector<int> ids;
    // Any location and mounting: the serial alone picks the units.
    for (const auto& c : cases)
        ids.push_back(unit(c.serial, 0, "Склад", {{"ID_NAME", c.key}, {"SOBSTVENNOST", c.owner}}));
    const int otherEngine = unit("Д-3", 1, "Склад", {{"ID_NAME", 10}, {"SOBSTVENNOST", "A"}});

    FunAgregatCorrectTipNumVSDvigatel(connection(), newType, "Д-1", march10, "RA-2");
    FunAgregatCorrectTipNumVSDvigatel(connection(), newType, "Д-2", march10, "RA-3");

    for (std::size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(text(ids[i], {"ID_NAME", "SOBSTVENNOST", "GDE_STOIT", "TIP_VS", "DATA_USTANOVKI"}),
                  cases[i].expected + std::string(newType) + "|10.03.2024|")
            << "case " << i;
    EXPECT_EQ(text(otherEngine, {"ID_NAME", "GDE_STOIT"}), "10|Склад|");
}

TEST_F(EngineUnitWalksTest, RelocationAndDeletionTouchOnlyTheEnginesMountedUnitsThere) {
    // Only the first is moved (to the repair pool), then deleted.
    const std::tuple<const char*, int, const char*> cases[] = {{"Д-1", 1, "Склад"},   {"Д-1", 1, "Ремонт"},
                                                               {"Д-2", 1, "Склад"},   {"Д-1", 0, "Склад"},
                                                               {"Д-1", 0, "Ремфонд"}, {"Д-2", 1, "Ремфонд"}};
    std::vector<int> ids;
    for (const auto& [serial, plan, location] : cases) ids.push_back(unit(serial, plan, location));

    FunAgregatCorrectScladDvigatel(connection(), "Д-1", march10, "Склад", "Ремфонд");
    for (std::size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(text(ids[i], {"GDE_STOIT", "DATA_USTANOVKI"}),
                  i == 0 ? "Ремфонд|10.03.2024|" : std::get<2>(cases[i]) + std::string("||"))
            << "case " << i;
    FunAgregatDeleteDvigatel(connection(), "Д-1");
    for (std::size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(text(ids[i], {"count(*)"}), i == 0 ? "0|" : "1|") << "case " << i;
}

TEST_F(EngineUnitWalksTest, RefusedOrDroppedWalksChangeNoUnit) {
    // A unit on an aircraft must have an owner: the third (by name) has none,
    // and the aircraft's owner, of group 0 as its own, does not replace it.
    connection().executeScript(
        "alter table AGREGAT add constraint CK_OWNED check "
        "(GDE_STOIT in ('Склад', 'Ремфонд') or SOBSTVENNOST is not null);\n");
    aircraft("RA-3", "Z");
    std::vector<int> ids;
    for (const char* name : {"Б", "А"})
        ids.push_back(unit("Д-1", 1, "Склад", {{"NAZVANIE", name}, {"SOBSTVENNOST", "Z"}}));
    ids.push_back(unit("Д-1", 1, "Склад", {{"NAZVANIE", "В"}}));

    EXPECT_THROW(FunAgregatCorrectTipNumVSDvigatel(connection(), newType, "Д-1", march10, "RA-9"), DataError);
    EXPECT_THROW(FunAgregatCorrectTipNumVSDvigatel(connection(), newType, "Д-1", march10, "RA-3"), Error);
    {
        db::UnitOfWork callers(connection());  // dropped: the walks in it with it
        FunAgregatCorrectScladDvigatel(connection(), "Д-1", march10, "Склад", "Ремфонд");
        FunAgregatDeleteDvigatel(connection(), "Д-1");
    }
    for (int id : ids) EXPECT_EQ(text(id, {"TIP_VS", "GDE_STOIT"}), oldType + std::string("|Склад|")) << "unit " << id;
}

}  // namespace
}  // namespace mxbook
