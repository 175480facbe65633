#pragma once
// Tokenizer for T-SQL batches.
#include <string>
#include <string_view>
#include <vector>

namespace qx::tsql {

enum class TokenKind {
    Identifier,        // plain word (keywords included), `#temp` names, `@variables`
    QuotedIdentifier,  // [bracketed] or "double quoted"; text holds the name without quotes
    String,            // '...' or N'...'; text holds the value with doubled quotes undone
    Number,            // 12, 1.5, .5, 1e3; text as written
    Operator,          // punctuation and operators: ( ) , . ; + - * / % = <> != < > <= >= ! ~ & | ^
    End,
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string text;
    std::size_t offset = 0;  // byte offset of the token's first character in the batch
    std::size_t length = 0;  // byte length of the token as written
    int line = 1;
    int column = 1;  // 1-based, in characters (UTF-8 code points)

    bool isWord(std::string_view upperWord) const;  // unquoted identifier equal to the word, any case
    bool isOp(std::string_view op) const { return kind == TokenKind::Operator && text == op; }
};

// Splits the batch into tokens; comments (-- and /* */) and blanks are skipped.
// Throws TranslationError for an unterminated literal, bracket or comment.
std::vector<Token> tokenize(std::string_view batch);

std::string toUpper(std::string_view text);  // ASCII upper case
bool equalsIgnoreCase(std::string_view a, std::string_view b);

}  // namespace qx::tsql
