#include "mxbook/data/connection.h"

#include <strings.h>

#include <algorithm>

#include "connection_impl.h"
#include "mxbook/data/connection_string.h"
#include "sql_text.h"

namespace mxbook::db {

namespace {

std::vector<std::string>& installedProviders() {
    static std::vector<std::string> names = Connection::defaultProviderNames();
    return names;
}

ConnectionString checkedSettings(const std::string& text) {
    ConnectionString settings = ConnectionString::parse(text);
    const auto& offered = installedProviders();
    const bool known = std::any_of(offered.begin(), offered.end(), [&](const std::string& name) {
        return strcasecmp(name.c_str(), settings.provider.c_str()) == 0;
    });
    if (!known) throw Error("provider '" + settings.provider + "' is not installed");
    if (settings.location.empty()) throw Error("the connection string names no Location");
    if (!settings.autoCommit)
        throw Error("auto_commit=False is not supported: each statement commits by itself, and a unit of work "
                    "groups the statements that must be stored together");
    return settings;
}

}  // namespace

Connection::Connection() : impl_(std::make_shared<detail::ConnectionImpl>()) {}

Connection::Connection(std::string connectionString) : Connection() {
    connectionString_ = std::move(connectionString);
}

Connection::~Connection() { close(); }

Connection::Connection(Connection&& other) noexcept = default;

void Connection::setConnectionString(std::string connectionString) {
    connectionString_ = std::move(connectionString);
}

void Connection::open() {
    if (!impl_) impl_ = std::make_shared<detail::ConnectionImpl>();
    impl_->attach(checkedSettings(connectionString_), false);
}

void Connection::open(std::string connectionString) {
    setConnectionString(std::move(connectionString));
    open();
}

void Connection::create(std::string connectionString) {
    setConnectionString(std::move(connectionString));
    if (!impl_) impl_ = std::make_shared<detail::ConnectionImpl>();
    impl_->attach(checkedSettings(connectionString_), true);
}

void Connection::close() noexcept {
    if (impl_) impl_->detach();
}

void Connection::dropDatabase() {
    if (!impl_) throw Error("the connection is closed");
    impl_->dropDatabase();
}

void Connection::forgetStatements() {
    if (impl_) impl_->forgetStatements();
}

bool Connection::isOpen() const { return impl_ && impl_->isOpen(); }

std::int64_t Connection::execute(std::string_view sql) {
    if (!impl_) throw Error("the connection is closed");
    return impl_->execute(std::string(sql), {});
}

void Connection::executeScript(std::string_view script) {
    for (const std::string& statement : detail::splitScript(script)) execute(statement);
}

std::int64_t Connection::nextGeneratorValue(std::string_view generator) {
    if (!impl_) throw Error("the connection is closed");
    // Written as given when it is an identifier, so that Firebird folds its case as usual.
    const std::string name = detail::isIdentifier(generator) ? std::string(generator) : detail::sqlName(generator);
    const auto rows = detail::queryRows(*impl_, "select gen_id(" + name + ", 1) from rdb$database");
    return rows.front().front().asInt64();  // that select gives one row, one column
}

std::vector<std::string> Connection::providerNames() { return installedProviders(); }

void Connection::setProviderNames(std::vector<std::string> names) { installedProviders() = std::move(names); }

std::vector<std::string> Connection::defaultProviderNames() {
    return {"LCPI.IBProvider.5.Free", "LCPI.IBProvider.5", "LCPI.IBProvider.3.Free", "LCPI.IBProvider.3",
            "LCPI.IBProvider.2"};
}

}  // namespace mxbook::db
