#include <gtest/gtest.h>

#include "mxbook/data/connection_string.h"
#include "mxbook/data/error.h"

namespace mxbook::db {
namespace {

// The heads and tails the application composes, around one location.
TEST(ConnectionString, ReadsEveryComposedForm) {
    const std::string location = "LOCALHOST:/home/ivan/Documents/VELMO/NALET.FDB";
    const struct {
        std::string text;
        std::string provider;
        std::string clientType;
    } cases[] = {
        {"Provider=LCPI.IBProvider.5.Free;Password=s3cret;Persist Security Info=True;User ID=SYSDBA;Location=" +
             location + ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb.direct",
         "LCPI.IBProvider.5.Free", "fb.direct"},
        {"Provider=LCPI.IBProvider.3.Free;Password=s3cret;Persist Security Info=True;User ID=SYSDBA;Location=" +
             location + ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb",
         "LCPI.IBProvider.3.Free", "fb"},
        {"Provider=LCPI.IBProvider.2;Password=s3cret;Persist Security Info=True;User ID=SYSDBA;Location=" + location +
             ";ctype=WIN1251;auto_commit=True;dbclient_library=\"\";dbclient_type=fb.client",
         "LCPI.IBProvider.2", "fb.client"},
        {"Provider=LCPI.IBProvider.2;Password=s3cret;Persist Security Info=True;User ID=SYSDBA;Location=" + location +
             ";ctype=WIN1251;auto_commit=True",
         "LCPI.IBProvider.2", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const ConnectionString parsed = ConnectionString::parse(c.text);
        EXPECT_EQ(parsed.provider, c.provider);
        EXPECT_EQ(parsed.userId, "SYSDBA");
        EXPECT_EQ(parsed.password, "s3cret");
        EXPECT_EQ(parsed.location, location);
        EXPECT_EQ(parsed.ctype, "WIN1251");
        EXPECT_TRUE(parsed.autoCommit);
        EXPECT_EQ(parsed.dbclientLibrary, "");
        EXPECT_EQ(parsed.dbclientType, c.clientType);
    }
}

TEST(ConnectionString, KeysIgnoreCaseAndValuesMayBeQuoted) {
    const ConnectionString parsed = ConnectionString::parse(
        " provider = LCPI.IBProvider.5 ; PASSWORD='it''s;here' ; location=\"/data/a b.fdb\" ; AUTO_COMMIT=false;");
    EXPECT_EQ(parsed.provider, "LCPI.IBProvider.5");
    EXPECT_EQ(parsed.password, "it's;here");
    EXPECT_EQ(parsed.location, "/data/a b.fdb");
    EXPECT_FALSE(parsed.autoCommit);
}

TEST(ConnectionString, MalformedStringsNeverShowTheirText) {
    for (const char* text : {"Provider=X;Password=hunter2;Location", "Password=\"hunter2", "=hunter2",
                             "Password='hunter2' x;Location=/a", "auto_commit=hunter2"}) {
        SCOPED_TRACE(text);
        try {
            ConnectionString::parse(text);
            ADD_FAILURE() << "accepted";
        } catch (const Error& error) {
            EXPECT_EQ(std::string(error.what()).find("hunter2"), std::string::npos) << error.what();
        }
    }
}

}  // namespace
}  // namespace mxbook::db
