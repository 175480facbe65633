// Statement templates: placeholders filled once, through the quoting helper.
#include <gtest/gtest.h>

#include "documents/common/StatementTemplate.h"

namespace {

using qx::documents::fillTemplate;

bool resolve(const QString& name, QString& value) {
    if (name == "number") value = "R001";
    else if (name == "NOTE") value = "O'Neil {number}";
    else return false;
    return true;
}

TEST(StatementTemplate, PlaceholdersAreFilledAndQuotesDoubled) {
    EXPECT_EQ(fillTemplate("UPDATE D8101 SET NOTE='{NOTE}' WHERE noid='{number}';", resolve),
              "UPDATE D8101 SET NOTE='O''Neil {number}' WHERE noid='R001';");
}

TEST(StatementTemplate, UnknownNamesAndLoneBracesStayAsWritten) {
    EXPECT_EQ(fillTemplate("a {unknown} b { c", resolve), "a {unknown} b { c");
    EXPECT_EQ(fillTemplate("'{number}{number}'", resolve), "'R001R001'");
    EXPECT_EQ(fillTemplate("", resolve), "");
}

}  // namespace
