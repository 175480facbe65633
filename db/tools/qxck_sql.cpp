// qxck-sql --db FILE|postgresql://…: runs the T-SQL batch read from stdin and prints its result set as TSV
// (a header line, then one line per row). NULL prints as \N, so it differs from an empty text;
// a backslash, tab, line feed or carriage return inside a text prints as \\, \t, \n, \r.
#include <charconv>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <string>

#include "db/CopyText.h"
#include "db/Database.h"

namespace {

std::string field(const qx::db::Value& value) {
    if (const auto* i = std::get_if<std::int64_t>(&value)) return std::to_string(*i);
    if (const auto* d = std::get_if<double>(&value)) {
        char buffer[64];
        auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, *d);
        return std::string(buffer, end);
    }
    if (const auto* s = std::get_if<std::string>(&value)) {
        std::string out;
        qx::db::appendCopyText(out, *s);
        return out;
    }
    return "\\N";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 || std::string(argv[1]) != "--db") {
        std::fprintf(stderr, "usage: qxck-sql --db FILE|postgresql://… < batch.sql\n");
        return 2;
    }
    const std::string batch((std::istreambuf_iterator<char>(std::cin)), std::istreambuf_iterator<char>());
    try {
        auto db = qx::db::openDatabase(argv[2]);
        const auto result = db->open(batch);
        std::string out;
        for (std::size_t c = 0; c < result.columns.size(); ++c) {
            if (c) out += '\t';
            out += result.columns[c].name;
        }
        if (!result.columns.empty()) out += "\n";
        for (const auto& row : result.rows) {
            for (std::size_t c = 0; c < row.size(); ++c) {
                if (c) out += '\t';
                out += field(row[c]);
            }
            out += "\n";
        }
        std::fwrite(out.data(), 1, out.size(), stdout);
        return 0;
    } catch (const qx::db::Error& e) {
        std::fprintf(stderr, "qxck-sql: %s\n", e.what());
        if (!e.statement().empty())
            std::fprintf(stderr, "  in statement at line %d, column %d: %s\n", e.line(), e.column(), e.statement().c_str());
        return 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "qxck-sql: %s\n", e.what());
        return 1;
    }
}
