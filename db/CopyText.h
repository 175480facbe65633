#pragma once
// Text in PostgreSQL's COPY text format (also the TSV qxck-sql prints): a backslash, tab, line
// feed or carriage return inside a value written as \\, \t, \n, \r, so that tabs and line
// breaks separate fields and rows only. NULL is \N, written by the caller.
#include <string>
#include <string_view>

namespace qx::db {

inline void appendCopyText(std::string& out, std::string_view text) {
    for (const char c : text) {
        switch (c) {
            case '\\': out += "\\\\"; break;
            case '\t': out += "\\t"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            default: out += c;
        }
    }
}

}  // namespace qx::db
