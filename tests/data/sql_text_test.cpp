#include <gtest/gtest.h>

#include "data/sql_text.h"

namespace mxbook::db::detail {
namespace {

TEST(NamedParameters, BecomeMarkersInOrder) {
    const PositionalSql result =
        toPositional("Select * From OTCHET Where FROM_FORM = :pFROM_FORM and ID > :pID or NAME = :pFROM_FORM");
    EXPECT_EQ(result.sql, "Select * From OTCHET Where FROM_FORM = ? and ID > ? or NAME = ?");
    EXPECT_EQ(result.names, (std::vector<std::string>{"pFROM_FORM", "pID", "pFROM_FORM"}));
}

TEST(NamedParameters, ColonsInLiteralsNamesAndCommentsStay) {
    const std::string sql =
        "select 'a:b', \"C:D\", x -- :not\n from T /* :nor */ where HOURS = '12:30' and N = 'it''s :x'";
    const PositionalSql result = toPositional(sql);
    EXPECT_EQ(result.sql, sql);
    EXPECT_TRUE(result.names.empty());
}

TEST(Script, SplitsAtTheTerminatorThatSetTermChooses) {
    const std::string script = R"(
SET SQL DIALECT 3;
SET NAMES UTF8;
/* tables */
create table T (ID integer, NOTE varchar(10) default ';');
create generator G;
SET GENERATOR G TO 10;
SET TERM ^ ;
create trigger T_BI for T before insert as
begin
  if (new.ID is null) then new.ID = gen_id(G, 1);
end^
SET TERM ; ^
COMMIT WORK;
insert into T (NOTE) values ('a;b');  -- trailing comment
)";
    const std::vector<std::string> statements = splitScript(script);
    ASSERT_EQ(statements.size(), 5u);
    EXPECT_EQ(statements[0], "create table T (ID integer, NOTE varchar(10) default ';')");
    EXPECT_EQ(statements[1], "create generator G");
    EXPECT_EQ(statements[2], "SET GENERATOR G TO 10");
    EXPECT_NE(statements[3].find("new.ID = gen_id(G, 1);\nend"), std::string::npos);
    EXPECT_EQ(statements[4], "insert into T (NOTE) values ('a;b')");
}

TEST(Script, LastStatementNeedsNoTerminator) {
    EXPECT_EQ(splitScript("select 1 from rdb$database; select 2 from rdb$database"),
              (std::vector<std::string>{"select 1 from rdb$database", "select 2 from rdb$database"}));
    EXPECT_TRUE(splitScript("  -- nothing\n ; ;").empty());
}

TEST(NamedParameters, BlockVariablesAreNotParameters) {
    const PositionalSql result = toPositional(
        "execute block (LIMIT integer = :pLIMIT) returns (X integer) as declare Y integer = 5; begin X = :Y; end");
    EXPECT_EQ(result.names, (std::vector<std::string>{"pLIMIT"}));
    EXPECT_NE(result.sql.find("X = :Y"), std::string::npos);
}

TEST(NamedParameters, QuotedStringsWithTheirOwnDelimiters) {
    const PositionalSql result = toPositional("select q'{it's :no}' from T where A = :pA");
    EXPECT_EQ(result.names, (std::vector<std::string>{"pA"}));
    EXPECT_EQ(splitScript("insert into T values (q'{it's; one}'); insert into T values (2);").size(), 2u);
}

TEST(Script, TransactionControlIsLeftOut) {
    EXPECT_EQ(splitScript("SET TRANSACTION READ COMMITTED; insert into T values (1); rollback; commit work;"),
              (std::vector<std::string>{"insert into T values (1)"}));
}

TEST(SqlNames, StoredNamesAreAlwaysQuoted) {
    EXPECT_EQ(sqlName("REESTR"), "\"REESTR\"");
    EXPECT_EQ(sqlName("ORDER"), "\"ORDER\"");
    EXPECT_EQ(sqlName("Spravka"), "\"Spravka\"");
    EXPECT_EQ(sqlName("A B"), "\"A B\"");
    EXPECT_EQ(sqlName("X\"Y"), "\"X\"\"Y\"");
    EXPECT_TRUE(isIdentifier("gen_x$1"));
    EXPECT_FALSE(isIdentifier("1gen"));
    EXPECT_FALSE(isIdentifier("g; drop table T"));
}

}  // namespace
}  // namespace mxbook::db::detail
