#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "../remaining/remaining_fixture.h"
#include "mxbook/error.h"
#include "mxbook/movements.h"

namespace mxbook {
namespace {

using Text = std::optional<std::string>;

class ReferenceSplitTest : public testing::RemainingLifeTest {
protected:
    int unit(const std::string& name, const std::string& drawing, int key, testing::Columns more = {}) {
        more.insert(more.begin(),
                    {{"TIP_VS", "Ми-8МТВ-1"}, {"NAZVANIE", name}, {"CHERT_NOMER", drawing}, {"ID_NAME", key}});
        return insert("AGREGAT", more);
    }
    int keyOf(int unitId) { return scalar("select ID_NAME from AGREGAT where ID = " + std::to_string(unitId)).asInt(); }
    int entries() { return scalar("select count(*) from ETAAGREGAT").asInt(); }
    // The entry's column at a position, as text; nullopt for a null.
    Text entryColumn(int key, int position) {
        db::DataSet entry(connection(), "select * from ETAAGREGAT where ID_NAME = " + std::to_string(key));
        entry.open();
        EXPECT_FALSE(entry.eof()) << "no entry " << key;
        if (entry.eof()) return std::nullopt;
        const db::Field field = entry.field(position);
        return field.isNull() ? Text() : Text(field.asText());
    }
};

TEST_F(ReferenceSplitTest, GroupGetsOneEntryFilledFromItsFirstMember) {
    insert("ETAAGREGAT", {{"ID", 100}, {"ID_NAME", 7}});
    insert("ETAAGREGAT", {{"ID", 101}, {"ID_NAME", 4}});
    const int first = unit("Насос", "НП-25", 4,
                           {{"PLAN_DVIG_VSU", 0},
                            {"KOD_AGREGATA", ""},
                            {"SISTEMA_VS", "Топливная"},
                            {"EDINICA_NARABOTKI", 1},
                            {"UCHET_MASLA", 1},
                            {"RESURS_MR", 1500},
                            {"SROK_MR", "05.00"},
                            {"RESURS_OBSH", 3000},
                            {"SROK_OBSH", "10.06"},
                            {"MESTO_USTANOVKI", "нет"}});
    // Later members' values are not copied, even where the first has none.
    const int asked = unit("Насос", "НП-25", 4, {{"KOD_AGREGATA", "K-1"}, {"RESURS_MR", 900}});
    const int third = unit("Насос", "НП-25", 4);
    const int otherDrawing = unit("Насос", "НП-26", 4);
    const int otherKey = unit("Насос", "НП-25", 5);

    FunAddIDNameAgregat(row("AGREGAT", asked));

    // The highest key was 7; the ID comes from the generator, untouched so far.
    const int key = 8;
    EXPECT_EQ(entries(), 3);
    const struct {
        int position;
        Text expected;
    } columns[] = {
        {0, "1"},      {1, "Ми-8МТВ-1"},  {2, "НП-25"},  {3, "0"},    {4, "1"},      {5, "1"},
        {6, "1"},      {7, "1500"},       {8, "05.00"},  {9, "1500"}, {10, "05.00"}, {11, "3000"},
        {12, "10.06"}, {13, "Топливная"}, {14, "Насос"}, {15, {}},    {16, "0"},     {17, {}},
        {18, "0"},     {19, "0"},         {20, "8"},     {31, "0"},   {32, {}},
    };
    for (const auto& c : columns) {
        SCOPED_TRACE("ETAAGREGAT position " + std::to_string(c.position));
        EXPECT_EQ(entryColumn(key, c.position), c.expected);
    }
    for (int member : {first, asked, third}) EXPECT_EQ(keyOf(member), key) << "unit " << member;
    EXPECT_EQ(keyOf(otherDrawing), 4);
    EXPECT_EQ(keyOf(otherKey), 5);
}

TEST_F(ReferenceSplitTest, PlacesOtherThanNetGiveTwoPlaces) {
    // One group per case, on an empty reference table: the keys run 1, 2, ...
    const struct {
        std::vector<Text> places;
        const char* count;
        Text list;
    } cases[] = {
        {{"нет", "НЕТ", "Нет"}, "1", {}},
        {{{}, "нет"}, "1", {}},
        {{"нет", ""}, "2", "Первый;Второй;"},  // an empty place is still a place
        {{"НЕТ", "Левый"}, "2", "Первый;Второй;"},
    };
    int key = 0;
    for (const auto& c : cases) {
        ++key;
        SCOPED_TRACE("group " + std::to_string(key));
        int last = 0;
        for (const Text& place : c.places)
            last = unit("Клапан " + std::to_string(key), "КП-" + std::to_string(key), 0,
                        {{"MESTO_USTANOVKI", place ? db::Value(*place) : db::Value()}});
        FunAddIDNameAgregat(row("AGREGAT", last));
        EXPECT_EQ(entryColumn(key, 6), Text(c.count));
        EXPECT_EQ(entryColumn(key, 15), c.list);
        EXPECT_EQ(keyOf(last), key);
    }
}

TEST_F(ReferenceSplitTest, RowInNoGroupWritesNothing) {
    insert("ETAAGREGAT", {{"ID", 100}, {"ID_NAME", 3}});
    // A null name or key equals nothing, not even the row's own.
    const int noName = insert("AGREGAT", {{"TIP_VS", "Ми-8МТВ-1"}, {"CHERT_NOMER", "НП-25"}, {"ID_NAME", 3}});
    const int noKey = insert("AGREGAT", {{"TIP_VS", "Ми-8МТВ-1"}, {"NAZVANIE", "Насос"}, {"CHERT_NOMER", "НП-25"}});
    for (int id : {noName, noKey}) {
        SCOPED_TRACE("unit " + std::to_string(id));
        FunAddIDNameAgregat(row("AGREGAT", id));
        EXPECT_EQ(entries(), 1);
    }
    EXPECT_EQ(keyOf(noName), 3);
    EXPECT_TRUE(scalar("select ID_NAME from AGREGAT where ID = " + std::to_string(noKey)).isNull());
}

TEST_F(ReferenceSplitTest, FailureOnTheLastMemberStoresNothing) {
    insert("ETAAGREGAT", {{"ID", 100}, {"ID_NAME", 4}});
    const int first = unit("Насос", "НП-25", 4);
    const int second = unit("Насос", "НП-25", 4);
    connection().executeScript(
        "create exception E_REFUSED 'refused';\n"
        "set term ^;\n"
        "create trigger AGREGAT_REFUSE for AGREGAT before update as begin\n"
        "  if (new.ID = " +
        std::to_string(second) +
        ") then exception E_REFUSED;\n"
        "end^\n"
        "set term ;^\n");

    EXPECT_THROW(FunAddIDNameAgregat(row("AGREGAT", first)), Error);

    EXPECT_EQ(entries(), 1);
    EXPECT_EQ(keyOf(first), 4);
    EXPECT_EQ(keyOf(second), 4);
}

TEST_F(ReferenceSplitTest, RowOfAnotherTableIsRefused) {
    const int hub = insert("VTULKA_NV", {{"TIP_VS", "Ми-8МТВ-1"}, {"NAZVANIE", "Втулка"}});
    EXPECT_THROW(FunAddIDNameAgregat(row("VTULKA_NV", hub)), ArgumentError);
    const int id = unit("Насос", "НП-25", 4);
    db::DataSet partial(connection(), "select ID, TIP_VS, NAZVANIE from AGREGAT where ID = " + std::to_string(id));
    partial.open();
    EXPECT_THROW(FunAddIDNameAgregat(partial), ArgumentError);
    EXPECT_EQ(entries(), 0);
}

}  // namespace
}  // namespace mxbook
