// Text in COPY's text format: the separators and the escape character inside a value are escaped,
// everything else (quotes, Chinese, blanks) is written as it is.
#include <gtest/gtest.h>

#include "db/CopyText.h"

namespace {

std::string copyText(std::string_view text) {
    std::string out = "<";
    qx::db::appendCopyText(out, text);
    return out + ">";
}

TEST(CopyText, EscapesTheSeparatorsAndTheEscapeCharacterOnly) {
    EXPECT_EQ(copyText("a\tb"), "<a\\tb>");
    EXPECT_EQ(copyText("line\nbreak\r\n"), "<line\\nbreak\\r\\n>");
    EXPECT_EQ(copyText("back\\slash"), "<back\\\\slash>");
    EXPECT_EQ(copyText("\\N"), "<\\\\N>") << "the text \\N is no NULL";
    EXPECT_EQ(copyText("it's \"汉字\"  "), "<it's \"汉字\"  >");
    EXPECT_EQ(copyText(""), "<>");
    EXPECT_EQ(copyText(std::string(10000, 'x')).size(), 10002u);
}

}  // namespace
