#pragma once
// The statement loop both engines run a T-SQL batch with.
#include <string_view>
#include <utility>

#include "db/Database.h"
#include "db/tsql/Translator.h"

namespace qx::db {

// Runs each statement of the batch in order through run(statement, produced) and returns the
// result set of the last statement that produced one (a batch may select, then drop its temp
// tables).
template <class Run>
ResultSet lastResultOfEach(std::string_view tsqlBatch, Run&& run) {
    ResultSet last;
    for (const auto& statement : tsql::parseBatch(tsqlBatch)) {
        bool produced = false;
        ResultSet result = run(statement, produced);
        if (produced) last = std::move(result);
    }
    return last;
}

}  // namespace qx::db
