#pragma once
// Conformance cases as data: files in the style of sqllogictest, run against every engine the
// project has. A file is a series of records separated by blank lines:
//
//   statement ok                      the batch must succeed (ExecSql: one guarded transaction)
//   statement ok maintenance          … as a maintenance batch (guards off, arithmetic errors NULL)
//   statement error <text>            the batch must fail with a message containing <text>
//   query <types> [rowsort]           opensql: the rows below "----" must come back
//   <batch, one or more lines>
//   ----
//   <one line per row, values separated by '|'>
//
// Types are one letter per column: I integer, R number (float or integer), T text, ? any;
// NULL matches every type. Values print as NULL, integers in decimal, floats shortest
// round-trip, text as is ("(empty)" for ''). A record may be preceded by "onlyif <engine>" or
// "skipif <engine>" lines; "#" starts a comment line.
#include <memory>
#include <string>
#include <vector>

#include "db/Database.h"

namespace qx::conformance {

struct Record {
    enum class Kind { StatementOk, StatementError, Query } kind = Kind::StatementOk;
    bool maintenance = false;
    std::string error;  // expected message part for StatementError
    std::string types;  // for Query
    bool rowSort = false;
    std::string sql;
    std::vector<std::string> expected;
    std::vector<std::string> onlyIf, skipIf;
    int line = 0;

    bool runsOn(const std::string& engine) const;
};

// Parses a file's text; throws std::runtime_error naming the line of a malformed record.
std::vector<Record> parseRecords(const std::string& text);

// An engine the cases run against: a fresh, empty-of-documents shop database.
class Engine {
public:
    virtual ~Engine() = default;
    virtual std::string name() const = 0;
    virtual void execute(const std::string& batch, bool maintenance) = 0;
    virtual qx::db::ResultSet query(const std::string& batch) = 0;
};

// Every engine the project has, each on a new database in folder.
std::vector<std::string> engineNames();
std::unique_ptr<Engine> openEngine(const std::string& name, const std::string& folder);
// The PostgreSQL engine on the process's private test server (PostgresEngine.cpp).
bool postgresAvailable();
std::unique_ptr<Engine> openPostgresEngine();

// One value as the files write it.
std::string formatValue(const qx::db::Value& value);

// Runs the records on an engine; returns one message per failing record ("file:line: …").
std::vector<std::string> runRecords(const std::vector<Record>& records, Engine& engine, const std::string& fileName);

}  // namespace qx::conformance
