#pragma once
// The error a T-SQL text raises when it cannot be parsed or translated.
#include <string>

#include "db/Database.h"

namespace qx::tsql {

class TranslationError : public qx::db::Error {
public:
    // line and column are 1-based positions in the batch the statement came from.
    TranslationError(const std::string& message, std::string statement, int line, int column)
        : qx::db::Error(message + " (line " + std::to_string(line) + ", column " + std::to_string(column) + ")",
                        std::move(statement), line, column),
          reason_(message) {}
    // The message without the position suffix.
    const std::string& reason() const { return reason_; }

private:
    std::string reason_;
};

}  // namespace qx::tsql
