#include "SqlLogic.h"

#include <algorithm>
#include <charconv>
#include <sstream>
#include <stdexcept>

namespace qx::conformance {
namespace {

std::vector<std::string> words(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> result;
    for (std::string w; in >> w;) result.push_back(w);
    return result;
}

bool blank(const std::string& line) { return line.find_first_not_of(" \t\r") == std::string::npos; }

std::string rstripCr(std::string line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

bool typeMatches(char type, const qx::db::Value& value) {
    if (std::holds_alternative<std::monostate>(value) || type == '?') return true;
    switch (type) {
        case 'I': return std::holds_alternative<std::int64_t>(value);
        case 'R': return std::holds_alternative<double>(value) || std::holds_alternative<std::int64_t>(value);
        case 'T': return std::holds_alternative<std::string>(value);
        default: return false;
    }
}

}  // namespace

bool Record::runsOn(const std::string& engine) const {
    if (!onlyIf.empty() && std::find(onlyIf.begin(), onlyIf.end(), engine) == onlyIf.end()) return false;
    return std::find(skipIf.begin(), skipIf.end(), engine) == skipIf.end();
}

std::vector<Record> parseRecords(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(rstripCr(line));
    std::vector<Record> records;
    std::vector<std::string> onlyIf, skipIf;
    for (std::size_t i = 0; i < lines.size();) {
        const std::string& line = lines[i];
        if (blank(line) || line[0] == '#') {
            ++i;
            continue;
        }
        const auto w = words(line);
        const int number = static_cast<int>(i) + 1;
        auto malformed = [&](const std::string& why) {
            throw std::runtime_error("line " + std::to_string(number) + ": " + why + ": " + line);
        };
        if (w[0] == "onlyif" || w[0] == "skipif") {
            if (w.size() != 2) malformed("expected one engine name");
            (w[0] == "onlyif" ? onlyIf : skipIf).push_back(w[1]);
            ++i;
            continue;
        }
        Record record;
        record.line = number;
        record.onlyIf = std::move(onlyIf);
        record.skipIf = std::move(skipIf);
        onlyIf.clear();
        skipIf.clear();
        if (w[0] == "statement" && w.size() >= 2 && w[1] == "ok") {
            record.kind = Record::Kind::StatementOk;
            if (w.size() == 3 && w[2] == "maintenance") record.maintenance = true;
            else if (w.size() != 2) malformed("statement ok takes only \"maintenance\"");
        } else if (w[0] == "statement" && w.size() >= 2 && w[1] == "error") {
            record.kind = Record::Kind::StatementError;
            const auto at = line.find("error") + 5;
            record.error = line.substr(std::min(line.size(), line.find_first_not_of(' ', at)));
        } else if (w[0] == "query" && w.size() >= 2) {
            record.kind = Record::Kind::Query;
            record.types = w[1];
            for (std::size_t k = 2; k < w.size(); ++k) {
                if (w[k] == "rowsort") record.rowSort = true;
                else malformed("unknown query option " + w[k]);
            }
            if (record.types.find_first_not_of("IRT?") != std::string::npos) malformed("types are I, R, T or ?");
        } else {
            malformed("expected statement or query");
        }
        ++i;
        bool results = false;
        for (; i < lines.size() && !blank(lines[i]); ++i) {
            if (record.kind == Record::Kind::Query && !results && lines[i] == "----") {
                results = true;
                continue;
            }
            if (results) record.expected.push_back(lines[i]);
            else record.sql += lines[i] + "\n";
        }
        if (record.sql.empty()) malformed("the record has no statement");
        if (record.kind == Record::Kind::Query && !results) malformed("a query needs ---- and its rows");
        records.push_back(std::move(record));
    }
    return records;
}

std::string formatValue(const qx::db::Value& value) {
    if (std::holds_alternative<std::monostate>(value)) return "NULL";
    if (const auto* i = std::get_if<std::int64_t>(&value)) return std::to_string(*i);
    if (const auto* d = std::get_if<double>(&value)) {
        char buffer[64];
        auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, *d);
        return std::string(buffer, end);
    }
    const auto& s = std::get<std::string>(value);
    return s.empty() ? "(empty)" : s;
}

std::vector<std::string> runRecords(const std::vector<Record>& records, Engine& engine, const std::string& fileName) {
    std::vector<std::string> failures;
    for (const Record& record : records) {
        if (!record.runsOn(engine.name())) continue;
        const std::string where = fileName + ":" + std::to_string(record.line) + " [" + engine.name() + "]: ";
        try {
            switch (record.kind) {
                case Record::Kind::StatementOk: engine.execute(record.sql, record.maintenance); break;
                case Record::Kind::StatementError:
                    engine.execute(record.sql, false);
                    failures.push_back(where + "expected an error containing \"" + record.error + "\", the batch succeeded\n" + record.sql);
                    break;
                case Record::Kind::Query: {
                    const auto result = engine.query(record.sql);
                    std::vector<std::string> rows;
                    std::string typeProblem;
                    for (const auto& row : result.rows) {
                        std::string text;
                        for (std::size_t c = 0; c < row.size(); ++c) {
                            if (c) text += "|";
                            text += formatValue(row[c]);
                            if (c < record.types.size() && !typeMatches(record.types[c], row[c]) && typeProblem.empty())
                                typeProblem = "column " + std::to_string(c + 1) + " is not of type " + record.types[c] + ": " + formatValue(row[c]);
                        }
                        if (row.size() != record.types.size() && typeProblem.empty())
                            typeProblem = std::to_string(row.size()) + " columns, the record declares " + std::to_string(record.types.size());
                        rows.push_back(text);
                    }
                    if (record.rowSort) std::sort(rows.begin(), rows.end());
                    std::vector<std::string> expected = record.expected;
                    if (record.rowSort) std::sort(expected.begin(), expected.end());
                    if (rows != expected || !typeProblem.empty()) {
                        std::string message = where + (typeProblem.empty() ? "rows differ" : typeProblem) + "\n" + record.sql + "expected:\n";
                        for (const auto& r : record.expected) message += "  " + r + "\n";
                        message += "got:\n";
                        for (const auto& r : rows) message += "  " + r + "\n";
                        failures.push_back(message);
                    }
                    break;
                }
            }
        } catch (const std::exception& e) {
            const std::string message = e.what();
            if (record.kind == Record::Kind::StatementError) {
                if (message.find(record.error) == std::string::npos)
                    failures.push_back(where + "expected an error containing \"" + record.error + "\", got: " + message + "\n" + record.sql);
            } else {
                failures.push_back(where + "failed: " + message + "\n" + record.sql);
            }
        }
    }
    return failures;
}

}  // namespace qx::conformance
