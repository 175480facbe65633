#include "db/tsql/Lexer.h"

#include <cctype>

#include "db/tsql/TranslationError.h"

namespace qx::tsql {

std::string toUpper(std::string_view text) {
    std::string upper(text);
    for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return upper;
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::toupper(static_cast<unsigned char>(a[i])) != std::toupper(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

bool Token::isWord(std::string_view upperWord) const {
    return kind == TokenKind::Identifier && equalsIgnoreCase(text, upperWord);
}

namespace {

bool isWordStart(unsigned char c) { return std::isalpha(c) || c == '_' || c == '#' || c == '@' || c >= 0x80; }
bool isWordPart(unsigned char c) { return std::isalnum(c) || c == '_' || c == '#' || c == '@' || c == '$' || c >= 0x80; }

class Scanner {
public:
    explicit Scanner(std::string_view text) : text_(text) {}

    std::vector<Token> run() {
        std::vector<Token> tokens;
        while (true) {
            skipBlanksAndComments();
            if (pos_ >= text_.size()) break;
            tokens.push_back(next());
        }
        Token end;
        end.kind = TokenKind::End;
        end.offset = text_.size();
        end.line = line_;
        end.column = column_;
        tokens.push_back(end);
        return tokens;
    }

private:
    char peek(std::size_t ahead = 0) const { return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0'; }

    void advance() {
        const unsigned char c = static_cast<unsigned char>(text_[pos_++]);
        if (c == '\n') {
            ++line_;
            column_ = 1;
        } else if ((c & 0xC0) != 0x80) {
            // count code points, not bytes: continuation bytes do not move the column
            if (pos_ < text_.size() && (static_cast<unsigned char>(text_[pos_]) & 0xC0) == 0x80) {
                ++column_;
                while (pos_ < text_.size() && (static_cast<unsigned char>(text_[pos_]) & 0xC0) == 0x80) ++pos_;
            } else {
                ++column_;
            }
        }
    }

    [[noreturn]] void fail(const std::string& message, int line, int column) const {
        throw TranslationError(message, std::string(text_), line, column);
    }

    void skipBlanksAndComments() {
        while (pos_ < text_.size()) {
            const char c = peek();
            if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
                advance();
            } else if (c == '-' && peek(1) == '-') {
                while (pos_ < text_.size() && peek() != '\n') advance();
            } else if (c == '/' && peek(1) == '*') {
                const int line = line_, column = column_;
                advance();
                advance();
                int depth = 1;  // T-SQL block comments nest
                while (depth > 0) {
                    if (pos_ >= text_.size()) fail("unterminated comment", line, column);
                    if (peek() == '/' && peek(1) == '*') {
                        advance();
                        advance();
                        ++depth;
                    } else if (peek() == '*' && peek(1) == '/') {
                        advance();
                        advance();
                        --depth;
                    } else {
                        advance();
                    }
                }
            } else {
                break;
            }
        }
    }

    Token next() {
        Token token;
        token.offset = pos_;
        token.line = line_;
        token.column = column_;
        const unsigned char c = static_cast<unsigned char>(peek());
        if ((c == 'N' || c == 'n') && peek(1) == '\'') {
            advance();
            readString(token);
        } else if (c == '\'') {
            readString(token);
        } else if (c == '[') {
            readDelimited(token, ']');
        } else if (c == '"') {
            readDelimited(token, '"');
        } else if (std::isdigit(c) || (c == '.' && std::isdigit(static_cast<unsigned char>(peek(1))))) {
            readNumber(token);
        } else if (isWordStart(c)) {
            token.kind = TokenKind::Identifier;
            while (pos_ < text_.size() && isWordPart(static_cast<unsigned char>(peek()))) advance();
            token.text = std::string(text_.substr(token.offset, pos_ - token.offset));
        } else {
            readOperator(token);
        }
        token.length = pos_ - token.offset;
        return token;
    }

    void readString(Token& token) {
        token.kind = TokenKind::String;
        advance();  // opening quote
        while (true) {
            if (pos_ >= text_.size()) fail("unterminated string literal", token.line, token.column);
            if (peek() == '\'') {
                if (peek(1) == '\'') {
                    token.text += '\'';
                    advance();
                    advance();
                    continue;
                }
                advance();
                return;
            }
            const std::size_t start = pos_;
            advance();
            token.text.append(text_.substr(start, pos_ - start));
        }
    }

    void readDelimited(Token& token, char close) {
        token.kind = TokenKind::QuotedIdentifier;
        advance();
        while (true) {
            if (pos_ >= text_.size()) fail("unterminated quoted identifier", token.line, token.column);
            if (peek() == close) {
                if (peek(1) == close) {
                    token.text += close;
                    advance();
                    advance();
                    continue;
                }
                advance();
                return;
            }
            const std::size_t start = pos_;
            advance();
            token.text.append(text_.substr(start, pos_ - start));
        }
    }

    void readNumber(Token& token) {
        token.kind = TokenKind::Number;
        auto digit = [&](std::size_t ahead) { return std::isdigit(static_cast<unsigned char>(peek(ahead))) != 0; };
        while (digit(0)) advance();
        if (peek() == '.') {
            advance();
            while (digit(0)) advance();
        }
        // An exponent only when digits follow: "1else" is the number 1 and the word else.
        if ((peek() == 'e' || peek() == 'E') && (digit(1) || ((peek(1) == '+' || peek(1) == '-') && digit(2)))) {
            advance();
            if (peek() == '+' || peek() == '-') advance();
            while (digit(0)) advance();
        }
        token.text = std::string(text_.substr(token.offset, pos_ - token.offset));
    }

    void readOperator(Token& token) {
        token.kind = TokenKind::Operator;
        static const char* const twoCharOps[] = {"<>", "!=", "<=", ">=", "!<", "!>", "||"};
        for (const char* op : twoCharOps) {
            if (peek() == op[0] && peek(1) == op[1]) {
                advance();
                advance();
                token.text = op;
                return;
            }
        }
        const char c = peek();
        static const std::string_view single = "(),.;+-*/%=<>!~&|^";
        if (single.find(c) == std::string_view::npos)
            fail(std::string("unexpected character '") + c + "'", line_, column_);
        advance();
        token.text = std::string(1, c);
    }

    std::string_view text_;
    std::size_t pos_ = 0;
    int line_ = 1;
    int column_ = 1;
};

}  // namespace

std::vector<Token> tokenize(std::string_view batch) { return Scanner(batch).run(); }

}  // namespace qx::tsql
