#pragma once
// A scripted shop database for framework tests: queries are answered by the first rule whose
// text is contained in the statement; batches and numbers are recorded.
#include <functional>
#include <string>
#include <vector>

#include "db/Database.h"

namespace qx::test {

inline qx::db::ResultSet table(std::vector<std::string> columns, std::vector<std::vector<qx::db::Value>> rows) {
    qx::db::ResultSet r;
    for (auto& c : columns) r.columns.push_back({c, qx::db::FieldType::Unknown, 0});
    r.rows = std::move(rows);
    return r;
}

class FakeDatabase : public qx::db::Database {
public:
    struct Rule {
        std::string contains;
        qx::db::ResultSet result;
    };
    void answer(std::string contains, qx::db::ResultSet result) { rules.push_back({std::move(contains), std::move(result)}); }

    qx::db::ResultSet open(std::string_view sql) override {
        opened.emplace_back(sql);
        for (const auto& r : rules)
            if (std::string_view(sql).find(r.contains) != std::string_view::npos) return r.result;
        if (failUnknown) throw qx::db::Error("no rule for: " + std::string(sql), std::string(sql));
        return {};
    }
    void execute(std::string_view batch, const qx::db::ExecOptions& options) override {
        if (failExecute) throw qx::db::Error("forced failure", std::string(batch));
        executed.emplace_back(batch);
        maintenance.push_back(options.maintenance);
    }
    std::string nextDocumentNumber(std::string_view) override { return "N" + std::to_string(++counter); }
    bool maySummariseStocktake(std::string_view) override { return true; }
    std::string engineName() const override { return "fake"; }
    std::string location() const override { return "memory"; }

    std::vector<Rule> rules;
    std::vector<std::string> opened;
    std::vector<std::string> executed;
    std::vector<bool> maintenance;
    int counter = 0;
    bool failExecute = false;
    bool failUnknown = false;
};

}  // namespace qx::test
