#pragma once
// The whole database path for one input: lexer → parser → emitter → SQLite engine on an
// in-memory small shop. Every input runs inside a transaction that is rolled back afterwards,
// so each one meets the same shop. Errors (qx::db::Error) are the expected answer to bad
// input; anything else — a crash, a sanitizer report, another exception — is a finding.
#include <cstddef>
#include <cstdint>

namespace qx::fuzz {

// Runs the input as a T-SQL batch, once through opensql and once through ExecSql.
void runInput(const std::uint8_t* data, std::size_t size);

}  // namespace qx::fuzz
