// The transfer script of the repository, run through the headless script runner on the demo
// shop: the buyer sends a transfer from 总仓, the manager of the receiving shop counts it in,
// and both warehouses' stock follow.
#include <QFile>

#include "tests/support/DemoShopScript.h"

namespace {

class TransferScriptTest : public qx::test::DemoShopScriptTest {
protected:
    int stock(const QString& warehouse, const QString& column) {
        return scalar("SELECT " + column + " FROM d1802 WHERE WL_ID='BL2508000302' AND CK_ID='" + warehouse + "'").toInt();
    }
};

TEST_F(TransferScriptTest, SendAndCountInThroughTheScriptRunner) {
    QFile file(qEnvironmentVariable("QXCK_SOURCE_DIR") + "/documents/transfer/transfer-arrival.qxs");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    const QString script = QString::fromUtf8(file.readAll());
    const int k0 = stock("ZC", "K0"), k1 = stock("ZC", "K1");
    ASSERT_EQ(scalar("SELECT COUNT(*) FROM d1802 WHERE WL_ID='BL2508000302' AND CK_ID='MD01'"), "0");

    int rc = -1;
    const QString output = run(script, rc);
    ASSERT_EQ(rc, 0) << output.toStdString();
    EXPECT_FALSE(output.contains("error:")) << output.toStdString();

    const QString noid = scalar("SELECT NOID FROM D8303 WHERE NOTE='补货 O''Neil'");
    ASSERT_FALSE(noid.isEmpty()) << output.toStdString();
    EXPECT_TRUE(noid.startsWith("217"));
    EXPECT_EQ(scalar("SELECT CK_ID + '>' + CK_ID_IN FROM D8303 WHERE NOID='" + noid + "'"), "ZC>MD01");
    EXPECT_EQ(scalar("SELECT USER_ID FROM D8303 WHERE NOID='" + noid + "'"), "cg01");
    EXPECT_EQ(scalar("SELECT Y FROM D8303 WHERE NOID='" + noid + "'"), "1");
    EXPECT_EQ(scalar("SELECT Y_WC FROM D8303 WHERE NOID='" + noid + "'"), "1");
    EXPECT_EQ(scalar("SELECT YNAME FROM D8303 WHERE NOID='" + noid + "'"), "南京路店长");
    EXPECT_EQ(scalar("SELECT Y_NOTE FROM D8303 WHERE NOID='" + noid + "'"), "少一件");
    EXPECT_EQ(stock("ZC", "K0"), k0 - 2);
    EXPECT_EQ(stock("ZC", "K1"), k1 - 1);
    EXPECT_EQ(stock("MD01", "K0"), 2);
    EXPECT_EQ(stock("MD01", "K1"), 0);
    EXPECT_EQ(scalar("SELECT COUNT(*) FROM V_QX_ZT WHERE NOID='" + noid + "'"), "0");
}

}  // namespace
