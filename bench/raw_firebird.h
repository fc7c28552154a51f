// The floor of an operation: its SQL run bare through the Firebird client,
// each statement prepared once and executed with text parameters, the rows
// fetched and nothing more done with them.
#pragma once

#include <firebird/Interface.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mxbook::bench {

class RawDatabase {
public:
    explicit RawDatabase(const std::string& location);
    ~RawDatabase();
    RawDatabase(const RawDatabase&) = delete;
    RawDatabase& operator=(const RawDatabase&) = delete;

    class Statement {
    public:
        Statement(RawDatabase& database, const std::string& sql);
        ~Statement();
        Statement(const Statement&) = delete;
        Statement& operator=(const Statement&) = delete;

        // Runs the query with its '?' parameters as texts and fetches every
        // row, or the first `limit` when not negative; returns how many it fetched.
        int run(const std::vector<std::string>& params = {}, int limit = -1);
        // Runs a statement without a cursor in the open write transaction;
        // what it returns (an insert's returning clause) is read into the row.
        void execute(const std::vector<std::string>& params);
        // The same with parameters that may be null.
        int runNullable(const std::vector<std::optional<std::string>>& params, int limit = -1);
        void executeNullable(const std::vector<std::optional<std::string>>& params);

    private:
        void bind(const std::vector<std::string>& params);
        void bind(const std::vector<std::optional<std::string>>& params);
        int fetch(int limit);
        void executeBound();

        RawDatabase& database_;
        Firebird::IStatement* statement_ = nullptr;
        Firebird::IMessageMetadata* input_ = nullptr;
        Firebird::IMessageMetadata* output_ = nullptr;
        std::vector<unsigned char> inputBuffer_, outputBuffer_;
    };

    // A write transaction for execute(), rolled back at the end: the floor
    // of operations that write.
    void beginWrite();
    void rollbackWrite();
    void commitWrite();

private:
    friend class Statement;
    Firebird::IMaster* master_;
    Firebird::IAttachment* attachment_ = nullptr;
    Firebird::ITransaction* transaction_ = nullptr;
    Firebird::ITransaction* writing_ = nullptr;
};

}  // namespace mxbook::bench
